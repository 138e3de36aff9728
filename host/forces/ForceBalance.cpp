#include "forces/ForceBalance.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

constexpr std::size_t kNone = IdRadixMap<Vector>::npos;

/// @return by position in the mesh's nodes, whether an element of a kind names the node
/// @param isOne by position in the mesh's elements
std::vector<bool> NodesOfElements(const ForceMesh& mesh, const std::vector<bool>& isOne)
{
  std::vector<bool> named(mesh.nodes.Entries().size(), false);
  std::size_t       at = 0;
  for (const auto& entry : mesh.elements.Entries()) {
    if (isOne[at++]) {
      for (const int node : mesh.NodesOf(entry.second)) {
        const std::size_t position = mesh.nodes.Find(node);
        if (position != kNone) named[position] = true;
      }
    }
  }
  return named;
}

/// @return infinity for a vector with a NaN, which is worse than any other
double LargestComponent(const Vector& v)
{
  if (std::isnan(v[0] + v[1] + v[2])) return std::numeric_limits<double>::infinity();
  return std::max({std::abs(v[0]), std::abs(v[1]), std::abs(v[2])});
}

/// Raises the largest force there is to that of a vector; one that is not finite tells nothing of it.
void Raise(double& largest, const Vector& force)
{
  const double component = LargestComponent(force);
  if (std::isfinite(component)) largest = std::max(largest, component);
}

void AddTied(const std::string& how, const NodeBalance& node, std::vector<TiedNodes>& all)
{
  auto tied = std::find_if(all.begin(), all.end(), [&how](const TiedNodes& one) { return one.how == how; });
  if (tied == all.end()) tied = all.insert(all.end(), TiedNodes{how, 0, node.node, node.largest});
  ++tied->numNodes;
  if (!(node.largest > tied->largestResidual)) return;
  tied->largestResidual = node.largest;
  tied->worstNode       = node.node;
}

}  // namespace

ForceBalance CalculateBalance(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                              double tolerance, const std::string& name)
{
  FED_DataDescriptor reactions = step.forces;
  reactions.SetInteger(FED_DataDescriptor::OnfId, OnfKind::Reaction);
  if (!database.HasDataBlock(reactions))
    Fail(name + ": no reactions " + ToSelectionText(reactions) + ", expected RF of the solver for a balance");
  const FED_ConstIdDataBlock reactionView(database.GetConstDataBlock(reactions), database.GetIdMapsPool());

  ForceBalance        balance;
  std::vector<Vector> sums(mesh.nodes.Entries().size());
  if (step.numElements == 0) return balance;
  ForEachForce(database, mesh, step, [&](std::size_t, std::size_t node, const double* force) {
    AddTo(sums[node], force);
    AddTo(balance.total, force);
  });

  std::vector<bool> hasNoForces = step.hasForces;
  hasNoForces.flip();
  const std::vector<bool> isIncomplete = NodesOfElements(mesh, hasNoForces);
  const std::vector<bool> isReached    = NodesOfElements(mesh, step.hasForces);
  std::size_t             at           = 0;
  for (const auto& entry : mesh.nodes.Entries()) {
    const std::size_t position = at++;
    if (!isReached[position]) continue;
    if (isIncomplete[position]) {
      ++balance.numIncomplete;
      continue;
    }
    Raise(balance.largestForce, sums[position]);
    if (!reactionView.HasRecord(entry.first)) {
      ++balance.numUnknown;
      continue;
    }
    NodeBalance node{entry.first, sums[position], {}, {}, 0.0};
    reactionView.GetVector(node.node, node.external.data());
    for (std::size_t k = 0; k < 3; ++k) node.residual[k] = node.elements[k] - node.external[k];
    node.largest = LargestComponent(node.residual);
    Raise(balance.largestForce, node.external);
    if (const std::string* how = mesh.HowTied(node.node); how != nullptr) {
      AddTied(*how, node, balance.tied);
      continue;
    }
    balance.largestResidual = std::max(balance.largestResidual, node.largest);
    balance.nodes.push_back(node);
  }
  balance.numJudged = balance.nodes.size();
  balance.limit     = tolerance * balance.largestForce + step.errorBound;
  balance.numAbove  = static_cast<std::size_t>(
      std::count_if(balance.nodes.begin(), balance.nodes.end(),
                     [&balance](const NodeBalance& node) { return node.largest > balance.limit; }));
  std::sort(balance.nodes.begin(), balance.nodes.end(), [](const NodeBalance& a, const NodeBalance& b) {
    return a.largest != b.largest ? a.largest > b.largest : a.node < b.node;
  });
  return balance;
}

FreeBody CalculateFreeBody(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                           const std::set<int>& part, const Vector& about, const std::string& name)
{
  std::vector<bool> isInPart(mesh.elements.Entries().size(), false);
  std::set<int>     withoutForces;
  for (const int id : part) {
    const std::size_t at = mesh.elements.Find(id);
    if (at == kNone) Fail(name + ": no element " + std::to_string(id) + " in the mesh");
    isInPart[at] = true;
    if (!step.hasForces[at]) withoutForces.insert(id);
  }
  if (!withoutForces.empty()) {
    Fail(name + ": no forces of " + Counted(withoutForces.size(), "element") + " of the part in " +
         ToSelectionText(step.forces) + ": " + FormatIds(withoutForces) + ", expected forces of all");
  }

  std::vector<bool> isOutside = isInPart;
  isOutside.flip();
  const std::vector<bool> isShared = NodesOfElements(mesh, isOutside);
  const std::vector<bool> isOfPart = NodesOfElements(mesh, isInPart);
  FreeBody                body;
  for (std::size_t node = 0; node < isOfPart.size(); ++node) {
    if (!isOfPart[node]) continue;
    ++(isShared[node] ? body.cut : body.other).numNodes;
    ++body.sum.numNodes;
  }
  ForEachForce(database, mesh, step, [&](std::size_t element, std::size_t node, const double* force) {
    if (!isInPart[element]) return;
    const Vector arm = Minus(step.positions[node], about);
    for (Resultant* resultant : {isShared[node] ? &body.cut : &body.other, &body.sum}) resultant->Add(arm, force);
  });
  return body;
}

}  // namespace quilon
