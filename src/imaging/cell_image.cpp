#include "imaging/cell_image.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"

namespace sorvel {

namespace {

// Rows are worked on in pieces that stay in the nearest cache.
constexpr int32_t kRunPixels = 1024;

bool IsToneMark(uint8_t value) {
  return static_cast<uint8_t>(value - kMarkFirst) <= kMarkLast - kMarkFirst;
}

// What a source pixel, not 0, leaves on a destination pixel in a keyed copy.
uint8_t KeyedValue(uint8_t destination, uint8_t source) {
  if (!IsToneMark(source)) return source;
  static constexpr int32_t kMarkDeltas[] = {2, 1, -1, -2};
  const int32_t adjusted = AdjustTone(destination, kMarkDeltas[source - kMarkFirst]);
  return adjusted != 0 ? static_cast<uint8_t>(adjusted) : source;
}

// Lines and darks as the first of three indices, or 0 for what isn't drawn.
uint8_t LineFamilyFrom(uint8_t source, uint8_t first) {
  if (source >= 1 && source <= 3) return static_cast<uint8_t>(first + source - 1);
  if (source >= 8 && source <= 10) return static_cast<uint8_t>(first + source - 8);
  return 0;
}

uint8_t PaleValue(uint8_t destination, uint8_t source) {
  const uint8_t pale = LineFamilyFrom(source, kPaleFirst);
  return pale != 0 ? pale : destination;
}

void BlendKeyed(uint8_t* destination, const uint8_t* source, int32_t count) {
  // In bytes throughout, so that the compiler makes vectors of them.
  uint8_t marks = 0;
  for (int32_t i = 0; i < count; ++i) marks = static_cast<uint8_t>(marks | (IsToneMark(source[i]) ? 1 : 0));
  if (marks == 0) {
    for (int32_t i = 0; i < count; ++i) destination[i] = source[i] != 0 ? source[i] : destination[i];
    return;
  }
  for (int32_t i = 0; i < count; ++i) {
    if (source[i] != 0) destination[i] = KeyedValue(destination[i], source[i]);
  }
}

struct CompositeRule {
  bool keyed;
  bool pale;
  uint32_t destMask;
  uint32_t sourceMask;

  void Apply(uint8_t* destination, const uint8_t* source, int32_t count) const {
    if (destMask == 0 && sourceMask == 0 && !pale) {
      if (keyed) {
        BlendKeyed(destination, source, count);
      } else {
        std::memcpy(destination, source, static_cast<size_t>(count));
      }
      return;
    }
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t s = source[i];
      if ((keyed && s == 0) || IsMasked(destMask, destination[i]) || IsMasked(sourceMask, s)) continue;
      destination[i] = !keyed ? s : pale ? PaleValue(destination[i], s) : KeyedValue(destination[i], s);
    }
  }
};

// Runs `apply` over a run of a row of both images, piece by piece. An image that is copied into itself goes pixel by
// pixel: what a step writes is what the next one reads.
template <typename Apply>
void ForRun(CellImage* destination, int32_t dx, int32_t dy, const CellImage* source, int32_t sx, int32_t sy,
            int32_t count, const Apply& apply) {
  const int32_t pieceSize = destination == source ? 1 : kRunPixels;
  uint8_t sourceRun[kRunPixels];
  uint8_t destinationRun[kRunPixels];
  for (int32_t done = 0; done < count; done += pieceSize) {
    const int32_t piece = std::min(pieceSize, count - done);
    source->ReadRow(sx + done, sy, piece, sourceRun);
    if (destination->colors > 16) {
      apply(destination->bits + dy * destination->pitch + dx + done, sourceRun, piece);
    } else {
      destination->ReadRow(dx + done, dy, piece, destinationRun);
      apply(destinationRun, sourceRun, piece);
      destination->WriteRow(dx + done, dy, piece, destinationRun);
    }
  }
}

}  // namespace

int32_t AdjustTone(int32_t value, int32_t delta) {
  int32_t tone = 0;
  if (value >= 1 && value <= 4) {
    tone = value - 1;
  } else if (value >= 8 && value <= 10) {
    tone = value - 8;
  } else if (value >= 16 && value <= 18) {
    tone = value - 16;
  } else {
    return 0;
  }
  return std::clamp(tone + delta, 0, 3) + 1;
}

bool ClipBlock(int32_t* dx, int32_t* dy, int32_t* sx, int32_t* sy, int32_t* width, int32_t* height,
               const CellImage& destination, const CellImage& source) {
  const auto clipAxis = [](int32_t* to, int32_t* from, int32_t* size, int64_t sourceSize, int64_t destinationSize) {
    int64_t d = *to;
    int64_t s = *from;
    int64_t n = *size;
    if (s + n > sourceSize) n = sourceSize - s;
    if (s < 0) {
      d -= s;
      n += s;
      s = 0;
    }
    if (d < 0) {
      s -= d;
      n += d;
      d = 0;
    }
    if (d + n > destinationSize) n = destinationSize - d;
    if (n < 1) return false;
    *to = static_cast<int32_t>(d);
    *from = static_cast<int32_t>(s);
    *size = static_cast<int32_t>(n);
    return true;
  };
  return clipAxis(dx, sx, width, source.width, destination.width) &&
         clipAxis(dy, sy, height, source.height, destination.height);
}

