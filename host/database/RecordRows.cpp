#include "database/RecordRows.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <type_traits>
#include <utility>

#include <bundled/FED_RecordFormat.h>
#include <bundled/OnfKinds.h>

#include "database/ScratchRecord.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "selection/Selection.h"
#include "text/Format.h"

namespace quilon {

namespace {

using Names = std::vector<std::string>;

const Names kTensorNames    = {"xx", "yy", "zz", "xy", "yz", "zx"};
const Names kVectorNames    = {"x", "y", "z"};
const Names kPrincipalNames = {"p1", "p2", "p3"};

/// Names of the fields' columns, nothing where the fields have none of their own.
Names FieldNames(int onf, const std::vector<FED_FieldType::Class>& fields, const std::string& kind)
{
  using namespace FED_FieldType;
  using Classes = std::vector<Class>;
  if (fields == Classes{Tensor}) return kTensorNames;
  if (fields == Classes{Vector}) return OnfKind::TensorOf(onf) != 0 ? kPrincipalNames : kVectorNames;
  const Names& own = OnfKind::FieldNamesOf(onf);
  if (own.size() == fields.size() && !own.empty()) return own;
  if (fields == Classes{Integer, Integer, DoubleList, IntList, IntList})
    return OnfKind::FieldNamesOf(OnfKind::StiffnessMatrix);
  if (fields == Classes{Double}) return {onf == FED_OnfId_ScalarHistory ? kind : "value"};
  if (fields.size() == 1 && fields.front() != None) return {"value"};
  return {};
}

/// Numbered names: "field1", and "field2.xx" where a field has components.
Names NumberedNames(const std::vector<FED_FieldType::Class>& fields)
{
  Names names;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string name = "field" + std::to_string(i + 1);
    if (fields[i] == FED_FieldType::Vector) {
      for (const std::string& component : kVectorNames) names.push_back(name + '.' + component);
    } else if (fields[i] == FED_FieldType::Tensor) {
      for (const std::string& component : kTensorNames) names.push_back(name + '.' + component);
    } else {
      names.push_back(name);
    }
  }
  return names;
}

std::vector<int> IntegersOf(const FED_ConstDataRecord& record, std::size_t field)
{
  FED_IntArray list;
  record.GetIntList(field, list);
  return std::vector<int>(list.GetData(), list.GetData() + list.GetSize());
}

std::vector<double> DoublesOf(const FED_ConstDataRecord& record, std::size_t field)
{
  FED_DoubleArray list;
  record.GetDoubleList(field, list);
  return std::vector<double>(list.GetData(), list.GetData() + list.GetSize());
}

/// @return how many doubles a field has, none one of another type
std::size_t ReadDoubles(const FED_ConstDataRecord& record, std::size_t field, double (&values)[6])
{
  switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
    case FED_FieldType::Double:
      values[0] = record.GetDouble(field);
      return 1;
    case FED_FieldType::Vector:
      record.GetVector(field, values);
      return 3;
    case FED_FieldType::Tensor:
      record.GetTensor(field, values);
      return 6;
    default:
      return 0;
  }
}

void AppendField(const FED_ConstDataRecord& record, std::size_t field, std::vector<Cell>& row)
{
  double values[6];
  switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
    case FED_FieldType::Integer:
      row.emplace_back(record.GetInteger(field));
      break;
    case FED_FieldType::Float:
      row.emplace_back(record.GetFloat(field));
      break;
    case FED_FieldType::String:
      row.emplace_back(record.GetString(field));
      break;
    case FED_FieldType::IntList:
      row.emplace_back(IntegersOf(record, field));
      break;
    case FED_FieldType::DoubleList:
      row.emplace_back(DoublesOf(record, field));
      break;
    case FED_FieldType::Double:
    case FED_FieldType::Vector:
    case FED_FieldType::Tensor: {
      const std::size_t count = ReadDoubles(record, field, values);
      row.insert(row.end(), values, values + count);
      break;
    }
    case FED_FieldType::None:
      row.emplace_back(std::string());
      break;
  }
}

/// A row per group of values: id, number of the group from 1, values. A group that the list ends in has fewer values
/// and empty cells behind them.
std::vector<std::vector<Cell>> Grouped(int id, const std::vector<double>& values, std::size_t groupSize)
{
  std::vector<std::vector<Cell>> rows;
  for (std::size_t first = 0; first < values.size(); first += groupSize) {
    std::vector<Cell> row = {id, static_cast<int>(first / groupSize + 1)};
    for (std::size_t i = first; i < first + groupSize; ++i)
      row.push_back(i < values.size() ? Cell(values[i]) : Cell(std::string()));
    rows.push_back(std::move(row));
  }
  return rows;
}

