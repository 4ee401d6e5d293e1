#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/geometry.h"
#include "platform/messages.h"

// Windows. Sizes and places are in pixels. Texts are Shift JIS.
namespace sorvel::platform {

// Handles the messages of a window, from the first one that the window gets while it is made.
class WindowObject {
 public:
  // Returns the answer to a message; messages that the object doesn't handle go to DefaultHandling(). An object that
  // deletes itself calls ForgetObject() first.
  virtual intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) = 0;

  WindowHandle window = nullptr;  // set when the window is made

 protected:
  ~WindowObject() = default;
};

enum class CursorShape { kNone, kArrow, kCross, kWait, kSizeWestEast, kSizeNorthSouth };

struct Brush;
using BrushHandle = Brush*;
struct Palette;
using PaletteHandle = Palette*;

// A brush of one colour; the caller deletes it.
BrushHandle MakeBrush(uint8_t red, uint8_t green, uint8_t blue);
void DeleteBrush(BrushHandle brush);
// A logical palette for displays that have one; the caller deletes it.
PaletteHandle MakePalette(const ColorEntry* entries, int32_t count);
void DeletePalette(PaletteHandle palette);

// Registers a window class. `icon` is a resource number, 0 for none. With the cursor kNone the window sets its own.
// `background` may be null; it must outlive the windows.
bool RegisterWindowClass(const char* name, int32_t icon, CursorShape cursor, BrushHandle background);

// The functions that make windows return null if they fail. The object must outlive its window, or delete itself with
// it.

// The main window: hidden, with a menu from the resources. It accepts dropped files.
WindowHandle MakeFrameWindow(const char* windowClass, const char* title, int32_t menu, WindowObject* object);
// The MDI client, the area of the child windows. `windowMenu` is the index of the popup in the menu bar that lists
// them; their commands are numbered from `firstChild` on.
WindowHandle MakeMdiClient(WindowHandle frame, int32_t id, int32_t windowMenu, int32_t firstChild);
// An MDI child window, maximised, with both scroll bars. It becomes the active one and takes the focus.
WindowHandle MakeMdiChild(WindowHandle mdiClient, const char* windowClass, const char* title, WindowObject* object);
// A hidden window without a caption, in front of its owner.
WindowHandle MakePopupWindow(const char* windowClass, WindowHandle owner, int32_t width, int32_t height,
                             WindowObject* object);
// A hidden window with a caption. The owner may be null.
WindowHandle MakeCaptionWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object);
// A hidden window in front of its owner, with a narrow caption that closes it, a border that resizes it, and both
// scroll bars. It gets kMessageMoved when the user has moved or resized it.
WindowHandle MakeToolWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object);
void DestroyWindow(WindowHandle window);

// Detaches the object: from now on the window's messages get the default handling.
void ForgetObject(WindowHandle window);
// The object of a window; null if it has none.
WindowObject* ObjectOf(WindowHandle window);
intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second);

// The active MDI child; null if there is none.
WindowHandle ActiveMdiChild(WindowHandle mdiClient);
void ActivateMdiChild(WindowHandle mdiClient, WindowHandle child);
// Destroys an MDI child without kMessageClose.
void DestroyMdiChild(WindowHandle mdiClient, WindowHandle child);

// The text of a window or control. ReadText() cuts it to capacity - 1 bytes and returns the length.
void SetText(WindowHandle window, const char* text);
size_t ReadText(WindowHandle window, char* text, size_t capacity);
// The length of the whole text in bytes.
size_t TextLength(WindowHandle window);

// Places, in coordinates of a client area, which starts at (0, 0), or of the screen.
Bounds ClientBounds(WindowHandle window);
Bounds ScreenBounds(WindowHandle window);
Point ScreenSize();
Point ClientToScreen(WindowHandle window, Point point);
Point ScreenToClient(WindowHandle window, Point point);
// Moves and resizes a window. The place of a child is in its parent's client area.
void MoveWindow(WindowHandle window, int32_t x, int32_t y, int32_t width, int32_t height, bool repaint);
// Resizes the window so that its client area gets this size. Its top left corner stays.
void SetClientSize(WindowHandle window, int32_t width, int32_t height);
// The height of a line in the window's font, with the space between lines.
int32_t LineHeight(WindowHandle window);

// Marks the client area as to be painted, and to be erased first if `erase` is set.
void InvalidateClient(WindowHandle window, bool erase);
void ValidateClient(WindowHandle window);
// Paints the invalid area at once.
void UpdateClient(WindowHandle window);

// `command` is the show command that the program was started with.
void ShowAs(WindowHandle window, int32_t command);
void Show(WindowHandle window);
void ShowInactive(WindowHandle window);  // without making it active
void Hide(WindowHandle window);
bool IsShown(WindowHandle window);
void ActivateWindow(WindowHandle window);
// Brings a window in front of the others of the program without making it active.
void RaiseWindow(WindowHandle window);

void SetFocusTo(WindowHandle window);
WindowHandle FocusedWindow();
void CaptureMouse(WindowHandle window);
void ReleaseMouse();
WindowHandle CapturingWindow();

// The mouse. A shape lasts until the mouse moves over a window that sets another.
Point CursorPlace();                            // in screen coordinates
CursorShape SetCursorShape(CursorShape shape);  // returns the old one, kNone for a foreign one

// The keys Shift and Control that are held, as bits of MouseKey.
uint32_t HeldKeys();

// A periodic timer that sends kMessageTimer to the window.
void SetWindowTimer(WindowHandle window, uintptr_t id, uint32_t milliseconds);
void KillWindowTimer(WindowHandle window, uintptr_t id);

enum class ScrollBar { kHorizontal, kVertical };

struct ScrollState {
  int32_t maximum = 0;  // the minimum is 0
  int32_t page = 0;
  int32_t position = 0;
};

// A bar that has nothing to scroll is disabled, not hidden.
void SetScrollBar(WindowHandle window, ScrollBar bar, const ScrollState& state);
void SetScrollPosition(WindowHandle window, ScrollBar bar, int32_t position);
ScrollState ReadScrollBar(WindowHandle window, ScrollBar bar);
// A window without its bars has a larger client area.
void ShowScrollBars(WindowHandle window, bool show);
// Moves the pixels of the client area. ScrollClient() invalidates the area that becomes free; after ScrollClientOnly()
// the caller paints it.
void ScrollClient(WindowHandle window, int32_t dx, int32_t dy);
void ScrollClientOnly(WindowHandle window, int32_t dx, int32_t dy);

// Reads the path of the first file of a drop, the first parameter of kMessageDropFiles, and ends the drop. False if the
// path doesn't fit.
bool TakeDroppedFile(uintptr_t drop, char* path, size_t capacity);

// Whether the window's input method editor is open, and opening or closing it.
bool IsInputMethodOpen(WindowHandle window);
void OpenInputMethod(WindowHandle window, bool open);

}  // namespace sorvel::platform
