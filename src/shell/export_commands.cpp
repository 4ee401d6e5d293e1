// Export of a film or a cut for those who don't have the program.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "dialogs/progress_dialog.h"
#include "export/page_writer.h"
#include "foundation/history.h"
#include "foundation/paths.h"
#include "foundation/shown_text.h"
#include "platform/pictures.h"
#include "platform/player_page.h"
#include "platform/process.h"
#include "platform/replacement.h"
#include "platform/text.h"
#include "resources/ids.h"
#include "shell/command_support.h"
#include "shell/export_job.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

struct TypeRow {
  ExportType type;
  const char* name;       // UTF-8
  const char* extension;  // null for a folder
};

constexpr TypeRow kTypes[] = {
    {ExportType::kPage, "ウェブページ (*.html)", "html"},
    {ExportType::kGif, "GIF アニメーション (*.gif)", "gif"},
    {ExportType::kAnimatedPng, "PNG アニメーション (*.png)", "png"},
    {ExportType::kPictures, "PNG の連番 (フォルダー)", nullptr},
};

// The types that this program can write here.
std::vector<TypeRow> OfferedTypes() {
  std::vector<TypeRow> offered;
  for (const TypeRow& row : kTypes) {
    if (row.type == ExportType::kPage && !IsPlayerPage(platform::PlayerPage())) continue;
    if (row.type == ExportType::kGif && !platform::CanEncodeGif()) continue;
    offered.push_back(row);
  }
  return offered;
}

std::string ShiftJisOf(const std::string& utf8) {
  std::string text;
  platform::Utf8ToShiftJis(utf8, &text);
  return text;
}

std::string FilterOf(const std::vector<TypeRow>& types) {
  std::string filter;
  for (const TypeRow& row : types) {
    filter += ShiftJisOf(row.name);
    filter += '\0';
    filter += row.extension != nullptr ? std::string("*.") + row.extension : "*.*";
    filter += '\0';
  }
  return filter + '\0';
}

std::string ResourceText(int32_t id) {
  char text[kTextBufferSize];
  platform::ReadResourceText(id, text, sizeof(text));
  return text;
}

std::string FilledIn(int32_t id, const std::string& word) {
  char text[kPathCapacity + kTextBufferSize];
  std::snprintf(text, sizeof(text), ResourceText(id).c_str(), word.c_str());
  return text;
}

// The ending of a path with its dot, in upper case.
std::string EndingOf(const std::string& path) {
  char ending[kPathCapacity];
  return UpperExtensionOf(ending, path.c_str()) ? ending : "";
}

// The index of the type that a path is written as. An ending that is typed decides; without one of these the path gets
// that of the chosen type. The name of a folder needs none.
size_t FitPath(const std::vector<TypeRow>& types, size_t chosen, std::string* path) {
  const std::string ending = EndingOf(*path);
  const bool isFolder = types[chosen].extension == nullptr;
  for (size_t i = 0; i < types.size(); ++i) {
    if (types[i].extension == nullptr || ending != EndingOf(std::string("a.") + types[i].extension)) continue;
    if (!isFolder || types[i].type != ExportType::kAnimatedPng) return i;
    path->resize(path->size() - ending.size());
    return chosen;
  }
  if (!isFolder) *path += std::string(".") + types[chosen].extension;
  return chosen;
}

class ExportWork final : public ShownWork {
 public:
  explicit ExportWork(ExportJob* exportJob) : job(exportJob) {}
  ExportWork(const ExportWork&) = delete;
  ExportWork& operator=(const ExportWork&) = delete;
  // A dialog that couldn't be shown, or was taken away, leaves the work as if it was stopped.
  ~ExportWork() {
    job->Stop();
    if (thread != nullptr) platform::JoinThread(thread, -1);
  }

  void Begin() override {
    const auto run = [](void* user) { static_cast<ExportJob*>(user)->Run(); };
    thread = platform::StartThread(run, job);
    if (thread == nullptr) job->Run();
  }
  bool HasEnded() override {
    constexpr int32_t moment = 5;
    if (thread != nullptr && platform::JoinThread(thread, moment)) thread = nullptr;
    return thread == nullptr;
  }
  void Stop() override { job->Stop(); }
  State Look() override {
    const ExportJob::State now = job->Now();
    State state = {"", static_cast<int32_t>(now.stage), now.permille};
    char text[kTextBufferSize];
    const int32_t percent = now.permille / 10;
    if (now.stage == ExportJob::Stage::kCuts) {
      std::snprintf(text, sizeof(text), ResourceText(kTextExportCuts).c_str(), now.done, now.total);
    } else if (now.total != 0) {
      std::snprintf(text, sizeof(text), ResourceText(kTextExportPictures).c_str(), now.done, now.total, percent);
    } else {
      std::snprintf(text, sizeof(text), ResourceText(kTextExportPage).c_str(), percent);
    }
    state.text = text;
    return state;
  }

