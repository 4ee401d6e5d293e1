#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

namespace rules {
namespace {

using Json = nlohmann::json;

TEST(PenState, StartsAsTheOnePixelRoundPenOfPlainBlack) {
  ScriptSession session;
  const int state = session.State();
  session.Run();
  const Json pen = session.StateAt(state)["pen"];
  EXPECT_EQ(pen["shape"], 7);
  EXPECT_EQ(pen["tone"], 0);
  EXPECT_EQ(pen["colorA"], 0);
  EXPECT_EQ(pen["colorB"], 1);
  EXPECT_EQ(pen["penSign"], 1);
  EXPECT_EQ(pen["muraRemoval"], 1);
  EXPECT_EQ(pen["maskFlags"], 0);
}

TEST(PenState, SquarePenCommandMirrorsTheShape) {
  DrawingSession session;
  session.PickSize(2);
  session.Command(kCommandSquarePen);
  Json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 5);
  EXPECT_EQ(pen["penSign"], -1);
  session.Command(kCommandSquarePen);
  pen = session.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 9);
  EXPECT_EQ(pen["penSign"], 1);
}

TEST(PenState, SquarePenCommandKeepsTheOnePixelShape) {
  DrawingSession session;
  session.Command(kCommandSquarePen);
  const Json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 7);
  EXPECT_EQ(pen["penSign"], -1);
}

TEST(PenState, SquarePenCommandNeedsNoCut) {
  ScriptSession session;
  session.Command(kCommandSquarePen);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["penSign"], -1);
}

TEST(PenState, MuraCommandFlipsTheSwitch) {
  DrawingSession session;
  session.Command(kCommandMuraRemoval);
  EXPECT_EQ(session.NowState()["pen"]["muraRemoval"], 0);
  session.Command(kCommandMuraRemoval);
  EXPECT_EQ(session.NowState()["pen"]["muraRemoval"], 1);
}

TEST(PenState, MuraCommandDoesNothingWithoutACut) {
  ScriptSession session;
  session.Command(kCommandMuraRemoval);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["muraRemoval"], 1);
}

class MaskButton : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(MaskButton, ProtectsItsIndex) {
  const auto& [control, bit] = GetParam();
  ScriptSession session;
  session.Dialog(kMaskDialog, {{control, "on"}}).Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["maskFlags"], 1 << bit);
}

INSTANTIATE_TEST_SUITE_P(All, MaskButton,
                         testing::Values(std::pair(kMaskBlackCheck, 1), std::pair(kMaskDarkCheck, 2),
                                         std::pair(kMaskLightCheck, 3), std::pair(kMaskWhiteCheck, 4),
                                         std::pair(kMaskTransparentCheck, 0), std::pair(kMaskLineBlackCheck, 8),
                                         std::pair(kMaskLineDarkCheck, 9), std::pair(kMaskLineLightCheck, 10),
                                         std::pair(kMaskPlus2Check, 11), std::pair(kMaskPlus1Check, 12),
                                         std::pair(kMaskMinus1Check, 13), std::pair(kMaskMinus2Check, 14)));

TEST(PenState, CancelledMaskDialogKeepsTheMask) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskLightCheck, "on"}}).Command(kCommandMask);
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskLightCheck, "off"}}, "cancel").Command(kCommandMask);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["maskFlags"], 8);
}

TEST(PenState, SettingsGiveThePenAtTheStart) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=10, 2, 3, 5, 0, 0\r\n");
  const int state = session.State();
  session.Run();
  const Json pen = session.StateAt(state)["pen"];
  EXPECT_EQ(pen["shape"], 10);
  EXPECT_EQ(pen["colorA"], 2);
  EXPECT_EQ(pen["colorB"], 3);
  EXPECT_EQ(pen["tone"], 5);
  EXPECT_EQ(pen["muraRemoval"], 0);
  EXPECT_EQ(pen["penSign"], 1);
}

TEST(PenState, SquarePenIsWrittenWithItsShapeAsItStands) {
  ScriptSession session;
  session.Picker("ldown", 10 + 14 * 12, 10).Command(kCommandSquarePen).Line("exit");
  session.Run();
  EXPECT_EQ(session.Setting("setup", "brush"), "3, 0, 1, 0, 1, 1");
}

TEST(PenState, SquarePenComesBackRoundAndMarkedSquare) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 1\r\n");
  const int state = session.State();
  session.Run();
  const Json pen = session.StateAt(state)["pen"];
  EXPECT_EQ(pen["shape"], 11);
  EXPECT_EQ(pen["penSign"], -1);
}

TEST(PenState, AnyNumberButZeroMarksThePenSquare) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=9, 0, 1, 0, 1, 5\r\n");
  const int state = session.State();
  session.Run();
  const Json pen = session.StateAt(state)["pen"];
  EXPECT_EQ(pen["shape"], 5);
  EXPECT_EQ(pen["penSign"], -1);
}

TEST(PenState, AKeyWithoutAnActionPutsAMirroredShapeRight) {
  DrawingSession session;
  session.StartWith("[setup]\r\nbrush=3, 0, 1, 0, 1, 1\r\n");
  session.Char('Z');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 3);
}

TEST(PenState, MaskIsForgottenAtTheEnd) {
  ScriptSession session;
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask).Line("exit");
  session.Run();
  session.Restart();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["maskFlags"], 0);
}

TEST(PenState, SizeKeysStepByOne) {
  for (const char larger : {'f', 'j'}) {
    DrawingSession session;
    session.Char(larger).Char(larger);
    EXPECT_EQ(session.NowState()["pen"]["shape"], 9) << larger;
  }
  for (const char smaller : {'d', 'k'}) {
    DrawingSession session;
    session.PickSize(3);
    session.Char(smaller);
    EXPECT_EQ(session.NowState()["pen"]["shape"], 9) << smaller;
  }
}

TEST(PenState, SizeKeysStopAtBothEnds) {
  DrawingSession session;
  session.Char('d');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 7);
  for (int i = 0; i < 9; ++i) session.Char('f');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 14);
}

TEST(PenState, SizeKeysOfASquarePenGoTheOtherWay) {
  DrawingSession session;
  session.Command(kCommandSquarePen);
  session.Char('f').Char('f').Char('f');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 4);
  session.Char('d');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 5);
}

TEST(PenState, AProtectedGroundTakesInkOnlyWhereThereIsInk) {
  DrawingSession session;
  session.FillArea(10, 10, 10, 1, 4);
  session.Mask({0});
  session.Command(kCommandMuraRemoval);
  session.LeftDrag(5, 10, 30, 10);
  InkModel model;
  model.Fill(10, 10, 10, 1, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
