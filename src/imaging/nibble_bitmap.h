#pragma once

#include <cstdint>

#include "imaging/cell_image.h"
#include "imaging/plane_bitmap.h"
#include "imaging/rect.h"
#include "platform/bitmaps.h"

namespace sorvel {

// The display buffer of the player: two pictures in the nibbles of one bitmap of 8 bits a pixel, rows from top to
// bottom, each rounded up to 4 bytes. Pixels and the 16 bytes behind the last row start as 0.
class NibbleBitmap final : public PlaneBitmap {
 public:
  NibbleBitmap() = default;
  NibbleBitmap(const NibbleBitmap&) = delete;
  NibbleBitmap& operator=(const NibbleBitmap&) = delete;
  ~NibbleBitmap();

  int32_t SetBaseColor(int32_t index, int32_t red, int32_t green, int32_t blue) override;
  int32_t GetBaseColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) override;
  int32_t GetFrontColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) override;
  int32_t SetFrontColor(int32_t index, int32_t red, int32_t green, int32_t blue) override;
  int32_t GetBackColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) override;
  int32_t SetBackColor(int32_t index, int32_t red, int32_t green, int32_t blue) override;
  int32_t GetMixColor(int32_t a, int32_t b, int32_t* red, int32_t* green, int32_t* blue) override;
  int32_t SetMixColor(int32_t front, int32_t back, int32_t red, int32_t green, int32_t blue) override;
  void SaveBits() override;
  void RestoreBits() override;
  void FillBits(int32_t value) override;
  int32_t GetFront(int32_t x, int32_t y) override;
  int32_t GetBack(int32_t x, int32_t y) override;
  void SetFront(int32_t x, int32_t y, int32_t value) override;
  int32_t Create(int32_t newWidth, int32_t newHeight) override;
  uint8_t* GetFront4(uint8_t (*out)[4], int32_t x, int32_t y) override;
  uint8_t* GetBack4(uint8_t (*out)[4], int32_t x, int32_t y) override;
  void SetFront4(int32_t x, int32_t y, const uint8_t (&bytes)[4]) override;

  // Takes over both planes, with what lies around the pixels, from a bitmap of the same size.
  void CopyPlanes(const NibbleBitmap& from);

  // Copies the back numbers of the rectangle, cut to the picture, to the front plane.
  void CopyBackToFront(int32_t x, int32_t y, int32_t w, int32_t h);

  // The same for the bounding box of the two rectangles, except `inner` itself. An empty `outer` counts as a point at
  // its left top corner.
  void CopyBackToFrontAround(const Rect& inner, const Rect& outer);

  // Fills the front plane from a composed image. A pixel is the sum of the grey steps, 0 to 3, of scale * scale pixels;
  // at scale 4 the sum is dithered down to a quarter. `area`, in pixels of this picture, limits the work; null is all
  // of it. outBox, if not null, receives the bounding box of the pixels that differ from the back plane, extended to an
  // even x; four zeros if there are none, or if they all lie in column 0 or all in row 0.
  void ReduceFrom(const CellImage& composition, Rect* outBox, int32_t scale, const Rect* area);

  platform::BitmapHandle bitmapHandle = nullptr;
  uint8_t* bits = nullptr;       // first pixel of the top row, part of the bitmap
  uint8_t* savedBits = nullptr;  // of imageSize bytes, owned
  platform::ColorEntry baseColors[16];
  platform::ColorEntry planeColors[2][16];  // of the low and of the high nibble
  platform::ColorEntry mixColors[256];      // by the value of the pixel's byte
  int32_t imageSize = 0;                    // pitch * height
  int32_t pitch = 0;

 private:
  void Destroy();
};

}  // namespace sorvel
