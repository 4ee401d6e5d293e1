#include <gtest/gtest.h>

#include <tuple>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

// One layer with ink in every family: two cells, the second of which is shown and is blank.
struct Ghosts : DrawingTest {
  Ghosts() {
    Families(session);
    session.Command(kCommandAddCell);
  }
  static void Families(DrawingSession& session) {
    for (int i = 0; i < 3; ++i) {
      session.FillArea(10 * i, 0, 5, 5, i + 1);
      session.FillArea(10 * i, 10, 5, 5, i == 0 ? 4 : i + 8);
      session.FillArea(10 * i, 20, 5, 5, i == 0 ? 11 : i + 11);
    }
    session.DrawInkLine(0, 30, 10, 30);
  }
  static InkModel Ghost(int first) {
    InkModel model;
    for (int i = 0; i < 3; ++i) {
      model.Fill(10 * i, 0, 5, 5, first + i);
      if (i != 0) model.Fill(10 * i, 10, 5, 5, first + i);
    }
    model.Fill(0, 30, 11, 1, first);
    return model;
  }
};

TEST_F(Ghosts, ThePreviousCellShowsItsLinesInGreen) {
  session.Command(kCommandShowPrevious);
  EXPECT_TRUE(ViewShows(Ghost(19)));
}

TEST_F(Ghosts, TheNextCellShowsItsLinesInRed) {
  session.Command(kCommandShowNext);
  EXPECT_TRUE(ViewShows(Ghost(22)));
}

TEST_F(Ghosts, GhostsStandWhereTheCurrentCellStands) {
  session.Command(kCommandShowPrevious).Command(kToolLayerPosition).LeftDrag(0, 0, 7, 9);
  const PixelMatrix view = session.NowView();
  EXPECT_EQ(view.Count(19, 7, 9, 5, 5), 25);
  EXPECT_EQ(view.At(6, 9), 0u);
}

const Rules<Ghosts, "Ghosts"> kGhostsRules = {
    {"ASecondCommandTakesThemAway", Do().Commands({kCommandShowPrevious, kCommandShowPrevious}), OnEmpty()},
};

using PaleLayers = DrawingTest;

TEST_F(PaleLayers, OthersShowTheirLinesAndDarksAndNoWhite) {
  Ghosts::Families(session);
  session.AddLayer("B", 64, 48).Command(kCommandDimOthers);
  EXPECT_TRUE(ViewShows(Ghosts::Ghost(16)));
}

const Rules<DrawingTest, "PaleLayers"> kPaleLayersRules = {
    {"TheCurrentLayerComesOnTop",
     Do().FillArea(10, 10, 10, 10, 2).AddLayer("B", 64, 48).FillArea(15, 10, 10, 10, 3).Select(kLayerList, {0}),
     Do().Command(kCommandDimOthers), Ink().Fill(15, 10, 10, 10, 18).Fill(10, 10, 10, 10, 2)},
};

const Rules<DrawingTest, "CurrentCellOnly"> kCurrentCellOnlyRules = {
    {"LeavesTheOtherLayersOut", Do().FillArea(10, 10, 10, 10, 2).AddLayer("B", 64, 48).FillArea(15, 10, 10, 10, 3),
     Do().Command(kCommandCurrentCellOnly), Ink().Fill(15, 10, 10, 10, 3)},
};

struct EmphasisedLines : DrawingTest {
  EmphasisedLines() {
    session.DrawInkLine(10, 10, 20, 10);
    session.FillArea(10, 20, 5, 5, 9);
    session.FillArea(20, 20, 5, 5, 10);
    session.FillArea(30, 20, 5, 5, 1);
    session.Repaint();
  }
  void ExpectColours(unsigned line, unsigned dark, unsigned light) {
    const PixelMatrix screen = session.NowScreen();
    EXPECT_EQ(screen.At(15, 10), line);
    EXPECT_EQ(screen.At(12, 22), dark);
    EXPECT_EQ(screen.At(22, 22), light);
    EXPECT_EQ(screen.At(32, 22), 0x000000u);
  }
};

TEST_F(EmphasisedLines, ShowsTheThreeLineColoursInPrimaries) {
  session.Command(kCommandLineEmphasis);
  ExpectColours(0x0000FF, 0xFF0000, 0x00FF00);
  EXPECT_EQ(session.Cut()["lineEmphasis"], true);
}

TEST_F(EmphasisedLines, ComesOffAgain) {
  session.Command(kCommandLineEmphasis).Command(kCommandLineEmphasis);
  ExpectColours(0x000000, 0x555555, 0xAAAAAA);
  EXPECT_EQ(session.Cut()["lineEmphasis"], false);
}

TEST_F(EmphasisedLines, LeavesThePixelsOfTheView) {
  const PixelMatrix before = session.NowView();
  session.Command(kCommandLineEmphasis);
  EXPECT_TRUE(session.NowView() == before);
}

TEST_F(EmphasisedLines, BelongsToItsWindow) {
  NewCutValues values;
  values.width = 64;
  values.height = 48;
  session.Command(kCommandLineEmphasis).NewCut(values).DrawInkLine(10, 10, 20, 10).Repaint();
  EXPECT_EQ(session.NowScreen().At(15, 10), 0x000000u);
  EXPECT_EQ(session.Cut()["lineEmphasis"], false);
}

using ViewOnTheScreen = DrawingTest;

TEST_F(ViewOnTheScreen, ARepaintShowsEveryPixelInItsZoom) {
  DrawingSession other({.width = 32, .height = 24, .clientWidth = 64, .clientHeight = 48});
  other.Command(kToolZoom).Press(32, 24).Command(kToolLine).Mouse("ldown", 6, 6).Mouse("lup", 40, 30).Repaint();
  const PixelMatrix view = other.NowView();
  const PixelMatrix screen = other.NowScreen();
  for (int y = 0; y < 48; ++y) {
    for (int x = 0; x < 64; ++x) {
      EXPECT_EQ(screen.At(x, y), view.At(x / 2, y / 2) == 0 ? 0xE1FFFFu : 0x000000u) << x << ", " << y;
    }
  }
}

TEST_F(ViewOnTheScreen, InkReachesTheScreenWithoutARepaint) {
  session.LeftDrag(10, 10, 20, 10);
  const PixelMatrix screen = session.NowScreen();
  for (int x = 10; x <= 20; ++x) EXPECT_EQ(screen.At(x, 10), 0x000000u) << x;
}

}  // namespace
}  // namespace rules
