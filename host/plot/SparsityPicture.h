#pragma once

/// @file
/// Where a sparse matrix has values, as a picture.

#include <string>

#include "matrix/MatrixEntries.h"
#include "plot/Canvas.h"

namespace quilon {

/// Draws a dot for each value other than zero, the first row on top; of a large matrix a pixel stands for a number of
/// rows and columns, the darker the more values it has.
/// @param title above the picture
/// @return the bytes of the file
std::string DrawSparsity(const matrix::RowView& rows, const std::string& title, PictureFormat format,
                         const PictureSize& size = {700, 760}, const Colour& background = {1, 1, 1, 1});

}  // namespace quilon
