#pragma once

/// @file
/// Tensors that are hard to tell apart, and hard to bound.

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

namespace quilon_test {

/// Symmetric tensors xx, yy, zz, xy, yz, zx: ordinary ones, small integers (ties), hydrostatic ones and nearly so, with
/// double roots, plane ones, zeros of both signs, and earlier ones again, as they were and with a bit changed.
/// @param withExtremes also huge and tiny ones, NaNs and infinities
inline std::vector<std::array<double, 6>> HostileTensors(std::size_t count, unsigned seed, bool withExtremes)
{
  std::mt19937                       random(seed);
  std::uniform_real_distribution<>   uniform(-1.0, 1.0);
  std::vector<std::array<double, 6>> tensors;
  const auto                         any = [&](double size) {
    std::array<double, 6> tensor{};
    for (double& value : tensor) value = size * uniform(random);
    return tensor;
  };
  const auto hydrostatic = [&](double off) {
    std::array<double, 6> tensor = any(off);
    const double          mean   = uniform(random);
    for (std::size_t k = 0; k < 3; ++k) tensor[k] += mean;
    return tensor;
  };
  const auto uniaxial = [&] {
    std::array<double, 6> tensor{};
    const double          d[3] = {uniform(random), uniform(random), uniform(random)};
    for (std::size_t k = 0; k < 3; ++k) {
      tensor[k]     = d[k] * d[k];
      tensor[k + 3] = d[k] * d[(k + 1) % 3];
    }
    return tensor;
  };
  while (tensors.size() < count) {
    const std::size_t     place = random() % 6;
    std::array<double, 6> tensor{};
    switch (random() % (withExtremes ? 14 : 11)) {
      case 0:
      case 1:
        tensor = any(1.0);
        break;
      case 2:
        for (double& value : tensor) value = static_cast<double>(random() % 3) - 1.0;
        break;
      case 3:
        tensor = hydrostatic(0.0);
        break;
      case 4:
        tensor = hydrostatic(std::pow(10.0, -static_cast<double>(random() % 17)));
        break;
      case 5:
        tensor = uniaxial();
        break;
      case 6:
        tensor    = any(1.0);
        tensor[2] = tensor[4] = tensor[5] = 0.0;
        break;
      case 7:
        if (random() % 2 == 0) tensor[place] = -0.0;
        break;
      case 8:
        tensor[place] = 1.0;
        break;
      case 9:
        if (!tensors.empty()) tensor = tensors[random() % tensors.size()];
        break;
      case 10:
        if (!tensors.empty()) tensor = tensors[random() % tensors.size()];
        tensor[place] = std::nextafter(tensor[place], uniform(random) > 0.0 ? 10.0 : -10.0);
        break;
      case 11:
        tensor = any(std::pow(10.0, static_cast<double>(random() % 617) - 310.0));
        break;
      case 12:
        tensor        = any(1.0);
        tensor[place] = std::numeric_limits<double>::quiet_NaN();
        break;
      default:
        tensor        = any(1.0);
        tensor[place] = std::copysign(std::numeric_limits<double>::infinity(), uniform(random));
        break;
    }
    tensors.push_back(tensor);
  }
  return tensors;
}

}  // namespace quilon_test
