#include "platform/replacement.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>

namespace sorvel::platform {

namespace {

constexpr char kPrefix[] = ".sorvel-";
constexpr char kSuffix[] = ".tmp";
constexpr int kTries = 100;
constexpr int kMostLinks = 40;
constexpr size_t kFileBuffer = 1 << 16;

// The paths of the files that are open now, for a signal handler. Threads share the slots.
constexpr int kSlots = 8;
char gPartialPaths[kSlots][PATH_MAX];
char gTargets[kSlots][PATH_MAX];
std::atomic<bool> gSlotTaken[kSlots];
std::atomic<bool> gSlotUsed[kSlots];

void Remember(const std::string& path, const std::string& target) {
  for (int i = 0; i < kSlots; ++i) {
    if (path.size() >= PATH_MAX || gSlotTaken[i].exchange(true)) continue;
    std::strcpy(gPartialPaths[i], path.c_str());
    gTargets[i][target.copy(gTargets[i], PATH_MAX - 1)] = '\0';
    gSlotUsed[i] = true;
    return;
  }
}

void Forget(const std::string& path) {
  for (int i = 0; i < kSlots; ++i) {
    if (!gSlotUsed[i] || path != gPartialPaths[i]) continue;
    gSlotUsed[i] = false;
    gSlotTaken[i] = false;
  }
}

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool IsPartialName(const std::string& name) {
  return name.starts_with(kPrefix) && name.ends_with(kSuffix);
}

// Permissions that new files lack. Reading it changes it for a moment, so it is read before there are threads.
mode_t ReadMask() {
  const mode_t mask = umask(0);
  umask(mask);
  return mask;
}
const mode_t gMask = ReadMask();

// A new file under a name of its own, locked. -1 if the folder takes none.
int CreateLocked(const std::string& folder, std::string* path) {
  std::random_device device;
  for (int i = 0; i < kTries; ++i) {
    char name[32];
    std::snprintf(name, sizeof(name), "/%s%08x%s", kPrefix, device(), kSuffix);
    *path = folder + name;
    const int descriptor = open(path->c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0 && errno == EEXIST) continue;
    if (descriptor < 0) return -1;
    struct stat status = {};
    // Another program's sweep may have come between the two calls. Where there are no locks nobody sweeps.
    const bool isFree = flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (isFree && fstat(descriptor, &status) == 0 && status.st_nlink > 0) return descriptor;
    close(descriptor);
    unlink(path->c_str());
  }
  errno = EEXIST;
  return -1;
}

// Keeps who may do what with the file. Only root can give a file to another user; others write their own.
void TakePermissions(int descriptor, const struct stat* old) {
  if (old != nullptr) {
    if (fchown(descriptor, old->st_uid, old->st_gid) != 0) errno = 0;
    if (fchmod(descriptor, old->st_mode & 07777) != 0) errno = 0;
    return;
  }
  if (fchmod(descriptor, 0666 & ~gMask) != 0) errno = 0;
}

void Close(PartialFile* partial) {
  if (partial->lock >= 0) close(static_cast<int>(partial->lock));
  partial->lock = -1;
  Forget(partial->path);
}

}  // namespace

std::string FollowLinks(const std::string& path) {
  std::string file = path;
  for (int i = 0; i < kMostLinks; ++i) {
    char text[PATH_MAX];
    const ssize_t length = readlink(file.c_str(), text, sizeof(text));
    if (length < 0) break;
    const std::string next(text, static_cast<size_t>(length));
    file = next[0] == '/' ? next : FolderOf(file).append("/").append(next);
  }
  char folder[PATH_MAX];
  if (realpath(FolderOf(file).c_str(), folder) == nullptr) return file;
  return std::string(folder).append(folder[1] != '\0' ? "/" : "").append(file.substr(file.rfind('/') + 1));
}

// A file whose lock can be had belongs to a program that ended.
void SweepPartialFiles(const std::string& folder) {
  for (const std::string& name : NamesInFolder(folder)) {
    if (!IsPartialName(name)) continue;
    const std::string path = std::string(folder).append("/").append(name);
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor < 0) continue;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) unlink(path.c_str());
    close(descriptor);
  }
}

bool CreatePartialFile(const std::string& target, bool, PartialFile* partial) {
  partial->target = FollowLinks(target);
  struct stat status = {};
  const bool exists = stat(partial->target.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) {
    errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    return false;
  }
  // The folder would let the file be replaced; its own permissions don't.
  if (exists && faccessat(AT_FDCWD, partial->target.c_str(), W_OK, AT_EACCESS) != 0) return false;
  const std::string folder = FolderOf(partial->target);
  SweepPartialFiles(folder);
  const int descriptor = CreateLocked(folder, &partial->path);
  if (descriptor < 0) return false;
  Remember(partial->path, target);
  TakePermissions(descriptor, exists ? &status : nullptr);
  partial->lock = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  partial->file = partial->lock >= 0 ? fdopen(descriptor, "wb+") : nullptr;
  if (partial->file != nullptr) {
    std::setvbuf(partial->file, nullptr, _IOFBF, kFileBuffer);
    return true;
  }
  const int problem = errno;
  close(descriptor);
  unlink(partial->path.c_str());
  Close(partial);
  errno = problem;
  return false;
}

