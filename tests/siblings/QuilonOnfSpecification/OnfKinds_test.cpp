#include <bundled/OnfKinds.h>

#include <map>
#include <string>

#include <gtest/gtest.h>

#include <bundled/OnfCatalogue.h>

#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace {

// The header's names, each beside the catalogue's.
const std::map<int, std::string> kNamed = {
    {OnfKind::ScalarHistory, "scalar-history"},
    {OnfKind::Time, "time"},
    {OnfKind::Eigenvalue, "eigenvalue"},
    {OnfKind::Frequency, "frequency"},
    {OnfKind::BucklingFactor, "buckling-factor"},
    {OnfKind::TotalInternalEnergy, "total-internal-energy"},
    {OnfKind::TotalKineticEnergy, "total-kinetic-energy"},
    {OnfKind::TotalVolume, "total-volume"},
    {OnfKind::TotalMass, "total-mass"},
    {OnfKind::TotalForce, "total-force"},
    {OnfKind::Displacement, "displacement"},
    {OnfKind::Reaction, "reaction"},
    {OnfKind::Velocity, "velocity"},
    {OnfKind::Acceleration, "acceleration"},
    {OnfKind::Temperature, "temperature"},
    {OnfKind::HeatFlux, "heat-flux"},
    {OnfKind::Coordinates, "coordinates"},
    {OnfKind::HeatGeneration, "heat-generation"},
    {OnfKind::EquivalentPlasticStrain, "equivalent-plastic-strain"},
    {OnfKind::EnergyDensity, "energy-density"},
    {OnfKind::NodalStressPrincipal, "nodal-stress-principal"},
    {OnfKind::NodalStress, "nodal-stress"},
    {OnfKind::NodalStressSolver, "nodal-stress-solver"},
    {OnfKind::NodalStrainPrincipal, "nodal-strain-principal"},
    {OnfKind::NodalStrain, "nodal-strain"},
    {OnfKind::NodalStrainSolver, "nodal-strain-solver"},
    {OnfKind::ElementEnergy, "element-energy"},
    {OnfKind::NodeEnergy, "node-energy"},
    {OnfKind::NodalStressVariance, "nodal-stress-variance"},
    {OnfKind::NodalStressError, "nodal-stress-error"},
    {OnfKind::NodalStressCount, "nodal-stress-count"},
    {OnfKind::NodalStrainVariance, "nodal-strain-variance"},
    {OnfKind::NodalStrainError, "nodal-strain-error"},
    {OnfKind::NodalStrainCount, "nodal-strain-count"},
    {OnfKind::ElementStressPrincipal, "element-stress-principal"},
    {OnfKind::ElementStress, "element-stress"},
    {OnfKind::ElementStrainPrincipal, "element-strain-principal"},
    {OnfKind::ElementStrain, "element-strain"},
    {OnfKind::ElementForces, "element-forces"},
    {OnfKind::ElementMoments, "element-moments"},
    {OnfKind::IntegrationPointStress, "integration-point-stress"},
    {OnfKind::IntegrationPointStrain, "integration-point-strain"},
    {OnfKind::ElementMatrix590, "element-matrix-590"},
    {OnfKind::ElementMatrix591, "element-matrix-591"},
    {OnfKind::ElementMatrix592, "element-matrix-592"},
    {OnfKind::StiffnessMatrix, "stiffness-matrix"},
    {OnfKind::MassMatrix, "mass-matrix"},
    {OnfKind::ElementNodes, "element-nodes"},
    {OnfKind::ElementType, "element-type"},
    {OnfKind::ElementMatrix597, "element-matrix-597"},
    {OnfKind::ElementMatrix598, "element-matrix-598"},
    {OnfKind::ElementMatrix599, "element-matrix-599"},
    {OnfKind::NodeSet, "node-set"},
    {OnfKind::ElementSet, "element-set"},
    {OnfKind::Material, "material"},
    {OnfKind::ElementSection, "element-section"},
    {OnfKind::Orientation, "orientation"},
    {OnfKind::ImportFile, "import-file"},
    {OnfKind::ImportSetting, "import-setting"},
    {OnfKind::LargeDisplacements, "large-displacements"},
    {OnfKind::TiedNodes, "tied-nodes"},
    {OnfKind::DeckType, "deck-type"},
    {OnfKind::ElementEnergyContribution, "element-energy-contribution"},
    {OnfKind::NodeEnergyContribution, "node-energy-contribution"},
};

