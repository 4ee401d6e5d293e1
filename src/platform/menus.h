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
// Sets or takes the check mark of the item with this number; no effect if there is none.
void CheckMenuEntry(MenuHandle menu, int32_t id, bool checked);
// The menu of a message: kMessageInitMenu, kMessageInitMenuPopup.
MenuHandle MenuOf(uintptr_t first);
// Opens a popup with its right top corner at a place of the screen; its commands come to the owner.
void OpenPopupMenu(MenuHandle popup, Point place, WindowHandle owner);

// Text of the string table, cut to capacity - 1 bytes. Gives the length; 0, and an empty text, if there is none.
size_t ReadResourceText(int32_t id, char* text, size_t capacity);

}  // namespace sorvel::platform
