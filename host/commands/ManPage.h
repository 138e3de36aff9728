#pragma once

/// @file
/// Man pages, written from what the help is written from.

#include <filesystem>
#include <string>

namespace CLI {
class App;
}

namespace quilon {

/// @return "quilon-deck-check": the name of the page of the command
std::string ManPageName(const CLI::App& command);

/// @return the man page of the program or of one of its commands, in section 1, in the language of man(7)
std::string ManPage(const CLI::App& command);

/// Writes the pages of the command and of all below it into a folder that is made where there is none: NAME.1. Those of
/// the program have quilon-mpi.1 with them.
/// @throws FED_Failure when the system refuses a file
void WriteManPages(const CLI::App& command, const std::filesystem::path& folder);

}  // namespace quilon
