#pragma once

#include <cstdint>

#include "tools/tool_rules.h"

// The tools, as their table sees them. Each family has two more operations, neither of which draws: End gives up what
// was begun, since the window it was begun on is gone; Reset also puts back what outlives a stroke.
namespace sorvel {

void RunFreePen(uint32_t message, const ToolInput& input);
void RunEraser(uint32_t message, const ToolInput& input);
void EndPenTools();
void ResetPenTools();

void RunLine(uint32_t message, const ToolInput& input);
void RunCurve(uint32_t message, const ToolInput& input);
void EndLineTools();
void ResetLineTools();

void RunBox(uint32_t message, const ToolInput& input);
void EndBoxTool();
void ResetBoxTool();

void RunFill(uint32_t message, const ToolInput& input);
void RunGradient(uint32_t message, const ToolInput& input);
void RunEdging(uint32_t message, const ToolInput& input);
void EndFillTools();
void ResetFillTools();

void RunFocusLines(uint32_t message, const ToolInput& input);
void RunParallelLines(uint32_t message, const ToolInput& input);
void EndGuideTools();
void ResetGuideTools();

void RunText(uint32_t message, const ToolInput& input);
void EndTextTool();
void ResetTextTool();

void RunAreaSelect(uint32_t message, const ToolInput& input);
void RunMosaic(uint32_t message, const ToolInput& input);
void EndAreaTools();
void ResetAreaTools();

// These two change no pixels and get the message as it is.
void RunFramePosition(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window);
void RunLayerPosition(uint32_t message, uint32_t keys, intptr_t place, CutWindow* window);
// The boxes of both are off the screen: another tool took over.
void LeavePositionTools();
void EndPositionTools();
void ResetPositionTools();

}  // namespace sorvel
