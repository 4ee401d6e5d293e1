#include "console/arguments.h"

#include <charconv>
#include <cstdio>

#include "console/commands.h"
#include "console/console_files.h"

namespace sorvel::console {

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
      problem = "unknown option " + word;
      return false;
    }
    if (known->valueName != nullptr && i + 1 >= count) {
      problem = "option " + word + " needs " + known->valueName;
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

int Fail(const std::string& subject, const std::string& problem) {
  ClearProgress();
  std::fprintf(stderr, "sorvel: %s: %s\n", subject.c_str(), problem.c_str());
  return kFailed;
}

int FailUsage(const std::string& problem) {
  std::fprintf(stderr, "sorvel: %s\n", problem.c_str());
  return kUsage;
}

bool NumberOption(const Arguments& arguments, const char* option, int32_t lowest, int32_t highest, int32_t* number) {
  const std::string* text = arguments.Find(option);
  if (text == nullptr || ParseNumber(*text, lowest, highest, number)) return true;
  FailUsage(std::string("option ") + option + " takes a number from " + std::to_string(lowest) + " to " +
            std::to_string(highest));
  return false;
}

}  // namespace sorvel::console
