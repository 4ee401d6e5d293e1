#pragma once

#include <string>
#include <string_view>

// Conversion between Shift JIS (code page 932), which all text in the program is, and UTF-8 outside.
namespace sorvel::platform {

// False if a character has no counterpart; `result` then holds what came before it.
bool ShiftJisToUtf8(std::string_view text, std::string* result);
bool Utf8ToShiftJis(std::string_view text, std::string* result);

}  // namespace sorvel::platform
