#pragma once

/// @file
/// The content of a database as text.

#include <cstddef>
#include <map>
#include <string>
#include <vector>

class FED_Database;

namespace quilon_test {

/// All records: "<595 it=1> 7" (see Key(), and the block index) to "[lb 1 2 3]" (see Content()).
std::map<std::string, std::string> Snapshot(const FED_Database& database);

/// @return whether every record of `part` is in `whole` with the same content
bool IsPartOf(const std::map<std::string, std::string>& part, const std::map<std::string, std::string>& whole);

/// @return lines of a RecordingDatabase that write a record and do not fail on demand
std::size_t CountWrites(const std::vector<std::string>& lines);

}  // namespace quilon_test
