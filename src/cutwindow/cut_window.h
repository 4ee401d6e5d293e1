#pragma once

#include <cstdint>

#include "animation/animation_window.h"
#include "cutwindow/pen_picker.h"
#include "cutwindow/toolbox.h"
#include "document/cut.h"
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

// What cut windows and tools ask of the frame around them.
class CutWindowHost {
 public:
  explicit CutWindowHost(Toolbox* allTools) : toolbox(allTools) {}

  // The cut whose window is active; null when none is open.
  virtual CutWindow* ActiveCut() = 0;
  // Runs a command: 0 when it was handled, 1 when nobody owns it.
  virtual int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control) = 0;
  // Sends the command to the frame's window, like a menu item.
  virtual void SendCommand(int32_t id) = 0;

  // The panels show the active cut's current frame: fill them from the cut, store what was typed into the cut (null
  // does nothing), rewrite the line of the current layer.
  virtual void RefreshPanels(CutWindow* cut) = 0;
  virtual void CommitPanels(CutWindow* cut) = 0;
  virtual void RefreshLayerLine(CutWindow* cut) = 0;
  // Selects the cut's line in the list of cuts, and no other.
  virtual void SelectCutLine(CutWindow* cut) = 0;
  virtual void TogglePanels() = 0;
  // The cut is about to close: the film forgets its window, and the user is asked whether to save what isn't saved.
  // False stops the close, since the drawing couldn't be written and would be lost.
  virtual bool AskSaveCut(CutWindow* cut) = 0;
  // The cut's window goes away without being asked: the film forgets it.
  virtual void CutGone(CutWindow* cut) = 0;

  // The player. PlayBuffer plays a compiled stream of `size` bytes from the start; always 1.
  virtual void StopAnimation() = 0;
  virtual int32_t PlayBuffer(Buffer<uint8_t> buffer, int32_t size) = 0;

  // Lets the user edit a text, an owned string field; false for a cancel.
  virtual bool EditText(char** text) = 0;

  platform::WindowHandle frameWindow = nullptr;
  platform::MenuHandle toolPopupMenu = nullptr;
  Toolbox* const toolbox;              // not owned
  int32_t currentTool = kToolFreePen;  // the number of its command
  int32_t previousTool = kToolFreePen;
  AnimationWindow animationWindow;
  PenPicker penPicker;

 protected:
  ~CutWindowHost() = default;
};

// Bits of CutWindow::viewOptions.
enum ViewOption : uint32_t {
  kFloatingPaste = 1u << 0,  // the selection shows a pasted block that isn't final yet
  kLineEmphasis = 1u << 1,   // the three line colours are shown in red, green and blue
};

// Brushes and palettes of the process that cut windows paint with; not owned, null until the program sets them.
extern platform::BrushHandle gMarginBrush;
extern platform::PaletteHandle gPalette;

// While this is set, painting sends no pulses: a scroll drag is on, and the tool's overlay is already off.
extern bool pulseSuppressed;
// No canvas is being dragged and pulses are sent, as at a start of the program.
void ResetPan();

// A cut with a window: it shows the current frame at a zoom and turns messages of the window into calls of the current
// tool, commands and scrolling. The window ends the object.
//
// There are three kinds of coordinates: window coordinates are pixels of the client area; cut coordinates are pixels of
// the canvas; layer coordinates are cut coordinates less the place of the current record.
//
// Changes to the document repaint nothing by themselves: who makes one calls RepaintAll or RepaintArea. The pulse, a
// message of number 1024, is sent around everything that changes what lies under a tool's overlay, and takes it off.
class CutWindow final : public Cut, public platform::WindowObject {
 public:
  CutWindow(CutWindowHost* mainFrame, int32_t canvasWidth, int32_t canvasHeight, int32_t framesPerSecond,
            const char* creditText, int32_t antialias);
  ~CutWindow();

