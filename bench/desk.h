#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "foundation/settings.h"
#include "platform/headless/headless.h"
#include "shell/entry.h"

namespace sorvel {

// The whole program with a document open, or with nothing for an empty path, in a window of this size. Its settings go
// to a file of their own. At the end a cut has to be open, whose window is closed.
class Desk {
 public:
  Desk(const std::string& document, int32_t width, int32_t height) {
    platform::headless::Reset();
    platform::headless::SetClientSize(width, height);
    UseSettingsFile((std::filesystem::temp_directory_path() / "sorvel-bench.ini").string().c_str());
    StartProgram(&frame, document.c_str(), 0);
    if (!document.empty() && Cut() == nullptr) std::exit(1);
  }
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk() {
    platform::DestroyMdiChild(frame.mdiClient, Cut()->window);
    platform::DestroyWindow(frame.frameWindow);
    FinishProgram(&frame);
  }

  CutWindow* Cut() { return frame.ActiveCut(); }

  MainFrame frame;
};

}  // namespace sorvel
