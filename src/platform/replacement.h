#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// What replacing a file as a whole needs of the system. Paths are UTF-8 here, since not every name of a file can be
// said in Shift JIS. Each operation that fails sets errno.
namespace sorvel::platform {

// A file beside the one that it is to replace. While it is open it is locked, by which a leftover of a program that was
// killed can be told from the work of one that runs.
struct PartialFile {
  FILE* file = nullptr;
  std::string path;
  std::string target;  // with links followed
  intptr_t lock = -1;  // keeps others from sweeping the file until it has its name
};

// Makes the file, empty, for writing and reading, with the permissions of the file that it is to replace; `isText` ends
// lines as the system's text files do. Leftovers in the folder are removed first. False, with nothing made, if the
// folder takes no new file, or if the target can't be written or is no plain file.
bool CreatePartialFile(const std::string& target, bool isText, PartialFile* partial);

// Flushes the file to the disk, closes it and gives it the target's name in one step: whoever opens the target finds
// the old contents or the new ones. False leaves the target as it was, and the partial file is gone.
bool CommitPartialFile(PartialFile* partial);

// Removes the partial files that killed programs left in a folder.
void SweepPartialFiles(const std::string& folder);

// Closes and removes the file.
void DiscardPartialFile(PartialFile* partial);

// Removes the partial files of this program and gives the path of the file that one of them was to replace, null if
// there was none. Only calls that are safe in a signal handler.
const char* RemovePartialFilesNow();

// Flushes what was written to the disk itself.
bool FlushToDisk(FILE* file);

// Flushes the file to the disk and closes it; the file stays under its own name. False if any write to it failed.
inline bool ClosePartialFile(PartialFile* partial) {
  errno = 0;
  const bool flushed = std::ferror(partial->file) == 0 && FlushToDisk(partial->file);
  const int problem = errno;
  const bool closed = std::fclose(partial->file) == 0;
  partial->file = nullptr;
  if (!flushed) errno = problem;
  return flushed && closed;
}

// Opens an existing file of any kind for writing over what it holds. A plain file keeps its length.
FILE* OpenInPlace(const std::string& path, bool isText);

// Whether an open file is one on a disk: no pipe, terminal or device.
bool IsPlainFile(FILE* file);

// Ends the file behind its position.
bool TruncateHere(FILE* file);

// A file by its UTF-8 path and a mode of fopen; null if it can't be opened.
FILE* OpenFileAt(const std::string& path, const char* mode);
bool RemoveFileAt(const std::string& path);
// The names in a folder in no order, without "." and "..". If there is a folder that can't be read, these are none, and
// `problem`, which may be null, receives the value of errno that tells why.
std::vector<std::string> NamesInFolder(const std::string& folder, int* problem = nullptr);

// What tells one state of a file from another. Equal facts mean that nobody wrote the file in between.
struct FileFacts {
  bool exists = false;
  uint64_t volume = 0;
  uint64_t number = 0;   // of the file on its volume
  int64_t bytes = 0;     // its length
  int64_t time = 0;      // of the last write, in seconds since 1970
  int64_t fraction = 0;  // of that second, in the system's unit
  bool operator==(const FileFacts&) const = default;
};
// A file that doesn't exist, or is no plain file, has no facts. Links are followed.
FileFacts FactsOf(const std::string& path);

// The full path of the file behind a chain of links, also where that file doesn't exist yet.
std::string FollowLinks(const std::string& path);
// Whether the path is a link.
bool IsLink(const std::string& path);

// Makes a folder that lists of files don't show, or finds it there.
bool MakeHiddenFolder(const std::string& path);
bool MakeFolder(const std::string& path);
// Removes a folder; false if it holds something.
bool RemoveEmptyFolder(const std::string& path);

// Give a file a second name, or another one. False if there is a file of the new name, or on another disk.
bool LinkFileAt(const std::string& path, const std::string& newPath);
bool MoveFileAt(const std::string& path, const std::string& newPath);

// Locks a file, which is made if there is none, until UnlockFile() or the end of the program, in whatever way it ends.
// -1 if another holds it, or if it can't be made.
intptr_t LockFile(const std::string& path);
void UnlockFile(intptr_t lock);

// The folder of this user for what the program keeps on its own. Empty if there is none; with `make` a missing one is
// made.
std::string LocalDataFolder(bool make);

}  // namespace sorvel::platform
