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

// The platform without a window system, and the operations by which a script or a test acts as the user. Nothing
// happens by itself: paint messages, mouse and timers come only from the operations below. Texts are Shift JIS unless
// stated.
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
  kProgressBar,
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

// A window or control. Callers may read everything; only functions of the platform write.
struct Window {
  WindowKind kind = WindowKind::kCaption;
  WindowObject* object = nullptr;
  Window* parent = nullptr;       // whose client area contains it; null for top-level windows
  Window* owner = nullptr;        // of a top-level window, which ends with its owner
  std::vector<Window*> children;  // in the order of their creation
  int32_t id = 0;
  std::string text;
  CursorShape classCursor = CursorShape::kArrow;
  bool ending = false;  // it got kMessageDestroy and is about to be deleted

  Bounds place;       // in the client area of the parent, or on the screen
  int32_t width = 0;  // of the client area
  int32_t height = 0;
  bool shown = false;  // its parent may still be hidden

  int32_t paints = 0;              // counts drawing operations
  std::vector<ColorEntry> pixels;  // of the client area, width * height, initially black; empty for controls
  Bounds invalid;                  // the part of the client area that waits to be painted
  bool eraseInvalid = false;
  Bounds clip;  // drawing has an effect only here; the whole client area except while painting
  bool hasBackground = false;
  ColorEntry background;

  ScrollState scrollBars[2];  // horizontal, vertical
  std::vector<WindowTimer> timers;
  Menu* menu = nullptr;  // of the frame, owned

  // MDI client.
  int32_t firstChild = 0;                // the number of the first window of the window list
  std::vector<Window*> activationOrder;  // its children, most recently active first
  Window* activeChild = nullptr;

  // Edits.
  bool scrolls = false;
  bool readOnly = false;
  bool allSelected = false;
  bool multipleLines = false;
  bool plainDigits = false;

  // What explains it; empty for nothing.
  std::string tip;
  std::string balloon;

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
  int32_t position = 0;  // the last valid one; of a progress bar how far it is

  // Tool bars.
  std::vector<ToolButtonState> buttons;

  // Dialogs.
  DialogFunction function = nullptr;
  bool ended = false;
  intptr_t result = 0;
};

