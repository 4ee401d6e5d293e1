#include <cerrno>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

#include "animation/film_container.h"
#include "dialogs/dialogs.h"
#include "foundation/paths.h"
#include "foundation/settings.h"
#include "resources/ids.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

// The name of a file without directory and extension; empty if it is too long for a list or a title.
struct BareName {
  explicit BareName(const char* path) {
    if (!FileNameOf(text, sizeof(text), path, false)) text[0] = '\0';
  }
  char text[kDialogPathSize];
};

std::vector<int32_t> SelectedLines(platform::WindowHandle list) {
  std::vector<int32_t> lines;
  for (int32_t i = 0; i < platform::ListCount(list); ++i) {
    if (platform::IsListLineSelected(list, i)) lines.push_back(i);
  }
  return lines;
}

// A source that can't be read, or is the target itself, is skipped and counts as copied.
WriteProblem CopyFile(const char* from, const char* to) {
  CommandFile source(from, "rb");
  const platform::FileFacts facts = platform::FactsOf(Utf8Path(from));
  if (!source.IsOpen() || facts == platform::FactsOf(Utf8Path(to))) return WriteProblem::kNone;
  ReplacementFile target;
  const bool isCopied = target.Open(to) && CopyStream(source.stream, target.stream, -1) && KnownFile().Commit(&target);
  return isCopied ? WriteProblem::kNone : target.WhyNot();
}

}  // namespace

// The film and its file.

void MainFrame::SetFrameTitle(const char* filmPath) {
  char title[sizeof(kFrameTitle) + kDialogPathSize + 3];
  if (filmPath != nullptr) {
    std::snprintf(title, sizeof(title), "%s - %s", kFrameTitle, BareName(filmPath).text);
  } else {
    std::snprintf(title, sizeof(title), "%s", kFrameTitle);
  }
  frameTitle = title;
  platform::SetText(frameWindow, title);
}

void MainFrame::InsertCutLine(int32_t index, const char* path) {
  platform::InsertListLine(cutList, index, BareName(path).text);
}

void MainFrame::NewFilm() {
  if (!AskSaveFilm()) return;
  char title[kSettingTextSize];
  char author[kSettingTextSize];
  ReadSettingText(settings::kNewFilmTitle, title, sizeof(title));
  ReadSettingText(settings::kNewFilmAuthor, author, sizeof(author));
  FilmDialog dialog(statusBar, ReadSettingNumber(settings::kNewFilmWidth), ReadSettingNumber(settings::kNewFilmHeight),
                    title, author);
  if (!dialog.Run(frameWindow)) return;
  // The cut windows stay open but belong to no film.
  film->Reset();
  film->width = dialog.width;
  film->height = dialog.height;
  AssignString(&film->title, dialog.title);
  AssignString(&film->author, dialog.author);
  platform::ClearList(cutList);
  WriteSettingNumber(settings::kNewFilmWidth, dialog.width);
  WriteSettingNumber(settings::kNewFilmHeight, dialog.height);
  WriteSettingText(settings::kNewFilmTitle, dialog.title);
  WriteSettingText(settings::kNewFilmAuthor, dialog.author);
  SetFrameTitle(nullptr);
}

void MainFrame::OpenFilm() {
  if (!AskSaveFilm()) return;
  ChosenPath chosen;
  if (!chosen.AskToOpen(frameWindow, kFilmFiles)) return;
  OpenFilmFile(chosen.path);
  ReportOpening(chosen.path);
}

bool MainFrame::OpenFilmFile(const char* path) {
  // Quirk 22. A failure leaves an empty film, while the list stays as it was: every command on a line meets entries
  // that may not be there.
  KeepUnsavedFilm();
  LoadReport report;
  const bool isOpen = film->Load(path, platform::kPathSeparator, &report);
  openingNews = !isOpen ? NewsOf(path, nullptr, false) : report.isForeign ? kTextNoFilm : 0;
  if (!isOpen) return false;
  ShowFilm();
  return true;
}

void MainFrame::ShowFilm() {
  SetFrameTitle(film->path[0] != '\0' ? film->path : nullptr);
  const QuietList quiet(cutList);
  platform::ClearList(cutList);
  for (int32_t i = 0; i < film->cuts.Count(); ++i) InsertCutLine(-1, film->CutName(i));
  platform::SetListLineSelected(cutList, 0, true);
  platform::SetListCaret(cutList, 0);
}

SaveResult MainFrame::SaveFilmAs() {
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kFilmFiles)) return SaveResult::kCancelled;
  WriteProblem problem = WriteProblem::kNone;
  const bool isSaved = film->SaveTo(chosen.path, platform::kPathSeparator, &problem);
  // The title changes with either result.
  SetFrameTitle(chosen.path);
  if (isSaved) recovery.ForgetFilm();
  ReportSave(chosen.path, problem, film->knownFile);
  return isSaved ? SaveResult::kSaved : SaveResult::kFailed;
}

