#include "document/layer.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "support/test_document.h"

namespace sorvel {
namespace {

using testdoc::Drawings;
using testdoc::NumberCells;
using testdoc::Paint;
using testdoc::Picture;

TEST(Layer, NewLayerHoldsItsValuesAndNoCells) {
  PackedImage prototype;
  Layer layer(12, 34, "background", &prototype, 1);
  EXPECT_EQ(layer.cells.Count(), 0);
  EXPECT_EQ(layer.width, 12);
  EXPECT_EQ(layer.height, 34);
  EXPECT_STREQ(layer.name, "background");
  EXPECT_EQ(layer.prototype, &prototype);
  EXPECT_EQ(layer.followFrame, 1u);
}

TEST(Layer, NameIsAPrivateCopy) {
  char name[] = "one";
  Layer layer(1, 1, name, nullptr, 0);
  name[0] = 'x';
  EXPECT_STREQ(layer.name, "one");
  char other[] = "two";
  layer.SetName(other);
  other[0] = 'x';
  EXPECT_STREQ(layer.name, "two");
}

TEST(Layer, NullNameIsKeptAndShownAsUntitled) {
  Layer layer(1, 1, nullptr, nullptr, 0);
  EXPECT_EQ(layer.name, nullptr);
  EXPECT_STREQ(layer.ShownName(), "UNTITLED");
  layer.SetName("a");
  EXPECT_STREQ(layer.ShownName(), "a");
  layer.SetName(nullptr);
  EXPECT_EQ(layer.name, nullptr);
  EXPECT_STREQ(layer.ShownName(), "UNTITLED");
}

TEST(Layer, SetNameTakesTheOwnName) {
  Layer layer(1, 1, "name", nullptr, 0);
  layer.SetName(layer.name);
  EXPECT_STREQ(layer.name, "name");
}

TEST(Layer, EmptyLayerTakesACellAtAnyPosition) {
  for (int32_t position : {0, 5, -1, INT32_MAX, INT32_MIN}) {
    Layer layer(4, 4, nullptr, nullptr, 0);
    EXPECT_TRUE(layer.AddCell(position, 0, nullptr));
    EXPECT_EQ(layer.cells.Count(), 1);
    Layer other(4, 4, nullptr, nullptr, 0);
    EXPECT_TRUE(other.InsertCell(position, 0, nullptr));
    EXPECT_EQ(other.cells.Count(), 1);
  }
}

TEST(Layer, BadPositionMakesNoCell) {
  Layer layer(4, 4, nullptr, nullptr, 0);
  NumberCells(&layer, 2);
  for (int32_t position : {5, 2, -1}) {
    EXPECT_FALSE(layer.AddCell(position, 0, nullptr));
    EXPECT_FALSE(layer.InsertCell(position, 0, nullptr));
    EXPECT_EQ(Drawings(&layer), "12");
  }
}

TEST(Layer, BadPositionLeavesThePassedImageToTheCaller) {
  Layer layer(4, 4, nullptr, nullptr, 0);
  NumberCells(&layer, 1);
  PackedImage* image = new PackedImage;
  image->Resize(2, 1, 7);
  EXPECT_FALSE(layer.AddCell(3, 0, image));
  EXPECT_EQ(Picture(image), "77");
  DestroyImage(image);
}

TEST(Layer, AddCellPlacesItDirectlyBehind) {
  Layer layer(4, 4, nullptr, nullptr, 0);
  NumberCells(&layer, 3);
  layer.CellAt(2);
  EXPECT_TRUE(layer.AddCell(0, 9, nullptr));
  EXPECT_EQ(layer.cells.CursorIndex(), 1);
  EXPECT_EQ(Drawings(&layer), "1923");
  EXPECT_TRUE(layer.AddCell(3, 8, nullptr));
  EXPECT_EQ(layer.cells.CursorIndex(), 4);
  EXPECT_EQ(Drawings(&layer), "19238");
}

TEST(Layer, InsertCellPlacesItDirectlyAhead) {
  Layer layer(4, 4, nullptr, nullptr, 0);
  NumberCells(&layer, 3);
  EXPECT_TRUE(layer.InsertCell(0, 9, nullptr));
  EXPECT_EQ(layer.cells.CursorIndex(), 0);
  EXPECT_EQ(Drawings(&layer), "9123");
  EXPECT_TRUE(layer.InsertCell(3, 8, nullptr));
  EXPECT_EQ(layer.cells.CursorIndex(), 3);
  EXPECT_EQ(Drawings(&layer), "91283");
}

TEST(Layer, NewCellIsAPackedImageOfTheLayersSizeAllFilled) {
  Layer layer(3, 2, nullptr, nullptr, 0);
  ASSERT_TRUE(layer.AddCell(0, 4, nullptr));
  CellImage* cell = layer.CellAt(0);
  EXPECT_EQ(cell->colors, 16);
  EXPECT_EQ(Picture(cell), "444/444");
}

TEST(Layer, NewCellHasThePrototypesClassButTheLayersSizeAndFill) {
  IndexedImage prototype;
  prototype.Resize(9, 9, 7);
  Layer layer(3, 2, nullptr, &prototype, 0);
  ASSERT_TRUE(layer.AddCell(0, 20, nullptr));
  ASSERT_TRUE(layer.InsertCell(0, 0, nullptr));
  EXPECT_EQ(layer.CellAt(0)->colors, 256);
  EXPECT_EQ(Picture(layer.CellAt(0)), "000/000");
  EXPECT_EQ(layer.CellAt(1)->colors, 256);
  EXPECT_EQ(Picture(layer.CellAt(1)), "kkk/kkk");
  EXPECT_EQ(prototype.width, 9);
}

TEST(Layer, PassedImageBecomesTheCellResizedAndFilled) {
  Layer layer(3, 2, nullptr, nullptr, 0);
  PackedImage* image = new PackedImage;
  image->Resize(5, 5, 8);
  ASSERT_TRUE(layer.AddCell(0, 2, image));
  EXPECT_EQ(layer.CellAt(0), image);
  EXPECT_EQ(Picture(image), "222/222");
  PackedImage* second = new PackedImage;
  ASSERT_TRUE(layer.InsertCell(0, 3, second));
  EXPECT_EQ(layer.CellAt(0), second);
  EXPECT_EQ(Picture(second), "333/333");
}

TEST(Layer, CellAtABadNumberIsNullWhereverTheCursorIs) {
  Layer layer(3, 2, nullptr, nullptr, 0);
  EXPECT_EQ(layer.CellAt(0), nullptr);
  NumberCells(&layer, 2);
  EXPECT_NE(layer.CellAt(1), nullptr);
  EXPECT_EQ(layer.CellAt(-1), nullptr);
  EXPECT_EQ(layer.CellAt(2), nullptr);
  EXPECT_EQ(layer.cells.CursorIndex(), 1);
}

TEST(Layer, DeleteCellRemovesThatCellAlone) {
  Layer layer(3, 2, nullptr, nullptr, 0);
  NumberCells(&layer, 4);
  EXPECT_TRUE(layer.DeleteCell(1));
  EXPECT_EQ(Drawings(&layer), "134");
  EXPECT_TRUE(layer.DeleteCell(2));
  EXPECT_EQ(Drawings(&layer), "13");
  EXPECT_TRUE(layer.DeleteCell(0));
  EXPECT_TRUE(layer.DeleteCell(0));
  EXPECT_EQ(layer.cells.Count(), 0);
}

TEST(Layer, DeleteCellOfABadNumberIsFalse) {
  Layer layer(3, 2, nullptr, nullptr, 0);
  EXPECT_FALSE(layer.DeleteCell(0));
  NumberCells(&layer, 2);
  EXPECT_FALSE(layer.DeleteCell(-1));
  EXPECT_FALSE(layer.DeleteCell(2));
  EXPECT_EQ(Drawings(&layer), "12");
}

TEST(Layer, ResizeReachesEveryCellAndKeepsTheTopLeft) {
  Layer layer(2, 2, nullptr, nullptr, 0);
  NumberCells(&layer, 2);
  Paint(layer.CellAt(0), "12/34");
  layer.Resize(4, 3, 9);
  EXPECT_EQ(layer.width, 4);
  EXPECT_EQ(layer.height, 3);
  EXPECT_EQ(Picture(layer.CellAt(0)), "1299/3499/9999");
  EXPECT_EQ(Picture(layer.CellAt(1)), "2299/2299/9999");
  layer.Resize(1, 2, 0);
  EXPECT_EQ(Picture(layer.CellAt(0)), "1/3");
}

TEST(Layer, CellsAddedAfterAResizeHaveTheNewSize) {
  Layer layer(2, 2, nullptr, nullptr, 0);
  layer.Resize(3, 1, 0);
  layer.AddCell(0, 5, nullptr);
  EXPECT_EQ(Picture(layer.CellAt(0)), "555");
}

TEST(Layer, ClearLeavesNoCellsNoSizeAndNoName) {
  PackedImage prototype;
  Layer layer(3, 2, "name", &prototype, 1);
  NumberCells(&layer, 3);
  layer.Clear();
  EXPECT_EQ(layer.cells.Count(), 0);
  EXPECT_EQ(layer.width, 0);
  EXPECT_EQ(layer.height, 0);
  EXPECT_EQ(layer.name, nullptr);
  EXPECT_EQ(layer.prototype, &prototype);
  layer.Clear();
  EXPECT_EQ(layer.cells.Count(), 0);
}

}  // namespace
}  // namespace sorvel
