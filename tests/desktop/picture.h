#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

namespace sorvel::desktop {

// Colours are 0xRRGGBB.
using Color = uint32_t;

// A piece of the screen, in memory.
class Picture {
 public:
  Picture() = default;
  // What the screen shows there. Empty if it can't be read.
  explicit Picture(const RECT& area);

  int Width() const { return width; }
  int Height() const { return height; }
  // A colour that no pixel has for a place outside.
  Color At(int x, int y) const;
  int Count(Color color) const;
  // How many different colours there are, counted up to `limit`.
  int Colors(int limit) const;
  // Writes a bitmap file; false if that fails.
  bool Save(const std::string& path) const;

  bool operator==(const Picture&) const = default;

 private:
  int width = 0;
  int height = 0;
  std::vector<Color> pixels;  // rows from top to bottom
};

// Where two pictures of the same size differ. Pictures of different sizes differ everywhere.
struct Difference {
  int count = 0;
  RECT bounds = {};

  int Width() const { return bounds.right - bounds.left; }
  int Height() const { return bounds.bottom - bounds.top; }
};
Difference Compare(const Picture& one, const Picture& other);

}  // namespace sorvel::desktop
