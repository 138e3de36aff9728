#include "import/FrdResultFile.h"

#include <algorithm>
#include <cmath>

#include <QuilonDbConnector/FED_Database.h>

namespace quilon::calculix {

namespace {

/// Data sets that the catalogue has a kind for.
struct KnownDataset
{
  const char* name;
  std::size_t numComponents;
  int         onf;
};

constexpr KnownDataset kKnownDatasets[] = {
    {"DISP", 3, 510}, {"FORC", 3, 511}, {"VELO", 3, 512}, {"NDTEMP", 1, 514},
    {"FLUX", 3, 515}, {"RFL", 1, 517},  {"PE", 1, 518},   {"ENER", 1, 519},
};

constexpr int kLoggedFrdFile = 1;

/// @return the tensor of this data set, null when it is none of ours
const TensorKinds* FindTensor(const FrdDataset& dataset)
{
  for (const TensorKinds& kinds : kTensorKinds) {
    if (dataset.name == kinds.frdName && dataset.components.size() == 6) return &kinds;
  }
  return nullptr;
}

/// Whether a value is the exact one of a value with six digits.
bool RoundsTo(double value, double rounded)
{
  // Half a unit of the sixth digit is at most 5e-6 of a value; that it went through single precision, and the last of
  // the seven digits of a .dat, fit into the rest. The smallest numbers of single precision have fewer digits.
  constexpr double kLargestRounding = 6e-6;
  constexpr double kSmallest        = 1e-37;
  return std::abs(value - rounded) <= kLargestRounding * std::abs(rounded) + kSmallest;
}

Quantity QuantityOf(const TensorKinds& kinds) { return static_cast<Quantity>(&kinds - kTensorKinds); }

}  // namespace

FrdResultFile::Comparison::Comparison(Quantity quantity_, const FED_DataBlock& average, const FED_DataBlock& count,
                                      const FED_IdMapsPool& pool)
    : quantity(quantity_), averages(average, pool), counts(count, pool)
{}

FrdResultFile::FrdResultFile(const std::filesystem::path& path, Pass pass, ImportJob& job)
    : FEMResultFile(path.string(), job.Options().iteration, pass, job.Database()),
      path_(path),
      job_(job),
      meshSaved_(pass == PassResults)
{}

void FrdResultFile::Read()
{
  if (secondNumber_ != PassMesh) job_.Logger().SetReadResultType(kLoggedFrdFile, path_.filename().string());
  ReadFrd(path_, *this, job_.Progress(path_));
  SaveMesh();
  job_.Logger().ForceOutput();
}

void FrdResultFile::SaveMesh()
{
  // Whole meshes only: a file that breaks within its mesh leaves nothing.
  if (!meshSaved_) job_.SaveMesh();
  meshSaved_ = true;
}

void FrdResultFile::OnNodes(std::span<const int> ids, std::span<const double> coordinates)
{
  if (secondNumber_ != PassResults) job_.Mesh().AddNodes(ids, coordinates);
}

void FrdResultFile::OnElements(std::span<const FrdElement> elements)
{
  if (secondNumber_ != PassResults) job_.Mesh().AddElements(elements);
}

void FrdResultFile::OnDatasetBegin(const FrdDataset& dataset)
{
  SaveMesh();
  const StepKey key = job_.Steps().AddDataset(dataset);
  if (current_ != key) names_.clear();
  current_ = key;
  skipReason_.clear();
  if (secondNumber_ == PassMesh) return;
  if (!job_.IsWithin(key)) {
    job_.Logger().SetSkipSubstep(key.analysis, key.loadCase, key.substep);
    return;
  }

  job_.Logger().SetReadSubstep(key.analysis, key.loadCase, key.substep);
  SetResultScalars(key, dataset);
  if (!names_.insert(dataset.name).second) return Skip("data sets that a result has had already: " + dataset.name);
  const int onf = FindKind(key, dataset);
  if (onf == 0) return Skip("data sets that no user kind is left for: " + dataset.name);

  isInDat_          = job_.HasWritten(key, onf);
  view_             = std::make_unique<FED_IdDataBlock>(job_.Block(key, onf, 0), database_.GetIdMapsPool(), true);
  const bool isList = NodeHundred(dataset.components.size()) == UserNodeList;
  record_           = isList ? &view_->CreateIdDataRecord() : nullptr;
  BeginComparison(key, dataset);
}

void FrdResultFile::SetResultScalars(const StepKey& key, const FrdDataset& dataset)
{
  constexpr int kHarmonic = 1;
  constexpr int kBuckling = 4;

  if (key.analysis == AnalysisTime) {
    job_.SetScalar(key, ScalarTime, dataset.value);
  } else if (key.analysis == AnalysisModes) {
    job_.SetScalar(key, dataset.kind == kBuckling ? ScalarBucklingFactor : ScalarFrequency, dataset.value);
  } else if (dataset.kind == kHarmonic) {
    job_.SetScalar(key, ScalarFrequency, dataset.value);
  }
}

/// @return 0 when the database has no user kind left for the data set
int FrdResultFile::FindKind(const StepKey& key, const FrdDataset& dataset)
{
  const std::size_t numComponents = dataset.components.size();
  if (const TensorKinds* kinds = FindTensor(dataset)) {
    return job_.IsAveraged(key, QuantityOf(*kinds)) ? kinds->solver : kinds->average;
  }
  for (const KnownDataset& known : kKnownDatasets) {
    if (dataset.name == known.name && numComponents == known.numComponents) return known.onf;
  }
  return job_.Kinds().Find(NodeHundred(numComponents), dataset.name);
}

void FrdResultFile::BeginComparison(const StepKey& key, const FrdDataset& dataset)
{
  const TensorKinds* kinds = FindTensor(dataset);
  if (kinds == nullptr || !job_.IsAveraged(key, QuantityOf(*kinds))) return;
  comparison_ = std::make_unique<Comparison>(QuantityOf(*kinds), job_.Block(key, kinds->average, 0),
                                             job_.Block(key, kinds->count, 0), database_.GetIdMapsPool());
}

void FrdResultFile::OnRows(const FrdDataset& dataset, std::span<const int> ids, std::span<const double> values,
                           std::int64_t)
{
  if (!skipReason_.empty()) return job_.Record().Skip(skipReason_, ids.size());
  if (!view_) return;

  const std::size_t numComponents = dataset.components.size();
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const double* row = &values[i * numComponents];
    if (isInDat_ && HasMoreDigits(ids[i], row, numComponents)) continue;
    switch (numComponents) {
      case 1:
        view_->SetScalar(ids[i], *row);
        break;
      case 3:
        view_->SetVector(ids[i], row);
        break;
      case 6:
        view_->SetTensor(ids[i], row);
        break;
      default:
        list_.assign(row, row + numComponents);
        record_->SetDoubleList(1, list_);
        view_->SetRecord(ids[i], *record_);
    }
    if (comparison_) Compare(ids[i], row);
  }
}

