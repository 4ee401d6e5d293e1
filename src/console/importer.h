#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "console/picture_reader.h"
#include "document/cut.h"
#include "imaging/packed_image.h"

namespace sorvel::console {

struct ImportSettings {
  int32_t fps = 24;
  int32_t width = 0;  // of the canvas; 0: the first picture's
  int32_t height = 0;
  int32_t antialias = 0;
  int32_t hold = 1;  // how long a frame stands, in 1/fps second
  bool hasTransparent = false;
  uint8_t transparent[3] = {};  // red, green, blue
};

// Builds a cut of one layer picture by picture: a frame for each, a cell for each that differs from all before it.
class Importer {
 public:
  explicit Importer(const ImportSettings& importSettings) : settings(importSettings) {}

  // False, with the one line written, if the picture can't be read or doesn't fit the cut.
  bool Add(const std::string& path);

  // The importer owns the cut.
  Cut* Result() { return &cut; }

 private:
  bool Start(const std::string& path, const Picture& picture);
  // The number of a cell like this one, which is put into the layer if there is none yet; -1 if it is full.
  int32_t CellLike(const PackedImage& image);

  ImportSettings settings;
  Cut cut{0, 0, 24, "", 0};
  Layer* layer = nullptr;
  std::multimap<uint32_t, int32_t> cellsByChecksum;
};

}  // namespace sorvel::console
