#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

ScriptSession Place(const std::string& text, int x, int y) {
  ScriptSession place;
  place.Command(kToolText).Dialog(kTextDialog, {{kTextDialogEdit, text}}).LeftClick(8, 8);
  return place.Move(x, y).LeftClick(x, y);
}

struct TextTool : DrawingTest {
  TextTool() : DrawingTest({.width = 160, .height = 120}) { session.Command(kToolText); }
  int Ink(const PixelMatrix& view) { return 160 * 120 - view.Count(0); }
};

TEST_F(TextTool, TheSecondClickPaintsTheTextInPenInk) {
  session.Then(Place("HH", 20, 30));
  const PixelMatrix view = session.NowView();
  EXPECT_GT(Ink(view), 0);
  EXPECT_EQ(view.Count(1), Ink(view));
}

TEST_F(TextTool, TheInkLiesInTheUndoRectAtTheClick) {
  session.Then(Place("HH", 20, 30));
  const Area rect = session.NowUndoRect();
  EXPECT_EQ(rect[0], 20);
  EXPECT_EQ(rect[1], 30);
  const PixelMatrix view = session.NowView();
  EXPECT_GT(view.Count(1), 0);
  EXPECT_EQ(view.Count(1, rect[0], rect[1], rect[2], rect[3]), Ink(view));
}

TEST_F(TextTool, AfterACancelTheNextClickAsksAgain) {
  session.Dialog(kTextDialog, {{kTextDialogEdit, "HH"}}, "cancel").LeftClick(10, 10);
  session.Dialog(kTextDialog, {{kTextDialogEdit, "HH"}});
  session.LeftClick(10, 10);
  EXPECT_EQ(Ink(session.NowView()), 0);
  session.LeftClick(10, 10);
  EXPECT_GT(Ink(session.NowView()), 0);
}

TEST_F(TextTool, AfterAPlacementTheNextClickAsksAgain) {
  session.Then(Place("HH", 20, 30));
  const PixelMatrix placed = session.NowView();
  session.Dialog(kTextDialog, {}, "cancel").LeftClick(80, 80);
  EXPECT_TRUE(session.NowView() == placed);
}

TEST_F(TextTool, TheTextStaysForTheNextUse) {
  session.Then(Place("HH", 20, 5));
  const int once = Ink(session.NowView());
  session.Dialog(kTextDialog, {}).LeftClick(8, 8).Move(20, 65).LeftClick(20, 65);
  EXPECT_EQ(Ink(session.NowView()), 2 * once);
}

TEST_F(TextTool, ALongerTextIsWider) {
  session.Then(Place("HH", 10, 10));
  const Area two = session.NowUndoRect();
  DrawingSession other({.width = 160, .height = 120});
  other.Then(Place("HHHH", 10, 10));
  const Area four = other.NowUndoRect();
  EXPECT_GT(four[2], two[2]);
  EXPECT_EQ(four[3], two[3]);
}

TEST_F(TextTool, ASecondLineAddsItsHeightAndTheSpacing) {
  session.Then(Place("H", 10, 10));
  const Area one = session.NowUndoRect();
  DrawingSession other({.width = 160, .height = 120});
  other.Then(Place("H\nH", 10, 10));
  const Area two = other.NowUndoRect();
  EXPECT_EQ(two[2], one[2]);
  EXPECT_EQ(two[3], 2 * one[3] + 12);
}

TEST_F(TextTool, TheLinesStepByTheirHeightAndTheSpacing) {
  session.Then(Place("H", 10, 10));
  const int height = session.NowUndoRect()[3];
  const PixelMatrix one = session.NowView();
  DrawingSession other({.width = 160, .height = 120});
  other.Then(Place("H\nH", 10, 10));
  const PixelMatrix two = other.NowView();
  const int step = height + 12;
  ASSERT_LE(10 + step + height, 120);
  for (int y = 10; y < 10 + height; ++y) {
    for (int x = 10; x < 60; ++x) {
      EXPECT_EQ(two.At(x, y), one.At(x, y)) << x << ", " << y;
      EXPECT_EQ(two.At(x, y + step), one.At(x, y)) << x << ", " << y;
    }
  }
}

