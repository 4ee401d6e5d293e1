// The cut file, the layer file, and what the document says about frames.
#include <cstdlib>

#include "reference_internal.h"

namespace reference {

Bytes WriteCut(const CutData& cut) {
  Bytes out;
  PutText(&out, "Sorvelin Cut");
  Put16(&out, cut.width);
  Put16(&out, cut.height);
  Put16(&out, cut.frameWidth);
  Put16(&out, cut.frameHeight);
  Put8(&out, cut.fps);
  PutText(&out, cut.credit);
  Put8(&out, cut.antialias == 1 || cut.antialias == 2 ? cut.antialias : 0);
  Put8(&out, static_cast<int>(cut.layers.size()));
  Put16(&out, static_cast<int>(cut.frames.size()));
  for (const LayerData& layer : cut.layers) {
    Bytes block = WriteLayerBlock(layer);
    out.insert(out.end(), block.begin(), block.end());
  }
  for (const FrameData& frame : cut.frames) {
    Put16(&out, frame.x);
    Put16(&out, frame.y);
    Put16(&out, frame.time);
    Put16(&out, frame.loop);
    Put8(&out, frame.brightness);
    PutText(&out, frame.comment);
    Put8(&out, static_cast<int>(frame.records.size()));
    for (const RecordData& record : frame.records) {
      // Position first and cell last.
      Put8(&out, record.layer);
      Put16(&out, record.x);
      Put16(&out, record.y);
      Put16(&out, record.cell);
    }
  }
  return out;
}

Bytes WriteLayerFile(const LayerData& layer) {
  Bytes out;
  PutText(&out, "Sorvelin Layer");
  Bytes block = WriteLayerBlock(layer);
  out.insert(out.end(), block.begin(), block.end());
  return out;
}

bool ReadCut(const Bytes& file, CutData* cut) {
  Reader in;
  in.data = &file;
  if (in.Text() != "Sorvelin Cut") return false;
  *cut = CutData();
  cut->width = in.U16();
  cut->height = in.U16();
  cut->frameWidth = in.U16();
  cut->frameHeight = in.U16();
  cut->fps = in.U8();
  cut->credit = in.Text();
  int antialias = in.U8();
  if ((antialias & 1) != 0) {
    cut->antialias = 1;
  } else if ((antialias & 2) != 0) {
    cut->antialias = 2;
  }
  int layerCount = in.U8();
  int frameCount = in.U16();
  for (int i = 0; i < layerCount; i++) {
    LayerData layer;
    // A damaged layer stays as far as it got; the file is read on from wherever its reader stopped.
    ReadLayerBlock(&in, &layer);
    cut->layers.push_back(layer);
  }
  for (int i = 0; i < frameCount; i++) {
    FrameData frame;
    frame.x = in.I16();
    frame.y = in.I16();
    frame.time = in.I16();
    frame.loop = in.U16();
    frame.brightness = in.I8();
    frame.comment = in.Text();
    int recordCount = in.U8();
    for (int j = 0; j < recordCount; j++) {
      RecordData record;
      record.layer = in.U8();
      record.x = in.I16();
      record.y = in.I16();
      record.cell = in.I16();
      frame.records.push_back(record);
    }
    // Each record becomes the current one as it is added, and each frame likewise, so a loaded cut stands on the last
    // of both.
    frame.currentRecord = recordCount - 1;
    cut->frames.push_back(frame);
  }
  cut->currentFrame = frameCount - 1;
  return true;
}

// ---- frames --------------------------------------------------------------

int ScaleOf(const CutData& cut) {
  if (cut.antialias == 1) return 2;
  if (cut.antialias == 2) return 4;
  return 1;
}

int DecodedBrightness(const FrameData& frame) {
  return frame.brightness < 0 ? -1 - frame.brightness : frame.brightness;
}

// A key frame's time is the length of the span up to the next key frame; the frames between take theirs out of it, and
// at least 1 is left.
int EffectiveTime(const CutData& cut, int frameIndex) {
  int count = static_cast<int>(cut.frames.size());
  if (frameIndex < 0 || frameIndex >= count) return 0;
  const FrameData& frame = cut.frames[static_cast<std::size_t>(frameIndex)];
  if (frame.brightness >= 0) return frame.time;
  int rest = std::abs(frame.time);
  for (int i = frameIndex + 1; i < count; i++) {
    const FrameData& next = cut.frames[static_cast<std::size_t>(i)];
    if (next.brightness < 0) break;
    rest = rest - std::abs(next.time);
  }
  if (rest < 1) rest = 1;
  return frame.time < 0 ? -rest : rest;
}

bool SameAs(const FrameData& one, const FrameData& other) {
  if (one.records.size() != other.records.size() || one.x != other.x || one.y != other.y) return false;
  for (std::size_t i = 0; i < one.records.size(); i++) {
    const RecordData& a = one.records[i];
    const RecordData& b = other.records[i];
    if (a.layer != b.layer || a.cell != b.cell || a.x != b.x || a.y != b.y) return false;
  }
  return true;
}

void SelectRecord(FrameData* frame, int record) {
  if (record >= 0 && record < static_cast<int>(frame->records.size())) frame->currentRecord = record;
}

void RecordPosition(const CutData& cut, const FrameData& frame, int record, int* x, int* y) {
  const RecordData& r = frame.records[static_cast<std::size_t>(record)];
  *x = r.x;
  *y = r.y;
  if (cut.layers[static_cast<std::size_t>(r.layer)].followFrame != 0) {
    *x = *x + frame.x;
    *y = *y + frame.y;
  }
}

const Cell* VisibleCell(const CutData& cut, const FrameData& frame, int record, int* x, int* y) {
  if (record < 0 || record >= static_cast<int>(frame.records.size())) return nullptr;
  const RecordData& r = frame.records[static_cast<std::size_t>(record)];
  if (r.cell < 0) return nullptr;
  const LayerData& layer = cut.layers[static_cast<std::size_t>(r.layer)];
  if (r.cell >= static_cast<int>(layer.cells.size())) return nullptr;
  RecordPosition(cut, frame, record, x, y);
  return &layer.cells[static_cast<std::size_t>(r.cell)];
}

}  // namespace reference
