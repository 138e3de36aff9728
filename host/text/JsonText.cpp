#include "text/JsonText.h"

#include <algorithm>
#include <charconv>
#include <type_traits>

#include <nlohmann/json.hpp>

namespace quilon {

namespace {

using Writer = nlohmann::ordered_json;

bool IsPair(const Json& json)
{
  const auto* const array = std::get_if<Json::Array>(&json.Get());
  return array != nullptr && array->size() == 2 && std::holds_alternative<std::string>(array->front().Get());
}

Writer ToWriter(const Json& json)
{
  return std::visit(
      [](const auto& value) -> Writer {
        using T = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<T, Json::Array>) {
          Writer array = Writer::array();
          for (const Json& element : value) array.push_back(ToWriter(element));
          return array;
        } else if constexpr (std::is_same_v<T, Json::Object>) {
          Writer object = Writer::object();
          for (const auto& [key, element] : value) object[key] = ToWriter(element);
          return object;
        } else {
          return Writer(value);
        }
      },
      json.Get());
}

}  // namespace

Json::Json(float value)
{
  const std::string digits = FormatNumber(value);
  double            number = 0.0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  value_ = number;
}

Json::Json(std::initializer_list<Json> elements)
{
  if (!std::all_of(elements.begin(), elements.end(), IsPair)) {
    value_ = Array(elements);
    return;
  }
  Object object;
  for (const Json& element : elements) {
    const Array& pair = std::get<Array>(element.value_);
    object.emplace_back(std::get<std::string>(pair.front().value_), pair.back());
  }
  value_ = std::move(object);
}

Json& Json::operator[](std::string_view key)
{
  if (std::holds_alternative<std::nullptr_t>(value_)) value_ = Object();
  Object&    object = std::get<Object>(value_);
  const auto found =
      std::find_if(object.begin(), object.end(), [key](const auto& element) { return element.first == key; });
  return found != object.end() ? found->second : object.emplace_back(key, Json()).second;
}

void Json::push_back(Json element)
{
  if (std::holds_alternative<std::nullptr_t>(value_)) value_ = Array();
  std::get<Array>(value_).push_back(std::move(element));
}

std::string JsonText(const Json& json, int indent)
{
  return ToWriter(json).dump(indent, ' ', false, Writer::error_handler_t::replace);
}

}  // namespace quilon
