// The dialogs that ask for one or two numbers: grid, end frame, count of frames, distance of dots.

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

// Quirk 13. Unlike sizes, steps of a grid are corrected only if they are negative: 0 stays.
int32_t TakeStep(platform::WindowHandle dialog, int32_t upDown) {
  const int32_t step = TakeNumber(dialog, upDown);
  return step < 0 ? 1 : step;
}

}  // namespace

GridDialog::GridDialog(platform::WindowHandle helpBar, int32_t stepX, int32_t stepY)
    : Dialog(helpBar, kGridDialog), width(stepX), height(stepY) {}

void GridDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeStep(dialog, kGridWidthUpDown);
  height = TakeStep(dialog, kGridHeightUpDown);
}

void GridDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, kGridWidthUpDown, width);
  ShowSize(dialog, kGridHeightUpDown, height);
}

FrameRangeDialog::FrameRangeDialog(platform::WindowHandle helpBar, int32_t resource, int32_t frameCount)
    : Dialog(helpBar, resource), frame(frameCount) {}

void FrameRangeDialog::ReadValues(platform::WindowHandle dialog) {
  frame = TakeShortNumber(dialog, kRampEndUpDown);
}

// Above 32767 frames the numbers wrap, as they do in the control.
void FrameRangeDialog::WriteValues(platform::WindowHandle dialog) {
  const int32_t last = static_cast<int16_t>(frame);
  ShowNumber(dialog, kRampEndUpDown, 1, last, last);
}

LayerRampDialog::LayerRampDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : FrameRangeDialog(helpBar, kLayerRampDialog, frameCount) {}

BrightnessRampDialog::BrightnessRampDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : FrameRangeDialog(helpBar, kBrightnessRampDialog, frameCount) {}

FrameRampDialog::FrameRampDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : FrameRangeDialog(helpBar, kFrameRampDialog, frameCount) {}

FrameCountDialog::FrameCountDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : Dialog(helpBar, kFrameCountDialog), count(frameCount) {}

void FrameCountDialog::ReadValues(platform::WindowHandle dialog) {
  count = TakeShortNumber(dialog, kFrameCountUpDown);
}

void FrameCountDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, kFrameCountUpDown, count);
}

RandomDotsDialog::RandomDotsDialog(platform::WindowHandle helpBar, int32_t dotGap)
    : Dialog(helpBar, kRandomDotsDialog), gap(dotGap) {}

void RandomDotsDialog::ReadValues(platform::WindowHandle dialog) {
  gap = TakeShortNumber(dialog, kDotGapUpDown);
}

void RandomDotsDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, kDotGapUpDown, gap);
}

}  // namespace sorvel
