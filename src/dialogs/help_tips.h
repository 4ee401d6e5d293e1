#pragma once

#include <cstdint>

#include "platform/window.h"

// What explains the boxes of panels and dialogs where they stand.
namespace sorvel {

// Gives a control the help of this number as its tip, a sentence a line.
void SetHelpTip(platform::WindowHandle control, int32_t text);

// Says in a balloon at an edit which numbers it takes, as long as something else stands there.
void CheckNumber(platform::WindowHandle edit, int32_t low, int32_t high);

// Gives each field of a new dialog its tip, and lets its number edits take full-width digits.
void ExplainFields(platform::WindowHandle dialog, int32_t templateId);
// CheckNumber() for a field of the dialog, if it is one for numbers.
void CheckField(platform::WindowHandle dialog, int32_t templateId, int32_t control);

}  // namespace sorvel
