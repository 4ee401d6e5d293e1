#pragma once

#include <cstdint>
#include <span>

// The program's menus, accelerator keys, texts and dialogs as tables. Texts are UTF-8.
namespace sorvel::platform::headless {

enum class MenuPart { kMenu, kPopup, kItem, kSeparator, kPopupEnd, kMenuEnd };

// A menu is a kMenu, its lines and a kMenuEnd. A submenu is a kPopup, its lines and a kPopupEnd.
struct MenuResource {
  MenuPart part;
  const char* label;
  int32_t id;
};

enum class KeyModifier { kNone, kShift, kControl, kShiftControl };

struct KeyResource {
  KeyModifier modifier;
  int32_t key;
  int32_t command;
};

struct TextResource {
  int32_t id;
  const char* text;
};

enum class DialogPart {
  kDialog,
  kLabel,
  kEdit,
  kNumber,
  kTextBox,
  kList,
  kCheckBox,
  kFirstRadioButton,
  kRadioButton,
  kGroupBox,
  kButton,
  kProgressBar,
  kDialogEnd,
};

// A dialog is a kDialog, its controls and a kDialogEnd. Places and sizes are in dialog units. `upDown` is the number of
// the up-down control at the right of a kNumber, an edit for numbers.
struct DialogResource {
  DialogPart part;
  int32_t id;
  const char* text;
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
  int32_t upDown;
};

std::span<const MenuResource> Menus();
std::span<const KeyResource> Keys();
std::span<const TextResource> Texts();
std::span<const DialogResource> Dialogs();

}  // namespace sorvel::platform::headless
