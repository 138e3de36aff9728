#include "Database.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_RecordFormat.h>
#include <bundled/OnfKinds.h>
#include <pybind11/stl.h>

#include "Block.h"
#include "database/StepTimes.h"
#include "kinds/KindTable.h"
#include "kinds/UserKindPool.h"
#include "mesh/DeckTypes.h"
#include "mesh/Mesh.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_IntArray.h"
#include "selection/Selection.h"
#include "Text.h"
#include "text/Format.h"

namespace quilon::python {

namespace {

std::vector<Block> Select(const std::shared_ptr<Store>& store, const std::string& text, const std::string& steps)
{
  std::vector<std::pair<FED_DataDescriptor, std::vector<std::string>>> chosen;
  Work([&] {
    store->Use([&] {
      Selection selection = text.empty() ? Selection() : Selection(text, store->GetKinds());
      if (!steps.empty()) selection.SetSteps(steps);
      for (const FED_DataDescriptor& descriptor : selection.Apply(store->List()))
        chosen.emplace_back(descriptor, selection.ComponentsOf(descriptor.GetInteger(FED_DataDescriptor::OnfId)));
    });
  });
  std::vector<Block> blocks;
  for (auto& [descriptor, components] : chosen) blocks.emplace_back(store, descriptor, std::move(components));
  return blocks;
}

/// @return position from 1, key, time or frequency or buckling factor, and which of them, of every result step
py::list ListSteps(const std::shared_ptr<Store>& store)
{
  struct Row
  {
    FED_DataDescriptor    step;
    std::optional<double> time;
    std::string           quantity;
  };
  std::vector<Row> rows;
  Work([&] {
    store->Use([&] {
      const std::vector<FED_DataDescriptor> blocks = store->List();
      for (const FED_DataDescriptor& step : ListResultSteps(blocks)) rows.push_back({step, {}, {}});
      if (!store->GetReading()) return;
      const StepTimes& times = store->RequireReading().GetTimes();
      for (Row& row : rows) {
        row.time           = times.TimeOf(row.step);
        const int quantity = times.QuantityOf(row.step);
        if (quantity != 0) row.quantity = store->GetKinds().GetName(quantity);
      }
    });
  });
  py::list list;
  for (const Row& row : rows) {
    list.append(py::make_tuple(list.size() + 1, KeyOf(row.step), row.time, row.quantity));
  }
  return list;
}

py::dict GetMesh(const std::shared_ptr<Store>& store, int iteration)
{
  Mesh                  mesh;
  DeckTypes             deckTypes;
  std::vector<NamedSet> sets;
  Work([&] {
    store->Use([&] {
      FED_Database& database = store->RequireReading().Get();
      mesh                   = ReadMesh(database, iteration, store->GetName());
      deckTypes              = DeckTypes(database, iteration);
      sets                   = ReadSets(database, iteration);
    });
  });
  struct Cells
  {
    std::vector<int> ids, nodes, materials, types;
    std::size_t      count = 0;  // nodes of each
  };
  std::map<std::string, int> numbersOfTypes;
  py::list                   typeNames;
  // Elements without a shape may differ in their number of nodes.
  std::map<std::pair<std::string, std::size_t>, Cells> byType;
  for (const Mesh::Element& element : mesh.Elements()) {
    Cells& cells = byType[{TypeNameOf(element.frdType), element.count}];
    cells.count  = element.count;
    cells.ids.push_back(element.id);
    cells.materials.push_back(element.material);
    const std::string type     = deckTypes.NameOf(element.id, element.frdType);
    const auto [number, isNew] = numbersOfTypes.try_emplace(type, static_cast<int>(numbersOfTypes.size()));
    if (isNew) typeNames.append(TextOf(type));
    cells.types.push_back(number->second);
    for (const std::size_t node : mesh.NodesOf(element)) cells.nodes.push_back(mesh.NodeIds()[node]);
  }
  std::vector<double> points;
  points.reserve(3 * mesh.NumNodes());
  for (const Mesh::Point& point : mesh.Points()) points.insert(points.end(), point.begin(), point.end());

  py::list cells;
  for (auto& [type, list] : byType) {
    const std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(list.ids.size()),
                                         static_cast<py::ssize_t>(list.count)};
    cells.append(py::make_tuple(type.first, ArrayOf(std::move(list.ids)), ArrayOf(std::move(list.nodes), shape),
                                ArrayOf(std::move(list.materials)), ArrayOf(std::move(list.types))));
  }
  py::list named;
  for (NamedSet& set : sets)
    named.append(py::make_tuple(TextOf(set.name), set.ofElements, ArrayOf(std::move(set.ids))));
  py::dict result;
  result["points"]    = ArrayOf(std::move(points), {static_cast<py::ssize_t>(mesh.NumNodes()), 3});
  result["point_ids"] = ArrayOf(mesh.NodeIds());
  result["cells"]     = cells;
  result["types"]     = typeNames;
  result["sets"]      = named;
  return result;
}

void RequireSingleIds(std::span<const int> ids)
{
  std::vector<int> sorted(ids.begin(), ids.end());
  std::sort(sorted.begin(), sorted.end());
  const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
  if (twice != sorted.end()) Fail("id " + std::to_string(*twice) + " is given twice, expected each id once");
}

/// The format of a block that was just made.
std::vector<FED_FieldType::Class> FormatOf(const FED_DataBlock& block, const std::string& kind)
{
  const auto*                       column = dynamic_cast<const FED_ColumnDataBlock*>(&block);
  std::vector<FED_FieldType::Class> fields;
  if (column != nullptr)
    for (const int type : column->GetRecordFormat().GetTypes()) fields.push_back(FED_FieldType::GetClass(type));
  if (fields.empty()) Fail("kind " + kind + " has no record format of its own, expected another kind");
  return fields;
}

int ToInteger(double value, const std::string& kind)
{
  if (value != std::floor(value) || value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
    Fail("kind " + kind + " holds integers, found " + FormatNumber(value));
  return static_cast<int>(value);
}

/// Sets one field of a record from the numbers at `values`.
/// @return numbers that it took
std::size_t SetField(FED_DataRecord& record, std::size_t field, FED_FieldType::Class type, const double* values,
                     const std::string& kind)
{
  switch (type) {
    case FED_FieldType::Integer:
      record.SetInteger(field, ToInteger(*values, kind));
      return 1;
    case FED_FieldType::Float:
      record.SetFloat(field, static_cast<float>(*values));
      return 1;
    case FED_FieldType::Double:
      record.SetDouble(field, *values);
      return 1;
    case FED_FieldType::Vector:
      record.SetVector(field, values);
      return 3;
    case FED_FieldType::Tensor:
      record.SetTensor(field, values);
      return 6;
    default:
      Fail("kind " + kind + " holds lists or texts, expected one of numbers");
  }
}

/// Calls write.Begin(block), then write.Put(block, index, i) for each id, whose index is found or made. A block whose
/// writing fails is taken back.
template <typename Writer>
void WriteBlock(Store& store, const FED_DataDescriptor& descriptor, std::span<const int> ids, Writer write)
{
  const int      entity = OnfKind::EntityOf(descriptor);
  FED_DataBlock& block  = store.Replace(descriptor, ids.size());
  try {
    FED_IdMapsPool& pool = store.Target().GetIdMapsPool();
    write.Begin(block);
    for (std::size_t i = 0; i < ids.size(); ++i) {
      if (i % 4096 == 0) ThrowIfInterrupted();
      if (entity < OnfKind::HistoryEntity) {
        write.Put(block, pool.FindOrAddIndex(entity, ids[i]), i);
      } else {
        if (ids[i] < 0) Fail("index is " + std::to_string(ids[i]) + ", expected 0 or more");
        write.Put(block, static_cast<std::size_t>(ids[i]), i);
      }
    }
  } catch (...) {
    store.Drop(descriptor);
    throw;
  }
}

/// Records of numbers, a row of an array each.
class NumberWriter
{
public:
  /// @param values borrowed, shape [ids, width]
  NumberWriter(std::span<const double> values, std::size_t width, const std::string& kind)
      : values_(values), width_(width), kind_(kind)
  {}

  void Begin(FED_DataBlock& block)
  {
    fields_              = FormatOf(block, kind_);
    std::size_t expected = 0;
    for (const FED_FieldType::Class field : fields_) {
      const bool isNumber = field == FED_FieldType::Integer || field == FED_FieldType::Float;
      const auto doubles  = FED_FieldType::GetDoubleCount(field);
      if (!isNumber && doubles == 0) Fail("kind " + kind_ + " holds lists or texts, expected one of numbers");
      expected += isNumber ? 1 : doubles;
    }
    if (width_ != expected)
      Fail("kind " + kind_ + " has " + Counted(expected, "component") + ", found values with " +
           std::to_string(width_));
    isOfDoubles_ = std::all_of(fields_.begin(), fields_.end(),
                               [](FED_FieldType::Class field) { return FED_FieldType::GetDoubleCount(field) != 0; });
    if (!isOfDoubles_) record_ = block.CreateDataRecord();
  }

  void Put(FED_DataBlock& block, std::size_t index, std::size_t i)
  {
    const double* at = values_.data() + i * width_;
    if (isOfDoubles_) return block.SetValuesAt(index, at);
    for (std::size_t field = 1; field <= fields_.size(); ++field)
      at += SetField(*record_, field, fields_[field - 1], at, kind_);
    block.SetRecord(index, *record_);
  }

private:
  std::span<const double>           values_;
  std::size_t                       width_;
  std::string                       kind_;
  std::vector<FED_FieldType::Class> fields_;
  bool                              isOfDoubles_ = false;
  FED_DataRecord*                   record_      = nullptr;  // the block's
};

/// Records of one list.
class ListWriter
{
public:
  /// @param values  borrowed: all lists, one behind the other
  /// @param lengths borrowed, shape [ids]
  ListWriter(std::span<const double> values, std::span<const int> lengths, const std::string& kind)
      : values_(values), lengths_(lengths), kind_(kind)
  {}

  void Begin(FED_DataBlock& block)
  {
    const std::vector<FED_FieldType::Class> fields = FormatOf(block, kind_);
    if (fields.size() != 1 || (fields.front() != FED_FieldType::IntList && fields.front() != FED_FieldType::DoubleList))
      Fail("kind " + kind_ + " does not hold one list a record, expected values of shape (ids, components)");
    field_  = fields.front();
    record_ = block.CreateDataRecord();
  }

  void Put(FED_DataBlock& block, std::size_t index, std::size_t i)
  {
    const auto length = static_cast<std::size_t>(lengths_[i]);
    if (field_ == FED_FieldType::IntList) {
      FED_IntArray list;
      list.Resize(length);
      for (std::size_t k = 0; k < length; ++k) list.GetData()[k] = ToInteger(values_[first_ + k], kind_);
      record_->SetIntList(1, list);
    } else {
      FED_DoubleArray list;
      list.Resize(length);
      std::copy_n(values_.data() + first_, length, list.GetData());
      record_->SetDoubleList(1, list);
    }
    first_ += length;
    block.SetRecord(index, *record_);
  }

private:
  std::span<const double> values_;
  std::span<const int>    lengths_;
  std::string             kind_;
  FED_FieldType::Class    field_  = FED_FieldType::None;
  std::size_t             first_  = 0;        // of the next list
  FED_DataRecord*         record_ = nullptr;  // the block's
};

void Write(const std::shared_ptr<Store>& store, const std::string& kind, const KeyValues& key, const Integers& ids,
           const Doubles& values)
{
  const std::span<const int>    idSpan = SpanOf(ids);
  const std::span<const double> data   = SpanOf(values);
  const auto                    width  = static_cast<std::size_t>(values.shape(1));
  Work([&] {
    store->Use([&] {
      store->Target();
      const FED_DataDescriptor descriptor = MakeDescriptor(*store, kind, key);
      RequireSingleIds(idSpan);
      WriteBlock(*store, descriptor, idSpan, NumberWriter(data, width, kind));
    });
  });
}

void WriteLists(const std::shared_ptr<Store>& store, const std::string& kind, const KeyValues& key, const Integers& ids,
                const Integers& lengths, const Doubles& values)
{
  const std::span<const int>    idSpan    = SpanOf(ids);
  const std::span<const int>    lengthsOf = SpanOf(lengths);
  const std::span<const double> data      = SpanOf(values);
  Work([&] {
    store->Use([&] {
      store->Target();
      const FED_DataDescriptor descriptor = MakeDescriptor(*store, kind, key);
      RequireSingleIds(idSpan);
      WriteBlock(*store, descriptor, idSpan, ListWriter(data, lengthsOf, kind));
    });
  });
}

/// @return the ONF id of a user kind, which is allotted when it is new
int FindUserKind(const std::shared_ptr<Store>& store, const std::string& name, bool ofElements, std::size_t components)
{
  return Work([&] {
    return store->Use([&] {
      if (components != 1 && components != 3 && components != 6)
        Fail("kind '" + name + "' has " + Counted(components, "component") + ", expected 1, 3 or 6");
      if (name.empty()) Fail("a kind without a name, expected one");
      UserKindPool pool(store->Target());
      const int    onf = pool.Find(ofElements ? ElementHundred(components) : NodeHundred(components), name);
      if (onf == 0) Fail("kind '" + name + "': all hundred user kinds of its form are taken");
      return onf;
    });
  });
}

}  // namespace

FED_DataDescriptor MakeDescriptor(Store& store, const std::string& kind, const KeyValues& key)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(store.GetKinds().Resolve(kind)));
  for (const auto& entry : key) {
    const std::string& name  = entry.first;
    const auto&        known = GetIndexKeys();
    const auto         found = std::find_if(known.begin(), known.end(),
                                            [&](const IndexKey& index) { return name == index.key || name == index.name; });
    if (found == known.end())
      Fail("unknown key '" + name + "', expected it, an, lc, sub, inc, layer or i2, i7, i8, i10 to i13");
    descriptor.SetInteger(found->index, entry.second);
  }
  return descriptor;
}

void DefineDatabase(py::module_& module)
{
  py::class_<Store, std::shared_ptr<Store>>(module, "Store", PlainType())
      .def_property_readonly("name", &Store::GetName)
      .def_property_readonly("is_writable", &Store::IsWritable)
      .def_property_readonly("is_closed", &Store::IsClosed)
      .def("close", [](Store& store) { Work([&] { store.Close(); }); })
      .def("commit", [](Store& store) { return Work([&] { return store.Use([&] { return store.Commit(); }); }); })
      .def("select", &Select)
      .def("steps", &ListSteps)
      .def("mesh", &GetMesh)
      .def("write", &Write)
      .def("write_lists", &WriteLists)
      .def("user_kind", &FindUserKind);
  module.def("open", [](const std::string& path, bool writes, const std::string& deck, py::object progress) {
    CallListener listener(std::move(progress));
    auto         store =
        Work([&] { return std::make_shared<Store>(path, writes ? Store::Write : Store::Read, listener, deck); });
    py::list notes;
    for (const std::string& note : listener.GetNotes()) notes.append(TextOf(note));
    return py::make_tuple(std::move(store), std::move(notes));
  });
}

}  // namespace quilon::python
