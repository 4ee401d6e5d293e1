#include "document/cut.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace sorvel {

int32_t OutputScale(int32_t antialias) {
  return antialias == 1 ? 2 : antialias == 2 ? 4 : 1;
}

int32_t OutputLevels(int32_t scale) {
  return scale == 1 ? 4 : 13;
}

Cut::Cut(int32_t canvasWidth, int32_t canvasHeight, int32_t framesPerSecond, const char* creditText, int32_t antialias)
    : width(canvasWidth),
      height(canvasHeight),
      frameWidth(canvasWidth),
      frameHeight(canvasHeight),
      fps(framesPerSecond) {
  AssignString(&credit, creditText);
  SetAntialias(antialias);
}

Cut::~Cut() {
  FreeFramesAndLayers();
  AssignString(&path, "");
  AssignString(&credit, "");
  std::free(undoPixels);
}

void Cut::FreeFramesAndLayers() {
  ReleaseElements(&frames, [](Frame* frame) { delete frame; });
  ReleaseElements(&layers, [](Layer* layer) { delete layer; });
}

void Cut::Reset() {
  FreeFramesAndLayers();
  AssignString(&path, "");
  AssignString(&credit, "");
  currentFrame = -1;
  undoCell = nullptr;
  viewFlags &= ~static_cast<uint32_t>(kOnionPrevious | kOnionNext | kCurrentCellOnly | kDimOthers);
  stateFlags &= ~static_cast<uint32_t>(kModified | kTimingStale);
  stateFlags |= kImagesStale;
  SetAntialias(0);
}

void Cut::SetAntialias(int32_t value) {
  stateFlags = (stateFlags & ~(3u << kAntialiasShift)) | (static_cast<uint32_t>(value) & 3u) << kAntialiasShift;
}

Frame* Cut::SeekCurrentFrame() {
  frames.Seek(currentFrame);
  return frames.Current();
}

FrameRecord* Cut::CurrentFrameRecord() {
  Frame* frame = CurrentFrame();
  return frame != nullptr ? frame->records.At(frame->currentRecord) : nullptr;
}

// Layers.

Layer* Cut::AddLayer(const char* name, int32_t layerWidth, int32_t layerHeight, CellImage* prototype) {
  char numbered[32];
  if (name == nullptr || name[0] == '\0') {
    std::snprintf(numbered, sizeof(numbered), "LAYER%2d", layers.Count());
    name = numbered;
  }
  Layer* layer = new Layer(layerWidth, layerHeight, name, prototype, 0);
  if (!layer->AddCell(0, 0, nullptr)) {
    delete layer;
    return nullptr;
  }
  layers.SeekLast();
  layers.InsertAfter(layer);
  EnsureUndoBuffer(layer);
  MarkImages();
  return layer;
}

bool Cut::Attach(int32_t index, int32_t recordX, int32_t recordY, bool above) {
  Layer* layer = layers.At(index);
  Frame* current = SeekCurrentFrame();
  if (layer == nullptr || current == nullptr) return layer != nullptr;
  const int32_t record = current->currentRecord;
  for (int32_t i = 0; i < frames.Count(); ++i) {
    Frame* frame = frames.At(i);
    // A frame without that record doesn't get the layer.
    if (record >= 0 && !frame->SelectRecord(record)) continue;
    if (above) {
      frame->AddRecord(layer, 0, recordX, recordY);
    } else {
      frame->InsertRecord(layer, 0, recordX, recordY);
    }
  }
  return true;
}

bool Cut::AttachLayer(int32_t index, int32_t recordX, int32_t recordY) {
  return Attach(index, recordX, recordY, true);
}

bool Cut::AttachLayerBefore(int32_t index, int32_t recordX, int32_t recordY) {
  if (!Attach(index, recordX, recordY, false)) return false;
  MarkImages();
  return true;
}

void Cut::ForgetUndoOf(Layer* layer) {
  if (undoCell == nullptr) return;
  layer->cells.SeekFirst();
  if (layer->cells.Find(undoCell) >= 0) undoCell = nullptr;
}

void Cut::DestroyLayer(Layer* layer) {
  layers.SeekFirst();
  if (layers.Find(layer) >= 0) layers.RemoveCurrent();
  ForgetUndoOf(layer);
  delete layer;
}

bool Cut::DeleteLayer(int32_t index) {
  Layer* layer = layers.At(index);
  if (layer == nullptr) return false;
  for (int32_t i = 0; i < frames.Count(); ++i) frames.At(i)->RemoveLayer(layer);
  DestroyLayer(layer);
  MarkImages();
  return true;
}

