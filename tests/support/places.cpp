#include "support/places.h"

#include <cstdlib>

namespace {

const char* Program() {
  const char* given = std::getenv("SORVEL_PROGRAM_UNDER_TEST");
  return given != nullptr ? given : SORVEL_PROGRAM;
}

}  // namespace

const char* const kProgramPath = Program();
const char* const kScriptsPath = SORVEL_SCRIPTS;
