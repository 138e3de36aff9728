#include "mesh/Surface.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <utility>

#include "progress/Interrupt.h"

namespace quilon {

namespace {

/// A side of a solid. Numbers of nodes and elements fit in 32 bits, see IdPositions: there are millions of sides.
struct Side
{
  /// The corners but the least node, ascending; of a triangle the last is that of no node. Sides of two elements with
  /// one least node are one face when these are the same.
  std::array<std::uint32_t, 3> corners = {};
  std::uint32_t                element = 0;
  std::uint8_t                 face    = 0;
};

constexpr std::uint32_t kNoNode = 0xFFFFFFFFU;

class Extraction
{
public:
  Extraction(const Mesh& mesh, const std::vector<bool>& isShown) : mesh_(mesh), isShown_(isShown)
  {
    assert(isShown.empty() || isShown.size() == mesh.NumElements());
  }

  Surface Run()
  {
    FindOuterSides();
    std::size_t next = 0;
    for (std::size_t position = 0; position < mesh_.NumElements(); ++position) {
      if (!IsShown(position)) continue;
      const Mesh::Element&   element  = mesh_.Elements()[position];
      const ElementTopology* topology = FindTopology(element.frdType);
      if (topology == nullptr) {
        if (element.count == 2) AddBeam(position);
      } else if (topology->dimension == 3) {
        for (; next < outer_.size() && outer_[next].element == position; ++next)
          AddFace(position, topology->faces[outer_[next].face], outer_[next].face + 1);
      } else if (topology->dimension == 2) {
        AddFace(position, topology->faces.front(), 0);
      } else {
        AddBeam(position);
      }
    }
    KeepEachEdgeOnce();
    CollectNodes();
    return std::move(surface_);
  }

private:
  bool IsShown(std::size_t element) const { return isShown_.empty() || isShown_[element]; }

  std::size_t NodeOf(std::size_t element, std::size_t node) const
  {
    return mesh_.NodesOf(mesh_.Elements()[element])[node];
  }

  /// Calls visit(least node, side) for each side of each solid that is shown.
  template <typename Visit>
  void ForEachSide(const Visit& visit) const
  {
    for (std::size_t position = 0; position < mesh_.NumElements(); ++position) {
      const Mesh::Element&   element  = mesh_.Elements()[position];
      const ElementTopology* topology = FindTopology(element.frdType);
      if (topology == nullptr || topology->dimension != 3 || !IsShown(position)) continue;
      const auto nodes = mesh_.NodesOf(element);
      for (std::size_t number = 0; number < topology->faces.size(); ++number) {
        const ElementFace&           face    = topology->faces[number];
        std::array<std::uint32_t, 4> corners = {kNoNode, kNoNode, kNoNode, kNoNode};
        for (std::size_t i = 0; i < face.numCorners; ++i)
          corners[i] = static_cast<std::uint32_t>(nodes[face.corners[i]]);
        // Four corners by five comparisons.
        const auto order = [&corners](std::size_t i, std::size_t j) {
          if (corners[j] < corners[i]) std::swap(corners[i], corners[j]);
        };
        order(0, 1);
        order(2, 3);
        order(0, 2);
        order(1, 3);
        order(1, 2);
        visit(corners[0], Side{{corners[1], corners[2], corners[3]},
                               static_cast<std::uint32_t>(position),
                               static_cast<std::uint8_t>(number)});
      }
    }
  }

  /// Sides are gathered at their least node, where only a few meet.
  void FindOuterSides()
  {
    std::vector<std::size_t> ends(mesh_.NumNodes() + 1, 0);
    ForEachSide([&](std::size_t least, const Side&) { ++ends[least + 1]; });
    for (std::size_t node = 1; node < ends.size(); ++node) ends[node] += ends[node - 1];
    std::vector<Side>        sides(ends.back());
    std::vector<std::size_t> begins(ends.begin(), ends.end() - 1);
    ForEachSide([&](std::size_t least, const Side& side) { sides[begins[least]++] = side; });

    for (std::size_t node = 0; node < mesh_.NumNodes(); ++node) {
      ThrowIfInterrupted();
      const auto first = sides.begin() + static_cast<std::ptrdiff_t>(ends[node]);
      const auto last  = sides.begin() + static_cast<std::ptrdiff_t>(ends[node + 1]);
      std::sort(first, last, [](const Side& a, const Side& b) { return a.corners < b.corners; });
      for (auto side = first; side != last;) {
        const auto next =
            std::find_if(side, last, [side](const Side& other) { return other.corners != side->corners; });
        if (next - side == 1) outer_.push_back(*side);
        side = next;
      }
    }
    std::sort(outer_.begin(), outer_.end(),
              [](const Side& a, const Side& b) { return std::pair(a.element, a.face) < std::pair(b.element, b.face); });
  }

