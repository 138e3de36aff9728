#include "answers/Region.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <set>
#include <system_error>
#include <utility>

#include <bundled/OnfKinds.h>

#include "database/RecordRows.h"
#include "kinds/GroupNames.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

template <std::size_t N>
std::string NumbersText(const std::array<double, N>& numbers)
{
  std::string text;
  for (const double number : numbers) text += (text.empty() ? "" : ",") + FormatNumber(number);
  return text;
}

void SortUnique(std::vector<int>& ids)
{
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

/// Keeps in `all`, where it is everything that there is at first, what is in `ids`, too. Both ascend.
void Intersect(std::optional<std::vector<int>>& all, std::vector<int> ids)
{
  if (!all) {
    all = std::move(ids);
    return;
  }
  std::vector<int> both;
  std::set_intersection(all->begin(), all->end(), ids.begin(), ids.end(), std::back_inserter(both));
  all = std::move(both);
}

/// Of the names in a message, a reader has seen enough with so many.
constexpr std::size_t kMostNames = 12;

[[noreturn]] void FailUnknown(const std::string& database, const char* what, const std::string& name,
                              std::vector<std::string> known)
{
  known.erase(std::unique(known.begin(), known.end()), known.end());
  if (known.empty()) Fail(database + ": no " + what + " '" + name + "', the database has none");
  const std::string suggestion = DidYouMean(name, known);
  Fail(database + ": no " + what + " '" + name + "'" +
       (suggestion.empty() ? ", expected one of " : suggestion + " There are ") + Enumerated(known, kMostNames));
}

/// @return whether names are the same, exactly or but for the case of letters
bool IsSame(const std::string& a, const std::string& b, bool isExact)
{
  return isExact ? a == b : LowerCase(a) == LowerCase(b);
}

}  // namespace

std::string RegionOptions::ToString() const
{
  std::string text;
  const auto  add = [&text](const char* option, const std::string& value) {
    text += (text.empty() ? "" : " ") + std::string(option) + ' ' + value;
  };
  if (!ids.empty()) add("--ids", ids);
  for (const std::string& set : sets) add("--set", set);
  for (const std::string& material : materials) add("--material", material);
  if (box) add("--box", NumbersText(*box));
  if (near) add("--near", NumbersText(*near));
  return text;
}

bool RegionFilter::Holds(int id) const noexcept
{
  if (ids_ != nullptr && !ids_->Find(id)) return false;
  return ranges_.empty() ||
         std::any_of(ranges_.begin(), ranges_.end(), [id](const NumberRange& range) { return range.Holds(id); });
}

/// What is known of an iteration so far.
struct Region::Iteration
{
  std::optional<Mesh>                  mesh;
  std::optional<std::vector<NamedSet>> sets;
  std::optional<IdPositions>           members[2];  // by Entity
};

Region::Region(const FED_Database& database, RegionOptions options, std::string name)
    : database_(database), options_(std::move(options)), name_(std::move(name))
{
  if (!options_.ids.empty()) ranges_ = ParseNumberRanges(options_.ids, "a record id");
  for (const NumberRange& range : ranges_)
    if (range.form == NumberRange::None) Fail("a record id is 'none', expected a number, a range, first, last or all");
  if (options_.box)
    for (std::size_t i = 0; i < 3; ++i)
      if (!((*options_.box)[i] <= (*options_.box)[i + 3]))
        Fail("--box is " + NumbersText(*options_.box) +
             ", expected X0,Y0,Z0,X1,Y1,Z1 with each first number no greater than its second");
}

Region::~Region() = default;

Region::Iteration& Region::At(int iteration)
{
  std::unique_ptr<Iteration>& at = iterations_[iteration];
  if (!at) at = std::make_unique<Iteration>();
  return *at;
}

const Mesh& Region::GetMesh(int iteration)
{
  std::optional<Mesh>& mesh = At(iteration).mesh;
  if (!mesh) mesh = ReadMesh(database_, iteration, name_);
  return *mesh;
}

const std::vector<NamedSet>& Region::GetSets(int iteration)
{
  std::optional<std::vector<NamedSet>>& sets = At(iteration).sets;
  if (!sets) sets = ReadSets(database_, iteration);
  return *sets;
}

bool Region::AppliesTo(const FED_DataDescriptor& block) const
{
  return !options_.HasPlace() || OnfKind::IsOfMesh(OnfKind::OnfOf(block));
}

