#include "progress/Interrupt.h"

#include <csignal>
#include <thread>

#include <gtest/gtest.h>

namespace {

using quilon::InterruptWatch;
using quilon::IsInterrupted;

volatile std::sig_atomic_t taken = 0;

void Take(int) { taken = 1; }

/// SIGINT is handled by Take(), and afterwards as it was.
class InterruptWatchTest : public testing::Test
{
protected:
  void SetUp() override { former_ = std::signal(SIGINT, Take); }
  void TearDown() override { std::signal(SIGINT, former_); }

private:
  void (*former_)(int) = SIG_DFL;
};

TEST_F(InterruptWatchTest, LeavesAMarkForItsLifeAndPassesTheSignalOn)
{
  taken = 0;
  {
    const InterruptWatch watch;
    EXPECT_FALSE(IsInterrupted());
    std::raise(SIGINT);
    EXPECT_TRUE(IsInterrupted());
    EXPECT_EQ(taken, 1);
    EXPECT_THROW(quilon::ThrowIfInterrupted(), quilon::Interrupted);
  }
  EXPECT_FALSE(IsInterrupted());
  taken = 0;
  std::raise(SIGINT);
  EXPECT_EQ(taken, 1);
  EXPECT_FALSE(IsInterrupted());
}

TEST_F(InterruptWatchTest, AnotherOneSeesNoMarkOfTheOneBefore)
{
  {
    const InterruptWatch watch;
    std::raise(SIGINT);
  }
  const InterruptWatch watch;
  EXPECT_FALSE(IsInterrupted());
}

TEST_F(InterruptWatchTest, WithinAnotherOneChangesNothing)
{
  const InterruptWatch watch;
  {
    const InterruptWatch within;
    std::raise(SIGINT);
    EXPECT_TRUE(IsInterrupted());
  }
  EXPECT_TRUE(IsInterrupted());
}

TEST_F(InterruptWatchTest, OtherThreadsDoNotSeeTheMark)
{
  const InterruptWatch watch;
  std::raise(SIGINT);
  bool isSeen = true;
  std::thread([&isSeen] { isSeen = IsInterrupted(); }).join();
  EXPECT_FALSE(isSeen);
}

TEST_F(InterruptWatchTest, SignalThatIsIgnoredStaysIgnored)
{
  std::signal(SIGINT, SIG_IGN);
  const InterruptWatch watch;
  std::raise(SIGINT);
  EXPECT_FALSE(IsInterrupted());
}

TEST_F(InterruptWatchTest, HandlerThatIsSetMeanwhileStays)
{
  {
    const InterruptWatch watch;
    std::signal(SIGINT, SIG_IGN);
  }
  EXPECT_EQ(std::signal(SIGINT, Take), SIG_IGN);
}

}  // namespace
