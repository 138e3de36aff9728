#include "import/Derivation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_LogMacros.h>

#include <bundled/OnfKinds.h>

#include "FEM_PrincipalValue.h"
#include "FEM_ResultUtil.h"
#include "import/TensorKinds.h"
#include "selection/Selection.h"

namespace quilon {

namespace {

/// Principal values and the tensors that they come from.
constexpr std::array<std::pair<int, int>, 4> kPrincipalKinds = {
    {{OnfKind::ElementStressPrincipal, OnfKind::ElementStress},
     {OnfKind::NodalStressPrincipal, OnfKind::NodalStress},
     {OnfKind::ElementStrainPrincipal, OnfKind::ElementStrain},
     {OnfKind::NodalStrainPrincipal, OnfKind::NodalStrain}}};

void DerivePrincipals(FED_Database& database, int iteration, int target, int source)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Iteration, iteration);
  pattern.SetEqual(FED_DataDescriptor::OnfId, source);

  for (const FED_DataBlock* tensors : database.GetDataBlocks(pattern)) {
    FED_DataDescriptor descriptor = tensors->GetDescriptor();
    descriptor.SetInteger(FED_DataDescriptor::OnfId, target);
    if (database.HasDataBlock(descriptor)) continue;

    FED_LogMacros::log_msg(FED_LogMacros::LogDetail, "Derivation.cpp", __LINE__, "|%P|Quilon|Derivation",
                           "Principal values: %s", ToSelectionText(descriptor).c_str());
    FED_DataBlock& principals = database.GetOrCreateDataBlock(descriptor, tensors->GetSize());
    for (FED_DataBlock::IndexIterator it = tensors->Begin(), end = tensors->End(); it != end; ++it) {
      double tensor[6];
      double principal[3];
      tensors->GetValuesAt(*it, tensor);
      CalculateScaledPrincipals(tensor, principal);
      principals.SetValuesAt(*it, principal);
    }
  }
}

/// @return the exponent of the largest component, nothing for a tensor that is zero or not finite
std::optional<int> ExponentOf(const double* tensor)
{
  double largest = 0.0;
  for (std::size_t k = 0; k < kNumComponents; ++k) {
    if (!std::isfinite(tensor[k])) return std::nullopt;
    largest = std::max(largest, std::abs(tensor[k]));
  }
  if (largest == 0.0) return std::nullopt;
  int exponent = 0;
  std::frexp(largest, &exponent);
  return exponent;
}

/// @param tensor with a largest component between 0.5 and 1
void CalculateUnitPrincipals(const double* tensor, double* principal)
{
  // Below a deviator of a quarter the cubic's coefficients have too few digits left for the differences of its roots.
  // Above, the tensor itself is taken: zeros of a plane tensor stay zeros.
  constexpr int kNearlyHydrostatic = -2;

  const double             mean                     = (tensor[0] + tensor[1] + tensor[2]) / 3.0;
  const double             deviator[kNumComponents] = {tensor[0] - mean, tensor[1] - mean, tensor[2] - mean,
                                                       tensor[3],        tensor[4],        tensor[5]};
  const std::optional<int> exponent                 = ExponentOf(deviator);
  if (exponent && *exponent > kNearlyHydrostatic) return FEM_PrincipalValue::Calculate(tensor, principal);

  double scaled[kNumComponents] = {};
  if (exponent) {
    for (std::size_t k = 0; k < kNumComponents; ++k) scaled[k] = std::ldexp(deviator[k], -*exponent);
  }
  FEM_PrincipalValue::Calculate(scaled, principal);
  for (int k = 0; k < 3; ++k) principal[k] = mean + std::ldexp(principal[k], exponent.value_or(0));
}

}  // namespace

void CalculateScaledPrincipals(const double* tensor, double* principal)
{
  const std::optional<int> exponent = ExponentOf(tensor);
  if (!exponent) return FEM_PrincipalValue::Calculate(tensor, principal);

  double scaled[kNumComponents];
  for (std::size_t k = 0; k < kNumComponents; ++k) scaled[k] = std::ldexp(tensor[k], -*exponent);
  CalculateUnitPrincipals(scaled, principal);
  for (int k = 0; k < 3; ++k) principal[k] = std::ldexp(principal[k], *exponent);
}

void DeriveResults(FED_Database& database, OnfResultRequestFile& requests, int iteration)
{
  // First: the derivation that follows keeps blocks that exist.
  for (const auto& [target, source] : kPrincipalKinds) {
    if (requests.typeIsRequested(target)) DerivePrincipals(database, iteration, target, source);
  }
  FEM_ResultUtil::CalculateAdditionalResults(database, requests, iteration, 0);
}

}  // namespace quilon
