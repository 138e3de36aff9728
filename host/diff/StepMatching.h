#pragma once

/// @file
/// Which result step of one database stands for which of another.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon::diff {

/// What stands for a result step: a step of the other database, or what lies between two of them.
struct StepCounterpart
{
  FED_DataDescriptor                step;
  std::optional<FED_DataDescriptor> next;          ///< set for values between two steps
  double                            weight = 0.0;  ///< share of `next`, between 0 and 1
};

/// Result steps of the first database and what stands for them in the second, see GetResultStep(). A step without an
/// entry has no counterpart.
using StepMatch = std::map<FED_DataDescriptor, StepCounterpart>;

/// @return the block's key with the values of another step
FED_DataDescriptor WithResultStep(FED_DataDescriptor descriptor, const FED_DataDescriptor& step);

/// Pairs the steps one by one, in their order.
/// @param first, second    in their order
/// @param firstName, secondName of the databases, for messages
/// @throws FED_Failure unless there are as many of each
StepMatch MatchStepsByPosition(const std::vector<FED_DataDescriptor>& first,
                               const std::vector<FED_DataDescriptor>& second, const std::string& firstName,
                               const std::string& secondName);

/// Pairs the steps of equal iteration and analysis whose times are near: each once, near ones first, of equally near
/// ones those of equal keys. Steps without a time, such as modes, pair by their keys.
/// @param tolerance    largest distance of two times that are one, 0 or more
/// @param interpolates whether a step that finds none stands between the two whose times are around its own
/// @throws FED_Failure for a database whose steps have no times
StepMatch MatchStepsByTime(const FED_Database& first, const FED_Database& second,
                           const std::vector<FED_DataDescriptor>& firstSteps,
                           const std::vector<FED_DataDescriptor>& secondSteps, double tolerance, bool interpolates,
                           const std::string& firstName, const std::string& secondName);

}  // namespace quilon::diff
