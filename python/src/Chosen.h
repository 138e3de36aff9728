#pragma once

/// @file
/// What a call is asked of.

#include <string>
#include <vector>

#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "Store.h"

namespace quilon::python {

struct Chosen
{
  FED_Database&                   database;
  const KindTable&                kinds;
  Selection                       selection;
  std::vector<FED_DataDescriptor> blocks;
};

/// Chooses among what is stored. Within Store::Use().
/// @throws FED_Failure where nothing is chosen
Chosen Choose(Store& store, const std::string& text, const std::string& steps);

}  // namespace quilon::python
