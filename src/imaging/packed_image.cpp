#include "imaging/packed_image.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "foundation/vectors.h"
#include "platform/bitmaps.h"

namespace sorvel {

static_assert(std::endian::native == std::endian::little, "groups of pixels are read as they lie in memory");

namespace {

template <int32_t kBytes>
bool HasInk(const uint8_t* bytes) {
  uint64_t all = 0;
  for (int32_t i = 0; i < kBytes; i += 8) all |= LoadAs<uint64_t>(bytes + i);
  return all != 0;
}

}  // namespace

PackedImage::~PackedImage() {
  FreeBits(bits, block);
}

void PackedImage::FreeBits(uint8_t* oldBits, PixelBlock* oldBlock) {
  if (oldBlock != nullptr) {
    oldBlock->Release();
  } else {
    std::free(oldBits);
  }
}

int32_t PackedImage::FindInk(int32_t x, int32_t y, int32_t end, int32_t forward) {
  const uint8_t* row = bits + y * pitch;
  if (forward != 0) {
    if ((x & 1) != 0 && x < end) {
      if ((row[x >> 1] & 0x0F) != 0) return x;
      ++x;
    }
    while (end - x >= 64 && !HasInk<32>(row + (x >> 1))) x += 64;
    while (end - x >= 16 && !HasInk<8>(row + (x >> 1))) x += 16;
    while (x + 2 <= end && row[x >> 1] == 0) x += 2;
    while (x < end && GetPixel(x, y) == 0) ++x;
    return std::min(x, end);
  }
  if ((x & 1) == 0 && x > end) {
    if ((row[x >> 1] & 0xF0) != 0) return x;
    --x;
  }
  while (x - end >= 64 && !HasInk<32>(row + (x >> 1) - 31)) x -= 64;
  while (x - end >= 16 && !HasInk<8>(row + (x >> 1) - 7)) x -= 16;
  while (x - 2 >= end && row[x >> 1] == 0) x -= 2;
  while (x > end && GetPixel(x, y) == 0) --x;
  return std::max(x, end);
}

// Quirk 14. Four bytes, where SetRaw writes two.
uint32_t PackedImage::GetRaw(int32_t x, int32_t y) {
  uint32_t value = 0;
  std::memcpy(&value, bits + y * pitch + (x >> 1), sizeof(value));
  return value;
}

void PackedImage::SetRaw(int32_t x, int32_t y, uint32_t value) {
  UseRows(y, 1);
  std::memcpy(bits + y * pitch + (x >> 1), &value, 2);
}

void PackedImage::Fill(int32_t value) {
  if (bits != nullptr) FillRows((value & 0x0F) * 0x11);
}

int32_t PackedImage::GetPixel(int32_t x, int32_t y) {
  const uint8_t pair = bits[y * pitch + (x >> 1)];
  return (x & 1) != 0 ? pair & 0x0F : pair >> 4;
}

void PackedImage::SetPixel(int32_t x, int32_t y, int32_t value) {
  UseRows(y, 1);
  uint8_t& pair = bits[y * pitch + (x >> 1)];
  pair = static_cast<uint8_t>((x & 1) != 0 ? (pair & 0xF0) | value : (pair & 0x0F) | value << 4);
}

CellImage* PackedImage::MakeBlank() {
  PackedImage* image = new PackedImage;
  if (!image->Resize(width, height, 0)) {
    delete image;
    return nullptr;
  }
  return image;
}

bool PackedImage::Resize(int32_t newWidth, int32_t newHeight, int32_t fill) {
  EndContent();
  uint8_t* oldBits = bits;
  PixelBlock* oldBlock = std::exchange(block, nullptr);
  const int32_t oldWidth = width;
  const int32_t oldHeight = height;
  const int32_t oldPitch = pitch;
  const int32_t oldTop = usedTop;
  const int32_t oldBottom = usedBottom;
  width = std::max(newWidth, 0);
  height = std::max(newHeight, 0);
  pitch = (width / 2 + width % 2 + 3) & ~3;
  const int64_t size = static_cast<int64_t>(pitch) * height;
  bits = nullptr;
  if (size > 0 && platform::FitsMemory(pitch, height)) {
    bits = static_cast<uint8_t*>(std::calloc(static_cast<size_t>(size) + platform::kSpareBytes, 1));
  }
  if (bits == nullptr) {
    FreeBits(oldBits, oldBlock);
    const bool isEmpty = size == 0;
    if (!isEmpty) width = height = pitch = 0;
    return isEmpty;
  }
  ForgetUsedRows();
  if (fill != 0) Fill(fill);
  if (oldBits != nullptr) {
    // Only bytes that hold pixels are kept; the padding is new.
    const int32_t top = fill != 0 ? 0 : oldTop;
    const int32_t bottom = std::min(height, fill != 0 ? oldHeight : oldBottom);
    const int32_t rowBytes = (std::min(width, oldWidth) + 1) / 2;
    if (top < bottom) UseRows(top, bottom - top);
    for (int32_t y = top; y < bottom; ++y) {
      uint8_t* to = bits + y * pitch;
      std::memcpy(to, oldBits + y * oldPitch, static_cast<size_t>(rowBytes));
      if (width > oldWidth && (oldWidth & 1) != 0) {
        to[rowBytes - 1] = static_cast<uint8_t>((to[rowBytes - 1] & 0xF0) | (fill & 0x0F));
      }
    }
    FreeBits(oldBits, oldBlock);
  }
  return true;
}

bool PackedImage::ResizeWithin(PixelBlock* pixels, int32_t newWidth, int32_t newHeight) {
  if (!Resize(0, 0, 0)) return false;
  const int32_t newPitch = (newWidth / 2 + newWidth % 2 + 3) & ~3;
  const bool isSize = newWidth > 0 && newHeight > 0 && platform::FitsMemory(newPitch, newHeight);
  bits = isSize && pixels != nullptr ? pixels->Take(newPitch * newHeight) : nullptr;
  if (bits == nullptr) return Resize(newWidth, newHeight, 0);
  block = pixels;
  width = newWidth;
  height = newHeight;
  pitch = newPitch;
  ForgetUsedRows();
  return true;
}

}  // namespace sorvel
