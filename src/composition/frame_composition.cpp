#include "document/cut.h"
#include "document/frame.h"

namespace sorvel {

namespace {

// The area that a frame is composed into, in cut coordinates; draws single records into it.
struct Placement {
  CellImage* destination;
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;

  void Draw(CellImage* image, int32_t imageX, int32_t imageY, int32_t flags, Rect* inkBox) const {
    destination->Composite({x, y}, image, {x - imageX, y - imageY, width, height}, {.flags = flags, .inkBox = inkBox});
  }

  void DrawGhost(CellImage* image, int32_t imageX, int32_t imageY, int32_t variant) const {
    if (image != nullptr) destination->Overlay({x, y}, image, {x - imageX, y - imageY, width, height}, variant);
  }
};

}  // namespace

bool Frame::ComposeFrame(CellImage* destination, int32_t areaX, int32_t areaY, int32_t areaWidth, int32_t areaHeight,
                         const uint32_t* flags, Rect* inkBoxes) {
  const uint32_t view = *flags;
  const int32_t drawLimit = static_cast<int32_t>(view >> kDrawLimitShift & kDrawLimitMask);
  const int32_t count = drawLimit != 0 ? drawLimit : records.Count();
  const Placement area = {destination, areaX, areaY, areaWidth, areaHeight};

  const auto drawRecord = [&](int32_t index, bool withGhosts, int32_t rule, Rect* inkBox, Rect* emptyBox) {
    int32_t cellX = 0;
    int32_t cellY = 0;
    CellImage* image = VisibleCell(index, &cellX, &cellY);
    if (image == nullptr) {
      if (emptyBox != nullptr) *emptyBox = Rect{};
      return;
    }
    if (withGhosts) {
      if ((view & kOnionPrevious) != 0) area.DrawGhost(PreviousCell(index), cellX, cellY, 0);
      if ((view & kOnionNext) != 0) area.DrawGhost(NextCell(index), cellX, cellY, 1);
    }
    area.Draw(image, cellX, cellY, rule, inkBox);
  };
  const auto boxAt = [inkBoxes](int32_t index) { return inkBoxes != nullptr ? inkBoxes + index : nullptr; };

  if ((view & kCurrentCellOnly) != 0) {
    drawRecord(currentRecord, true, kKeyed, boxAt(0), boxAt(0));
  } else if ((view & kDimOthers) != 0) {
    for (int32_t i = 0; i < count; ++i) {
      if (i != currentRecord) drawRecord(i, false, kKeyed | kPale, boxAt(i), boxAt(i));
    }
    // The box of the current record comes behind those of the others. No caller asks for boxes in this display.
    drawRecord(currentRecord, true, kKeyed, boxAt(count), currentRecord >= 0 ? boxAt(currentRecord) : nullptr);
  } else {
    for (int32_t i = 0; i < count; ++i) drawRecord(i, i == currentRecord, kKeyed, boxAt(i), boxAt(i));
  }
  return true;
}

}  // namespace sorvel
