#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cutwindow/drawing_settings.h"
#include "dialogs/dialogs.h"
#include "foundation/settings.h"
#include "platform/files.h"
#include "platform/headless/headless.h"
#include "platform/text.h"
#include "resources/ids.h"
#include "shell/entry.h"
#include "shell/main_frame.h"
#include "support/test_document.h"

namespace sorvel::testshell {

inline std::string ShiftJis(const std::string& utf8) {
  std::string text;
  EXPECT_TRUE(platform::Utf8ToShiftJis(utf8, &text));
  return text;
}

inline std::string TextOf(platform::WindowHandle window) {
  char text[512];
  platform::ReadText(window, text, sizeof(text));
  return text;
}

inline std::string LineOf(platform::WindowHandle list, int32_t line) {
  char text[512] = "";
  platform::ReadListLine(list, line, text, sizeof(text));
  return text;
}

// The lines of a list, each followed by a bar; selected ones behind a star.
inline std::string Lines(platform::WindowHandle list) {
  std::string lines;
  for (const platform::ListLine& line : list->lines) lines += (line.selected ? "*" : "") + line.text + "|";
  return lines;
}

// The whole program on the headless platform, with a folder of its own that holds its settings.
class ShellTest : public testing::Test {
 protected:
  using Values = std::vector<std::pair<int32_t, std::string>>;

  void SetUp() override {
    platform::headless::Reset();
    UseSettingsFile(folder.Path("sorvel.ini").c_str());
    frame = std::make_unique<MainFrame>();
    ASSERT_TRUE(StartProgram(frame.get(), "", 1));
  }
  void TearDown() override {
    EXPECT_EQ(platform::headless::Failure(), "");
    EXPECT_EQ(platform::headless::QueuedAnswers(), 0u);
    platform::DestroyWindow(frame->frameWindow);
    FinishProgram(frame.get());
    frame.reset();
    ResetProgram();
    platform::headless::Reset();
    UseSettingsFile(nullptr);
  }

  // A menu item.
  void Command(int32_t id) {
    platform::Send(frame->frameWindow, platform::kMessageCommand, static_cast<uintptr_t>(id), 0);
  }
  // A menu item with a dialog that is ended with OK.
  void Command(int32_t id, int32_t dialog, const Values& values) {
    platform::headless::QueueDialog({dialog, values, true});
    Command(id);
  }
  void CancelledCommand(int32_t id, int32_t dialog, const Values& values = {}) {
    platform::headless::QueueDialog({dialog, values, false});
    Command(id);
  }
  void FileCommand(int32_t id, const std::string& path) {
    platform::headless::QueueFile(path);
    Command(id);
  }

  // A new cut with this canvas and one layer named A, or none.
  CutWindow* MakeCut(int32_t width = 40, int32_t height = 30, bool withLayer = true) {
    platform::headless::QueueDialog(
        {kCutDialog, {{kCutWidthEdit, std::to_string(width)}, {kCutHeightEdit, std::to_string(height)}}, true});
    platform::headless::QueueDialog({kLayerDialog, {{kLayerNameEdit, "A"}}, withLayer});
    Command(kCommandNewCut);
    CutWindow* cut = frame->ActiveCut();
    EXPECT_NE(cut, nullptr);
    return cut;
  }
  void AddLayer(const std::string& name) { Command(kCommandAddLayer, kLayerDialog, {{kLayerNameEdit, name}}); }
  // Adds frames until there are so many; the last one is current.
  void MakeFrames(int32_t count) {
    while (Cut()->frames.Count() < count) Command(kCommandAddFrame);
  }
  // A new cut that is saved in the folder. It is active and its window open.
  CutWindow* MakeSavedCut(const std::string& name, int32_t width = 40, int32_t height = 30) {
    CutWindow* cut = MakeCut(width, height);
    FileCommand(kCommandSaveCutAs, folder.Path(name));
    EXPECT_EQ(cut->path, folder.Path(name));
    return cut;
  }
  // Saved cuts c1.cut, c2.cut and so on, added to the film in this order.
  void MakeFilm(int32_t count) {
    for (int32_t i = 1; i <= count; ++i) {
      MakeSavedCut("c" + std::to_string(i) + ".cut");
      Command(kCommandAddCutToFilm);
    }
  }
  void CloseActiveCut() { platform::Send(Cut()->window, platform::kMessageClose, 0, 0); }
  // Without questions.
  void CloseCuts() {
    while (CutWindow* cut = frame->ActiveCut()) platform::DestroyMdiChild(frame->mdiClient, cut->window);
  }

  CutWindow* Cut() { return frame->ActiveCut(); }
  Frame* CurrentFrame() { return Cut()->CurrentFrame(); }
  Layer* CurrentLayer() { return CurrentFrame()->LayerAt(CurrentFrame()->currentRecord); }
  CellImage* CurrentCell() {
    int32_t x = 0;
    int32_t y = 0;
    return Cut()->CurrentCell(&x, &y);
  }
  // What is to be saved or compiled: i images, t timing, m modified.
  std::string Marks() {
    std::string marks;
    if (Cut()->Has(kModified)) marks += "m";
    if (Cut()->Has(kImagesStale)) marks += "i";
    if (Cut()->Has(kTimingStale)) marks += "t";
    return marks;
  }
  void ClearMarks() { Cut()->stateFlags &= ~static_cast<uint32_t>(kModified | kImagesStale | kTimingStale); }

  // Whether the active cut's view shows its current frame: its pixels are what composing gives.
  bool ViewIsCurrent() {
    IndexedImage composed;
    EXPECT_TRUE(composed.Resize(Cut()->width, Cut()->height, 0));
    CurrentFrame()->ComposeFrame(&composed, 0, 0, Cut()->width, Cut()->height, &Cut()->viewFlags, nullptr);
    return testdoc::Picture(&composed) == testdoc::Picture(&Cut()->view);
  }
  // Leaves a mark in the view that the next repaint takes away.
  void SpoilView() { Cut()->view.Fill(kSpoiled); }
  bool WasRepainted() { return ViewIsCurrent(); }

  void Type(platform::WindowHandle edit, const std::string& text) { platform::headless::TypeText(edit, text); }
  std::string FilmNames() {
    std::string names;
    for (int32_t i = 0; i < frame->film->cuts.Count(); ++i) {
      const std::string name = frame->film->CutName(i);
      names += name.substr(name.rfind(platform::kPathSeparator) + 1) + "|";
    }
    return names;
  }
  std::string CutLines() { return Lines(frame->cutList); }
  std::string LayerLines() { return Lines(frame->layerList); }
  std::string Title() { return TextOf(frame->frameWindow); }
  bool Exists(const std::string& name) { return platform::PathExists(folder.Path(name).c_str()); }
  std::string Contents(const std::string& name) { return testdoc::ReadFile(folder.Path(name)); }
  std::string Setting(const SettingKey& key) {
    char text[256];
    ReadSettingText(key, text, sizeof(text));
    return text;
  }

  static constexpr int32_t kSpoiled = 24;

  testdoc::TemporaryFolder folder;
  std::unique_ptr<MainFrame> frame;
};

}  // namespace sorvel::testshell
