#pragma once

namespace sorvel {

// What every empty string field points at. Never written to and never freed.
extern char EmptyString[1];

// Replaces the text, in Shift JIS, of a string field. A field is never null: it starts as EmptyString and owns its
// buffer while it isn't empty; assigning an empty text frees it. Text of equal length is copied into the existing
// buffer. True when the field changed.
bool AssignString(char** field, const char* text);

}  // namespace sorvel
