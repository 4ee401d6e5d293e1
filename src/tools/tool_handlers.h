#pragma once

#include <cstdint>

// The tools as the cut window sees them.
namespace sorvel {

class CutWindow;

// The numbers of the tools are those of the commands that select them.
enum Tool : int32_t {
  kToolFramePosition = 40019,
  kToolLayerPosition = 40023,
  kToolZoom = 40028,
  kToolFreePen = 40029,
  kToolFill = 40031,
  kToolLine = 40037,
  kToolCurve = 40038,
  kToolRectangle = 40045,
  kToolAreaSelect = 40059,
  kToolEraser = 40065,
  kToolGradient = 40070,
  kToolText = 40073,
  kToolEdging = 40075,
  kToolMosaic = 40086,
  kToolFocusLines = 40090,
  kToolParallelLines = 40132,
};

// Answers a mouse message or the pulse (platform::kMessageUser) of the active cut's window. `keys` are
// platform::MouseKey bits, `place` the packed point in window coordinates.
using ToolHandler = void (*)(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window);

// Null for a number that isn't a tool's.
ToolHandler HandlerOfTool(int32_t tool);

// The window is about to go: what a tool shows on it is forgotten, and a stroke that was begun on it ends. Draws
// nothing.
void ForgetToolsOn(const CutWindow* window);
// As at a start of the program; ResetTools does this and more.
void ResetToolHandlers();

}  // namespace sorvel
