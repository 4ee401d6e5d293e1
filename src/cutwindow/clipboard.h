#pragma once

#include <cstdint>

// The program's own clipboard, one for all cuts, and how pictures of the system's clipboard are pasted.
namespace sorvel {

class CellImage;

// The picture that was copied or pasted last; its size is 0 if there is none. Not owned by the caller. Lives as long as
// the process.
CellImage* ClipboardImage();

// A paste of a system picture takes pixels of this colour as transparent while clipTransparent is set. Red is in the
// low byte, then green, then blue.
extern uint32_t clipTransparentColor;
extern bool clipTransparent;

// Empties the clipboard and sets both variables to their first values.
void ResetClipboardBlock();

}  // namespace sorvel
