#pragma once

#include <cstdint>

namespace sorvel {

// What a reader found wrong with a document. Readers go on where the format lets them, and note the first thing that
// a file written by this program can't have. The text is plain English for one line of a message.
struct LoadReport {
  bool IsDamaged() const { return problem[0] != '\0'; }

  // Keeps the first problem; the format takes at most one number.
  void Note(const char* format, int64_t number = 0);

  char problem[160] = "";
  bool isForeign = false;  // what tells a document of this sort from others is missing, though it could be read
};

// Null reports are allowed wherever one is passed.
void NoteProblem(LoadReport* report, const char* format, int64_t number = 0);

}  // namespace sorvel
