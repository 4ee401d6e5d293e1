#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/fonts.h"

namespace sorvel {

constexpr platform::ColorEntry Rgb(uint8_t red, uint8_t green, uint8_t blue) {
  return {blue, green, red, 0};
}

// A picture in memory that a window is painted with at once, so that nothing flickers. Drawing is clipped to it and to
// the clip area. Texts are Shift JIS.
class PixelCanvas {
 public:
  PixelCanvas() = default;
  PixelCanvas(const PixelCanvas&) = delete;
  PixelCanvas& operator=(const PixelCanvas&) = delete;
  ~PixelCanvas();

  // Gives the picture the size of the window's client area; texts are drawn in a font of this size for it. What it
  // showed is lost.
  void Begin(platform::WindowHandle window, int32_t fontSize);
  // Copies the picture to the window.
  void Show(platform::DeviceContext* context);

  void Clip(const Bounds& area);
  void ClipNothing() { Clip({0, 0, width, height}); }
  void Fill(const Bounds& area, platform::ColorEntry color);
  // Mixes the colour into what is there, `strength` of 256 parts.
  void Tint(const Bounds& area, platform::ColorEntry color, int32_t strength);
  void Frame(const Bounds& area, platform::ColorEntry color, int32_t thickness = 1);
  void HorizontalLine(int32_t left, int32_t right, int32_t y, platform::ColorEntry color) {
    Fill({left, y, right, y + 1}, color);
  }
  void VerticalLine(int32_t x, int32_t top, int32_t bottom, platform::ColorEntry color) {
    Fill({x, top, x + 1, bottom}, color);
  }
  void DottedLine(int32_t x, int32_t top, int32_t bottom, platform::ColorEntry color);
  void Line(Point from, Point to, platform::ColorEntry color);
  // Grey values, row by row.
  void Picture(const Bounds& area, const std::vector<uint8_t>& greys);

  enum class Align { kLeft, kMiddle, kRight };
  // Draws a line of text in the middle of the area's height. What doesn't fit in its width is cut off.
  void Text(const Bounds& area, const std::string& text, platform::ColorEntry color, Align align);
  int32_t TextWidth(const std::string& text) { return GlyphsOf(text).width; }

  int32_t Width() const { return width; }
  int32_t Height() const { return height; }

 private:
  // How much of each pixel the letters of a text cover.
  struct Glyphs {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> coverage;
  };

  const Glyphs& GlyphsOf(const std::string& text);
  platform::ColorEntry& PixelAt(int32_t x, int32_t y) {
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }

  platform::WindowHandle window = nullptr;
  platform::FontHandle font = nullptr;
  std::map<std::string, Glyphs> glyphs;
  std::vector<platform::ColorEntry> pixels;
  int32_t width = 0;
  int32_t height = 0;
  Bounds clip;
};

}  // namespace sorvel
