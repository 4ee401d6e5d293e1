#pragma once

#include <cstdint>

#include "docfiles/code_rows.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "imaging/nibble_bitmap.h"

namespace sorvel {

// What keeps a cut's canvas from being compiled, in plain English; null if nothing does. A stream has no pictures
// without pixels and none of more than 32767 pixels a side, and a canvas of more than 2^28 pixels would take more
// memory than there is to spare. Of the size of the frame rectangle a stream keeps the low 16 bits.
const char* CanvasProblem(const Cut& cut);
// What keeps a frame from being put out as a picture: its canvas, or a frame rectangle of more than 2^28 pixels.
const char* FrameProblem(const Cut& cut);

// Told how far long work has come: so many of all frames or cuts are done.
using ProgressFunction = void (*)(int32_t done, int32_t total);

// Compiles a range of a cut's frames into a stream that plays: a head, then frames, each a box of changed pixels
// coded against what the decoder has in hand at that moment. Lives for one call.
class AnimationEncoder {
 public:
  // The stream is empty and can seek; the bitmap has been created with the reduced size of the cut. Neither is owned.
  AnimationEncoder(ByteStream* outputStream, NibbleBitmap* planes, int32_t capacity);
  AnimationEncoder(const AnimationEncoder&) = delete;
  AnimationEncoder& operator=(const AnimationEncoder&) = delete;
  ~AnimationEncoder();

  // Compiles the frames `first` to `last`, counted from 0. `composition` is an image of canvas size whose pixels are
  // scratch. The record under edit in the current frame becomes current in every frame that is composed. 1, or 0 with
  // nothing done for a range that the cut doesn't have, an unknown output size, a second cut, or no memory. The stream
  // stays at offset 6; a failed write goes unnoticed here.
  int32_t EncodeCut(Cut* cut, CellImage* composition, int32_t first, int32_t last);

  ProgressFunction progress = nullptr;  // told after each frame; null for nobody

 private:
  struct ShownRecord;

  bool AllocateSections();
  bool MakeRoomForBoxes(int32_t count);
  void WriteHead(const Cut& cut, int32_t scale);
  void WriteFrameHead(Cut* cut, int32_t index, int32_t scale, bool isFirst, const Rect& box);
  Rect CandidateArea(Frame* frame, Frame* previous) const;
  Rect InkArea(Frame* frame, Frame* previous) const;
  Rect ReduceFrame(const CellImage& composition, int32_t scale, const Rect& inkArea);
  void EncodeBox(const Rect& box, bool isFirst);
  void FindMatches(const Rect& box, int32_t y, bool isFirst);
  void EncodeRow(const Rect& box, int32_t y);
  void PutLiteral(uint32_t block);

  ByteStream* stream;
  NibbleBitmap* bitmap;
  int32_t cutCapacity;
  int32_t cutsDone = 0;
  bool currentCellOnly = false;

  // Boxes of the ink of each record, of this frame and of the frame composed before. The two change places at every
  // composed frame and are never cleared: an entry of a record that drew nothing inside the area holds what it held
  // two composed frames ago, and compiled streams depend on the areas that come out of that.
  Rect* currentBoxes = nullptr;
  Rect* previousBoxes = nullptr;
  int32_t currentCapacity = 0;
  int32_t previousCapacity = 0;
  Rect previousArea;

  // The sections of the frame at work, made once for the largest box.
  CodeRowWriter rows;
  uint8_t* literals = nullptr;
  int32_t literalSize = 0;
  int32_t literalBytes = 1;     // of a block
  uint32_t* matches = nullptr;  // for each block of a row the codes that would do
};

}  // namespace sorvel
