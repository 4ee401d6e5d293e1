// The bitmap that holds two pictures in its nibbles.
#include <algorithm>

#include "reference_internal.h"

namespace reference {

namespace {

// Where the pixel lies in memory: rows lie directly behind each other, so an x outside the row names a pixel of a
// neighbouring one. -1 when it is outside the memory altogether.
long AddressOf(const Planes& planes, int x, int y) {
  long at = static_cast<long>(y) * planes.pitch + x;
  if (at < 0 || at >= static_cast<long>(planes.memory.size())) return -1;
  return at;
}

}  // namespace

bool Planes::Create(int newWidth, int newHeight) {
  if (!memory.empty() && newWidth == width && newHeight == height) return true;
  memory.clear();
  saved.clear();
  if (newWidth == 0 || newHeight == 0) return false;
  width = newWidth;
  height = newHeight;
  pitch = (width + 3) / 4 * 4;
  memory.assign(static_cast<std::size_t>(pitch) * static_cast<std::size_t>(height) + 16, 0);
  saved.assign(static_cast<std::size_t>(pitch) * static_cast<std::size_t>(height), 0);
  static const int ramp[13] = {0, 22, 43, 64, 85, 107, 128, 149, 170, 192, 213, 234, 255};
  for (std::size_t i = 0; i < 13; i++) baseColors[i] = Color{ramp[i], ramp[i], ramp[i]};
  return true;
}

int Planes::GetByte(int x, int y) const {
  long at = AddressOf(*this, x, y);
  return at < 0 ? 0 : memory[static_cast<std::size_t>(at)];
}

int Planes::GetFront(int x, int y) const {
  int byte = GetByte(x, y);
  return frontIsHigh != 0 ? byte >> 4 : byte & 15;
}

int Planes::GetBack(int x, int y) const {
  int byte = GetByte(x, y);
  return frontIsHigh != 0 ? byte & 15 : byte >> 4;
}

void Planes::SetFront(int x, int y, int value) {
  long at = AddressOf(*this, x, y);
  if (at < 0) return;
  std::uint8_t& byte = memory[static_cast<std::size_t>(at)];
  if (frontIsHigh != 0) {
    byte = static_cast<std::uint8_t>((byte & 0x0F) | ((value << 4) & 0xF0));
  } else {
    byte = static_cast<std::uint8_t>((byte & 0xF0) | (value & 0xFF));
  }
}

std::array<int, 4> Planes::GetFront4(int x, int y) const {
  return {GetFront(x, y), GetFront(x + 1, y), GetFront(x + 2, y), GetFront(x + 3, y)};
}

std::array<int, 4> Planes::GetBack4(int x, int y) const {
  return {GetBack(x, y), GetBack(x + 1, y), GetBack(x + 2, y), GetBack(x + 3, y)};
}

void Planes::SetFront4(int x, int y, const std::array<int, 4>& values) {
  for (int k = 0; k < 4; k++) SetFront(x + k, y, values[static_cast<std::size_t>(k)]);
}

void Planes::FillBits(int value) {
  for (std::size_t i = 0; i < saved.size(); i++) memory[i] = static_cast<std::uint8_t>(value & 0xFF);
}

void Planes::SaveBits() {
  for (std::size_t i = 0; i < saved.size(); i++) saved[i] = memory[i];
}

void Planes::RestoreBits() {
  for (std::size_t i = 0; i < saved.size(); i++) memory[i] = saved[i];
}

// Colours go with the nibble and not with front or back: a flip leaves every picture its own.
Color Planes::FrontColor(int index) const {
  return planeColors[frontIsHigh != 0 ? 1 : 0][static_cast<std::size_t>(index)];
}

Color Planes::BackColor(int index) const {
  return planeColors[frontIsHigh != 0 ? 0 : 1][static_cast<std::size_t>(index)];
}

void Planes::SetMixColor(int front, int back, const Color& color) {
  int index = frontIsHigh != 0 ? front * 16 + back : front + back * 16;
  mixColors[static_cast<std::size_t>(index)] = Color{color.red & 0xFF, color.green & 0xFF, color.blue & 0xFF};
}

void Planes::SetLevels(int count) {
  if (count < 2) count = 2;
  if (count > 16) count = 16;
  int n = count - 1;
  int value = 0;
  for (int i = 0; i < count; i++) {
    baseColors[static_cast<std::size_t>(i)] = Color{value, value, value};
    value = value + 255 / n;
    if (i < 255 % n) value = value + 1;
  }
}

namespace {

int Brighten(int c, int d, int value) {
  if (d == 0) return c;
  if (d > 0) {
    int lift = 255 * d / 50;
    return ((255 - lift) * c / 255 + lift) & 0xFF;
  }
  return (value * c / 50) & 0xFF;
}

}  // namespace

void Planes::SetBrightness(int value) {
  int d = value - 50;
  for (std::size_t index = 0; index < 16; index++) {
    Color base = baseColors[index];
    Color& front = planeColors[frontIsHigh != 0 ? 1 : 0][index];
    front.red = Brighten(base.red, d, value);
    front.green = Brighten(base.green, d, value);
    front.blue = Brighten(base.blue, d, value);
  }
}

void Planes::MixPlanes(int a, int b) {
  for (int i = 0; i < 16; i++) {
    for (int j = 0; j < 16; j++) {
      Color front = FrontColor(i);
      Color back = BackColor(j);
      Color mix;
      mix.red = (front.red * (b - a) + back.red * a) / b;
      mix.green = (front.green * (b - a) + back.green * a) / b;
      mix.blue = (front.blue * (b - a) + back.blue * a) / b;
      SetMixColor(i, j, mix);
    }
  }
}

void Planes::CopyBackToFront(const Box& area) {
  for (int y = area.y; y < area.y + area.height; y++) {
    for (int x = area.x; x < area.x + area.width; x++) {
      if (x >= 0 && x < width && y >= 0 && y < height) SetFront(x, y, GetBack(x, y));
    }
  }
}

void Planes::CopyAround(const Box& inner, const Box& other) {
  // An empty other still counts, as a point at its x, y.
  int otherWidth = other.width;
  int otherHeight = other.height;
  if (IsEmpty(other)) {
    otherWidth = 0;
    otherHeight = 0;
  }
  int left = std::min(inner.x, other.x);
  int top = std::min(inner.y, other.y);
  int right = std::max(inner.x + inner.width, other.x + otherWidth);
  int bottom = std::max(inner.y + inner.height, other.y + otherHeight);
  int innerRight = inner.x + inner.width;
  int innerBottom = inner.y + inner.height;
  CopyBackToFront(Box{left, top, right - left, inner.y - top});
  CopyBackToFront(Box{left, inner.y, inner.x - left, inner.height});
  CopyBackToFront(Box{innerRight, inner.y, right - innerRight, inner.height});
  CopyBackToFront(Box{left, innerBottom, right - left, bottom - innerBottom});
}

namespace {

int ToneOf(int role) {
  if (role >= 1 && role <= 3) return role - 1;
  if (role >= 8 && role <= 10) return role - 8;
  return 3;
}

// 0 to 48 down to 0 to 12, the remainder spread by an ordered 2 x 2 dither.
int Dithered(int sum, int dx, int dy) {
  static const int table[4][4] = {
      {0, 0, 0, 0},
      {1, 0, 0, 0},
      {1, 0, 0, 1},
      {1, 1, 0, 1},
  };
  return sum / 4 + table[sum % 4][(dy & 1) * 2 + (dx & 1)];
}

}  // namespace

void Planes::ReduceFrom(const Canvas& composition, Box* outBox, int scale, const Box* area) {
  Box target{0, 0, width, height};
  if (area != nullptr) {
    target.x = area->x;
    target.y = area->y;
    target.width = std::min(area->x + area->width, width) - area->x;
    target.height = std::min(area->y + area->height, height) - area->y;
  }
  bool changed = false;
  int minX = 0;
  int minY = 0;
  int maxX = 0;
  int maxY = 0;
  for (int dy = target.y; dy < target.y + target.height; dy++) {
    for (int dx = target.x; dx < target.x + target.width; dx++) {
      int value = 0;
      for (int j = 0; j < scale; j++) {
        for (int i = 0; i < scale; i++) value = value + ToneOf(composition.Get(dx * scale + i, dy * scale + j));
      }
      if (scale == 4) value = Dithered(value, dx, dy);
      if (GetBack(dx, dy) != value) {
        if (!changed) {
          changed = true;
          minX = dx;
          minY = dy;
        }
        minX = std::min(minX, dx);
        minY = std::min(minY, dy);
        maxX = std::max(maxX, dx);
        maxY = std::max(maxY, dy);
      }
      SetFront(dx, dy, value);
    }
  }
  if (outBox == nullptr) return;
  // Changes in column 0 alone, or in row 0 alone, look like no change here, since the maximum starts at 0. Streams
  // depend on it.
  if (maxX == 0 || maxY == 0) {
    *outBox = Box{};
    return;
  }
  if (minX % 2 != 0) minX = minX - 1;
  *outBox = Box{minX, minY, maxX - minX + 1, maxY - minY + 1};
}

Bytes Planes::FrontPicture() const {
  Bytes picture;
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) picture.push_back(static_cast<std::uint8_t>(GetFront(x, y)));
  }
  return picture;
}

}  // namespace reference
