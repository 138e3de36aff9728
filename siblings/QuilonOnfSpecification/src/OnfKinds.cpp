#include <bundled/OnfKinds.h>

#include <array>
#include <map>

#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace OnfKind {

namespace {

struct Derived
{
  int principal;
  int tensor;
};

constexpr std::array<Derived, 4> kDerived = {{{NodalStressPrincipal, NodalStress},
                                              {NodalStrainPrincipal, NodalStrain},
                                              {ElementStressPrincipal, ElementStress},
                                              {ElementStrainPrincipal, ElementStrain}}};

}  // namespace

int EntityOf(int onf) { return FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf)).GetEntityKind(); }

bool IsOfMesh(int onf)
{
  const int entity = EntityOf(onf);
  return entity == NodeEntity || entity == ElementEntity;
}

bool HasIds(int onf) { return EntityOf(onf) < HistoryEntity; }

int TensorOf(int principal) noexcept
{
  for (const Derived& derived : kDerived)
    if (derived.principal == principal) return derived.tensor;
  return 0;
}

int PrincipalOf(int tensor) noexcept
{
  for (const Derived& derived : kDerived)
    if (derived.tensor == tensor) return derived.principal;
  return 0;
}

const std::vector<int>& PrincipalKinds()
{
  static const std::vector<int> kKinds = [] {
    std::vector<int> kinds;
    for (const Derived& derived : kDerived) kinds.push_back(derived.principal);
    return kinds;
  }();
  return kKinds;
}

bool HoldsMatrices(int onf) noexcept
{
  return onf == StiffnessMatrix || onf == MassMatrix || (onf >= UserMatrix && onf <= LastUserKind);
}

bool HoldsElementMatrices(int onf) noexcept
{
  return (onf >= ElementMatrix590 && onf <= ElementMatrix592) || (onf >= ElementMatrix597 && onf <= ElementMatrix599);
}

SignChange SignChangeOf(int onf) noexcept
{
  switch (onf) {
    case Displacement:
    case Reaction:
    case Velocity:
    case Acceleration:
    case NodalStress:
    case NodalStressSolver:
    case NodalStrain:
    case NodalStrainSolver:
    case ElementStress:
    case ElementStrain:
    case ElementForces:
    case ElementMoments:
    case IntegrationPointStress:
    case IntegrationPointStrain:
      return SignChange::Negated;
    default:
      return TensorOf(onf) != 0 ? SignChange::Principal : SignChange::None;
  }
}

int ListPeriodOf(int onf) noexcept
{
  switch (onf) {
    case ElementForces:
    case ElementMoments:
      return 3;
    case IntegrationPointStress:
    case IntegrationPointStrain:
      return 6;
    default:
      return 1;
  }
}

const std::vector<std::string>& FieldNamesOf(int onf)
{
  static const std::vector<std::string>                kNone;
  static const std::map<int, std::vector<std::string>> kNames = {
      {ElementNodes, {"nodes"}},
      {ElementType, {"type", "material"}},
      {NodeSet, {"name", "nodes"}},
      {ElementSet, {"name", "elements"}},
      {Material, {"name", "density", "youngs-modulus", "poissons-ratio"}},
      {ElementSection, {"section", "material", "orientation"}},
      {Orientation, {"name", "system", "numbers"}},
      {ImportFile, {"import", "role", "name", "size", "checksum", "changed"}},
      {ImportSetting, {"import", "name", "value"}},
      {TiedNodes, {"how", "nodes"}},
      {DeckType, {"type"}},
      {StiffnessMatrix, {"rows", "columns", "values", "row-pointers", "column-indices"}},
      {MassMatrix, {"rows", "columns", "values", "row-pointers", "column-indices"}},
  };
  const auto found = kNames.find(onf);
  return found == kNames.end() ? kNone : found->second;
}

}  // namespace OnfKind
