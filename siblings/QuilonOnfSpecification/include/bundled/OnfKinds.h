#pragma once

/// @file
/// The kinds of the catalogue by name, and questions about kinds.

#include "quilon_language.h"

#include <string>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonDbConnector/FED_OnfId.h"

/// Result indices beyond those that FED_DataDescriptor names.
namespace OnfIndex {

/// Of a block of scalar histories: the ONF id of the scalar that it holds.
inline constexpr auto Quantity = static_cast<FED_DataDescriptor::ResultIndex>(10);
/// The group of elements that a nodal average is over; unset: all elements.
inline constexpr auto Group = static_cast<FED_DataDescriptor::ResultIndex>(11);

}  // namespace OnfIndex

/// Each fixed kind of the catalogue under its name there: "nodal-stress" is NodalStress.
namespace OnfKind {

inline constexpr auto ScalarHistory             = static_cast<FED_OnfId>(500);
inline constexpr auto Time                      = static_cast<FED_OnfId>(501);
inline constexpr auto Eigenvalue                = static_cast<FED_OnfId>(502);
inline constexpr auto Frequency                 = static_cast<FED_OnfId>(503);
inline constexpr auto BucklingFactor            = static_cast<FED_OnfId>(504);
inline constexpr auto TotalInternalEnergy       = static_cast<FED_OnfId>(505);
inline constexpr auto TotalKineticEnergy        = static_cast<FED_OnfId>(506);
inline constexpr auto TotalVolume               = static_cast<FED_OnfId>(507);
inline constexpr auto TotalMass                 = static_cast<FED_OnfId>(508);
inline constexpr auto TotalForce                = static_cast<FED_OnfId>(509);
inline constexpr auto Displacement              = static_cast<FED_OnfId>(510);
inline constexpr auto Reaction                  = static_cast<FED_OnfId>(511);
inline constexpr auto Velocity                  = static_cast<FED_OnfId>(512);
inline constexpr auto Acceleration              = static_cast<FED_OnfId>(513);
inline constexpr auto Temperature               = static_cast<FED_OnfId>(514);
inline constexpr auto HeatFlux                  = static_cast<FED_OnfId>(515);
inline constexpr auto Coordinates               = static_cast<FED_OnfId>(516);
inline constexpr auto HeatGeneration            = static_cast<FED_OnfId>(517);
inline constexpr auto EquivalentPlasticStrain   = static_cast<FED_OnfId>(518);
inline constexpr auto EnergyDensity             = static_cast<FED_OnfId>(519);
inline constexpr auto NodalStressPrincipal      = static_cast<FED_OnfId>(520);
inline constexpr auto NodalStress               = static_cast<FED_OnfId>(521);
inline constexpr auto NodalStressSolver         = static_cast<FED_OnfId>(522);
inline constexpr auto NodalStrainPrincipal      = static_cast<FED_OnfId>(530);
inline constexpr auto NodalStrain               = static_cast<FED_OnfId>(531);
inline constexpr auto NodalStrainSolver         = static_cast<FED_OnfId>(532);
inline constexpr auto ElementEnergy             = static_cast<FED_OnfId>(540);
inline constexpr auto NodeEnergy                = static_cast<FED_OnfId>(541);
inline constexpr auto NodalStressVariance       = static_cast<FED_OnfId>(550);
inline constexpr auto NodalStressError          = static_cast<FED_OnfId>(551);
inline constexpr auto NodalStressCount          = static_cast<FED_OnfId>(552);
inline constexpr auto NodalStrainVariance       = static_cast<FED_OnfId>(553);
inline constexpr auto NodalStrainError          = static_cast<FED_OnfId>(554);
inline constexpr auto NodalStrainCount          = static_cast<FED_OnfId>(555);
inline constexpr auto ElementStressPrincipal    = static_cast<FED_OnfId>(560);
inline constexpr auto ElementStress             = static_cast<FED_OnfId>(561);
inline constexpr auto ElementStrainPrincipal    = static_cast<FED_OnfId>(570);
inline constexpr auto ElementStrain             = static_cast<FED_OnfId>(571);
inline constexpr auto ElementForces             = static_cast<FED_OnfId>(580);
inline constexpr auto ElementMoments            = static_cast<FED_OnfId>(581);
inline constexpr auto IntegrationPointStress    = static_cast<FED_OnfId>(582);
inline constexpr auto IntegrationPointStrain    = static_cast<FED_OnfId>(583);
inline constexpr auto ElementMatrix590          = static_cast<FED_OnfId>(590);
inline constexpr auto ElementMatrix591          = static_cast<FED_OnfId>(591);
inline constexpr auto ElementMatrix592          = static_cast<FED_OnfId>(592);
inline constexpr auto StiffnessMatrix           = static_cast<FED_OnfId>(593);
inline constexpr auto MassMatrix                = static_cast<FED_OnfId>(594);
inline constexpr auto ElementNodes              = static_cast<FED_OnfId>(595);
inline constexpr auto ElementType               = static_cast<FED_OnfId>(596);
inline constexpr auto ElementMatrix597          = static_cast<FED_OnfId>(597);
inline constexpr auto ElementMatrix598          = static_cast<FED_OnfId>(598);
inline constexpr auto ElementMatrix599          = static_cast<FED_OnfId>(599);
inline constexpr auto NodeSet                   = static_cast<FED_OnfId>(600);
inline constexpr auto ElementSet                = static_cast<FED_OnfId>(601);
inline constexpr auto Material                  = static_cast<FED_OnfId>(602);
inline constexpr auto ElementSection            = static_cast<FED_OnfId>(603);
inline constexpr auto Orientation               = static_cast<FED_OnfId>(604);
inline constexpr auto ImportFile                = static_cast<FED_OnfId>(605);
inline constexpr auto ImportSetting             = static_cast<FED_OnfId>(606);
inline constexpr auto LargeDisplacements        = static_cast<FED_OnfId>(607);
inline constexpr auto TiedNodes                 = static_cast<FED_OnfId>(608);
inline constexpr auto DeckType                  = static_cast<FED_OnfId>(609);
inline constexpr auto ElementEnergyContribution = static_cast<FED_OnfId>(903);
inline constexpr auto NodeEnergyContribution    = static_cast<FED_OnfId>(913);

/// User kinds: the hundred tells entity kind and record format, the name is kept in the database.
inline constexpr int FirstUserKind = 1000;
inline constexpr int LastUserKind  = 1999;  ///< included

constexpr bool IsUserKind(int onf) noexcept { return onf >= FirstUserKind && onf <= LastUserKind; }

/// First ONF id of each hundred of user kinds.
enum UserHundred : int
{
  UserNodeScalar    = 1000,
  UserNodeVector    = 1100,
  UserNodeTensor    = 1200,
  UserNodeList      = 1300,
  UserElementScalar = 1400,
  UserElementVector = 1500,
  UserElementTensor = 1600,
  UserElementList   = 1700,
  UserHistory       = 1800,
  UserMatrix        = 1900
};

/// @return whether the kind tells where results come from: two databases with the same results may differ in it
constexpr bool IsProvenance(int onf) noexcept { return onf == ImportFile || onf == ImportSetting; }

/// @return the kind of a block's records
inline int OnfOf(const FED_DataDescriptor& block) { return block.values[FED_DataDescriptor::OnfId]; }

/// What the records of a kind belong to, as FED_OnfMetaData::GetEntityKind gives it: kinds of one entity share the ids
/// and the indices of a database. Those below HistoryEntity have ids, the others are addressed by index.
enum Entity : int
{
  NodeEntity    = 0,
  ElementEntity = 1,
  UnknownEntity = 14,  ///< of kinds that no table knows: an index that no id maps to is its own id
  HistoryEntity = 15   ///< indices are substeps
};
QUILON_ONF_SPECIFICATION_API int EntityOf(int onf);
inline int                       EntityOf(const FED_DataDescriptor& block) { return EntityOf(OnfOf(block)); }

/// @return whether the records of the kind belong to nodes or to elements
QUILON_ONF_SPECIFICATION_API bool IsOfMesh(int onf);

/// @return whether ids, of nodes, elements or the like, number the records of the kind; by index otherwise
QUILON_ONF_SPECIFICATION_API bool HasIds(int onf);

/// @return the tensor whose principal values the kind holds; 0 for a kind that holds none
QUILON_ONF_SPECIFICATION_API int TensorOf(int principal) noexcept;
/// @return the kind of a tensor's principal values; 0 for a kind that has none
QUILON_ONF_SPECIFICATION_API int PrincipalOf(int tensor) noexcept;
/// All kinds of principal values, ascending.
QUILON_ONF_SPECIFICATION_API const std::vector<int>& PrincipalKinds();

/// @return whether the kind holds sparse matrices, as FED_YaleMatrixStorage keeps them
QUILON_ONF_SPECIFICATION_API bool HoldsMatrices(int onf) noexcept;
/// @return whether the kind holds halves of element matrices
QUILON_ONF_SPECIFICATION_API bool HoldsElementMatrices(int onf) noexcept;

/// How the values of a mode's result change when the mode changes its sign, which is arbitrary.
enum class SignChange
{
  None,      ///< coordinates, counts, energies, error measures
  Negated,   ///< displacements, forces, stresses
  Principal  ///< negated, and in reverse order
};
QUILON_ONF_SPECIFICATION_API SignChange SignChangeOf(int onf) noexcept;

/// How many components take turns in the list of doubles of a kind: 6 where it holds a tensor a point, 3 where it holds
/// a vector a node, else 1.
QUILON_ONF_SPECIFICATION_API int ListPeriodOf(int onf) noexcept;

/// Names of the fields of a record whose fields mean different things: "name", "density", ... of a material; nothing
/// for the other kinds.
QUILON_ONF_SPECIFICATION_API const std::vector<std::string>& FieldNamesOf(int onf);

}  // namespace OnfKind
