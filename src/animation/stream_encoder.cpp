#include "animation/stream_encoder.h"

#include <algorithm>
#include <utility>

#include "animation/stream_format.h"

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
Rect OnCanvas(const Rect& ink, int32_t x, int32_t y, const Cut& cut) {
  const auto clip = [](int64_t from, int32_t length, int32_t limit, int32_t* start, int32_t* size) {
    const int64_t end = std::clamp<int64_t>(from + length, 0, limit);
    from = std::clamp<int64_t>(from, 0, limit);
    *start = static_cast<int32_t>(from);
    *size = static_cast<int32_t>(end - from);
  };
  Rect area;
  clip(int64_t{x} + ink.x, ink.width, cut.width, &area.x, &area.width);
  clip(int64_t{y} + ink.y, ink.height, cut.height, &area.y, &area.height);
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
    : stream(outputStream), bitmap(planes), cutCapacity(capacity), rows(kSearch) {}

bool AnimationEncoder::AllocateSections() {
  return blocks.Allocate(2 * static_cast<uint64_t>(BlockPlaneBytes(bitmap->width, bitmap->height))) &&
         rows.Allocate(bitmap->width, bitmap->height);
}

int32_t AnimationEncoder::EncodeCut(Cut* cut, CellImage* composition, int32_t first, int32_t last) {
  if (cutsDone >= cutCapacity || first > last || first < 0 || last >= cut->frames.Count() || cut->Antialias() == 3) {
    return 0;
  }
  if (!AllocateSections()) return 0;
  ++cutsDone;
  const int32_t scale = OutputScale(cut->Antialias());
  literalBytes = OutputLevels(scale) <= 4 ? 1 : 2;
  WriteStreamStart(*stream, StreamKind::kCompiledCut);
  WriteText(*stream, cut->credit);
  WriteCutHead(*stream, OutputHead(*cut));

  currentCellOnly = (cut->viewFlags & kCurrentCellOnly) != 0;
  const uint32_t flags = cut->viewFlags & kCurrentCellOnly;
  cut->frames.Seek(cut->currentFrame);
  const int32_t record = cut->frames.Current()->currentRecord;
  int32_t frameSlot = 0;
  inkBoxes.clear();
  previousArea = Rect{};
  Frame* previous = nullptr;
  // A frame that shows what the one before it shows isn't composed, and its current record says nothing about the
  // picture; the next change is measured from the frame whose picture stands.
  Frame* composed = nullptr;
  for (int32_t index = first; index <= last; ++index) {
    Frame* frame = cut->frames.At(index);
    const bool isFirst = index == first;
    Rect box = {0, 0, bitmap->width, bitmap->height};
    if (!isFirst && frame->SameAs(previous)) {
      box = Rect{};
    } else {
      frame->SelectRecord(record);
      const Rect area = isFirst ? Rect{0, 0, cut->width, cut->height} : ChangedArea(*cut, frame, composed);
      composed = frame;
      composition->FillRect(area.x, area.y, area.width, area.height, kTransparent);
      frame->ComposeFrame(composition, area.x, area.y, area.width, area.height, &flags, nullptr);
      bitmap->frontIsHigh = frameSlot++ & 1;
      if (isFirst) {
        previousArea = box;
        bitmap->ReduceFrom(*composition, nullptr, scale, nullptr);
        PackRows(0, bitmap->height);
      } else {
        box = ReduceFrame(*composition, scale, area);
      }
    }
    WriteFrame(cut, index, scale, isFirst, box);
    previous = frame;
    if (progress && !progress(index - first + 1, last - first + 1)) return 0;
  }
  WriteStreamSize(*stream);
  return 1;
}

// The ink of record `index`, or no image for a missing or blank one.
AnimationEncoder::ShownInk AnimationEncoder::InkOf(const Cut& cut, Frame* frame, int32_t index) {
  ShownInk shown;
  shown.image = frame->VisibleCell(index, &shown.x, &shown.y);
  if (shown.image == nullptr) return {};
  const auto [entry, isNew] = inkBoxes.try_emplace(shown.image);
  if (isNew) entry->second = FindInkBox(shown.image);
  shown.area = OnCanvas(entry->second, shown.x, shown.y, cut);
  return shown;
}

Rect AnimationEncoder::ChangedArea(const Cut& cut, Frame* frame, Frame* before) {
  Rect area;
  const auto compare = [&](int32_t nowIndex, int32_t beforeIndex) {
    const ShownInk now = InkOf(cut, frame, nowIndex);
    const ShownInk then = InkOf(cut, before, beforeIndex);
    if (now == then) return;
    UnionRect(&area, then.area);
    UnionRect(&area, now.area);
  };
  if (currentCellOnly) {
    compare(frame->currentRecord, before->currentRecord);
  } else {
    const int32_t count = std::max(frame->records.Count(), before->records.Count());
    for (int32_t i = 0; i < count; ++i) compare(i, i);
  }
  return area;
}

// Brings the front plane up to date with the back plane and draws the changed area into it. Gives the box of what
// really differs.
Rect AnimationEncoder::ReduceFrame(const CellImage& composition, int32_t scale, const Rect& changed) {
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
  bitmap->ReduceFrom(composition, &box, scale, &area);
  PackRows(changedRows.y, changedRows.y + changedRows.height);
  return box;
}

void AnimationEncoder::WriteFrame(Cut* cut, int32_t index, int32_t scale, bool isFirst, const Rect& box) {
  EncodeBox(box, isFirst);
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
  head.box = box;
  head.codeSize = static_cast<uint32_t>(rows.CodeSize());
  head.literalSize = static_cast<uint32_t>(rows.LiteralSize());
  WriteFrameHead(*stream, head);
  stream->Write(rows.Map(), rows.MapSize());
  stream->Write(rows.Codes(), rows.CodeSize());
  stream->Write(rows.Literals(), rows.LiteralSize());
}

void AnimationEncoder::EncodeBox(const Rect& box, bool isFirst) {
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

uint8_t* AnimationEncoder::Plane(int32_t isHigh) {
  return blocks.Data() + (isHigh != 0 ? BlockPlaneBytes(bitmap->width, bitmap->height) : 0);
}

// Packs rows of the front plane, and the one above: a block at the end of a row goes on into the row below. The left
// pixel of two goes into the lowest bits.
void AnimationEncoder::PackRows(int32_t top, int32_t bottom) {
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

bool CompileFrames(Cut* cut, int32_t first, int32_t last, ByteStream* stream, NibbleBitmap* bitmap,
                   CellImage* composition, ProgressFunction progress) {
  const int32_t scale = OutputScale(cut->Antialias());
  if (CanvasProblem(*cut) != nullptr || bitmap->Create(cut->width / scale, cut->height / scale) == 0) return false;
  AnimationEncoder encoder(stream, bitmap, 1);
  encoder.progress = std::move(progress);
  return encoder.EncodeCut(cut, composition, first, last) != 0;
}

}  // namespace sorvel
