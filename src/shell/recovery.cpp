#include "shell/recovery.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include "foundation/history.h"
#include "foundation/settings.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/replacement.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr char kCutExtension[] = "cut";
constexpr char kFilmExtension[] = "flm";

// What the main thread gives to a snapshot at a time: about two milliseconds of copying.
constexpr int64_t kCopiedAtOnce = 2 << 20;
constexpr std::chrono::milliseconds kTimeAtOnce{3};

// Input that never pauses so long is interrupted for snapshots after so many of these pauses.
constexpr int32_t kLongestInput = 6;

// How long a crash waits for snapshots that are being written, in milliseconds.
constexpr int32_t kCrashPatience = 2000;

// Whether a document's file holds just what was kept: the program ended between the end of a save and its snapshot's.
bool IsSaved(const LeftDocument& document) {
  const std::string path = Utf8Path(document.path.c_str());
  if (path.empty() || platform::FactsOf(path).bytes != platform::FactsOf(document.file).bytes) return false;
  CommandFile saved(platform::OpenFileAt(path, "rb"));
  CommandFile kept(platform::OpenFileAt(document.file, "rb"));
  if (!saved.IsOpen() || !kept.IsOpen()) return false;
  int byte = 0;
  do {
    byte = std::fgetc(saved.stream.file);
    if (byte != std::fgetc(kept.stream.file)) return false;
  } while (byte != EOF);
  return true;
}

}  // namespace

Recovery::~Recovery() {
  FinishWriting(-1);
}

bool Recovery::Begin(const std::string& store, Writing writingMode) {
  storeFolder = store;
  writing = writingMode;
  pause = std::chrono::seconds(std::max(ReadSettingNumber(settings::kAutosave), 0));
  return folder.Create(store);
}

// What ended programs left.

void Recovery::OpenLeft(bool asks, bool opensFilm) {
  if (!IsOn()) return;
  std::vector<RecoveryFolder> left = RecoveryFolder::TakeLeft(storeFolder);
  for (RecoveryFolder& each : left) {
    for (const LeftDocument& document : each.Documents()) {
      if (IsSaved(document)) each.Remove(document.number, document.extension.c_str());
    }
    if (each.Documents().empty()) each.Destroy();
  }
  std::erase_if(left, [](const RecoveryFolder& each) { return !each.IsOpen(); });
  if (left.empty()) return;
  char question[kTextBufferSize];
  platform::ReadResourceText(kTextRecoverQuestion, question, sizeof(question));
  const bool opens = !asks || platform::AskYesNo(frame->frameWindow, question, kBoxTitle, platform::BoxIcon::kQuestion);
  struct Opened {
    const RecoveryFolder* folder;
    LeftDocument document;
  };
  std::vector<Opened> opened;
  // The film comes first: it learns of its cuts as they open.
  for (const std::string extension : {kFilmExtension, kCutExtension}) {
    for (const RecoveryFolder& each : left) {
      for (const LeftDocument& document : each.Documents()) {
        if (document.extension != extension) continue;
        const bool isWanted = extension == kCutExtension || (opensFilm && frame->film->modified == 0);
        if (opens && isWanted && frame->OpenLeftDocument(document)) {
          opened.push_back({&each, document});
        } else if (KeepInHistory(document)) {
          each.Remove(document.number, document.extension.c_str());
        }
      }
    }
  }
  // A second crash must lose nothing: what was left goes only when this run has all of it.
  while (!KeepChanges()) FinishWriting(-1);
  FinishWriting(-1);
  if (std::none_of(documents.begin(), documents.end(),
                   [](const std::unique_ptr<Kept>& document) { return document->isWaiting; })) {
    for (const Opened& each : opened) each.folder->Remove(each.document.number, each.document.extension.c_str());
  }
  for (RecoveryFolder& each : left) {
    if (each.Documents().empty()) each.Destroy();
  }
}

bool Recovery::KeepInHistory(const LeftDocument& document) {
  CommandFile file(platform::OpenFileAt(document.file, "rb"));
  return file.IsOpen() && KeepUnsaved(Utf8Path(document.path.c_str()), document.extension, &file.stream);
}

// Snapshots.

bool Recovery::KeepChanges() {
  if (!IsOn()) return true;
  if (!FinishWriting(0)) return false;
  const Clock::time_point end = Clock::now() + kTimeAtOnce;
  const std::vector<CutWindow*>& cuts = frame->openCuts;
  bool hasAll = true;
  while (nextCut < cuts.size() && hasAll) {
    hasAll = KeepCut(cuts[nextCut]);
    if (hasAll) ++nextCut;
    if (writing == Writing::kOnThread && nextCut < cuts.size() && Clock::now() > end) hasAll = false;
  }
  if (hasAll) {
    nextCut = 0;
    KeepFilm();
  }
  StartWriting();
  return hasAll;
}

