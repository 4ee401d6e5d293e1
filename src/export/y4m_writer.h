#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "export/film_writer.h"
#include "foundation/replacement_file.h"

namespace sorvel {

// Uncompressed pictures at the rate of the film's form, in the YUV4MPEG2 format of grey pictures, which other encoders
// read from a pipe.
class Y4mWriter final : public FilmWriter {
 public:
  // Writes a file by its UTF-8 path.
  explicit Y4mWriter(std::string filePath) : path(std::move(filePath)) {}
  // Writes to an open pipe or file, which stays open and gets what there is of the film on failure too.
  explicit Y4mWriter(FILE* openPipe) : out(openPipe) {}

  bool Begin(const FilmForm& form) override;
  bool Add(const FilmPicture& picture) override;
  bool Finish() override;

 private:
  bool Write(const void* bytes, size_t count);

  std::string path;
  ReplacementFile file;
  FILE* out = nullptr;
  size_t pictureBytes = 0;
};

}  // namespace sorvel
