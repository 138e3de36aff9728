#include "Block.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>
#include <variant>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_RecordFormat.h>
#include <bundled/OnfKinds.h>
#include <pybind11/stl.h>

#include "answers/ModelNames.h"
#include "database/RecordRows.h"
#include "database/ScratchRecord.h"
#include "database/StepTimes.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "Text.h"

namespace quilon::python {

namespace {

/// @return the class of each field of a block's records
std::vector<FED_FieldType::Class> FieldsOf(const FED_DataBlock& block)
{
  std::vector<FED_FieldType::Class> fields;
  const ScratchRecord               scratch(block);
  for (std::size_t field = 1; field <= scratch->GetFieldCount(); ++field)
    fields.push_back(FED_FieldType::GetClass(scratch->GetFieldType(field)));
  return fields;
}

/// @return numbers of a field in a record: 1, 3 or 6; 0 for a list or a text
std::size_t WidthOf(FED_FieldType::Class field)
{
  if (field == FED_FieldType::Integer || field == FED_FieldType::Float) return 1;
  return FED_FieldType::GetDoubleCount(field);
}

/// @return numbers of a record; 0 where it has a list or a text
std::size_t WidthOf(const std::vector<FED_FieldType::Class>& fields)
{
  std::size_t width = 0;
  for (const FED_FieldType::Class field : fields) {
    if (WidthOf(field) == 0) return 0;
    width += WidthOf(field);
  }
  return width;
}

/// Ids as the program orders them: ascending. The values are not read.
IdTable MakeIds(const Store::Place& place)
{
  const int             entity = OnfKind::EntityOf(place.block.GetDescriptor());
  const FED_IdMapsPool& pool   = place.database.GetIdMapsPool();
  const auto*           column = dynamic_cast<const FED_ColumnDataBlock*>(&place.block);

  std::vector<std::size_t> indices;
  if (column != nullptr)
    indices = column->GetIndices();
  else
    for (auto index = place.block.Begin(); index != place.block.End(); ++index) indices.push_back(*index);

  IdTable table;
  table.ids.reserve(indices.size());
  for (const std::size_t index : indices)
    table.ids.push_back(entity < OnfKind::HistoryEntity ? pool.GetId(entity, index) : static_cast<int>(index));
  const bool idsAscend = std::is_sorted(table.ids.begin(), table.ids.end());
  if (idsAscend && FED_SpansAscend(place.block)) return table;

  table.rows.resize(indices.size());
  if (column == nullptr)
    std::iota(table.rows.begin(), table.rows.end(), 0u);
  else
    for (std::size_t i = 0; i < indices.size(); ++i)
      table.rows[i] = static_cast<std::uint32_t>(column->GetRow(indices[i]));
  if (idsAscend) return table;
  std::vector<std::size_t> order(indices.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return table.ids[a] < table.ids[b]; });
  IdTable sorted;
  for (const std::size_t i : order) {
    sorted.ids.push_back(table.ids[i]);
    sorted.rows.push_back(table.rows[i]);
  }
  return sorted;
}

/// Puts rows of so many numbers in the order of the ids.
std::vector<double> InOrder(std::vector<double> values, std::size_t width, const IdTable& ids)
{
  if (ids.rows.empty()) return values;
  std::vector<double> ordered(values.size());
  for (std::size_t i = 0; i < ids.rows.size(); ++i)
    std::copy_n(values.data() + ids.rows[i] * width, width, ordered.data() + i * width);
  return ordered;
}

/// @return values of all fields, in the order of rows; shape [records, width]
std::vector<double> CopyValues(const FED_DataBlock& block, const std::vector<FED_FieldType::Class>& fields,
                               std::size_t width, std::size_t records)
{
  std::vector<double> values(records * width);
  double*             at = values.data();
  FED_ForEachSpan(block, [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    std::size_t first = 0;
    for (std::size_t field = 1; field <= fields.size(); ++field) {
      const std::size_t size = WidthOf(fields[field - 1]);
      const auto        copy = [&](const auto* from) {
        for (std::size_t i = 0; i < span.GetCount(); ++i)
          for (std::size_t k = 0; k < size; ++k) at[i * width + first + k] = static_cast<double>(from[i * size + k]);
      };
      if (fields[field - 1] == FED_FieldType::Integer)
        copy(span.GetIntegers(field).GetData());
      else if (fields[field - 1] == FED_FieldType::Float)
        copy(span.GetFloats(field).GetData());
      else if (size == width)
        std::copy_n(span.GetDoubles(field).GetData(), span.GetCount() * size, at);
      else
        copy(span.GetDoubles(field).GetData());
      first += size;
    }
    at += span.GetCount() * width;
  });
  return values;
}

/// Memory of a chunk, and what keeps it.
struct ChunkView
{
  ChunkView(std::shared_ptr<Reading> from, const FED_ColumnDataBlock& block) : reading(std::move(from))
  {
    chunk  = block.HoldChunk(0);
    values = block.GetDoubleChunk(1, 0).GetData();
  }
  ChunkView(const ChunkView&)            = delete;
  ChunkView& operator=(const ChunkView&) = delete;
  // The last array may go in any thread, while another one reads.
  ~ChunkView() { reading->LetGo(std::move(chunk)); }

