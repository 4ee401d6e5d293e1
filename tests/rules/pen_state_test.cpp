#include <gtest/gtest.h>

#include <string>
#include <utility>

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
  session.Command(command::SquarePen);
  Json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 5);
  EXPECT_EQ(pen["penSign"], -1);
  session.Command(command::SquarePen);
  pen = session.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 9);
  EXPECT_EQ(pen["penSign"], 1);
}

TEST(PenState, SquarePenCommandKeepsTheOnePixelShape) {
  DrawingSession session;
  session.Command(command::SquarePen);
  const Json pen = session.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 7);
  EXPECT_EQ(pen["penSign"], -1);
}

TEST(PenState, SquarePenCommandNeedsNoCut) {
  ScriptSession session;
  session.Command(command::SquarePen);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["penSign"], -1);
}

TEST(PenState, MuraCommandFlipsTheSwitch) {
  DrawingSession session;
  session.Command(command::MuraRemoval);
  EXPECT_EQ(session.NowState()["pen"]["muraRemoval"], 0);
  session.Command(command::MuraRemoval);
  EXPECT_EQ(session.NowState()["pen"]["muraRemoval"], 1);
}

TEST(PenState, MuraCommandDoesNothingWithoutACut) {
  ScriptSession session;
  session.Command(command::MuraRemoval);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["muraRemoval"], 1);
}

class MaskButton : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(MaskButton, ProtectsItsIndex) {
  const auto& [control, bit] = GetParam();
  ScriptSession session;
  session.Dialog(109, {std::to_string(control) + "=on"}).Command(40046);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["maskFlags"], 1 << bit);
}

INSTANTIATE_TEST_SUITE_P(All, MaskButton,
                         testing::Values(std::pair(1009, 1), std::pair(1011, 2), std::pair(1012, 3), std::pair(1010, 4),
                                         std::pair(1013, 0), std::pair(1017, 8), std::pair(1018, 9),
                                         std::pair(1019, 10), std::pair(1046, 11), std::pair(1045, 12),
                                         std::pair(1047, 13), std::pair(1048, 14)));

TEST(PenState, CancelledMaskDialogKeepsTheMask) {
  ScriptSession session;
  session.Dialog(109, {"1012=on"}).Command(40046);
  session.Dialog(109, {"1009=on", "1012=off"}, "cancel").Command(40046);
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
  session.Picker("ldown", 10 + 14 * 12, 10).Command(command::SquarePen).Line("exit");
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
  session.Dialog(109, {"1009=on"}).Command(40046).Line("exit");
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
  session.Command(command::SquarePen);
  session.Char('f').Char('f').Char('f');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 4);
  session.Char('d');
  EXPECT_EQ(session.NowState()["pen"]["shape"], 5);
}

TEST(PenState, AProtectedGroundTakesInkOnlyWhereThereIsInk) {
  DrawingSession session;
  session.FillArea(10, 10, 10, 1, 4);
  session.Mask({0});
  session.Command(command::MuraRemoval);
  session.LeftDrag(5, 10, 30, 10);
  InkModel model;
  model.Fill(10, 10, 10, 1, 8);
  EXPECT_TRUE(Shows(session.NowView(), model));
}

}  // namespace
}  // namespace rules
