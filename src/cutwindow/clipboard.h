#pragma once

#include <cstdint>

// The program's own clipboard, one for all cuts, and how pictures of the system's clipboard are pasted.
namespace sorvel {

class CellImage;

// The picture that was copied last, of no size at first. Not owned by the caller.
CellImage* ClipboardImage();

// The colour that a paste takes as transparent, red in the low byte, and whether it does.
extern uint32_t clipTransparentColor;
extern bool clipTransparent;

// Everything as a start of the program finds it.
void ResetClipboardBlock();

}  // namespace sorvel
