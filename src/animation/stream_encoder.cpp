#include "animation/stream_encoder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

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

Rect MovedBy(const Rect& box, int32_t x, int32_t y) {
  return {box.x + x, box.y + y, box.width, box.height};
}

}  // namespace

// What a record shows and where; a missing or blank record is all zeros with no layer and cell -1.
struct AnimationEncoder::ShownRecord {
  const Layer* layer = nullptr;
  const CellImage* image = nullptr;  // known only when the current cell alone is shown
  int32_t cell = -1;
  Rect rect;
  Rect ink;

  static ShownRecord OfRecord(Frame* frame, int32_t index, const Rect* boxes) {
    ShownRecord shown;
    Layer* layer = nullptr;
    int32_t x = 0;
    int32_t y = 0;
    int32_t cell = 0;
    if (!frame->GetRecord(index, &layer, &x, &y, &cell) || cell < 0) return shown;
    frame->GetRecordPosition(index, &x, &y);
    shown.layer = layer;
    shown.cell = cell;
    shown.rect = {x, y, layer->width, layer->height};
    if (boxes != nullptr) shown.ink = MovedBy(boxes[index], x, y);
    return shown;
  }

  static ShownRecord OfCurrentCell(Frame* frame, const Rect* boxes) {
    ShownRecord shown;
    int32_t x = 0;
    int32_t y = 0;
    shown.image = frame->VisibleCell(frame->currentRecord, &x, &y);
    if (shown.image == nullptr) return shown;
    shown.rect = {x, y, shown.image->width, shown.image->height};
    if (boxes != nullptr) shown.ink = MovedBy(boxes[0], x, y);
    return shown;
  }
};

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

AnimationEncoder::~AnimationEncoder() {
  std::free(currentBoxes);
  std::free(previousBoxes);
  std::free(literals);
  std::free(matches);
}

bool AnimationEncoder::AllocateSections() {
  const size_t blocks = static_cast<size_t>(UnitsOf(bitmap->width));
  std::free(literals);
  std::free(matches);
  literals = static_cast<uint8_t*>(std::malloc(blocks * 2 * static_cast<size_t>(bitmap->height) + 1));
  matches = static_cast<uint32_t*>(std::malloc(blocks * sizeof(uint32_t)));
  return literals != nullptr && matches != nullptr && rows.Allocate(bitmap->width, bitmap->height);
}

bool AnimationEncoder::MakeRoomForBoxes(int32_t count) {
  if (currentCapacity >= count) return true;
  std::free(currentBoxes);
  currentBoxes = static_cast<Rect*>(std::calloc(static_cast<size_t>(count), sizeof(Rect)));
  currentCapacity = currentBoxes != nullptr ? count : 0;
  return currentBoxes != nullptr;
}

int32_t AnimationEncoder::EncodeCut(Cut* cut, CellImage* composition, int32_t first, int32_t last) {
  if (cutsDone >= cutCapacity || first > last || first < 0 || last >= cut->frames.Count() || cut->Antialias() == 3) {
    return 0;
  }
  if (!AllocateSections()) return 0;
  ++cutsDone;
  const int32_t scale = OutputScale(cut->Antialias());
  literalBytes = OutputLevels(scale) <= 4 ? 1 : 2;
  WriteHead(*cut, scale);

  currentCellOnly = (cut->viewFlags & kCurrentCellOnly) != 0;
  const uint32_t flags = cut->viewFlags & kCurrentCellOnly;
  cut->frames.Seek(cut->currentFrame);
  const int32_t record = cut->frames.Current()->currentRecord;
  int32_t frameSlot = 0;
  previousArea = Rect{};
  Frame* previous = nullptr;
  for (int32_t index = first; index <= last; ++index) {
    Frame* frame = cut->frames.At(index);
    const bool isFirst = index == first;
    Rect box = {0, 0, bitmap->width, bitmap->height};
    if (!isFirst && frame->SameAs(previous)) {
      box = Rect{};
    } else {
      frame->SelectRecord(record);
      const Rect area = isFirst ? Rect{0, 0, cut->width, cut->height} : CandidateArea(frame, previous);
      composition->FillRect(area.x, area.y, area.width, area.height, kTransparent);
      std::swap(currentBoxes, previousBoxes);
      std::swap(currentCapacity, previousCapacity);
      if (!MakeRoomForBoxes(currentCellOnly ? 1 : frame->records.Count())) return 0;
      frame->ComposeFrame(composition, area.x, area.y, area.width, area.height, &flags, currentBoxes);
      const Rect inkArea = isFirst ? Rect{} : InkArea(frame, previous);
      bitmap->frontIsHigh = frameSlot++ & 1;
      if (isFirst) {
        previousArea = box;
        bitmap->ReduceFrom(*composition, nullptr, scale, nullptr);
      } else {
        box = ReduceFrame(*composition, scale, inkArea);
      }
    }
    WriteFrameHead(cut, index, scale, isFirst, box);
    EncodeBox(box, isFirst);
    previous = frame;
    if (progress != nullptr) progress(index - first + 1, last - first + 1);
  }
  const int32_t size = stream->Tell();
  stream->Seek(2, kFromStart);
  WriteField(*stream, size, 4);
  return 1;
}

