#include "calculix/SolverFiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>
#include <system_error>
#include <utility>

#include "calculix/DatReader.h"
#include "calculix/deck/DeckInput.h"
#include "calculix/FrdReader.h"
#include "calculix/StaReader.h"
#include "text/Case.h"
#include "text/Failure.h"

namespace quilon::calculix {

namespace {

// Half a unit of the last printed digit, as a fraction of the value, and a little more.
double DatTolerance(double time)
{
  return 6e-7 * std::abs(time);  // 0.ddddddd
}

double FrdTolerance(double value)
{
  return (std::abs(value) < 1.0 ? 6e-6 : 1e-9) * std::abs(value);  // d.ddddd below 1, ten digits from there
}

double StatusTolerance(double time)
{
  return 6e-6 * std::abs(time);  // 0.dddddd
}

/// What a name of the solver means.
struct KnownName
{
  const char*   name;
  FieldQuantity quantity;
};

constexpr KnownName kDatasets[] = {
    {"DISP", FieldQuantity::Displacement},  {"FORC", FieldQuantity::Reaction}, {"VELO", FieldQuantity::Velocity},
    {"NDTEMP", FieldQuantity::Temperature}, {"FLUX", FieldQuantity::HeatFlux}, {"RFL", FieldQuantity::HeatFlow},
    {"PE", FieldQuantity::PlasticStrain},   {"ENER", FieldQuantity::Energy},   {"STRESS", FieldQuantity::Stress},
    {"TOSTRAIN", FieldQuantity::Strain},
};

/// ENER of points is no energy of an element, and PEEQ of points has no kind.
constexpr KnownName kOutputKeys[] = {
    {"U", FieldQuantity::Displacement}, {"RF", FieldQuantity::Reaction},  {"V", FieldQuantity::Velocity},
    {"NT", FieldQuantity::Temperature}, {"RFL", FieldQuantity::HeatFlow}, {"ELSE", FieldQuantity::Energy},
    {"S", FieldQuantity::Stress},       {"E", FieldQuantity::Strain},
};

FieldQuantity FindQuantity(std::span<const KnownName> names, const std::string& name)
{
  const auto known = std::ranges::find_if(names, [&name](const KnownName& k) { return name == k.name; });
  return known == names.end() ? FieldQuantity::Other : known->quantity;
}

/// Hands out a .frd.
class FrdAdapter final : private FrdSink
{
public:
  explicit FrdAdapter(ResultSink& sink) : sink_(sink) {}

  void Read(const std::filesystem::path& path, const ReadProgress& progress) { ReadFrd(path, *this, progress); }

  std::vector<FieldMark> ReadHeads(const std::filesystem::path& path, const ReadProgress& progress)
  {
    std::vector<FieldMark> marks;
    for (const FrdMark& mark : ReadFrdHeads(path, *this, progress))
      marks.push_back({mark.position, mark.line, mark.bytes});
    return marks;
  }

  void ReadField(const std::filesystem::path& path, const FieldMark& mark, const ReadProgress& progress)
  {
    ReadFrdDataset(path, {mark.position, mark.line, mark.bytes}, *this, progress);
  }

private:
  void OnNodes(std::span<const int> ids, std::span<const double> coordinates) override
  {
    sink_.OnNodes(ids, coordinates);
  }

  void OnElements(std::span<const FrdElement> elements) override
  {
    elements_.clear();
    for (const FrdElement& element : elements)
      elements_.push_back({element.id, element.type, element.material, element.nodes});
    sink_.OnElements(elements_);
  }

  bool OnDatasetBegin(const FrdDataset& dataset) override
  {
    field_           = ResultField();
    field_.step      = StepOf(dataset);
    field_.name      = dataset.name;
    field_.identity  = dataset.name;
    field_.quantity  = FindQuantity(kDatasets, dataset.name);
    field_.place     = FieldPlace::Node;
    field_.numValues = dataset.components.size();
    field_.line      = dataset.line;
    return sink_.OnFieldBegin(field_);
  }

  bool IsKnown(int node) const override { return sink_.HasNode(node); }

  void OnRows(const FrdDataset&, std::span<const int> ids, std::span<const double> values, std::int64_t line) override
  {
    const std::size_t lines = LinesOfRow();
    rows_.clear();
    for (std::size_t i = 0; i < ids.size(); ++i) {
      const std::int64_t own = line == 0 ? 0 : line + static_cast<std::int64_t>(i * lines);
      rows_.push_back({ids[i], 0, values.subspan(i * field_.numValues, field_.numValues), false, own});
    }
    sink_.OnRows(field_, rows_);
  }

  void OnDatasetEnd(const FrdDataset&) override { sink_.OnFieldEnd(field_); }
  void OnCutBehindDataset() override { sink_.OnCutBehindField(); }

