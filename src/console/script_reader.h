#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sorvel::console {

// A line of a script that holds an action.
struct ScriptLine {
  int32_t number = 0;              // from 1, blank lines and comments counted
  std::vector<std::string> words;  // UTF-8; the action's name comes first
  std::string problem;             // why the line can't be taken apart; empty for a good line
};

// Takes the text of a script apart, line by line. Blanks separate words; what stands in double quotes belongs to one
// word, blanks included, and there \" \\ and \n stand for a quote, a backslash and a line feed.
class ScriptReader {
 public:
  explicit ScriptReader(std::string script);

  // The next line that isn't blank or a comment; false behind the last one.
  bool Next(ScriptLine* line);

 private:
  std::string text;
  size_t place = 0;
  int32_t number = 0;
};

// Reads a whole script file. False, with the reason, if it can't be read.
bool ReadScript(const std::string& path, std::string* text, std::string* problem);

// The characters of a UTF-8 text; -1 if it isn't one.
int32_t CountCharacters(std::string_view text);

}  // namespace sorvel::console
