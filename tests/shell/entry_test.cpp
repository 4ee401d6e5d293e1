#include <string>

#include "cutwindow/clipboard.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

TEST(KeptPen, APenPickedFromTransparentGroundComesBack) {
  const testdoc::TemporaryFolder folder;
  UseSettingsFile(folder.Path("sorvel.ini").c_str());
  for (const bool first : {true, false}) {
    platform::headless::Reset();
    MainFrame frame;
    ASSERT_TRUE(StartProgram(&frame, "", 1));
    if (first) {
      currentPen.colorA = -1;
      currentPen.colorB = 0;
      muraRemoval = 0;
      TogglePenShape();
    } else {
      EXPECT_EQ(currentPen.colorA, -1);
      EXPECT_EQ(currentPen.colorB, 0);
      EXPECT_EQ(muraRemoval, 0);
      EXPECT_EQ(penSign, -1);
    }
    platform::DestroyWindow(frame.frameWindow);
    FinishProgram(&frame);
  }
  platform::headless::Reset();
  ResetProgram();
  UseSettingsFile(nullptr);
}

TEST(AReset, LeavesNothingOfTheProgramBefore) {
  currentPen = {3, 4, 1, 2};
  maskFlags = 5;
  gridWidth = 8;
  pulseSuppressed = true;
  clipTransparent = true;
  ASSERT_TRUE(ClipboardImage()->Resize(4, 4, 0));
  CutDialogDefaults.width = 5;
  ResetProgram();
  EXPECT_EQ(currentPen, PenSpec{});
  EXPECT_EQ(maskFlags, 0u);
  EXPECT_EQ(gridWidth, 1);
  EXPECT_FALSE(pulseSuppressed);
  EXPECT_FALSE(clipTransparent);
  EXPECT_EQ(ClipboardImage()->width, 0);
  EXPECT_EQ(CutDialogDefaults.width, CutDialogValues{}.width);
}

TEST(StartedWithAPath, InDoubleQuotesOpensNothing) {
  const testdoc::TemporaryFolder folder;
  UseSettingsFile(folder.Path("sorvel.ini").c_str());
  testdoc::WriteFile(folder.Path("a.flm"), "title\nauthor\n100, 50\n");
  for (const bool isQuoted : {true, false}) {
    platform::headless::Reset();
    MainFrame frame;
    const std::string path = isQuoted ? "\"" + folder.Path("a.flm") + "\"" : folder.Path("a.flm");
    ASSERT_TRUE(StartProgram(&frame, path.c_str(), 1));
    EXPECT_EQ(frame.film->width, isQuoted ? 320 : 100);
    platform::DestroyWindow(frame.frameWindow);
    ReleaseProgram();
  }
  platform::headless::Reset();
  UseSettingsFile(nullptr);
}

}  // namespace
}  // namespace sorvel::testshell
