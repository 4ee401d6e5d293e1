#include "animation/stream_encoder.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "animation/stream_format.h"
#include "docfiles/code_rows.h"
#include "foundation/buffer.h"
#include "foundation/job_line.h"

namespace sorvel {

namespace {

constexpr int64_t kMostPixels = int64_t{1} << 28;

constexpr CodeSearch kSearch({1, 4, 5, 6, 15, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3, 0});

// The parts of a rectangle that a division by scale takes in: its edges go outward to multiples.
Rect ReduceArea(const Rect& area, int32_t scale, const NibbleBitmap& bitmap) {
  const int32_t left = std::max(area.x, 0);
  const int32_t top = std::max(area.y, 0);
  const int32_t right = std::max(area.x + area.width, 0);
  const int32_t bottom = std::max(area.y + area.height, 0);
  const int32_t x0 = left / scale;
  const int32_t y0 = top / scale;
  const int32_t x1 = std::min((right + scale - 1) / scale, bitmap.width);
  const int32_t y1 = std::min((bottom + scale - 1) / scale, bitmap.height);
  return {x0, y0, x1 - x0, y1 - y0};
}

// The part of a cell's ink that lies on the canvas when the cell stands at (x, y).
Rect OnCanvas(const Rect& ink, int32_t x, int32_t y, const Rect& canvas) {
  const auto clip = [](int64_t from, int32_t length, int32_t limit, int32_t* start, int32_t* size) {
    const int64_t end = std::clamp<int64_t>(from + length, 0, limit);
    from = std::clamp<int64_t>(from, 0, limit);
    *start = static_cast<int32_t>(from);
    *size = static_cast<int32_t>(end - from);
  };
  Rect area;
  clip(int64_t{x} + ink.x, ink.width, canvas.width, &area.x, &area.width);
  clip(int64_t{y} + ink.y, ink.height, canvas.height, &area.y, &area.height);
  return area;
}

// The box of all pixels that aren't transparent.
Rect FindInkBox(CellImage* image) {
  int32_t left = image->width;
  int32_t right = 0;
  int32_t top = -1;
  int32_t bottom = 0;
  for (int32_t y = 0; y < image->height; ++y) {
    const int32_t first = image->FindInk(0, y, image->width, 1);
    if (first == image->width) continue;
    if (top < 0) top = y;
    bottom = y + 1;
    left = std::min(left, first);
    right = std::max(right, image->FindInk(image->width - 1, y, right - 1, 0) + 1);
  }
  return top < 0 ? Rect{} : Rect{left, top, right - left, bottom - top};
}

// Bytes of the blocks of a row of the bitmap, and of all rows with what may be read behind the last.
int32_t BlockPitch(int32_t width) {
  return 2 * UnitsOf(width + 2) + 8;
}
ptrdiff_t BlockPlaneBytes(int32_t width, int32_t height) {
  return ptrdiff_t{BlockPitch(width)} * height + 64;
}

[[gnu::always_inline]] inline void PackRow(const uint8_t* pixels, int32_t count, int32_t shift, uint8_t* row) {
  for (int32_t k = 0; k < count; ++k) {
    const auto pair = static_cast<uint16_t>(LoadAs<uint16_t>(pixels + 2 * k) >> shift);
    row[k] = static_cast<uint8_t>((pair & 0x0F) | (pair >> 4 & 0xF0));
  }
}

SORVEL_WIDE void PackRowWide(const uint8_t* pixels, int32_t count, int32_t shift, uint8_t* row) {
  PackRow(pixels, count, shift, row);
}

// A cell as a frame shows it; without an image if it is missing or blank.
struct ShownCell {
  CellImage* image = nullptr;
  int32_t x = 0;
  int32_t y = 0;
  bool operator==(const ShownCell&) const = default;
};
using ShownCells = std::vector<ShownCell>;  // the bottom one first

// What is to be known of a frame to encode it, and what comes of it.
struct EncodedFrame {
  bool isComposed = false;  // else it shows what the frame before it shows
  ShownCells cells;
  ShownCells before;  // of the frame that was composed last
  Rect box;
  int32_t mapSize = 0;
  int32_t codeSize = 0;
  int32_t literalSize = 0;
};

// Frames that follow each other, for one thread. The first one is composed.
struct Run {
  // Adds bytes to the sections. False without memory.
  bool Put(const uint8_t* bytes, int32_t count);

