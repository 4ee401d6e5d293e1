#include "document/time_sheet.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/cursor_keeper.h"

namespace sorvel {

TimeSheet::TimeSheet(Cut* sheetCut) : cut(sheetCut) {
  Read();
}

void TimeSheet::Read() {
  ReadFrames();
  ReadColumns();
}

void TimeSheet::ReadFrames() {
  const CursorKeeper<Frame*> keeper(&cut->frames);
  const int32_t count = cut->frames.Count();
  frames.clear();
  frames.reserve(static_cast<size_t>(count));
  cells.assign(static_cast<size_t>(count), {});
  int64_t row = 0;
  int64_t tick = 0;
  int32_t repeats = 1;
  for (int32_t i = 0; i < count; ++i) {
    const int32_t ticks = std::abs(cut->EffectiveTime(i));
    const Frame* frame = cut->frames.At(i);
    // A frame inside a stretch has no count of its own.
    if (frame->loop != 0) repeats = std::max(frame->loop, 1);
    frames.push_back({row, tick, ticks, repeats, frame->loop > 1, frame->time < 0});
    row += frames.back().Rows();
    tick += ticks;
  }
}

void TimeSheet::ReadColumns() {
  columns.clear();
  const auto add = [this](Layer* layer, int32_t record) {
    const auto isOfLayer = [layer](const SheetColumn& column) { return column.layer == layer; };
    const auto before = std::count_if(columns.begin(), columns.end(), isOfLayer);
    if (record >= 0 || before == 0) columns.push_back({layer, static_cast<int32_t>(before), record});
  };
  const CursorKeeper<Frame*> frameKeeper(&cut->frames);
  if (Frame* current = cut->CurrentFrame()) {
    const CursorKeeper<FrameRecord*> recordKeeper(&current->records);
    for (int32_t i = 0; i < current->records.Count(); ++i) add(current->LayerAt(i), i);
  }
  const CursorKeeper<Layer*> layerKeeper(&cut->layers);
  for (int32_t i = 0; i < cut->layers.Count(); ++i) add(cut->layers.At(i), -1);
}

int64_t TimeSheet::Rows() const {
  return frames.empty() ? 0 : frames.back().firstRow + frames.back().Rows();
}

int64_t TimeSheet::Ticks() const {
  return frames.empty() ? 0 : frames.back().firstTick + frames.back().ticks;
}

int32_t TimeSheet::FrameOfRow(int64_t row) const {
  const auto behind = std::upper_bound(frames.begin(), frames.end(), row,
                                       [](int64_t value, const SheetFrame& frame) { return value < frame.firstRow; });
  return static_cast<int32_t>(behind - frames.begin()) - 1;
}

int32_t TimeSheet::CellOf(int32_t frame, int32_t column) {
  std::vector<int32_t>& shown = cells[static_cast<size_t>(frame)];
  if (shown.empty()) {
    const CursorKeeper<Frame*> keeper(&cut->frames);
    shown.reserve(columns.size());
    for (const SheetColumn& each : columns) shown.push_back(ShownCell(cut->frames.At(frame), each));
  }
  return shown[static_cast<size_t>(column)];
}

SheetSquare TimeSheet::SquareAt(int32_t column, int64_t row) {
  const int32_t frame = FrameOfRow(row);
  const int32_t cell = CellOf(frame, column);
  if (cell == kNoSquare) return {};
  const bool begins = row == FrameAt(frame).firstRow && (frame == 0 || CellOf(frame - 1, column) != cell);
  if (cell == kBlankSquare) return {begins ? SheetMark::kBlank : SheetMark::kBlankHold, cell};
  return {begins ? SheetMark::kCell : SheetMark::kHold, cell};
}

int32_t TimeSheet::FindRecord(Frame* frame, const SheetColumn& column) {
  const CursorKeeper<FrameRecord*> keeper(&frame->records);
  int32_t toPass = column.occurrence;
  for (int32_t i = 0; i < frame->records.Count(); ++i) {
    if (frame->LayerAt(i) == column.layer && toPass-- == 0) return i;
  }
  return -1;
}

int32_t TimeSheet::ShownCell(Frame* frame, const SheetColumn& column) {
  const int32_t record = FindRecord(frame, column);
  if (record < 0) return kNoSquare;
  const CursorKeeper<FrameRecord*> keeper(&frame->records);
  return std::max(frame->records.At(record)->cell, kBlankSquare);
}

}  // namespace sorvel
