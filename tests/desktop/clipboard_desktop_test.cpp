// The system's clipboard, with this program as the other one.
#include <cstring>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"

namespace sorvel::desktop {
namespace {

// How the sixteen values of a cell look in another program.
constexpr Color kTable[16] = {0xE1FFFF, 0x000000, 0x555555, 0xAAAAAA, 0xFFFFFF, 0x8F8FBF, 0xADADD9, 0xCECEF2,
                              0x000000, 0x555555, 0xAAAAAA, 0xFFFF66, 0xD0D053, 0x70702D, 0x40401A, 0xFF0000};
constexpr Color kLightGrey = 0xAAAAAA;
constexpr Color kGrey = 0x808080;
constexpr Color kGreen = 0x00FF00;
constexpr int kGreenEntry = 254;  // in a table of greys
constexpr int kCanvasWidth = 480;
constexpr int kCanvasHeight = 360;
constexpr int kWidth = 451;  // of the pictures: over two tiles to the right and one down
constexpr int kHeight = 323;

// A window, which the clipboard must have as its owner.
class Clipboard {
 public:
  Clipboard() {
    window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, GetModuleHandleW(nullptr), nullptr);
    open = Await([this] { return OpenClipboard(window) != FALSE; });
  }
  ~Clipboard() {
    if (open) CloseClipboard();
    DestroyWindow(window);
  }
  Clipboard(const Clipboard&) = delete;
  Clipboard& operator=(const Clipboard&) = delete;

  bool IsOpen() const { return open; }
  // A copy of what is there in this format.
  std::vector<uint8_t> Bytes(UINT format) const {
    const HGLOBAL memory = GetClipboardData(format);
    const uint8_t* data = memory == nullptr ? nullptr : static_cast<const uint8_t*>(GlobalLock(memory));
    if (data == nullptr) return {};
    std::vector<uint8_t> bytes(data, data + GlobalSize(memory));
    GlobalUnlock(memory);
    return bytes;
  }
  // Takes over the handle, whether it succeeds or not.
  bool Put(UINT format, HANDLE handle) { return EmptyClipboard() && SetClipboardData(format, handle) != nullptr; }

