#pragma once

#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/geometry.h"
#include "platform/window.h"

// Fonts and lines of text. Names and texts are Shift JIS.
namespace sorvel::platform {

struct Font;
using FontHandle = Font*;

// `size` is the height in pixels, `weight` 1 to 1000 with 400 for normal. A name that begins with @ is a vertical
// writing font: its lines run from top to bottom. Null if there is none; the caller deletes it.
FontHandle MakeFont(const char* faceName, int32_t size, int32_t weight);
void DeleteFont(FontHandle font);

// The length of a line of text along its direction and its height across it, in pixels.
void MeasureText(WindowHandle window, FontHandle font, const char* text, int32_t length, int32_t* width,
                 int32_t* height);
// Draws a line of text into a bitmap in black, which is the nearest colour of its table, and leaves the ground as it
// is. (x, y) is the left top corner of horizontal text and the right top corner of a vertical line.
void DrawTextLine(BitmapHandle bitmap, FontHandle font, int32_t x, int32_t y, const char* text, int32_t length);

// Calls the function with the full name of each TrueType font.
using FontFunction = void (*)(const char* name, void* user);
void ListFonts(FontFunction function, void* user);

}  // namespace sorvel::platform
