// The dialogs that ask for a number or two: grid, end frame, count of frames, distance of dots.

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"

namespace sorvel {

namespace {

namespace grid_dialog {
enum : int32_t { kTemplate = 108, kWidth = 1007, kHeight = 1008 };
}
namespace frame_range_dialog {
enum : int32_t { kLayerTemplate = 112, kBrightnessTemplate = 115, kFrameTemplate = 117, kFrame = 1026 };
}
namespace frame_count_dialog {
enum : int32_t { kTemplate = 116, kCount = 1044 };
}
namespace random_dots_dialog {
enum : int32_t { kTemplate = 127, kGap = 1061 };
}

// Unlike sizes, steps of a grid are put right only if they are negative: 0 stays.
int32_t TakeStep(platform::WindowHandle dialog, int32_t upDown) {
  const int32_t step = TakeNumber(dialog, upDown);
  return step < 0 ? 1 : step;
}

}  // namespace

GridDialog::GridDialog(platform::WindowHandle helpBar, int32_t stepX, int32_t stepY)
    : Dialog(helpBar, grid_dialog::kTemplate), width(stepX), height(stepY) {}

void GridDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeStep(dialog, grid_dialog::kWidth);
  height = TakeStep(dialog, grid_dialog::kHeight);
}

void GridDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, grid_dialog::kWidth, width);
  ShowSize(dialog, grid_dialog::kHeight, height);
}

FrameRangeDialog::FrameRangeDialog(platform::WindowHandle helpBar, int32_t resource, int32_t frameCount)
    : Dialog(helpBar, resource), frame(frameCount) {}

void FrameRangeDialog::ReadValues(platform::WindowHandle dialog) {
  frame = TakeShortNumber(dialog, frame_range_dialog::kFrame);
}

// Above 32767 frames the numbers wrap, as they do in the control.
void FrameRangeDialog::WriteValues(platform::WindowHandle dialog) {
  const int32_t last = static_cast<int16_t>(frame);
  ShowNumber(dialog, frame_range_dialog::kFrame, 1, last, last);
}

LayerRampDialog::LayerRampDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : FrameRangeDialog(helpBar, frame_range_dialog::kLayerTemplate, frameCount) {}

BrightnessRampDialog::BrightnessRampDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : FrameRangeDialog(helpBar, frame_range_dialog::kBrightnessTemplate, frameCount) {}

FrameRampDialog::FrameRampDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : FrameRangeDialog(helpBar, frame_range_dialog::kFrameTemplate, frameCount) {}

FrameCountDialog::FrameCountDialog(platform::WindowHandle helpBar, int32_t frameCount)
    : Dialog(helpBar, frame_count_dialog::kTemplate), count(frameCount) {}

void FrameCountDialog::ReadValues(platform::WindowHandle dialog) {
  count = TakeShortNumber(dialog, frame_count_dialog::kCount);
}

void FrameCountDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, frame_count_dialog::kCount, count);
}

RandomDotsDialog::RandomDotsDialog(platform::WindowHandle helpBar, int32_t dotGap)
    : Dialog(helpBar, random_dots_dialog::kTemplate), gap(dotGap) {}

void RandomDotsDialog::ReadValues(platform::WindowHandle dialog) {
  gap = TakeShortNumber(dialog, random_dots_dialog::kGap);
}

void RandomDotsDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, random_dots_dialog::kGap, gap);
}

}  // namespace sorvel