 private:
  HWND window = nullptr;
  bool open = false;
};

using Painter = Color (*)(int x, int y);

// Stripes and a diagonal of black and white.
Color TwoColors(int x, int y) {
  return (x / 16 + y / 16) % 2 == 0 || x == y ? kBlack : kWhite;
}

// Black, white, the middle grey, the transparent colour and greys, each in several tiles.
Color Greys(int x, int y) {
  switch (y / 20 % 5) {
    case 0:
      return kBlack;
    case 1:
      return kWhite;
    case 2:
      return kGrey;
    case 3:
      return x / 30 % 2 == 0 ? kGreen : kBlack;
    default:
      return static_cast<Color>(x % kGreenEntry) * 0x010101;
  }
}

// As above, and colours that aren't grey.
Color Colors(int x, int y) {
  if (y / 20 % 5 != 4) return Greys(x, y);
  const uint32_t red = static_cast<uint32_t>(x) % 256;
  const uint32_t green = static_cast<uint32_t>(y * 7) % 256;
  const uint32_t blue = static_cast<uint32_t>(x * 3 + y) % 256;
  return red << 16 | green << 8 | blue;
}

// What a paste shows of a colour: black, dark, light and white, mixed in tiles of four by four by the colour's grey.
Color Pasted(Color color, int x, int y) {
  const int red = static_cast<int>(color >> 16 & 0xFF);
  const int green = static_cast<int>(color >> 8 & 0xFF);
  const int blue = static_cast<int>(color & 0xFF);
  const int level = (blue + (red + 2 * green) * 2) / 7 * 49 / 256;
  // The order in which the pixels of a tile turn to the rarer one of the two; half of them never do.
  constexpr int never = 16;
  constexpr int order[4][4] = {{never, 3, never, 0}, {6, never, 4, never}, {never, 1, never, 2}, {5, never, 7, never}};
  constexpr Color scale[4] = {kBlack, kDarkGrey, kLightGrey, kWhite};
  if (level == 0) return kBlack;
  const int darker = (level - 1) / 16;
  const int dark = (16 - level % 16) % 16;
  const int place = order[y % 4][x % 4];
  const bool takesDark = dark <= 8 ? place < dark : place >= 16 - dark;
  return scale[takesDark ? darker : darker + 1];
}

// A picture as CF_DIB with this many bits a pixel; null for no memory. With 8 bits or 1 the painter is Greys or
// TwoColors.
HGLOBAL MakeDib(int bits, Painter painter) {
  const size_t colors = bits <= 8 ? size_t{1} << bits : 0;
  const size_t pitch = (static_cast<size_t>(kWidth * bits) + 31) / 32 * 4;
  const size_t rows = sizeof(BITMAPINFOHEADER) + colors * sizeof(RGBQUAD);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, rows + pitch * kHeight);
  if (memory == nullptr) return nullptr;
  uint8_t* data = static_cast<uint8_t*>(GlobalLock(memory));
  BITMAPINFOHEADER header = {};
  header.biSize = sizeof(header);
  header.biWidth = kWidth;
  header.biHeight = kHeight;
  header.biPlanes = 1;
  header.biBitCount = static_cast<WORD>(bits);
  std::memcpy(data, &header, sizeof(header));
  std::vector<Color> table(colors);
  if (bits == 1) table = {kBlack, kWhite};
  for (size_t i = 0; bits == 8 && i < colors; i++)
    table[i] = i == kGreenEntry ? kGreen : static_cast<Color>(i) * 0x010101;
  for (size_t i = 0; i < colors; i++) {
    const RGBQUAD entry = {static_cast<BYTE>(table[i]), static_cast<BYTE>(table[i] >> 8),
                           static_cast<BYTE>(table[i] >> 16), 0};
    std::memcpy(data + sizeof(header) + i * sizeof(entry), &entry, sizeof(entry));
  }
  for (int y = 0; y < kHeight; y++) {
    uint8_t* row = data + rows + pitch * static_cast<size_t>(kHeight - 1 - y);
    for (int x = 0; x < kWidth; x++) {
      const Color color = painter(x, y);
      const size_t place = static_cast<size_t>(x);
      if (bits == 1) {
        if (color == kWhite) row[place / 8] = static_cast<uint8_t>(row[place / 8] | 0x80 >> (x % 8));
      } else if (bits == 8) {
        row[place] = color == kGreen ? kGreenEntry : static_cast<uint8_t>(color);
      } else {
        uint8_t* pixel = row + place * static_cast<size_t>(bits / 8);
        pixel[0] = static_cast<uint8_t>(color);
        pixel[1] = static_cast<uint8_t>(color >> 8);
        pixel[2] = static_cast<uint8_t>(color >> 16);
      }
    }
  }
  GlobalUnlock(memory);
  return memory;
}

