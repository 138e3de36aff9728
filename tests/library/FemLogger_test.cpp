#include <FemLogger.h>

#include <climits>
#include <functional>
#include <locale>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "LogCapture.h"

namespace {

using quilon_test::LogCapture;
using Texts = std::vector<std::string>;

// A reader's logger that keeps what it announces and opens what is protected.
class ReaderLogger : public FemLogger
{
public:
  explicit ReaderLogger(Texts* announced = nullptr) : announced_(announced) {}

  using FemLogger::PrintLoadcaseStatus;
  using FemLogger::Reset;

  int                  Type() const { return resultTypeId_; }
  const std::string&   Name() const { return resultTypeName_; }
  const std::set<int>& Read() const { return readSubsteps_; }
  const std::set<int>& Skipped() const { return skippedSubsteps_; }
  int                  Group() const { return groupId_; }
  int                  LoadCase() const { return loadCase_; }

protected:
  void PrintResultTypeStatus(int reading) override
  {
    if (announced_ == nullptr) return;
    announced_->push_back(std::to_string(reading) + " " + std::to_string(resultTypeId_) + " " + resultTypeName_ +
                          " group " + std::to_string(groupId_) + " load case " + std::to_string(loadCase_) + " sets " +
                          std::to_string(readSubsteps_.size()) + "," + std::to_string(skippedSubsteps_.size()));
  }

private:
  Texts* announced_;
};

// Keeps what it is asked to print instead of logging it.
class OverridingLogger : public FemLogger
{
public:
  explicit OverridingLogger(Texts& printed) : printed_(printed) {}

protected:
  void PrintResultTypeStatus(int) override {}
  void PrintLoadcaseStatus(std::set<int>& substeps, int reading) override
  {
    printed_.push_back(std::to_string(reading) + " load case " + std::to_string(loadCase_) + ": " +
                       std::to_string(substeps.size()));
  }

private:
  Texts& printed_;
};

std::string TextOf(std::set<int> substeps)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.PrintLoadcaseStatus(substeps, 0);
  const Texts texts = log.GetTexts();
  EXPECT_EQ(texts.size(), 1u);
  const std::string start = "skipping loadcase -999, ";
  EXPECT_EQ(texts.at(0).compare(0, start.size(), start), 0) << texts[0];
  return texts[0].substr(start.size());
}

}  // namespace

TEST(FemLogger, StartsWithNothingCurrent)
{
  const ReaderLogger logger;
  EXPECT_EQ(logger.Type(), -999);
  EXPECT_EQ(logger.Name(), "");
  EXPECT_TRUE(logger.Read().empty());
  EXPECT_TRUE(logger.Skipped().empty());
  EXPECT_EQ(logger.Group(), -999);
  EXPECT_EQ(logger.LoadCase(), -999);
}

TEST(FemLogger, ReadAndSkippedLinesDifferInTabAndBlanks)
{
  LogCapture log;
  {
    ReaderLogger logger;
    for (const int substep : {1, 2, 3}) logger.SetReadSubstep(1, 12, substep);
    logger.SetSkipSubstep(1, 12, 4);
  }
  EXPECT_EQ(log.GetWhole(), (Texts{"4 src/fem_logger:71 |BrevanFem|fem_logger: \treading loadcase  12, substeps 1-3",
                                   "4 src/fem_logger:74 |BrevanFem|fem_logger: skipping loadcase 12, substep 4"}));
}

TEST(FemLogger, OneSubstepIsWrittenInTheSingular) { EXPECT_EQ(TextOf({7}), "substep 7"); }

TEST(FemLogger, SubstepsAreCompressedIntoRuns)
{
  struct Row
  {
    std::set<int> substeps;
    const char*   text;
  };
  const Row rows[] = {
      {{3, 9}, "substeps 3,9"},
      {{4, 6}, "substeps 4,6"},
      {{2, 3}, "substeps 2-3"},
      {{1, 2, 3}, "substeps 1-3"},
      {{1, 2, 3, 5, 7, 8}, "substeps 1-3,5,7-8"},
      {{1, 3, 5}, "substeps 1,3,5"},
      {{1, 3, 4, 5, 9}, "substeps 1,3-5,9"},
      {{8, 1, 7, 2}, "substeps 1-2,7-8"},
      {{0}, "substep 0"},
      {{-5}, "substep -5"},
      {{-3, -1}, "substeps -3,-1"},
      {{INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX}, "substeps -2147483648--2147483647,2147483646-2147483647"},
  };
  for (const Row& row : rows) EXPECT_EQ(TextOf(row.substeps), row.text);
}

