// A second, deliberately plain implementation of the file formats, the stream encoder and the player. Tests compare the
// product's output with it byte by byte, so nothing here is shared with the product and nothing is optimised.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace reference {

using Bytes = std::vector<std::uint8_t>;

// Four bits a pixel; an even x lies in the high nibble. Padding nibbles and bytes of a row are ordinary memory: the
// cell writer looks at them.
struct Cell {
  int width = 0;
  int height = 0;
  int pitch = 0;
  Bytes bits;

  Cell() = default;
  Cell(int cellWidth, int cellHeight, std::uint8_t fill = 0);
  std::uint8_t Get(int x, int y) const;
  void Set(int x, int y, std::uint8_t value);
};

struct LayerData {
  std::optional<std::string> name;
  int width = 0;
  int height = 0;
  std::uint32_t followFrame = 0;
  std::vector<Cell> cells;
};

// A negative cell is blank and holds the complement of the cell number.
struct RecordData {
  int layer = 0;
  int cell = 0;
  int x = 0;
  int y = 0;
};

struct FrameData {
  int x = 0;
  int y = 0;
  int time = 1;
  int loop = 1;
  int brightness = 50;  // stored form: negative on a key frame
  std::string comment;
  std::vector<RecordData> records;
  int currentRecord = -1;
};

struct CutData {
  int width = 0;
  int height = 0;
  int frameWidth = 0;
  int frameHeight = 0;
  int fps = 0;
  std::string credit;
  int antialias = 0;
  std::vector<LayerData> layers;
  std::vector<FrameData> frames;
  int currentFrame = -1;
};

Bytes WriteLayerBlock(const LayerData& layer);
Bytes WriteCut(const CutData& cut);
Bytes WriteLayerFile(const LayerData& layer);

// For well-formed files. False, with nothing touched, on a foreign magic.
bool ReadCut(const Bytes& file, CutData* cut);

// The compiled stream of frames first to last. Empty, with *refused set, when the range or the antialias value is
// refused. Of viewFlags only currentCellOnly (bit 2) has an effect.
Bytes EncodeCut(const CutData& cut, int first, int last, bool* refused, std::uint32_t viewFlags = 0);

// The bitmap file of one frame, made on a fresh plane bitmap. Of viewFlags only currentCellOnly (bit 2) has an effect.
Bytes ExportFrame(const CutData& cut, int frameIndex, std::uint32_t viewFlags = 0);

// width * height colour roles, composed over role 0. record -1 leaves the frame's own currentRecord.
Bytes ComposeView(const CutData& cut, int frameIndex, int record, std::uint32_t viewFlags);

Bytes WriteContainer(const std::string& title, const std::string& author, int width, int height,
                     const std::vector<Bytes>& compiledStreams);

// The player's values after one tick.
struct Tick {
  int tick = 0;
  bool painted = false;
  int delay = 0;  // of the running timer in milliseconds, 0 without one
  int ticks = 0;
  int nextTime = 0;
  int viewLeft = 0;
  int viewTop = 0;
  std::array<int, 4> viewport{};
  int outputWidth = 0;
  int outputHeight = 0;
  Bytes picture;  // outputWidth * outputHeight greys, only when painted
};

// At most this many ticks; fewer when the stream ends (a still, a frame of time 0, a rate that no timer can run at).
std::vector<Tick> Play(const Bytes& stream, int ticks);

}  // namespace reference
