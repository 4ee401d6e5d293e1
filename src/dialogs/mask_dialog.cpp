#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "platform/messages.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

struct MaskBox {
  int32_t control;
  int32_t bit;
};

constexpr MaskBox kBoxes[] = {
    {kMaskTransparentCheck, 0}, {kMaskBlackCheck, 1},     {kMaskDarkCheck, 2},     {kMaskLightCheck, 3},
    {kMaskWhiteCheck, 4},       {kMaskLineBlackCheck, 8}, {kMaskLineDarkCheck, 9}, {kMaskLineLightCheck, 10},
    {kMaskPlus2Check, 11},      {kMaskPlus1Check, 12},    {kMaskMinus1Check, 13},  {kMaskMinus2Check, 14},
};

}  // namespace

MaskDialog::MaskDialog(platform::WindowHandle helpBar, uint32_t flags) : Dialog(helpBar, kMaskDialog), mask(flags) {}

// Bits that no check box stands for are cleared.
void MaskDialog::ReadValues(platform::WindowHandle dialog) {
  mask = 0;
  for (const MaskBox& box : kBoxes) {
    if (TakeCheck(dialog, box.control)) mask |= 1u << box.bit;
  }
}

void MaskDialog::WriteValues(platform::WindowHandle dialog) {
  for (const MaskBox& box : kBoxes) ShowCheck(dialog, box.control, (mask >> box.bit & 1) != 0);
}

// Both buttons start from the field, not from boxes that were clicked since.
intptr_t MaskDialog::OnControl(platform::WindowHandle dialog, int32_t code, int32_t id,
                               platform::WindowHandle control) {
  if (code != platform::kButtonClicked || (id != kMaskClearButton && id != kMaskInvertButton)) {
    return Dialog::OnControl(dialog, code, id, control);
  }
  mask = id == kMaskClearButton ? 0 : ~mask;
  WriteValues(dialog);
  return 1;
}

}  // namespace sorvel
