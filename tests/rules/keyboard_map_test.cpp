#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"

namespace rules {
namespace {

using nlohmann::json;

struct KeyPair {
  char left;
  char right;
};

std::vector<char> BothOf(const KeyPair& pair) {
  return {pair.left, pair.right};
}

// Three frames, the outer two key frames, showing the cells of a layer of four.
CutFile Drawing() {
  CutFile file = CutFile::Showing({1, 2, 3, 4}, {0, 1, 2, 1, 0});
  file.frames[0].brightness = -51;
  file.frames[4].brightness = -51;
  return file;
}

// The state after a character typed into the middle frame of the drawing, and after the command that it stands for.
struct Outcome {
  json typed;
  json commanded;
};

Outcome Compare(char character, int command, int dialogId, const DialogValues& values) {
  json results[2];
  for (int i = 0; i < 2; ++i) {
    ScriptSession session;
    session.OpenCut("a.cut", Drawing())
        .Command(kCommandPreviousFrame)
        .Command(kCommandPreviousFrame)
        .Command(kCommandPlay);
    if (dialogId != 0) session.Dialog(dialogId, values);
    if (i == 0) session.Char(character);
    if (i == 1) session.Command(command);
    const int state = session.State();
    session.Run();
    results[i] = session.StateAt(state);
    if (results[i].is_object()) results[i]["cuts"][0].erase("path");
  }
  return {results[0], results[1]};
}

struct Action {
  KeyPair keys;
  int command;
  int dialogId = 0;
  DialogValue value = {};
};

class CharacterCommand : public testing::TestWithParam<Action> {};

TEST_P(CharacterCommand, BothCharactersDoWhatTheCommandDoes) {
  const Action& action = GetParam();
  DialogValues values;
  if (action.dialogId != 0) values.push_back(action.value);
  for (const char character : BothOf(action.keys)) {
    const Outcome outcome = Compare(character, action.command, action.dialogId, values);
    EXPECT_TRUE(outcome.typed.is_object());
    EXPECT_EQ(outcome.typed, outcome.commanded) << character;
  }
}

INSTANTIATE_TEST_SUITE_P(Keyboard, CharacterCommand,
                         testing::Values(Action{{'1', '0'}, kToolFreePen}, Action{{'2', '9'}, kToolEraser},
                                         Action{{'3', '8'}, kToolLine}, Action{{'4', '7'}, kToolCurve},
                                         Action{{'q', 'o'}, kCommandPreviousFrame},
                                         Action{{'w', 'p'}, kCommandNextFrame},
                                         Action{{'e', 'u'}, kCommandPreviousKeyFrame},
                                         Action{{'r', 'i'}, kCommandNextKeyFrame}, Action{{'t', 'y'}, kCommandAddFrame},
                                         Action{{'g', 'h'}, kCommandMask, kMaskDialog, {kMaskBlackCheck, "on"}},
                                         Action{{'x', '.'}, kCommandToSketch}, Action{{'c', 'm'}, kCommandPreviousCell},
                                         Action{{'v', ','}, kCommandNextCell}, Action{{'b', 'n'}, kCommandAddCell},
                                         Action{{'Q', '`'}, kToolAreaSelect}, Action{{'W', '{'}, kToolFill},
                                         Action{{'E', 'O'}, kCommandFirstFrame}, Action{{'R', 'P'}, kCommandLastFrame},
                                         Action{{'T', 'I'}, kCommandInsertFrame},
                                         Action{{'A', '}'}, kToolFramePosition}, Action{{'S', '*'}, kToolLayerPosition},
                                         Action{{'D', 'J'}, kCommandShowPrevious}, Action{{'F', 'K'}, kCommandShowNext},
                                         Action{{'G', 'H'}, kCommandSnapGrid, kGridDialog, {kGridWidthEdit, "7"}},
                                         Action{{'X', '?'}, kCommandEraseSketch}, Action{{'C', '<'}, kCommandFirstCell},
                                         Action{{'V', '>'}, kCommandLastCell}, Action{{'B', 'M'}, kCommandInsertCell}));

TEST(CharacterMap, UndoIsOnZAndSlash) {
  for (const char character : {'z', '/'}) {
    ScriptSession session;
    session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandEraseCell).Char(character);
    const int state = session.State();
    session.Run();
    EXPECT_EQ(session.Cut(state)["layers"][0]["cells"], json::array({PlainCell(1)}));
  }
}

class CharacterWithoutAction : public SessionTest, public testing::WithParamInterface<char> {};

TEST_P(CharacterWithoutAction, ChangesNothing) {
  session.OpenCut("a.cut", Drawing()).Command(kCommandPreviousFrame).Command(kToolEraser);
  const int before = session.State();
  session.Char(GetParam());
  const int after = session.State();
  EXPECT_TRUE(session.StateAt(before).is_object());
  EXPECT_EQ(session.StateAt(after), session.StateAt(before));
}

INSTANTIATE_TEST_SUITE_P(Keyboard, CharacterWithoutAction,
                         testing::Values('!', '"', '#', '$', '%', '&', '\'', '(', ')', '+', '-', ':', '=', '@', 'L',
                                         'N', 'U', 'Y', 'Z', '[', '\\', ']', '^', '_', '|', '~'));

const Rules<SessionTest, "PreviousTool"> kPreviousToolRules = {
    {"TwiceReturnsToTheToolOfTheStart",
     Do().Command(kToolLine).Command(kToolEraser).OpenCut("a.cut", Drawing()).Char('5'),
     Has("frame/currentTool", kToolLine, "frame/previousTool", kToolEraser), Do().Char('6'),
     Has("frame/currentTool", kToolEraser, "frame/previousTool", kToolLine)},
    {"OfAFreshStartIsTheFreePenItself", Do().OpenCut("a.cut", Drawing()).Char('5'),
     Has("frame/currentTool", kToolFreePen)},
};

struct PenStep {
  int shape;
  bool square;
  const char* keys;
  int result;
};

class PenSize : public SessionTest, public testing::WithParamInterface<PenStep> {};

// A square pen's shape comes from the settings mirrored, so the mirror image is written there.
TEST_P(PenSize, StepsWithinZeroToSeven) {
  const int written = GetParam().square ? 14 - GetParam().shape : GetParam().shape;
  session.SetSettings("[setup]\r\nbrush=" + std::to_string(written) + ", 0, 1, 0, 1, " +
                      (GetParam().square ? "1" : "0") + "\r\n");
  session.OpenCut("a.cut", Drawing());
  for (const char* key = GetParam().keys; *key != 0; ++key) session.Char(*key);
  const int state = session.State();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, PenSize,
                         testing::Values(PenStep{7, false, "f", 8}, PenStep{7, false, "j", 8},
                                         PenStep{9, false, "d", 8}, PenStep{9, false, "k", 8},
                                         PenStep{7, false, "d", 7}, PenStep{14, false, "f", 14},
                                         PenStep{7, false, "ffffffffff", 14}, PenStep{5, true, "f", 4},
                                         PenStep{5, true, "d", 6}, PenStep{7, true, "d", 7}, PenStep{0, true, "j", 0},
                                         PenStep{7, true, "f", 6}));

const Rules<SessionTest, "PenSize"> kPenSizeRules = {
    {"ShapeOnTheWrongSideIsPutRightByAnyKey",
     // A shape of 4 with the square flag is read as 10: a round shape marked square.
     Do().SetSettings("[setup]\r\nbrush=4, 0, 1, 0, 1, 1\r\n").OpenCut("a.cut", Drawing()), Has("pen/shape", 10),
     Do().Char('!'), Has("pen/shape", 4)},
    {"RoundShapeBelowSevenIsPutRightByAnyKey",
     Do().SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 0\r\n").OpenCut("a.cut", Drawing()).Char('Z'),
     Has("pen/shape", 11)},
    {"CharacterOutsideTheTableRunsItToo",
     Do().SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 0\r\n").OpenCut("a.cut", Drawing()).Char('~'),
     Has("pen/shape", 11)},
};

class ZoomKey : public SessionTest, public testing::WithParamInterface<std::pair<char, bool>> {};

TEST_P(ZoomKey, ZoomsAtTheCursor) {
  session.NewCut({.width = 900, .height = 700}).Mouse("move", 100, 50).Char(GetParam().first);
  json cut = session.Cut();
  EXPECT_EQ(cut["zoomNumerator"], GetParam().second ? 2 : 1);
  EXPECT_EQ(cut["zoomDenominator"], GetParam().second ? 1 : 2);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, ZoomKey,
                         testing::Values(std::pair{'s', true}, std::pair{'l', true}, std::pair{'a', false},
                                         std::pair{';', false}));

using ZoomKeys = SessionTest;

TEST_F(ZoomKeys, BringTheCursorsPointToTheCentre) {
  // At 1/1 the 900 by 700 picture starts at the scroll position 0, 0, so that window and cut points are the same. At
  // 2/1 the client covers 320 by 240 cut pixels; the scroll position is -320 + 2 * 300 and -240 + 2 * 200.
  session.NewCut({.width = 900, .height = 700}).Mouse("move", 300, 200);
  const int before = session.State();
  session.Char('s');
  const int after = session.State();
  ASSERT_EQ(session.Cut(before)["scrollX"], 0);
  ASSERT_EQ(session.Cut(before)["scrollY"], 0);
  EXPECT_EQ(session.Cut(after)["scrollX"], 280);
  EXPECT_EQ(session.Cut(after)["scrollY"], 160);
}

const Rules<SessionTest, "ZoomKeys"> kZoomKeysRules = {
    {"LeaveTheCurrentTool", Do().OpenCut("a.cut", Drawing()).Char('s').Char('a'),
     Has("frame/currentTool", kToolFreePen, "cut/zoomNumerator,zoomDenominator", "1 1")},
};

std::string Status(ScriptSession& session, int state = kNow) {
  json whole = session.StateAt(state);
  json status = whole["frame"]["status"];
  return status.is_string() ? status.get<std::string>() : "(none)";
}

// The first characters of the help of each place, in the order of the ring from the cut window on.
const std::vector<std::string> kRing = {"",
                                        "現在のフレームの時間",
                                        "チェックすると",
                                        "ループさせたい",
                                        "出力時のフレーム",
                                        "現在のフレームにあるレイヤ",
                                        "現在のフィルムにあるカット",
                                        "現在のフレームについて"};

void ExpectPlace(const std::string& status, size_t place) {
  if (place == 0) {
    EXPECT_EQ(status, "");
  } else {
    EXPECT_EQ(status.rfind(kRing[place], 0), 0U) << status << " at place " << place;
  }
}

class FocusRing : public SessionTest, public testing::WithParamInterface<const char*> {};

TEST_P(FocusRing, ForwardPassesEveryPlaceAndComesBackToTheCut) {
  session.OpenCut("a.cut", Drawing());
  std::vector<int> states;
  for (size_t i = 0; i < 9; ++i) {
    session.Key(GetParam());
    states.push_back(session.State());
  }
  session.Run();
  for (size_t i = 0; i < states.size(); ++i) ExpectPlace(Status(session, states[i]), (i + 1) % kRing.size());
}

TEST_P(FocusRing, BackwardPassesEveryPlaceAndComesBackToTheCut) {
  session.OpenCut("a.cut", Drawing());
  std::vector<int> states;
  for (size_t i = 0; i < 9; ++i) {
    session.Key(std::string("Shift+") + GetParam());
    states.push_back(session.State());
  }
  session.Run();
  for (size_t i = 0; i < states.size(); ++i) ExpectPlace(Status(session, states[i]), (2 * kRing.size() - 1 - i) % 8);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, FocusRing, testing::Values("Tab", "Enter"));

TEST(FocusRing, WithoutACutGoesFromTheCommentToTheFrameTime) {
  ScriptSession session;
  session.Focus("10006").Command(kCommandFocusForward);
  ExpectPlace(Status(session), 1);
}

TEST(FocusRing, WithoutACutGoesBackFromTheFrameTimeToTheComment) {
  ScriptSession session;
  session.Focus("10002").Command(kCommandFocusBackward);
  ExpectPlace(Status(session), 7);
}

TEST(FocusRing, LeavingTheFrameTimeByTabCommitsIt) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kFrameTimeEdit, "7").Key("Tab");
  EXPECT_EQ(session.Frame()["time"], 7);
  ExpectPlace(Status(session), 2);
}

TEST(FocusRing, PanelTypedInIsThePlaceToGoOnFrom) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kLoopEdit, "7").Key("Enter");
  ExpectPlace(Status(session), 4);
}

TEST(FocusRing, CheckBoxClickedIsThePlaceToGoOnFrom) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Line("click 10009").Key("Tab");
  ExpectPlace(Status(session), 3);
}

TEST(FocusRing, MousePressInTheCutTakesTheFocus) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kLoopEdit, "7").Mouse("ldown", 10, 10).Mouse("lup", 10, 10);
  const int pressed = session.State();
  session.Key("Tab");
  const int next = session.State();
  EXPECT_EQ(Status(session, pressed), "");
  ExpectPlace(Status(session, next), 1);
}

}  // namespace
}  // namespace rules
