#pragma once

#include <strings.h>

#include <cstdio>
#include <string>
#include <vector>

// The lines of an INI file: "[section]", then "key=value". Sections and keys ignore case.
namespace sorvel {

// Larger files are no settings files and aren't read.
constexpr long kLargestProfile = 1 << 20;

inline bool IsProfileBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r';
}

inline std::string TrimProfile(const std::string& text) {
  size_t start = 0;
  size_t end = text.size();
  while (start < end && IsProfileBlank(text[start])) ++start;
  while (end > start && IsProfileBlank(text[end - 1])) --end;
  return text.substr(start, end - start);
}

// Reads the lines of a file, without their line feeds, and closes it. False if it is null or too large.
inline bool ReadProfileLines(FILE* file, std::vector<std::string>* lines) {
  if (file == nullptr) return false;
  std::fseek(file, 0, SEEK_END);
  const bool reasonable = std::ftell(file) <= kLargestProfile;
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

inline bool IsProfileSection(const std::string& line, std::string* name) {
  const std::string text = TrimProfile(line);
  if (text.empty() || text[0] != '[') return false;
  *name = TrimProfile(text.substr(1, text.find(']') - 1));
  return true;
}

inline bool IsProfileKey(const std::string& line, const char* key, std::string* value) {
  const size_t equals = line.find('=');
  if (equals == std::string::npos || strcasecmp(TrimProfile(line.substr(0, equals)).c_str(), key) != 0) return false;
  *value = TrimProfile(line.substr(equals + 1));
  return true;
}

// The line of a key. If it isn't found, the index of the line to insert it before.
struct ProfileKeyPlace {
  bool hasSection = false;
  bool hasKey = false;
  size_t line = 0;
  std::string value;
};

inline ProfileKeyPlace FindProfileKey(const std::vector<std::string>& lines, const char* section, const char* key) {
  ProfileKeyPlace place;
  place.line = lines.size();
  for (size_t i = 0; i < lines.size(); ++i) {
    std::string name;
    if (IsProfileSection(lines[i], &name)) {
      if (place.hasSection) break;
      if (strcasecmp(name.c_str(), section) == 0) {
        place.hasSection = true;
        place.line = i + 1;
      }
    } else if (place.hasSection) {
      if (IsProfileKey(lines[i], key, &place.value)) {
        place.hasKey = true;
        place.line = i;
        break;
      }
      // New keys go after the last line of the section that isn't empty.
      if (!TrimProfile(lines[i]).empty()) place.line = i + 1;
    }
  }
  return place;
}

}  // namespace sorvel
