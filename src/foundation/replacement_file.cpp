#include "foundation/replacement_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "foundation/path_hash.h"
#include "platform/files.h"
#include "platform/text.h"

namespace sorvel {

namespace {

constexpr char kCopyPrefix[] = "in-place-";
constexpr char kCopySuffix[] = ".copy";
constexpr char kTargetSuffix[] = ".target";

// Where the copy of a file that is written in place lies, without its suffix. Empty if there is no such place.
std::string CopyBase(const std::string& target, bool make) {
  const std::string folder = platform::LocalDataFolder(make);
  if (folder.empty()) return "";
  char name[32];
  std::snprintf(name, sizeof(name), "%c%s%016llx", platform::kPathSeparator, kCopyPrefix,
                static_cast<unsigned long long>(PathHash(target)));
  return folder + name;
}

// Writes `count` bytes of a file to the same place of another one, and flushes them to the disk.
bool WriteRange(FileStream& from, FileStream& to, int32_t start, int32_t count) {
  errno = 0;
  return from.Seek(start, kFromStart) && to.Seek(start, kFromStart) && CopyStream(from, to, count) &&
         platform::FlushToDisk(to.file);
}

// Writes all that `from` holds over what the target holds. `isTouched` tells after a failure whether the target isn't
// what it was.
bool WriteOver(FileStream& from, const std::string& target, bool* isTouched) {
  *isTouched = false;
  FileStream out(platform::OpenInPlace(target, false));
  if (!from.IsOpen() || !out.IsOpen()) return false;
  const int32_t length = StreamLength(from);
  const int32_t oldLength = StreamLength(out);
  // What makes the file longer comes first: it can be taken back if the disk is full.
  if (length > oldLength && !WriteRange(from, out, oldLength, length - oldLength)) {
    const int problem = errno;
    out.Close();
    FileStream again(platform::OpenInPlace(target, false));
    *isTouched = !again.IsOpen() || !again.Seek(oldLength, kFromStart) || !platform::TruncateHere(again.file);
    again.Close();
    errno = problem;
    return false;
  }
  *isTouched = true;
  const bool written = length >= 0 && WriteRange(from, out, 0, std::min(length, oldLength)) &&
                       out.Seek(length, kFromStart) && platform::TruncateHere(out.file) &&
                       platform::FlushToDisk(out.file);
  const int problem = errno;
  const bool closed = out.Close();
  if (!written) errno = problem;
  return written && closed;
}

void ForgetCopyAt(const std::string& base) {
  platform::RemoveFileAt(base + kTargetSuffix);
  platform::RemoveFileAt(base + kCopySuffix);
}

// A copy that an earlier write left must not be written over newer contents at the next start.
void ForgetCopy(const std::string& target) {
  const std::string base = CopyBase(target, false);
  if (!base.empty()) ForgetCopyAt(base);
}

bool IsThere(const std::string& path) {
  return platform::FactsOf(path).exists;
}

bool WriteTargetName(const std::string& path, const std::string& target) {
  platform::PartialFile partial;
  if (!platform::CreatePartialFile(path, false, &partial)) return false;
  std::fwrite(target.data(), 1, target.size(), partial.file);
  return platform::CommitPartialFile(&partial);
}

}  // namespace

WriteProblem WriteProblemOf(int error) {
  switch (error) {
    case ENOSPC:
#ifdef EDQUOT
    case EDQUOT:
#endif
      return WriteProblem::kDiskFull;
    case EFBIG:
      return WriteProblem::kTooLarge;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return WriteProblem::kReadOnly;
    case ENOENT:
    case ENOTDIR:
      return WriteProblem::kNoFolder;
    case EBUSY:
#ifdef ETXTBSY
    case ETXTBSY:
#endif
      return WriteProblem::kInUse;
    default:
      return WriteProblem::kOther;
  }
}

bool ReplacementFile::Fail(int number) {
  error = number;
  reason = number != 0 ? WriteProblemOf(number) : WriteProblem::kOther;
  return false;
}

bool ReplacementFile::Open(const char* path, Form form) {
  std::string utf8;
  if (!platform::ShiftJisToUtf8(path, &utf8)) return Fail(ENOENT);
  return OpenUtf8(utf8, form);
}

bool ReplacementFile::OpenUtf8(const std::string& path, Form form) {
  Discard();
  reason = WriteProblem::kNone;
  error = 0;
  isText = form == Form::kText;
  requested = path;
  isTouched = false;
  if (path.empty()) return Fail(ENOENT);
  if (platform::CreatePartialFile(path, isText, &partial)) {
    stream = FileStream(partial.file);
    return true;
  }
  const int problem = errno;
  return OpenCopy(path) || Fail(problem);
}

bool ReplacementFile::OpenCopy(const std::string& path) {
  FILE* target = platform::OpenInPlace(path, isText);
  if (target == nullptr) return false;
  if (std::fseek(target, 0, SEEK_END) == 0 && platform::IsPlainFile(target)) {
    std::fclose(target);
    const std::string base = CopyBase(path, true);
    if (base.empty() || !platform::CreatePartialFile(base + kCopySuffix, isText, &partial)) return false;
    stream = FileStream(partial.file);
  } else {
    // It stays open: who reads a pipe takes a close for the end.
    device = target;
    stream = FileStream(platform::OpenTemporaryFile());
    if (!stream.IsOpen()) return false;
  }
  inPlace = path;
  return true;
}

bool ReplacementFile::Commit() {
  if (!stream.IsOpen()) return Fail(error);
  const int failed = stream.failure;
  if (failed != 0 || std::ferror(stream.file) != 0) {
    Discard();
    return Fail(failed);
  }
  if (device != nullptr) return CommitToDevice();
  if (!inPlace.empty()) return CommitInPlace();
  stream.file = nullptr;
  if (!platform::CommitPartialFile(&partial)) return Fail(errno);
  ForgetCopy(requested);
  return true;
}

bool ReplacementFile::CommitToDevice() {
  FileStream out(device);
  device = nullptr;
  stream.Seek(0, kFromStart);
  const bool copied = CopyStream(stream, out, -1) && platform::FlushToDisk(out.file);
  const int problem = errno;
  const bool written = out.Close() && copied;
  Discard();
  return written || Fail(problem);
}

bool ReplacementFile::CommitInPlace() {
  const std::string target = inPlace;
  inPlace.clear();
  // The copy is whole and says what it is for before the first byte of the target changes.
  const std::string base = CopyBase(target, true);
  stream.file = nullptr;
  if (base.empty() || !WriteTargetName(base + kTargetSuffix, target)) {
    const int problem = errno;
    platform::DiscardPartialFile(&partial);
    return Fail(problem);
  }
  if (!platform::CommitPartialFile(&partial)) {
    const int problem = errno;
    ForgetCopy(target);
    return Fail(problem);
  }
  FileStream copy(platform::OpenFileAt(base + kCopySuffix, "rb"));
  const bool written = WriteOver(copy, target, &isTouched);
  const int problem = errno;
  copy.Close();
  // The next start makes up for a target that is neither old nor new.
  if (written || !isTouched) ForgetCopyAt(base);
  return written || Fail(problem);
}

void ReplacementFile::Discard() {
  if (partial.file != nullptr) {
    platform::DiscardPartialFile(&partial);
  } else {
    stream.Close();
  }
  stream.file = nullptr;
  if (device != nullptr) std::fclose(device);
  device = nullptr;
  inPlace.clear();
}

void FinishInterruptedWrites() {
  const std::string folder = platform::LocalDataFolder(false);
  platform::SweepPartialFiles(folder);
  // Those with the names of targets come behind the copies.
  std::vector<std::string> names = platform::NamesInFolder(folder);
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    if (!name.starts_with(kCopyPrefix)) continue;
    const std::string path = std::string(folder).append(1, platform::kPathSeparator).append(name);
    const std::string base = path.substr(0, path.rfind('.'));
    if (path != base + kTargetSuffix) {
      // A copy that nobody knows the target of was done with.
      if (!IsThere(base + kTargetSuffix)) platform::RemoveFileAt(path);
      continue;
    }
    std::string target;
    FILE* file = platform::OpenFileAt(path, "rb");
    if (file == nullptr) continue;
    for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) target.push_back(static_cast<char>(byte));
    const bool isRead = std::ferror(file) == 0;
    std::fclose(file);
    FileStream copy(platform::OpenFileAt(base + kCopySuffix, "rb"));
    bool isTouched = false;
    // Without a copy the target wasn't touched yet.
    const bool isDone = isRead && (!IsThere(base + kCopySuffix) || WriteOver(copy, target, &isTouched));
    copy.Close();
    if (isDone) ForgetCopyAt(base);
  }
}

}  // namespace sorvel
