#pragma once

#include <cstdint>

#include "document/load_report.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// Notes it when fewer than `count` bytes are left of a stream of this length.
inline void NoteShortStream(ByteStream& stream, int32_t length, int32_t count, LoadReport* report) {
  if (report != nullptr && length - stream.Tell() < count) report->Note("the file ends early");
}

// Notes it when something is left of a stream that has been read to the end of its document.
inline void NoteLongStream(ByteStream& stream, int32_t length, LoadReport* report) {
  const int32_t position = stream.Tell();
  if (position < length) NoteProblem(report, "%lld bytes too many at the end", length - position);
}

}  // namespace sorvel
