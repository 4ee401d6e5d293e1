#include <cstdio>
#include <cstring>

#include "animation/stream_encoder.h"
#include "cutwindow/clipboard.h"
#include "cutwindow/drawing_settings.h"
#include "dialogs/dialogs.h"
#include "foundation/settings.h"
#include "shell/command_support.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr int32_t kFirstDotGap = 100;

// Draws on the current cell within an area that undo can take back, and shows it. `draw` gives false for nothing.
template <typename Draw>
void DrawOnCell(CutWindow* cut, const Rect& area, const Draw& draw) {
  CellImage* cell = cut->CurrentCell();
  if (cell == nullptr || !cut->SaveUndo()) return;
  cut->undoRect = area;
  if (draw(cell)) cut->ShowChange(area);
}

}  // namespace

// The cut.

void MainFrame::EditCutProperties(CutWindow* cut) {
  CutDialog dialog(statusBar, cut->width, cut->height, cut->fps, cut->credit, cut->Antialias());
  if (!dialog.Run(frameWindow)) return;
  if (dialog.width != cut->width || dialog.height != cut->height) {
    cut->width = dialog.width;
    cut->height = dialog.height;
    cut->FitView();
  }
  cut->fps = dialog.fps;
  cut->SetAntialias(dialog.antialias);
  AssignString(&cut->credit, dialog.credit);
  platform::InvalidateClient(cut->window, true);
  cut->MarkImages();
  cut->RepaintAll();
}

void MainFrame::EditFrameSize(CutWindow* cut) {
  FrameSizeDialog dialog(statusBar, cut->frameWidth, cut->frameHeight);
  if (!dialog.Run(frameWindow)) return;
  cut->frameWidth = dialog.width;
  cut->frameHeight = dialog.height;
  cut->MarkTiming();
}

// Frames.

void MainFrame::AddFrameBody(CutWindow* cut) {
  Frame* added = cut->AddFrame();
  Frame* before = cut->frames.At(cut->currentFrame - 1);
  if (before == nullptr) return;
  added->CopyFrom(before);
  // The new frame's time comes out of the stretch of the key frame.
  if (before->IsKey() && before->time >= 2) added->time = before->time / 2;
}

void MainFrame::AddOrInsertFrame(CutWindow* cut, bool insert) {
  CommitPanels(cut);
  if (!insert) {
    AddFrameBody(cut);
  } else {
    if (!cut->InsertFrame()) return;
    cut->CurrentFrame()->CopyFrom(cut->frames.At(cut->currentFrame + 1));
  }
  RefreshPanels(cut);
}

void MainFrame::StepFrame(CutWindow* cut, bool (Cut::*step)()) {
  CommitPanels(cut);
  (cut->*step)();
  cut->RepaintAll();
  RefreshPanels(cut);
}

void MainFrame::StepToKeyFrame(CutWindow* cut, bool (Cut::*step)()) {
  CommitPanels(cut);
  if (!(cut->*step)()) return;
  cut->RepaintAll();
  RefreshPanels(cut);
}

void MainFrame::AddFrames(CutWindow* cut) {
  CommitPanels(cut);
  FrameCountDialog dialog(statusBar, 1);
  if (!dialog.Run(frameWindow)) return;
  for (int32_t i = 0; i < dialog.count; ++i) AddFrameBody(cut);
  RefreshPanels(cut);
}

void MainFrame::DeleteFrames(CutWindow* cut) {
  CommitPanels(cut);
  FrameCountDialog dialog(statusBar, 1);
  if (!dialog.Run(frameWindow)) return;
  // The last frame stays, however many were asked for.
  for (int32_t i = 0; i < dialog.count && cut->DeleteFrame(); ++i) {
  }
  RefreshPanels(cut);
}

void MainFrame::SpreadBrightness(CutWindow* cut) {
  CommitPanels(cut);
  BrightnessRampDialog dialog(statusBar, cut->frames.Count());
  if (dialog.Run(frameWindow)) cut->BrightnessRamp(dialog.frame - 1);
}

