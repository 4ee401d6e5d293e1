#pragma once

#include "document/cut.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// A cut file is the head, for each layer its head and its cells, and the frames.
void WriteCutHead(Cut* cut, ByteStream* stream);
void WriteLayerHead(Layer* layer, ByteStream* stream);
void WriteCutFrames(Cut* cut, ByteStream* stream);

}  // namespace sorvel
