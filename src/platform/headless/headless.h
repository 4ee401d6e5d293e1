#pragma once

#include <cstdint>
#include <vector>

#include "platform/bitmaps.h"
#include "platform/drawing.h"
#include "platform/timer.h"
#include "platform/window.h"

// What stands behind the seam when there is no window system, and what a program or a test does in its place.
namespace sorvel::platform {

struct Bitmap {
  int32_t width;
  int32_t height;
  int32_t pitch;
  uint8_t* bits;
  ColorEntry colors[256];
};

struct Window {
  WindowObject* object = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  bool shown = false;
  int32_t paints = 0;              // how often something was drawn on it
  std::vector<ColorEntry> pixels;  // the client area, width * height, black at first
};

namespace headless {

// The period of the timer that runs in milliseconds, 0 when none does.
int32_t RunningTimerPeriod();
// Lets the timer that runs come due once; false when none does.
bool RunTimer();

// Names the running program in place of the real one; null goes back to it.
void SetProgramPath(const char* path);

}  // namespace headless
}  // namespace sorvel::platform