SaveResult MainFrame::OverwriteFilm() {
  if (film->path[0] != '\0') {
    WriteProblem problem = WriteProblem::kNone;
    bool isSaved = false;
    {
      const WaitCursor wait;
      isSaved = film->Save(platform::kPathSeparator, &problem);
    }
    if (isSaved) recovery.ForgetFilm();
    ReportSave(film->path, problem, film->knownFile);
    if (isSaved) return SaveResult::kSaved;
  }
  return SaveFilmAs();
}

void MainFrame::EditFilmProperties() {
  FilmDialog dialog(statusBar, film->width, film->height, film->title, film->author);
  if (!dialog.Run(frameWindow)) return;
  film->width = dialog.width;
  film->height = dialog.height;
  AssignString(&film->title, dialog.title);
  AssignString(&film->author, dialog.author);
  film->modified = 1;
}

// Cuts of the film. Line i of the list stands for entry i.

void MainFrame::AddOrInsertActiveCut(bool insert) {
  CutWindow* cut = ActiveCut();
  if (cut == nullptr || (cut->path[0] == '\0' && SaveCutAs(cut) != SaveResult::kSaved)) return;
  const int32_t caret = platform::ListCaret(cutList);
  if (!(insert ? film->InsertCut(cut, caret) : film->AddCut(cut, caret))) return;
  const int32_t line = insert ? caret : caret + 1;
  InsertCutLine(platform::ListCount(cutList) == 0 ? -1 : line, cut->path);
  platform::SetListCaret(cutList, line);
  if (!insert) SelectCutLine(cut);
}

void MainFrame::RemoveActiveCut() {
  const int32_t index = film->FindCut(ActiveCut());
  if (film->RemoveCut(index)) platform::DeleteListLine(cutList, index);
}

CutWindow* MainFrame::WindowOfEntry(int32_t index) {
  return WindowOfCut(film->cuts.At(index).cut);
}

void MainFrame::OpenListedCut() {
  const int32_t index = platform::ListCaret(cutList);
  if (const CutWindow* open = WindowOfEntry(index)) {
    platform::ActivateMdiChild(mdiClient, open->window);
  } else {
    const char* path = film->CutName(index);
    OpenCutFile(path);
    ReportOpening(path);
  }
}

void MainFrame::NewNumberedCut(bool insert) {
  if (film->cuts.Count() == 0) {
    NewCut();
    AddOrInsertActiveCut(false);
    return;
  }
  const char* name = film->CutName(platform::ListCaret(cutList));
  char path[kPathCapacity];
  if (name[0] == '\0' || std::strlen(name) >= sizeof(path)) return;
  std::strcpy(path, name);
  // Quirk 16. Behind number 999 the path stays, and the new cut takes the place of the one at the caret.
  NextNumberedName(path);
  CutDialog dialog(statusBar);
  if (!dialog.Run(frameWindow)) return;
  CutWindow* cut = MakeNewCut(dialog, path);
  if (cut == nullptr) return;
  const WriteProblem problem = cut->SaveToFile(cut->path, false);
  ReportSave(cut->path, problem, cut->knownFile);
  AddOrInsertLayer(cut, false);
  AddOrInsertActiveCut(insert);
}

void MainFrame::DeleteCuts() {
  if (film->cuts.Count() == 0) return;
  char question[kTextBufferSize];
  platform::ReadResourceText(kTextDeleteQuestion, question, sizeof(question));
  // Quirk 17. No keeps the files; the lines go with either answer.
  const bool deletesFiles =
      platform::AskYesNo(frameWindow, question, kBoxTitle, platform::BoxIcon::kQuestion, platform::DefaultButton::kNo);
  const std::vector<int32_t> lines = SelectedLines(cutList);
  for (size_t i = lines.size(); i-- > 0;) {
    if (deletesFiles) DeleteCutFiles(lines[i]);
    film->RemoveCut(lines[i]);
  }
  // The line behind each deleted one comes out selected.
  const QuietList quiet(layerList);
  for (size_t i = lines.size(); i-- > 0;) {
    platform::DeleteListLine(cutList, lines[i]);
    platform::SetListCaret(cutList, lines[i]);
    platform::SetListLineSelected(cutList, lines[i], true);
  }
}

void MainFrame::DeleteCutFiles(int32_t index) {
  const char* path = film->CutName(index);
  if (path[0] == '\0') return;
  if (!DeleteDocument(Utf8Path(path)) && platform::PathExists(path)) {
    ReportWithReason(kTextNotDeleted, path, kTextReadOnly);
  }
  char cachePath[kPathCapacity];
  if (ChangeExtension(cachePath, path, "ca")) platform::DeletePath(cachePath);
  CutWindow* open = WindowOfEntry(index);
  if (open == nullptr) return;
  ChunkStream contents;
  if (open->Has(kModified) && WriteUnsaved(open, &contents)) {
    KeepUnsaved(Utf8Path(open->path), kCutFiles.defaultExtension, &contents);
  }
  open->stateFlags &= ~static_cast<uint32_t>(kModified | kTimingStale);
  open->stateFlags |= kImagesStale;
  platform::DestroyMdiChild(mdiClient, open->window);
}

