#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

TEST(PenStroke, AStepRoundACornerDrawsADiagonal) {
  DrawingSession session;
  session.Press(10, 10);
  session.Move(10, 11);
  session.Move(11, 11);
  session.Release(11, 11);
  InkModel model;
  model.Set(10, 10, 8);
  model.Set(11, 11, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, WithoutMuraRemovalTheCornerIsDrawn) {
  DrawingSession session;
  session.Command(kCommandMuraRemoval);
  session.Press(10, 10);
  session.Move(10, 11);
  session.Move(11, 11);
  session.Release(11, 11);
  InkModel model;
  model.Set(10, 10, 8);
  model.Set(10, 11, 8);
  model.Set(11, 11, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ACornerFromTheSideIsTakenOutToo) {
  DrawingSession session;
  session.Press(20, 20);
  session.Move(19, 20);
  session.Move(19, 19);
  session.Release(19, 19);
  InkModel model;
  model.Set(20, 20, 8);
  model.Set(19, 19, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ACornerStepsBackByOnePixelAlone) {
  DrawingSession session;
  session.Press(20, 20);
  session.Move(15, 20);
  session.Move(15, 15);
  session.Release(15, 15);
  InkModel model;
  model.Line(20, 20, 16, 20);
  model.Line(16, 20, 15, 15);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ACornerUnderneathStepsBackUpwards) {
  DrawingSession session;
  session.Press(20, 20);
  session.Move(20, 26);
  session.Move(26, 26);
  session.Release(26, 26);
  InkModel model;
  model.Line(20, 20, 20, 25);
  model.Line(20, 25, 26, 26);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ACornerAboveStepsBackDownwards) {
  DrawingSession session;
  session.Press(20, 20);
  session.Move(20, 14);
  session.Move(26, 14);
  session.Release(26, 14);
  InkModel model;
  model.Line(20, 20, 20, 15);
  model.Line(20, 15, 26, 14);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ACornerAtTheRightStepsBackToTheLeft) {
  DrawingSession session;
  session.Press(20, 20);
  session.Move(26, 20);
  session.Move(26, 26);
  session.Release(26, 26);
  InkModel model;
  model.Line(20, 20, 25, 20);
  model.Line(25, 20, 26, 26);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ASlantedStepIsNoCorner) {
  DrawingSession session;
  session.Press(20, 20);
  session.Move(20, 26);
  session.Move(26, 27);
  session.Release(26, 27);
  InkModel model;
  model.Line(20, 20, 20, 26);
  model.Line(20, 26, 26, 27);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, TheLastStretchWaitsForTheRelease) {
  DrawingSession session;
  session.Press(10, 10);
  session.Move(20, 12);
  InkModel model;
  model.Set(10, 10, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Release(20, 12);
  model.Line(10, 10, 20, 12);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, APressStampsWithoutTurningIntoLineBlack) {
  DrawingSession session;
  session.Press(10, 10);
  EXPECT_EQ(session.NowView().At(10, 10), 1u);
}

TEST(PenStroke, AClickIsStampedAgainAsALineAtTheRelease) {
  DrawingSession session;
  session.LeftClick(10, 10);
  EXPECT_EQ(session.NowView().At(10, 10), 8u);
}

TEST(PenStroke, AClickWithoutMuraRemovalStampsOnce) {
  DrawingSession session;
  session.Command(kCommandMuraRemoval);
  session.LeftClick(10, 10);
  EXPECT_EQ(session.NowView().At(10, 10), 1u);
}

TEST(PenStroke, APressSetsTheUndoRectToThePenBlock) {
  DrawingSession session;
  session.Press(10, 12);
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 8, 8, 8}));
}

TEST(PenStroke, EachSegmentGrowsTheUndoRect) {
  DrawingSession session;
  session.Command(kCommandMuraRemoval);
  session.Press(10, 10);
  session.Move(20, 15);
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 6, 19, 14}));
  session.Move(18, 30);
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 6, 19, 29}));
}

