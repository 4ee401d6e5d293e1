#include "platform/profile.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "foundation/arithmetic.h"
#include "foundation/profile_lines.h"
#include "platform/files.h"

namespace sorvel::platform {

namespace {

bool ReadValue(const char* path, const char* section, const char* key, std::string* value) {
  std::vector<std::string> lines;
  if (!ReadProfileLines(OpenStdioFile(path, "rb"), &lines)) return false;
  const ProfileKeyPlace place = FindProfileKey(lines, section, key);
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

}  // namespace sorvel::platform