struct CellAppender
{
  const CellStyle& style;
  std::string&     text;

  void operator()(int value) const
  {
    char       digits[16];
    const auto written = std::to_chars(std::begin(digits), std::end(digits), value);
    text.append(digits, static_cast<std::size_t>(written.ptr - digits));
  }
  void operator()(float value) const
  {
    if (style.isRounded)
      AppendRounded(text, static_cast<double>(value));
    else
      AppendNumber(text, value);
  }
  void operator()(double value) const
  {
    if (style.isRounded)
      AppendRounded(text, value);
    else
      AppendNumber(text, value);
  }
  void operator()(const std::string& value) const { text += value; }
  template <typename T>
  void operator()(const std::vector<T>& values) const
  {
    text += '[' + std::to_string(values.size()) + ']';
    for (std::size_t i = 0; i < values.size() && i < style.listLimit; ++i) {
      text += ' ';
      (*this)(values[i]);
    }
    if (values.size() > style.listLimit) text += " ...";
  }
};

}  // namespace

void AppendCell(std::string& text, const Cell& cell, const CellStyle& style)
{
  std::visit(CellAppender{style, text}, cell);
}

std::string FormatCell(const Cell& cell, const CellStyle& style)
{
  std::string text;
  AppendCell(text, cell, style);
  return text;
}

RecordRows::RecordRows(const FED_DataBlock& block, const KindTable& kinds, const FED_Database& database,
                       std::vector<Component> components, RecordTurn turn)
    : components_(std::move(components)), turn_(std::move(turn))
{
  const int                         onf = block.GetDescriptor().GetInteger(FED_DataDescriptor::OnfId);
  std::vector<FED_FieldType::Class> fields;
  const ScratchRecord               scratch(block);
  for (std::size_t field = 1; field <= scratch->GetFieldCount(); ++field)
    fields.push_back(FED_FieldType::GetClass(scratch->GetFieldType(field)));

  columns_ = {OnfKind::HasIds(onf) ? "id" : "index"};
  Names names;
  using Classes = std::vector<FED_FieldType::Class>;
  if (OnfKind::ListPeriodOf(onf) == 6 && fields == Classes{FED_FieldType::Integer, FED_FieldType::DoubleList}) {
    layout_ = Layout::Points;
    columns_.emplace_back("point");
    names = kTensorNames;
  } else if (OnfKind::ListPeriodOf(onf) == 3 && fields == Classes{FED_FieldType::DoubleList}) {
    layout_ = Layout::Triples;
    columns_.emplace_back("position");
    const FED_DataDescriptor lists(block.GetDescriptor().GetInteger(FED_DataDescriptor::Iteration),
                                   FED_OnfId_ElementNodes);
    if (database.HasDataBlock(lists)) {
      nodeLists_ = std::make_unique<FED_ConstIdDataBlock>(database.GetConstDataBlock(lists), database.GetIdMapsPool());
      columns_.emplace_back("node");
    }
    names = kVectorNames;
  } else {
    names = FieldNames(onf, fields, kinds.GetName(block.GetDescriptor()));
    if (names.empty()) names = NumberedNames(fields);
    std::size_t column = columns_.size();
    for (const FED_FieldType::Class field : fields) {
      fields_.push_back({column, field == FED_FieldType::IntList || field == FED_FieldType::DoubleList});
      column += std::max<std::size_t>(1, FED_FieldType::GetDoubleCount(field));
    }
  }
  if (!components_.empty()) {
    names.clear();
    for (const Component& component : components_) names.push_back(component.GetName());
    names.insert(names.end(), turn_.columns.begin(), turn_.columns.end());
  }
  columns_.insert(columns_.end(), names.begin(), names.end());
}

RecordRows::~RecordRows() = default;

std::string RecordRows::GetComponentName(std::size_t field, std::size_t component) const
{
  const auto grouped = [&](const Names& names) {
    return columns_[1] + ' ' + std::to_string(component / names.size() + 1) + ' ' + names[component % names.size()];
  };
  if (layout_ == Layout::Points) return field == 2 ? grouped(kTensorNames) : "points";
  if (layout_ == Layout::Triples) return grouped(kVectorNames);
  // Of two blocks that are compared the other may have more fields.
  if (field == 0 || field > fields_.size()) return "field" + std::to_string(field);
  const FieldColumns& columns = fields_[field - 1];
  if (columns.isList) return columns_[columns.first] + '[' + std::to_string(component + 1) + ']';
  return columns_[std::min(columns.first + component, columns_.size() - 1)];
}

