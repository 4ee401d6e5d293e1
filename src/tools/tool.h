#pragma once

#include <cstdint>
#include <memory>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "imaging/cell_image.h"
#include "platform/geometry.h"
#include "tools/overlay.h"

namespace sorvel {

// A message of the mouse as a tool gets it, and what a tool does with it: map points, report what it drew, and show its
// overlay.
struct ToolInput {
  CutWindow* window;
  Overlay* overlay;
  uint32_t message;
  bool isControlDown;
  Point mouse;                // in window coordinates, as the message told it
  CellImage* cell = nullptr;  // the drawing under edit; null for a tool that draws nothing
  Point point;                // in layer coordinates; in cut coordinates for a tool that draws nothing

  // Points of the window as points of the layer, on the grid or off it, and back. The results are limited.
  Point ToLayer(Point place) const;
  Point ToLayerOffGrid(Point place) const;
  Point ToWindow(Point layerPoint) const;
  // A rectangle of the layer, by its left top corner and the corner beyond its right bottom one, in the window.
  Bounds ToWindow(Point corner, Point farCorner) const;

  // An area, in layer coordinates, was drawn on. ReportChange shows it and adds it to what undo repaints; ReportStep is
  // for a change that is an undo step of its own; Repaint only shows it.
  void ReportChange(const Rect& area) const;
  void ReportStep(const Rect& area) const;
  void Repaint(const Rect& area) const;
  // Draws a line of ink, in layer coordinates, and reports it as a change.
  void DrawInkLine(Point from, Point to) const;
  // Draws a line of ink, or in sketch colour with Ctrl, and reports it as a step.
  void DrawGuideLine(Point from, Point to) const;

  // Overlays, in window coordinates.
  void ShowBand(Point from, Point to) const { overlay->ShowBand(window, from, to); }
  void ShowFrame(const Bounds& frame) const { overlay->ShowFrame(window, frame); }
  void HideOverlay() const { overlay->Hide(window); }
  // Puts the frame that is shown, if any, around the same centre with another size.
  void ResizeShownFrame(int32_t side) const;
  // A band from a place of the window to the point, with the pen mark at its end.
  void StretchBand(Point from) const;
  // A frame from a point of the layer to the point. What isn't right of and below it leaves the frame as it is.
  void StretchFrame(Point start) const;

  // Opens the pen picker at a place of the window.
  void OpenPenPicker(Point place) const;
  // Makes the pen that of the pixel at the point, and opens the picker there.
  void PickPen() const;
};

// The nearest point of a range, far wider than any canvas, in which sums of a few coordinates can't overflow.
Point Limited(Point point);
bool IsRightAndBelow(Point point, Point origin);
// Two signed or unsigned halves of a message's place.
Point UnpackPlace(intptr_t place, bool isSigned);

// How a tool reads the point of a message.
enum class PointForm {
  kUnsigned,  // on the grid; a place left of or above the window comes out far right or below
  kSigned,    // on the grid
  kOffGrid,   // the true pixel; unsigned as well
};

// A tool of the program, of which there is one for all cuts. What it holds between two messages are its fields: a new
// object is the tool as a start of the program finds it.
//
// A gesture begins with a press and ends with the release, the right button, the pulse or End. A tool calls SaveUndo
// before its first change and reports each change.
class Tool {
 public:
  explicit Tool(PointForm pointForm = PointForm::kUnsigned) : form(pointForm) {}
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;
  virtual ~Tool() = default;

  // `input` has its window, overlay, message and key set; the rest is filled in here.
  void Run(ToolInput input, intptr_t place);

  // Gives up a gesture, whose window is gone. Must not draw.
  virtual void End() {}
  // Another tool takes over. The overlay is off the screen already.
  virtual void Leave() {}

 protected:
  // Reads the point, and finds the drawing under edit. False ends the message: there is nothing to work on. This one is
  // for tools that draw, and a blank record gives false.
  virtual bool Prepare(intptr_t place, ToolInput* input);

  // The mouse buttons go down and up, and the mouse moves. The second press of a double click is none.
  virtual void Press(const ToolInput&) {}
  virtual void Move(const ToolInput&) {}
  virtual void Release(const ToolInput&) {}
  virtual void RightPress(const ToolInput&) {}
  virtual void RightRelease(const ToolInput&) {}
  // What lies under the overlay is about to change, or has changed: the overlay must leave the screen.
  virtual void Pulse(const ToolInput&) {}

 private:
  PointForm form;
};

// The functions that make the tools; each is in the file of its tool.
#define SORVEL_TOOL(number, make) std::unique_ptr<Tool> make();
#include "tools/tools.inc"
#undef SORVEL_TOOL

}  // namespace sorvel
