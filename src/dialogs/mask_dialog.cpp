#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "platform/messages.h"

namespace sorvel {

namespace {

enum : int32_t { kTemplate = 109, kClear = 1049, kInvert = 1050 };

struct MaskBox {
  int32_t control;
  int32_t bit;
};

constexpr MaskBox kBoxes[] = {
    {1013, 0}, {1009, 1},  {1011, 2},  {1012, 3},  {1010, 4},  {1017, 8},
    {1018, 9}, {1019, 10}, {1046, 11}, {1045, 12}, {1047, 13}, {1048, 14},
};

}  // namespace

MaskDialog::MaskDialog(platform::WindowHandle helpBar, uint32_t flags) : Dialog(helpBar, kTemplate), mask(flags) {}

// Bits without a box fall away.
void MaskDialog::ReadValues(platform::WindowHandle dialog) {
  mask = 0;
  for (const MaskBox& box : kBoxes) {
    if (TakeCheck(dialog, box.control)) mask |= 1u << box.bit;
  }
}

void MaskDialog::WriteValues(platform::WindowHandle dialog) {
  for (const MaskBox& box : kBoxes) ShowCheck(dialog, box.control, (mask >> box.bit & 1) != 0);
}

// Both buttons start from what the field holds, not from boxes that were clicked since.
intptr_t MaskDialog::OnControl(platform::WindowHandle dialog, int32_t code, int32_t id,
                               platform::WindowHandle control) {
  if (code != platform::kButtonClicked || (id != kClear && id != kInvert)) {
    return Dialog::OnControl(dialog, code, id, control);
  }
  mask = id == kClear ? 0 : ~mask;
  WriteValues(dialog);
  return 1;
}

}  // namespace sorvel
