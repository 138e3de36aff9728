// Memory that runs out once, at any allocation of a whole command: it succeeds or says that memory ran out, throws
// nothing, and what it writes is as before or as after.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <bundled/FED_DatabaseInspection.h>
#include <bundled/FED_ResultDatabase.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "AllocationFailure.h"
#include "commands/ExitCode.h"
#include "commands/Program.h"
#include "database_state.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

/// Standard output and error go to files for as long as this object lives.
class OutputInFile
{
public:
  explicit OutputInFile(const fs::path& path)
  {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (int stream = 1; stream <= 2; ++stream) {
      former_[stream - 1] = ::dup(stream);
      ::dup2(file, stream);
    }
    ::close(file);
  }
  OutputInFile(const OutputInFile&)            = delete;
  OutputInFile& operator=(const OutputInFile&) = delete;
  ~OutputInFile()
  {
    for (int stream = 1; stream <= 2; ++stream) {
      ::dup2(former_[stream - 1], stream);
      ::close(former_[stream - 1]);
    }
  }

private:
  int former_[2] = {};
};

std::string Fixture(const std::string& name) { return QUILON_FIXTURES "/calculix/forces/" + name; }

class AllocationsOfTheHost : public testing::Test
{
protected:
  static std::vector<const char*> ArgumentsOf(const std::vector<std::string>& words)
  {
    std::vector<const char*> arguments = {"quilon"};
    for (const std::string& word : words) arguments.push_back(word.c_str());
    return arguments;
  }

  static int Run(const std::vector<const char*>& arguments)
  {
    return quilon::RunProgram(static_cast<int>(arguments.size()), arguments.data());
  }

  void MakeBase()
  {
    const OutputInFile             output(folder_ / "output");
    const std::vector<std::string> words = {"import", Fixture("bar.frd"), Fixture("bar.dat"), "-o", base_.string()};
    ASSERT_EQ(Run(ArgumentsOf(words)), quilon::ExitSuccess);
  }

  /// The trial database as it is before a command.
  void Prepare(bool fromBase)
  {
    fs::remove_all(trial_);
    if (fromBase) fs::copy(base_, trial_, fs::copy_options::recursive);
  }

  quilon_test::State StateOfTrial() const
  {
    if (!fs::exists(trial_ / "manifest")) return {};
    EXPECT_EQ(FED_InspectDatabase(trial_).findings, std::vector<std::string>());
    return quilon_test::StateOf(FED_ResultDatabase(trial_, FED_ResultDatabase::ReadOnly));
  }

  /// Lets allocations of the command fail, one in each run: the first ones, where the program starts, the last ones,
  /// where it ends, and others evenly spread over all. QUILON_ALLOCATIONS says how many.
  void Sweep(const std::vector<std::string>& words, bool fromBase)
  {
    const char* const given    = std::getenv("QUILON_ALLOCATIONS");
    const std::size_t numTries = given == nullptr ? 60 : std::strtoul(given, nullptr, 10);

    const std::vector<const char*> arguments = ArgumentsOf(words);
    Prepare(fromBase);
    const quilon_test::State before = StateOfTrial();
    std::size_t              count  = 0;
    {
      const OutputInFile                   output(folder_ / "output");
      const quilon_test::AllocationFailure counting(0);
      ASSERT_EQ(Run(arguments), quilon::ExitSuccess);
      count = counting.GetCount();
    }
    const quilon_test::State after  = StateOfTrial();
    const std::size_t        step   = std::max<std::size_t>(1, count / numTries);
    std::size_t              failed = 0;
    std::size_t              next   = 0;
    for (std::size_t allocation = 1; allocation <= count; allocation = next) {
      const bool isAtEnds = allocation < numTries / 2 || allocation + numTries / 10 >= count;
      next                = allocation + (isAtEnds ? 1 : std::min(step, count - numTries / 10 - allocation));
      SCOPED_TRACE(words.front() + ", allocation " + std::to_string(allocation) + " of " + std::to_string(count));
      Prepare(fromBase);
      int code = -1;
      {
        const OutputInFile                   output(folder_ / "output");
        const quilon_test::AllocationFailure failing(allocation);
        EXPECT_NO_THROW(code = Run(arguments));
      }
      EXPECT_TRUE(code == quilon::ExitSuccess || code == quilon::ExitTrouble) << code;
      failed += code == quilon::ExitTrouble ? 1 : 0;
      const quilon_test::State state = StateOfTrial();
      EXPECT_TRUE(state == before || state == after);
      if (code == quilon::ExitSuccess) {
        EXPECT_EQ(state, after);
      }
      if (HasFailure()) return;
    }
    EXPECT_GT(failed, 0u);
    RecordProperty("allocations", std::to_string(count));
  }

  quilon_test::TempFolder folder_;
  fs::path                base_  = folder_ / "base.fed";
  fs::path                trial_ = folder_ / "trial.fed";
};

}  // namespace

TEST_F(AllocationsOfTheHost, AnImportIsWholeOrNotThere)
{
  Sweep({"import", Fixture("bar.inp"), Fixture("bar.frd"), Fixture("bar.dat"), "-o", trial_.string()}, false);
}

TEST_F(AllocationsOfTheHost, ForcesAreAddedOrNot)
{
  MakeBase();
  Sweep({"forces", trial_.string(), "--deck", Fixture("bar.inp"), "--balance"}, true);
}

TEST_F(AllocationsOfTheHost, ACompactionHappensOrNot)
{
  MakeBase();
  Sweep({"compact", trial_.string()}, true);
}

TEST_F(AllocationsOfTheHost, AComparisonChangesNothing)
{
  MakeBase();
  Sweep({"diff", base_.string(), trial_.string()}, true);
}

TEST_F(AllocationsOfTheHost, AListOfValuesChangesNothing)
{
  MakeBase();
  Sweep({"show", trial_.string(), "nodal-stress", "--csv"}, true);
}

TEST_F(AllocationsOfTheHost, AnOnfFolderIsPublishedOrNot)
{
  MakeBase();
  Sweep({"to-onf", trial_.string(), (folder_ / "text").string()}, true);
}
