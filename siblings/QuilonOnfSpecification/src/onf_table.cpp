#include "onf_table.h"

namespace {

// Entity kinds.
constexpr int kNode       = 0;
constexpr int kElement    = 1;
constexpr int kElementSet = 2;
constexpr int kNodeSet    = 3;
constexpr int kMaterial   = 4;
constexpr int kHistory    = 15;
constexpr int kMatrix     = 16;

// clang-format off
constexpr OnfRow kRows[] = {
    {500, kHistory, "scalar-history",              "D",         "any",           "scalars over substeps; result index 10 tells which scalar"},
    {501, kHistory, "time",                        "D",         "time",          "time of a substep"},
    {502, kHistory, "eigenvalue",                  "D",         "1/time^2",      "eigenvalue of a mode"},
    {503, kHistory, "frequency",                   "D",         "1/time",        "frequency of a mode, in cycles"},
    {504, kHistory, "buckling-factor",             "D",         "none",          "factor on the load at which a mode buckles"},
    {505, kHistory, "total-internal-energy",       "D",         "energy",        "internal energy of the model"},
    {506, kHistory, "total-kinetic-energy",        "D",         "energy",        "kinetic energy of the model"},
    {507, kHistory, "total-volume",                "D",         "volume",        "volume of the model"},
    {508, kHistory, "total-mass",                  "D",         "mass",          "mass of the model"},
    {509, kHistory, "total-force",                 "D",         "force",         "sum of forces, one component a history"},
    {510, kNode,    "displacement",                "V",         "length",        "displacement"},
    {511, kNode,    "reaction",                    "V",         "force",         "reaction force"},
    {512, kNode,    "velocity",                    "V",         "length/time",   "velocity"},
    {513, kNode,    "acceleration",                "V",         "length/time^2", "acceleration"},
    {514, kNode,    "temperature",                 "D",         "temperature",   "temperature"},
    {515, kNode,    "heat-flux",                   "V",         "power/area",    "heat flux"},
    {516, kNode,    "coordinates",                 "V",         "length",        "position of the node"},
    {517, kNode,    "heat-generation",             "D",         "power",         "heat that enters or leaves at the node"},
    {518, kNode,    "equivalent-plastic-strain",   "D",         "none",          "equivalent plastic strain"},
    {519, kNode,    "energy-density",              "D",         "energy/volume", "internal energy density"},
    {520, kNode,    "nodal-stress-principal",      "V",         "stress",        "principal values of 521, the largest first"},
    {521, kNode,    "nodal-stress",                "T",         "stress",        "stress averaged at the node"},
    {522, kNode,    "nodal-stress-solver",         "T",         "stress",        "stress at the node as the solver itself averaged it"},
    {530, kNode,    "nodal-strain-principal",      "V",         "none",          "principal values of 531, the largest first"},
    {531, kNode,    "nodal-strain",                "T",         "none",          "strain averaged at the node"},
    {532, kNode,    "nodal-strain-solver",         "T",         "none",          "strain at the node as the solver itself averaged it"},
    {540, kElement, "element-energy",              "D",         "energy",        "internal energy of the element"},
    {541, kNode,    "node-energy",                 "D",         "energy",        "internal energy at the node"},
    {550, kNode,    "nodal-stress-variance",       "T",         "stress^2",      "variance of the stresses averaged at the node"},
    {551, kNode,    "nodal-stress-error",          "D",         "stress",        "error measure of the averaged stress"},
    {552, kNode,    "nodal-stress-count",          "D",         "none",          "number of stresses averaged at the node"},
    {553, kNode,    "nodal-strain-variance",       "T",         "none",          "variance of the strains averaged at the node"},
    {554, kNode,    "nodal-strain-error",          "D",         "none",          "error measure of the averaged strain"},
    {555, kNode,    "nodal-strain-count",          "D",         "none",          "number of strains averaged at the node"},
    {560, kElement, "element-stress-principal",    "V",         "stress",        "principal values of 561, the largest first"},
    {561, kElement, "element-stress",              "T",         "stress",        "mean stress of the element's integration points"},
    {570, kElement, "element-strain-principal",    "V",         "none",          "principal values of 571, the largest first"},
    {571, kElement, "element-strain",              "T",         "none",          "mean strain of the element's integration points"},
    {580, kElement, "element-forces",              "Db",        "force",         "three force components for each node of the element"},
    {581, kElement, "element-moments",             "Db",        "moment",        "three moment components for each node of the element"},
    {582, kElement, "integration-point-stress",    "IDb",       "stress",        "number of points, then six components a point in the solver's order"},
    {583, kElement, "integration-point-strain",    "IDb",       "none",          "number of points, then six components a point in the solver's order"},
    {590, kElement, "element-matrix-590",          "",          "any",           "half of an element matrix and its description; paired with 597"},
    {591, kElement, "element-matrix-591",          "",          "any",           "half of an element matrix and its description; paired with 598"},
    {592, kElement, "element-matrix-592",          "",          "any",           "half of an element matrix and its description; paired with 599"},
    {593, kMatrix,  "stiffness-matrix",            "IIbDbLbLb", "force/length",  "sparse stiffness matrix: rows, columns, values, row pointers, column indices"},
    {594, kMatrix,  "mass-matrix",                 "IIbDbLbLb", "mass",          "sparse mass matrix: rows, columns, values, row pointers, column indices"},
    {595, kElement, "element-nodes",               "lb",        "none",          "node ids of the element in the order of its definition"},
    {596, kElement, "element-type",                "Ii",        "none",          "type code of the element and its material number"},
    {597, kElement, "element-matrix-597",          "",          "any",           "half of an element matrix and its description; paired with 590"},
    {598, kElement, "element-matrix-598",          "",          "any",           "half of an element matrix and its description; paired with 591"},
    {599, kElement, "element-matrix-599",          "",          "any",           "half of an element matrix and its description; paired with 592"},
    {600, kNodeSet, "node-set",                    "Slb",       "none",          "name of the set and its node ids, in the deck's order"},
    {601, kElementSet, "element-set",              "Slb",       "none",          "name of the set and its element ids, in the deck's order"},
    {602, kMaterial, "material",                   "SDDD",      "any",           "name, density, Young's modulus, Poisson's ratio; nan where not stated"},
    {603, kElement, "element-section",             "IiI",       "none",          "section number, material id and orientation number of the element; 0 none"},
    {604, kHistory, "orientation",                 "SIDb",      "any",           "by orientation number: name, 0 rectangular or 1 cylindrical, the card's numbers"},
    {605, kHistory, "import-file",                 "ISSDSS",    "none",          "a file that the iteration was imported from: number of the import, role, name, bytes, checksum, when it was changed"},
    {606, kHistory, "import-setting",              "ISS",       "none",          "number of the import, name and value: the program, the options that were not the default"},
    {607, kHistory, "large-displacements",         "D",         "none",          "1 where the geometry of the result is the deformed one, nan where its deck does not tell; not there otherwise"},
    {608, kHistory, "tied-nodes",               "Slb",       "none",          "nodes that the deck ties to others: how (contact, ties, equations, ...), and their ids"},
    {609, kElement, "deck-type",                   "S",         "none",          "name of the element's type in the deck, where it is not the plainest type of its code (596)"},
    {903, kElement, "element-energy-contribution", "D",         "energy",        "a further contribution that is added to 540"},
    {913, kNode,    "node-energy-contribution",    "D",         "energy",        "a further contribution that is added to 541"},
};

constexpr OnfUserRow kUserRows[] = {
    {1000, kNode,    "user-node-scalar",    "D",         "one double per node"},
    {1100, kNode,    "user-node-vector",    "V",         "three doubles per node"},
    {1200, kNode,    "user-node-tensor",    "T",         "six doubles per node: xx, yy, zz, xy, yz, zx"},
    {1300, kNode,    "user-node-list",      "Db",        "a list of doubles per node"},
    {1400, kElement, "user-element-scalar", "D",         "one double per element"},
    {1500, kElement, "user-element-vector", "V",         "three doubles per element"},
    {1600, kElement, "user-element-tensor", "T",         "six doubles per element: xx, yy, zz, xy, yz, zx"},
    {1700, kElement, "user-element-list",   "Db",        "a list of doubles per element"},
    {1800, kHistory, "user-history",        "D",         "one double per substep"},
    {1900, kMatrix,  "user-matrix",         "IIbDbLbLb", "a sparse matrix: rows, columns, values, row pointers, column indices"},
};
// clang-format on

}  // namespace

std::span<const OnfRow> OnfRows() { return kRows; }

std::span<const OnfUserRow> OnfUserRows() { return kUserRows; }
