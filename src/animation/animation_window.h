#pragma once

#include <cstdint>

#include "animation/stream_decoder.h"
#include "foundation/byte_stream.h"
#include "imaging/nibble_bitmap.h"
#include "platform/drawing.h"
#include "platform/window.h"

namespace sorvel {

// The player. It counts the ticks of a timer and decides at each what the screen shows: the frame that was decoded a
// tick ahead, a further step of a dissolve, or nothing new.
class AnimationWindow final : public platform::WindowObject {
 public:
  AnimationWindow();
  AnimationWindow(const AnimationWindow&) = delete;
  AnimationWindow& operator=(const AnimationWindow&) = delete;
  ~AnimationWindow();

  // Opens the stream and starts. The caller owns the stream and keeps it until the next play or the end. A stream of
  // one frame is a still: it needs no timer. 1, or 0 if the stream can't be opened or there is no timer.
  int32_t Play(ByteStream* stream);

  // Advances the play by one tick of 1/fps second: BeginTick(), drawing and EndTick().
  void TimerTick();

  // The two halves of a tick for a caller that draws the picture itself. BeginTick() decides what the screen shows now;
  // true if that has to be drawn, which must be done before EndTick(): it may decode the next frame over the picture.
  // Without a window there is no timer, and the caller lets the ticks pass.
  bool BeginTick();
  void EndTick();

  // Stops the timer; the picture and the position in the stream stay. 0 if there was no timer, else 1.
  int32_t StopTimer();

  // Keeps the window at the size of the stream. A close only stops the timer; the window stays as it is.
  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  // Draws the viewport with black bands around it.
  void Paint(platform::DeviceContext* context);

  platform::PaletteHandle palette = nullptr;  // not owned; for displays that have one
  AnimationDecoder decoder;
  NibbleBitmap bitmap;
  int32_t ticks = 0;     // counts towards 0 for the frame on the screen, negative in a dissolve
  int32_t nextTime = 0;  // of the frame on the screen until the next one is decoded, then that frame's
  uint32_t timerId = 0;
  int32_t timerResolution = 0;  // in milliseconds
  int32_t timerFps = 0;         // what the running timer was set for, 0 for none
  int32_t speedFactor = 1;      // multiplies the length of a tick; Play() sets 1, and nothing else here sets it
  int32_t topMargin = 0;        // black bands above and below the picture
  int32_t bottomMargin = 0;
  int32_t viewLeft = 0;  // where the viewport lands in the window
  int32_t viewTop = 0;
  Rect viewport;      // the rectangle of the bitmap on the screen
  Rect fromViewport;  // the viewport when a dissolve began

 private:
  void CenterViewport();
  void ShowFrameViewport();
  void ShowDissolveStep(int32_t weight, int32_t whole);
  void SetTimer();
  void DecodeAhead();
  void PaintNow();
};

}  // namespace sorvel
