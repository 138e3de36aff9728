// Any bytes as a file of rules. What is accepted judges a few pairs of numbers alike from either side, and is written
// back as text that means the same.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

#include "diff/RuleSet.h"
#include "kinds/KindTable.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon::diff;

void Judge(const ComparisonRule& rule)
{
  constexpr double                       kMost = std::numeric_limits<double>::max();
  const QuilonDataBlockDiff::CompareInfo info;
  const ValueJudge                       judge(rule, info, 2.0);
  for (const double a : {0.0, -0.0, 1.0, -1.5, kMost, -kMost, std::numeric_limits<double>::infinity()}) {
    for (const double b : {0.0, 1.0, 1.0 + 1e-9, 5e-324, kMost}) {
      for (const bool isSingle : {false, true}) {
        if (judge.Accepts(a, b, isSingle) != judge.Accepts(b, a, isSingle)) std::abort();
        if (a == b && !judge.Accepts(a, b, isSingle)) std::abort();
        if (judge.Accepts(a, b, isSingle)) continue;
        if (judge.Explain(a, b, isSingle).empty() || !(judge.GetExcess(a, b, isSingle) > 0.0)) std::abort();
      }
    }
  }
  if (ParseRule(rule.ToString(), "").ToString() != rule.ToString()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon::KindTable kKinds;
  const std::string_view         text(reinterpret_cast<const char*>(data), size);
  RuleSet                        rules;
  try {
    rules.AddText(
        text, [](std::string_view kind) { return kKinds.Resolve(kind); }, "fuzz");
  } catch (const FED_Failure&) {
    return 0;  // what is refused is told: that is all there is to it
  }
  for (const int kind : {0, 501, 510, 521, 1000}) Judge(rules.Find(kind));
  return 0;
}
