#pragma once

#include "imaging/cell_image.h"
#include "imaging/pixel_block.h"

namespace sorvel {

// Four bits a pixel, even columns in the high nibble: the image of a cell, and the program's own clipboard. Owns its
// pixels. Rows are padded to a multiple of 4 bytes, and 16 bytes of 0 follow the last row.
class PackedImage final : public CellImage {
 public:
  PackedImage() : CellImage(16) {}
  PackedImage(const PackedImage&) = delete;
  PackedImage& operator=(const PackedImage&) = delete;
  ~PackedImage();

  int32_t FindInk(int32_t x, int32_t y, int32_t end, int32_t forward) override;
  uint32_t GetRaw(int32_t x, int32_t y) override;
  void SetRaw(int32_t x, int32_t y, uint32_t value) override;
  void Fill(int32_t value) override;
  int32_t GetPixel(int32_t x, int32_t y) override;
  void SetPixel(int32_t x, int32_t y, int32_t value) override;
  CellImage* MakeBlank() override;
  bool Resize(int32_t newWidth, int32_t newHeight, int32_t fill) override;

  // As Resize() with an empty picture, all 0, with pixels from the block if it has some. The block may be null.
  bool ResizeWithin(PixelBlock* pixels, int32_t newWidth, int32_t newHeight);

 private:
  void FreeBits(uint8_t* oldBits, PixelBlock* oldBlock);

  PixelBlock* block = nullptr;  // that the pixels are a part of
};

}  // namespace sorvel
