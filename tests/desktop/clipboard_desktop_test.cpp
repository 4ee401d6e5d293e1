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

// What is pasted: a CF_DIB of so many bits a pixel, or a CF_BITMAP.
enum Kind : int { kMonochromeBitmap = -1, kScreenBitmap = 0, k1Bit = 1, k8Bits = 8, k24Bits = 24, k32Bits = 32 };

Painter PainterOf(Kind kind) {
  if (kind == k1Bit || kind == kMonochromeBitmap) return TwoColors;
  return kind == k8Bits ? Greys : Colors;
}

// The picture as CF_DIB; null for no memory.
HGLOBAL MakeDib(int bits, Painter painter) {
  const size_t colors = bits <= 8 ? size_t{1} << bits : 0;
  const size_t pitch = (static_cast<size_t>(kWidth * bits) + 31) / 32 * 4;
  const size_t rows = sizeof(BITMAPINFOHEADER) + colors * sizeof(Color);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, rows + pitch * kHeight);
  if (memory == nullptr) return nullptr;
  uint8_t* data = static_cast<uint8_t*>(GlobalLock(memory));
  const BITMAPINFOHEADER header = {sizeof(header), kWidth, kHeight, 1, static_cast<WORD>(bits), 0, 0, 0, 0, 0, 0};
  std::memcpy(data, &header, sizeof(header));
  for (size_t i = 0; i < colors; i++) {
    const Color color = static_cast<Color>(i) * (bits == 1 ? 0xFFFFFF : 0x010101);
    std::memcpy(data + sizeof(header) + i * sizeof(color), i == kGreenEntry ? &kGreen : &color, sizeof(color));
  }
  for (int y = 0; y < kHeight; y++) {
    uint8_t* row = data + rows + pitch * static_cast<size_t>(kHeight - 1 - y);
    for (int x = 0; x < kWidth; x++) {
      const Color color = painter(x, y);
      if (bits == 1) {
        if (color == kWhite) row[x / 8] = static_cast<uint8_t>(row[x / 8] | 0x80 >> (x % 8));
      } else {
        const Color value = bits == 8 && color == kGreen ? kGreenEntry : color;
        std::memcpy(row + x * (bits / 8), &value, static_cast<size_t>(bits / 8));
      }
    }
  }
  GlobalUnlock(memory);
  return memory;
}

// The picture as CF_BITMAP, of one bit or as the screen has them.
HBITMAP MakeBitmap(bool monochrome, Painter painter) {
  const HDC screen = GetDC(nullptr);
  const HBITMAP bitmap =
      monochrome ? CreateBitmap(kWidth, kHeight, 1, 1, nullptr) : CreateCompatibleBitmap(screen, kWidth, kHeight);
  const HGLOBAL dib = MakeDib(32, painter);
  const BITMAPINFO* info = static_cast<const BITMAPINFO*>(GlobalLock(dib));
  SetDIBits(screen, bitmap, 0, kHeight, &info->bmiHeader + 1, info, DIB_RGB_COLORS);
  GlobalFree(dib);
  ReleaseDC(nullptr, screen);
  return bitmap;
}

class ClipboardTest : public DesktopTest {
 protected:
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  // The ground with a line of ink on it, and all of the canvas as it looks with that.
  void MakeGround() {
    ASSERT_TRUE(app.NewCut("A", kCanvasWidth, kCanvasHeight));
    ASSERT_TRUE(app.HasPixel(kCanvasWidth - 1, kCanvasHeight - 1, kTransparent));
    ASSERT_TRUE(app.Stroke({7, 340}, {470, 12}));
    Press(VK_F3);
    app.StillPictureOf(app.Cut());
    ground = app.PictureOfCanvas();
    ASSERT_GT(ground.Count(kBlack), 300);
  }

