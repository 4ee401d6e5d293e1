#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "export/film_writer.h"
#include "foundation/replacement_file.h"

namespace sorvel {

// An animated GIF file of grey pictures, of which each but the first one is the rectangle that changed, with what stays
// in it transparent. The system's codec packs the pixels of each: see platform::CanEncodeGif(). Times are in 1/100 s,
// rounded so that no error adds up; a picture for which no time is left goes into the next one.
class GifWriter final : public FilmWriter {
 public:
  // The path is UTF-8.
  explicit GifWriter(std::string filePath) : path(std::move(filePath)) {}

  bool Begin(const FilmForm& form) override;
  bool Add(const FilmPicture& picture) override;
  bool Finish() override;

 private:
  int64_t PlaceOf(int64_t time) const;
  bool AddPart(const uint8_t* pixels, const Rect& part, int64_t delay);
  // Copies a rectangle of a picture into `packed` and makes it the last one that was added. Pixels that it doesn't
  // change become the level that it gives; -1 if there are none of these, or if all levels are taken.
  int32_t TakePart(const uint8_t* pixels, const Rect& part);
  bool Write(const std::vector<uint8_t>& bytes);

  std::string path;
  ReplacementFile file;
  FilmForm film;
  Rect left;                     // what changed in pictures without time
  std::vector<uint8_t> added;    // the picture that was added last; empty ahead of the first one
  std::vector<uint8_t> packed;   // of a rectangle, without padding
  std::vector<uint8_t> picture;  // a file of one picture
};

}  // namespace sorvel
