#pragma once

#include <cstddef>
#include <cstdint>

namespace sorvel {

// One key of the settings file with the text that stands for it while the file doesn't have it.
struct SettingKey {
  const char* section;
  const char* key;
  const char* fallback;
};

// All the keys there are.
namespace settings {
extern const SettingKey kFont;   // face name, size, line spacing, weight
extern const SettingKey kBrush;  // shape, colorA, colorB, tone, muraRemoval, square
extern const SettingKey kFilm;   // path of the film that was open last
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
}  // namespace settings

// Where the settings are kept; null goes back to the file beside the executable, with its name and the extension
// "ini". The path is copied.
void UseSettingsFile(const char* path);

// Nothing is cached: each call reads or writes the file. A missing file or key gives the key's fallback. Text is
// Shift JIS and cut to capacity - 1 bytes.
int32_t ReadSettingNumber(const SettingKey& key);
void ReadSettingText(const SettingKey& key, char* text, size_t capacity);
void WriteSettingNumber(const SettingKey& key, int32_t value);
void WriteSettingText(const SettingKey& key, const char* text);

// The colour of "#RRGGBB", with red in the low byte. False, and no change, for a text that doesn't begin so.
bool ParseColorText(const char* text, uint32_t* color);

}  // namespace sorvel
