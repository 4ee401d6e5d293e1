#pragma once

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

// The common interface of all raster work. A pixel is a colour index; PackedImage holds 0 to 15, IndexedImage 0 to 24.
//
// GetPixel, SetPixel, GetRaw and SetRaw check no bounds. Everything above them clips, and a read outside counts as
// the value -1, which a mask sees as bit 31. A mask is 32 bits; bit n set protects pixels of index n.
// Operations give false for an area that is empty after clipping, and true otherwise, unless told differently.
// An outRect may be null. As a dirty rectangle it starts as all zeros.
//
// The order of the virtual operations is a contract. There is no virtual destructor: an owner that holds an image by
// this type lets go of it with DestroyImage().
class CellImage {
 public:
  // The first x of row y, going from x towards `end` (upwards when `forward` isn't 0) whose pixel isn't 0; `end`,
  // which is not looked at itself, if there is none.
  virtual int32_t FindInk(int32_t x, int32_t y, int32_t end, int32_t forward) = 0;
  // Reads twice what SetRaw writes: 32 bits (8 pixels) on a PackedImage, 16 bits (2 pixels) on an IndexedImage.
  virtual uint32_t GetRaw(int32_t x, int32_t y) = 0;
  // Writes the low 16 bits: 4 pixels on a PackedImage, 2 on an IndexedImage.
  virtual void SetRaw(int32_t x, int32_t y, uint32_t value) = 0;
  // Sets every pixel, padding included.
  virtual void Fill(int32_t value) = 0;
  // Fills the area around a point with ink. It flows across sketch pixels, stops at all other colours and takes
  // shadow boundaries that it touches with it. False when nothing happened.
  virtual bool FloodFill(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect);
  // Draws a border inward along the boundary of the colour at the rectangle's top left corner. False when nothing
  // happened.
  virtual bool EdgeFill(int32_t x, int32_t y, int32_t width, int32_t height, const PenSpec& pen, uint32_t mask);
  // Swaps a block of this image with one of another.
  virtual bool Exchange(int32_t dx, int32_t dy, CellImage* other, int32_t sx, int32_t sy, int32_t width,
                        int32_t height);
  // Turns ink into underdrawing; white becomes `whiteValue`.
  virtual bool ToSketch(int32_t x, int32_t y, int32_t width, int32_t height, int32_t whiteValue, uint32_t mask);
  // Fills a box, whose width and height may be negative. outBox receives left, top, right, bottom in its four fields.
  virtual bool FillBox(int32_t x, int32_t y, int32_t width, int32_t height, const PenSpec& pen, uint32_t mask,
                       Rect* outBox);
  virtual int32_t GetPixel(int32_t x, int32_t y) = 0;
  virtual void SetPixel(int32_t x, int32_t y, int32_t value) = 0;
  // Copies a block of another image into this one by the rules of the roles. outRect receives the box of the ink in
  // source coordinates after a keyed copy, and zeros after a plain one; it stays untouched when the result is false.
  virtual bool Composite(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t width,
                         int32_t height, int32_t flags, uint32_t destMask, uint32_t sourceMask, Rect* outRect);
  // Draws lines and darks of a neighbouring cell as a ghost: variant 0 green, 1 red. False on an image of 16 colours.
  virtual bool Overlay(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t width, int32_t height,
                       int32_t variant);
  // A new image of the same class and size, all 0. The caller owns it. Null if there is no memory for it.
  virtual CellImage* MakeBlank() = 0;
  // Gives the image a new size. A PackedImage keeps its picture at the top left and grows with `fill`; an
  // IndexedImage is all `fill` afterwards. False if there is no memory for it; the image is then empty.
  virtual bool Resize(int32_t newWidth, int32_t newHeight, int32_t fill) = 0;
  // Prints the pen's shape around the point. Always true.
  virtual bool Stamp(int32_t x, int32_t y, const PenSpec& pen, uint32_t mask, Rect* outRect);
  // Draws the outline of a box by four lines; the right and bottom ones run at x + width and y + height.
  virtual bool DrawBox(int32_t x, int32_t y, int32_t width, int32_t height, PenSpec* pen, uint32_t mask, Rect* outRect);

