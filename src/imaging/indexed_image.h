#pragma once

#include "imaging/cell_image.h"

namespace sorvel {

// Eight bits a pixel in a bitmap of the platform, which it owns; frames are composed into it. Resize() gives the bitmap
// the current colour table. Rows are padded to a multiple of 4 bytes.
class IndexedImage final : public CellImage {
 public:
  IndexedImage() : CellImage(256) {}
  IndexedImage(const IndexedImage&) = delete;
  IndexedImage& operator=(const IndexedImage&) = delete;
  ~IndexedImage();

  int32_t FindInk(int32_t x, int32_t y, int32_t end, int32_t forward) override;
  uint32_t GetRaw(int32_t x, int32_t y) override;
  void SetRaw(int32_t x, int32_t y, uint32_t value) override;
  void Fill(int32_t value) override;
  int32_t GetPixel(int32_t x, int32_t y) override;
  void SetPixel(int32_t x, int32_t y, int32_t value) override;
  CellImage* MakeBlank() override;
  bool Resize(int32_t newWidth, int32_t newHeight, int32_t fill) override;

  platform::BitmapHandle bitmapHandle = nullptr;
};

}  // namespace sorvel
