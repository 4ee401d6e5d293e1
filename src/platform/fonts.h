#pragma once

#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/geometry.h"
#include "platform/window.h"

// Fonts, and drawing lines of text. Names and texts are Shift JIS.
namespace sorvel::platform {

struct Font;
using FontHandle = Font*;

// `size` is the height in pixels; `weight` is 1 to 1000, 400 for normal, or 0 for the font's own. A name that begins
// with @ asks for vertical writing: lines run from top to bottom. Null if there is no font. The caller deletes it.
FontHandle MakeFont(const char* faceName, int32_t size, int32_t weight);
void DeleteFont(FontHandle font);

// Measures `length` bytes of text, in pixels: `width` along the line, `height` across it.
void MeasureText(WindowHandle window, FontHandle font, const char* text, int32_t length, int32_t* width,
                 int32_t* height);
// Draws a line of text with the entry of the bitmap's colour table that is nearest to black, on a transparent
// background. (x, y) is the top left corner of horizontal text and the top right corner of a vertical line.
void DrawTextLine(BitmapHandle bitmap, FontHandle font, int32_t x, int32_t y, const char* text, int32_t length);

// Calls the function once for each TrueType font and script that the font has, with the font's full name.
using FontFunction = void (*)(const char* name, void* user);
void ListFonts(FontFunction function, void* user);

}  // namespace sorvel::platform
