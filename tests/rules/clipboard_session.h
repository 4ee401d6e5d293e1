#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {

// A picture of another program. Rows from the top, 0xRRGGBB.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels = {};
  uint32_t At(int x, int y) const {
    return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
};

inline Picture PlainPicture(int width, int height, uint32_t colour) {
  return {width, height, std::vector<uint32_t>(static_cast<size_t>(width) * static_cast<size_t>(height), colour)};
}

// The grey level, 0 to 48, that a colour is pasted as.
inline int LevelOf(uint32_t colour) {
  const int red = static_cast<int>(colour >> 16 & 255);
  const int green = static_cast<int>(colour >> 8 & 255);
  const int blue = static_cast<int>(colour & 255);
  return (blue + (red + 2 * green) * 2) / 7 * 49 / 256;
}

// Draws the picture as it is pasted into the model with its left upper corner at (x, y). The place of a pixel in the
// picture decides its dither. Pixels of the transparent colour are left out.
inline void DrawPasted(InkModel& model, const Picture& picture, int x, int y, int64_t transparent = -1) {
  for (int j = 0; j < picture.height; ++j) {
    for (int i = 0; i < picture.width; ++i) {
      const uint32_t colour = picture.At(i, j);
      if (int64_t{colour} == transparent) continue;
      model.Set(x + i, y + j, ModelInkAt(ModelPenOfLevel(LevelOf(colour)), i, j));
    }
  }
}

// Puts a bitmap file of the session's folder on the clipboard.
template <typename Session>
ScriptSession& PutOnClipboard(Session&& session, const std::string& name) {
  return session.Line("clipboard " + Quoted(name));
}

template <typename Session>
ScriptSession& PutOnClipboard(Session&& session, const Picture& picture) {
  session.WriteBitmap("picture.bmp", picture.width, picture.height, picture.pixels);
  return PutOnClipboard(session, "picture.bmp");
}

template <typename Session>
ScriptSession& PastePicture(Session&& session, const Picture& picture) {
  return PutOnClipboard(session, picture).Command(kCommandPasteFromClipboard);
}

// A drawing and its model, with blocks that are copied and pasted.
struct BlockScene : DrawingTest {
  using DrawingTest::DrawingTest;

  // Fills a rectangle with one index, in the drawing and in the model.
  void Ink(int x, int y, int width, int height, int index) {
    session.FillArea(x, y, width, height, index);
    model.Fill(x, y, width, height, index);
  }
  void Select(int left, int top, int right, int bottom) {
    session.Command(kToolAreaSelect).LeftDrag(left, top, right, bottom);
  }
  // Compares the view after an undo, which brings back what the undo before it took away.
  testing::AssertionResult UndoShows(const InkModel& expected) {
    session.Command(kCommandUndo);
    return ViewShows(expected);
  }
};

// Copies the block from (10, 10) to (20, 20), under a mask of these indices, and empties the cell and the mask.
inline Rule::Steps CopyBlockAndClear(std::initializer_list<int> mask = {}) {
  ScriptSession copy;
  copy.SelectArea(10, 10, 20, 20);
  if (mask.size() != 0) copy.Mask(mask);
  return {copy.Command(kCommandCopy), Filled{}};
}

// The same of a cell that has ink of index 2 at (12, 12), 4 by 4.
inline Rule::Steps CopyAndClear(std::initializer_list<int> mask = {}) {
  Rule::Steps steps = {Do().FillArea(12, 12, 4, 4, 2)};
  for (const Rule::Step& step : CopyBlockAndClear(mask)) steps.push_back(step);
  return steps;
}

// Other cuts of 64 by 48: with a layer as large, and with one of 20 by 10 in the middle, from (22, 19) to (41, 28).
inline const NewCutValues kCutOfTheSameSize = {.width = 64, .height = 48};
inline const NewCutValues kCutWithSmallLayer = {.width = 64, .height = 48, .layerWidth = 20, .layerHeight = 10};

}  // namespace rules
