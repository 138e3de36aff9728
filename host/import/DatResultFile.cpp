#include "import/DatResultFile.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <string_view>
#include <utility>

#include <QuilonDbConnector/FED_Database.h>

#include "elements/Extrapolation.h"
#include "elements/LocalSystem.h"
#include "FEM_ResultUtil.h"
#include "import/DeckImporter.h"
#include "import/Derivation.h"
#include "text/Failure.h"

namespace quilon::calculix {

namespace {

constexpr int         kLoggedDatFile = 2;
constexpr std::size_t kNumComponents = 6;
constexpr int         kElementEnergy = 540;

/// Node rows that the catalogue has a kind for.
struct KnownKey
{
  const char* key;
  int         numValues;
  int         onf;
};

constexpr KnownKey kKnownNodeKeys[] = {
    {"U", 3, 510}, {"RF", 3, 511}, {"V", 3, 512}, {"NT", 1, 514}, {"RFL", 1, 517},
};

constexpr char kNoMesh[]      = "points of elements that no mesh holds";
constexpr char kNoMeshNodes[] = "rows of nodes that no mesh holds (kept)";
constexpr char kLocal[]       = "rows in local systems (kept, not averaged)";
constexpr char kLocalNodes[]  = "rows of nodes in local systems (kept apart)";
constexpr char kImaginary[]   = "imaginary parts";
constexpr char kFaces[]       = "rows of element faces";
constexpr char kNoKind[]      = "rows that no user kind is left for";

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
  if (numValues == kNumComponents && !words.empty() && words.front() == "xx")
    return {"xx", "yy", "zz", "xy", "yz", "zx"};
  if (words.size() == numValues) return words;

  words.clear();
  for (std::size_t k = 1; k <= numValues; ++k) words.push_back(std::to_string(k));
  return words;
}

}  // namespace

DatResultFile::DatResultFile(const std::filesystem::path& path, ImportJob& job)
    : FEMResultFile(path.string(), job.Options().iteration, 0, job.Database()), path_(path), job_(job)
{}

void DatResultFile::Read()
{
  job_.Logger().SetReadResultType(kLoggedDatFile, path_.filename().string());
  ReadDat(path_, *this, job_.Progress(path_));
  CheckEnd();
  FinishResult();
  job_.Logger().ForceOutput();

  const std::string name = path_.filename().string();
  if (job_.Steps().HasNumbered()) {
    job_.Record().Notice(name + ": neither a .frd nor a .sta tells steps and increments, result times are numbered");
  }
  if (partialNodes_ > 0) {
    job_.Record().Notice(name + ": " + std::to_string(partialNodes_) +
                         " nodal averages are over some of the node's elements only; the counts (552, 555) tell");
  }
}

void DatResultFile::Fail(std::int64_t line, const std::string& message) const
{
  quilon::Fail(path_.string() + ":" + std::to_string(line) + ": " + message);
}

void DatResultFile::OnModes(std::span<const DatMode> modes)
{
  const int loadCase = job_.Steps().MatchModeTable();
  for (const DatMode& mode : modes) {
    const StepKey key{loadCase, AnalysisModes, mode.mode};
    if (mode.buckling) {
      job_.SetScalar(key, ScalarBucklingFactor, mode.eigenvalue);
    } else {
      job_.SetScalar(key, ScalarEigenvalue, mode.eigenvalue);
      job_.SetScalar(key, ScalarFrequency, mode.frequency);
    }
  }
}

void DatResultFile::OnSkipped(const std::string& reason, std::size_t rows, std::int64_t)
{
  job_.Record().Skip(reason, rows);
}

