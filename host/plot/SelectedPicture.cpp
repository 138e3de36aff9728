#include "plot/SelectedPicture.h"

#include <optional>

#include <bundled/OnfKinds.h>

#include "kinds/KindTable.h"
#include "plot/ModelField.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"
#include "text/Failure.h"

namespace quilon {

namespace {

/// @return the component that the selection names; empty where it names none
std::string ComponentOf(const Selection& selection, int onf)
{
  const std::vector<std::string> components = selection.ComponentsOf(onf);
  if (components.size() > 1) Fail("the selection names several components, expected one for a picture");
  return components.empty() ? std::string() : components.front();
}

/// @return the iteration of the first mesh, 0 without any
int FirstIteration(const FED_Database& database)
{
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    if (descriptor.GetInteger(FED_DataDescriptor::OnfId) == OnfKind::Coordinates)
      return descriptor.GetInteger(FED_DataDescriptor::Iteration);
  return 0;
}

}  // namespace

ModelPicture DrawSelected(const FED_Database& database, SelectedPicture request, PictureFormat format)
{
  std::optional<FieldChoice> choice;
  int                        iteration = 0;
  if (request.blocks.empty()) {
    iteration = FirstIteration(database);
  } else {
    choice    = ChooseField(request.blocks, KindTable(database), request.text, request.name);
    iteration = choice->GetIteration();
    if (request.options.component.empty()) request.options.component = ComponentOf(request.selection, choice->GetOnf());
  }
  if (request.part.HasPlace())
    request.options.elements = Region(database, request.part, request.name).ElementsOf(iteration);
  ModelPicture drawn = DrawModel(database, iteration, choice, request.options, format, request.name);
  if (choice && choice->numSteps > 1)
    drawn.notes.insert(drawn.notes.begin(), "the last of " + std::to_string(choice->numSteps) + " steps is shown");
  return drawn;
}

}  // namespace quilon
