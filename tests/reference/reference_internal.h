// What the files of the reference share among themselves.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "reference.h"

namespace reference {

// ---- bytes ---------------------------------------------------------------

void Put8(Bytes* out, int value);
void Put16(Bytes* out, int value);
void Put32(Bytes* out, std::uint32_t value);
void PutText(Bytes* out, const std::string& text);  // with its zero byte
void Patch16(Bytes* out, std::size_t at, int value);
void Patch32(Bytes* out, std::size_t at, std::uint32_t value);

// Reads behind the end give -1 (GetC) or zero bytes (the integers).
struct Reader {
  const Bytes* data = nullptr;
  std::size_t position = 0;

  int GetC();
  int U8();
  int I8();
  int U16();
  int I16();
  std::uint32_t U32();
  // Up to a zero byte; at most 256 bytes are taken, and of 256 bytes without a zero the last is lost and the rest is
  // left unread.
  std::string Text();
};

// ---- the copy codes ------------------------------------------------------

struct Offset {
  int dx;
  int dy;
};

// Index is the code. Code 0 is a literal. Code 15 is for cells only: in the compiled stream it means the same place in
// the frame before.
extern const Offset kOffsets[16];

// ---- the document --------------------------------------------------------

int ScaleOf(const CutData& cut);  // 1, 2 or 4; 1 for an unknown antialias
int DecodedBrightness(const FrameData& frame);
int EffectiveTime(const CutData& cut, int frameIndex);
bool SameAs(const FrameData& one, const FrameData& other);
void SelectRecord(FrameData* frame, int record);
void RecordPosition(const CutData& cut, const FrameData& frame, int record, int* x, int* y);
// Null for a bad index, a blank record and a cell number behind the layer's cells; x and y are written only with an
// image.
const Cell* VisibleCell(const CutData& cut, const FrameData& frame, int record, int* x, int* y);

bool ReadLayerBlock(Reader* in, LayerData* layer);

// ---- composition ---------------------------------------------------------

struct Box {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const Box&) const = default;
};

bool IsEmpty(const Box& box);
// An empty box adds nothing, and an empty target takes the new box over.
void AddBox(Box* target, const Box& box);

// One role a byte, rows without padding.
struct Canvas {
  int width = 0;
  int height = 0;
  Bytes pixels;

  Canvas(int canvasWidth, int canvasHeight);
  std::uint8_t Get(int x, int y) const;
  void Set(int x, int y, std::uint8_t value);
  void Clear(const Box& area);  // clipped to the canvas
};

constexpr std::uint32_t kOnionPrevious = 1;
constexpr std::uint32_t kOnionNext = 2;
constexpr std::uint32_t kCurrentCellOnly = 4;
constexpr std::uint32_t kDimOthers = 8;

// Keyed copy. outBox, when not null, gets the box of the ink in source coordinates; a block that clips to nothing
// leaves it alone.
bool Composite(Canvas* target, int dx, int dy, const Cell& source, int sx, int sy, int width, int height, bool pale,
               Box* outBox);
void Overlay(Canvas* target, int dx, int dy, const Cell& source, int sx, int sy, int width, int height, int variant);
void ComposeFrame(Canvas* target, const CutData& cut, const FrameData& frame, const Box& area, std::uint32_t flags,
                  std::vector<Box>* inkBoxes);

// ---- the two planes ------------------------------------------------------

struct Color {
  int red = 0;
  int green = 0;
  int blue = 0;
  bool operator==(const Color&) const = default;
};

struct Planes {
  int frontIsHigh = 0;
  int width = 0;
  int height = 0;
  int pitch = 0;
  // pitch * height bytes and 16 spare ones: blocks of four pixels reach over the end of the last row.
  Bytes memory;
  Bytes saved;
  std::array<Color, 16> baseColors{};
  std::array<std::array<Color, 16>, 2> planeColors{};
  std::array<Color, 256> mixColors{};

  bool Create(int newWidth, int newHeight);
  int GetByte(int x, int y) const;  // 0 outside the memory
  int GetFront(int x, int y) const;
  int GetBack(int x, int y) const;
  void SetFront(int x, int y, int value);
  std::array<int, 4> GetFront4(int x, int y) const;
  std::array<int, 4> GetBack4(int x, int y) const;
  void SetFront4(int x, int y, const std::array<int, 4>& values);
  void FillBits(int value);
  void SaveBits();
  void RestoreBits();
  Color FrontColor(int index) const;
  Color BackColor(int index) const;
  void SetMixColor(int front, int back, const Color& color);
  void SetLevels(int count);
  void SetBrightness(int value);
  void MixPlanes(int a, int b);
  void CopyBackToFront(const Box& area);  // clipped to the picture
  // The part of the bounding box of inner and other that lies outside inner.
  void CopyAround(const Box& inner, const Box& other);
  void ReduceFrom(const Canvas& composition, Box* outBox, int scale, const Box* area);
  Bytes FrontPicture() const;  // width * height levels
};

// ---- compiled streams ----------------------------------------------------

// EncodeCut; frontPictures, when not null, gets the encoder's front plane as it stood after each frame.
Bytes EncodeFrames(const CutData& cut, int first, int last, bool* refused, std::uint32_t viewFlags,
                   std::vector<Bytes>* frontPictures);

struct Decoder {
  Reader in;
  Planes planes;
  int cutCount = 0;
  int cutIndex = 0;
  int width = 0;
  int height = 0;
  int outputWidth = 0;
  int outputHeight = 0;
  int frameX = 0;
  int frameY = 0;
  int frameWidth = 0;
  int frameHeight = 0;
  Box previousBox;
  Box currentBox;
  Box loopBox;
  int fps = 0;
  int levels = 0;
  std::vector<std::uint32_t> cutOffsets;
  std::size_t firstCutOffset = 0;
  std::size_t streamEnd = 0;
  int loopCount = 1;
  std::size_t loopStart = 0;
  int frameCounter = 0;
  int loopFrameCounter = 0;
  std::string cutName;

  bool OpenStream(const Bytes& stream);
  int DecodeNextFrame();
};

}  // namespace reference
