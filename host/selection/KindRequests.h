#pragma once

/// @file
/// Which results are to be derived.

#include <set>
#include <string>

#include "QuilonOnfEngine/OnfResultRequestFile.h"

namespace quilon {

class KindTable;

/// What stands behind --request: "all", "none", kinds as a selection names them ("stress-principal,560"), or the path
/// of a request file. A text with a dot or a slash is a path: no kind's name has either.
class KindRequests : public OnfResultRequestFile
{
public:
  /// @throws FED_Failure for a name that no kind has and for a file that cannot be read
  KindRequests(const std::string& text, const KindTable& kinds);

  /// @return whether the text is the path of a request file
  static bool IsPath(const std::string& text) { return text.find_first_of("./") != std::string::npos; }

  static KindRequests Nothing() { return KindRequests(); }

  bool typeIsRequested(int onf) const override;

private:
  KindRequests() = default;

  bool          all_ = false;
  std::set<int> kinds_;
};

}  // namespace quilon
