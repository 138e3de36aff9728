#include "answers/ChosenComponents.h"

#include <string>

namespace quilon {

std::vector<Component> ChosenComponents(const Selection& selection, int onf)
{
  const std::vector<std::string> stored = StoredComponentsOf(onf);
  if (stored.empty()) return {};
  const std::vector<std::string> chosen = selection.ComponentsOf(onf);
  std::vector<Component>         components;
  for (const std::string& name : chosen.empty() ? stored : chosen) components.emplace_back(name, onf);
  return components;
}

}  // namespace quilon
