#include "platform/headless/resources.h"

#include "resources/ids.h"

namespace sorvel::platform::headless {

namespace {

constexpr int32_t kNoId = -1;
constexpr int32_t kOk = 1;
constexpr int32_t kCancel = 2;

// clang-format off
#define MENU_BEGIN(id) {MenuPart::kMenu, "", id},
#define MENU_END {MenuPart::kMenuEnd, "", 0},
#define POPUP_BEGIN(label) {MenuPart::kPopup, label, 0},
#define POPUP_END {MenuPart::kPopupEnd, "", 0},
#define MENU_ITEM(label, id) {MenuPart::kItem, label, id},
#define MENU_SEPARATOR {MenuPart::kSeparator, "", 0},
constexpr MenuResource kMenus[] = {
#include "resources/menus.inc"
};

#define KEY_PLAIN(key, command) {KeyModifier::kNone, key, command},
#define KEY_SHIFT(key, command) {KeyModifier::kShift, key, command},
#define KEY_CONTROL(key, command) {KeyModifier::kControl, key, command},
#define KEY_SHIFT_CONTROL(key, command) {KeyModifier::kShiftControl, key, command},
constexpr KeyResource kKeys[] = {
#include "resources/accelerators.inc"
};

#define TEXT_ENTRY(id, text) {id, text},
constexpr TextResource kTexts[] = {
#include "resources/strings.inc"
};

#define DIALOG_BEGIN(id, title, w, h) {DialogPart::kDialog, id, title, 0, 0, w, h, 0},
#define DIALOG_END {DialogPart::kDialogEnd, kNoId, "", 0, 0, 0, 0, 0},
#define TEXT_LINE(id, x, y, w, h) {DialogPart::kLabel, id, "", x, y, w, h, 0},
#define PROGRESS_BAR(id, x, y, w, h) {DialogPart::kProgressBar, id, "", x, y, w, h, 0},
#define LABEL(text, x, y, w, h) {DialogPart::kLabel, kNoId, text, x, y, w, h, 0},
#define EDIT(id, x, y, w, h) {DialogPart::kEdit, id, "", x, y, w, h, 0},
#define NUMBER(id, upDown, x, y, w, h) {DialogPart::kNumber, id, "", x, y, w, h, upDown},
#define TEXT_BOX(id, x, y, w, h) {DialogPart::kTextBox, id, "", x, y, w, h, 0},
#define LIST(id, x, y, w, h) {DialogPart::kList, id, "", x, y, w, h, 0},
#define CHECK(id, text, x, y, w, h) {DialogPart::kCheckBox, id, text, x, y, w, h, 0},
#define RADIO_FIRST(id, text, x, y, w, h) {DialogPart::kFirstRadioButton, id, text, x, y, w, h, 0},
#define RADIO(id, text, x, y, w, h) {DialogPart::kRadioButton, id, text, x, y, w, h, 0},
#define GROUP(text, x, y, w, h) {DialogPart::kGroupBox, kNoId, text, x, y, w, h, 0},
#define BUTTON(id, text, x, y, w, h) {DialogPart::kButton, id, text, x, y, w, h, 0},
#define OK_BUTTON(x, y, w, h) BUTTON(kOk, "OK", x, y, w, h)
#define STOP_BUTTON(x, y, w, h) BUTTON(kCancel, "中止", x, y, w, h)
#define CANCEL_BUTTON(x, y, w, h) BUTTON(kCancel, "キャンセル", x, y, w, h)
constexpr DialogResource kDialogs[] = {
#include "resources/dialogs.inc"
};
// clang-format on

}  // namespace

std::span<const MenuResource> Menus() {
  return kMenus;
}

std::span<const KeyResource> Keys() {
  return kKeys;
}

std::span<const TextResource> Texts() {
  return kTexts;
}

std::span<const DialogResource> Dialogs() {
  return kDialogs;
}

}  // namespace sorvel::platform::headless
