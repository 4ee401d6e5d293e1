#pragma once

namespace sorvel {

// The program from its first step to its last. The whole command line, as Shift JIS, is the path of a cut, a compiled
// cut or a film container, which is played in a window of its own. Gives the exit code.
int EntryPoint(const char* commandLine);

}  // namespace sorvel
