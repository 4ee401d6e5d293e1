// A stream shows each frame exactly as it looks when it is composed alone, whatever the frames around it do.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "animation/stream_decoder.h"
#include "animation/stream_encoder.h"
#include "document/cut.h"
#include "foundation/byte_stream.h"
#include "imaging/indexed_image.h"
#include "imaging/packed_image.h"
#include "reference/reference.h"
#include "support/random_cut.h"

namespace sorvel {
namespace {

using reference::Bytes;
using testing_support::RandomCuts;

using Picture = std::vector<uint8_t>;

// SORVEL_CUTS asks for more in a long run.
uint32_t CutsToTry() {
  const char* asked = std::getenv("SORVEL_CUTS");
  return asked != nullptr ? static_cast<uint32_t>(std::strtoul(asked, nullptr, 10)) : 2000;
}

std::unique_ptr<Cut> LoadBytes(Bytes bytes) {
  auto cut = std::make_unique<Cut>(0, 0, 24, "", 0);
  BufferStream stream;
  stream.buffer = bytes.data();
  stream.size = stream.capacity = static_cast<int32_t>(bytes.size());
  EXPECT_TRUE(cut->Load(&stream, nullptr, nullptr));
  return cut;
}

Picture FrontPicture(NibbleBitmap* bitmap) {
  Picture picture;
  for (int32_t y = 0; y < bitmap->height; ++y) {
    for (int32_t x = 0; x < bitmap->width; ++x) picture.push_back(static_cast<uint8_t>(bitmap->GetFront(x, y)));
  }
  return picture;
}

Picture ComposedAlone(Cut* cut, Frame* frame, uint32_t flags) {
  const int32_t scale = OutputScale(cut->Antialias());
  IndexedImage canvas;
  EXPECT_TRUE(canvas.Resize(cut->width, cut->height, 0));
  frame->ComposeFrame(&canvas, 0, 0, cut->width, cut->height, &flags, nullptr);
  NibbleBitmap bitmap;
  EXPECT_EQ(bitmap.Create(cut->width / scale, cut->height / scale), 1);
  bitmap.ReduceFrom(canvas, nullptr, scale, nullptr);
  return FrontPicture(&bitmap);
}

// A change that lies in column 0 alone or in row 0 alone isn't carried until a later frame carries it.
bool IsLeftBehind(const Picture& before, const Picture& now, int32_t width) {
  size_t maxX = 0;
  size_t maxY = 0;
  bool isChanged = false;
  for (size_t i = 0; i < now.size(); ++i) {
    if (before[i] == now[i]) continue;
    isChanged = true;
    maxX = std::max(maxX, i % static_cast<size_t>(width));
    maxY = std::max(maxY, i / static_cast<size_t>(width));
  }
  return isChanged && (maxX == 0 || maxY == 0);
}

struct Totals {
  int32_t right = 0;
  int32_t leftBehind = 0;
};

void ExpectEveryFrameAsItIs(const reference::CutData& data, uint32_t flags, int32_t record, bool isPacked,
                            Totals* totals) {
  const std::unique_ptr<Cut> cut = LoadBytes(reference::WriteCut(data));
  const int32_t count = cut->frames.Count();
  cut->viewFlags = flags;
  cut->frames.At(cut->currentFrame)->SelectRecord(record);
  const int32_t shown = cut->frames.At(cut->currentFrame)->currentRecord;
  const int32_t scale = OutputScale(cut->Antialias());

  NibbleBitmap planes;
  ASSERT_EQ(planes.Create(cut->width / scale, cut->height / scale), 1);
  PackedImage packed;
  IndexedImage indexed;
  CellImage* composition = isPacked ? static_cast<CellImage*>(&packed) : &indexed;
  ASSERT_TRUE(composition->Resize(cut->width, cut->height, 0));
  ChunkStream stream;
  AnimationEncoder encoder(&stream, &planes, 1);
  ASSERT_EQ(encoder.EncodeCut(cut.get(), composition, 0, count - 1), 1);

  std::vector<Picture> expected;
  std::vector<int32_t> loops;
  std::vector<bool> isLeftBehind;
  for (int32_t i = 0; i < count; ++i) {
    Frame* frame = cut->frames.At(i);
    loops.push_back(i == 0 && frame->loop == 0 ? 1 : frame->loop);
    if (i > 0 && frame->SameAs(cut->frames.At(i - 1))) {
      expected.push_back(expected.back());
      isLeftBehind.push_back(false);
      continue;
    }
    frame->SelectRecord(shown);
    expected.push_back(ComposedAlone(cut.get(), frame, flags));
    isLeftBehind.push_back(i > 0 && IsLeftBehind(expected[static_cast<size_t>(i) - 1], expected.back(), planes.width));
  }

  // Each run of a loop decodes its frames again.
  stream.Seek(0, kFromStart);
  NibbleBitmap screen;
  AnimationDecoder decoder;
  decoder.bitmap = &screen;
  ASSERT_EQ(decoder.OpenStream(&stream), 1);
  int32_t next = 0;
  int32_t loopStart = 0;
  int32_t runsLeft = 1;
  bool isStale = false;
  bool wasStaleAtLoop = false;
  for (int32_t i = 0; i < 3 * count; ++i) {
    if (next == count) next = 0;
    const int32_t loop = loops[static_cast<size_t>(next)];
    if (runsLeft > 1 && loop != 0) {
      next = loopStart;
      isStale = wasStaleAtLoop;
      --runsLeft;
    } else if (loop > 1) {
      loopStart = next;
      wasStaleAtLoop = isStale;
      runsLeft = loop;
    }
    decoder.DecodeNextFrame();
    const bool isRight = FrontPicture(&screen) == expected[static_cast<size_t>(next)];
    // The first frame is whole again. Until then a left behind change may come and go with the planes.
    isStale = next != 0 && (isStale || isLeftBehind[static_cast<size_t>(next)]);
    ++(isRight ? totals->right : totals->leftBehind);
    ASSERT_TRUE(isRight || isStale) << "frame " << next << " of " << count;
    ++next;
  }
}

TEST(EveryFrame, PlaysAsItIsComposed) {
  Totals totals;
  for (uint32_t seed = 0; seed < CutsToTry(); ++seed) {
    RandomCuts random(seed);
    const reference::CutData data = random.Chance(70) ? random.MakeScene() : random.Make();
    const uint32_t flags = random.Chance(20) ? kCurrentCellOnly : 0u;
    const int32_t record = random.Number(0, 3);
    ASSERT_NO_FATAL_FAILURE(ExpectEveryFrameAsItIs(data, flags, record, seed % 2 == 0, &totals)) << "seed " << seed;
  }
  std::printf("%d pictures right, %d with a change left behind\n", totals.right, totals.leftBehind);
  EXPECT_LT(totals.leftBehind, totals.right / 10);
}

// The everyday case: a character on twos over a background while the camera pans on ones. Its old drawings went on
// standing when the encoder went by the ink that the frame before had drawn.
TEST(EveryFrame, DrawingsOnTwosOverAPanOnOnesLeaveNothingBehind) {
  reference::CutData data;
  data.width = data.frameWidth = 400;
  data.height = data.frameHeight = 200;
  data.fps = 24;
  reference::LayerData layer;
  layer.name = "A";
  layer.width = 400;
  layer.height = 200;
  for (int i = 0; i < 12; ++i) {
    reference::Cell cell(400, 200);
    for (int y = 60; y < 120; ++y) {
      for (int x = 20 + 25 * i; x < 90 + 25 * i; ++x) cell.Set(x, y, 1);
    }
    layer.cells.push_back(cell);
  }
  data.layers.push_back(layer);
  for (int i = 0; i < 24; ++i) {
    reference::FrameData frame;
    frame.x = 4 * i;
    frame.records.push_back({0, i / 2, 0, 0});
    data.frames.push_back(frame);
  }
  data.currentFrame = 23;
  Totals totals;
  ExpectEveryFrameAsItIs(data, 0, 0, true, &totals);
  EXPECT_EQ(totals.leftBehind, 0);
}

}  // namespace
}  // namespace sorvel