TEST(FemLogger, ARunOverZeroIsWrittenPlainly) { EXPECT_EQ(TextOf({-1, 0, 1}), "substeps -1-1"); }

TEST(FemLogger, NumbersHaveNoThousandsSeparators)
{
  struct Grouping : std::numpunct<char>
  {
    char        do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale former = std::locale::global(std::locale(std::locale::classic(), new Grouping));
  const std::string text   = TextOf({1234, 5678});
  std::locale::global(former);
  EXPECT_EQ(text, "substeps 1234,5678");
}

TEST(FemLogger, AnEmptySetPrintsNothing)
{
  LogCapture log;
  {
    ReaderLogger  logger;
    std::set<int> none;
    logger.PrintLoadcaseStatus(none, 1);
    logger.PrintLoadcaseStatus(none, 0);
    logger.ForceOutput();
  }
  EXPECT_EQ(log.GetTexts(), Texts{});
}

TEST(FemLogger, AnyOtherValueThanReadOrSkippedLogsNothing)
{
  LogCapture    log;
  ReaderLogger  logger;
  std::set<int> substeps = {1};
  for (const int reading : {2, -1, INT_MAX}) logger.PrintLoadcaseStatus(substeps, reading);
  EXPECT_EQ(log.GetTexts(), Texts{});
}

TEST(FemLogger, RepeatingAReadSubstepLeavesOneEntry)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetReadSubstep(1, 2, 7);
  logger.SetReadSubstep(1, 2, 7);
  EXPECT_EQ(logger.Read(), std::set<int>{7});
  EXPECT_EQ(log.GetTexts(), Texts{});
}

TEST(FemLogger, ASubstepOnceReadIsNeverReportedAsSkipped)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetReadSubstep(1, 2, 7);
  logger.SetSkipSubstep(1, 2, 7);
  EXPECT_EQ(logger.Read(), std::set<int>{7});
  EXPECT_TRUE(logger.Skipped().empty());
}

TEST(FemLogger, ASkippedSubstepThatIsReadMovesToTheReadOnes)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetSkipSubstep(1, 2, 7);
  logger.SetSkipSubstep(1, 2, 8);
  logger.SetReadSubstep(1, 2, 7);
  EXPECT_EQ(logger.Read(), std::set<int>{7});
  EXPECT_EQ(logger.Skipped(), std::set<int>{8});
}

TEST(FemLogger, ASubstepReadInTheFormerLoadCaseCanBeSkippedInTheNext)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetReadSubstep(1, 2, 7);
  logger.SetSkipSubstep(1, 3, 7);
  EXPECT_EQ(logger.Skipped(), std::set<int>{7});
}

TEST(FemLogger, AnotherLoadCaseFlushesWithTheOldNumber)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetReadSubstep(1, 12, 1);
  logger.SetSkipSubstep(1, 12, 2);
  logger.SetSkipSubstep(1, 13, 3);
  EXPECT_EQ(log.GetTexts(), (Texts{"\treading loadcase  12, substep 1", "skipping loadcase 12, substep 2"}));
  EXPECT_TRUE(logger.Read().empty());
  EXPECT_EQ(logger.Skipped(), std::set<int>{3});
  EXPECT_EQ(logger.LoadCase(), 13);
}

TEST(FemLogger, AnotherGroupOfTheSameLoadCaseFlushes)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetReadSubstep(1, 12, 1);
  logger.SetReadSubstep(2, 12, 5);
  EXPECT_EQ(log.GetTexts(), Texts{"\treading loadcase  12, substep 1"});
  EXPECT_EQ(logger.Read(), std::set<int>{5});
  EXPECT_EQ(logger.Group(), 2);
}

TEST(FemLogger, AGroupAndLoadCaseOfTheMarkerCountAsCurrentAtFirst)
{
  LogCapture log;
  {
    ReaderLogger logger;
    logger.SetReadSubstep(-999, -999, 1);
    EXPECT_EQ(log.GetTexts(), Texts{});
  }
  EXPECT_EQ(log.GetTexts(), Texts{"\treading loadcase  -999, substep 1"});
}

