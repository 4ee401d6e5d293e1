#include <gtest/gtest.h>

#include "platform/clipboard.h"
#include "platform_fixture.h"

namespace sorvel::platform {
namespace {

using Bytes = std::vector<uint8_t>;

class HeadlessClipboard : public HeadlessTest {
 protected:
  static void Put(Bytes* bytes, uint32_t value, int count) {
    for (int i = 0; i < count; ++i) bytes->push_back(static_cast<uint8_t>(value >> (8 * i)));
  }
  static Bytes Head(int32_t width, int32_t height, uint32_t depth, uint32_t colorsUsed) {
    Bytes bytes;
    Put(&bytes, 40, 4);
    Put(&bytes, static_cast<uint32_t>(width), 4);
    Put(&bytes, static_cast<uint32_t>(height), 4);
    Put(&bytes, 1, 2);
    Put(&bytes, depth, 2);
    for (int i = 0; i < 4; ++i) Put(&bytes, 0, 4);
    Put(&bytes, colorsUsed, 4);
    Put(&bytes, 0, 4);
    return bytes;
  }
  static void Append(Bytes* bytes, const Bytes& more) { bytes->insert(bytes->end(), more.begin(), more.end()); }
  static bool PutDib(const Bytes& dib) {
    EXPECT_TRUE(OpenClipboard(nullptr));
    const bool done = PutClipboardDib(dib.data(), dib.size());
    CloseClipboard();
    return done;
  }
  // The whole picture, blue, green and red of each pixel; empty if there is none.
  static Bytes Picture(int32_t* width, int32_t* height) {
    EXPECT_TRUE(OpenClipboard(nullptr));
    ClipboardPicture* picture = TakeClipboardPicture(width, height);
    Bytes pixels;
    if (picture != nullptr) {
      pixels.resize(static_cast<size_t>(*width * *height * 3));
      EXPECT_TRUE(ReadClipboardPicture(picture, 0, 0, *width, *height, pixels.data()));
      ReleaseClipboardPicture(picture);
    }
    CloseClipboard();
    return pixels;
  }
  int32_t width = 0;
  int32_t height = 0;
};

TEST_F(HeadlessClipboard, OnlyOneOpensItAtATime) {
  EXPECT_TRUE(OpenClipboard(nullptr));
  EXPECT_FALSE(OpenClipboard(nullptr));
  CloseClipboard();
  EXPECT_TRUE(OpenClipboard(nullptr));
  CloseClipboard();
  const uint8_t data[1] = {};
  EXPECT_FALSE(PutClipboardDib(data, 1));
}

TEST_F(HeadlessClipboard, TheBytesOfADibStayAsTheyWerePut) {
  Bytes dib = Head(2, 2, 4, 16);
  dib.resize(40 + 64 + 8, 7);
  EXPECT_TRUE(PutDib(dib));
  EXPECT_EQ(headless::ClipboardDib(), dib);
}

TEST_F(HeadlessClipboard, AFourBitDibIsAPictureFromItsBottomRowUp) {
  Bytes dib = Head(3, 2, 4, 3);
  Append(&dib, {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0});
  Append(&dib, {0x01, 0x20, 0, 0});
  Append(&dib, {0x21, 0xF0, 0, 0});
  EXPECT_TRUE(PutDib(dib));
  EXPECT_TRUE(HasClipboardPicture());
  EXPECT_EQ(Picture(&width, &height), Bytes({7, 8, 9, 4, 5, 6, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(width, 3);
  EXPECT_EQ(height, 2);
}

TEST_F(HeadlessClipboard, EightAnd24And32BitDibsArePictures) {
  const struct {
    Bytes head;
    Bytes rest;
    Bytes pixels;
  } dibs[] = {{Head(1, 1, 8, 2), {1, 2, 3, 0, 4, 5, 6, 0, 1, 0, 0, 0}, {4, 5, 6}},
              {Head(1, 2, 24, 0), {1, 2, 3, 0, 4, 5, 6, 0}, {4, 5, 6, 1, 2, 3}},
              {Head(1, -2, 32, 0), {1, 2, 3, 0, 4, 5, 6, 0}, {1, 2, 3, 4, 5, 6}}};
  for (const auto& [head, rest, pixels] : dibs) {
    Bytes dib = head;
    Append(&dib, rest);
    EXPECT_TRUE(PutDib(dib));
    EXPECT_EQ(Picture(&width, &height), pixels);
  }
}

TEST_F(HeadlessClipboard, ADibThatIsCutOffOrOfAForeignKindIsNoPicture) {
  Bytes dib = Head(2, 2, 24, 0);
  dib.resize(40 + 15);
  EXPECT_TRUE(PutDib(dib));
  EXPECT_FALSE(HasClipboardPicture());
  EXPECT_TRUE(Picture(&width, &height).empty());
  for (const Bytes& bad : {Head(0x7FFFFFFF, 0x7FFFFFFF, 32, 0), Head(1, INT32_MIN, 24, 0), Head(1, 0, 24, 0),
                           Head(1, 1, 16, 0), Head(1, 1, 8, 0xFFFFFFFF), Bytes({1, 2, 3})}) {
    Bytes padded = bad;
    if (bad.size() > 3) padded.resize(2000);
    EXPECT_TRUE(PutDib(padded));
    EXPECT_FALSE(HasClipboardPicture());
  }
}

TEST_F(HeadlessClipboard, APictureTakesThePlaceOfTheDib) {
  EXPECT_TRUE(PutDib(Head(1, 1, 24, 0)));
  EXPECT_TRUE(headless::SetClipboardPicture(2, 1, {1, 2, 3, 4, 5, 6}));
  EXPECT_TRUE(headless::ClipboardDib().empty());
  EXPECT_EQ(Picture(&width, &height), Bytes({1, 2, 3, 4, 5, 6}));
  EXPECT_FALSE(headless::SetClipboardPicture(2, 2, {1, 2, 3}));
  EXPECT_FALSE(HasClipboardPicture());
}

TEST_F(HeadlessClipboard, APartOfThePictureIsReadRowByRow) {
  Bytes pixels;
  for (uint8_t i = 0; i < 12; ++i) Append(&pixels, {i, i, i});
  EXPECT_TRUE(headless::SetClipboardPicture(4, 3, pixels));
  EXPECT_TRUE(OpenClipboard(nullptr));
  ClipboardPicture* picture = TakeClipboardPicture(&width, &height);
  ASSERT_NE(picture, nullptr);
  Bytes part(12);
  EXPECT_TRUE(ReadClipboardPicture(picture, 2, 1, 2, 2, part.data()));
  EXPECT_EQ(part, Bytes({6, 6, 6, 7, 7, 7, 10, 10, 10, 11, 11, 11}));
  EXPECT_FALSE(ReadClipboardPicture(picture, 3, 1, 2, 2, part.data()));
  EXPECT_FALSE(ReadClipboardPicture(picture, 0, -1, 2, 2, part.data()));
  ReleaseClipboardPicture(picture);
  CloseClipboard();
}

}  // namespace
}  // namespace sorvel::platform
