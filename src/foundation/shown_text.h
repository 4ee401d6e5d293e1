#pragma once

#include <string>
#include <string_view>

namespace sorvel {

// The program's own text, which is Shift JIS, as UTF-8 for showing: what has no counterpart becomes the replacement
// character.
std::string ShownText(std::string_view text);

}  // namespace sorvel
