#pragma once

/// @file
/// Patterns of ids for benchmarks.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

namespace quilon_bench {

inline constexpr std::array<const char*, 4> kIdPatterns = {"dense", "gaps", "reversed", "random"};

/// The orders in which ids 1, 2, 3, ... arrive, and those patterns that arrive as they are.
inline constexpr std::array<const char*, 6> kIdOrders = {"dense", "connectivity", "shuffled",
                                                         "gaps",  "reversed",     "random"};

/// @param pattern dense     1, 2, 3, ... as a mesher numbers nodes
///                gaps      1, 11, 21, ... as users leave room
///                reversed  the bytes of 1, 2, 3, ... in reverse order: every id a leaf of its own
///                random    31-bit ids drawn at random
/// @return that many different ids
inline std::vector<int> MakeIds(const std::string& pattern, std::size_t count)
{
  std::vector<int> ids;
  ids.reserve(count);
  std::mt19937            random(20250104);
  std::unordered_set<int> drawn;
  for (std::uint32_t i = 1; ids.size() < count; ++i) {
    if (pattern == "dense") {
      ids.push_back(static_cast<int>(i));
    } else if (pattern == "gaps") {
      ids.push_back(static_cast<int>(10 * i - 9));
    } else if (pattern == "reversed") {
      ids.push_back(static_cast<int>(i << 24 | (i & 0xFF00u) << 8 | (i >> 8 & 0xFF00u) | i >> 24));
    } else if (const int id = static_cast<int>(random() >> 1); drawn.insert(id).second) {
      ids.push_back(id);
    }
  }
  return ids;
}

inline std::vector<int> Shuffled(std::vector<int> ids, unsigned seed = 20250105)
{
  std::shuffle(ids.begin(), ids.end(), std::mt19937(seed));
  return ids;
}

/// The nodes of a regular mesh of hexahedra, element by element, eight a time: the order in which element results
/// arrive. Node i of the mesh has the id ids[i].
inline std::vector<int> MeshOrder(const std::vector<int>& ids)
{
  std::size_t edge = 2;
  while ((edge + 1) * (edge + 1) * (edge + 1) <= ids.size()) ++edge;
  std::vector<int> order;
  order.reserve(8 * (edge - 1) * (edge - 1) * (edge - 1));
  for (std::size_t k = 0; k + 1 < edge; ++k) {
    for (std::size_t j = 0; j + 1 < edge; ++j) {
      for (std::size_t i = 0; i + 1 < edge; ++i) {
        const std::size_t n = (k * edge + j) * edge + i;
        for (const std::size_t corner : {n, n + 1, n + edge + 1, n + edge}) {
          order.push_back(ids[corner]);
          order.push_back(ids[corner + edge * edge]);
        }
      }
    }
  }
  return order;
}

/// @param order dense, gaps, reversed, random: the pattern of that name, every id once
///              connectivity                 dense ids as element results name them: MeshOrder(), ids eight times
///              shuffled                     dense ids, every id once
inline std::vector<int> MakeVisits(const std::string& order, std::size_t count)
{
  if (order == "connectivity") return MeshOrder(MakeIds("dense", count));
  if (order == "shuffled") return Shuffled(MakeIds("dense", count), 20250106);
  return MakeIds(order, count);
}

/// Takes the flags --least=N and --most=N out of the command line.
/// @return sizes from least to most, doubling
inline std::vector<std::size_t> TakeSizes(int& argc, char** argv, std::size_t least, std::size_t most)
{
  int numKept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument.rfind("--least=", 0) == 0) {
      least = std::stoul(argument.substr(8));
    } else if (argument.rfind("--most=", 0) == 0) {
      most = std::stoul(argument.substr(7));
    } else {
      argv[numKept++] = argv[i];
    }
  }
  argc = numKept;

  std::vector<std::size_t> sizes;
  for (std::size_t size = std::max<std::size_t>(least, 8); size <= most; size *= 2) sizes.push_back(size);
  return sizes;
}

}  // namespace quilon_bench