// The same as CF_BITMAP, of one bit or as the screen has them.
HBITMAP MakeBitmap(bool monochrome, Painter painter) {
  const HDC screen = GetDC(nullptr);
  const HBITMAP bitmap =
      monochrome ? CreateBitmap(kWidth, kHeight, 1, 1, nullptr) : CreateCompatibleBitmap(screen, kWidth, kHeight);
  std::vector<uint32_t> pixels;
  for (int y = 0; y < kHeight; y++) {
    for (int x = 0; x < kWidth; x++) pixels.push_back(painter(x, y));
  }
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = kWidth;
  info.bmiHeader.biHeight = -kHeight;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  SetDIBits(screen, bitmap, 0, kHeight, pixels.data(), &info, DIB_RGB_COLORS);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

uint32_t Number(const std::vector<uint8_t>& bytes, size_t place, int length) {
  uint32_t number = 0;
  for (int i = 0; i < length; i++) number |= static_cast<uint32_t>(bytes[place + static_cast<size_t>(i)]) << (8 * i);
  return number;
}

class ClipboardTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  void Stroke(POINT from, POINT to) {
    Drag(app.At(from.x, from.y), app.At(to.x, to.y));
    app.ParkMouse();
    ASSERT_TRUE(app.HasPixel(to.x, to.y, kBlack));
  }

  // The ground with a line of ink on it, and all of the canvas as it looks with that.
  void MakeGround() {
    ASSERT_TRUE(app.NewCut("A", kCanvasWidth, kCanvasHeight));
    ASSERT_TRUE(app.HasPixel(kCanvasWidth - 1, kCanvasHeight - 1, kTransparent));
    Stroke({7, 340}, {470, 12});
    ASSERT_FALSE(HasFatalFailure());
    Press(VK_F3);
    app.StillPictureOf(app.Cut());
    ground = app.PictureOfCanvas();
    ASSERT_GT(ground.Count(kBlack), 300);
  }

  void Put(UINT format, HANDLE handle) {
    Clipboard clipboard;
    ASSERT_TRUE(clipboard.IsOpen());
    ASSERT_NE(handle, nullptr);
    ASSERT_TRUE(clipboard.Put(format, handle));
  }

  // Pastes and looks at every pixel; then takes the paste back.
  void ExpectPasted(Painter painter, bool transparent, const std::string& picture) {
    ASSERT_TRUE(app.Choose('e', "bp"));
    ASSERT_TRUE(Await([this] { return app.IsToolDown(kToolAreaSelect); }));
    // Another frame takes off the box in which the picture floats.
    Press(VK_F3);
    const auto expected = [&](int x, int y) {
      const bool inside = x < kWidth && y < kHeight;
      const Color color = inside ? painter(x, y) : kGreen;
      return inside && !(transparent && color == kGreen) ? Pasted(color, x, y) : ground.At(x, y);
    };
    int wrong = 0;
    POINT place = {};
    Color shown = 0;
    Await([&] {
      const Picture canvas = app.PictureOfCanvas();
      wrong = 0;
      for (int y = kCanvasHeight - 1; y >= 0; y--) {
        for (int x = kCanvasWidth - 1; x >= 0; x--) {
          if (canvas.At(x, y) == expected(x, y)) continue;
          wrong++;
          place = {x, y};
          shown = canvas.At(x, y);
        }
      }
      return wrong == 0;
    });
    EXPECT_EQ(wrong, 0) << "the first one at " << place.x << ", " << place.y << ": " << std::hex << shown
                        << " instead of " << expected(place.x, place.y);
    if (!picture.empty()) {
      EXPECT_TRUE(app.Keep(picture));
    }
    Type("z");
    ASSERT_TRUE(Await([this] { return app.PictureOfCanvas() == ground; })) << "the paste isn't taken back";
  }

  Picture ground;
};

TEST_F(ClipboardTest, AnotherProgramGetsTheCell) {
  // The rows have a byte of their own at the end, and fill no four bytes.
  constexpr int width = 101;
  constexpr int height = 67;
  constexpr int pitch = 52;
  ASSERT_TRUE(app.NewCut("A", width, height));
  ASSERT_TRUE(app.HasPixel(width - 1, height - 1, kTransparent));
  Stroke({10, 8}, {60, 8});
  Stroke({20, 30}, {90, 50});
  ASSERT_FALSE(HasFatalFailure());
  // Fills have a black of their own.
  Type("W");
  ASSERT_TRUE(Await([this] { return app.IsToolDown(kToolFill); }));
  Click(app.At(30, 8));
  // The eraser turns ink into underdrawing.
  Type("2");
  ASSERT_TRUE(Await([this] { return app.IsToolDown(kToolEraser); }));
  Drag(app.At(50, 8), app.At(50, 9));
  ASSERT_TRUE(app.HasPixel(50, 8, kSketch));
  // A selection doesn't matter.
  Type("Q");
  ASSERT_TRUE(Await([this] { return app.IsToolDown(kToolAreaSelect); }));
  Drag(app.At(5, 5), app.At(25, 15));
  app.ParkMouse();
  EXPECT_TRUE(app.Keep("clipboard-cell"));
  {
    const Clipboard clipboard;
    ASSERT_TRUE(clipboard.IsOpen());
    EmptyClipboard();
  }
  ASSERT_TRUE(app.Choose('e', "bc"));
  ASSERT_TRUE(Await([] { return IsClipboardFormatAvailable(CF_DIB) != FALSE; }));
  std::vector<uint8_t> bytes;
  {
    const Clipboard clipboard;
    ASSERT_TRUE(clipboard.IsOpen());
    bytes = clipboard.Bytes(CF_DIB);
  }
  ASSERT_GE(bytes.size(), 104u + pitch * height);
  EXPECT_EQ(Number(bytes, 0, 4), 40u);
  EXPECT_EQ(Number(bytes, 4, 4), static_cast<uint32_t>(width));
  EXPECT_EQ(Number(bytes, 8, 4), static_cast<uint32_t>(height));
  EXPECT_EQ(Number(bytes, 12, 2), 1u);
  EXPECT_EQ(Number(bytes, 14, 2), 4u);
  for (const size_t place : {16u, 20u, 24u, 28u, 36u}) EXPECT_EQ(Number(bytes, place, 4), 0u) << place;
  EXPECT_EQ(Number(bytes, 32, 4), 16u);
  for (size_t i = 0; i < 16; i++) EXPECT_EQ(Number(bytes, 40 + 4 * i, 4), kTable[i]) << i;
  const auto value = [&](int x, int y) {
    const size_t place = 104 + static_cast<size_t>(pitch * (height - 1 - y) + x / 2);
    return x % 2 == 0 ? bytes[place] >> 4 : bytes[place] & 0xF;
  };
  EXPECT_EQ(value(0, 0), 0);
  EXPECT_EQ(value(30, 8), 1);
  EXPECT_EQ(value(50, 8), 5);
  EXPECT_EQ(value(20, 30), 8);
  EXPECT_EQ(value(90, 50), 8);
  EXPECT_EQ(value(20, 31), 0);
  // Each pixel stands in the window with its colour.
  Press(VK_F3);
  ASSERT_TRUE(app.HasPixel(20, 8, kBlack));
  app.StillPictureOf(app.Cut());
  const Picture canvas = app.PictureOfCanvas();
  int wrong = 0;
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) wrong += canvas.At(x, y) != kTable[value(x, y)];
  }
  EXPECT_EQ(wrong, 0);
}

