#include "shards/BorderRule.h"

#include <string>

#include <gtest/gtest.h>

#include <bundled/OnfKinds.h>

#include "kinds/KindTable.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon;

int Resolve(std::string_view kind) { return KindTable().Resolve(kind); }

std::string MessageOf(std::string_view line)
{
  try {
    BorderRules().Add(line, Resolve);
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return {};
}

TEST(BorderRules, GoByKindThenModelThenAllOthers)
{
  BorderRules rules;
  EXPECT_FALSE(rules.Find(OnfKind::NodalStress));
  EXPECT_EQ(rules.Find(OnfKind::Coordinates)->form, BorderRule::MustAgree);
  EXPECT_EQ(rules.Find(OnfKind::NodeSet)->form, BorderRule::Union);
  EXPECT_EQ(rules.Find(OnfKind::TiedNodes)->form, BorderRule::Union);
  rules.Add("stress, 531: average", Resolve);
  rules.Add("*: sum", Resolve);
  rules.Add("coordinates: must-agree 1e-9", Resolve);
  EXPECT_EQ(rules.Find(OnfKind::NodalStress)->form, BorderRule::Average);
  EXPECT_EQ(rules.Find(OnfKind::NodalStrain)->form, BorderRule::Average);
  EXPECT_EQ(rules.Find(OnfKind::Reaction)->form, BorderRule::Sum);
  EXPECT_EQ(rules.Find(OnfKind::ElementNodes)->form, BorderRule::MustAgree);
  EXPECT_EQ(rules.Find(OnfKind::Coordinates)->tolerance, 1e-9);
  rules.Add("stress: first", Resolve);
  rules.Add("must-agree", Resolve);
  EXPECT_EQ(rules.Find(OnfKind::NodalStress)->form, BorderRule::First);
  EXPECT_EQ(rules.Find(OnfKind::Reaction)->form, BorderRule::MustAgree);
}

TEST(BorderRules, RefuseWhatIsNone)
{
  EXPECT_EQ(MessageOf("stress: avrage"),
            "'avrage' is no rule, expected first, average, sum, union or must-agree TOL, did you mean 'average'?");
  EXPECT_EQ(MessageOf("stress: must-agree 1e"), "the tolerance of must-agree is '1e', expected a number of 0 or more");
  EXPECT_EQ(MessageOf("stress: must-agree -1"), "the tolerance of must-agree is '-1', expected a number of 0 or more");
  EXPECT_EQ(MessageOf("stress: must-agree nan"),
            "the tolerance of must-agree is 'nan', expected a number of 0 or more");
  EXPECT_EQ(MessageOf("stress: sum 2"), "'sum 2' is no rule: 'sum' stands alone");
  EXPECT_EQ(MessageOf("stress"), "'stress' is no rule, expected KIND: RULE such as 'nodal-stress: average'");
  EXPECT_NE(MessageOf("stres5: sum"), "");
}

}  // namespace
