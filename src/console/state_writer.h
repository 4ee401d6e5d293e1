#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/headless/headless.h"
#include "shell/main_frame.h"

// What a script writes of the running program.
namespace sorvel::console {

// The CRC-32 of zip and PNG of all bytes of an image, as eight hexadecimal digits.
std::string PixelChecksum(const CellImage& image);

// The state of the whole program as one JSON object on one line. `cuts` are the open ones in order of opening. The menu
// is opened for it, so that its check marks are up to date; nothing else changes.
std::string DescribeState(MainFrame* frame, const std::vector<CutWindow*>& cuts);

// Each writes a file and gives the exit status; a failure is reported on standard error.
int WriteBytes(const std::string& path, const void* bytes, size_t count);
// A picture of colour roles, as a bitmap of 8 bits a pixel with the colours of the roles.
int WriteView(const std::string& path, const CellImage& view);
// The client area of a window as it is on the screen: as a bitmap of 24 bits a pixel, bottom row first, or as a binary
// grey map (PGM) of its red values.
int WriteScreen(const std::string& path, const platform::Window& window);
int WriteGreyMap(const std::string& path, const platform::Window& window);

}  // namespace sorvel::console
