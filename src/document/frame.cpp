#include "document/frame.h"

#include <utility>

namespace sorvel {

Frame::Frame(int32_t cutWidth, int32_t cutHeight) : width(cutWidth), height(cutHeight) {}

Frame::~Frame() {
  ReleaseElements(&records, [](FrameRecord* record) { delete record; });
  AssignString(&comment, "");
}

bool Frame::AddRecord(Layer* layer, int32_t cell, int32_t recordX, int32_t recordY) {
  records.Seek(currentRecord);
  records.InsertAfter(new FrameRecord{layer, cell, recordX, recordY});
  ++currentRecord;
  return true;
}

bool Frame::InsertRecord(Layer* layer, int32_t cell, int32_t recordX, int32_t recordY) {
  // Quirk 1. A frame without a current record gets the record twice: existing documents hold both.
  if (currentRecord < 0) AddRecord(layer, cell, recordX, recordY);
  records.Seek(currentRecord);
  records.InsertBefore(new FrameRecord{layer, cell, recordX, recordY});
  return true;
}

void Frame::RemoveLayer(const Layer* layer) {
  int32_t index = 0;
  while (records.Seek(index)) {
    FrameRecord* record = records.Current();
    if (record->layer != layer) {
      ++index;
      continue;
    }
    delete record;
    records.RemoveCurrent();
    if (index < currentRecord) --currentRecord;
  }
  if (currentRecord >= records.Count()) currentRecord = records.Count() - 1;
}

bool Frame::SelectRecord(int32_t index) {
  if (index < 0 || index >= records.Count()) return false;
  currentRecord = index;
  return true;
}

bool Frame::MoveRecordUp(int32_t index) {
  if (index == -1) index = currentRecord;
  if (index < 0 || index + 1 >= records.Count()) return false;
  records.Seek(index);
  FrameRecord** lower = records.CurrentSlot();
  records.SeekNext();
  std::swap(*lower, *records.CurrentSlot());
  if (index == currentRecord) ++currentRecord;
  return true;
}

bool Frame::MoveRecordDown(int32_t index) {
  if (index == -1) index = currentRecord;
  if (index <= 0 || index >= records.Count()) return false;
  records.Seek(index);
  FrameRecord** upper = records.CurrentSlot();
  records.SeekPrev();
  std::swap(*upper, *records.CurrentSlot());
  if (index == currentRecord) --currentRecord;
  return true;
}

bool Frame::GetRecord(int32_t index, Layer** layer, int32_t* recordX, int32_t* recordY, int32_t* cell) {
  const FrameRecord* record = RecordAt(index);
  if (record == nullptr) return false;
  *layer = record->layer;
  *recordX = record->x;
  *recordY = record->y;
  *cell = record->cell;
  return true;
}

Layer* Frame::LayerAt(int32_t index) {
  const FrameRecord* record = RecordAt(index);
  return record != nullptr ? record->layer : nullptr;
}

void Frame::ClearRecords() {
  ReleaseElements(&records, [](FrameRecord* record) { delete record; });
  currentRecord = -1;
  time = 1;
  x = width / 2;
  y = height / 2;
}

void Frame::CopyFrom(Frame* other) {
  ClearRecords();
  if (other->records.SeekFirst()) {
    do {
      records.SeekLast();
      records.InsertAfter(new FrameRecord(*other->records.Current()));
    } while (other->records.SeekNext());
  }
  currentRecord = other->currentRecord;
  time = other->time;
  x = other->x;
  y = other->y;
  width = other->width;
  height = other->height;
  loop = other->loop == 1 ? 1 : 0;
}

bool Frame::SameAs(Frame* other) {
  if (records.Count() != other->records.Count() || x != other->x || y != other->y) return false;
  for (int32_t i = 0; i < records.Count(); ++i) {
    if (!(*RecordAt(i) == *other->RecordAt(i))) return false;
  }
  return true;
}

CellImage* Frame::VisibleCell(int32_t index, int32_t* resolvedX, int32_t* resolvedY) {
  if (VisibleRecord(index) != nullptr) GetRecordPosition(index, resolvedX, resolvedY);
  return VisibleCell(index);
}

CellImage* Frame::VisibleCell(int32_t index) {
  const FrameRecord* record = VisibleRecord(index);
  return record != nullptr ? record->layer->CellAt(record->cell) : nullptr;
}

bool Frame::GetRecordPosition(int32_t index, int32_t* resolvedX, int32_t* resolvedY) {
  const FrameRecord* record = RecordAt(index);
  if (record == nullptr) return false;
  const bool follows = record->layer->followFrame != 0;
  *resolvedX = record->x + (follows ? x : 0);
  *resolvedY = record->y + (follows ? y : 0);
  return true;
}

bool Frame::SetRecordPosition(int32_t index, int32_t resolvedX, int32_t resolvedY) {
  FrameRecord* record = RecordAt(index);
  if (record == nullptr) return false;
  const bool follows = record->layer->followFrame != 0;
  record->x = resolvedX - (follows ? x : 0);
  record->y = resolvedY - (follows ? y : 0);
  return true;
}

bool Frame::OffsetRecord(int32_t index, int32_t dx, int32_t dy) {
  FrameRecord* record = RecordAt(index);
  if (record == nullptr) return false;
  record->x += dx;
  record->y += dy;
  return true;
}

bool Frame::CopyRecordPosition(int32_t index, Frame* other) {
  FrameRecord* record = RecordAt(index);
  const FrameRecord* source = other->RecordAt(index);
  if (record == nullptr || source == nullptr) return false;
  record->x = source->x;
  record->y = source->y;
  return true;
}

CellImage* Frame::PreviousCell(int32_t index) {
  const FrameRecord* record = VisibleRecord(index);
  if (record == nullptr) return nullptr;
  return record->layer->CellAt(record->cell == 0 ? record->layer->cells.Count() - 1 : record->cell - 1);
}

CellImage* Frame::NextCell(int32_t index) {
  const FrameRecord* record = VisibleRecord(index);
  if (record == nullptr) return nullptr;
  return record->layer->CellAt(record->cell + 1 == record->layer->cells.Count() ? 0 : record->cell + 1);
}

FrameRecord* Frame::VisibleRecord(int32_t index) {
  FrameRecord* record = RecordAt(index);
  return record != nullptr && !IsBlankCell(record->cell) ? record : nullptr;
}

bool Frame::AddCellHere(int32_t fill) {
  FrameRecord* record = VisibleRecord(currentRecord);
  if (record == nullptr || !record->layer->AddCell(record->cell, fill, nullptr)) return false;
  ++record->cell;
  return true;
}

bool Frame::InsertCellHere(int32_t fill) {
  FrameRecord* record = VisibleRecord(currentRecord);
  return record != nullptr && record->layer->InsertCell(record->cell, fill, nullptr);
}

bool Frame::RemoveCellHere() {
  FrameRecord* record = VisibleRecord(currentRecord);
  if (record == nullptr || record->layer->cells.Count() <= 1) return false;
  if (!record->layer->DeleteCell(record->cell)) return false;
  if (record->cell == record->layer->cells.Count()) --record->cell;
  return true;
}

bool Frame::StepCellBack() {
  FrameRecord* record = VisibleRecord(currentRecord);
  if (record == nullptr || record->cell == 0) return false;
  --record->cell;
  return true;
}

bool Frame::StepCellForward() {
  FrameRecord* record = VisibleRecord(currentRecord);
  if (record == nullptr || record->cell + 1 >= record->layer->cells.Count()) return false;
  ++record->cell;
  return true;
}

bool Frame::FirstCellHere() {
  FrameRecord* record = VisibleRecord(currentRecord);
  if (record == nullptr) return false;
  record->cell = 0;
  return true;
}

bool Frame::LastCellHere() {
  FrameRecord* record = VisibleRecord(currentRecord);
  if (record == nullptr) return false;
  record->cell = record->layer->cells.Count() - 1;
  return true;
}

void Frame::ToggleBlank() {
  FrameRecord* record = RecordAt(currentRecord);
  if (record != nullptr) record->cell = -1 - record->cell;
}

void Frame::ShiftCellRefs(const Layer* layer, int32_t from, int32_t delta) {
  const int32_t cellCount = layer->cells.Count();
  for (int32_t i = 0; i < records.Count(); ++i) {
    FrameRecord* record = RecordAt(i);
    if (record->layer != layer) continue;
    // Quirk 2. A blank record holds a negative number, which both tests leave out: its remembered cell goes stale.
    if (from <= record->cell) record->cell += delta;
    if (record->cell >= cellCount) record->cell = cellCount - 1;
  }
}

bool Frame::MergeDown(uint32_t destMask) {
  if (currentRecord < 1) return false;
  CellImage* upper = VisibleCell(currentRecord);
  CellImage* lower = VisibleCell(currentRecord - 1);
  if (upper == nullptr || lower == nullptr) return false;
  const FrameRecord* above = RecordAt(currentRecord);
  const FrameRecord* below = RecordAt(currentRecord - 1);
  lower->Composite({above->x - below->x, above->y - below->y}, upper, {0, 0, upper->width, upper->height},
                   {.flags = kKeyed, .destMask = destMask});
  return true;
}

void Frame::SetKey(bool key) {
  const int32_t value = DecodedBrightness();
  brightness = key ? -1 - value : value;
}

void Frame::SetBrightness(int32_t value) {
  brightness = IsKey() ? -1 - value : value;
}

}  // namespace sorvel
