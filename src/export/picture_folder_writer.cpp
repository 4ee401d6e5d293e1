#include "export/picture_folder_writer.h"

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <numeric>

#include "platform/files.h"
#include "platform/replacement.h"

namespace sorvel {

namespace {

constexpr char kListName[] = "durations.txt";
constexpr char kLockName[] = "lock";
constexpr char kPictureSuffix[] = ".png";
constexpr int64_t kMicroseconds = 1000000;

std::string PictureName(int64_t number) {
  char name[32];
  std::snprintf(name, sizeof(name), "%05" PRId64 "%s", number, kPictureSuffix);
  return name;
}

bool IsOurs(const std::string& name) {
  if (name == kListName || name == kLockName) return true;
  return name.ends_with(kPictureSuffix) &&
         name.find_first_not_of("0123456789") == name.size() - std::strlen(kPictureSuffix);
}

// Closes the file and gives 0, or the error of what couldn't be written to it.
int CloseWritten(FILE* file) {
  errno = 0;
  const bool isWritten = std::fflush(file) == 0 && std::ferror(file) == 0;
  int problem = isWritten ? 0 : errno != 0 ? errno : EIO;
  if (std::fclose(file) != 0 && problem == 0) problem = errno != 0 ? errno : EIO;
  return problem;
}

}  // namespace

PictureFolderWriter::PictureFolderWriter(const std::string& folderPath) : target(folderPath) {
  while (target.size() > 1 && (target.back() == '/' || target.back() == platform::kPathSeparator)) target.pop_back();
}

PictureFolderWriter::~PictureFolderWriter() {
  if (list != nullptr) std::fclose(list);
  RemoveAll();
}

std::string PictureFolderWriter::PathOf(const std::string& name) const {
  return work + platform::kPathSeparator + name;
}

void PictureFolderWriter::RemoveAll() {
  if (lock < 0) return;
  for (int64_t number = 1; number <= pictures; ++number) platform::RemoveFileAt(PathOf(PictureName(number)));
  platform::RemoveFileAt(PathOf(kListName));
  platform::UnlockFile(lock);
  lock = -1;
  platform::RemoveFileAt(PathOf(kLockName));
  platform::RemoveEmptyFolder(work);
}

bool PictureFolderWriter::Begin(const FilmForm& form) {
  film = form;
  line = std::make_unique<PngLine>(form, [this](const PngLine::Picture& picture) { return Write(picture); });
  int problem = 0;
  if (!platform::NamesInFolder(target, &problem).empty()) return Fail("the folder isn't empty");
  if (problem != 0) return FailWith(problem);
  work = target + ".partial";
  errno = 0;
  if (!platform::MakeFolder(work)) return FailWith(errno);
  const std::vector<std::string> left = platform::NamesInFolder(work);
  const auto has = [&left](const char* name) { return std::find(left.begin(), left.end(), name) != left.end(); };
  const bool isOurs = (has(kLockName) || has(kListName)) && std::all_of(left.begin(), left.end(), IsOurs);
  if (!left.empty() && !isOurs) return Fail(work + " is in the way");
  lock = platform::LockFile(PathOf(kLockName));
  if (lock < 0) {
    const int reason = errno;
    if (left.empty()) platform::RemoveFileAt(PathOf(kLockName));
    platform::RemoveEmptyFolder(work);
    return FailWith(reason);
  }
  for (const std::string& name : left) {
    if (name != kLockName) platform::RemoveFileAt(PathOf(name));
  }
  list = platform::OpenFileAt(PathOf(kListName), "wb");
  if (list == nullptr) return FailWith(errno);
  std::fputs("ffconcat version 1.0\n", list);
  return true;
}

bool PictureFolderWriter::Add(const FilmPicture& picture) {
  return line->Add(picture, {0, 0, film.width, film.height});
}

bool PictureFolderWriter::Write(const PngLine::Picture& packed) {
  if (!packed.isPacked) return Fail("not enough memory");
  const FilmPicture& picture = packed.shown;
  const std::string name = PictureName(++pictures);
  FILE* file = platform::OpenFileAt(PathOf(name), "wb");
  if (file == nullptr) return FailWith(errno);
  std::fwrite(packed.png.data(), 1, packed.png.size(), file);
  const int problem = CloseWritten(file);
  if (problem != 0) return FailWith(problem);
  const int64_t length = TimeInUnits(picture.start + picture.duration, film.rate, kMicroseconds) -
                         TimeInUnits(picture.start, film.rate, kMicroseconds);
  const int64_t unit = std::gcd(picture.duration, film.rate);
  std::fprintf(list, "\nfile %s\nduration %" PRId64 ".%06" PRId64 "\n# %" PRId64 "/%" PRId64 " s\n", name.c_str(),
               length / kMicroseconds, length % kMicroseconds, picture.duration / unit, film.rate / unit);
  return true;
}

bool PictureFolderWriter::Finish() {
  if (!line->Finish()) return false;
  const int problem = CloseWritten(list);
  list = nullptr;
  if (problem != 0) return FailWith(problem);
  platform::UnlockFile(lock);
  platform::RemoveFileAt(PathOf(kLockName));
  platform::RemoveEmptyFolder(target);
  errno = 0;
  if (platform::MoveFileAt(work, target)) {
    lock = -1;
    return true;
  }
  const int reason = errno;
  lock = platform::LockFile(PathOf(kLockName));
  return FailWith(reason);
}

}  // namespace sorvel