  // Pastes a picture and looks at every pixel; then takes the paste back.
  void ExpectPasted(Kind kind, bool transparent, const std::string& picture = "") {
    SCOPED_TRACE(kind);
    const Painter painter = PainterOf(kind);
    {
      Clipboard clipboard;
      ASSERT_TRUE(clipboard.IsOpen());
      ASSERT_TRUE(kind > 0 ? clipboard.Put(CF_DIB, MakeDib(kind, painter))
                           : clipboard.Put(CF_BITMAP, MakeBitmap(kind == kMonochromeBitmap, painter)));
    }
    ASSERT_TRUE(app.Choose('e', "bp"));
    ASSERT_TRUE(app.HasTool(kToolAreaSelect));
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
    EXPECT_TRUE(picture.empty() || app.Keep(picture));
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
  ASSERT_TRUE(app.Stroke({10, 8}, {60, 8}));
  ASSERT_TRUE(app.Stroke({20, 30}, {90, 50}));
  // Fills have a black of their own.
  ASSERT_TRUE(app.TypeUntilTool("W", kToolFill));
  Click(app.At(30, 8));
  // The eraser turns ink into underdrawing.
  ASSERT_TRUE(app.TypeUntilTool("2", kToolEraser));
  Drag(app.At(50, 8), app.At(50, 9));
  ASSERT_TRUE(app.HasPixel(50, 8, kSketch));
  // A selection doesn't matter.
  ASSERT_TRUE(app.TypeUntilTool("Q", kToolAreaSelect));
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
  const BITMAPINFOHEADER header = {sizeof(header), width, height, 1, 4, 0, 0, 0, 0, 16, 0};
  EXPECT_EQ(std::memcmp(bytes.data(), &header, sizeof(header)), 0);
  EXPECT_EQ(std::memcmp(bytes.data() + sizeof(header), kTable, sizeof(kTable)), 0);
  const auto value = [&](int x, int y) {
    const size_t place = 104 + static_cast<size_t>(pitch * (height - 1 - y) + x / 2);
    return x % 2 == 0 ? bytes[place] >> 4 : bytes[place] & 0xF;
  };
  constexpr int values[][3] = {{0, 0, 0}, {30, 8, 1}, {50, 8, 5}, {20, 30, 8}, {90, 50, 8}, {20, 31, 0}};
  for (const auto& [x, y, expected] : values) EXPECT_EQ(value(x, y), expected) << x << ", " << y;
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
  ASSERT_NO_FATAL_FAILURE(MakeGround());
  // The middle grey is an even mixture.
  for (int y = 0; y < 4; y++) {
    for (int x = 0; x < 4; x++) ASSERT_EQ(Pasted(kGrey, x, y), (x + y) % 2 == 0 ? kLightGrey : kDarkGrey);
  }
  const std::pair<Kind, const char*> pictures[] = {
      {k1Bit, "clipboard-two-colors"}, {k8Bits, "clipboard-greys"}, {k24Bits, "clipboard-colors"}, {k32Bits, ""},
      {kMonochromeBitmap, ""},         {kScreenBitmap, ""},
  };
  for (const auto& [kind, picture] : pictures) ASSERT_NO_FATAL_FAILURE(ExpectPasted(kind, false, picture));
}

TEST_F(ClipboardTest, TheTransparentColorLetsTheGroundShow) {
  ASSERT_NO_FATAL_FAILURE(MakeGround());
  ASSERT_TRUE(app.Choose('e', "bt"));
  ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr; }));
  app.StillPictureOf(app.Dialog());
  EXPECT_TRUE(app.KeepScreen("clipboard-color-dialog"));
  Press(VK_RETURN);
  ASSERT_TRUE(app.DialogGoes());
  for (const Kind kind : {k8Bits, k24Bits, k32Bits, kScreenBitmap})
    ASSERT_NO_FATAL_FAILURE(ExpectPasted(kind, true, kind == k24Bits ? "clipboard-transparent" : ""));
  // The same item switches it off, and asks nothing.
  ASSERT_TRUE(app.Choose('e', "bt"));
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_NO_FATAL_FAILURE(ExpectPasted(kScreenBitmap, false));
  ASSERT_TRUE(app.Leave());
  EXPECT_EQ(Setting(app, "OnClipTrans", "Flag"), "0");
  EXPECT_EQ(Setting(app, "OnClipTrans", "RGB"), "#00FF00");
}

TEST_F(ClipboardTest, APictureOfTheSystemsClipboardIsPasted) {
  ASSERT_TRUE(app.NewCut());
  {
    Clipboard clipboard;
    ASSERT_TRUE(clipboard.IsOpen());
    ASSERT_TRUE(clipboard.Put(CF_BITMAP, CreateBitmap(40, 30, 1, 1, std::vector<uint8_t>(6 * 30).data())));
  }
  ASSERT_TRUE(app.Choose('e', "bp"));
  // It floats in a frame at the corner of the canvas.
  ASSERT_TRUE(app.HasPixel(20, 15, kBlack));
  EXPECT_TRUE(app.HasTool(kToolAreaSelect));
  EXPECT_EQ(app.Pixel(45, 15), kTransparent);
  Drag(app.At(20, 15), app.At(120, 95));
  app.ParkMouse();
  EXPECT_TRUE(app.HasPixels({{120, 95, kBlack}, {10, 10, kTransparent}}));
  EXPECT_TRUE(app.Keep("pasted"));
}

}  // namespace
}  // namespace sorvel::desktop
