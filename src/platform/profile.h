#pragma once

#include <cstddef>
#include <cstdint>

// Reading of INI files: a line "[section]", then lines "key=value". Sections and keys ignore case. Each call reads the
// file anew. Paths and texts are Shift JIS.
namespace sorvel::platform {

// The number at the start of the value, 0 if there is none; `fallback` if the file or the key is missing.
int32_t ReadProfileNumber(const char* path, const char* section, const char* key, int32_t fallback);

// The value without blanks at its ends and without quotes around it, cut to capacity - 1 bytes; `fallback` if the file
// or the key is missing.
void ReadProfileText(const char* path, const char* section, const char* key, const char* fallback, char* text,
                     size_t capacity);

}  // namespace sorvel::platform
