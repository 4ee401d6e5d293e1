#pragma once

#include <cstddef>

namespace sorvel {

// Paths as text, in Shift JIS. Every `destination`, and every `path` that is written to, has room for kPathCapacity
// bytes, the terminator included; a result that doesn't fit gives false.
constexpr size_t kPathCapacity = 1024;

// The parts of a path; joined in this order they give the path again.
struct PathParts {
  char drive[4];
  char directory[kPathCapacity];  // with its last separator
  char name[kPathCapacity];       // the base name: without directory and extension
  char extension[kPathCapacity];  // with its dot
};

// The separators are / and the backslash. The second byte of a two-byte character is neither a separator nor a dot.
// False if the path is too long.
bool SplitPath(const char* path, PathParts* parts);
bool JoinPath(char* path, const PathParts& parts);

// The source path with its extension replaced; `extension` has no dot. False for a null pointer.
bool ChangeExtension(char* destination, const char* source, const char* extension);

// Replaces the base name, and the extension if `extension`, which has no dot, isn't null. False if the result is too
// long; the path is then unchanged.
bool ReplaceName(char* path, const char* name, const char* extension);

// Writes the base name, followed by the extension if `withExtension` is set. `size` is the room in bytes, the
// terminator included. False if the text doesn't fit; the destination then holds the base name if that alone fits.
bool FileNameOf(char* destination, size_t size, const char* path, bool withExtension);

// Writes the extension, with its dot, in upper case. False for a null pointer.
bool UpperExtensionOf(char* destination, const char* path);

// Writes the path of `target` relative to the directory of the file `base`, with / between directories. Both are
// absolute paths with `separator` between directories. Bytes are compared without regard to characters, so the second
// byte of a two-byte character counts as a separator if it has that value.
bool MakeRelativePath(char* destination, const char* target, const char* base, char separator);

// The reverse: writes the absolute path of `relative`, which starts at the directory of the file `base`. The result is
// empty, and true, when `relative` leads above the root.
bool MakeAbsolutePath(char* destination, const char* relative, const char* base, char separator);

// Counts up the number at the end of the base name to the next file that doesn't exist yet: cut1.cut becomes
// cut002.cut. False when no number below 1000 is free; the path is then unchanged.
bool NextNumberedName(char* path);

}  // namespace sorvel