TEST(FemLogger, ANewResultTypeIsAnnouncedAfterTheOldLoadCaseWasFlushed)
{
  LogCapture   log;
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(521, "stress");
  EXPECT_EQ(log.GetTexts(), Texts{}) << "nothing was recorded before the first type";
  logger.SetReadSubstep(1, 12, 1);
  logger.SetSkipResultType(510, "displacement");
  EXPECT_EQ(log.GetTexts(), Texts{"\treading loadcase  12, substep 1"});
  EXPECT_EQ(announced, (Texts{"1 521 stress group -999 load case -999 sets 0,0",
                              "0 510 displacement group -999 load case -999 sets 0,0"}));
}

TEST(FemLogger, TheSameResultTypeNeitherFlushesNorAnnounces)
{
  LogCapture   log;
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(521, "stress");
  logger.SetReadSubstep(1, 12, 1);
  logger.SetReadResultType(521, "stress");
  EXPECT_EQ(announced.size(), 1u);
  EXPECT_EQ(log.GetTexts(), Texts{});
  EXPECT_EQ(logger.Read(), std::set<int>{1});
}

TEST(FemLogger, SkippingTheTypeThatIsReadDoesNothing)
{
  LogCapture   log;
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(521, "stress");
  logger.SetReadSubstep(1, 12, 1);
  logger.SetSkipResultType(521, "stress");
  EXPECT_EQ(announced.size(), 1u);
  EXPECT_EQ(log.GetTexts(), Texts{});
}

TEST(FemLogger, AnotherIdOrAnotherNameIsAnotherType)
{
  LogCapture   log;
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(521, "stress");
  logger.SetReadResultType(522, "stress");
  logger.SetReadResultType(522, "Stress");
  logger.SetReadResultType(522, std::string("Stress\0", 7));
  EXPECT_EQ(announced.size(), 4u);
}

TEST(FemLogger, ATypeOfTheMarkerWithoutANameIsTakenAsNone)
{
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(-999, "");
  EXPECT_EQ(announced, Texts{});
}

TEST(FemLogger, ForceOutputKeepsWhatIsCurrent)
{
  LogCapture   log;
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(521, "stress");
  logger.SetReadSubstep(1, 12, 1);
  logger.SetSkipSubstep(1, 12, 2);
  logger.ForceOutput();
  EXPECT_TRUE(logger.Read().empty());
  EXPECT_TRUE(logger.Skipped().empty());
  EXPECT_EQ(logger.Group(), 1);
  EXPECT_EQ(logger.LoadCase(), 12);
  EXPECT_EQ(logger.Type(), 521);
  EXPECT_EQ(logger.Name(), "stress");

  // Later substeps of the load case start fresh sets: one that was read before can be skipped now.
  logger.SetSkipSubstep(1, 12, 1);
  logger.ForceOutput();
  EXPECT_EQ(announced.size(), 1u);
  EXPECT_EQ(log.GetTexts(), (Texts{"\treading loadcase  12, substep 1", "skipping loadcase 12, substep 2",
                                   "skipping loadcase 12, substep 1"}));
}

TEST(FemLogger, ResetForgetsAllButTheName)
{
  LogCapture   log;
  ReaderLogger logger;
  logger.SetReadResultType(521, "stress");
  logger.SetReadSubstep(1, 12, 1);
  logger.SetSkipSubstep(1, 12, 2);
  logger.Reset();
  EXPECT_EQ(log.GetTexts(), (Texts{"\treading loadcase  12, substep 1", "skipping loadcase 12, substep 2"}));
  EXPECT_EQ(logger.Type(), -999);
  EXPECT_EQ(logger.Name(), "stress");
  EXPECT_EQ(logger.Group(), -999);
  EXPECT_EQ(logger.LoadCase(), -999);
  EXPECT_TRUE(logger.Read().empty());
  EXPECT_TRUE(logger.Skipped().empty());
}

TEST(FemLogger, TheSameTypeAfterAResetIsAnnouncedAgain)
{
  Texts        announced;
  ReaderLogger logger(&announced);
  logger.SetReadResultType(521, "stress");
  logger.Reset();
  logger.SetReadResultType(521, "stress");
  EXPECT_EQ(announced.size(), 2u);
}

