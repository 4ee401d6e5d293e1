#include "export/y4m_writer.h"

#include <cerrno>

namespace sorvel {

namespace {

constexpr char kFrameMark[] = {'F', 'R', 'A', 'M', 'E', '\n'};

}  // namespace

bool Y4mWriter::Begin(const FilmForm& form) {
  if (out == nullptr) {
    if (!file.OpenUtf8(path)) return FailOf(file);
    out = file.stream.file;
  }
  pictureBytes = static_cast<size_t>(form.width) * static_cast<size_t>(form.height);
  // Greys take the whole range from 0 to 255, which readers don't expect by themselves.
  const std::string head = "YUV4MPEG2 W" + std::to_string(form.width) + " H" + std::to_string(form.height) + " F" +
                           std::to_string(form.rate) + ":1 Ip A1:1 Cmono XCOLORRANGE=FULL\n";
  return Write(head.data(), head.size());
}

bool Y4mWriter::Add(const FilmPicture& picture) {
  for (int64_t i = 0; i < picture.duration; ++i) {
    if (!Write(kFrameMark, sizeof(kFrameMark)) || !Write(picture.pixels, pictureBytes)) return false;
  }
  return true;
}

bool Y4mWriter::Finish() {
  if (!path.empty()) return file.Commit() || FailOf(file);
  errno = 0;
  return std::fflush(out) == 0 || FailWith(errno);
}

bool Y4mWriter::Write(const void* bytes, size_t count) {
  errno = 0;
  return std::fwrite(bytes, 1, count, out) == count || FailWith(errno);
}

}  // namespace sorvel
