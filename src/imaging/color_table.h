#pragma once

#include <array>
#include <cstdint>

#include "platform/bitmaps.h"

namespace sorvel {

using platform::ColorEntry;

// What a pixel is: a role, not a colour. A cell holds 0 to 15 in four bits; composed images hold 0 to 24.
enum ColorIndex : int32_t {
  kTransparent = 0,  // the lower layers show through
  kToneBlack = 1,    // the tone family, 1 to 4, is a scale of four steps: fills and rectangles
  kToneWhite = 4,
  kSketchFirst = 5,  // the sketch family, 5 to 7, is underdrawing that the output ignores
  kSketchLast = 7,
  kLineBlack = 8,  // the line family, 8 to 10, is the same scale without white: drawn lines and shadow boundaries
  kLineLast = 10,
  kMarkFirst = 11,  // tone marks, +2, +1, -1 and -2, shift the tone of what lies below
  kMarkLast = 14,
  kWorkMarker = 15,  // exists only inside a running fill, gradient or edging
  kPaleFirst = 16,   // pale forms of black, dark and light for other layers
  kGreenFirst = 19,  // ghosts of the cell before
  kRedFirst = 22,    // ghosts of the cell after
  kBackground = 25,  // brush of the windows; never a pixel
};

constexpr int32_t kColorCount = 26;
// Entries of the table that a bitmap of the program declares; the background is carried along behind them.
constexpr int32_t kPixelColors = 25;

// The 26 colours of the roles, the colour table of every image of 8 bits a pixel.
extern std::array<ColorEntry, kColorCount> ColorTable;
// What it is without a colour file.
extern const std::array<ColorEntry, kColorCount> DefaultColors;

// Reads the colours from a bitmap file of 8 bits a pixel, uncompressed, with at least 26 declared colours; its pixels
// are never looked at. Null means "Colors.bmp" in the folder of the running program. A file that is missing or
// doesn't fit changes nothing. Gives true when the colours were taken.
bool LoadColors(const char* fileName);

// An index outside the table is ignored on write and reads as black.
void SetColor(int32_t index, int32_t red, int32_t green, int32_t blue);
void GetColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue);

// Entries of the one logical palette for displays of 256 colours or fewer: the colour table as it is now, black up to
// entry 37, then a grey ramp laid out for 128 steps, of which 116 fit.
constexpr int32_t kDrawPaletteSize = 154;
void BuildDrawPalette(ColorEntry (&entries)[kDrawPaletteSize]);

}  // namespace sorvel
