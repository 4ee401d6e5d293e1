#include "platform/replacement.h"

#include <fcntl.h>
#include <io.h>
#include <shlobj.h>

#include <cerrno>
#include <random>

#include "platform/win32/win32.h"

namespace sorvel::platform {

namespace {

constexpr wchar_t kPattern[] = L".sorvel-*.tmp";
constexpr int kTries = 100;
constexpr int64_t kTicksPerSecond = 10'000'000;
constexpr int64_t kSecondsTo1970 = 11'644'473'600;  // from 1601, where the system's time begins
constexpr int kMoveTries = 20;
constexpr DWORD kMovePause = 50;  // milliseconds
constexpr size_t kFileBuffer = 1 << 16;

std::wstring Wide(const std::string& text) {
  std::wstring wide(text.size() + 1, L'\0');
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                         static_cast<int>(wide.size()));
  wide.resize(static_cast<size_t>(length));
  return wide;
}

std::string Narrow(const std::wstring& wide) {
  std::string text(wide.size() * 3 + 1, '\0');
  const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                                         static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<size_t>(length));
  return text;
}

// With this prefix a path may be longer than 260 characters.
std::wstring LongPath(const std::string& path) {
  std::wstring wide = Wide(path);
  wchar_t full[1024];
  const DWORD length = GetFullPathNameW(wide.c_str(), 1024, full, nullptr);
  if (length == 0 || length >= 1024 || full[0] == L'\\') return wide;
  return std::wstring(L"\\\\?\\").append(full, length);
}

void SetErrno() {
  switch (GetLastError()) {
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      errno = ENOSPC;
      break;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      errno = EEXIST;
      break;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
      errno = ENOENT;
      break;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      errno = EBUSY;
      break;
    case ERROR_WRITE_PROTECT:
    case ERROR_ACCESS_DENIED:
      errno = EACCES;
      break;
    default:
      errno = EIO;
      break;
  }
}

std::wstring FolderOf(const std::wstring& path) {
  const size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring::npos ? std::wstring() : path.substr(0, slash + 1);
}

// The file behind a link, also where it doesn't exist yet.
std::wstring FollowWideLinks(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return path;
  wchar_t text[1024];
  const DWORD length = GetFinalPathNameByHandleW(file, text, 1024, 0);
  CloseHandle(file);
  return length > 0 && length < 1024 ? std::wstring(text, length) : path;
}

// As long as a partial file lives its program holds a mutex of this name; the system frees it with the program.
std::wstring MutexName(const std::wstring& path) {
  return L"Local\\sorvel" + path.substr(path.find_last_of(L"\\/") + 1);
}

void SweepLeftovers(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + kPattern).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring path = folder + found.cFileName;
    const HANDLE owner = OpenMutexW(SYNCHRONIZE, FALSE, MutexName(path).c_str());
    if (owner != nullptr) {
      CloseHandle(owner);
    } else {
      DeleteFileW(path.c_str());
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

void Unlock(PartialFile* partial) {
  if (partial->lock != -1) CloseHandle(reinterpret_cast<HANDLE>(partial->lock));
  partial->lock = -1;
}

bool IsHeldOpen(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
  CloseHandle(file);
  return false;
}

}  // namespace

void SweepPartialFiles(const std::string& folder) {
  SweepLeftovers(LongPath(folder) + L"\\");
}

bool CreatePartialFile(const std::string& target, bool isText, PartialFile* partial) {
  const std::wstring wide = FollowWideLinks(LongPath(target));
  partial->target = Narrow(wide);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES &&
      (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0) {
    errno = EACCES;
    return false;
  }
  const std::wstring folder = FolderOf(wide);
  SweepLeftovers(folder);
  std::random_device device;
  for (int i = 0; i < kTries; ++i) {
    wchar_t name[32];
    swprintf(name, 32, L".sorvel-%08x.tmp", device());
    const std::wstring path = folder + name;
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, MutexName(path).c_str());
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
      const DWORD problem = GetLastError();
      if (mutex != nullptr) CloseHandle(mutex);
      if (problem == ERROR_FILE_EXISTS) continue;
      SetLastError(problem);
      SetErrno();
      return false;
    }
    partial->path = Narrow(path);
    partial->lock = mutex != nullptr ? reinterpret_cast<intptr_t>(mutex) : -1;
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(file), _O_RDWR | (isText ? _O_TEXT : _O_BINARY));
    partial->file = descriptor >= 0 ? _fdopen(descriptor, isText ? "w+" : "wb+") : nullptr;
    if (partial->file != nullptr) {
      std::setvbuf(partial->file, nullptr, _IOFBF, kFileBuffer);
      return true;
    }
    if (descriptor >= 0) {
      _close(descriptor);
    } else {
      CloseHandle(file);
    }
    DeleteFileW(path.c_str());
    Unlock(partial);
    errno = EMFILE;
    return false;
  }
  errno = EEXIST;
  return false;
}