bool CommitPartialFile(PartialFile* partial) {
  const bool good = ClosePartialFile(partial) && std::rename(partial->path.c_str(), partial->target.c_str()) == 0;
  const int problem = errno;
  if (!good) unlink(partial->path.c_str());
  Close(partial);
  if (!good) {
    errno = problem;
    return false;
  }
  // The name itself reaches the disk with its folder. The new contents are in place whatever comes of this.
  const int folder = open(FolderOf(partial->target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
  return true;
}

void DiscardPartialFile(PartialFile* partial) {
  if (partial->file == nullptr) return;
  std::fclose(partial->file);
  partial->file = nullptr;
  unlink(partial->path.c_str());
  Close(partial);
}

const char* RemovePartialFilesNow() {
  const char* target = nullptr;
  for (int i = 0; i < kSlots; ++i) {
    if (!gSlotUsed[i]) continue;
    unlink(gPartialPaths[i]);
    if (target == nullptr) target = gTargets[i];
  }
  return target;
}

bool FlushToDisk(FILE* file) {
  if (std::fflush(file) != 0) return false;
  // Pipes and terminals have no disk.
  return fsync(fileno(file)) == 0 || errno == EINVAL || errno == EROFS || errno == ENOTSUP;
}

FILE* OpenInPlace(const std::string& path, bool) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  return descriptor >= 0 ? fdopen(descriptor, "wb") : nullptr;
}

bool IsPlainFile(FILE* file) {
  struct stat status = {};
  return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
}

bool TruncateHere(FILE* file) {
  return std::fflush(file) == 0 && (!IsPlainFile(file) || ftruncate(fileno(file), ftello(file)) == 0);
}

FILE* OpenFileAt(const std::string& path, const char* mode) {
  return std::fopen(path.c_str(), mode);
}

bool RemoveFileAt(const std::string& path) {
  return unlink(path.c_str()) == 0;
}

std::vector<std::string> NamesInFolder(const std::string& folder, int* problem) {
  std::vector<std::string> names;
  DIR* entries = opendir(folder.c_str());
  if (entries == nullptr) {
    if (problem != nullptr && errno != ENOENT) *problem = errno;
    return names;
  }
  while (const dirent* entry = readdir(entries)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(entries);
  return names;
}

FileFacts FactsOf(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return {.exists = true,
          .volume = status.st_dev,
          .number = status.st_ino,
          .bytes = status.st_size,
          .time = status.st_mtim.tv_sec,
          .fraction = status.st_mtim.tv_nsec};
}

bool IsLink(const std::string& path) {
  struct stat status = {};
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool MakeFolder(const std::string& path) {
  struct stat status = {};
  return mkdir(path.c_str(), 0777) == 0 || (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
}

// The dot that its name begins with hides it.
bool MakeHiddenFolder(const std::string& path) {
  return MakeFolder(path);
}

bool RemoveEmptyFolder(const std::string& path) {
  return rmdir(path.c_str()) == 0;
}

bool LinkFileAt(const std::string& path, const std::string& newPath) {
  return link(path.c_str(), newPath.c_str()) == 0;
}

bool MoveFileAt(const std::string& path, const std::string& newPath) {
  if (renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, newPath.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Not every file system can refuse to replace.
  if (errno != EINVAL && errno != ENOSYS) return false;
  if (access(newPath.c_str(), F_OK) == 0) {
    errno = EEXIST;
    return false;
  }
  return std::rename(path.c_str(), newPath.c_str()) == 0;
}

intptr_t LockFile(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor < 0 || flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
  close(descriptor);
  return -1;
}

void UnlockFile(intptr_t lock) {
  close(static_cast<int>(lock));
}

std::string LocalDataFolder(bool make) {
  const char* data = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  std::string folder;
  if (data != nullptr && data[0] == '/') {
    folder = data;
  } else if (home != nullptr && home[0] == '/') {
    folder = std::string(home) + "/.local/share";
  } else {
    return "";
  }
  folder += "/sorvel";
  if (!make) return folder;
  for (size_t slash = folder.find('/', 1); slash != std::string::npos; slash = folder.find('/', slash + 1)) {
    mkdir(folder.substr(0, slash).c_str(), 0700);
  }
  return mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST ? folder : "";
}

}  // namespace sorvel::platform
