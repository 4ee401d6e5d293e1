#include <cstring>

#include "docfiles/cell_codec.h"
#include "docfiles/cut_parts.h"
#include "docfiles/stream_check.h"
#include "document/cut.h"

namespace sorvel {

namespace {

constexpr char kCutMagic[] = "Sorvelin Cut";
constexpr int32_t kTextLimit = 256;

// Bytes of the fixed fields between the texts.
constexpr int32_t kHeadBytes = 9;
constexpr int32_t kCountsBytes = 4;
constexpr int32_t kFrameBytes = 9;
constexpr int32_t kRecordCountBytes = 1;
constexpr int32_t kRecordBytes = 7;

}  // namespace

void WriteCutHead(Cut* cut, ByteStream* stream) {
  WriteText(*stream, kCutMagic);
  WriteField(*stream, cut->width, 2);
  WriteField(*stream, cut->height, 2);
  WriteField(*stream, cut->frameWidth, 2);
  WriteField(*stream, cut->frameHeight, 2);
  WriteField(*stream, cut->fps, 1);
  WriteText(*stream, cut->credit);
  WriteField(*stream, cut->Antialias() == 1 || cut->Antialias() == 2 ? cut->Antialias() : 0, 1);
  WriteField(*stream, cut->layers.Count(), 1);
  WriteField(*stream, cut->frames.Count(), 2);
}

void WriteCutFrames(Cut* cut, ByteStream* stream) {
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    Frame* frame = cut->frames.At(i);
    WriteField(*stream, frame->x, 2);
    WriteField(*stream, frame->y, 2);
    WriteField(*stream, frame->time, 2);
    WriteField(*stream, frame->loop, 2);
    WriteField(*stream, frame->brightness, 1);
    WriteText(*stream, frame->comment);
    WriteField(*stream, frame->records.Count(), 1);
    for (int32_t r = 0; r < frame->records.Count(); ++r) {
      const FrameRecord* record = frame->records.At(r);
      cut->layers.SeekFirst();
      WriteField(*stream, cut->layers.Find(record->layer), 1);
      WriteField(*stream, record->x, 2);
      WriteField(*stream, record->y, 2);
      WriteField(*stream, record->cell, 2);
    }
  }
}

bool Cut::Save(ByteStream* stream) {
  WriteCutHead(this, stream);
  for (int32_t i = 0; i < layers.Count(); ++i) {
    if (!CellWriter::Write(layers.At(i), stream)) return false;
  }
  WriteCutFrames(this, stream);
  stateFlags &= ~static_cast<uint32_t>(kModified);
  return true;
}

bool Cut::Load(ByteStream* stream, CellImage* prototype, LoadReport* report) {
  char text[kTextLimit];
  ReadText(*stream, text, kTextLimit);
  if (std::strcmp(text, kCutMagic) != 0) {
    NoteProblem(report, "not a cut file");
    return false;
  }
  Reset();
  const int32_t length = StreamLength(*stream);
  NoteShortStream(*stream, length, kHeadBytes, report);
  width = static_cast<int32_t>(ReadField(*stream, 2));
  height = static_cast<int32_t>(ReadField(*stream, 2));
  frameWidth = static_cast<int32_t>(ReadField(*stream, 2));
  frameHeight = static_cast<int32_t>(ReadField(*stream, 2));
  fps = static_cast<int32_t>(ReadField(*stream, 1));
  ReadText(*stream, text, kTextLimit);
  AssignString(&credit, text);
  NoteShortStream(*stream, length, kCountsBytes, report);
  const uint32_t antialias = ReadField(*stream, 1);
  SetAntialias((antialias & 1) != 0 ? 1 : (antialias & 2) != 0 ? 2 : 0);
  const int32_t layerCount = static_cast<int32_t>(ReadField(*stream, 1));
  const int32_t frameCount = static_cast<int32_t>(ReadField(*stream, 2));

  for (int32_t i = 0; i < layerCount; ++i) {
    Layer* layer = AddLayer(nullptr, 0, 0, prototype);
    // A damaged layer stays as far as it got, and reading goes on where the stream stands.
    if (CellReader::Read(layer, stream, report) && layer->cells.Count() == 0) {
      NoteProblem(report, "layer %lld has no cells", i);
    }
    if (!EnsureUndoBuffer(layer)) NoteProblem(report, "no memory for layer %lld", i);
  }
  for (int32_t i = 0; i < frameCount; ++i) {
    Frame* frame = AddFrame();
    frame->ClearRecords();
    NoteShortStream(*stream, length, kFrameBytes, report);
    frame->x = ReadSignedField(*stream, 2);
    frame->y = ReadSignedField(*stream, 2);
    frame->time = ReadSignedField(*stream, 2);
    frame->loop = static_cast<int32_t>(ReadField(*stream, 2));
    frame->brightness = ReadSignedField(*stream, 1);
    ReadText(*stream, text, kTextLimit);
    AssignString(&frame->comment, text);
    NoteShortStream(*stream, length, kRecordCountBytes, report);
    const int32_t recordCount = static_cast<int32_t>(ReadField(*stream, 1));
    for (int32_t r = 0; r < recordCount; ++r) {
      NoteShortStream(*stream, length, kRecordBytes, report);
      const int32_t number = static_cast<int32_t>(ReadField(*stream, 1));
      const int32_t recordX = ReadSignedField(*stream, 2);
      const int32_t recordY = ReadSignedField(*stream, 2);
      const int32_t cell = ReadSignedField(*stream, 2);
      Layer* layer = layers.At(number);
      if (layer != nullptr) {
        frame->AddRecord(layer, cell, recordX, recordY);
      } else {
        NoteProblem(report, "a record of frame %lld names a layer that doesn't exist", i + 1);
      }
    }
  }
  NoteLongStream(*stream, length, report);
  stateFlags &= ~static_cast<uint32_t>(kModified | kTimingStale);
  stateFlags |= kImagesStale;
  return true;
}

WriteProblem Cut::SaveToFile(const char* filePath, bool purge) {
  ReplacementFile file;
  if (!file.Open(filePath)) return file.WhyNot();
  const bool purges = purge && !knownFile.IsDamaged();
  const std::vector<TakenLayer> unused = purges ? TakeUnusedLayers() : std::vector<TakenLayer>();
  const uint32_t marks = stateFlags;
  const bool isSaved = Save(&file.stream) && knownFile.Commit(&file);
  if (isSaved) {
    DestroyLayers(unused);
    return WriteProblem::kNone;
  }
  PutLayersBack(unused);
  stateFlags = marks;
  return file.WhyNot();
}

bool Cut::SaveToPath() {
  return path[0] != '\0' && SaveToFile(path, false) == WriteProblem::kNone;
}

}  // namespace sorvel
