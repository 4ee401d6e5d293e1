#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "document/cut.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"

namespace sorvel {

// A cut as a save would write it, taken without disturbing it: Take() is quick, since it copies only cells that changed
// since the last time, and Write() does the slow work and may run on another thread. No two of these calls may overlap.
class CutSnapshot {
 public:
  enum class Result { kSame, kMore, kTaken, kNoMemory };
  static constexpr int64_t kNoLimit = INT64_MAX;

  // Takes the cut's present state; its marks and the cursors of its lists stay. At most about so many bytes of changed
  // cells are copied: kMore means that there are others, and that the call is to be repeated, with the state that the
  // cut then has. kSame means that the state is what was taken last. Without memory nothing is held any more.
  Result Take(Cut* cut, int64_t limit = kNoLimit);

  // Writes the bytes that Cut::Save() would have written at the time of Take(). False without memory, or if nothing is
  // held.
  bool Write(ByteStream* stream);

 private:
  // The pixels of a cell until they are encoded; then its bytes in the file.
  struct Cell {
    Cell() = default;
    Cell(const Cell&) = delete;
    Cell& operator=(const Cell&) = delete;
    ~Cell() { DestroyImage(image); }

    uint64_t number = 0;         // of its content
    CellImage* image = nullptr;  // owned
    Buffer<uint8_t> bytes;
    int32_t size = 0;
  };
  // Where a layer's cells belong.
  struct LayerPart {
    size_t offset;  // in `frame`
    size_t cellCount;
  };

  static std::shared_ptr<Cell> CopyOf(CellImage* image);
  static bool Encode(Cell* cell);

  std::string frame;  // the file without its cells
  std::vector<LayerPart> layers;
  std::vector<std::shared_ptr<Cell>> cells;  // of all layers
  std::vector<std::shared_ptr<Cell>> ahead;  // copied by calls that gave kMore
};

}  // namespace sorvel
