#include "FemLogger.h"

#include <iterator>
#include <locale>
#include <sstream>
#include <utility>

#include "log_line.h"

namespace {

constexpr int       kNone = -999;
constexpr LogSource kSource{"src/fem_logger", "|%P|BrevanFem|fem_logger"};

// "substep 7" or "substeps 1-3,5,7-8". The set is not empty.
std::string ListSubsteps(const std::set<int>& substeps)
{
  std::ostringstream text;
  text.imbue(std::locale::classic());  // no thousands separators, whatever the program's locale is
  text.exceptions(std::ios::badbit);   // otherwise the stream swallows a failed allocation and the line is cut short
  text << (substeps.size() == 1 ? "substep " : "substeps ");

  for (auto first = substeps.begin(); first != substeps.end();) {
    // A run ends where the next value leaves a gap. There is a next value, so *last + 1 does not overflow.
    auto last = first;
    auto next = std::next(first);
    while (next != substeps.end() && *next == *last + 1) last = next++;

    // A minus sign is not told from the dash of a run: -1, 0, 1 are "-1-1". Test: ARunOverZeroIsWrittenPlainly.
    if (first != substeps.begin()) text << ',';
    text << *first;
    if (last != first) text << '-' << *last;
    first = next;
  }
  return text.str();
}

}  // namespace

FemLogger::FemLogger() : resultTypeId_(kNone), groupId_(kNone), loadCase_(kNone) {}

FemLogger::FemLogger(const FemLogger& other) = default;

FemLogger& FemLogger::operator=(const FemLogger& other) = default;

FemLogger::~FemLogger() noexcept(false)
{
  FemLogger::PrintLoadcaseStatus(readSubsteps_, 1);
  FemLogger::PrintLoadcaseStatus(skippedSubsteps_, 0);
}

void FemLogger::SetReadResultType(int type, std::string name) { SetResultType(type, std::move(name), 1); }

void FemLogger::SetSkipResultType(int type, std::string name) { SetResultType(type, std::move(name), 0); }

void FemLogger::SetReadSubstep(int group, int loadcase, int substep)
{
  SetLoadcase(group, loadcase);
  readSubsteps_.insert(substep);
  skippedSubsteps_.erase(substep);
}

void FemLogger::SetSkipSubstep(int group, int loadcase, int substep)
{
  SetLoadcase(group, loadcase);
  if (readSubsteps_.count(substep) == 0) skippedSubsteps_.insert(substep);
}

void FemLogger::ForceOutput()
{
  Flush();
  readSubsteps_.clear();
  skippedSubsteps_.clear();
}

void FemLogger::PrintLoadcaseStatus(std::set<int>& substeps, int reading)
{
  if (substeps.empty()) return;

  const std::string list = ListSubsteps(substeps);
  // Only the line of read substeps is set off by a tab and a second blank: it stands out where most lines are skips.
  // Test: ReadAndSkippedLinesDifferInTabAndBlanks.
  if (reading == 1) {
    Log(kSource, FED_LogMacros::LogNotice, 71, "\treading loadcase  %d, %s", loadCase_, list.c_str());
  } else if (reading == 0) {
    Log(kSource, FED_LogMacros::LogNotice, 74, "skipping loadcase %d, %s", loadCase_, list.c_str());
  }
}

void FemLogger::Reset()
{
  Flush();
  resultTypeId_ = kNone;
  groupId_      = kNone;
  loadCase_     = kNone;
  readSubsteps_.clear();
  skippedSubsteps_.clear();
}

void FemLogger::SetResultType(int type, std::string&& name, int reading)
{
  if (type == resultTypeId_ && name == resultTypeName_) return;

  Reset();
  resultTypeName_ = std::move(name);
  resultTypeId_   = type;
  PrintResultTypeStatus(reading);
}

void FemLogger::SetLoadcase(int group, int loadcase)
{
  if (group == groupId_ && loadcase == loadCase_) return;

  Flush();  // the pending sets belong to the load case that is still stored
  groupId_  = group;
  loadCase_ = loadcase;
  readSubsteps_.clear();
  skippedSubsteps_.clear();
}

void FemLogger::Flush()
{
  PrintLoadcaseStatus(readSubsteps_, 1);
  PrintLoadcaseStatus(skippedSubsteps_, 0);
}
