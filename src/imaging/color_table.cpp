#include "imaging/color_table.h"

#include <cstdio>
#include <cstring>

#include "foundation/bitmap_head.h"
#include "foundation/paths.h"
#include "platform/files.h"

namespace sorvel {

namespace {

constexpr ColorEntry Rgb(uint8_t red, uint8_t green, uint8_t blue) {
  return {blue, green, red, 0};
}

}  // namespace

constexpr std::array<ColorEntry, kColorCount> kBuiltIn = {
    Rgb(225, 255, 255),  // 0 transparent
    Rgb(0, 0, 0),        // 1 black
    Rgb(85, 85, 85),     // 2 dark grey
    Rgb(170, 170, 170),  // 3 light grey
    Rgb(255, 255, 255),  // 4 white
    Rgb(143, 143, 191),  // 5 sketch of black
    Rgb(173, 173, 217),  // 6 sketch of dark grey
    Rgb(206, 206, 242),  // 7 sketch of light grey
    Rgb(0, 0, 0),        // 8 line
    Rgb(85, 85, 85),     // 9 shadow boundary, dark
    Rgb(170, 170, 170),  // 10 shadow boundary, light
    Rgb(255, 255, 102),  // 11 tone +2
    Rgb(208, 208, 83),   // 12 tone +1
    Rgb(112, 112, 45),   // 13 tone -1
    Rgb(64, 64, 26),     // 14 tone -2
    Rgb(255, 0, 0),      // 15 work marker
    Rgb(143, 191, 191),  // 16 pale black
    Rgb(173, 217, 217),  // 17 pale dark grey
    Rgb(206, 242, 242),  // 18 pale light grey
    Rgb(143, 191, 143),  // 19 green ghost of black
    Rgb(173, 217, 173),  // 20 green ghost of dark grey
    Rgb(206, 242, 206),  // 21 green ghost of light grey
    Rgb(191, 143, 143),  // 22 red ghost of black
    Rgb(217, 173, 173),  // 23 red ghost of dark grey
    Rgb(242, 206, 206),  // 24 red ghost of light grey
    Rgb(0, 0, 0),        // 25 background of the windows
};

const std::array<ColorEntry, kColorCount> DefaultColors = kBuiltIn;
constinit std::array<ColorEntry, kColorCount> ColorTable = kBuiltIn;

bool LoadColors(const char* fileName) {
  char path[kPathCapacity];
  if (fileName == nullptr) {
    char program[kPathCapacity];
    if (!platform::ProgramPath(program, sizeof(program))) return false;
    std::strcpy(path, program);
    if (!ReplaceName(path, "Colors", "bmp")) return false;
    fileName = path;
  }
  FILE* file = platform::OpenStdioFile(fileName, "rb");
  if (file == nullptr) return false;
  uint8_t heads[kBitmapHeadBytes];
  bool fits = std::fread(heads, sizeof(heads), 1, file) == 1 && IsBitmapFile(heads);
  if (fits) {
    const BitmapInfo info = GetBitmapInfo(heads + kBitmapFileHeadBytes);
    fits = info.bitsPerPixel == 8 && info.compression == 0 && info.colorsUsed >= kColorCount;
  }
  if (fits) {
    // A short file leaves the colours that it doesn't reach black.
    ColorEntry entries[kColorCount] = {};
    const size_t got = std::fread(entries, 1, sizeof(entries), file);
    static_cast<void>(got);
    for (int32_t i = 0; i < kColorCount; ++i) SetColor(i, entries[i].red, entries[i].green, entries[i].blue);
  }
  std::fclose(file);
  return fits;
}

void SetColor(int32_t index, int32_t red, int32_t green, int32_t blue) {
  if (index < 0 || index >= kColorCount) return;
  ColorTable[static_cast<size_t>(index)] =
      Rgb(static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue));
}

void GetColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) {
  const ColorEntry entry = index >= 0 && index < kColorCount ? ColorTable[static_cast<size_t>(index)] : ColorEntry{};
  *red = entry.red;
  *green = entry.green;
  *blue = entry.blue;
}

void BuildDrawPalette(ColorEntry (&entries)[kDrawPaletteSize]) {
  constexpr int32_t rampStart = 38;
  for (int32_t i = 0; i < rampStart; ++i) {
    int32_t red = 0;
    int32_t green = 0;
    int32_t blue = 0;
    GetColor(i, &red, &green, &blue);
    entries[i] = Rgb(static_cast<uint8_t>(red), static_cast<uint8_t>(green), static_cast<uint8_t>(blue));
  }
  for (int32_t i = rampStart; i < kDrawPaletteSize; ++i) {
    const uint8_t grey = static_cast<uint8_t>(255 * (i - rampStart) / 127);
    entries[i] = Rgb(grey, grey, grey);
  }
}

}  // namespace sorvel
