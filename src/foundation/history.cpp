#include "foundation/history.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <utility>

#include "foundation/path_hash.h"
#include "foundation/settings.h"
#include "platform/files.h"
#include "platform/text.h"

namespace sorvel {

namespace {

constexpr char kHistoryFolder[] = ".sorvel";
constexpr char kDataHistoryFolder[] = "history";
constexpr char kUntitledFolder[] = "untitled";

// How many drawings without a path are kept. They aren't states of one document, of which the newest would do.
constexpr int32_t kUntitledKept = 50;

constexpr const char* kKindNames[] = {"saved", "deleted", "renamed", "unsaved", "damaged", "foreign"};

// What this program itself wrote, by path.
std::map<std::string, platform::FileFacts> gWritten;

std::string Joined(const std::string& folder, const std::string& name) {
  return std::string(folder).append(1, platform::kPathSeparator).append(name);
}

// Where the name in a path begins. Both separators count where the system knows both.
size_t NameStart(const std::string& path) {
  const size_t separator = path.find_last_of(platform::kPathSeparator == '/' ? "/" : "\\/:");
  return separator == std::string::npos ? 0 : separator + 1;
}

std::string NameIn(const std::string& path) {
  return path.substr(NameStart(path));
}

// Links are followed; no path stays no path.
std::string DocumentPath(const std::string& path) {
  return path.empty() ? "" : platform::FollowLinks(path);
}

std::string ExtensionOf(const std::string& name) {
  const size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? "" : name.substr(dot);
}

// Where the generations of a document may be: beside it, and in the user's data folder.
struct Places {
  explicit Places(const std::string& path) {
    const std::string data = platform::LocalDataFolder(false);
    if (!data.empty()) dataHistory = Joined(data, kDataHistoryFolder);
    if (path.empty()) {
      if (!data.empty()) own.push_back(Joined(dataHistory, kUntitledFolder));
      return;
    }
    beside = path.substr(0, NameStart(path)) + kHistoryFolder;
    own.push_back(Joined(beside, NameIn(path)));
    if (data.empty()) return;
    // The whole path tells documents of one name apart. A name keeps room for it within the limit of file systems.
    char text[24];
    std::snprintf(text, sizeof(text), "%016llx-", static_cast<unsigned long long>(PathHash(path)));
    own.push_back(Joined(dataHistory, text + NameIn(path).substr(0, 200)));
  }

  // Makes a folder of `own`. Nothing is left behind if that fails.
  bool Make(const std::string& folder) const {
    if (!beside.empty() && folder == own[0]) {
      if (!platform::MakeHiddenFolder(beside)) return false;
      if (platform::MakeFolder(folder)) return true;
      platform::RemoveEmptyFolder(beside);
      return false;
    }
    return !platform::LocalDataFolder(true).empty() && platform::MakeFolder(dataHistory) &&
           platform::MakeFolder(folder);
  }

