#pragma once

#include <array>
#include <cstdint>

#include "platform/bitmaps.h"

namespace sorvel {

using platform::ColorEntry;

// Colour indices. Each stands for the role of a pixel in the drawing. Cells hold 0 to 15; composed images hold 0 to 24.
enum ColorIndex : int32_t {
  kTransparent = 0,  // the lower layers show through
  kToneBlack = 1,    // the tone family, 1 to 4, is black, dark, light and white of fills and rectangles
  kToneWhite = 4,
  kSketchFirst = 5,  // the sketch family, 5 to 7, is underdrawing, which the output leaves out
  kSketchLast = 7,
  kLineBlack = 8,  // the line family, 8 to 10, is black for lines, and dark and light for shadow boundaries
  kLineLast = 10,
  kMarkFirst = 11,  // tone marks, +2, +1, -1 and -2, lighten or darken the layer below
  kMarkLast = 14,
  kWorkMarker = 15,  // reserved for use during a fill; no undamaged cell holds it
  kPaleFirst = 16,   // pale black, dark and light for layers that are dimmed
  kGreenFirst = 19,  // ghosts of the cell before
  kRedFirst = 22,    // ghosts of the cell after
  kBackground = 25,  // background of the windows; no pixel has it
};

constexpr int32_t kColorCount = 26;
// Entries that a bitmap of the program declares as used; that of the background follows them.
constexpr int32_t kPixelColors = 25;

// The colours of the indices: the colour table of every image of 8 bits a pixel.
extern std::array<ColorEntry, kColorCount> ColorTable;
// Its values when there is no colour file.
extern const std::array<ColorEntry, kColorCount> DefaultColors;

// Reads the colour table of a bitmap file: 8 bits a pixel, uncompressed, at least 26 colours; its pixels are ignored.
// Null means "Colors.bmp" in the folder of the running program. False, and no change, for any other file.
bool LoadColors(const char* fileName);

// An index outside the table is ignored on write and reads as black.
void SetColor(int32_t index, int32_t red, int32_t green, int32_t blue);
void GetColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue);

// The palette for displays of 256 colours or fewer: the colour table as it is now, black up to entry 37, then the first
// 116 steps of a grey ramp of 128.
constexpr int32_t kDrawPaletteSize = 154;
void BuildDrawPalette(ColorEntry (&entries)[kDrawPaletteSize]);

}  // namespace sorvel
