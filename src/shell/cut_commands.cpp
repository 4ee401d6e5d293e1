// The commands on cuts and their files, and playing a cut.

#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

#include "dialogs/dialogs.h"
#include "foundation/history.h"
#include "foundation/paths.h"
#include "foundation/settings.h"
#include "shell/command_support.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

// The number, the time, the reason and the length of a kept version, as a line of a list.
std::string LineOf(const Generation& version, size_t number) {
  char kind[kTextBufferSize];
  char unit[kTextBufferSize];
  platform::ReadResourceText(kTextSavedVersion + static_cast<int32_t>(version.kind), kind, sizeof(kind));
  platform::ReadResourceText(kTextVersionBytes, unit, sizeof(unit));
  char time[32] = "";
  const std::time_t seconds = static_cast<std::time_t>(version.time);
  if (const std::tm* local = std::localtime(&seconds)) std::strftime(time, sizeof(time), "%Y/%m/%d %H:%M:%S", local);
  char line[4 * kTextBufferSize];
  std::snprintf(line, sizeof(line), "%03d  %s  %s  %lld %s", static_cast<int>(number), time, kind,
                static_cast<long long>(version.bytes), unit);
  return line;
}

}  // namespace

bool MainFrame::OpenByExtension(const char* path) {
  openingNews = 0;
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
  if (cut->Create(mdiClient)) {
    openCuts.push_back(cut);
    ShowEmptyNote();
    // Under Wine the frame would keep the name of the cut that was active before.
    platform::SetText(frameWindow, frameTitle.c_str());
    return cut;
  }
  delete cut;
  return nullptr;
}

// Opening.

void MainFrame::OpenCut() {
  ChosenPath chosen;
  if (!chosen.AskToOpen(frameWindow, kCutFiles)) return;
  OpenCutFile(chosen.path);
  ReportOpening(chosen.path);
}

// A read that fails looks like the end of the file.
int32_t MainFrame::NewsOf(const char* path, FILE* file, bool isRead) {
  if (file == nullptr) return platform::PathExists(path) ? kTextNotReadable : kTextNoFile;
  if (std::ferror(file) != 0) return isRead ? kTextReadInPart : kTextNotReadable;
  return isRead ? 0 : kTextForeignFile;
}

void MainFrame::ReportOpening(const char* path) {
  // A line of the list may have no entry in the film.
  if (openingNews == 0 || path[0] == '\0') return;
  const bool isOpen = openingNews == kTextNoFilm || openingNews == kTextReadInPart;
  isOpen ? ReportWithReason(openingNews, path, 0) : ReportWithReason(kTextNotOpened, path, openingNews);
}

CutWindow* MainFrame::OpenCutFile(const char* path) {
  CommandFile file(path, "rb");
  CutWindow* cut = file.IsOpen() ? OpenCutStream(&file.stream, path) : nullptr;
  openingNews = NewsOf(path, file.stream.file, cut != nullptr);
  if (cut == nullptr) return nullptr;
  if (openingNews != 0) cut->knownFile.MarkDamaged();
  film->CutOpened(cut);
  return cut;
}

CutWindow* MainFrame::OpenCutStream(ByteStream* stream, const char* path) {
  CutWindow* cut = new CutWindow(this, 0, 0, kUnreadFps, "", 0);
  if (path[0] != '\0') cut->knownFile.Remember(Utf8Path(path));
  LoadReport report;
  if (!cut->Load(stream, &cut->prototype, &report) || !cut->FitView()) {
    delete cut;
    return nullptr;
  }
  if (report.IsDamaged()) cut->knownFile.MarkDamaged();
  cut->RepaintAll();
  AssignString(&cut->path, path);
  return ShowCut(cut);
}

bool MainFrame::OpenLeftDocument(const LeftDocument& document) {
  const char* path = document.path.c_str();
  CommandFile file(platform::OpenFileAt(document.file, "rb"));
  if (!file.IsOpen()) return false;
  if (document.extension == kFilmFiles.defaultExtension) {
    film->Reset();
    film->knownFile.Remember(Utf8Path(path));
    film->Read(file.stream.file, path, platform::kPathSeparator, nullptr);
    AssignString(&film->path, path);
    film->modified = 1;
    ShowFilm();
    return true;
  }
  CutWindow* cut = OpenCutStream(&file.stream, path);
  if (cut == nullptr) return false;
  cut->stateFlags |= kModified;
  // The start may have opened the file itself.
  for (CutWindow* other : std::vector<CutWindow*>(openCuts)) {
    const bool isSame = other != cut && path[0] != '\0' && std::strcmp(other->path, path) == 0;
    if (isSame && !other->Has(kModified)) platform::DestroyMdiChild(mdiClient, other->window);
  }
  film->CutOpened(cut);
  return true;
}

// Saving.

bool MainFrame::SaveCutFile(CutWindow* cut, const char* path) {
  WriteProblem problem = WriteProblem::kNone;
  {
    const WaitCursor wait;
    problem = cut->SaveToFile(path, true);
  }
  if (problem == WriteProblem::kNone) recovery.ForgetCut(cut);
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

// Kept versions.

void MainFrame::OpenVersion(CutWindow* cut) {
  std::vector<Generation> versions = ListGenerations(Utf8Path(cut->path));
  // Films without a path lie in the same folder.
  std::erase_if(versions, [cut](const Generation& version) {
    return cut->path[0] == '\0' && !version.path.ends_with(std::string(".").append(kCutFiles.defaultExtension));
  });
  if (versions.empty()) {
    char text[kTextBufferSize];
    platform::ReadResourceText(kTextNoVersions, text, sizeof(text));
    platform::ShowMessage(frameWindow, text, kBoxTitle, platform::BoxIcon::kInformation);
    return;
  }
  std::vector<std::string> lines;
  lines.reserve(versions.size());
  for (const Generation& version : versions) lines.push_back(LineOf(version, lines.size() + 1));
  VersionDialog dialog(statusBar, std::move(lines));
  if (!dialog.Run(frameWindow)) return;
  CommandFile file(platform::OpenFileAt(versions[dialog.chosen].path, "rb"));
  CutWindow* opened = file.IsOpen() ? OpenCutStream(&file.stream, cut->path) : nullptr;
  if (opened != nullptr) opened->stateFlags |= kModified;
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
