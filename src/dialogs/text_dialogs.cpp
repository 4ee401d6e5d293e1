// The dialogs of the text tool: its font and its text.

#include <algorithm>
#include <cstring>
#include <vector>

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "platform/controls.h"
#include "platform/fonts.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

constexpr int32_t kHeaviest = 1000;

// ListFonts() may give a name several times; the sorted list shows it once.
void AddFontName(const char* name, void* user) {
  platform::WindowHandle list = static_cast<platform::WindowHandle>(user);
  const int32_t line = platform::AddListLine(list, name);
  for (const int32_t beside : {line - 1, line + 1}) {
    char text[kDialogTextSize] = "";
    platform::ReadListLine(list, beside, text, sizeof(text));
    if (std::strcmp(text, name) != 0) continue;
    platform::DeleteListLine(list, line);
    return;
  }
}

// The first line that doesn't stand for vertical writing; the first of all if each does.
int32_t FirstUprightFont(platform::WindowHandle list) {
  for (int32_t line = 0; line < platform::ListCount(list); ++line) {
    char name[kDialogTextSize] = "";
    platform::ReadListLine(list, line, name, sizeof(name));
    if (name[0] != '@') return line;
  }
  return 0;
}

}  // namespace

FontDialog::FontDialog(platform::WindowHandle helpBar, const char* fontName, int32_t fontSize, int32_t spacing,
                       int32_t fontWeight)
    : Dialog(helpBar, kFontDialog), size(fontSize), lineSpacing(spacing), weight(fontWeight) {
  AssignString(&faceName, fontName);
}

FontDialog::~FontDialog() {
  AssignString(&faceName, "");
}

void FontDialog::ReadValues(platform::WindowHandle dialog) {
  const platform::WindowHandle list = platform::DialogControl(dialog, kFontNameList);
  const int32_t line = platform::SelectedListLine(list);
  // There is no line without any font.
  if (line >= 0) {
    std::vector<char> name(platform::ListLineLength(list, line) + 1);
    platform::ReadListLine(list, line, name.data(), name.size());
    AssignString(&faceName, name.data());
  }
  size = TakeNumber(dialog, kFontSizeUpDown);
  if (size < 0) size = 1;
  lineSpacing = std::max(TakeNumber(dialog, kFontSpacingUpDown), 0);
  weight = std::clamp(TakeNumber(dialog, kFontWeightUpDown), 0, kHeaviest);
}

void FontDialog::WriteValues(platform::WindowHandle dialog) {
  platform::WindowHandle list = platform::DialogControl(dialog, kFontNameList);
  platform::ListFonts(AddFontName, list);
  // The search starts after line 0, so that line 0 is the last choice of several names that begin alike.
  const int32_t line = platform::FindListLine(list, 0, faceName);
  platform::SelectListLine(list, line >= 0 ? line : FirstUprightFont(list));
  ShowSize(dialog, kFontSizeUpDown, size);
  ShowNumber(dialog, kFontSpacingUpDown, 0, kLargestEntry, lineSpacing);
  ShowNumber(dialog, kFontWeightUpDown, 0, kHeaviest, weight);
}

TextDialog::TextDialog(platform::WindowHandle helpBar) : Dialog(helpBar, kTextDialog) {}

TextDialog::~TextDialog() {
  AssignString(&text, "");
}

void TextDialog::ReadValues(platform::WindowHandle dialog) {
  TakeWholeText(dialog, kTextDialogEdit, &text);
}

void TextDialog::WriteValues(platform::WindowHandle dialog) {
  ShowText(dialog, kTextDialogEdit, text);
}

}  // namespace sorvel