void MainFrame::SpreadFramePosition(CutWindow* cut) {
  FrameRampDialog dialog(statusBar, cut->frames.Count());
  if (!dialog.Run(frameWindow)) return;
  CommitPanels(cut);
  cut->FramePositionRamp(dialog.frame - 1);
}

void MainFrame::MakeAllKeyFrames(CutWindow* cut) {
  cut->MakeAllKeyFrames();
  RefreshPanels(cut);
}

void MainFrame::ExportBitmap(CutWindow* cut) {
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kBitmapFiles)) return;
  CommandFile file(chosen.path, "wb");
  if (!file.IsOpen() || FrameProblem(*cut) != nullptr) return;
  cut->ExportFrameBitmap(&file.stream, &animationWindow.bitmap, &cut->view);
}

// Layers.

void MainFrame::AddOrInsertLayer(CutWindow* cut, bool insert) {
  const bool isSelected = cut->HasSelection();
  Rect area = {0, 0, cut->width, cut->height};
  if (isSelected) area = cut->SelectionInCut();
  LayerDialog dialog(statusBar, "", area.width, area.height, 0);
  if (!dialog.Run(frameWindow)) return;
  // A new layer never follows the frame, whatever the dialog says.
  Layer* layer = cut->AddLayer(dialog.name, dialog.width, dialog.height, &cut->prototype);
  if (layer == nullptr) return;
  cut->layers.SeekFirst();
  const int32_t index = cut->layers.Find(layer);
  // Over the selection, or in the middle of the canvas.
  const int32_t x = isSelected ? area.x : (cut->width - layer->width) / 2;
  const int32_t y = isSelected ? area.y : (cut->height - layer->height) / 2;
  const bool isAttached = insert ? cut->AttachLayerBefore(index, x, y) : cut->AttachLayer(index, x, y);
  if (isAttached) cut->RepaintAll();
  RefreshPanels(cut);
}

void MainFrame::DeleteLayer(CutWindow* cut) {
  Frame* frame = cut->CurrentFrame();
  Layer* layer = frame != nullptr ? frame->LayerAt(frame->currentRecord) : nullptr;
  cut->layers.SeekFirst();
  if (layer == nullptr || !cut->DeleteLayer(cut->layers.Find(layer))) return;
  cut->RepaintAll();
  FillLayerList(cut);
}

void MainFrame::MoveLayer(CutWindow* cut, bool up) {
  if (!(up ? cut->LayerUp() : cut->LayerDown())) return;
  cut->RepaintAll();
  Frame* frame = cut->CurrentFrame();
  const QuietList quiet(layerList);
  const int32_t line = platform::SelectedListLine(layerList);
  const int32_t target = up ? line + 1 : line - 1;
  ReplaceLayerLine(line, target, frame, frame->currentRecord);
  platform::SelectListLine(layerList, target);
}

void MainFrame::EditLayerProperties() {
  CutWindow* cut = ActiveCut();
  Frame* frame = cut != nullptr ? cut->CurrentFrame() : nullptr;
  Layer* layer = frame != nullptr ? frame->LayerAt(frame->currentRecord) : nullptr;
  if (layer == nullptr) return;
  LayerDialog dialog(statusBar, layer->ShownName(), layer->width, layer->height, layer->followFrame);
  if (!dialog.Run(frameWindow)) return;
  if (std::strcmp(dialog.name, layer->ShownName()) != 0) {
    layer->SetName(dialog.name);
    RewriteLayerLines(frame, layer);
  }
  if (dialog.width != layer->width || dialog.height != layer->height) {
    if (!layer->Resize(dialog.width, dialog.height, 0)) return;
    cut->EnsureUndoBuffer(layer);
    // The undo copy has the former size.
    cut->ForgetUndoOf(layer);
  }
  layer->followFrame = dialog.followFrame;
  cut->MarkImages();
  cut->RepaintAll();
}

