#include "monkey/invariants.h"

#include <algorithm>
#include <cstring>

#include "console/script_runner.h"
#include "cutwindow/drawing_settings.h"
#include "dialogs/dialog.h"
#include "imaging/indexed_image.h"
#include "monkey/cursors.h"
#include "platform/headless/headless.h"

namespace sorvel::monkey {

namespace {

// The drawings of a cut of up to kSmallCut bytes are checked after each action, those of a larger one after every
// kLookInterval actions.
constexpr int64_t kSmallCut = 1 << 16;
constexpr int64_t kLookInterval = 16;

bool HasMarker(CellImage* image) {
  if (image->bits == nullptr) return false;
  for (int32_t y = 0; y < image->height; ++y) {
    const uint8_t* row = image->bits + static_cast<ptrdiff_t>(y) * image->pitch;
    uint64_t found = 0;
    int32_t x = 0;
    for (; x + 8 <= image->pitch; x += 8) {
      uint64_t word = 0;
      std::memcpy(&word, row + x, sizeof(word));
      found |= word & word >> 1 & word >> 2 & word >> 3 & 0x1111111111111111u;
    }
    for (; x < image->pitch; ++x) {
      const uint32_t pair = row[x];
      found |= pair & pair >> 1 & pair >> 2 & pair >> 3 & 0x11u;
    }
    if (found == 0) continue;
    // Padding doesn't count.
    for (int32_t i = 0; i < image->width; ++i) {
      if (image->GetPixel(i, y) == kWorkMarker) return true;
    }
  }
  return false;
}

std::string Numbered(const char* text, int64_t number) {
  return std::string(text).append(" ").append(std::to_string(number));
}

std::string CheckTools() {
  if (currentPen.shape < 0 || currentPen.shape > 14) return Numbered("the pen has the shape", currentPen.shape);
  if (currentPen.tone < 0 || currentPen.tone > 15) return Numbered("the pen has the tone", currentPen.tone);
  if (currentPen.colorB < 0 || currentPen.colorB > 14) return Numbered("the pen has the colour", currentPen.colorB);
  if (currentPen.colorA < (currentPen.tone == 0 ? -1 : 0) || currentPen.colorA > 14) {
    return Numbered("the pen has the first colour", currentPen.colorA);
  }
  if (penSign != 1 && penSign != -1) return Numbered("the pen's sign is", penSign);
  if (gridWidth < 0 || gridHeight < 0) return "the grid is negative";
  return gCurrentDialog == nullptr ? "" : "a dialog is still there";
}

}  // namespace

std::string Invariants::Check(MainFrame& frame, bool mayLoad) {
  ++checks;
  std::string problem = CheckTools();
  if (!problem.empty()) return problem;
  if (!frame.toolbox->Has(frame.currentTool)) return Numbered("the tool is", frame.currentTool);
  const std::vector<CutWindow*>& cuts = frame.openCuts;
  for (CutWindow* cut : cuts) {
    problem = CheckCut(cut, mayLoad);
    if (!problem.empty()) return problem;
    if (cut->zoomNumerator < 1 || cut->zoomDenominator < 1) return "a zoom is below 1";
    if (cut->window == nullptr || platform::ObjectOf(cut->window) != cut) return "a window isn't that of its cut";
  }
  for (const FilmEntry& entry : Elements(&frame.film->cuts)) {
    if (entry.name == nullptr) return "an entry of the film has no name";
    const bool isOpen = std::any_of(cuts.begin(), cuts.end(), [&](const Cut* cut) { return cut == entry.cut; });
    if (entry.cut != nullptr && !isOpen) return "an entry of the film names a cut that isn't open";
  }
  return "";
}

std::string Invariants::CheckCut(Cut* cut, bool mayLoad) {
  const std::vector<Frame*> frames = Elements(&cut->frames);
  const std::vector<Layer*> layers = Elements(&cut->layers);
  const int32_t count = cut->frames.Count();
  // Only a damaged file has no frames.
  if (count == 0 ? cut->currentFrame != -1 : cut->currentFrame < 0 || cut->currentFrame >= count) {
    return Numbered("the current frame is", cut->currentFrame);
  }
  for (int32_t i = 0; i < count; ++i) {
    const std::string problem = CheckFrame(cut, frames[static_cast<size_t>(i)], i, mayLoad);
    if (!problem.empty()) return problem;
  }
  int64_t bytes = 0;
  bool isUndoKnown = cut->undoCell == nullptr;
  for (Layer* layer : layers) {
    for (CellImage* cell : Elements(&layer->cells)) {
      bytes += cell->ByteCount();
      if (cell->width != layer->width || cell->height != layer->height) {
        // Without memory for it a cell is empty.
        if (cell->bits != nullptr) return "a cell has another size than its layer";
      }
      if (cell == cut->undoCell) isUndoKnown = true;
    }
  }
  if (!isUndoKnown) return "the cell of the undo copy is gone";
  if (cut->undoCell != nullptr && cut->undoCell->ByteCount() > cut->undoCapacity) return "the undo copy is too small";
  if (hasForeignMarkers || (bytes > kSmallCut && checks % kLookInterval != 0)) return "";
  for (Layer* layer : layers) {
    for (CellImage* cell : Elements(&layer->cells)) {
      if (!HasMarker(cell)) continue;
      if (!mayLoad) return "a work marker is left in a cell";
      hasForeignMarkers = true;
    }
  }
  return "";
}

std::string Invariants::CheckFrame(Cut* cut, Frame* each, int32_t number, bool mayLoad) {
  const int32_t count = each->records.Count();
  const std::string where = Numbered(" of frame", number);
  if (count == 0 ? each->currentRecord != -1 : each->currentRecord < 0 || each->currentRecord >= count) {
    return Numbered("the current record is", each->currentRecord).append(where);
  }
  const std::vector<Layer*> layers = Elements(&cut->layers);
  for (const FrameRecord* record : Elements(&each->records)) {
    if (std::find(layers.begin(), layers.end(), record->layer) == layers.end()) {
      return std::string("a record names a layer that is gone").append(where);
    }
    const int32_t shown = record->cell < 0 ? -1 - record->cell : record->cell;
    if (shown < record->layer->cells.Count()) continue;
    // A blank record isn't renumbered with the others, and shows what it remembers when it comes back.
    if (record->cell >= 0 && !mayLoad && stale.count(record->layer->id) == 0) {
      return Numbered("a record shows the cell", record->cell).append(where);
    }
    stale.insert(record->layer->id);
  }
  return "";
}

Drawings DrawingsOf(Cut* cut) {
  Drawings drawings;
  drawings.cut = cut;
  for (Layer* layer : Elements(&cut->layers)) {
    for (CellImage* cell : Elements(&layer->cells)) {
      drawings.cells.emplace_back(cell->bits, cell->bits + (cell->bits == nullptr ? 0 : cell->ByteCount()));
    }
  }
  if (cut->undoCell != nullptr) drawings.undo.assign(cut->undoPixels, cut->undoPixels + cut->undoCell->ByteCount());
  return drawings;
}

namespace {

// Fields are narrower in a file than in memory.
int32_t Word(int32_t value) {
  return value & 0xFFFF;
}
int32_t SignedWord(int32_t value) {
  return static_cast<int16_t>(value);
}

std::vector<uint8_t> Contents(ByteStream* stream) {
  std::vector<uint8_t> bytes;
  stream->Seek(0, kFromStart);
  for (int32_t byte = stream->GetC(); byte >= 0; byte = stream->GetC()) bytes.push_back(static_cast<uint8_t>(byte));
  stream->Seek(0, kFromStart);
  return bytes;
}

bool IsSamePicture(CellImage* a, CellImage* b) {
  if (a->width != b->width || a->height != b->height) return false;
  if (a->bits == nullptr || b->bits == nullptr) return a->bits == b->bits;
  for (int32_t y = 0; y < a->height; ++y) {
    for (int32_t x = 0; x < a->width; ++x) {
      if (a->GetPixel(x, y) != b->GetPixel(x, y)) return false;
    }
  }
  return true;
}

std::string CompareLayers(Layer* saved, Layer* loaded) {
  if (saved->width != loaded->width || saved->height != loaded->height) return "a layer came back with another size";
  if (std::strcmp(saved->ShownName(), loaded->ShownName()) != 0) return "a layer came back with another name";
  if ((saved->followFrame != 0) != (loaded->followFrame != 0)) return "a layer came back with another follow mark";
  const std::vector<CellImage*> before = Elements(&saved->cells);
  const std::vector<CellImage*> after = Elements(&loaded->cells);
  if (before.size() != after.size()) return "a layer came back with another number of cells";
  for (size_t i = 0; i < before.size(); ++i) {
    if (!IsSamePicture(before[i], after[i])) {
      return Numbered("a drawing came back with other pixels, cell", static_cast<int64_t>(i));
    }
  }
  return "";
}

std::string CompareFrames(Cut* savedCut, Frame* saved, Cut* loadedCut, Frame* loaded) {
  if (SignedWord(saved->x) != loaded->x || SignedWord(saved->y) != loaded->y ||
      SignedWord(saved->time) != loaded->time || Word(saved->loop) != loaded->loop ||
      static_cast<int8_t>(saved->brightness) != loaded->brightness ||
      std::strcmp(saved->comment, loaded->comment) != 0) {
    return "a frame came back with other properties";
  }
  const std::vector<FrameRecord*> before = Elements(&saved->records);
  const std::vector<FrameRecord*> after = Elements(&loaded->records);
  if (before.size() != after.size()) return "a frame came back with another number of records";
  const std::vector<Layer*> layersBefore = Elements(&savedCut->layers);
  const std::vector<Layer*> layersAfter = Elements(&loadedCut->layers);
  for (size_t i = 0; i < before.size(); ++i) {
    const auto layerBefore = std::find(layersBefore.begin(), layersBefore.end(), before[i]->layer);
    const auto layerAfter = std::find(layersAfter.begin(), layersAfter.end(), after[i]->layer);
    if (layerBefore - layersBefore.begin() != layerAfter - layersAfter.begin() ||
        SignedWord(before[i]->x) != after[i]->x || SignedWord(before[i]->y) != after[i]->y ||
        SignedWord(before[i]->cell) != after[i]->cell) {
      return "a record came back otherwise";
    }
  }
  return "";
}

std::string CompareCuts(Cut* saved, Cut* loaded) {
  if (Word(saved->width) != loaded->width || Word(saved->height) != loaded->height ||
      Word(saved->frameWidth) != loaded->frameWidth || Word(saved->frameHeight) != loaded->frameHeight ||
      (saved->fps & 0xFF) != loaded->fps || std::strcmp(saved->credit, loaded->credit) != 0 ||
      saved->Antialias() % 3 != loaded->Antialias()) {
    return "the cut came back with other properties";
  }
  const std::vector<Layer*> layersBefore = Elements(&saved->layers);
  const std::vector<Layer*> layersAfter = Elements(&loaded->layers);
  if (layersBefore.size() != layersAfter.size()) return "the cut came back with another number of layers";
  for (size_t i = 0; i < layersBefore.size(); ++i) {
    const std::string problem = CompareLayers(layersBefore[i], layersAfter[i]);
    if (!problem.empty()) return problem;
  }
  const std::vector<Frame*> framesBefore = Elements(&saved->frames);
  const std::vector<Frame*> framesAfter = Elements(&loaded->frames);
  if (framesBefore.size() != framesAfter.size()) return "the cut came back with another number of frames";
  for (size_t i = 0; i < framesBefore.size(); ++i) {
    const std::string problem = CompareFrames(saved, framesBefore[i], loaded, framesAfter[i]);
    if (!problem.empty()) return problem;
  }
  return "";
}

// Whether the file format can tell all of the cut; its counts and sizes are short.
bool FitsFile(Cut* cut) {
  constexpr int32_t mostLayers = 0xFF;
  constexpr int32_t mostFrames = 0xFFFF;
  if (cut->layers.Count() > mostLayers || cut->frames.Count() > mostFrames) return false;
  for (Layer* layer : Elements(&cut->layers)) {
    const std::vector<CellImage*> cells = Elements(&layer->cells);
    if (layer->width > 0xFFFF || layer->height > 0xFFFF || layer->cells.Count() > 0xFFFF || cells.empty()) return false;
    // A drawing that there was no memory for has no pixels to compare.
    for (const CellImage* cell : cells) {
      if (cell->width != layer->width || cell->height != layer->height || cell->bits == nullptr) return false;
    }
  }
  for (Frame* frame : Elements(&cut->frames)) {
    if (frame->records.Count() > 0xFF) return false;
  }
  return true;
}

std::string CompareSavedLayer(Cut* cut) {
  Frame* frame = cut->CurrentFrame();
  Layer* layer = frame != nullptr ? frame->LayerAt(frame->currentRecord) : nullptr;
  if (layer == nullptr) return "";
  ChunkStream stream;
  if (!cut->SaveLayer(&stream)) return "the layer can't be saved";
  stream.Seek(0, kFromStart);
  Cut loaded(0, 0, 1, "", 0);
  loaded.AddFrame();
  LoadReport report;
  if (!loaded.LoadLayer(&stream, &report)) return "the saved layer can't be loaded";
  if (report.IsDamaged()) return std::string("the saved layer is damaged: ").append(report.problem);
  return CompareLayers(layer, loaded.layers.At(0));
}

}  // namespace

std::string CompareSaved(Cut* cut) {
  if (!FitsFile(cut)) return "";
  const KeepCursors keep(cut);
  const uint32_t flags = cut->stateFlags;
  ChunkStream stream;
  const bool isSaved = cut->Save(&stream);
  cut->stateFlags = flags;
  if (!isSaved) return "the cut can't be saved";
  const std::vector<uint8_t> bytes = Contents(&stream);
  Cut loaded(0, 0, 1, "", 0);
  PackedImage prototype;
  LoadReport report;
  if (!loaded.Load(&stream, &prototype, &report)) return "the saved cut can't be loaded";
  if (report.IsDamaged()) return std::string("the saved cut is damaged: ").append(report.problem);
  std::string problem = CompareCuts(cut, &loaded);
  if (!problem.empty()) return problem;
  ChunkStream again;
  if (!loaded.Save(&again) || Contents(&again) != bytes) return "the cut saves otherwise the second time";
  return CompareSavedLayer(cut);
}

namespace {

bool IsSameColor(const platform::ColorEntry& a, const platform::ColorEntry& b) {
  return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

bool IsScreenClean(CutWindow* cut) {
  const platform::WindowHandle window = cut->window;
  const std::vector<platform::ColorEntry> shown = window->pixels;
  const int32_t paints = window->paints;
  platform::InvalidateClient(window, true);
  platform::headless::PaintInvalid(window);
  const std::vector<platform::ColorEntry> painted = window->pixels;
  // Below 1/1 a repaint joins other pixels to one than painting does.
  cut->RepaintAreaDirect(0, 0, cut->width, cut->height);
  const std::vector<platform::ColorEntry> repainted = window->pixels;
  window->pixels = shown;
  window->paints = paints;
  Point corners[2] = {{0, 0}, {cut->width, cut->height}};
  cut->CutToWindow(corners, 2);
  // Without paint messages an overlay that a repaint of the window wiped away isn't known to be gone, and lies
  // inverted on the margin, which repaints don't touch.
  const int32_t left = std::max(corners[0].x, 0);
  const int32_t right = std::min(corners[1].x, window->width);
  for (int32_t y = std::max(corners[0].y, 0); y < std::min(corners[1].y, window->height); ++y) {
    for (int32_t x = left; x < right; ++x) {
      const size_t i = static_cast<size_t>(y) * static_cast<size_t>(window->width) + static_cast<size_t>(x);
      if (!IsSameColor(shown[i], painted[i]) && !IsSameColor(shown[i], repainted[i])) return false;
    }
  }
  return true;
}

}  // namespace

std::string CheckClean(MainFrame& frame, CutWindow* cut) {
  if (cut->HasSelection()) return "a selection is left after a repaint";
  const KeepCursors keep(cut);
  Frame* current = cut->CurrentFrame();
  if (current == nullptr || cut->view.bits == nullptr) return "";
  IndexedImage composed;
  if (!composed.Resize(cut->width, cut->height, 0)) return "";
  current->ComposeFrame(&composed, 0, 0, cut->width, cut->height, &cut->viewFlags, nullptr);
  if (!IsSamePicture(&composed, &cut->view)) return "the view isn't the picture of the current frame";
  // The box of these two stands on the screen between two pulses.
  if (frame.currentTool == kToolFramePosition || frame.currentTool == kToolLayerPosition) return "";
  return IsScreenClean(cut) ? "" : "something is left on the screen after a repaint";
}

}  // namespace sorvel::monkey
