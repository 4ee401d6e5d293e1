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

TEST_F(TextToolTest, InkBelowTheTextStays) {
  ASSERT_TRUE(HasFont());
  Paint(0, 0, 64, 64, 4);
  Click(20, 20);
  Click(20, 20);
  EXPECT_GT(CountOf(1), 4u);
  EXPECT_EQ(CountOf(1) + CountOf(4), 64u * 64);
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
