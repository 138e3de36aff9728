#include "import/ImportJob.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <QuilonDbConnector/FED_Database.h>

#include "FEM_ResultUtil.h"

namespace quilon::calculix {

namespace {

/// Principal values and the tensors that they are derived from.
constexpr std::array<std::pair<int, int>, 4> kPrincipalKinds = {{{520, 521}, {530, 531}, {560, 561}, {570, 571}}};

constexpr auto kQuantityIndex = static_cast<FED_DataDescriptor::ResultIndex>(10);
constexpr auto kGroupIndex    = static_cast<FED_DataDescriptor::ResultIndex>(11);

}  // namespace

void ImportRecord::Skip(const std::string& reason, std::size_t rows)
{
  if (rows == 0) return;
  const auto known = std::find_if(report_.skipped.begin(), report_.skipped.end(),
                                  [&reason](const SkippedRows& skipped) { return skipped.reason == reason; });
  if (known != report_.skipped.end()) {
    known->rows += rows;
  } else {
    report_.skipped.push_back({reason, rows});
  }
}

void ImportRecord::Notice(std::string text) { report_.notices.push_back(std::move(text)); }

void ImportRecord::AddDeviation(const std::string& elementType, const std::string& quantity, std::size_t nodes,
                                double largest)
{
  const auto known = std::find_if(report_.deviations.begin(), report_.deviations.end(), [&](const AverageDeviation& d) {
    return d.elementType == elementType && d.quantity == quantity;
  });
  if (known != report_.deviations.end()) {
    known->nodes += nodes;
    known->largest = std::max(known->largest, largest);
  } else {
    report_.deviations.push_back({elementType, quantity, nodes, largest});
  }
}

ImportJob::ImportJob(FED_Database& database, const ImportOptions& options, const ImportContext& context,
                     UserKindPool& kinds, ImportRecord& record, const std::filesystem::path& frdPath)
    : database_(database), options_(options), context_(context), kinds_(kinds), record_(record), mesh_(frdPath)
{}

ReadProgress ImportJob::Progress(const std::filesystem::path& path) const
{
  if (!options_.progress) return {};
  return [progress = options_.progress, phase = "reading " + path.filename().string()](
             std::uint64_t done, std::uint64_t total) { progress(phase, done, total); };
}

void ImportJob::SaveMesh()
{
  if (context_.deck != nullptr) mesh_.AddDeck(*context_.deck);
  mesh_.Save(database_, options_.iteration);
}

FED_DataDescriptor ImportJob::MakeDescriptor(const StepKey& key, int onf, int group) const
{
  FED_DataDescriptor descriptor(options_.iteration, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, key.loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, key.substep);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, key.analysis);
  if (group != 0) descriptor.SetInteger(kGroupIndex, group);
  return descriptor;
}

FED_DataDescriptor ImportJob::Descriptor(const StepKey& key, int onf, int group)
{
  const FED_DataDescriptor descriptor = MakeDescriptor(key, onf, group);
  if (written_[key].insert({onf, group}).second && database_.HasDataBlock(descriptor)) {
    ++numOverwritten_;
    DropDerived(key, onf, group);
  }
  return descriptor;
}

/// The derivation keeps blocks that exist, so those of tensors that change have to go.
void ImportJob::DropDerived(const StepKey& key, int onf, int group)
{
  for (const auto& [principal, tensor] : kPrincipalKinds) {
    const FED_DataDescriptor descriptor = MakeDescriptor(key, principal, group);
    if (onf == tensor && database_.HasDataBlock(descriptor)) database_.DeleteDataBlock(descriptor);
  }
}

FED_DataBlock& ImportJob::Block(const StepKey& key, int onf, std::size_t expectedRecords, int group)
{
  return database_.GetOrCreateDataBlock(Descriptor(key, onf, group), expectedRecords);
}

bool ImportJob::HasWritten(const StepKey& key, int onf) const
{
  const auto names = written_.find(key);
  return names != written_.end() && names->second.contains({onf, 0});
}

void ImportJob::SetScalar(const StepKey& key, int quantity, double value) { scalars_[key][quantity] = value; }

void ImportJob::WriteScalars()
{
  for (const auto& [key, values] : scalars_) {
    if (!IsWithin(key)) continue;
    for (const auto& [quantity, value] : values) {
      FED_DataDescriptor descriptor = MakeDescriptor(key, FED_OnfId_ScalarHistory);
      descriptor.SetInteger(kQuantityIndex, quantity);
      FEM_ResultUtil::SetResultScalar(database_, descriptor, value);
    }
  }
}

void ImportJob::MarkAveraged(const StepKey& key, Quantity quantity) { averaged_.emplace(key, quantity); }

bool ImportJob::IsAveraged(const StepKey& key, Quantity quantity) const { return averaged_.contains({key, quantity}); }

void ImportJob::LimitTo(const StepKey& key)
{
  if (IsWithin(key)) limit_ = key;
}

std::size_t ImportJob::DropBroken()
{
  std::size_t numWhole = 0;
  for (const auto& [key, names] : written_) {
    if (IsWithin(key)) {
      ++numWhole;
      continue;
    }
    for (const auto& [onf, group] : names) {
      const FED_DataDescriptor descriptor = MakeDescriptor(key, onf, group);
      if (database_.HasDataBlock(descriptor)) database_.DeleteDataBlock(descriptor);
    }
  }
  return numWhole;
}

}  // namespace quilon::calculix
