#include "shell/pixel_canvas.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/settings.h"

namespace sorvel {

namespace {

// Texts whose letters are kept. They are few digits mostly.
constexpr size_t kMostTexts = 4000;
constexpr int32_t kLongestText = 1200;  // in pixels
constexpr int32_t kNormalWeight = 400;

using platform::ColorEntry;

uint8_t Mixed(uint8_t below, uint8_t above, int32_t strength) {
  return static_cast<uint8_t>((below * (256 - strength) + above * strength) >> 8);
}

ColorEntry Mixed(const ColorEntry& below, const ColorEntry& above, int32_t strength) {
  return {Mixed(below.blue, above.blue, strength), Mixed(below.green, above.green, strength),
          Mixed(below.red, above.red, strength), 0};
}

}  // namespace

PixelCanvas::~PixelCanvas() {
  if (font != nullptr) platform::DeleteFont(font);
}

void PixelCanvas::Begin(platform::WindowHandle shownIn, int32_t fontSize) {
  window = shownIn;
  if (font == nullptr) {
    const std::string setting = settings::kFont.fallback;
    font = platform::MakeFont(setting.substr(0, setting.find(',')).c_str(), fontSize, kNormalWeight);
  }
  const Bounds client = platform::ClientBounds(window);
  width = client.Width();
  height = client.Height();
  pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(height), {});
  ClipNothing();
}

void PixelCanvas::Show(platform::DeviceContext* context) {
  if (!pixels.empty()) platform::DrawPixels(context, {0, 0, width, height}, pixels.data());
}

void PixelCanvas::Clip(const Bounds& area) {
  clip = {std::max(area.left, 0), std::max(area.top, 0), std::min(area.right, width), std::min(area.bottom, height)};
}

void PixelCanvas::Fill(const Bounds& area, ColorEntry color) {
  const int32_t left = std::max(area.left, clip.left);
  const int32_t right = std::min(area.right, clip.right);
  if (left >= right) return;
  for (int32_t y = std::max(area.top, clip.top); y < std::min(area.bottom, clip.bottom); ++y) {
    std::fill_n(&PixelAt(left, y), right - left, color);
  }
}

void PixelCanvas::Tint(const Bounds& area, ColorEntry color, int32_t strength) {
  for (int32_t y = std::max(area.top, clip.top); y < std::min(area.bottom, clip.bottom); ++y) {
    for (int32_t x = std::max(area.left, clip.left); x < std::min(area.right, clip.right); ++x) {
      PixelAt(x, y) = Mixed(PixelAt(x, y), color, strength);
    }
  }
}

void PixelCanvas::Frame(const Bounds& area, ColorEntry color, int32_t thickness) {
  Fill({area.left, area.top, area.right, area.top + thickness}, color);
  Fill({area.left, area.bottom - thickness, area.right, area.bottom}, color);
  Fill({area.left, area.top, area.left + thickness, area.bottom}, color);
  Fill({area.right - thickness, area.top, area.right, area.bottom}, color);
}

void PixelCanvas::DottedLine(int32_t x, int32_t top, int32_t bottom, ColorEntry color) {
  for (int32_t y = top; y < bottom; y += 4) Fill({x, y, x + 1, std::min(y + 2, bottom)}, color);
}

void PixelCanvas::Line(Point from, Point to, ColorEntry color) {
  const int32_t steps = std::max({std::abs(to.x - from.x), std::abs(to.y - from.y), 1});
  for (int32_t i = 0; i <= steps; ++i) {
    const int32_t x = from.x + static_cast<int32_t>(int64_t{to.x - from.x} * i / steps);
    const int32_t y = from.y + static_cast<int32_t>(int64_t{to.y - from.y} * i / steps);
    Fill({x, y, x + 1, y + 1}, color);
  }
}

void PixelCanvas::Picture(const Bounds& area, const std::vector<uint8_t>& greys) {
  size_t next = 0;
  for (int32_t y = area.top; y < area.bottom; ++y) {
    for (int32_t x = area.left; x < area.right; ++x) {
      const uint8_t grey = greys[next++];
      Fill({x, y, x + 1, y + 1}, Rgb(grey, grey, grey));
    }
  }
}

const PixelCanvas::Glyphs& PixelCanvas::GlyphsOf(const std::string& text) {
  if (const auto known = glyphs.find(text); known != glyphs.end()) return known->second;
  if (glyphs.size() >= kMostTexts) glyphs.clear();
  Glyphs& made = glyphs[text];
  if (font == nullptr || text.empty()) return made;
  const int32_t length = static_cast<int32_t>(text.size());
  platform::MeasureText(window, font, text.c_str(), length, &made.width, &made.height);
  made.width = std::min(made.width, kLongestText);
  ColorEntry ramp[256];
  for (int32_t i = 0; i < 256; ++i) {
    const uint8_t grey = static_cast<uint8_t>(255 - i);
    ramp[i] = Rgb(grey, grey, grey);
  }
  uint8_t* bits = nullptr;
  if (made.width <= 0 || made.height <= 0) return made;
  const platform::BitmapHandle bitmap = platform::CreateBitmap(made.width, made.height, ramp, 256, 256, &bits);
  if (bitmap == nullptr) return made = {};
  platform::DrawTextLine(bitmap, font, 0, 0, text.c_str(), length);
  const int32_t pitch = (made.width + 3) & ~3;
  for (int32_t y = 0; y < made.height; ++y) {
    made.coverage.insert(made.coverage.end(), bits + y * pitch, bits + y * pitch + made.width);
  }
  platform::DeleteBitmap(bitmap);
  return made;
}

void PixelCanvas::Text(const Bounds& area, const std::string& text, ColorEntry color, Align align) {
  const Glyphs& letters = GlyphsOf(text);
  if (letters.coverage.empty()) return;
  const int32_t room = std::max(area.Width() - letters.width, 0);
  const int32_t left = area.left + (align == Align::kLeft ? 0 : align == Align::kMiddle ? room / 2 : room);
  const int32_t top = area.top + (area.Height() - letters.height) / 2;
  const int32_t right = std::min({left + letters.width, area.right, clip.right});
  for (int32_t y = std::max(top, clip.top); y < std::min(top + letters.height, clip.bottom); ++y) {
    const uint8_t* row = letters.coverage.data() + static_cast<ptrdiff_t>(y - top) * letters.width - left;
    for (int32_t x = std::max(left, clip.left); x < right; ++x) {
      if (row[x] != 0) PixelAt(x, y) = Mixed(PixelAt(x, y), color, row[x] + 1);
    }
  }
}

}  // namespace sorvel
