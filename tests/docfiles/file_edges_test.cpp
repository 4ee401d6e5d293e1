#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "docfiles/cell_codec.h"
#include "document/layer.h"
#include "foundation/byte_stream.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

// One cell of 4 by 18 pixels: rows 0 to 2 are literals, and rows 3 to 16 copies of the row above. The map asks for a
// code byte in row 17 as well, and the code bytes end before it.
Bytes BlockWithoutItsLastCode() {
  Bytes map(18, 0);
  map[0] = map[3] = map[17] = 1;
  const Bytes codes = {0x00, 0x04};
  const Bytes literals = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC};
  const Bytes head = {'A', 0, 4, 0, 18, 0, 0, 1, 0};
  const Bytes lengths = {2, 0, 0, 0, 6, 0, 0, 0};
  return head + lengths + map + codes + literals;
}

// A read behind the end of a memory stream stores the byte FF, so the code is 15: the group 16 rows above.
TEST(FileEdges, CodeBehindTheEndOfTheCodeBytesIs15) {
  InputBytes input(BlockWithoutItsLastCode());
  Layer layer(0, 0, nullptr, nullptr, 0);
  CellReader reader;
  EXPECT_TRUE(reader.Read(&layer, &input.stream));
  ASSERT_EQ(layer.cells.Count(), 1);
  std::string expected = "1234\n5678\n";
  for (int32_t y = 2; y < 17; ++y) expected += "9abc\n";
  expected += "5678\n";
  EXPECT_EQ(Picture(*layer.CellAt(0)), expected);
  EXPECT_EQ(input.stream.GetC(), -1);
}

}  // namespace
}  // namespace sorvel
