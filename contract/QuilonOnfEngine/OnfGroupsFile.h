#pragma once

/// @file
/// Groups of nodes and elements that a user names in a file.

#include "quilon_language.h"

#include <string>
#include <vector>

#include "quilon_contract_export.h"

/// The groups of an ONF groups file, in its order. The library hands them on by reference and never looks inside.
class QUILON_ONF_ENGINE_API OnfGroupsFile
{
public:
  enum EntityKind : int
  {
    Nodes    = 0,
    Elements = 1
  };

  /// The ids first, first + step, ... up to last. One id is a range of its own, with first and last equal.
  struct Range
  {
    int first = 0;  ///< greater than 0
    int last  = 0;  ///< not less than first
    int step  = 1;  ///< greater than 0
  };

  struct Group
  {
    EntityKind         kind = Nodes;
    std::string        name;    ///< as it stands in the file; no two groups of a kind share one
    std::vector<Range> ranges;  ///< in the file's order; ids may come again
    std::string        place;   ///< "FILE:LINE" of the group's head, for messages
  };

  /// No groups.
  OnfGroupsFile();
  /// Reads a groups file.
  /// @throws FED_Failure that names file, line and what was expected, or the file when it cannot be read
  explicit OnfGroupsFile(const std::wstring& path);
  OnfGroupsFile(const OnfGroupsFile& other);
  OnfGroupsFile& operator=(const OnfGroupsFile& other);
  virtual ~OnfGroupsFile();

  /// @return the groups in the file's order; valid as long as this object is not assigned to
  const std::vector<Group>& GetGroups() const;

private:
  std::vector<Group> groups_;
};
