#include "forces/ForceBalance.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "progress/Interrupt.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

constexpr int         kReaction     = 511;
constexpr int         kElementNodes = 595;
constexpr std::size_t kNone         = IdRadixMap<Vector>::npos;

/// Visits the force of each node of each element that has forces.
/// @param visit receives the element's position in the mesh, the node's position there, the force
void ForEachForce(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                  const std::function<void(std::size_t, std::size_t, const double*)>& visit)
{
  const FED_DataDescriptor   lists(step.forces.GetInteger(FED_DataDescriptor::Iteration),
                                   static_cast<FED_OnfId>(kElementNodes));
  const FED_ConstIdDataBlock forceView(database.GetConstDataBlock(step.forces), database.GetIdMapsPool());
  const FED_ConstIdDataBlock listView(database.GetConstDataBlock(lists), database.GetIdMapsPool());
  FED_ConstIdDataRecord&     forceRecord = forceView.CreateConstIdDataRecord();
  FED_ConstIdDataRecord&     listRecord  = listView.CreateConstIdDataRecord();
  FED_DoubleArray            forces;
  FED_IntArray               nodes;
  std::size_t                at = 0;
  for (const auto& entry : mesh.elements.Entries()) {
    ThrowIfInterrupted();
    if (step.hasForces[at]) {
      forceView.GetRecord(entry.first, forceRecord);
      listView.GetRecord(entry.first, listRecord);
      forceRecord.GetDataRecord().GetDoubleList(1, forces);
      listRecord.GetIntList(1, nodes);
      for (std::size_t n = 0; n < nodes.GetSize(); ++n)
        visit(at, mesh.nodes.Find(nodes.GetData()[n]), forces.GetData() + 3 * n);
    }
    ++at;
  }
}

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

void Add(Vector& sum, const double* term)
{
  for (std::size_t k = 0; k < 3; ++k) sum[k] += term[k];
}

Vector Cross(const Vector& a, const double* b)
{
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

}  // namespace

ForceBalance CalculateBalance(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                              const std::string& name)
{
  FED_DataDescriptor reactions = step.forces;
  reactions.SetInteger(FED_DataDescriptor::OnfId, kReaction);
  if (!database.HasDataBlock(reactions))
    Fail(name + ": no reactions " + ToSelectionText(reactions) + ", expected RF of the solver for a balance");
  const FED_ConstIdDataBlock reactionView(database.GetConstDataBlock(reactions), database.GetIdMapsPool());

  ForceBalance        balance;
  std::vector<Vector> sums(mesh.nodes.Entries().size());
  ForEachForce(database, mesh, step, [&](std::size_t, std::size_t node, const double* force) {
    Add(sums[node], force);
    Add(balance.total, force);
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
    balance.largestResidual = std::max(balance.largestResidual, node.largest);
    balance.nodes.push_back(node);
  }
  if (balance.nodes.empty()) {
    Fail(name + ": no node to judge in " + ToSelectionText(step.forces) + ", " +
         Counted(balance.numIncomplete, "node") + " of elements without forces, " +
         Counted(balance.numUnknown, "node") + " without RF");
  }
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
    Vector arm = step.positions[node];
    for (std::size_t k = 0; k < 3; ++k) arm[k] -= about[k];
    const Vector moment = Cross(arm, force);
    for (Resultant* resultant : {isShared[node] ? &body.cut : &body.other, &body.sum}) {
      Add(resultant->force, force);
      Add(resultant->moment, moment.data());
    }
  });
  return body;
}

}  // namespace quilon
