#pragma once

#include "picture.h"

// How the roles of a drawing look on the screen.
namespace sorvel::desktop {

constexpr Color kTransparent = 0xE1FFFF;
constexpr Color kBlack = 0x000000;
constexpr Color kHalfBlack = 0x717F7F;  // a thin line on transparent ground at 1/2
constexpr Color kDarkGrey = 0x555555;
constexpr Color kWhite = 0xFFFFFF;
constexpr Color kSketch = 0x8F8FBF;
constexpr Color kGreenGhost = 0x8FBF8F;

}  // namespace sorvel::desktop
