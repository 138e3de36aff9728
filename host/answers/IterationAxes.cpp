#include "answers/IterationAxes.h"

#include <utility>

#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

IterationAxes::IterationAxes(const FED_Database& database, std::string text, std::string name)
    : database_(database), text_(std::move(text)), name_(std::move(name))
{}

void IterationAxes::Add(int iteration)
{
  if (axes_.contains(iteration)) return;
  const ComponentAxes& axes =
      axes_.emplace(iteration, text_.empty() ? ComponentAxes() : ComponentAxes(text_, database_, iteration))
          .first->second;
  if (axes.NeedsPlaces()) meshes_.emplace(iteration, ReadMesh(database_, iteration, name_));
  description_ = axes.Describe();
}

RecordTurner IterationAxes::TurnerOf(const FED_DataDescriptor& block) const
{
  const int  iteration = block.GetInteger(FED_DataDescriptor::Iteration);
  const auto mesh      = meshes_.find(iteration);
  return RecordTurner(axes_.at(iteration), block.GetInteger(FED_DataDescriptor::OnfId),
                      mesh == meshes_.end() ? nullptr : &mesh->second);
}

}  // namespace quilon
