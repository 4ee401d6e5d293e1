#pragma once

#include <string>
#include <string_view>

// The program's text is Shift JIS (code page 932); what lies outside may be UTF-8.
namespace sorvel::platform {

// Each gives false when a character has no counterpart; the result is then what came before it.
bool ShiftJisToUtf8(std::string_view text, std::string* result);
bool Utf8ToShiftJis(std::string_view text, std::string* result);

}  // namespace sorvel::platform
