#pragma once

#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/window.h"

// Drawing on a window's client area.
namespace sorvel::platform {

struct DeviceContext;

DeviceContext* BeginDrawing(WindowHandle window);
void EndDrawing(WindowHandle window, DeviceContext* context);

// The same in answer to WM_PAINT: what was invalid is valid afterwards.
DeviceContext* BeginPainting(WindowHandle window);
void EndPainting(WindowHandle window, DeviceContext* context);

// Fills with black from (left, top) up to, and without, (right, bottom). Nothing if that is empty.
void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom);

// Copies a rectangle of the bitmap, through these 256 colours, pixel for pixel to (x, y). What lies outside the bitmap
// or the client area leaves the client area as it is.
void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]);

}  // namespace sorvel::platform
