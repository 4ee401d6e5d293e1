// The dialogs of the text tool: its font and its text.

#include <algorithm>
#include <cstring>

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "platform/controls.h"
#include "platform/fonts.h"

namespace sorvel {

namespace {

namespace font_dialog {
enum : int32_t { kTemplate = 113, kFaceName = 1028, kLineSpacing = 1029, kSize = 1033, kWeight = 1035 };
constexpr int32_t kHeaviest = 1000;
}  // namespace font_dialog
namespace text_dialog {
enum : int32_t { kTemplate = 114, kText = 1034 };
}

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
    : Dialog(helpBar, font_dialog::kTemplate), size(fontSize), lineSpacing(spacing), weight(fontWeight) {
  AssignString(&faceName, fontName);
}

FontDialog::~FontDialog() {
  AssignString(&faceName, "");
}

void FontDialog::ReadValues(platform::WindowHandle dialog) {
  const platform::WindowHandle list = platform::DialogControl(dialog, font_dialog::kFaceName);
  const int32_t line = platform::SelectedListLine(list);
  // Without any font there is no line.
  if (line >= 0) {
    const size_t capacity = platform::ListLineLength(list, line) + 1;
    char* text = new char[capacity];
    platform::ReadListLine(list, line, text, capacity);
    AssignString(&faceName, text);
    delete[] text;
  }
  size = TakeNumber(dialog, font_dialog::kSize);
  if (size < 0) size = 1;
  lineSpacing = std::max(TakeNumber(dialog, font_dialog::kLineSpacing), 0);
  weight = std::clamp(TakeNumber(dialog, font_dialog::kWeight), 0, font_dialog::kHeaviest);
}

void FontDialog::WriteValues(platform::WindowHandle dialog) {
  platform::WindowHandle list = platform::DialogControl(dialog, font_dialog::kFaceName);
  platform::ListFonts(AddFontName, list);
  // The search begins behind line 0, so of several names that begin alike line 0 is taken last.
  const int32_t line = platform::FindListLine(list, 0, faceName);
  platform::SelectListLine(list, std::max(line, 0));
  ShowSize(dialog, font_dialog::kSize, size);
  ShowNumber(dialog, font_dialog::kLineSpacing, 0, kLargestEntry, lineSpacing);
  ShowNumber(dialog, font_dialog::kWeight, 0, font_dialog::kHeaviest, weight);
}

TextDialog::TextDialog(platform::WindowHandle helpBar) : Dialog(helpBar, text_dialog::kTemplate) {}

TextDialog::~TextDialog() {
  AssignString(&text, "");
}

void TextDialog::ReadValues(platform::WindowHandle dialog) {
  TakeWholeText(dialog, text_dialog::kText, &text);
}

void TextDialog::WriteValues(platform::WindowHandle dialog) {
  ShowText(dialog, text_dialog::kText, text);
}

}  // namespace sorvel
