#include "calculix/deck/DeckKeyword.h"

#include <algorithm>
#include <iterator>

#include "selection/Suggestion.h"

namespace quilon::calculix {
namespace {

// Sorted by name.
constexpr DeckKeyword kKeywords[] = {
    {"AMPLITUDE"},
    {"BASEMOTION"},
    {"BEAMGENERALSECTION", DeckKeyword::Section},
    {"BEAMSECTION", DeckKeyword::Section},
    {"BOUNDARY"},
    {"BOUNDARYF"},
    {"BUCKLE", DeckKeyword::Procedure},
    {"CFD", DeckKeyword::Procedure},
    {"CFLUX", DeckKeyword::Load},
    {"CHANGEFRICTION"},
    {"CHANGEMATERIAL"},
    {"CHANGEPLASTIC"},
    {"CHANGESOLIDSECTION"},
    {"CHANGESURFACEBEHAVIOR"},
    {"CLEARANCE"},
    {"CLOAD", DeckKeyword::Load},
    {"COMPLEXFREQUENCY", DeckKeyword::Procedure},
    {"CONDUCTIVITY", DeckKeyword::Property},
    {"CONSTRAINT"},
    {"CONTACTDAMPING"},
    {"CONTACTFILE"},
    {"CONTACTOUTPUT"},
    {"CONTACTPAIR"},
    {"CONTACTPRINT"},
    {"CONTROLS"},
    {"CORRELATIONLENGTH"},
    {"COUPLEDTEMPERATURE-DISPLACEMENT", DeckKeyword::Procedure},
    {"COUPLING"},
    {"CRACKPROPAGATION", DeckKeyword::Procedure},
    {"CREEP", DeckKeyword::Property},
    {"CYCLICHARDENING", DeckKeyword::Property},
    {"CYCLICSYMMETRYMODEL"},
    {"DAMPING", DeckKeyword::Property},
    {"DASHPOT"},
    {"DEFORMATIONPLASTICITY", DeckKeyword::Property},
    {"DENSITY", DeckKeyword::Property},
    {"DEPVAR", DeckKeyword::Property},
    {"DESIGNRESPONSE"},
    {"DESIGNVARIABLES"},
    {"DFLUX", DeckKeyword::Load},
    {"DISTRIBUTING"},
    {"DISTRIBUTINGCOUPLING"},
    {"DISTRIBUTION"},
    {"DLOAD", DeckKeyword::Load},
    {"DSLOAD"},
    {"DYNAMIC", DeckKeyword::Procedure},
    {"ELASTIC", DeckKeyword::Property},
    {"ELECTRICALCONDUCTIVITY", DeckKeyword::Property},
    {"ELECTROMAGNETICS", DeckKeyword::Procedure},
    {"ELEMENT"},
    {"ELEMENTOUTPUT"},
    {"ELFILE"},
    {"ELPRINT"},
    {"ELSET"},
    {"ENDSTEP"},
    {"EQUATION"},
    {"EQUATIONF"},
    {"EXPANSION", DeckKeyword::Property},
    {"FEASIBLEDIRECTION", DeckKeyword::Procedure},
    {"FILM", DeckKeyword::Load},
    {"FILTER"},
    {"FLUIDCONSTANTS", DeckKeyword::Property},
    {"FLUIDSECTION", DeckKeyword::Section},
    {"FREQUENCY", DeckKeyword::Procedure},
    {"FRICTION"},
    {"GAP"},
    {"GAPCONDUCTANCE"},
    {"GAPHEATGENERATION"},
    {"GEOMETRICCONSTRAINT"},
    {"GEOMETRICTOLERANCES"},
    {"GREEN", DeckKeyword::Procedure},
    {"HCF"},
    {"HEADING"},
    {"HEATTRANSFER", DeckKeyword::Procedure},
    {"HYPERELASTIC", DeckKeyword::Property},
    {"HYPERFOAM", DeckKeyword::Property},
    {"INITIALCONDITIONS"},
    {"INITIALSTRAININCREASE"},
    {"KINEMATIC"},
    {"MAGNETICPERMEABILITY", DeckKeyword::Property},
    {"MASS"},
    {"MASSFLOW"},
    {"MATERIAL"},
    {"MEMBRANESECTION", DeckKeyword::Section},
    {"MODALDAMPING"},
    {"MODALDYNAMIC", DeckKeyword::Procedure},
    {"MODELCHANGE"},
    {"MPC"},
    {"NETWORKMPC"},
    {"NOANALYSIS", DeckKeyword::Procedure},
    {"NODALTHICKNESS"},
    {"NODE"},
    {"NODEFILE"},
    {"NODEOUTPUT"},
    {"NODEPRINT"},
    {"NORMAL"},
    {"NSET"},
    {"OBJECTIVE"},
    {"ORIENTATION"},
    {"OUTPUT"},
    {"PHYSICALCONSTANTS"},
    {"PLASTIC", DeckKeyword::Property},
    {"PRE-TENSIONSECTION"},
    {"RADIATE", DeckKeyword::Load},
    {"RANDOMFIELD"},
    {"REFINEMESH"},
    {"RESTART"},
    {"RETAINEDNODALDOFS"},
    {"RIGIDBODY"},
    {"ROBUSTDESIGN", DeckKeyword::Procedure},
    {"SECTIONPRINT"},
    {"SELECTCYCLICSYMMETRYMODES"},
    {"SENSITIVITY", DeckKeyword::Procedure},
    {"SHELLSECTION", DeckKeyword::Section},
    {"SOLIDSECTION", DeckKeyword::Section},
    {"SPECIFICGASCONSTANT", DeckKeyword::Property},
    {"SPECIFICHEAT", DeckKeyword::Property},
    {"SPRING"},
    {"STATIC", DeckKeyword::Procedure},
    {"STEADYSTATEDYNAMICS", DeckKeyword::Procedure},
    {"STEP"},
    {"SUBMODEL"},
    {"SUBSTRUCTUREGENERATE", DeckKeyword::Procedure},
    {"SUBSTRUCTUREMATRIXOUTPUT"},
    {"SURFACE"},
    {"SURFACEBEHAVIOR"},
    {"SURFACEINTERACTION"},
    {"TEMPERATURE", DeckKeyword::Load},
    {"TIE"},
    {"TIMEPOINTS"},
    {"TRANSFORM"},
    {"TRANSFORMF"},
    {"UNCOUPLEDTEMPERATURE-DISPLACEMENT", DeckKeyword::Procedure},
    {"USERELEMENT"},
    {"USERMATERIAL", DeckKeyword::Property},
    {"USERSECTION", DeckKeyword::Section},
    {"VALUESATINFINITY"},
    {"VIEWFACTOR"},
    {"VISCO", DeckKeyword::Procedure},
};

}  // namespace

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
