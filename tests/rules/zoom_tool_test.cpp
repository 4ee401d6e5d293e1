#include <gtest/gtest.h>

#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using Pair = std::pair<int, int>;

struct ZoomTool : DrawingTest {
  ZoomTool() : DrawingTest({.width = 200, .height = 150, .clientWidth = 64, .clientHeight = 48}) {
    session.Command(kToolZoom);
  }
};

ScriptSession In(int x = 32, int y = 24) {
  return Do().Press(x, y);
}

ScriptSession Out(int x = 32, int y = 24) {
  return Do().Mouse("rdown", x, y);
}

const Rules<ZoomTool, "ZoomTool"> kZoomToolRules = {
    {"APictureSmallerThanTheClientGetsANegativePosition", Out(60, 45), Out(60, 45), Out(60, 45),
     Has("cut/zoomNumerator,zoomDenominator", "1 4", "cut/scrollX,scrollY", nlohmann::json::array({50 - 64, 37 - 48}))},
    {"AnotherWindowBeginsAtFullSize", In(), Do().NewCut(), Has("cut/zoomNumerator,zoomDenominator", "1 1")},
    {"LevelsGoUpByWholeNumbers", In(), Has("cut/zoomNumerator,zoomDenominator", "2 1"), In(),
     Has("cut/zoomNumerator,zoomDenominator", "3 1"), Out(), Has("cut/zoomNumerator,zoomDenominator", "2 1")},
    {"LevelsGoDownByFractions", Out(), Has("cut/zoomNumerator,zoomDenominator", "1 2"), Out(),
     Has("cut/zoomNumerator,zoomDenominator", "1 3"), In(), Has("cut/zoomNumerator,zoomDenominator", "1 2")},
    {"FromHalfSizeComesFullSize", Out(), In(), Has("cut/zoomNumerator,zoomDenominator", "1 1")},
    {"OtherMessagesDoNothing",
     Do().Release(32, 24).Move(10, 10).RightRelease(32, 24).Mouse("ldblclk", 32, 24).Mouse("rdblclk", 32, 24),
     Has("cut/zoomNumerator,zoomDenominator", "1 1")},
    {"TheClickedPointComesToTheCentre", In(40, 30),
     // The point 40, 30 stands at 80, 60 of the doubled picture.
     Has("cut/scrollX,scrollY", Pair{80 - 32, 60 - 24})},
    {"APointNearTheCornerStopsAtTheOrigin", In(20, 10), Has("cut/scrollX,scrollY", "8 0")},
    {"APointNearTheFarCornerStopsAtTheLastPage",
     Do().Line("scroll h thumbposition 136").Line("scroll v thumbposition 102"), In(60, 45),
     Has("cut/scrollX,scrollY", Pair{400 - 64, 300 - 48})},
    {"ZoomingOutCentresThePointToo", Do().Line("scroll h thumbposition 100").Line("scroll v thumbposition 80"),
     Out(20, 10),
     // The point 120, 90 stands at 60, 45 of the halved picture.
     Has("cut/scrollX,scrollY", Pair{60 - 32, 45 - 24})},
    {"TheGridSnapsThePoint", Do().Grid(8, 8), In(36, 30),
     // 36 snaps to 32, 30 snaps to 32.
     Has("cut/scrollX,scrollY", Pair{64 - 32, 64 - 24})},
    {"ABlankRecordZoomsAllTheSame", Do().Command(kCommandBlankCell), In(),
     Has("cut/zoomNumerator,zoomDenominator", "2 1")},
};

TEST_F(ZoomTool, KeysZoomAtTheCursor) {
  for (const char key : {'s', 'l'}) {
    DrawingSession other({.width = 200, .height = 150, .clientWidth = 64, .clientHeight = 48});
    other.Move(40, 30).Char(key);
    const nlohmann::json cut = other.Cut();
    EXPECT_EQ(cut["zoomNumerator"], 2);
    EXPECT_EQ(cut["scrollX"], 48);
    EXPECT_EQ(cut["scrollY"], 36);
  }
}

TEST_F(ZoomTool, KeysZoomOutToo) {
  for (const char key : {'a', ';'}) {
    DrawingSession other({.width = 200, .height = 150, .clientWidth = 64, .clientHeight = 48});
    other.Move(40, 30).Char(key);
    EXPECT_EQ(other.Cut()["zoomDenominator"], 2);
  }
}

TEST_F(ZoomTool, KeysKeepTheTool) {
  DrawingSession other;
  other.Move(40, 30).Char('s');
  EXPECT_EQ(other.NowState()["frame"]["currentTool"], kToolFreePen);
}

// The mapping between window and canvas.

TEST(ViewTransform, ASmallPictureIsCentredWhateverItsPosition) {
  DrawingSession session({.clientWidth = 640, .clientHeight = 480});
  session.Line("scroll h linedown").Line("scroll v linedown").Press(288 + 10, 216 + 7);
  InkModel model;
  model.Set(10, 7, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(ViewTransform, AnOddMarginIsCutDown) {
  DrawingSession session({.clientWidth = 71, .clientHeight = 53});
  session.Press(3 + 10, 2 + 7);
  InkModel model;
  model.Set(10, 7, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(ViewTransform, AtDoubleSizeTwoPixelsAreOne) {
  DrawingSession session({.width = 32, .height = 24, .clientWidth = 64, .clientHeight = 48});
  session.Command(kToolZoom).Press(32, 24).Command(kToolFreePen).Press(21, 10);
  InkModel model(32, 24);
  model.Set(10, 5, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(ViewTransform, AtDoubleSizeTheMarginNextToThePictureIsItsEdge) {
  DrawingSession session({.width = 32, .height = 24, .clientWidth = 84, .clientHeight = 68});
  session.Command(kToolZoom).Press(32, 24).Command(kToolFreePen).Press(9, 20);
  InkModel model(32, 24);
  model.Set(0, 5, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// At a quarter the canvas leaves a column of the window free.
TEST(ViewTransform, WhatASmallerPictureLeavesFreeIsMargin) {
  DrawingSession session({.width = 16, .height = 4, .clientWidth = 5, .clientHeight = 4});
  session.Command(kToolZoom).Mouse("rdown", 0, 1).Mouse("rdown", 4, 1).Mouse("rdown", 4, 1);
  const PixelMatrix screen = session.NowScreen();
  for (int x = 0; x < 4; ++x) EXPECT_EQ(screen.At(x, 1), 0xE1FFFFu) << x;
  EXPECT_EQ(screen.At(4, 1), 0x000000u);
}

TEST(ViewTransform, AtAThirdOnePixelIsThree) {
  DrawingSession session({.width = 96, .height = 72, .clientWidth = 32, .clientHeight = 24});
  session.Command(kToolZoom).Mouse("rdown", 1, 1).Mouse("rdown", 1, 1).Command(kToolFreePen).Press(10, 5);
  InkModel model(96, 72);
  model.Set(30, 15, 1);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