  void AddFace(std::size_t element, const ElementFace& face, int number)
  {
    const auto corner = [&](std::size_t i) { return NodeOf(element, face.corners[i]); };
    const auto middle = [&](std::size_t i) { return NodeOf(element, face.middles[i]); };
    const auto add    = [&](std::size_t a, std::size_t b, std::size_t c) {
      surface_.triangles.push_back({{a, b, c}, element, number});
    };
    const std::size_t n = face.numCorners;
    if (face.isCurved) {
      for (std::size_t i = 0; i < n; ++i) add(corner(i), middle(i), middle((i + n - 1) % n));
      if (n == 3)
        add(middle(0), middle(1), middle(2));
      else
        AddQuad(middle(0), middle(1), middle(2), middle(3), add);
    } else if (n == 3) {
      add(corner(0), corner(1), corner(2));
    } else {
      AddQuad(corner(0), corner(1), corner(2), corner(3), add);
    }
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t next = (i + 1) % n;
      if (face.isCurved) {
        surface_.edges.push_back({{corner(i), middle(i)}, element});
        surface_.edges.push_back({{middle(i), corner(next)}, element});
      } else {
        surface_.edges.push_back({{corner(i), corner(next)}, element});
      }
    }
  }

  template <typename Add>
  void AddQuad(std::size_t a, std::size_t b, std::size_t c, std::size_t d, const Add& add) const
  {
    if (SquaredDistance(b, d) < SquaredDistance(a, c)) {
      add(a, b, d);
      add(b, c, d);
    } else {
      add(a, b, c);
      add(a, c, d);
    }
  }

  double SquaredDistance(std::size_t a, std::size_t b) const
  {
    double sum = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      const double difference = mesh_.Points()[a][k] - mesh_.Points()[b][k];
      sum += difference * difference;
    }
    return sum;
  }

  void AddBeam(std::size_t element)
  {
    const auto nodes = mesh_.NodesOf(mesh_.Elements()[element]);
    for (std::size_t i = 1; i < nodes.size(); ++i) surface_.beams.push_back({{nodes[i - 1], nodes[i]}, element});
  }

  /// The face that comes first keeps an edge.
  void KeepEachEdgeOnce()
  {
    using Key = std::pair<std::array<std::size_t, 2>, std::size_t>;  // nodes, the lesser first; position in edges
    std::vector<Key> keys;
    keys.reserve(surface_.edges.size());
    for (std::size_t i = 0; i < surface_.edges.size(); ++i) {
      std::array<std::size_t, 2> nodes = surface_.edges[i].nodes;
      std::sort(nodes.begin(), nodes.end());
      keys.push_back({nodes, i});
    }
    std::sort(keys.begin(), keys.end());
    const auto last =
        std::unique(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.first == b.first; });
    keys.erase(last, keys.end());
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.second < b.second; });
    std::vector<Surface::Line> edges;
    edges.reserve(keys.size());
    for (const Key& kept : keys) edges.push_back(surface_.edges[kept.second]);
    surface_.edges = std::move(edges);
  }

  void CollectNodes()
  {
    std::vector<bool> isUsed(mesh_.NumNodes(), false);
    for (const Surface::Triangle& triangle : surface_.triangles)
      for (const std::size_t node : triangle.nodes) isUsed[node] = true;
    for (const Surface::Line& beam : surface_.beams)
      for (const std::size_t node : beam.nodes) isUsed[node] = true;
    for (std::size_t node = 0; node < isUsed.size(); ++node)
      if (isUsed[node]) surface_.nodes.push_back(node);
  }

  const Mesh&              mesh_;
  const std::vector<bool>& isShown_;
  std::vector<Side>        outer_;  // by element, then face
  Surface                  surface_;
};

}  // namespace

Surface ExtractSurface(const Mesh& mesh, const std::vector<bool>& isShown) { return Extraction(mesh, isShown).Run(); }

}  // namespace quilon
