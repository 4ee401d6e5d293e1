#pragma once

#include "tools/tool.h"

namespace sorvel {

// What the two tools that move a box over the cut have in common: the box follows a drag, and a right button during the
// drag cancels it. They draw nothing; their points are in cut coordinates, on the grid.
class PositionTool : public Tool {
 public:
  void End() override;
  void Leave() override { isUp = false; }

 protected:
  // Reads the box from the model, in cut coordinates; false if there is nothing to move.
  virtual bool ReadBox(CutWindow* window, Bounds* result) const = 0;
  // Whether there is something to work on in a message other than the pulse.
  virtual bool CanMove(CutWindow* window) const = 0;
  // The left button went up, after a drag or not.
  virtual void Place(const ToolInput& input) = 0;
  // The right button went up outside a drag.
  virtual void Align(const ToolInput& input) = 0;

  void ShowBox(const ToolInput& input);

  bool Prepare(intptr_t place, ToolInput* input) final;
  void Press(const ToolInput& input) final;
  void Move(const ToolInput& input) final;
  void Release(const ToolInput& input) final;
  void RightRelease(const ToolInput& input) final;
  void Pulse(const ToolInput& input) final;

  bool isDragging = false;
  Point start;  // of the drag, in cut coordinates

 private:
  void ShowBoxIfHidden(const ToolInput& input);
  void ShowMovedBox(const ToolInput& input, int32_t dx, int32_t dy) const;
  bool IsUpOn(const CutWindow* window) const { return isUp && owner == window; }

  // The pulse before a change takes the box off, and the one after it puts it back, whether there is a box or not at
  // that moment: otherwise the pair would come out of step when a change gives the box something to show, and leave it
  // on the screen.
  bool isUp = false;
  const CutWindow* owner = nullptr;  // the window that isUp speaks of; only compared
  Bounds box;                        // as the model has it, in cut coordinates
};

Bounds BoxAt(int32_t x, int32_t y, int32_t width, int32_t height);
int32_t MiddleOf(int32_t a, int32_t b);
// The frame so many steps from the current one; the first and the last are neighbours.
Frame* FrameInRing(CutWindow* window, int32_t step);

}  // namespace sorvel