namespace headless {

// Restores the state of a new process: no windows, empty queues and clipboard, no failure, no timer. Remaining windows
// are deleted without a message, and their objects aren't touched.
void Reset();

// Windows ----------------------------------------------------------------------------------------------------------

// All windows and controls in the order of their creation. The cut windows are the children of the MDI client.
const std::vector<WindowHandle>& AllWindows();
// The first window of this kind; null if there is none.
WindowHandle FindWindowOfKind(WindowKind kind);

// Sets the client size of all MDI children, present and future; initially 640 by 480. Each one that changes its size
// gets one kMessageSize.
void SetClientSize(int32_t width, int32_t height);

// If the window has an invalid area: erases it if so marked, lets the object draw the whole client area with
// kMessagePrintClient, and makes it valid. False if nothing was invalid.
bool PaintInvalid(WindowHandle window);
// If the window has an invalid area: sends kMessagePaint, as a window system does. False if nothing was invalid.
// Without an invalid area BeginPainting clips everything.
bool DeliverPaint(WindowHandle window);
// Whether UpdateClient does what DeliverPaint does, or, initially, what PaintInvalid does.
void SetLivePainting(bool live);

// Whether QuitLoop was called, and with which code. RunLoop returns that code, or 0, at once: the script is the loop.
bool HasQuit();
int QuitCode();

// Drops files on a window.
void DropFiles(WindowHandle window, const std::vector<std::string>& paths);

// Mouse, keys and window timers ------------------------------------------------------------------------------------

// Sets the mouse position in screen coordinates, without a message.
void SetCursorPlace(Point place);
CursorShape CurrentCursor();
// The keys that are held from now on, as bits of MouseKey.
void HoldKeys(uint32_t keys);
// Adds a mouse move to the queue that TakeMouseMoves empties.
void QueueMouseMove(WindowHandle window, Point place);

// Sends one kMessageTimer for each window timer that is set. False if there is none.
bool RunWindowTimers();

// The command of a key in the program's accelerator table; 0 for none and for a key that the focused edit keeps. `key`
// is the virtual key code of the window system: ASCII for digits and capital letters, 13 for Enter, 9 for Tab, 27 for
// Esc, 112 and up for F1 to F24.
int32_t FindAccelerator(int32_t key, bool shift, bool control);

bool IsInputMethodOn();

// The period of the running player timer in milliseconds; 0 if none runs.
int32_t RunningTimerPeriod();
// Calls that timer's function once. False if none runs.
bool RunTimer();

// Controls. None of these moves the focus, as a mouse press would; call SetFocusTo first. ---------------------------

// The last hint at the mouse; it goes by itself.
struct HintRecord {
  std::string text;
  Point place;  // of the mouse
  uint32_t milliseconds = 0;
  int32_t count = 0;  // how many there were
  bool shown = false;
};
const HintRecord& LastHint();

// Replaces the text of an edit, as if typed. False if it is read-only.
bool TypeText(WindowHandle edit, const std::string& text);
// Clicks a check box, radio button or push button: it changes its state and notifies its parent.
void ClickButton(WindowHandle button);
// Selects exactly these lines, puts the caret on the last one and notifies the parent with kListSelectionChanged.
// False, without any effect, if a line doesn't exist, or if there are several for a list with single selection.
bool SelectLines(WindowHandle list, const std::vector<int32_t>& lines);
// Selects the line, then notifies the parent with kListDoubleClicked. False if there is no such line.
bool DoubleClickLine(WindowHandle list, int32_t line);

// Menus ------------------------------------------------------------------------------------------------------------

// Opens the menu bar: sends kMessageInitMenu to the frame.
void OpenMenuBar(WindowHandle frame);
// The numbers of the items with a check mark, in the menu and its submenus, in ascending order.
std::vector<int32_t> CheckedEntries(MenuHandle menu);

// The last popup that was opened with OpenPopupMenu.
struct PopupRecord {
  Menu* menu = nullptr;  // null if there was none
  Point place;
  WindowHandle owner = nullptr;
  int32_t count = 0;  // how many there were
};
const PopupRecord& OpenedPopup();

// Answers ----------------------------------------------------------------------------------------------------------

// What the user does in a dialog: sets these controls in this order, then presses OK or Cancel. The value is the text
// of an edit, "on" or "off" for a check box or radio button, the text of a line for a list box, "click" for a push
// button. In an edit of several lines "\n" ends a line. A dialog without OK needs no answer: its timers run until it
// ends by itself.
struct DialogAnswer {
  int32_t resource = 0;
  std::vector<std::pair<int32_t, std::string>> values;
  bool ok = true;
};
void QueueDialog(const DialogAnswer& answer);
// The choice in a file dialog. A name without an extension gets the dialog's default one; a relative path becomes a
// full one. `type` is the chosen file type, counted from 1; 0 leaves it as the dialog has it.
void QueueFile(const std::string& path, int32_t type = 0);
void QueueFileCancel();
void QueueYesNo(bool yes);
void QueueColor(uint8_t red, uint8_t green, uint8_t blue);
void QueueColorCancel();
// The number of answers of all kinds that are still waiting.
size_t QueuedAnswers();
void ClearAnswers();

// The first question that found no answer, or one that doesn't fit it, as a line of English in UTF-8; empty if there
// was none. Such a question is treated as cancelled.
const std::string& Failure();
void ClearFailure();

// The last message or question that was shown.
struct BoxRecord {
  std::string text;
  std::string title;
  BoxIcon icon = BoxIcon::kNone;
  int32_t count = 0;  // how many there were of its kind
  DefaultButton button = DefaultButton::kYes;
};
const BoxRecord& LastMessage();
// The texts of all messages with the warning icon, oldest first.
const std::vector<std::string>& Warnings();
const BoxRecord& LastQuestion();
int32_t AlertCount();

// Clipboard --------------------------------------------------------------------------------------------------------

// Puts a picture on the clipboard: rows from top to bottom without padding, 3 bytes per pixel: blue, green, red. False,
// with an empty clipboard, if the number of bytes doesn't match the size.
bool SetClipboardPicture(int32_t width, int32_t height, const std::vector<uint8_t>& pixels);
// The bitmap that the program put there; empty if it put none, or if a picture has replaced it.
const std::vector<uint8_t>& ClipboardDib();

// Replaces the path that ProgramPath gives; null restores the real one.
void SetProgramPath(const char* path);

}  // namespace headless
}  // namespace sorvel::platform
