#include "cutwindow/clipboard.h"

#include <algorithm>
#include <cstring>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "cutwindow/wait_cursor.h"
#include "foundation/bitmap_head.h"
#include "foundation/buffer.h"
#include "imaging/tone_conversion.h"
#include "platform/clipboard.h"

namespace sorvel {

uint32_t clipTransparentColor = 0x0000FF00;
bool clipTransparent = false;

namespace {

// The program's own clipboard: a picture of colour indices and where it came from.
struct ClipboardBlock {
  PackedImage image;
  const Cut* owner = nullptr;  // the cut that it was copied from; may be gone, so it is only compared
  Point place;                 // of its left top corner, in cut coordinates
};

ClipboardBlock& Block() {
  static ClipboardBlock block;
  return block;
}

constexpr int32_t kDibColors = 16;
constexpr int32_t kDibStart = kBitmapInfoHeadBytes + kDibColors * 4;

// A system picture is read in tiles of at most this many pixels a side.
constexpr int32_t kTileSide = 200;

// Converts a tile of a picture, 3 bytes a pixel with blue first, to dithered grey tones of ink. The dither pattern is
// aligned to the whole picture, so that tiles have no seams.
void TakeTile(CellImage* image, const Rect& area, const uint8_t* pixels) {
  for (int32_t y = area.y; y < area.y + area.height; ++y) {
    for (int32_t x = area.x; x < area.x + area.width; ++x, pixels += 3) {
      const uint32_t color = static_cast<uint32_t>(pixels[2] | pixels[1] << 8 | pixels[0] << 16);
      const bool isTransparent = clipTransparent && color == clipTransparentColor;
      const int32_t ink = isTransparent ? kTransparent : ToneAt(LevelOfColor(pixels[2], pixels[1], pixels[0]), x, y);
      if (!IsMasked(maskFlags, image->GetPixel(x, y))) image->SetPixel(x, y, ink);
    }
  }
}

}  // namespace

CellImage* ClipboardImage() {
  return &Block().image;
}

void ResetClipboardBlock() {
  Block().image.Resize(0, 0, 0);
  Block().owner = nullptr;
  Block().place = Point{};
  clipTransparent = false;
  clipTransparentColor = 0x0000FF00;
}

bool CutWindow::CopyCellToClipboard() {
  const CellImage* cell = CurrentCell();
  if (cell == nullptr) return false;
  const size_t size = static_cast<size_t>(kDibStart) + static_cast<size_t>(cell->ByteCount());
  Buffer<uint8_t> data;
  if (!data.AllocateZeroed(size) || !platform::OpenClipboard(window)) return false;
  uint8_t head[kBitmapInfoHeadBytes];
  PutBitmapInfo(head, {cell->width, cell->height, 4, 0, kDibColors});
  std::memcpy(data.Data(), head, sizeof(head));
  // The built-in colours, whatever a colour file says.
  std::memcpy(data.Data() + sizeof(head), DefaultColors.data(), static_cast<size_t>(kDibColors) * sizeof(ColorEntry));
  uint8_t* to = data.Data() + kDibStart;
  for (int32_t row = cell->height - 1; row >= 0; --row, to += cell->pitch) {
    std::memcpy(to, cell->bits + static_cast<ptrdiff_t>(row) * cell->pitch, static_cast<size_t>(cell->pitch));
  }
  platform::PutClipboardDib(data.Data(), size);
  platform::CloseClipboard();
  return true;
}

bool CutWindow::StoreBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask) {
  int32_t cellX = 0;
  int32_t cellY = 0;
  CellImage* cell = CurrentCell(&cellX, &cellY);
  ClipboardBlock& block = Block();
  if (cell == nullptr || blockWidth <= 0 || blockHeight <= 0 ||
      !block.image.Resize(blockWidth, blockHeight, kTransparent)) {
    return false;
  }
  // A resize keeps what was there before.
  std::memset(block.image.bits, 0, static_cast<size_t>(block.image.ByteCount()));
  block.image.Composite({0, 0}, cell, {x, y, blockWidth, blockHeight}, {.sourceMask = mask});
  block.owner = this;
  block.place = {cellX + x, cellY + y};
  return true;
}

bool CutWindow::PlaceBlock(uint32_t mask, Rect* placed) {
  int32_t cellX = 0;
  int32_t cellY = 0;
  CellImage* cell = CurrentCell(&cellX, &cellY);
  ClipboardBlock& block = Block();
  if (cell == nullptr || block.image.width == 0 || block.image.height == 0) return false;
  Point target;
  if (block.owner == this) target = {block.place.x - cellX, block.place.y - cellY};
  *placed = {target.x, target.y, block.image.width, block.image.height};
  cell->Composite(target, &block.image, {0, 0, placed->width, placed->height}, {.flags = kKeyed, .destMask = mask});
  MarkImages();
  return true;
}

void CutWindow::PasteBuffer() {
  const PackedImage& image = Block().image;
  if (image.width == 0 || image.height == 0 || !SaveUndo()) return;
  PlaceBlock(maskFlags, &undoRect);
  Pulse();
  Point corners[2] = {{undoRect.x, undoRect.y}, {undoRect.x + undoRect.width, undoRect.y + undoRect.height}};
  LayerToCut(corners, 2);
  RepaintArea(corners[0].x, corners[0].y, corners[1].x - corners[0].x, corners[1].y - corners[0].y, true);
  CutToWindow(corners, 2);
  const Bounds frame = {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
  // The pulses of a tool change repaint, and a repaint ends the selection. So the tool changes first.
  host->SendCommand(kToolAreaSelect);
  platform::DeviceContext* context = platform::BeginDrawing(window);
  platform::InvertFrame(context, frame);
  platform::EndDrawing(window, context);
  selection = frame;
  viewOptions |= kFloatingPaste;
}

bool CutWindow::PasteClipboardImage() {
  int32_t cellX = 0;
  int32_t cellY = 0;
  Buffer<uint8_t> tile;
  if (CurrentCell(&cellX, &cellY) == nullptr || !platform::HasClipboardPicture() ||
      !tile.Allocate(kTileSide * kTileSide * 3) || !platform::OpenClipboard(window)) {
    return false;
  }
  Rect size;
  platform::ClipboardPicture* picture = platform::TakeClipboardPicture(&size.width, &size.height);
  ClipboardBlock& block = Block();
  if (picture != nullptr && block.image.Resize(size.width, size.height, kTransparent)) {
    const WaitCursor wait;
    // Quirk 20. The owner stays: the picture lands at this place only in the cut that a block was stored from last.
    block.place = {cellX, cellY};
    undoRect = size;
    for (int32_t x = 0; x < size.width; x += kTileSide) {
      for (int32_t y = 0; y < size.height; y += kTileSide) {
        const Rect area = {x, y, std::min(kTileSide, size.width - x), std::min(kTileSide, size.height - y)};
        if (platform::ReadClipboardPicture(picture, area.x, area.y, area.width, area.height, tile.Data())) {
          TakeTile(&block.image, area, tile.Data());
        }
      }
    }
    PasteBuffer();
  }
  if (picture != nullptr) platform::ReleaseClipboardPicture(picture);
  platform::CloseClipboard();
  return true;
}

}  // namespace sorvel
