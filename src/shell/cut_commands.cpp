// The commands on cuts and their files, and playing a cut.

#include <cstdio>
#include <cstring>

#include "dialogs/dialogs.h"
#include "foundation/paths.h"
#include "foundation/settings.h"
#include "shell/command_support.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

namespace sorvel {

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
  cut->knownFile.Remember(Utf8Path(path));
  LoadReport report;
  if (!cut->Load(&file.stream, &cut->prototype, &report) || !cut->FitView()) {
    delete cut;
    return nullptr;
  }
  if (report.IsDamaged()) cut->knownFile.MarkDamaged();
  cut->RepaintAll();
  AssignString(&cut->path, path);
  cut = ShowCut(cut);
  if (cut != nullptr) film->CutOpened(cut);
  return cut;
}

// Saving.

bool MainFrame::SaveCutFile(CutWindow* cut, const char* path) {
  WriteProblem problem = WriteProblem::kNone;
  {
    const WaitCursor wait;
    problem = cut->SaveToFile(path, true);
  }
  ReportSave(path, problem, cut->knownFile);
  return problem == WriteProblem::kNone;
}

SaveResult MainFrame::SaveCutAs(CutWindow* cut) {
  CommitPanels(cut);
  ChosenPath chosen;
  std::snprintf(chosen.path, sizeof(chosen.path), "%s", cut->path);
  if (!chosen.AskToSave(frameWindow, kCutFiles)) return SaveResult::kCancelled;
  if (!SaveCutFile(cut, chosen.path)) return SaveResult::kFailed;
  AssignString(&cut->path, chosen.path);
  cut->UpdateTitle();
  return SaveResult::kSaved;
}

// Doesn't commit the panels.
SaveResult MainFrame::OverwriteCut(CutWindow* cut) {
  if (cut->path[0] == '\0') {
    cut->PurgeUnusedLayers();
  } else if (SaveCutFile(cut, cut->path)) {
    return SaveResult::kSaved;
  }
  return SaveCutAs(cut);
}

// Properties and playing.

void MainFrame::EditCutProperties(CutWindow* cut) {
  CutDialog dialog(statusBar, cut->width, cut->height, cut->fps, cut->credit, cut->Antialias());
  if (!dialog.Run(frameWindow)) return;
  if (dialog.width != cut->width || dialog.height != cut->height) {
    cut->width = dialog.width;
    cut->height = dialog.height;
    cut->FitView();
  }
  cut->fps = dialog.fps;
  cut->SetAntialias(dialog.antialias);
  AssignString(&cut->credit, dialog.credit);
  platform::InvalidateClient(cut->window, true);
  cut->MarkImages();
  cut->RepaintAll();
}

void PlayAndRepaint(CutWindow* cut) {
  {
    const WaitCursor wait;
    cut->PlayCut();
  }
  cut->RepaintAll();
}

}  // namespace sorvel