bool CommitPartialFile(PartialFile* partial) {
  const std::wstring from = Wide(partial->path);
  const std::wstring to = Wide(partial->target);
  bool good = ClosePartialFile(partial);
  int problem = errno;
  if (good) {
    // Scanners and indexers hold a file for moments.
    for (int i = 0; i < kMoveTries; ++i) {
      good = MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
      const DWORD reason = GetLastError();
      const bool isHeld =
          reason == ERROR_SHARING_VIOLATION || reason == ERROR_LOCK_VIOLATION || reason == ERROR_ACCESS_DENIED;
      if (good || !isHeld) break;
      Sleep(kMovePause);
      SetLastError(reason);
    }
    if (!good) {
      SetErrno();
      // The system denies access to the place of a file that is held open, and to one that may not be deleted.
      problem = errno == EACCES && IsHeldOpen(to) ? EBUSY : errno;
    }
  }
  if (!good) DeleteFileW(from.c_str());
  Unlock(partial);
  errno = problem;
  return good;
}

void DiscardPartialFile(PartialFile* partial) {
  if (partial->file == nullptr) return;
  std::fclose(partial->file);
  partial->file = nullptr;
  DeleteFileW(Wide(partial->path).c_str());
  Unlock(partial);
}

// No signal ends a program of this platform while it writes; what is killed is swept by the next save.
const char* RemovePartialFilesNow() {
  return nullptr;
}

bool FlushToDisk(FILE* file) {
  if (std::fflush(file) != 0) return false;
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
  if (FlushFileBuffers(handle) || GetFileType(handle) != FILE_TYPE_DISK) return true;
  SetErrno();
  return false;
}

FILE* OpenInPlace(const std::string& path, bool isText) {
  return _wfopen(LongPath(path).c_str(), isText ? L"r+" : L"rb+");
}

bool IsPlainFile(FILE* file) {
  return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) == FILE_TYPE_DISK;
}

bool TruncateHere(FILE* file) {
  return std::fflush(file) == 0 && (!IsPlainFile(file) || _chsize(_fileno(file), std::ftell(file)) == 0);
}

FILE* OpenFileAt(const std::string& path, const char* mode) {
  return _wfopen(LongPath(path).c_str(), Wide(mode).c_str());
}

bool RemoveFileAt(const std::string& path) {
  return DeleteFileW(LongPath(path).c_str()) != FALSE;
}

std::vector<std::string> NamesInFolder(const std::string& folder, int* problem) {
  std::vector<std::string> names;
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((LongPath(folder) + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    if (problem != nullptr && error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND) *problem = EACCES;
    return names;
  }
  do {
    const std::string name = Narrow(found.cFileName);
    if (name != "." && name != "..") names.push_back(name);
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return names;
}

FileFacts FactsOf(const std::string& path) {
  const HANDLE file = CreateFileW(LongPath(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION found;
  const bool isFile = GetFileInformationByHandle(file, &found) != FALSE &&
                      (found.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) == 0;
  CloseHandle(file);
  if (!isFile) return {};
  const auto whole = [](DWORD high, DWORD low) { return static_cast<uint64_t>(high) << 32 | low; };
  const int64_t ticks =
      static_cast<int64_t>(whole(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime));
  return {.exists = true,
          .volume = found.dwVolumeSerialNumber,
          .number = whole(found.nFileIndexHigh, found.nFileIndexLow),
          .bytes = static_cast<int64_t>(whole(found.nFileSizeHigh, found.nFileSizeLow)),
          .time = ticks / kTicksPerSecond - kSecondsTo1970,
          .fraction = ticks % kTicksPerSecond};
}

std::string FollowLinks(const std::string& path) {
  return Narrow(FollowWideLinks(LongPath(path)));
}

bool IsLink(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(LongPath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool MakeFolder(const std::string& path) {
  const std::wstring wide = LongPath(path);
  if (CreateDirectoryW(wide.c_str(), nullptr)) return true;
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return true;
  SetErrno();
  return false;
}

bool MakeHiddenFolder(const std::string& path) {
  if (!MakeFolder(path)) return false;
  SetFileAttributesW(LongPath(path).c_str(), FILE_ATTRIBUTE_HIDDEN);
  return true;
}

bool RemoveEmptyFolder(const std::string& path) {
  return RemoveDirectoryW(LongPath(path).c_str()) != FALSE;
}

bool LinkFileAt(const std::string& path, const std::string& newPath) {
  if (CreateHardLinkW(LongPath(newPath).c_str(), LongPath(path).c_str(), nullptr)) return true;
  SetErrno();
  return false;
}

bool MoveFileAt(const std::string& path, const std::string& newPath) {
  if (MoveFileExW(LongPath(path).c_str(), LongPath(newPath).c_str(), MOVEFILE_WRITE_THROUGH)) return true;
  SetErrno();
  return false;
}

intptr_t LockFile(const std::string& path) {
  const HANDLE file = CreateFileW(LongPath(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  return file != INVALID_HANDLE_VALUE ? reinterpret_cast<intptr_t>(file) : -1;
}

void UnlockFile(intptr_t lock) {
  CloseHandle(reinterpret_cast<HANDLE>(lock));
}

std::string LocalDataFolder(bool make) {
  wchar_t folder[MAX_PATH];
  if (SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, 0, folder) != S_OK) return "";
  const std::wstring path = std::wstring(folder) + L"\\Sorvel Developer";
  if (make) CreateDirectoryW(path.c_str(), nullptr);
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES ? Narrow(path) : "";
}

}  // namespace sorvel::platform
