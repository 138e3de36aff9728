#include "answers/ComponentAxes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <bundled/OnfKinds.h>

#include "database/ScratchRecord.h"
#include "kinds/Component.h"
#include "mesh/Mesh.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/NumberList.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

constexpr std::string_view kExpected =
    "expected global, principal, cylindrical:px,py,pz,dx,dy,dz, rectangular:ax,ay,az,bx,by,bz or the name of an "
    "orientation";

struct NamedOrientation
{
  std::string name;
  Orientation orientation;
};

/// The orientations of a deck, as kind 604 has them.
std::vector<NamedOrientation> ReadOrientations(const FED_Database& database, int iteration)
{
  std::vector<NamedOrientation> list;
  const FED_DataDescriptor      descriptor(iteration, OnfKind::Orientation);
  if (!database.HasDataBlock(descriptor)) return list;
  const FED_DataBlock& block = database.GetConstDataBlock(descriptor);
  const ScratchRecord  record(block);
  FED_DoubleArray      numbers;
  for (auto index = block.Begin(); index != block.End(); ++index) {
    block.GetRecord(*index, *record);
    record->GetDoubleList(3, numbers);
    const int system = record->GetInteger(2);
    if (numbers.GetSize() < 6 || (system != Orientation::Rectangular && system != Orientation::Cylindrical))
      Fail("orientation " + std::to_string(*index) + " of the database has " + Counted(numbers.GetSize(), "number") +
           " and system " + std::to_string(system) + ", expected six or more and system 0 or 1");
    NamedOrientation named;
    named.name               = record->GetString(1);
    named.orientation.system = static_cast<Orientation::System>(system);
    const double* data       = numbers.GetData();
    std::copy_n(data, 3, named.orientation.a.begin());
    std::copy_n(data + 3, 3, named.orientation.b.begin());
    if (numbers.GetSize() >= 8) {
      named.orientation.rotationAxis  = static_cast<int>(data[6]);
      named.orientation.rotationAngle = data[7];
    }
    list.push_back(std::move(named));
  }
  return list;
}

const NamedOrientation& FindOrientation(const std::vector<NamedOrientation>& list, std::string_view name,
                                        std::string_view text)
{
  const auto exact = std::find_if(list.begin(), list.end(), [&](const auto& one) { return one.name == name; });
  if (exact != list.end()) return *exact;
  std::vector<const NamedOrientation*> alike;
  std::vector<std::string>             names;
  std::string                          listed;
  std::string                          anyOf;
  for (const NamedOrientation& one : list) {
    names.push_back(one.name);
    listed += (listed.empty() ? "" : ", ") + Printable(one.name);
    if (LowerCase(one.name) != LowerCase(name)) continue;
    alike.push_back(&one);
    anyOf += (anyOf.empty() ? "" : ", ") + Printable(one.name);
  }
  if (alike.size() == 1) return *alike.front();
  const std::string begin = "--axes is '" + Printable(text) + "'";
  if (alike.size() > 1) Fail(begin + ", which may be any of " + anyOf + ": write it in the case that it has");
  const std::string suggestion = DidYouMean(name, names);
  if (!suggestion.empty()) Fail(begin + Printable(suggestion));
  Fail(begin + ", " + std::string(kExpected) +
       (list.empty() ? "; the database has none: import it with the deck" : "; the database has " + listed));
}

bool IsSystem(const Orientation& orientation)
{
  if (orientation.system == Orientation::Rectangular) return FindLocalAxes(orientation, {}).has_value();
  // Of three places around a point of the axis one at least is beside it.
  for (std::size_t k = 0; k < 3; ++k) {
    std::array<double, 3> beside = orientation.a;
    beside[k] += std::max(1.0, std::abs(beside[k]));
    if (FindLocalAxes(orientation, beside)) return true;
  }
  return false;
}