void FrdResultFile::Compare(int id, const double* theirs)
{
  for (int k = 0; k < 6; ++k) {
    if (std::isfinite(theirs[k])) {
      comparison_->largestMagnitude = std::max(comparison_->largestMagnitude, std::abs(theirs[k]));
    }
  }

  const ResultMesh::Node* node = job_.Mesh().FindNode(id);
  if (node == nullptr || node->type.empty() || !comparison_->counts.HasRecord(id)) return;
  double count = 0.0;
  comparison_->counts.GetScalar(id, count);
  if (count != node->numElements) return;  // the solver's mean has elements that ours has not

  double ours[6];
  comparison_->averages.GetTensor(id, ours);
  Comparison::Deviation& deviation = comparison_->byElementType[node->isMixed ? "mixed" : std::string(node->type)];
  ++deviation.nodes;
  for (int k = 0; k < 6; ++k) {
    const double difference = std::abs(ours[k] - theirs[k]);
    if (std::isfinite(difference)) deviation.largest = std::max(deviation.largest, difference);
  }
}

bool FrdResultFile::HasMoreDigits(int id, const double* rounded, std::size_t numComponents) const
{
  constexpr std::size_t kVector = 3;
  double                values[kVector];
  if ((numComponents != 1 && numComponents != kVector) || !view_->HasRecord(id)) return false;
  if (numComponents == 1)
    view_->GetScalar(id, values[0]);
  else
    view_->GetVector(id, values);
  return std::equal(values, values + numComponents, rounded, RoundsTo);
}

void FrdResultFile::OnDatasetEnd(const FrdDataset&)
{
  if (comparison_) {
    const double magnitude = comparison_->largestMagnitude;
    for (const auto& [type, deviation] : comparison_->byElementType) {
      job_.Record().AddDeviation(type, kTensorKinds[comparison_->quantity].name, deviation.nodes,
                                 magnitude > 0.0 ? deviation.largest / magnitude : deviation.largest);
    }
  }
  comparison_.reset();
  record_ = nullptr;
  view_.reset();
}

}  // namespace quilon::calculix
