#include "animation/stream_decoder.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "animation/stream_format.h"

namespace sorvel {

namespace {

// A picture takes no fewer bytes of stream than its first frame's change map, one bit for eight pixels of a row. A
// stream that ends early may still ask for a picture of so many pixels, and a film for more, whose widest and whose
// highest cut need not be the same.
constexpr int64_t kPixelsPerByte = 64;
constexpr int64_t kFreePixels = int64_t{1} << 20;
constexpr int64_t kFreeFilmPixels = int64_t{1} << 26;

// Four pixels of two bits each, one in each byte.
constexpr auto kTwoBitBlocks = [] {
  std::array<uint32_t, 256> blocks{};
  for (uint32_t i = 0; i < 256; ++i) blocks[i] = (i & 3) | (i & 12) << 6 | (i & 48) << 12 | (i & 192) << 18;
  return blocks;
}();

}  // namespace

int32_t AnimationDecoder::OpenStream(ByteStream* input) {
  stream = input;
  stream->Seek(0, kFromStart);
  char magic[3] = "";
  stream->Read(magic, 2);
  const bool isCompiled = std::strcmp(magic, kStreamMagic) == 0;
  if ((!isCompiled && std::strcmp(magic, kContainerMagic) != 0) ||
      !(isCompiled ? ReadCompiledHead() : ReadContainerHead()) || !AllocateSections()) {
    stream = nullptr;
    return 0;
  }
  stream->Seek(0, kFromEnd);
  streamEnd = stream->Tell();
  loopCount = 1;
  cutIndex = 0;
  return 1;
}

bool AnimationDecoder::CreatePicture(int64_t freePixels) {
  const int32_t pictureWidth = ReadSignedField(*stream, 2);
  const int32_t pictureHeight = ReadSignedField(*stream, 2);
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
  ReadField(*stream, 4);
  ReadText(*stream, credit, kStreamTextLimit);
  if (!CreatePicture(kFreePixels)) return false;
  outputWidth = ReadSignedField(*stream, 2);
  outputHeight = ReadSignedField(*stream, 2);
  firstCutOffset = kCutRecordOffset;
  if (!MakeCutTable(1)) return false;
  cutOffsets[0] = kCutRecordOffset;
  return true;
}

bool AnimationDecoder::ReadContainerHead() {
  char text[kStreamTextLimit];
  ReadField(*stream, 4);
  ReadText(*stream, text, kStreamTextLimit);
  ReadText(*stream, text, kStreamTextLimit);
  outputWidth = ReadSignedField(*stream, 2);
  outputHeight = ReadSignedField(*stream, 2);
  if (!CreatePicture(kFreeFilmPixels)) return false;
  const int32_t count = ReadSignedField(*stream, 2);
  if (count < 1 || !MakeCutTable(count)) return false;
  for (int32_t i = 0; i < count; ++i) cutOffsets[static_cast<size_t>(i)] = ReadSignedField(*stream, 4);
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
                       static_cast<size_t>(literalCapacity) + static_cast<size_t>(CodeRowBytes(bitmap->width));
  if (!changeMap.Allocate(total)) return false;
  codes = changeMap.Data() + mapCapacity;
  literals = codes + codeCapacity;
  rowCodes = literals + literalCapacity;
  for (int32_t i = 0; i < kUnitCodes; ++i) codeOffsets[i] = kUnitOffsets[i].dy * bitmap->pitch + kUnitOffsets[i].dx;
  sectionWidth = bitmap->width;
  sectionHeight = bitmap->height;
  return true;
}

void AnimationDecoder::ReadCutRecord() {
  char name[kStreamTextLimit];
  ReadText(*stream, name, kStreamTextLimit);
  const int32_t cutWidth = ReadSignedField(*stream, 2);
  const int32_t cutHeight = ReadSignedField(*stream, 2);
  const int32_t cutFrameWidth = ReadSignedField(*stream, 2);
  const int32_t cutFrameHeight = ReadSignedField(*stream, 2);
  const int32_t cutFps = ReadSignedField(*stream, 1);
  const int32_t cutLevels = static_cast<int32_t>(ReadField(*stream, 1)) + 1;
  // A loop whose body runs to the end of a cut comes by here on its way to the jump back.
  if (loopCount >= 2) return;
  std::memcpy(cutName, name, sizeof(cutName));
  frameCounter = 0;
  width = cutWidth;
  height = cutHeight;
  frameWidth = cutFrameWidth;
  frameHeight = cutFrameHeight;
  fps = cutFps;
  levels = cutLevels;
  currentBox = {0, 0, width, height};
  ++cutIndex;
  bitmap->SetLevels(levels);
}

AnimationDecoder::FrameHead AnimationDecoder::ReadFrameHead() {
  FrameHead head;
  head.time = ReadSignedField(*stream, 2);
  if (frameCounter == 0) head.time = std::abs(head.time);
  head.loop = ReadSignedField(*stream, 2);
  head.brightness = ReadSignedField(*stream, 1);
  head.x = ReadSignedField(*stream, 2);
  head.y = ReadSignedField(*stream, 2);
  head.box.x = ReadSignedField(*stream, 2);
  head.box.y = ReadSignedField(*stream, 2);
  head.box.width = ReadSignedField(*stream, 2);
  head.box.height = ReadSignedField(*stream, 2);
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

  FrameHead head = ReadFrameHead();
  if (loopCount > 1 && head.loop != 0) {
    bitmap->RestoreBits();
    frameCounter = loopFrameCounter;
    currentBox = loopBox;
    stream->Seek(loopStart, kFromStart);
    head = ReadFrameHead();
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
  const uint32_t codeBytes = ReadField(*stream, 4);
  const uint32_t literalBytes = ReadField(*stream, 4);
  const bool fits = FitsPicture(currentBox);
  const int64_t mapBytes = currentBox.IsEmpty() ? 0 : int64_t{CodeMapRowBytes(currentBox.width)} * currentBox.height;
  const int64_t literalStart = stream->Tell() + mapBytes + codeBytes;
  if (!fits || bitmap->width < width || bitmap->height < height) {
    // Without a box to go by, the next frame's box covers all that can be out of date.
    if (!fits) currentBox = {0, 0, bitmap->width, bitmap->height};
    stream->Seek(static_cast<int32_t>(std::min<int64_t>(literalStart + literalBytes, streamEnd)), kFromStart);
    return head.time;
  }
  const auto literalPlace = static_cast<int32_t>(std::min<int64_t>(literalStart, streamEnd));
  int32_t literalsRead = 0;

  if (currentBox.IsEmpty()) {
    bitmap->CopyBackToFront(previousBox.x, previousBox.y, previousBox.width, previousBox.height);
  } else {
    bitmap->CopyBackToFrontAround(currentBox, previousBox);
    ReadSections(currentBox, literalPlace, literalBytes);
    const int32_t mapRowBytes = CodeMapRowBytes(currentBox.width);
    for (int32_t row = 0; row < currentBox.height; ++row) {
      LoadCodeRow(changeMap.Data() + row * mapRowBytes, currentBox.width, &nextCode, codesEnd, kCodeOfRowAbove,
                  rowCodes);
      DecodeRow(currentBox, row);
    }
    literalsRead = static_cast<int32_t>(nextLiteral - literals) + literalsBehind;
  }
  // Behind a frame that was decoded the next one lies after its last literal, whatever the size of the section says.
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
  // As many as the map asks for: they go on behind their section if its size is wrong.
  int32_t codesWanted = 0;
  for (int32_t row = 0; row < box.height; ++row) {
    codesWanted += CountCodes(changeMap.Data() + row * CodeMapRowBytes(box.width), box.width);
  }
  codesEnd = codes + ReadUpTo(*stream, codes, codesWanted);
  if (stream->Tell() != literalPlace) stream->Seek(literalPlace, kFromStart);
  nextLiteral = literals;
  literalsEnd = literals + ReadUpTo(*stream, literals, literalsWanted);
  literalsBehind = 0;
  std::memset(rowCodes, kFirstRowCodes, static_cast<size_t>(CodeRowBytes(box.width)));
}

uint32_t AnimationDecoder::NextLiteral() {
  const auto nextByte = [this]() -> uint32_t {
    if (nextLiteral < literalsEnd) return *nextLiteral++;
    const int32_t byte = stream->GetC();
    if (byte >= 0) ++literalsBehind;
    return static_cast<uint8_t>(byte);
  };
  const uint32_t first = nextByte();
  if (levels <= 4) return kTwoBitBlocks[first];
  const uint32_t second = nextByte();
  return (first & 15) | (first & 0xF0) << 4 | (second & 15) << 16 | (second & 0xF0) << 20;
}

void AnimationDecoder::DecodeRow(const Rect& box, int32_t row) {
  const int32_t blocks = UnitsOf(box.width);
  const int32_t frontShift = bitmap->frontIsHigh != 0 ? 4 : 0;
  const uint32_t frontBits = kPlaneBits << frontShift;
  const uint32_t backBits = ~frontBits;
  const int32_t place = (box.y + row) * bitmap->pitch + box.x;
  uint8_t* pixels = bitmap->bits + place;
  for (int32_t k = 0; k < blocks; ++k, pixels += 4) {
    const int32_t code = CodeAt(rowCodes, k);
    const uint32_t old = LoadBlock(pixels);
    uint32_t block = 0;
    if (code == kLiteralUnit) {
      block = NextLiteral() << frontShift;
    } else if (code == kPreviousFrameBlock) {
      block = (frontShift != 0 ? old << 4 : old >> 4) & frontBits;
    } else if (place + 4 * k + codeOffsets[code] >= 0) {
      // A source ahead of the picture's memory comes only from a damaged stream.
      block = LoadBlock(pixels + codeOffsets[code]) & frontBits;
    }
    const uint32_t merged = (old & backBits) | block;
    std::memcpy(pixels, &merged, sizeof(merged));
  }
}

}  // namespace sorvel