/// Finds the sets of a name, exactly as it is written or else in letters of the other case.
/// @throws FED_Failure when there is none
Region::SetsOfName Region::FindSets(int iteration, const std::string& name)
{
  const std::vector<NamedSet>& sets = GetSets(iteration);
  SetsOfName                   result;
  for (const bool isExact : {true, false}) {
    for (const NamedSet& set : sets)
      if (const NamedSet*& found = set.ofElements ? result.ofElements : result.ofNodes;
          found == nullptr && IsSame(set.name, name, isExact))
        found = &set;
    if (result.ofNodes != nullptr || result.ofElements != nullptr) return result;
  }
  std::vector<std::string> known;
  for (const NamedSet& set : sets) known.push_back(set.name);
  FailUnknown(name_, "set", name, std::move(known));
}

std::vector<int> Region::InSets(int iteration, Entity entity)
{
  std::vector<int> ids;
  for (const std::string& name : options_.sets) {
    const auto [ofNodes, ofElements] = FindSets(iteration, name);
    if (entity == Elements && ofElements == nullptr)
      Fail(name_ + ": set '" + name + "' is of nodes, expected a set of elements for results at elements");
    if (entity == Nodes && ofNodes == nullptr) {
      const std::vector<int> nodes = NodesOfElements(GetMesh(iteration), ofElements->ids);
      ids.insert(ids.end(), nodes.begin(), nodes.end());
    } else {
      const NamedSet& set = entity == Nodes ? *ofNodes : *ofElements;
      ids.insert(ids.end(), set.ids.begin(), set.ids.end());
    }
  }
  SortUnique(ids);
  return ids;
}

bool Region::IsOfNodesAlone(int iteration)
{
  const std::vector<NamedSet>& sets = GetSets(iteration);
  return !options_.sets.empty() && std::none_of(sets.begin(), sets.end(), [&](const NamedSet& set) {
    return set.ofElements && std::any_of(options_.sets.begin(), options_.sets.end(),
                                         [&](const std::string& name) { return IsSame(set.name, name, false); });
  });
}

/// @param there numbers of the materials that elements are made of
/// @return the numbers of the materials of a name, exactly as it is written or else in letters of the other case; where
///         there is none the name may be a number
/// @throws FED_Failure when it is neither
std::set<int> Region::FindMaterials(const std::string& name, const std::vector<NamedRecord>& names,
                                    const std::set<int>& there) const
{
  for (const bool isExact : {true, false}) {
    std::set<int> found;
    for (const NamedRecord& record : names)
      if (IsSame(record.name, name, isExact)) found.insert(record.number);
    if (!found.empty()) return found;
  }
  int        number = 0;
  const auto taken  = std::from_chars(name.data(), name.data() + name.size(), number);
  if (taken.ec == std::errc() && taken.ptr == name.data() + name.size() && there.contains(number)) return {number};
  std::vector<std::string> known;
  for (const NamedRecord& record : names) known.push_back(record.name);
  if (names.empty())
    for (const int one : there) known.push_back(std::to_string(one));
  FailUnknown(name_, "material", name, std::move(known));
}

std::vector<int> Region::InMaterials(int iteration, Entity entity)
{
  const std::vector<NamedRecord> names = ReadNames(database_, OnfKind::Material);
  const Mesh&                    mesh  = GetMesh(iteration);
  std::set<int>                  there;
  for (const Mesh::Element& element : mesh.Elements()) there.insert(element.material);
  std::set<int> numbers;
  for (const std::string& name : options_.materials) numbers.merge(FindMaterials(name, names, there));
  std::vector<int> elements;
  for (const Mesh::Element& element : mesh.Elements())
    if (numbers.contains(element.material)) elements.push_back(element.id);
  return entity == Elements ? elements : NodesOfElements(GetMesh(iteration), elements);
}

std::vector<int> Region::InBox(int iteration, Entity entity)
{
  const Mesh& mesh    = GetMesh(iteration);
  const auto& box     = *options_.box;
  const auto  isInBox = [&box](const Mesh::Point& point) {
    for (std::size_t i = 0; i < 3; ++i)
      if (!(point[i] >= box[i] && point[i] <= box[i + 3])) return false;
    return true;
  };
  std::vector<int> ids;
  if (entity == Nodes) {
    for (std::size_t i = 0; i < mesh.NumNodes(); ++i)
      if (isInBox(mesh.Points()[i])) ids.push_back(mesh.NodeIds()[i]);
  } else {
    for (const Mesh::Element& element : mesh.Elements())
      if (const auto centre = CentreOf(mesh, element); centre && isInBox(*centre)) ids.push_back(element.id);
  }
  return ids;
}

/// @return from where to where the mesh is, for messages
std::string Region::DescribeExtent(int iteration)
{
  const std::optional<MeshBox> box = BoxOf(GetMesh(iteration));
  return box ? "the mesh is from " + NumbersText(box->least) + " to " + NumbersText(box->greatest)
             : "there are no nodes";
}

