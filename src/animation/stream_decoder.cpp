#include "animation/stream_decoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>

#include "docfiles/unit_vectors.h"
#include "imaging/front_plane.h"

namespace sorvel {

namespace {

// The picture is bounded by the length of the stream, so that a short stream can't ask for gigabytes. The first frame
// of a cut takes at least its change map: one bit for eight pixels. So many pixels are allowed whatever the length, and
// more in a film, whose picture is as wide as its widest cut and as high as its highest.
constexpr int64_t kPixelsPerByte = 64;
constexpr int64_t kFreePixels = int64_t{1} << 20;
constexpr int64_t kFreeFilmPixels = int64_t{1} << 26;

// Units of the front plane, eight at a time.
template <int32_t kBytesOfLiteral>
struct StreamUnits {
  using Unit = uint32_t;
  static constexpr int32_t kLiteralBytes = kBytesOfLiteral;

  SORVEL_WIDE_INLINE Words32x8 Merge(const Words32x8& there, const Words32x8& units) const {
    return there ^ ((there ^ units) & frontBits);
  }
  SORVEL_WIDE_INLINE Words32x8 LastSource(const uint8_t*, ptrdiff_t, const Words32x8& there) const {
    return isHigh ? there << 4 : there >> 4;
  }
  SORVEL_WIDE_INLINE Words32x8 EightLiterals(const uint8_t* from) const {
    Words32x8 levels;
    if (kLiteralBytes == 1) {
      levels = Spread<Words32x8>(LoadAs<uint64_t>(from)) & 0xFF;
      levels = (levels | levels << 12) & 0x000F000F;
      levels = (levels | levels << 6) & 0x03030303;
    } else {
      levels = __builtin_convertvector(LoadAs<Words16x8>(from), Words32x8);
      levels = (levels | levels << 8) & 0x00FF00FF;
      levels = (levels | levels << 4) & 0x0F0F0F0F;
    }
    return isHigh ? levels << 4 : levels;
  }

