#include <gtest/gtest.h>

#include <set>

#include "platform/headless/internal.h"
#include "platform/headless/resources.h"
#include "platform/text.h"
#include "platform_fixture.h"
#include "resources/ids.h"

namespace sorvel::platform {
namespace {

using HeadlessMenu = HeadlessTest;

bool HasShiftJis(const char* text) {
  std::string result;
  return Utf8ToShiftJis(text, &result);
}

TEST_F(HeadlessMenu, EveryTextOfTheResourcesIsShiftJis) {
  for (const headless::MenuResource& each : headless::Menus()) EXPECT_TRUE(HasShiftJis(each.label)) << each.label;
  for (const headless::TextResource& each : headless::Texts()) EXPECT_TRUE(HasShiftJis(each.text)) << each.text;
  for (const headless::DialogResource& each : headless::Dialogs()) EXPECT_TRUE(HasShiftJis(each.text)) << each.text;
}

TEST_F(HeadlessMenu, NumbersOfTextsAreUnique) {
  std::set<int32_t> ids;
  for (const headless::TextResource& each : headless::Texts()) EXPECT_TRUE(ids.insert(each.id).second) << each.id;
}

TEST_F(HeadlessMenu, TheMenuBarHoldsItsPopupsInOrder) {
  const MenuHandle menu = MakeMenu(103);
  ASSERT_NE(menu, nullptr);
  ASSERT_GE(menu->lines.size(), 8u);
  for (const MenuLine& line : menu->lines) EXPECT_NE(line.popup, nullptr);
  const MenuHandle first = Submenu(menu, 0);
  ASSERT_EQ(first->lines.size(), 6u);
  EXPECT_EQ(first->lines[0].id, kCommandAbout);
  EXPECT_TRUE(first->lines[1].separator);
  EXPECT_EQ(first->lines[5].id, kCommandExit);
  EXPECT_EQ(first->lines[5].label, headless::FromUtf8("終了(&X)"));
  EXPECT_EQ(Submenu(menu, -1), nullptr);
  EXPECT_EQ(Submenu(menu, 99), nullptr);
  EXPECT_EQ(Submenu(first, 0), nullptr);
  DeleteMenu(menu);
  EXPECT_EQ(MakeMenu(999), nullptr);
  DeleteMenu(nullptr);
}

TEST_F(HeadlessMenu, ACheckMarkIsFoundInThePopupsAndListedAscending) {
  const MenuHandle menu = MakeMenu(103);
  CheckMenuEntry(menu, kCommandToolBar, true);
  CheckMenuEntry(menu, kCommandCurrentCellOnly, true);
  CheckMenuEntry(menu, kCommandStatusBar, true);
  CheckMenuEntry(menu, 99999, true);
  EXPECT_EQ(headless::CheckedEntries(menu),
            std::vector<int32_t>({kCommandCurrentCellOnly, kCommandStatusBar, kCommandToolBar}));
  CheckMenuEntry(menu, kCommandStatusBar, false);
  EXPECT_EQ(headless::CheckedEntries(menu), std::vector<int32_t>({kCommandCurrentCellOnly, kCommandToolBar}));
  DeleteMenu(menu);
}

TEST_F(HeadlessMenu, OpeningTheMenuBarTellsTheFrame) {
  Frame frame;
  headless::OpenMenuBar(frame.window);
  EXPECT_EQ(frame.TakeLog(), Log({"frame 278"}));
  EXPECT_NE(FrameMenu(frame.window), nullptr);
}

TEST_F(HeadlessMenu, AnOpenedPopupIsToldToItsOwnerAndRemembered) {
  Frame frame;
  const MenuHandle menu = MakeMenu(122);
  ASSERT_NE(Submenu(menu, 0), nullptr);
  EXPECT_EQ(headless::OpenedPopup().count, 0);
  OpenPopupMenu(Submenu(menu, 0), {11, 22}, frame.window);
  EXPECT_EQ(frame.TakeLog(), Log({"frame 279"}));
  EXPECT_EQ(headless::OpenedPopup().menu, Submenu(menu, 0));
  EXPECT_EQ(headless::OpenedPopup().place, (Point{11, 22}));
  EXPECT_EQ(headless::OpenedPopup().owner, frame.window);
  EXPECT_EQ(headless::OpenedPopup().count, 1);
  DeleteMenu(menu);
}

TEST_F(HeadlessMenu, ATextIsShiftJisAndCutToTheBuffer) {
  char text[256];
  const std::string whole = headless::FromUtf8("横幅を指定します。");
  EXPECT_EQ(ReadResourceText(kCutWidthUpDown, text, sizeof(text)), whole.size());
  EXPECT_EQ(text, whole);
  EXPECT_EQ(ReadResourceText(kCutWidthUpDown, text, 5), 4u);
  EXPECT_EQ(text, whole.substr(0, 4));
  EXPECT_EQ(ReadResourceText(40120, text, sizeof(text)), 0u);
  EXPECT_STREQ(text, "");
}

}  // namespace
}  // namespace sorvel::platform
