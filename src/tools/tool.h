#pragma once

#include <cstdint>
#include <memory>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "imaging/cell_image.h"
#include "platform/geometry.h"
#include "tools/overlay.h"

namespace sorvel {

// A mouse message as a tool receives it, with the operations that tools share: mapping points, reporting changes and
// showing overlays.
struct ToolInput {
  CutWindow* window;
  Overlay* overlay;
  uint32_t message;
  bool isControlDown;
  Point mouse;                // in window coordinates, as the message told it
  CellImage* cell = nullptr;  // the drawing under edit; null for a tool that draws nothing
  Point point;                // in layer coordinates; in cut coordinates for a tool that draws nothing

  // Map points of the window to points of the layer, snapped to the grid or not, and back. Results are clamped as by
  // Limited().
  Point ToLayer(Point place) const;
  Point ToLayerOffGrid(Point place) const;
  Point ToWindow(Point layerPoint) const;
  // A rectangle of the layer, by its left top corner and the corner beyond its right bottom one, in the window.
  Bounds ToWindow(Point corner, Point farCorner) const;

  // To be called after drawing, with the changed area in layer coordinates. ReportChange() repaints it and adds it to
  // the area that undo repaints; ReportStep() does so for a change that is an undo step of its own; Repaint() only
  // repaints it.
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
  // Makes the frame that is shown, if any, a square of `side` window pixels with the same centre.
  void ResizeShownFrame(int32_t side) const;
  // Shows a band from a place of the window to the point, with the pen mark at its end.
  void StretchBand(Point from) const;
  // Shows a frame from a point of the layer to the point if that lies right of and below it; otherwise the frame stays
  // as it is.
  void StretchFrame(Point start) const;

  // Opens the pen picker at a place of the window.
  void OpenPenPicker(Point place) const;
  // Makes the pen that of the pixel at the point, and opens the picker there.
  void PickPen() const;
};

// Clamps both coordinates to 2^22 and its negative. That is far outside any canvas, and sums of a few such coordinates
// can't overflow.
Point Limited(Point point);
// Whether the point lies right of and below the origin, by at least a pixel each.
bool IsRightAndBelow(Point point, Point origin);
// The point that a message packs into `place`: two halves of 16 bits, which are signed or not.
Point UnpackPlace(intptr_t place, bool isSigned);

// How a tool reads the point of a message.
enum class PointForm {
  kUnsigned,  // on the grid; a place left of or above the window comes out far right or below
  kSigned,    // on the grid
  kOffGrid,   // the true pixel; unsigned as well
};

// A drawing tool. There is one object of each tool for all cuts. Its fields hold its state between messages; a new
// object has the state of a program start.
//
// A gesture begins with a press and ends with the release, the right button, the pulse or End(). A tool calls
// SaveUndo() before its first change and reports each change.
class Tool {
 public:
  explicit Tool(PointForm pointForm = PointForm::kUnsigned) : form(pointForm) {}
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;
  virtual ~Tool() = default;

  // Handles a message. `input` has its window, overlay, message and key set; the rest is filled in here.
  void Run(ToolInput input, intptr_t place);

  // Gives up a gesture whose window is gone. Must not draw. A tool whose gesture ends with a pulse needs none: the next
  // window is pulsed when it becomes active.
  virtual void End() {}
  // Gives up a gesture whose window stays; what the tool showed is off the screen, and a pulse was sent.
  virtual void Cancel() { End(); }
  // Called when another tool takes over, after the overlay was hidden.
  virtual void Leave() {}

 protected:
  // Sets `mouse`, `point` and `cell` of the input. False if there is nothing to work on; the message is then dropped.
  // This version is for tools that draw: it gives false for a blank record.
  virtual bool Prepare(intptr_t place, ToolInput* input);

  // The mouse buttons and moves. The second press of a double click doesn't count as a press.
  virtual void Press(const ToolInput&) {}
  virtual void Move(const ToolInput&) {}
  virtual void Release(const ToolInput&) {}
  virtual void RightPress(const ToolInput&) {}
  virtual void RightRelease(const ToolInput&) {}
  // The picture below the overlay is about to change, or has changed: the overlay must leave the screen.
  virtual void Pulse(const ToolInput&) {}

 private:
  PointForm form;
};

// The functions that make the tools, each defined in the file of its tool.
#define SORVEL_TOOL(number, make) std::unique_ptr<Tool> make();
#include "tools/tools.inc"
#undef SORVEL_TOOL

}  // namespace sorvel
