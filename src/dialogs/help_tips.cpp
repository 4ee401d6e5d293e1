#include "dialogs/help_tips.h"

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "foundation/shift_jis.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/hints.h"
#include "platform/menus.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

constexpr size_t kHelpTextSize = 512;
constexpr char kThousandsSeparator = ',';

// A field of a dialog. Those of a dialog stand behind a row with its number alone.
struct Field {
  int32_t dialog;
  int32_t control;
  int32_t upDown;  // of an edit for numbers, else 0
};

// clang-format off
#define DIALOG_BEGIN(id, title, w, h) {id, 0, 0},
#define DIALOG_END
#define LABEL(text, x, y, w, h)
#define TEXT_LINE(id, x, y, w, h)
#define PROGRESS_BAR(id, x, y, w, h)
#define EDIT(id, x, y, w, h) {0, id, 0},
#define NUMBER(id, upDown, x, y, w, h) {0, id, upDown},
#define TEXT_BOX(id, x, y, w, h) {0, id, 0},
#define LIST(id, x, y, w, h) {0, id, 0},
#define CHECK(id, text, x, y, w, h) {0, id, 0},
#define RADIO_FIRST(id, text, x, y, w, h) {0, id, 0},
#define RADIO(id, text, x, y, w, h) {0, id, 0},
#define GROUP(text, x, y, w, h)
#define BUTTON(id, text, x, y, w, h) {0, id, 0},
#define OK_BUTTON(x, y, w, h)
#define STOP_BUTTON(x, y, w, h)
#define CANCEL_BUTTON(x, y, w, h)
constexpr Field kFields[] = {
#include "resources/dialogs.inc"
};
// clang-format on

// Fields that have no help of their own number in the status bar.
constexpr struct {
  int32_t dialog;
  int32_t control;
  int32_t text;
} kTips[] = {
    {kLayerDialog, kLayerNameEdit, kTextLayerNameTip},  {kLayerDialog, kLayerWidthEdit, kCutWidthUpDown},
    {kLayerDialog, kLayerHeightEdit, kCutHeightUpDown}, {kGridDialog, kGridWidthEdit, kCutWidthUpDown},
    {kGridDialog, kGridHeightEdit, kCutHeightUpDown},   {kMaskDialog, kMaskWhiteCheck, kTextWhiteTip},
    {kFilmDialog, kFilmWidthEdit, kCutWidthUpDown},     {kFilmDialog, kFilmHeightEdit, kCutHeightUpDown},
    {kFilmDialog, kFilmTitleEdit, kTextFilmTitleTip},   {kFilmDialog, kFilmAuthorEdit, kTextFilmAuthorTip},
    {kFontDialog, kFontSizeEdit, kTextFontSizeTip},     {kFontDialog, kFontSpacingEdit, kTextFontSpacingTip},
    {kTextDialog, kTextDialogEdit, kTextTextTip},       {kFrameCountDialog, kFrameCountEdit, kTextFrameCountTip},
    {kRandomDotsDialog, kDotGapEdit, kTextDotGapTip},
};

std::span<const Field> FieldsOf(int32_t dialog) {
  const Field* first = kFields;
  const Field* const end = kFields + std::size(kFields);
  while (first != end && first->dialog != dialog) ++first;
  if (first != end) ++first;
  const Field* last = first;
  while (last != end && last->dialog == 0) ++last;
  return {first, last};
}

bool HasText(int32_t id) {
  char text[kHelpTextSize];
  return platform::ReadResourceText(id, text, sizeof(text)) != 0;
}

int32_t TipOf(int32_t dialog, const Field& field) {
  for (const auto& tip : kTips) {
    if (tip.dialog == dialog && tip.control == field.control) return tip.text;
  }
  return HasText(field.control) || field.upDown == 0 ? field.control : field.upDown;
}

// Whether the text is a number of this range. The window system sets separators of thousands.
bool IsInRange(std::string text, int32_t low, int32_t high) {
  std::erase(text, kThousandsSeparator);
  char* end = nullptr;
  const long long number = std::strtoll(text.c_str(), &end, 10);
  while (*end == ' ') ++end;
  return *end == '\0' && number >= low && number <= high;
}

}  // namespace

void SetHelpTip(platform::WindowHandle control, int32_t text) {
  char help[kHelpTextSize];
  if (platform::ReadResourceText(text, help, sizeof(help)) == 0) return;
  constexpr char fullStop[] = "\x81\x42";
  std::string lines;
  for (const char* place = help; *place != '\0';) {
    const size_t length = IsLeadByte(place[0]) && place[1] != '\0' ? 2 : 1;
    const bool endsLine = length == 2 && place[0] == fullStop[0] && place[1] == fullStop[1] && place[2] != '\0';
    lines.append(place, length);
    if (endsLine) lines += '\n';
    place += length;
  }
  platform::SetTip(control, lines.c_str());
}

void CheckNumber(platform::WindowHandle edit, int32_t low, int32_t high) {
  std::string text(platform::TextLength(edit) + 1, '\0');
  text.resize(platform::ReadText(edit, text.data(), text.size()));
  // Nothing yet, and the sign of a number to come.
  if (text.empty() || (text == "-" && low < 0) || IsInRange(text, low, high)) {
    platform::HideBalloon(edit);
    return;
  }
  char format[kHelpTextSize];
  char message[kHelpTextSize + 32];
  platform::ReadResourceText(kTextRange, format, sizeof(format));
  std::snprintf(message, sizeof(message), format, low, high);
  platform::ShowBalloon(edit, message);
}

void ExplainFields(platform::WindowHandle dialog, int32_t templateId) {
  for (const Field& field : FieldsOf(templateId)) {
    const platform::WindowHandle control = platform::DialogControl(dialog, field.control);
    const int32_t tip = TipOf(templateId, field);
    SetHelpTip(control, tip);
    if (field.upDown == 0) continue;
    SetHelpTip(platform::DialogControl(dialog, field.upDown), tip);
    platform::TakePlainDigits(control);
  }
}

void CheckField(platform::WindowHandle dialog, int32_t templateId, int32_t control) {
  for (const Field& field : FieldsOf(templateId)) {
    if (field.control != control || field.upDown == 0) continue;
    int32_t low = 0;
    int32_t high = 0;
    platform::ReadUpDownRange(platform::DialogControl(dialog, field.upDown), &low, &high);
    CheckNumber(platform::DialogControl(dialog, control), low, high);
  }
}

}  // namespace sorvel
