// The commands that choose a tool, and those on the settings that tools draw with.

#include <cstdio>
#include <cstring>

#include "cutwindow/clipboard.h"
#include "cutwindow/drawing_settings.h"
#include "dialogs/dialogs.h"
#include "foundation/settings.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr size_t kExplanationSize = 512;
constexpr char kToolTitle[] = "Sorvelin Tool";

}  // namespace

// At the first pulse the old tool removes its overlay; the second one goes to the new tool.
void MainFrame::SelectTool(int32_t id) {
  if (id == currentTool) {
    // A click on the tool's own button has lifted it.
    MarkTool(id, true);
    return;
  }
  if (CutWindow* cut = ActiveCut()) cut->Pulse();
  MarkTool(currentTool, false);
  previousTool = currentTool;
  currentTool = id;
  MarkTool(id, true);
  if (CutWindow* cut = ActiveCut()) cut->Pulse();
}

void MainFrame::MarkTool(int32_t id, bool on) {
  platform::CheckToolButton(toolBar, id, on);
  platform::CheckMenuEntry(platform::FrameMenu(frameWindow), id, on);
  platform::CheckMenuEntry(toolPopupMenu, id, on);
}

void MainFrame::ExplainTool() {
  char text[kExplanationSize];
  platform::ReadResourceText(currentTool, text, sizeof(text));
  char* feed = std::strchr(text, '\n');
  if (feed != nullptr) *feed = '\0';
  platform::ShowMessage(frameWindow, feed != nullptr ? feed + 1 : text, feed != nullptr ? text : kToolTitle,
                        platform::BoxIcon::kInformation);
}

void MainFrame::EditGrid() {
  GridDialog dialog(statusBar, gridWidth, gridHeight);
  if (!dialog.Run(frameWindow)) return;
  gridWidth = dialog.width;
  gridHeight = dialog.height;
}

void MainFrame::EditMask() {
  MaskDialog dialog(statusBar, maskFlags);
  if (dialog.Run(frameWindow)) maskFlags = dialog.mask;
}

void MainFrame::EditFont() {
  FontDialog dialog(statusBar, textToolFont.faceName, textToolFont.size, textToolFont.spacing, textToolFont.weight);
  if (dialog.Run(frameWindow)) SetTextToolFont(dialog.faceName, dialog.size, dialog.lineSpacing, dialog.weight);
}

// The same command chooses the colour and, while transparency is on, switches it off.
void MainFrame::ChooseTransparentColor() {
  if (clipTransparent) {
    clipTransparent = false;
    WriteSettingNumber(settings::kPasteTransparent, 0);
    return;
  }
  uint32_t custom[16] = {};
  uint32_t color = clipTransparentColor;
  if (!platform::AskColor(frameWindow, custom, &color)) return;
  clipTransparentColor = color;
  clipTransparent = true;
  char text[16];
  std::snprintf(text, sizeof(text), "#%02X%02X%02X", color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
  WriteSettingText(settings::kPasteTransparentColor, text);
  WriteSettingNumber(settings::kPasteTransparent, 1);
}

void SwitchMuraRemoval() {
  muraRemoval = muraRemoval == 0 ? 1 : 0;
}

}  // namespace sorvel
