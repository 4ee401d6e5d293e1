#pragma once

#include <cstddef>
#include <cstdint>

#include "dialogs/dialogs.h"
#include "platform/window.h"

// Copy values to the controls of a dialog (Show...) and back (Take...).
namespace sorvel {

// The largest number that an up-down control holds.
constexpr int32_t kLargestEntry = 32767;

using DialogText = char[kDialogTextSize];

// Cuts a text that is too long.
void CopyText(DialogText& to, const char* from);

void ShowText(platform::WindowHandle dialog, int32_t id, const char* text);
void TakeText(platform::WindowHandle dialog, int32_t id, DialogText& text);
// Copies the whole text of an edit, of any length, to an owned string field.
void TakeWholeText(platform::WindowHandle dialog, int32_t id, char** field);

void ShowNumber(platform::WindowHandle dialog, int32_t upDown, int32_t low, int32_t high, int32_t value);
// The position that platform::UpDownPosition() reports, with its high half.
int32_t TakeNumber(platform::WindowHandle dialog, int32_t upDown);
// The same without the high half: -32768 to 32767.
int32_t TakeShortNumber(platform::WindowHandle dialog, int32_t upDown);

// A number from 1 on, such as a width. TakeSize() corrects smaller ones to 1.
void ShowSize(platform::WindowHandle dialog, int32_t upDown, int32_t value);
int32_t TakeSize(platform::WindowHandle dialog, int32_t upDown);

void ShowCheck(platform::WindowHandle dialog, int32_t id, bool checked);
bool TakeCheck(platform::WindowHandle dialog, int32_t id);

}  // namespace sorvel
