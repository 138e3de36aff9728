#pragma once

/// @file
/// Text inside XML.

#include <string>
#include <string_view>

namespace quilon {

/// @return the text with XML's own characters spelled out, for an element or an attribute between double quotes
std::string XmlText(std::string_view text);

}  // namespace quilon
