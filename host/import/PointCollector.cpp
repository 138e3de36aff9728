#include "import/PointCollector.h"

#include <array>
#include <optional>
#include <span>
#include <utility>

#include <QuilonDbConnector/FED_Database.h>

#include "elements/IntegrationRule.h"
#include "elements/LocalSystem.h"
#include "import/DeckImporter.h"
#include "import/EndCheck.h"
#include "import/ImportRecord.h"
#include "import/JobBlocks.h"
#include "import/NodalAverages.h"
#include "import/ResultMesh.h"
#include "kinds/UserKindPool.h"
#include "text/Failure.h"

namespace quilon {

namespace {

constexpr char kLocal[] = "rows in local systems (kept, not averaged)";

}  // namespace

PointCollector::PointCollector(std::filesystem::path path, const Parts& parts) : path_(std::move(path)), parts_(parts)
{}

bool PointCollector::Begin(const StepKey& key, const ResultField& field)
{
  key_      = key;
  name_     = field.name;
  quantity_ = FindTensor(field);
  element_  = Element();
  // Tensors open their blocks with the first element that needs them: a block of local rows alone makes none.
  if (quantity_) return true;
  const int onf = parts_.kinds.Find(UserElementList, field.name);
  if (onf == 0) return false;
  OpenView(onf);
  return true;
}

void PointCollector::OpenView(int onf)
{
  view_   = std::make_unique<FED_IdDataBlock>(parts_.blocks.Block(key_, onf, 0),
                                            parts_.blocks.GetDatabase().GetIdMapsPool(), true);
  record_ = &view_->CreateIdDataRecord();
}

void PointCollector::Add(const ResultRow& row)
{
  if (row.id != element_.id || row.point == 1) {
    FinishElement();
    element_.id = row.id;
  }
  const auto expected = static_cast<int>(element_.numPoints) + 1;
  if (row.point != expected) {
    Fail(path_.string() + ":" + std::to_string(row.line) + ": expected integration point " + std::to_string(expected) +
         " of element " + std::to_string(row.id) + ", found point " + std::to_string(row.point));
  }
  ++element_.numPoints;
  element_.localSystem = element_.localSystem || row.localSystem;
  element_.values.insert(element_.values.end(), row.values.begin(), row.values.end());
}

void PointCollector::End()
{
  FinishElement();
  record_ = nullptr;
  view_.reset();
  meanView_.reset();
  localView_.reset();
}

void PointCollector::FinishElement()
{
  if (element_.numPoints > 0) {
    const ResultMesh::Element* element = parts_.mesh.FindElement(element_.id);
    if (element != nullptr && parts_.endCheck != nullptr)
      parts_.endCheck->AddElement(element_.id, element->type, element_.numPoints);
    if (quantity_ && element_.localSystem && TurnPoints()) element_.localSystem = false;
    KeepPoints();
    if (quantity_ && element_.localSystem) parts_.record.Skip(kLocal, element_.numPoints);
    if (quantity_ && !element_.localSystem) parts_.averages.Add(*quantity_, element_.id, element_.values);
  }
  element_.id          = 0;
  element_.numPoints   = 0;
  element_.localSystem = false;
  element_.values.clear();
}

void PointCollector::KeepPoints()
{
  if (!quantity_) {
    record_->SetDoubleList(1, element_.values);
    view_->SetRecord(element_.id, *record_);
    return;
  }
  if (element_.localSystem) return KeepLocalPoints();

  const TensorKinds& kinds = kTensorKinds[*quantity_];
  if (!view_) {
    OpenView(kinds.points);
    meanView_ = std::make_unique<FED_IdDataBlock>(parts_.blocks.Block(key_, kinds.elementMean, 0),
                                                  parts_.blocks.GetDatabase().GetIdMapsPool(), true);
  }
  record_->SetInteger(1, static_cast<int>(element_.numPoints));
  record_->SetDoubleList(2, element_.values);
  view_->SetRecord(element_.id, *record_);
  KeepMean();
}

void PointCollector::KeepLocalPoints()
{
  if (!localView_) {
    const int onf = parts_.kinds.Find(UserElementList, name_ + " in local systems");
    if (onf == 0) return parts_.record.Skip(ImportRecord::kNoKind, element_.numPoints);
    localView_ = std::make_unique<FED_IdDataBlock>(parts_.blocks.Block(key_, onf, 0),
                                                   parts_.blocks.GetDatabase().GetIdMapsPool(), true);
  }
  FED_IdDataRecord& record = localView_->CreateIdDataRecord();
  record.SetDoubleList(1, element_.values);
  localView_->SetRecord(element_.id, record);
  localView_->DeleteIdDataRecord(record);
}

void PointCollector::KeepMean()
{
  double mean[kNumComponents] = {};
  for (std::size_t i = 0; i < element_.values.size(); ++i) mean[i % kNumComponents] += element_.values[i];
  for (double& component : mean) component /= static_cast<int>(element_.numPoints);
  meanView_->SetTensor(element_.id, mean);
}

/// Turns the points of an oriented solid into global axes.
/// @return false, and nothing is changed, where no deck tells how
bool PointCollector::TurnPoints()
{
  if (parts_.deck == nullptr) return false;
  const ImportedDeck&               deck    = *parts_.deck;
  const std::optional<InputElement> element = deck->FindElement(element_.id);
  const int                         number  = deck.SectionOf(element_.id).orientation;
  if (!element || element->dimension != 3 || number == 0) return false;

  std::vector<double> coordinates;
  for (const int node : element->nodes) {
    const std::array<double, 3>* const found = deck->FindNode(node);
    if (found == nullptr) return false;  // of a deck that goes on from a restart file
    coordinates.insert(coordinates.end(), found->begin(), found->end());
  }
  std::vector<double> points(3 * element_.numPoints);
  if (!LocatePoints(element->type, element_.numPoints, coordinates, points)) return false;

  const Orientation&  orientation = deck.Orientations()[static_cast<std::size_t>(number) - 1].system;
  std::vector<double> turned      = element_.values;
  for (std::size_t p = 0; p < element_.numPoints; ++p) {
    const std::optional<LocalAxes> axes =
        FindLocalAxes(orientation, {points[3 * p], points[3 * p + 1], points[3 * p + 2]});
    if (!axes) return false;
    TurnToGlobal(*axes, std::span(turned).subspan(kNumComponents * p).first<kNumComponents>());
  }
  element_.values = std::move(turned);
  return true;
}

}  // namespace quilon
