#include "console/script_words.h"

#include <charconv>
#include <string>

#include "console/arguments.h"
#include "platform/messages.h"
#include "platform/window.h"

namespace sorvel::console {

namespace {

struct NamedValue {
  const char* name;
  int32_t value;
};

template <size_t count>
bool FindValue(const NamedValue (&table)[count], std::string_view name, int32_t* value) {
  for (const NamedValue& each : table) {
    if (name != each.name) continue;
    *value = each.value;
    return true;
  }
  return false;
}

constexpr NamedValue kMouseMessages[] = {
    {"move", platform::kMessageMouseMove},      {"ldown", platform::kMessageLeftDown},
    {"lup", platform::kMessageLeftUp},          {"ldblclk", platform::kMessageLeftDouble},
    {"rdown", platform::kMessageRightDown},     {"rup", platform::kMessageRightUp},
    {"rdblclk", platform::kMessageRightDouble}, {"mdown", platform::kMessageMiddleDown},
    {"mup", platform::kMessageMiddleUp},
};

constexpr NamedValue kModifiers[] = {{"ctrl", platform::kKeyControl}, {"shift", platform::kKeyShift}};

constexpr NamedValue kScrollCodes[] = {
    {"lineup", platform::kScrollLineUp},
    {"linedown", platform::kScrollLineDown},
    {"pageup", platform::kScrollPageUp},
    {"pagedown", platform::kScrollPageDown},
    {"thumbposition", platform::kScrollThumbPosition},
    {"thumbtrack", platform::kScrollThumbTrack},
};

constexpr NamedValue kNamedKeys[] = {{"Enter", 0x0D}, {"Tab", 0x09}, {"Esc", 0x1B}, {"Space", 0x20}};

constexpr NamedValue kCursorKeys[] = {
    {"Up", platform::kKeyUp},       {"Down", platform::kKeyDown},     {"Left", platform::kKeyLeft},
    {"Right", platform::kKeyRight}, {"PageUp", platform::kKeyPageUp}, {"PageDown", platform::kKeyPageDown},
    {"Home", platform::kKeyHome},   {"End", platform::kKeyEnd},       {"Delete", platform::kKeyDelete}};

}  // namespace

bool FindMouseMessage(std::string_view name, int32_t* message) {
  return FindValue(kMouseMessages, name, message);
}

bool FindModifier(std::string_view name, int32_t* modifier) {
  return FindValue(kModifiers, name, modifier);
}

bool FindScrollCode(std::string_view name, int32_t* code) {
  return FindValue(kScrollCodes, name, code);
}

bool ParseCursorKey(std::string_view name, Key* key) {
  constexpr std::string_view shift = "Shift+";
  key->shift = name.starts_with(shift);
  if (key->shift) name.remove_prefix(shift.size());
  return FindValue(kCursorKeys, name, &key->code);
}

bool ParseKey(std::string_view name, Key* key) {
  constexpr std::string_view shift = "Shift+";
  constexpr std::string_view control = "Ctrl+";
  constexpr int32_t firstFunctionKey = 0x70;
  while (true) {
    if (!key->shift && name.substr(0, shift.size()) == shift) {
      key->shift = true;
      name.remove_prefix(shift.size());
    } else if (!key->control && name.substr(0, control.size()) == control) {
      key->control = true;
      name.remove_prefix(control.size());
    } else {
      break;
    }
  }
  if (FindValue(kNamedKeys, name, &key->code)) return true;
  if (name.size() == 1) {
    const char byte = name[0];
    const bool isSmall = byte >= 'a' && byte <= 'z';
    key->code = isSmall ? byte - 'a' + 'A' : byte;
    return isSmall || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
  }
  int32_t number = 0;
  if (name.empty() || name[0] != 'F' || name[1] == '0' || !ParseNumber(std::string(name.substr(1)), 1, 24, &number)) {
    return false;
  }
  key->code = firstFunctionKey + number - 1;
  return true;
}

bool ParseColor(std::string_view word, uint32_t* color) {
  constexpr size_t digits = 6;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, *color, 16);
  return word.size() == digits && word[0] != '-' && error == std::errc() && stop == end;
}

}  // namespace sorvel::console
