#include "calculix/deck/DeckFiles.h"

#include <string>

#include "calculix/deck/DeckReader.h"

namespace quilon::calculix {
namespace {

/// A reader that has one thing to do.
class WalkingReader : public DeckReader
{
public:
  using DeckReader::DeckReader;

  void ReadModel() override { Walk(); }
  void CheckModel() override {}
  void ConvertModel() override {}

protected:
  void OnLine(const DeckLine&) override {}
};

class ExpandingReader : public WalkingReader
{
public:
  ExpandingReader(const std::filesystem::path& deck, const DeckOptions& options,
                  const std::function<void(std::string_view)>& write)
      : WalkingReader(deck, options), write_(write)
  {}

  const std::vector<DeckLineRun>& GetRuns() const noexcept { return runs_; }

protected:
  void OnLine(const DeckLine& line) override
  {
    if (line.kind == DeckLineKind::Include) return;
    text_ = line.text;
    text_ += '\n';
    write_(text_);
    ++numLines_;
    if (!runs_.empty()) {
      DeckLineRun& run = runs_.back();
      if (run.file == line.place.file && line.place.line == run.line + (numLines_ - run.first)) {
        run.last = numLines_;
        return;
      }
    }
    runs_.push_back({numLines_, numLines_, line.place.file, line.place.line});
  }

private:
  const std::function<void(std::string_view)>& write_;
  std::string                                  text_;
  std::vector<DeckLineRun>                     runs_;
  std::int64_t                                 numLines_ = 0;
};

}  // namespace

std::vector<DeckFile> ReadDeckFiles(const std::filesystem::path& deck, const DeckOptions& options)
{
  WalkingReader reader(deck, options);
  reader.ReadModel();
  return reader.GetFiles();
}

DeckExpansion ExpandDeck(const std::filesystem::path& deck, const DeckOptions& options,
                         const std::function<void(std::string_view line)>& write)
{
  ExpandingReader reader(deck, options, write);
  reader.ReadModel();
  return {reader.GetFiles(), reader.GetRuns()};
}

}  // namespace quilon::calculix
