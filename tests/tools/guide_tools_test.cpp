#include "resources/ids.h"
#include "tools/tool_fixture.h"

namespace sorvel {
namespace {

class FocusLinesTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolFocusLines);
  }
};

TEST_F(FocusLinesTest, ARightClickEndsItAndTheNextOneOpensThePicker) {
  Click(30, 30);
  Move(50, 50);
  RightClick(50, 50);
  EXPECT_FALSE(IsPickerOpen());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  RightClick(50, 50);
  EXPECT_TRUE(IsPickerOpen());
}

class ParallelLinesTest : public testtools::ToolTest {
 protected:
  void SetUp() override {
    ToolTest::SetUp();
    UseTool(kToolParallelLines);
  }
};

TEST_F(ParallelLinesTest, TheTurnedBandIsShownAtTheMouse) {
  Drag(10, 10, 20, 10);
  Move(30, 30);
  EXPECT_EQ(OverlaySize(), 10u);
  RightClick(30, 30, kControl);
  EXPECT_EQ(OverlaySize(), 10u);
  RightClick(30, 30);
  EXPECT_EQ(OverlaySize(), 0u);
}

TEST_F(ParallelLinesTest, RightClicksEndAllStatesAndIdleOpensThePicker) {
  Click(10, 10);
  Move(20, 20);
  RightClick(20, 20);
  EXPECT_FALSE(IsPickerOpen());
  Drag(10, 10, 20, 10);
  Move(30, 30);
  RightClick(30, 30);
  EXPECT_FALSE(IsPickerOpen());
  cut->Pulse();
  EXPECT_EQ(OverlaySize(), 0u);
  RightClick(30, 30);
  EXPECT_TRUE(IsPickerOpen());
}

}  // namespace
}  // namespace sorvel