/// @param system "cylindrical" or "rectangular"
Orientation ParseSystem(Orientation::System system, std::string_view numbers, std::string_view text)
{
  std::array<double, 6> six{};
  Orientation           orientation;
  orientation.system    = system;
  const bool isRound    = system == Orientation::Cylindrical;
  const bool hasNumbers = ParseNumbers(numbers, six);
  std::copy_n(six.begin(), 3, orientation.a.begin());
  // Of a round one a point and a direction are given, and an orientation has two points.
  for (std::size_t k = 0; k < 3; ++k) orientation.b[k] = isRound ? six[k] + six[3 + k] : six[3 + k];
  if (!hasNumbers || !IsSystem(orientation)) {
    Fail("--axes is '" + Printable(text) + "', expected six numbers: " +
         (isRound ? "cylindrical:px,py,pz,dx,dy,dz with a point of the axis and a direction that is not zero"
                  : "rectangular:ax,ay,az,bx,by,bz with two vectors that are not parallel"));
  }
  return orientation;
}

}  // namespace

ComponentAxes::ComponentAxes(std::string_view text, const FED_Database& database, int iteration)
{
  const std::size_t      colon = text.find(':');
  const std::string      word  = LowerCase(text.substr(0, colon));
  const std::string_view rest  = colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1);
  if (word == "global" && colon == std::string_view::npos) return;
  if (word == "principal" && colon == std::string_view::npos) {
    form_ = Principal;
    return;
  }
  if (word == "rectangular" || word == "cylindrical") {
    form_        = word == "rectangular" ? Rectangular : Cylindrical;
    orientation_ = ParseSystem(form_ == Rectangular ? Orientation::Rectangular : Orientation::Cylindrical, rest, text);
    return;
  }
  const auto              orientations = ReadOrientations(database, iteration);
  const NamedOrientation& found        = FindOrientation(orientations, word == "orientation" ? rest : text, text);
  if (!IsSystem(found.orientation)) Fail("orientation '" + Printable(found.name) + "' gives no system of axes");
  name_        = found.name;
  orientation_ = found.orientation;
  form_        = orientation_.system == Orientation::Cylindrical ? Cylindrical : Rectangular;
}

std::string ComponentAxes::Describe() const
{
  const std::string of = name_.empty() ? "" : " of orientation " + Printable(name_);
  switch (form_) {
    case Global:
      break;
    case Principal:
      return "principal axes, the largest value first";
    case Rectangular: {
      LocalAxes axes = FindLocalAxes(orientation_, {}).value_or(LocalAxes{});
      for (auto& axis : axes) {
        for (double& component : axis)
          component = std::abs(component) < 1e-15 ? 0.0 : component;  // a cosine's rounding
      }
      return "axes" + of + ": x along " + FormatNumbers(axes[0]) + ", y along " + FormatNumbers(axes[1]) +
             ", z along " + FormatNumbers(axes[2]);
    }
    case Cylindrical: {
      std::array<double, 3> direction = orientation_.b;
      for (std::size_t k = 0; k < 3; ++k) direction[k] -= orientation_.a[k];
      return "axes" + of + ": x radial, y tangential, z along the axis through " + FormatNumbers(orientation_.a) +
             " along " + FormatNumbers(direction);
    }
  }
  return "";
}

std::optional<LocalAxes> ComponentAxes::At(const std::array<double, 3>& place) const
{
  if (form_ == Global || form_ == Principal) return LocalAxes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  return FindLocalAxes(orientation_, place);
}

