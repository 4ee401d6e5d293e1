#pragma once

#include <string>

// The tests speak UTF-8; the window system and the names of files are UTF-16; the program's files are Shift JIS.
namespace sorvel::desktop {

std::wstring Wide(const std::string& utf8);
std::string Utf8(const std::wstring& wide);
std::string ShiftJis(const std::string& utf8);
std::string FromShiftJis(const std::string& bytes);

}  // namespace sorvel::desktop
