#pragma once

#include <cstdint>
#include <string_view>

// The words of a script that stand for numbers of the window system. Each function gives false for an unknown word.
namespace sorvel::console {

// "move", "ldown" and so on.
bool FindMouseMessage(std::string_view name, int32_t* message);
// "ctrl" or "shift": a platform::MouseKey bit.
bool FindModifier(std::string_view name, int32_t* modifier);
// "lineup", "thumbtrack" and so on.
bool FindScrollCode(std::string_view name, int32_t* code);

struct Key {
  int32_t code = 0;  // virtual key
  bool shift = false;
  bool control = false;
};

// "Shift+" and "Ctrl+", in either order, then a named key, F1 to F24, a letter or a digit.
bool ParseKey(std::string_view name, Key* key);

// The keys that move and delete, "Up" to "Delete", possibly behind "Shift+".
bool ParseCursorKey(std::string_view name, Key* key);

// Six hexadecimal digits RRGGBB.
bool ParseColor(std::string_view word, uint32_t* color);

}  // namespace sorvel::console
