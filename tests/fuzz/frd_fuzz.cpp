// Any bytes as a .frd file: they are read to their end or refused with a FED_Failure, and what a sink is sent is whole.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "calculix/FrdReader.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::calculix::FrdDataset;
using quilon::calculix::FrdElement;

void Require(bool holds)
{
  if (!holds) std::abort();
}

class CheckingSink : public quilon::calculix::FrdSink
{
public:
  void OnNodes(std::span<const int> ids, std::span<const double> coordinates) override
  {
    Require(!ids.empty() && coordinates.size() == 3 * ids.size());
  }
  void OnElements(std::span<const FrdElement> elements) override
  {
    for (const FrdElement& element : elements) Require(element.id > 0 && element.type <= 12 && !element.nodes.empty());
  }
  bool OnDatasetBegin(const FrdDataset& dataset) override
  {
    Require(!isOpen_ && !dataset.components.empty());
    isOpen_   = true;
    isWanted_ = !isWanted_;  // every other data set, so that both ways through the rows are taken
    return isWanted_;
  }
  void OnRows(const FrdDataset& dataset, std::span<const int> ids, std::span<const double> values,
              std::int64_t) override
  {
    Require(isOpen_ && isWanted_ && !ids.empty() && values.size() == ids.size() * dataset.components.size());
  }
  void OnDatasetEnd(const FrdDataset&) override
  {
    Require(isOpen_);
    isOpen_ = false;
  }

private:
  bool isOpen_   = false;
  bool isWanted_ = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  CheckingSink       sink;
  try {
    quilon::calculix::ReadFrd(in, "fuzz.frd", sink);
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind("fuzz.frd:", 0) == 0);
  }
  return 0;
}
