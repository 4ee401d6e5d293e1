#pragma once

#include <cstdint>

namespace sorvel {

class CutWindow;

// The drawing tools as the window of a cut sees them. The number of a tool is that of the command that selects it.
class Toolbox {
 public:
  // Whether a command selects a tool.
  virtual bool Has(int32_t number) const = 0;
  // Gives a tool a mouse message, or the pulse (platform::kMessageUser), of the active cut's window. `keys` are
  // platform::MouseKey bits, `place` the packed point in window coordinates. A number that isn't a tool's does nothing.
  virtual void Run(int32_t number, uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) = 0;
  // The window is about to go: what a tool shows on it is forgotten, and a stroke that was begun on it ends. Draws
  // nothing.
  virtual void Forget(const CutWindow* window) = 0;

 protected:
  ~Toolbox() = default;
};

}  // namespace sorvel
