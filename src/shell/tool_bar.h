#pragma once

#include <cstdint>

#include "platform/controls.h"

// The buttons of the tool bar.
namespace sorvel {

constexpr int32_t kToolBarImages = 26;

constexpr platform::ToolButton kToolButtons[] = {
    {21, kCommandInsertNumberedCut, false},
    {22, kCommandAddNumberedCut, false},
    {23, kCommandDeleteCuts, false},
    {0, 0, false},
    {1, kCommandAddFrame, false},
    {2, kCommandInsertFrame, false},
    {3, kCommandDeleteFrame, false},
    {5, kCommandPreviousFrame, false},
    {4, kCommandNextFrame, false},
    {0, 0, false},
    {6, kCommandAddCell, false},
    {7, kCommandInsertCell, false},
    {8, kCommandDeleteCell, false},
    {10, kCommandPreviousCell, false},
    {9, kCommandNextCell, false},
    {0, 0, false},
    {11, kToolFreePen, true},
    {12, kToolEraser, true},
    {13, kToolLine, true},
    {14, kToolCurve, true},
    {15, kToolFill, true},
    {16, kToolAreaSelect, true},
    {17, kToolZoom, true},
    {0, 0, false},
    {0, kCommandUndo, false},
    {18, kCommandMask, false},
    {0, 0, false},
    {24, kCommandPlay, false},
    {25, kCommandStop, false},
};
constexpr int32_t kToolButtonCount = static_cast<int32_t>(sizeof(kToolButtons) / sizeof(kToolButtons[0]));

}  // namespace sorvel
