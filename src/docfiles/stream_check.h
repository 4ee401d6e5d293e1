#pragma once

#include <cstdint>

#include "document/load_report.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// Adds a note to the report, which may be null, if fewer than `count` bytes are left of a stream of this length.
inline void NoteShortStream(ByteStream& stream, int32_t length, int32_t count, LoadReport* report) {
  if (report != nullptr && length - stream.Tell() < count) report->Note("the file ends early");
}

// Adds a note to the report, which may be null, if bytes are left of a stream behind the end of its document.
inline void NoteLongStream(ByteStream& stream, int32_t length, LoadReport* report) {
  const int32_t position = stream.Tell();
  if (position < length) NoteProblem(report, "%lld bytes too many at the end", length - position);
}

}  // namespace sorvel
