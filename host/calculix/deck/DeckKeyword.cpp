#include "calculix/deck/DeckKeyword.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include "calculix/deck/DeckText.h"
#include "text/Suggestion.h"

namespace quilon::calculix {
namespace {

using F = DeckField;

// ---- fields

constexpr F kName{F::Name};
constexpr F kInteger{F::Integer};
constexpr F kNumber{F::Number};
constexpr F kLabel{F::Label};
constexpr F kNodeId{F::NodeId};
constexpr F kNode{F::Node};
constexpr F kElement{F::Element};
constexpr F kElementOrSurface{F::ElementOrSurface};
constexpr F kSurface{F::Surface};
constexpr F kLength{F::Number, 1};
constexpr F kModulus{F::Number, -2};

/// @return of degrees of freedom, those that the solver takes
constexpr F Degrees(std::initializer_list<int> taken)
{
  F field{F::Degree};
  for (const int degree : taken) field.degrees = static_cast<std::uint16_t>(field.degrees | 1U << degree);
  return field;
}

// Temperatures are 11 or 0, pressures of fluids 8.
constexpr F kAnyDegree   = Degrees({0, 1, 2, 3, 4, 5, 6, 8, 11});
constexpr F kLoadDegree  = Degrees({1, 2, 3, 4, 5, 6});
constexpr F kHeatDegree  = Degrees({0, 11});
constexpr F kTranslation = Degrees({1, 2, 3});

constexpr F Power(int power) { return {F::Number, power}; }

/// A line with these fields; those behind them are not looked at.
template <typename... Fields>
constexpr DeckForm::Line Line(Fields... fields)
{
  return {{fields...}, false, 0};
}

/// A line that goes on with fields as the last of these.
template <typename... Fields>
constexpr DeckForm::Line Many(Fields... fields)
{
  return {{fields...}, true, 0};
}

/// A line with at least so many fields.
constexpr DeckForm::Line Need(std::size_t fields, DeckForm::Line line)
{
  line.required = fields;
  return line;
}

/// All lines are alike.
constexpr DeckForm Each(const char* values, const DeckForm::Line& line, DeckKnowledge knowledge = DeckKnowledge::All)
{
  return {values, {line}, 1, 0, knowledge};
}

// ---- forms

constexpr DeckForm kNumbers[]     = {Each(nullptr, Many(kNumber))};
constexpr DeckForm kLengths[]     = {Each(nullptr, Many(kLength))};
constexpr DeckForm kFirstLength[] = {Each(nullptr, Line(kLength))};
constexpr DeckForm kTwoSurfaces[] = {Each(nullptr, Line(kSurface, kSurface))};

constexpr DeckForm kBoundary[]     = {Each(nullptr, Line(kNode, kAnyDegree, kAnyDegree, Power(F::kOfDegree)))};
constexpr DeckForm kConcentrated[] = {Each(nullptr, Line(kNode, kLoadDegree, Power(F::kOfLoad)))};
constexpr DeckForm kNodeFlux[]     = {Each(nullptr, Line(kNode, kHeatDegree, kLength))};
constexpr DeckForm kRetained[]     = {Each(nullptr, Line(kNode, kAnyDegree, kAnyDegree))};
constexpr DeckForm kTemperature[] = {Each(nullptr, Many(kNode, kNumber, Power(-1)))};  // gradients across shells, beams
constexpr DeckForm kNodeThickness[] = {Each(nullptr, Line(kNode, kLength, kLength))};  // the second one of beams
constexpr DeckForm kNormal[]        = {Each(nullptr, Line(kElement, kNodeId, kNumber, kNumber, kNumber))};
constexpr DeckForm kDistributed[]   = {Each(nullptr, Line(kNode, kNumber))};
constexpr DeckForm kKinematic[]     = {Each(nullptr, Line(kTranslation, kTranslation))};
constexpr DeckForm kDistributing[]  = {Each(nullptr, Line(kLoadDegree, kLoadDegree))};
constexpr DeckForm kEigenvalues[]   = {Each(nullptr, Line(kInteger, kNumber, kNumber))};
constexpr DeckForm kHarmonic[] = {Each(nullptr, Line(kNumber, kNumber, kInteger, kNumber, kInteger, kNumber, kNumber))};
constexpr DeckForm kModalDamping[] = {Each(nullptr, Line(kInteger, kInteger, kNumber, kNumber))};
constexpr DeckForm kCount[]        = {Each(nullptr, Line(kInteger))};
constexpr DeckForm kOutput[]       = {Each(nullptr, Many(kLabel))};
constexpr DeckForm kFaceBoundary[] = {Each(nullptr, Line(kName, kName, kInteger, kInteger, kNumber))};
constexpr DeckForm kShell[]        = {Each("YES", Line(kLength, kNumber, kName, kName)), Each(nullptr, Line(kLength))};
constexpr DeckForm kNodeLines[]    = {Each(nullptr, Line(kNodeId, kLength, kLength, kLength))};
constexpr DeckForm kElementLines[] = {Each(nullptr, Many(kInteger, kNodeId))};
constexpr DeckForm kSolid[]        = {Each(nullptr, Line(Power(F::kOfElements)))};
constexpr DeckForm kMass[]         = {Each(nullptr, Line(Power(-1)))};
constexpr DeckForm kDensity[]      = {Each(nullptr, Line(Power(-4), kNumber))};
constexpr DeckForm kSpecificHeat[] = {Each(nullptr, Line(Power(2), kNumber))};
constexpr DeckForm kFriction[]     = {Each(nullptr, Line(kNumber, Power(-3)))};
constexpr DeckForm kRadiation[]    = {Each(nullptr, Line(kElementOrSurface, kLabel, kNumber, kNumber))};
constexpr DeckForm kCoordinateOnly[] = {Each("COORDINATE", Line(kNode)), Each(nullptr, Line())};
constexpr DeckForm kModelChange[]    = {Each("ELEMENT", Many(kElement)), Each("CONTACTPAIR", Line(kSurface, kSurface)),
                                        Each(nullptr, Line())};
constexpr DeckForm kSurfaceParts[]   = {Each("NODE", Line(kNode)), Each(nullptr, Line(kElement, kLabel))};

constexpr DeckForm kNodeSet[]    = {Each("YES", Line(kNodeId, kNodeId, kInteger)), Each(nullptr, Many(kNode))};
constexpr DeckForm kElementSet[] = {Each("YES", Line(kInteger, kInteger, kInteger)), Each(nullptr, Many(kElement))};

// Degrees of freedom that are to be removed stand between the first and the last.
constexpr DeckForm kTerms[] = {
    Each("YES", Line(kNode, kAnyDegree, kAnyDegree)),
    {nullptr, {Line(kNodeId, kAnyDegree, kNumber)}, 1, 0, DeckKnowledge::All, true},
};

constexpr DeckForm kOrientation[] = {
    {nullptr, {Many(kLength), Line(kInteger, kNumber)}, 2, 1, DeckKnowledge::All},
};
constexpr DeckForm kBeam[] = {
    {"RECT CIRC PIPE BOX", {Many(kLength), Many(kNumber)}, 2, 1, DeckKnowledge::All},
    Each(nullptr, Many(kNumber), DeckKnowledge::Nodes),
};
constexpr DeckForm kConstraint[] = {
    {"PLANE STRAIGHT BEAM", {Many(kName, kNode), Many(kNode)}, 2, 1, DeckKnowledge::All},
    Each(nullptr, Line(kName), DeckKnowledge::Nothing),
};

constexpr DeckForm kInitial[] = {
    Each("TEMPERATURE", Many(kNode, kNumber, Power(-1))),
    Each("DISPLACEMENT VELOCITY", Line(kNode, kTranslation, Power(F::kOfDegree))),
    Each("STRESS", Line(kElement, kInteger, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus)),
    Each("PLASTICSTRAIN", Line(kElement, kInteger, kNumber, kNumber, kNumber, kNumber, kNumber, kNumber)),
    Each("SOLUTION", Many(kElement, kInteger, kNumber), DeckKnowledge::Nothing),
    Each("FLUIDVELOCITY", Line(kNode, kInteger, kNumber), DeckKnowledge::Nothing),
    Each("PRESSURE TOTALPRESSURE MASSFLOW", Line(kNode, kNumber), DeckKnowledge::Nothing),
    Each(nullptr, Line(kNode), DeckKnowledge::Nothing),
};

// Moduli; ratios and temperatures stand between or behind them.
constexpr DeckForm kElastic[] = {
    Each("- ISO*", Need(2, Line(kModulus, kNumber, kNumber))),
    {"ORTHO*",
     {Need(8, Line(kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus)),
      Line(kModulus, kNumber)},
     2,
     0,
     DeckKnowledge::All},
    {"ANISO*",
     {Need(8, Line(kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus)),
      Need(8, Line(kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus)),
      Line(kModulus, kModulus, kModulus, kModulus, kModulus, kNumber)},
     3,
     0,
     DeckKnowledge::All},
    {"ENGINEERINGCONSTANTS",
     {Need(8, Line(kModulus, kModulus, kModulus, kNumber, kNumber, kNumber, kModulus, kModulus)),
      Line(kModulus, kNumber)},
     2,
     0,
     DeckKnowledge::All},
    Each(nullptr, Many(kNumber), DeckKnowledge::Nodes),
};
constexpr DeckForm kPlastic[] = {
    Each("- ISOTROPIC KINEMATIC COMBINED", Line(kModulus, kNumber, kNumber)),
    Each(nullptr, Many(kNumber), DeckKnowledge::Nodes),
};
constexpr DeckForm kOverclosure[] = {
    Each("LINEAR", Line(Power(-3), Power(-2), kNumber)), Each("TIED", Line(Power(-3))),
    Each("EXPONENTIAL", Line(kLength, Power(-2))),       Each("TABULAR", Line(Power(-2), kLength)),
    Each(nullptr, Many(kNumber), DeckKnowledge::Nodes),
};

template <F::Content Target>
constexpr DeckForm kLoads[] = {
    Each("P#", Line(F{Target}, kLabel, kModulus)),
    Each("GRAV", Line(F{Target}, kLabel, kLength, kNumber, kNumber, kNumber)),
    Each("CENTRIF", Line(F{Target}, kLabel, kNumber, kLength, kLength, kLength, kNumber, kNumber, kNumber)),
    Each("NEWTON", Line(F{Target}, kLabel)),
    Each("*NP", Line(F{Target}, kLabel, kNodeId), DeckKnowledge::Nodes),  // that the pressure is taken from
    Each(nullptr, Line(F{Target}, kLabel), DeckKnowledge::Nodes),
};
constexpr DeckForm kFluxes[] = {
    Each("S#", Line(kElementOrSurface, kLabel, Power(-1))),
    Each("BF", Line(kElementOrSurface, kLabel, Power(-2))),
    Each(nullptr, Line(kElementOrSurface, kLabel), DeckKnowledge::Nodes),
};
constexpr DeckForm kFilms[] = {
    Each("F#", Line(kElementOrSurface, kLabel, kNumber, Power(-1))),
    // The node is that which the temperature of the fluid is taken from.
    Each("*FC", Line(kElementOrSurface, kLabel, kNodeId, kNumber), DeckKnowledge::Nodes),
    Each(nullptr, Line(kElementOrSurface, kLabel), DeckKnowledge::Nothing),
};

// ---- labels, of which the solver reads four characters where they go on

constexpr const char* kFileLabels =
    "CDIS* CEEQ* CELS* CENT* CP CSTR* DEPF* DEPT* DTF E ECD EMFB* EMFE* ENER* ERR HER HFL HFLF* KEQ MACH* MAXE* MAXS* "
    "MAXU* "
    "ME MF NOE NT PE PEEQ* PEQC* PHS PNT POT* PRF PS PSF PT PTF PU RF RFL S SDV SF SMID* SNEG* SPOS* SVF THE TS "
    "TSF "
    "TT TTF TURB* U V VF ZZS*";
constexpr const char* kNodeLabels = "CP DEPF* MACH* MF NT PN PS PSF PTF RF RFL TS TSF TTF TURB* U V VF";
constexpr const char* kElementLabels =
    "CEEQ* CELS* CENT* COOR* E EBHE* ELKE* ELSE* EMAS* ENER* EVOL* HFL HFLF* ME PE "
    "PEEQ* PEQC* S SDV SF SVF";
constexpr const char* kContactLabels   = "CDIS* CELS* CF CFN CFS CNUM* CSTR*";
constexpr const char* kSectionLabels   = "DRAG* FLUX* SOAR* SOF SOM";
constexpr const char* kLoadLabels      = "P P1* P2* P3* P4* P5* P6* GRAV* CENTRIF* NEWTON* BX* BY* BZ* ED*";
constexpr const char* kFluxLabels      = "S S0* S1* S2* S3* S4* S5* S6* SNEG* SPOS* BF*";
constexpr const char* kFilmLabels      = "F0* F1* F2* F3* F4* F5* F6* FNEG* FPOS*";
constexpr const char* kRadiationLabels = "R1* R2* R3* R4* R5* R6* RNEG* RPOS*";
constexpr const char* kFaceLabels      = "S1 S2 S3 S4 S5 S6 SN SNEG SP SPOS";

// ---- parameters

using P = DeckParameterRule;

constexpr P kReferenceNode{"REFNODE", P::NodeId};
constexpr P kRotationNode{"ROTNODE", P::NodeId};
constexpr P kOwnNodeSet{"NSET", P::Own};
constexpr P kOwnElementSet{"ELSET", P::Own};

// Names that something else defines first, in the order in which they are looked up.
constexpr P kCommonParameters[] = {
    {"NSET", P::NodeSet},
    {"ELSET", P::ElementSet},
    {"AMPLITUDE", P::Amplitude},
    {"FILMAMPLITUDE", P::Amplitude},
    {"RADIATIONAMPLITUDE", P::Amplitude},
    {"SURFACE", P::Surface},
    {"INTERACTION", P::Interaction},
    {"TIMEPOINTS", P::TimePoints},
    {"MATERIAL", P::Material},
    {"ORIENTATION", P::Orientation},
    {"SUBMODEL", P::DataElsewhere},  // driven by another calculation
    {"ALPHA", P::Plain},
    {"BETA", P::Plain},
    {"CONSTANTS", P::Plain},
    {"DELTMX", P::Plain},
    {"FREQUENCY", P::Plain},
    {"FREQUENCYF", P::Plain},
    {"GLOBAL", P::Plain},
    {"INC", P::Plain},
    {"INCF", P::Plain},
    {"LOADCASE", P::Plain},
    {"NAME", P::Plain},
    {"OFFSET", P::Plain},
    {"OFFSET1", P::Plain},
    {"OFFSET2", P::Plain},
    {"SECTOR", P::Plain},
    {"STEP", P::Plain},
    {"TIMEDELAY", P::Plain},
    {"ZERO", P::Plain},
};

// ---- cards

/// Of cards whose data are not described.
constexpr DeckForm kUnlisted;

using K = DeckKeyword;

constexpr DeckKnowledge kNothing = DeckKnowledge::Nothing;
constexpr DeckKnowledge kNodes   = DeckKnowledge::Nodes;

// Sorted by name.
constexpr DeckKeyword kKeywords[] = {
    {.name = "AMPLITUDE", .defines = K::Amplitude, .parameters = {{{"AMPLITUDE", P::Own}}}, .forms = kNumbers},
    {.name = "BASEMOTION", .where = K::InStep, .knowledge = kNodes, .forms = kNumbers},
    {.name       = "BEAMGENERALSECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .knowledge  = kNodes,
     .parameters = {{kOwnElementSet}},
     .forms      = kNumbers},
    {.name       = "BEAMSECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .parameters = {{kOwnElementSet}},
     .selector   = "SECTION",
     .forms      = kBeam},
    {.name = "BOUNDARY", .forms = kBoundary},
    {.name = "BOUNDARYF", .knowledge = kNothing, .forms = kFaceBoundary},
    {.name = "BUCKLE", .role = K::Procedure, .where = K::InStep, .needsData = true, .forms = kEigenvalues},
    {.name = "CFD", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing, .forms = kNumbers},
    {.name = "CFLUX", .role = K::Load, .where = K::InStep, .forms = kNodeFlux},
    {.name = "CHANGEFRICTION", .where = K::InStep, .knowledge = kNothing},
    {.name = "CHANGEMATERIAL", .where = K::InStep, .parameters = {{{"NAME", P::Material}}}},
    {.name = "CHANGEPLASTIC", .where = K::InStep, .knowledge = kNothing},
    {.name = "CHANGESOLIDSECTION", .where = K::InStep, .knowledge = kNothing},
    {.name = "CHANGESURFACEBEHAVIOR", .where = K::InStep, .knowledge = kNothing},
    {.name = "CLEARANCE", .where = K::BeforeSteps, .knowledge = kNothing},
    {.name = "CLOAD", .role = K::Load, .where = K::InStep, .forms = kConcentrated},
    {.name = "COMPLEXFREQUENCY", .role = K::Procedure, .where = K::InStep},
    {.name = "CONDUCTIVITY", .role = K::Property, .forms = kNumbers},
    {.name = "CONSTRAINT", .where = K::InStep, .knowledge = kNothing},
    {.name = "CONTACTDAMPING", .knowledge = kNothing, .forms = kNumbers},
    {.name = "CONTACTFILE", .where = K::InStep, .labels = kFileLabels, .forms = kOutput},
    {.name = "CONTACTOUTPUT", .where = K::InStep, .labels = kFileLabels, .forms = kOutput},
    {.name = "CONTACTPAIR", .defines = K::Contact, .parameters = {{{"ADJUST", P::Number, 1}}}, .forms = kTwoSurfaces},
    {.name = "CONTACTPRINT", .where = K::InStep, .labels = kContactLabels, .forms = kOutput},
    {.name = "CONTROLS", .knowledge = kNodes, .forms = kNumbers},
    {.name = "CORRELATIONLENGTH", .where = K::InStep, .knowledge = kNothing},
    {.name = "COUPLEDTEMPERATURE-DISPLACEMENT", .role = K::Procedure, .where = K::InStep, .forms = kNumbers},
    {.name = "COUPLING", .defines = K::Coupling, .parameters = {{kReferenceNode, kRotationNode}}},
    {.name = "CRACKPROPAGATION", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing},
    {.name = "CREEP", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "CYCLICHARDENING", .role = K::Property, .selector = "HARDENING", .forms = kPlastic},
    {.name       = "CYCLICSYMMETRYMODEL",
     .where      = K::BeforeSteps,
     .parameters = {{{"N", P::Number, 0}, {"NGRAPH", P::Number, 0}}},
     .forms      = kLengths},
    {.name = "DAMPING", .role = K::Property},
    {.name = "DASHPOT", .where = K::BeforeSteps, .needsData = true, .knowledge = kNodes, .forms = kNumbers},
    {.name = "DEFORMATIONPLASTICITY", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "DENSITY", .role = K::Property, .forms = kDensity},
    {.name = "DEPVAR", .role = K::Property, .needsData = true, .forms = kCount},
    {.name = "DESIGNRESPONSE", .where = K::InStep, .knowledge = kNothing},
    {.name      = "DESIGNVARIABLES",
     .where     = K::BeforeSteps,
     .knowledge = kNothing,
     .selector  = "TYPE",
     .forms     = kCoordinateOnly},
    {.name        = "DFLUX",
     .role        = K::Load,
     .where       = K::InStep,
     .label       = "flux",
     .labels      = kFluxLabels,
     .needsLabels = true,
     .forms       = kFluxes},
    {.name = "DISTRIBUTING", .forms = kDistributing},
    {.name = "DISTRIBUTINGCOUPLING", .defines = K::Coupling, .forms = kDistributed},
    {.name = "DISTRIBUTION", .knowledge = kNothing},
    {.name        = "DLOAD",
     .role        = K::Load,
     .where       = K::InStep,
     .label       = "load",
     .labels      = kLoadLabels,
     .needsLabels = true,
     .forms       = kLoads<F::ElementOrSurface>},
    {.name        = "DSLOAD",
     .where       = K::InStep,
     .label       = "load",
     .labels      = kLoadLabels,
     .needsLabels = true,
     .forms       = kLoads<F::Surface>},
    {.name = "DYNAMIC", .role = K::Procedure, .where = K::InStep, .forms = kNumbers},
    {.name = "ELASTIC", .role = K::Property, .needsData = true, .selector = "TYPE", .forms = kElastic},
    {.name = "ELECTRICALCONDUCTIVITY", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "ELECTROMAGNETICS", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing, .forms = kNumbers},
    {.name = "ELEMENT", .defines = K::Elements, .parameters = {{kOwnElementSet}}, .forms = kElementLines},
    {.name = "ELEMENTOUTPUT", .where = K::InStep, .labels = kFileLabels, .forms = kOutput},
    {.name = "ELFILE", .where = K::InStep, .labels = kFileLabels, .forms = kOutput},
    {.name = "ELPRINT", .where = K::InStep, .labels = kElementLabels, .needsLabels = true, .forms = kOutput},
    {.name       = "ELSET",
     .defines    = K::ElementSet,
     .parameters = {{kOwnElementSet}},
     .selector   = "GENERATE",
     .forms      = kElementSet},
    {.name = "ENDSTEP", .defines = K::EndOfStep},
    {.name = "EQUATION", .where = K::BeforeSteps, .defines = K::MultiPoint, .selector = "REMOVE", .forms = kTerms},
    {.name = "EQUATIONF", .where = K::BeforeSteps, .knowledge = kNothing},
    {.name = "EXPANSION", .role = K::Property, .forms = kNumbers},
    {.name = "FEASIBLEDIRECTION", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing},
    {.name        = "FILM",
     .role        = K::Load,
     .where       = K::InStep,
     .label       = "film",
     .labels      = kFilmLabels,
     .needsLabels = true,
     .forms       = kFilms},
    {.name = "FILTER", .where = K::InStep, .knowledge = kNothing},
    {.name = "FLUIDCONSTANTS", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name       = "FLUIDSECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .knowledge  = kNothing,
     .parameters = {{kOwnElementSet}},
     .forms      = kNumbers},
    {.name = "FREQUENCY", .role = K::Procedure, .where = K::InStep, .needsData = true, .forms = kEigenvalues},
    {.name = "FRICTION", .forms = kFriction},
    {.name = "GAP", .where = K::BeforeSteps, .needsData = true, .knowledge = kNodes, .forms = kNumbers},
    {.name = "GAPCONDUCTANCE", .needsData = true, .knowledge = kNodes, .forms = kNumbers},
    {.name = "GAPHEATGENERATION", .knowledge = kNothing, .forms = kNumbers},
    {.name = "GEOMETRICCONSTRAINT", .where = K::InStep, .knowledge = kNothing},
    {.name = "GEOMETRICTOLERANCES", .where = K::InStep, .knowledge = kNothing},
    {.name = "GREEN", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing},
    {.name = "HCF", .where = K::InStep, .knowledge = kNothing},
    {.name = "HEADING", .where = K::BeforeSteps},
    {.name = "HEATTRANSFER", .role = K::Procedure, .where = K::InStep, .forms = kNumbers},
    {.name       = "HYPERELASTIC",
     .role       = K::Property,
     .needsData  = true,
     .knowledge  = kNodes,
     .parameters = {{{"N", P::Number, 0}}},
     .forms      = kNumbers},
    {.name       = "HYPERFOAM",
     .role       = K::Property,
     .needsData  = true,
     .knowledge  = kNodes,
     .parameters = {{{"N", P::Number, 0}}},
     .forms      = kNumbers},
    {.name            = "INITIALCONDITIONS",
     .dropsUnknownIds = true,
     .parameters      = {{{"FILE", P::DataElsewhere}, {"USER", P::DataElsewhere}}},
     .selector        = "TYPE",
     .forms           = kInitial},
    {.name = "INITIALSTRAININCREASE", .where = K::InStep, .knowledge = kNothing},
    {.name = "KINEMATIC", .forms = kKinematic},
    {.name = "MAGNETICPERMEABILITY", .role = K::Property, .knowledge = kNothing},
    {.name = "MASS", .where = K::BeforeSteps, .needsData = true, .forms = kMass},
    {.name = "MASSFLOW", .where = K::InStep, .knowledge = kNothing},
    {.name = "MATERIAL", .defines = K::Material},
    {.name       = "MEMBRANESECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .parameters = {{kOwnElementSet}},
     .forms      = kFirstLength},
    {.name = "MODALDAMPING", .where = K::InStep, .forms = kModalDamping},
    {.name = "MODALDYNAMIC", .role = K::Procedure, .where = K::InStep, .needsData = true, .forms = kNumbers},
    {.name = "MODELCHANGE", .where = K::InStep, .defines = K::ModelChange, .selector = "TYPE", .forms = kModelChange},
    {.name       = "MPC",
     .where      = K::BeforeSteps,
     .defines    = K::MultiPoint,
     .label      = "constraint",
     .labelField = 0,
     .forms      = kConstraint},
    {.name = "NETWORKMPC", .where = K::BeforeSteps, .knowledge = kNothing},
    {.name = "NOANALYSIS", .role = K::Procedure, .where = K::InStep},
    {.name = "NODALTHICKNESS", .where = K::BeforeSteps, .forms = kNodeThickness},
    {.name = "NODE", .defines = K::Nodes, .parameters = {{kOwnNodeSet}}, .forms = kNodeLines},
    {.name = "NODEFILE", .where = K::InStep, .labels = kFileLabels, .forms = kOutput},
    {.name = "NODEOUTPUT", .where = K::InStep, .labels = kFileLabels, .forms = kOutput},
    {.name = "NODEPRINT", .where = K::InStep, .labels = kNodeLabels, .forms = kOutput},
    {.name = "NORMAL", .where = K::BeforeSteps, .forms = kNormal},
    {.name = "NSET", .defines = K::NodeSet, .parameters = {{kOwnNodeSet}}, .selector = "GENERATE", .forms = kNodeSet},
    {.name = "OBJECTIVE", .where = K::InStep, .knowledge = kNothing},
    {.name = "ORIENTATION", .defines = K::Orientation, .needsData = true, .forms = kOrientation},
    {.name = "OUTPUT", .where = K::InStep},
    {.name       = "PHYSICALCONSTANTS",
     .where      = K::BeforeSteps,
     .parameters = {{{"ABSOLUTEZERO", P::Number, 0},
                     {"STEFANBOLTZMANN", P::Number, -1},
                     {"NEWTONGRAVITY", P::Number, 4, 10}}}},
    {.name = "PLASTIC", .role = K::Property, .needsData = true, .selector = "HARDENING", .forms = kPlastic},
    {.name       = "PRE-TENSIONSECTION",
     .where      = K::BeforeSteps,
     .defines    = K::PreTension,
     .parameters = {{{"NODE", P::NodeId}, {"ELEMENT", P::ElementId}}},
     .forms      = kNumbers},
    {.name        = "RADIATE",
     .role        = K::Load,
     .where       = K::InStep,
     .knowledge   = kNothing,
     .label       = "radiation",
     .labels      = kRadiationLabels,
     .needsLabels = true,
     .forms       = kRadiation},
    {.name = "RANDOMFIELD", .where = K::InStep, .knowledge = kNothing},
    {.name = "REFINEMESH", .where = K::InStep, .knowledge = kNothing},
    {.name = "RESTART"},
    {.name = "RETAINEDNODALDOFS", .where = K::InStep, .forms = kRetained},
    {.name       = "RIGIDBODY",
     .where      = K::BeforeSteps,
     .defines    = K::RigidBody,
     .parameters = {{kReferenceNode, kRotationNode}}},
    {.name = "ROBUSTDESIGN", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing},
    {.name = "SECTIONPRINT", .where = K::InStep, .labels = kSectionLabels, .forms = kOutput},
    {.name = "SELECTCYCLICSYMMETRYMODES", .where = K::InStep, .knowledge = kNothing},
    {.name = "SENSITIVITY", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing},
    {.name       = "SHELLSECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .parameters = {{kOwnElementSet}},
     .selector   = "COMPOSITE",
     .forms      = kShell},
    {.name       = "SOLIDSECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .parameters = {{kOwnElementSet}},
     .forms      = kSolid},
    {.name = "SPECIFICGASCONSTANT", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "SPECIFICHEAT", .role = K::Property, .forms = kSpecificHeat},
    {.name = "SPRING", .where = K::BeforeSteps, .needsData = true, .knowledge = kNodes, .forms = kNumbers},
    {.name = "STATIC", .role = K::Procedure, .where = K::InStep, .forms = kNumbers},
    {.name = "STEADYSTATEDYNAMICS", .role = K::Procedure, .where = K::InStep, .needsData = true, .forms = kHarmonic},
    {.name = "STEP", .defines = K::Step, .parameters = {{{"AMPLITUDE", P::Plain}}}},
    {.name = "SUBMODEL", .where = K::BeforeSteps, .knowledge = kNothing},
    {.name = "SUBSTRUCTUREGENERATE", .role = K::Procedure, .where = K::InStep, .knowledge = kNothing},
    {.name = "SUBSTRUCTUREMATRIXOUTPUT", .where = K::InStep, .knowledge = kNothing},
    {.name            = "SURFACE",
     .defines         = K::Surface,
     .dropsUnknownIds = true,
     .selector        = "TYPE",
     .labels          = kFaceLabels,
     .needsLabels     = true,
     .forms           = kSurfaceParts},
    {.name = "SURFACEBEHAVIOR", .selector = "PRESSURE-OVERCLOSURE", .forms = kOverclosure},
    {.name = "SURFACEINTERACTION", .defines = K::Interaction},
    {.name = "TEMPERATURE", .role = K::Load, .where = K::InStep, .forms = kTemperature},
    {.name = "TIE", .defines = K::Tie, .parameters = {{{"POSITIONTOLERANCE", P::Number, 1}}}, .forms = kTwoSurfaces},
    {.name = "TIMEPOINTS", .where = K::BeforeSteps, .defines = K::TimePoints, .forms = kNumbers},
    {.name = "TRANSFORM", .needsData = true, .forms = kLengths},
    {.name = "TRANSFORMF", .knowledge = kNothing},
    {.name = "UNCOUPLEDTEMPERATURE-DISPLACEMENT", .role = K::Procedure, .where = K::InStep, .forms = kNumbers},
    {.name       = "USERELEMENT",
     .defines    = K::ElementType,
     .parameters = {{{"INTEGRATIONPOINTS", P::Number, 0}, {"MAXDOF", P::Number, 0}, {"NODES", P::Number, 0}}}},
    {.name = "USERMATERIAL", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name       = "USERSECTION",
     .role       = K::Section,
     .where      = K::BeforeSteps,
     .knowledge  = kNodes,
     .parameters = {{kOwnElementSet}},
     .forms      = kNumbers},
    {.name = "VALUESATINFINITY", .where = K::BeforeSteps, .needsData = true, .knowledge = kNothing, .forms = kNumbers},
    {.name = "VIEWFACTOR", .where = K::InStep, .knowledge = kNothing},
    {.name = "VISCO", .role = K::Procedure, .where = K::InStep, .forms = kNumbers},
};

bool MatchesWord(std::string_view pattern, std::string_view value) noexcept
{
  if (pattern == "-") return value.empty();
  if (pattern.front() == '*') return value.ends_with(pattern.substr(1));
  if (pattern.back() == '*') return value.starts_with(pattern.substr(0, pattern.size() - 1));
  if (pattern.back() != '#') return value == pattern;
  pattern.remove_suffix(1);
  if (!value.starts_with(pattern)) return false;
  value.remove_prefix(pattern.size());
  return value.empty() || (value.size() == 1 && value[0] >= '1' && value[0] <= '6');
}

bool Matches(std::string_view patterns, std::string_view value) noexcept
{
  while (!patterns.empty()) {
    const std::size_t end = std::min(patterns.find(' '), patterns.size());
    if (MatchesWord(patterns.substr(0, end), value)) return true;
    patterns.remove_prefix(std::min(end + 1, patterns.size()));
  }
  return false;
}

const DeckParameterRule* FindIn(std::span<const DeckParameterRule> rules, std::string_view name) noexcept
{
  const auto found = std::find_if(rules.begin(), rules.end(),
                                  [name](const auto& rule) { return rule.name != nullptr && name == rule.name; });
  return found == rules.end() ? nullptr : &*found;
}

}  // namespace

const DeckForm& DeckKeyword::FormOf(std::string_view value) const noexcept
{
  for (const DeckForm& form : forms)
    if (form.values == nullptr || Matches(form.values, value)) return form;
  return kUnlisted;
}

bool DeckKeyword::KnowsLabel(std::string_view word) const noexcept
{
  return labels == nullptr || word.empty() || Matches(labels, word);
}

std::string DeckKeyword::SuggestLabel(std::string_view word) const
{
  std::vector<std::string> known;
  for (std::string_view rest = labels; !rest.empty();) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    known.emplace_back(rest.substr(0, end - (rest[end - 1] == '*' ? 1 : 0)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return DidYouMean(word, known);
}

const DeckParameterRule* DeckKeyword::FindParameter(std::string_view parameter) const noexcept
{
  const DeckParameterRule* own = FindIn(parameters, parameter);
  return own != nullptr ? own : FindCommonDeckParameter(parameter);
}

void DeckFormWalk::Begin(const DeckKeyword& keyword, const DeckCard& card)
{
  keyword_ = &keyword;
  label_.clear();
  lines_ = 0;

  const DeckParameter* parameter = keyword.selector == nullptr ? nullptr : card.Find(keyword.selector);
  if (parameter == nullptr) {
    form_ = &keyword.FormOf({});
  } else {
    form_ = &keyword.FormOf(parameter->value.empty() ? std::string_view("YES") : parameter->value);
  }
}

const DeckForm::Line& DeckFormWalk::Next(std::string_view line)
{
  const bool choosesForm = keyword_->label != nullptr && (keyword_->labelField > 0 || lines_ == 0);
  if (choosesForm) {
    DeckFields       fields(line);
    std::string_view field;
    bool             hasLabel = true;
    for (std::size_t i = 0; i <= keyword_->labelField && hasLabel; ++i) hasLabel = fields.Next(field);
    label_ = hasLabel ? Compact(field) : std::string();
    form_  = &keyword_->FormOf(label_);
  }
  return (*form_)[lines_++];
}

std::span<const DeckParameterRule> CommonDeckParameters() noexcept { return kCommonParameters; }

const DeckParameterRule* FindCommonDeckParameter(std::string_view name) noexcept
{
  return FindIn(kCommonParameters, name);
}

const DeckKeyword* FindDeckKeyword(std::string_view name) noexcept
{
  // Going back from where the name would stand, the first keyword that begins it is the longest: those between the two
  // begin with it, or they would not stand there.
  auto candidate =
      std::upper_bound(std::begin(kKeywords), std::end(kKeywords), name,
                       [](std::string_view text, const DeckKeyword& keyword) { return text < keyword.name; });
  while (candidate != std::begin(kKeywords)) {
    --candidate;
    if (name.starts_with(candidate->name)) return candidate;
    if (name.empty() || candidate->name[0] != name.front()) break;
  }
  return nullptr;
}

std::string SuggestDeckKeyword(std::string_view name)
{
  std::vector<std::string> names;
  for (const DeckKeyword& keyword : kKeywords) names.emplace_back(keyword.name);
  return DidYouMean(name, names);
}

}  // namespace quilon::calculix
