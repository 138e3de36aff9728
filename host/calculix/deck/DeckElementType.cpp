#include <algorithm>
#include <array>

#include "calculix/deck/DeckModel.h"

namespace quilon::calculix {
namespace {

// Name, nodes, type in the .frd, integration points, dimension; sorted by name. Beams, shells and plane elements have
// the .frd type of their own mesh, not that of the solids into which the solver expands them. Solids and plane elements
// go with a D before their names too, for heat transfer.
constexpr DeckElementType kTypes[] = {
    {"B21", 2, 11, 0, 1},     {"B31", 2, 11, 0, 1},    {"B31R", 2, 11, 0, 1},    {"B32", 3, 12, 0, 1},
    {"B32R", 3, 12, 0, 1},    {"C3D10", 10, 6, 4, 3},  {"C3D10T", 10, 6, 4, 3},  {"C3D15", 15, 5, 9, 3},
    {"C3D20", 20, 4, 27, 3},  {"C3D20R", 20, 4, 8, 3}, {"C3D4", 4, 3, 1, 3},     {"C3D6", 6, 2, 2, 3},
    {"C3D8", 8, 1, 8, 3},     {"C3D8I", 8, 1, 8, 3},   {"C3D8R", 8, 1, 1, 3},    {"CAX3", 3, 7, 0, 2},
    {"CAX4", 4, 9, 0, 2},     {"CAX4R", 4, 9, 0, 2},   {"CAX6", 6, 8, 0, 2},     {"CAX8", 8, 10, 0, 2},
    {"CAX8R", 8, 10, 0, 2},   {"CPE3", 3, 7, 0, 2},    {"CPE4", 4, 9, 0, 2},     {"CPE4R", 4, 9, 0, 2},
    {"CPE6", 6, 8, 0, 2},     {"CPE8", 8, 10, 0, 2},   {"CPE8R", 8, 10, 0, 2},   {"CPS3", 3, 7, 0, 2},
    {"CPS4", 4, 9, 0, 2},     {"CPS4R", 4, 9, 0, 2},   {"CPS6", 6, 8, 0, 2},     {"CPS8", 8, 10, 0, 2},
    {"CPS8R", 8, 10, 0, 2},   {"D", 3, 12, 0, 1},      {"DASHPOTA", 2, 0, 0, 0}, {"DC3D10", 10, 6, 4, 3},
    {"DC3D10T", 10, 6, 4, 3}, {"DC3D15", 15, 5, 9, 3}, {"DC3D20", 20, 4, 27, 3}, {"DC3D20R", 20, 4, 8, 3},
    {"DC3D4", 4, 3, 1, 3},    {"DC3D6", 6, 2, 2, 3},   {"DC3D8", 8, 1, 8, 3},    {"DC3D8I", 8, 1, 8, 3},
    {"DC3D8R", 8, 1, 1, 3},   {"DCAX3", 3, 7, 0, 2},   {"DCAX4", 4, 9, 0, 2},    {"DCAX4R", 4, 9, 0, 2},
    {"DCAX6", 6, 8, 0, 2},    {"DCAX8", 8, 10, 0, 2},  {"DCAX8R", 8, 10, 0, 2},  {"DCOUP3D", 1, 0, 0, 0},
    {"DCPE3", 3, 7, 0, 2},    {"DCPE4", 4, 9, 0, 2},   {"DCPE4R", 4, 9, 0, 2},   {"DCPE6", 6, 8, 0, 2},
    {"DCPE8", 8, 10, 0, 2},   {"DCPE8R", 8, 10, 0, 2}, {"DCPS3", 3, 7, 0, 2},    {"DCPS4", 4, 9, 0, 2},
    {"DCPS4R", 4, 9, 0, 2},   {"DCPS6", 6, 8, 0, 2},   {"DCPS8", 8, 10, 0, 2},   {"DCPS8R", 8, 10, 0, 2},
    {"F3D4", 4, 3, 0, 3},     {"F3D6", 6, 2, 0, 3},    {"F3D8", 8, 1, 0, 3},     {"F3D8R", 8, 1, 0, 3},
    {"GAPUNI", 2, 0, 0, 0},   {"M3D3", 3, 7, 0, 2},    {"M3D4", 4, 9, 0, 2},     {"M3D4R", 4, 9, 0, 2},
    {"M3D6", 6, 8, 0, 2},     {"M3D8", 8, 10, 0, 2},   {"M3D8R", 8, 10, 0, 2},   {"MASS", 1, 0, 0, 0},
    {"S3", 3, 7, 0, 2},       {"S4", 4, 9, 0, 2},      {"S4R", 4, 9, 0, 2},      {"S6", 6, 8, 0, 2},
    {"S8", 8, 10, 0, 2},      {"S8R", 8, 10, 0, 2},    {"SPRING1", 1, 0, 0, 0},  {"SPRING2", 2, 0, 0, 0},
    {"SPRINGA", 2, 0, 0, 0},  {"T2D2", 2, 11, 0, 1},   {"T3D2", 2, 11, 0, 1},    {"T3D3", 3, 12, 0, 1},
};

}  // namespace

const DeckElementType* FindDeckElementType(std::string_view name) noexcept
{
  const auto found =
      std::lower_bound(std::begin(kTypes), std::end(kTypes), name,
                       [](const DeckElementType& type, std::string_view text) { return type.name < text; });
  return found == std::end(kTypes) || found->name != name ? nullptr : found;
}

}  // namespace quilon::calculix
