#pragma once

/// @file
/// JSON for values that it has no words for.

#include <cmath>
#include <string>

#include <nlohmann/json.hpp>

#include "text/Format.h"

namespace quilon {

/// Keeps the keys in the order in which they are written.
using Json = nlohmann::ordered_json;

/// @return a number, or a string for what is none: JSON knows neither "nan" nor "inf"
inline Json JsonNumber(double value) { return std::isfinite(value) ? Json(value) : Json(FormatNumber(value)); }

/// @return the text of a value; bytes that are no UTF-8 become U+FFFD
/// @param indent blanks a level, -1 for one line
inline std::string JsonText(const Json& json, int indent = -1)
{
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace quilon
