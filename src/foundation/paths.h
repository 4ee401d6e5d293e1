#pragma once

#include <cstddef>

namespace sorvel {

// Path arithmetic on Shift JIS texts. A destination holds up to kPathCapacity bytes with its terminator, and what
// doesn't fit there fails.
constexpr size_t kPathCapacity = 1024;

// A path taken apart. The joined parts give the path again; the extension has its dot.
struct PathParts {
  char drive[4];
  char directory[kPathCapacity];  // with its closing separator
  char name[kPathCapacity];
  char extension[kPathCapacity];
};

// Both / and a backslash end a directory here; the second byte of a double-byte character is neither a separator
// nor a dot. False if the path is too long.
bool SplitPath(const char* path, PathParts* parts);
bool JoinPath(char* path, const PathParts& parts);

// The source path with its extension replaced; `extension` has no dot. False for a null pointer.
bool ChangeExtension(char* destination, const char* source, const char* extension);

// Puts another base name into the path, and another extension (without a dot) if one is given. False if it is too
// long; the path is then as it was.
bool ReplaceName(char* path, const char* name, const char* extension);

// Writes the base name, with the extension if asked for. False if `size` is too small for it with its terminator; of
// a name with its extension the base name alone has then been written if that fitted.
bool FileNameOf(char* destination, size_t size, const char* path, bool withExtension);

// Writes the extension with its dot in upper case. False for a null pointer.
bool UpperExtensionOf(char* destination, const char* path);

// The path of `target` relative to the directory of the file `base`, with / between directories. Both are full paths
// with `separator` between directories. Byte by byte: a second byte of a character that equals the separator counts
// as one.
bool MakeRelativePath(char* destination, const char* target, const char* base, char separator);

// The reverse: `relative` seen from the directory of the file `base`. Empty when it leads above the root.
bool MakeAbsolutePath(char* destination, const char* relative, const char* base, char separator);

// Turns the path into that of the next numbered file that doesn't exist yet: cut1.cut becomes cut002.cut. `path` has
// kPathCapacity bytes. False when no number below 1000 is free.
bool NextNumberedName(char* path);

}  // namespace sorvel
