#include "document/undo_history.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "foundation/cursor_keeper.h"
#include "imaging/pixel_change.h"

namespace sorvel {

namespace {

template <typename T>
std::vector<T> ElementsOf(CursorList<T>* list) {
  std::vector<T> elements;
  elements.reserve(static_cast<size_t>(list->Count()));
  for (T element : *list) elements.push_back(element);
  return elements;
}

template <typename T>
T RemoveAt(CursorList<T>* list, int32_t index) {
  T removed = list->At(index);
  list->RemoveCurrent();
  return removed;
}

template <typename T>
void InsertAt(CursorList<T>* list, int32_t index, T element) {
  if (list->Seek(index)) {
    list->InsertBefore(element);
  } else {
    list->SeekLast();
    list->InsertAfter(element);
  }
}

// The part of two lists that differs: what is left without their equal heads and tails.
struct Difference {
  size_t start = 0;
  size_t before = 0;  // elements
  size_t after = 0;

  bool IsEmpty() const { return before == 0 && after == 0; }
};

template <typename IsSame>
Difference Compare(size_t before, size_t after, const IsSame& isSame) {
  size_t start = 0;
  while (start < before && start < after && isSame(start, start)) ++start;
  while (before > start && after > start && isSame(before - 1, after - 1)) --before, --after;
  return {start, before - start, after - start};
}

template <typename T>
void ReplaceRange(std::vector<T>* list, const Difference& range, std::vector<T> items) {
  const auto start = list->begin() + static_cast<ptrdiff_t>(range.start);
  const auto end = list->erase(start, start + static_cast<ptrdiff_t>(range.before));
  list->insert(end, std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
}

void Discard(CellImage* image) {
  if (image != nullptr) image->watch = nullptr;
  DestroyImage(image);
}

void Discard(Layer* layer) {
  if (layer == nullptr) return;
  for (CellImage* image : layer->cells) image->watch = nullptr;
  delete layer;
}

int64_t BytesOf(const CellImage& image) {
  constexpr int64_t object = 128;
  return object + image.ByteCount();
}

int64_t BytesOf(const Layer& layer) {
  int64_t bytes = static_cast<int64_t>(sizeof(Layer));
  for (const CellImage* image : layer.cells) bytes += BytesOf(*image);
  return bytes;
}

// A range of a list and what it was, or will be. It owns what isn't in the list.
template <typename Item>
class ListChange {
 public:
  ListChange() = default;
  ListChange(const ListChange&) = delete;
  ListChange& operator=(const ListChange&) = delete;
  ~ListChange() {
    for (const Place& place : places) Discard(place.item);
  }

  void Begin(const Difference& range) {
    start = static_cast<int32_t>(range.start);
    count = static_cast<int32_t>(range.after);
  }
  // The next element of the other side: one that is put in, or one of the range by its index there.
  void Add(Item* item) { places.push_back({item, 0}); }
  void AddFromRange(size_t index) { places.push_back({nullptr, static_cast<int32_t>(index)}); }

  bool IsEmpty() const { return count == 0 && places.empty(); }

  void Swap(CursorList<Item*>* list) {
    std::vector<Place> out(static_cast<size_t>(count));
    for (Place& place : out) place.item = RemoveAt(list, start);
    int32_t index = 0;
    std::vector<Item*> in;
    for (const Place& place : places) {
      Item* item = place.item;
      if (item == nullptr) {
        Place& from = out[static_cast<size_t>(place.index)];
        item = std::exchange(from.item, nullptr);
        from.index = index;
      }
      InsertAt(list, start + index++, item);
    }
    count = index;
    places = std::move(out);
  }

  int64_t ByteCount() const {
    int64_t bytes = static_cast<int64_t>(places.capacity() * sizeof(Place));
    for (const Place& place : places) bytes += place.item != nullptr ? BytesOf(*place.item) : 0;
    return bytes;
  }

 private:
  struct Place {
    Item* item = nullptr;
    int32_t index = 0;
  };

  int32_t start = 0;
  int32_t count = 0;  // in the list
  std::vector<Place> places;
};

// The pixels of one cell.
struct CellChange {
  int32_t cell;
  uint64_t number;  // of the other side's content
  int32_t top;      // rows that either side uses
  int32_t bottom;
  PixelChange pixels;

  void Swap(CellImage* image) {
    const uint64_t present = image->ContentNumber();
    image->UseRows(top, bottom - top);
    pixels.Apply(image->bits);
    image->RestoreContentNumber(std::exchange(number, present));
  }
};

}  // namespace

struct UndoHistory::RecordState {
  uint64_t layer;
  int32_t cell;
  int32_t x;
  int32_t y;
};

struct UndoHistory::FrameState {
  explicit FrameState(const Frame& frame)
      : time(frame.time),
        loop(frame.loop),
        currentRecord(frame.currentRecord),
        x(frame.x),
        y(frame.y),
        width(frame.width),
        height(frame.height),
        brightness(frame.brightness),
        comment(frame.comment) {
    records.reserve(static_cast<size_t>(frame.records.Count()));
    for (const FrameRecord* record : frame.records) {
      records.push_back({record->layer->id, record->cell, record->x, record->y});
    }
  }

