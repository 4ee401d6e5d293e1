#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "document/cut.h"
#include "document/frame.h"
#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "foundation/shared_string.h"
#include "imaging/packed_image.h"
#include "support/test_images.h"

namespace sorvel {
namespace {

using namespace testimages;

const Bytes kMagic = Text("Sorvelin Cut");

Bytes Saved(Cut* cut) {
  OutputBytes output;
  EXPECT_TRUE(cut->Save(&output.stream));
  EXPECT_EQ(output.stream.Tell(), output.stream.size);
  return output.Written();
}

bool Load(Cut* cut, const Bytes& bytes, LoadReport* report = nullptr) {
  InputBytes input(bytes);
  return cut->Load(&input.stream, nullptr, report);
}

Frame* FrameAt(Cut& cut, int32_t index) {
  return cut.frames.At(index);
}

FrameRecord RecordAt(Cut& cut, int32_t frame, int32_t record) {
  return *cut.frames.At(frame)->records.At(record);
}

// 240 by 180 at 24 frames a second, with an empty credit.
Bytes SmallHead(uint8_t layers, uint16_t frames) {
  return kMagic + Hex("F0 00 B4 00 F0 00 B4 00 18 00 00") + Bytes{layers} + Le16(frames);
}

// A layer of 4 by 1 pixels with one cell; `left` are its two left pixels.
Bytes SmallLayer(char name, uint8_t left) {
  return Bytes{static_cast<uint8_t>(name)} + Hex("00 04 00 01 00 00 01 00  01 00 00 00 02 00 00 00 01 00") +
         Bytes{left, 0x34};
}

const Bytes kPlainFrame = Hex("00 00 00 00 01 00 01 00 32 00 00");

// Two layers, two frames with all their fields, one blank record.
Bytes SampleFile() {
  return kMagic + Hex("40 01 F0 00 A0 00 78 00 0C") + Text("ki") + Hex("02 02 02 00") + SmallLayer('A', 0x12) +
         Text("Bb") +
         Hex("08 00 03 00 01 02 00"
             "02 00 00 00 02 00 00 00 01 01 00 10 14 00 00"
             "03 00 00 00 04 00 00 00 01 01 01 10 14 04 55 55 55 55"
             "05 00 FA FF FD FF 03 00 14") +
         Text("hi") +
         // Records of layer, x, y and cell.
         Hex("02  01 07 00 F8 FF FE FF  00 02 01 04 03 00 00"
             "00 00 00 00 02 00 00 00 CD 00  01  01 00 00 00 00 01 00");
}

// What a file that has to load becomes.
struct LoadedCut {
  explicit LoadedCut(const Bytes& bytes) {
    LoadReport report;
    EXPECT_TRUE(Load(&cut, bytes, &report));
    isDamaged = report.IsDamaged();
  }
  Frame* At(int32_t index) { return cut.frames.At(index); }

