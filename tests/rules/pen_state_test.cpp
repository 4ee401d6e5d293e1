#include <gtest/gtest.h>

#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using Json = nlohmann::json;

using PenState = SessionTest;

TEST_F(PenState, SquarePenCommandMirrorsTheShape) {
  DrawingSession other;
  other.PickSize(2).Command(kCommandSquarePen);
  Json pen = other.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 5);
  EXPECT_EQ(pen["penSign"], -1);
  other.Command(kCommandSquarePen);
  pen = other.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 9);
  EXPECT_EQ(pen["penSign"], 1);
}

TEST_F(PenState, SquarePenCommandKeepsTheOnePixelShape) {
  DrawingSession other;
  other.Command(kCommandSquarePen);
  const Json pen = other.NowState()["pen"];
  EXPECT_EQ(pen["shape"], 7);
  EXPECT_EQ(pen["penSign"], -1);
}

TEST_F(PenState, MuraCommandFlipsTheSwitch) {
  DrawingSession other;
  other.Command(kCommandMuraRemoval);
  EXPECT_EQ(other.NowState()["pen"]["muraRemoval"], 0);
  other.Command(kCommandMuraRemoval);
  EXPECT_EQ(other.NowState()["pen"]["muraRemoval"], 1);
}

const Rules<SessionTest, "PenState"> kPenStateRules = {
    {"StartsAsTheOnePixelRoundPenOfPlainBlack", Has("pen/shape", 7, "pen/tone", 0, "pen/colorA", 0, "pen/colorB", 1,
                                                    "pen/penSign", 1, "pen/muraRemoval", 1, "pen/maskFlags", 0)},
    {"SquarePenCommandNeedsNoCut", Do().Command(kCommandSquarePen), Has("pen/penSign", -1)},
    {"MuraCommandDoesNothingWithoutACut", Do().Command(kCommandMuraRemoval), Has("pen/muraRemoval", 1)},
    {"CancelledMaskDialogKeepsTheMask", Do().Dialog(kMaskDialog, {{kMaskLightCheck, "on"}}).Command(kCommandMask),
     Do().Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}, {kMaskLightCheck, "off"}}, "cancel").Command(kCommandMask),
     Has("pen/maskFlags", 8)},
    {"SettingsGiveThePenAtTheStart", Do().SetSettings("[setup]\r\nbrush=10, 2, 3, 5, 0, 0\r\n"),
     Has("pen/shape", 10, "pen/colorA", 2, "pen/colorB", 3, "pen/tone", 5, "pen/muraRemoval", 0, "pen/penSign", 1)},
    {"SquarePenIsWrittenWithItsShapeAsItStands",
     Do().Picker("ldown", 10 + 14 * 12, 10).Command(kCommandSquarePen).Line("exit"),
     Has("settings/setup/brush", "3, 0, 1, 0, 1, 1")},
    {"SquarePenComesBackRoundAndMarkedSquare", Do().SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 1\r\n"),
     Has("pen/shape", 11, "pen/penSign", -1)},
    {"AnyNumberButZeroMarksThePenSquare", Do().SetSettings("[setup]\r\nbrush=9, 0, 1, 0, 1, 5\r\n"),
     Has("pen/shape", 5, "pen/penSign", -1)},
};

TEST_F(PenState, MaskIsForgottenAtTheEnd) {
  session.Dialog(kMaskDialog, {{kMaskBlackCheck, "on"}}).Command(kCommandMask).Line("exit").Run();
  session.Restart();
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["maskFlags"], 0);
}

TEST_F(PenState, AProtectedGroundTakesInkOnlyWhereThereIsInk) {
  DrawingSession other;
  other.FillArea(10, 10, 10, 1, 4).Mask({0}).Command(kCommandMuraRemoval).LeftDrag(5, 10, 30, 10);
  InkModel model;
  model.Fill(10, 10, 10, 1, 8);
  EXPECT_TRUE(Shows(other.NowView(), model));
}

}  // namespace
}  // namespace rules
