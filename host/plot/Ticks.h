#pragma once

/// @file
/// Round numbers along an axis.

#include <string>
#include <vector>

namespace quilon {

struct Tick
{
  double      value = 0.0;
  std::string label;  ///< without the axis's power of ten
};

/// Ticks of an axis. A label stands for its number times ten to the power of the exponent.
struct Ticks
{
  std::vector<Tick> ticks;
  int               exponent = 0;  ///< a multiple of 3; 0 where plain numbers are short

  /// @return "× 10⁻³", empty for the exponent 0
  std::string GetFactor() const;
};

/// Places ticks at multiples of 1, 2, 2.5 or 5 times a power of ten.
/// @param least, greatest finite
/// @param maxCount at least 2; there are at most as many ticks
/// @return ticks within the range, both ends included; one where least == greatest
Ticks MakeTicks(double least, double greatest, int maxCount);

/// Places ticks at powers of ten, every second or further one where there are many.
/// @param least, greatest greater than 0
/// @return at least one, all within the range where one is
Ticks MakeLogarithmicTicks(double least, double greatest, int maxCount);

/// @return "10⁻³"
std::string PowerOfTen(int exponent);

/// @return the number in at most so many digits, with a minus sign as printers know it: "−4.458", "1.2 × 10⁻⁷"
std::string PrintedNumber(double value, int digits = 4);

}  // namespace quilon