void AnimationEncoder::WriteHead(const Cut& cut, int32_t scale) {
  stream->Write(kStreamMagic, 2);
  // The size is put in at the end.
  WriteField(*stream, 0, 4);
  WriteText(*stream, cut.credit);
  WriteField(*stream, cut.width / scale, 2);
  WriteField(*stream, cut.height / scale, 2);
  WriteField(*stream, cut.frameWidth / scale, 2);
  WriteField(*stream, cut.frameHeight / scale, 2);
  WriteField(*stream, cut.fps, 1);
  WriteField(*stream, OutputLevels(scale) - 1, 1);
}

void AnimationEncoder::WriteFrameHead(Cut* cut, int32_t index, int32_t scale, bool isFirst, const Rect& box) {
  const Frame* frame = cut->frames.At(index);
  int32_t loop = frame->loop & 0xFFFF;
  int32_t time = cut->EffectiveTime(index);
  if (isFirst) {
    // A clean start: nothing to dissolve from, and an end for whatever loop leads here.
    time = std::abs(time);
    if (loop == 0) loop = 1;
  }
  WriteField(*stream, time, 2);
  WriteField(*stream, loop, 2);
  WriteField(*stream, frame->DecodedBrightness(), 1);
  WriteField(*stream, frame->x / scale, 2);
  WriteField(*stream, frame->y / scale, 2);
  WriteField(*stream, box.x, 2);
  WriteField(*stream, box.y, 2);
  WriteField(*stream, box.width, 2);
  WriteField(*stream, box.height, 2);
}

// What two frames may show differently, in canvas coordinates, by their records alone.
Rect AnimationEncoder::CandidateArea(Frame* frame, Frame* previous) const {
  Rect area;
  const auto compare = [&area](const ShownRecord& now, const ShownRecord& before) {
    if (now.layer == before.layer && now.image == before.image && now.cell == before.cell && now.rect == before.rect) {
      return;
    }
    UnionRect(&area, before.rect);
    UnionRect(&area, now.rect);
  };
  if (currentCellOnly) {
    compare(ShownRecord::OfCurrentCell(frame, nullptr), ShownRecord::OfCurrentCell(previous, nullptr));
  } else {
    const int32_t count = std::max(frame->records.Count(), previous->records.Count());
    for (int32_t i = 0; i < count; ++i) {
      compare(ShownRecord::OfRecord(frame, i, nullptr), ShownRecord::OfRecord(previous, i, nullptr));
    }
  }
  return area;
}

// The same by the ink that the records had.
Rect AnimationEncoder::InkArea(Frame* frame, Frame* previous) const {
  Rect area;
  if (currentCellOnly) {
    const ShownRecord now = ShownRecord::OfCurrentCell(frame, currentBoxes);
    const ShownRecord before = ShownRecord::OfCurrentCell(previous, previousBoxes);
    if (now.image != before.image || !(now.ink == before.ink)) {
      UnionRect(&area, before.ink);
      UnionRect(&area, now.ink);
    }
    return area;
  }
  const int32_t count = std::max(frame->records.Count(), previous->records.Count());
  for (int32_t i = 0; i < count; ++i) {
    const ShownRecord now = ShownRecord::OfRecord(frame, i, currentBoxes);
    const ShownRecord before = ShownRecord::OfRecord(previous, i, previousBoxes);
    if (now.layer == before.layer && now.cell == before.cell && now.rect.x == before.rect.x &&
        now.rect.y == before.rect.y) {
      continue;
    }
    UnionRect(&area, before.ink);
    UnionRect(&area, now.ink);
  }
  return area;
}