void DatResultFile::OnBlockBegin(const DatBlock& block)
{
  block_    = block;
  isRead_   = false;
  numRows_  = 0;
  quantity_ = std::nullopt;
  skipReason_.clear();
  cutShort_.clear();

  const std::optional<StepMatcher::Match> match = job_.Steps().MatchBlock(block);
  if (!match) {
    if (job_.HasLimit()) return;  // of a result that the .frd did not get to tell
    Fail(block.line, "expected a total time or a mode that the .frd or the .sta lists, found time " +
                         std::to_string(block.time) + ", mode " + std::to_string(block.mode));
  }
  BeginResult(match->key);
  ++numBlocks_;
  if (!job_.IsWithin(match->key)) {
    job_.Logger().SetSkipSubstep(match->key.analysis, match->key.loadCase, match->key.substep);
    return;
  }

  job_.Logger().SetReadSubstep(match->key.analysis, match->key.loadCase, match->key.substep);
  if (match->key.analysis == AnalysisTime) job_.SetScalar(match->key, ScalarTime, match->value);
  // Harmonic results come twice, real part first.
  if (block.imaginary || (match->key.analysis == AnalysisOther && match->repeated)) {
    skipReason_ = kImaginary;
    return;
  }

  isRead_ = true;
  switch (block.rows) {
    case DatRows::Node:
      OpenNodeBlock(block);
      break;
    case DatRows::Element:
      OpenElementBlock(block);
      break;
    case DatRows::Point:
      OpenPointBlock(block);
      break;
    case DatRows::Total:
      break;
  }
}

void DatResultFile::BeginResult(const StepKey& key)
{
  if (current_ == key) return;
  FinishResult();
  const bool sameStep = current_ && current_->loadCase == key.loadCase && current_->analysis == key.analysis;
  numExpected_        = sameStep ? numBlocks_ : 0;
  numBlocks_          = 0;
  current_            = key;
  ++resultNumber_;
}

void DatResultFile::FinishResult()
{
  for (const Quantity quantity : {QuantityStress, QuantityStrain}) {
    if (averages_[quantity].empty()) continue;
    for (const auto& [group, average] : averages_[quantity]) SaveAverages(quantity, group, average);
    job_.MarkAveraged(*current_, quantity);
    // Not reset: a node that the next result does not reach would be saved as zero.
    averages_[quantity].clear();
  }
}

void DatResultFile::OpenView(int onf)
{
  if (onf == 0) {
    isRead_     = false;
    skipReason_ = kNoKind;
    return;
  }
  view_ = std::make_unique<FED_IdDataBlock>(job_.Block(*current_, onf, 0), database_.GetIdMapsPool(), true);
}

void DatResultFile::OpenNodeBlock(const DatBlock& block)
{
  const auto known = std::find_if(std::begin(kKnownNodeKeys), std::end(kKnownNodeKeys), [&block](const KnownKey& k) {
    return block.key == k.key && block.numValues == k.numValues;
  });
  const UserHundred hundred = NodeHundred(static_cast<std::size_t>(block.numValues));
  const bool        isKnown = known != std::end(kKnownNodeKeys);
  OpenView(isKnown ? known->onf : job_.Kinds().Find(hundred, block.key));
  if (view_ && hundred == UserNodeList) record_ = &view_->CreateIdDataRecord();
}

void DatResultFile::OpenElementBlock(const DatBlock& block)
{
  const UserHundred hundred = ElementHundred(static_cast<std::size_t>(block.numValues));
  const bool        isKnown = block.key == "ELSE" && block.numValues == 1;
  OpenView(isKnown ? kElementEnergy : job_.Kinds().Find(hundred, block.key));
  if (view_ && hundred == UserElementList) record_ = &view_->CreateIdDataRecord();
}

void DatResultFile::OpenPointBlock(const DatBlock& block)
{
  element_ = Element();
  for (const Quantity quantity : {QuantityStress, QuantityStrain}) {
    if (block.key == kTensorKinds[quantity].datKey) quantity_ = quantity;
  }
  // Tensors open their blocks with the first element that needs them: a block of local rows alone makes none.
  if (!quantity_) OpenView(job_.Kinds().Find(UserElementList, block.key));
  if (view_) record_ = &view_->CreateIdDataRecord();
}

void DatResultFile::OnRows(const DatBlock& block, std::span<const DatRow> rows)
{
  numRows_ += rows.size();
  if (!isRead_) {
    if (!skipReason_.empty()) job_.Record().Skip(skipReason_, rows.size());
    return;
  }
  std::size_t numFaces   = 0;
  std::size_t numUnknown = 0;
  std::size_t numLocal   = 0;
  for (const DatRow& row : rows) {
    switch (block.rows) {
      case DatRows::Node:
        if (!job_.Mesh().IsEmpty() && job_.Mesh().FindNode(row.id) == nullptr) ++numUnknown;
        if (row.localSystem && row.values.size() == 3) {
          KeepLocalRow(row);
          ++numLocal;
        } else {
          WriteRow(row);
        }
        break;
      case DatRows::Element:
        if (row.point == 0) {
          WriteRow(row);
        } else {
          ++numFaces;
        }
        break;
      case DatRows::Point:
        AddPoint(row);
        break;
      case DatRows::Total:
        WriteTotals(block, row);
        break;
    }
  }
  job_.Record().Skip(kFaces, numFaces);
  // No mistake in itself: the .frd lists neither the original nodes of expanded shells nor those that rotate a rigid
  // body.
  job_.Record().Skip(kNoMeshNodes, numUnknown);
  job_.Record().Skip(kLocalNodes, numLocal);
}

