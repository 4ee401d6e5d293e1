#pragma once

#include <cstdint>

// Windows. Sizes and places are pixels of the client area.
namespace sorvel::platform {

struct Window;
using WindowHandle = Window*;

void GetClientSize(WindowHandle window, int32_t* width, int32_t* height);
// Gives the client area another size; the left top corner of the window stays.
void SetClientSize(WindowHandle window, int32_t width, int32_t height);
void InvalidateClient(WindowHandle window);
// Paints what is invalid at once.
void UpdateClient(WindowHandle window);
// Shows the window without making it active.
void ShowInactive(WindowHandle window);
void HideWindow(WindowHandle window);
bool IsShown(WindowHandle window);

}  // namespace sorvel::platform