  // Makes the window, maximised in the area of the child windows; it becomes the active one. False if that fails.
  bool Create(platform::WindowHandle mdiClient);
  // The title is the name of the cut's file.
  void UpdateTitle();
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  // Runs a command of the cut: 0 when it was handled, 1 when it isn't one of them. Defined in shell/.
  int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control);
  void OnChar(uintptr_t character);
  // The tool's overlay goes off the screen.
  void Pulse();

  // Mapping, in place, of `count` points; a rectangle is passed as two. The result of WindowToCut lies on the grid.
  void WindowToCut(Point* points, int32_t count);
  void WindowToCutRaw(Point* points, int32_t count);
  void CutToWindow(Point* points, int32_t count);
  void CutToLayer(Point* points, int32_t count);
  void LayerToCut(Point* points, int32_t count);
  // The selection in cut coordinates, off the grid.
  Rect SelectionInCut();
  bool HasSelection() const { return !selection.IsEmpty(); }

  // Recomposes all of the view and shows it, with a pulse before and after.
  void RepaintAll();
  // Recomposes a rectangle of the view, in cut coordinates, and shows it if `show` is set. False without a current
  // frame, or when there was nothing to show.
  bool RepaintArea(int32_t x, int32_t y, int32_t areaWidth, int32_t areaHeight, bool show);
  // Copies a rectangle of the view to the window. A selection goes off the screen and is empty afterwards.
  bool RepaintAreaDirect(int32_t x, int32_t y, int32_t areaWidth, int32_t areaHeight);
  void ToggleLineEmphasis();
  // Gives view the canvas's size.
  bool FitView();

  // Shows what a command changed, a rectangle in layer coordinates, with a pulse before and after, and remembers it for
  // the undo.
  void ShowChange(const Rect& area);

  // Changes the zoom by one step; the place, in window coordinates, comes to the middle.
  void ZoomIn(Point place);
  void ZoomOut(Point place);
  void UpdateScrollBars(int32_t clientWidth, int32_t clientHeight);

  // Clears undoRect for null, or stretches it over the rectangle, which is in layer coordinates.
  void AddUndoRect(const Rect* rect);
  // Shows the pen at a point in layer coordinates, or takes it away for null.
  void ShowPenMark(const Point* point);
  // The selection in layer coordinates, or the whole cell without one. False if there is no current cell.
  bool ToolArea(Rect* area);
  // The selection in layer coordinates, on the grid.
  Rect SelectionInLayer();

  // Commits the panels, compiles the cut if its stream is out of date, and plays it; with a path the stream is kept
  // beside the cut's file. False if there is no file to compile into.
  bool PlayCut();
  // Shows the current frame in the player.
  void PreviewFrame();

  // The program's own clipboard and the system's, and mirroring. False when there was nothing to do.
  bool CopyCellToClipboard();
  bool PasteClipboardImage();
  bool StoreBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask);
  bool PlaceBlock(uint32_t mask, Rect* placed);
  void PasteBuffer();
  void FlipCellHorizontal();
  void FlipCellVertical();

  CutWindowHost* host;
  IndexedImage view;          // the picture that the window shows, of the canvas's size
  int32_t zoomNumerator = 1;  // window pixels for each canvas pixel
  int32_t zoomDenominator = 1;
  PackedImage prototype;  // the image that new layers take their class from
  int32_t scrollX = 0;    // in window pixels
  int32_t scrollY = 0;
  int32_t lineStepX = 0;
  int32_t lineStepY = 0;
  Bounds selection;        // in window coordinates; empty for none
  Rect undoRect;           // of the last change, in layer coordinates; without width or height undo repaints everything
  int32_t brushMarkX = 0;  // left top of the pen mark on the view
  int32_t brushMarkY = 0;
  uint32_t viewOptions = 0;

 private:
  void OnActivation(bool loses, bool gains);
  bool HandlePan(uint32_t message, uintptr_t first, intptr_t second);
  void PanTo(Point place);
  void ShowStrip(const Bounds& strip);
  intptr_t HandleMouse(uint32_t message, uintptr_t first, intptr_t second);
  intptr_t RunTool(uint32_t message, uintptr_t first, intptr_t second);
  void Scroll(platform::ScrollBar bar, int32_t code, int32_t thumb);
  void UpdateScrollBar(platform::ScrollBar bar, int32_t clientSize, int32_t canvasSize, int32_t* position);
  Point ViewOrigin();
  void CenterOn(Point cutPoint);
  void Paint();
  void PaintClient(platform::DeviceContext* context, const Bounds& update);
  void ChooseCursor();
  void PlayFile(ByteStream* file);
};

// The window of a cut that is open in one; null for other cuts and for null.
inline CutWindow* WindowOfCut(Cut* cut) {
  return cut != nullptr && cut->Has(kHasWindow) ? static_cast<CutWindow*>(cut) : nullptr;
}

}  // namespace sorvel