  std::shared_ptr<Reading>       reading;
  std::unique_ptr<FED_HeldChunk> chunk;
  const double*                  values = nullptr;
};

}  // namespace

py::dict KeyOf(const FED_DataDescriptor& descriptor)
{
  py::dict key;
  for (const IndexKey& index : GetIndexKeys())
    if (descriptor.IsSet(index.index)) key[index.key] = descriptor.GetInteger(index.index);
  return key;
}

Block::Block(std::shared_ptr<Store> store, const FED_DataDescriptor& descriptor, std::vector<std::string> components)
    : store_(std::move(store)), descriptor_(descriptor), components_(std::move(components))
{}

int Block::GetOnf() const { return descriptor_.GetInteger(FED_DataDescriptor::OnfId); }

std::string Block::GetKind() const
{
  return Work([&] { return store_->Use([&] { return store_->GetKinds().GetName(descriptor_); }); });
}

std::string Block::GetText() const { return ToSelectionText(descriptor_); }

py::dict Block::GetKey() const { return KeyOf(descriptor_); }

py::dict Block::GetStep() const { return HasResultStep(descriptor_) ? KeyOf(GetResultStep(descriptor_)) : py::dict(); }

std::optional<double> Block::GetTime() const
{
  return Work([&] {
    return store_->Use([&]() -> std::optional<double> {
      const Store::Place place = store_->Find(descriptor_);
      return place.isStored ? store_->RequireReading().GetTimes().TimeOf(descriptor_)
                            : StepTimes(place.database).TimeOf(descriptor_);
    });
  });
}

std::size_t Block::CountRecords() const
{
  return Work([&] {
    return store_->Use([&] {
      const Store::Place place = store_->Find(descriptor_);
      if (const auto* column = dynamic_cast<const FED_ColumnDataBlock*>(&place.block)) return column->GetRecordCount();
      return MakeIds(place).ids.size();
    });
  });
}

std::vector<std::string> Block::GetComponents() const
{
  if (!components_.empty()) return components_;
  return Work([&] {
    return store_->Use([&] {
      const Store::Place       place = store_->Find(descriptor_);
      const RecordRows         rows(place.block, store_->GetKinds(), place.database);
      std::vector<std::string> names(rows.GetColumns().begin() + 1, rows.GetColumns().end());
      std::erase_if(names,
                    [](const std::string& name) { return name == "point" || name == "position" || name == "node"; });
      return names;
    });
  });
}

std::vector<std::string> Block::GetAllComponents() const { return ComponentNamesOf(GetOnf()); }

std::shared_ptr<const IdTable> Block::FindIds(const Store::Place& place)
{
  if (!place.isStored) return std::make_shared<const IdTable>(MakeIds(place));
  if (!ids_) ids_ = store_->RequireReading().FindIds(MakeIds(place));
  return ids_;
}

Integers Block::GetIds()
{
  const auto ids = Work([&] { return store_->Use([&] { return FindIds(store_->Find(descriptor_)); }); });
  return ViewOf(ids->ids.data(), {static_cast<py::ssize_t>(ids->ids.size())}, ids);
}

Doubles Block::GetValues()
{
  if (!components_.empty()) return Evaluate(components_, false);
  std::shared_ptr<const ChunkView> view;
  std::vector<double>              copy;
  std::size_t                      records = 0;
  std::size_t                      width   = 0;
  Work([&] {
    store_->Use([&] {
      const Store::Place place  = store_->Find(descriptor_);
      const auto         fields = FieldsOf(place.block);
      width                     = WidthOf(fields);
      if (width == 0)
        Fail(store_->GetName() + ": block " + GetText() +
             " holds lists or texts, expected one of numbers; rows() and points() give the others");
      const auto ids    = FindIds(place);
      records           = ids->ids.size();
      const auto* block = dynamic_cast<const FED_ColumnDataBlock*>(&place.block);
      const bool  isOne = block != nullptr && block->GetChunkCount() == 1 && fields.size() == 1 &&
                         FED_FieldType::GetDoubleCount(fields.front()) != 0;
      if (isOne && place.isStored && ids->rows.empty())
        view = std::make_shared<const ChunkView>(store_->GetReading(), *block);
      else
        copy = InOrder(CopyValues(place.block, fields, width, records), width, *ids);
    });
  });
  const std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(records), static_cast<py::ssize_t>(width)};
  return view ? ViewOf(view->values, shape, view) : ArrayOf(std::move(copy), shape);
}

py::array Block::GetComponent(const std::string& name)
{
  const Component component(name, GetOnf());
  if (component.GetPosition() < 0 || !components_.empty()) return Evaluate({name}, true);
  const py::array values = GetValues();
  return values[py::make_tuple(py::slice(std::nullopt, std::nullopt, std::nullopt), component.GetPosition())];
}

