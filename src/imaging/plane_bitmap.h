#pragma once

#include <cstdint>

namespace sorvel {

// A picture whose pixels hold two numbers of 4 bits: the front plane is the frame being built or shown, the back plane
// the frame before it. A palette entry for each pair of numbers decides what the screen shows, so a flip, a dissolve or
// a fade changes colours only.
//
// The order of the virtual operations is fixed. Coordinates must lie inside the picture. Colour channels are 0 to 255.
class PlaneBitmap {
 public:
  // The ramp of the levels before brightness. All colour operations give 1.
  virtual int32_t SetBaseColor(int32_t index, int32_t red, int32_t green, int32_t blue) = 0;
  virtual int32_t GetBaseColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) = 0;
  // The colours of a plane's 16 numbers. When the planes flip, each frame keeps its colours.
  virtual int32_t GetFrontColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) = 0;
  virtual int32_t SetFrontColor(int32_t index, int32_t red, int32_t green, int32_t blue) = 0;
  virtual int32_t GetBackColor(int32_t index, int32_t* red, int32_t* green, int32_t* blue) = 0;
  virtual int32_t SetBackColor(int32_t index, int32_t red, int32_t green, int32_t blue) = 0;
  // The colour of a pair. Beware: the getter takes the back number first, the setter the front number.
  virtual int32_t GetMixColor(int32_t a, int32_t b, int32_t* red, int32_t* green, int32_t* blue) = 0;
  virtual int32_t SetMixColor(int32_t front, int32_t back, int32_t red, int32_t green, int32_t blue) = 0;
  // Save both planes and restore them. Both do nothing before the first Create.
  virtual void SaveBits() = 0;
  virtual void RestoreBits() = 0;
  // Sets every byte, padding included, to the low 8 bits of `value`, which overwrites both planes.
  virtual void FillBits(int32_t value) = 0;
  virtual int32_t GetFront(int32_t x, int32_t y) = 0;
  virtual int32_t GetBack(int32_t x, int32_t y) = 0;
  // `value` is 0 to 15; the back number stays.
  virtual void SetFront(int32_t x, int32_t y, int32_t value) = 0;
  // Allocates the picture; a call with the size that it has changes nothing. 1 on success, 0 for an empty size or if
  // memory runs out.
  virtual int32_t Create(int32_t newWidth, int32_t newHeight) = 0;
  // The four pixels from x on in row y, as they lie in memory: they may reach into the padding and the next row. Gives
  // `out`.
  virtual uint8_t* GetFront4(uint8_t (*out)[4], int32_t x, int32_t y) = 0;
  virtual uint8_t* GetBack4(uint8_t (*out)[4], int32_t x, int32_t y) = 0;
  virtual void SetFront4(int32_t x, int32_t y, const uint8_t (&bytes)[4]) = 0;

  // Builds the ramp of `count` levels, 2 to 16, from black to the maxima. Other entries keep what they held.
  void SetLevels(int32_t count);
  // Derives the front colours from the ramp: 0 is all black, 50 leaves the ramp, 100 is all white.
  void SetBrightness(int32_t value);
  // Derives the 256 colours of the pairs. The back plane has the weight a / b, the front plane 1 - a / b. b isn't 0;
  // both may be negative.
  void MixPlanes(int32_t a, int32_t b);

  int32_t frontIsHigh = 0;  // 0: the low nibble is the front plane; 1: the high nibble
  int32_t width = 0;
  int32_t height = 0;
  int32_t brightness = 50;  // the last value given to SetBrightness
  int32_t redMax = 255;     // top of the ramp
  int32_t greenMax = 255;
  int32_t blueMax = 255;

 protected:
  ~PlaneBitmap() = default;
};

}  // namespace sorvel