TEST_F(TextTool, VerticalTextHasItsFirstLineAtTheRight) {
  session.SetSettings("[setup]\r\nfont=@Gothic, 24, 12, 400\r\n");
  session.Then(Place("HH\n ", 20, 10));
  const Area rect = session.NowUndoRect();
  const PixelMatrix view = session.NowView();
  EXPECT_GT(Ink(view), 0);
  EXPECT_EQ(view.Count(1, rect[0], rect[1], rect[2] / 2, rect[3]), 0);
}

TEST_F(TextTool, VerticalTextGrowsDownwards) {
  session.SetSettings("[setup]\r\nfont=@Gothic, 24, 12, 400\r\n");
  session.Then(Place("H", 20, 10));
  const Area one = session.NowUndoRect();
  DrawingSession other({.width = 160, .height = 120});
  other.SetSettings("[setup]\r\nfont=@Gothic, 24, 12, 400\r\n");
  other.Then(Place("HH", 20, 10));
  const Area two = other.NowUndoRect();
  EXPECT_EQ(two[2], one[2]);
  EXPECT_GT(two[3], one[3]);
}

TEST_F(TextTool, TheMaskDoesNotLookAtWhatLiesBelow) {
  session.Then(Place("HH", 20, 30));
  const PixelMatrix free = session.NowView();
  DrawingSession other({.width = 160, .height = 120});
  other.FillArea(0, 0, 160, 120, 4).Mask({4});
  other.Then(Place("HH", 20, 30));
  EXPECT_EQ(other.NowView().Count(1), free.Count(1));
}

TEST_F(TextTool, ADitherIsReadWithTheColumnsOffsetInBothDirections) {
  session.Pick(6, 2);
  const int left = 21;
  const int top = 31;
  session.Then(Place("HHHH", left, top));
  const PixelMatrix view = session.NowView();
  EXPECT_GT(Ink(view), 0);
  for (int y = 0; y < 120; ++y) {
    for (int x = 0; x < 160; ++x) {
      const int value = static_cast<int>(view.At(x, y));
      if (value != 0) {
        EXPECT_EQ(value, ModelInkAt({.tone = 6, .colorA = 2, .colorB = 3}, x, left + y - top)) << x << ", " << y;
      }
    }
  }
}

const Rules<TextTool, "TextTool"> kTextToolRules = {
    {"AnEmptyTextDrawsNothing", Place("", 20, 30), Ink()},
    {"TheFirstClickAsksAndDrawsNothing", Do().Dialog(kTextDialog, {{kTextDialogEdit, "HH"}}).LeftClick(10, 10), Ink()},
    {"ARightClickDropsTheText",
     Do().Dialog(kTextDialog, {{kTextDialogEdit, "HH"}}).LeftClick(10, 10).RightClick(10, 10),
     Do().Dialog(kTextDialog, {}, "cancel").LeftClick(10, 10), Ink()},
    {"APlacementIsOneUndoStep", Place("HH", 20, 30), Do().Command(kCommandUndo), Ink()},
    {"ThePictureUnderTheBlockComesBack", Do().FillArea(0, 0, 160, 120, 3).Command(kToolText), Place("HH", 20, 30),
     Has("pixels/0", 0)},
};

TEST_F(TextTool, AFrameStandsAtTheClick) {
  const PixelMatrix screen = session.NowScreen();
  session.Dialog(kTextDialog, {{kTextDialogEdit, "HH"}});
  session.LeftClick(10, 10);
  EXPECT_FALSE(session.NowScreen() == screen);
  session.RightClick(10, 10);
  EXPECT_TRUE(session.NowScreen() == screen);
}

TEST_F(TextTool, ALayerElsewhereGetsTheTextUnderTheMouse) {
  session.Command(kToolLayerPosition).LeftDrag(10, 10, 15, 13).Command(kToolText);
  session.Then(Place("HH", 25, 33));
  const Area rect = session.NowUndoRect();
  EXPECT_EQ(rect[0], 20);
  EXPECT_EQ(rect[1], 30);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(1, 25, 33, rect[2], rect[3]), Ink(view));
  EXPECT_GT(Ink(view), 0);
}

}  // namespace
}  // namespace rules
