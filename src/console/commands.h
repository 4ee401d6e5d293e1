#pragma once

#include "console/arguments.h"

namespace sorvel::console {

// Exit statuses.
enum Status : int {
  kDone = 0,
  kFailed = 1,  // a file can't be read or written, or is damaged
  kUsage = 2,
  kRefused = 3,  // a line of a script can't be carried out
};

// Runs the program: picks the command by the first word. Gives the exit status.
int Main(int argc, char** argv);

// Each command takes the words behind its name and gives the exit status.
int RunInfo(const Arguments& arguments);
int RunResave(const Arguments& arguments);
int RunCompile(const Arguments& arguments);
int RunExport(const Arguments& arguments);
int RunFrame(const Arguments& arguments);
int RunView(const Arguments& arguments);
int RunPlay(const Arguments& arguments);
int RunImport(const Arguments& arguments);
int RunRender(const Arguments& arguments);
int RunWeb(const Arguments& arguments);
int RunHistory(const Arguments& arguments);
int RunSheet(const Arguments& arguments);
int RunRun(const Arguments& arguments);

}  // namespace sorvel::console
