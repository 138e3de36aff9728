#include "matrix/MatrixBlocks.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

#include <bundled/OnfCatalogue.h>
#include <bundled/OnfKinds.h>

#include "database/ScratchRecord.h"
#include "FEM_ResultUtil.h"
#include "matrix/MatrixEntries.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::matrix {

namespace {

constexpr int kDoubleList = 9;  // type code of a record field

bool ReadWhole(std::string_view text, int& number)
{
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

int ParseKind(std::string_view kind, int otherwise, UserKindPool& kinds)
{
  int onf = 0;
  if (kind.empty()) {
    if (otherwise == 0) Fail("nothing says what the matrix is, expected --as KIND");
    return otherwise;
  }
  if (ReadWhole(kind, onf)) {
    if (!OnfKind::HoldsMatrices(onf))
      Fail("kind " + std::to_string(onf) + " holds no sparse matrices, expected 593, 594 or 1900 to 1999");
    return onf;
  }
  if (kind == "stiffness") return OnfKind::StiffnessMatrix;
  if (kind == "mass") return OnfKind::MassMatrix;
  if (const std::optional<FED_OnfId> known = OnfCatalogue::FindIdByName(std::string(kind))) {
    if (OnfKind::HoldsMatrices(*known)) return *known;
    Fail("kind '" + std::string(kind) + "' (" + std::to_string(*known) +
         ") holds no sparse matrices, expected 593, 594, 1900 to 1999 or a new name");
  }
  if (kind.find(',') != std::string_view::npos)
    Fail("kind '" + std::string(kind) + "' has a comma, which selections part kinds by, expected a name without");
  onf = kinds.Find(UserMatrix, std::string(kind));
  if (onf == 0) Fail("no id is left for kind '" + std::string(kind) + "', expected one of 1900 to 1999 to be free");
  return onf;
}

void SetKey(FED_DataDescriptor& descriptor, std::string_view entry)
{
  const std::size_t equals = entry.find('=');
  int               value  = 0;
  if (equals == std::string_view::npos || !ReadWhole(Trimmed(entry.substr(equals + 1)), value))
    Fail("'" + std::string(entry) + "' is no key with a value, expected KEY=NUMBER");
  const std::string_view name = Trimmed(entry.substr(0, equals));
  for (const IndexKey& key : GetIndexKeys())
    if (name == key.key || name == key.name) return descriptor.SetInteger(key.index, value);
  Fail("'" + std::string(name) + "' is no key, expected one such as it, an, lc, sub or inc");
}

std::vector<double> DenseValues(const RowView& rows)
{
  std::vector<double> values(static_cast<std::size_t>(rows.NumRows() * rows.NumColumns()));
  for (std::int64_t row = 0; row < rows.NumRows(); ++row)
    for (std::int64_t i = rows.Begin(row); i < rows.Begin(row + 1); ++i)
      values[static_cast<std::size_t>(row * rows.NumColumns() + rows.Column(i))] = rows.Value(i);
  return values;
}

}  // namespace

FED_DataDescriptor ParseTarget(std::string_view text, int otherwise, UserKindPool& kinds)
{
  const std::size_t  at = text.find('@');
  FED_DataDescriptor target(0, static_cast<FED_OnfId>(ParseKind(Trimmed(text.substr(0, at)), otherwise, kinds)));
  if (at == std::string_view::npos) return target;
  for (std::string_view rest = text.substr(at + 1);;) {
    const std::size_t comma = rest.find(',');
    SetKey(target, Trimmed(rest.substr(0, comma)));
    if (comma == std::string_view::npos) return target;
    rest.remove_prefix(comma + 1);
  }
}

FED_DataDescriptor DofDescriptor(const FED_DataDescriptor& matrix, UserKindPool& kinds)
{
  FED_DataDescriptor descriptor = matrix;
  descriptor.SetInteger(FED_DataDescriptor::OnfId, ParseKind(kDofKindName, 0, kinds));
  return descriptor;
}

std::vector<std::size_t> MatrixIndices(const FED_DataBlock& block)
{
  std::vector<std::size_t> indices;
  for (auto index = block.Begin(); index != block.End(); ++index) indices.push_back(*index);
  return indices;
}

void StoreElementMatrix(FED_Database& database, const FED_DataDescriptor& descriptor, int element, int pair,
                        bool isSwapped, const FED_YaleMatrix& matrix, const std::vector<Dof>& dofs,
                        const std::string& name)
{
  // Stored in full, so the square of its rows counts.
  constexpr std::int64_t kMostRows = 4096;

  const RowView rows(matrix, name);
  if (rows.NumRows() != rows.NumColumns() || rows.NumRows() > kMostRows)
    Fail(name + ": " + std::to_string(rows.NumRows()) + " x " + std::to_string(rows.NumColumns()) +
         ", expected the square matrix of an element, of at most " + std::to_string(kMostRows) + " rows");
  std::vector<int> description;
  for (const Dof& dof : dofs) {
    description.push_back(dof.node);
    description.push_back(dof.direction);
  }
  const bool isSymmetric = FindSymmetry(rows.List(), true) == Symmetry::Symmetric;

  auto [info, values] = FEM_ResultUtil::MatricesOnfLoc(descriptor).pairs[static_cast<std::size_t>(pair)];
  if (isSwapped) std::swap(info, values);
  FEM_ResultUtil::SetElementMatrixInfo(database, info, element, {isSymmetric}, description);
  FEM_ResultUtil::SetResultMatrix(database, values, element, static_cast<int>(rows.NumRows()), DenseValues(rows));
}

bool HoldsElementMatrix(const FED_Database& database, const FED_DataDescriptor& descriptor, int element)
{
  const int onf = descriptor.GetInteger(FED_DataDescriptor::OnfId);
  if (!OnfKind::HoldsElementMatrices(onf)) return false;
  const FED_DataBlock&       block = database.GetConstDataBlock(descriptor);
  const FED_ConstIdDataBlock view(block, database.GetIdMapsPool());
  if (!view.HasRecord(element)) return false;
  const ScratchRecord record(block);
  return record->GetFieldCount() == 2 && record->GetFieldType(2) == kDoubleList;
}

FED_YaleMatrix LoadElementMatrix(const FED_Database& database, const FED_DataDescriptor& descriptor, int element,
                                 const std::string& name)
{
  const FED_ConstIdDataBlock view(database.GetConstDataBlock(descriptor), database.GetIdMapsPool());
  FED_ConstIdDataRecord&     record = view.CreateConstIdDataRecord();
  view.GetRecord(element, record);
  const int       size = record.GetDataRecord().GetInteger(1);
  FED_DoubleArray values;
  record.GetDataRecord().GetDoubleList(2, values);
  const auto numRows = static_cast<std::size_t>(size < 0 ? 0 : size);
  if (size < 0 || values.GetSize() != numRows * numRows)
    Fail(name + ": " + Counted(values.GetSize(), "value") + " in a matrix of " + std::to_string(size) +
         " rows, expected its rows squared");

  FED_IntArray rowPointers;
  FED_IntArray columns;
  rowPointers.Resize(numRows + 1);
  columns.Resize(values.GetSize());
  for (std::size_t row = 0; row <= numRows; ++row) rowPointers.GetData()[row] = static_cast<int>(row * numRows);
  for (std::size_t i = 0; i < columns.GetSize(); ++i) columns.GetData()[i] = static_cast<int>(i % numRows);
  FED_YaleMatrix matrix;
  matrix.SetInternalData(numRows, numRows, std::move(values), std::move(rowPointers), std::move(columns));
  return matrix;
}

}  // namespace quilon::matrix
