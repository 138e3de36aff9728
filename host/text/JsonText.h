#pragma once

/// @file
/// JSON as a value. The library that writes it is seen by one source alone.

#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "text/Format.h"

namespace quilon {

/// A JSON value. Objects keep their keys in the order in which they are set.
class Json
{
public:
  using Array  = std::vector<Json>;
  using Object = std::vector<std::pair<std::string, Json>>;
  using Value  = std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object>;

  /// null
  Json() = default;
  Json(std::nullptr_t) {}
  Json(bool value) : value_(value) {}
  template <std::signed_integral T>
  Json(T value) : value_(static_cast<std::int64_t>(value))
  {}
  template <std::unsigned_integral T>
  Json(T value) : value_(static_cast<std::uint64_t>(value))
  {}
  Json(double value) : value_(value) {}
  /// The number that has the digits in which a float is written: 0.1 and not 0.10000000149.
  Json(float value);
  Json(const char* text) : value_(std::string(text)) {}
  Json(std::string_view text) : value_(std::string(text)) {}
  Json(std::string text) : value_(std::move(text)) {}
  /// An array of what a container holds.
  template <typename Container>
  requires(!std::convertible_to<const Container&, std::string_view> &&
           requires(const Container& list) {
             list.begin();
             list.end();
           }) Json(const Container& list)
      : value_(Array(list.begin(), list.end()))
  {}
  /// An object where every element is a pair that begins with a text, as {{"key", 1}, {"other", 2}}; else an array.
  Json(std::initializer_list<Json> elements);

  static Json array(std::initializer_list<Json> elements = {}) { return Json(Value(Array(elements))); }
  static Json object() { return Json(Value(Object())); }

  /// The value of a key, which is added, as null, when it is not there. A null becomes an object.
  Json& operator[](std::string_view key);
  /// Adds to an array. A null becomes one.
  void push_back(Json element);

  const Value& Get() const noexcept { return value_; }

private:
  explicit Json(Value value) : value_(std::move(value)) {}

  Value value_;
};

/// @return a number, or a string for what is none: JSON knows neither "nan" nor "inf"
inline Json JsonNumber(double value) { return std::isfinite(value) ? Json(value) : Json(FormatNumber(value)); }
inline Json JsonNumber(float value) { return std::isfinite(value) ? Json(value) : Json(FormatNumber(value)); }

/// @return the text of a value; bytes that are no UTF-8 become U+FFFD
/// @param indent blanks a level, -1 for one line
std::string JsonText(const Json& json, int indent = -1);

}  // namespace quilon
