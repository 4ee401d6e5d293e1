#include <cstdio>
#include <cstring>

#include "dialogs/dialogs.h"
#include "foundation/paths.h"
#include "foundation/settings.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

// A cut that is to be read from a file begins without a size.
constexpr int32_t kUnreadFps = 20;

}  // namespace

bool MainFrame::OpenByExtension(const char* path) {
  char extension[kPathCapacity];
  if (!UpperExtensionOf(extension, path)) return false;
  if (std::strcmp(extension, ".CUT") == 0) return OpenCutFile(path) != nullptr;
  if (std::strcmp(extension, ".LYR") == 0) return OpenLayerFile(path) != nullptr;
  return std::strcmp(extension, ".FLM") == 0 && OpenFilmFile(path);
}

// New cuts.

void MainFrame::NewCut() {
  char credit[kSettingTextSize];
  ReadSettingText(settings::kNewCutCredit, credit, sizeof(credit));
  CutDialog dialog(statusBar, ReadSettingNumber(settings::kNewCutWidth), ReadSettingNumber(settings::kNewCutHeight),
                   ReadSettingNumber(settings::kNewCutFps), credit, ReadSettingNumber(settings::kNewCutAntialias));
  if (!dialog.Run(frameWindow)) return;
  WriteSettingNumber(settings::kNewCutWidth, dialog.width);
  WriteSettingNumber(settings::kNewCutHeight, dialog.height);
  WriteSettingNumber(settings::kNewCutFps, dialog.fps);
  WriteSettingNumber(settings::kNewCutAntialias, dialog.antialias);
  WriteSettingText(settings::kNewCutCredit, dialog.credit);
  if (CutWindow* cut = MakeNewCut(dialog, "")) AddOrInsertLayer(cut, false);
}

CutWindow* MainFrame::MakeNewCut(const CutDialog& values, const char* path) {
  CutWindow* cut = new CutWindow(this, values.width, values.height, values.fps, values.credit, values.antialias);
  AssignString(&cut->path, path);
  cut->AddFrame();
  cut->stateFlags &= ~static_cast<uint32_t>(kModified | kTimingStale);
  cut->stateFlags |= kImagesStale;
  return ShowCut(cut);
}

CutWindow* MainFrame::ShowCut(CutWindow* cut) {
  if (cut->Create(mdiClient)) return cut;
  delete cut;
  return nullptr;
}

// Opening.

void MainFrame::OpenCut() {
  ChosenPath chosen;
  if (chosen.AskToOpen(frameWindow, kCutFiles)) OpenCutFile(chosen.path);
}

CutWindow* MainFrame::OpenCutFile(const char* path) {
  CommandFile file(path, "rb");
  if (!file.IsOpen()) return nullptr;
  CutWindow* cut = new CutWindow(this, 0, 0, kUnreadFps, "", 0);
  if (!cut->Load(&file.stream, &cut->prototype) || !cut->FitView()) {
    delete cut;
    return nullptr;
  }
  cut->RepaintAll();
  AssignString(&cut->path, path);
  cut = ShowCut(cut);
  if (cut != nullptr) film->CutOpened(cut);
  return cut;
}

void MainFrame::OpenLayer() {
  ChosenPath chosen;
  if (chosen.AskToOpen(frameWindow, kLayerFiles)) OpenLayerFile(chosen.path);
}

CutWindow* MainFrame::OpenLayerFile(const char* path) {
  CommandFile file(path, "rb");
  if (!file.IsOpen()) return nullptr;
  CutWindow* cut = new CutWindow(this, 0, 0, kUnreadFps, "", 0);
  Frame* frame = cut->AddFrame();
  if (!cut->LoadLayer(&file.stream)) {
    delete cut;
    return nullptr;
  }
  const Layer* layer = frame->LayerAt(frame->currentRecord);
  cut->width = cut->frameWidth = layer->width;
  cut->height = cut->frameHeight = layer->height;
  if (!cut->FitView()) {
    delete cut;
    return nullptr;
  }
  cut->MarkTiming();
  cut->RepaintAll();
  cut = ShowCut(cut);
  // It counts as saved and compiled: nobody is asked about a layer that was only looked at.
  if (cut != nullptr) cut->stateFlags &= ~static_cast<uint32_t>(kModified | kImagesStale | kTimingStale);
  return cut;
}

// Saving.

bool MainFrame::SaveCutAs(CutWindow* cut) {
  CommitPanels(cut);
  ChosenPath chosen;
  std::snprintf(chosen.path, sizeof(chosen.path), "%s", cut->path);
  if (!chosen.AskToSave(frameWindow, kCutFiles)) return false;
  CommandFile file(chosen.path, "wb");
  // Quirk 18. A file that doesn't open counts as saved: only a cancel stops the caller.
  if (!file.IsOpen()) return true;
  {
    WaitCursor wait;
    cut->PurgeUnusedLayers();
    cut->Save(&file.stream);
  }
  AssignString(&cut->path, chosen.path);
  cut->UpdateTitle();
  return true;
}

// What is still being typed into a panel isn't stored.
void MainFrame::OverwriteCut(CutWindow* cut) {
  bool isSaved = false;
  {
    WaitCursor wait;
    cut->PurgeUnusedLayers();
    isSaved = cut->SaveToPath();
  }
  if (!isSaved) SaveCutAs(cut);
}

}  // namespace sorvel