std::vector<int> Region::NearPoint(int iteration, Entity entity, const std::optional<std::vector<int>>& nodes,
                                   const std::optional<std::vector<int>>& elements)
{
  const Mesh&        mesh     = GetMesh(iteration);
  const Mesh::Point& point    = *options_.near;
  double             distance = std::numeric_limits<double>::infinity();
  std::size_t        nearest  = mesh.NumNodes();
  for (std::size_t i = 0; i < mesh.NumNodes(); ++i) {
    if (nodes && !std::binary_search(nodes->begin(), nodes->end(), mesh.NodeIds()[i])) continue;
    const Mesh::Point& at  = mesh.Points()[i];
    const double       far = std::hypot(at[0] - point[0], at[1] - point[1], at[2] - point[2]);
    if (far < distance) {
      distance = far;
      nearest  = i;
    }
  }
  if (nearest == mesh.NumNodes()) return {};
  const int id = mesh.NodeIds()[nearest];
  AddNotes(notes_, {"the node nearest to " + NumbersText(point) + " is " + std::to_string(id) + " at distance " +
                    FormatRounded(distance)});
  if (entity == Nodes) return {id};

  std::vector<int> ids;
  for (const Mesh::Element& element : mesh.Elements()) {
    const auto all = mesh.NodesOf(element);
    if (std::find(all.begin(), all.end(), nearest) == all.end()) continue;
    if (!elements || std::binary_search(elements->begin(), elements->end(), element.id)) ids.push_back(element.id);
  }
  return ids;
}

std::optional<std::vector<int>> Region::BeforeNear(int iteration, Entity entity)
{
  std::optional<std::vector<int>> ids;
  if (!options_.sets.empty()) Intersect(ids, InSets(iteration, entity));
  if (!options_.materials.empty()) Intersect(ids, InMaterials(iteration, entity));
  if (options_.box) Intersect(ids, InBox(iteration, entity));
  return ids;
}

const IdPositions& Region::Members(int iteration, Entity entity)
{
  std::optional<IdPositions>& members = At(iteration).members[entity];
  if (members) return *members;
  std::optional<std::vector<int>> ids = BeforeNear(iteration, entity);
  if (options_.near) {
    std::optional<std::vector<int>> nodes = ids;
    // The nearest node of elements is one of theirs.
    if (entity == Elements && ids) nodes = NodesOfElements(GetMesh(iteration), *ids);
    ids = NearPoint(iteration, entity, nodes, ids);
  }
  if (ids->empty())
    Fail(name_ + ": no " + (entity == Nodes ? "node" : "element") + " is in " + options_.ToString() + ", " +
         (options_.box ? DescribeExtent(iteration) : "expected a region that holds one"));
  members.emplace(std::move(*ids));
  return *members;
}

RegionFilter Region::FilterOf(const FED_DataBlock& block)
{
  const FED_DataDescriptor& descriptor = block.GetDescriptor();
  if (!AppliesTo(descriptor))
    Fail(name_ + ": " + ToSelectionText(descriptor) + " is neither of nodes nor of elements, expected these for " +
         options_.ToString());
  RegionFilter filter;
  if (options_.HasPlace())
    filter.ids_ = &Members(descriptor.GetInteger(FED_DataDescriptor::Iteration),
                           OnfKind::EntityOf(descriptor) == OnfKind::NodeEntity ? Nodes : Elements);
  const bool             asksForAnEnd = std::any_of(ranges_.begin(), ranges_.end(), [](const NumberRange& range) {
    return range.form == NumberRange::First || range.form == NumberRange::Last;
  });
  std::vector<RecordKey> keys;
  if (asksForAnEnd) keys = GetRecordKeys(block, database_.GetIdMapsPool());
  for (NumberRange range : ranges_) {
    if (range.form == NumberRange::All) range.first = std::numeric_limits<int>::min();
    if (range.form == NumberRange::All) range.last = std::numeric_limits<int>::max();
    if (range.form == NumberRange::First || range.form == NumberRange::Last) {
      if (keys.empty()) continue;
      range.first = range.last = (range.form == NumberRange::First ? keys.front() : keys.back()).id;
    }
    range.form = NumberRange::Numbers;
    filter.ranges_.push_back(range);
  }
  return filter;
}

std::vector<int> Region::IdsOf(const FED_DataBlock& block)
{
  const RegionFilter filter = FilterOf(block);
  std::vector<int>   ids;
  for (const RecordKey& key : GetRecordKeys(block, database_.GetIdMapsPool()))
    if (filter.Holds(key.id)) ids.push_back(key.id);
  return ids;
}

