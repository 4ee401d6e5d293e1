#pragma once

#include <cstddef>
#include <cstdio>

// Files and the program's own path. Every path here is text in the program's code page, Shift JIS.
namespace sorvel::platform {

// What separates directories in a full path of this platform.
extern const char kPathSeparator;

// Opens a file with a mode of fopen; the caller closes it. Null when it can't be opened, or when this platform can't
// express the name.
FILE* OpenStdioFile(const char* path, const char* mode);

// A file without a name for reading and writing, gone when it is closed. Null when there is none to be had.
FILE* OpenTemporaryFile();

// True if a file or folder of this path exists.
bool PathExists(const char* path);

// Deletes a file; false if that fails.
bool DeletePath(const char* path);

// Gives a file another path; false if that fails.
bool RenamePath(const char* path, const char* newPath);

// The full path of the running program. False, and an empty text, if it doesn't fit.
bool ProgramPath(char* path, size_t capacity);

}  // namespace sorvel::platform
