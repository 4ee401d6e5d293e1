#include <gtest/gtest.h>

#include <cstdint>

#include "document/cut.h"

namespace sorvel {
namespace {

constexpr uint32_t kMarks = kModified | kImagesStale | kTimingStale;

// Layers that nothing shows go without a trace: a save drops them, and the compiled stream stays current.
TEST(DocumentEdges, PurgeOfUnusedLayersMarksNothing) {
  Cut cut(20, 10, 24, "", 0);
  cut.AddFrame();
  cut.AddLayer("A", 4, 2, nullptr);
  cut.AddLayer("B", 4, 2, nullptr);
  cut.AttachLayer(0, 0, 0);
  cut.stateFlags = 0;
  cut.PurgeUnusedLayers();
  EXPECT_EQ(cut.layers.Count(), 1);
  EXPECT_EQ(cut.stateFlags & kMarks, 0u);
}

}  // namespace
}  // namespace sorvel
