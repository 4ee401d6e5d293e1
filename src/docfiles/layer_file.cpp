#include <cstring>

#include "docfiles/cell_codec.h"
#include "docfiles/stream_check.h"
#include "document/cut.h"

namespace sorvel {

namespace {

constexpr char kLayerMagic[] = "Sorvelin Layer";

}  // namespace

bool Cut::SaveLayer(ByteStream* stream) {
  const FrameRecord* record = CurrentFrameRecord();
  if (record == nullptr) return false;
  WriteText(*stream, kLayerMagic);
  return CellWriter::Write(record->layer, stream);
}

bool Cut::LoadLayer(ByteStream* stream, LoadReport* report) {
  char magic[sizeof(kLayerMagic)];
  ReadText(*stream, magic, sizeof(magic));
  if (std::strcmp(magic, kLayerMagic) != 0) {
    NoteProblem(report, "not a layer file");
    return false;
  }
  if (CurrentFrame() == nullptr) return false;
  if (layers.Count() == 0) {
    AddLayer(nullptr, 0, 0, nullptr);
    AttachLayer(0, 0, 0);
  }
  const FrameRecord* record = CurrentFrameRecord();
  if (record == nullptr) return false;
  Layer* layer = record->layer;
  ForgetUndoOf(layer);
  if (CellReader::Read(layer, stream, report) && layer->cells.Count() == 0)
    NoteProblem(report, "the layer has no cells");
  if (!EnsureUndoBuffer(layer)) NoteProblem(report, "no memory for the layer");
  NoteLongStream(*stream, StreamLength(*stream), report);
  MarkImages();
  return true;
}

}  // namespace sorvel
