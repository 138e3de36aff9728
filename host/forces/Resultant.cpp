#include "forces/Resultant.h"

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "forces/ElementForces.h"
#include "forces/ForceMesh.h"
#include "progress/Interrupt.h"

namespace quilon {

void AddTo(Vector& sum, const double* term) noexcept
{
  for (std::size_t k = 0; k < 3; ++k) sum[k] += term[k];
}

void Resultant::Add(const Vector& arm, const double* value) noexcept
{
  AddTo(force, value);
  const Vector turn = {arm[1] * value[2] - arm[2] * value[1], arm[2] * value[0] - arm[0] * value[2],
                       arm[0] * value[1] - arm[1] * value[0]};
  AddTo(moment, turn.data());
}

void ForEachForce(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                  const std::function<void(std::size_t, std::size_t, const double*)>& visit)
{
  const FED_DataDescriptor   lists(step.forces.GetInteger(FED_DataDescriptor::Iteration), OnfKind::ElementNodes);
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

}  // namespace quilon
