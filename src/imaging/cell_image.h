#pragma once

#include <algorithm>
#include <cstdint>

#include "imaging/color_table.h"
#include "imaging/pen.h"
#include "imaging/rect.h"

namespace sorvel {

// Flags of CellImage::Composite.
enum CompositeFlag : int32_t {
  kKeyed = 1,  // index 0 of the source never writes
  kPale = 2,   // only lines and darks are drawn, in the pale family
};

struct CompositeOptions {
  int32_t flags = 0;        // of CompositeFlag
  uint32_t destMask = 0;    // protects pixels of the destination
  uint32_t sourceMask = 0;  // leaves out pixels of the source
  Rect* inkBox = nullptr;   // receives what the ink covers in the source
};

class CellImage;

// Is told before the pixels of an image are lost, so that it can keep them.
class CellWatch {
 public:
  // The first change since CellImage::ContentNumber() was asked is about to happen. Must not write to the image.
  virtual void BeforeChange(CellImage* image) = 0;
  // The image is no longer needed. True if the watch takes it over; else it is deleted.
  virtual bool TakeOver(CellImage* image) = 0;

 protected:
  ~CellWatch() = default;
};

// An image of colour indices, and all drawing operations. PackedImage holds indices 0 to 15, IndexedImage 0 to 24.
//
// GetPixel, SetPixel, GetRaw and SetRaw check no bounds; all other operations clip. A pixel outside reads as -1. Bit n
// of a `mask` protects pixels of index n; bit 31 stands for pixels outside. Unless they say otherwise, operations give
// false when nothing is left of their area after clipping, and true otherwise. An outRect may be null; a dirty
// rectangle starts as all zeros and grows.
//
// The order of the virtual operations is fixed. There is no virtual destructor: DestroyImage() deletes an image that is
// known by this type only.
class CellImage {
 public:
  // Searches row y from x towards `end`, to the right if `forward` isn't 0 and to the left otherwise: the column of the
  // first pixel that isn't 0, or `end`. The pixel at `end` isn't tested.
  virtual int32_t FindInk(int32_t x, int32_t y, int32_t end, int32_t forward) = 0;
  // Reads 32 bits (8 pixels) of a PackedImage, or 16 bits (2 pixels) of an IndexedImage.
  virtual uint32_t GetRaw(int32_t x, int32_t y) = 0;
  // Writes the low 16 bits: 4 pixels of a PackedImage, 2 of an IndexedImage.
  virtual void SetRaw(int32_t x, int32_t y, uint32_t value) = 0;
  // Sets every pixel, padding included.
  virtual void Fill(int32_t value) = 0;
  // Fills the area of one colour around a point. Sketch pixels count as part of the area, and shadow boundaries that
  // touch it are filled too. False when nothing happened.
  virtual bool FloodFill(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect);
  // Draws a border on the inside of the area that has the colour of the rectangle's top left pixel. The shape of the
  // pen gives the width. False when nothing happened.
  virtual bool EdgeFill(int32_t x, int32_t y, int32_t width, int32_t height, const PenSpec& pen, uint32_t mask);
  // Swaps a block of this image with one of another. No tool uses it.
  virtual bool Exchange(int32_t dx, int32_t dy, CellImage* other, int32_t sx, int32_t sy, int32_t width,
                        int32_t height);
  // Replaces lines and tones by their sketch colours, and white by `whiteValue`.
  virtual bool ToSketch(int32_t x, int32_t y, int32_t width, int32_t height, int32_t whiteValue, uint32_t mask);
  // Fills a box, whose width and height may be negative. outBox receives the pixels of it that lie in the image.
  virtual bool FillBox(int32_t x, int32_t y, int32_t width, int32_t height, const PenSpec& pen, uint32_t mask,
                       Bounds* outBox);
  virtual int32_t GetPixel(int32_t x, int32_t y) = 0;
  virtual void SetPixel(int32_t x, int32_t y, int32_t value) = 0;
  // Copies a block of another image into this one; a keyed copy applies tone marks to what lies below them. outRect
  // receives the bounding box, in source coordinates, of the pixels that a keyed copy drew, and zeros after any other
  // copy. It is unchanged when the result is false.
  virtual bool Composite(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t width,
                         int32_t height, int32_t flags, uint32_t destMask, uint32_t sourceMask, Rect* outRect);
  // Draws lines and darks of a neighbouring cell as a ghost: variant 0 green, 1 red. False on an image of 16 colours.
  virtual bool Overlay(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t width, int32_t height,
                       int32_t variant);
  // A new image of the same class and size, all 0, which the caller owns. Null if memory runs out.
  virtual CellImage* MakeBlank() = 0;
  // Gives the image a new size. A PackedImage keeps its picture at the top left and grows with `fill`; an
  // IndexedImage is all `fill` afterwards. False if memory runs out; the image is then empty.
  virtual bool Resize(int32_t newWidth, int32_t newHeight, int32_t fill) = 0;
  // Draws the pen's shape around the point. Always true.
  virtual bool Stamp(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect);
  // Draws the outline of a box by four lines; the right and bottom ones run at x + width and y + height.
  virtual bool DrawBox(int32_t x, int32_t y, int32_t width, int32_t height, PenSpec* pen, uint32_t mask, Rect* outRect);

