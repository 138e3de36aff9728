#pragma once

/// @file
/// Record formats: field types and the strings that spell them.

#include "quilon_language.h"

#include <cstddef>
#include <string>
#include <vector>

#include "quilon_contract_export.h"

class FED_ConstDataRecord;

/// The field types of a block's records. A plain value; one without fields stands for "not known yet".
///
/// Strings: `I` integer (code 1), `i` entity id (10), `F` float (3), `D` double (2), `d` quantity with a unit (11),
/// `S` string (4), `V` three doubles (5), `T` six doubles (6), `Lb` integer list (7), `lb` list of entity ids (8),
/// `Db` double list (9). Any other `b` only separates, so "IIbDbLbLb" is integer, integer, double list, integer list,
/// integer list.
class QUILON_DB_CONNECTOR_API FED_RecordFormat
{
public:
  FED_RecordFormat() = default;

  /// @param types field type codes
  /// @throws FED_Failure for a code that no letter spells
  explicit FED_RecordFormat(std::vector<int> types);

  /// @throws FED_Failure for a string that does not parse; it names the string and the position, which counts from 1
  static FED_RecordFormat Parse(const std::string& text);

  /// @return the format that a record's fields have
  static FED_RecordFormat FromRecord(const FED_ConstDataRecord& record);

  bool                    IsEmpty() const noexcept { return types_.empty(); }
  const std::vector<int>& GetTypes() const noexcept { return types_; }

  /// @return the doubles of a record when every field is of doubles (D, d, V, T), 0 otherwise
  std::size_t GetDoubleCount() const noexcept;

  /// @return the shortest string that parses to this format; empty without fields
  std::string ToString() const;

  /// Same codes; the two of a pair differ.
  bool operator==(const FED_RecordFormat& other) const noexcept { return types_ == other.types_; }

private:
  std::vector<int> types_;
};

/// What a field type code holds, whichever code of a pair it is.
namespace FED_FieldType {

enum Class : int
{
  None,
  Integer,
  Float,
  Double,
  String,
  Vector,
  Tensor,
  IntList,
  DoubleList
};

/// @return None for a code that is no field type
QUILON_DB_CONNECTOR_API Class GetClass(int type) noexcept;

/// @return "integer list" and the like
QUILON_DB_CONNECTOR_API const char* GetName(Class fieldClass) noexcept;

/// @return 1, 3 or 6 for Double, Vector and Tensor, 0 for all others
QUILON_DB_CONNECTOR_API std::size_t GetDoubleCount(Class fieldClass) noexcept;

}  // namespace FED_FieldType
