#pragma once

#include <cstdint>

#include "cutwindow/cut_window.h"
#include "cutwindow/wait_cursor.h"
#include "imaging/cell_image.h"
#include "platform/geometry.h"
#include "platform/window.h"

// What the tools have in common: how a message becomes a point on the drawing, how a change is reported, and the
// overlays that follow the mouse.
namespace sorvel {

// A message as a tool that draws gets it.
struct ToolInput {
  CutWindow* window;
  CellImage* cell;  // the drawing under edit
  Point mouse;      // in window coordinates, as the message told it
  Point point;      // on the grid, in layer coordinates
  bool isControlDown;
};

enum class CoordinateForm {
  kSigned,
  kUnsigned,  // a place left of or above the window comes out far right or below
};

Point UnpackPlace(intptr_t place, CoordinateForm form);
// False if there is no drawing to work on, which is the case of a blank record.
bool ReadInput(uint32_t keys, intptr_t place, CutWindow* window, CoordinateForm form, ToolInput* input);

// The nearest point of a range, far wider than any canvas, in which sums of a few coordinates can't overflow.
Point Limited(Point point);
// Layer coordinates and window coordinates of the same point, limited. Those of ToLayer lie on the grid.
Point ToLayer(CutWindow* window, Point place);
Point ToLayerOffGrid(CutWindow* window, Point place);
Point ToWindow(CutWindow* window, Point point);
// A rectangle of layer coordinates, by its left top corner and the corner beyond its right bottom one, in the window.
Bounds ToWindowBounds(CutWindow* window, Point corner, Point farCorner);
bool IsRightAndBelow(Point point, Point origin);

// Changes.

// The area that a line of the largest pen from a to b may touch.
Rect SegmentArea(Point a, Point b);
// Shows an area, in layer coordinates, as the drawing is now.
void RepaintLayerArea(CutWindow* window, const Rect& area);
// The area was drawn on: stretches undoRect over it and shows it.
void ReportChange(CutWindow* window, const Rect& area);
// Draws a line of ink and reports it.
void DrawInkLine(const ToolInput& input, Point from, Point to);
// The same for the tools whose Ctrl key draws in sketch colour; the line is an undo step of its own.
void DrawGuideLine(const ToolInput& input, Point from, Point to);

// Overlays by inversion: a line or a dotted frame over the picture, in window coordinates. There is one of them at
// most, as only one tool runs at a time. Showing one takes the old one away first. One without extent is none.
void ShowBand(CutWindow* window, Point from, Point to);
void ShowFrame(CutWindow* window, const Bounds& frame);
// Takes it off this window. One of another window is only forgotten: that one was repainted, or is gone.
void HideOverlay(const CutWindow* window);
bool IsOverlayShown(const CutWindow* window);
// The frame that is shown, an empty one if none is.
Bounds ShownFrame(const CutWindow* window);
// The window and its overlay are gone.
void ForgetOverlay(const CutWindow* window);
void ResetOverlay();

// Puts the frame that is shown, if any, around the same centre with another size.
void ResizeShownFrame(CutWindow* window, int32_t side);
// Both follow a drag: the line with the pen mark at its end, and the frame while the point is right of and below the
// start, which is in layer coordinates.
void StretchBand(const ToolInput& input, Point from);
void StretchFrame(const ToolInput& input, Point start);

// Opens the pen picker at a place of the window.
void OpenPenPicker(CutWindow* window, Point place);

}  // namespace sorvel
