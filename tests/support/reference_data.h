#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "document/layer.h"
#include "reference/reference.h"

namespace sorvel {

// A copy of the layer for the plain implementation. Its cells are of the packed class; their padding is copied too.
inline reference::LayerData DataOf(Layer& layer) {
  reference::LayerData data;
  if (layer.name != nullptr) data.name = layer.name;
  data.width = layer.width;
  data.height = layer.height;
  data.followFrame = layer.followFrame;
  for (int32_t i = 0; i < layer.cells.Count(); ++i) {
    const CellImage* image = layer.CellAt(i);
    reference::Cell& cell = data.cells.emplace_back(image->width, image->height);
    EXPECT_EQ(cell.pitch, image->pitch);
    std::copy(image->bits, image->bits + image->ByteCount(), cell.bits.begin());
  }
  return data;
}

}  // namespace sorvel