void MainFrame::RenameListedCut() {
  if (film->cuts.Count() == 0) return;
  const int32_t index = platform::ListCaret(cutList);
  char path[kPathCapacity];
  char newPath[kPathCapacity];
  std::snprintf(path, sizeof(path), "%s", film->CutName(index));
  if (path[0] == '\0') return;
  RenameDialog dialog(statusBar, BareName(path).text);
  char oldName[kDialogTextSize];
  std::strcpy(oldName, dialog.name);
  if (!dialog.Run(frameWindow) || std::strcmp(dialog.name, oldName) == 0) return;
  std::strcpy(newPath, path);
  if (!ReplaceName(newPath, dialog.name, nullptr)) return;

  // An entry without a file gets its new name all the same.
  const std::string from = Utf8Path(path);
  const std::string to = Utf8Path(newPath);
  const bool isTaken = platform::PathExists(newPath) && platform::FactsOf(from) != platform::FactsOf(to);
  if (isTaken || (platform::PathExists(path) && !RenameDocument(from, to))) {
    ReportWithReason(kTextNotRenamed, path, isTaken || errno == EEXIST ? kTextNameTaken : kTextReadOnly);
    return;
  }
  RenameCutLines(path, dialog.name);
  platform::SetListCaret(cutList, index);
  if (CutWindow* open = WindowOfEntry(index)) {
    AssignString(&open->path, newPath);
    open->knownFile.Rename(to);
    open->UpdateTitle();
  }
  film->RenameCut(index, newPath);
}

void MainFrame::RenameCutLines(const char* path, const char* name) {
  const QuietList quiet(cutList);
  for (int32_t i = 0; i < film->cuts.Count(); ++i) {
    if (std::strcmp(film->CutName(i), path) != 0) continue;
    ReplaceListLine(cutList, i, i, name);
  }
}

// The new film has its cuts in its own folder, so its lines are bare names with the extension cut. A cut that is copied
// onto itself stays as it is.
void MainFrame::ExtractCuts() {
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kFilmFiles)) return;
  ReplacementFile file;
  if (!file.Open(chosen.path, ReplacementFile::Form::kText)) {
    ReportNotSaved(chosen.path, file.problem());
    return;
  }
  film->WriteHead(file.stream.file);
  for (const int32_t line : SelectedLines(cutList)) {
    const char* path = film->CutName(line);
    if (path[0] == '\0') continue;
    const BareName name(path);
    std::fprintf(file.stream.file, "%s.cut\n", name.text);
    char target[kPathCapacity];
    std::strcpy(target, chosen.path);
    if (!ReplaceName(target, name.text, "cut")) continue;
    const WriteProblem problem = CopyFile(path, target);
    if (problem != WriteProblem::kNone) ReportNotSaved(target, problem);
  }
  if (!KnownFile().Commit(&file)) ReportNotSaved(chosen.path, file.WhyNot());
}

// Playback.

void MainFrame::ExportFilm() {
  if (film->cuts.Count() == 0) return;
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kContainerFiles)) return;
  WaitCursor wait;
  ReplacementFile file;
  if (!file.Open(chosen.path)) {
    wait.Leave();
    ReportNotSaved(chosen.path, file.problem());
    return;
  }
  std::vector<int32_t> order(static_cast<size_t>(film->cuts.Count()));
  std::iota(order.begin(), order.end(), 0);
  const bool isMade =
      WriteFilmContainer(film, order.data(), film->cuts.Count(), &file.stream, &animationWindow.bitmap, nullptr);
  const bool isWritten = isMade && file.Commit();
  if (isWritten) return;
  wait.Leave();
  // A cut that can't be compiled fails with a sound alone; a file that can't be written says so.
  if (isMade || file.stream.failure != 0) {
    file.Commit();
    ReportNotSaved(chosen.path, file.WhyNot());
  } else {
    platform::PlayAlert();
  }
}

void MainFrame::PlaySelectedCuts() {
  const std::vector<int32_t> lines = SelectedLines(cutList);
  if (lines.empty()) return;
  CommandFile file(platform::OpenTemporaryFile());
  if (!file.IsOpen()) return;
  StopAnimation();
  if (!WriteFilmContainer(film, lines.data(), static_cast<int32_t>(lines.size()), &file.stream, &animationWindow.bitmap,
                          nullptr)) {
    platform::PlayAlert();
    return;
  }
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  if (ReadWholeStream(file.stream, &bytes, &size)) PlayBuffer(std::move(bytes), size);
}

}  // namespace sorvel
