#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/window.h"

// The system's clipboard.
namespace sorvel::platform {

bool OpenClipboard(WindowHandle owner);
void CloseClipboard();

// Empties the clipboard and puts a device-independent bitmap of `size` bytes on it: header, colours, rows. The data is
// copied. False if there is no memory; the clipboard is as it was then. Between Open and Close only.
bool PutClipboardDib(const uint8_t* data, size_t size);

// Whether there is a picture that can be taken. It needs no opening.
bool HasClipboardPicture();

// A picture of the clipboard, read in pieces. Null if there is none. Between Open and Close only.
struct ClipboardPicture;
ClipboardPicture* TakeClipboardPicture(int32_t* width, int32_t* height);
// Reads a rectangle of the picture, rows from top to bottom without gaps, 3 bytes a pixel: blue, green, red. `pixels`
// holds width * height * 3 bytes. The rectangle lies in the picture and has at most 200 pixels a side.
bool ReadClipboardPicture(ClipboardPicture* picture, int32_t x, int32_t y, int32_t width, int32_t height,
                          uint8_t* pixels);
void ReleaseClipboardPicture(ClipboardPicture* picture);

}  // namespace sorvel::platform
