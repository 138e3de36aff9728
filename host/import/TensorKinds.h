#pragma once

/// @file
/// Tensors that are averaged at nodes, and where their results go.

#include <cstddef>
#include <optional>

#include <bundled/OnfKinds.h>

#include "results/ResultReader.h"

namespace quilon {

/// Tensors that are averaged at nodes.
enum Quantity : std::size_t
{
  QuantityStress = 0,
  QuantityStrain = 1
};

inline constexpr Quantity kQuantities[] = {QuantityStress, QuantityStrain};

/// Where the results of one tensor go.
struct TensorKinds
{
  const char* name;  ///< for people
  int         average;
  int         solver;  ///< the solver's average where there is one of ours
  int         variance;
  int         error;
  int         count;
  int         elementMean;
  int         points;
};

/// By Quantity.
inline constexpr TensorKinds kTensorKinds[] = {
    {"stress", OnfKind::NodalStress, OnfKind::NodalStressSolver, OnfKind::NodalStressVariance,
     OnfKind::NodalStressError, OnfKind::NodalStressCount, OnfKind::ElementStress, OnfKind::IntegrationPointStress},
    {"strain", OnfKind::NodalStrain, OnfKind::NodalStrainSolver, OnfKind::NodalStrainVariance,
     OnfKind::NodalStrainError, OnfKind::NodalStrainCount, OnfKind::ElementStrain, OnfKind::IntegrationPointStrain},
};

/// Components of a symmetric tensor.
inline constexpr std::size_t kNumComponents = 6;

/// @return which of the tensors a field is, nothing for another field
inline std::optional<Quantity> FindTensor(const ResultField& field)
{
  if (field.numValues != kNumComponents) return std::nullopt;
  if (field.quantity == FieldQuantity::Stress) return QuantityStress;
  if (field.quantity == FieldQuantity::Strain) return QuantityStrain;
  return std::nullopt;
}

}  // namespace quilon
