#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "export/film_writer.h"
#include "foundation/buffer.h"
#include "foundation/job_line.h"

namespace sorvel {

// Packs pictures of a film as PNG files, on several threads, and hands them out in their order.
class PngLine {
 public:
  struct Picture {
    FilmPicture shown;   // its pixels may have gone
    uint8_t corner = 0;  // its left top pixel
    Rect part;           // what of it is packed
    std::vector<uint8_t> png;
    bool isPacked = false;  // false without memory

   private:
    friend class PngLine;
    const uint8_t* first = nullptr;  // pixel of the part
    int32_t pitch = 0;
    Buffer<uint8_t> copy;
  };
  // Gives false to end the work.
  using WriteFunction = std::function<bool(const Picture& picture)>;

  PngLine(const FilmForm& form, WriteFunction writePicture);

  // Takes this part of a picture. False if `writePicture` gave false, for this picture or for one before it.
  bool Add(const FilmPicture& picture, const Rect& part);
  // Hands out what is still under way. False as above.
  bool Finish();

 private:
  bool WriteOldest();

  int32_t width;
  WriteFunction write;
  std::vector<Picture> pictures;
  JobLine line;
};

}  // namespace sorvel
