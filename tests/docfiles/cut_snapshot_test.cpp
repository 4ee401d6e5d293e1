#include "docfiles/cut_snapshot.h"

#include <gtest/gtest.h>

#include "support/random_cut.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using teststreams::Bytes;
using teststreams::MakeCut;
using teststreams::Output;
using Result = CutSnapshot::Result;

Bytes SavedBy(Cut* cut) {
  Output output;
  const uint32_t marks = cut->stateFlags;
  EXPECT_TRUE(cut->Save(&output.stream));
  cut->stateFlags = marks;
  return output.Written();
}

Bytes Written(CutSnapshot* snapshot) {
  Output output;
  EXPECT_TRUE(snapshot->Write(&output.stream));
  return output.Written();
}

TEST(CutSnapshot, HasTheBytesOfASave) {
  testing_support::RandomCuts random(7);
  for (int i = 0; i < 50; ++i) {
    const Bytes bytes = reference::WriteCut(random.Make());
    testbytes::InputBytes input(bytes);
    Cut cut(0, 0, 24, "", 0);
    ASSERT_TRUE(cut.Load(&input.stream, nullptr));
    CutSnapshot snapshot;
    ASSERT_EQ(snapshot.Take(&cut), Result::kTaken);
    ASSERT_EQ(Written(&snapshot), SavedBy(&cut)) << i;
  }
}

TEST(CutSnapshot, LeavesMarksAndCursors) {
  const std::unique_ptr<Cut> cut = MakeCut(8, 2, {"1", "2", "3"});
  cut->MarkImages();
  cut->frames.Seek(1);
  cut->frames.Current()->records.Seek(0);
  cut->layers.Seek(0);
  cut->layers.Current()->cells.Seek(1);
  const uint32_t marks = cut->stateFlags;
  CutSnapshot snapshot;
  snapshot.Take(cut.get());
  EXPECT_EQ(cut->stateFlags, marks);
  EXPECT_EQ(cut->frames.CursorIndex(), 1);
  EXPECT_EQ(cut->layers.Current()->cells.CursorIndex(), 1);
}

TEST(CutSnapshot, IsOfTheTimeWhenItWasTaken) {
  const std::unique_ptr<Cut> cut = MakeCut(8, 2, {"1", "2"});
  CutSnapshot snapshot;
  snapshot.Take(cut.get());
  const Bytes saved = SavedBy(cut.get());
  cut->layers.At(0)->CellAt(1)->SetPixel(3, 1, 8);
  cut->AddFrame();
  EXPECT_EQ(Written(&snapshot), saved);
}

TEST(CutSnapshot, OfAnUnchangedCutIsTheSame) {
  const std::unique_ptr<Cut> cut = MakeCut(8, 2, {"1", "2"});
  CutSnapshot snapshot;
  EXPECT_EQ(snapshot.Take(cut.get()), Result::kTaken);
  EXPECT_EQ(snapshot.Take(cut.get()), Result::kSame);
  Written(&snapshot);
  EXPECT_EQ(snapshot.Take(cut.get()), Result::kSame);
}

// The sixteenth pixel of a word in memory is the one whose highest bit is easiest to lose.
TEST(CutSnapshot, NoticesEveryPixelAndEveryPair) {
  const std::unique_ptr<Cut> cut = MakeCut(64, 3, {""});
  CellImage* cell = cut->layers.At(0)->CellAt(0);
  CutSnapshot snapshot;
  snapshot.Take(cut.get());
  for (int32_t y = 0; y < 3; ++y) {
    for (int32_t x = 0; x < 64; ++x) {
      cell->SetPixel(x, y, 8);
      ASSERT_EQ(snapshot.Take(cut.get()), Result::kTaken) << x << " " << y;
      ASSERT_EQ(Written(&snapshot), SavedBy(cut.get()));
    }
  }
  for (int32_t x = 0; x < 60; ++x) {
    cell->SetPixel(x, 0, 0);
    cell->SetPixel(x, 2, 0);
    ASSERT_EQ(snapshot.Take(cut.get()), Result::kTaken) << x;
  }
}

TEST(CutSnapshot, NoticesWhatIsNoPixel) {
  const std::unique_ptr<Cut> cut = MakeCut(8, 2, {"1", "2"});
  CutSnapshot snapshot;
  snapshot.Take(cut.get());
  const auto isNoticed = [&] {
    return snapshot.Take(cut.get()) == Result::kTaken && Written(&snapshot) == SavedBy(cut.get());
  };
  cut->frames.At(0)->time = 5;
  EXPECT_TRUE(isNoticed());
  cut->frames.At(1)->records.At(0)->cell = 0;
  EXPECT_TRUE(isNoticed());
  cut->layers.At(0)->SetName("B");
  EXPECT_TRUE(isNoticed());
  cut->layers.At(0)->Resize(6, 2, 0);
  EXPECT_TRUE(isNoticed());
  cut->layers.At(0)->DeleteCell(1);
  EXPECT_TRUE(isNoticed());
  cut->AddLayer("C", 3, 3, nullptr);
  EXPECT_TRUE(isNoticed());
}

TEST(CutSnapshot, OfManyCellsIsTakenInParts) {
  std::vector<std::string> pictures;
  for (int i = 0; i < 10; ++i) pictures.push_back(std::string(static_cast<size_t>(i + 1), '1'));
  const std::unique_ptr<Cut> cut = MakeCut(32, 4, pictures);
  const int64_t cell = cut->layers.At(0)->CellAt(0)->ByteCount();
  CutSnapshot snapshot;
  int parts = 1;
  while (snapshot.Take(cut.get(), 3 * cell) == Result::kMore) {
    // What changes in between is taken as it is at the end.
    cut->layers.At(0)->CellAt(0)->SetPixel(parts, 3, 2);
    cut->layers.At(0)->CellAt(9)->SetPixel(parts, 3, 4);
    ASSERT_LT(++parts, 20);
  }
  EXPECT_GE(parts, 4);
  EXPECT_EQ(Written(&snapshot), SavedBy(cut.get()));
}

}  // namespace
}  // namespace sorvel
