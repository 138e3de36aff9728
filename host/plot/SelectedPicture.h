#pragma once

/// @file
/// Pictures of what a user selects: `quilon plot`.

#include <string>
#include <vector>

#include "answers/Region.h"
#include "plot/Canvas.h"
#include "plot/ModelPicture.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_Database;

namespace quilon {

struct SelectedPicture
{
  std::string                     name;       ///< of the database, for messages
  std::vector<FED_DataDescriptor> blocks;     ///< that the selection leaves; none: the mesh alone
  Selection                       selection;  ///< names the component, unless the options do
  std::string                     text;       ///< of the selection, for messages
  RegionOptions                   part;       ///< what is shown of the model: sets and materials
  ModelPictureOptions             options;    ///< elements are those of the part
};

/// Draws the last step of what is selected.
/// @throws FED_Failure as ChooseField(), Region and DrawModel() do, and for a selection of several components
ModelPicture DrawSelected(const FED_Database& database, SelectedPicture request, PictureFormat format);

}  // namespace quilon
