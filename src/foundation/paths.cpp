#include "foundation/paths.h"

#include <cctype>
#include <cstdio>
#include <cstring>

#include "foundation/shift_jis.h"
#include "platform/files.h"

namespace sorvel {

namespace {

bool IsDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

// Appends text to what `path` holds; false if it doesn't fit.
bool Append(char* path, const char* text) {
  const size_t length = std::strlen(path);
  const size_t more = std::strlen(text);
  if (length + more >= kPathCapacity) return false;
  std::memcpy(path + length, text, more + 1);
  return true;
}

void Take(char* part, const char* from, const char* to) {
  const size_t length = static_cast<size_t>(to - from);
  std::memcpy(part, from, length);
  part[length] = '\0';
}

}  // namespace

bool SplitPath(const char* path, PathParts* parts) {
  if (std::strlen(path) >= kPathCapacity) return false;
  const char* start = path;
  if (std::isalpha(static_cast<unsigned char>(path[0])) != 0 && path[1] == ':') start = path + 2;
  Take(parts->drive, path, start);
  const char* name = start;
  const char* dot = nullptr;
  const char* end = start;
  while (*end != '\0') {
    if (IsLeadByte(*end) && end[1] != '\0') {
      end += 2;
      continue;
    }
    if (*end == '/' || *end == '\\') {
      name = end + 1;
      dot = nullptr;
    } else if (*end == '.') {
      dot = end;
    }
    ++end;
  }
  if (dot == nullptr) dot = end;
  Take(parts->directory, start, name);
  Take(parts->name, name, dot);
  Take(parts->extension, dot, end);
  return true;
}

bool JoinPath(char* path, const PathParts& parts) {
  path[0] = '\0';
  return Append(path, parts.drive) && Append(path, parts.directory) && Append(path, parts.name) &&
         Append(path, parts.extension);
}

bool ChangeExtension(char* destination, const char* source, const char* extension) {
  if (destination == nullptr || source == nullptr || extension == nullptr) return false;
  PathParts parts;
  if (std::strlen(extension) + 2 > kPathCapacity || !SplitPath(source, &parts)) return false;
  parts.extension[0] = '.';
  std::strcpy(parts.extension + 1, extension);
  return JoinPath(destination, parts);
}

bool ReplaceName(char* path, const char* name, const char* extension) {
  PathParts parts;
  if (std::strlen(name) >= kPathCapacity || !SplitPath(path, &parts)) return false;
  if (extension != nullptr && std::strlen(extension) + 2 > kPathCapacity) return false;
  std::strcpy(parts.name, name);
  if (extension != nullptr) {
    parts.extension[0] = '.';
    std::strcpy(parts.extension + 1, extension);
  }
  char joined[kPathCapacity];
  if (!JoinPath(joined, parts)) return false;
  std::strcpy(path, joined);
  return true;
}

bool FileNameOf(char* destination, size_t size, const char* path, bool withExtension) {
  PathParts parts;
  if (!SplitPath(path, &parts)) return false;
  const size_t nameLength = std::strlen(parts.name);
  if (nameLength + 1 > size) return false;
  std::memcpy(destination, parts.name, nameLength + 1);
  if (!withExtension) return true;
  const size_t extensionLength = std::strlen(parts.extension);
  if (nameLength + extensionLength + 1 > size) return false;
  std::memcpy(destination + nameLength, parts.extension, extensionLength + 1);
  return true;
}

bool UpperExtensionOf(char* destination, const char* path) {
  if (destination == nullptr || path == nullptr) return false;
  PathParts parts;
  if (!SplitPath(path, &parts)) return false;
  char* to = destination;
  for (const char* from = parts.extension; *from != '\0'; ++from) {
    *to++ = static_cast<char>(std::toupper(static_cast<unsigned char>(*from)));
  }
  *to = '\0';
  return true;
}

bool MakeRelativePath(char* destination, const char* target, const char* base, char separator) {
  const char* targetRest = target;
  const char* baseRest = base;
  for (size_t i = 0; target[i] != '\0' && target[i] == base[i]; ++i) {
    if (target[i] == separator) {
      targetRest = target + i + 1;
      baseRest = base + i + 1;
    }
  }
  destination[0] = '\0';
  for (; *baseRest != '\0'; ++baseRest) {
    if (*baseRest == separator && !Append(destination, "../")) return false;
  }
  const size_t prefix = std::strlen(destination);
  if (!Append(destination, targetRest)) return false;
  for (char* p = destination + prefix; *p != '\0'; ++p) {
    if (*p == separator) *p = '/';
  }
  return true;
}

bool MakeAbsolutePath(char* destination, const char* relative, const char* base, char separator) {
  destination[0] = '\0';
  if (!Append(destination, base)) return false;
  int cuts = 1;
  while (std::strncmp(relative, "../", 3) == 0) {
    ++cuts;
    relative += 3;
  }
  char* end = destination + std::strlen(destination);
  for (; cuts > 0; --cuts) {
    do {
      if (end == destination) {
        destination[0] = '\0';
        return true;
      }
      --end;
    } while (*end != separator);
  }
  if (end == destination) {
    destination[0] = '\0';
    return true;
  }
  end[1] = '\0';
  const size_t prefix = std::strlen(destination);
  if (!Append(destination, relative)) {
    destination[0] = '\0';
    return false;
  }
  for (char* p = destination + prefix; *p != '\0'; ++p) {
    if (*p == '/') *p = separator;
  }
  return true;
}

bool NextNumberedName(char* path) {
  PathParts parts;
  if (!SplitPath(path, &parts)) return false;
  const size_t length = std::strlen(parts.name);
  size_t digits = length;
  while (digits > 0 && IsDigit(parts.name[digits - 1]) && !(digits > 1 && IsLeadByte(parts.name[digits - 2]))) {
    --digits;
  }
  int number = 0;
  for (size_t i = digits; i < length && number < 1000; ++i) number = number * 10 + (parts.name[i] - '0');
  // A name without anything before its number loses the first of the three digits: existing files are numbered so.
  const bool loseFirst = digits == 0;
  for (++number; number < 1000; ++number) {
    char text[16];
    std::snprintf(text, sizeof(text), "%03d", number);
    parts.name[digits] = '\0';
    if (!Append(parts.name, loseFirst ? text + 1 : text)) return false;
    char candidate[kPathCapacity];
    if (!JoinPath(candidate, parts)) return false;
    if (!platform::PathExists(candidate)) {
      std::strcpy(path, candidate);
      return true;
    }
  }
  return false;
}

}  // namespace sorvel
