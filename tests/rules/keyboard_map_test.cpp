#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::ScriptSession;

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

Outcome Compare(char character, int command, int dialogId, const rules::DialogValues& values) {
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
  rules::DialogValue value = {};
};

class CharacterCommand : public testing::TestWithParam<Action> {};

TEST_P(CharacterCommand, BothCharactersDoWhatTheCommandDoes) {
  const Action& action = GetParam();
  rules::DialogValues values;
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

struct Effect {
  KeyPair keys;
  const char* place;
  int value;
};

json Place(const ScriptSession& session, int state, const std::string& place) {
  json whole = session.StateAt(state);
  if (place == "tool") return whole["frame"]["currentTool"];
  if (place == "frame") return session.Cut(state)["currentFrame"];
  if (place == "frames") return session.Cut(state)["frames"].size();
  if (place == "cell") return session.Record(state, 0)["cell"];
  if (place == "flags") return session.Cut(state)["viewFlags"];
  return nullptr;
}

class CharacterEffect : public testing::TestWithParam<Effect> {};

// The same once more by the outcome: the drawing stands on its middle frame, which shows cell 2.
TEST_P(CharacterEffect, OfBothCharacters) {
  for (const char character : BothOf(GetParam().keys)) {
    ScriptSession session;
    session.Command(kToolFocusLines)
        .OpenCut("a.cut", Drawing())
        .Command(kCommandPreviousFrame)
        .Command(kCommandPreviousFrame)
        .Char(character);
    const int state = session.State();
    session.Run();
    EXPECT_EQ(Place(session, state, GetParam().place), GetParam().value) << character;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Keyboard, CharacterEffect,
    testing::Values(Effect{{'1', '0'}, "tool", kToolFreePen}, Effect{{'2', '9'}, "tool", kToolEraser},
                    Effect{{'3', '8'}, "tool", kToolLine}, Effect{{'4', '7'}, "tool", kToolCurve},
                    Effect{{'5', '6'}, "tool", kToolFreePen}, Effect{{'Q', '`'}, "tool", kToolAreaSelect},
                    Effect{{'W', '{'}, "tool", kToolFill}, Effect{{'A', '}'}, "tool", kToolFramePosition},
                    Effect{{'S', '*'}, "tool", kToolLayerPosition}, Effect{{'q', 'o'}, "frame", 1},
                    Effect{{'w', 'p'}, "frame", 3}, Effect{{'e', 'u'}, "frame", 0}, Effect{{'r', 'i'}, "frame", 4},
                    Effect{{'E', 'O'}, "frame", 0}, Effect{{'R', 'P'}, "frame", 4}, Effect{{'t', 'y'}, "frame", 3},
                    Effect{{'T', 'I'}, "frame", 2}, Effect{{'T', 'I'}, "frames", 6}, Effect{{'c', 'm'}, "cell", 1},
                    Effect{{'v', ','}, "cell", 3}, Effect{{'b', 'n'}, "cell", 3}, Effect{{'B', 'M'}, "cell", 2},
                    Effect{{'C', '<'}, "cell", 0}, Effect{{'V', '>'}, "cell", 3}, Effect{{'D', 'J'}, "flags", 1},
                    Effect{{'F', 'K'}, "flags", 2}));

TEST(CharacterMap, UndoIsOnZAndSlash) {
  for (const char character : {'z', '/'}) {
    ScriptSession session;
    session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandEraseCell).Char(character);
    const int state = session.State();
    session.Run();
    EXPECT_EQ(session.Cut(state)["layers"][0]["cells"], json::array({rules::PlainCell(1)}));
  }
}

class CharacterWithoutAction : public testing::TestWithParam<char> {};

TEST_P(CharacterWithoutAction, ChangesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", Drawing()).Command(kCommandPreviousFrame).Command(kToolEraser);
  const int before = session.State();
  session.Char(GetParam());
  const int after = session.State();
  session.Run();
  EXPECT_TRUE(session.StateAt(before).is_object());
  EXPECT_EQ(session.StateAt(after), session.StateAt(before));
}

INSTANTIATE_TEST_SUITE_P(Keyboard, CharacterWithoutAction,
                         testing::Values('!', '"', '#', '$', '%', '&', '\'', '(', ')', '+', '-', ':', '=', '@', 'L',
                                         'N', 'U', 'Y', 'Z', '[', '\\', ']', '^', '_', '|', '~'));

TEST(PreviousTool, TwiceReturnsToTheToolOfTheStart) {
  ScriptSession session;
  session.Command(kToolLine).Command(kToolEraser).OpenCut("a.cut", Drawing()).Char('5');
  const int once = session.State();
  session.Char('6');
  const int twice = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(once)["frame"]["currentTool"], kToolLine);
  EXPECT_EQ(session.StateAt(once)["frame"]["previousTool"], kToolEraser);
  EXPECT_EQ(session.StateAt(twice)["frame"]["currentTool"], kToolEraser);
  EXPECT_EQ(session.StateAt(twice)["frame"]["previousTool"], kToolLine);
}

TEST(PreviousTool, OfAFreshStartIsTheFreePenItself) {
  ScriptSession session;
  session.OpenCut("a.cut", Drawing()).Char('5');
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["frame"]["currentTool"], kToolFreePen);
}

struct PenStep {
  int shape;
  bool square;
  const char* keys;
  int result;
};

class PenSize : public testing::TestWithParam<PenStep> {};