void DatResultFile::WriteRow(const DatRow& row)
{
  if (record_ != nullptr) {
    list_.assign(row.values.begin(), row.values.end());
    record_->SetDoubleList(1, list_);
    view_->SetRecord(row.id, *record_);
  } else if (row.values.size() == 1) {
    view_->SetScalar(row.id, row.values.front());
  } else if (row.values.size() == 3) {
    view_->SetVector(row.id, row.values.data());
  } else {
    view_->SetTensor(row.id, row.values.data());
  }
}

/// Keeps the vector of a node with axes of its own beside the global ones.
void DatResultFile::KeepLocalRow(const DatRow& row)
{
  if (!OpenLocalView(NodeHundred(row.values.size()), block_.key)) return job_.Record().Skip(kNoKind, 1);
  localView_->SetVector(row.id, row.values.data());
}

/// @return false when no user kind is left
bool DatResultFile::OpenLocalView(UserHundred hundred, const std::string& key)
{
  if (localView_) return true;
  const int onf = job_.Kinds().Find(hundred, key + " in local systems");
  if (onf == 0) return false;
  localView_ = std::make_unique<FED_IdDataBlock>(job_.Block(*current_, onf, 0), database_.GetIdMapsPool(), true);
  return true;
}

void DatResultFile::WriteTotals(const DatBlock& block, const DatRow& row)
{
  const std::vector<std::string> labels = TotalLabels(block.title, row.values.size());
  for (std::size_t k = 0; k < labels.size(); ++k) {
    std::string name = WithoutParentheses(block.title);
    if (!labels[k].empty()) name += " " + labels[k];
    if (!block.set.empty()) name += " " + block.set;
    const int history = job_.Kinds().Find(UserHistory, name);
    if (history == 0) {
      job_.Record().Skip(kNoKind, 1);
    } else {
      job_.SetScalar(*current_, history, row.values[k]);
    }
  }
}

void DatResultFile::AddPoint(const DatRow& row)
{
  if (row.id != element_.id || row.point == 1) {
    FinishElement();
    element_.id = row.id;
  }
  const auto expected = static_cast<int>(element_.numPoints) + 1;
  if (row.point != expected) {
    Fail(row.line, "expected integration point " + std::to_string(expected) + " of element " + std::to_string(row.id) +
                       ", found point " + std::to_string(row.point));
  }
  ++element_.numPoints;
  element_.localSystem = element_.localSystem || row.localSystem;
  element_.values.insert(element_.values.end(), row.values.begin(), row.values.end());
}

void DatResultFile::FinishElement()
{
  if (element_.numPoints > 0) {
    const ResultMesh::Element* element = job_.Mesh().FindElement(element_.id);
    if (element != nullptr) CountPoints(element->type);
    if (quantity_ && element_.localSystem && TurnPoints()) element_.localSystem = false;
    KeepPoints();
    if (quantity_ && element_.localSystem) job_.Record().Skip(kLocal, element_.numPoints);
    if (quantity_ && !element_.localSystem) AverageElement();
  }
  element_.id          = 0;
  element_.numPoints   = 0;
  element_.localSystem = false;
  element_.values.clear();
}

/// The last element of a file that was cut has fewer points than others of its type.
void DatResultFile::CountPoints(int frdType)
{
  std::set<std::size_t>& counts = pointsOfType_[frdType];
  cutShort_.clear();
  if (!counts.empty() && element_.numPoints < *counts.begin() &&
      FindExtrapolation(frdType, element_.numPoints) == nullptr)
  {
    cutShort_ = "expected " + std::to_string(*counts.begin()) + " integration points of element " +
                std::to_string(element_.id) + ", the file ends after " + std::to_string(element_.numPoints);
  }
  counts.insert(element_.numPoints);
}

