#include "platform/files.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

const char kPathSeparator = '\\';

FILE* OpenStdioFile(const char* path, const char* mode) {
  return std::fopen(path, mode);
}

FILE* OpenTemporaryFile() {
  // tmpfile() uses the root folder, where most users can't write.
  char folder[MAX_PATH];
  char path[MAX_PATH];
  const DWORD length = GetTempPathA(sizeof(folder), folder);
  if (length == 0 || length >= sizeof(folder) || GetTempFileNameA(folder, "srv", 0, path) == 0) return nullptr;
  FILE* file = std::fopen(path, "wb+D");
  if (file == nullptr) std::remove(path);
  return file;
}

bool PathExists(const char* path) {
  return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

bool DeletePath(const char* path) {
  return std::remove(path) == 0;
}

bool ProgramPath(char* path, size_t capacity) {
  const DWORD length = GetModuleFileNameA(nullptr, path, static_cast<DWORD>(capacity));
  if (length > 0 && length < capacity) return true;
  path[0] = '\0';
  return false;
}

}  // namespace sorvel::platform