TEST(PenStroke, TheDelayedTailGrowsTheUndoRectAtTheRelease) {
  DrawingSession session;
  session.Press(10, 10);
  session.Move(20, 15);
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 6, 9, 9}));
  session.Release(20, 15);
  EXPECT_EQ(session.NowUndoRect(), (Area{6, 6, 19, 14}));
}

TEST(PenStroke, HoveringKeepsTheUndoRect) {
  DrawingSession session;
  session.LeftClick(10, 10);
  const Area before = session.NowUndoRect();
  session.Move(40, 40);
  EXPECT_EQ(session.NowUndoRect(), before);
}

TEST(PenStroke, AStrokeIsOneUndoStep) {
  DrawingSession session;
  session.DrawInkLine(40, 5, 50, 5);
  session.Command(kToolFreePen);
  session.LeftDrag(10, 10, 20, 30);
  session.Command(kCommandUndo);
  InkModel model;
  model.Line(40, 5, 50, 5);
  EXPECT_TRUE(Shows(session.NowView(), model));
  session.Command(kCommandUndo);
  model.Line(10, 10, 20, 30);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, APulseLetsTheStrokeGoOn) {
  DrawingSession session;
  session.Command(kCommandMuraRemoval);
  session.Press(10, 10);
  session.Repaint();
  session.Move(20, 10);
  InkModel model;
  model.Line(10, 10, 20, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, MovesAfterTheReleaseDrawNothing) {
  DrawingSession session;
  session.LeftClick(10, 10);
  session.Move(30, 30);
  session.Repaint();
  InkModel model;
  model.Set(10, 10, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, PositionsAreSigned) {
  DrawingSession session;
  session.Command(kCommandMuraRemoval);
  session.Press(5, 10);
  session.Move(-4, 10);
  InkModel model;
  model.Line(0, 10, 5, 10);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST(PenStroke, ADoubleClickMessageIsNoPress) {
  DrawingSession session;
  session.Mouse("ldblclk", 10, 10).Mouse("lup", 10, 10).Command(kToolFill);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

TEST(PenStroke, LayerPositionMovesThePointIntoTheLayer) {
  DrawingSession session;
  session.Command(kToolLayerPosition);
  session.LeftDrag(10, 10, 15, 13);
  session.Command(kToolFreePen);
  session.Press(20, 20);
  EXPECT_EQ(session.NowView().At(20, 20), 1u);
  EXPECT_EQ(session.NowUndoRect(), (Area{11, 13, 8, 8}));
}

TEST(PenStroke, ABlankRecordTakesNoInk) {
  DrawingSession session;
  session.Command(kCommandBlankCell);
  session.LeftDrag(10, 10, 20, 20);
  session.Command(kCommandBlankCell);
  EXPECT_TRUE(Shows(session.NowView(), InkModel()));
}

TEST(PenStroke, AToneIsDrawnAsADither) {
  DrawingSession session;
  session.Pick(6, 1);
  session.PickSize(7);
  session.Command(kCommandMuraRemoval);
  session.LeftDrag(10, 10, 40, 22);
  InkModel model;
  model.Line(10, 10, 40, 22, {.shape = 14, .tone = 6, .colorA = 1, .colorB = 2});
  EXPECT_TRUE(Shows(session.NowView(), model));
}

// Half size: one window pixel is two cut pixels, and the client is as large as the shrunken picture.
struct HalfSize : testing::Test {
  HalfSize() {
    session.Command(kToolZoom).RightClick(1, 1);
    session.Line("client 32 24").Command(kToolFreePen);
  }
  DrawingSession session;
};

TEST_F(HalfSize, CornersAreJudgedInWindowPixels) {
  session.Press(10, 10);
  session.Move(10, 11);
  session.Move(11, 11);
  session.Release(11, 11);
  InkModel model;
  model.Line(20, 20, 20, 20);
  model.Line(20, 20, 22, 22);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

TEST_F(HalfSize, ACornerStepsBackByAWindowPixel) {
  session.Press(10, 10);
  session.Move(10, 15);
  session.Move(15, 15);
  session.Release(15, 15);
  InkModel model;
  model.Line(20, 20, 20, 28);
  model.Line(20, 28, 30, 30);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
