#include "animation/film_pictures.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace sorvel {

bool FilmPictures::Open(ByteStream* stream) {
  AnimationDecoder& decoder = player.decoder;
  hasEnded = true;
  if (decoder.OpenStream(stream) == 0 || Width() <= 0 || Height() <= 0) return false;
  if (!pixels.AllocateZeroed(static_cast<uint64_t>(Width()) * static_cast<uint64_t>(Height()))) return false;
  if (!row.Allocate(static_cast<uint64_t>(Width()))) return false;
  player.nextTime = decoder.DecodeNextFrame();
  player.ticks = 1;
  player.timerFps = 0;
  isStill = decoder.cutCount == 1 && stream->Tell() == decoder.streamEnd;
  isFirst = true;
  hasEnded = false;
  ticksLeft = std::max(std::abs(player.nextTime), 1);
  return true;
}

bool FilmPictures::Next() {
  if (hasEnded) return false;
  changed = {};
  if (!isStill || isFirst) {
    // A frame without time that comes now.
    const bool isLast = player.nextTime == 0 && std::abs(player.ticks) == 1;
    if (player.BeginTick()) Draw();
    fps = player.timerFps;
    hasEnded = isLast;
  }
  if (isFirst) changed = {0, 0, Width(), Height()};
  isFirst = false;
  if (isStill) {
    hasEnded = --ticksLeft == 0;
  } else if (!hasEnded) {
    const AnimationDecoder& decoder = player.decoder;
    const bool decodes = std::abs(player.ticks) == 1;
    const bool isBehindLastFrame = decoder.stream->Tell() == decoder.streamEnd;
    player.EndTick();
    // Behind the last frame comes the first one, unless a loop goes on.
    hasEnded = decodes && isBehindLastFrame && decoder.cutIndex == 1;
  }
  return true;
}

// Draws what AnimationWindow::Paint() does.
void FilmPictures::Draw() {
  const NibbleBitmap& bitmap = player.bitmap;
  const Rect& viewport = player.viewport;
  const int32_t left = player.viewLeft;
  const int32_t top = player.viewTop;
  FillBlack(0, 0, Width(), top);
  FillBlack(0, top, left, top + viewport.height);
  FillBlack(left + viewport.width, top, Width(), top + viewport.height);
  FillBlack(0, top + viewport.height, Width(), Height());

  uint8_t greys[256];
  std::transform(bitmap.mixColors, bitmap.mixColors + 256, greys,
                 [](const platform::ColorEntry& color) { return color.green; });
  // The part of the viewport that lies in the bitmap and on the screen.
  const int32_t first = std::max({0, -left, -viewport.x});
  const int32_t end = std::min({viewport.width, Width() - left, bitmap.width - viewport.x});
  const int32_t firstRow = std::max({0, -top, -viewport.y});
  const int32_t endRow = std::min({viewport.height, Height() - top, bitmap.height - viewport.y});
  for (int32_t y = firstRow; y < endRow && first < end; ++y) {
    const uint8_t* from = bitmap.bits + (viewport.y + y) * bitmap.pitch + viewport.x + first;
    std::transform(from, from + (end - first), row.Data(), [&greys](uint8_t pair) { return greys[pair]; });
    PutRow(left + first, top + y, end - first);
  }
}

// Right and bottom edge don't belong to the area, which may reach outside the picture.
void FilmPictures::FillBlack(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  left = std::max(left, 0);
  const int32_t count = std::min(right, Width()) - left;
  if (count <= 0) return;
  std::memset(row.Data(), 0, static_cast<size_t>(count));
  for (int32_t y = std::max(top, 0); y < std::min(bottom, Height()); ++y) PutRow(left, y, count);
}

void FilmPictures::PutRow(int32_t x, int32_t y, int32_t count) {
  uint8_t* to = pixels.Data() + static_cast<size_t>(y) * static_cast<size_t>(Width()) + x;
  if (std::memcmp(to, row.Data(), static_cast<size_t>(count)) == 0) return;
  const int32_t first = static_cast<int32_t>(std::mismatch(to, to + count, row.Data()).first - to);
  int32_t end = count;
  while (to[end - 1] == row[static_cast<size_t>(end) - 1]) --end;
  std::memcpy(to, row.Data(), static_cast<size_t>(count));
  UnionRect(&changed, {x + first, y, end - first, 1});
}

}  // namespace sorvel