// A square pen's shape comes from the settings mirrored, so the mirror image is written there.
TEST_P(PenSize, StepsWithinZeroToSeven) {
  ScriptSession session;
  const int written = GetParam().square ? 14 - GetParam().shape : GetParam().shape;
  session.SetSettings("[setup]\r\nbrush=" + std::to_string(written) + ", 0, 1, 0, 1, " +
                      (GetParam().square ? "1" : "0") + "\r\n");
  session.OpenCut("a.cut", Drawing());
  for (const char* key = GetParam().keys; *key != 0; ++key) session.Char(*key);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, PenSize,
                         testing::Values(PenStep{7, false, "f", 8}, PenStep{7, false, "j", 8},
                                         PenStep{9, false, "d", 8}, PenStep{9, false, "k", 8},
                                         PenStep{7, false, "d", 7}, PenStep{14, false, "f", 14},
                                         PenStep{7, false, "ffffffffff", 14}, PenStep{5, true, "f", 4},
                                         PenStep{5, true, "d", 6}, PenStep{7, true, "d", 7}, PenStep{0, true, "j", 0},
                                         PenStep{7, true, "f", 6}));

TEST(PenSize, ShapeOnTheWrongSideIsPutRightByAnyKey) {
  ScriptSession session;
  // A shape of 4 with the square flag is read as 10: a round shape marked square.
  session.SetSettings("[setup]\r\nbrush=4, 0, 1, 0, 1, 1\r\n");
  session.OpenCut("a.cut", Drawing());
  const int before = session.State();
  session.Char('!');
  const int after = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(before)["pen"]["shape"], 10);
  EXPECT_EQ(session.StateAt(after)["pen"]["shape"], 4);
}

TEST(PenSize, RoundShapeBelowSevenIsPutRightByAnyKey) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 0\r\n");
  session.OpenCut("a.cut", Drawing()).Char('Z');
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 11);
}

TEST(PenSize, CharacterOutsideTheTableRunsItToo) {
  ScriptSession session;
  session.SetSettings("[setup]\r\nbrush=3, 0, 1, 0, 1, 0\r\n");
  session.OpenCut("a.cut", Drawing()).Char('~');
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["pen"]["shape"], 11);
}

class ZoomKey : public testing::TestWithParam<std::pair<char, bool>> {};

TEST_P(ZoomKey, ZoomsAtTheCursor) {
  ScriptSession session;
  session.NewCut({.width = 900, .height = 700}).Mouse("move", 100, 50).Char(GetParam().first);
  const int state = session.State();
  session.Run();
  json cut = session.Cut(state);
  EXPECT_EQ(cut["zoomNumerator"], GetParam().second ? 2 : 1);
  EXPECT_EQ(cut["zoomDenominator"], GetParam().second ? 1 : 2);
}

INSTANTIATE_TEST_SUITE_P(Keyboard, ZoomKey,
                         testing::Values(std::pair{'s', true}, std::pair{'l', true}, std::pair{'a', false},
                                         std::pair{';', false}));

TEST(ZoomKeys, BringTheCursorsPointToTheCentre) {
  ScriptSession session;
  // At 1/1 the 900 by 700 picture starts at the scroll position 0, 0, so that window and cut points are the same. At
  // 2/1 the client covers 320 by 240 cut pixels; the scroll position is -320 + 2 * 300 and -240 + 2 * 200.
  session.NewCut({.width = 900, .height = 700}).Mouse("move", 300, 200);
  const int before = session.State();
  session.Char('s');
  const int after = session.State();
  session.Run();
  ASSERT_EQ(session.Cut(before)["scrollX"], 0);
  ASSERT_EQ(session.Cut(before)["scrollY"], 0);
  EXPECT_EQ(session.Cut(after)["scrollX"], 280);
  EXPECT_EQ(session.Cut(after)["scrollY"], 160);
}

TEST(ZoomKeys, LeaveTheCurrentTool) {
  ScriptSession session;
  session.OpenCut("a.cut", Drawing()).Char('s').Char('a');
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.StateAt(state)["frame"]["currentTool"], kToolFreePen);
  EXPECT_EQ(session.Cut(state)["zoomNumerator"], 1);
  EXPECT_EQ(session.Cut(state)["zoomDenominator"], 1);
}

std::string Status(const ScriptSession& session, int state) {
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

class FocusRing : public testing::TestWithParam<const char*> {};

TEST_P(FocusRing, ForwardPassesEveryPlaceAndComesBackToTheCut) {
  ScriptSession session;
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
  ScriptSession session;
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
  const int state = session.State();
  session.Run();
  ExpectPlace(Status(session, state), 1);
}

TEST(FocusRing, WithoutACutGoesBackFromTheFrameTimeToTheComment) {
  ScriptSession session;
  session.Focus("10002").Command(kCommandFocusBackward);
  const int state = session.State();
  session.Run();
  ExpectPlace(Status(session, state), 7);
}

TEST(FocusRing, LeavingTheFrameTimeByTabCommitsIt) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kFrameTimeEdit, "7").Key("Tab");
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["time"], 7);
  ExpectPlace(Status(session, state), 2);
}

TEST(FocusRing, PanelTypedInIsThePlaceToGoOnFrom) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kLoopEdit, "7").Key("Enter");
  const int state = session.State();
  session.Run();
  ExpectPlace(Status(session, state), 4);
}

TEST(FocusRing, CheckBoxClickedIsThePlaceToGoOnFrom) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Line("click 10009").Key("Tab");
  const int state = session.State();
  session.Run();
  ExpectPlace(Status(session, state), 3);
}

TEST(FocusRing, MousePressInTheCutTakesTheFocus) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Panel(kLoopEdit, "7").Mouse("ldown", 10, 10).Mouse("lup", 10, 10);
  const int pressed = session.State();
  session.Key("Tab");
  const int next = session.State();
  session.Run();
  EXPECT_EQ(Status(session, pressed), "");
  ExpectPlace(Status(session, next), 1);
}

}  // namespace