void DatResultFile::KeepPoints()
{
  const auto numPoints = static_cast<int>(element_.numPoints);
  if (!quantity_) {
    record_->SetDoubleList(1, element_.values);
    view_->SetRecord(element_.id, *record_);
    return;
  }

  const TensorKinds& kinds = kTensorKinds[*quantity_];
  if (element_.localSystem) {
    if (!OpenLocalView(UserElementList, kinds.datKey)) return job_.Record().Skip(kNoKind, element_.numPoints);
    FED_IdDataRecord& record = localView_->CreateIdDataRecord();
    record.SetDoubleList(1, element_.values);
    localView_->SetRecord(element_.id, record);
    localView_->DeleteIdDataRecord(record);
    return;
  }

  if (!view_) {
    OpenView(kinds.points);
    record_ = &view_->CreateIdDataRecord();
    meanView_ =
        std::make_unique<FED_IdDataBlock>(job_.Block(*current_, kinds.elementMean, 0), database_.GetIdMapsPool(), true);
  }
  record_->SetInteger(1, numPoints);
  record_->SetDoubleList(2, element_.values);
  view_->SetRecord(element_.id, *record_);

  double mean[kNumComponents] = {};
  for (std::size_t i = 0; i < element_.values.size(); ++i) mean[i % kNumComponents] += element_.values[i];
  for (double& component : mean) component /= numPoints;
  meanView_->SetTensor(element_.id, mean);
}

/// Turns the points of an oriented solid into global axes.
/// @return false, and nothing is changed, where no deck tells how
bool DatResultFile::TurnPoints()
{
  const ImportedDeck* deck    = job_.Deck();
  const DeckElement*  element = deck == nullptr ? nullptr : deck->model.FindElement(element_.id);
  const int           number  = deck == nullptr ? 0 : deck->SectionOf(element_.id).orientation;
  if (element == nullptr || element->type->dimension != 3 || number == 0) return false;

  std::vector<double> coordinates;
  for (const int node : deck->model.NodesOf(*element)) {
    const DeckNode* found = deck->model.FindNode(node);
    if (found == nullptr) return false;  // of a deck that goes on from a restart file
    coordinates.insert(coordinates.end(), found->position.begin(), found->position.end());
  }
  std::vector<double> points(3 * element_.numPoints);
  if (!LocatePoints(element->type->frdType, element_.numPoints, coordinates, points)) return false;

  const DeckOrientation& orientation = deck->model.orientations[static_cast<std::size_t>(number) - 1];
  std::vector<double>    turned      = element_.values;
  for (std::size_t p = 0; p < element_.numPoints; ++p) {
    const std::optional<LocalAxes> axes =
        FindLocalAxes(orientation, {points[3 * p], points[3 * p + 1], points[3 * p + 2]});
    if (!axes) return false;
    TurnToGlobal(*axes, std::span(turned).subspan(kNumComponents * p).first<kNumComponents>());
  }
  element_.values = std::move(turned);
  return true;
}

void DatResultFile::AverageElement()
{
  ResultMesh::Element* element = job_.Mesh().FindElement(element_.id);
  if (element == nullptr) return job_.Record().Skip(kNoMesh, element_.numPoints);
  const ExtrapolationRule* rule = FindExtrapolation(element->type, element_.numPoints);
  if (rule == nullptr) {
    return job_.Record().Skip(
        "element type without extrapolation: " + DescribeElementType(element->type, element_.numPoints),
        element_.numPoints);
  }
  // Sets may overlap, and a set may hold an element twice.
  std::size_t& averagedIn = element->averagedIn[*quantity_];
  if (averagedIn == resultNumber_) return;
  averagedIn = resultNumber_;

  nodal_.resize(rule->NumNodes() * kNumComponents);
  Extrapolate(*rule, element_.values, nodal_);
  const std::span<const int> nodes = job_.Mesh().NodesOf(*element);
  assert(nodes.size() == rule->NumNodes());
  AddToAverage(averages_[*quantity_][0], nodes);
  for (const int group : job_.Groups().GroupsOf(element_.id, *element)) {
    AddToAverage(averages_[*quantity_][group], nodes);
  }

  const std::string_view type = element->deckType != nullptr ? element->deckType->name : rule->name;
  for (const int id : nodes) {
    ResultMesh::Node& node = *job_.Mesh().FindNode(id);
    if (node.type.empty()) node.type = type;
    node.isMixed = node.isMixed || node.type != type;
  }
}

