#pragma once

#include <cstdint>
#include <vector>

#include "animation/stream_format.h"

namespace sorvel {

// How long a cut of a compiled stream plays, in ticks of 1/fps second. Frames are added in the order of the stream.
class CutTimes {
 public:
  void Add(const StreamFrameTiming& frame);
  // No frame follows any more.
  void Close() { isWhole = true; }
  bool IsWhole() const { return isWhole; }
  // Whether a frame without time ends the play in this cut.
  bool Ends() const { return ends; }

  // The length of the whole cut; of one that isn't whole yet, how far it can be played: the player decodes the frame
  // behind the one on the screen ahead of time. A frame that ends the play counts as one tick.
  int32_t Ticks() const;

  int32_t fps = 0;

 private:
  // A frame that begins a loop, or the first one, with those that follow in the loop.
  struct Run {
    int64_t ticks;
    int32_t times;
  };

  std::vector<Run> runs;
  int32_t lastTicks = 0;  // of the last frame
  bool isWhole = false;
  bool ends = false;
};

}  // namespace sorvel
