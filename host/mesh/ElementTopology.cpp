#include "mesh/ElementTopology.h"

namespace quilon {

namespace {

constexpr ElementFace Flat3(std::uint8_t a, std::uint8_t b, std::uint8_t c) { return {3, {a, b, c, 0}, false, {}}; }
constexpr ElementFace Flat4(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d)
{
  return {4, {a, b, c, d}, false, {}};
}
constexpr ElementFace Curved(ElementFace face, std::uint8_t ab, std::uint8_t bc, std::uint8_t cd, std::uint8_t da = 0)
{
  face.isCurved = true;
  face.middles  = {ab, bc, cd, da};
  return face;
}

constexpr ElementFace kHex8Faces[] = {Flat4(0, 3, 2, 1), Flat4(4, 5, 6, 7), Flat4(0, 1, 5, 4),
                                      Flat4(1, 2, 6, 5), Flat4(2, 3, 7, 6), Flat4(3, 0, 4, 7)};

constexpr ElementFace kHex20Faces[] = {Curved(kHex8Faces[0], 11, 10, 9, 8),   Curved(kHex8Faces[1], 12, 13, 14, 15),
                                       Curved(kHex8Faces[2], 8, 17, 12, 16),  Curved(kHex8Faces[3], 9, 18, 13, 17),
                                       Curved(kHex8Faces[4], 10, 19, 14, 18), Curved(kHex8Faces[5], 11, 16, 15, 19)};

constexpr ElementFace kTet4Faces[] = {Flat3(0, 2, 1), Flat3(0, 1, 3), Flat3(1, 2, 3), Flat3(2, 0, 3)};

constexpr ElementFace kTet10Faces[] = {Curved(kTet4Faces[0], 6, 5, 4), Curved(kTet4Faces[1], 4, 8, 7),
                                       Curved(kTet4Faces[2], 5, 9, 8), Curved(kTet4Faces[3], 6, 7, 9)};

constexpr ElementFace kWedge6Faces[] = {Flat3(0, 2, 1), Flat3(3, 4, 5), Flat4(0, 1, 4, 3), Flat4(1, 2, 5, 4),
                                        Flat4(2, 0, 3, 5)};

constexpr ElementFace kWedge15Faces[] = {Curved(kWedge6Faces[0], 8, 7, 6), Curved(kWedge6Faces[1], 9, 10, 11),
                                         Curved(kWedge6Faces[2], 6, 13, 9, 12), Curved(kWedge6Faces[3], 7, 14, 10, 13),
                                         Curved(kWedge6Faces[4], 8, 12, 11, 14)};

constexpr ElementFace kTri3Faces[]  = {Flat3(0, 1, 2)};
constexpr ElementFace kTri6Faces[]  = {Curved(kTri3Faces[0], 3, 4, 5)};
constexpr ElementFace kQuad4Faces[] = {Flat4(0, 1, 2, 3)};
constexpr ElementFace kQuad8Faces[] = {Curved(kQuad4Faces[0], 4, 5, 6, 7)};

// By type code, from 1.
constexpr ElementTopology kTopologies[] = {{"C3D8", 8, 3, kHex8Faces},
                                           {"C3D6", 6, 3, kWedge6Faces},
                                           {"C3D4", 4, 3, kTet4Faces},
                                           {"C3D20", 20, 3, kHex20Faces},
                                           {"C3D15", 15, 3, kWedge15Faces},
                                           {"C3D10", 10, 3, kTet10Faces},
                                           {"S3", 3, 2, kTri3Faces},
                                           {"S6", 6, 2, kTri6Faces},
                                           {"S4", 4, 2, kQuad4Faces},
                                           {"S8", 8, 2, kQuad8Faces},
                                           {"B31", 2, 1, {}},
                                           {"B32", 3, 1, {}}};

}  // namespace

const ElementTopology* FindTopology(int frdType) noexcept
{
  if (frdType < 1 || frdType > static_cast<int>(std::size(kTopologies))) return nullptr;
  return &kTopologies[frdType - 1];
}

const char* TypeNameOf(int frdType) noexcept
{
  const ElementTopology* topology = FindTopology(frdType);
  return topology == nullptr ? "none" : topology->name;
}

}  // namespace quilon
