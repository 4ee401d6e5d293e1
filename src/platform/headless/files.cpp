#include "platform/files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <string>

#include "platform/headless/headless.h"
#include "platform/text.h"

namespace sorvel::platform {

namespace {

std::string gProgramPath;

}  // namespace

const char kPathSeparator = '/';

FILE* OpenStdioFile(const char* path, const char* mode) {
  std::string native;
  if (!ShiftJisToUtf8(path, &native)) return nullptr;
  FILE* file = std::fopen(native.c_str(), mode);
  struct stat status = {};
  // fopen() opens folders for reading here, unlike on Windows.
  if (file == nullptr || fstat(fileno(file), &status) != 0 || !S_ISDIR(status.st_mode)) return file;
  std::fclose(file);
  return nullptr;
}

FILE* OpenTemporaryFile() {
  return std::tmpfile();
}

bool PathExists(const char* path) {
  std::string native;
  return ShiftJisToUtf8(path, &native) && access(native.c_str(), F_OK) == 0;
}

bool DeletePath(const char* path) {
  std::string native;
  return ShiftJisToUtf8(path, &native) && std::remove(native.c_str()) == 0;
}

bool ProgramPath(char* path, size_t capacity) {
  std::string text = gProgramPath;
  if (text.empty()) {
    char native[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", native, sizeof(native));
    if (length > 0) Utf8ToShiftJis(std::string_view(native, static_cast<size_t>(length)), &text);
  }
  const bool fits = !text.empty() && text.size() < capacity;
  std::strcpy(path, fits ? text.c_str() : "");
  return fits;
}

namespace headless {

void SetProgramPath(const char* path) {
  gProgramPath = path != nullptr ? path : "";
}

}  // namespace headless
}  // namespace sorvel::platform
