#include "export/png_line.h"

#include <algorithm>
#include <utility>

#include "platform/pictures.h"

namespace sorvel {

namespace {

// How many pictures there will be isn't known. To pack one takes longer than to start a thread.
constexpr int32_t kManyPictures = 1 << 16;

}  // namespace

PngLine::PngLine(const FilmForm& form, WriteFunction writePicture)
    : width(form.width),
      write(std::move(writePicture)),
      pictures(static_cast<size_t>(JobsAtOnce(kManyPictures, int64_t{2} * form.width * form.height))),
      line(static_cast<int32_t>(pictures.size()), [this](int32_t place) {
        Picture& picture = pictures[static_cast<size_t>(place)];
        picture.isPacked =
            platform::EncodePng(picture.first, picture.part.width, picture.part.height, picture.pitch, &picture.png);
      }) {}

bool PngLine::Add(const FilmPicture& picture, const Rect& part) {
  const auto place = [&](int32_t y) { return picture.pixels + int64_t{y} * width + part.x; };
  Picture& taken = pictures[static_cast<size_t>(line.NextPlace())];
  taken.shown = picture;
  taken.corner = picture.pixels[0];
  taken.part = part;
  const bool isCopied = pictures.size() > 1 &&
                        taken.copy.Allocate(static_cast<uint64_t>(part.width) * static_cast<uint64_t>(part.height));
  taken.first = isCopied ? taken.copy.Data() : place(part.y);
  taken.pitch = isCopied ? part.width : width;
  for (int32_t y = 0; isCopied && y < part.height; ++y) {
    std::copy_n(place(part.y + y), part.width, taken.copy.Data() + int64_t{y} * part.width);
  }
  line.Give();
  if (!isCopied) return Finish();
  return !line.IsFull() || WriteOldest();
}

bool PngLine::Finish() {
  while (!line.IsEmpty()) {
    if (!WriteOldest()) return false;
  }
  return true;
}

bool PngLine::WriteOldest() {
  return write(pictures[static_cast<size_t>(line.Take())]);
}

}  // namespace sorvel
