#pragma once

#include <cstdint>

#include "imaging/cell_image.h"
#include "imaging/color_table.h"
#include "imaging/rect.h"

namespace sorvel {

// Shows an image of 8 bits a pixel at 1/`side`. Group (c, r) is the square of `side` pixels a side from column
// c * side and row r * side on, as far as it lies in the image; its colour is the average of its pixels in `colors`,
// each part rounded to the nearest, half up. Where a group has line ink, no part goes further than halfway from the
// line's colour to white, rounded down, so that thin lines hold. Of several line colours the one of the lowest index
// counts.
//
// `groups` must lie in the image: each group has at least one pixel. `result` receives their colours row by row.
void AverageGroups(const CellImage& image, const ColorEntry (&colors)[256], int32_t side, const Rect& groups,
                   ColorEntry* result);

}  // namespace sorvel