  // The same two with the block of the source as one rectangle.
  bool Composite(Point to, CellImage* source, const Rect& block, const CompositeOptions& options = {}) {
    return Composite(to.x, to.y, source, block.x, block.y, block.width, block.height, options.flags, options.destMask,
                     options.sourceMask, options.inkBox);
  }
  bool Overlay(Point to, CellImage* source, const Rect& block, int32_t variant) {
    return Overlay(to.x, to.y, source, block.x, block.y, block.width, block.height, variant);
  }

  // Lines, curves and rectangles. A solid black pen (colorB 1) draws in line black (8): the call changes *pen for its
  // duration, and sets a colorB of 8 to 1 at its end.
  bool DrawLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec* pen, uint32_t mask, Rect* outRect);
  // Sets all pixels of the rectangle to one index.
  bool FillRect(int32_t x, int32_t y, int32_t width, int32_t height, int32_t value);
  // Cuts a rectangle to the image; false if nothing of it lies inside.
  bool ClipRect(int32_t* x, int32_t* y, int32_t* rectWidth, int32_t* rectHeight) const;
  // Draws with the pen's ink wherever a small image isn't 0. The mask is tested against the values of the source.
  bool StampImage(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                  int32_t blockHeight, const PenSpec& pen, uint32_t mask);
  // Draws the segment from points[1] to points[2] of the cubic curve through four points. Always true.
  bool DrawCurve(const Point (&points)[4], PenSpec* pen, uint32_t mask, Rect* outRect);

