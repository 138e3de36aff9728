#include <exception>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Backtrace.h"
#include "QuilonUtilities/FED_Exception.h"
#include "QuilonUtilities/FED_Failure.h"
#include "QuilonUtilities/FED_IntegerCodedBoolVector.h"

namespace {

const std::string kTag = "|%P|Test|FED_Exception_test";

/// An effect with a cause that has a cause itself.
FED_Failure MakeNested()
{
  auto root  = std::make_unique<FED_Failure>("disk full", "|%P|Disk|root");
  auto cause = std::make_unique<FED_Exception>("cannot write", "|%P|File|cause");
  cause->SetCause(std::move(root));
  cause->SetContext("writing a.txt");
  FED_Failure effect("cannot save", kTag);
  effect.SetCause(std::move(cause));
  effect.SetContext("saving");
  return effect;
}

void ExpectIsNested(const FED_Exception& effect)
{
  EXPECT_STREQ(effect.what(), "cannot save");
  EXPECT_EQ(effect.GetMessage(), "cannot save");
  EXPECT_EQ(effect.GetTag(), kTag);
  EXPECT_EQ(effect.GetContext(), "saving");
  ASSERT_NE(effect.GetCause(), nullptr);
  EXPECT_STREQ(effect.GetCause()->what(), "cannot write");
  EXPECT_EQ(effect.GetCause()->GetTag(), "|%P|File|cause");
  EXPECT_EQ(effect.GetCause()->GetContext(), "writing a.txt");
  ASSERT_NE(effect.GetCause()->GetCause(), nullptr);
  EXPECT_STREQ(effect.GetCause()->GetCause()->what(), "disk full");
  EXPECT_NE(dynamic_cast<const FED_Failure*>(effect.GetCause()->GetCause()), nullptr);
  EXPECT_EQ(effect.GetCause()->GetCause()->GetCause(), nullptr);
}

TEST(Failure, WhatIsExactlyTheMessageWithoutTheTag)
{
  EXPECT_STREQ(FED_Failure("layer is 4, expected 0 to 1", kTag).what(), "layer is 4, expected 0 to 1");
  EXPECT_STREQ(FED_Failure("", kTag).what(), "");
  EXPECT_STREQ(FED_Failure(std::string(5000, 'x'), kTag).what(), std::string(5000, 'x').c_str());
}

TEST(Failure, HasNeitherContextNorCauseWhenMade)
{
  const FED_Failure failure("m", kTag);
  EXPECT_EQ(failure.GetMessage(), "m");
  EXPECT_EQ(failure.GetTag(), kTag);
  EXPECT_EQ(failure.GetContext(), "");
  EXPECT_EQ(failure.GetCause(), nullptr);
}

TEST(Failure, CopyOwnsACloneOfTheCause)
{
  auto              original = std::make_unique<FED_Failure>(MakeNested());
  const FED_Failure copy(*original);
  EXPECT_NE(copy.GetCause(), original->GetCause());
  EXPECT_EQ(copy.GetBacktrace(), original->GetBacktrace());
  original.reset();
  ExpectIsNested(copy);
}

TEST(Failure, AssignmentReplacesEverything)
{
  auto        original = std::make_unique<FED_Failure>(MakeNested());
  FED_Failure target("other", "|%P|Other|x");
  target = *original;
  original.reset();
  ExpectIsNested(target);
  target = FED_Failure("plain", "t");
  EXPECT_EQ(target.GetCause(), nullptr);
  EXPECT_EQ(target.GetContext(), "");
}

TEST(Failure, SurvivesAssignmentToItselfAndFromItsOwnCause)
{
  FED_Failure        failure = MakeNested();
  const FED_Failure& self    = failure;
  failure                    = self;
  ExpectIsNested(failure);
  FED_Exception outer("outer", kTag);
  outer.SetCause(std::make_unique<FED_Exception>("inner", kTag));
  outer = *outer.GetCause();
  EXPECT_STREQ(outer.what(), "inner");
  EXPECT_EQ(outer.GetCause(), nullptr);
}

TEST(Failure, CloneKeepsTheDynamicTypeAndClonesTheCause)
{
  auto                                 original = std::make_unique<FED_Failure>(MakeNested());
  const FED_Exception&                 base     = *original;
  const std::unique_ptr<FED_Exception> clone(base.Clone());
  EXPECT_NE(dynamic_cast<const FED_Failure*>(clone.get()), nullptr);
  EXPECT_NE(clone->GetCause(), original->GetCause());
  original.reset();
  ExpectIsNested(*clone);
}

TEST(Failure, CloneOfAPlainExceptionIsNoFailure)
{
  const std::unique_ptr<FED_Exception> clone(FED_Exception("m", kTag).Clone());
  EXPECT_EQ(dynamic_cast<const FED_Failure*>(clone.get()), nullptr);
  EXPECT_STREQ(clone->what(), "m");
}

/// Thrown inside the shared library, caught in this program.
void ThrowInLibrary()
{
  unsigned int code = 0;
  FED_IntegerCodedBoolVector::BoolVecToInt(std::vector<bool>(33), code);
}

constexpr const char* kLibraryMessage = "BoolVecToInt: 33 flags, expected at most 32";

TEST(Failure, ThrownInALibraryIsCaughtInTheProgramByEachOfItsTypes)
{
  try {
    ThrowInLibrary();
    FAIL() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), kLibraryMessage);
    EXPECT_EQ(failure.GetTag(), "|%P|QuilonUtilities|FED_IntegerCodedBoolVector");
  }
  try {
    ThrowInLibrary();
    FAIL() << "nothing was thrown";
  } catch (const FED_Exception& exception) {
    EXPECT_STREQ(exception.what(), kLibraryMessage);
    EXPECT_NE(dynamic_cast<const FED_Failure*>(&exception), nullptr);
  }
  try {
    ThrowInLibrary();
    FAIL() << "nothing was thrown";
  } catch (const std::exception& exception) {
    EXPECT_STREQ(exception.what(), kLibraryMessage);
    EXPECT_NE(dynamic_cast<const FED_Failure*>(&exception), nullptr);
  }
}

[[maybe_unused]] std::vector<std::string> Recurse(int depth)
{
  if (depth == 0) return FED_Backtrace::GetBacktrace();
  std::vector<std::string> trace = Recurse(depth - 1);
  trace.shrink_to_fit();  // something left to do, so that the call is no tail call
  return trace;
}

#if __has_include(<execinfo.h>)
TEST(Backtrace, HasAPrintableLinePerFrame)
{
  const std::vector<std::string> trace = FED_Backtrace::GetBacktrace();
  ASSERT_FALSE(trace.empty());
  for (const std::string& line : trace) EXPECT_FALSE(line.empty());
  // The caller comes first: this program, not the library.
  EXPECT_EQ(trace.front().find("libQuilonUtilities"), std::string::npos) << trace.front();
}

TEST(Backtrace, IsBoundedInADeepRecursion)
{
  const std::size_t shallow = Recurse(2).size();
  EXPECT_EQ(Recurse(4).size(), shallow + 2);
  EXPECT_LE(Recurse(500).size(), 64U);
}

TEST(Backtrace, OfAnExceptionIsTakenWhereItIsMade) { EXPECT_FALSE(FED_Failure("m", kTag).GetBacktrace().empty()); }
#else
TEST(Backtrace, IsEmptyWhereThePlatformOffersNone) { EXPECT_TRUE(FED_Backtrace::GetBacktrace().empty()); }
#endif

}  // namespace
