#pragma once

#include <cstdint>

#include "platform/geometry.h"
#include "platform/window.h"

// What explains the program where the user looks: tips, hints, balloons and notes. They are windows of their own: they
// take no input and never change the pixels of another window. Texts are Shift JIS; a line feed ends a line.
namespace sorvel::platform {

// Shows a text while the mouse rests over a control. The control keeps it for good.
void SetTip(WindowHandle control, const char* text);

// Shows a text beside the mouse for a while, in place of the last one. It belongs to the window's top-level window.
void ShowHint(WindowHandle window, const char* text, uint32_t milliseconds);
void HideHint();

// Shows a balloon that points at a control, until HideBalloon() or the control's end. There is one balloon at a time.
void ShowBalloon(WindowHandle control, const char* text);
// Without a balloon at this control this has no effect; null stands for any control.
void HideBalloon(WindowHandle control);

// A hidden plate with a few lines of text over the client area of its parent, which lets the mouse through.
WindowHandle MakeNote(WindowHandle parent);
// Shows a text in the middle of an area of the parent's client area. A null text hides the note.
void ShowNote(WindowHandle note, const Bounds& area, const char* text);

// From now on full-width digits and the full-width minus sign that are entered into this edit arrive as plain ones,
// before the edit counts them.
void TakePlainDigits(WindowHandle edit);

}  // namespace sorvel::platform
