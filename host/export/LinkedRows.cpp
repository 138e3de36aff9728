#include "export/LinkedRows.h"

#include <algorithm>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "progress/Interrupt.h"
#include "text/Failure.h"

namespace quilon {

namespace {

/// @return whether a row follows a part, here and there
bool Continues(const Hdf5File::VirtualPart& part, const Hdf5File::VirtualPart& row)
{
  return part.firstRow + part.numRows == row.firstRow && part.sourceRow + part.numRows == row.sourceRow &&
         part.file == row.file && part.dataset == row.dataset;
}

}  // namespace

LinkedRows::LinkedRows(const FED_Database& database, const Mesh& mesh, const ExportPlan& plan,
                       const std::filesystem::path& folder, const std::filesystem::path& output)
    : database_(database), mesh_(mesh), outputFolder_(std::filesystem::weakly_canonical(output).parent_path())
{
  std::set<FED_DataDescriptor> blocks;
  for (const ExportArray& array : plan.arrays) {
    if (array.component && array.component->GetPosition() < 0)
      Fail(array.name + ": a link shows what the database holds, expected stored components");
    if (array.isJoined) Fail(array.name + ": a link shows what the database holds, expected --groups arrays");
    for (const auto& ofStep : array.sources)
      for (const ExportArray::Source& source : ofStep) blocks.insert(source.block);
  }
  const std::vector<FED_DataDescriptor> list(blocks.begin(), blocks.end());
  auto                                  places = FED_FindRows(std::filesystem::canonical(folder), list);
  for (std::size_t i = 0; i < list.size(); ++i) places_[list[i]] = std::move(places[i]);
}

const Hdf5File::PlacedDataset& LinkedRows::FindDataset(const FED_RowPlace& place)
{
  auto known = datasets_.find(place.file);
  if (known == datasets_.end()) known = datasets_.emplace(place.file, Hdf5File::ListDatasets(place.file)).first;
  const auto& datasets = known->second;
  // The one that begins last at or before the place.
  auto after = std::upper_bound(datasets.begin(), datasets.end(), place.offset,
                                [](std::uint64_t offset, const auto& dataset) { return offset < dataset.offset; });
  if (after != datasets.begin()) {
    const Hdf5File::PlacedDataset& dataset  = *--after;
    const std::uint64_t            rowBytes = sizeof(double) * std::max<std::size_t>(1, dataset.numColumns);
    if (rowBytes == place.rowBytes && (place.offset - dataset.offset) % rowBytes == 0 &&
        place.offset + rowBytes * place.indices.size() <= dataset.offset + rowBytes * dataset.numRows)
      return dataset;
  }
  Fail(place.file.string() + ": no data set at byte " + std::to_string(place.offset) +
       ", expected a segment of a working database");
}

std::vector<Hdf5File::VirtualPart> LinkedRows::Find(const ExportArray& array, std::size_t step, std::uint64_t firstRow)
{
  std::vector<Hdf5File::VirtualPart> parts;
  for (const ExportArray::Source& source : array.sources[array.isStatic ? 0 : step])
    for (const FED_RowPlace& place : places_.at(source.block)) AddPlace(array, place, firstRow, parts);
  if (parts.size() > kMostPieces)
    Fail(array.name + ": its rows lie in more than " + std::to_string(kMostPieces) +
         " pieces, as its ids do not ascend; expected an export without --link");
  return parts;
}

void LinkedRows::AddPlace(const ExportArray& array, const FED_RowPlace& place, std::uint64_t firstRow,
                          std::vector<Hdf5File::VirtualPart>& parts)
{
  ThrowIfInterrupted();
  const Hdf5File::PlacedDataset& dataset = FindDataset(place);
  Hdf5File::VirtualPart          row;
  row.numRows          = 1;
  row.file             = std::filesystem::proximate(place.file, outputFolder_).string();
  row.dataset          = dataset.path;
  row.numSourceRows    = dataset.numRows;
  row.numSourceColumns = dataset.numColumns;
  row.firstColumn      = array.component ? static_cast<std::size_t>(array.component->GetPosition()) : 0;
  files_.insert(place.file.filename().string());
  const std::uint64_t first = (place.offset - dataset.offset) / place.rowBytes;
  for (std::size_t i = 0; i < place.indices.size() && parts.size() <= kMostPieces; ++i) {
    const int id = database_.GetIdMapsPool().GetId(array.ofElements ? OnfKind::ElementEntity : OnfKind::NodeEntity,
                                                   place.indices[i]);
    const auto position = array.ofElements ? mesh_.FindElement(id) : mesh_.FindNode(id);
    if (!position) continue;
    row.firstRow  = firstRow + *position;
    row.sourceRow = first + i;
    if (!parts.empty() && Continues(parts.back(), row))
      ++parts.back().numRows;
    else
      parts.push_back(row);
  }
}

}  // namespace quilon
