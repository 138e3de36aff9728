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

/// @return the name without its folders
std::string FileNameOf(const std::string& name);

/// What stands before and behind the blobs of a page.
struct PageFrame
{
  std::string begin;
  std::string end;
};

/// @param program name and version of what writes the page
/// @return what the page's script is told
Json MakePageHeader(const PageRequest& request, const PageSource& source, const std::string& program,
                    Listener& listener);

/// @param requests what the content security policy lets out beside nothing, with a semicolon and a blank behind it;
///                 may be empty
PageFrame MakePageFrame(const std::string& title, const std::string& program, const Json& header,
                        const std::string& requests);

/// Writes a page that needs nothing but itself: its content security policy lets no request out. The same input gives
/// the same bytes.
/// @param program name and version of what writes it
/// @throws FED_Failure for a page that is larger than asked, with what would make it smaller; nothing is
/// written
ReportResult WriteReport(const PageRequest& request, const std::filesystem::path& output, const std::string& program,
                         Listener& listener);

}  // namespace quilon
