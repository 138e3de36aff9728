#include "selection/KindRequests.h"

#include <sstream>
#include <string>

#include <bundled/NativePath.h>

#include "kinds/KindTable.h"
#include "text/Format.h"

namespace quilon {

namespace {

OnfResultRequestFile ReadFileBehind(const std::string& text)
{
  return KindRequests::IsPath(text) ? OnfResultRequestFile(WidePath(text)) : OnfResultRequestFile();
}

}  // namespace

KindRequests::KindRequests(const std::string& text, const KindTable& kinds)
    : OnfResultRequestFile(ReadFileBehind(text)), all_(text == "all")
{
  if (all_ || text == "none" || IsPath(text)) return;
  std::istringstream names(text);
  for (std::string name; std::getline(names, name, ',');) kinds_.insert(kinds.Resolve(Trimmed(name)));
}

bool KindRequests::typeIsRequested(int onf) const
{
  return all_ || kinds_.count(onf) != 0 || OnfResultRequestFile::typeIsRequested(onf);
}

}  // namespace quilon
