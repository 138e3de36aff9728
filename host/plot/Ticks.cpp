#include "plot/Ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace quilon {

namespace {

constexpr const char* kMinus = "\u2212";

std::string WithMinus(std::string_view text)
{
  std::string printed;
  for (const char c : text) {
    if (c == '-')
      printed += kMinus;
    else
      printed += c;
  }
  return printed;
}

std::string Fixed(double value, int decimals)
{
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  return WithMinus(text.data());
}

/// The distance of two ticks: mantissa * 10^power.
struct Step
{
  double mantissa = 1.0;
  int    power    = 0;

  double Size() const { return mantissa * std::pow(10.0, power); }
};

/// @param numbers how many lie within, at most maxCount
Step FindStep(double least, double greatest, int maxCount)
{
  constexpr double kMantissas[] = {1.0, 2.0, 2.5, 5.0};
  const double     length       = greatest - least;
  Step             step{1.0, static_cast<int>(std::floor(std::log10(length / maxCount)))};
  for (;; ++step.power)
    for (const double mantissa : kMantissas) {
      step.mantissa     = mantissa;
      const double size = step.Size();
      if (std::floor(greatest / size + 1e-9) - std::ceil(least / size - 1e-9) + 1 <= maxCount) return step;
    }
}

int ExponentFor(double largest, const Step& step)
{
  constexpr double kLarge = 99999.5;
  constexpr double kSmall = 0.01;
  if (largest == 0.0) return 0;
  // A long row of digits in front of the point, or of zeros behind it, hides the figures.
  if (largest < kLarge && largest >= kSmall && step.power > -5) return 0;
  return static_cast<int>(std::floor(std::floor(std::log10(largest) + 1e-9) / 3.0)) * 3;
}

}  // namespace

std::string PowerOfTen(int exponent)
{
  constexpr const char* kDigits[] = {"\u2070", "\u00B9", "\u00B2", "\u00B3", "\u2074",
                                     "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
  std::string           text      = "10";
  for (const char c : std::to_string(exponent)) text += c == '-' ? "\u207B" : kDigits[c - '0'];
  return text;
}

std::string Ticks::GetFactor() const { return exponent == 0 ? std::string() : "\u00D7\u2009" + PowerOfTen(exponent); }

Ticks MakeTicks(double least, double greatest, int maxCount)
{
  Ticks        made;
  const double largest = std::max(std::abs(least), std::abs(greatest));
  // Below this the ends are one number to the digits that anybody reads, and multiples of a step would coincide.
  if (!(greatest - least > 1e-12 * largest)) {
    made.exponent = ExponentFor(largest, {1.0, 0});
    made.ticks.push_back({least, PrintedNumber(least / std::pow(10.0, made.exponent))});
    return made;
  }
  const Step   step     = FindStep(least, greatest, maxCount);
  const double size     = step.Size();
  made.exponent         = ExponentFor(largest, step);
  const int    decimals = std::max(0, made.exponent - step.power + (step.mantissa == 2.5 ? 1 : 0));
  const double first    = std::ceil(least / size - 1e-9);
  const double last     = std::floor(greatest / size + 1e-9);
  for (double multiple = first; multiple <= last; ++multiple) {
    const double value = multiple == 0.0 ? 0.0 : multiple * size;
    made.ticks.push_back({value, Fixed(value / std::pow(10.0, made.exponent), decimals)});
  }
  return made;
}

Ticks MakeLogarithmicTicks(double least, double greatest, int maxCount)
{
  Ticks     made;
  const int first  = static_cast<int>(std::ceil(std::log10(least) - 1e-9));
  const int last   = static_cast<int>(std::floor(std::log10(greatest) + 1e-9));
  int       stride = 1;
  while ((last - first) / stride + 1 > maxCount) ++stride;
  for (int power = first; power <= last; power += stride)
    made.ticks.push_back({std::pow(10.0, power), PowerOfTen(power)});
  if (made.ticks.empty()) made.ticks.push_back({least, PrintedNumber(least)});
  return made;
}

std::string PrintedNumber(double value, int digits)
{
  if (std::isnan(value)) return "nan";
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*g", digits, value);
  const std::string_view printed  = text.data();
  const std::size_t      exponent = printed.find('e');
  if (exponent == std::string_view::npos) return WithMinus(printed);
  return WithMinus(printed.substr(0, exponent)) + "\u2009\u00D7\u2009" +
         PowerOfTen(std::stoi(std::string(printed.substr(exponent + 1))));
}

}  // namespace quilon
