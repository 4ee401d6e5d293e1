#pragma once

namespace sorvel {

// The one empty text that every empty string field points at. Never written through and never freed.
extern char EmptyString[1];

// Replaces the text of a string field. A field is never null: it starts as EmptyString, owns a buffer while its
// text isn't empty, and is released by assigning the empty text. Text is Shift JIS; lengths are bytes.
// Gives true when the field changed. A text of equal length is copied into the buffer that the field has.
bool AssignString(char** field, const char* text);

}  // namespace sorvel
