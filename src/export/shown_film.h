#pragma once

#include <string>
#include <vector>

#include "animation/cut_times.h"
#include "animation/stream_inspector.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// What a compiled film tells those who are to see it. Texts are UTF-8.
struct ShownFilm {
  // Reads the whole stream, and leaves it at its start. A film without a title has `name` for one. False, with the
  // problem in plain English, for a stream that isn't whole or can't be shown.
  bool Read(ByteStream* compiled, const std::string& name, std::string* problem);

  struct ShownCut {
    std::string name;  // empty for a cut whose file isn't known
    CutTimes times;
  };

  StreamInfo info;
  std::string title;
  std::string author;
  std::vector<ShownCut> cuts;  // up to the one in which a frame without time ends the film
};

}  // namespace sorvel
