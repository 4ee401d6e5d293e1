#pragma once

#include <cstdint>

#include "animation/stream_encoder.h"
#include "document/film.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "imaging/nibble_bitmap.h"

namespace sorvel {

// The cut that stopped a container from being written, and who is told of the cuts that are in it.
struct ContainerReport {
  int32_t listIndex = -1;
  LoadReport report;
  ProgressFunction progress = nullptr;  // told after each cut; null for nobody
};

// Writes entries of the film, `count` indices in the order of play, as one playback file at the start of an empty
// stream. A compiled stream beside a cut's file is taken as it is; otherwise the cut is compiled and the stream left
// there, for which the bitmap's picture is given up. False when a cut can't be had; what was written so far stays. The
// report says which. A film beyond 2 GiB can't be had either. A damaged cut and one without frames count as cuts that
// can't be had; with a null report they are compiled as far as they could be read.
bool WriteFilmContainer(Film* film, const int32_t* indices, int32_t count, ByteStream* container, NibbleBitmap* bitmap,
                        ContainerReport* report);

}  // namespace sorvel