/// @param isFlat whether one component is an array of one dimension
Doubles Block::Evaluate(const std::vector<std::string>& names, bool isFlat)
{
  std::vector<Component> components;
  for (const std::string& name : names) components.emplace_back(name, GetOnf());
  std::vector<double> values;
  std::size_t         records = 0;
  Work([&] {
    store_->Use([&] {
      const Store::Place place = store_->Find(descriptor_);
      const auto         ids   = FindIds(place);
      const auto         width = components.front().NumValues();
      records                  = ids->ids.size();
      if (const auto fields = FieldsOf(place.block); fields.size() != 1 || WidthOf(fields) != width)
        Fail(store_->GetName() + ": block " + GetText() + " holds lists, expected " + std::to_string(width) +
             " numbers a record; points() gives the others");
      values.reserve(records * components.size());
      FED_ForEachSpan(place.block, [&](const FED_BlockSpan& span) {
        ThrowIfInterrupted();
        const double* record = span.GetDoubles(1).GetData();
        for (std::size_t i = 0; i < span.GetCount(); ++i, record += width)
          for (const Component& component : components) values.push_back(component.Evaluate({record, width}));
      });
      values = InOrder(std::move(values), components.size(), *ids);
    });
  });
  std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(records)};
  if (!isFlat) shape.push_back(static_cast<py::ssize_t>(names.size()));
  return ArrayOf(std::move(values), shape);
}

py::tuple Block::GetPoints()
{
  std::vector<int>    ids, numbers;
  std::vector<double> values;
  std::size_t         width = 0;
  Work([&] {
    store_->Use([&] {
      const Store::Place place  = store_->Find(descriptor_);
      const auto         fields = FieldsOf(place.block);
      width                     = static_cast<std::size_t>(OnfKind::ListPeriodOf(GetOnf()));
      if (width == 1 || fields.empty() || fields.back() != FED_FieldType::DoubleList)
        Fail(store_->GetName() + ": block " + GetText() +
             " has no points, expected a kind with a list of vectors or tensors");
      const auto                                       table = FindIds(place);
      std::vector<std::pair<std::size_t, std::size_t>> lists;  // of a row: first number and how many
      std::vector<double>                              all;
      FED_ForEachSpan(place.block, [&](const FED_BlockSpan& span) {
        ThrowIfInterrupted();
        for (std::size_t i = 0; i < span.GetCount(); ++i) {
          const auto list = span.GetDoubleList(fields.size(), i);
          lists.emplace_back(all.size(), list.GetSize() / width);
          all.insert(all.end(), list.GetData(), list.GetData() + list.GetSize());
        }
      });
      for (std::size_t i = 0; i < table->ids.size(); ++i) {
        const auto [first, count] = lists[table->rows.empty() ? i : table->rows[i]];
        values.insert(values.end(), all.begin() + static_cast<std::ptrdiff_t>(first),
                      all.begin() + static_cast<std::ptrdiff_t>(first + count * width));
        for (std::size_t k = 1; k <= count; ++k) {
          ids.push_back(table->ids[i]);
          numbers.push_back(static_cast<int>(k));
        }
      }
    });
  });
  const std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(ids.size()), static_cast<py::ssize_t>(width)};
  return py::make_tuple(ArrayOf(std::move(ids)), ArrayOf(std::move(numbers)), ArrayOf(std::move(values), shape));
}

py::list Block::GetRows()
{
  std::vector<std::string>       columns;
  std::vector<std::vector<Cell>> rows;
  Work([&] {
    store_->Use([&] {
      const Store::Place  place = store_->Find(descriptor_);
      const RecordRows    reader(place.block, store_->GetKinds(), place.database);
      const ModelNames    names(place.database);
      const ScratchRecord scratch(place.block);
      columns = reader.GetColumns();
      for (const RecordKey& key : GetRecordKeys(place.block, place.database.GetIdMapsPool())) {
        ThrowIfInterrupted();
        place.block.GetRecord(key.index, *scratch);
        for (std::vector<Cell>& row : reader.GetRows(key.id, *scratch)) {
          names.Replace(descriptor_, row);
          rows.push_back(std::move(row));
        }
      }
    });
  });
  py::list list;
  for (const std::vector<Cell>& row : rows) {
    py::dict entry;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const auto* const text     = std::get_if<std::string>(&row[i]);
      entry[py::str(columns[i])] = text != nullptr ? py::object(TextOf(*text)) : py::object(py::cast(row[i]));
    }
    list.append(std::move(entry));
  }
  return list;
}

void DefineBlock(py::module_& module)
{
  py::class_<Block>(module, "Block", PlainType())
      .def_property_readonly("onf", &Block::GetOnf)
      .def_property_readonly("kind", &Block::GetKind)
      .def_property_readonly("text", &Block::GetText)
      .def_property_readonly("key", &Block::GetKey)
      .def_property_readonly("step", &Block::GetStep)
      .def_property_readonly("time", &Block::GetTime)
      .def_property_readonly("num_records", &Block::CountRecords)
      .def_property_readonly("components", &Block::GetComponents)
      .def_property_readonly("all_components", &Block::GetAllComponents)
      .def("ids", &Block::GetIds)
      .def("values", &Block::GetValues)
      .def("component", &Block::GetComponent)
      .def("points", &Block::GetPoints)
      .def("rows", &Block::GetRows);
}

}  // namespace quilon::python
