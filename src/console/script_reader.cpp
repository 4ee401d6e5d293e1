#include "console/script_reader.h"

#include <cstdio>
#include <utility>

#include "console/console_files.h"

namespace sorvel::console {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t';
}

// Reads what stands in quotes, up to behind the closing one. False if there is none, or for an unknown escape.
bool ReadQuoted(std::string_view line, size_t* place, std::string* word, std::string* problem) {
  while (*place < line.size()) {
    char byte = line[(*place)++];
    if (byte == '"') return true;
    if (byte == '\\') {
      const char escape = *place < line.size() ? line[(*place)++] : '\0';
      if (escape != '"' && escape != '\\' && escape != 'n') {
        *problem = "an escape in quotes is \\\" \\\\ or \\n";
        return false;
      }
      byte = escape == 'n' ? '\n' : escape;
    }
    *word += byte;
  }
  *problem = "a closing quote is missing";
  return false;
}

bool SplitLine(std::string_view line, std::vector<std::string>* words, std::string* problem) {
  if (line.find('\0') != std::string_view::npos || CountCharacters(line) < 0) {
    *problem = "the line isn't UTF-8 text";
    return false;
  }
  size_t place = 0;
  while (true) {
    while (place < line.size() && IsBlank(line[place])) ++place;
    if (place == line.size()) return true;
    std::string word;
    while (place < line.size() && !IsBlank(line[place])) {
      const char byte = line[place++];
      if (byte != '"') {
        word += byte;
      } else if (!ReadQuoted(line, &place, &word, problem)) {
        return false;
      }
    }
    words->push_back(std::move(word));
  }
}

}  // namespace

ScriptReader::ScriptReader(std::string script) : text(std::move(script)) {
  if (std::string_view(text).substr(0, kByteOrderMark.size()) == kByteOrderMark) place = kByteOrderMark.size();
}

bool ScriptReader::Next(ScriptLine* line) {
  while (place < text.size()) {
    size_t end = text.find('\n', place);
    if (end == std::string::npos) end = text.size();
    std::string_view content = std::string_view(text).substr(place, end - place);
    place = end + 1;
    ++number;
    if (!content.empty() && content.back() == '\r') content.remove_suffix(1);
    while (!content.empty() && IsBlank(content.front())) content.remove_prefix(1);
    if (content.empty() || content.front() == '#') continue;
    *line = {};
    line->number = number;
    SplitLine(content, &line->words, &line->problem);
    return true;
  }
  return false;
}

bool ReadScript(const std::string& path, std::string* text, std::string* problem) {
  InputFile file;
  if (!file.Open(path, problem)) return false;
  char block[4096];
  size_t count = 0;
  while ((count = std::fread(block, 1, sizeof(block), file.File())) > 0) text->append(block, count);
  if (std::ferror(file.File()) == 0) return true;
  *problem = "can't be read";
  return false;
}

int32_t CountCharacters(std::string_view text) {
  int32_t count = 0;
  size_t place = 0;
  while (place < text.size()) {
    const auto lead = static_cast<unsigned char>(text[place++]);
    // How many bytes follow the first one of a character; a byte of 80 to BF, or one above F7, begins none.
    const int32_t following = lead < 0x80   ? 0
                              : lead < 0xC0 ? -1
                              : lead < 0xE0 ? 1
                              : lead < 0xF0 ? 2
                              : lead < 0xF8 ? 3
                                            : -1;
    if (following < 0) return -1;
    for (int32_t i = 0; i < following; ++i) {
      if (place == text.size() || (static_cast<unsigned char>(text[place++]) & 0xC0) != 0x80) return -1;
    }
    ++count;
  }
  return count;
}

}  // namespace sorvel::console