TEST(OnfKinds, EveryKindOfTheCatalogueHasItsName)
{
  std::map<int, std::string> catalogue;
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries()) catalogue[entry.onf] = entry.metaData.GetName();
  EXPECT_EQ(kNamed, catalogue);
}

TEST(OnfKinds, UserHundredsAreThoseOfTheCatalogue)
{
  const std::map<int, std::string> named = {
      {OnfKind::UserNodeScalar, "user-node-scalar"},
      {OnfKind::UserNodeVector, "user-node-vector"},
      {OnfKind::UserNodeTensor, "user-node-tensor"},
      {OnfKind::UserNodeList, "user-node-list"},
      {OnfKind::UserElementScalar, "user-element-scalar"},
      {OnfKind::UserElementVector, "user-element-vector"},
      {OnfKind::UserElementTensor, "user-element-tensor"},
      {OnfKind::UserElementList, "user-element-list"},
      {OnfKind::UserHistory, "user-history"},
      {OnfKind::UserMatrix, "user-matrix"},
  };
  std::map<int, std::string> catalogue;
  for (const OnfCatalogue::UserRange& range : OnfCatalogue::UserRanges()) {
    catalogue[range.first] = range.stem;
    EXPECT_TRUE(OnfKind::IsUserKind(range.first));
    EXPECT_TRUE(OnfKind::IsUserKind(range.last));
  }
  EXPECT_EQ(named, catalogue);
  EXPECT_FALSE(OnfKind::IsUserKind(OnfKind::FirstUserKind - 1));
  EXPECT_FALSE(OnfKind::IsUserKind(OnfKind::LastUserKind + 1));
}

TEST(OnfKinds, APrincipalKindAndItsTensorBelongToOneEntity)
{
  ASSERT_EQ(OnfKind::PrincipalKinds().size(), 4u);
  for (const int principal : OnfKind::PrincipalKinds()) {
    const int tensor = OnfKind::TensorOf(principal);
    EXPECT_EQ(OnfKind::PrincipalOf(tensor), principal);
    const FED_OnfMetaData first  = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(principal));
    const FED_OnfMetaData second = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(tensor));
    EXPECT_EQ(first.GetEntityKind(), second.GetEntityKind());
    EXPECT_EQ(first.GetName(), second.GetName() + "-principal");
    EXPECT_EQ(first.GetRecordFormat(), "V");
    EXPECT_EQ(second.GetRecordFormat(), "T");
  }
  EXPECT_EQ(OnfKind::TensorOf(OnfKind::NodalStress), 0);
  EXPECT_EQ(OnfKind::PrincipalOf(OnfKind::NodalStressPrincipal), 0);
  EXPECT_EQ(OnfKind::PrincipalOf(OnfKind::NodalStressSolver), 0);
}

