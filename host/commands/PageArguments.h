#pragma once

/// @file
/// Arguments of the commands that make a page of results.

#include <string>

#include "commands/SelectionOptions.h"

class FED_Database;
namespace CLI {
class App;
}

namespace quilon {

class Console;
struct PageRequest;
struct ReportResult;

struct PageArguments
{
  std::string      database;
  SelectionOptions selection;
};

/// Adds DB, SELECTION, --steps and --time.
/// @param arguments borrowed until the command line is read
void AddPageArguments(CLI::App& app, PageArguments& arguments);

/// @param database what arguments.database names; the request borrows it
/// @return a request for all steps with all digits
/// @throws FED_Failure when the selection, the steps or the times are wrong, or have no values of nodes or elements
PageRequest MakePageRequest(const PageArguments& arguments, const FED_Database& database);

/// Tells where a page has no inside for want of room.
void NoteInside(const ReportResult& result, const std::string& page, Console& console);

}  // namespace quilon
