#include "answers/ChosenComponents.h"

#include <string>

namespace quilon {

std::vector<Component> ChosenComponents(const Selection&, int onf)
{
  std::vector<Component> components;
  for (const std::string& name : StoredComponentsOf(onf)) components.emplace_back(name, onf);
  return components;
}

}  // namespace quilon
