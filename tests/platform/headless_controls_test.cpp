#include <gtest/gtest.h>

#include "platform/controls.h"
#include "platform/headless/internal.h"
#include "platform_fixture.h"
#include "resources/ids.h"

namespace sorvel::platform {
namespace {

class HeadlessControls : public HeadlessTest {
 protected:
  std::string Line(WindowHandle from, int32_t index) {
    char text[32];
    ReadListLine(from, index, text, sizeof(text));
    return text;
  }
  void Fill(WindowHandle target, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) AddListLine(target, text.c_str());
  }
  std::vector<int32_t> Selected(WindowHandle from) {
    std::vector<int32_t> lines;
    for (int32_t i = 0; i < ListCount(from); ++i) {
      if (IsListLineSelected(from, i)) lines.push_back(i);
    }
    return lines;
  }

  Frame frame;
  WindowHandle list = MakeListBox(frame.window, 1, false);
};

using Lines = std::vector<int32_t>;

TEST_F(HeadlessControls, LinesAreAddedInsertedReadAndDeleted) {
  EXPECT_EQ(AddListLine(list, "b"), 0);
  InsertListLine(list, 0, "a");
  InsertListLine(list, -1, "c");
  InsertListLine(list, 9, "nowhere");
  ASSERT_EQ(ListCount(list), 3);
  EXPECT_EQ(Line(list, 0) + Line(list, 1) + Line(list, 2), "abc");
  DeleteListLine(list, 1);
  DeleteListLine(list, 2);
  EXPECT_EQ(Line(list, 0) + Line(list, 1), "ac");
  ClearList(list);
  EXPECT_EQ(ListCount(list), 0);
  EXPECT_EQ(ListCaret(list), 0);
}

TEST_F(HeadlessControls, ReadingALineCutsToTheBuffer) {
  AddListLine(list, "abcdef");
  char text[3] = "zz";
  EXPECT_EQ(ReadListLine(list, 0, text, sizeof(text)), 2u);
  EXPECT_STREQ(text, "ab");
  EXPECT_EQ(ListLineLength(list, 0), 6u);
  EXPECT_EQ(ReadListLine(list, 7, text, sizeof(text)), 0u);
  EXPECT_STREQ(text, "");
}

TEST_F(HeadlessControls, DeletingTheSelectedLineLeavesNoneSelected) {
  Fill(list, {"a", "b", "c"});
  EXPECT_EQ(SelectedListLine(list), -1);
  SelectListLine(list, 2);
  EXPECT_EQ(ListCaret(list), 2);
  DeleteListLine(list, 2);
  EXPECT_EQ(SelectedListLine(list), -1);
  EXPECT_EQ(ListCaret(list), 1);
}

TEST_F(HeadlessControls, TheSelectionStaysWithItsLine) {
  Fill(list, {"a", "b", "c"});
  SelectListLine(list, 2);
  DeleteListLine(list, 0);
  EXPECT_EQ(SelectedListLine(list), 1);
  InsertListLine(list, 0, "z");
  EXPECT_EQ(SelectedListLine(list), 2);
  SelectListLine(list, 9);
  EXPECT_EQ(SelectedListLine(list), 2);
  SelectListLine(list, -1);
  EXPECT_EQ(SelectedListLine(list), -1);
}

TEST_F(HeadlessControls, AnExtendedSelectionIsAFlagOfEachLine) {
  list = MakeListBox(frame.window, 1, true);
  Fill(list, {"a", "b", "c", "d"});
  SetListLineSelected(list, 1, true);
  SetListLineSelected(list, 3, true);
  EXPECT_EQ(Selected(list), Lines({1, 3}));
  EXPECT_EQ(ListCaret(list), 3);
  SetListLineSelected(list, 1, false);
  EXPECT_EQ(ListCaret(list), 3);
  DeleteListLine(list, 0);
  EXPECT_EQ(Selected(list), Lines({2}));
  InsertListLine(list, 2, "x");
  EXPECT_EQ(Selected(list), Lines({3}));
  SetListLineSelected(list, -1, true);
  EXPECT_EQ(Selected(list), Lines({0, 1, 2, 3}));
  SetListLineSelected(list, -1, false);
  EXPECT_EQ(Selected(list), Lines());
  SetListCaret(list, 1);
  EXPECT_EQ(ListCaret(list), 1);
  SetListCaret(list, 8);
  EXPECT_EQ(ListCaret(list), 1);
}

TEST_F(HeadlessControls, OperationsOfTheOtherKindOfSelectionDoNothing) {
  const WindowHandle extended = MakeListBox(frame.window, 2, true);
  Fill(list, {"a", "b"});
  Fill(extended, {"a", "b"});
  SetListLineSelected(list, 1, true);
  SelectListLine(extended, 1);
  EXPECT_EQ(SelectedListLine(list), -1);
  EXPECT_EQ(Selected(extended), Lines());
}

TEST_F(HeadlessControls, FindingGoesRoundAndDoesntRegardCase) {
  Fill(list, {"Alpha", "beta", "Alphabet"});
  EXPECT_EQ(FindListLine(list, 0, "alpha"), 2);
  EXPECT_EQ(FindListLine(list, 2, "ALPHA"), 0);
  EXPECT_EQ(FindListLine(list, -1, "B"), 1);
  EXPECT_EQ(FindListLine(list, 0, "gamma"), -1);
  ClearList(list);
  EXPECT_EQ(FindListLine(list, 0, ""), -1);
}

TEST_F(HeadlessControls, CapitalsInsideADoubleByteStay) {
  // The second byte of each of the two characters is a letter of the other case: 0x8341 and 0x8361.
  EXPECT_FALSE(headless::SameWithoutCase("\x83\x41", "\x83\x61"));
  EXPECT_TRUE(headless::SameWithoutCase("\x83\x41X", "\x83\x41x"));
}

TEST_F(HeadlessControls, ASortedListFindsThePlace) {
  list->sorted = true;
  EXPECT_EQ(AddListLine(list, "beta"), 0);
  EXPECT_EQ(AddListLine(list, "Alpha"), 0);
  EXPECT_EQ(AddListLine(list, "Gamma"), 2);
  EXPECT_EQ(AddListLine(list, "azure"), 1);
}

TEST_F(HeadlessControls, AUsersSelectionIsToldToTheParent) {
  list = MakeListBox(frame.window, kCutList, true);
  Fill(list, {"a", "b", "c"});
  EXPECT_TRUE(headless::SelectLines(list, {2, 0}));
  EXPECT_EQ(Selected(list), Lines({0, 2}));
  EXPECT_EQ(ListCaret(list), 0);
  EXPECT_TRUE(headless::DoubleClickLine(list, 1));
  EXPECT_EQ(Selected(list), Lines({1}));
  EXPECT_EQ(frame.TakeLog(), Log({"frame command 10003 1", "frame command 10003 1", "frame command 10003 2"}));
  EXPECT_FALSE(headless::SelectLines(list, {0, 3}));
  EXPECT_EQ(Selected(list), Lines({1}));
  const WindowHandle single = MakeListBox(frame.window, 1, false);
  Fill(single, {"a", "b"});
  EXPECT_FALSE(headless::SelectLines(single, {0, 1}));
  EXPECT_TRUE(frame.TakeLog().empty());
}

TEST_F(HeadlessControls, AReadOnlyEditCantBeTypedIn) {
  const WindowHandle edit = MakeEdit(frame.window, 1, false);
  SelectAllText(edit);
  EXPECT_TRUE(edit->allSelected);
  EXPECT_TRUE(headless::TypeText(edit, "12"));
  EXPECT_FALSE(edit->allSelected);
  SetEditReadOnly(edit, true);
  EXPECT_FALSE(headless::TypeText(edit, "13"));
  EXPECT_EQ(edit->text, "12");
  SetText(edit, "14");
  EXPECT_EQ(edit->text, "14");
}

TEST_F(HeadlessControls, AClickedCheckBoxSwitchesAndTells) {
  const WindowHandle check = MakeCheckBox(frame.window, kKeyFrameCheck);
  headless::ClickButton(check);
  EXPECT_TRUE(IsChecked(check));
  headless::ClickButton(check);
  EXPECT_FALSE(IsChecked(check));
  EXPECT_EQ(frame.TakeLog(), Log({"frame command 10009 0", "frame command 10009 0"}));
  SetChecked(check, true);
  EXPECT_TRUE(IsChecked(check));
  EXPECT_TRUE(frame.TakeLog().empty());
}

TEST_F(HeadlessControls, BarsPlaceThemselvesWhenToldOfASize) {
  const WindowHandle status = MakeStatusBar(frame.window, kStatusBarId);
  const ToolButton buttons[] = {{0, kToolFreePen, true}, {0, 0, false}, {1, kToolEraser, true}};
  const WindowHandle tools = MakeToolBar(frame.window, kToolBarId, 118, 19, buttons, 3);
  const int32_t height = status->height;
  MoveWindow(frame.window, 0, 0, 500, 300, true);
  Send(status, kMessageSize, 0, 0);
  Send(tools, kMessageSize, 0, 0);
  EXPECT_EQ(ScreenBounds(status), (Bounds{0, 300 - height, 500, 300}));
  EXPECT_EQ(ScreenBounds(tools), (Bounds{0, 0, 500, tools->height}));
  CheckToolButton(tools, kToolEraser, true);
  CheckToolButton(tools, 12345, true);
  EXPECT_FALSE(tools->buttons[0].checked);
  EXPECT_FALSE(tools->buttons[1].checked);
  EXPECT_TRUE(tools->buttons[2].checked);
}

// Up-down controls.

class HeadlessUpDown : public HeadlessTest {
 protected:
  HeadlessUpDown() {
    edit = MakeEdit(frame.window, 1, false);
    upDown = headless::NewWindow(WindowKind::kUpDown, frame.window, nullptr, {});
    upDown->buddy = edit;
    SetUpDownRange(upDown, 1, 1200);
  }
  int32_t Typed(const char* text) {
    SetText(edit, text);
    return UpDownPosition(upDown);
  }