 private:
  ExportJob* job;  // not owned
  platform::ThreadHandle thread = nullptr;
};

}  // namespace

void MainFrame::ExportAs() {
  CutWindow* cut = ActiveCut();
  const bool isFilm = film->cuts.Count() != 0;
  if (!isFilm && cut == nullptr) {
    platform::ShowMessage(frameWindow, ResourceText(kTextSheetNoCut).c_str(), kBoxTitle,
                          platform::BoxIcon::kInformation);
    return;
  }
  // The name of the document, in its folder.
  const char* document = isFilm ? film->path : cut->path;
  ChosenPath chosen;
  PathParts parts;
  char start[kPathCapacity];
  if (SplitPath(document, &parts)) {
    parts.extension[0] = '\0';
    if (JoinPath(start, parts) && std::strlen(start) < sizeof(chosen.path)) std::strcpy(chosen.path, start);
  }
  const std::vector<TypeRow> types = OfferedTypes();
  const std::string filter = FilterOf(types);
  int32_t number = exportType;
  if (!chosen.AskToSave(frameWindow, {filter.c_str(), nullptr, &number})) return;
  std::string path = chosen.path;
  const size_t index = std::clamp<size_t>(static_cast<size_t>(number), 1, types.size()) - 1;
  const size_t fitting = FitPath(types, index, &path);
  exportType = static_cast<int32_t>(fitting) + 1;
  const ExportType type = types[fitting].type;
  if (type == ExportType::kPictures) {
    int problem = 0;
    const bool isEmpty = platform::NamesInFolder(Utf8Path(path.c_str()), &problem).empty() && problem == 0;
    if (platform::PathExists(path.c_str()) && !isEmpty) {
      ReportWithReason(kTextNotExported, path.c_str(), kTextFolderTaken);
      return;
    }
  } else if (platform::PathExists(path.c_str()) &&
             !platform::AskYesNo(frameWindow, FilledIn(kTextExportReplace, path).c_str(), kBoxTitle,
                                 platform::BoxIcon::kQuestion, platform::DefaultButton::kNo)) {
    return;
  }
  char name[kDialogPathSize] = "";
  FileNameOf(name, sizeof(name), document[0] != '\0' ? document : path.c_str(), false);
  ExportJob job(type, path.c_str());
  if (isFilm ? job.TakeFilm(film, ShownText(name)) : job.TakeCut(cut, ShownText(name))) {
    FileNameOf(name, sizeof(name), path.c_str(), true);
    ExportWork work(&job);
    ProgressDialog dialog(statusBar, &work, FilledIn(kTextExportTitle, name));
    dialog.Run(frameWindow);
  }
  ReportExport(job);
}

void MainFrame::ReportExport(const ExportJob& job) {
  switch (job.Outcome()) {
    case ExportJob::Result::kDone: {
      char name[kDialogPathSize] = "";
      FileNameOf(name, sizeof(name), job.Target(), true);
      SetStatusText(FilledIn(kTextExportDone, name).c_str());
      break;
    }
    case ExportJob::Result::kStopped:
      SetStatusText(ResourceText(kTextExportStopped).c_str());
      break;
    case ExportJob::Result::kNotWritten:
      ReportNotSaved(job.Target(), job.WriteFailure());
      break;
    case ExportJob::Result::kNotCompiled: {
      // A cut without a file has no name to tell.
      const char* path = job.FailedPath()[0] != '\0' ? job.FailedPath() : job.Target();
      const bool isMissing = job.FailedPath()[0] != '\0' && !platform::PathExists(path);
      if (isMissing) {
        ReportWithReason(kTextNotOpened, path, kTextNoFile);
      } else {
        ReportWithReason(kTextNotExported, path, kTextCutNotExported);
      }
      break;
    }
  }
}

}  // namespace sorvel
