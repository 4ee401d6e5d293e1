#pragma once

#include <cstdint>

#include "shell/main_frame.h"

namespace sorvel {

// Runs the program: StartProgram, the message loop, FinishProgram. Returns the exit code. The whole of `commandLine`,
// in Shift JIS, is the path of a document to open; if it is empty, the program opens the film of the last run.
int EntryPoint(const char* commandLine, int32_t showCommand);

// Puts everything that outlives a program's main window, and that neither settings nor documents hold, to what a new
// process begins with: drawing settings, tools, the private clipboard block, what dialogs remember, random numbers.
// StartProgram calls it, so that no start, script or test knows of the one before.
void ResetProgram();
// Everything before the loop. False if the main window can't be made. `frame` must outlive the program.
bool StartProgram(MainFrame* frame, const char* commandLine, int32_t showCommand);
// Everything after the loop: writes the settings and releases what StartProgram made.
void FinishProgram(MainFrame* frame);
// Releases what StartProgram made and writes no settings.
void ReleaseProgram();

}  // namespace sorvel
