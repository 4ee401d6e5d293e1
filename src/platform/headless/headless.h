#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "foundation/buffer.h"
#include "platform/bitmaps.h"
#include "platform/dialogs.h"
#include "platform/drawing.h"
#include "platform/menus.h"
#include "platform/timer.h"
#include "platform/window.h"

// What stands behind the seam when there is no window system, and what a script or a test does in the user's place.
// Nothing happens by itself here: no paint messages, no mouse, no clock; each is asked for with an operation below.
// Texts are Shift JIS, as in the seam.
namespace sorvel::platform {

struct Bitmap {
  int32_t width;
  int32_t height;
  int32_t pitch;
  Buffer<uint8_t> bits;
  ColorEntry colors[256];
};

struct Brush {
  ColorEntry color;
};

struct Palette {
  std::vector<ColorEntry> entries;
};

// A line of a menu: a separator, a popup, which the menu owns, or an item with a number.
struct MenuLine {
  std::string label;
  int32_t id = 0;
  bool checked = false;
  bool separator = false;
  Menu* popup = nullptr;
};

struct Menu {
  std::vector<MenuLine> lines;
};

enum class WindowKind {
  kFrame,
  kMdiClient,
  kMdiChild,
  kPopup,
  kCaption,
  kDialog,
  // Controls, the first of them being the edit.
  kEdit,
  kListBox,
  kCheckBox,
  kRadioButton,
  kPushButton,
  kUpDown,
  kStatusBar,
  kToolBar,
  kLabel,
  kGroupBox,
};

struct ListLine {
  std::string text;
  bool selected = false;
};

struct ToolButtonState {
  int32_t command;
  bool checked;
};

struct WindowTimer {
  uintptr_t id;
  uint32_t milliseconds;
};

// A window or control. Tests may read everything; only the seam and the operations below write.
struct Window {
  WindowKind kind = WindowKind::kCaption;
  WindowObject* object = nullptr;
  Window* parent = nullptr;       // whose client area it lies in; null for windows of the screen
  Window* owner = nullptr;        // of a window of the screen; it doesn't outlive its owner
  std::vector<Window*> children;  // in the order in which they were made
  int32_t id = 0;
  std::string text;
  CursorShape classCursor = CursorShape::kArrow;
  bool ending = false;  // it was told of its end and is about to go

  Bounds place;       // in the client area of the parent, or on the screen
  int32_t width = 0;  // of the client area
  int32_t height = 0;
  bool shown = false;  // it may still lie in one that isn't

  int32_t paints = 0;              // how often something was drawn on it
  std::vector<ColorEntry> pixels;  // the client area, width * height, black at first; none for controls
  Bounds invalid;                  // the part of the client area that waits to be painted
  bool eraseInvalid = false;
  Bounds clip;  // where drawing has an effect; all of the client area but while painting
  bool hasBackground = false;
  ColorEntry background;

  ScrollState scrollBars[2];  // horizontal, vertical
  std::vector<WindowTimer> timers;
  Menu* menu = nullptr;  // of the frame, owned

  // MDI client.
  int32_t firstChild = 0;                // the number of the first window of the window list
  std::vector<Window*> activationOrder;  // its children, the one that was active last in front
  Window* activeChild = nullptr;

  // Edits.
  bool scrolls = false;
  bool readOnly = false;
  bool allSelected = false;
  bool multipleLines = false;

  // List boxes.
  bool extendedSelection = false;
  bool sorted = false;
  bool redraw = true;
  std::vector<ListLine> lines;
  int32_t caret = 0;

  // Check boxes and radio buttons. The buttons of a radio group have the same number above 0.
  bool checked = false;
  int32_t radioGroup = 0;

  // Up-down controls.
  Window* buddy = nullptr;  // the edit that shows the position
  int32_t low = 100;
  int32_t high = 0;
  int32_t position = 0;  // the last valid one

  // Tool bars.
  std::vector<ToolButtonState> buttons;

