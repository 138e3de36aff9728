#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/LogSink.h"
#include "QuilonUtilities/FED_LogMacros.h"

namespace {

using FED_LogMacros::log_msg;
using FED_LogMacros::LogNotice;

/// Collects lines while it lives.
class LogTest : public ::testing::Test
{
protected:
  LogTest()
  {
    former_ = QuilonLog::SetSink([this](const QuilonLog::Line& line) { lines_.push_back(line); });
  }
  ~LogTest() override
  {
    QuilonLog::SetSink(former_);
    QuilonLog::SetProgramName("quilon");
  }

  /// The text of the only line.
  std::string Text() const { return lines_.size() == 1 ? lines_[0].text : std::to_string(lines_.size()) + " lines"; }

  std::vector<QuilonLog::Line> lines_;

private:
  QuilonLog::Sink former_;
};

TEST_F(LogTest, HandsEveryPartOfALineToTheSink)
{
  QuilonLog::SetProgramName("prog");
  log_msg(FED_LogMacros::LogDetail, "src/fem_logger", 70, "|%P|BrevanFem|fem_logger", "%s has %d", "block", 3);
  ASSERT_EQ(lines_.size(), 1U);
  EXPECT_EQ(lines_[0].type, 6);
  EXPECT_EQ(lines_[0].file, "src/fem_logger");
  EXPECT_EQ(lines_[0].line, 70);
  EXPECT_EQ(lines_[0].tag, "|prog|BrevanFem|fem_logger");
  EXPECT_EQ(lines_[0].text, "block has 3");
}

TEST_F(LogTest, PassesATypeThatIsNotListedThrough)
{
  log_msg(static_cast<FED_LogMacros::LogMsgType>(77), "f", 1, "t", "x");
  ASSERT_EQ(lines_.size(), 1U);
  EXPECT_EQ(lines_[0].type, 77);
}

TEST_F(LogTest, TakesASizeForPercentIu)
{
  log_msg(LogNotice, "f", 1, "t", "ONF has %Iu datablocks ", static_cast<std::size_t>(SIZE_MAX));
  EXPECT_EQ(Text(), "ONF has " + std::to_string(SIZE_MAX) + " datablocks ");
}

TEST_F(LogTest, TakesFlagsWidthAndPrecisionBeforeIu)
{
  log_msg(LogNotice, "f", 1, "t", "[%5Iu|%-5Iu|%05Iu|%*Iu|%.3Iu]", std::size_t{7}, std::size_t{7}, std::size_t{7}, 3,
          std::size_t{7}, std::size_t{7});
  EXPECT_EQ(Text(), "[    7|7    |00007|  7|007]");
}

TEST_F(LogTest, KeepsArgumentsInStepBehindPercentIu)
{
  log_msg(LogNotice, "f", 1, "t", "%Iu %d %Iu %s %.2f", std::size_t{1}, 2, std::size_t{3}, "four", 5.0);
  EXPECT_EQ(Text(), "1 2 3 four 5.00");
}

TEST_F(LogTest, LeavesIuBehindAnEscapedPercentAlone)
{
  log_msg(LogNotice, "f", 1, "t", "100%%Iu %%%Iu", std::size_t{4});
  EXPECT_EQ(Text(), "100%Iu %4");
}

TEST_F(LogTest, DoesNotCutLongMessages)
{
  for (const std::size_t length : {std::size_t{1022}, std::size_t{1023}, std::size_t{1024}, std::size_t{100000}}) {
    lines_.clear();
    const std::string text(length, 'x');
    log_msg(LogNotice, "f", 1, "t", "%s|%d", text.c_str(), 5);
    EXPECT_EQ(Text(), text + "|5");
  }
}

TEST_F(LogTest, TakesAnEmptyMessage)
{
  const char* const empty = "";
  log_msg(LogNotice, "f", 1, "t", empty);
  EXPECT_EQ(Text(), "");
}

TEST_F(LogTest, WritesTheFormatWhereItsArgumentsCannotBeConverted)
{
  // No byte sequence stands for a wide character beyond the encoding's range.
  const wchar_t bad[] = {static_cast<wchar_t>(0x7FFFFFFF), 0};
  log_msg(LogNotice, "f", 1, "t", "wide %ls", bad);
  EXPECT_EQ(Text(), "wide %ls");
}

TEST_F(LogTest, ReplacesEveryProgramNameInTheTagAndNoneInTheText)
{
  QuilonLog::SetProgramName("a%P");
  log_msg(LogNotice, "f", 1, "%P|%P", "%s", "%P");
  ASSERT_EQ(lines_.size(), 1U);
  EXPECT_EQ(lines_[0].tag, "a%P|a%P");
  EXPECT_EQ(lines_[0].text, "%P");
}

TEST_F(LogTest, SettingASinkGivesTheFormerOneBack)
{
  std::vector<std::string> second;
  const QuilonLog::Sink    first =
      QuilonLog::SetSink([&second](const QuilonLog::Line& line) { second.push_back(line.text); });
  log_msg(LogNotice, "f", 1, "t", "to second");
  QuilonLog::SetSink(first);
  log_msg(LogNotice, "f", 1, "t", "to first");
  EXPECT_EQ(second, std::vector<std::string>{"to second"});
  EXPECT_EQ(Text(), "to first");
}

TEST_F(LogTest, AScopedSinkEndsWithItsScope)
{
  std::vector<std::string> second;
  {
    const QuilonLog::ScopedSink sink([&second](const QuilonLog::Line& line) { second.push_back(line.text); });
    log_msg(LogNotice, "f", 1, "t", "to second");
  }
  log_msg(LogNotice, "f", 1, "t", "to first");
  EXPECT_EQ(second, std::vector<std::string>{"to second"});
  EXPECT_EQ(Text(), "to first");
}

TEST_F(LogTest, ASinkThatCannotBeCopiedStaysInForce)
{
  // Only its first copies, those that put it in place, succeed.
  struct Uncopyable
  {
    std::vector<std::string>* texts;
    const bool*               isInPlace;
    Uncopyable(std::vector<std::string>* t, const bool* i) : texts(t), isInPlace(i) {}
    Uncopyable(const Uncopyable& other) : texts(other.texts), isInPlace(other.isInPlace)
    {
      if (*isInPlace) throw std::runtime_error("no room");
    }
    void operator()(const QuilonLog::Line& line) const { texts->push_back(line.text); }
  };
  std::vector<std::string>    texts;
  bool                        isInPlace = false;
  const QuilonLog::ScopedSink sink(Uncopyable(&texts, &isInPlace));
  isInPlace = true;
  EXPECT_THROW(QuilonLog::SetSink({}), std::runtime_error);
  log_msg(LogNotice, "f", 1, "t", "still here");
  EXPECT_EQ(texts, std::vector<std::string>{"still here"});
}

TEST_F(LogTest, WithoutASinkErrorsGoToStandardErrorAndNothingElseDoes)
{
  const QuilonLog::Sink ours = QuilonLog::SetSink({});
  QuilonLog::SetProgramName("prog");
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  for (const int type : {0, 3, 4, 5, 6, 77}) {
    log_msg(static_cast<FED_LogMacros::LogMsgType>(type), "f", 1, "|%P|Module|source", "type %d", type);
  }
  const std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
  EXPECT_FALSE(QuilonLog::SetSink(ours));  // the default is an empty sink
  EXPECT_EQ(written, "|prog|Module|source| type 0\n|prog|Module|source| type 3\n");
  EXPECT_TRUE(lines_.empty());
}

TEST_F(LogTest, ASinkMayLogAndSetSinks)
{
  std::vector<std::string> seen;
  QuilonLog::SetSink([&seen](const QuilonLog::Line& line) {
    seen.push_back("outer " + line.text);
    QuilonLog::SetSink([&seen](const QuilonLog::Line& inner) { seen.push_back("inner " + inner.text); });
    log_msg(LogNotice, "f", 1, "t", "again");
  });
  log_msg(LogNotice, "f", 1, "t", "once");
  EXPECT_EQ(seen, (std::vector<std::string>{"outer once", "inner again"}));
}

TEST_F(LogTest, WhatASinkThrowsPassesToTheCaller)
{
  QuilonLog::SetSink([](const QuilonLog::Line&) { throw std::runtime_error("sink"); });
  EXPECT_THROW(log_msg(LogNotice, "f", 1, "t", "x"), std::runtime_error);
  EXPECT_THROW(log_msg(LogNotice, "f", 1, "t", "x"), std::runtime_error);  // the lock was given back
}

TEST_F(LogTest, HandsLinesOverOneAtATime)
{
  constexpr int            kThreads = 4;
  constexpr int            kLines   = 200;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < kLines; ++i) log_msg(LogNotice, "f", i, "t", "%d", t);
    });
  }
  for (std::thread& thread : threads) thread.join();
  ASSERT_EQ(lines_.size(), static_cast<std::size_t>(kThreads * kLines));
  // The lines of one thread keep their order.
  std::vector<int> next(kThreads, 0);
  for (const QuilonLog::Line& line : lines_) EXPECT_EQ(line.line, next[std::stoul(line.text)]++);
}

}  // namespace
