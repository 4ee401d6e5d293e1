#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "document/cut.h"
#include "imaging/indexed_image.h"

namespace sorvel {

// Small grey pictures of the frames of a cut, as the player shows them. They are made one by one, when there is time.
class FramePictures {
 public:
  static constexpr int32_t kWidth = 48;
  static constexpr int32_t kHeight = 36;

  // No picture is up to date any more; until they are made again the old ones stay.
  void MarkAllStale() { ++generation; }
  void Forget() { pictures.clear(); }

  // kWidth by kHeight values of grey, row by row; null if none has been made. A picture is known by its frame.
  const std::vector<uint8_t>* Find(const Frame* frame) const;
  bool IsFresh(const Frame* frame) const;
  // Makes the picture of a frame. It changes no cursor of the cut's lists.
  void Make(Cut* cut, Frame* frame);

 private:
  struct Picture {
    uint32_t generation;
    std::vector<uint8_t> greys;
  };

  std::unordered_map<const Frame*, Picture> pictures;
  IndexedImage composition;
  uint32_t generation = 1;
};

}  // namespace sorvel
