#pragma once

#include <cstdint>

#include "foundation/buffer.h"
#include "platform/drawing.h"
#include "platform/window.h"

// The part of the seam that the player needs, for a page in a browser: one window that is a picture in memory. The page
// calls the player's tick itself, so that timers do nothing.
namespace sorvel::platform {

struct Window {
  WindowObject* object = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  Buffer<uint32_t> pixels;  // red, green, blue and opacity in the order of bytes; rows from top to bottom
  bool isShown = false;
  bool isDrawn = true;  // whether painting changes the pixels
  bool hasTimer = false;
};

// Makes the window of an object. The caller owns both.
void MakeScreen(Window* screen, WindowObject* object);

}  // namespace sorvel::platform
