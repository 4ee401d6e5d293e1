#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Pictures that a fill works on, 960 by 720, one byte a pixel: 0 is the ground, and 8 stands for a wall.
namespace sorvel::inkbench {

constexpr int32_t kWidth = 960;
constexpr int32_t kHeight = 720;

using Pixels = std::vector<uint8_t>;

// A fill of each of them begins at the left top pixel, which is ground.
enum class Picture : int64_t {
  kBlank,
  kMaze,    // passages and walls of one pixel; one way between any two places
  kComb,    // walls between all columns, open in every 16th row: half of the pixels
  kGrain,   // 35 % of the pixels, at random: as many as still leave the ground connected
  kDither,  // every other pixel, like the squares of a chess board, so that the ground falls into single pixels
};

constexpr const char* kPictureNames[] = {"blank", "maze", "comb", "grain", "dither"};

// The same sequence everywhere.
class Dice {
 public:
  uint32_t Below(uint32_t limit) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    return static_cast<uint32_t>((state >> 33) % limit);
  }

 private:
  uint64_t state = 1;
};

inline Pixels MazePixels() {
  Pixels pixels(kWidth * kHeight, 8);
  Dice dice;
  std::vector<int32_t> path = {0};
  pixels[0] = 0;
  while (!path.empty()) {
    const int32_t x = path.back() % kWidth;
    const int32_t y = path.back() / kWidth;
    int32_t ways[4];
    uint32_t count = 0;
    const auto look = [&](bool isInside, int32_t step) {
      if (isInside && pixels[static_cast<size_t>(path.back() + 2 * step)] != 0) ways[count++] = step;
    };
    look(x + 2 < kWidth, 1);
    look(x >= 2, -1);
    look(y + 2 < kHeight, kWidth);
    look(y >= 2, -kWidth);
    if (count == 0) {
      path.pop_back();
      continue;
    }
    const int32_t step = ways[dice.Below(count)];
    pixels[static_cast<size_t>(path.back() + step)] = 0;
    pixels[static_cast<size_t>(path.back() + 2 * step)] = 0;
    path.push_back(path.back() + 2 * step);
  }
  return pixels;
}

inline Pixels PixelsOf(Picture picture) {
  if (picture == Picture::kMaze) return MazePixels();
  Pixels pixels(kWidth * kHeight, 0);
  Dice dice;
  for (int32_t y = 0; y < kHeight; ++y) {
    for (int32_t x = 0; x < kWidth; ++x) {
      bool isWall = false;
      if (picture == Picture::kComb) isWall = x % 2 == 1 && y % 16 != 0;
      if (picture == Picture::kGrain) isWall = dice.Below(100) < 35 && x + y > 0;
      if (picture == Picture::kDither) isWall = (x + y) % 2 == 1;
      if (isWall) pixels[static_cast<size_t>(y * kWidth + x)] = 8;
    }
  }
  return pixels;
}

}  // namespace sorvel::inkbench
