#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/bitmaps.h"
#include "platform/geometry.h"
#include "platform/messages.h"

// Windows. Sizes and places are pixels; message numbers are the window system's. Texts are Shift JIS.
namespace sorvel::platform {

// An object that answers the messages of its window, from the moment that the window is being made.
class WindowObject {
 public:
  // Gives the answer to a message, or hands it to DefaultHandling. An object that ends with its window calls
  // ForgetObject first.
  virtual intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) = 0;

  WindowHandle window = nullptr;  // set when the window is made

 protected:
  ~WindowObject() = default;
};

enum class CursorShape { kNone, kArrow, kCross, kWait, kSizeWestEast };

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

// Makes a class of windows known. `icon` is a resource number, 0 for none; with the cursor kNone the window sets its
// own; `background` may be null.
bool RegisterWindowClass(const char* name, int32_t icon, CursorShape cursor, BrushHandle background);

// Each gives null if the window can't be made. The object outlives its window unless it ends with it.
// The main window: hidden, with a menu of the resources, takes dropped files.
WindowHandle MakeFrameWindow(const char* windowClass, const char* title, int32_t menu, WindowObject* object);
// The area of the child windows. `windowMenu` is the index of the popup that lists them, with numbers from
// `firstChild`.
WindowHandle MakeMdiClient(WindowHandle frame, int32_t id, int32_t windowMenu, int32_t firstChild);
// A child window of the area, maximised, with both scroll bars. It becomes the active one and takes the focus.
WindowHandle MakeMdiChild(WindowHandle mdiClient, const char* windowClass, const char* title, WindowObject* object);
// A hidden window of this size without a caption, owned by the frame.
WindowHandle MakePopupWindow(const char* windowClass, WindowHandle owner, int32_t width, int32_t height,
                             WindowObject* object);
// A hidden window with a caption. The owner may be null.
WindowHandle MakeCaptionWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object);
void DestroyWindow(WindowHandle window);

// From now on the window's messages get the default handling.
void ForgetObject(WindowHandle window);
// Null for a window without one.
WindowObject* ObjectOf(WindowHandle window);
intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second);

// The active child window, null if there is none.
WindowHandle ActiveMdiChild(WindowHandle mdiClient);
void ActivateMdiChild(WindowHandle mdiClient, WindowHandle child);
// Destroys a child window without asking it.
void DestroyMdiChild(WindowHandle mdiClient, WindowHandle child);

// Text of a window or control. Reading cuts to capacity - 1 bytes and gives the length.
void SetText(WindowHandle window, const char* text);
size_t ReadText(WindowHandle window, char* text, size_t capacity);
// Bytes of the whole text.
size_t TextLength(WindowHandle window);

// Places. A client area begins at 0, 0. Screen places are of the whole screen.
Bounds ClientBounds(WindowHandle window);
Bounds ScreenBounds(WindowHandle window);
Point ScreenSize();
Point ClientToScreen(WindowHandle window, Point point);
Point ScreenToClient(WindowHandle window, Point point);
// Moves and sizes a window; a child's place is in its parent's client area.
void MoveWindow(WindowHandle window, int32_t x, int32_t y, int32_t width, int32_t height, bool repaint);
// Gives the client area another size; the left top corner of the window stays.
void SetClientSize(WindowHandle window, int32_t width, int32_t height);
// The height of a line of text in the window's font with the space between lines.
int32_t LineHeight(WindowHandle window);

void InvalidateClient(WindowHandle window, bool erase);
void ValidateClient(WindowHandle window);
// Paints what is invalid at once.
void UpdateClient(WindowHandle window);

// Showing. `command` is what the program was started with.
void ShowAs(WindowHandle window, int32_t command);
void Show(WindowHandle window);
void ShowInactive(WindowHandle window);  // without making it active
void Hide(WindowHandle window);
bool IsShown(WindowHandle window);
void ActivateWindow(WindowHandle window);

void SetFocusTo(WindowHandle window);
WindowHandle FocusedWindow();
void CaptureMouse(WindowHandle window);
void ReleaseMouse();
WindowHandle CapturingWindow();

// The mouse. The shape holds until the next mouse move over a window that sets another.
Point CursorPlace();                            // on the screen
CursorShape SetCursorShape(CursorShape shape);  // gives the old one, kNone for one that isn't ours

// A periodic timer of the window, which sends kMessageTimer.
void SetWindowTimer(WindowHandle window, uintptr_t id, uint32_t milliseconds);
void KillWindowTimer(WindowHandle window, uintptr_t id);

enum class ScrollBar { kHorizontal, kVertical };

struct ScrollState {
  int32_t maximum = 0;  // the minimum is 0
  int32_t page = 0;
  int32_t position = 0;
};

// A bar with nothing to scroll is disabled, not hidden.
void SetScrollBar(WindowHandle window, ScrollBar bar, const ScrollState& state);
void SetScrollPosition(WindowHandle window, ScrollBar bar, int32_t position);
ScrollState ReadScrollBar(WindowHandle window, ScrollBar bar);
// Moves the picture of the client area; what comes free is invalid, or is left to the caller.
void ScrollClient(WindowHandle window, int32_t dx, int32_t dy);
void ScrollClientOnly(WindowHandle window, int32_t dx, int32_t dy);

// The first file of a drop, as kMessageDropFiles brings it, and the end of the drop. False if it doesn't fit.
bool TakeDroppedFile(uintptr_t drop, char* path, size_t capacity);

// Whether the input method of the window is open for Japanese, and opens or closes it.
bool IsInputMethodOpen(WindowHandle window);
void OpenInputMethod(WindowHandle window, bool open);

}  // namespace sorvel::platform