TEST(FemLogger, FlushingCallsTheOverrideOnBothSetsEvenEmptyOnes)
{
  LogCapture       log;
  Texts            printed;
  OverridingLogger logger(printed);
  logger.SetReadSubstep(1, 12, 1);
  logger.SetReadSubstep(1, 12, 2);
  logger.SetReadSubstep(1, 13, 1);
  EXPECT_EQ(printed, (Texts{"1 load case -999: 0", "0 load case -999: 0", "1 load case 12: 2", "0 load case 12: 0"}));
}

TEST(FemLogger, DestructionFlushesWithTheBaseClassesOwnPrinting)
{
  LogCapture log;
  Texts      printed;
  {
    OverridingLogger logger(printed);
    logger.SetReadSubstep(1, 12, 1);
    logger.SetSkipSubstep(1, 12, 2);
    printed.clear();
  }
  EXPECT_EQ(printed, Texts{});
  EXPECT_EQ(log.GetTexts(), (Texts{"\treading loadcase  12, substep 1", "skipping loadcase 12, substep 2"}));
}

TEST(FemLogger, IsDestroyedThroughItsBase)
{
  LogCapture log;
  {
    std::unique_ptr<FemLogger> logger = std::make_unique<ReaderLogger>();
    logger->SetReadSubstep(1, 12, 1);
  }
  EXPECT_EQ(log.GetTexts(), Texts{"\treading loadcase  12, substep 1"});
}

TEST(FemLogger, ACopyHasItsOwnPendingSubsteps)
{
  LogCapture log;
  {
    ReaderLogger logger;
    logger.SetReadResultType(521, "stress");
    logger.SetReadSubstep(1, 12, 1);
    logger.SetSkipSubstep(1, 12, 2);
    ReaderLogger copy(logger);
    EXPECT_EQ(copy.Type(), 521);
    EXPECT_EQ(copy.Name(), "stress");
    EXPECT_EQ(copy.Group(), 1);
    EXPECT_EQ(copy.LoadCase(), 12);
    copy.SetReadSubstep(1, 12, 3);
    EXPECT_EQ(logger.Read(), std::set<int>{1});
    EXPECT_EQ(copy.Read(), (std::set<int>{1, 3}));
    EXPECT_EQ(copy.Skipped(), std::set<int>{2});
  }
  EXPECT_EQ(log.GetTexts().size(), 4u) << "both flush at their end";
}

TEST(FemLogger, AssignmentPrintsNothing)
{
  LogCapture   log;
  ReaderLogger logger;
  ReaderLogger other;
  logger.SetReadSubstep(1, 12, 1);
  other.SetReadResultType(521, "stress");
  other.SetSkipSubstep(3, 14, 5);
  logger = other;
  EXPECT_EQ(log.GetTexts(), Texts{});
  EXPECT_EQ(logger.Type(), 521);
  EXPECT_EQ(logger.Name(), "stress");
  EXPECT_TRUE(logger.Read().empty());
  EXPECT_EQ(logger.Skipped(), std::set<int>{5});
  EXPECT_EQ(logger.Group(), 3);
  EXPECT_EQ(logger.LoadCase(), 14);
}

TEST(FemLogger, WhatASinkThrowsArrivesAlsoFromTheDestructor)
{
  const QuilonLog::Sink former =
      QuilonLog::SetSink([](const QuilonLog::Line&) { throw std::runtime_error("log full"); });
  std::optional<ReaderLogger> logger(std::in_place);
  logger->SetReadSubstep(1, 12, 1);
  EXPECT_THROW(logger->ForceOutput(), std::runtime_error);
  EXPECT_EQ(logger->Read(), std::set<int>{1}) << "what was not printed is still pending";

  bool hasThrown = false;
  try {
    ReaderLogger pending;
    pending.SetReadSubstep(1, 12, 1);
  } catch (const std::runtime_error& failure) {
    hasThrown = std::string(failure.what()) == "log full";
  }
  QuilonLog::SetSink(former);
  EXPECT_TRUE(hasThrown);

  LogCapture log;
  logger.reset();
}

TEST(FemLogger, IsAbstractAndPolymorphic)
{
  EXPECT_TRUE(std::is_abstract_v<FemLogger>);
  EXPECT_TRUE(std::has_virtual_destructor_v<FemLogger>);
  EXPECT_TRUE((std::is_constructible_v<ReaderLogger, const ReaderLogger&>));
}