  Frame frame;
  WindowHandle edit;
  Window* upDown;
};

TEST_F(HeadlessUpDown, ThePositionShowsInTheEditWithSeparators) {
  SetUpDownPosition(upDown, 24);
  EXPECT_EQ(edit->text, "24");
  SetUpDownPosition(upDown, 1200);
  EXPECT_EQ(edit->text, "1,200");
  EXPECT_EQ(UpDownPosition(upDown), 1200);
}

TEST_F(HeadlessUpDown, APositionIsBoundedByTheRange) {
  for (const auto& [set, position] : {std::pair(2000, 1200), std::pair(0, 1)}) {
    SetUpDownPosition(upDown, set);
    EXPECT_EQ(UpDownPosition(upDown), position);
  }
}

TEST_F(HeadlessUpDown, ATypedNumberOfTheRangeIsThePosition) {
  const std::pair<const char*, int32_t> texts[] = {{"33", 33}, {"  44", 44}, {"+55", 55}, {"1,100", 1100}};
  for (const auto& [text, position] : texts) EXPECT_EQ(Typed(text), position) << text;
}

TEST_F(HeadlessUpDown, AnythingElseGivesTheLastValidPositionAndAHighHalf) {
  EXPECT_EQ(Typed("33"), 33);
  for (const char* text : {"0", "1201", "-5", "12x", "12 ", "-", "99999999999999999999999", "65569"})
    EXPECT_EQ(Typed(text), 0x10000 | 33) << text;
}

TEST_F(HeadlessUpDown, AnEmptyTextIsNoNumberEvenIfZeroIsInTheRange) {
  SetUpDownRange(upDown, 0, 1000);
  SetUpDownPosition(upDown, 12);
  EXPECT_EQ(Typed(""), 0x10000 | 12);
  EXPECT_EQ(Typed("0"), 0);
}

TEST_F(HeadlessUpDown, RangeAndPositionHoldSixteenBits) {
  SetUpDownRange(upDown, 1, 40000);
  EXPECT_EQ(upDown->high, 40000 - 65536);
  SetUpDownPosition(upDown, 40000);
  EXPECT_EQ(edit->text, "-25,536");
  EXPECT_EQ(UpDownPosition(upDown), 40000);
}

}  // namespace
}  // namespace sorvel::platform
