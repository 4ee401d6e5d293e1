#pragma once

#include "animation/animation_window.h"
#include "animation/stream_inspector.h"
#include "fuzz/fuzz_input.h"
#include "platform/headless/headless.h"

namespace sorvel::fuzz {

// Reads, inspects and plays a stream for some ticks.
inline void PlayInput(const uint8_t* data, size_t size) {
  InputStream input(data, size);
  StreamInfo info;
  LoadReport report;
  InspectStream(input.Get(), &info, &report);
  // Pictures of many megapixels only take time.
  constexpr int32_t largestSide = 200;
  {
    NibbleBitmap bitmap;
    AnimationDecoder head;
    head.bitmap = &bitmap;
    if (head.OpenStream(input.Get()) == 0) return;
    if (bitmap.width > largestSide || bitmap.height > largestSide) return;
    if (head.outputWidth > largestSide || head.outputHeight > largestSide) return;
  }
  AnimationWindow player;
  platform::MakeCaptionWindow("", "", nullptr, &player);
  if (player.Play(input.Get()) != 0) {
    for (int32_t tick = 0; tick < 40 && platform::headless::RunTimer(); ++tick) {
    }
  }
  player.StopTimer();
  platform::DestroyWindow(player.window);
}

}  // namespace sorvel::fuzz
