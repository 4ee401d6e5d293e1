#pragma once

#include <cstdint>

#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "foundation/progress.h"
#include "imaging/nibble_bitmap.h"

namespace sorvel {

// What keeps a cut's canvas from being compiled, in plain English; null if nothing does. A stream has no pictures
// without pixels and none of more than 32767 pixels a side, and a canvas of more than 2^28 pixels would take more
// memory than there is to spare. Of the size of the frame rectangle a stream keeps the low 16 bits.
const char* CanvasProblem(const Cut& cut);
// What keeps a frame from being put out as a picture: its canvas, or a frame rectangle of more than 2^28 pixels.
const char* FrameProblem(const Cut& cut);

// Compiles a range of a cut's frames into a stream that plays: a head, then frames, each a box of changed pixels
// coded against what the decoder has in hand at that moment. Lives for one call. Several threads work on a long range;
// the stream has the same bytes as from one.
class AnimationEncoder {
 public:
  // The stream is empty and can seek; the bitmap has been created with the reduced size of the cut. Neither is owned.
  AnimationEncoder(ByteStream* outputStream, NibbleBitmap* planes, int32_t capacity);
  AnimationEncoder(const AnimationEncoder&) = delete;
  AnimationEncoder& operator=(const AnimationEncoder&) = delete;

  // Compiles the frames `first` to `last`, counted from 0. `composition` is an image of canvas size whose pixels are
  // scratch. The record under edit in the current frame becomes current in every frame that is composed. 1, or 0 with
  // nothing done for a range that the cut doesn't have, an unknown output size, a second cut, or no memory; 0 too if
  // `progress` stops the work or memory runs out, with a part of it done. The stream stays at offset 6; a failed write
  // goes unnoticed here.
  int32_t EncodeCut(Cut* cut, CellImage* composition, int32_t first, int32_t last);

  ProgressFunction progress;  // told after each frame

 private:
  ByteStream* stream;
  NibbleBitmap* bitmap;
  int32_t cutCapacity;
  int32_t cutsDone = 0;
};

// Gives the bitmap the cut's output size and compiles the frames `first` to `last` into the stream, by an encoder of
// its own: see there for the range, the stream and `composition`. False, too, if CanvasProblem() has something to say.
bool CompileFrames(Cut* cut, int32_t first, int32_t last, ByteStream* stream, NibbleBitmap* bitmap,
                   CellImage* composition, ProgressFunction progress = {});

}  // namespace sorvel
