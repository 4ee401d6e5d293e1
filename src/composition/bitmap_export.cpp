#include "document/cut.h"
#include "foundation/bitmap_head.h"

namespace sorvel {

namespace {

constexpr int32_t kColors = 16;

}  // namespace

bool Cut::ExportFrameBitmap(ByteStream* stream, NibbleBitmap* bitmap, CellImage* composition) {
  Frame* frame = CurrentFrame();
  const int32_t scale = OutputScale(Antialias());
  if (frame == nullptr || bitmap->Create(width / scale, height / scale) == 0) return false;
  composition->Fill(0);
  const uint32_t flags = viewFlags & kCurrentCellOnly;
  frame->ComposeFrame(composition, 0, 0, width, height, &flags, nullptr);
  bitmap->FillBits(0);
  bitmap->frontIsHigh = 0;
  bitmap->ReduceFrom(*composition, nullptr, scale, nullptr);
  bitmap->SetLevels(OutputLevels(scale));
  bitmap->SetBrightness(frame->DecodedBrightness());
  bitmap->MixPlanes(0, 1);

  const int32_t outputWidth = frameWidth / scale;
  const int32_t outputHeight = frameHeight / scale;
  // Quirk 10. The size counts padded rows although the rows are written without padding.
  WriteBitmapHeads(*stream, {outputWidth, outputHeight, 4, 0, kColors},
                   outputHeight * (((outputWidth + 1) / 2 + 3) & ~3));
  for (int32_t i = 0; i < kColors; ++i) {
    int32_t red = 0;
    int32_t green = 0;
    int32_t blue = 0;
    bitmap->GetFrontColor(i, &red, &green, &blue);
    WriteField(*stream, blue | green << 8 | red << 16, 4);
  }
  // The frame rectangle may reach beyond the picture. Left and right of the picture this reads pixels of the rows above
  // and below, as they lie in memory; outside the memory of the bitmap it reads 0.
  const auto levelAt = [bitmap](int64_t x, int64_t y) {
    const int64_t place = y * bitmap->pitch + x;
    return place >= 0 && place < bitmap->imageSize + platform::kSpareBytes ? bitmap->bits[place] & 0x0F : 0;
  };
  for (int32_t row = outputHeight - 1; row >= 0; --row) {
    const int64_t y = frame->y / scale + row;
    for (int32_t column = 0; column < outputWidth; column += 2) {
      const int64_t x = frame->x / scale + column;
      stream->PutC(levelAt(x, y) << 4 | levelAt(x + 1, y));
    }
  }
  return true;
}

}  // namespace sorvel
