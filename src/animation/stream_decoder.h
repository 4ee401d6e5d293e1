#pragma once

#include <cstdint>

#include "animation/stream_format.h"
#include "docfiles/unit_copy.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"
#include "imaging/front_plane.h"
#include "imaging/nibble_bitmap.h"

namespace sorvel {

// Reads a compiled cut or a film container, one frame at a time, into the two planes of a bitmap. The stream goes
// round: behind the last frame comes the first.
//
// What a stream says is bounded here, where it enters: a box outside the picture leaves the frame out, and a section
// that ends early leaves garbage inside the box. Nothing is reported while playing.
class AnimationDecoder {
 public:
  // Reads the head. The stream isn't owned and stays alive as long as it plays. 1, or 0 for an unknown magic, for a
  // picture that the stream's length can't account for, or without memory; the decoder then has no stream.
  int32_t OpenStream(ByteStream* input);

  // Decodes the next frame into the front plane and gives its time in ticks, negative for a dissolve; 0 stops the
  // play, as does the lack of a stream.
  int32_t DecodeNextFrame();

  ByteStream* stream = nullptr;
  int32_t cutCount = 0;
  int32_t cutIndex = 0;  // of the cut that comes next
  int32_t width = 0;     // picture of the cut at work
  int32_t height = 0;
  int32_t outputWidth = 0;  // picture area of the window
  int32_t outputHeight = 0;
  int32_t frameX = 0;  // position of the frame decoded last
  int32_t frameY = 0;
  int32_t frameWidth = 0;  // viewport of the cut at work
  int32_t frameHeight = 0;
  Rect previousBox;
  Rect currentBox;
  Rect loopBox;
  int32_t fps = 0;
  int32_t levels = 0;
  NibbleBitmap* bitmap = nullptr;  // not owned
  Buffer<int32_t> cutOffsets;
  int32_t firstCutOffset = 0;
  int32_t streamEnd = 0;
  int32_t loopCount = 1;  // runs of the running loop that are left, counting this one
  int32_t loopStart = 0;
  char cutName[kStreamTextLimit] = "";  // the credit of the cut at work
  int32_t frameCounter = 0;             // its lowest bit chooses the front plane
  int32_t loopFrameCounter = 0;

 private:
  bool CreatePicture(int32_t pictureWidth, int32_t pictureHeight, int64_t freePixels);
  bool MakeCutTable(int32_t count);
  bool ReadCompiledHead();
  bool ReadFilmHead();
  bool AllocateSections();
  void ReadCutRecord();
  StreamFrameHead ReadFrame();
  bool FitsPicture(const Rect& box) const;
  void ReadSections(const Rect& box, int32_t literalPlace, uint32_t literalBytes);
  void DecodeRow(const Rect& box, int32_t row);
  // The same by wide vectors, of rows from one on; gives how many it has decoded.
  template <int32_t kLiteralBytes>
  int32_t DecodeRowsWide(const Rect& box, int32_t row);
  void DecodeUnits(const FrontPlane& plane, uint64_t group, int32_t place, int32_t count);
  void DecodeGroup(const FrontPlane& plane, uint64_t group, uint8_t* pixels, int32_t count);
  uint32_t NextLiteral();

  // One frame's sections, made when a stream is opened for the largest box that fits the bitmap.
  Buffer<uint8_t> changeMap;  // and the memory of the next three behind it
  uint8_t* codes = nullptr;
  uint8_t* literals = nullptr;
  uint8_t* rowCodes = nullptr;
  int32_t sectionWidth = 0;  // of the picture that there is room for
  int32_t sectionHeight = 0;
  int32_t mapCapacity = 0;
  int32_t codeCapacity = 0;
  int32_t literalCapacity = 0;
  const uint8_t* nextCode = nullptr;
  const uint8_t* codesEnd = nullptr;
  bool hasAllCodes = false;  // that the map names
  const uint8_t* nextLiteral = nullptr;
  const uint8_t* literalsEnd = nullptr;
  int32_t literalsBehind = 0;  // bytes that were read behind the section
  SourceOffsets codeOffsets = {};
  ptrdiff_t farthestSource = 0;  // how many bytes ahead of a unit it may be
};

}  // namespace sorvel
