#pragma once

#include <cstddef>
#include <cstdio>

// Files and the program's own path. Paths are Shift JIS, the program's code page.
namespace sorvel::platform {

// Separates directories in full paths of this platform.
extern const char kPathSeparator;

// Opens a file with a mode of fopen(); the caller closes it. Null if it can't be opened, or if its name can't be
// converted to this platform's encoding.
FILE* OpenStdioFile(const char* path, const char* mode);

// Opens an unnamed file for reading and writing that is deleted when it is closed. Null if there can't be one.
FILE* OpenTemporaryFile();

// True if a file or folder of this path exists.
bool PathExists(const char* path);

// Deletes a file; false if that fails.
bool DeletePath(const char* path);

// The full path of the running program. False, and an empty text, if it doesn't fit.
bool ProgramPath(char* path, size_t capacity);

}  // namespace sorvel::platform
