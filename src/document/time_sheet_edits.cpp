// The edits of a time sheet.

#include <algorithm>
#include <cstdlib>
#include <set>

#include "document/time_sheet.h"

namespace sorvel {

namespace {

// What a cut file can hold.
constexpr int32_t kMostFrames = 65535;
constexpr int32_t kLongestTime = 32767;

// Makes a frame the current one until the end of the scope: operations of the cut work on the current frame.
class AtFrame {
 public:
  AtFrame(Cut* changedCut, int32_t index) : cut(changedCut), before(changedCut->currentFrame) {
    cut->currentFrame = index;
  }
  AtFrame(const AtFrame&) = delete;
  AtFrame& operator=(const AtFrame&) = delete;
  ~AtFrame() { cut->currentFrame = before; }

  // The index of the frame that was current before changes when a frame comes or goes.
  void MoveBefore(int32_t delta) { before += delta; }
  int32_t Before() const { return before; }

 private:
  Cut* cut;
  int32_t before;
};

// Whether two neighbours differ in nothing but cells, so that they are one frame once those are equal.
bool DifferInCells(Frame* first, Frame* second) {
  if (second->IsKey() || second->comment[0] != '\0' || first->time <= 0 || second->time <= 0) return false;
  if (first->DecodedBrightness() != second->DecodedBrightness()) return false;
  if (second->loop != 0 && (first->loop != 1 || second->loop != 1)) return false;
  if (first->x != second->x || first->y != second->y || first->records.Count() != second->records.Count()) return false;
  for (int32_t i = 0; i < first->records.Count(); ++i) {
    FrameRecord one = *first->records.At(i);
    const FrameRecord& other = *second->records.At(i);
    one.cell = other.cell;
    if (one != other) return false;
  }
  return !first->SameAs(second);
}

}  // namespace

void TimeSheet::SetTime(int32_t index, int32_t magnitude) {
  const AtFrame here(cut, index);
  const Frame* frame = cut->CurrentFrame();
  const int32_t time = frame->time < 0 ? -magnitude : magnitude;
  cut->SetFrameProperties(frame->comment, time, frame->loop, frame->IsKey(), frame->DecodedBrightness());
}

// Puts a copy behind a frame, which stands for a tick. The comment is that of the first one alone.
void TimeSheet::CopyBehind(int32_t index) {
  AtFrame here(cut, index);
  Frame* frame = cut->CurrentFrame();
  Frame* added = cut->AddFrame();
  added->CopyFrom(frame);
  cut->SetFrameProperties("", 1, added->loop, false, frame->DecodedBrightness());
  if (here.Before() > index) here.MoveBefore(1);
}

// Both parts take at least a tick. The time of a key frame is the span up to the next one, so it stays.
void TimeSheet::Divide(int32_t index, int32_t firstTicks) {
  const int32_t ticks = FrameAt(index).ticks;
  CopyBehind(index);
  SetTime(index + 1, ticks - firstTicks);
  if (!cut->frames.At(index)->IsKey()) SetTime(index, firstTicks);
}

int32_t TimeSheet::TimesBehindKey(int32_t key) const {
  int32_t sum = 0;
  for (int32_t i = key + 1; i < cut->frames.Count() && !cut->frames.At(i)->IsKey(); ++i) {
    sum += std::abs(cut->frames.At(i)->time);
  }
  return sum;
}

// Sets the span of a key frame so that it stands for so many ticks itself. False if the span gets too long.
bool TimeSheet::SetKeyTicks(int32_t key, int32_t ticks) {
  if (std::abs(cut->EffectiveTime(key)) == ticks) return true;
  const int32_t span = TimesBehindKey(key) + ticks;
  if (span > kLongestTime) return false;
  SetTime(key, span);
  return true;
}

// The index of the frame's record in this column. A frame that lacks the layer gets it, blank, above the nearest of the
// columns at the left, at the place that it has in the nearest frame.
int32_t TimeSheet::RecordFor(int32_t index, int32_t column) {
  const SheetColumn& wanted = columns[static_cast<size_t>(column)];
  Frame* frame = cut->frames.At(index);
  int32_t record = FindRecord(frame, wanted);
  if (record >= 0) return record;
  Point place = {(cut->width - wanted.layer->width) / 2, (cut->height - wanted.layer->height) / 2};
  const int32_t count = cut->frames.Count();
  for (int32_t distance = 1; distance < count; ++distance) {
    const int32_t neighbors[] = {index - distance, index + distance};
    bool isFound = false;
    for (const int32_t each : neighbors) {
      Frame* neighbor = isFound ? nullptr : cut->frames.At(each);
      const int32_t there = neighbor != nullptr ? FindRecord(neighbor, wanted) : -1;
      if (there < 0) continue;
      place = {neighbor->records.At(there)->x, neighbor->records.At(there)->y};
      isFound = true;
    }
    if (isFound) break;
  }
  while (record < 0) {
    int32_t below = -1;
    for (int32_t i = column - 1; i >= 0 && below < 0; --i) below = FindRecord(frame, columns[static_cast<size_t>(i)]);
    const int32_t kept = frame->currentRecord;
    if (below >= 0 || frame->records.Count() == 0) {
      frame->currentRecord = below;
      frame->AddRecord(wanted.layer, kBlankSquare, place.x, place.y);
    } else {
      frame->currentRecord = 0;
      frame->InsertRecord(wanted.layer, kBlankSquare, place.x, place.y);
    }
    if (frame->records.Count() > 1) frame->currentRecord = kept > below ? kept + 1 : kept;
    record = FindRecord(frame, wanted);
  }
  return record;
}

void TimeSheet::ShowCell(int32_t index, int32_t column, int32_t cell) {
  const int32_t record = RecordFor(index, column);
  Frame* frame = cut->frames.At(index);
  const int32_t kept = frame->currentRecord;
  frame->SelectRecord(record);
  const int32_t& shown = frame->records.At(record)->cell;
  if (IsBlankCell(shown) != IsBlankCell(cell)) frame->ToggleBlank();
  if (!IsBlankCell(cell)) {
    const int32_t last = frame->LayerAt(record)->cells.Count() - 1;
    // The numbers that blank records remember may be out of range.
    if (shown > last || cell < shown - cell) frame->FirstCellHere();
    if (last - cell < cell - shown) frame->LastCellHere();
    while (shown < cell && frame->StepCellForward()) {
    }
    while (shown > cell && frame->StepCellBack()) {
    }
  }
  frame->currentRecord = kept;
  cut->MarkImages();
}

void TimeSheet::AppendCell(int32_t index, int32_t column) {
  const int32_t record = RecordFor(index, column);
  ShowCell(index, column, columns[static_cast<size_t>(column)].layer->cells.Count() - 1);
  const AtFrame here(cut, index);
  Frame* frame = cut->CurrentFrame();
  const int32_t kept = frame->currentRecord;
  frame->SelectRecord(record);
  cut->AddCurrentCell(kTransparent);
  frame->currentRecord = kept;
}

bool TimeSheet::Expose(int32_t column, int64_t firstRow, int64_t lastRow, int32_t cell) {
  const Layer* layer = columns[static_cast<size_t>(column)].layer;
  if (cell > layer->cells.Count() || cell >= kLongestTime) return false;
  const int32_t first = FrameOfRow(firstRow);
  const int32_t last = FrameOfRow(lastRow);
  // At most the first and the last frame are divided.
  if (cut->frames.Count() + 2 > kMostFrames) return false;
  bool isChanged = false;
  for (int32_t i = last; i >= first; --i) {
    const int32_t shown = CellOf(i, column);
    if (shown == cell || (shown == kNoSquare && cell == kBlankSquare)) continue;
    const int64_t start = FrameAt(i).firstRow;
    if (lastRow < LastRowOf(i)) Divide(i, static_cast<int32_t>(lastRow + 1 - start));
    int32_t target = i;
    if (firstRow > start) {
      // What follows is the frame up to the last of the rows.
      frames[static_cast<size_t>(i)].ticks = static_cast<int32_t>(std::min(lastRow, LastRowOf(i)) + 1 - start);
      Divide(i, static_cast<int32_t>(firstRow - start));
      target = i + 1;
    }
    if (cell == layer->cells.Count()) AppendCell(target, column);
    ShowCell(target, column, cell);
    isChanged = true;
  }
  if (isChanged) Read();
  return isChanged;
}

bool TimeSheet::SetRows(int32_t frame, int64_t rows) {
  const SheetFrame& info = FrameAt(frame);
  rows = std::max<int64_t>(rows, 1);
  if (rows == info.Rows() || rows > kLongestTime) return false;
  const int32_t ticks = static_cast<int32_t>(rows);
  int32_t key = frame;
  while (key >= 0 && !cut->frames.At(key)->IsKey()) --key;
  // In the span of a key frame the others take their times out of it.
  const int32_t keyTicks = key == frame ? ticks : key >= 0 ? FrameAt(key).ticks : 0;
  if (key >= 0) {
    const int32_t grown = key == frame ? 0 : ticks - std::abs(cut->frames.At(frame)->time);
    if (TimesBehindKey(key) + grown + keyTicks > kLongestTime) return false;
  }
  if (key != frame) SetTime(frame, ticks);
  if (key >= 0) SetKeyTicks(key, keyTicks);
  Read();
  return true;
}

void TimeSheet::RemoveFrame(int32_t index) {
  AtFrame here(cut, index);
  cut->DeleteFrame();
  if (here.Before() > index || here.Before() >= cut->frames.Count()) here.MoveBefore(-1);
}

// Fits the frames to so many ticks. `wanted` holds the ticks of each.
bool TimeSheet::FitLength(int64_t ticks, std::vector<int32_t>* wanted) {
  int64_t total = Ticks();
  while (total > ticks) {
    const int32_t last = static_cast<int32_t>(wanted->size()) - 1;
    const int64_t start = total - wanted->back();
    if (start < ticks) {
      wanted->back() = static_cast<int32_t>(ticks - start);
      return true;
    }
    RemoveFrame(last);
    wanted->pop_back();
    total = start;
  }
  // A frame at which the player stops can't be made longer.
  int32_t last = static_cast<int32_t>(wanted->size()) - 1;
  while (last > 0 && (*wanted)[static_cast<size_t>(last)] == 0) --last;
  int64_t missing = ticks - total;
  bool hasKey = false;
  for (int32_t i = last; i >= 0 && !hasKey; --i) hasKey = cut->frames.At(i)->IsKey();
  while (missing > 0) {
    int32_t& length = (*wanted)[static_cast<size_t>(last)];
    const int64_t added = std::min<int64_t>(missing, kLongestTime - length);
    length += static_cast<int32_t>(added);
    missing -= added;
    if (missing == 0) break;
    if (cut->frames.Count() >= kMostFrames) return false;
    CopyBehind(last);
    ++last;
    // The span of the key frame ahead is full.
    if (hasKey) cut->frames.At(last)->SetKey(true);
    wanted->insert(wanted->begin() + last, 0);
  }
  return true;
}

bool TimeSheet::TakeOver(int64_t ticks, const std::vector<SheetTrack>& tracks) {
  std::set<const Frame*> joinable;
  for (int32_t i = 1; i < cut->frames.Count(); ++i) {
    Frame* before = cut->frames.At(i - 1);
    if (DifferInCells(before, cut->frames.At(i))) joinable.insert(cut->frames.At(i));
  }
  std::vector<int32_t> wanted;
  for (const SheetFrame& frame : frames) wanted.push_back(frame.ticks);
  if (!FitLength(ticks, &wanted)) return false;

  // Divides the frames where something changes.
  std::set<int64_t> borders;
  for (const SheetTrack& track : tracks) {
    int32_t shown = kBlankSquare;
    for (const SheetChange& change : track.changes) {
      if (change.cell != shown) borders.insert(change.tick);
      shown = change.cell;
    }
  }
  int64_t start = ticks;
  for (int32_t i = static_cast<int32_t>(wanted.size()) - 1; i >= 0; --i) {
    int32_t left = wanted[static_cast<size_t>(i)];
    start -= left;
    if (left == 0) continue;
    const auto first = borders.upper_bound(start);
    for (auto border = borders.lower_bound(start + left); border != first;) {
      --border;
      if (cut->frames.Count() >= kMostFrames) return false;
      CopyBehind(i);
      const int32_t firstPart = static_cast<int32_t>(*border - start);
      wanted.insert(wanted.begin() + i + 1, left - firstPart);
      left = firstPart;
    }
    wanted[static_cast<size_t>(i)] = left;
  }

  for (const SheetTrack& track : tracks) {
    const SheetColumn column = columns[static_cast<size_t>(track.column)];
    size_t next = 0;
    int32_t cell = kBlankSquare;
    int64_t tick = 0;
    for (int32_t i = 0; i < cut->frames.Count(); ++i) {
      while (next < track.changes.size() && track.changes[next].tick <= tick) cell = track.changes[next++].cell;
      const int32_t length = wanted[static_cast<size_t>(i)];
      tick += length;
      const int32_t shown = ShownCell(cut->frames.At(i), column);
      const bool isRight = shown == cell || (shown == kNoSquare && cell == kBlankSquare);
      if (length > 0 && !isRight) ShowCell(i, track.column, cell);
    }
  }

  for (int32_t i = cut->frames.Count() - 1; i > 0; --i) {
    Frame* frame = cut->frames.At(i);
    int32_t& before = wanted[static_cast<size_t>(i) - 1];
    const int32_t both = before + wanted[static_cast<size_t>(i)];
    if (!joinable.contains(frame) || both > kLongestTime || !cut->frames.At(i - 1)->SameAs(frame)) continue;
    RemoveFrame(i);
    before = both;
    wanted.erase(wanted.begin() + i);
  }

  bool isRight = true;
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    const Frame* frame = cut->frames.At(i);
    const int32_t length = wanted[static_cast<size_t>(i)];
    if (!frame->IsKey() && std::abs(frame->time) != length) SetTime(i, length);
  }
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    if (cut->frames.At(i)->IsKey()) isRight = SetKeyTicks(i, wanted[static_cast<size_t>(i)]) && isRight;
  }
  Read();
  return isRight;
}

}  // namespace sorvel
