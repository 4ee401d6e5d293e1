#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "console/picture_reader.h"
#include "document/cut.h"
#include "foundation/progress.h"
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

  // Several threads read them. `progress` is told as each is added. False, with the one line written, if a picture
  // can't be read or doesn't fit the cut.
  bool Add(const std::vector<std::string>& paths, const ProgressFunction& progress);

  // The importer owns the cut.
  Cut* Result() { return &cut; }

 private:
  // A picture as a cell of the cut.
  struct Drawing {
    std::string path;
    PackedImage image;
    uint32_t checksum = 0;
    bool isReady = false;
  };

  bool AddAlone(const std::string& path);
  bool AddDrawing(const Drawing& drawing);
  bool Start(const std::string& path, const Picture& picture);
  // Needs nothing but the settings, the size of the cut and the drawing, and may run on any thread. False without
  // memory.
  bool Draw(const Picture& picture, Drawing* drawing) const;
  // The number of a cell like this one, which is put into the layer if there is none yet; -1 if it is full.
  int32_t CellLike(const Drawing& drawing);

  ImportSettings settings;
  Cut cut{0, 0, 24, "", 0};
  Layer* layer = nullptr;
  std::multimap<uint32_t, int32_t> cellsByChecksum;
};

}  // namespace sorvel::console
