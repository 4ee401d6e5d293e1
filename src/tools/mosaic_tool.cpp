#include <algorithm>

#include "foundation/arithmetic.h"
#include "tools/tool.h"

namespace sorvel {

namespace {

constexpr int32_t kSizeStep = 4;
constexpr int32_t kLargestSize = 16;
constexpr Point kNoStart = {-1, -1};

class MosaicTool final : public Tool {
 public:
  MosaicTool() : Tool(PointForm::kSigned) {}

  void End() override { isActive = false; }

 protected:
  void Press(const ToolInput& input) override {
    start = TileCorner(input.point);
    isActive = true;
  }

  void Move(const ToolInput& input) override {
    const Point tile = TileCorner(input.point);
    const Point corner = isActive && HasStart() ? start : tile;
    input.ShowFrame(input.ToWindow(corner, {tile.x + size, tile.y + size}));
  }

  void Release(const ToolInput& input) override {
    if (!isActive) return;
    // A repaint during the drag removed its start.
    if (!HasStart()) {
      input.HideOverlay();
      isActive = false;
      return;
    }
    const Point tile = TileCorner(input.point);
    // The drag goes on, and its frame stands.
    if (tile.x < start.x || tile.y < start.y) return;
    input.HideOverlay();
    const Rect area = {start.x, start.y, tile.x - start.x + size, tile.y - start.y + size};
    CutWindow* const window = input.window;
    window->SaveUndo();
    Point corner = start;
    window->LayerToCut(&corner, 1);
    ComposeMosaic(window, {corner.x, corner.y, area.width, area.height});
    input.cell->Composite(start, &window->view, {corner.x, corner.y, area.width, area.height});
    input.ReportStep(area);
    isActive = false;
  }

  void RightRelease(const ToolInput& input) override {
    if (isActive) return;
    size = size >= kLargestSize ? kSizeStep : size + kSizeStep;
    input.ResizeShownFrame(Saturated(int64_t{size} * input.window->zoomNumerator / input.window->zoomDenominator));
  }

  void Pulse(const ToolInput& input) override {
    start = kNoStart;
    input.HideOverlay();
  }

 private:
  bool HasStart() const { return !(start == kNoStart); }

  // The tile that the point lies in. Remainders have the sign of the coordinate.
  Point TileCorner(Point point) const { return {point.x - point.x % size, point.y - point.y % size}; }

  // Makes the block of the view a mosaic of everything up to the current layer.
  void ComposeMosaic(CutWindow* window, const Rect& block) const {
    IndexedImage& view = window->view;
    Frame* frame = window->CurrentFrame();
    if (frame == nullptr) return;
    view.FillRect(block.x, block.y, block.width, block.height, kTransparent);
    const uint32_t flags = (static_cast<uint32_t>(frame->currentRecord + 1) & kDrawLimitMask) << kDrawLimitShift;
    frame->ComposeFrame(&view, block.x, block.y, block.width, block.height, &flags, nullptr);
    const int32_t lastX = std::min(block.width, SaturatingSubtract(view.width, block.x));
    const int32_t lastY = std::min(block.height, SaturatingSubtract(view.height, block.y));
    for (int32_t j = FirstTile(block.y); j < lastY; j += size) {
      for (int32_t i = FirstTile(block.x); i < lastX; i += size) {
        view.Mosaic(block.x + i, block.y + j, size, size);
      }
    }
  }

  // The offset from `from` of the first tile that may touch the picture.
  int32_t FirstTile(int32_t from) const { return from >= 0 ? 0 : Saturated(-int64_t{from} / size * size); }

  bool isActive = false;
  int32_t size = kSizeStep;  // of a tile, in pixels of the drawing
  Point start = kNoStart;    // in layer coordinates
};

}  // namespace

std::unique_ptr<Tool> MakeMosaicTool() {
  return std::make_unique<MosaicTool>();
}

}  // namespace sorvel
