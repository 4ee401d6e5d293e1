#pragma once

#include <cstdint>

#include "shell/main_frame.h"

namespace sorvel {

// The program from its first step to its last: StartProgram, the loop, FinishProgram. `commandLine` as a whole, Shift
// JIS, is the path of the document to open; if it is empty the film of the last run is opened. Gives the exit code.
int EntryPoint(const char* commandLine, int32_t showCommand);

// Puts everything that outlives a program's main window, and that neither settings nor documents hold, to what a new
// process begins with: drawing settings, tools, the private clipboard block, what dialogs remember, random numbers.
// StartProgram calls it, so that no start, script or test knows of the one before.
void ResetProgram();
// Everything up to the loop; false if the main window can't be made. `frame` outlives the program.
bool StartProgram(MainFrame* frame, const char* commandLine, int32_t showCommand);
// Everything behind the loop: the settings are written and what StartProgram made is released.
void FinishProgram(MainFrame* frame);
// The same without the settings.
void ReleaseProgram();

}  // namespace sorvel
