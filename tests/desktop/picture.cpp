#include "picture.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace sorvel::desktop {

namespace {

constexpr Color kRgb = 0xFFFFFF;
constexpr Color kNowhere = 0xFF000000;

BITMAPINFOHEADER HeaderOf(int width, int height) {
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof(header);
  header.biWidth = width;
  header.biHeight = -height;
  header.biPlanes = 1;
  header.biBitCount = 32;
  return header;
}

}  // namespace

Picture::Picture(const RECT& area) : width(area.right - area.left), height(area.bottom - area.top) {
  BITMAPINFO info = {};
  info.bmiHeader = HeaderOf(width, height);
  void* bits = nullptr;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (bitmap != nullptr) {
    const HGDIOBJ before = SelectObject(memory, bitmap);
    if (BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY)) {
      GdiFlush();
      const Color* first = static_cast<const Color*>(bits);
      pixels.assign(first, first + static_cast<size_t>(width) * static_cast<size_t>(height));
      for (Color& pixel : pixels) pixel &= kRgb;
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  if (pixels.empty()) width = height = 0;
}

Color Picture::At(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height) return kNowhere;
  return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
}

int Picture::Count(Color color) const {
  return static_cast<int>(std::count(pixels.begin(), pixels.end(), color));
}

int Picture::Colors(int limit) const {
  std::set<Color> found;
  for (const Color pixel : pixels) {
    found.insert(pixel);
    if (static_cast<int>(found.size()) >= limit) break;
  }
  return static_cast<int>(found.size());
}

bool Picture::Save(const std::string& path) const {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return false;
  const BITMAPINFOHEADER header = HeaderOf(width, height);
  BITMAPFILEHEADER head = {};
  head.bfType = 0x4D42;  // "BM"
  head.bfOffBits = sizeof(head) + sizeof(header);
  head.bfSize = head.bfOffBits + static_cast<DWORD>(pixels.size() * sizeof(Color));
  bool written = std::fwrite(&head, sizeof(head), 1, file) == 1;
  written = std::fwrite(&header, sizeof(header), 1, file) == 1 && written;
  written = std::fwrite(pixels.data(), sizeof(Color), pixels.size(), file) == pixels.size() && written;
  return std::fclose(file) == 0 && written;
}

Difference Compare(const Picture& one, const Picture& other) {
  Difference difference;
  const int width = std::max(one.Width(), other.Width());
  const int height = std::max(one.Height(), other.Height());
  difference.bounds = {width, height, 0, 0};
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      if (one.At(x, y) == other.At(x, y)) continue;
      difference.count++;
      difference.bounds.left = std::min<LONG>(difference.bounds.left, x);
      difference.bounds.top = std::min<LONG>(difference.bounds.top, y);
      difference.bounds.right = std::max<LONG>(difference.bounds.right, x + 1);
      difference.bounds.bottom = std::max<LONG>(difference.bounds.bottom, y + 1);
    }
  }
  if (difference.count == 0) difference.bounds = {};
  return difference;
}

}  // namespace sorvel::desktop
