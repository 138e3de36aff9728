#include "QuilonUtilities/FED_IntegerCodedBoolVector.h"

#include <cstddef>
#include <string>

#include "QuilonUtilities/FED_Failure.h"

namespace {

constexpr std::size_t kMaxFlags = 32;

}  // namespace

void FED_IntegerCodedBoolVector::BoolVecToInt(const std::vector<bool>& flags, unsigned int& out)
{
  if (flags.size() > kMaxFlags) {
    throw FED_Failure("BoolVecToInt: " + std::to_string(flags.size()) + " flags, expected at most 32",
                      "|%P|QuilonUtilities|FED_IntegerCodedBoolVector");
  }
  unsigned int code = 0;
  for (std::size_t i = 0; i < flags.size(); ++i) {
    if (flags[i]) code |= 1U << i;
  }
  out = code;
}
