#include "export/VtkCells.h"

#include <iterator>

namespace quilon {

namespace {

constexpr std::uint8_t kEmptyCell  = 0;
constexpr std::uint8_t kVertex     = 1;
constexpr std::uint8_t kPolyVertex = 2;
constexpr std::uint8_t kLine       = 3;

// By type code of the .frd, from 1: bricks, wedges and tetrahedra, linear and quadratic, then triangles, quadrangles
// and lines, each linear and quadratic.
constexpr std::uint8_t kCellTypes[] = {12, 13, 10, 25, 26, 24, 5, 22, 9, 23, kLine, 21};

constexpr std::uint8_t kWedge6[]  = {3, 4, 5, 0, 1, 2};
constexpr std::uint8_t kWedge15[] = {3, 4, 5, 0, 1, 2, 9, 10, 11, 6, 7, 8, 12, 13, 14};
constexpr std::uint8_t kLine3[]   = {0, 2, 1};

}  // namespace

std::uint8_t VtkCellType(int frdType, std::size_t numNodes) noexcept
{
  if (frdType >= 1 && frdType <= static_cast<int>(std::size(kCellTypes))) return kCellTypes[frdType - 1];
  if (numNodes == 0) return kEmptyCell;
  if (numNodes == 1) return kVertex;
  return numNodes == 2 ? kLine : kPolyVertex;
}

std::span<const std::uint8_t> VtkNodeOrder(int frdType) noexcept
{
  if (frdType == 2) return kWedge6;
  if (frdType == 5) return kWedge15;
  if (frdType == 12) return kLine3;
  return {};
}

}  // namespace quilon
