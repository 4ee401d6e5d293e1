#pragma once

#include <memory>
#include <string>

#include "export/film_writer.h"

namespace sorvel::console {

// What libavformat and libavcodec write for us.
enum class VideoKind { kGif, kMp4, kWebm, kMkv };

// Writes a file by its path, which is UTF-8. Null if the program was built without these libraries, or
// this system lacks them.
std::unique_ptr<FilmWriter> MakeVideoWriter(VideoKind kind, const std::string& path);

}  // namespace sorvel::console