  bool isHigh;
  uint32_t frontBits;
};

// Four pixels of two bits each, one in each byte.
constexpr auto kTwoBitBlocks = [] {
  std::array<uint32_t, 256> blocks{};
  for (uint32_t i = 0; i < 256; ++i) blocks[i] = (i & 3) | (i & 12) << 6 | (i & 48) << 12 | (i & 192) << 18;
  return blocks;
}();

// The same for four bits each.
uint32_t FourBitBlock(uint32_t first, uint32_t second) {
  return (first & 15) | (first & 0xF0) << 4 | (second & 15) << 16 | (second & 0xF0) << 20;
}

}  // namespace

int32_t AnimationDecoder::OpenStream(ByteStream* input) {
  stream = input;
  stream->Seek(0, kFromStart);
  const StreamKind kind = ReadStreamKind(*stream);
  const bool hasHead = (kind == StreamKind::kCompiledCut && ReadCompiledHead()) ||
                       (kind == StreamKind::kFilmContainer && ReadFilmHead());
  if (!hasHead || !AllocateSections()) {
    stream = nullptr;
    return 0;
  }
  stream->Seek(0, kFromEnd);
  streamEnd = stream->Tell();
  loopCount = 1;
  cutIndex = 0;
  return 1;
}

bool AnimationDecoder::CreatePicture(int32_t pictureWidth, int32_t pictureHeight, int64_t freePixels) {
  const int64_t pixels = static_cast<int64_t>(pictureWidth) * pictureHeight;
  if (pixels > StreamLength(*stream) * kPixelsPerByte + freePixels) return false;
  return bitmap->Create(pictureWidth, pictureHeight) != 0;
}

bool AnimationDecoder::MakeCutTable(int32_t count) {
  cutCount = count;
  return cutOffsets.AllocateZeroed(static_cast<size_t>(count));
}

bool AnimationDecoder::ReadCompiledHead() {
  char credit[kStreamTextLimit];
  ReadField(*stream, kStreamSizeBytes);
  ReadText(*stream, credit, kStreamTextLimit);
  const StreamCutHead head = ReadCutHead(*stream);
  if (!CreatePicture(head.width, head.height, kFreePixels)) return false;
  outputWidth = head.frameWidth;
  outputHeight = head.frameHeight;
  firstCutOffset = kCutRecordOffset;
  if (!MakeCutTable(1)) return false;
  cutOffsets[0] = kCutRecordOffset;
  return true;
}

bool AnimationDecoder::ReadFilmHead() {
  char text[kStreamTextLimit];
  ReadField(*stream, kStreamSizeBytes);
  ReadText(*stream, text, kStreamTextLimit);
  ReadText(*stream, text, kStreamTextLimit);
  const ContainerHead head = ReadContainerHead(*stream);
  outputWidth = head.width;
  outputHeight = head.height;
  if (!CreatePicture(head.maxWidth, head.maxHeight, kFreeFilmPixels)) return false;
  if (head.cutCount < 1 || !MakeCutTable(head.cutCount)) return false;
  for (int32_t i = 0; i < cutCount; ++i) cutOffsets[static_cast<size_t>(i)] = ReadSignedField(*stream, kOffsetBytes);
  firstCutOffset = stream->Tell();
  return true;
}

bool AnimationDecoder::AllocateSections() {
  sectionWidth = 0;
  sectionHeight = 0;
  mapCapacity = CodeMapRowBytes(bitmap->width) * bitmap->height;
  codeCapacity = CodeRowBytes(bitmap->width) * bitmap->height;
  literalCapacity = UnitsOf(bitmap->width) * 2 * bitmap->height;
  const size_t total = static_cast<size_t>(mapCapacity) + static_cast<size_t>(codeCapacity) +
                       static_cast<size_t>(literalCapacity) +
                       static_cast<size_t>(CodeRowBytes(bitmap->width) + kGroupCodeBytes - 1) + kSpareUnitBytes;
  if (!changeMap.Allocate(total)) return false;
  codes = changeMap.Data() + mapCapacity;
  literals = codes + codeCapacity;
  rowCodes = literals + literalCapacity;
  farthestSource = 0;
  for (int32_t i = 0; i < kUnitCodes; ++i) {
    // Literals and units of the frame before are in place before the others are copied.
    const bool isInPlace = i == kLiteralUnit || i == kPreviousFrameBlock || i == kLeftUnit;
    codeOffsets[i] = isInPlace ? 0 : kUnitOffsets[i].dy * bitmap->pitch + kUnitOffsets[i].dx;
    farthestSource = std::max<ptrdiff_t>(farthestSource, -codeOffsets[i]);
  }
  sectionWidth = bitmap->width;
  sectionHeight = bitmap->height;
  return true;
}

void AnimationDecoder::ReadCutRecord() {
  char name[kStreamTextLimit];
  ReadText(*stream, name, kStreamTextLimit);
  const StreamCutHead head = ReadCutHead(*stream);
  // Inside a loop the record is only read past: the next frame ends the body and jumps back to its start.
  if (loopCount >= 2) return;
  std::memcpy(cutName, name, sizeof(cutName));
  frameCounter = 0;
  width = head.width;
  height = head.height;
  frameWidth = head.frameWidth;
  frameHeight = head.frameHeight;
  fps = head.fps;
  levels = head.levels;
  currentBox = {0, 0, width, height};
  ++cutIndex;
  bitmap->SetLevels(levels);
}

StreamFrameHead AnimationDecoder::ReadFrame() {
  StreamFrameHead head = ReadFrameHead(*stream);
  // A cut's first frame has no picture to dissolve from.
  if (frameCounter == 0) head.time = std::abs(head.time);
  return head;
}

bool AnimationDecoder::FitsPicture(const Rect& box) const {
  return box.x >= 0 && box.y >= 0 && box.width >= 0 && box.height >= 0 && box.x + box.width <= bitmap->width &&
         box.y + box.height <= bitmap->height;
}

int32_t AnimationDecoder::DecodeNextFrame() {
  if (stream == nullptr) return 0;
  // Compiling and exporting use the bitmap too, and may give it another size in the middle of a play.
  if ((bitmap->width != sectionWidth || bitmap->height != sectionHeight) && !AllocateSections()) return 0;
  int32_t position = stream->Tell();
  if (position == streamEnd) {
    stream->Seek(firstCutOffset, kFromStart);
    position = stream->Tell();
    cutIndex = 0;
  }
  if (cutIndex < cutCount && cutOffsets[static_cast<size_t>(cutIndex)] == position) {
    ReadCutRecord();
    position = stream->Tell();
  }

  StreamFrameHead head = ReadFrame();
  if (loopCount > 1 && head.loop != 0) {
    bitmap->RestoreBits();
    frameCounter = loopFrameCounter;
    currentBox = loopBox;
    stream->Seek(loopStart, kFromStart);
    head = ReadFrame();
    --loopCount;
  } else if (head.loop > 1) {
    loopStart = position;
    loopFrameCounter = frameCounter;
    loopCount = head.loop;
    loopBox = currentBox;
    bitmap->SaveBits();
  }

  bitmap->frontIsHigh = frameCounter & 1;
  frameCounter = (frameCounter + 1) & INT32_MAX;
  previousBox = currentBox;
  currentBox = head.box;
  frameX = head.x;
  frameY = head.y;
  const bool fits = FitsPicture(currentBox);
  const int64_t literalStart = stream->Tell() + head.MapSize() + head.codeSize;
  if (!fits || bitmap->width < width || bitmap->height < height) {
    // The whole picture counts as changed, so that the next frame brings all of it up to date.
    if (!fits) currentBox = {0, 0, bitmap->width, bitmap->height};
    stream->Seek(static_cast<int32_t>(std::min<int64_t>(literalStart + head.literalSize, streamEnd)), kFromStart);
    return head.time;
  }
  const auto literalPlace = static_cast<int32_t>(std::min<int64_t>(literalStart, streamEnd));
  int32_t literalsRead = 0;

  if (currentBox.IsEmpty()) {
    bitmap->CopyBackToFront(previousBox.x, previousBox.y, previousBox.width, previousBox.height);
  } else {
    bitmap->CopyBackToFrontAround(currentBox, previousBox);
    ReadSections(currentBox, literalPlace, head.literalSize);
    for (int32_t row = 0; row < currentBox.height;) {
      const int32_t done = levels <= 4 ? DecodeRowsWide<1>(currentBox, row) : DecodeRowsWide<2>(currentBox, row);
      if (done == 0) DecodeRow(currentBox, row);
      row += std::max(done, 1);
    }
    literalsRead = static_cast<int32_t>(nextLiteral - literals) + literalsBehind;
  }
  // The next frame follows the last literal that was read, whatever the size of the section says.
  const int32_t next = literalPlace + literalsRead;
  if (stream->Tell() != next) stream->Seek(next, kFromStart);
  bitmap->SetBrightness(head.brightness);
  return head.time;
}

void AnimationDecoder::ReadSections(const Rect& box, int32_t literalPlace, uint32_t literalBytes) {
  const int32_t mapSize = CodeMapRowBytes(box.width) * box.height;
  const int32_t literalsWanted =
      static_cast<int32_t>(std::min<uint32_t>(literalBytes, static_cast<uint32_t>(literalCapacity)));
  const int32_t mapGot = ReadUpTo(*stream, changeMap.Data(), mapSize);
  std::memset(changeMap.Data() + mapGot, 0, static_cast<size_t>(mapSize - mapGot));
  nextCode = codes;
  // The map says how many codes there are. If the size of their section is wrong, reading goes on behind it.
  const int32_t codesWanted = CountCodes(changeMap.Data(), box.width, box.height);
  codesEnd = codes + ReadUpTo(*stream, codes, codesWanted);
  hasAllCodes = codesEnd - codes == codesWanted;
  if (stream->Tell() != literalPlace) stream->Seek(literalPlace, kFromStart);
  nextLiteral = literals;
  literalsEnd = literals + ReadUpTo(*stream, literals, literalsWanted);
  literalsBehind = 0;
  std::memset(rowCodes, kFirstRowCodes, static_cast<size_t>(CodeRowBytes(box.width)));
}

uint32_t AnimationDecoder::NextLiteral() {
  const auto nextByte = [this]() -> uint8_t {
    if (nextLiteral < literalsEnd) return *nextLiteral++;
    const int32_t byte = stream->GetC();
    if (byte >= 0) ++literalsBehind;
    return static_cast<uint8_t>(byte);
  };
  const uint8_t first = nextByte();
  return levels <= 4 ? kTwoBitBlocks[first] : FourBitBlock(first, nextByte());
}

template <int32_t kLiteralBytes>
int32_t AnimationDecoder::DecodeRowsWide(const Rect& box, int32_t row) {
  // Sources above, and whole groups behind.
  const int32_t groupBytes = CodeMapRowBytes(box.width) * kGroupUnits * 4;
  const int32_t place = (box.y + row) * bitmap->pitch + box.x;
  const int32_t room = bitmap->imageSize - place - groupBytes;
  if (!HasWideVectors() || !hasAllCodes || place < farthestSource || room < 0) return 0;
  const int32_t rows = std::min(box.height - row, room / bitmap->pitch + 1);
  UnitRows from = {changeMap.Data() + row * CodeMapRowBytes(box.width), rowCodes, nextCode, nextLiteral, literalsEnd};
  const bool isHigh = bitmap->frontIsHigh != 0;
  const StreamUnits<kLiteralBytes> format = {isHigh, isHigh ? 0xF0F0F0F0 : 0x0F0F0F0F};
  CopyUnitRows(format, from, UnitsOf(box.width), rows, bitmap->bits + place, bitmap->pitch,
               [&](uint64_t group, const uint8_t* to, int32_t count) {
                 nextLiteral = from.literal;
                 DecodeUnits(FrontPlane(isHigh), group, static_cast<int32_t>(to - bitmap->bits), count);
                 from.literal = nextLiteral;
               });
  nextCode = from.nextCode;
  nextLiteral = from.literal;
  return rows;
}

void AnimationDecoder::DecodeRow(const Rect& box, int32_t row) {
  constexpr int32_t groupBytes = kGroupUnits * 4;
  LoadCodeRow(changeMap.Data() + row * CodeMapRowBytes(box.width), box.width, &nextCode, codesEnd, kCodeOfRowAbove,
              rowCodes);
  const int32_t units = UnitsOf(box.width);
  const FrontPlane plane(bitmap->frontIsHigh != 0);
  int32_t place = (box.y + row) * bitmap->pitch + box.x;
  for (int32_t k = 0; k < units; k += kGroupUnits, place += groupBytes) {
    const auto group = LoadAs<uint64_t>(rowCodes + k / 2);
    const int32_t count = std::min(units - k, kGroupUnits);
    const bool isInside = place >= farthestSource && place + groupBytes <= bitmap->imageSize &&
                          HasLiterals(group, count, (literalsEnd - nextLiteral) >> (levels <= 4 ? 0 : 1));
    if (isInside) {
      DecodeGroup(plane, group, bitmap->bits + place, count);
    } else {
      DecodeUnits(plane, group, place, count);
    }
  }
}

// Unit by unit, wherever the group lies and however few literals are left.
void AnimationDecoder::DecodeUnits(const FrontPlane& plane, uint64_t group, int32_t place, int32_t count) {
  for (int32_t k = 0; k < count; ++k, place += 4, group >>= 4) {
    uint8_t* const pixels = bitmap->bits + place;
    const int32_t code = static_cast<int32_t>(group & 0x0F);
    const int32_t source = place + kUnitOffsets[code].dy * bitmap->pitch + kUnitOffsets[code].dx;
    if (code == kLiteralUnit) {
      plane.Put(pixels, plane.FromLevels(NextLiteral()));
    } else if (code == kPreviousFrameBlock) {
      plane.CopyBack(pixels, pixels + 4);
    } else {
      // Only a damaged stream has a source ahead of the picture's memory.
      plane.Put(pixels, source >= 0 ? LoadBlock(bitmap->bits + source) : 0);
    }
  }
}

// The first `count` units of a group: those first that depend on no other. Pixels behind them stay, but are written.
inline void AnimationDecoder::DecodeGroup(const FrontPlane& plane, uint64_t group, uint8_t* pixels, int32_t count) {
  const uint64_t used = CodeBitsOf(count);
  const uint64_t code = group & 0x0F;
  if (IsRun(group) && count == kGroupUnits && code != kLiteralUnit && code != kPreviousFrameBlock) {
    CopyRun(plane, code, codeOffsets, pixels);
    return;
  }
  plane.CopyBack(pixels, pixels + 4 * count);
  for (uint64_t left = FindLiterals(group) & used; left != 0; left &= left - 1) {
    const uint8_t* const literal = nextLiteral;
    nextLiteral += levels <= 4 ? 1 : 2;
    const uint32_t block = levels <= 4 ? kTwoBitBlocks[literal[0]] : FourBitBlock(literal[0], literal[1]);
    plane.Put(pixels + std::countr_zero(left), plane.FromLevels(block));
  }
  if (code != kPreviousFrameBlock || !IsRun(group)) CopyGroup(plane, group & used, codeOffsets, pixels);
}

}  // namespace sorvel
