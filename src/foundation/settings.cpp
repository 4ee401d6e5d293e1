#include "foundation/settings.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/paths.h"
#include "foundation/profile_lines.h"
#include "foundation/replacement_file.h"
#include "platform/files.h"
#include "platform/profile.h"

namespace sorvel {

namespace settings {
// The face name is the Shift JIS text of the proportional gothic face that the system comes with.
const SettingKey kFont = {"setup", "font", "\x82\x6C\x82\x72 \x82\x6F\x83\x53\x83\x56\x83\x62\x83\x4E, 24, 12, 400"};
const SettingKey kBrush = {"setup", "brush", "7, 0, 1, 0, 1, 0"};
const SettingKey kFilm = {"setup", "film", ""};
const SettingKey kBackups = {"setup", "backups", "5"};
const SettingKey kAutosave = {"setup", "autosave", "10"};
const SettingKey kNewCutWidth = {"OnNewCut", "width", "240"};
const SettingKey kNewCutHeight = {"OnNewCut", "height", "180"};
const SettingKey kNewCutFps = {"OnNewCut", "fps", "24"};
const SettingKey kNewCutAntialias = {"OnNewCut", "anti", "0"};
const SettingKey kNewCutCredit = {"OnNewCut", "credit", ""};
const SettingKey kNewFilmWidth = {"OnNewFilm", "width", "320"};
const SettingKey kNewFilmHeight = {"OnNewFilm", "height", "240"};
const SettingKey kNewFilmTitle = {"OnNewFilm", "title", ""};
const SettingKey kNewFilmAuthor = {"OnNewFilm", "author", ""};
const SettingKey kPasteTransparent = {"OnClipTrans", "Flag", "0"};
const SettingKey kPasteTransparentColor = {"OnClipTrans", "RGB", "#00ff00"};
const SettingKey kSheetPlace = {"sheet", "place", ""};
}  // namespace settings

namespace {

char gSettingsFile[kPathCapacity] = "";

bool SettingsPath(char* path) {
  if (gSettingsFile[0] != '\0') {
    std::strcpy(path, gSettingsFile);
    return true;
  }
  char program[kPathCapacity];
  return platform::ProgramPath(program, sizeof(program)) && ChangeExtension(path, program, "ini");
}

}  // namespace

void UseSettingsFile(const char* path) {
  gSettingsFile[0] = '\0';
  if (path != nullptr && std::strlen(path) < sizeof(gSettingsFile)) std::strcpy(gSettingsFile, path);
}

int32_t ReadSettingNumber(const SettingKey& key) {
  const int32_t fallback = std::atoi(key.fallback);
  char path[kPathCapacity];
  if (!SettingsPath(path)) return fallback;
  return platform::ReadProfileNumber(path, key.section, key.key, fallback);
}

void ReadSettingText(const SettingKey& key, char* text, size_t capacity) {
  char path[kPathCapacity];
  if (SettingsPath(path)) {
    platform::ReadProfileText(path, key.section, key.key, key.fallback, text, capacity);
  } else {
    std::snprintf(text, capacity, "%s", key.fallback);
  }
}

void WriteSettingNumber(const SettingKey& key, int32_t value) {
  char text[16];
  std::snprintf(text, sizeof(text), "%d", value);
  WriteSettingText(key, text);
}

void WriteSettingText(const SettingKey& key, const char* text) {
  char path[kPathCapacity];
  if (SettingsPath(path)) WriteProfileText(path, key.section, key.key, text);
}

bool WriteProfileText(const char* path, const char* section, const char* key, const char* text) {
  std::vector<std::string> lines;
  if (!ReadProfileLines(platform::OpenStdioFile(path, "rb"), &lines) && platform::PathExists(path)) return false;
  // Nothing but UTF-16 text begins so.
  if (!lines.empty() && lines[0].starts_with("\xFF\xFE")) return false;
  const ProfileKeyPlace place = FindProfileKey(lines, section, key);
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
  ReplacementFile file;
  if (!file.Open(path)) return false;
  for (std::string& each : lines) {
    each += '\n';
    file.stream.Write(each.data(), static_cast<int32_t>(each.size()));
  }
  return file.Commit();
}

bool ParseColorText(const char* text, uint32_t* color) {
  unsigned red = 0;
  unsigned green = 0;
  unsigned blue = 0;
  if (std::sscanf(text, "#%02X%02X%02X", &red, &green, &blue) != 3) return false;
  *color = blue << 16 | green << 8 | red;
  return true;
}

}  // namespace sorvel
