#pragma once

#include <cstdint>

// The tools as the cut window sees them.
namespace sorvel {

class CutWindow;

// Answers a mouse message or the pulse (platform::kMessageUser) of the active cut's window. `keys` are
// platform::MouseKey bits, `place` the packed point in window coordinates.
using ToolHandler = void (*)(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window);

// `tool` is the number of the command that selects it. Null for a number that isn't a tool's.
ToolHandler HandlerOfTool(int32_t tool);

// The window is about to go: what a tool shows on it is forgotten, and a stroke that was begun on it ends. Draws
// nothing.
void ForgetToolsOn(const CutWindow* window);
// As at a start of the program; ResetTools does this and more.
void ResetToolHandlers();

}  // namespace sorvel
