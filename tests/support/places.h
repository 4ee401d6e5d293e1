#pragma once

// Where the build put the program and where the tree keeps what tests read. Absolute paths; they stand in one source
// file so that all others compile to the same objects in every checkout, which a compiler cache relies on. The program
// is another one if the environment variable SORVEL_PROGRAM_UNDER_TEST names it.
extern const char* const kProgramPath;
extern const char* const kScriptsPath;
