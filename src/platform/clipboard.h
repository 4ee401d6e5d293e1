#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/window.h"

// The system's clipboard.
namespace sorvel::platform {

// Opens the clipboard for `owner`; every successful open needs a close. False if another program has it open.
bool OpenClipboard(WindowHandle owner);
void CloseClipboard();

// Replaces the contents of the open clipboard with a device-independent bitmap of `size` bytes: header, colours, rows.
// Copies the data. False if there is no memory; the clipboard then keeps its contents.
bool PutClipboardDib(const uint8_t* data, size_t size);

// Whether the clipboard holds a picture. It need not be open.
bool HasClipboardPicture();

// The picture on the open clipboard, which is read in pieces. Null if there is none. The caller releases it before the
// clipboard is closed.
struct ClipboardPicture;
ClipboardPicture* TakeClipboardPicture(int32_t* width, int32_t* height);
// Reads a rectangle of the picture, rows from top to bottom without gaps, 3 bytes a pixel: blue, green, red. `pixels`
// holds width * height * 3 bytes. The rectangle lies in the picture and has at most 200 pixels a side.
bool ReadClipboardPicture(ClipboardPicture* picture, int32_t x, int32_t y, int32_t width, int32_t height,
                          uint8_t* pixels);
void ReleaseClipboardPicture(ClipboardPicture* picture);

}  // namespace sorvel::platform