bool Cut::ShiftLayer(bool up) {
  Frame* current = SeekCurrentFrame();
  if (current == nullptr) return false;
  const int32_t record = current->currentRecord;
  Layer* layer = current->LayerAt(record);
  if (layer == nullptr || (up ? record + 1 == current->records.Count() : record == 0)) return false;
  // Frames before this one keep their order: that is how the stacking changes in the course of a cut.
  for (int32_t i = currentFrame; i < frames.Count(); ++i) {
    Frame* frame = frames.At(i);
    if (!frame->SelectRecord(record) || frame->LayerAt(record) != layer) continue;
    if (up) {
      frame->MoveRecordUp(-1);
    } else {
      frame->MoveRecordDown(-1);
    }
  }
  MarkImages();
  return true;
}

bool Cut::LayerUp() {
  return ShiftLayer(true);
}

bool Cut::LayerDown() {
  return ShiftLayer(false);
}

std::vector<Cut::TakenLayer> Cut::TakeUnusedLayers() {
  std::vector<TakenLayer> taken;
  int32_t limit = layers.Count();
  // The index advances after a removal too, so the layer that moved into the free place stays until the next call.
  for (int32_t index = 0; index < limit; ++index) {
    Layer* layer = layers.At(index);
    bool used = false;
    for (int32_t i = 0; i < frames.Count() && !used; ++i) {
      Frame* frame = frames.At(i);
      for (int32_t r = 0; r < frame->records.Count() && !used; ++r) used = frame->LayerAt(r) == layer;
    }
    if (used) continue;
    layers.Seek(index);
    layers.RemoveCurrent();
    taken.push_back({index, layer});
    --limit;
  }
  return taken;
}

void Cut::PutLayersBack(const std::vector<TakenLayer>& taken) {
  for (size_t i = taken.size(); i-- > 0;) {
    if (layers.Seek(taken[i].index)) {
      layers.InsertBefore(taken[i].layer);
    } else {
      layers.SeekLast();
      layers.InsertAfter(taken[i].layer);
    }
  }
}

void Cut::DestroyLayers(const std::vector<TakenLayer>& taken) {
  for (const TakenLayer& each : taken) DestroyLayer(each.layer);
}

void Cut::PurgeUnusedLayers() {
  DestroyLayers(TakeUnusedLayers());
}

// Frames.

Frame* Cut::AddFrame() {
  frames.Seek(currentFrame);
  Frame* frame = new Frame(width, height);
  frames.InsertAfter(frame);
  ++currentFrame;
  MarkImages();
  return frame;
}

// Quirk 5. Marks nothing, unlike AddFrame.
bool Cut::InsertFrame() {
  if (!frames.Seek(currentFrame)) return false;
  frames.InsertBefore(new Frame(width, height));
  return true;
}

bool Cut::DeleteFrame() {
  if (frames.Count() <= 1 || !frames.Seek(currentFrame)) return false;
  Frame* frame = frames.Current();
  const int32_t record = frame->currentRecord;
  delete frame;
  frames.RemoveCurrent();
  if (currentFrame >= frames.Count()) --currentFrame;
  SeekCurrentFrame()->SelectRecord(record);
  MarkImages();
  return true;
}

// Cells.

bool Cut::AddOrInsertCell(int32_t fill, bool (Frame::*place)(int32_t)) {
  Frame* current = SeekCurrentFrame();
  if (current == nullptr || !(current->*place)(fill)) return false;
  const FrameRecord* record = CurrentFrameRecord();
  Layer* layer = record->layer;
  const int32_t added = record->cell;
  for (int32_t i = 0; i < frames.Count(); ++i) frames.At(i)->ShiftCellRefs(layer, added, 1);
  // The renumbering above also moved the current frame's own reference.
  current = SeekCurrentFrame();
  if (CurrentFrameRecord()->cell != added) current->StepCellBack();
  MarkImages();
  return true;
}

bool Cut::AddCurrentCell(int32_t fill) {
  return AddOrInsertCell(fill, &Frame::AddCellHere);
}

bool Cut::InsertCurrentCell(int32_t fill) {
  return AddOrInsertCell(fill, &Frame::InsertCellHere);
}

