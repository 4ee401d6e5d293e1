#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/window.h"

// Menus and the texts of the resources.
namespace sorvel::platform {

struct Menu;
using MenuHandle = Menu*;

MenuHandle MakeMenu(int32_t resource);  // the caller deletes it
void DeleteMenu(MenuHandle menu);
// The menu bar of the main window.
MenuHandle FrameMenu(WindowHandle frame);
MenuHandle Submenu(MenuHandle menu, int32_t index);
// Sets or clears the check mark of an item, in submenus too. Has no effect if there is no item of this number.
void CheckMenuEntry(MenuHandle menu, int32_t id, bool checked);
// The menu in the first parameter of kMessageInitMenu or kMessageInitMenuPopup.
MenuHandle MenuOf(uintptr_t first);
// Opens a popup menu with its top right corner at `place`, in screen coordinates. It sends its commands to the owner.
void OpenPopupMenu(MenuHandle popup, Point place, WindowHandle owner);

// Reads a text of the string table, cut to capacity - 1 bytes, and returns its length. Without such a text: 0, and an
// empty text.
size_t ReadResourceText(int32_t id, char* text, size_t capacity);

}  // namespace sorvel::platform