/// Adds the nodal values of the element being read.
void DatResultFile::AddToAverage(Average& average, std::span<const int> nodes) const
{
  for (std::size_t n = 0; n < nodes.size(); ++n) {
    double value[kNumComponents];
    std::copy_n(&nodal_[n * kNumComponents], kNumComponents, value);
    average.sums.AddValue(nodes[n], value);
    average.statistics.AddValue(nodes[n], value);
  }
}

void DatResultFile::OnBlockEnd(const DatBlock& block)
{
  if (isRead_ && block.rows == DatRows::Point) FinishElement();

  // The sets of a job stay as they are, so a block has the rows that it had in earlier results.
  const auto [known, isNew] = rowsOfBlock_.try_emplace({block.title, block.set}, numRows_, block.line);
  const auto [rows, line]   = known->second;
  if (!isNew && numRows_ < rows) {
    cutShort_ = "expected " + std::to_string(rows) + " rows as in the block at line " + std::to_string(line) +
                ", the file ends after " + std::to_string(numRows_);
  }
  cutLine_ = block.line;

  isRead_ = false;
  record_ = nullptr;
  view_.reset();
  meanView_.reset();
  localView_.reset();
}

/// A .dat has no end mark. But a step asks for the same in all its results, and for its .frd at the same times.
void DatResultFile::CheckEnd() const
{
  if (!cutShort_.empty()) Fail(cutLine_, cutShort_);
  if (!current_) return;
  if (numBlocks_ < numExpected_) {
    Fail(cutLine_, "expected " + std::to_string(numExpected_) +
                       " blocks as in the result before, the file ends after " + std::to_string(numBlocks_));
  }
  if (const std::optional<StepKey> last = job_.Steps().LastBehind(*current_)) {
    Fail(cutLine_, "expected results of step " + std::to_string(last->loadCase) + " up to substep " +
                       std::to_string(last->substep) + " as in the .frd, the file ends after substep " +
                       std::to_string(current_->substep));
  }
}

void DatResultFile::SaveAverages(Quantity quantity, int group, const Average& average)
{
  const TensorKinds& kinds = kTensorKinds[quantity];
  average.sums.SaveField(database_, job_.Descriptor(*current_, kinds.average, group), FEM_AvgFieldDefs::NoLayerIndex,
                         FEM_AvgFieldDefs::Average, true, nullptr);
  average.statistics.SaveField(database_, job_.Descriptor(*current_, kinds.variance, group),
                               FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Variance, true, nullptr);
  SaveError(quantity, group, average);
  SaveCounts(quantity, group, average);
}

void DatResultFile::SaveCounts(Quantity quantity, int group, const Average& average)
{
  std::vector<int>                      ids;
  std::vector<FEM_AvgUtil::StatData<6>> data;
  average.statistics.DumpField(0, ids, data);

  FED_IdDataBlock view(job_.Block(*current_, kTensorKinds[quantity].count, ids.size(), group),
                       database_.GetIdMapsPool(), true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    view.SetScalar(ids[i], data[i].count);
    if (group == 0 && data[i].count < job_.Mesh().FindNode(ids[i])->numElements) ++partialNodes_;
  }
}

/// The measure of FEM_ResultUtil::CalculateNodalStressError(), with principal values that hold for tensors of any size.
void DatResultFile::SaveError(Quantity quantity, int group, const Average& average)
{
  std::vector<int>                      ids;
  std::vector<FEM_AvgUtil::StatData<6>> data;
  average.statistics.DumpField(0, ids, data);

  FED_IdDataBlock view(job_.Block(*current_, kTensorKinds[quantity].error, ids.size(), group),
                       database_.GetIdMapsPool(), true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const double count = data[i].count;
    double       error[kNumComponents];
    for (std::size_t k = 0; k < kNumComponents; ++k) error[k] = std::sqrt(std::abs(data[i].m2[k] / count / count));
    double principal[3];
    CalculateScaledPrincipals(error, principal);
    view.SetScalar(ids[i], principal[0]);
  }
}

}  // namespace quilon::calculix
