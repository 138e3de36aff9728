#include "calculix/deck/DeckKeyword.h"

#include <algorithm>
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
constexpr F kDegree{F::Degree};
constexpr F kNodeId{F::NodeId};
constexpr F kNode{F::Node};
constexpr F kElement{F::Element};
constexpr F kElementOrSurface{F::ElementOrSurface};
constexpr F kSurface{F::Surface};
constexpr F kLength{F::Number, 1};
constexpr F kModulus{F::Number, -2};

constexpr F Power(int power) { return {F::Number, power}; }

/// A line with these fields; those behind them are not looked at.
template <typename... Fields>
constexpr DeckForm::Line Line(Fields... fields)
{
  return {{fields...}, false};
}

/// A line that goes on with fields as the last of these.
template <typename... Fields>
constexpr DeckForm::Line Many(Fields... fields)
{
  return {{fields...}, true};
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

constexpr DeckForm kBoundary[]     = {Each(nullptr, Line(kNode, kDegree, kDegree, Power(F::kOfDegree)))};
constexpr DeckForm kConcentrated[] = {Each(nullptr, Line(kNode, kDegree, Power(F::kOfLoad)))};
constexpr DeckForm kNodeFlux[]     = {Each(nullptr, Line(kNode, kDegree, kLength))};
constexpr DeckForm kRetained[]     = {Each(nullptr, Line(kNode, kDegree, kDegree))};
constexpr DeckForm kTemperature[] = {Each(nullptr, Many(kNode, kNumber, Power(-1)))};  // gradients across shells, beams
constexpr DeckForm kNodeThickness[]  = {Each(nullptr, Line(kNode, kLength, kLength))};  // the second one of beams
constexpr DeckForm kNormal[]         = {Each(nullptr, Line(kElement, kNodeId, kNumber, kNumber, kNumber))};
constexpr DeckForm kDistributed[]    = {Each(nullptr, Line(kNode, kNumber))};
constexpr DeckForm kDegrees[]        = {Each(nullptr, Line(kDegree, kDegree))};
constexpr DeckForm kNodeLines[]      = {Each(nullptr, Line(kNodeId, kLength, kLength, kLength))};
constexpr DeckForm kElementLines[]   = {Each(nullptr, Many(kInteger, kNodeId))};
constexpr DeckForm kSolid[]          = {Each(nullptr, Line(Power(F::kOfElements)))};
constexpr DeckForm kMass[]           = {Each(nullptr, Line(Power(-1)))};
constexpr DeckForm kDensity[]        = {Each(nullptr, Line(Power(-4), kNumber))};
constexpr DeckForm kSpecificHeat[]   = {Each(nullptr, Line(Power(2), kNumber))};
constexpr DeckForm kFriction[]       = {Each(nullptr, Line(kNumber, Power(-3)))};
constexpr DeckForm kRadiation[]      = {Each(nullptr, Line(kElementOrSurface, kName))};
constexpr DeckForm kCoordinateOnly[] = {Each("COORDINATE", Line(kNode)), Each(nullptr, Line())};
constexpr DeckForm kModelChange[]    = {Each("ELEMENT", Line(kElement)), Each("CONTACTPAIR", Line(kSurface, kSurface)),
                                        Each(nullptr, Line())};
constexpr DeckForm kSurfaceParts[]   = {Each("NODE", Line(kNode)), Each(nullptr, Line(kElement, kName))};

constexpr DeckForm kNodeSet[]    = {Each("YES", Line(kNodeId, kNodeId, kInteger)), Each(nullptr, Many(kNode))};
constexpr DeckForm kElementSet[] = {Each("YES", Line(kInteger, kInteger, kInteger)), Each(nullptr, Many(kElement))};

// Degrees of freedom that are to be removed stand between the first and the last.
constexpr DeckForm kTerms[] = {
    Each("YES", Line(kNodeId, kDegree, kDegree)),
    {nullptr, {Line(kNodeId, kDegree, kNumber)}, 1, 0, DeckKnowledge::All, true},
};

constexpr DeckForm kOrientation[] = {
    {nullptr, {Many(kLength), Line(kInteger, kNumber)}, 2, 1, DeckKnowledge::All},
};
constexpr DeckForm kBeam[] = {
    {"RECT CIRC PIPE BOX", {Many(kLength), Many(kNumber)}, 2, 1, DeckKnowledge::All},
    Each(nullptr, Many(kNumber), DeckKnowledge::Nodes),
};
constexpr DeckForm kConstraint[] = {
    {"PLANE STRAIGHT BEAM", {Many(kName, kNodeId), Many(kNodeId)}, 2, 1, DeckKnowledge::All},
    Each(nullptr, Line(kName), DeckKnowledge::Nothing),
};

constexpr DeckForm kInitial[] = {
    Each("TEMPERATURE", Many(kNode, kNumber, Power(-1))),
    Each("DISPLACEMENT VELOCITY", Line(kNode, kDegree, Power(F::kOfDegree))),
    Each("STRESS", Line(kElement, kInteger, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus)),
    Each("PLASTICSTRAIN", Line(kElement, kInteger, kNumber, kNumber, kNumber, kNumber, kNumber, kNumber)),
    Each("SOLUTION", Line(kElement), DeckKnowledge::Nothing),
    Each(nullptr, Line(kNode), DeckKnowledge::Nothing),
};

// Moduli; ratios and temperatures stand between or behind them.
constexpr DeckForm kElastic[] = {
    Each("- ISO*", Line(kModulus, kNumber, kNumber)),
    {"ORTHO*",
     {Line(kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus), Line(kModulus, kNumber)},
     2,
     0,
     DeckKnowledge::All},
    {"ANISO*",
     {Line(kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus),
      Line(kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus, kModulus),
      Line(kModulus, kModulus, kModulus, kModulus, kModulus, kNumber)},
     3,
     0,
     DeckKnowledge::All},
    {"ENGINEERINGCONSTANTS",
     {Line(kModulus, kModulus, kModulus, kNumber, kNumber, kNumber, kModulus, kModulus), Line(kModulus, kNumber)},
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
    Each("P#", Line(F{Target}, kName, kModulus)),
    Each("GRAV", Line(F{Target}, kName, kLength, kNumber, kNumber, kNumber)),
    Each("CENTRIF", Line(F{Target}, kName, kNumber, kLength, kLength, kLength, kNumber, kNumber, kNumber)),
    Each("NEWTON", Line(F{Target}, kName)),
    Each("*NP", Line(F{Target}, kName, kNodeId), DeckKnowledge::Nodes),  // that the pressure is taken from
    Each(nullptr, Line(F{Target}, kName), DeckKnowledge::Nodes),
};
constexpr DeckForm kFluxes[] = {
    Each("S#", Line(kElementOrSurface, kName, Power(-1))),
    Each("BF", Line(kElementOrSurface, kName, Power(-2))),
    Each(nullptr, Line(kElementOrSurface, kName), DeckKnowledge::Nodes),
};
constexpr DeckForm kFilms[] = {
    Each("F#", Line(kElementOrSurface, kName, kNumber, Power(-1))),
    // The node is that which the temperature of the fluid is taken from.
    Each("*FC", Line(kElementOrSurface, kName, kNodeId, kNumber), DeckKnowledge::Nodes),
    Each(nullptr, Line(kElementOrSurface, kName), DeckKnowledge::Nothing),
};

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
    {.name = "BASEMOTION", .knowledge = kNodes, .forms = kNumbers},
    {.name       = "BEAMGENERALSECTION",
     .role       = K::Section,
     .knowledge  = kNodes,
     .parameters = {{kOwnElementSet}},
     .forms      = kNumbers},
    {.name       = "BEAMSECTION",
     .role       = K::Section,
     .parameters = {{kOwnElementSet}},
     .selector   = "SECTION",
     .forms      = kBeam},
    {.name = "BOUNDARY", .forms = kBoundary},
    {.name = "BOUNDARYF", .knowledge = kNothing},
    {.name = "BUCKLE", .role = K::Procedure},
    {.name = "CFD", .role = K::Procedure, .knowledge = kNothing},
    {.name = "CFLUX", .role = K::Load, .forms = kNodeFlux},
    {.name = "CHANGEFRICTION", .knowledge = kNothing},
    {.name = "CHANGEMATERIAL", .parameters = {{{"NAME", P::Material}}}},
    {.name = "CHANGEPLASTIC", .knowledge = kNothing},
    {.name = "CHANGESOLIDSECTION", .knowledge = kNothing},
    {.name = "CHANGESURFACEBEHAVIOR", .knowledge = kNothing},
    {.name = "CLEARANCE", .knowledge = kNothing},
    {.name = "CLOAD", .role = K::Load, .forms = kConcentrated},
    {.name = "COMPLEXFREQUENCY", .role = K::Procedure},
    {.name = "CONDUCTIVITY", .role = K::Property},
    {.name = "CONSTRAINT", .knowledge = kNothing},
    {.name = "CONTACTDAMPING", .knowledge = kNothing},
    {.name = "CONTACTFILE"},
    {.name = "CONTACTOUTPUT"},
    {.name = "CONTACTPAIR", .parameters = {{{"ADJUST", P::Number, 1}}}, .forms = kTwoSurfaces},
    {.name = "CONTACTPRINT"},
    {.name = "CONTROLS", .knowledge = kNodes, .forms = kNumbers},
    {.name = "CORRELATIONLENGTH", .knowledge = kNothing},
    {.name = "COUPLEDTEMPERATURE-DISPLACEMENT", .role = K::Procedure},
    {.name = "COUPLING", .parameters = {{kReferenceNode, kRotationNode}}},
    {.name = "CRACKPROPAGATION", .role = K::Procedure, .knowledge = kNothing},
    {.name = "CREEP", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "CYCLICHARDENING", .role = K::Property, .selector = "HARDENING", .forms = kPlastic},
    {.name = "CYCLICSYMMETRYMODEL", .parameters = {{{"N", P::Number, 0}, {"NGRAPH", P::Number, 0}}}, .forms = kLengths},
    {.name = "DAMPING", .role = K::Property},
    {.name = "DASHPOT", .knowledge = kNodes, .forms = kNumbers},
    {.name = "DEFORMATIONPLASTICITY", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "DENSITY", .role = K::Property, .forms = kDensity},
    {.name = "DEPVAR", .role = K::Property},
    {.name = "DESIGNRESPONSE", .knowledge = kNothing},
    {.name = "DESIGNVARIABLES", .knowledge = kNothing, .selector = "TYPE", .forms = kCoordinateOnly},
    {.name = "DFLUX", .role = K::Load, .label = "flux", .forms = kFluxes},
    {.name = "DISTRIBUTING", .forms = kDegrees},
    {.name = "DISTRIBUTINGCOUPLING", .forms = kDistributed},
    {.name = "DISTRIBUTION", .knowledge = kNothing},
    {.name = "DLOAD", .role = K::Load, .label = "load", .forms = kLoads<F::ElementOrSurface>},
    {.name = "DSLOAD", .label = "load", .forms = kLoads<F::Surface>},
    {.name = "DYNAMIC", .role = K::Procedure},
    {.name = "ELASTIC", .role = K::Property, .selector = "TYPE", .forms = kElastic},
    {.name = "ELECTRICALCONDUCTIVITY", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "ELECTROMAGNETICS", .role = K::Procedure, .knowledge = kNothing},
    {.name = "ELEMENT", .defines = K::Elements, .parameters = {{kOwnElementSet}}, .forms = kElementLines},
    {.name = "ELEMENTOUTPUT"},
    {.name = "ELFILE"},
    {.name = "ELPRINT"},
    {.name       = "ELSET",
     .defines    = K::ElementSet,
     .parameters = {{kOwnElementSet}},
     .selector   = "GENERATE",
     .forms      = kElementSet},
    {.name = "ENDSTEP", .defines = K::EndOfStep},
    {.name = "EQUATION", .selector = "REMOVE", .forms = kTerms},
    {.name = "EQUATIONF", .knowledge = kNothing},
    {.name = "EXPANSION", .role = K::Property},
    {.name = "FEASIBLEDIRECTION", .role = K::Procedure, .knowledge = kNothing},
    {.name = "FILM", .role = K::Load, .label = "film", .forms = kFilms},
    {.name = "FILTER", .knowledge = kNothing},
    {.name = "FLUIDCONSTANTS", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "FLUIDSECTION", .role = K::Section, .knowledge = kNothing, .parameters = {{kOwnElementSet}}},
    {.name = "FREQUENCY", .role = K::Procedure},
    {.name = "FRICTION", .forms = kFriction},
    {.name = "GAP", .knowledge = kNodes, .forms = kNumbers},
    {.name = "GAPCONDUCTANCE", .knowledge = kNodes, .forms = kNumbers},
    {.name = "GAPHEATGENERATION", .knowledge = kNothing},
    {.name = "GEOMETRICCONSTRAINT", .knowledge = kNothing},
    {.name = "GEOMETRICTOLERANCES", .knowledge = kNothing},
    {.name = "GREEN", .role = K::Procedure, .knowledge = kNothing},
    {.name = "HCF", .knowledge = kNothing},
    {.name = "HEADING"},
    {.name = "HEATTRANSFER", .role = K::Procedure},
    {.name       = "HYPERELASTIC",
     .role       = K::Property,
     .knowledge  = kNodes,
     .parameters = {{{"N", P::Number, 0}}},
     .forms      = kNumbers},
    {.name       = "HYPERFOAM",
     .role       = K::Property,
     .knowledge  = kNodes,
     .parameters = {{{"N", P::Number, 0}}},
     .forms      = kNumbers},
    {.name            = "INITIALCONDITIONS",
     .dropsUnknownIds = true,
     .parameters      = {{{"FILE", P::DataElsewhere}, {"USER", P::DataElsewhere}}},
     .selector        = "TYPE",
     .forms           = kInitial},
    {.name = "INITIALSTRAININCREASE", .knowledge = kNothing},
    {.name = "KINEMATIC", .forms = kDegrees},
    {.name = "MAGNETICPERMEABILITY", .role = K::Property, .knowledge = kNothing},
    {.name = "MASS", .forms = kMass},
    {.name = "MASSFLOW", .knowledge = kNothing},
    {.name = "MATERIAL", .defines = K::Material},
    {.name = "MEMBRANESECTION", .role = K::Section, .parameters = {{kOwnElementSet}}, .forms = kFirstLength},
    {.name = "MODALDAMPING"},
    {.name = "MODALDYNAMIC", .role = K::Procedure},
    {.name = "MODELCHANGE", .selector = "TYPE", .forms = kModelChange},
    {.name = "MPC", .label = "constraint", .labelField = 0, .forms = kConstraint},
    {.name = "NETWORKMPC", .knowledge = kNothing},
    {.name = "NOANALYSIS", .role = K::Procedure},
    {.name = "NODALTHICKNESS", .forms = kNodeThickness},
    {.name = "NODE", .defines = K::Nodes, .parameters = {{kOwnNodeSet}}, .forms = kNodeLines},
    {.name = "NODEFILE"},
    {.name = "NODEOUTPUT"},
    {.name = "NODEPRINT"},
    {.name = "NORMAL", .forms = kNormal},
    {.name = "NSET", .defines = K::NodeSet, .parameters = {{kOwnNodeSet}}, .selector = "GENERATE", .forms = kNodeSet},
    {.name = "OBJECTIVE", .knowledge = kNothing},
    {.name = "ORIENTATION", .defines = K::Orientation, .forms = kOrientation},
    {.name = "OUTPUT"},
    {.name       = "PHYSICALCONSTANTS",
     .parameters = {{{"ABSOLUTEZERO", P::Number, 0},
                     {"STEFANBOLTZMANN", P::Number, -1},
                     {"NEWTONGRAVITY", P::Number, 4, 10}}}},
    {.name = "PLASTIC", .role = K::Property, .selector = "HARDENING", .forms = kPlastic},
    {.name = "PRE-TENSIONSECTION", .parameters = {{{"NODE", P::NodeId}}}},
    {.name = "RADIATE", .role = K::Load, .knowledge = kNothing, .forms = kRadiation},
    {.name = "RANDOMFIELD", .knowledge = kNothing},
    {.name = "REFINEMESH", .knowledge = kNothing},
    {.name = "RESTART"},
    {.name = "RETAINEDNODALDOFS", .forms = kRetained},
    {.name = "RIGIDBODY", .parameters = {{kReferenceNode, kRotationNode}}},
    {.name = "ROBUSTDESIGN", .role = K::Procedure, .knowledge = kNothing},
    {.name = "SECTIONPRINT"},
    {.name = "SELECTCYCLICSYMMETRYMODES", .knowledge = kNothing},
    {.name = "SENSITIVITY", .role = K::Procedure, .knowledge = kNothing},
    {.name = "SHELLSECTION", .role = K::Section, .parameters = {{kOwnElementSet}}, .forms = kFirstLength},
    {.name = "SOLIDSECTION", .role = K::Section, .parameters = {{kOwnElementSet}}, .forms = kSolid},
    {.name = "SPECIFICGASCONSTANT", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name = "SPECIFICHEAT", .role = K::Property, .forms = kSpecificHeat},
    {.name = "SPRING", .knowledge = kNodes, .forms = kNumbers},
    {.name = "STATIC", .role = K::Procedure},
    {.name = "STEADYSTATEDYNAMICS", .role = K::Procedure},
    {.name = "STEP", .defines = K::Step, .parameters = {{{"AMPLITUDE", P::Plain}}}},
    {.name = "SUBMODEL", .knowledge = kNothing},
    {.name = "SUBSTRUCTUREGENERATE", .role = K::Procedure, .knowledge = kNothing},
    {.name = "SUBSTRUCTUREMATRIXOUTPUT", .knowledge = kNothing},
    {.name = "SURFACE", .defines = K::Surface, .dropsUnknownIds = true, .selector = "TYPE", .forms = kSurfaceParts},
    {.name = "SURFACEBEHAVIOR", .selector = "PRESSURE-OVERCLOSURE", .forms = kOverclosure},
    {.name = "SURFACEINTERACTION", .defines = K::Interaction},
    {.name = "TEMPERATURE", .role = K::Load, .forms = kTemperature},
    {.name = "TIE", .parameters = {{{"POSITIONTOLERANCE", P::Number, 1}}}, .forms = kTwoSurfaces},
    {.name = "TIMEPOINTS", .defines = K::TimePoints},
    {.name = "TRANSFORM", .forms = kLengths},
    {.name = "TRANSFORMF", .knowledge = kNothing},
    {.name = "UNCOUPLEDTEMPERATURE-DISPLACEMENT", .role = K::Procedure},
    {.name       = "USERELEMENT",
     .defines    = K::ElementType,
     .parameters = {{{"INTEGRATIONPOINTS", P::Number, 0}, {"MAXDOF", P::Number, 0}, {"NODES", P::Number, 0}}}},
    {.name = "USERMATERIAL", .role = K::Property, .knowledge = kNodes, .forms = kNumbers},
    {.name       = "USERSECTION",
     .role       = K::Section,
     .knowledge  = kNodes,
     .parameters = {{kOwnElementSet}},
     .forms      = kNumbers},
    {.name = "VALUESATINFINITY", .knowledge = kNothing},
    {.name = "VIEWFACTOR", .knowledge = kNothing},
    {.name = "VISCO", .role = K::Procedure},
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
