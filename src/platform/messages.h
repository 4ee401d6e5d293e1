#pragma once

#include <cstdint>

// Numbers of the messages that windows answer, and the loop that brings them.
namespace sorvel::platform {

enum WindowMessage : uint32_t {
  kMessageDestroy = 0x0002,
  kMessagePaint = 0x000F,
  kMessageClose = 0x0010,
};

// Hands out messages until QuitLoop was called. Gives the code that was given there.
int RunLoop();
void QuitLoop(int code);

}  // namespace sorvel::platform