  std::string beside;            // the hidden folder; empty for documents without a path
  std::string dataHistory;       // empty if there is no data folder
  std::vector<std::string> own;  // folders of this document, the preferred one first
};

struct Found {
  int32_t number;  // counts up in the order of keeping
  Generation generation;
};

// Reads the number and the kind in the name of a generation, say 000007-saved.cut.
bool ParseName(const std::string& name, int32_t* number, GenerationKind* kind) {
  char* end = nullptr;
  const long value = std::strtol(name.c_str(), &end, 10);
  if (end == name.c_str() || *end != '-' || value < 0 || value >= INT32_MAX) return false;
  *number = static_cast<int32_t>(value);
  const std::string word(end + 1, std::find(end + 1, end + std::string(end).size(), '.'));
  for (size_t i = 0; i < std::size(kKindNames); ++i) {
    if (word != kKindNames[i]) continue;
    *kind = static_cast<GenerationKind>(i);
    return true;
  }
  return false;
}

// Newest first. `problem`, which may be null, receives errno if a folder can't be read.
std::vector<Found> FindGenerations(const Places& places, int* problem = nullptr) {
  std::vector<Found> all;
  for (const std::string& folder : places.own) {
    for (const std::string& name : platform::NamesInFolder(folder, problem)) {
      Found found = {};
      if (!ParseName(name, &found.number, &found.generation.kind)) continue;
      found.generation.path = Joined(folder, name);
      const platform::FileFacts facts = platform::FactsOf(found.generation.path);
      if (!facts.exists) continue;
      found.generation.time = facts.time;
      found.generation.bytes = facts.bytes;
      all.push_back(std::move(found));
    }
  }
  std::stable_sort(all.begin(), all.end(), [](const Found& a, const Found& b) { return a.number > b.number; });
  return all;
}

int32_t BackupsWanted() {
  return std::max(ReadSettingNumber(settings::kBackups), 0);
}

bool IsKept(GenerationKind kind) {
  return BackupsWanted() > 0 || kind == GenerationKind::kDamaged || kind == GenerationKind::kForeign;
}

// Removes the oldest generations above the number that is wanted.
void Prune(const std::string& path) {
  int32_t wanted = path.empty() ? kUntitledKept : std::max(BackupsWanted(), 1);
  for (const Found& found : FindGenerations(Places(path))) {
    if (found.generation.kind == GenerationKind::kDamaged) continue;
    if (wanted-- <= 0) platform::RemoveFileAt(found.generation.path);
  }
}

// Copies a file to a path that doesn't exist yet.
bool CopyToNew(const std::string& from, const std::string& to) {
  FileStream source(platform::OpenFileAt(from, "rb"));
  if (!source.IsOpen()) return false;
  ReplacementFile target;
  const bool isCopied = target.OpenUtf8(to) && CopyStream(source, target.stream, -1) && target.Commit();
  source.Close();
  return isCopied;
}

bool LinkOrCopy(const std::string& from, const std::string& to) {
  // Not every file system has links.
  return platform::LinkFileAt(from, to) || (errno != EEXIST && CopyToNew(from, to));
}

bool MoveOrCopy(const std::string& from, const std::string& to) {
  if (platform::MoveFileAt(from, to)) return true;
  if (errno == EEXIST || !CopyToNew(from, to)) return false;
  if (platform::RemoveFileAt(from)) return true;
  platform::RemoveFileAt(to);
  return false;
}

// Adds a generation to a document's history. `put` gets the path that the generation is to have, and gives false,
// with errno set to EEXIST if another program was quicker. Returns the path of the new generation, empty on failure.
template <typename Put>
std::string AddGeneration(const std::string& path, GenerationKind kind, const std::string& extension, const Put& put) {
  constexpr int32_t tries = 100;
  const Places places(path);
  const std::vector<Found> earlier = FindGenerations(places);
  const int32_t next = earlier.empty() ? 1 : earlier.front().number + 1;
  for (const std::string& folder : places.own) {
    if (!places.Make(folder)) continue;
    platform::SweepPartialFiles(folder);
    for (int32_t i = 0; i < tries; ++i) {
      char name[40];
      std::snprintf(name, sizeof(name), "%06d-%s", next + i, NameOfKind(kind));
      std::string target = Joined(folder, name) + extension;
      errno = 0;
      if (put(target)) return target;
      if (errno != EEXIST) break;
    }
  }
  return "";
}

// Takes a generation back that was added in vain.
void RemoveGeneration(const std::string& path) {
  platform::RemoveFileAt(path);
  const std::string folder = path.substr(0, NameStart(path) - 1);
  if (platform::RemoveEmptyFolder(folder)) platform::RemoveEmptyFolder(folder.substr(0, NameStart(folder) - 1));
}

std::string KeepFile(const std::string& path, GenerationKind kind,
                     bool (*put)(const std::string&, const std::string&)) {
  return AddGeneration(path, kind, ExtensionOf(NameIn(path)),
                       [&](const std::string& target) { return put(path, target); });
}

}  // namespace

const char* NameOfKind(GenerationKind kind) {
  return kKindNames[static_cast<size_t>(kind)];
}

std::vector<Generation> ListGenerations(const std::string& path, int* problem) {
  std::vector<Generation> list;
  for (Found& found : FindGenerations(Places(DocumentPath(path)), problem)) {
    list.push_back(std::move(found.generation));
  }
  return list;
}

int RestoreGeneration(const Generation& generation, const std::string& to) {
  FileStream source(platform::OpenFileAt(generation.path, "rb"));
  if (!source.IsOpen()) return errno;
  // All is copied before the history makes room for the present state.
  ReplacementFile target;
  const bool isDone = target.OpenUtf8(to) && CopyStream(source, target.stream, -1) && KnownFile().Commit(&target);
  source.Close();
  if (isDone) return 0;
  return target.errorNumber() != 0 ? target.errorNumber() : EIO;
}

bool KeepUnsaved(const std::string& path, const std::string& extension, ByteStream* contents) {
  if (!IsKept(GenerationKind::kUnsaved)) return true;
  const std::string file = DocumentPath(path);
  const std::string kept =
      AddGeneration(file, GenerationKind::kUnsaved, path.empty() ? "." + extension : ExtensionOf(NameIn(file)),
                    [contents](const std::string& target) {
                      ReplacementFile generation;
                      contents->Seek(0, kFromStart);
                      return !platform::FactsOf(target).exists && generation.OpenUtf8(target) &&
                             CopyStream(*contents, generation.stream, -1) && generation.Commit();
                    });
  if (!kept.empty()) Prune(file);
  return !kept.empty();
}

bool DeleteDocument(const std::string& path) {
  const std::string place = platform::FollowLinks(path);
  // Deleting a link leaves the document.
  if (!IsKept(GenerationKind::kDeleted) || platform::IsLink(path) || !platform::FactsOf(path).exists) {
    return platform::RemoveFileAt(path);
  }
  if (KeepFile(place, GenerationKind::kDeleted, MoveOrCopy).empty()) return false;
  Prune(place);
  return true;
}

bool RenameDocument(const std::string& path, const std::string& newPath) {
  const bool isKept = IsKept(GenerationKind::kRenamed) && !platform::IsLink(path);
  const std::string from = platform::FollowLinks(path);
  if (!platform::MoveFileAt(path, newPath)) return false;
  if (!isKept) return true;
  const std::string to = platform::FollowLinks(newPath);
  // What went before stays known under the old name and comes along to the new one.
  std::vector<Found> earlier = FindGenerations(Places(from));
  const bool hasOwn = !FindGenerations(Places(to)).empty();
  AddGeneration(from, GenerationKind::kRenamed, ExtensionOf(NameIn(from)),
                [&](const std::string& target) { return LinkOrCopy(to, target); });
  Prune(from);
  if (hasOwn) return true;
  std::reverse(earlier.begin(), earlier.end());
  for (const Found& found : earlier) {
    AddGeneration(to, found.generation.kind, ExtensionOf(NameIn(to)),
                  [&](const std::string& target) { return LinkOrCopy(found.generation.path, target); });
  }
  return true;
}

void KnownFile::Remember(const std::string& path) {
  known = path;
  facts = platform::FactsOf(path);
  isDamaged = false;
  isDamageKept = false;
}

bool KnownFile::Commit(ReplacementFile* file) {
  const std::string path = file->Path();
  const std::string target = platform::FollowLinks(path);
  const platform::FileFacts present = platform::FactsOf(path);
  GenerationKind kind = GenerationKind::kSaved;
  News found = News::kNone;
  if (present.exists && facts.exists && known == path) {
    const auto written = gWritten.find(path);
    const bool isOwn = present == facts || (written != gWritten.end() && present == written->second);
    if (!isOwn) {
      kind = GenerationKind::kForeign;
      found = News::kWasForeign;
    } else if (isDamaged && !isDamageKept) {
      kind = GenerationKind::kDamaged;
      found = News::kWasDamaged;
    }
  }
  // What is written in place would change behind a link too.
  std::string kept;
  if (present.exists && IsKept(kind)) kept = KeepFile(target, kind, file->IsInPlace() ? CopyToNew : LinkOrCopy);
  if (!file->Commit()) {
    if (!kept.empty() && !file->IsTouched()) RemoveGeneration(kept);
    return false;
  }
  if (!kept.empty()) Prune(target);
  if (known == path) {
    isDamageKept = true;
  } else {
    known = path;
    isDamageKept = isDamaged;
  }
  facts = platform::FactsOf(path);
  gWritten[path] = facts;
  news = found;
  return true;
}

void SweepDataHistory() {
  const std::string history = Places("").dataHistory;
  for (const std::string& name : platform::NamesInFolder(history)) platform::SweepPartialFiles(Joined(history, name));
}

void ForgetWrittenFiles() {
  gWritten.clear();
}

std::string Utf8Path(const char* path) {
  std::string text;
  return platform::ShiftJisToUtf8(path, &text) ? text : "";
}

}  // namespace sorvel