  std::vector<EncodedFrame> frames;
  int32_t composedBefore = 0;  // frames of the cut
  Buffer<uint8_t> sections;    // of all its frames
  size_t sectionBytes = 0;
  bool hasMemory = true;
};

bool Run::Put(const uint8_t* bytes, int32_t count) {
  const size_t end = sectionBytes + static_cast<size_t>(count);
  if (end > sections.Count()) {
    Buffer<uint8_t> larger;
    if (!larger.Allocate(std::max(end, 2 * sections.Count()))) return false;
    std::copy_n(sections.Data(), sectionBytes, larger.Data());
    sections = std::move(larger);
  }
  std::copy_n(bytes, count, sections.Data() + sectionBytes);
  sectionBytes = end;
  return true;
}

// Hands out the frames of a cut as plain data, so that threads need nothing of the cut itself.
class FrameReader {
 public:
  FrameReader(Cut* readCut, int32_t first, int32_t last)
      : cut(readCut), firstFrame(first), lastFrame(last), next(first) {
    cut->frames.Seek(cut->currentFrame);
    record = cut->frames.Current()->currentRecord;
  }

  int32_t FramesLeft() const { return lastFrame + 1 - next; }
  // Takes up to so many frames that are to be composed, and all behind them that show the same.
  void Take(int32_t most, Run* run);

 private:
  ShownCells CellsOf(Frame* frame) const;

  Cut* cut;
  int32_t firstFrame;
  int32_t lastFrame;
  int32_t next;
  int32_t record;  // under edit
  int32_t composedFrames = 0;
  Frame* previous = nullptr;
  // A frame that shows what the one before it shows isn't composed, and its current record says nothing about the
  // picture; the next change is measured from the frame whose picture stands.
  Frame* composed = nullptr;
};

void FrameReader::Take(int32_t most, Run* run) {
  run->frames.clear();
  run->composedBefore = composedFrames;
  run->sectionBytes = 0;
  for (; FramesLeft() > 0; ++next) {
    Frame* frame = cut->frames.At(next);
    const bool isComposed = next == firstFrame || !frame->SameAs(previous);
    if (isComposed && composedFrames - run->composedBefore == most) return;
    previous = frame;
    EncodedFrame& taken = run->frames.emplace_back();
    taken.isComposed = isComposed;
    if (!isComposed) continue;
    frame->SelectRecord(record);
    if (composed != nullptr) taken.before = CellsOf(composed);
    taken.cells = CellsOf(frame);
    composed = frame;
    ++composedFrames;
  }
}

ShownCells FrameReader::CellsOf(Frame* frame) const {
  ShownCells cells;
  const auto add = [&](int32_t index) {
    ShownCell cell;
    cell.image = frame->VisibleCell(index, &cell.x, &cell.y);
    cells.push_back(cell.image != nullptr ? cell : ShownCell());
  };
  if ((cut->viewFlags & kCurrentCellOnly) != 0) {
    add(frame->currentRecord);
  } else {
    for (int32_t i = 0; i < frame->records.Count(); ++i) add(i);
  }
  return cells;
}

// Makes pictures of frames and codes them. Touches nothing but its bitmap, its composition and the pixels of cells,
// which it only reads.
class FrameEncoder {
 public:
  // Neither is owned. The bitmap has the reduced size of the canvas.
  FrameEncoder(const Cut& cut, NibbleBitmap* planes, CellImage* image);

  bool AllocateSections();
  // `follows` says that the run before this one was the encoder's too.
  void Encode(Run* run, bool follows);

