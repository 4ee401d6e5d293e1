#pragma once

#include <cstdint>

#include "platform/controls.h"

// The buttons of the tool bar.
namespace sorvel {

constexpr int32_t kToolBarBitmap = 118;
constexpr int32_t kToolBarImages = 26;

constexpr platform::ToolButton kToolButtons[] = {
    {21, 40116, false}, {22, 40115, false}, {23, 40117, false}, {0, 0, false},      {1, 40004, false},
    {2, 40005, false},  {3, 40006, false},  {5, 40007, false},  {4, 40008, false},  {0, 0, false},
    {6, 40011, false},  {7, 40010, false},  {8, 40009, false},  {10, 40012, false}, {9, 40013, false},
    {0, 0, false},      {11, 40029, true},  {12, 40065, true},  {13, 40037, true},  {14, 40038, true},
    {15, 40031, true},  {16, 40059, true},  {17, 40028, true},  {0, 0, false},      {0, 40030, false},
    {18, 40046, false}, {0, 0, false},      {24, 40026, false}, {25, 40027, false},
};
constexpr int32_t kToolButtonCount = static_cast<int32_t>(sizeof(kToolButtons) / sizeof(kToolButtons[0]));

}  // namespace sorvel