RecordTurner::RecordTurner(const ComponentAxes& axes, int onf, const Mesh* mesh) : axes_(axes), mesh_(mesh)
{
  const FED_OnfMetaData& kind = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf));
  isOfElements_               = OnfKind::EntityOf(onf) == OnfKind::ElementEntity;
  if (!Turns()) return;
  const std::size_t numValues = ValueComponentsOf(onf).size();
  const std::string name      = "--axes: " + kind.GetName() + " (" + std::to_string(onf) + ") ";
  if (OnfKind::TensorOf(onf) != 0) Fail(name + "holds principal values, expected a vector or a tensor");
  if (onf == OnfKind::NodalStressVariance || onf == OnfKind::NodalStrainVariance)
    Fail(name + "holds a variance of each component, expected a vector or a tensor");
  if (onf == OnfKind::Coordinates) Fail(name + "holds places, expected a vector or a tensor");
  if (numValues == 0) Fail(name + "has no components, expected a vector or a tensor");
  if (axes.GetForm() == ComponentAxes::Principal && numValues == 3)
    Fail(name + "holds vectors, which have no principal axes, expected a tensor");
}

bool RecordTurner::Turn(int id, std::span<double> values) const
{
  if (!Turns() || values.size() == 1) return true;
  if (!axes_.NeedsPlaces()) return TurnAt({}, values);
  if (const auto place = PlaceOf(id)) return TurnAt(*place, values);
  std::fill(values.begin(), values.end(), kNaN);
  return false;
}

bool RecordTurner::TurnPart(int element, std::size_t part, std::size_t numParts, std::span<double> values) const
{
  if (!Turns()) return true;
  if (!axes_.NeedsPlaces()) return TurnAt({}, values);
  if (const auto place = PlaceOfPart(element, part, numParts, values.size() == 6)) return TurnAt(*place, values);
  std::fill(values.begin(), values.end(), kNaN);
  return false;
}

std::optional<std::array<double, 3>> RecordTurner::PlaceOf(int id) const
{
  if (!isOfElements_) {
    const auto node = mesh_->FindNode(id);
    return node ? std::optional(mesh_->Points()[*node]) : std::nullopt;
  }
  const auto position = mesh_->FindElement(id);
  const auto nodes    = position ? mesh_->NodesOf(mesh_->Elements()[*position]) : std::span<const std::size_t>();
  if (nodes.empty()) return std::nullopt;
  std::array<double, 3> place{};
  for (const std::size_t node : nodes) {
    for (std::size_t k = 0; k < 3; ++k) place[k] += mesh_->Points()[node][k] / static_cast<double>(nodes.size());
  }
  return place;
}

std::optional<std::array<double, 3>> RecordTurner::PlaceOfPart(int element, std::size_t part, std::size_t numParts,
                                                               bool isPoint) const
{
  const auto position = mesh_->FindElement(element);
  if (!position) return std::nullopt;
  const Mesh::Element& found = mesh_->Elements()[*position];
  const auto           nodes = mesh_->NodesOf(found);
  if (!isPoint) return part < nodes.size() ? std::optional(mesh_->Points()[nodes[part]]) : std::nullopt;
  std::vector<double> coordinates;
  for (const std::size_t node : nodes)
    coordinates.insert(coordinates.end(), mesh_->Points()[node].begin(), mesh_->Points()[node].end());
  std::vector<double> points(3 * numParts);
  if (nodes.empty() || !LocatePoints(found.frdType, numParts, coordinates, points)) return std::nullopt;
  return std::array<double, 3>{points[3 * part], points[3 * part + 1], points[3 * part + 2]};
}

bool RecordTurner::TurnAt(const std::array<double, 3>& place, std::span<double> values) const
{
  if (!Turns() || values.size() == 1) return true;
  if (axes_.GetForm() == ComponentAxes::Principal) {
    const std::array<double, 3> principal = PrincipalValues(values.first<6>());
    std::fill(std::copy(principal.begin(), principal.end(), values.begin()), values.end(), 0.0);
    return true;
  }
  const std::optional<LocalAxes> axes = axes_.At(place);
  if (!axes) {
    std::fill(values.begin(), values.end(), kNaN);
    return false;
  }
  if (values.size() == 6)
    TurnToLocal(*axes, values.first<6>());
  else
    TurnToLocal(*axes, values.first<3>());
  return true;
}

}  // namespace quilon
