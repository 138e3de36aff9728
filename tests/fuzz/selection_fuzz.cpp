// The first line of the input goes through the parsers of the command line: a selection, its steps and a load case map.
// What is accepted is applied to a few blocks, and a block's own text always selects it.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include <bundled/OnfKinds.h>

#include "kinds/KindTable.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/LoadCaseMap.h"
#include "selection/Selection.h"

namespace {

std::vector<FED_DataDescriptor> SomeBlocks()
{
  std::vector<FED_DataDescriptor> blocks;
  for (const int onf : {500, 510, 521, 595, 1000}) {
    for (int loadCase = 0; loadCase < 3; ++loadCase) {
      FED_DataDescriptor block(0, static_cast<FED_OnfId>(onf));
      if (loadCase > 0) block.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
      if (loadCase > 1) block.SetInteger(FED_DataDescriptor::Substep, -loadCase);
      if (onf == 500) block.SetInteger(OnfIndex::Quantity, 502);
      blocks.push_back(block);
    }
  }
  return blocks;
}

template <typename Parse>
void Try(Parse&& parse)
{
  try {
    parse();
  } catch (const FED_Failure&) {
    // What is refused is told: that is all there is to it.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon::KindTable               kKinds;
  static const std::vector<FED_DataDescriptor> kBlocks = SomeBlocks();

  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string_view line = text.substr(0, text.find('\n'));
  Try([&] {
    const quilon::Selection selection(line, kKinds);
    for (const FED_DataDescriptor& block : selection.Apply(kBlocks)) {
      const quilon::Selection own(quilon::ToSelectionText(block), kKinds);
      if (own.Apply({block}).size() != 1) std::abort();
    }
  });
  Try([&] {
    quilon::Selection selection;
    selection.SetSteps(line);
    selection.Apply(kBlocks);
  });
  Try([&] { quilon::ParseLoadCaseMap(line); });
  return 0;
}