  // Regions. Sets the sketch pixels of the rectangle to `value`.
  bool ClearSketch(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t value);
  // Fills the area around a point with a gradient from the tone of startPen there to that of endPen at (endX, endY).
  // False when nothing happened.
  bool GradientFill(int32_t x, int32_t y, const PenSpec& startPen, int32_t endX, int32_t endY, const PenSpec& endPen,
                    uint32_t mask, Rect* outRect);
  // Moves the pixels of a block that aren't 0, `fillValue` or masked, and sets them to `fillValue` where they were.
  void MoveBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t toX, int32_t toY,
                 int32_t fillValue, uint32_t mask);
  // Fills the block with a dither of its average grey. False when it has fewer than 16 pixels.
  bool Mosaic(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight);
  // Mirror a block. A pixel is replaced only if it isn't masked. Always true.
  bool FlipVertical(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask);
  bool FlipHorizontal(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask);
  // Stamps the pen at about one pixel in interval * interval. `interval` is above 0.
  bool RandomDots(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t interval, const PenSpec& pen,
                  uint32_t mask);
  // A grid, and a line, in the sketch colour of the pen. Both change only transparent and sketch pixels.
  bool DrawGrid(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t stepX, int32_t stepY,
                PenSpec pen, uint32_t mask);
  bool DrawSketchLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec pen, Rect* outRect);
  // Derives tone and colours of the pen from the 4 by 4 pixels around the point. False, and no change, when they have
  // more than two colours or all lie outside.
  bool PickPen(int32_t x, int32_t y, PenSpec* pen);

  // Copies all bytes of an image of the same class and size.
  void CopyBits(const CellImage& from);
  // Swaps all bytes of the image with the buffer, which has ByteCount() bytes.
  void SwapBits(uint8_t* buffer);

  // The pixel, or -1 outside.
  int32_t PixelOrOutside(int32_t x, int32_t y) {
    return x < 0 || y < 0 || x >= width || y >= height ? -1 : GetPixel(x, y);
  }

  // Pixels x to x + count - 1 of row y as one byte each. The run lies inside the image.
  void ReadRow(int32_t x, int32_t y, int32_t count, uint8_t* pixels) const;
  void WriteRow(int32_t x, int32_t y, int32_t count, const uint8_t* pixels);

  // Size of the pixels in bytes, padding included.
  int32_t ByteCount() const { return pitch * height; }

  // The rows of a large image that may hold something other than 0; of other images all rows. The system provides the
  // memory of the others as it is first touched, so that an empty picture of any size takes next to none. Who writes to
  // `bits` says so first.
  void UseRows(int32_t y, int32_t count) {
    if (contentNumber != 0) EndContent();
    usedTop = std::min(usedTop, y);
    usedBottom = std::max(usedBottom, y + count);
  }
  bool IsUsedRow(int32_t y) const { return y >= usedTop && y < usedBottom; }
  int32_t UsedTop() const { return usedTop; }
  int32_t UsedBottom() const { return usedBottom; }

  // A number, above 0, for what the pixels are. It stays until somebody writes to them, even if that changes none, and
  // no other image ever has it: who remembers it need not look at the pixels again. Main thread only.
  uint64_t ContentNumber() {
    if (contentNumber == 0) contentNumber = ++lastContentNumber;
    return contentNumber;
  }
  // The pixels are again what they were when they had this number.
  void RestoreContentNumber(uint64_t number) { contentNumber = number; }

  int32_t width = 0;
  int32_t height = 0;
  int32_t colors;              // 16 for a PackedImage, 256 for an IndexedImage
  uint8_t* bits = nullptr;     // first pixel of the top row
  int32_t pitch = 0;           // bytes from row to row
  CellWatch* watch = nullptr;  // not owned

 protected:
  explicit CellImage(int32_t colorCount) : colors(colorCount) {}
  ~CellImage() = default;

  // The pixels are about to change or to go.
  void EndContent() {
    if (watch != nullptr && contentNumber != 0) watch->BeforeChange(this);
    contentNumber = 0;
  }
  // Sets every byte of `bits`.
  void FillRows(int32_t byte);
  // To be called when all pixels are 0.
  void ForgetUsedRows() {
    const bool isLarge = ByteCount() >= kLargeBytes;
    usedTop = isLarge ? height : 0;
    usedBottom = isLarge ? 0 : height;
  }

  int32_t usedTop = 0;
  int32_t usedBottom = 0;

 private:
  static constexpr int32_t kLargeBytes = 1 << 24;
  static uint64_t lastContentNumber;

  uint64_t contentNumber = 0;  // 0 once the pixels have changed
};

// Whether a mask protects pixels of this value.
inline bool IsMasked(uint32_t mask, int32_t value) {
  return (mask >> (value & 31) & 1) != 0;
}

// Lightens (delta > 0) or darkens the tone of a tone, line or pale pixel, and gives it as an index of the tone family;
// 0 for any other pixel.
int32_t AdjustTone(int32_t value, int32_t delta);

// Clips a block that is copied between two images of the given sizes. False if nothing is left.
bool ClipBlock(int32_t* dx, int32_t* dy, int32_t* sx, int32_t* sy, int32_t* width, int32_t* height,
               const CellImage& destination, const CellImage& source);

// Extends a dirty rectangle to cover a stamp at the point. A side that moves leaves a margin of one pixel.
void GrowRect(Rect* rect, int32_t x, int32_t y);

// Deletes an image that was made with new, unless its watch takes it over. Null is allowed.
void DestroyImage(CellImage* image);

}  // namespace sorvel