  // Dialogs.
  DialogFunction function = nullptr;
  bool ended = false;
  intptr_t result = 0;
};

namespace headless {

// Back to the state of a fresh process: no windows, empty queues and clipboard, no failure, no timer. Windows that are
// still there end without a message, and their objects are not touched.
void Reset();

// Windows ----------------------------------------------------------------------------------------------------------

// All windows and controls in the order in which they were made; the open cut windows are the children of the area of
// child windows.
const std::vector<WindowHandle>& AllWindows();
// Null when there is none.
WindowHandle FindWindowOfKind(WindowKind kind);

// The client size of every child window, now and in future; 640 by 480 at first. Each one whose size changes gets one
// kMessageSize.
void SetClientSize(int32_t width, int32_t height);

// If something is invalid: it is erased if that was asked for, the object draws the whole client area by
// kMessagePrintClient, and all is valid. False if nothing was.
bool PaintInvalid(WindowHandle window);
// If something is invalid: the object gets kMessagePaint, as from the window system. False if nothing was. Without it
// BeginPainting has nothing to paint, and drawing has no effect until EndPainting.
bool DeliverPaint(WindowHandle window);
// Whether UpdateClient delivers paint messages; off at first, when it does what PaintInvalid does.
void SetLivePainting(bool live);

// Whether QuitLoop was called, and with which code. RunLoop itself gives that code, or 0, at once: a script drives the
// program.
bool HasQuit();
int QuitCode();

// Drops files on a window.
void DropFiles(WindowHandle window, const std::vector<std::string>& paths);

// Mouse, keys and window timers ------------------------------------------------------------------------------------

// Where the mouse stands, on the screen. It sends nothing.
void SetCursorPlace(Point place);
CursorShape CurrentCursor();
// Puts a mouse move into the queue that TakeMouseMoves empties.
void QueueMouseMove(WindowHandle window, Point place);

// Sends the kMessageTimer of each window timer that is set; false when none is.
bool RunWindowTimers();

// The command of a key in the program's accelerator table, 0 for none. `key` is the window system's virtual key code:
// a capital letter or a digit is itself, Enter 13, Tab 9, Esc 27, F1 to F24 from 112.
int32_t FindAccelerator(int32_t key, bool shift, bool control);

bool IsInputMethodOn();

// The period of the player's timer that runs in milliseconds, 0 when none does.
int32_t RunningTimerPeriod();
// Lets that timer come due once; false when none runs.
bool RunTimer();

// Controls. None of these moves the focus: SetFocusTo before it does what a mouse press would do. -------------------

// Replaces the text of an edit, as typed. False if it is read-only.
bool TypeText(WindowHandle edit, const std::string& text);
// Clicks a check box, radio button or push button: it switches, and its parent is told.
void ClickButton(WindowHandle button);
// Selects these lines and no others; the last one gets the caret. The parent is told with kListSelectionChanged. False,
// and nothing happens, if a line doesn't exist, or if several are given for a list of one selected line.
bool SelectLines(WindowHandle list, const std::vector<int32_t>& lines);
// The first click selects the line, the second tells the parent with kListDoubleClicked. False if there is no such
// line.
bool DoubleClickLine(WindowHandle list, int32_t line);

// Menus ------------------------------------------------------------------------------------------------------------

// Opens the menu bar: the frame gets kMessageInitMenu.
void OpenMenuBar(WindowHandle frame);
// The numbers of the items with a check mark, ascending, in the menu and in its popups.
std::vector<int32_t> CheckedEntries(MenuHandle menu);

// The last popup that was opened with OpenPopupMenu.
struct PopupRecord {
  Menu* menu = nullptr;  // null for none yet
  Point place;
  WindowHandle owner = nullptr;
  int32_t count = 0;  // how many there were
};
const PopupRecord& OpenedPopup();

// Answers ----------------------------------------------------------------------------------------------------------

// What a dialog gets: values for its controls, set in this order, and then OK or Cancel. An edit takes a text, a check
// box or radio button "on" or "off", a list box the text of a line, a push button "click". In an edit of several lines
// "\n" ends a line.
struct DialogAnswer {
  int32_t resource = 0;
  std::vector<std::pair<int32_t, std::string>> values;
  bool ok = true;
};
void QueueDialog(const DialogAnswer& answer);
// A name without an extension gets the default one of the dialog. A relative path becomes a full one.
void QueueFile(const std::string& path);
void QueueFileCancel();
void QueueYesNo(bool yes);
void QueueColor(uint8_t red, uint8_t green, uint8_t blue);
void QueueColorCancel();
// Answers that still wait, of all kinds.
size_t QueuedAnswers();
void ClearAnswers();

// The first thing that had no answer, or one that doesn't fit: one line of English, UTF-8, empty for none. What asked
// was told that the user cancelled.
const std::string& Failure();
void ClearFailure();

// A message or question that was shown.
struct BoxRecord {
  std::string text;
  std::string title;
  BoxIcon icon = BoxIcon::kNone;
  int32_t count = 0;  // how many there were of its kind
};
const BoxRecord& LastMessage();
// The texts of all messages with the warning icon, oldest first.
const std::vector<std::string>& Warnings();
const BoxRecord& LastQuestion();
int32_t AlertCount();

// Clipboard --------------------------------------------------------------------------------------------------------

// Puts a picture on the clipboard: rows from top to bottom without gaps, 3 bytes a pixel: blue, green, red. False, and
// an empty clipboard, if the number of bytes doesn't fit the size.
bool SetClipboardPicture(int32_t width, int32_t height, const std::vector<uint8_t>& pixels);
// The bytes that the program put there; empty if it didn't, or if a picture took their place.
const std::vector<uint8_t>& ClipboardDib();

// Names the running program in place of the real one; null goes back to it.
void SetProgramPath(const char* path);

}  // namespace headless
}  // namespace sorvel::platform
