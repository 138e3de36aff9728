#pragma once

/// @file
/// Rows of values that print themselves in every form of a table.

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "terminal/TableForm.h"
#include "text/JsonText.h"

namespace quilon {

class Output;

/// A number of bytes: with a unit for people, in digits for programs.
struct ByteCount
{
  std::uint64_t bytes = 0;
};

/// A value of a sheet. One without a value is "-" in tables, an empty cell in CSV and null in JSON.
class SheetValue
{
public:
  using Value = std::variant<std::monostate, std::int64_t, std::uint64_t, double, float, ByteCount, std::string>;

  SheetValue() = default;
  template <std::signed_integral T>
  SheetValue(T value) : value_(static_cast<std::int64_t>(value))
  {}
  template <std::unsigned_integral T>
  SheetValue(T value) : value_(static_cast<std::uint64_t>(value))
  {}
  SheetValue(double value) : value_(value) {}
  SheetValue(float value) : value_(value) {}
  SheetValue(ByteCount value) : value_(value) {}
  SheetValue(const char* value) : value_(std::string(value)) {}
  SheetValue(std::string value) : value_(std::move(value)) {}

  const Value& Get() const noexcept { return value_; }
  bool         IsEmpty() const noexcept { return std::holds_alternative<std::monostate>(value_); }

private:
  Value value_;
};

struct SheetColumn
{
  enum Form
  {
    Everywhere,
    Tables,  ///< not in JSON
    Json     ///< not in tables
  };

  std::string name;  ///< header of tables, key of JSON
  Form        form = Everywhere;
  /// Left out of a table where no row has a value, and of each JSON object without one.
  bool isOptional = false;
};

/// A report of rows, small enough to be held. Columns whose values are texts stand to the left.
class Sheet
{
public:
  explicit Sheet(std::vector<SheetColumn> columns) : columns_(std::move(columns)) {}

  /// @param values one for each column
  void Row(std::vector<SheetValue> values) { rows_.push_back(std::move(values)); }

  /// @return an array with an object a row
  quilon::Json ToJson() const;

  /// Prints a table: aligned (numbers rounded), tab-separated or CSV.
  void PrintTable(Output& output, const TableForm& form) const;

private:
  bool HasValues(std::size_t column) const;
  bool IsText(std::size_t column) const;

  std::vector<SheetColumn>             columns_;
  std::vector<std::vector<SheetValue>> rows_;
};

/// Prints a JSON value as a document, indented.
void PrintJson(Output& output, const Json& json);

}  // namespace quilon
