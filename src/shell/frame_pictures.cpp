#include "shell/frame_pictures.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "foundation/cursor_keeper.h"
#include "imaging/color_table.h"

namespace sorvel {

namespace {

// Pictures of frames that are far away are given up.
constexpr size_t kMostPictures = 2000;
constexpr uint8_t kPaperGrey = 255;

}  // namespace

const std::vector<uint8_t>* FramePictures::Find(const Frame* frame) const {
  const auto found = pictures.find(frame);
  return found != pictures.end() ? &found->second.greys : nullptr;
}

bool FramePictures::IsFresh(const Frame* frame) const {
  const auto found = pictures.find(frame);
  return found != pictures.end() && found->second.generation == generation;
}

void FramePictures::Make(Cut* cut, Frame* frame) {
  if (pictures.size() >= kMostPictures) pictures.clear();
  std::vector<uint8_t> greys(static_cast<size_t>(kWidth) * kHeight, kPaperGrey);
  const int32_t width = cut->frameWidth;
  const int32_t height = cut->frameHeight;
  const bool hasRoom = composition.width == cut->width && composition.height == cut->height;
  if (width > 0 && height > 0 && cut->width > 0 && cut->height > 0 &&
      (hasRoom || composition.Resize(cut->width, cut->height, 0))) {
    const CursorKeeper<FrameRecord*> keeper(&frame->records);
    std::vector<std::unique_ptr<CursorKeeper<CellImage*>>> cellKeepers;
    cellKeepers.reserve(static_cast<size_t>(frame->records.Count()));
    for (int32_t i = 0; i < frame->records.Count(); ++i) {
      cellKeepers.push_back(std::make_unique<CursorKeeper<CellImage*>>(&frame->LayerAt(i)->cells));
    }
    const uint32_t plain = 0;
    // The part of the canvas that the frame puts out.
    const Bounds part = {std::clamp(frame->x, 0, cut->width), std::clamp(frame->y, 0, cut->height),
                         std::clamp(frame->x + width, 0, cut->width), std::clamp(frame->y + height, 0, cut->height)};
    composition.FillRect(part.left, part.top, part.Width(), part.Height(), kTransparent);
    frame->ComposeFrame(&composition, part.left, part.top, part.Width(), part.Height(), &plain, nullptr);
    uint8_t tones[kColorCount];
    for (size_t i = 0; i < kColorCount; ++i) {
      const ColorEntry& color = ColorTable[i];
      tones[i] = static_cast<uint8_t>((color.red * 77 + color.green * 150 + color.blue * 29) >> 8);
    }
    // The picture keeps the shape of the frame, in the middle of its room.
    const double scale = std::max(static_cast<double>(width) / kWidth, static_cast<double>(height) / kHeight);
    const int32_t shownWidth = std::clamp(static_cast<int32_t>(width / scale), 1, kWidth);
    const int32_t shownHeight = std::clamp(static_cast<int32_t>(height / scale), 1, kHeight);
    for (int32_t y = 0; y < shownHeight; ++y) {
      const int32_t top = static_cast<int32_t>(int64_t{y} * height / shownHeight);
      const int32_t bottom = std::max(static_cast<int32_t>(int64_t{y + 1} * height / shownHeight), top + 1);
      for (int32_t x = 0; x < shownWidth; ++x) {
        const int32_t left = static_cast<int32_t>(int64_t{x} * width / shownWidth);
        const int32_t right = std::max(static_cast<int32_t>(int64_t{x + 1} * width / shownWidth), left + 1);
        int64_t sum = 0;
        for (int32_t row = frame->y + top; row < frame->y + bottom; ++row) {
          const bool isRow = row >= part.top && row < part.bottom;
          const uint8_t* pixels = composition.bits + int64_t{isRow ? row : 0} * composition.pitch;
          for (int32_t column = frame->x + left; column < frame->x + right; ++column) {
            sum += isRow && column >= part.left && column < part.right ? tones[pixels[column]] : kPaperGrey;
          }
        }
        const int64_t count = int64_t{bottom - top} * (right - left);
        const int32_t place = (kHeight - shownHeight) / 2 * kWidth + (kWidth - shownWidth) / 2 + y * kWidth + x;
        greys[static_cast<size_t>(place)] = static_cast<uint8_t>(sum / count);
      }
    }
  }
  pictures[frame] = {generation, std::move(greys)};
}

}  // namespace sorvel
