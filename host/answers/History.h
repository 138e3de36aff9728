#pragma once

/// @file
/// Values over time.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_Database;

namespace quilon {

class Region;
class StepTimes;

/// A value at one result step.
struct HistoryPoint
{
  FED_DataDescriptor    step;  ///< see GetResultStep(); of a scalar history with the substep of the position
  std::optional<double> time;  ///< see StepTimes
  double                value    = 0.0;
  int                   quantity = 0;  ///< that the time is of, see StepTimes::QuantityOf()
};

/// One component of one record over the result steps.
struct HistorySeries
{
  FED_DataDescriptor        key;        ///< of the blocks, without their step
  std::string               kind;       ///< its name
  std::optional<int>        id;         ///< nothing for a scalar history
  int                       point = 0;  ///< of a kind with several vectors or tensors a record, from 1; else 0
  std::string               component;
  std::vector<HistoryPoint> points;  ///< by iteration, analysis and quantity, then time; those without time by step
};

struct HistoryRequest
{
  Selection   selection;      ///< its components; all stored ones where it names none
  std::string selectionText;  ///< what the user wrote, for messages
  /// Told of an order by id that could not be used; may be empty.
  std::function<void(const std::string&)> onNote = {};
};

/// Reads the records of a region, block by block or, where a working database has an order by id of them and that is
/// less to read, from there: the series are the same. Scalar histories are read whole, whatever the region.
/// @param blocks the selected ones; those without components are left out
/// @return series by key, id, point and component, components as they were asked for
/// @throws FED_Failure when records are selected and the region is everything, and when no record is in it
std::vector<HistorySeries> ReadHistories(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                         const StepTimes& times, Region& region, const HistoryRequest& request);

/// @return the values at other times, on straight lines between those of the series; times before its first and behind
///         its last point have none. Points without a time count for nothing; of several at one time the last one does.
///         Where some points have times and others frequencies or buckling factors, the first of these count alone.
///         Iterations and analyses are one series here.
HistorySeries Resampled(const HistorySeries& series, const std::vector<double>& times);

/// Reads the times of a resampling: "0.1,0.2,1" or "FIRST:LAST:STEP".
/// @throws FED_Failure for anything else, and for more than a million times
std::vector<double> ParseTimes(const std::string& text);

}  // namespace quilon
