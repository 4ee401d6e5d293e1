#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "imaging/rect.h"

namespace sorvel {

// What a compiled stream or a film container says, without playing it. Texts are Shift JIS; sizes are bytes or pixels.

struct StreamFrameInfo {
  int32_t time = 0;
  int32_t loop = 0;
  int32_t brightness = 0;
  int32_t x = 0;
  int32_t y = 0;
  Rect box;
  int32_t mapSize = 0;
  uint32_t codeSize = 0;
  uint32_t literalSize = 0;
};

struct StreamCutInfo {
  int32_t offset = 0;
  std::string credit;
  int32_t width = 0;
  int32_t height = 0;
  int32_t frameWidth = 0;
  int32_t frameHeight = 0;
  int32_t fps = 0;
  int32_t levels = 0;
  std::vector<StreamFrameInfo> frames;
};

struct StreamInfo {
  bool isContainer = false;
  uint32_t size = 0;  // as the head gives it
  std::string title;  // from here to the table, of containers only
  std::string author;
  int32_t width = 0;
  int32_t height = 0;
  int32_t maxWidth = 0;
  int32_t maxHeight = 0;
  std::vector<uint32_t> offsets;
  std::vector<StreamCutInfo> cuts;
};

// Walks through the whole stream. False for a stream of another kind. Otherwise the report tells the first thing by
// which it differs from any stream that this program writes; what could be read is in `info` all the same. Neither
// may be null.
bool InspectStream(ByteStream* stream, StreamInfo* info, LoadReport* report);

// True for a compiled cut that is as long as its head says; nothing else of it is looked at.
bool IsCompleteStream(ByteStream* stream);

}  // namespace sorvel