/// The ids of a list that --ids holds.
std::vector<int> Region::KeepAsked(std::vector<int> ids) const
{
  if (ranges_.empty() || ids.empty()) return ids;
  const int first = ids.front();
  const int last  = ids.back();
  std::erase_if(ids, [&](int id) {
    return std::none_of(ranges_.begin(), ranges_.end(), [&](const NumberRange& range) {
      switch (range.form) {
        case NumberRange::First:
          return id == first;
        case NumberRange::Last:
          return id == last;
        case NumberRange::All:
          return true;
        case NumberRange::None:
          return false;
        case NumberRange::Numbers:
          break;
      }
      return range.Holds(id);
    });
  });
  return ids;
}

std::vector<int> Region::NodesOf(int iteration)
{
  return KeepAsked(options_.HasPlace() ? Members(iteration, Nodes).GetIds() : GetMesh(iteration).NodeIds());
}

std::vector<int> Region::ElementsOf(int iteration)
{
  if (options_.HasPlace()) return KeepAsked(Members(iteration, Elements).GetIds());
  std::vector<int> ids;
  for (const Mesh::Element& element : GetMesh(iteration).Elements()) ids.push_back(element.id);
  return KeepAsked(std::move(ids));
}

void Region::RequireIds(const std::vector<FED_DataDescriptor>& blocks, const std::string& selection) const
{
  const auto isThere = [&](int id) {
    return std::any_of(blocks.begin(), blocks.end(), [&](const FED_DataDescriptor& descriptor) {
      const FED_DataBlock& block = database_.GetConstDataBlock(descriptor);
      if (OnfKind::HasIds(descriptor.GetInteger(FED_DataDescriptor::OnfId)))
        return FED_ConstIdDataBlock(block, database_.GetIdMapsPool()).HasRecord(id);
      return id >= 0 && block.HasRecord(static_cast<std::size_t>(id));
    });
  };
  std::set<int> single;
  for (const NumberRange& range : ranges_)
    if (range.form == NumberRange::Numbers && range.first == range.last) single.insert(range.first);
  for (const int id : single) {
    if (isThere(id)) continue;
    const std::string extent = DescribeIds(blocks);
    Fail(name_ + ": no record " + std::to_string(id) + " in the blocks of '" + selection + "'" +
         (extent.empty() ? ", they have none" : ", expected one of " + extent));
  }
}

/// @return "3 to 20", from the least to the greatest of the ids that blocks have; empty for none
std::string Region::DescribeIds(const std::vector<FED_DataDescriptor>& blocks) const
{
  std::set<int> ends;
  for (const FED_DataDescriptor& descriptor : blocks) {
    const auto keys = GetRecordKeys(database_.GetConstDataBlock(descriptor), database_.GetIdMapsPool());
    if (!keys.empty()) ends.insert({keys.front().id, keys.back().id});
  }
  return ends.empty() ? "" : std::to_string(*ends.begin()) + " to " + std::to_string(*ends.rbegin());
}

void Region::FailEmpty(const std::string& selection) const
{
  Fail(name_ + ": no record of '" + selection + "' is in " + options_.ToString() +
       ", expected a region that holds one");
}

bool HoldsRecords(Region& region, const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks)
{
  return std::any_of(blocks.begin(), blocks.end(), [&](const FED_DataDescriptor& descriptor) {
    return region.AppliesTo(descriptor) && !region.IdsOf(database.GetConstDataBlock(descriptor)).empty();
  });
}

std::vector<int> NodesOfElements(const Mesh& mesh, const std::vector<int>& elements)
{
  std::vector<int> nodes;
  for (const int id : elements) {
    const std::optional<std::size_t> place = mesh.FindElement(id);
    if (!place) continue;
    for (const std::size_t node : mesh.NodesOf(mesh.Elements()[*place])) nodes.push_back(mesh.NodeIds()[node]);
  }
  SortUnique(nodes);
  return nodes;
}

void AddNotes(std::vector<std::string>& notes, const std::vector<std::string>& more)
{
  for (const std::string& note : more)
    if (std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
}

std::optional<MeshBox> BoxOf(const Mesh& mesh)
{
  if (mesh.NumNodes() == 0) return std::nullopt;
  MeshBox box{mesh.Points().front(), mesh.Points().front()};
  for (const Mesh::Point& point : mesh.Points())
    for (std::size_t i = 0; i < 3; ++i) {
      box.least[i]    = std::min(box.least[i], point[i]);
      box.greatest[i] = std::max(box.greatest[i], point[i]);
    }
  return box;
}

std::optional<Mesh::Point> CentreOf(const Mesh& mesh, const Mesh::Element& element)
{
  const auto nodes = mesh.NodesOf(element);
  if (nodes.empty()) return std::nullopt;
  Mesh::Point centre{};
  for (const std::size_t node : nodes)
    for (std::size_t i = 0; i < 3; ++i) centre[i] += mesh.Points()[node][i];
  for (double& coordinate : centre) coordinate /= static_cast<double>(nodes.size());
  return centre;
}

}  // namespace quilon
