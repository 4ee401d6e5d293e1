#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "document/cut.h"
#include "support/test_bytes.h"

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

// The same, with the current record in brackets.
inline std::string Stack(Frame* frame) {
  std::string letters = Stacking(frame);
  if (frame->currentRecord < 0) return letters;
  const size_t current = static_cast<size_t>(frame->currentRecord);
  return letters.insert(current + 1, "]").insert(current, "[");
}

inline int32_t CellNumber(Frame* frame, int32_t index) {
  FrameRecord* record = frame->records.At(index);
  return record != nullptr ? record->cell : -1000;
}

using testbytes::ReadFile;
using testbytes::TemporaryFolder;
using testbytes::WriteFile;

}  // namespace sorvel::testdoc
