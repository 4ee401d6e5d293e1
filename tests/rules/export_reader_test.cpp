// The bitmap files that the program writes, as another program's reader sees them: ImageMagick's.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "resources/ids.h"
#include "rules/drawing_session.h"

namespace rules {
namespace {

// What the other reader gives for a bitmap file: its size, and all pixels as red, green and blue bytes, the top row
// first.
struct OtherReading {
  int width = 0;
  int height = 0;
  std::string bytes;

  uint32_t At(int x, int y) const {
    const size_t at = static_cast<size_t>(y * width + x) * 3;
    const auto byte = [&](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(bytes.at(at + i))); };
    return byte(0) << 16 | byte(1) << 8 | byte(2);
  }
};

OtherReading ReadElsewhere(ScriptSession& session, const std::string& name) {
  const std::string command =
      "convert 'bmp:" + session.Path(name) + "' -depth 8 'ppm:" + session.Path("read.ppm") + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  const std::string file = session.Bytes("read.ppm");
  OtherReading reading;
  int depth = 0;
  int head = 0;
  EXPECT_EQ(std::sscanf(file.c_str(), "P6 %d %d %d%n", &reading.width, &reading.height, &depth, &head), 3) << name;
  EXPECT_EQ(depth, 255);
  reading.bytes = file.substr(static_cast<size_t>(head) + 1);
  EXPECT_EQ(reading.bytes.size(), static_cast<size_t>(reading.width * reading.height) * 3) << name;
  return reading;
}

// Each pixel is what the colour table, or the pixel itself, says.
void ExpectTheSamePicture(const OtherReading& reading, const PixelMatrix& picture) {
  ASSERT_EQ(reading.width, picture.Width());
  ASSERT_EQ(reading.height, picture.Height());
  int different = 0;
  for (int y = 0; y < picture.Height(); ++y) {
    for (int x = 0; x < picture.Width(); ++x) {
      const uint32_t value = picture.At(x, y);
      const uint32_t color = picture.Colors().empty() ? value : picture.Colors().at(value);
      different += reading.At(x, y) != color ? 1 : 0;
    }
  }
  EXPECT_EQ(different, 0);
}

void DrawSomething(DrawingSession& session) {
  session.FillArea(2, 2, 11, 7, 1);
  session.FillArea(20, 5, 9, 13, 2);
  session.FillArea(31, 1, 17, 6, 3);
  session.DrawInkLine(1, 44, 60, 21);
}

using BitmapElsewhere = DrawingTest;

TEST_F(BitmapElsewhere, AnExportedFrameIsReadWithItsGreys) {
  DrawSomething(session);
  session.File("out.bmp").Command(kCommandExportBitmap).Run();
  const OtherReading reading = ReadElsewhere(session, "out.bmp");
  ASSERT_EQ(reading.width, 64);
  ASSERT_EQ(reading.height, 48);
  EXPECT_EQ(reading.At(3, 3), 0x000000u);
  EXPECT_EQ(reading.At(21, 6), 0x555555u);
  EXPECT_EQ(reading.At(32, 2), 0xAAAAAAu);
  EXPECT_EQ(reading.At(60, 40), 0xFFFFFFu);
  EXPECT_EQ(reading.At(1, 44), 0x000000u);
  ExpectTheSamePicture(reading, PixelMatrix::FromBitmap(session.Path("out.bmp")));
}

TEST_F(BitmapElsewhere, AReducedDarkFrameIsReadWithItsBrightness) {
  DrawingSession other({.antialias = 1});
  DrawSomething(other);
  other.Panel(kBrightnessEdit, "25").Repaint().File(other.Path("out.bmp")).Command(kCommandExportBitmap).Run();
  const OtherReading reading = ReadElsewhere(other, "out.bmp");
  ASSERT_EQ(reading.width, 32);
  ASSERT_EQ(reading.height, 24);
  EXPECT_EQ(reading.At(2, 2), 0x000000u) << "black";
  EXPECT_EQ(reading.At(30, 20), 0x7F7F7Fu) << "white at a quarter of the brightness's range";
  ExpectTheSamePicture(reading, PixelMatrix::FromBitmap(other.Path("out.bmp")));
}

TEST_F(BitmapElsewhere, AFrameThatIsASectionOfTheCanvasIsReadTheRightWayUp) {
  session.FillArea(10, 5, 4, 3, 1).Dialog(kFrameSizeDialog, {{kFrameWidthEdit, "32"}, {kFrameHeightEdit, "24"}});
  session.Command(kCommandFrameSize).Command(kToolFramePosition).LeftDrag(0, 0, 8, 4).File("out.bmp");
  session.Command(kCommandExportBitmap).Run();
  const OtherReading reading = ReadElsewhere(session, "out.bmp");
  ASSERT_EQ(reading.width, 32);
  ASSERT_EQ(reading.height, 24);
  for (int y = 0; y < 24; ++y) {
    for (int x = 0; x < 32; ++x) {
      const bool isInk = x >= 2 && x < 6 && y >= 1 && y < 4;
      ASSERT_EQ(reading.At(x, y), isInk ? 0x000000u : 0xFFFFFFu) << x << ", " << y;
    }
  }
}

TEST_F(BitmapElsewhere, ViewAndScreenAreReadWithTheirColours) {
  DrawingSession other({.width = 61, .height = 47});
  DrawSomething(other);
  other.Line("view \"" + other.Path("view.bmp") + "\"").Line("screen \"" + other.Path("screen.bmp") + "\"").Run();
  for (const char* name : {"view.bmp", "screen.bmp"}) {
    SCOPED_TRACE(name);
    const OtherReading reading = ReadElsewhere(other, name);
    EXPECT_EQ(reading.width, 61);
    EXPECT_EQ(reading.height, 47);
    EXPECT_NE(reading.At(3, 3), reading.At(40, 40)) << "nothing is drawn";
    ExpectTheSamePicture(reading, PixelMatrix::FromBitmap(other.Path(name)));
  }
}

}  // namespace
}  // namespace rules
