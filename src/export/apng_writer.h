#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "export/film_writer.h"
#include "export/png_line.h"
#include "foundation/replacement_file.h"

namespace sorvel {

// An animated PNG file of grey pictures, of which each but the first one is the rectangle that changed. Times are exact
// up to rates of 65535 units a second, and above them rounded so that no error adds up.
class ApngWriter final : public FilmWriter {
 public:
  // The path is UTF-8.
  explicit ApngWriter(std::string filePath) : path(std::move(filePath)) {}

  bool Begin(const FilmForm& form) override;
  bool Add(const FilmPicture& picture) override;
  bool Finish() override;

 private:
  bool Write(const PngLine::Picture& picture);
  bool WritePart(const std::vector<uint8_t>& png, const Rect& part, uint32_t numerator, uint32_t denominator);
  void WriteChunk(const char* type, const std::vector<uint8_t>& data);

  std::string path;
  ReplacementFile file;
  FilmForm film;
  uint32_t pictures = 0;
  uint32_t sequence = 0;  // of the chunks of the animation
  std::unique_ptr<PngLine> line;
};

}  // namespace sorvel
