#include "export/VtkHdfExport.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "export/GridSource.h"
#include "export/Hdf5File.h"
#include "export/LinkedRows.h"
#include "progress/Listener.h"

namespace quilon {

namespace {

const std::string kRoot = "/VTKHDF";

Hdf5Type TypeOf(GridSource::Type type)
{
  switch (type) {
    case GridSource::Type::UInt8:
      return Hdf5Type::UInt8;
    case GridSource::Type::Int32:
      return Hdf5Type::Int32;
    case GridSource::Type::Float64:
      break;
  }
  return Hdf5Type::Float64;
}

class VtkHdfWriter
{
public:
  VtkHdfWriter(GridSource& source, LinkedRows* links, const std::filesystem::path& path, const std::string& name)
      : source_(source), links_(links), file_(path, name)
  {}

  void Run(Listener& listener)
  {
    const std::size_t numSteps = source_.NumSteps();
    WriteMesh();
    file_.WriteAttribute(kRoot, "Version",
                         numSteps > 1 ? std::vector<std::int64_t>{2, 0} : std::vector<std::int64_t>{1, 0});
    file_.WriteAttribute(kRoot, "Type", "UnstructuredGrid");
    CreateArrays();
    for (std::size_t step = 0; step < numSteps; ++step) {
      listener.Progress("export", step, numSteps, "steps");
      WriteStep(step);
    }
    if (numSteps > 1) {
      WriteSteps();
    } else if (source_.Plan().areTimesKnown && !source_.Plan().times.empty()) {
      file_.WriteDataset(kRoot + "/FieldData/TimeValue", Hdf5Type::Float64, {1}, source_.Plan().times);
    }
    file_.Close();
  }

private:
  /// Where an array stands, and where its steps are in it.
  struct Place
  {
    std::string               path;
    std::string               offsetPath;
    std::uint64_t             rows = 0;  ///< of one step
    std::vector<std::int64_t> offsets;   ///< rows, shape [steps]
    bool                      hasGap = false;
  };

  void WriteMesh()
  {
    const auto counts = [this](const std::string& name, std::size_t count) {
      file_.WriteDataset(kRoot + '/' + name, Hdf5Type::Int64, {1},
                         std::vector<std::int64_t>{static_cast<std::int64_t>(count)});
    };
    counts("NumberOfPoints", source_.NumPoints());
    counts("NumberOfCells", source_.NumCells());
    counts("NumberOfConnectivityIds", source_.NumConnectivity());
    file_.WriteDataset(kRoot + "/Points", Hdf5Type::Float64, {source_.NumPoints(), 3}, source_.Points());
    file_.WriteDataset(kRoot + "/Connectivity", Hdf5Type::Int64, {source_.NumConnectivity()}, source_.Connectivity());
    file_.WriteDataset(kRoot + "/Offsets", Hdf5Type::Int64, {source_.NumCells() + 1}, source_.Offsets());
    file_.WriteDataset(kRoot + "/Types", Hdf5Type::UInt8, {source_.NumCells()}, source_.CellTypes());
  }

  void CreateArrays()
  {
    for (std::size_t i = 0; i < source_.Arrays().size(); ++i) {
      const GridSource::Array& array = source_.Arrays()[i];
      Place                    place;
      place.path       = kRoot + (array.ofCells ? "/CellData/" : "/PointData/") + array.name;
      place.offsetPath = kRoot + (array.ofCells ? "/Steps/CellDataOffsets/" : "/Steps/PointDataOffsets/") + array.name;
      place.rows       = array.ofCells ? source_.NumCells() : source_.NumPoints();
      place.offsets.assign(source_.NumSteps(), 0);
      std::vector<std::uint64_t> shape = {place.rows * (array.isStatic ? 1 : PlaceSteps(i, place))};
      if (array.components.size() > 1) shape.push_back(array.components.size());
      if (IsLinked(i))
        Link(i, place, shape);
      else
        file_.CreateDataset(place.path, TypeOf(array.type), shape);
      places_.push_back(std::move(place));
    }
  }

  /// An array has room for the steps that have values, and behind them once for those that have none.
  /// @return how many times its rows there are
  std::uint64_t PlaceSteps(std::size_t array, Place& place) const
  {
    std::uint64_t            numStored = 0;
    std::vector<std::size_t> gaps;
    for (std::size_t step = 0; step < place.offsets.size(); ++step) {
      if (source_.HasValues(array, step))
        place.offsets[step] = static_cast<std::int64_t>(place.rows * numStored++);
      else
        gaps.push_back(step);
    }
    place.hasGap = !gaps.empty();
    for (const std::size_t step : gaps) place.offsets[step] = static_cast<std::int64_t>(place.rows * numStored);
    return place.hasGap ? numStored + 1 : numStored;
  }

  bool IsLinked(std::size_t array) const { return links_ != nullptr && source_.FieldOf(array) != nullptr; }

  /// Steps without values are those of no source, and read as nan.
  void Link(std::size_t array, const Place& place, const std::vector<std::uint64_t>& shape)
  {
    const ExportArray&                 field = *source_.FieldOf(array);
    std::vector<Hdf5File::VirtualPart> parts;
    for (std::size_t step = 0; step < field.sources.size(); ++step) {
      const auto ofStep = links_->Find(field, step, static_cast<std::uint64_t>(place.offsets[step]));
      parts.insert(parts.end(), ofStep.begin(), ofStep.end());
    }
    file_.CreateVirtualDataset(place.path, shape, parts);
  }

  void WriteStep(std::size_t step)
  {
    for (std::size_t i = 0; i < places_.size(); ++i) {
      Place&     place = places_[i];
      const bool isGap = !source_.HasValues(i, step);
      if (IsLinked(i) || (isGap && !place.hasGap)) continue;
      if (source_.Arrays()[i].isStatic && step > 0) continue;
      if (isGap) place.hasGap = false;  // written once
      file_.WriteRows(place.path, static_cast<std::uint64_t>(place.offsets[step]), source_.Read(i, step));
    }
  }

  void WriteSteps()
  {
    const std::size_t               numSteps = source_.NumSteps();
    const std::string               steps    = kRoot + "/Steps";
    const std::vector<std::int64_t> none(numSteps, 0);
    const std::vector<std::int64_t> one(numSteps, 1);
    file_.WriteDataset(steps + "/Values", Hdf5Type::Float64, {numSteps}, source_.Plan().times);
    file_.WriteDataset(steps + "/PartOffsets", Hdf5Type::Int64, {numSteps}, none);
    file_.WriteDataset(steps + "/NumberOfParts", Hdf5Type::Int64, {numSteps}, one);
    file_.WriteDataset(steps + "/PointOffsets", Hdf5Type::Int64, {numSteps}, none);
    file_.WriteDataset(steps + "/CellOffsets", Hdf5Type::Int64, {numSteps, 1}, none);
    file_.WriteDataset(steps + "/ConnectivityIdOffsets", Hdf5Type::Int64, {numSteps, 1}, none);
    for (const Place& place : places_) file_.WriteDataset(place.offsetPath, Hdf5Type::Int64, {numSteps}, place.offsets);
    file_.WriteAttribute(steps, "NSteps", {static_cast<std::int64_t>(numSteps)}, true);
  }

  GridSource&        source_;
  LinkedRows*        links_;
  Hdf5File           file_;
  std::vector<Place> places_;  // by position of the array
};

}  // namespace

void WriteVtkHdf(GridSource& source, const std::filesystem::path& path, const std::string& name, Listener& listener,
                 LinkedRows* links)
{
  VtkHdfWriter(source, links, path, name).Run(listener);
}

}  // namespace quilon
