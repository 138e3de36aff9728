#pragma once

/// @file
/// How an averaging field is saved.

#include "quilon_language.h"

namespace FEM_AvgFieldDefs {

/// Which block a layer is written to. Any other number acts as LayerAsGiven.
enum LayerMode : int
{
  SeparateLayers = 0,  ///< layer L goes to the block whose layer index is L + 1
  NoLayerIndex   = 1,  ///< all layers go to one block, whose descriptor has no layer index
  LayerAsGiven   = 2   ///< all layers go to the block of the descriptor as given
};

/// What is written per id and component. No other number is supported.
enum Operation : int
{
  Average  = 0,
  Sum      = 1,
  Variance = 2  ///< population variance; always 0 for sums with counts, which do not know it
};

}  // namespace FEM_AvgFieldDefs