void RecordRows::AppendComponents(int id, std::size_t part, std::size_t numParts, std::span<double> values,
                                  std::vector<Cell>& row) const
{
  std::vector<Cell> behind;
  if (turn_.turn) turn_.turn(id, part, numParts, values, behind);
  for (const Component& component : components_)
    row.push_back(values.size() == component.NumValues() ? Cell(component.Evaluate(values)) : Cell(std::string()));
  row.insert(row.end(), behind.begin(), behind.end());
}

/// Rows of points, or of the nodes of elements.
std::vector<std::vector<Cell>> RecordRows::GetGroupRows(int id, const FED_ConstDataRecord& record) const
{
  std::vector<double>    values    = DoublesOf(record, layout_ == Layout::Points ? 2 : 1);
  const std::size_t      groupSize = layout_ == Layout::Points ? kTensorNames.size() : kVectorNames.size();
  const std::vector<int> nodes     = nodeLists_ ? NodesOf(id) : std::vector<int>();
  if (components_.empty()) {
    std::vector<std::vector<Cell>> rows = Grouped(id, values, groupSize);
    for (std::size_t n = 0; nodeLists_ && n < rows.size(); ++n)
      rows[n].insert(rows[n].begin() + 2, n < nodes.size() ? Cell(nodes[n]) : Cell(std::string()));
    return rows;
  }
  std::vector<std::vector<Cell>> rows;
  for (std::size_t first = 0; first < values.size(); first += groupSize) {
    const std::size_t  place = first / groupSize;
    std::vector<Cell>& row   = rows.emplace_back();
    row                      = {id, static_cast<int>(place + 1)};
    if (nodeLists_) row.push_back(place < nodes.size() ? Cell(nodes[place]) : Cell(std::string()));
    AppendComponents(id, place, values.size() / groupSize,
                     std::span(values).subspan(first, std::min(groupSize, values.size() - first)), row);
  }
  return rows;
}

std::vector<std::vector<Cell>> RecordRows::GetRows(int id, const FED_ConstDataRecord& record) const
{
  std::vector<std::vector<Cell>> rows;
  GetRows(id, record, rows);
  return rows;
}

void RecordRows::GetRows(int id, const FED_ConstDataRecord& record, std::vector<std::vector<Cell>>& rows) const
{
  if (layout_ != Layout::Fields) {
    rows = GetGroupRows(id, record);
    return;
  }
  rows.resize(1);
  std::vector<Cell>& row = rows.front();
  row.clear();
  row.emplace_back(id);
  if (components_.empty()) {
    for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) AppendField(record, field, row);
    return;
  }
  double            values[6];
  const std::size_t count = ReadDoubles(record, 1, values);
  AppendComponents(id, 0, 1, std::span(values, count), row);
}

/// @return nothing for an element that no list is known of
std::vector<int> RecordRows::NodesOf(int element) const
{
  if (!nodeLists_->HasRecord(element)) return {};
  FED_ConstIdDataRecord& record = nodeLists_->CreateConstIdDataRecord();
  nodeLists_->GetRecord(element, record);
  FED_IntArray nodes;
  record.GetIntList(1, nodes);
  nodeLists_->DeleteIdDataRecord(record);
  return std::vector<int>(nodes.GetData(), nodes.GetData() + nodes.GetSize());
}

std::vector<Component> ComponentsOf(const Selection& selection, const FED_DataDescriptor& descriptor)
{
  // Histories are asked for by what they hold.
  const int              onf      = descriptor.GetInteger(FED_DataDescriptor::OnfId);
  const int              quantity = GetQuantity(descriptor);
  std::vector<Component> components;
  for (const int kind : {onf, quantity})
    for (const std::string& name : kind == 0 ? Names() : selection.ComponentsOf(kind))
      components.emplace_back(name, kind);
  return components;
}

std::vector<RecordKey> GetRecordKeys(const FED_DataBlock& block, const FED_IdMapsPool& pool)
{
  const FED_ConstIdDataBlock view(block, pool);
  const bool                 hasIds = OnfKind::HasIds(block.GetDescriptor().GetInteger(FED_DataDescriptor::OnfId));
  std::vector<RecordKey>     keys;
  for (auto index = block.Begin(); index != block.End(); ++index) {
    ThrowIfInterrupted();
    keys.push_back({hasIds ? view.GetId(*index) : static_cast<int>(*index), *index});
  }
  std::sort(keys.begin(), keys.end(), [](const RecordKey& a, const RecordKey& b) { return a.id < b.id; });
  return keys;
}

}  // namespace quilon
