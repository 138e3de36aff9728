#pragma once

/// @file
/// The script and the style of pages, as `web/` builds them.

#include <string>

namespace quilon {

struct PageBundle
{
  std::string script;
  std::string style;
  /// What a content security policy lets in: "'sha256-...'" of each.
  std::string scriptHash;
  std::string styleHash;
};

PageBundle LoadPageBundle();

}  // namespace quilon
