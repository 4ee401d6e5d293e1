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

// Each writes a file, and gives false with the reason if that fails.
bool WriteBytes(const std::string& path, const void* bytes, size_t count, std::string* problem);
// The view of a cut, as a bitmap of 8 bits with the colours of the roles.
bool WriteView(const std::string& path, const CutWindow& cut, std::string* problem);
// The client area of a window as it stands on the screen: as a bitmap of 24 bits, bottom row first, or as a binary
// grey map of its red values.
bool WriteScreen(const std::string& path, const platform::Window& window, std::string* problem);
bool WriteGreyMap(const std::string& path, const platform::Window& window, std::string* problem);

}  // namespace sorvel::console