  std::size_t LinesOfRow() const noexcept
  {
    constexpr std::size_t kValuesOfALine = 6;
    return (field_.numValues + kValuesOfALine - 1) / kValuesOfALine;
  }

  ResultSink&              sink_;
  ResultField              field_;
  std::vector<MeshElement> elements_;
  std::vector<ResultRow>   rows_;
};

/// The words of a title without what stands in parentheses.
std::string WithoutParentheses(const std::string& title)
{
  std::string text;
  int         depth = 0;
  for (const char c : title) {
    if (c == '(') ++depth;
    const bool isSecondBlank = c == ' ' && (text.empty() || text.back() == ' ');
    if (depth == 0 && !isSecondBlank) text += c;
    if (c == ')') --depth;
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

/// What stands in a title's parentheses, split at the commas.
std::vector<std::string> WordsInParentheses(const std::string& title)
{
  std::vector<std::string> words;
  std::string              word;
  int                      depth = 0;
  for (const char c : title) {
    if (c == '(') {
      ++depth;
    } else if (depth > 0 && (c == ',' || c == ')')) {
      words.push_back(word);
      word.clear();
      if (c == ')') --depth;
    } else if (depth > 0 && c != ' ') {
      word += c;
    }
  }
  return words;
}

/// @return a label for each value of a row of totals; the only value has none
std::vector<std::string> TotalLabels(const std::string& title, std::size_t numValues)
{
  std::vector<std::string> words = WordsInParentheses(title);
  if (numValues == 1) return {""};
  if (numValues == 3) return {"x", "y", "z"};
  // The reader puts tensors into the library's order, a title keeps the solver's.
  if (numValues == 6 && !words.empty() && words.front() == "xx") return {"xx", "yy", "zz", "xy", "yz", "zx"};
  if (words.size() == numValues) return words;

  words.clear();
  for (std::size_t k = 1; k <= numValues; ++k) words.push_back(std::to_string(k));
  return words;
}

/// @return for each value of a total its name: title, label, set
std::vector<std::string> TotalNames(const DatBlock& block)
{
  std::vector<std::string> names;
  for (const std::string& label : TotalLabels(block.title, static_cast<std::size_t>(block.numValues))) {
    std::string name = WithoutParentheses(block.title);
    if (!label.empty()) name += " " + label;
    if (!block.set.empty()) name += " " + block.set;
    names.push_back(std::move(name));
  }
  return names;
}

FieldPlace PlaceOf(DatRows rows)
{
  switch (rows) {
    case DatRows::Node:
      return FieldPlace::Node;
    case DatRows::Point:
      return FieldPlace::Point;
    case DatRows::Element:
      return FieldPlace::Element;
    case DatRows::Total:
      break;
  }
  return FieldPlace::Total;
}

/// @return the name that the .frd has for an imaginary part: DISPI, FORCI, and an I behind any other
std::string ImaginaryName(const std::string& key)
{
  if (key == "U") return "DISPI";
  if (key == "RF") return "FORCI";
  return key + "I";
}

/// Hands out a .dat.
class DatAdapter final : private DatSink
{
public:
  explicit DatAdapter(ResultSink& sink) : sink_(sink) {}

  void Read(const std::filesystem::path& path, const ReadProgress& progress) { ReadDat(path, *this, progress); }

private:
  void OnModes(std::span<const DatMode> modes) override
  {
    std::vector<ResultMode> found;
    for (const DatMode& mode : modes) found.push_back({mode.mode, mode.buckling, mode.eigenvalue, mode.frequency});
    sink_.OnModes(found);
  }

  void OnBlockBegin(const DatBlock& block) override
  {
    field_           = ResultField();
    field_.step      = StepOf(block);
    field_.name      = block.key;
    field_.identity  = block.title + '\n' + block.set;
    field_.quantity  = FindQuantity(kOutputKeys, block.key);
    field_.place     = PlaceOf(block.rows);
    field_.numValues = static_cast<std::size_t>(block.numValues);
    field_.line      = block.line;
    if (field_.place == FieldPlace::Total) field_.valueNames = TotalNames(block);
    if (block.imaginary) MakeImaginary();
    isWanted_ = sink_.OnFieldBegin(field_);
  }

  void OnRows(const DatBlock&, std::span<const DatRow> rows) override
  {
    if (!isWanted_) return;
    rows_.clear();
    for (const DatRow& row : rows) rows_.push_back({row.id, row.point, row.values, row.localSystem, row.line});
    sink_.OnRows(field_, rows_);
  }

  void OnBlockEnd(const DatBlock&) override { sink_.OnFieldEnd(field_); }

  void MakeImaginary()
  {
    field_.name = ImaginaryName(field_.name);
    field_.identity += "\nimaginary part";
    field_.quantity = FieldQuantity::Other;
    for (std::string& name : field_.valueNames) name += " imaginary part";
  }

  void OnSkipped(const std::string& reason, std::size_t rows, std::int64_t) override { sink_.OnSkipped(reason, rows); }

  ResultSink&            sink_;
  ResultField            field_;
  bool                   isWanted_ = false;
  std::vector<ResultRow> rows_;
};

/// Hands out the increments of a .sta that converged.
class StaAdapter
{
public:
  explicit StaAdapter(ResultSink& sink) : sink_(sink) {}

  void Read(const std::filesystem::path& path, const ReadProgress&)
  {
    std::vector<ResultStep> steps;
    for (const StaRow& row : ReadSta(path))
      if (row.converged) steps.push_back(StepOf(row));
    sink_.OnSteps(steps);
  }

private:
  ResultSink& sink_;
};

/// A file without an end mark behind an adapter, which lives as long as one reading.
template <typename Adapter>
class FileReader final : public ResultReader
{
public:
  explicit FileReader(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& Path() const noexcept override { return path_; }
  bool                         HasEndMark() const noexcept override { return false; }
  void Read(ResultSink& sink, const ReadProgress& progress) const override { Adapter(sink).Read(path_, progress); }

private:
  std::filesystem::path path_;
};

/// A .frd, whose data sets know how long they are.
class FrdFile final : public ResultReader
{
public:
  explicit FrdFile(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& Path() const noexcept override { return path_; }
  bool                         HasEndMark() const noexcept override { return true; }
  void Read(ResultSink& sink, const ReadProgress& progress) const override { FrdAdapter(sink).Read(path_, progress); }
  bool HasMarks() const noexcept override { return true; }
  std::vector<FieldMark> ReadHeads(ResultSink& sink, const ReadProgress& progress) const override
  {
    return FrdAdapter(sink).ReadHeads(path_, progress);
  }
  void ReadField(ResultSink& sink, const FieldMark& mark, const ReadProgress& progress) const override
  {
    FrdAdapter(sink).ReadField(path_, mark, progress);
  }

private:
  std::filesystem::path path_;
};

/// The paths of one job; those that are not given are empty.
struct JobPaths
{
  std::filesystem::path stem;
  std::filesystem::path frd;
  std::filesystem::path dat;
  std::filesystem::path sta;
};

constexpr const char* kExtensions[] = {".inp", ".frd", ".dat", ".sta"};

bool IsSolverFile(const std::filesystem::path& file)
{
  return std::ranges::find(kExtensions, LowerExtension(file)) != std::end(kExtensions);
}

std::filesystem::path StemOf(const std::filesystem::path& file)
{
  return std::filesystem::absolute(file).lexically_normal().replace_extension();
}

/// Adds the file, or, of a name that no file has, the solver's files of this stem.
/// @param empty receives a deck of the stem that is empty: it is not added
void AddFilesOf(const std::filesystem::path& name, std::vector<std::filesystem::path>& files,
                std::vector<std::filesystem::path>& empty)
{
  bool isStem = false;
  if (!IsSolverFile(name) && !std::filesystem::is_regular_file(name)) {
    for (const char* extension : kExtensions) {
      const std::filesystem::path file = name.string() + extension;
      if (!std::filesystem::is_regular_file(file)) continue;
      isStem = true;
      if (file.extension() == ".inp" && std::filesystem::file_size(file) == 0)
        empty.push_back(file);
      else
        files.push_back(file);
    }
  }
  if (!isStem) files.push_back(name);
}

/// @param empty receives a .sta that is empty: the job has none then
ResultJob MakeJob(JobPaths paths, std::vector<std::filesystem::path>& empty)
{
  if (paths.frd.empty() && paths.dat.empty()) {
    Fail(paths.sta.string() + ": expected a .frd or .dat of the same name with it");
  }
  if (!paths.sta.empty() && std::filesystem::is_regular_file(paths.sta) && std::filesystem::is_empty(paths.sta))
    empty.push_back(std::exchange(paths.sta, {}));
  std::filesystem::path beside = paths.frd.empty() ? paths.dat : paths.frd;  // named as the user names the job
  beside.replace_extension(".sta");
  std::error_code noSize;
  const bool      isThere = std::filesystem::file_size(beside, noSize) > 0 && !noSize;
  if (paths.sta.empty() && isThere) paths.sta = beside;

  ResultJob job;
  job.stem        = paths.stem;
  job.resultsName = paths.stem.filename().string() + ".frd";
  job.statusName  = paths.stem.filename().string() + ".sta";
  if (!paths.frd.empty()) job.results = MakeFrdReader(paths.frd);
  if (!paths.dat.empty()) job.prints = MakeDatReader(paths.dat);
  if (!paths.sta.empty()) job.status = MakeStaReader(paths.sta);
  return job;
}

/// A file of another sort belongs to a job by its name: "job.cvg" and "job.frd.gz", which job.* stands for as well.
/// @throws FED_Failure for one that belongs to none
void RequireOfJob(const std::filesystem::path& file, const std::vector<JobPaths>& jobs)
{
  const auto isOfJob = [&jobs](const std::filesystem::path& stem) {
    return std::ranges::any_of(jobs, [&stem](const JobPaths& job) { return job.stem == stem; });
  };
  std::filesystem::path stem = StemOf(file);
  while (stem.has_extension() && !isOfJob(stem)) stem.replace_extension();
  if (!isOfJob(stem)) Fail(file.string() + ": expected a result file .frd, .dat or .sta, or a deck .inp");
}

}  // namespace

ResultStep StepOf(const FrdDataset& dataset)
{
  constexpr int kTime     = 0;
  constexpr int kDynamic  = 1;
  constexpr int kModes    = 2;
  constexpr int kBuckling = 4;

  ResultStep step;
  step.step      = dataset.step;
  step.number    = dataset.outputNumber;
  step.value     = dataset.value;
  step.tolerance = FrdTolerance(dataset.value);

  const bool isTransient = dataset.kind == kTime || (dataset.kind == kDynamic && dataset.increment > 0);
  const bool isPreload   = dataset.kind == kBuckling && dataset.value == 0.0;
  if (isTransient || isPreload) {
    step.substep = dataset.increment;
  } else if (dataset.kind == kModes || dataset.kind == kBuckling) {
    step.analysis = AnalysisModes;
    step.substep  = dataset.mode;
    step.meaning  = dataset.kind == kBuckling ? StepValue::BucklingFactor : StepValue::Frequency;
  } else {
    step.analysis = AnalysisOther;
    step.meaning  = dataset.kind == kDynamic ? StepValue::Frequency : StepValue::None;
  }
  return step;
}

ResultStep StepOf(const DatBlock& block)
{
  ResultStep step;
  step.analysis  = block.harmonic ? AnalysisOther : block.mode > 0 ? AnalysisModes : AnalysisTime;
  step.substep   = block.mode;
  step.meaning   = block.harmonic ? StepValue::Frequency : StepValue::Time;
  step.value     = block.time;
  step.tolerance = DatTolerance(block.time);
  return step;
}

ResultStep StepOf(const StaRow& row)
{
  ResultStep step;
  step.step      = row.step;
  step.substep   = row.increment;
  step.value     = row.totalTime;
  step.tolerance = StatusTolerance(row.totalTime);
  return step;
}

std::unique_ptr<ResultReader> MakeFrdReader(std::filesystem::path path)
{
  return std::make_unique<FrdFile>(std::move(path));
}

std::unique_ptr<ResultReader> MakeDatReader(std::filesystem::path path)
{
  return std::make_unique<FileReader<DatAdapter>>(std::move(path));
}

std::unique_ptr<ResultReader> MakeStaReader(std::filesystem::path path)
{
  return std::make_unique<FileReader<StaAdapter>>(std::move(path));
}

JobFiles GroupFiles(const std::vector<std::filesystem::path>& named)
{
  std::vector<std::filesystem::path> files;
  JobFiles                           found;
  std::filesystem::path              deck;
  for (const std::filesystem::path& file : named) AddFilesOf(file, files, found.empty);
  std::vector<JobPaths> jobs;
  for (const std::filesystem::path& file : files) {
    const std::string extension = LowerExtension(file);
    if (!IsSolverFile(file)) {
      found.passedOver.push_back(file);
      continue;
    }
    if (extension == ".inp") {
      if (!deck.empty() && deck != file) Fail("expected one deck, found " + deck.string() + " and " + file.string());
      deck = file;
      continue;
    }
    // Absolute, so that "./job.frd" belongs to "job.dat" and a file that is named twice is read once.
    const std::filesystem::path stem = StemOf(file);
    auto job = std::find_if(jobs.begin(), jobs.end(), [&stem](const JobPaths& known) { return known.stem == stem; });
    if (job == jobs.end()) job = jobs.insert(jobs.end(), JobPaths{stem, {}, {}, {}});

    if (extension == ".frd") {
      job->frd = file;
    } else if (extension == ".dat") {
      job->dat = file;
    } else {
      job->sta = file;
    }
  }
  for (const std::filesystem::path& file : found.passedOver) RequireOfJob(file, jobs);
  if (!deck.empty()) found.deck = MakeDeckReader(std::move(deck));
  for (JobPaths& job : jobs) found.jobs.push_back(MakeJob(std::move(job), found.empty));
  return found;
}

}  // namespace quilon::calculix
