#pragma once

/// @file
/// Which result kinds the user asked for.

#include "quilon_language.h"

#include <set>
#include <string>

#include "quilon_contract_export.h"

/// A list of requested ONF ids. A host or a test may derive from it and answer without a file.
class QUILON_ONF_ENGINE_API OnfResultRequestFile
{
public:
  /// Requests nothing.
  OnfResultRequestFile();
  /// Reads a request file: one ONF id or kind name a line, '#' starts a comment, blank lines are ignored.
  /// @throws FED_Failure that names file and line for a name that no kind has, or the file when it cannot be read
  explicit OnfResultRequestFile(const std::wstring& path);
  OnfResultRequestFile(const OnfResultRequestFile& other);
  OnfResultRequestFile& operator=(const OnfResultRequestFile& other);
  virtual ~OnfResultRequestFile();

  /// @return whether the user requested output of this ONF id
  virtual bool typeIsRequested(int onf) const;

private:
  std::set<int> requested_;
};
