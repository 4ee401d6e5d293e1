// The dialogs of the text tool: its font and its text.

#include <algorithm>
#include <cstring>

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "platform/controls.h"
#include "platform/fonts.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

constexpr int32_t kHeaviest = 1000;

// A font may be told once for each script that it holds; the sorted list shows it once.
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
  // Without any font there is no line.
  if (line >= 0) {
    const size_t capacity = platform::ListLineLength(list, line) + 1;
    char* text = new char[capacity];
    platform::ReadListLine(list, line, text, capacity);
    AssignString(&faceName, text);
    delete[] text;
  }
  size = TakeNumber(dialog, kFontSizeUpDown);
  if (size < 0) size = 1;
  lineSpacing = std::max(TakeNumber(dialog, kFontSpacingUpDown), 0);
  weight = std::clamp(TakeNumber(dialog, kFontWeightUpDown), 0, kHeaviest);
}

void FontDialog::WriteValues(platform::WindowHandle dialog) {
  platform::WindowHandle list = platform::DialogControl(dialog, kFontNameList);
  platform::ListFonts(AddFontName, list);
  // The search begins behind line 0, so of several names that begin alike line 0 is taken last.
  const int32_t line = platform::FindListLine(list, 0, faceName);
  platform::SelectListLine(list, std::max(line, 0));
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
