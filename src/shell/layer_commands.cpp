// The commands on layers, their files and their line in the panel.

#include <cstring>

#include "cutwindow/drawing_settings.h"
#include "dialogs/dialogs.h"
#include "shell/command_support.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

namespace sorvel {

void MainFrame::AddOrInsertLayer(CutWindow* cut, bool insert) {
  const bool isSelected = cut->HasSelection();
  Rect area = {0, 0, cut->width, cut->height};
  if (isSelected) area = cut->SelectionInCut();
  LayerDialog dialog(statusBar, "", area.width, area.height, 0);
  if (!dialog.Run(frameWindow)) return;
  // The check box of the dialog has no effect: a new layer never follows the frame.
  Layer* layer = cut->AddLayer(dialog.name, dialog.width, dialog.height, &cut->prototype);
  if (layer == nullptr) return;
  cut->layers.SeekFirst();
  const int32_t index = cut->layers.Find(layer);
  // The layer covers the selection, or lies in the middle of the canvas.
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
    // The undo copy has the old size.
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

void MainFrame::SpreadLayerPosition(CutWindow* cut) {
  LayerRampDialog dialog(statusBar, cut->frames.Count());
  if (dialog.Run(frameWindow)) cut->LayerPositionRamp(dialog.frame - 1);
}

void EraseSketchOfLayer(CutWindow* cut) {
  {
    const WaitCursor wait;
    cut->EraseLayerDraft();
  }
  cut->RepaintAll();
}

void MergeLayerDown(CutWindow* cut) {
  Frame* frame = cut->CurrentFrame();
  if (frame == nullptr || !frame->MergeDown(maskFlags)) return;
  cut->MarkImages();
  cut->RepaintAll();
}

// Files.

void MainFrame::OpenLayer() {
  ChosenPath chosen;
  if (!chosen.AskToOpen(frameWindow, kLayerFiles)) return;
  OpenLayerFile(chosen.path);
  ReportOpening(chosen.path);
}

CutWindow* MainFrame::OpenLayerFile(const char* path) {
  CommandFile file(path, "rb");
  openingNews = NewsOf(path, file.stream.file, false);
  if (!file.IsOpen()) return nullptr;
  CutWindow* cut = new CutWindow(this, 0, 0, kUnreadFps, "", 0);
  Frame* frame = cut->AddFrame();
  const bool isRead = cut->LoadLayer(&file.stream);
  openingNews = NewsOf(path, file.stream.file, isRead);
  if (!isRead) {
    delete cut;
    return nullptr;
  }
  const Layer* layer = frame->LayerAt(frame->currentRecord);
  cut->width = cut->frameWidth = layer->width;
  cut->height = cut->frameHeight = layer->height;
  if (!cut->FitView()) {
    delete cut;
    return nullptr;
  }
  cut->MarkTiming();
  cut->RepaintAll();
  cut = ShowCut(cut);
  // It counts as saved and compiled: closing a layer that was only viewed asks no question.
  if (cut != nullptr) cut->stateFlags &= ~static_cast<uint32_t>(kModified | kImagesStale | kTimingStale);
  return cut;
}

void MainFrame::SaveLayer(CutWindow* cut) {
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kLayerFiles)) return;
  ReplacementFile file;
  KnownFile known;
  bool isWritten = false;
  {
    const WaitCursor wait;
    isWritten = file.Open(chosen.path) && cut->SaveLayer(&file.stream) && known.Commit(&file);
  }
  if (!isWritten) ReportNotSaved(chosen.path, file.WhyNot());
}

void MainFrame::OverwriteLayer(CutWindow* cut) {
  ChosenPath chosen;
  if (!chosen.AskToOpen(frameWindow, kLayerFiles)) return;
  CommandFile file(chosen.path, "rb");
  const bool isRead = file.IsOpen() && cut->LoadLayer(&file.stream);
  openingNews = NewsOf(chosen.path, file.stream.file, isRead);
  if (isRead) cut->RepaintAll();
  ReportOpening(chosen.path);
}

}  // namespace sorvel