bool Cut::DeleteCurrentCell() {
  Frame* current = SeekCurrentFrame();
  CellImage* image = CurrentCell();
  if (current == nullptr || !current->RemoveCellHere()) return false;
  const FrameRecord* record = CurrentFrameRecord();
  Layer* layer = record->layer;
  const int32_t shown = record->cell;
  for (int32_t i = 0; i < frames.Count(); ++i) frames.At(i)->ShiftCellRefs(layer, shown + 1, -1);
  if (undoCell == image) undoCell = nullptr;
  MarkImages();
  return true;
}

bool Cut::StepCell(bool (Frame::*step)()) {
  Frame* current = SeekCurrentFrame();
  if (current == nullptr || !(current->*step)()) return false;
  MarkImages();
  return true;
}

bool Cut::PreviousCellOfFrame() {
  return StepCell(&Frame::StepCellBack);
}

bool Cut::NextCellOfFrame() {
  return StepCell(&Frame::StepCellForward);
}

bool Cut::FirstCellOfFrame() {
  return StepCell(&Frame::FirstCellHere);
}

bool Cut::LastCellOfFrame() {
  return StepCell(&Frame::LastCellHere);
}

CellImage* Cut::CurrentCell() {
  Frame* frame = CurrentFrame();
  return frame != nullptr ? frame->VisibleCell(frame->currentRecord) : nullptr;
}

CellImage* Cut::CurrentCell(int32_t* x, int32_t* y) {
  Frame* frame = CurrentFrame();
  return frame != nullptr ? frame->VisibleCell(frame->currentRecord, x, y) : nullptr;
}

bool Cut::EraseDraft() {
  const CellImage* cell = CurrentCell();
  return cell != nullptr && EraseDraftRect(0, 0, cell->width, cell->height);
}

bool Cut::EraseDraftRect(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight) {
  CellImage* cell = CurrentCell();
  if (cell == nullptr) return false;
  cell->ClearSketch(x, y, rectWidth, rectHeight, kTransparent);
  MarkImages();
  return true;
}

bool Cut::ConvertToDraft(uint32_t mask) {
  const CellImage* cell = CurrentCell();
  return cell != nullptr && ConvertToDraftRect(0, 0, cell->width, cell->height, mask);
}

bool Cut::ConvertToDraftRect(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, uint32_t mask) {
  CellImage* cell = CurrentCell();
  if (cell == nullptr) return false;
  cell->ToSketch(x, y, rectWidth, rectHeight, kTransparent, mask);
  MarkImages();
  return true;
}

bool Cut::EraseLayerDraft() {
  if (CurrentCell() == nullptr) return false;
  Layer* layer = CurrentFrameRecord()->layer;
  if (!layer->cells.SeekLast()) return false;
  do {
    layer->cells.Current()->ClearSketch(0, 0, layer->width, layer->height, kTransparent);
  } while (layer->cells.SeekPrev());
  MarkImages();
  return true;
}

// Undo.

bool Cut::EnsureUndoBuffer(Layer* layer) {
  // Where the cursor stands may be far away.
  const CellImage* cell = layer->cells.Count() > 0 ? *layer->cells.begin() : nullptr;
  const int32_t needed = cell != nullptr ? cell->ByteCount() : 0;
  if (needed <= undoCapacity) return true;
  uint8_t* larger = static_cast<uint8_t*>(std::realloc(undoPixels, static_cast<size_t>(needed)));
  if (larger == nullptr) return false;
  undoPixels = larger;
  undoCapacity = needed;
  return true;
}

bool Cut::SaveUndo() {
  CellImage* cell = CurrentCell();
  if (cell == nullptr || cell->ByteCount() > undoCapacity) return false;
  if (cell->ByteCount() > 0) std::memcpy(undoPixels, cell->bits, static_cast<size_t>(cell->ByteCount()));
  undoCell = cell;
  ++undoSaves;
  MarkImages();
  return true;
}

bool Cut::Undo() {
  if (undoCell == nullptr || undoCell->ByteCount() > undoCapacity) return false;
  undoCell->SwapBits(undoPixels);
  MarkImages();
  return true;
}

void Cut::SetFrameProperties(const char* comment, int32_t time, int32_t loop, bool key, int32_t frameBrightness) {
  Frame* frame = SeekCurrentFrame();
  if (frame == nullptr) return;
  if (std::strcmp(frame->comment, comment) == 0 && frame->time == time && frame->loop == loop &&
      frame->IsKey() == key && frame->DecodedBrightness() == frameBrightness) {
    return;
  }
  AssignString(&frame->comment, comment);
  frame->time = time;
  frame->loop = loop;
  frame->SetKey(key);
  frame->SetBrightness(frameBrightness);
  MarkTiming();
}

}  // namespace sorvel
