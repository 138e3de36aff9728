#pragma once

/// @file
/// Logs which results of a solver file are read.

#include "FemLogger.h"

namespace quilon {

/// The result types that it announces are files; a load case is a step, a substep an increment or a mode.
class ReadLogger : public FemLogger
{
protected:
  /// Logs "reading results of NAME" or "skipping results of NAME" with message type 4.
  void PrintResultTypeStatus(int reading) override;
};

}  // namespace quilon
