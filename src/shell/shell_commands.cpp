// The commands on the shell itself: its bars, the focus, closing and the player.

#include <cstdio>
#include <iterator>

#include "cutwindow/wait_cursor.h"
#include "foundation/history.h"
#include "foundation/paths.h"
#include "platform/files.h"
#include "resources/ids.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr char kAboutTitle[] = "About Sorvelin";

}  // namespace

// While the panels are hidden, the bar appears over the cut windows until the next layout.
void MainFrame::ToggleBar(ShellFlag flag) {
  const platform::WindowHandle bar = flag == kStatusBarVisible ? statusBar : toolBar;
  shellFlags ^= flag;
  (shellFlags & flag) != 0 ? platform::Show(bar) : platform::Hide(bar);
  Relayout();
}

// The focus goes round the controls, starting with the window of the active cut, if any.
void MainFrame::MoveFocus(bool forward) {
  CutWindow* cut = ActiveCut();
  const platform::WindowHandle ring[] = {cut != nullptr ? cut->window : nullptr,
                                         frameTimeEdit,
                                         keyFrameCheck,
                                         loopEdit,
                                         brightnessEdit,
                                         layerList,
                                         cutList,
                                         commentEdit};
  const size_t count = std::size(ring);
  const platform::WindowHandle focused = platform::FocusedWindow();
  if (focused == nullptr) return;
  for (size_t i = 0; i < count; ++i) {
    if (ring[i] != focused) continue;
    const size_t step = forward ? 1 : count - 1;
    size_t next = (i + step) % count;
    if (ring[next] == nullptr) next = (next + step) % count;
    platform::SetFocusTo(ring[next]);
    return;
  }
}

void MainFrame::ShowAbout() {
  char text[kTextBufferSize];
  platform::ReadResourceText(kTextAbout, text, sizeof(text));
  platform::ShowMessage(frameWindow, text, kAboutTitle, platform::BoxIcon::kNone);
}

void MainFrame::StopAnimation() {
  animationWindow.StopTimer();
  platform::Hide(animationWindow.window);
}

// Closing.

bool MainFrame::CloseEveryCut() {
  while (CutWindow* cut = ActiveCut()) {
    platform::Send(cut->window, platform::kMessageClose, 0, 0);
    if (ActiveCut() == cut) return false;
  }
  return true;
}

bool MainFrame::CloseAllCuts() {
  return CloseEveryCut() && AskSaveFilm();
}

// After Yes, cuts that aren't saved are saved without a question for each.
void MainFrame::CloseAllWithoutFilm() {
  char question[kTextBufferSize];
  platform::ReadResourceText(kTextCloseAllQuestion, question, sizeof(question));
  if (platform::AskYesNo(frameWindow, question, kBoxTitle, platform::BoxIcon::kNone)) {
    shellFlags |= kCloseWithoutAsking;
  }
  CloseEveryCut();
  shellFlags &= ~static_cast<uint32_t>(kCloseWithoutAsking);
}

bool MainFrame::AskToSave(const char* path) {
  char name[kTextBufferSize] = "untitled.cut";
  if (path[0] != '\0') FileNameOf(name, sizeof(name), path, true);
  char format[kTextBufferSize];
  platform::ReadResourceText(kTextSaveQuestion, format, sizeof(format));
  char question[2 * kTextBufferSize];
  std::snprintf(question, sizeof(question), format, name);
  return platform::AskYesNo(frameWindow, question, kBoxTitle, platform::BoxIcon::kNone);
}

// A cut that has no file yet closes with its dialog, whatever the answer. Only a drawing that couldn't be written where
// it should have been stays.
bool MainFrame::AskSaveCut(CutWindow* cut) {
  film->CutClosed(cut);
  if (!cut->Has(kModified)) return true;
  const bool hasFile = cut->path[0] != '\0';
  const bool saves = (shellFlags & kCloseWithoutAsking) != 0 || AskToSave(cut->path);
  ChunkStream contents;
  // A save of a cut without a path takes its unused layers away before it asks for one.
  const bool isKept = (!saves || !hasFile) && WriteUnsaved(cut, &contents);
  const SaveResult result = saves ? OverwriteCut(cut) : SaveResult::kCancelled;
  if (result == SaveResult::kSaved) return true;
  if (!saves || (result == SaveResult::kCancelled && !hasFile)) {
    if (isKept) KeepUnsaved(Utf8Path(cut->path), kCutFiles.defaultExtension, &contents);
    return true;
  }
  film->CutOpened(cut);
  return false;
}

bool MainFrame::AskSaveFilm() {
  if (film->modified == 0) return true;
  const bool hasFile = film->path[0] != '\0';
  const bool saves = AskToSave(film->path);
  const SaveResult result = saves ? OverwriteFilm() : SaveResult::kCancelled;
  if (result == SaveResult::kSaved) return true;
  if (saves && (result != SaveResult::kCancelled || hasFile)) return false;
  KeepUnsavedFilm();
  return true;
}

bool MainFrame::WriteUnsaved(CutWindow* cut, ByteStream* contents) {
  if (cut->path[0] == '\0' && !recovery.IsOn()) return false;
  const WaitCursor wait;
  const uint32_t marks = cut->stateFlags;
  const bool isWritten = cut->Save(contents);
  cut->stateFlags = marks;
  return isWritten;
}

void MainFrame::KeepUnsavedFilm() {
  if (film->modified == 0 || (film->path[0] == '\0' && !recovery.IsOn())) return;
  std::string text;
  if (!film->ReadText(platform::kPathSeparator, &text)) return;
  ChunkStream contents;
  contents.Write(text.data(), static_cast<int32_t>(text.size()));
  KeepUnsaved(Utf8Path(film->path), kFilmFiles.defaultExtension, &contents);
}

void MainFrame::ReportNotSaved(const char* path, WriteProblem problem) {
  const auto reason = [problem] {
    switch (problem) {
      case WriteProblem::kDiskFull:
        return kTextDiskFull;
      case WriteProblem::kReadOnly:
        return kTextReadOnly;
      case WriteProblem::kNoFolder:
        return kTextNoFolder;
      case WriteProblem::kInUse:
        return kTextFileInUse;
      case WriteProblem::kTooLarge:
        return kTextFileTooLarge;
      case WriteProblem::kNone:
      case WriteProblem::kOther:
        break;
    }
    return kTextWriteFailed;
  };
  ReportWithReason(kTextNotSaved, path, reason());
}

void MainFrame::ReportWithReason(int32_t text, const char* path, int32_t reasonText) {
  char format[kTextBufferSize];
  char why[kTextBufferSize] = "";
  platform::ReadResourceText(text, format, sizeof(format));
  if (reasonText != 0) platform::ReadResourceText(reasonText, why, sizeof(why));
  char message[kPathCapacity + 2 * kTextBufferSize];
  std::snprintf(message, sizeof(message), format, path, why);
  platform::ShowMessage(frameWindow, message, kBoxTitle, platform::BoxIcon::kWarning);
}

void MainFrame::ReportSave(const char* path, WriteProblem problem, const KnownFile& file) {
  if (problem != WriteProblem::kNone) {
    ReportNotSaved(path, problem);
  } else if (file.LastNews() == KnownFile::News::kWasDamaged) {
    ReportWithReason(kTextWasDamaged, path, 0);
  } else if (file.LastNews() == KnownFile::News::kWasForeign) {
    ReportWithReason(kTextWasForeign, path, 0);
  }
}

void MainFrame::Exit() {
  if (CloseAllCuts()) platform::DestroyWindow(frameWindow);
}

}  // namespace sorvel
