#include "imaging/indexed_image.h"

#include <cstring>

namespace sorvel {

IndexedImage::~IndexedImage() {
  platform::DeleteBitmap(bitmapHandle);
}

int32_t IndexedImage::FindInk(int32_t x, int32_t y, int32_t end, int32_t forward) {
  const uint8_t* row = bits + y * pitch;
  uint64_t eight = 0;
  if (forward != 0) {
    while (end - x >= 8) {
      std::memcpy(&eight, row + x, sizeof(eight));
      if (eight != 0) break;
      x += 8;
    }
    while (x < end && row[x] == 0) ++x;
    return x;
  }
  while (x - end >= 8) {
    std::memcpy(&eight, row + x - 7, sizeof(eight));
    if (eight != 0) break;
    x -= 8;
  }
  while (x > end && row[x] == 0) --x;
  return x;
}

uint32_t IndexedImage::GetRaw(int32_t x, int32_t y) {
  uint16_t value = 0;
  std::memcpy(&value, bits + y * pitch + x, sizeof(value));
  return value;
}

void IndexedImage::SetRaw(int32_t x, int32_t y, uint32_t value) {
  UseRows(y, 1);
  std::memcpy(bits + y * pitch + x, &value, 2);
}

void IndexedImage::Fill(int32_t value) {
  if (bits != nullptr) FillRows(value);
}

int32_t IndexedImage::GetPixel(int32_t x, int32_t y) {
  return bits[y * pitch + x];
}

void IndexedImage::SetPixel(int32_t x, int32_t y, int32_t value) {
  UseRows(y, 1);
  bits[y * pitch + x] = static_cast<uint8_t>(value);
}

CellImage* IndexedImage::MakeBlank() {
  IndexedImage* image = new IndexedImage;
  if (!image->Resize(width, height, 0)) {
    delete image;
    return nullptr;
  }
  return image;
}

bool IndexedImage::Resize(int32_t newWidth, int32_t newHeight, int32_t fill) {
  EndContent();
  platform::DeleteBitmap(bitmapHandle);
  bitmapHandle = nullptr;
  bits = nullptr;
  width = newWidth > 0 ? newWidth : 0;
  height = newHeight > 0 ? newHeight : 0;
  pitch = (width + 3) & ~3;
  if (width == 0 || height == 0) return true;
  if (platform::FitsMemory(pitch, height)) {
    bitmapHandle = platform::CreateBitmap(width, height, ColorTable.data(), kColorCount, kPixelColors, &bits);
  }
  if (bitmapHandle == nullptr) {
    bits = nullptr;
    width = height = pitch = 0;
    return false;
  }
  ForgetUsedRows();
  if (fill != 0) Fill(fill);
  return true;
}

}  // namespace sorvel