 private:
  void CatchUp(const ShownCells& cells, int32_t isHigh);
  void Compose(const ShownCells& cells, const Rect& area);
  Rect InkArea(const ShownCell& cell);
  Rect ChangedArea(const ShownCells& before, const ShownCells& after);
  Rect DrawArea(const Rect& area);
  Rect ReduceFrame(const Rect& changed);
  void EncodeBox(const Rect& box, bool isFirst);
  uint8_t* Plane(int32_t isHigh);
  void PackRows(int32_t top, int32_t bottom);

  NibbleBitmap* bitmap;
  CellImage* composition;
  Rect canvas;
  int32_t scale;

  std::unordered_map<const CellImage*, Rect> inkBoxes;  // of the cells met so far, in cell coordinates
  Rect previousArea;
  std::optional<ShownCells> shown;  // at the end of a run

  // The sections of the frame at work, made once for the largest box.
  CodeRowWriter rows{kSearch};
  int32_t literalBytes;  // of a block
  // The low plane of the bitmap and then the high one, two pixels a byte: what the blocks of a frame are compared with.
  Buffer<uint8_t> blocks;
};

FrameEncoder::FrameEncoder(const Cut& cut, NibbleBitmap* planes, CellImage* image)
    : bitmap(planes),
      composition(image),
      canvas{0, 0, cut.width, cut.height},
      scale(OutputScale(cut.Antialias())),
      literalBytes(OutputLevels(scale) <= 4 ? 1 : 2) {}

bool FrameEncoder::AllocateSections() {
  return blocks.Allocate(2 * static_cast<uint64_t>(BlockPlaneBytes(bitmap->width, bitmap->height))) &&
         rows.Allocate(bitmap->width, bitmap->height);
}

void FrameEncoder::Encode(Run* run, bool follows) {
  int32_t frameSlot = run->composedBefore;
  if (frameSlot > 0 && !follows) CatchUp(run->frames.front().before, (frameSlot - 1) & 1);
  for (EncodedFrame& frame : run->frames) {
    const bool isFirst = frameSlot == 0;
    frame.box = Rect{};
    if (frame.isComposed) {
      const Rect area = isFirst ? canvas : ChangedArea(frame.before, frame.cells);
      Compose(frame.cells, area);
      bitmap->frontIsHigh = frameSlot++ & 1;
      frame.box = isFirst ? DrawArea(ReduceArea(area, scale, *bitmap)) : ReduceFrame(area);
    }
    EncodeBox(frame.box, isFirst);
    frame.mapSize = rows.MapSize();
    frame.codeSize = rows.CodeSize();
    frame.literalSize = rows.LiteralSize();
    run->hasMemory = run->Put(rows.Map(), rows.MapSize()) && run->Put(rows.Codes(), rows.CodeSize()) &&
                     run->Put(rows.Literals(), rows.LiteralSize());
    if (!run->hasMemory) return;
    if (frame.isComposed && !follows) shown = std::move(frame.cells);
  }
}

// Makes the picture that stands ahead of a run from the one at the end of the encoder's last run, in this plane.
void FrameEncoder::CatchUp(const ShownCells& cells, int32_t isHigh) {
  const bool isOther = bitmap->frontIsHigh != isHigh;
  bitmap->frontIsHigh = isHigh;
  if (shown && isOther) {
    bitmap->CopyBackToFront(0, 0, bitmap->width, bitmap->height);
    PackRows(0, bitmap->height);
  }
  const Rect area = shown ? ChangedArea(*shown, cells) : canvas;
  Compose(cells, area);
  DrawArea(ReduceArea(area, scale, *bitmap));
}

void FrameEncoder::Compose(const ShownCells& cells, const Rect& area) {
  composition->FillRect(area.x, area.y, area.width, area.height, kTransparent);
  for (const ShownCell& cell : cells) {
    if (cell.image == nullptr) continue;
    composition->Composite({area.x, area.y}, cell.image, {area.x - cell.x, area.y - cell.y, area.width, area.height},
                           {.flags = kKeyed});
  }
}

// The cell's ink in canvas coordinates, cut to the canvas.
Rect FrameEncoder::InkArea(const ShownCell& cell) {
  if (cell.image == nullptr) return {};
  const auto [entry, isNew] = inkBoxes.try_emplace(cell.image);
  if (isNew) entry->second = FindInkBox(cell.image);
  return OnCanvas(entry->second, cell.x, cell.y, canvas);
}

// Holds every canvas pixel in which the pictures may differ, and is empty if there is none.
Rect FrameEncoder::ChangedArea(const ShownCells& before, const ShownCells& after) {
  Rect area;
  const size_t count = std::max(after.size(), before.size());
  for (size_t i = 0; i < count; ++i) {
    const ShownCell now = i < after.size() ? after[i] : ShownCell();
    const ShownCell then = i < before.size() ? before[i] : ShownCell();
    if (now == then) continue;
    UnionRect(&area, InkArea(then));
    UnionRect(&area, InkArea(now));
  }
  return area;
}

// Draws a part of the picture into the front plane, of which the rest is right, and gives the box of the whole. The
// back plane doesn't matter.
Rect FrameEncoder::DrawArea(const Rect& area) {
  bitmap->ReduceFrom(*composition, nullptr, scale, &area);
  PackRows(area.y, area.y + area.height);
  previousArea = {0, 0, bitmap->width, bitmap->height};
  return previousArea;
}

// Brings the front plane up to date with the back plane and draws the changed area into it. Gives the box of what
// really differs.
Rect FrameEncoder::ReduceFrame(const Rect& changed) {
  const Rect area = ReduceArea(changed, scale, *bitmap);
  if (area.IsEmpty()) {
    bitmap->CopyBackToFront(previousArea.x, previousArea.y, previousArea.width, previousArea.height);
  } else {
    bitmap->CopyBackToFrontAround(area, previousArea);
  }
  Rect changedRows = previousArea;
  UnionRect(&changedRows, area);
  previousArea = area;
  Rect box;
  bitmap->ReduceFrom(*composition, &box, scale, &area);
  PackRows(changedRows.y, changedRows.y + changedRows.height);
  return box;
}

void FrameEncoder::EncodeBox(const Rect& box, bool isFirst) {
  rows.Begin(box.width, box.height, literalBytes);
  if (box.IsEmpty()) return;
  // The farthest sources by their rows and columns.
  constexpr int32_t reach = 16;
  const int32_t above = std::min(box.y, reach);
  const int32_t pitch = BlockPitch(bitmap->width);
  const uint8_t* const front = Plane(bitmap->frontIsHigh);
  const ptrdiff_t toBack = Plane(bitmap->frontIsHigh ^ 1) - front;
  // The box begins in an even column.
  UnitRow row = {.units = front + box.y * pitch + box.x / 2,
                 .count = UnitsOf(box.width),
                 .offsets = {},
                 .unitsToTheLeft = std::min(box.x / 4, reach / 4),
                 .withNext = false,
                 .memory = blocks.Data(),
                 .memoryEnd = blocks.Data() + blocks.Count()};
  for (int32_t y = 0; y < box.height; ++y, row.units += pitch) {
    for (int32_t code = 1; code < kPreviousFrameBlock; ++code) {
      const UnitOffset& offset = kUnitOffsets[code];
      row.offsets[static_cast<size_t>(code)] = above + y + offset.dy >= 0 ? offset.dy * pitch + offset.dx / 2 : 0;
    }
    row.offsets[kPreviousFrameBlock] = isFirst ? 0 : toBack;
    rows.PutRow(row);
  }
}

uint8_t* FrameEncoder::Plane(int32_t isHigh) {
  return blocks.Data() + (isHigh != 0 ? BlockPlaneBytes(bitmap->width, bitmap->height) : 0);
}

// Packs rows of the front plane, and the one above: a block at the end of a row goes on into the row below. The left
// pixel of two goes into the lowest bits.
void FrameEncoder::PackRows(int32_t top, int32_t bottom) {
  const int32_t shift = bitmap->frontIsHigh != 0 ? 4 : 0;
  for (int32_t y = std::max(top - 1, 0); y < std::min(bottom, bitmap->height); ++y) {
    const uint8_t* const pixels = bitmap->bits + y * bitmap->pitch;
    uint8_t* const row = Plane(bitmap->frontIsHigh) + y * BlockPitch(bitmap->width);
    const int32_t count = 2 * UnitsOf(bitmap->width + 2);
    if (HasWideVectors()) {
      PackRowWide(pixels, count, shift, row);
    } else {
      PackRow(pixels, count, shift, row);
    }
  }
}

// An encoder with the run that it has in hand.
struct Place {
  // False without memory.
  bool Begin(const Cut& cut, NibbleBitmap* planes, CellImage* image) {
    encoder = std::make_unique<FrameEncoder>(cut, planes, image);
    return encoder->AllocateSections();
  }
  // The same on copies of these.
  bool BeginOnCopies(const Cut& cut, const NibbleBitmap& planes, CellImage* image) {
    composition.reset(image->MakeBlank());
    if (composition == nullptr || bitmap.Create(planes.width, planes.height) == 0) return false;
    bitmap.CopyPlanes(planes);
    return Begin(cut, &bitmap, composition.get());
  }