  // Whatever record is the current one.
  bool Equals(const Frame& frame) const {
    if (time != frame.time || loop != frame.loop || x != frame.x || y != frame.y || width != frame.width ||
        height != frame.height || brightness != frame.brightness || comment != frame.comment ||
        static_cast<int32_t>(records.size()) != frame.records.Count()) {
      return false;
    }
    const RecordState* state = records.data();
    for (const FrameRecord* record : frame.records) {
      if (state->cell != record->cell || state->x != record->x || state->y != record->y ||
          state->layer != record->layer->id) {
        return false;
      }
      ++state;
    }
    return true;
  }

  // Whether it takes as long: its own time, and whether it is a key frame.
  template <typename T>
  bool HasTimingOf(const T& other) const {
    return time == other.time && (brightness < 0) == (other.brightness < 0);
  }

  void Write(Frame* frame, const std::vector<Layer*>& cutLayers) const {
    frame->ClearRecords();
    for (const RecordState& record : records) {
      const auto layer = std::find_if(cutLayers.begin(), cutLayers.end(),
                                      [&record](const Layer* each) { return each->id == record.layer; });
      if (layer == cutLayers.end()) continue;
      frame->records.SeekLast();
      frame->records.InsertAfter(new FrameRecord{*layer, record.cell, record.x, record.y});
    }
    frame->time = time;
    frame->loop = loop;
    frame->currentRecord = currentRecord;
    frame->x = x;
    frame->y = y;
    frame->width = width;
    frame->height = height;
    frame->brightness = brightness;
    AssignString(&frame->comment, comment.c_str());
  }

  int64_t ByteCount() const {
    return static_cast<int64_t>(sizeof(FrameState) + records.capacity() * sizeof(RecordState) + comment.capacity());
  }

  int32_t time;
  int32_t loop;
  int32_t currentRecord;
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
  int32_t brightness;
  std::string comment;
  std::vector<RecordState> records;
};

namespace {

// What there is of a layer without its cells.
struct LayerHead {
  explicit LayerHead(const Layer& layer)
      : width(layer.width), height(layer.height), prototype(layer.prototype), followFrame(layer.followFrame) {
    if (layer.name != nullptr) name = layer.name;
  }

  const char* Name() const { return name ? name->c_str() : nullptr; }

  bool Equals(const Layer& layer) const {
    return width == layer.width && height == layer.height && prototype == layer.prototype &&
           followFrame == layer.followFrame && name.has_value() == (layer.name != nullptr) &&
           (!name || *name == layer.name);
  }

  void Swap(Layer* layer) {
    LayerHead present(*layer);
    layer->width = width;
    layer->height = height;
    layer->prototype = prototype;
    layer->followFrame = followFrame;
    layer->SetName(Name());
    *this = std::move(present);
  }

  int32_t width;
  int32_t height;
  CellImage* prototype;
  uint32_t followFrame;
  std::optional<std::string> name;
};

}  // namespace

struct UndoHistory::LayerState {
  explicit LayerState(Layer* layer) : id(layer->id), revision(layer->cells.Revision()), head(*layer) {
    cells.reserve(static_cast<size_t>(layer->cells.Count()));
    for (CellImage* image : layer->cells) {
      cells.push_back(image->ContentNumber());
      bytes += image->ByteCount();
    }
  }

  uint64_t id;
  uint64_t revision;  // of the list of cells
  LayerHead head;
  std::vector<uint64_t> cells;  // by the numbers of their contents
  int64_t bytes = 0;            // of their pixels
};

struct UndoHistory::HeadState {
  explicit HeadState(const Cut& cut)
      : width(cut.width),
        height(cut.height),
        frameWidth(cut.frameWidth),
        frameHeight(cut.frameHeight),
        fps(cut.fps),
        antialias(cut.Antialias()),
        credit(cut.credit) {}

  bool operator==(const HeadState&) const = default;

  void Write(Cut* to) const {
    to->width = width;
    to->height = height;
    to->frameWidth = frameWidth;
    to->frameHeight = frameHeight;
    to->fps = fps;
    to->SetAntialias(antialias);
    AssignString(&to->credit, credit.c_str());
  }

  int32_t width;
  int32_t height;
  int32_t frameWidth;
  int32_t frameHeight;
  int32_t fps;
  int32_t antialias;
  std::string credit;
};

// In a layer that is on both sides of a step.
struct UndoHistory::LayerChange {
  explicit LayerChange(uint64_t layerId) : id(layerId) {}

  bool IsEmpty() const { return !head && cells.IsEmpty() && pixels.empty(); }

