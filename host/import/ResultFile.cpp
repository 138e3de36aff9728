#include "import/ResultFile.h"

#include <algorithm>
#include <bit>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "import/ModelBlocks.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "text/Failure.h"

namespace quilon {

namespace {

/// Fields that the catalogue has a kind for, but tensors.
struct KnownField
{
  FieldQuantity quantity;
  FieldPlace    place;
  std::size_t   numValues;
  int           onf;
};

constexpr KnownField kKnownFields[] = {
    {FieldQuantity::Displacement, FieldPlace::Node, 3, OnfKind::Displacement},
    {FieldQuantity::Reaction, FieldPlace::Node, 3, OnfKind::Reaction},
    {FieldQuantity::Velocity, FieldPlace::Node, 3, OnfKind::Velocity},
    {FieldQuantity::Temperature, FieldPlace::Node, 1, OnfKind::Temperature},
    {FieldQuantity::HeatFlux, FieldPlace::Node, 3, OnfKind::HeatFlux},
    {FieldQuantity::HeatFlow, FieldPlace::Node, 1, OnfKind::HeatGeneration},
    {FieldQuantity::PlasticStrain, FieldPlace::Node, 1, OnfKind::EquivalentPlasticStrain},
    {FieldQuantity::Energy, FieldPlace::Node, 1, OnfKind::EnergyDensity},
    {FieldQuantity::Energy, FieldPlace::Element, 1, OnfKind::ElementEnergy},
};

constexpr int kLoggedListedFile  = 1;
constexpr int kLoggedPrintedFile = 2;

constexpr char kNoMeshNodes[] = "rows of nodes that no mesh holds (kept)";
constexpr char kLocalNodes[]  = "rows of nodes in local systems (kept apart)";
constexpr char kRepeated[]    = "rows of blocks that repeat a time, a quantity and a set with other values";
constexpr char kFaces[]       = "rows of element faces";

/// @return a fingerprint of ids and values, bit by bit (FNV-1a)
std::uint64_t PrintOf(std::span<const ResultRow> rows)
{
  constexpr std::uint64_t kStart = 14695981039346656037U;
  constexpr std::uint64_t kPrime = 1099511628211U;
  std::uint64_t           print  = kStart;
  const auto              add    = [&print](std::uint64_t word) {
    print = (print ^ word) * kPrime;
    print ^= print >> 32;  // or high bits of a double would never reach the low ones
  };
  for (const ResultRow& row : rows) {
    add(static_cast<std::uint64_t>(row.id));
    for (const double value : row.values) add(std::bit_cast<std::uint64_t>(value));
  }
  return print;
}

}  // namespace

ResultFile::ResultFile(const ResultReader& reader, Pass pass, ImportJob& job)
    : FEMResultFile(reader.Path().string(), job.options.iteration, pass, job.blocks.GetDatabase()),
      reader_(reader),
      job_(job),
      meshSaved_(pass == PassResults || pass == PassSteps),
      averages_(job.blocks, job.mesh, job.groups, job.record),
      endCheck_(reader.HasEndMark() ? nullptr
                                    : std::make_unique<EndCheck>(reader.Path(), job.files.resultsName, job.steps)),
      points_(reader.Path(), {job.blocks, job.kinds, job.mesh, job.deck, averages_, job.record, endCheck_.get()})
{}

void ResultFile::Read()
{
  const std::string name = reader_.Path().filename().string();
  if (secondNumber_ == PassResults || secondNumber_ == PassAll)
    job_.logger.SetReadResultType(endCheck_ ? kLoggedPrintedFile : kLoggedListedFile, name);
  reader_.Read(*this, job_.MakeProgress(reader_.Path()));
  // Before the check of the end, for the last result may be whole all the same; what is broken is dropped later.
  if (current_) averages_.Save(*current_);
  if (endCheck_) endCheck_->Finish();
  SaveMesh();
  job_.logger.ForceOutput();
  if (endCheck_ && job_.steps.HasNumbered()) {
    job_.record.Notice(name + ": neither " + job_.files.resultsName + " nor " + job_.files.statusName +
                       " tells steps and increments, result times are numbered");
  }
  if (averages_.NumPartial() > 0) {
    job_.record.Notice(name + ": " + std::to_string(averages_.NumPartial()) +
                       " nodal averages are over some of the node's elements only; the counts (552, 555) tell");
  }
}

std::vector<ResultFile::Head> ResultFile::ReadHeads()
{
  job_.logger.SetReadResultType(kLoggedListedFile, reader_.Path().filename().string());
  const std::vector<FieldMark> marks = reader_.ReadHeads(*this, job_.MakeProgress(reader_.Path()));
  SaveMesh();
  job_.logger.ForceOutput();
  if (marks.size() != heads_.size()) return {};
  for (std::size_t i = 0; i < marks.size(); ++i) heads_[i].mark = marks[i];
  return std::move(heads_);
}

void ResultFile::ReadField(const FieldMark& mark)
{
  reader_.ReadField(*this, mark, [](std::uint64_t, std::uint64_t) { ThrowIfInterrupted(); });
}

void ResultFile::SaveMesh()
{
  // Whole meshes only: a file that breaks within its mesh leaves nothing.
  if (!meshSaved_) job_.SaveMesh();
  meshSaved_ = true;
}

void ResultFile::OnNodes(std::span<const int> ids, std::span<const double> coordinates)
{
  if (secondNumber_ != PassResults) job_.mesh.AddNodes(ids, coordinates);
}

void ResultFile::OnElements(std::span<const MeshElement> elements)
{
  if (secondNumber_ != PassResults) job_.mesh.AddElements(elements);
}

void ResultFile::OnNodeSets(std::span<const ModelSet> sets)
{
  if (secondNumber_ != PassResults) job_.model.AddNodeSets(sets);
}

void ResultFile::OnElementSets(std::span<const ModelSet> sets)
{
  if (secondNumber_ != PassResults) job_.model.AddElementSets(sets);
}

void ResultFile::OnMaterials(std::span<const ModelMaterial> materials)
{
  if (secondNumber_ != PassResults) job_.model.AddMaterials(materials);
}

void ResultFile::OnSteps(std::span<const ResultStep> steps)
{
  for (const ResultStep& step : steps) job_.steps.AddListed(step, false);
}

void ResultFile::OnModes(std::span<const ResultMode> modes)
{
  const int loadCase = job_.steps.MatchModeTable();
  for (const ResultMode& mode : modes) {
    const StepKey key{loadCase, AnalysisModes, mode.mode};
    if (mode.isBuckling) {
      job_.blocks.SetScalar(key, OnfKind::BucklingFactor, mode.eigenvalue);
    } else {
      job_.blocks.SetScalar(key, OnfKind::Eigenvalue, mode.eigenvalue);
      job_.blocks.SetScalar(key, OnfKind::Frequency, mode.frequency);
    }
  }
}

void ResultFile::OnSkipped(const std::string& reason, std::size_t rows) { job_.record.Skip(reason, rows); }

bool ResultFile::OnFieldBegin(const ResultField& field)
{
  SaveMesh();
  isListed_ = field.step.step != 0;
  isRead_   = false;
  batch_    = 0;
  repeated_.reset();
  skipReason_.clear();
  return isListed_ ? BeginListedField(field) : BeginPrintedField(field);
}

bool ResultFile::BeginListedField(const ResultField& field)
{
  const StepKey key = job_.steps.AddListed(field.step, true);
  BeginResult(key);
  const bool isNew = names_.insert(field.identity).second;
  if (endCheck_) endCheck_->BeginField(key);
  if (secondNumber_ == PassMesh) return false;
  if (!job_.blocks.IsWithin(key)) {
    job_.logger.SetSkipSubstep(key.analysis, key.loadCase, key.substep);
    return false;
  }

  if (!job_.IsPart()) job_.logger.SetReadSubstep(key.analysis, key.loadCase, key.substep);
  SetResultScalars(key, field.step);
  if (secondNumber_ == PassHeads) {
    heads_.push_back({{}, key, field.step});
    if (isNew) FindKind(field);
    return false;
  }
  if (!isNew)
    Skip("data sets that a result has had already: " + field.name);
  else
    OpenField(field);
  return true;
}

bool ResultFile::BeginPrintedField(const ResultField& field)
{
  const std::optional<StepMatcher::Match> match = job_.steps.MatchPrinted(field.step, field.identity);
  if (!match) {
    if (endCheck_) endCheck_->BeginField(std::nullopt);
    if (job_.blocks.HasLimit()) return true;  // of a result that the listing file did not get to tell
    Fail(reader_.Path().string() + ":" + std::to_string(field.line) + ": expected a total time or a mode that " +
         job_.files.resultsName + " or " + job_.files.statusName + " lists, found time " +
         std::to_string(field.step.value) + ", mode " +
         std::to_string(field.step.analysis == AnalysisModes ? field.step.substep : 0));
  }
  if (match->repeated && match->key == current_) {
    repeated_ = match;
    return true;
  }
  return BeginMatchedField(field, *match);
}

bool ResultFile::BeginMatchedField(const ResultField& field, const StepMatcher::Match& match)
{
  if (endCheck_) endCheck_->BeginField(match.key);
  BeginResult(match.key);
  if (!job_.blocks.IsWithin(match.key)) {
    job_.logger.SetSkipSubstep(match.key.analysis, match.key.loadCase, match.key.substep);
    return true;
  }

  job_.logger.SetReadSubstep(match.key.analysis, match.key.loadCase, match.key.substep);
  if (match.key.analysis == AnalysisTime) job_.blocks.SetScalar(match.key, OnfKind::Time, match.value);
  if (field.step.meaning == StepValue::Frequency) job_.blocks.SetScalar(match.key, OnfKind::Frequency, match.value);
  OpenField(field);
  return true;
}

/// A field that repeats one of its result is the same once more, for two cards may ask for the same, or, where nothing
/// lists the results, one of another result at the same time. Nothing that was read is ever replaced.
/// @return whether the rows are of a result of their own
bool ResultFile::CheckRepeated(const ResultField& field, std::span<const ResultRow> rows)
{
  const std::vector<std::uint64_t>& known  = prints_[field.identity];
  const bool                        isSame = batch_ < known.size() && known[batch_] == PrintOf(rows);
  if (batch_ == 0) {
    const std::optional<StepMatcher::Match> match =
        isSame ? std::nullopt : job_.steps.MatchRepeated(field.step, field.identity);
    if (match) {
      repeated_.reset();
      BeginMatchedField(field, *match);
      return true;
    }
    if (endCheck_) endCheck_->BeginField(repeated_->key);
  }
  if (!isSame) job_.record.Skip(kRepeated, rows.size());
  return false;
}

void ResultFile::BeginResult(const StepKey& key)
{
  if (current_ == key) return;
  if (current_) averages_.Save(*current_);
  hasWhole_ = current_.has_value();
  if (current_ && current_->loadCase == key.loadCase && current_->analysis == key.analysis)
    former_ = std::move(names_);
  else
    former_.clear();
  names_.clear();
  prints_.clear();
  current_ = key;
  if (const std::optional<double> is = job_.FindLargeDisplacements(key))
    job_.blocks.SetScalar(key, OnfKind::LargeDisplacements, *is);
}

void ResultFile::SetResultScalars(const StepKey& key, const ResultStep& step)
{
  switch (step.meaning) {
    case StepValue::Time:
      return job_.blocks.SetScalar(key, OnfKind::Time, step.value);
    case StepValue::Frequency:
      return job_.blocks.SetScalar(key, OnfKind::Frequency, step.value);
    case StepValue::BucklingFactor:
      return job_.blocks.SetScalar(key, OnfKind::BucklingFactor, step.value);
    case StepValue::None:
      break;
  }
}

void ResultFile::OpenField(const ResultField& field)
{
  isRead_ = true;
  switch (field.place) {
    case FieldPlace::Node:
      OpenView(FindKind(field), NodeHundred(field.numValues) == UserNodeList);
      break;
    case FieldPlace::Element:
      OpenView(FindKind(field), ElementHundred(field.numValues) == UserElementList);
      break;
    case FieldPlace::Point:
      isRead_ = points_.Begin(*current_, field);
      break;
    case FieldPlace::Total:
      break;
  }
  if (!isRead_) Skip(isListed_ ? "data sets that no user kind is left for: " + field.name : ImportRecord::kNoKind);
}

/// @param onf 0 when no user kind is left
void ResultFile::OpenView(int onf, bool isList)
{
  isRead_ = onf != 0;
  if (!isRead_) return;
  if (isListed_ && job_.blocks.HasWritten(*current_, onf))
    values_ = std::make_unique<ValueComparison>(KindTable(database_).GetName(onf), *current_, job_.files.resultsName);
  view_   = std::make_unique<FED_IdDataBlock>(job_.blocks.Block(*current_, onf, 0), database_.GetIdMapsPool(), true);
  record_ = isList ? &view_->CreateIdDataRecord() : nullptr;
  for (const Quantity quantity : kQuantities) {
    const TensorKinds& kinds = kTensorKinds[quantity];
    if (onf != kinds.solver) continue;
    comparison_ = std::make_unique<AverageComparison>(quantity, job_.blocks.Block(*current_, kinds.average, 0),
                                                      job_.blocks.Block(*current_, kinds.count, 0),
                                                      database_.GetIdMapsPool(), job_.mesh);
  }
}

/// @return 0 when the database has no user kind left for the field
int ResultFile::FindKind(const ResultField& field)
{
  if (const std::optional<Quantity> quantity = FindTensor(field); quantity && field.place == FieldPlace::Node) {
    averages_.Save(*current_);  // of points of the same result
    const TensorKinds& kinds = kTensorKinds[*quantity];
    return job_.blocks.IsAveraged(*current_, *quantity) ? kinds.solver : kinds.average;
  }
  for (const KnownField& known : kKnownFields) {
    if (field.quantity == known.quantity && field.place == known.place && field.numValues == known.numValues)
      return known.onf;
  }
  return job_.kinds.Find(
      field.place == FieldPlace::Node ? NodeHundred(field.numValues) : ElementHundred(field.numValues), field.name);
}

void ResultFile::OnRows(const ResultField& field, std::span<const ResultRow> rows)
{
  const bool isKnown = repeated_ && !CheckRepeated(field, rows);
  ++batch_;
  if (endCheck_) endCheck_->AddRows(rows.size());
  if (isKnown) return;
  if (!isListed_) prints_[field.identity].push_back(PrintOf(rows));
  if (!isRead_) {
    if (!skipReason_.empty()) job_.record.Skip(skipReason_, rows.size());
    return;
  }
  switch (field.place) {
    case FieldPlace::Node:
      return ReadNodeRows(field, rows);
    case FieldPlace::Element:
      return ReadElementRows(rows);
    case FieldPlace::Point:
      for (const ResultRow& row : rows) points_.Add(row);
      break;
    case FieldPlace::Total:
      for (const ResultRow& row : rows) WriteTotals(field, row);
      break;
  }
}

void ResultFile::ReadNodeRows(const ResultField& field, std::span<const ResultRow> rows)
{
  constexpr std::size_t kVector    = 3;
  const bool            hasMesh    = !job_.mesh.IsEmpty();
  std::size_t           numUnknown = 0;
  std::size_t           numLocal   = 0;
  for (const ResultRow& row : rows) {
    // No mistake in itself: a listing file has neither the original nodes of expanded shells nor those that rotate a
    // rigid body.
    if (!isListed_ && hasMesh && job_.mesh.FindNode(row.id) == nullptr) ++numUnknown;
    if (row.localSystem && row.values.size() == kVector) {
      KeepLocalRow(field, row);
      ++numLocal;
      continue;
    }
    if (values_ && IsInPrints(row)) continue;
    WriteRow(row);
    if (comparison_) comparison_->Compare(row.id, row.values.data());
  }
  job_.record.Skip(kNoMeshNodes, numUnknown);
  job_.record.Skip(kLocalNodes, numLocal);
}

void ResultFile::ReadElementRows(std::span<const ResultRow> rows)
{
  std::size_t numFaces = 0;
  for (const ResultRow& row : rows) {
    if (row.point == 0) {
      WriteRow(row);
    } else {
      ++numFaces;
    }
  }
  job_.record.Skip(kFaces, numFaces);
}

void ResultFile::WriteRow(const ResultRow& row)
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
void ResultFile::KeepLocalRow(const ResultField& field, const ResultRow& row)
{
  if (!localView_) {
    const int onf = job_.kinds.Find(NodeHundred(row.values.size()), field.name + " in local systems");
    if (onf == 0) return job_.record.Skip(ImportRecord::kNoKind, 1);
    localView_ =
        std::make_unique<FED_IdDataBlock>(job_.blocks.Block(*current_, onf, 0), database_.GetIdMapsPool(), true);
  }
  localView_->SetVector(row.id, row.values.data());
}

void ResultFile::WriteTotals(const ResultField& field, const ResultRow& row)
{
  for (std::size_t k = 0; k < field.valueNames.size(); ++k) {
    const int history = job_.kinds.Find(UserHistory, field.valueNames[k]);
    if (history == 0) {
      job_.record.Skip(ImportRecord::kNoKind, 1);
    } else {
      job_.blocks.SetScalar(*current_, history, row.values[k]);
    }
  }
}

/// @return whether the prints have the value too, with more digits
bool ResultFile::IsInPrints(const ResultRow& rounded)
{
  constexpr std::size_t kVector       = 3;
  const std::size_t     numComponents = rounded.values.size();
  double                values[kVector];
  if (numComponents != 1 && numComponents != kVector) return false;
  values_->AddMagnitude(rounded.values);
  if (!view_->HasRecord(rounded.id)) return false;
  if (numComponents == 1)
    view_->GetScalar(rounded.id, values[0]);
  else
    view_->GetVector(rounded.id, values);
  return values_->Compare(rounded.id, {values, numComponents}, rounded.values);
}

/// A step asks for the same in all its results: the last one is whole where it has what the one before it has. Of the
/// first one of a step nothing tells that more was to come.
void ResultFile::OnCutBehindField()
{
  if (!current_ || !std::includes(names_.begin(), names_.end(), former_.begin(), former_.end())) return;
  behindLast_ = current_;
  ++behindLast_->substep;
}

void ResultFile::OnFieldEnd(const ResultField& field)
{
  if (repeated_ && batch_ == 0 && endCheck_) endCheck_->BeginField(repeated_->key);  // it has no rows
  if (isRead_ && field.place == FieldPlace::Point) points_.End();
  if (endCheck_) endCheck_->EndField(field);
  if (comparison_) comparison_->Report(job_.record);
  if (values_) values_->Report(job_.record);
  values_.reset();
  comparison_.reset();
  isRead_ = false;
  record_ = nullptr;
  view_.reset();
  localView_.reset();
}

}  // namespace quilon