// Brings the front plane up to date with the back plane and draws the changed area into it. Gives the box of what
// really differs.
Rect AnimationEncoder::ReduceFrame(const CellImage& composition, int32_t scale, const Rect& inkArea) {
  const Rect area = ReduceArea(inkArea, scale, *bitmap);
  if (area.IsEmpty()) {
    bitmap->CopyBackToFront(previousArea.x, previousArea.y, previousArea.width, previousArea.height);
  } else {
    bitmap->CopyBackToFrontAround(area, previousArea);
  }
  previousArea = area;
  Rect box;
  bitmap->ReduceFrom(composition, &box, scale, &area);
  return box;
}

void AnimationEncoder::EncodeBox(const Rect& box, bool isFirst) {
  literalSize = 0;
  rows.Begin(box.width, box.height);
  for (int32_t y = box.y; y < box.y + box.height; ++y) {
    FindMatches(box, y, isFirst);
    EncodeRow(box, y);
  }
  WriteField(*stream, rows.CodeSize(), 4);
  WriteField(*stream, literalSize, 4);
  stream->Write(rows.Map(), rows.MapSize());
  stream->Write(rows.Codes(), rows.CodeSize());
  stream->Write(literals, literalSize);
}

// For each block of the row the set of codes whose source equals it.
void AnimationEncoder::FindMatches(const Rect& box, int32_t y, bool isFirst) {
  const int32_t blocks = UnitsOf(box.width);
  const uint8_t* row = bitmap->bits + y * bitmap->pitch + box.x;
  const uint32_t frontBits = bitmap->frontIsHigh != 0 ? kPlaneBits << 4 : kPlaneBits;
  std::fill(matches, matches + blocks, kLiteralFound);
  for (int32_t rank = 0; rank < kUnitCodes - 1; ++rank) {
    const int32_t code = kSearch.CodeOf(rank);
    const uint32_t bit = 1u << rank;
    if (code == kPreviousFrameBlock) {
      if (isFirst) continue;
      for (int32_t k = 0; k < blocks; ++k) {
        const uint32_t pair = LoadBlock(row + 4 * k);
        matches[k] |= ((pair ^ pair >> 4) & kPlaneBits) == 0 ? bit : 0;
      }
      continue;
    }
    const UnitOffset offset = kUnitOffsets[code];
    if (y + offset.dy < 0) continue;
    const uint8_t* source = row + offset.dy * bitmap->pitch + offset.dx;
    const int32_t start = std::max(0, (-offset.dx - box.x + 3) / 4);
    for (int32_t k = start; k < blocks; ++k) {
      matches[k] |= ((LoadBlock(row + 4 * k) ^ LoadBlock(source + 4 * k)) & frontBits) == 0 ? bit : 0;
    }
  }
}

void AnimationEncoder::EncodeRow(const Rect& box, int32_t y) {
  const int32_t blocks = UnitsOf(box.width);
  const uint8_t* pixels = bitmap->bits + y * bitmap->pitch + box.x;
  const int32_t frontShift = bitmap->frontIsHigh != 0 ? 4 : 0;
  for (int32_t k = 0; k < blocks; ++k) {
    const int32_t code = kSearch.Choose(matches[k], rows.Above(k));
    if (code == kLiteralUnit) PutLiteral(LoadBlock(pixels + 4 * k) >> frontShift & kPlaneBits);
    rows.Put(k, code);
  }
  rows.EndRow();
}

// The left pixel goes into the lowest bits.
void AnimationEncoder::PutLiteral(uint32_t block) {
  if (literalBytes == 1) {
    const uint32_t packed = block | block >> 6 | block >> 12 | block >> 18;
    literals[literalSize++] = static_cast<uint8_t>(packed);
    return;
  }
  const uint32_t packed = block | block >> 4;
  literals[literalSize++] = static_cast<uint8_t>(packed);
  literals[literalSize++] = static_cast<uint8_t>(packed >> 16);
}

}  // namespace sorvel
