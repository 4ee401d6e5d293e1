#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace sorvel::console {

// The largest number of plain words where any number will do.
constexpr size_t kAnyNumber = static_cast<size_t>(-1);

// An option of a command. One with a value name takes the word behind it.
struct Option {
  const char* name;
  const char* valueName;  // null for a flag
};

// The words of a command, taken apart. Words that begin with two dashes are options, up to a word "--".
class Arguments {
 public:
  // False, with the reason in Problem(), for an unknown option, a missing value or a wrong number of plain words.
  bool Parse(int count, char** words, std::initializer_list<Option> options, size_t fewest, size_t most);

  const std::string& Problem() const { return problem; }
  const std::vector<std::string>& Plain() const { return plain; }
  bool Has(const char* option) const { return Find(option) != nullptr; }
  // Null when the option wasn't given.
  const std::string* Find(const char* option) const;

 private:
  struct Given {
    std::string name;
    std::string value;
  };

  std::vector<std::string> plain;
  std::vector<Given> given;
  std::string problem;
};

// A whole decimal number within the bounds; false for anything else.
bool ParseNumber(const std::string& text, int32_t lowest, int32_t highest, int32_t* number);

// Messages show at most so many bytes of their input.
constexpr size_t kMostEcho = 200;

// Text as a message shows it: bytes that are no text, control characters among them, as \xNN, and only the beginning
// and the end of what is longer than `limit` bytes.
std::string Printable(std::string_view text, size_t limit = kMostEcho);
// The same for a signal handler: fills `line`, which takes 4 * limit + 3 bytes, and gives how many it used.
size_t PutPrintable(const char* text, size_t length, size_t limit, char* line);

// One line on standard error: "sorvel: SUBJECT: PROBLEM". The subject is input, the problem is not. Gives the status of
// a failure.
int Fail(const std::string& subject, const std::string& problem);
// One line on standard error, in which input went through Printable(). Gives the status of wrong usage.
int FailUsage(const std::string& problem);
// One line on standard error: "SCRIPT:LINE: PROBLEM". Both texts may hold input. Gives the status of a refused line.
int FailLine(const std::string& script, int line, const std::string& problem);

// Writes what was printed on standard output. Gives kDone, or the status of a failure with its line.
int FinishPrinting();

// The value of a number option, or what `number` holds when it isn't given. False, with the line written, for a value
// outside the bounds.
bool NumberOption(const Arguments& arguments, const char* option, int32_t lowest, int32_t highest, int32_t* number);

}  // namespace sorvel::console
