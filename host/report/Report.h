#pragma once

/// @file
/// Results as one page for a browser.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "report/PageSource.h"

namespace quilon {

/// What a page holds.
struct ReportResult
{
  std::size_t bytes        = 0;
  std::size_t numSteps     = 0;
  std::size_t numPoints    = 0;
  std::size_t numTriangles = 0;
};

/// Writes a page that needs nothing but itself: its content security policy lets no request out. The same input gives
/// the same bytes.
/// @param program name and version of what writes it
/// @throws FED_Failure for a page that is larger than asked, with what would make it smaller; nothing is
/// written
ReportResult WriteReport(const PageRequest& request, const std::filesystem::path& output, const std::string& program,
                         Listener& listener);

}  // namespace quilon
