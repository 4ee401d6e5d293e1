#include "platform/menus.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

MenuHandle MakeMenu(int32_t resource) {
  return reinterpret_cast<MenuHandle>(LoadMenuA(Instance(), ResourceName(resource)));
}

void DeleteMenu(MenuHandle menu) {
  DestroyMenu(HandleOf(menu));
}

MenuHandle FrameMenu(WindowHandle frame) {
  return reinterpret_cast<MenuHandle>(GetMenu(HandleOf(frame)));
}

MenuHandle Submenu(MenuHandle menu, int32_t index) {
  return reinterpret_cast<MenuHandle>(GetSubMenu(HandleOf(menu), index));
}

void CheckMenuEntry(MenuHandle menu, int32_t id, bool checked) {
  CheckMenuItem(HandleOf(menu), static_cast<UINT>(id),
                static_cast<UINT>(MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED)));
}

MenuHandle MenuOf(uintptr_t first) {
  return reinterpret_cast<MenuHandle>(first);
}

void OpenPopupMenu(MenuHandle popup, Point place, WindowHandle owner) {
  TrackPopupMenu(HandleOf(popup), TPM_RIGHTALIGN | TPM_RIGHTBUTTON, place.x, place.y, 0, HandleOf(owner), nullptr);
}

size_t ReadResourceText(int32_t id, char* text, size_t capacity) {
  text[0] = '\0';
  return static_cast<size_t>(LoadStringA(Instance(), static_cast<UINT>(id), text, static_cast<int>(capacity)));
}

}  // namespace sorvel::platform
