#pragma once

#include "cutwindow/toolbox.h"

namespace sorvel {

// All tools of the program with their state, shared by all cuts. Lives as long as the process.
Toolbox* AllTools();
// Resets every tool to its state at the start of the program. The overlay is forgotten and nothing is drawn.
void ResetTools();

}  // namespace sorvel
