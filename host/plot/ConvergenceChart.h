#pragma once

/// @file
/// How a nonlinear calculation converges, as a chart.

#include <filesystem>

#include "plot/Series.h"

namespace quilon {

/// Reads what the solver logs of its iterations, by the extension: of a .cvg residuals and corrections of every
/// iteration, on a logarithmic axis; of a .sta how many iterations each increment took, attempts that were cut back
/// told apart. Where steps begin is a divider, and where increments begin, too, where there are few.
/// @throws FED_Failure for another extension, a file that cannot be read, and one without rows
Chart MakeConvergenceChart(const std::filesystem::path& path);

}  // namespace quilon