bool CellImage::Composite(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                          int32_t blockHeight, int32_t flags, uint32_t destMask, uint32_t sourceMask, Rect* outRect) {
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *source)) return false;
  const bool keyed = (flags & kKeyed) != 0;
  const CompositeRule rule = {keyed, keyed && (flags & kPale) != 0, destMask, sourceMask};
  const auto apply = [&rule](uint8_t* to, const uint8_t* from, int32_t count) { rule.Apply(to, from, count); };
  int32_t left = sx + blockWidth;
  int32_t right = sx;
  int32_t top = -1;
  int32_t bottom = -1;
  for (int32_t row = 0; row < blockHeight; ++row) {
    int32_t start = sx;
    int32_t end = sx + blockWidth;
    if (keyed) {
      start = source->FindInk(sx, sy + row, end, 1);
      if (start == end) continue;
      end = source->FindInk(end - 1, sy + row, sx - 1, 0) + 1;
      left = std::min(left, start);
      right = std::max(right, end);
      if (top < 0) top = sy + row;
      bottom = sy + row + 1;
    }
    ForRun(this, dx + start - sx, dy + row, source, start, sy + row, end - start, apply);
  }
  if (outRect != nullptr) *outRect = top < 0 ? Rect{} : Rect{left, top, right - left, bottom - top};
  return true;
}

bool CellImage::Overlay(int32_t dx, int32_t dy, CellImage* source, int32_t sx, int32_t sy, int32_t blockWidth,
                        int32_t blockHeight, int32_t variant) {
  if (colors <= 16) return false;
  if (!ClipBlock(&dx, &dy, &sx, &sy, &blockWidth, &blockHeight, *this, *source)) return false;
  const uint8_t first = variant == 0 ? kGreenFirst : kRedFirst;
  const auto apply = [first](uint8_t* to, const uint8_t* from, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
      const uint8_t ghost = LineFamilyFrom(from[i], first);
      if (ghost != 0) to[i] = ghost;
    }
  };
  for (int32_t row = 0; row < blockHeight; ++row) ForRun(this, dx, dy + row, source, sx, sy + row, blockWidth, apply);
  return true;
}

void CellImage::SwapBits(uint8_t* buffer) {
  if (buffer == nullptr || bits == nullptr) return;
  std::swap_ranges(bits, bits + ByteCount(), buffer);
}

void CellImage::ReadRow(int32_t x, int32_t y, int32_t count, uint8_t* pixels) const {
  const uint8_t* row = bits + y * pitch;
  if (colors > 16) {
    std::memcpy(pixels, row + x, static_cast<size_t>(count));
    return;
  }
  const uint8_t* pair = row + (x >> 1);
  if ((x & 1) != 0 && count > 0) {
    *pixels++ = *pair++ & 0x0F;
    --count;
  }
  const int32_t pairs = count / 2;
  for (int32_t i = 0; i < pairs; ++i) {
    pixels[2 * i] = static_cast<uint8_t>(pair[i] >> 4);
    pixels[2 * i + 1] = pair[i] & 0x0F;
  }
  if ((count & 1) != 0) pixels[count - 1] = static_cast<uint8_t>(pair[pairs] >> 4);
}

void CellImage::WriteRow(int32_t x, int32_t y, int32_t count, const uint8_t* pixels) {
  uint8_t* row = bits + y * pitch;
  if (colors > 16) {
    std::memcpy(row + x, pixels, static_cast<size_t>(count));
    return;
  }
  uint8_t* pair = row + (x >> 1);
  if ((x & 1) != 0 && count > 0) {
    *pair = static_cast<uint8_t>((*pair & 0xF0) | *pixels++);
    ++pair;
    --count;
  }
  const int32_t pairs = count / 2;
  for (int32_t i = 0; i < pairs; ++i) pair[i] = static_cast<uint8_t>(pixels[2 * i] << 4 | pixels[2 * i + 1]);
  if ((count & 1) != 0) pair[pairs] = static_cast<uint8_t>((pair[pairs] & 0x0F) | pixels[count - 1] << 4);
}

void DestroyImage(CellImage* image) {
  if (image == nullptr) return;
  if (image->colors > 16) {
    delete static_cast<IndexedImage*>(image);
  } else {
    delete static_cast<PackedImage*>(image);
  }
}

}  // namespace sorvel
