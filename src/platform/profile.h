#pragma once

#include <cstddef>
#include <cstdint>

// Sectioned key-and-value text files: a line "[section]", then lines "key=value". Sections and keys compare without
// regard to case. Nothing is kept in memory between two calls. Paths and text are Shift JIS.
namespace sorvel::platform {

// The number that the value begins with, 0 if it begins with none; `fallback` if the file or the key is missing.
int32_t ReadProfileNumber(const char* path, const char* section, const char* key, int32_t fallback);

// The value without blanks at its ends and without a pair of quotes around it, cut to capacity - 1 bytes;
// `fallback` if the file or the key is missing.
void ReadProfileText(const char* path, const char* section, const char* key, const char* fallback, char* text,
                     size_t capacity);

// Writes one key; the file and the section are made if they are missing. False if the file can't be written.
bool WriteProfileText(const char* path, const char* section, const char* key, const char* text);

}  // namespace sorvel::platform