  void Swap(Layer* layer) {
    if (head) head->Swap(layer);
    for (CellChange& change : pixels) change.Swap(layer->CellAt(change.cell));
    if (!cells.IsEmpty()) cells.Swap(&layer->cells);
  }

  uint64_t id;
  std::optional<LayerHead> head;
  ListChange<CellImage> cells;  // either these or `pixels` are empty
  std::vector<CellChange> pixels;
};

// Holds the other side: what was there before while the step can be taken back, and what comes then while it can be
// taken forward.
struct UndoHistory::Step {
  bool IsEmpty() const { return !head && frameCount == 0 && frames.empty() && layers.IsEmpty() && inLayers.empty(); }

  // The place of the one cell that changed, in nothing but its pixels; none for another step.
  CellPlace DrawnCell() const {
    const bool isDrawing = !head && frameCount == 0 && frames.empty() && layers.IsEmpty() && inLayers.size() == 1;
    if (!isDrawing || inLayers[0]->head || !inLayers[0]->cells.IsEmpty() || inLayers[0]->pixels.size() != 1) return {};
    return {inLayers[0]->id, inLayers[0]->pixels[0].cell};
  }

  int64_t ByteCount() const {
    int64_t sum = static_cast<int64_t>(sizeof(Step)) + layers.ByteCount() + undoPixels.ByteCount();
    for (const FrameState& frame : frames) sum += frame.ByteCount();
    for (const std::unique_ptr<LayerChange>& change : inLayers) {
      sum += static_cast<int64_t>(sizeof(LayerChange)) + change->cells.ByteCount();
      for (const CellChange& cell : change->pixels) {
        sum += static_cast<int64_t>(sizeof(CellChange)) + cell.pixels.ByteCount();
      }
    }
    return sum;
  }

  std::unique_ptr<HeadState> head;
  size_t frameStart = 0;
  size_t frameCount = 0;  // in the cut
  std::vector<FrameState> frames;
  ListChange<Layer> layers;
  std::vector<std::unique_ptr<LayerChange>> inLayers;

  CellPlace undoPlace;
  PixelChange undoPixels;
  uint64_t undoSize = 0;  // bytes, of the larger of both sides
  Rect undoArea;

