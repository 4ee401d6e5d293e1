#include <algorithm>

#include "platform/fonts.h"
#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class TextToolTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolText);
    SetTextToolFont("Sans", 16, 4, 400);
    host.answeredText = "A";
  }

  bool HasFont() const { return textToolFont.handle != nullptr; }
  Bounds InkBox() {
    Bounds box = {kLayerNameEdit, kLayerNameEdit, -1, -1};
    for (const Point& point : Inked()) {
      box = {std::min(box.left, point.x), std::min(box.top, point.y), std::max(box.right, point.x + 1),
             std::max(box.bottom, point.y + 1)};
    }
    return box;
  }
};

TEST_F(TextToolTest, TheFirstClickAsksAndTheSecondPlacesTheText) {
  ASSERT_TRUE(HasFont());
  Click(4, 4);
  EXPECT_EQ(host.textDialogs, 1);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_GT(OverlaySize(), 0u);
  Move(30, 30);
  Click(30, 30);
  EXPECT_EQ(host.textDialogs, 1);
  EXPECT_GT(InkCount(), 4u);
  EXPECT_GE(InkBox().left, 30);
  EXPECT_GE(InkBox().top, 30);
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_TRUE(ViewIsComposed());
  EXPECT_EQ(cut->undoRect.x, 30);
  EXPECT_EQ(cut->undoRect.y, 30);
  Command(kCommandUndo);
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(TextToolTest, TheTextIsPaintedInPenInkAtThePlaceInTheLayer) {
  ASSERT_TRUE(HasFont());
  cut->CurrentFrame()->SetRecordPosition(0, 7, 5);
  cut->RepaintAll();
  currentPen.colorB = 3;
  Click(20, 20);
  Move(20, 20);
  Click(20, 20);
  EXPECT_EQ(CountOf(3), InkCount());
  EXPECT_GE(InkBox().left, 13);
  EXPECT_EQ((Point{cut->undoRect.x, cut->undoRect.y}), (Point{13, 15}));
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(TextToolTest, InkBelowTheTextStays) {
  ASSERT_TRUE(HasFont());
  Paint(0, 0, 64, 64, 4);
  Click(20, 20);
  Click(20, 20);
  EXPECT_GT(CountOf(1), 4u);
  EXPECT_EQ(CountOf(1) + CountOf(4), 64u * 64);
}

TEST_F(TextToolTest, ACancelEndsIt) {
  host.acceptsText = false;
  Click(10, 10);
  EXPECT_EQ(OverlaySize(), 0u);
  Click(10, 10);
  EXPECT_EQ(host.textDialogs, 2);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(cut->undoCell, nullptr);
}

TEST_F(TextToolTest, AnEmptyTextGivesAFrameOfSizeZero) {
  host.answeredText = "";
  Click(10, 10);
  Move(20, 20);
  EXPECT_EQ(OverlaySize(), 0u);
  Click(20, 20);
  EXPECT_EQ(cut->undoRect, (Rect{20, 20, 0, 0}));
  EXPECT_EQ(InkCount(), 0u);
}

TEST_F(TextToolTest, LinesStepDownByTheirHeightAndTheSpacing) {
  ASSERT_TRUE(HasFont());
  int32_t width = 0;
  int32_t height = 0;
  platform::MeasureText(cut->window, textToolFont.handle, "A", 1, &width, &height);
  host.answeredText = "A\r\nA";
  Click(0, 0);
  Click(0, 0);
  EXPECT_EQ(cut->undoRect, (Rect{0, 0, width, 2 * height + 4}));
  // The same picture in both lines.
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      if (y + height + 4 >= kSide) continue;
      EXPECT_EQ(Pixel(x, y), Pixel(x, y + height + 4)) << x << ", " << y;
    }
  }
}

TEST_F(TextToolTest, AVerticalFontPutsItsFirstLineAtTheRight) {
  SetTextToolFont("@Sans", 16, 4, 400);
  ASSERT_TRUE(HasFont());
  int32_t length = 0;
  int32_t height = 0;
  platform::MeasureText(cut->window, textToolFont.handle, "M", 1, &length, &height);
  host.answeredText = "M\r\n";
  host.answeredText += ".";
  Click(0, 0);
  Click(0, 0);
  EXPECT_EQ(cut->undoRect.width, 2 * height + 4);
  size_t left = 0;
  size_t right = 0;
  for (const Point& point : Inked()) ++(point.x < height + 2 ? left : right);
  EXPECT_GT(right, left);
}

TEST_F(TextToolTest, ARightClickEndsItAndAnIdleOneOpensThePicker) {
  Click(10, 10);
  Move(20, 20);
  RightClick(20, 20);
  EXPECT_EQ(OverlaySize(), 0u);
  EXPECT_FALSE(IsPickerOpen());
  Click(10, 10);
  EXPECT_EQ(host.textDialogs, 2);
  RightClick(10, 10);
  RightClick(10, 10);
  EXPECT_TRUE(IsPickerOpen());
}

TEST_F(TextToolTest, ThePulseTakesTheFrameOffAndAMoveBringsItBack) {
  ASSERT_TRUE(HasFont());
  Click(4, 4);
  const size_t size = OverlaySize();
  cut->RepaintAll();
  EXPECT_EQ(OverlaySize(), 0u);
  Move(4, 4);
  EXPECT_EQ(OverlaySize(), size);
}

TEST_F(TextToolTest, ASecondPressWithoutAReleaseLosesTheText) {
  Click(4, 4);
  Press(4, 4);
  Press(4, 4);
  Release(4, 4);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_EQ(OverlaySize(), 0u);
  Click(4, 4);
  EXPECT_EQ(host.textDialogs, 2);
}

TEST_F(TextToolTest, TheMaskLooksAtTheTextAndNotAtTheCell) {
  ASSERT_TRUE(HasFont());
  Paint(0, 0, 64, 64, 4);
  maskFlags = 1u << 4;
  Click(10, 10);
  Click(10, 10);
  EXPECT_GT(CountOf(1), 4u);
}

TEST_F(TextToolTest, WithoutAFontNothingIsDrawn) {
  SetTextToolFont("", 0, 0, 0);
  Click(10, 10);
  Click(10, 10);
  EXPECT_EQ(InkCount(), 0u);
  EXPECT_TRUE(ViewIsComposed());
}

TEST_F(TextToolTest, ATextIsPlacedAtItsFrameAndNotAtTheClick) {
  UseTool(kToolText);
  SetTextToolFont("Sans", 16, 4, 400);
  host.answeredText = "A";
  Click(10, 12);
  // No move brings the frame along.
  Click(30, 30);
  EXPECT_EQ((Point{cut->undoRect.x, cut->undoRect.y}), (Point{10, 12}));
}

}  // namespace
}  // namespace sorvel
