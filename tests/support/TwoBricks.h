#pragma once

/// @file
/// A small model with results, to ask.

#include "QuilonDbConnector/FED_Database.h"

#include "QuilonDbConnector/FED_DataDescriptor.h"

namespace quilon_test {

/// A block of iteration 0, analysis 1.
FED_DataDescriptor StepBlock(int onf, int loadCase, int substep);

/// Gives a mode of iteration 0, analysis 2 its frequency.
void SetFrequency(FED_Database& database, int loadCase, int mode, double frequency);

/// Fills a database: two bricks side by side along x, cubes of side 1, all of iteration 0.
///   nodes 1 to 4 at x = 0, 5 to 8 at x = 1, 9 to 12 at x = 2; of four (y, z) = (0, 0), (1, 0), (1, 1), (0, 1)
///   elements 101 (C3D8, material 1, nodes 1 to 8) and 102 (material 2, nodes 5 to 12)
///   materials 1 STEEL, 2 ALU
///   node sets FIX (1 to 4) and MIX (9); element sets LEFT (101), RIGHT (102) and MIX (101)
///   load case 1: substep 1 at time 0.5, substep 2 at time 1; load case 2: substep 1 at time 2
///   510 displacement of node n: (n, -n, 0) times the time
///   521 stress of node n: xx = n times the time, nothing else
///   561 stress of element e: xy = e - 100 times the time
void FillTwoBricks(FED_Database& database);

}  // namespace quilon_test
