#include "platform/menus.h"

#include <algorithm>
#include <cstring>

#include "foundation/shift_jis.h"
#include "platform/headless/internal.h"
#include "platform/headless/resources.h"
#include "platform/text.h"

namespace sorvel::platform {

namespace {

headless::PopupRecord gPopup;

// Reads the lines of a menu or popup and moves past its end.
Menu* ReadMenu(std::span<const headless::MenuResource> table, size_t* next) {
  Menu* menu = new Menu;
  while (*next < table.size()) {
    const headless::MenuResource& part = table[(*next)++];
    if (part.part == headless::MenuPart::kPopupEnd || part.part == headless::MenuPart::kMenuEnd) break;
    MenuLine line;
    line.label = headless::FromUtf8(part.label);
    line.id = part.id;
    line.separator = part.part == headless::MenuPart::kSeparator;
    if (part.part == headless::MenuPart::kPopup) line.popup = ReadMenu(table, next);
    menu->lines.push_back(line);
  }
  return menu;
}

MenuLine* FindItem(Menu* menu, int32_t id) {
  for (MenuLine& line : menu->lines) {
    if (line.popup != nullptr) {
      MenuLine* found = FindItem(line.popup, id);
      if (found != nullptr) return found;
    } else if (!line.separator && line.id == id) {
      return &line;
    }
  }
  return nullptr;
}

void CollectChecked(const Menu* menu, std::vector<int32_t>* ids) {
  for (const MenuLine& line : menu->lines) {
    if (line.popup != nullptr) CollectChecked(line.popup, ids);
    if (line.checked) ids->push_back(line.id);
  }
}

}  // namespace

namespace headless {

std::string FromUtf8(std::string_view text) {
  std::string result;
  Utf8ToShiftJis(text, &result);
  return result;
}

std::string ToUtf8(std::string_view text) {
  std::string result;
  ShiftJisToUtf8(text, &result);
  return result;
}

std::string WithoutCase(std::string_view text) {
  std::string result(text);
  for (size_t i = 0; i < result.size(); ++i) {
    if (IsLeadByte(result[i])) {
      ++i;
    } else if (result[i] >= 'A' && result[i] <= 'Z') {
      result[i] = static_cast<char>(result[i] - 'A' + 'a');
    }
  }
  return result;
}

bool SameWithoutCase(std::string_view left, std::string_view right) {
  return WithoutCase(left) == WithoutCase(right);
}

void OpenMenuBar(WindowHandle frame) {
  Send(frame, kMessageInitMenu, reinterpret_cast<uintptr_t>(FrameMenu(frame)), 0);
}

std::vector<int32_t> CheckedEntries(MenuHandle menu) {
  std::vector<int32_t> ids;
  if (menu != nullptr) CollectChecked(menu, &ids);
  std::sort(ids.begin(), ids.end());
  return ids;
}

const PopupRecord& OpenedPopup() {
  return gPopup;
}

int32_t FindAccelerator(int32_t key, bool shift, bool control) {
  const Window* focused = FocusedWindow();
  if (focused != nullptr && focused->kind == WindowKind::kEdit && KeepsKey(key, control)) return 0;
  const KeyModifier modifier = shift && control ? KeyModifier::kShiftControl
                               : shift          ? KeyModifier::kShift
                               : control        ? KeyModifier::kControl
                                                : KeyModifier::kNone;
  for (const KeyResource& entry : Keys()) {
    if (entry.key == key && entry.modifier == modifier) return entry.command;
  }
  return 0;
}

void ResetMenus() {
  gPopup = {};
}

}  // namespace headless

MenuHandle MakeMenu(int32_t resource) {
  const std::span<const headless::MenuResource> table = headless::Menus();
  for (size_t i = 0; i < table.size(); ++i) {
    if (table[i].part != headless::MenuPart::kMenu || table[i].id != resource) continue;
    size_t next = i + 1;
    return ReadMenu(table, &next);
  }
  return nullptr;
}

void DeleteMenu(MenuHandle menu) {
  if (menu == nullptr) return;
  for (const MenuLine& line : menu->lines) DeleteMenu(line.popup);
  delete menu;
}

MenuHandle FrameMenu(WindowHandle frame) {
  return headless::IsWindow(frame) ? frame->menu : nullptr;
}

MenuHandle Submenu(MenuHandle menu, int32_t index) {
  if (menu == nullptr || index < 0 || index >= static_cast<int32_t>(menu->lines.size())) return nullptr;
  return menu->lines[static_cast<size_t>(index)].popup;
}

void CheckMenuEntry(MenuHandle menu, int32_t id, bool checked) {
  MenuLine* line = menu != nullptr ? FindItem(menu, id) : nullptr;
  if (line != nullptr) line->checked = checked;
}

MenuHandle MenuOf(uintptr_t first) {
  // As the seam sends it. NOLINTNEXTLINE(performance-no-int-to-ptr)
  return reinterpret_cast<MenuHandle>(first);
}

void OpenPopupMenu(MenuHandle popup, Point place, WindowHandle owner) {
  gPopup = {popup, place, owner, gPopup.count + 1};
  Send(owner, kMessageInitMenuPopup, reinterpret_cast<uintptr_t>(popup), 0);
}

size_t ReadResourceText(int32_t id, char* text, size_t capacity) {
  if (capacity == 0) return 0;
  std::string whole;
  for (const headless::TextResource& entry : headless::Texts()) {
    if (entry.id == id) whole = headless::FromUtf8(entry.text);
  }
  const size_t length = std::min(whole.size(), capacity - 1);
  if (length > 0) std::memcpy(text, whole.data(), length);
  text[length] = '\0';
  return length;
}

}  // namespace sorvel::platform