  struct Destroyer {
    void operator()(CellImage* image) const { DestroyImage(image); }
  };
  NibbleBitmap bitmap;
  std::unique_ptr<CellImage, Destroyer> composition;
  std::unique_ptr<FrameEncoder> encoder;
  Run run;
};

// To begin a run takes half of what it takes to encode a frame or more, so a run is longer. A run is a part of what is
// left for each thread, so that the last ones are short and all threads are done at about the same time.
constexpr int32_t kShortestRun = 4;
constexpr int32_t kLongestRun = 32;
constexpr int32_t kRunsOfThread = 2;

// As many as are worth while; fewer if memory is short, and none if there isn't enough for one. The first one has the
// given bitmap and composition.
std::vector<std::unique_ptr<Place>> MakePlaces(const Cut& cut, int32_t frames, NibbleBitmap* bitmap,
                                               CellImage* composition) {
  constexpr int64_t bytesOfPixel = 6;
  const int64_t pixels = int64_t{bitmap->width} * bitmap->height;
  const int32_t jobs = JobsAtOnce(frames / kShortestRun, composition->ByteCount() + pixels * bytesOfPixel);
  // Places are large here, and one more than there are threads is enough.
  const int32_t most = jobs / 2 + 1;
  std::vector<std::unique_ptr<Place>> places;
  for (int32_t i = 0; i < most; ++i) {
    auto place = std::make_unique<Place>();
    if (!(i == 0 ? place->Begin(cut, bitmap, composition) : place->BeginOnCopies(cut, *bitmap, composition))) break;
    places.push_back(std::move(place));
  }
  return places;
}

void WriteFrame(Cut* cut, int32_t index, bool isFirst, const EncodedFrame& encoded, const uint8_t* sections,
                ByteStream* stream) {
  const int32_t scale = OutputScale(cut->Antialias());
  const Frame* frame = cut->frames.At(index);
  StreamFrameHead head;
  head.time = cut->EffectiveTime(index);
  head.loop = frame->loop & 0xFFFF;
  if (isFirst) {
    // There is no picture to dissolve from, and a loop that begins ahead of this frame has to end here.
    head.time = std::abs(head.time);
    if (head.loop == 0) head.loop = 1;
  }
  head.brightness = frame->DecodedBrightness();
  head.x = frame->x / scale;
  head.y = frame->y / scale;
  head.box = encoded.box;
  head.codeSize = static_cast<uint32_t>(encoded.codeSize);
  head.literalSize = static_cast<uint32_t>(encoded.literalSize);
  WriteFrameHead(*stream, head);
  for (const int32_t size : {encoded.mapSize, encoded.codeSize, encoded.literalSize}) {
    stream->Write(sections, size);
    sections += size;
  }
}

}  // namespace

const char* CanvasProblem(const Cut& cut) {
  constexpr int32_t largestSide = INT16_MAX;
  const int32_t scale = OutputScale(cut.Antialias());
  if (cut.width < scale || cut.height < scale) return "the canvas is too small for its output size";
  const bool isTooLarge = cut.width / scale > largestSide || cut.height / scale > largestSide ||
                          int64_t{cut.width} * cut.height > kMostPixels;
  return isTooLarge ? "the canvas is too large" : nullptr;
}

const char* FrameProblem(const Cut& cut) {
  if (const char* problem = CanvasProblem(cut)) return problem;
  return int64_t{cut.frameWidth} * cut.frameHeight > kMostPixels ? "the frame is too large" : nullptr;
}

AnimationEncoder::AnimationEncoder(ByteStream* outputStream, NibbleBitmap* planes, int32_t capacity)
    : stream(outputStream), bitmap(planes), cutCapacity(capacity) {}

int32_t AnimationEncoder::EncodeCut(Cut* cut, CellImage* composition, int32_t first, int32_t last) {
  if (cutsDone >= cutCapacity || first > last || first < 0 || last >= cut->frames.Count() || cut->Antialias() == 3) {
    return 0;
  }
  const int32_t count = last - first + 1;
  const std::vector<std::unique_ptr<Place>> places = MakePlaces(*cut, count, bitmap, composition);
  if (places.empty()) return 0;
  ++cutsDone;
  WriteStreamStart(*stream, StreamKind::kCompiledCut);
  WriteText(*stream, cut->credit);
  WriteCutHead(*stream, OutputHead(*cut));

  const auto placeCount = static_cast<int32_t>(places.size());
  const bool isAlone = placeCount == 1;
  const int32_t runs = kRunsOfThread * (placeCount - 1);
  FrameReader reader(cut, first, last);
  JobLine line(placeCount, [&places, isAlone](int32_t place) {
    places[static_cast<size_t>(place)]->encoder->Encode(&places[static_cast<size_t>(place)]->run, isAlone);
  });
  int32_t index = first;
  const auto writeOldest = [&] {
    const Run& run = places[static_cast<size_t>(line.Take())]->run;
    if (!run.hasMemory) return false;
    const uint8_t* sections = run.sections.Data();
    for (const EncodedFrame& frame : run.frames) {
      WriteFrame(cut, index, index == first, frame, sections, stream);
      sections += frame.mapSize + frame.codeSize + frame.literalSize;
      ++index;
      if (progress && !progress(index - first, count)) return false;
    }
    return true;
  };
  int32_t lastPlace = 0;
  while (const int32_t left = reader.FramesLeft()) {
    const int32_t runLength = isAlone ? 1 : std::clamp(left / runs, kShortestRun, kLongestRun);
    if (line.IsFull() && !writeOldest()) return 0;
    lastPlace = line.NextPlace();
    reader.Take(runLength, &places[static_cast<size_t>(lastPlace)]->run);
    line.Give();
  }
  while (!line.IsEmpty()) {
    if (!writeOldest()) return 0;
  }
  if (lastPlace != 0) {
    // Both are left as one thread would have left them.
    const Place& place = *places[static_cast<size_t>(lastPlace)];
    bitmap->CopyPlanes(place.bitmap);
    composition->CopyBits(*place.composition);
  }
  WriteStreamSize(*stream);
  return 1;
}

bool CompileFrames(Cut* cut, int32_t first, int32_t last, ByteStream* stream, NibbleBitmap* bitmap,
                   CellImage* composition, ProgressFunction progress) {
  const int32_t scale = OutputScale(cut->Antialias());
  if (CanvasProblem(*cut) != nullptr || bitmap->Create(cut->width / scale, cut->height / scale) == 0) return false;
  AnimationEncoder encoder(stream, bitmap, 1);
  encoder.progress = std::move(progress);
  return encoder.EncodeCut(cut, composition, first, last) != 0;
}

}  // namespace sorvel
