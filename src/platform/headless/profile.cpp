#include "platform/profile.h"

#include <strings.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/arithmetic.h"
#include "platform/files.h"
#include "platform/replacement.h"
#include "platform/text.h"

namespace sorvel::platform {

namespace {

// Larger files are no settings files and aren't read.
constexpr long kLargestFile = 1 << 20;

bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r';
}

std::string Trim(const std::string& text) {
  size_t start = 0;
  size_t end = text.size();
  while (start < end && IsBlank(text[start])) ++start;
  while (end > start && IsBlank(text[end - 1])) --end;
  return text.substr(start, end - start);
}

// False if the file is missing or too large.
bool ReadLines(const char* path, std::vector<std::string>* lines) {
  FILE* file = OpenStdioFile(path, "rb");
  if (file == nullptr) return false;
  std::fseek(file, 0, SEEK_END);
  const bool reasonable = std::ftell(file) <= kLargestFile;
  std::rewind(file);
  std::string line;
  for (int byte = reasonable ? std::fgetc(file) : EOF; byte != EOF; byte = std::fgetc(file)) {
    if (byte == '\n') {
      lines->push_back(line);
      line.clear();
    } else {
      line.push_back(static_cast<char>(byte));
    }
  }
  if (!line.empty()) lines->push_back(line);
  std::fclose(file);
  return reasonable;
}

bool IsSection(const std::string& line, std::string* name) {
  const std::string text = Trim(line);
  if (text.empty() || text[0] != '[') return false;
  *name = Trim(text.substr(1, text.find(']') - 1));
  return true;
}

bool IsKey(const std::string& line, const char* key, std::string* value) {
  const size_t equals = line.find('=');
  if (equals == std::string::npos || strcasecmp(Trim(line.substr(0, equals)).c_str(), key) != 0) return false;
  *value = Trim(line.substr(equals + 1));
  return true;
}

// The line of a key. If it isn't found, the index of the line to insert it before.
struct KeyPlace {
  bool hasSection = false;
  bool hasKey = false;
  size_t line = 0;
  std::string value;
};

KeyPlace FindKey(const std::vector<std::string>& lines, const char* section, const char* key) {
  KeyPlace place;
  place.line = lines.size();
  for (size_t i = 0; i < lines.size(); ++i) {
    std::string name;
    if (IsSection(lines[i], &name)) {
      if (place.hasSection) break;
      if (strcasecmp(name.c_str(), section) == 0) {
        place.hasSection = true;
        place.line = i + 1;
      }
    } else if (place.hasSection) {
      if (IsKey(lines[i], key, &place.value)) {
        place.hasKey = true;
        place.line = i;
        break;
      }
      // New keys go after the last line of the section that isn't empty.
      if (!Trim(lines[i]).empty()) place.line = i + 1;
    }
  }
  return place;
}

bool ReadValue(const char* path, const char* section, const char* key, std::string* value) {
  std::vector<std::string> lines;
  if (!ReadLines(path, &lines)) return false;
  const KeyPlace place = FindKey(lines, section, key);
  *value = place.value;
  return place.hasKey;
}

}  // namespace

int32_t ReadProfileNumber(const char* path, const char* section, const char* key, int32_t fallback) {
  std::string value;
  if (!ReadValue(path, section, key, &value)) return fallback;
  const long long number = std::strtoll(value.c_str(), nullptr, 10);
  return Saturated(number);
}

void ReadProfileText(const char* path, const char* section, const char* key, const char* fallback, char* text,
                     size_t capacity) {
  std::string value;
  if (!ReadValue(path, section, key, &value)) {
    value = fallback;
  } else if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0]) {
    value = value.substr(1, value.size() - 2);
  }
  std::snprintf(text, capacity, "%s", value.c_str());
}

bool WriteProfileText(const char* path, const char* section, const char* key, const char* text) {
  std::vector<std::string> lines;
  if (!ReadLines(path, &lines) && PathExists(path)) return false;
  const KeyPlace place = FindKey(lines, section, key);
  std::string line = key;
  line.append("=").append(text).append("\r");
  const auto at = lines.begin() + static_cast<std::ptrdiff_t>(place.line);
  if (place.hasKey) {
    *at = line;
  } else if (place.hasSection) {
    lines.insert(at, line);
  } else {
    lines.push_back(std::string("[").append(section).append("]\r"));
    lines.push_back(line);
  }
  std::string native;
  PartialFile file;
  if (!ShiftJisToUtf8(path, &native) || !CreatePartialFile(native, false, &file)) return false;
  // A write that fails is found when the file is committed.
  for (const std::string& each : lines) {
    std::fwrite(each.data(), 1, each.size(), file.file);
    std::fputc('\n', file.file);
  }
  return CommitPartialFile(&file);
}

}  // namespace sorvel::platform
