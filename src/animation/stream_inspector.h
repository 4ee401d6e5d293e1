#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "animation/stream_format.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// What a compiled stream or a film container says, without playing it. Texts are Shift JIS; sizes are bytes or pixels.

struct StreamCutInfo : StreamCutHead {
  int32_t offset = 0;
  std::string credit;
  std::vector<StreamFrameHead> frames;
};

// The head, the title and the author are those of a container.
struct StreamInfo : ContainerHead {
  bool isContainer = false;
  uint32_t size = 0;  // as the start of the stream gives it
  std::string title;
  std::string author;
  std::vector<uint32_t> offsets;
  std::vector<StreamCutInfo> cuts;
};

// Walks through the whole stream. False for a stream of another kind. Otherwise the report tells the first thing by
// which it differs from any stream that this program writes; what could be read is in `info` all the same. Neither
// may be null.
bool InspectStream(ByteStream* stream, StreamInfo* info, LoadReport* report);

// True for a compiled cut that InspectStream() finds nothing wrong with.
bool IsCompleteStream(ByteStream* stream);

}  // namespace sorvel
