#include "animation/animation_window.h"

#include <algorithm>

#include "platform/timer.h"

namespace sorvel {

AnimationWindow::AnimationWindow() {
  decoder.bitmap = &bitmap;
}

AnimationWindow::~AnimationWindow() {
  StopTimer();
}

int32_t AnimationWindow::Play(ByteStream* stream) {
  if (decoder.OpenStream(stream) == 0) return 0;
  platform::SetClientSize(window, decoder.outputWidth, decoder.outputHeight + topMargin + bottomMargin);
  platform::InvalidateClient(window, true);
  speedFactor = 1;
  nextTime = decoder.DecodeNextFrame();
  if (decoder.cutCount == 1 && stream->Tell() == decoder.streamEnd) {
    timerId = 0;
    timerFps = 0;
    ShowFrameViewport();
    bitmap.MixPlanes(0, 1);
    platform::ShowInactive(window);
    platform::InvalidateClient(window, true);
    return 1;
  }
  ticks = 1;
  int32_t shortest = 0;
  int32_t longest = 0;
  if (!platform::GetTimerRange(&shortest, &longest)) return 0;
  timerResolution = std::min(std::max(shortest, 1), longest);
  platform::RequestTimerResolution(timerResolution);
  timerId = 0;
  timerFps = 0;
  const bool wasShown = platform::IsShown(window);
  platform::ShowInactive(window);
  if (!wasShown) platform::UpdateClient(window);
  TimerTick();
  return 1;
}

void AnimationWindow::CenterViewport() {
  viewLeft = (decoder.outputWidth - viewport.width) / 2;
  viewTop = (decoder.outputHeight - viewport.height) / 2;
}

void AnimationWindow::ShowFrameViewport() {
  viewport = {decoder.frameX, decoder.frameY, decoder.frameWidth, decoder.frameHeight};
  CenterViewport();
}

// The old picture and the old viewport have the weight `weight / whole`; both are negative.
void AnimationWindow::ShowDissolveStep(int32_t weight, int32_t whole) {
  // A late timer message of a dissolve that another play took the place of finds that play's times.
  if (whole == 0) return;
  bitmap.MixPlanes(weight, whole);
  const auto between = [weight, whole](int32_t from, int32_t to) {
    return static_cast<int32_t>((int64_t{from} * weight + int64_t{to} * (whole - weight)) / whole);
  };
  viewport = {between(fromViewport.x, decoder.frameX), between(fromViewport.y, decoder.frameY),
              between(fromViewport.width, decoder.frameWidth), between(fromViewport.height, decoder.frameHeight)};
  CenterViewport();
}

void AnimationWindow::SetTimer() {
  if (timerId != 0) platform::KillTimer(timerId);
  // A rate that is not above 0 leaves no period to wait for, and so no timer.
  const int32_t period = decoder.fps > 0 ? speedFactor * 1000 / decoder.fps : 0;
  const auto tick = [](void* user) { static_cast<AnimationWindow*>(user)->TimerTick(); };
  timerId = period > 0 && window != nullptr ? platform::StartTimer(period, timerResolution, tick, this) : 0;
  timerFps = decoder.fps;
}

void AnimationWindow::DecodeAhead() {
  nextTime = decoder.DecodeNextFrame();
  if (nextTime < 0) fromViewport = viewport;
}

void AnimationWindow::PaintNow() {
  platform::DeviceContext* context = platform::BeginDrawing(window);
  Paint(context);
  platform::EndDrawing(window, context);
}

void AnimationWindow::TimerTick() {
  if (decoder.stream == nullptr) return;
  if (BeginTick()) PaintNow();
  EndTick();
}

bool AnimationWindow::BeginTick() {
  ticks += ticks > 0 ? -1 : 1;
  if (timerFps == 0 || (ticks == 0 && decoder.fps != timerFps)) SetTimer();
  if (ticks > 0) return false;
  if (ticks == 0) ticks = nextTime;
  if (ticks < 0) {
    ShowDissolveStep(ticks, nextTime - 1);
  } else {
    ShowFrameViewport();
    bitmap.MixPlanes(0, 1);
  }
  return true;
}

void AnimationWindow::EndTick() {
  if (ticks == 1 || ticks == -1) {
    DecodeAhead();
  } else if (ticks == 0) {
    // A frame without time ends the play; its picture stays.
    StopTimer();
    ticks = 1;
    if (window != nullptr) platform::Send(window, platform::kMessageUser, 0, 0);
  }
}

intptr_t AnimationWindow::WindowProc(uint32_t message, uintptr_t first, intptr_t second) {
  switch (message) {
    case platform::kMessagePaint: {
      platform::DeviceContext* context = platform::BeginPainting(window, nullptr);
      Paint(context);
      platform::EndPainting(window, context);
      return 0;
    }
    case platform::kMessagePrintClient:
      Paint(platform::ContextOf(first));
      return 0;
    case platform::kMessageSize: {
      const int32_t height = decoder.outputHeight + topMargin + bottomMargin;
      const uintptr_t size = static_cast<uintptr_t>(second);
      if (size != platform::JoinHalves(decoder.outputWidth, height)) {
        platform::SetClientSize(window, decoder.outputWidth, height);
      }
      break;
    }
    case platform::kMessageClose:
      StopTimer();
      return 0;
    case platform::kMessageTimer:
      TimerTick();
      break;
    default:
      break;
  }
  return platform::DefaultHandling(window, message, first, second);
}

int32_t AnimationWindow::StopTimer() {
  if (timerId == 0) return 0;
  platform::KillTimer(timerId);
  timerId = 0;
  timerFps = 0;
  return 1;
}

void AnimationWindow::Paint(platform::DeviceContext* context) {
  // The palette's greys are what the mixed colours of a dissolve are shown with.
  if (platform::HasPalette(context)) platform::SelectDrawingPalette(context, palette, true);
  const int32_t top = topMargin + viewTop;
  const int32_t bottom = top + viewport.height;
  platform::FillBlack(context, 0, topMargin, decoder.outputWidth, top);
  platform::FillBlack(context, 0, top, viewLeft, bottom);
  platform::FillBlack(context, viewLeft + viewport.width, top, decoder.outputWidth, bottom);
  platform::FillBlack(context, 0, bottom, decoder.outputWidth, decoder.outputHeight + topMargin);
  platform::DrawBitmap(context, viewLeft, top, viewport.width, viewport.height, bitmap.bitmapHandle, viewport.x,
                       viewport.y, bitmap.mixColors);
}

}  // namespace sorvel
