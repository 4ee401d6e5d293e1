#pragma once

#include <cstdint>

#include "animation/stream_encoder.h"
#include "document/film.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "imaging/nibble_bitmap.h"

namespace sorvel {

// What WriteFilmContainer tells its caller.
struct ContainerReport {
  int32_t listIndex = -1;          // the film entry that failed; -1 for none
  LoadReport report;               // why it failed
  ProgressFunction progress;       // told after each cut
  ProgressFunction frameProgress;  // told after each frame of a cut that is compiled
  bool isStopped = false;          // one of them stopped the work
};

// Writes a playback file of the film to `container`, an empty stream that can seek. `indices` are the film entries to
// put in, `count` of them in the order of play.
//
// If a whole compiled stream (.ca) lies beside a cut's file, it is copied without a look at its age. Otherwise the cut
// is compiled, and the stream is saved beside the cut; `bitmap` is the workspace and gets another size and picture.
//
// False if a cut can't be read or compiled or the file would grow beyond 2 GiB; `report`, which may be null, then names
// the cut, and what has been written stays in the container. With a report a damaged cut and one without frames fail.
// Without one they go in as far as they could be read. A compiled stream that can't be written on the way counts as a
// failure of the container: see FileStream::failure.
bool WriteFilmContainer(Film* film, const int32_t* indices, int32_t count, FileStream* container, NibbleBitmap* bitmap,
                        ContainerReport* report);

}  // namespace sorvel
