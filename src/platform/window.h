#pragma once

#include <cstdint>

// Windows. Sizes and places are pixels of the client area; message numbers are the window system's.
namespace sorvel::platform {

struct Window;
using WindowHandle = Window*;

// An object that answers the messages of its window.
class WindowObject {
 public:
  // Gives the answer to a message, or hands it to DefaultHandling.
  virtual intptr_t WindowProc(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) = 0;

 protected:
  ~WindowObject() = default;
};

// Makes a hidden window whose object outlives it. The title is Shift JIS. Null if it can't be made.
WindowHandle MakeWindow(const char* title, WindowObject* object);
void DestroyWindow(WindowHandle window);
intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second);

// Gives the client area another size; the left top corner of the window stays.
void SetClientSize(WindowHandle window, int32_t width, int32_t height);
void InvalidateClient(WindowHandle window);
// Paints what is invalid at once.
void UpdateClient(WindowHandle window);
// Shows the window without making it active.
void ShowInactive(WindowHandle window);
bool IsShown(WindowHandle window);

}  // namespace sorvel::platform
