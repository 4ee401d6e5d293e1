#pragma once

#include <cstdint>

#include "foundation/cursor_list.h"
#include "imaging/cell_image.h"

namespace sorvel {

// What a layer without a name is listed and written as.
extern const char* const kUntitledLayer;

// A numbered stack of drawings, its cells, all of one size. A layer of a cut holds at least one cell. Frames refer to
// cells by number; the records of frames are put right by the cut when numbers shift.
class Layer {
 public:
  // `layerName` may be null and is copied. `prototypeImage`, not owned and possibly null, gives the class of new
  // cells; without one they are PackedImages.
  Layer(int32_t layerWidth, int32_t layerHeight, const char* layerName, CellImage* prototypeImage, uint32_t follow);
  Layer(const Layer&) = delete;
  Layer& operator=(const Layer&) = delete;
  ~Layer();

  // Replaces the name by a private copy, or by null.
  void SetName(const char* text);

  // The name, or what stands for a null one.
  const char* ShownName() const { return name != nullptr ? name : kUntitledLayer; }

  // Null for a number that the layer doesn't have. The layer owns the image.
  CellImage* CellAt(int32_t index) { return cells.At(index); }

  // Put a cell of the layer's size, all `fill`, directly behind or ahead of `position`; an empty layer takes any
  // position. `image`, if given, becomes the cell and the layer's own. False, with nothing changed, for a position
  // that doesn't exist, or when there is no memory for a new cell. The list's cursor is left on the new cell.
  bool AddCell(int32_t position, int32_t fill, CellImage* image);
  bool InsertCell(int32_t position, int32_t fill, CellImage* image);

  // Puts a cell without pixels behind all others, the cursor on it, for a caller that resizes it before anybody else
  // looks at it. Null without memory.
  CellImage* AddEmptyCell();

  // Removes and destroys a cell; false for a bad number.
  bool DeleteCell(int32_t index);

  // Gives the layer and all its cells another size. False, with nothing changed, for a size that no cell can have.
  bool Resize(int32_t newWidth, int32_t newHeight, int32_t fill);

  // No cells, no size, no name: the state before a layer is read from a file.
  void Clear();

  uint64_t id;                   // above 0; no other layer of the program ever had it
  CursorList<CellImage*> cells;  // owned; the index is the cell number
  int32_t width;
  int32_t height;
  char* name = nullptr;  // Shift JIS; null or a private copy, set by SetName
  CellImage* prototype;
  uint32_t followFrame;  // the position of this layer's records is relative to the frame's position

 private:
  CellImage* MakeCell() const;
  bool PlaceCell(int32_t position, int32_t fill, CellImage* image, bool behind);
};

}  // namespace sorvel
