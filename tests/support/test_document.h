#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "document/cut.h"

namespace sorvel::testdoc {

// Pictures are rows of hexadecimal digits, one a pixel, with / between rows.
inline void Paint(CellImage* image, std::string_view picture) {
  int32_t x = 0;
  int32_t y = 0;
  for (char c : picture) {
    if (c == '/') {
      x = 0;
      ++y;
      continue;
    }
    image->SetPixel(x++, y, c <= '9' ? c - '0' : c - 'a' + 10);
  }
}

inline std::string Picture(CellImage* image) {
  std::string picture;
  for (int32_t y = 0; y < image->height; ++y) {
    if (y > 0) picture += '/';
    for (int32_t x = 0; x < image->width; ++x) picture += "0123456789abcdefghijklmnop"[image->GetPixel(x, y)];
  }
  return picture;
}

// Fills the cells of a layer with 1, 2, 3 and so on, so that a drawing is known by its first pixel.
inline void NumberCells(Layer* layer, int32_t count) {
  while (layer->cells.Count() < count) ASSERT_TRUE(layer->AddCell(layer->cells.Count() - 1, 0, nullptr));
  for (int32_t i = 0; i < count; ++i) layer->CellAt(i)->Fill(i + 1);
}

inline int32_t Drawing(CellImage* image) {
  return image != nullptr ? image->GetPixel(0, 0) : -1;
}

// The drawings of a layer in the order of their numbers.
inline std::string Drawings(Layer* layer) {
  std::string drawings;
  for (int32_t i = 0; i < layer->cells.Count(); ++i) drawings += std::to_string(Drawing(layer->CellAt(i)));
  return drawings;
}

// The first letters of the records' layers, the bottom one first.
inline std::string Stacking(Frame* frame) {
  std::string letters;
  for (int32_t i = 0; i < frame->records.Count(); ++i) letters += frame->LayerAt(i)->ShownName()[0];
  return letters;
}

inline int32_t CellNumber(Frame* frame, int32_t index) {
  FrameRecord* record = frame->records.At(index);
  return record != nullptr ? record->cell : -1000;
}

// A folder of its own for one test, gone with all its files afterwards.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::error_code error;
    std::random_device random;
    std::filesystem::path base = std::filesystem::temp_directory_path(error);
    do {
      folder_ = base / ("sorvel_test_" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder_, error) && !error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }

  std::string Path(std::string_view name) const { return (folder_ / name).string(); }

 private:
  std::filesystem::path folder_;
};

inline void WriteFile(const std::string& path, std::string_view bytes) {
  FILE* file = std::fopen(path.c_str(), "wb");
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
  std::fclose(file);
}

inline std::string ReadFile(const std::string& path) {
  std::string bytes;
  FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return "(no file)";
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) bytes += static_cast<char>(c);
  std::fclose(file);
  return bytes;
}

}  // namespace sorvel::testdoc
