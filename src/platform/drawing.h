#pragma once

#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/window.h"

// Drawing on a window's client area. What lies outside it is left out.
namespace sorvel::platform {

struct DeviceContext;

DeviceContext* BeginDrawing(WindowHandle window);
void EndDrawing(WindowHandle window, DeviceContext* context);

// The same in answer to kMessagePaint: what was invalid, given in `update`, is erased and valid afterwards. One at a
// time. `update` may be null.
DeviceContext* BeginPainting(WindowHandle window, Bounds* update);
void EndPainting(WindowHandle window, DeviceContext* context);

// The device context of a kMessagePrintClient.
DeviceContext* ContextOf(uintptr_t first);

// Displays of 256 colours: whether this is one, and its palette. `foreground` asks for the palette's own colours.
bool HasPalette(DeviceContext* context);
void SelectDrawingPalette(DeviceContext* context, PaletteHandle palette, bool foreground);
void RealizeDrawingPalette(DeviceContext* context);

// Fills with black from (left, top) up to, and without, (right, bottom). Nothing if that is empty.
void FillBlack(DeviceContext* context, int32_t left, int32_t top, int32_t right, int32_t bottom);
void FillArea(DeviceContext* context, const Bounds& area, BrushHandle brush);
// With the colour of buttons.
void FillFace(DeviceContext* context, const Bounds& area);

// Copies a rectangle of the bitmap, through these 256 colours, pixel for pixel to (x, y). What lies outside the bitmap
// or the client area leaves the client area as it is.
void DrawBitmap(DeviceContext* context, int32_t x, int32_t y, int32_t width, int32_t height, BitmapHandle bitmap,
                int32_t sourceX, int32_t sourceY, const ColorEntry (&colors)[256]);
// Copies the rectangle `source` of the bitmap, through its own colours, to `target`, at another size if they differ.
// Where several pixels fall on one, their colours are joined by a logical AND, so that dark lines stay.
void StretchBitmap(DeviceContext* context, const Bounds& target, BitmapHandle bitmap, const Bounds& source);

// Overlays by inversion: drawing one again takes it away. A line leaves out its last point; a frame is dotted.
void InvertLine(DeviceContext* context, Point from, Point to);
void InvertFrame(DeviceContext* context, const Bounds& frame);

enum class EdgeStyle { kRaised, kSunken, kEtched };
void DrawRectEdge(DeviceContext* context, const Bounds& area, EdgeStyle style);

}  // namespace sorvel::platform
