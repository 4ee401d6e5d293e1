#include "foundation/recovery_folder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <utility>

#include "foundation/replacement_file.h"
#include "platform/files.h"
#include "platform/replacement.h"

namespace sorvel {

namespace {

constexpr int kTries = 100;
// The store may be any folder: only names of this kind are touched.
constexpr char kFolderPrefix[] = "session-";
constexpr char kLockName[] = "lock";
constexpr char kPathSuffix[] = ".path";

std::string Join(const std::string& folder, const std::string& name) {
  return std::string(folder).append(1, platform::kPathSeparator).append(name);
}

std::string ReadWhole(const std::string& path) {
  std::string text;
  FILE* file = platform::OpenFileAt(path, "rb");
  if (file == nullptr) return text;
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) text.push_back(static_cast<char>(byte));
  std::fclose(file);
  return text;
}

bool WriteWhole(const std::string& path, const std::function<bool(ByteStream* stream)>& write) {
  ReplacementFile file;
  return file.OpenUtf8(path) && write(&file.stream) && file.Commit();
}

}  // namespace

RecoveryFolder::RecoveryFolder(RecoveryFolder&& other) noexcept
    : path(std::exchange(other.path, "")), lock(std::exchange(other.lock, -1)) {}

RecoveryFolder& RecoveryFolder::operator=(RecoveryFolder&& other) noexcept {
  std::swap(path, other.path);
  std::swap(lock, other.lock);
  return *this;
}

bool RecoveryFolder::Lock(const std::string& folder) {
  const std::string file = Join(folder, kLockName);
  lock = platform::LockFile(file);
  if (lock == -1) return false;
  // A start of another program may have taken the folder for an empty one and removed it.
  if (platform::FactsOf(file).exists) {
    path = folder;
    return true;
  }
  platform::UnlockFile(lock);
  return false;
}

bool RecoveryFolder::Create(const std::string& store) {
  if (!platform::MakeFolder(store)) return false;
  std::random_device device;
  for (int i = 0; i < kTries; ++i) {
    char name[32];
    std::snprintf(name, sizeof(name), "%s%08x", kFolderPrefix, device());
    const std::string folder = Join(store, name);
    if (!platform::MakeFolder(folder)) return false;
    if (Lock(folder)) return true;
  }
  return false;
}

std::vector<RecoveryFolder> RecoveryFolder::TakeLeft(const std::string& store) {
  std::vector<RecoveryFolder> left;
  for (const std::string& name : platform::NamesInFolder(store)) {
    RecoveryFolder folder;
    if (!name.starts_with(kFolderPrefix) || !folder.Lock(Join(store, name))) continue;
    if (folder.Documents().empty()) {
      folder.Destroy();
    } else {
      left.push_back(std::move(folder));
    }
  }
  return left;
}

std::string RecoveryFolder::FileOf(int32_t number, const std::string& extension) const {
  return Join(path, std::to_string(number).append(".").append(extension));
}

bool RecoveryFolder::Keep(int32_t number, const char* extension, const std::string& documentPath,
                          const std::function<bool(ByteStream* stream)>& write) const {
  const std::string file = FileOf(number, extension);
  // Contents without a path would come back as a document that never had one.
  const bool isPathKept = ReadWhole(file + kPathSuffix) == documentPath ||
                          WriteWhole(file + kPathSuffix, [&documentPath](ByteStream* stream) {
                            return stream->Write(documentPath.data(), static_cast<int32_t>(documentPath.size()));
                          });
  return isPathKept && WriteWhole(file, write);
}

void RecoveryFolder::Remove(int32_t number, const char* extension) const {
  const std::string file = FileOf(number, extension);
  platform::RemoveFileAt(file);
  platform::RemoveFileAt(file + kPathSuffix);
}

std::vector<LeftDocument> RecoveryFolder::Documents() const {
  std::vector<LeftDocument> documents;
  for (const std::string& name : platform::NamesInFolder(path)) {
    char* end = nullptr;
    const int32_t number = static_cast<int32_t>(std::strtol(name.c_str(), &end, 10));
    const std::string extension = end != name.c_str() && *end == '.' ? end + 1 : "";
    const std::string file = Join(path, name);
    if ((extension != "cut" && extension != "flm") || file != FileOf(number, extension)) continue;
    documents.push_back({number, extension, ReadWhole(file + kPathSuffix), file});
  }
  std::sort(documents.begin(), documents.end(),
            [](const LeftDocument& a, const LeftDocument& b) { return a.number < b.number; });
  return documents;
}

void RecoveryFolder::Destroy() {
  // Documents go first: what is left if the program ends here is a folder without any.
  for (const LeftDocument& document : Documents()) Remove(document.number, document.extension.c_str());
  // A program that ended between the two files of a document left its path alone.
  for (const std::string& name : platform::NamesInFolder(path)) {
    if (name.ends_with(kPathSuffix)) platform::RemoveFileAt(Join(path, name));
  }
  platform::SweepPartialFiles(path);
  const std::string folder = path;
  Release();
  platform::RemoveFileAt(Join(folder, kLockName));
  platform::RemoveEmptyFolder(folder);
}

void RecoveryFolder::Release() {
  if (IsOpen()) platform::UnlockFile(lock);
  path.clear();
  lock = -1;
}

}  // namespace sorvel
