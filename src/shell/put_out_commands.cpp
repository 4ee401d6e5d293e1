// Putting a film or a cut out for those who don't have the program.

#include <cstdio>
#include <cstring>
#include <string>

#include "dialogs/progress_dialog.h"
#include "foundation/paths.h"
#include "foundation/shown_text.h"
#include "platform/player_page.h"
#include "platform/process.h"
#include "platform/text.h"
#include "resources/ids.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"
#include "shell/put_out_job.h"

namespace sorvel {

namespace {

struct TypeRow {
  PutOutType type;
  const char* name;       // UTF-8
  const char* extension;  // null for a folder
};

constexpr TypeRow kTypes[] = {
    {PutOutType::kPage, "ウェブページ (*.html)", "html"},
};

const TypeRow& RowOf(int32_t type) {
  for (const TypeRow& row : kTypes) {
    if (static_cast<int32_t>(row.type) == type) return row;
  }
  return kTypes[0];
}

std::string ShiftJisOf(const std::string& utf8) {
  std::string text;
  platform::Utf8ToShiftJis(utf8, &text);
  return text;
}

std::string FilterOf() {
  std::string filter;
  for (const TypeRow& row : kTypes) {
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

// An ending that is typed decides; without one of these the path gets that of the chosen type.
void FitPath(std::string* path, int32_t* type) {
  char extension[kPathCapacity];
  if (!UpperExtensionOf(extension, path->c_str())) return;
  for (const TypeRow& row : kTypes) {
    if (row.extension == nullptr) continue;
    char upper[kPathCapacity];
    UpperExtensionOf(upper, (std::string("a.") + row.extension).c_str());
    if (std::strcmp(extension, upper) != 0) continue;
    *type = static_cast<int32_t>(row.type);
    return;
  }
  const TypeRow& row = RowOf(*type);
  if (row.extension != nullptr) *path += std::string(".") + row.extension;
}

class PutOutWork final : public ShownWork {
 public:
  explicit PutOutWork(PutOutJob* putOutJob) : job(putOutJob) {}
  PutOutWork(const PutOutWork&) = delete;
  PutOutWork& operator=(const PutOutWork&) = delete;
  // A dialog that couldn't be shown, or was taken away, leaves the work as if it was stopped.
  ~PutOutWork() {
    job->Stop();
    if (thread != nullptr) platform::JoinThread(thread, -1);
  }

  void Begin() override {
    const auto run = [](void* user) { static_cast<PutOutJob*>(user)->Run(); };
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
    const PutOutJob::State now = job->Now();
    State state = {"", static_cast<int32_t>(now.stage), now.permille};
    char text[kTextBufferSize];
    const int32_t percent = now.permille / 10;
    if (now.stage == PutOutJob::Stage::kCuts) {
      std::snprintf(text, sizeof(text), ResourceText(kTextPutOutCuts).c_str(), now.done, now.total);
    } else if (now.total != 0) {
      std::snprintf(text, sizeof(text), ResourceText(kTextPutOutPictures).c_str(), now.done, now.total, percent);
    } else {
      std::snprintf(text, sizeof(text), ResourceText(kTextPutOutPage).c_str(), percent);
    }
    state.text = text;
    return state;
  }

 private:
  PutOutJob* job;  // not owned
  platform::ThreadHandle thread = nullptr;
};

}  // namespace

void MainFrame::PutOut() {
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
  const std::string filter = FilterOf();
  int32_t type = putOutType;
  if (!chosen.AskToSave(frameWindow, {filter.c_str(), nullptr, &type})) return;
  std::string path = chosen.path;
  FitPath(&path, &type);
  putOutType = type;
  const bool isThere = platform::PathExists(path.c_str());
  if (isThere && !platform::AskYesNo(frameWindow, FilledIn(kTextPutOutReplace, path).c_str(), kBoxTitle,
                                     platform::BoxIcon::kQuestion, platform::DefaultButton::kNo)) {
    return;
  }
  char name[kDialogPathSize] = "";
  FileNameOf(name, sizeof(name), document[0] != '\0' ? document : path.c_str(), false);
  PutOutJob job(static_cast<PutOutType>(type), path.c_str());
  if (isFilm ? job.TakeFilm(film, ShownText(name)) : job.TakeCut(cut, ShownText(name))) {
    FileNameOf(name, sizeof(name), path.c_str(), true);
    PutOutWork work(&job);
    ProgressDialog dialog(statusBar, &work, FilledIn(kTextPutOutTitle, name));
    dialog.Run(frameWindow);
  }
  ReportPutOut(job);
}

void MainFrame::ReportPutOut(const PutOutJob& job) {
  switch (job.Outcome()) {
    case PutOutJob::Result::kDone: {
      char name[kDialogPathSize] = "";
      FileNameOf(name, sizeof(name), job.Target(), true);
      SetStatusText(FilledIn(kTextPutOutDone, name).c_str());
      break;
    }
    case PutOutJob::Result::kStopped:
      SetStatusText(ResourceText(kTextPutOutStopped).c_str());
      break;
    case PutOutJob::Result::kNotWritten:
      ReportNotSaved(job.Target(), job.WriteFailure());
      break;
    case PutOutJob::Result::kNotCompiled: {
      // A cut without a file has no name to tell.
      const char* path = job.FailedPath()[0] != '\0' ? job.FailedPath() : job.Target();
      const bool isMissing = job.FailedPath()[0] != '\0' && !platform::PathExists(path);
      if (isMissing) {
        ReportWithReason(kTextNotOpened, path, kTextNoFile);
      } else {
        ReportWithReason(kTextNotPutOut, path, kTextCutNotPutOut);
      }
      break;
    }
  }
}

}  // namespace sorvel
