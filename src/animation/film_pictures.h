#pragma once

#include <cstdint>

#include "animation/animation_window.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"
#include "imaging/rect.h"

namespace sorvel {

// The pictures of a film from its first tick to its last, as the player shows them, without a window. They depend on
// the stream alone. Each tick is drawn over the one before, since a frame may leave parts of the picture as they are.
class FilmPictures {
 public:
  // Opens a stream that InspectStream() finds nothing wrong with. It isn't owned, and stays until the last Next().
  // False if it can't be opened, has an empty picture area, or without memory.
  bool Open(ByteStream* stream);

  // Goes on to the next tick, the first one after Open(). False behind the last one.
  bool Next();

  // The picture area, which is the same for the whole film.
  int32_t Width() const { return player.decoder.outputWidth; }
  int32_t Height() const { return player.decoder.outputHeight; }

  // Of the tick that Next() went to:
  // The picture: one byte a pixel, 0 black to 255 white, rows from top to bottom without padding.
  const uint8_t* Pixels() const { return pixels.Data(); }
  // The smallest rectangle that holds all pixels that differ from the tick before; empty if the pictures are equal. All
  // of the picture for the first tick.
  const Rect& Changed() const { return changed; }
  // The tick lasts 1/Fps() second. Of the cut that is shown.
  int32_t Fps() const { return fps; }

 private:
  void Draw();
  void FillBlack(int32_t left, int32_t top, int32_t right, int32_t bottom);
  void PutRow(int32_t x, int32_t y, int32_t count);

  AnimationWindow player;
  Buffer<uint8_t> pixels;
  Buffer<uint8_t> row;  // what comes into a row of the picture
  Rect changed;
  int32_t fps = 0;
  int32_t ticksLeft = 0;  // of a still
  bool isStill = false;
  bool isFirst = false;
  bool hasEnded = true;
};

}  // namespace sorvel
