#pragma once

#include <cstdint>
#include <vector>

#include "animation/animation_window.h"
#include "cutwindow/pen_picker.h"
#include "cutwindow/toolbox.h"
#include "document/cut.h"
#include "document/undo_history.h"
#include "foundation/buffer.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "imaging/rect.h"
#include "platform/drawing.h"
#include "platform/menus.h"
#include "platform/window.h"
#include "resources/ids.h"

namespace sorvel {

class CutWindow;

// The window class of cuts.
constexpr char kCutWindowClass[] = "SorvelinCutFrame";

// What cut windows and tools need from the main frame, which outlives the windows.
class CutWindowHost {
 public:
  explicit CutWindowHost(Toolbox* allTools) : toolbox(allTools) {}

  // The cut whose window is active; null when none is open.
  virtual CutWindow* ActiveCut() = 0;
  // Runs a command at once: 0 if it was handled, 1 if nobody knows it.
  virtual int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control) = 0;
  // Sends the command to the frame's window, as choosing its menu item does.
  virtual void SendCommand(int32_t id) = 0;

  // The panels show the current frame of the active cut. RefreshPanels() fills them from the cut. CommitPanels() stores
  // in the cut what was typed into them; null does nothing. RefreshLayerLine() rewrites the line of the current layer.
  virtual void RefreshPanels(CutWindow* cut) = 0;
  virtual void CommitPanels(CutWindow* cut) = 0;
  // Stores what the user typed into the panels since they were filled; nothing if they are as they were.
  virtual void CommitTyping(CutWindow* cut) = 0;
  virtual void RefreshLayerLine(CutWindow* cut) = 0;
  // Selects the cut's line in the list of cuts, and no other.
  virtual void SelectCutLine(CutWindow* cut) = 0;
  // Hides all panels, or shows them again.
  virtual void TogglePanels() = 0;
  // To be called before a cut closes. Takes the window out of the film and asks the user whether to save changes. False
  // if the drawing couldn't be written: the window must stay, or the drawing would be lost.
  virtual bool AskSaveCut(CutWindow* cut) = 0;
  // To be called when a cut's window is destroyed. Takes the window out of the film.
  virtual void CutGone(CutWindow* cut) = 0;

  // The player. PlayBuffer() takes over a buffer whose first `size` bytes are a compiled stream, and plays it from the
  // start; always 1.
  virtual void StopAnimation() = 0;
  virtual int32_t PlayBuffer(Buffer<uint8_t> buffer, int32_t size) = 0;

  // Lets the user edit a text, a string field of the caller that is replaced. False, with the text unchanged, if the
  // user cancels.
  virtual bool EditText(char** text) = 0;

  // Counts input that may have changed a drawing, and follows the buttons of the mouse over it.
  void NoteInput() { ++inputs; }
  void NoteMouse(uint32_t message, uintptr_t keys) {
    isButtonHeld = (keys & (platform::kKeyLeftButton | platform::kKeyRightButton)) != 0;
    if (isButtonHeld || message != platform::kMessageMouseMove) NoteInput();
  }

  platform::WindowHandle frameWindow = nullptr;
  platform::MenuHandle toolPopupMenu = nullptr;
  Toolbox* const toolbox;              // not owned
  int32_t currentTool = kToolFreePen;  // the number of its command
  int32_t previousTool = kToolFreePen;
  uint32_t inputs = 0;
  bool isButtonHeld = false;  // a stroke may be going on
  int32_t editDepth = 0;      // of EditScopes
  std::vector<CutWindow*> editedCuts;
  AnimationWindow animationWindow;
  PenPicker penPicker;

 protected:
  ~CutWindowHost() = default;
};

// Bits of CutWindow::viewOptions.
enum ViewOption : uint32_t {
  kFloatingPaste = 1u << 0,  // the selection holds a pasted block that can still be moved
  kLineEmphasis = 1u << 1,   // the three line colours are shown in red, green and blue
};

// The brush of the area around the canvas, and the palette for displays that have one. Not owned; null until the
// program sets them.
extern platform::BrushHandle gMarginBrush;
extern platform::PaletteHandle gPalette;

// While this is set, painting sends no pulses: the canvas or a scroll bar is being dragged, and the tool's overlay was
// hidden when that began.
extern bool pulseSuppressed;
// Puts pulseSuppressed and the drag of the canvas in the state of a program start.
void ResetPan();