bool Recovery::KeepCut(Cut* cut) {
  if (!cut->Has(kModified)) {
    Forget(Find(cut));
    return true;
  }
  Kept* document = FindOrAdd(cut, kCutExtension);
  const int64_t limit = writing == Writing::kOnThread ? kCopiedAtOnce : CutSnapshot::kNoLimit;
  const CutSnapshot::Result result = document->snapshot.Take(cut, limit);
  if (result == CutSnapshot::Result::kMore) return false;
  if (result == CutSnapshot::Result::kTaken || document->path != cut->path) document->isWaiting = true;
  document->path = cut->path;
  return true;
}

void Recovery::KeepFilm() {
  if (frame->film->modified == 0) {
    Forget(Find(nullptr));
    return;
  }
  Kept* document = FindOrAdd(nullptr, kFilmExtension);
  std::string text;
  if (!frame->film->ReadText(platform::kPathSeparator, &text)) return;
  if (document->text != text || document->path != frame->film->path) document->isWaiting = true;
  document->text = text;
  document->path = frame->film->path;
}

void Recovery::OnTimer() {
  if (!IsOn() || pause == pause.zero()) return;
  FinishWriting(0);
  const Clock::time_point now = Clock::now();
  if (frame->inputs != seenInputs) {
    seenInputs = frame->inputs;
    lastInput = now;
    if (!hasInput) firstInput = now;
    hasInput = true;
  }
  if (hasInput && (now - lastInput >= pause || now - firstInput >= kLongestInput * pause)) {
    hasInput = false;
    isDue = true;
  }
  if (isDue && !frame->isButtonHeld) isDue = !KeepChanges();
}

void Recovery::OnAction() {
  if (pause != pause.zero() && !frame->isButtonHeld) KeepChanges();
}

// Documents.

Recovery::Kept* Recovery::Find(const Cut* cut) {
  for (const std::unique_ptr<Kept>& document : documents) {
    if (document->cut == cut && !document->isGone) return document.get();
  }
  return nullptr;
}

Recovery::Kept* Recovery::FindOrAdd(const Cut* cut, const char* extension) {
  if (Kept* document = Find(cut)) return document;
  documents.push_back(std::make_unique<Kept>());
  Kept* added = documents.back().get();
  added->number = ++lastNumber;
  added->extension = extension;
  added->cut = cut;
  return added;
}

void Recovery::Forget(Kept* document) {
  if (document == nullptr) return;
  document->isGone = true;
  FinishWriting(0);
}

void Recovery::ForgetCut(const Cut* cut) {
  nextCut = 0;
  Forget(Find(cut));
}

void Recovery::ForgetFilm() {
  Forget(Find(nullptr));
}

// Writing.

void Recovery::StartWriting() {
  for (const std::unique_ptr<Kept>& document : documents) {
    if (document->isWaiting && !document->isGone) job.push_back(document.get());
  }
  if (job.empty()) return;
  const auto run = [](void* self) { static_cast<Recovery*>(self)->WriteJob(); };
  if (writing == Writing::kOnThread) thread = platform::StartThread(run, this);
  if (thread != nullptr) return;
  WriteJob();
  FinishWriting(0);
}

void Recovery::WriteJob() {
  for (Kept* document : job) {
    const auto write = [document](ByteStream* stream) {
      if (document->cut != nullptr) return document->snapshot.Write(stream);
      return stream->Write(document->text.data(), static_cast<int32_t>(document->text.size()));
    };
    document->isWaiting = !folder.Keep(document->number, document->extension, document->path, write);
  }
}

bool Recovery::FinishWriting(int32_t milliseconds) {
  if (thread != nullptr && !platform::JoinThread(thread, milliseconds)) return false;
  thread = nullptr;
  job.clear();
  std::erase_if(documents, [this](const std::unique_ptr<Kept>& document) {
    if (document->isGone) folder.Remove(document->number, document->extension);
    return document->isGone;
  });
  return true;
}

// The end.

void Recovery::End() {
  FinishWriting(-1);
  documents.clear();
  if (IsOn()) folder.Destroy();
}

void Recovery::Leave() {
  FinishWriting(-1);
  documents.clear();
  folder.Release();
}

void Recovery::KeepAtCrash() {
  if (!IsOn() || (thread != nullptr && !platform::JoinThread(thread, kCrashPatience))) return;
  for (CutWindow* cut : frame->openCuts) {
    if (!cut->Has(kModified)) continue;
    const Kept* document = Find(cut);
    folder.Keep(document != nullptr ? document->number : ++lastNumber, kCutExtension, cut->path,
                [cut](ByteStream* stream) { return cut->Save(stream); });
  }
}

}  // namespace sorvel
