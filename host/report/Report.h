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
  bool        hasInside    = false;  ///< of solids, so that cuts show sections
  bool        lacksRoom = false;  ///< the inside is left out, which was wanted: it would have made the page too large
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
/// the same bytes. The inside of solids is in it where there is room.
/// @param program name and version of what writes it
/// @throws FED_Failure for a page that is larger than asked, with what would make it smaller; nothing is
/// written
ReportResult WriteReport(const PageRequest& request, const std::filesystem::path& output, const std::string& program,
                         Listener& listener);

/// Writes the page of a comparison: what was compared of the first database, beside the second.
/// @param isAsked as ChoosePageBlocks() takes it
/// @throws FED_Failure as WriteReport() does
ReportResult WriteComparison(const FED_Database& first, const std::string& name, const PageComparison& comparison,
                             bool isAsked, const std::filesystem::path& output, const std::string& program,
                             Listener& listener);

}  // namespace quilon