// A cut with a window. It shows the current frame at a zoom, and turns messages of the window into calls of the current
// tool, commands and scrolling. The object deletes itself when its window is destroyed.
//
// There are three kinds of coordinates. Window coordinates are pixels of the client area. Cut coordinates are pixels of
// the canvas. Layer coordinates are cut coordinates relative to the position of the current record.
//
// A change of the document repaints nothing by itself: its caller calls RepaintAll() or RepaintArea().
//
// A tool draws its overlay straight on the window. The pulse (platform::kMessageUser) is sent before and after every
// change of the pixels below it, so that the tool can take the overlay off.
class CutWindow final : public Cut, public platform::WindowObject {
 public:
  // The host isn't owned. The canvas is in pixels; a width or height of 0 leaves the view without pixels until
  // FitView(). The credit is copied.
  CutWindow(CutWindowHost* mainFrame, int32_t canvasWidth, int32_t canvasHeight, int32_t framesPerSecond,
            const char* creditText, int32_t antialias);
  ~CutWindow();

  // Makes the window, maximised in the area of the child windows, and activates it. False if that fails; the caller
  // then still owns the object.
  bool Create(platform::WindowHandle mdiClient);
  // Makes the name of the cut's file the title. Without a file the title stays.
  void UpdateTitle();
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  // Runs a command of the cut: 0 if it was handled, 1 if it isn't one of the cut's. Defined in shell/.
  int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control);
  // Runs what a typed character stands for, in Shift JIS; most are commands.
  void OnChar(uintptr_t character);
  // Sends the pulse to the window, if there is one.
  void Pulse();

  // Map `count` points in place; pass a rectangle as two of them. WindowToCut() snaps the result to the grid,
  // WindowToCutRaw() doesn't. The two with a layer leave the points as they are if there is no current record.
  // Results beyond 32 bits wrap.
  void WindowToCut(Point* points, int32_t count);
  void WindowToCutRaw(Point* points, int32_t count);
  void CutToWindow(Point* points, int32_t count);
  void CutToLayer(Point* points, int32_t count);
  void LayerToCut(Point* points, int32_t count);
  // The selection in cut coordinates, not snapped to the grid.
  Rect SelectionInCut();
  bool HasSelection() const { return !selection.IsEmpty(); }

  // Recomposes all of the view and shows it, with a pulse before and after.
  void RepaintAll();
  // Recomposes a rectangle of the view, in cut coordinates, and copies it to the window if `show` is set. Sends no
  // pulse. False without a current frame, which leaves the rectangle transparent, or if RepaintAreaDirect() fails.
  bool RepaintArea(int32_t x, int32_t y, int32_t areaWidth, int32_t areaHeight, bool show);
  // Copies a rectangle of the view, in cut coordinates, to the window. This takes the selection off the screen and
  // empties it. False, with nothing done, if the rectangle lies outside the canvas at a zoom above 1/1.
  bool RepaintAreaDirect(int32_t x, int32_t y, int32_t areaWidth, int32_t areaHeight);
  // Switches kLineEmphasis and repaints.
  void ToggleLineEmphasis();
  // Gives the view the size of the canvas. False if there is no memory for it.
  bool FitView();

  // Recomposes and shows a rectangle that a command changed, in layer coordinates, with a pulse before and after, and
  // makes it undoRect.
  void ShowChange(const Rect& area);

  // Change the zoom by one step and scroll the place, in window coordinates, to the middle of the window.
  void ZoomIn(Point place);
  void ZoomOut(Point place);
  // The same, but the place stays where it is as far as the limits of scrolling let it.
  void ZoomAt(Point place, bool zoomsIn);
  // Sets both scroll bars for a client area of this size, in pixels, and invalidates it.
  void UpdateScrollBars(int32_t clientWidth, int32_t clientHeight);

  // Undo that goes back as far as memory allows, see UndoHistory; EditScope records its steps. RecordStep() makes what
  // changed so far a step of its own. TakeStep() ends a gesture that goes on, goes a step back or forward, and shows
  // what changed; nothing happens to what is typed, it becomes a step first.
  void RecordStep(UndoHistory::Origin origin = UndoHistory::Origin::kCommand);
  void TakeStep(bool (UndoHistory::*step)());

  // Enlarges undoRect by a rectangle in layer coordinates; null empties undoRect.
  void AddUndoRect(const Rect* rect);
  // Shows the pen at a point in layer coordinates, and no longer where it was shown before; null only removes it.
  void ShowPenMark(const Point* point);
  // Gives the selection, as SelectionInLayer(), or the whole cell if there is none. False without a current cell.
  bool ToolArea(Rect* area);
  // The selection in layer coordinates, snapped to the grid.
  Rect SelectionInLayer();

  // Commits the panels and plays the cut. The stream is compiled first if it is out of date or not whole. It is kept
  // beside the cut's file; where it can't be written it stays out of date. False if the path is too long. A cut that
  // can't be compiled gives true, and nothing plays.
  bool PlayCut();
  // Commits the panels and shows the current frame in the player. If it can't be compiled, nothing plays.
  void PreviewFrame();

  // Puts the current cell on the system's clipboard. False without a cell or memory, or if the clipboard is in use.
  bool CopyCellToClipboard();
  // Takes the picture of the system's clipboard into the program's own clipboard, in tones of grey, and pastes it as
  // PasteBuffer() does. False if there is no current cell, no picture or no memory, or if the clipboard is in use.
  bool PasteClipboardImage();
  // Copies a block of the current cell, in layer coordinates, to the program's own clipboard without the colours of
  // `mask`. False without a cell, for an empty block, and without memory.
  bool StoreBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask);
  // Draws the block of the program's own clipboard on the current cell, except on pixels of the colours of `mask`: in
  // the cut that it was copied from at the same place of the canvas, elsewhere at the left top corner of the cell.
  // `placed` receives its rectangle in layer coordinates. False without a cell or a block.
  bool PlaceBlock(uint32_t mask, Rect* placed);
  // Places the block as an undo step, selects it and changes to the area tool, which can then move it.
  void PasteBuffer();
  // Mirror the selection, or the whole cell, as an undo step. Defined in shell/.
  void FlipCellHorizontal();
  void FlipCellVertical();

  CutWindowHost* host;
  IndexedImage view;          // the picture that the window shows, of the canvas's size
  int32_t zoomNumerator = 1;  // numerator / denominator are the window pixels for each canvas pixel; one of them is 1
  int32_t zoomDenominator = 1;
  PackedImage prototype;  // the image that new layers take their class from
  int32_t scrollX = 0;    // in window pixels
  int32_t scrollY = 0;
  int32_t lineStepX = 0;  // what an arrow of a scroll bar scrolls, in window pixels
  int32_t lineStepY = 0;
  Bounds selection;        // in window coordinates; empty for none
  Rect undoRect;           // of the last change, in layer coordinates; without width or height undo repaints everything
  int32_t brushMarkX = 0;  // left top corner of the pen mark, in cut coordinates
  int32_t brushMarkY = 0;
  uint32_t viewOptions = 0;  // bits of ViewOption
  UndoHistory undoHistory{this, &undoRect};

 private:
  // What a turn of the wheel does.
  enum class WheelUse { kVertical, kHorizontal, kZoom };

  intptr_t HandleMessage(uint32_t message, uintptr_t first, intptr_t second);
  void OnSize(bool minimises, Point size);
  void OnActivation(bool loses, bool gains);
  void TakeFocus();
  void EndGesture();
  bool HandlePan(uint32_t message, uintptr_t first, intptr_t second);
  void PanTo(Point place);
  // Says what makes a layer while there is none to draw on.
  void ShowLayerNote();
  void StepZoom(bool zoomsIn);
  void ShowZoom();
  void OnWheel(uint32_t message, uintptr_t first, intptr_t second);
  void ScrollBy(platform::ScrollBar bar, int64_t distance);
  void ShowStrip(const Bounds& strip);
  intptr_t HandleMouse(uint32_t message, uintptr_t first, intptr_t second);
  intptr_t RunTool(uint32_t message, uintptr_t first, intptr_t second);
  void Scroll(platform::ScrollBar bar, int32_t code, int32_t thumb);
  void UpdateScrollBar(platform::ScrollBar bar, int32_t clientSize, int32_t canvasSize, int32_t* position);
  Point ViewOrigin();
  void CenterOn(Point cutPoint);
  void Paint();
  void PaintClient(platform::DeviceContext* context, const Bounds& update);
  int64_t GroupsBefore(int64_t place) const;
  void ShowReduced(platform::DeviceContext* context, const Bounds& area);
  void ChooseCursor();

  platform::WindowHandle layerNote = nullptr;  // null until it is needed first
  WheelUse wheelUse = WheelUse::kVertical;
  int32_t wheelRest = 0;  // the turn that hasn't made a step yet
  bool isMinimised = false;
  bool waitsForRelease = false;  // of the mouse: a gesture was ended, and its rest does nothing
};

// The window of a cut that is open in one; null for other cuts and for null.
inline CutWindow* WindowOfCut(Cut* cut) {
  return cut != nullptr && cut->Has(kHasWindow) ? static_cast<CutWindow*>(cut) : nullptr;
}

}  // namespace sorvel
