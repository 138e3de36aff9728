#include "import/Derivation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>

#include "FEM_PrincipalValue.h"
#include "FEM_ResultUtil.h"

namespace quilon {

namespace {

/// Principal values and the strain tensors that they come from.
constexpr std::array<std::pair<int, int>, 2> kStrainKinds = {{{570, 571}, {530, 531}}};

void DeriveStrainPrincipals(FED_Database& database, int iteration, int target, int source)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Iteration, iteration);
  pattern.SetEqual(FED_DataDescriptor::OnfId, source);

  for (const FED_DataBlock* strains : database.GetDataBlocks(pattern)) {
    FED_DataDescriptor descriptor = strains->GetDescriptor();
    descriptor.SetInteger(FED_DataDescriptor::OnfId, target);
    if (database.HasDataBlock(descriptor)) continue;

    FED_DataBlock& principals = database.GetOrCreateDataBlock(descriptor, strains->GetSize());
    for (FED_DataBlock::IndexIterator it = strains->Begin(), end = strains->End(); it != end; ++it) {
      double tensor[6];
      double principal[3];
      strains->GetValuesAt(*it, tensor);
      CalculateScaledPrincipals(tensor, principal);
      principals.SetValuesAt(*it, principal);
    }
  }
}

}  // namespace

void CalculateScaledPrincipals(const double* tensor, double* principal)
{
  double largest = 0.0;
  bool   finite  = true;
  for (int k = 0; k < 6; ++k) {
    largest = std::max(largest, std::abs(tensor[k]));
    finite  = finite && std::isfinite(tensor[k]);
  }
  if (largest == 0.0 || !finite) {
    FEM_PrincipalValue::Calculate(tensor, principal);
    return;
  }

  int exponent = 0;
  std::frexp(largest, &exponent);
  double scaled[6];
  for (int k = 0; k < 6; ++k) scaled[k] = std::ldexp(tensor[k], -exponent);
  FEM_PrincipalValue::Calculate(scaled, principal);
  for (int k = 0; k < 3; ++k) principal[k] = std::ldexp(principal[k], exponent);
}

void DeriveResults(FED_Database& database, OnfResultRequestFile& requests, int iteration)
{
  // First: the derivation that follows keeps blocks that exist.
  for (const auto& [target, source] : kStrainKinds) {
    if (requests.typeIsRequested(target)) DeriveStrainPrincipals(database, iteration, target, source);
  }
  FEM_ResultUtil::CalculateAdditionalResults(database, requests, iteration, 0);
}

}  // namespace quilon
