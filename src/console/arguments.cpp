#include "console/arguments.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "console/commands.h"
#include "console/console_files.h"

namespace sorvel::console {

namespace {

// The length of the printable character in UTF-8 that the text begins with; 0 if it begins with something else.
size_t CharacterBytes(const char* text, size_t length) {
  const auto byteAt = [text](size_t i) { return static_cast<uint8_t>(text[i]); };
  const uint8_t first = byteAt(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const size_t count = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || count > length) return 0;
  for (size_t i = 1; i < count; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80) return 0;
  }
  const uint8_t second = byteAt(1);
  const bool isTooLong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool isNoCharacter = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
  const bool isControl = first == 0xC2 && second < 0xA0;
  return isTooLong || isNoCharacter || isControl ? 0 : count;
}

}  // namespace

bool Arguments::Parse(int count, char** words, std::initializer_list<Option> options, size_t fewest, size_t most) {
  bool onlyPlain = false;
  for (int i = 0; i < count; ++i) {
    const std::string word = words[i];
    if (onlyPlain || word.rfind("--", 0) != 0) {
      plain.push_back(word);
      continue;
    }
    if (word == "--") {
      onlyPlain = true;
      continue;
    }
    const Option* known = nullptr;
    for (const Option& option : options) {
      if (word == option.name) known = &option;
    }
    if (known == nullptr) {
      problem = "unknown option " + Printable(word);
      return false;
    }
    if (known->valueName != nullptr && i + 1 >= count) {
      problem = "option " + Printable(word) + " needs " + known->valueName;
      return false;
    }
    given.push_back({word, known->valueName != nullptr ? words[++i] : ""});
  }
  if (plain.size() < fewest || plain.size() > most) {
    problem = plain.size() < fewest ? "too few words" : "too many words";
    return false;
  }
  return true;
}

const std::string* Arguments::Find(const char* option) const {
  for (const Given& each : given) {
    if (each.name == option) return &each.value;
  }
  return nullptr;
}

bool ParseNumber(const std::string& text, int32_t lowest, int32_t highest, int32_t* number) {
  int32_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || value < lowest || value > highest) return false;
  *number = value;
  return true;
}

size_t PutPrintable(const char* text, size_t length, size_t limit, char* line) {
  constexpr char digits[] = "0123456789ABCDEF";
  const size_t head = length > limit ? limit / 2 : length;
  size_t used = 0;
  for (size_t i = 0; i < length;) {
    if (i == head) {
      for (int dots = 0; dots < 3; ++dots) line[used++] = '.';
      i = length - (limit - head);
    }
    const size_t end = i < head ? head : length;
    const size_t bytes = CharacterBytes(text + i, end - i);
    if (bytes > 0) {
      for (size_t k = 0; k < bytes; ++k) line[used++] = text[i++];
    } else {
      const auto byte = static_cast<uint8_t>(text[i++]);
      for (const char c : {'\\', 'x', digits[byte >> 4], digits[byte & 15]}) line[used++] = c;
    }
  }
  return used;
}

std::string Printable(std::string_view text, size_t limit) {
  std::string line(4 * std::min(text.size(), limit) + 3, '\0');
  line.resize(PutPrintable(text.data(), text.size(), limit, line.data()));
  return line;
}

int Fail(const std::string& subject, const std::string& problem) {
  ClearProgress();
  std::fprintf(stderr, "sorvel: %s: %s\n", Printable(subject).c_str(), Printable(problem, problem.size()).c_str());
  return kFailed;
}

int FailUsage(const std::string& problem) {
  std::fprintf(stderr, "sorvel: %s\n", Printable(problem, problem.size()).c_str());
  return kUsage;
}

int FailLine(const std::string& script, int line, const std::string& problem) {
  const size_t problemBytes = std::min(problem.size(), kMostEcho * 2 / 3);
  std::fprintf(stderr, "%s:%d: %s\n", Printable(script, kMostEcho - problemBytes).c_str(), line,
               Printable(problem, problemBytes).c_str());
  return kRefused;
}

int FinishPrinting() {
  const bool written = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  return written ? kDone : Fail("standard output", "can't be written");
}

bool NumberOption(const Arguments& arguments, const char* option, int32_t lowest, int32_t highest, int32_t* number) {
  const std::string* text = arguments.Find(option);
  if (text == nullptr || ParseNumber(*text, lowest, highest, number)) return true;
  FailUsage(std::string("option ") + option + " takes a number from " + std::to_string(lowest) + " to " +
            std::to_string(highest));
  return false;
}

}  // namespace sorvel::console
