#include "support/places.h"

const char* const kProgramPath = SORVEL_PROGRAM;
const char* const kScriptsPath = SORVEL_SCRIPTS;
