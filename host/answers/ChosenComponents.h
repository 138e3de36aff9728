#pragma once

/// @file
/// The components that a selection asks for.

#include <vector>

#include "kinds/Component.h"
#include "selection/Selection.h"

namespace quilon {

/// @return the components of a kind that the selection names, all stored ones where it names none; nothing for a kind
///         of lists and for one whose fields are no components
/// @throws FED_Failure for a component that the kind has not
std::vector<Component> ChosenComponents(const Selection& selection, int onf);

}  // namespace quilon