  Shown before;
  Shown after;
  uint32_t marks = 0;
  bool isOpen = false;  // a later part of the same gesture may belong to it
  int64_t bytes = 0;
};

bool UndoHistory::checksAll = false;

UndoHistory::UndoHistory(Cut* owner, Rect* singleUndoArea) : cut(owner), area(singleUndoArea) {
  cut->frames.LogTo(&reached);
}

UndoHistory::~UndoHistory() {
  cut->frames.LogTo(nullptr);
  for (Layer* layer : cut->layers) {
    for (CellImage* image : layer->cells) image->watch = nullptr;
  }
  ForgetKept();
}

// Keeping what changes.

void UndoHistory::BeforeChange(CellImage* image) {
  if (isMoving || lacksPixels || kept.contains(image)) return;
  CellImage* copy = image->MakeBlank();
  if (copy == nullptr) {
    lacksPixels = true;
    return;
  }
  copy->CopyBits(*image);
  kept[image] = {image->ContentNumber(), copy};
}

bool UndoHistory::TakeOver(CellImage* image) {
  if (isMoving || kept.contains(image)) return false;
  image->watch = nullptr;
  kept[image] = {image->ContentNumber(), image};
  return true;
}

void UndoHistory::ForgetKept() {
  for (const auto& [image, each] : kept) Discard(each.image);
  kept.clear();
  keptByNumber.clear();
}

// The recorded state.

void UndoHistory::Begin() {
  ForgetSteps();
  hasBegun = true;
  lacksPixels = false;
  undoPlace = PlaceOf(cut->undoCell);
  undoArea = *area;
  undoSaves = cut->undoSaves;
  const uint64_t size = undoPlace.layer != 0 ? static_cast<uint64_t>(cut->undoCell->ByteCount()) : 0;
  hasBegun = ReadUndoPixels(size, &undoPixels);
  ReadState();
}

void UndoHistory::ReadState() {
  ForgetKept();
  head = std::make_unique<HeadState>(*cut);
  ReadFrames();
  ReadLayers();
  shown = ShownNow();
  cut->newMarks = 0;
}

void UndoHistory::ReadFrames() {
  isCounted = false;
  frames.clear();
  for (const Frame* frame : std::as_const(cut->frames)) frames.emplace_back(*frame);
}

void UndoHistory::ReadLayers() {
  layers.clear();
  for (Layer* layer : cut->layers) layers.push_back(ReadLayer(layer));
}

UndoHistory::LayerState UndoHistory::ReadLayer(Layer* layer) {
  for (CellImage* image : layer->cells) image->watch = this;
  return LayerState(layer);
}

void UndoHistory::ReadChanges(const Step& step, bool hasLayers) {
  ForgetKept();
  head = std::make_unique<HeadState>(*cut);
  if (reached.IsWhole()) {
    ReadFrames();
  } else {
    const CursorKeeper<Frame*> keeper(&cut->frames);
    for (const int32_t index : reached.Indices()) {
      FrameState present(*cut->frames.Peek(index));
      FrameState& state = frames[static_cast<size_t>(index)];
      isCounted = isCounted && state.HasTimingOf(present);
      state = std::move(present);
    }
  }
  if (hasLayers) {
    ReadLayers();
  } else {
    for (const std::unique_ptr<LayerChange>& change : step.inLayers) {
      Layer* layer = LayerOf(change->id);
      LayerState& state = *std::find_if(layers.begin(), layers.end(),
                                        [&change](const LayerState& each) { return each.id == change->id; });
      if (!change->cells.IsEmpty()) {
        state = ReadLayer(layer);
        continue;
      }
      state.head = LayerHead(*layer);
      for (const CellChange& cell : change->pixels) {
        state.cells[static_cast<size_t>(cell.cell)] = layer->CellAt(cell.cell)->ContentNumber();
      }
    }
  }
  shown = ShownNow();
  cut->newMarks = 0;
  CheckState();
}

void UndoHistory::CheckState() {
  if (!checksAll) return;
  const CursorKeeper<Frame*> keeper(&cut->frames);
  int32_t left = countedTime;
  for (int32_t i = 0; i < countedFrame && isCounted; ++i) left -= std::abs(cut->EffectiveTime(i));
  bool isSame = (!isCounted || left == 0) && static_cast<int32_t>(frames.size()) == cut->frames.Count() &&
                static_cast<int32_t>(layers.size()) == cut->layers.Count();
  const FrameState* frame = frames.data();
  for (const Frame* each : std::as_const(cut->frames)) {
    isSame = isSame && frame->currentRecord == each->currentRecord && frame->Equals(*each);
    ++frame;
  }
  const LayerState* layer = layers.data();
  for (Layer* each : cut->layers) {
    const LayerState present(each);
    isSame = isSame && layer->id == each->id && layer->head.Equals(*each) && layer->cells == present.cells &&
             layer->bytes == present.bytes;
    for (const CellImage* image : each->cells) isSame = isSame && image->watch == this;
    ++layer;
  }
  if (isSame) return;
  std::fputs("The undo history missed a change.\n", stderr);
  std::abort();
}

void UndoHistory::ForgetSteps() {
  steps.clear();
  position = 0;
  bytes = 0;
}

// Recording.

bool UndoHistory::Record(Origin origin) {
  for (auto& [image, each] : kept) keptByNumber[each.number] = &each;
  FindChanged();
  auto step = std::make_unique<Step>();
  if (!hasBegun || lacksPixels || !CompareLayers(step.get())) {
    Begin();
    return false;
  }
  CompareFrames(step.get());
  CompareHead(step.get());
  step->marks = std::exchange(cut->newMarks, 0);
  step->before = shown;
  step->after = shown = ShownNow();
  bool isRecorded = true;
  bool hasMemory = true;
  if (step->IsEmpty()) {
    isRecorded = false;
  } else if (origin == Origin::kGesture && position == steps.size() && position > 0 && steps.back()->isOpen &&
             cut->undoSaves == undoSaves && step->DrawnCell() == steps.back()->DrawnCell()) {
    hasMemory = ExtendStep(step.get());
  } else {
    hasMemory = CompareUndo(step.get());
    while (steps.size() > position) {
      bytes -= steps.back()->bytes;
      steps.pop_back();
    }
    const CellPlace drawn = step->DrawnCell();
    step->isOpen = origin == Origin::kGesture && drawn.layer != 0 && drawn == undoPlace;
    step->bytes = step->ByteCount();
    bytes += step->bytes;
    steps.push_back(std::move(step));
    ++position;
  }
  ForgetKept();
  if (!hasMemory) {
    Begin();
    return false;
  }
  CheckState();
  if (!isRecorded) return false;
  undoArea = *area;
  undoSaves = cut->undoSaves;
  Prune();
  return true;
}

void UndoHistory::FindChanged() {
  constexpr size_t few = 8;
  changed.clear();
  hasPlaces = kept.size() <= few;
  for (const auto& [image, each] : kept) {
    if (!hasPlaces) return;
    changed.push_back(NearPlaceOf(image));
    hasPlaces = changed.back().layer != 0;
  }
  std::sort(changed.begin(), changed.end(), [](const CellPlace& a, const CellPlace& b) { return a.cell < b.cell; });
}

bool UndoHistory::CompareLayers(Step* step) {
  const std::vector<Layer*> present = ElementsOf(&cut->layers);
  std::unordered_map<uint64_t, size_t> indices;
  for (size_t i = 0; i < present.size(); ++i) indices[present[i]->id] = i;
  for (LayerState& state : layers) {
    const auto found = indices.find(state.id);
    if (found != indices.end() && !CompareLayer(&state, present[found->second], step)) return false;
  }
  const Difference range = Compare(layers.size(), present.size(), [&](size_t before, size_t after) {
    return layers[before].id == present[after]->id;
  });
  if (range.IsEmpty()) return true;
  step->layers.Begin(range);
  std::unordered_map<uint64_t, size_t> known;  // states of layers that are still there
  for (size_t i = range.start; i < range.start + range.before; ++i) {
    const auto found = indices.find(layers[i].id);
    if (found != indices.end()) {
      step->layers.AddFromRange(found->second - range.start);
      known[layers[i].id] = i;
      continue;
    }
    Layer* made = MakeLayer(layers[i]);
    if (made == nullptr) return false;
    step->layers.Add(made);
  }
  std::vector<LayerState> states;
  for (size_t i = range.start; i < range.start + range.after; ++i) {
    const auto found = known.find(present[i]->id);
    if (found != known.end()) {
      states.push_back(std::move(layers[found->second]));
      continue;
    }
    states.push_back(ReadLayer(present[i]));
  }
  ReplaceRange(&layers, range, std::move(states));
  return true;
}

const CellImage* UndoHistory::KeptOf(uint64_t number) const {
  const auto found = keptByNumber.find(number);
  return found != keptByNumber.end() ? found->second->image : nullptr;
}

CellImage* UndoHistory::TakeKept(uint64_t number) {
  const auto found = keptByNumber.find(number);
  CellImage* image = found != keptByNumber.end() ? std::exchange(found->second->image, nullptr) : nullptr;
  if (image != nullptr) image->RestoreContentNumber(number);
  return image;
}

// The cells of a layer that is gone were taken over, or kept before they changed.
Layer* UndoHistory::MakeLayer(const LayerState& state) {
  Layer* layer =
      new Layer(state.head.width, state.head.height, state.head.Name(), state.head.prototype, state.head.followFrame);
  layer->id = state.id;
  for (const uint64_t number : state.cells) {
    CellImage* image = TakeKept(number);
    if (image == nullptr) {
      Discard(layer);
      return nullptr;
    }
    layer->cells.SeekLast();
    layer->cells.InsertAfter(image);
  }
  return layer;
}

bool UndoHistory::CompareLayer(LayerState* state, Layer* layer, Step* step) {
  auto change = std::make_unique<LayerChange>(state->id);
  if (!state->head.Equals(*layer)) change->head = std::exchange(state->head, LayerHead(*layer));
  std::vector<uint64_t>& numbers = state->cells;
  std::vector<NumberedCell> images;
  const auto isDrawing = [&](const NumberedCell& each) {
    const uint64_t number = numbers[static_cast<size_t>(each.cell)];
    if (number == each.image->ContentNumber()) return true;
    const CellImage* old = KeptOf(number);
    return old != nullptr && old->width == each.image->width && old->height == each.image->height &&
           old->colors == each.image->colors;
  };
  // Cells that stand where they stood and have their size differ in some pixels.
  bool isDrawn = hasPlaces && state->revision == layer->cells.Revision();
  if (isDrawn) {
    const CursorKeeper<CellImage*> keeper(&layer->cells);
    for (const CellPlace& place : changed) {
      if (place.layer == layer->id) images.push_back({place.cell, layer->CellAt(place.cell)});
    }
    isDrawn = std::all_of(images.begin(), images.end(), isDrawing);
  }
  if (!isDrawn) {
    images.clear();
    state->bytes = 0;
    for (CellImage* image : layer->cells) {
      image->watch = this;
      state->bytes += image->ByteCount();
      images.push_back({static_cast<int32_t>(images.size()), image});
    }
    isDrawn = numbers.size() == images.size() && std::all_of(images.begin(), images.end(), isDrawing);
  }
  state->revision = layer->cells.Revision();
  const bool isDone =
      isDrawn ? CompareDrawings(&numbers, images, change.get()) : CompareCells(&numbers, images, change.get());
  if (isDone && !change->IsEmpty()) step->inLayers.push_back(std::move(change));
  return isDone;
}

bool UndoHistory::CompareDrawings(std::vector<uint64_t>* numbers, const std::vector<NumberedCell>& images,
                                  LayerChange* change) {
  for (const auto& [index, image] : images) {
    uint64_t& number = (*numbers)[static_cast<size_t>(index)];
    if (number == image->ContentNumber()) continue;
    const CellImage* old = KeptOf(number);
    const int32_t top = std::min(old->UsedTop(), image->UsedTop());
    const int32_t bottom = std::max({top, old->UsedBottom(), image->UsedBottom()});
    CellChange cell = {index, number, top, bottom, {}};
    if (!cell.pixels.Compare(old->bits, image->bits, int64_t{top} * image->pitch, int64_t{bottom} * image->pitch)) {
      return false;
    }
    if (cell.pixels.IsEmpty()) {
      image->RestoreContentNumber(number);
      continue;
    }
    number = image->ContentNumber();
    change->pixels.push_back(std::move(cell));
  }
  return true;
}

bool UndoHistory::CompareCells(std::vector<uint64_t>* numbers, const std::vector<NumberedCell>& images,
                               LayerChange* change) {
  const Difference range = Compare(numbers->size(), images.size(), [&](size_t before, size_t after) {
    return (*numbers)[before] == images[after].image->ContentNumber();
  });
  std::unordered_map<uint64_t, size_t> present;
  std::vector<uint64_t> newNumbers;
  for (size_t i = range.start; i < range.start + range.after; ++i) {
    newNumbers.push_back(images[i].image->ContentNumber());
    present[newNumbers.back()] = i - range.start;
  }
  change->cells.Begin(range);
  for (size_t i = range.start; i < range.start + range.before; ++i) {
    const auto found = present.find((*numbers)[i]);
    if (found != present.end()) {
      change->cells.AddFromRange(found->second);
      continue;
    }
    CellImage* old = TakeKept((*numbers)[i]);
    if (old == nullptr) return false;
    change->cells.Add(old);
  }
  ReplaceRange(numbers, range, std::move(newNumbers));
  return true;
}

void UndoHistory::CompareFrames(Step* step) {
  Difference range;
  std::vector<FrameState> states;
  const auto isSame = [](FrameState* state, const Frame& frame) {
    if (!state->Equals(frame)) return false;
    state->currentRecord = frame.currentRecord;
    return true;
  };
  const CursorKeeper<Frame*> keeper(&cut->frames);
  // Handed out or not, the current frame and the one that was it are compared.
  for (const int32_t index : {shown.frame, cut->currentFrame}) {
    if (index >= 0 && index < cut->frames.Count()) reached.Add(index);
  }
  if (reached.IsWhole()) {
    std::vector<const Frame*> present;
    for (const Frame* frame : std::as_const(cut->frames)) present.push_back(frame);
    range = Compare(frames.size(), present.size(),
                    [&](size_t before, size_t after) { return isSame(&frames[before], *present[after]); });
    for (size_t i = range.start; i < range.start + range.after; ++i) states.emplace_back(*present[i]);
  } else {
    // All others are as they were.
    for (const int32_t index : reached.Indices()) {
      const auto i = static_cast<size_t>(index);
      if (isSame(&frames[i], *cut->frames.Peek(index))) continue;
      if (range.IsEmpty()) range.start = i;
      range.before = range.after = i - range.start + 1;
    }
    for (size_t i = range.start; i < range.start + range.after; ++i) {
      states.emplace_back(*cut->frames.Peek(static_cast<int32_t>(i)));
    }
  }
  if (range.IsEmpty()) return;
  const auto start = frames.begin() + static_cast<ptrdiff_t>(range.start);
  const auto hasSameTiming = [](const FrameState& one, const FrameState& other) { return one.HasTimingOf(other); };
  isCounted =
      isCounted && range.before == range.after && std::equal(states.begin(), states.end(), start, hasSameTiming);
  step->frameStart = range.start;
  step->frameCount = range.after;
  step->frames.assign(std::make_move_iterator(start),
                      std::make_move_iterator(start + static_cast<ptrdiff_t>(range.before)));
  ReplaceRange(&frames, range, std::move(states));
}

int32_t UndoHistory::TimeBefore(int32_t frame) {
  const CursorKeeper<Frame*> keeper(&cut->frames);
  bool isKnown = hasBegun && !reached.IsWhole();
  if (isKnown) {
    for (const int32_t index : reached.Indices()) {
      isKnown = isKnown && frames[static_cast<size_t>(index)].HasTimingOf(*cut->frames.Peek(index));
    }
  }
  int32_t at = 0;
  int32_t time = 0;
  if (isKnown && isCounted && std::abs(countedFrame - frame) < frame) {
    at = countedFrame;
    time = countedTime;
  }
  for (; at < frame; ++at) time += std::abs(cut->EffectiveTime(at));
  while (at > frame) time -= std::abs(cut->EffectiveTime(--at));
  if (isKnown) {
    isCounted = true;
    countedFrame = frame;
    countedTime = time;
  }
  return time;
}

void UndoHistory::CompareHead(Step* step) {
  if (*head == HeadState(*cut)) return;
  step->head = std::exchange(head, std::make_unique<HeadState>(*cut));
}

// The single undo.

UndoHistory::CellPlace UndoHistory::PlaceOf(const CellImage* image) const {
  if (image == nullptr) return {};
  const CellPlace near = NearPlaceOf(image);
  if (near.layer != 0) return near;
  for (const Layer* layer : cut->layers) {
    int32_t index = 0;
    for (const CellImage* cell : layer->cells) {
      if (cell == image) return {layer->id, index};
      ++index;
    }
  }
  return {};
}

UndoHistory::CellPlace UndoHistory::NearPlaceOf(const CellImage* image) const {
  const auto holds = [image](Layer* layer, int32_t cell) {
    const CursorKeeper<CellImage*> keeper(&layer->cells);
    return layer->CellAt(cell) == image;
  };
  if (Frame* current = cut->CurrentFrame()) {
    for (const FrameRecord* record : current->records) {
      if (holds(record->layer, record->cell)) return {record->layer->id, record->cell};
    }
  }
  Layer* layer = LayerOf(undoPlace.layer);
  return layer != nullptr && holds(layer, undoPlace.cell) ? undoPlace : CellPlace();
}

Layer* UndoHistory::LayerOf(uint64_t id) const {
  for (Layer* layer : cut->layers) {
    if (layer->id == id) return layer;
  }
  return nullptr;
}

CellImage* UndoHistory::CellAt(const CellPlace& place) const {
  Layer* layer = place.layer != 0 ? LayerOf(place.layer) : nullptr;
  return layer != nullptr ? layer->CellAt(place.cell) : nullptr;
}

bool UndoHistory::ReadUndoPixels(uint64_t size, Buffer<uint8_t>* pixels) const {
  const CellImage* cell = cut->undoCell;
  const uint64_t used = cell != nullptr && cell->ByteCount() <= cut->undoCapacity && cut->undoPixels != nullptr
                            ? static_cast<uint64_t>(cell->ByteCount())
                            : 0;
  Buffer<uint8_t> read;
  if (!read.AllocateZeroed(std::max(size, used))) return false;
  if (used > 0) std::memcpy(read.Data(), cut->undoPixels, static_cast<size_t>(used));
  *pixels = std::move(read);
  return true;
}

namespace {

// False without memory.
bool ExtendTo(uint64_t size, Buffer<uint8_t>* pixels) {
  if (pixels->Count() >= size) return true;
  Buffer<uint8_t> larger;
  if (!larger.AllocateZeroed(size)) return false;
  if (pixels->Count() > 0) std::memcpy(larger.Data(), pixels->Data(), pixels->Count());
  *pixels = std::move(larger);
  return true;
}

}  // namespace

bool UndoHistory::CompareUndo(Step* step) {
  step->undoPlace = undoPlace;
  step->undoArea = undoArea;
  undoPlace = PlaceOf(cut->undoCell);
  Buffer<uint8_t> present;
  if (!ReadUndoPixels(undoPixels.Count(), &present) || !ExtendTo(present.Count(), &undoPixels)) return false;
  step->undoSize = present.Count();
  if (!step->undoPixels.Compare(undoPixels.Data(), present.Data(), 0, static_cast<int64_t>(step->undoSize)))
    return false;
  undoPixels = std::move(present);
  return true;
}

// What SaveUndo() did since the state was recorded belongs to it: the steps to its neighbours must lead there.
bool UndoHistory::FoldUndo() {
  Step* const neighbors[] = {position > 0 ? steps[position - 1].get() : nullptr,
                             position < steps.size() ? steps[position].get() : nullptr};
  uint64_t size = undoPixels.Count();
  for (const Step* step : neighbors) size = std::max(size, step != nullptr ? step->undoSize : 0);
  Buffer<uint8_t> present;
  if (!ReadUndoPixels(size, &present)) return false;
  size = present.Count();
  if (!ExtendTo(size, &undoPixels)) return false;
  if (size == 0 || std::memcmp(present.Data(), undoPixels.Data(), static_cast<size_t>(size)) == 0) return true;
  for (Step* step : neighbors) {
    if (step == nullptr) continue;
    Buffer<uint8_t> other;
    if (!other.Allocate(size)) return false;
    std::memcpy(other.Data(), undoPixels.Data(), static_cast<size_t>(size));
    step->undoPixels.Apply(other.Data());
    step->undoSize = size;
    if (!step->undoPixels.Compare(other.Data(), present.Data(), 0, static_cast<int64_t>(size))) return false;
  }
  undoPixels = std::move(present);
  return true;
}

// Both steps drew on the same cell. What is kept is the state between them.
bool UndoHistory::ExtendStep(Step* step) {
  Step* last = steps.back().get();
  CellChange& first = last->inLayers[0]->pixels[0];
  CellChange& second = step->inLayers[0]->pixels[0];
  const CellImage* image = CellAt(step->DrawnCell());
  const auto between = keptByNumber.find(second.number);
  if (between == keptByNumber.end() || between->second->image == nullptr) return false;
  CellImage* old = between->second->image;
  old->UseRows(first.top, first.bottom - first.top);
  first.pixels.Apply(old->bits);
  first.top = std::min(first.top, second.top);
  first.bottom = std::max(first.bottom, second.bottom);
  if (!first.pixels.Compare(old->bits, image->bits, int64_t{first.top} * image->pitch,
                            int64_t{first.bottom} * image->pitch)) {
    return false;
  }
  last->after = step->after;
  last->marks |= step->marks;
  bytes -= last->bytes;
  last->bytes = last->ByteCount();
  bytes += last->bytes;
  return true;
}

// Taking steps.

bool UndoHistory::Back() {
  Record(Origin::kCommand);
  if (position == 0) return false;
  Step* step = steps[position - 1].get();
  if (!Apply(step, step->before)) return false;
  --position;
  Prune();
  return true;
}

bool UndoHistory::Forward() {
  Record(Origin::kCommand);
  if (position == steps.size()) return false;
  Step* step = steps[position].get();
  if (!Apply(step, step->after)) return false;
  ++position;
  Prune();
  return true;
}

void UndoHistory::SwapFrames(Step* step) {
  const auto at = [step](size_t index) { return static_cast<int32_t>(step->frameStart + index); };
  std::vector<FrameState> out;
  size_t count = step->frameCount;
  for (size_t i = 0; i < count; ++i) out.emplace_back(*cut->frames.At(at(i)));
  while (count > step->frames.size()) delete RemoveAt(&cut->frames, at(--count));
  while (count < step->frames.size()) InsertAt(&cut->frames, at(count++), new Frame(cut->width, cut->height));
  const std::vector<Layer*> cutLayers = ElementsOf(&cut->layers);
  for (size_t i = 0; i < count; ++i) step->frames[i].Write(cut->frames.At(at(i)), cutLayers);
  step->frameCount = count;
  step->frames = std::move(out);
}

bool UndoHistory::Apply(Step* step, const Shown& target) {
  if (!FoldUndo()) {
    Begin();
    return false;
  }
  isMoving = true;
  const bool hasLayers = !step->layers.IsEmpty();
  const CellPlace place = PlaceOf(cut->undoCell);
  if (hasLayers) step->layers.Swap(&cut->layers);
  for (const std::unique_ptr<LayerChange>& change : step->inLayers) {
    if (Layer* layer = LayerOf(change->id)) change->Swap(layer);
  }
  for (Layer* layer : cut->layers) cut->EnsureUndoBuffer(layer);

  SwapFrames(step);
  if (step->head) {
    HeadState present(*cut);
    step->head->Write(cut);
    *step->head = std::move(present);
  }
  step->undoPixels.Apply(undoPixels.Data());
  undoPlace = std::exchange(step->undoPlace, place);
  undoArea = std::exchange(step->undoArea, *area);
  *area = undoArea;
  cut->undoCell = CellAt(undoPlace);
  if (cut->undoCell != nullptr && cut->undoCell->ByteCount() <= cut->undoCapacity) {
    std::memcpy(cut->undoPixels, undoPixels.Data(), static_cast<size_t>(cut->undoCell->ByteCount()));
  }
  Show(*step, target);
  step->isOpen = false;
  bytes -= step->bytes;
  step->bytes = step->ByteCount();
  bytes += step->bytes;
  cut->stateFlags |= step->marks;
  ReadChanges(*step, hasLayers);
  isMoving = false;
  return true;
}

// Where the user was, if the change is to be seen there.
void UndoHistory::Show(const Step& step, const Shown& target) {
  cut->currentFrame = std::min(target.frame, cut->frames.Count() - 1);
  Frame* current = cut->CurrentFrame();
  if (current == nullptr) return;
  current->SelectRecord(target.record);
  const auto first = static_cast<int32_t>(step.frameStart);
  const auto count = static_cast<int32_t>(step.frameCount);
  if (count > 0) {
    const bool isThere = cut->currentFrame >= first && cut->currentFrame < first + count;
    if (!isThere && step.frameCount == step.frames.size()) cut->currentFrame = first;
    return;
  }
  bool isDrawing = false;
  const auto shows = [&step](const Frame& frame) {
    for (const FrameRecord* record : frame.records) {
      for (const std::unique_ptr<LayerChange>& change : step.inLayers) {
        if (change->id != record->layer->id) continue;
        for (const CellChange& cell : change->pixels) {
          if (cell.cell == record->cell) return true;
        }
      }
    }
    return false;
  };
  for (const std::unique_ptr<LayerChange>& change : step.inLayers) isDrawing = isDrawing || !change->pixels.empty();
  if (!isDrawing || shows(*current)) return;
  int32_t index = 0;
  for (const Frame* frame : std::as_const(cut->frames)) {
    if (shows(*frame)) {
      cut->currentFrame = index;
      return;
    }
    ++index;
  }
}

UndoHistory::Shown UndoHistory::ShownNow() const {
  const Frame* frame = cut->CurrentFrame();
  return {cut->currentFrame, frame != nullptr ? frame->currentRecord : -1};
}

// Memory.

void UndoHistory::Prune() {
  if (bytes <= kLeastLimit) return;
  int64_t pixels = 0;
  for (const LayerState& layer : layers) pixels += layer.bytes;
  const int64_t limit = std::max(kLeastLimit, pixels / 2);
  while (bytes > limit && steps.size() > 1) {
    const bool isOld = position > 1;
    bytes -= (isOld ? steps.front() : steps.back())->bytes;
    if (isOld) {
      steps.pop_front();
      --position;
    } else {
      steps.pop_back();
    }
  }
}

}  // namespace sorvel
