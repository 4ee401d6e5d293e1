#pragma once

#include <cstdint>

namespace sorvel {

class CutWindow;

// The drawing tools, as the window of a cut uses them. A tool has the number of the command that selects it.
class Toolbox {
 public:
  // Whether a command selects a tool.
  virtual bool Has(int32_t number) const = 0;
  // Passes a mouse message of the active cut's window, or the pulse (platform::kMessageUser), to a tool. `keys` are
  // platform::MouseKey bits, `place` is the packed point in window coordinates. An unknown number does nothing.
  virtual void Run(int32_t number, uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) = 0;
  // To be called before a window is deleted. Ends a stroke that was begun in it and forgets what a tool shows on it.
  // Draws nothing.
  virtual void Forget(const CutWindow* window) = 0;
  // Ends whatever gesture is going on in the window, and takes what a tool shows on it off the screen. What was drawn
  // stays.
  virtual void EndGesture(const CutWindow* window) = 0;

 protected:
  ~Toolbox() = default;
};

}  // namespace sorvel