  // Lines, curves and rectangles. A solid pen of black draws line black, for which the caller's pen is changed during
  // the call; at its end a colorB of 8 is 1.
  bool DrawLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec* pen, uint32_t mask, Rect* outRect);
  // Writes one index without regard to a mask.
  bool FillRect(int32_t x, int32_t y, int32_t width, int32_t height, int32_t value);
  // Cuts a rectangle to the image; false if nothing of it lies inside.
  bool ClipRect(int32_t* x, int32_t* y, int32_t* rectWidth, int32_t* rectHeight) const;
  // Paints the pixels of a small image that aren't 0 with ink. The mask is tested against the source's values.
  bool StampImage(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                  int32_t blockHeight, const PenSpec& pen, uint32_t mask);
  // Draws the middle segment, from points[1] to points[2], of the cubic through four points. Always true.
  bool DrawCurve(const Point (&points)[4], PenSpec* pen, uint32_t mask, Rect* outRect);

  // Whole regions. Sketch pixels within the rectangle become `value`, regardless of any mask.
  bool ClearSketch(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, int32_t value);
  // Fills the area around a point with a run of tones from one point to another. False when nothing happened.
  bool GradientFill(int32_t x, int32_t y, const PenSpec& startPen, int32_t endX, int32_t endY, const PenSpec& endPen,
                    uint32_t mask, Rect* outRect);
  // Carries the ink of a block to another place in the image and leaves `fillValue` behind.
  void MoveBlock(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t toX, int32_t toY,
                 int32_t fillValue, uint32_t mask);
  // Fills the block with its own average grey as a dither. False when it has fewer than 16 pixels.
  bool Mosaic(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight);
  // Mirror a block; a pixel goes over only where the value that it replaces isn't masked. Always true.
  bool FlipVertical(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask);
  bool FlipHorizontal(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, uint32_t mask);
  // Stamps the pen at about one pixel in interval * interval. `interval` is above 0.
  bool RandomDots(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t interval, const PenSpec& pen,
                  uint32_t mask);
  // A grid, and a line, in the sketch colours of the pen; both touch nothing but transparent and sketch pixels.
  bool DrawGrid(int32_t x, int32_t y, int32_t blockWidth, int32_t blockHeight, int32_t stepX, int32_t stepY,
                PenSpec pen, uint32_t mask);
  bool DrawSketchLine(int32_t x0, int32_t y0, int32_t x1, int32_t y1, PenSpec pen, Rect* outRect);
  // Reads the pen that drew a spot out of the 4 by 4 pixels around it. False, and no change, when the spot has more
  // than two colours or lies outside.
  bool PickPen(int32_t x, int32_t y, PenSpec* pen);

  // Exchanges every byte of the image with the buffer, which has ByteCount() bytes: one call undoes, the next redoes.
  void SwapBits(uint8_t* buffer);

  // The pixel, or -1 outside.
  int32_t PixelOrOutside(int32_t x, int32_t y) {
    return x < 0 || y < 0 || x >= width || y >= height ? -1 : GetPixel(x, y);
  }

  // Pixels x to x + count - 1 of row y as one byte each. The run lies inside the image.
  void ReadRow(int32_t x, int32_t y, int32_t count, uint8_t* pixels) const;
  void WriteRow(int32_t x, int32_t y, int32_t count, const uint8_t* pixels);

  // Size of the byte image in bytes.
  int32_t ByteCount() const { return pitch * height; }

  int32_t width = 0;
  int32_t height = 0;
  int32_t colors;           // 16 for a PackedImage, 256 for an IndexedImage
  uint8_t* bits = nullptr;  // first pixel of the top row
  int32_t pitch = 0;        // bytes from row to row

 protected:
  explicit CellImage(int32_t colorCount) : colors(colorCount) {}
  ~CellImage() = default;
};

// Whether a mask protects pixels of this value.
inline bool IsMasked(uint32_t mask, int32_t value) {
  return (mask >> (value & 31) & 1) != 0;
}

// The tone of the scale that a pixel belongs to, moved by delta and put back as an index of the tone family; 0 for a
// pixel that belongs to no scale.
int32_t AdjustTone(int32_t value, int32_t delta);

// Clips a block that is copied between two images of the given sizes. False if nothing is left.
bool ClipBlock(int32_t* dx, int32_t* dy, int32_t* sx, int32_t* sy, int32_t* width, int32_t* height,
               const CellImage& destination, const CellImage& source);

// Extends a dirty rectangle by the footprint of a stamp at the point, with one pixel to spare.
void GrowRect(Rect* rect, int32_t x, int32_t y);

// Destroys an image that was made on the heap. Null is allowed.
void DestroyImage(CellImage* image);

}  // namespace sorvel
