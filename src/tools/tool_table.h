#pragma once

#include "cutwindow/toolbox.h"

namespace sorvel {

// All tools of the program and what they hold, one for all cuts. Lives as long as the process.
Toolbox* AllTools();
// Every tool as a start of the program finds it; nothing is shown.
void ResetTools();

}  // namespace sorvel
