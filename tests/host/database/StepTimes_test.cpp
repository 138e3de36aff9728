#include "database/StepTimes.h"

#include <cmath>
#include <optional>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

namespace {

using quilon::StepTimes;
using Descriptor = FED_DataDescriptor;

Descriptor BlockOf(int onf, int analysis, int loadCase, int substep)
{
  Descriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(Descriptor::Analysis, analysis);
  descriptor.SetInteger(Descriptor::LoadCase, loadCase);
  descriptor.SetInteger(Descriptor::Substep, substep);
  return descriptor;
}

void SetHistory(FED_Database& database, int quantity, int analysis, int loadCase, std::size_t substep, double value)
{
  Descriptor history(0, FED_OnfId_ScalarHistory);
  history.SetInteger(Descriptor::Analysis, analysis);
  history.SetInteger(Descriptor::LoadCase, loadCase);
  history.SetInteger(OnfIndex::Quantity, quantity);
  database.GetOrCreateDataBlock(history, 4).SetScalarAt(substep, value);
}

TEST(StepTimes, StandInTheHistoryOfTheLoadCaseAtTheSubstep)
{
  FED_ResultDatabase database;
  SetHistory(database, OnfKind::Time, 1, 1, 1, 0.5);
  SetHistory(database, OnfKind::Time, 1, 1, 2, 1.0);
  SetHistory(database, OnfKind::Time, 1, 2, 1, 2.0);
  const StepTimes times(database);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::NodalStress, 1, 1, 2)), 1.0);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::Displacement, 1, 2, 1)), 2.0);
  EXPECT_EQ(times.QuantityOf(BlockOf(OnfKind::Displacement, 1, 2, 1)), OnfKind::Time);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::NodalStress, 1, 1, 3)), std::nullopt);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::NodalStress, 2, 1, 1)), std::nullopt);
  EXPECT_EQ(times.TimeOf(Descriptor(0, OnfKind::Coordinates)), std::nullopt);
  EXPECT_EQ(times.QuantityOf(Descriptor(0, OnfKind::Coordinates)), 0);
}

TEST(StepTimes, LayersGroupsAndOtherIterationsGoByTheirOwnStep)
{
  FED_ResultDatabase database;
  SetHistory(database, OnfKind::Time, 1, 1, 1, 0.5);
  const StepTimes times(database);
  Descriptor      block = BlockOf(OnfKind::NodalStress, 1, 1, 1);
  block.SetInteger(OnfIndex::Group, 7);
  block.SetInteger(Descriptor::Layer, 2);
  EXPECT_EQ(times.TimeOf(block), 0.5);
  block.SetInteger(Descriptor::Iteration, 1);
  EXPECT_EQ(times.TimeOf(block), std::nullopt);
}

TEST(StepTimes, FrequenciesAndBucklingFactorsStandInForTimes)
{
  FED_ResultDatabase database;
  SetHistory(database, OnfKind::Frequency, 2, 1, 1, 120.0);
  SetHistory(database, OnfKind::Eigenvalue, 2, 1, 1, 5.0);
  SetHistory(database, OnfKind::BucklingFactor, 2, 2, 1, 3.5);
  SetHistory(database, OnfKind::Time, 3, 1, 1, 0.25);
  SetHistory(database, OnfKind::Frequency, 3, 1, 1, 60.0);
  const StepTimes times(database);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::Displacement, 2, 1, 1)), 120.0);
  EXPECT_EQ(times.QuantityOf(BlockOf(OnfKind::Displacement, 2, 1, 1)), OnfKind::Frequency);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::Displacement, 2, 2, 1)), 3.5);
  EXPECT_EQ(times.QuantityOf(BlockOf(OnfKind::Displacement, 2, 2, 1)), OnfKind::BucklingFactor);
  EXPECT_EQ(times.TimeOf(BlockOf(OnfKind::Displacement, 3, 1, 1)), 0.25) << "a time comes first";
}

TEST(StepTimes, WhatIsNoNumberIsNoTime)
{
  FED_ResultDatabase database;
  SetHistory(database, OnfKind::Time, 1, 1, 1, std::nan(""));
  EXPECT_EQ(StepTimes(database).TimeOf(BlockOf(OnfKind::NodalStress, 1, 1, 1)), std::nullopt);
}

}  // namespace
