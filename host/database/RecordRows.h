#pragma once

/// @file
/// Records as rows of a table.

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "kinds/Component.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_ConstDataRecord;
class FED_ConstIdDataBlock;
class FED_DataBlock;
class FED_Database;
class FED_IdMapsPool;

namespace quilon {

class KindTable;
class Selection;

/// A value of a row.
using Cell = std::variant<int, float, double, std::string, std::vector<int>, std::vector<double>>;

/// How the values of a row are written.
struct CellStyle
{
  std::size_t listLimit = static_cast<std::size_t>(-1);  ///< of a longer list so many entries, and dots for the rest
  bool        isRounded = false;  ///< to six digits; else the shortest form that reads back to the same bits
};

std::string FormatCell(const Cell& cell, const CellStyle& style);

/// Writes it behind a text.
void AppendCell(std::string& text, const Cell& cell, const CellStyle& style);

/// What is done with the values of a record before components are taken of them.
struct RecordTurn
{
  /// @param part     0 of a record that is one value; of a list the integration point or node, from 0
  /// @param numParts 1, or how many the list has
  /// @param values   of the record or part, in stored order; may be changed
  /// @param behind   receives a cell for each of the columns
  std::function<void(int id, std::size_t part, std::size_t numParts, std::span<double> values,
                     std::vector<Cell>& behind)>
                           turn;
  std::vector<std::string> columns;  ///< behind those of the components
};

/// How the records of a block read as rows. Most records are one row; integration points and nodal values of elements
/// are a row each.
class RecordRows
{
public:
  /// @param block    borrowed
  /// @param database borrowed; its node lists (595) of the block's iteration tell which node a value of a list by nodes
  ///                 belongs to
  /// @param components of the block's kind, to be shown instead of the values that are stored; empty: these
  /// @param turn       for components alone; empty: nothing
  RecordRows(const FED_DataBlock& block, const KindTable& kinds, const FED_Database& database,
             std::vector<Component> components = {}, RecordTurn turn = {});
  RecordRows(const RecordRows&)            = delete;
  RecordRows& operator=(const RecordRows&) = delete;
  ~RecordRows();

  /// Names of the columns, the id ("id", or "index" where a block has no ids) first.
  const std::vector<std::string>& GetColumns() const noexcept { return columns_; }

  /// @param field     counts from 1
  /// @param component counts from 0
  /// @return the name of one value of a record: "xx", "nodes[3]", "point 2 xx"
  std::string GetComponentName(std::size_t field, std::size_t component) const;

  /// @return the record's rows, a cell for each column
  std::vector<std::vector<Cell>> GetRows(int id, const FED_ConstDataRecord& record) const;
  /// The same for who reads record after record.
  /// @param rows receives them
  void GetRows(int id, const FED_ConstDataRecord& record, std::vector<std::vector<Cell>>& rows) const;

private:
  enum class Layout
  {
    Fields,   ///< one row, the fields side by side
    Points,   ///< (count, six doubles a point): a row per point
    Triples,  ///< three doubles per node of an element: a row per node, with its id where it is known
  };

  /// The columns of one field.
  struct FieldColumns
  {
    std::size_t first;
    bool        isList;
  };

  std::vector<int>               NodesOf(int element) const;
  std::vector<std::vector<Cell>> GetGroupRows(int id, const FED_ConstDataRecord& record) const;
  void AppendComponents(int id, std::size_t part, std::size_t numParts, std::span<double> values,
                        std::vector<Cell>& row) const;

  Layout                                layout_ = Layout::Fields;
  std::vector<std::string>              columns_;
  std::unique_ptr<FED_ConstIdDataBlock> nodeLists_;   // of layout Triples, null where the database has none
  std::vector<FieldColumns>             fields_;      // shape [number of fields]; empty in the layouts of groups
  std::vector<Component>                components_;  // empty: all that is stored
  RecordTurn                            turn_;
};

/// @return the components of a kind that a selection asks for; nothing when it asks for none
std::vector<Component> ComponentsOf(const Selection& selection, const FED_DataDescriptor& descriptor);

/// A record's id, or its index in a block without ids.
struct RecordKey
{
  int         id;
  std::size_t index;
};

/// @return the keys of all records, by ascending id
std::vector<RecordKey> GetRecordKeys(const FED_DataBlock& block, const FED_IdMapsPool& pool);

}  // namespace quilon
