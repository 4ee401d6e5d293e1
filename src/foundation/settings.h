#pragma once

#include <cstddef>
#include <cstdint>

namespace sorvel {

// A key of the settings file, with the text that it has when the file lacks it.
struct SettingKey {
  const char* section;
  const char* key;
  const char* fallback;
};

// All keys.
namespace settings {
extern const SettingKey kFont;      // face name, size, line spacing, weight
extern const SettingKey kBrush;     // shape, colorA, colorB, tone, muraRemoval, square
extern const SettingKey kFilm;      // path of the film that was open last
extern const SettingKey kBackups;   // how many earlier states of a document are kept; read only
extern const SettingKey kAutosave;  // seconds from a change to its snapshot, 0 for none; read only
extern const SettingKey kNewCutWidth;
extern const SettingKey kNewCutHeight;
extern const SettingKey kNewCutFps;
extern const SettingKey kNewCutAntialias;  // 0, 1 or 2
extern const SettingKey kNewCutCredit;
extern const SettingKey kNewFilmWidth;
extern const SettingKey kNewFilmHeight;
extern const SettingKey kNewFilmTitle;
extern const SettingKey kNewFilmAuthor;
extern const SettingKey kPasteTransparent;       // 0 or 1
extern const SettingKey kPasteTransparentColor;  // "#RRGGBB"
extern const SettingKey kSheetPlace;             // of the time sheet: left, top, width, height
}  // namespace settings

// Sets the path of the settings file, which is copied. Null means the default: beside the executable, with its name and
// the extension "ini".
void UseSettingsFile(const char* path);

// Each call reads or writes the file. A missing file or key gives the key's fallback. Text is Shift JIS; a longer one
// is cut to capacity - 1 bytes.
int32_t ReadSettingNumber(const SettingKey& key);
void ReadSettingText(const SettingKey& key, char* text, size_t capacity);
void WriteSettingNumber(const SettingKey& key, int32_t value);
void WriteSettingText(const SettingKey& key, const char* text);

// Writes one key of an INI file, which is replaced as a whole. Makes the file and the section if they are missing.
// False if the file can't be written; one in UTF-16 isn't. The path and all texts are Shift JIS.
bool WriteProfileText(const char* path, const char* section, const char* key, const char* text);

// Reads "#RRGGBB" in hexadecimal into a colour with red in the low byte. False, and no change, for other text.
bool ParseColorText(const char* text, uint32_t* color);

}  // namespace sorvel
