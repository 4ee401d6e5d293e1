#pragma once

#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/window.h"

// Drawing in a window's client area, in client coordinates. Drawing outside it is clipped.
namespace sorvel::platform {

struct DeviceContext;

// Every context that was begun must be ended with the matching function.
DeviceContext* BeginDrawing(WindowHandle window);
void EndDrawing(WindowHandle window, DeviceContext* context);

// The same, to answer kMessagePaint: drawing is clipped to the invalid area, which is erased and becomes valid.
// `update`, which may be null, receives its bounds. Only one painting at a time.
DeviceContext* BeginPainting(WindowHandle window, Bounds* update);
void EndPainting(WindowHandle window, DeviceContext* context);

// The device context of a kMessagePrintClient.
DeviceContext* ContextOf(uintptr_t first);

// Palettes of displays with 256 colours. `foreground` asks for the exact colours of the palette.
bool HasPalette(DeviceContext* context);
void SelectDrawingPalette(DeviceContext* context, PaletteHandle palette, bool foreground);
void RealizeDrawingPalette(DeviceContext* context);

// Right and bottom edge don't belong to the area. An empty area draws nothing.
void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom);
void FillArea(DeviceContext* context, const Bounds& area, BrushHandle brush);
// Fills with the colour of button faces.
void FillFace(DeviceContext* context, const Bounds& area);

// Copies the rectangle at (sourceX, sourceY) of the bitmap to (x, y) at its own size, with `colors` in place of the
// bitmap's colour table. The parts outside the bitmap draw nothing.
void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]);
// Copies the rectangle `source` of the bitmap to `target`, which isn't smaller, and repeats its pixels if the sizes
// differ.
void StretchBitmap(DeviceContext* context, const Bounds& target, BitmapHandle bitmap, const Bounds& source);

// Shows pixels of the area's size, row by row. No part of the area may lie outside the window.
void DrawPixels(DeviceContext* context, const Bounds& area, const ColorEntry* pixels);

// Drawn by inverting pixels: drawing the same again removes it. A line doesn't include `to`; a frame is dotted.
void InvertLine(DeviceContext* context, Point from, Point to);
void InvertFrame(DeviceContext* context, const Bounds& frame);

enum class EdgeStyle { kRaised, kSunken, kEtched };
void DrawRectEdge(DeviceContext* context, const Bounds& area, EdgeStyle style);

}  // namespace sorvel::platform