  Cut cut{1, 2, 3, "old", 1};
  bool isDamaged = false;
};

using Numbers = std::vector<int32_t>;

Numbers SizesOf(const Cut& cut) {
  return {cut.width, cut.height, cut.frameWidth, cut.frameHeight, cut.fps};
}

// Place, time, loop and brightness.
Numbers FieldsOf(const Frame& frame) {
  return {frame.x, frame.y, frame.time, frame.loop, frame.brightness};
}

void SetFields(Frame* frame, const Numbers& fields) {
  frame->x = fields[0];
  frame->y = fields[1];
  frame->time = fields[2];
  frame->loop = fields[3];
  frame->brightness = fields[4];
}

void MakeSample(Cut* cut) {
  cut->frameWidth = 160;
  cut->frameHeight = 120;
  cut->SetAntialias(2);
  Layer* a = cut->AddLayer("A", 4, 1, nullptr);
  Draw(a->CellAt(0), "1234\n");
  Layer* b = cut->AddLayer("Bb", 8, 3, nullptr);
  b->followFrame = 1;
  b->AddCell(0, 5, nullptr);
  Frame* frame = cut->AddFrame();
  SetFields(frame, {5, -6, -3, 3, 20});
  AssignString(&frame->comment, "hi");
  frame->AddRecord(b, -2, 7, -8);
  frame->AddRecord(a, 0, 0x102, 0x304);
  frame = cut->AddFrame();
  SetFields(frame, {0, 0, 2, 0, -51});
  frame->AddRecord(b, 1, 0, 0);
}

// Saving.

TEST(CutFile, CutOfOneFrameWithoutLayers) {
  Cut cut(240, 180, 24, "", 0);
  Frame* frame = cut.AddFrame();
  frame->x = 0;
  frame->y = 0;
  EXPECT_EQ(Saved(&cut), Text("Sorvelin Cut") + Hex("F0 00 B4 00 F0 00 B4 00 18 00 00 00 01 00"
                                                    "00 00 00 00 01 00 01 00 32 00 00"));
}

TEST(CutFile, HoldsHeaderLayersFramesAndRecordsInOrder) {
  Cut cut(320, 240, 12, "ki", 0);
  MakeSample(&cut);
  EXPECT_EQ(Saved(&cut), SampleFile());
}

TEST(CutFile, KeyFrameBrightnessIsStoredAsTheComplement) {
  Cut cut(240, 180, 24, "", 0);
  Frame* frame = cut.AddFrame();
  for (const auto& [brightness, byte] : {std::pair{-51, 0xCD}, {-101, 0x9B}, {100, 0x64}, {-1, 0xFF}}) {
    frame->brightness = brightness;
    EXPECT_EQ(Saved(&cut)[27 + 8], byte);
  }
}

TEST(CutFile, AntialiasByteIs1Or2Or0) {
  const uint8_t expected[] = {0, 1, 2, 0};
  for (int32_t value = 0; value < 4; ++value) {
    Cut cut(240, 180, 24, "", 0);
    cut.stateFlags = static_cast<uint32_t>(value) << kAntialiasShift;
    EXPECT_EQ(Saved(&cut)[23], expected[value]) << value;
  }
}

TEST(CutFile, LargerValuesAreCutToTheirLowBits) {
  Cut cut(0x12345, 0x23456, 0x1234, "", 0);
  cut.frameWidth = -1;
  cut.frameHeight = 0x10001;
  Frame* frame = cut.AddFrame();
  SetFields(frame, {0x18001, -0x18001, 0x12345, 0x54321, 50});
  EXPECT_EQ(Saved(&cut), kMagic + Hex("45 23 56 34 FF FF 01 00 34 00 00 00 01 00"
                                      "01 80 FF 7F 45 23 21 43 32 00 00"));
}

TEST(CutFile, SavingClearsOnlyTheModifiedMark) {
  Cut cut(240, 180, 24, "", 2);
  cut.AddFrame();
  cut.stateFlags |= kModified | kImagesStale | kTimingStale | kHasWindow;
  uint32_t before = cut.stateFlags;
  Saved(&cut);
  EXPECT_EQ(cut.stateFlags, before & ~static_cast<uint32_t>(kModified));
}

TEST(CutFile, SavingLeavesTheCurrentFrameAlone) {
  Cut cut(320, 240, 12, "ki", 0);
  MakeSample(&cut);
  cut.currentFrame = 0;
  Saved(&cut);
  EXPECT_EQ(cut.currentFrame, 0);
  EXPECT_EQ(cut.CurrentFrame()->records.Count(), 2);
}

TEST(CutFile, SaveToPathNeedsAPathThatCanBeWritten) {
  Cut cut(240, 180, 24, "", 0);
  cut.AddFrame();
  cut.MarkImages();
  EXPECT_FALSE(cut.SaveToPath());
  TemporaryFolder folder;
  AssignString(&cut.path, folder.Path("missing/cut.cut").c_str());
  EXPECT_FALSE(cut.SaveToPath());
  EXPECT_TRUE(cut.Has(kModified));
}

TEST(CutFile, SaveToPathWritesTheFile) {
  TemporaryFolder folder;
  Cut cut(320, 240, 12, "ki", 0);
  MakeSample(&cut);
  std::string path = folder.Path("cut.cut");
  WriteFile(path, Bytes(5000, 1));
  AssignString(&cut.path, path.c_str());
  EXPECT_TRUE(cut.SaveToPath());
  EXPECT_EQ(ReadBytes(path), SampleFile());
  EXPECT_FALSE(cut.Has(kModified));
}

// Loading.

TEST(CutFile, LoadTakesEveryField) {
  LoadedCut loaded(SampleFile());
  Cut& cut = loaded.cut;
  EXPECT_FALSE(loaded.isDamaged);
  EXPECT_EQ(SizesOf(cut), Numbers({320, 240, 160, 120, 12}));
  EXPECT_STREQ(cut.credit, "ki");
  EXPECT_EQ(cut.Antialias(), 2);
  ASSERT_EQ(cut.layers.Count(), 2);
  Layer* a = cut.layers.At(0);
  Layer* b = cut.layers.At(1);
  EXPECT_STREQ(a->name, "A");
  EXPECT_EQ(a->followFrame, 0u);
  ASSERT_EQ(a->cells.Count(), 1);
  EXPECT_EQ(Picture(*a->CellAt(0)), "1234\n");
  EXPECT_STREQ(b->name, "Bb");
  EXPECT_EQ(b->followFrame, 1u);
  ASSERT_EQ(b->cells.Count(), 2);
  EXPECT_EQ(Picture(*b->CellAt(0)), "........\n........\n........\n");
  EXPECT_EQ(Picture(*b->CellAt(1)), "55555555\n55555555\n55555555\n");
  ASSERT_EQ(cut.frames.Count(), 2);
  EXPECT_EQ(FieldsOf(*loaded.At(0)), Numbers({5, -6, -3, 3, 20}));
  EXPECT_STREQ(loaded.At(0)->comment, "hi");
  EXPECT_EQ(loaded.At(0)->width, 320);
  EXPECT_EQ(loaded.At(0)->height, 240);
  ASSERT_EQ(loaded.At(0)->records.Count(), 2);
  EXPECT_EQ(RecordAt(cut, 0, 0), (FrameRecord{b, -2, 7, -8}));
  EXPECT_EQ(RecordAt(cut, 0, 1), (FrameRecord{a, 0, 0x102, 0x304}));
  EXPECT_EQ(FieldsOf(*loaded.At(1)), Numbers({0, 0, 2, 0, -51}));
  EXPECT_STREQ(loaded.At(1)->comment, "");
  ASSERT_EQ(loaded.At(1)->records.Count(), 1);
  EXPECT_EQ(RecordAt(cut, 1, 0), (FrameRecord{b, 1, 0, 0}));
}

TEST(CutFile, LoadShowsTheLastFrameWithItsTopmostRecord) {
  LoadedCut loaded(SampleFile());
  EXPECT_EQ(loaded.cut.currentFrame, 1);
  EXPECT_EQ(loaded.At(0)->currentRecord, 1);
  EXPECT_EQ(loaded.At(1)->currentRecord, 0);
}

TEST(CutFile, LoadPutsTheFlagsBack) {
  Cut cut(1, 1, 1, "", 1);
  cut.stateFlags |= kModified | kTimingStale | kHasWindow;
  cut.viewFlags = kOnionPrevious | kOnionNext | kCurrentCellOnly | kDimOthers | 5u << kDrawLimitShift;
  AssignString(&cut.path, "/a/b.cut");
  ASSERT_TRUE(Load(&cut, SampleFile()));
  EXPECT_EQ(cut.stateFlags, kImagesStale | kHasWindow | 2u << kAntialiasShift);
  EXPECT_EQ(cut.viewFlags, 5u << kDrawLimitShift);
  EXPECT_STREQ(cut.path, "");
}

TEST(CutFile, LoadReplacesTheFormerContent) {
  Cut cut(1, 1, 1, "", 0);
  ASSERT_TRUE(Load(&cut, SampleFile()));
  cut.CurrentFrame()->currentRecord = 0;
  cut.SaveUndo();
  ASSERT_TRUE(Load(&cut, SmallHead(0, 1) + kPlainFrame));
  EXPECT_EQ(cut.layers.Count(), 0);
  EXPECT_EQ(cut.frames.Count(), 1);
  EXPECT_EQ(cut.currentFrame, 0);
  EXPECT_EQ(cut.undoCell, nullptr);
  EXPECT_EQ(cut.Antialias(), 0);
  EXPECT_STREQ(cut.credit, "");
}

TEST(CutFile, LoadGivesEveryLayerThePrototype) {
  PackedImage prototype;
  prototype.Resize(3, 3, 0);
  Cut cut(1, 1, 1, "", 0);
  InputBytes input(SampleFile());
  ASSERT_TRUE(cut.Load(&input.stream, &prototype));
  EXPECT_EQ(cut.layers.At(0)->prototype, &prototype);
  EXPECT_EQ(cut.layers.At(1)->prototype, &prototype);
}

TEST(CutFile, LoadMakesRoomToUndoInEveryLayer) {
  Cut cut(1, 1, 1, "", 0);
  ASSERT_TRUE(Load(&cut, SampleFile()));
  EXPECT_GE(cut.undoCapacity, 12);
  ASSERT_TRUE(cut.SaveUndo());
  EXPECT_EQ(cut.undoCell, cut.layers.At(1)->CellAt(1));
  EXPECT_TRUE(cut.Undo());
}

TEST(CutFile, AntialiasByteOf3ReadsAs1) {
  const int32_t expected[] = {0, 1, 2, 1, 0, 1, 2};
  for (int32_t value = 0; value < 7; ++value) {
    Bytes bytes = SmallHead(0, 0);
    bytes[23] = static_cast<uint8_t>(value);
    Cut cut(1, 1, 1, "", 2);
    ASSERT_TRUE(Load(&cut, bytes));
    EXPECT_EQ(cut.Antialias(), expected[value]) << value;
  }
}

TEST(CutFile, NegativeTimeSurvives) {
  Cut cut(240, 180, 24, "", 0);
  cut.AddFrame()->time = -3;
  Bytes bytes = Saved(&cut);
  EXPECT_EQ(bytes[31], 0xFD);
  EXPECT_EQ(bytes[32], 0xFF);
  Cut loaded(1, 1, 1, "", 0);
  ASSERT_TRUE(Load(&loaded, bytes));
  EXPECT_EQ(FrameAt(loaded, 0)->time, -3);
}

TEST(CutFile, LoopIsUnsignedAndPositionsAreSigned) {
  Cut cut(240, 180, 24, "", 0);
  Layer* layer = cut.AddLayer("L", 4, 4, nullptr);
  Frame* frame = cut.AddFrame();
  SetFields(frame, {40000, -32768, 32767, 40000, 50});
  frame->AddRecord(layer, -32768, 40000, 32767);
  LoadedCut loaded(Saved(&cut));
  EXPECT_EQ(FieldsOf(*loaded.At(0)), Numbers({40000 - 65536, -32768, 32767, 40000, 50}));
  EXPECT_EQ(RecordAt(loaded.cut, 0, 0), (FrameRecord{loaded.cut.layers.At(0), -32768, 40000 - 65536, 32767}));
}

TEST(CutFile, SizesAndFpsAreUnsigned) {
  LoadedCut loaded(kMagic + Hex("FF FF 00 80 FE FF 01 80 FF 00 00 00 00 00"));
  EXPECT_EQ(SizesOf(loaded.cut), Numbers({65535, 32768, 65534, 32769, 255}));
  EXPECT_EQ(loaded.cut.frames.Count(), 0);
  EXPECT_EQ(loaded.cut.currentFrame, -1);
}

TEST(CutFile, BrightnessIsReadSigned) {
  for (int32_t value = -101; value <= 100; ++value) {
    Bytes bytes = SmallHead(0, 1) + kPlainFrame;
    bytes[35] = static_cast<uint8_t>(value);
    EXPECT_EQ(LoadedCut(bytes).At(0)->brightness, value);
  }
}

TEST(CutFile, CutWithoutLayersAndRecordsLoads) {
  LoadedCut loaded(SmallHead(0, 2) + kPlainFrame + kPlainFrame);
  EXPECT_FALSE(loaded.isDamaged);
  EXPECT_EQ(loaded.cut.layers.Count(), 0);
  EXPECT_EQ(loaded.cut.frames.Count(), 2);
  EXPECT_EQ(loaded.At(1)->currentRecord, -1);
}

TEST(CutFile, RoundTripKeepsFramesAndBlankCells) {
  Cut cut(320, 240, 12, "ki", 0);
  MakeSample(&cut);
  cut.layers.At(0)->SetName(nullptr);
  Cut loaded(1, 1, 1, "", 0);
  ASSERT_TRUE(Load(&loaded, Saved(&cut)));
  EXPECT_STREQ(loaded.layers.At(0)->name, "UNTITLED");
  ASSERT_EQ(loaded.frames.Count(), 2);
  EXPECT_EQ(RecordAt(loaded, 0, 0).cell, -2);
  loaded.currentFrame = 0;
  loaded.CurrentFrame()->SelectRecord(0);
  loaded.CurrentFrame()->ToggleBlank();
  EXPECT_EQ(RecordAt(loaded, 0, 0).cell, 1);
  loaded.CurrentFrame()->ToggleBlank();
  cut.layers.At(0)->SetName("UNTITLED");
  EXPECT_EQ(Saved(&loaded), Saved(&cut));
}

TEST(CutFile, RandomCutsSurviveTheRoundTrip) {
  Random random(51);
  for (int32_t round = 0; round < 60; ++round) {
    Cut cut(random.Between(0, 65535), random.Between(0, 65535), random.Between(0, 255), "credit", 0);
    cut.SetAntialias(random.Between(0, 2));
    cut.frameWidth = random.Between(0, 65535);
    int32_t layers = random.Between(0, 5);
    for (int32_t i = 0; i < layers; ++i) {
      Layer* layer = cut.AddLayer(nullptr, random.Between(1, 40), random.Between(1, 20), nullptr);
      layer->followFrame = random.Word() & 1;
      int32_t cells = random.Between(1, 4);
      while (layer->cells.Count() < cells) layer->AddCell(0, 0, nullptr);
      for (int32_t c = 0; c < cells; ++c) Scatter(layer->CellAt(c), random, 15, 5);
    }
    int32_t frames = random.Between(0, 20);
    for (int32_t i = 0; i < frames; ++i) {
      Frame* frame = cut.AddFrame();
      for (int32_t Frame::*field : {&Frame::x, &Frame::y, &Frame::time}) frame->*field = random.Between(-32768, 32767);
      frame->loop = random.Between(0, 65535);
      frame->brightness = random.Between(-101, 100);
      AssignString(&frame->comment, std::string(static_cast<size_t>(random.Between(0, 255)), 'c').c_str());
      int32_t records = layers > 0 ? random.Between(0, 6) : 0;
      for (int32_t r = 0; r < records; ++r) {
        frame->AddRecord(cut.layers.At(random.Between(0, layers - 1)), random.Between(-32768, 32767),
                         random.Between(-32768, 32767), random.Between(-32768, 32767));
      }
    }
    Bytes bytes = Saved(&cut);
    Cut loaded(1, 1, 1, "", 0);
    LoadReport report;
    ASSERT_TRUE(Load(&loaded, bytes, &report));
    EXPECT_FALSE(report.IsDamaged()) << report.problem;
    ASSERT_EQ(loaded.frames.Count(), frames);
    ASSERT_EQ(loaded.layers.Count(), layers);
    for (int32_t i = 0; i < frames; ++i) {
      Frame* frame = FrameAt(cut, i);
      Frame* copy = FrameAt(loaded, i);
      ASSERT_EQ(FieldsOf(*copy), FieldsOf(*frame));
      ASSERT_STREQ(copy->comment, frame->comment);
      ASSERT_EQ(copy->records.Count(), frame->records.Count());
    }
    ASSERT_EQ(Saved(&loaded), bytes) << round;
  }
}

TEST(CutFile, EveryStreamThatCanSeekHoldsACut) {
  Cut cut(320, 240, 12, "ki", 0);
  MakeSample(&cut);
  // Fields and pixels whose first byte is FF.
  FrameAt(cut, 1)->x = -1;
  FrameAt(cut, 1)->time = 255;
  cut.frames.At(1)->records.At(0)->cell = -1;
  Draw(cut.layers.At(0)->CellAt(0), "ff12\n");
  Bytes bytes = Saved(&cut);
  ChunkStream chunks(64);
  EXPECT_TRUE(cut.Save(&chunks));
  ASSERT_EQ(chunks.Size(), static_cast<int32_t>(bytes.size()));
  chunks.Seek(0, kFromStart);
  Cut fromChunks(1, 1, 1, "", 0);
  LoadReport report;
  EXPECT_TRUE(fromChunks.Load(&chunks, nullptr, &report));
  EXPECT_FALSE(report.IsDamaged()) << report.problem;
  EXPECT_EQ(Saved(&fromChunks), bytes);
  TemporaryFolder folder;
  WriteFile(folder.Path("cut.cut"), bytes);
  FileStream file(std::fopen(folder.Path("cut.cut").c_str(), "rb"));
  ASSERT_TRUE(file.IsOpen());
  Cut fromFile(1, 1, 1, "", 0);
  EXPECT_TRUE(fromFile.Load(&file, nullptr, &report));
  file.Close();
  EXPECT_FALSE(report.IsDamaged()) << report.problem;
  EXPECT_EQ(Saved(&fromFile), bytes);
}

TEST(CutFile, TextsOf255BytesAreReadWhole) {
  std::string text(255, 't');
  Cut cut(240, 180, 24, text.c_str(), 0);
  AssignString(&cut.AddFrame()->comment, text.c_str());
  LoadedCut loaded(Saved(&cut));
  EXPECT_EQ(loaded.cut.credit, text);
  EXPECT_EQ(loaded.At(0)->comment, text);
}

TEST(CutFile, CreditWithoutAnEndIsCutAndReadingGoesOnBehindIts256thByte) {
  Cut cut(1, 1, 1, "", 0);
  ASSERT_TRUE(
      Load(&cut, kMagic + Bytes{1, 0, 2, 0, 3, 0, 4, 0, 5} + Bytes(256, 'c') + Bytes{1, 0, 1, 0} + kPlainFrame));
  EXPECT_EQ(cut.credit, std::string(255, 'c'));
  EXPECT_EQ(cut.Antialias(), 1);
  EXPECT_EQ(cut.frames.Count(), 1);
}

TEST(CutFile, CommentWithoutAnEndIsCutAndReadingGoesOnBehindIts256thByte) {
  Bytes frame = Head(kPlainFrame, 9) + Bytes(256, 'c') + Bytes{0};
  Cut cut(1, 1, 1, "", 0);
  ASSERT_TRUE(Load(&cut, SmallHead(0, 2) + frame + kPlainFrame));
  EXPECT_EQ(FrameAt(cut, 0)->comment, std::string(255, 'c'));
  EXPECT_EQ(FrameAt(cut, 1)->brightness, 50);
}

TEST(CutFile, LongCreditIsWrittenWholeThoughTheReaderCutsIt) {
  Cut cut(240, 180, 24, std::string(300, 'c').c_str(), 0);
  EXPECT_EQ(Saved(&cut).size(), 27u + 300u);
}

// Wrong and damaged files.

TEST(CutFile, OtherMagicLeavesTheCutUnchanged) {
  Bytes good = SampleFile();
  for (size_t at = 0; at < kMagic.size(); ++at) {
    Bytes bytes = good;
    bytes[at] = static_cast<uint8_t>(bytes[at] ^ 0x20);
    Cut cut(320, 240, 12, "ki", 0);
    MakeSample(&cut);
    cut.MarkImages();
    AssignString(&cut.path, "/a/b.cut");
    uint32_t flags = cut.stateFlags;
    EXPECT_FALSE(Load(&cut, bytes)) << at;
    EXPECT_EQ(cut.stateFlags, flags);
    EXPECT_STREQ(cut.path, "/a/b.cut");
    EXPECT_EQ(cut.currentFrame, 1);
    EXPECT_EQ(Saved(&cut), good);
  }
}

TEST(CutFile, MagicIsComparedWhole) {
  Cut cut(240, 180, 24, "", 0);
  for (const char* magic : {"Sorvelin Cut ", "Sorvelin Cu", "", "Sorvelin Layer", "sorvelin cut"}) {
    LoadReport report;
    EXPECT_FALSE(Load(&cut, Text(magic) + Bytes(40, 0), &report)) << magic;
    EXPECT_TRUE(report.IsDamaged()) << magic;
  }
  EXPECT_FALSE(Load(&cut, Bytes(1000, 'S')));
  EXPECT_FALSE(Load(&cut, {}));
  EXPECT_EQ(cut.width, 240);
}

TEST(CutFile, EveryTruncationIsReported) {
  Bytes bytes = SampleFile();
  for (size_t length = 0; length < bytes.size(); ++length) {
    Cut cut(9, 9, 9, "old", 0);
    cut.AddFrame();
    LoadReport report;
    bool result = Load(&cut, Head(bytes, length), &report);
    EXPECT_EQ(result, length >= 12) << length;
    EXPECT_TRUE(report.IsDamaged()) << length;
    if (!result) {
      EXPECT_STREQ(cut.credit, "old");
      EXPECT_EQ(cut.frames.Count(), 1);
    }
  }
}

TEST(CutFile, TruncationWithoutAReportIsSurvived) {
  Bytes bytes = SampleFile();
  for (size_t length = 12; length < bytes.size(); ++length) {
    Cut cut(9, 9, 9, "old", 0);
    EXPECT_TRUE(Load(&cut, Head(bytes, length))) << length;
    Saved(&cut);
  }
}

TEST(CutFile, WhatATruncatedHeaderLacksReadsAsZero) {
  LoadedCut loaded(Head(SampleFile(), 16));
  EXPECT_EQ(SizesOf(loaded.cut), Numbers({320, 240 & 255, 0, 0, 0}));
  EXPECT_STREQ(loaded.cut.credit, "");
  EXPECT_EQ(loaded.cut.Antialias(), 0);
  EXPECT_EQ(loaded.cut.layers.Count(), 0);
  EXPECT_EQ(loaded.cut.frames.Count(), 0);
}

TEST(CutFile, FrameThatTheFileEndsInReadsZeroesForTheRest) {
  LoadedCut loaded(SmallHead(0, 1) + Hex("05 00 06 00 07 00"));
  ASSERT_EQ(loaded.cut.frames.Count(), 1);
  EXPECT_EQ(FieldsOf(*loaded.At(0)), Numbers({5, 6, 7, 0, 0}));
  EXPECT_STREQ(loaded.At(0)->comment, "");
  EXPECT_EQ(loaded.At(0)->records.Count(), 0);
}

TEST(CutFile, EveryFlippedBitIsSurvived) {
  ForEachFlippedBit(SampleFile(), [](const Bytes& damaged, size_t at) {
    Cut cut(1, 1, 1, "", 0);
    LoadReport report;
    EXPECT_EQ(Load(&cut, damaged, &report), at >= kMagic.size()) << at;
    // What was loaded can be shown and saved.
    for (int32_t i = 0; i < std::min(cut.frames.Count(), 4); ++i) {
      Frame* frame = FrameAt(cut, i);
      for (int32_t r = 0; r < frame->records.Count(); ++r) {
        EXPECT_NE(frame->LayerAt(r), nullptr);
        frame->VisibleCell(r);
        frame->PreviousCell(r);
        frame->NextCell(r);
      }
    }
  });
}

TEST(CutFile, LargestNumbersAnywhereAreSurvived) {
  ForEachLargestNumber(SampleFile(), kMagic.size(), [](const Bytes& damaged, size_t) { LoadedCut loaded(damaged); });
}

TEST(CutFile, CountsThatTheFileCanNotHoldAreReported) {
  for (const auto& [layers, frames] : {std::pair{255, 0}, {0, 65535}, {255, 65535}}) {
    LoadedCut loaded(SmallHead(static_cast<uint8_t>(layers), static_cast<uint16_t>(frames)));
    EXPECT_TRUE(loaded.isDamaged);
  }
}

TEST(CutFile, DamagedLayerStaysAsFarAsItGot) {
  Bytes damaged = SmallLayer('B', 0x56);
  damaged[13] = 4;
  LoadedCut loaded(SmallHead(2, 0) + SmallLayer('A', 0x12) + damaged);
  EXPECT_TRUE(loaded.isDamaged);
  ASSERT_EQ(loaded.cut.layers.Count(), 2);
  EXPECT_EQ(Picture(*loaded.cut.layers.At(0)->CellAt(0)), "1234\n");
  EXPECT_STREQ(loaded.cut.layers.At(1)->name, "B");
  EXPECT_EQ(loaded.cut.layers.At(1)->width, 4);
}

TEST(CutFile, RecordOfAMissingLayerIsLeftOutAndNoted) {
  // Records of layer, x, y and cell.
  const Bytes frame =
      Hex("00 00 00 00 01 00 01 00 32 00 03"
          "00 01 00 02 00 00 00  01 03 00 04 00 00 00  00 05 00 06 00 00 00");
  LoadedCut loaded(SmallHead(1, 2) + SmallLayer('A', 0x12) + frame + kPlainFrame);
  EXPECT_TRUE(loaded.isDamaged);
  ASSERT_EQ(loaded.cut.frames.Count(), 2);
  ASSERT_EQ(loaded.At(0)->records.Count(), 2);
  EXPECT_EQ(RecordAt(loaded.cut, 0, 0), (FrameRecord{loaded.cut.layers.At(0), 0, 1, 2}));
  EXPECT_EQ(RecordAt(loaded.cut, 0, 1), (FrameRecord{loaded.cut.layers.At(0), 0, 5, 6}));
  EXPECT_EQ(loaded.At(0)->currentRecord, 1);
  EXPECT_EQ(loaded.At(1)->brightness, 50);
}

TEST(CutFile, CellNumberPastTheEndIsLegalAndShowsNothing) {
  LoadedCut loaded(SmallHead(1, 1) + SmallLayer('A', 0x12) +
                   Hex("00 00 00 00 01 00 01 00 32 00 01 00 00 00 00 00 63 00"));
  Cut& cut = loaded.cut;
  EXPECT_FALSE(loaded.isDamaged);
  ASSERT_EQ(loaded.At(0)->records.Count(), 1);
  EXPECT_EQ(RecordAt(cut, 0, 0).cell, 99);
  EXPECT_EQ(cut.CurrentCell(), nullptr);
  OwnedImage image = MakeImage(false, 8, 8);
  uint32_t flags = kOnionPrevious | kOnionNext;
  cut.CurrentFrame()->ComposeFrame(image.get(), 0, 0, 8, 8, &flags, nullptr);
  EXPECT_EQ(image->FindInk(0, 0, 8, 1), 8);
}

TEST(CutFile, BytesBehindTheDocumentAreLeftAlone) {
  Cut cut(1, 1, 1, "", 0);
  InputBytes input(SampleFile() + Bytes{1, 2, 3, 4, 5});
  EXPECT_TRUE(cut.Load(&input.stream, nullptr));
  EXPECT_EQ(input.stream.Tell(), static_cast<int32_t>(SampleFile().size()));
  EXPECT_EQ(Saved(&cut), SampleFile());
}

TEST(CutFile, RandomBytesBehindTheMagicAreSurvived) {
  Random random(52);
  for (int32_t round = 0; round < 60; ++round) {
    Bytes bytes = SmallHead(random.Byte(), static_cast<uint16_t>(random.Between(0, 300)));
    int32_t length = random.Between(0, 600);
    for (int32_t i = 0; i < length; ++i) bytes.push_back(random.OneIn(2) ? 0 : random.Byte());
    Cut cut(1, 1, 1, "", 0);
    LoadReport report;
    EXPECT_TRUE(Load(&cut, bytes, &report));
    for (int32_t i = 0; i < cut.frames.Count(); ++i) {
      for (int32_t r = 0; r < FrameAt(cut, i)->records.Count(); ++r) EXPECT_NE(FrameAt(cut, i)->LayerAt(r), nullptr);
    }
  }
}

}  // namespace
}  // namespace sorvel