TEST(OnfKinds, TellsWhatRecordsBelongTo)
{
  EXPECT_EQ(OnfKind::EntityOf(OnfKind::Displacement), OnfKind::NodeEntity);
  EXPECT_EQ(OnfKind::EntityOf(OnfKind::UserNodeList), OnfKind::NodeEntity);
  EXPECT_EQ(OnfKind::EntityOf(OnfKind::ElementStress), OnfKind::ElementEntity);
  EXPECT_EQ(OnfKind::EntityOf(OnfKind::Time), OnfKind::HistoryEntity);
  EXPECT_EQ(OnfKind::EntityOf(OnfKind::UserHistory), OnfKind::HistoryEntity);
  EXPECT_EQ(OnfKind::EntityOf(9999), OnfKind::UnknownEntity);

  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries()) {
    const int entity = entry.metaData.GetEntityKind();
    EXPECT_EQ(OnfKind::EntityOf(entry.onf), entity) << entry.onf;
    EXPECT_EQ(OnfKind::IsOfMesh(entry.onf), entity == OnfKind::NodeEntity || entity == OnfKind::ElementEntity)
        << entry.onf;
    EXPECT_EQ(OnfKind::HasIds(entry.onf), entity < OnfKind::HistoryEntity) << entry.onf;
  }
  EXPECT_FALSE(OnfKind::IsOfMesh(9999));
}

TEST(OnfKinds, NodesAndElementsHaveIdsHistoriesAndMatricesHaveNone)
{
  EXPECT_TRUE(OnfKind::HasIds(OnfKind::Displacement));
  EXPECT_TRUE(OnfKind::HasIds(OnfKind::ElementNodes));
  EXPECT_TRUE(OnfKind::HasIds(OnfKind::Material));
  EXPECT_TRUE(OnfKind::HasIds(OnfKind::UserElementTensor));
  EXPECT_FALSE(OnfKind::HasIds(OnfKind::ScalarHistory));
  EXPECT_FALSE(OnfKind::HasIds(OnfKind::StiffnessMatrix));
  EXPECT_FALSE(OnfKind::HasIds(OnfKind::UserHistory));
  EXPECT_FALSE(OnfKind::HasIds(OnfKind::UserMatrix));
}

TEST(OnfKinds, MatricesAreTwoKindsAndAHundred)
{
  for (int onf = 0; onf <= 2100; ++onf) {
    EXPECT_EQ(OnfKind::HoldsMatrices(onf), onf == 593 || onf == 594 || (onf >= 1900 && onf <= 1999)) << onf;
    EXPECT_EQ(OnfKind::HoldsElementMatrices(onf), (onf >= 590 && onf <= 592) || (onf >= 597 && onf <= 599)) << onf;
  }
}

TEST(OnfKinds, WhatHasTheModesSignChangesWithIt)
{
  using OnfKind::SignChange;
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries()) {
    const std::string name      = entry.metaData.GetName();
    const bool        isSquared = name.ends_with("variance") || name.ends_with("error") || name.ends_with("count");
    const bool isVectorOrTensor = entry.metaData.GetRecordFormat() == "V" || entry.metaData.GetRecordFormat() == "T" ||
                                  OnfKind::ListPeriodOf(entry.onf) > 1;
    // Positions are no result of the mode, and the heat flux of a mode does not exist.
    const bool isNegated =
        isVectorOrTensor && !isSquared && entry.onf != OnfKind::Coordinates && entry.onf != OnfKind::HeatFlux;
    const SignChange expected = !isNegated                     ? SignChange::None
                                : name.ends_with("-principal") ? SignChange::Principal
                                                               : SignChange::Negated;
    EXPECT_EQ(OnfKind::SignChangeOf(entry.onf), expected) << name;
  }
}

TEST(OnfKinds, RecordsOfSeveralFieldsNameThem)
{
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries()) {
    const std::size_t numNames = OnfKind::FieldNamesOf(entry.onf).size();
    if (numNames != 0) {
      std::size_t numFields = 0;
      for (const char c : entry.metaData.GetRecordFormat()) numFields += c == 'b' ? 0 : 1;
      EXPECT_EQ(numNames, numFields) << entry.metaData.GetName();
    }
  }
  EXPECT_EQ(OnfKind::FieldNamesOf(OnfKind::ElementType), (std::vector<std::string>{"type", "material"}));
  EXPECT_TRUE(OnfKind::FieldNamesOf(OnfKind::Displacement).empty());
}

}  // namespace
