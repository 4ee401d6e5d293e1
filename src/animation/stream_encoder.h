#pragma once

#include <cstdint>
#include <unordered_map>

#include "docfiles/code_rows.h"
#include "document/cut.h"
#include "foundation/buffer.h"
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
// coded against what the decoder has in hand at that moment. Lives for one call.
class AnimationEncoder {
 public:
  // The stream is empty and can seek; the bitmap has been created with the reduced size of the cut. Neither is owned.
  AnimationEncoder(ByteStream* outputStream, NibbleBitmap* planes, int32_t capacity);
  AnimationEncoder(const AnimationEncoder&) = delete;
  AnimationEncoder& operator=(const AnimationEncoder&) = delete;

  // Compiles the frames `first` to `last`, counted from 0. `composition` is an image of canvas size whose pixels are
  // scratch. The record under edit in the current frame becomes current in every frame that is composed. 1, or 0 with
  // nothing done for a range that the cut doesn't have, an unknown output size, a second cut, or no memory; 0 too if
  // `progress` stops the work, with a part of it done. The stream stays at offset 6; a failed write goes unnoticed
  // here.
  int32_t EncodeCut(Cut* cut, CellImage* composition, int32_t first, int32_t last);

  ProgressFunction progress;  // told after each frame

 private:
  // A cell as a frame shows it.
  struct ShownInk {
    CellImage* image = nullptr;
    int32_t x = 0;
    int32_t y = 0;
    Rect area;  // its ink, in canvas coordinates, cut to the canvas
    bool operator==(const ShownInk&) const = default;
  };

  bool AllocateSections();
  void WriteFrame(Cut* cut, int32_t index, int32_t scale, bool isFirst, const Rect& box);
  ShownInk InkOf(const Cut& cut, Frame* frame, int32_t index);
  // Holds every canvas pixel in which two frames may differ, and is empty if there is none.
  Rect ChangedArea(const Cut& cut, Frame* frame, Frame* before);
  Rect ReduceFrame(const CellImage& composition, int32_t scale, const Rect& changed);
  void EncodeBox(const Rect& box, bool isFirst);
  uint8_t* Plane(int32_t isHigh);
  void PackRows(int32_t top, int32_t bottom);

  ByteStream* stream;
  NibbleBitmap* bitmap;
  int32_t cutCapacity;
  int32_t cutsDone = 0;
  bool currentCellOnly = false;

  std::unordered_map<const CellImage*, Rect> inkBoxes;  // of the cells met so far, in cell coordinates
  Rect previousArea;

  // The sections of the frame at work, made once for the largest box.
  CodeRowWriter rows;
  int32_t literalBytes = 1;  // of a block
  // The low plane of the bitmap and then the high one, two pixels a byte: what the blocks of a frame are compared with.
  Buffer<uint8_t> blocks;
};

// Gives the bitmap the cut's output size and compiles the frames `first` to `last` into the stream, by an encoder of
// its own: see there for the range, the stream and `composition`. False, too, if CanvasProblem() has something to say.
bool CompileFrames(Cut* cut, int32_t first, int32_t last, ByteStream* stream, NibbleBitmap* bitmap,
                   CellImage* composition, ProgressFunction progress = {});

}  // namespace sorvel
