// The commands on the cells of the current layer.

#include "cutwindow/cut_window.h"
#include "shell/commands.h"

namespace sorvel {

namespace {

void ShowCell(CutWindow* cut) {
  cut->host->RefreshLayerLine(cut);
  cut->RepaintAll();
}

void ShowBlank(CutWindow* cut) {
  cut->host->RefreshLayerLine(cut);
  cut->MarkImages();
  cut->RepaintAll();
}

}  // namespace

void StepCell(CutWindow* cut, bool (Cut::*step)()) {
  if ((cut->*step)()) ShowCell(cut);
}

void AddOrInsertCell(CutWindow* cut, bool (Cut::*add)(int32_t)) {
  if ((cut->*add)(kTransparent)) ShowCell(cut);
}

void SwitchBlank(CutWindow* cut) {
  Frame* frame = cut->CurrentFrame();
  if (frame == nullptr || frame->LayerAt(frame->currentRecord) == nullptr) return;
  frame->ToggleBlank();
  ShowBlank(cut);
}

void SwitchBlankInAllFrames(CutWindow* cut) {
  cut->ToggleBlankAll();
  ShowBlank(cut);
}

bool IsCurrentCellBlank(CutWindow* cut) {
  Layer* layer = nullptr;
  int32_t x = 0;
  int32_t y = 0;
  int32_t cell = 0;
  Frame* frame = cut->CurrentFrame();
  return frame != nullptr && frame->GetRecord(frame->currentRecord, &layer, &x, &y, &cell) && IsBlankCell(cell);
}

}  // namespace sorvel
