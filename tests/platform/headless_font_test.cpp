#include <gtest/gtest.h>

#include <algorithm>

#include "platform/fonts.h"
#include "platform/headless/internal.h"
#include "platform_fixture.h"

namespace sorvel::platform {
namespace {

std::vector<std::string> FontNames() {
  std::vector<std::string> names;
  ListFonts([](const char* name, void* user) { static_cast<std::vector<std::string>*>(user)->push_back(name); },
            &names);
  return names;
}

class HeadlessFont : public HeadlessTest {
 protected:
  HeadlessFont() {
    ColorEntry colors[256] = {};
    for (ColorEntry& color : colors) color = {200, 200, 200, 0};
    colors[0] = {0, 0, 0, 0};
    colors[3] = {10, 10, 10, 0};
    colors[4] = {10, 10, 10, 0};
    bitmap = CreateBitmap(kSide, kSide, colors, 256, 256, &bits);
  }
  ~HeadlessFont() override {
    DeleteFont(font);
    DeleteBitmap(bitmap);
  }
  void SetUp() override {
    if (FontNames().empty()) GTEST_SKIP() << "no font is installed";
  }

  void Make(const char* name, int32_t size, int32_t weight = 400) {
    DeleteFont(font);
    font = MakeFont(name, size, weight);
    ASSERT_NE(font, nullptr);
  }
  int32_t Length(const std::string& text) {
    int32_t width = 0;
    int32_t height = 0;
    MeasureText(nullptr, font, text.data(), static_cast<int32_t>(text.size()), &width, &height);
    return width;
  }
  void Draw(int32_t x, int32_t y, const std::string& text) {
    std::fill(bits, bits + kSide * kSide, uint8_t{0});
    DrawTextLine(bitmap, font, x, y, text.data(), static_cast<int32_t>(text.size()));
  }
  // The box of everything that was drawn.
  Bounds Ink() {
    Bounds box = {kSide, kSide, 0, 0};
    for (int32_t y = 0; y < kSide; ++y) {
      for (int32_t x = 0; x < kSide; ++x) {
        if (bits[y * kSide + x] == 0) continue;
        box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1), std::max(box.bottom, y + 1)};
      }
    }
    return box;
  }
  int64_t CountInk() { return kSide * kSide - std::count(bits, bits + kSide * kSide, uint8_t{0}); }

  static constexpr int32_t kSide = 200;
  // あいう
  const std::string kana = headless::FromUtf8("\xE3\x81\x82\xE3\x81\x84\xE3\x81\x86");
  uint8_t* bits = nullptr;
  BitmapHandle bitmap = nullptr;
  FontHandle font = nullptr;
};

TEST_F(HeadlessFont, HeightIsTheSizeAndLengthGrowsWithTheText) {
  Make("no such font", 24);
  int32_t width = 0;
  int32_t height = 0;
  MeasureText(nullptr, font, "ab", 2, &width, &height);
  EXPECT_EQ(height, 24);
  EXPECT_GT(width, Length("a"));
  EXPECT_EQ(Length(""), 0);
}

TEST_F(HeadlessFont, LettersOfTwoBytesHaveTheirOwnPictures) {
  Make("no such font", 24);
  std::set<std::vector<uint8_t>> pictures;
  for (const size_t letter : {0U, 2U, 4U}) {
    Draw(50, 50, kana.substr(letter, 2));
    pictures.emplace(bits, bits + kSide * kSide);
  }
  EXPECT_EQ(pictures.size(), 3u);
}

TEST_F(HeadlessFont, InkIsTheNearestColourToBlackThatIsntTheGround) {
  Make("", 24);
  Draw(10, 10, "A");
  EXPECT_GT(CountInk(), 0);
  EXPECT_EQ(std::count(bits, bits + kSide * kSide, uint8_t{3}), CountInk());
}

TEST_F(HeadlessFont, ALineStaysInItsBox) {
  for (const int32_t size : {9, 16, 24, 61}) {
    Make("", size);
    const std::string text = "Ajgy";
    Draw(30, 40, text);
    const Bounds ink = Ink();
    EXPECT_GE(ink.left, 30);
    EXPECT_GE(ink.top, 40);
    EXPECT_LE(ink.right, 30 + Length(text));
    EXPECT_LE(ink.bottom, 40 + size);
    EXPECT_GT(ink.right - ink.left, Length(text) / 2);
  }
}

TEST_F(HeadlessFont, AVerticalLineRunsDownwardLeftOfItsCorner) {
  Make("@", 24);
  const std::string text = kana + "Ab";
  const int32_t length = Length(text);
  Draw(100, 20, text);
  const Bounds ink = Ink();
  EXPECT_GE(ink.left, 100 - 24);
  EXPECT_LE(ink.right, 100);
  EXPECT_GE(ink.top, 20);
  EXPECT_LE(ink.bottom, 20 + length);
  EXPECT_GT(ink.bottom - ink.top, 3 * (ink.right - ink.left));
}

TEST_F(HeadlessFont, ABoldFontHasMoreInk) {
  Make("", 32);
  Draw(10, 10, "M");
  const int64_t normal = CountInk();
  Make("", 32, 700);
  Draw(10, 10, "M");
  EXPECT_GT(CountInk(), normal);
}

TEST_F(HeadlessFont, AFontIsFoundByItsNameWithoutRegardToCase) {
  for (const std::string& name : FontNames()) {
    const std::string small = headless::WithoutCase(name);
    Make(name.c_str(), 40);
    const int32_t length = Length("iWi");
    Make(small.c_str(), 40);
    EXPECT_EQ(Length("iWi"), length) << headless::ToUtf8(name);
  }
}

TEST_F(HeadlessFont, TextOutsideTheBitmapAndWildSizesAreHarmless) {
  for (const int32_t size : {INT32_MIN, -24, -1, 0, 1, 100000, INT32_MAX}) {
    font = MakeFont("", size, 400);
    if (font == nullptr) continue;
    Draw(INT32_MAX, INT32_MIN, "A");
    Draw(INT32_MIN, INT32_MAX, "A");
    Draw(-5, -5, kana + "A\x80\xFF\x81");
    DeleteFont(font);
    font = nullptr;
  }
  Make("", 16);
  EXPECT_EQ(Length("\r\n"), 0);
}

TEST_F(HeadlessFont, NoFontDrawsAndMeasuresNothing) {
  EXPECT_EQ(Length("A"), 0);
  Draw(0, 0, "A");
  EXPECT_EQ(CountInk(), 0);
}

}  // namespace
}  // namespace sorvel::platform
