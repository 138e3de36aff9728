#include "terminal/Console.h"

#include <chrono>
#include <cstdio>

#include "terminal/Terminal.h"
#include "text/Format.h"

namespace quilon {

namespace {

constexpr const char* kRed    = "\x1b[1;31m";
constexpr const char* kBold   = "\x1b[1m";
constexpr const char* kNormal = "\x1b[0m";
constexpr const char* kErase  = "\r\x1b[K";

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

}  // namespace

Console::Console()
    : showsProgress_(IsTerminal(StandardStream::Error)), colours_(MayColour(StandardStream::Error)), bar_(Now)
{}

Console::~Console() { ClearProgress(); }

void Console::Error(const std::string& message)
{
  Line((colours_ ? std::string("quilon: ") + kRed + "error:" + kNormal + ' ' : std::string("quilon: error: ")) +
       Printable(message));
}

void Console::Note(const std::string& message)
{
  if (verbosity_ < kNotes) return;
  Line((colours_ ? std::string("quilon: ") + kBold + "note:" + kNormal + ' ' : std::string("quilon: note: ")) +
       Printable(message));
}

void Console::Log(int type, const std::string& message)
{
  if (type > verbosity_) return;
  std::string text;
  for (const char c : message) text += c == '\t' ? std::string("  ") : std::string(1, c);
  Line("quilon: " + Printable(text));
}

void Console::Progress(const std::string& phase, std::uint64_t done, std::uint64_t total, const std::string& unit)
{
  if (!showsProgress_ || verbosity_ < kNotes) return;
  const std::string line = bar_.Update(phase, done, total, unit);
  if (line.empty()) return;
  std::fputs((kErase + Printable(line)).c_str(), stderr);
  progressShown_ = true;
}

void Console::Line(const std::string& text)
{
  ClearProgress();
  std::fputs((text + '\n').c_str(), stderr);
}

void Console::ClearProgress()
{
  if (!progressShown_) return;
  std::fputs(kErase, stderr);
  std::fflush(stderr);
  progressShown_ = false;
}

}  // namespace quilon
