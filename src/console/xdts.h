#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sorvel::console {

// XDTS, the exchange format of digital time sheets: a line that names the format, and behind it a JSON object. It holds
// timing and no drawings. Texts are UTF-8.

// From this frame on the track shows a cell; an empty name stands for nothing.
struct XdtsChange {
  int32_t frame;  // from 0
  std::string cell;
};

struct XdtsTrack {
  std::string name;                 // of the layer; empty if the file names none
  std::vector<XdtsChange> changes;  // in the order of their frames, each of which is there once
};

struct XdtsSheet {
  std::string name;
  int32_t duration = 0;           // in frames, at least 1
  std::vector<XdtsTrack> tracks;  // from the bottom layer up
};

// Files of more bytes aren't read.
constexpr size_t kLargestXdts = 1 << 26;

// Reads the cells of the first time table. What has a frame below 0 counts from frame 0 on. False, with the reason, for
// a text that isn't of this form.
bool ReadXdts(std::string_view text, XdtsSheet* sheet, std::string* problem);
std::string WriteXdts(const XdtsSheet& sheet);

}  // namespace sorvel::console