void MainFrame::RewriteLayerLines(Frame* frame, const Layer* layer) {
  const QuietList quiet(layerList);
  for (int32_t i = 0; i < frame->records.Count(); ++i) {
    if (frame->LayerAt(i) == layer) ReplaceLayerLine(i, i, frame, i);
  }
  platform::SelectListLine(layerList, frame->currentRecord);
}

void MainFrame::SelectLayerLine() {
  CutWindow* cut = ActiveCut();
  Frame* frame = cut != nullptr ? cut->CurrentFrame() : nullptr;
  if (frame == nullptr || !frame->SelectRecord(platform::SelectedListLine(layerList))) return;
  cut->RepaintAll();
  if ((cut->viewFlags & kCurrentCellOnly) != 0) cut->stateFlags |= kImagesStale;
}

void MainFrame::SaveLayer(CutWindow* cut) {
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kLayerFiles)) return;
  CommandFile file(chosen.path, "wb");
  if (!file.IsOpen()) return;
  const WaitCursor wait;
  cut->SaveLayer(&file.stream);
}

void MainFrame::OverwriteLayer(CutWindow* cut) {
  ChosenPath chosen;
  if (!chosen.AskToOpen(frameWindow, kLayerFiles)) return;
  CommandFile file(chosen.path, "rb");
  if (file.IsOpen() && cut->LoadLayer(&file.stream)) cut->RepaintAll();
}

void MainFrame::SpreadLayerPosition(CutWindow* cut) {
  LayerRampDialog dialog(statusBar, cut->frames.Count());
  if (dialog.Run(frameWindow)) cut->LayerPositionRamp(dialog.frame - 1);
}

// Options of the tools.

void MainFrame::EditGrid() {
  GridDialog dialog(statusBar, gridWidth, gridHeight);
  if (!dialog.Run(frameWindow)) return;
  gridWidth = dialog.width;
  gridHeight = dialog.height;
}

void MainFrame::EditMask() {
  MaskDialog dialog(statusBar, maskFlags);
  if (dialog.Run(frameWindow)) maskFlags = dialog.mask;
}

void MainFrame::EditFont() {
  FontDialog dialog(statusBar, textToolFont.faceName, textToolFont.size, textToolFont.spacing, textToolFont.weight);
  if (dialog.Run(frameWindow)) SetTextToolFont(dialog.faceName, dialog.size, dialog.lineSpacing, dialog.weight);
}

// One command both chooses the colour and, while it is on, switches it off.
void MainFrame::ChooseTransparentColor() {
  if (clipTransparent) {
    clipTransparent = false;
    WriteSettingNumber(settings::kPasteTransparent, 0);
    return;
  }
  uint32_t custom[16] = {};
  uint32_t color = clipTransparentColor;
  if (!platform::AskColor(frameWindow, custom, &color)) return;
  clipTransparentColor = color;
  clipTransparent = true;
  char text[16];
  std::snprintf(text, sizeof(text), "#%02X%02X%02X", color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
  WriteSettingText(settings::kPasteTransparentColor, text);
  WriteSettingNumber(settings::kPasteTransparent, 1);
}

// Drawing on the current cell, in the selection or all over.

void MainFrame::DrawRandomDots(CutWindow* cut) {
  Rect area;
  if (!cut->ToolArea(&area)) return;
  RandomDotsDialog dialog(statusBar, kFirstDotGap);
  if (!dialog.Run(frameWindow)) return;
  DrawOnCell(cut, area, [&](CellImage* cell) {
    return dialog.gap > 0 &&
           cell->RandomDots(area.x, area.y, area.width, area.height, dialog.gap, currentPen, maskFlags);
  });
}

// The grid that points snap to stays as it is.
void MainFrame::DrawGridLines(CutWindow* cut) {
  Rect area;
  if (!cut->ToolArea(&area)) return;
  GridDialog dialog(statusBar, gridWidth, gridHeight);
  if (!dialog.Run(frameWindow)) return;
  DrawOnCell(cut, area, [&](CellImage* cell) {
    return cell->DrawGrid(area.x, area.y, area.width, area.height, dialog.width, dialog.height, currentPen, maskFlags);
  });
}

}  // namespace sorvel
