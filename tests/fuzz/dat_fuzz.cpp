// Any bytes as a .dat file: they are read to their end or refused with a FED_Failure, and what a sink is sent is whole.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "calculix/DatReader.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::calculix::DatBlock;
using quilon::calculix::DatMode;
using quilon::calculix::DatRow;

void Require(bool holds)
{
  if (!holds) std::abort();
}

class CheckingSink : public quilon::calculix::DatSink
{
public:
  void OnModes(std::span<const DatMode> modes) override { Require(!isOpen_ && !modes.empty()); }
  void OnBlockBegin(const DatBlock& block) override
  {
    Require(!isOpen_ && !block.key.empty() && block.line > 0);
    isOpen_ = true;
  }
  void OnRows(const DatBlock& block, std::span<const DatRow> rows) override
  {
    Require(isOpen_ && !rows.empty());
    double sum = 0.0;
    for (const DatRow& row : rows) {
      Require(row.line > block.line && !row.values.empty());
      Require(block.numValues == 0 || row.values.size() == static_cast<std::size_t>(block.numValues));
      for (const double value : row.values) sum += value;  // reads each one
    }
    used_ = sum;
  }
  void OnBlockEnd(const DatBlock&) override
  {
    Require(isOpen_);
    isOpen_ = false;
  }
  void OnSkipped(const std::string& reason, std::size_t, std::int64_t line) override
  {
    Require(!isOpen_ && !reason.empty() && line > 0);
  }

private:
  bool            isOpen_ = false;
  volatile double used_   = 0.0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  CheckingSink       sink;
  try {
    quilon::calculix::ReadDat(in, "fuzz.dat", sink);
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind("fuzz.dat:", 0) == 0);
  }
  return 0;
}
