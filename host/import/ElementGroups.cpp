#include "import/ElementGroups.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "import/DeckImporter.h"
#include "text/Failure.h"

namespace quilon {

ElementGroups::ElementGroups(const AverageBy& by, const ImportedDeck* deck) : border_(by.border), deck_(deck)
{
  const bool needsDeck = border_ == AverageBy::Section || border_ == AverageBy::Sets;
  if (needsDeck && deck == nullptr) Fail("averages by section or set: expected the deck among the files");
  if (by.sets.empty()) return;
  const std::vector<ModelSet> sets = (*deck)->ElementSets();
  for (const std::string& name : by.sets) {
    const std::optional<std::size_t> set = (*deck)->FindElementSet(name);
    if (!set) Fail("averages by set: expected material, section or element sets of the deck, found '" + name + "'");
    const auto number = static_cast<int>(*set) + 1;
    // A set may hold an element twice, and a set may be named twice.
    for (const int id : sets[*set].ids) {
      std::vector<int>& numbers = sets_.At(sets_.FindOrInsert(id));
      if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) numbers.push_back(number);
    }
  }
}

std::vector<int> ElementGroups::GroupsOf(int id, const ResultMesh::Element& element) const
{
  int number = 0;
  switch (border_) {
    case AverageBy::Nothing:
      break;
    case AverageBy::Material:
      number = element.material;
      break;
    case AverageBy::Section:
      number = deck_->SectionOf(id).section;
      break;
    case AverageBy::Sets:
      if (const std::size_t position = sets_.Find(id); position != IdRadixMap<std::vector<int>>::npos)
        return sets_.At(position);
      break;
  }
  return number == 0 ? std::vector<int>() : std::vector<int>{number};
}

}  // namespace quilon
