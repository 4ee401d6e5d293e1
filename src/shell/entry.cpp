#include "shell/entry.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "cutwindow/clipboard.h"
#include "cutwindow/drawing_settings.h"
#include "dialogs/dialogs.h"
#include "foundation/history.h"
#include "foundation/paths.h"
#include "foundation/replacement_file.h"
#include "foundation/settings.h"
#include "imaging/color_table.h"
#include "imaging/pen.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/replacement.h"
#include "resources/ids.h"
#include "tools/tool_table.h"

namespace sorvel {

namespace {

constexpr size_t kLineSize = 256;
constexpr size_t kFilmPathSize = 260;
constexpr uintptr_t kRecoveryTimer = 1;

void MakePalette() {
  ColorEntry entries[kDrawPaletteSize];
  BuildDrawPalette(entries);
  gPalette = platform::MakePalette(entries, kDrawPaletteSize);
}

void MakeMarginBrush() {
  int32_t red = 0;
  int32_t green = 0;
  int32_t blue = 0;
  GetColor(kBackground, &red, &green, &blue);
  gMarginBrush =
      platform::MakeBrush(static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue));
}

void ReadFont() {
  char text[kLineSize];
  char name[kLineSize] = "";
  int32_t size = 0;
  int32_t spacing = 0;
  int32_t weight = 0;
  ReadSettingText(settings::kFont, text, sizeof(text));
  std::sscanf(text, "%255[^,], %d, %d, %d", name, &size, &spacing, &weight);
  SetTextToolFont(name, size, spacing, weight);
}

void ReadBrush() {
  char text[kLineSize];
  PenSpec pen;
  int32_t removal = 1;
  int32_t square = 0;
  ReadSettingText(settings::kBrush, text, sizeof(text));
  std::sscanf(text, "%d, %d, %d, %d, %d, %d", &pen.shape, &pen.colorA, &pen.colorB, &pen.tone, &removal, &square);
  SetBrushSettings(pen.shape, pen.colorA, pen.colorB, pen.tone, removal, square);
}

void ReadTransparentColor() {
  constexpr size_t colorTextSize = 8;
  clipTransparent = ReadSettingNumber(settings::kPasteTransparent) != 0;
  char text[colorTextSize];
  ReadSettingText(settings::kPasteTransparentColor, text, sizeof(text));
  ParseColorText(text, &clipTransparentColor);
}

// Where it can't be had the program runs without.
void StartRecovery(MainFrame* frame, bool hasFilm) {
  const std::string data = platform::LocalDataFolder(true);
  const std::string store = std::string(data).append(1, platform::kPathSeparator).append("recovery");
  if (data.empty() || !frame->recovery.Begin(store, Recovery::Writing::kOnThread)) return;
  platform::CallAtCrash([] {
    if (gMainFrame != nullptr) gMainFrame->recovery.KeepAtCrash();
  });
  frame->recovery.OpenLeft(true, !hasFilm);
  platform::SetWindowTimer(frame->frameWindow, kRecoveryTimer, Recovery::kTick);
}

}  // namespace

void ResetProgram() {
  constexpr unsigned int firstSeed = 1;
  std::srand(firstSeed);
  ResetDrawingSettings();
  ResetTools();
  ResetPan();
  ResetClipboardBlock();
  CutDialogDefaults = CutDialogValues{};
  ForgetWrittenFiles();
}

bool StartProgram(MainFrame* frame, const char* commandLine, int32_t showCommand) {
  // The order matters: later steps use the results of earlier ones.
  ResetProgram();
  LoadColors(nullptr);
  MakePalette();
  platform::RegisterWindowClass(kFrameClass, kFrameIcon, platform::CursorShape::kSizeWestEast, nullptr);
  platform::RegisterWindowClass(kAnimationClass, 0, platform::CursorShape::kArrow, nullptr);
  MakeMarginBrush();
  platform::RegisterWindowClass(kCutWindowClass, kCutIcon, platform::CursorShape::kNone, gMarginBrush);
  ReadFont();
  ReadBrush();
  platform::RegisterWindowClass(kHelperClass, 0, platform::CursorShape::kArrow, nullptr);
  platform::RegisterWindowClass(kSheetClass, 0, platform::CursorShape::kArrow, nullptr);
  ReadTransparentColor();
  frame->penPicker.palette = gPalette;
  frame->animationWindow.palette = gPalette;
  if (platform::MakeFrameWindow(kFrameClass, kFrameTitle, kFrameMenu, frame) == nullptr) return false;
  gMainFrame = frame;
  // The window is shown with its document. Without one that can be opened it is empty.
  char path[kFilmPathSize];
  ReadSettingText(settings::kFilm, path, sizeof(path));
  const char* document = commandLine[0] != '\0' ? commandLine : path;
  if (document[0] != '\0') frame->OpenByExtension(document);
  platform::ShowAs(frame->frameWindow, showCommand);
  // A remembered film may be gone: nobody asked for it now.
  if (commandLine[0] != '\0') frame->ReportOpening(commandLine);
  return true;
}

void FinishProgram(MainFrame* frame) {
  WriteSettingText(settings::kFilm, frame->film->path);
  char text[2 * kLineSize];
  std::snprintf(text, sizeof(text), "%.*s, %d, %d, %d", static_cast<int>(kLineSize), textToolFont.faceName,
                textToolFont.size, textToolFont.spacing, textToolFont.weight);
  WriteSettingText(settings::kFont, text);
  int32_t brush[6] = {};
  GetBrushSettings(&brush[0], &brush[1], &brush[2], &brush[3], &brush[4], &brush[5]);
  std::snprintf(text, sizeof(text), "%d, %d, %d, %d, %d, %d", brush[0], brush[1], brush[2], brush[3], brush[4],
                brush[5]);
  WriteSettingText(settings::kBrush, text);
  ReleaseProgram();
}

void ReleaseProgram() {
  SetTextToolFont("", 0, 0, 0);
  platform::DeletePalette(gPalette);
  gPalette = nullptr;
  platform::DeleteBrush(gMarginBrush);
  gMarginBrush = nullptr;
  gMainFrame = nullptr;
}

int EntryPoint(const char* commandLine, int32_t showCommand) {
  MainFrame frame;
  FinishInterruptedWrites();
  SweepDataHistory();
  if (!StartProgram(&frame, commandLine, showCommand)) return 0;
  StartRecovery(&frame, commandLine[0] != '\0' && frame.film->path[0] != '\0');
  const int code = platform::RunLoop(frame.frameWindow, frame.mdiClient, kAccelerators);
  frame.recovery.End();
  FinishProgram(&frame);
  return code;
}

}  // namespace sorvel
