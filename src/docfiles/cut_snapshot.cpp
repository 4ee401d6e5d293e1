#include "docfiles/cut_snapshot.h"

#include <unordered_map>
#include <utility>

#include "docfiles/cell_codec.h"
#include "docfiles/cut_parts.h"

namespace sorvel {

namespace {

// Puts the cursor of a list back at the end of the scope.
template <typename T>
class KeptCursor {
 public:
  explicit KeptCursor(CursorList<T>* keptList) : list(keptList), index(keptList->CursorIndex()) {}
  KeptCursor(KeptCursor&& other) noexcept : list(std::exchange(other.list, nullptr)), index(other.index) {}
  ~KeptCursor() {
    if (list != nullptr) list->Seek(index);
  }

 private:
  CursorList<T>* list;
  int32_t index;
};

}  // namespace

CutSnapshot::Result CutSnapshot::Take(Cut* cut, int64_t limit) {
  const KeptCursor keptLayers(&cut->layers);
  const KeptCursor keptFrames(&cut->frames);
  std::vector<KeptCursor<FrameRecord*>> keptRecords;
  keptRecords.reserve(static_cast<size_t>(cut->frames.Count()));
  for (int32_t i = 0; i < cut->frames.Count(); ++i) keptRecords.emplace_back(&cut->frames.At(i)->records);

  std::unordered_map<uint64_t, std::shared_ptr<Cell>> known;
  for (const std::vector<std::shared_ptr<Cell>>* held : {&cells, &ahead}) {
    for (const std::shared_ptr<Cell>& cell : *held) known.emplace(cell->number, cell);
  }
  ChunkStream stream;
  std::vector<LayerPart> newLayers;
  std::vector<std::shared_ptr<Cell>> newCells;
  bool hasMemory = true;
  bool hasAll = true;
  WriteCutHead(cut, &stream);
  for (int32_t i = 0; i < cut->layers.Count(); ++i) {
    Layer* layer = cut->layers.At(i);
    const KeptCursor keptCells(&layer->cells);
    WriteLayerHead(layer, &stream);
    newLayers.push_back({static_cast<size_t>(stream.Tell()), static_cast<size_t>(layer->cells.Count())});
    for (int32_t k = 0; k < layer->cells.Count() && hasMemory; ++k) {
      CellImage* image = layer->cells.At(k);
      std::shared_ptr<Cell>& cell = known[image->ContentNumber()];
      if (cell == nullptr) {
        hasAll = hasAll && limit > 0;
        if (!hasAll) continue;
        limit -= image->ByteCount();
        cell = CopyOf(image);
        hasMemory = cell != nullptr;
      }
      newCells.push_back(cell);
    }
  }
  WriteCutFrames(cut, &stream);
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  if (!hasMemory || !ReadWholeStream(stream, &bytes, &size)) {
    *this = CutSnapshot();
    return Result::kNoMemory;
  }
  if (!hasAll) {
    ahead.insert(ahead.end(), newCells.begin(), newCells.end());
    return Result::kMore;
  }
  ahead.clear();
  std::string newFrame(reinterpret_cast<const char*>(bytes.Data()), static_cast<size_t>(size));
  if (newFrame == frame && newCells == cells) return Result::kSame;
  frame = std::move(newFrame);
  layers = std::move(newLayers);
  cells = std::move(newCells);
  return Result::kTaken;
}

std::shared_ptr<CutSnapshot::Cell> CutSnapshot::CopyOf(CellImage* image) {
  std::shared_ptr<Cell> cell = std::make_shared<Cell>();
  cell->number = image->ContentNumber();
  cell->image = image->MakeBlank();
  if (cell->image == nullptr) return nullptr;
  cell->image->CopyBits(*image);
  return cell;
}

bool CutSnapshot::Encode(Cell* cell) {
  if (cell->image == nullptr) return true;
  ChunkStream stream;
  CellWriter writer;
  if (!writer.Begin(cell->image->width, cell->image->height)) return false;
  writer.WriteCell(*cell->image, &stream);
  if (!ReadWholeStream(stream, &cell->bytes, &cell->size)) return false;
  DestroyImage(std::exchange(cell->image, nullptr));
  return true;
}

bool CutSnapshot::Write(ByteStream* stream) {
  if (frame.empty()) return false;
  size_t offset = 0;
  const auto writeUpTo = [&](size_t end) {
    stream->Write(frame.data() + offset, static_cast<int32_t>(end - offset));
    offset = end;
  };
  auto cell = cells.begin();
  for (const LayerPart& layer : layers) {
    writeUpTo(layer.offset);
    for (size_t i = 0; i < layer.cellCount; ++i, ++cell) {
      if (!Encode(cell->get())) return false;
      stream->Write((*cell)->bytes.Data(), (*cell)->size);
    }
  }
  writeUpTo(frame.size());
  return true;
}

}  // namespace sorvel
