#pragma once

#include <cstddef>
#include <cstdint>

#include "dialogs/dialogs.h"
#include "platform/window.h"

// How values get into the controls of a dialog and out again.
namespace sorvel {

// What the 16 bits of an up-down control hold.
constexpr int32_t kLargestEntry = 32767;

using DialogText = char[kDialogTextSize];

// Cut to the room that there is.
void CopyText(DialogText& to, const char* from);

void ShowText(platform::WindowHandle dialog, int32_t id, const char* text);
void TakeText(platform::WindowHandle dialog, int32_t id, DialogText& text);
// The whole text of an edit, whatever its length, into an owned string field.
void TakeWholeText(platform::WindowHandle dialog, int32_t id, char** field);

void ShowNumber(platform::WindowHandle dialog, int32_t upDown, int32_t low, int32_t high, int32_t value);
// As the control reports it: the high half isn't 0 if the edit holds something else than a number of the range.
int32_t TakeNumber(platform::WindowHandle dialog, int32_t upDown);
// The same without the high half.
int32_t TakeShortNumber(platform::WindowHandle dialog, int32_t upDown);

// A width or height: at least 1.
void ShowSize(platform::WindowHandle dialog, int32_t upDown, int32_t value);
int32_t TakeSize(platform::WindowHandle dialog, int32_t upDown);

void ShowCheck(platform::WindowHandle dialog, int32_t id, bool checked);
bool TakeCheck(platform::WindowHandle dialog, int32_t id);

}  // namespace sorvel