TEST_F(ClipboardTest, PicturesOfAllDepthsArePasted) {
  MakeGround();
  ASSERT_FALSE(HasFatalFailure());
  // The middle grey is an even mixture.
  for (int y = 0; y < 4; y++) {
    for (int x = 0; x < 4; x++) ASSERT_EQ(Pasted(kGrey, x, y), (x + y) % 2 == 0 ? kLightGrey : kDarkGrey);
  }
  const struct {
    int bits;
    Painter painter;
    const char* picture;
  } dibs[] = {
      {1, TwoColors, "clipboard-two-colors"},
      {8, Greys, "clipboard-greys"},
      {24, Colors, "clipboard-colors"},
      {32, Colors, ""},
  };
  for (const auto& dib : dibs) {
    SCOPED_TRACE(dib.bits);
    Put(CF_DIB, MakeDib(dib.bits, dib.painter));
    ASSERT_FALSE(HasFatalFailure());
    ExpectPasted(dib.painter, false, dib.picture);
    ASSERT_FALSE(HasFatalFailure());
  }
  for (const bool monochrome : {true, false}) {
    SCOPED_TRACE(monochrome ? "monochrome bitmap" : "bitmap");
    const Painter painter = monochrome ? TwoColors : Colors;
    Put(CF_BITMAP, MakeBitmap(monochrome, painter));
    ASSERT_FALSE(HasFatalFailure());
    ExpectPasted(painter, false, "");
    ASSERT_FALSE(HasFatalFailure());
  }
}

TEST_F(ClipboardTest, TheTransparentColorLetsTheGroundShow) {
  MakeGround();
  ASSERT_FALSE(HasFatalFailure());
  ASSERT_TRUE(app.Choose('e', "bt"));
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr; }));
  app.StillPictureOf(app.Dialog());
  EXPECT_TRUE(app.KeepScreen("clipboard-color-dialog"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  for (const int bits : {8, 24, 32}) {
    SCOPED_TRACE(bits);
    const Painter painter = bits == 8 ? Greys : Colors;
    Put(CF_DIB, MakeDib(bits, painter));
    ASSERT_FALSE(HasFatalFailure());
    ExpectPasted(painter, true, bits == 24 ? "clipboard-transparent" : "");
    ASSERT_FALSE(HasFatalFailure());
  }
  Put(CF_BITMAP, MakeBitmap(false, Colors));
  ASSERT_FALSE(HasFatalFailure());
  ExpectPasted(Colors, true, "");
  ASSERT_FALSE(HasFatalFailure());
  // The same item switches it off, and asks nothing.
  ASSERT_TRUE(app.Choose('e', "bt"));
  ASSERT_TRUE(app.DialogGoes());
  ExpectPasted(Colors, false, "");
  ASSERT_FALSE(HasFatalFailure());
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "OnClipTrans", "Flag"), "0");
  EXPECT_EQ(Setting(app, "OnClipTrans", "RGB"), "#00FF00");
}

}  // namespace
}  // namespace sorvel::desktop
