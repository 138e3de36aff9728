// Any bytes as a .sta file: they are read to their end or refused with a FED_Failure.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "calculix/StaReader.h"
#include "QuilonUtilities/FED_Failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    quilon::calculix::ReadSta(in, "fuzz.sta");
  } catch (const FED_Failure& failure) {
    if (failure.GetMessage().rfind("fuzz.sta:", 0) != 0) std::abort();
  }
  return 0;
}
