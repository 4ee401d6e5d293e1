// A film that goes out as a page and as pictures, while the window stays alive.
#include <algorithm>
#include <cstdlib>

#include "app.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

constexpr int kFilmPatience = 60000;

class ExportTest : public DesktopTest {
 protected:
  // A film of twelve cuts that the script which starts the tests has laid out.
  void SetUp() override {
    const char* path = std::getenv("SORVEL_FILM");
    if (path == nullptr) GTEST_SKIP() << "the film is missing";
    ASSERT_TRUE(app.Start(path));
    ASSERT_TRUE(app.Lists(kCutList, std::vector<std::string>(12, "kasa001")));
  }

  testing::AssertionResult Begin(const std::string& path) {
    if (const testing::AssertionResult chosen = app.ChooseAt('f', kExportAsItem); !chosen) return chosen;
    if (const testing::AssertionResult answered = app.AnswerFileDialog(path); !answered) return answered;
    return app.HasDialog("書き出し");
  }

  testing::AssertionResult Ends(const std::string& status) {
    if (Await([&] { return app.Dialog() == nullptr && app.Status() == status; }, kFilmPatience)) {
      return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the status bar says \"" << app.Status() << "\"";
  }

  // The names of the files beside the program that begin so.
  std::vector<std::string> FilesOf(const std::string& begin) {
    std::vector<std::string> names;
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW(Wide(app.PathOf("*")).c_str(), &found);
    for (bool isThere = search != INVALID_HANDLE_VALUE; isThere; isThere = FindNextFileW(search, &found) != FALSE) {
      const std::string name = Utf8(found.cFileName);
      if (name.find(begin) != std::string::npos) names.push_back(name);
    }
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
  }

  bool Answers() const {
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(app.Frame(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 500, &result) != 0;
  }
};

TEST_F(ExportTest, TheWindowLivesMeanwhileAndAStopLeavesNothing) {
  ASSERT_TRUE(app.OpenMenu('f') != nullptr);
  app.StillPicture();
  EXPECT_TRUE(app.KeepScreen("put-out-menu"));
  app.CloseMenus();
  ASSERT_TRUE(Begin(app.PathOf("stopped.gif")));
  ASSERT_TRUE(
      Await([this] { return app.Text(app.Item(kProgressText)).find("コマ") != std::string::npos; }, kFilmPatience))
      << app.Text(app.Item(kProgressText));
  EXPECT_EQ(app.Text(app.Item(kProgressTitle)), "stopped.gif を書き出しています。");
  EXPECT_FALSE(IsWindowEnabled(app.Frame()));
  EXPECT_TRUE(Answers());
  // What changes in it is painted.
  const HWND list = app.Of(kCutList);
  const Picture before = app.PictureOf(list);
  app.Ask(list, LB_SETSEL, TRUE, 5);
  EXPECT_TRUE(Await([&] { return !(app.PictureOf(list) == before); }));
  const std::string text = app.Text(app.Item(kProgressText));
  EXPECT_TRUE(Await([&] { return app.Text(app.Item(kProgressText)) != text; })) << text;
  EXPECT_TRUE(app.KeepScreen("put-out-progress"));
  ASSERT_NE(app.Dialog(), nullptr) << "the film was too short";
  app.ClickButton(IDCANCEL);
  ASSERT_TRUE(Ends("書き出しを中止しました。"));
  EXPECT_TRUE(IsWindowEnabled(app.Frame()));
  EXPECT_EQ(FilesOf("stopped"), std::vector<std::string>());
}

TEST_F(ExportTest, TheDialogProposesTheNameOfTheFilmAndTheTypeThatWasUsedLast) {
  ASSERT_TRUE(app.ChooseAt('f', kExportAsItem));
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr && ClassOf(app.Focus()) == "Edit"; }));
  EXPECT_TRUE(app.Shows(app.Focus(), "long"));
  app.StillPicture();
  EXPECT_TRUE(app.KeepScreen("put-out-dialog"));
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(Begin(app.PathOf("first.png")));
  app.ClickButton(IDCANCEL);
  ASSERT_TRUE(Ends("書き出しを中止しました。"));
  ASSERT_TRUE(app.ChooseAt('f', kExportAsItem));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("second")));
  ASSERT_TRUE(app.HasDialog("書き出し"));
  EXPECT_EQ(app.Text(app.Item(kProgressTitle)), "second.png を書き出しています。");
  app.ClickButton(IDCANCEL);
  ASSERT_TRUE(Ends("書き出しを中止しました。"));
  EXPECT_EQ(FilesOf("first"), std::vector<std::string>());
  EXPECT_EQ(FilesOf("second"), std::vector<std::string>());
}

TEST_F(ExportTest, AFileThatCannotBeWrittenIsToldInABox) {
  const std::string path = app.PathOf("taken.html");
  ASSERT_TRUE(CreateDirectoryW(Wide(path + ".d").c_str(), nullptr));
  ASSERT_TRUE(CreateDirectoryW(Wide(path + ".d\\page.html").c_str(), nullptr));
  ASSERT_TRUE(app.ChooseAt('f', kExportAsItem));
  ASSERT_TRUE(app.AnswerFileDialog(path + ".d\\page"));
  ASSERT_TRUE(app.AnswerQuestion("", IDYES));
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr && !app.BoxText().empty(); }, kFilmPatience));
  EXPECT_NE(app.BoxText().find("page.html を保存できませんでした。"), std::string::npos) << app.BoxText();
  EXPECT_TRUE(app.KeepScreen("put-out-failed"));
  Press(VK_RETURN);
  EXPECT_TRUE(app.DialogGoes());
}

TEST_F(ExportTest, AFullDiskIsToldAndNothingStaysOnIt) {
  const char* disk = std::getenv("SORVEL_SMALL_DISK");
  if (disk == nullptr) GTEST_SKIP() << "only root can make a small disk";
  const std::string path = std::string(disk) + "\\full.gif";
  ASSERT_TRUE(Begin(path));
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr && !app.BoxText().empty(); }, kFilmPatience));
  EXPECT_EQ(app.BoxText(), path + " を保存できませんでした。\nディスクの空き容量が足りません。");
  Press(VK_RETURN);
  EXPECT_TRUE(app.DialogGoes());
  EXPECT_FALSE(FileExists(path));
  WIN32_FIND_DATAW found = {};
  const HANDLE search = FindFirstFileW(Wide(std::string(disk) + "\\*.tmp").c_str(), &found);
  EXPECT_EQ(search, INVALID_HANDLE_VALUE);
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
}

}  // namespace
}  // namespace sorvel::desktop
