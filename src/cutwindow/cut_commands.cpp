#include <algorithm>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "cutwindow/wait_cursor.h"
#include "resources/ids.h"

namespace sorvel {

struct CutWindow::Command {
  int32_t id;
  void (*run)(CutWindow* window);
};

// The commands that the window of a cut runs. Those that the frame runs are in
// shell/command_table.cpp.
// clang-format off
const CutWindow::Command CutWindow::kCommands[] = {
    // Frames.
    {kCommandDeleteFrame, [](CutWindow* window) { window->StepFrame(&Cut::DeleteFrame); }},
    {kCommandFirstFrame, [](CutWindow* window) { window->GoToFrame(&Cut::FirstFrame); }},
    {kCommandLastFrame, [](CutWindow* window) { window->GoToFrame(&Cut::LastFrame); }},

    // Cells.
    {kCommandAddCell, [](CutWindow* window) { if (window->AddCurrentCell(kTransparent)) window->ShowSteppedCell(); }},
    {kCommandInsertCell, [](CutWindow* window) { if (window->InsertCurrentCell(kTransparent)) window->ShowSteppedCell(); }},
    {kCommandDeleteCell, [](CutWindow* window) { window->StepCell(&Cut::DeleteCurrentCell); }},
    {kCommandPreviousCell, [](CutWindow* window) { window->StepCell(&Cut::PreviousCellOfFrame); }},
    {kCommandNextCell, [](CutWindow* window) { window->StepCell(&Cut::NextCellOfFrame); }},
    {kCommandFirstCell, [](CutWindow* window) { window->StepCell(&Cut::FirstCellOfFrame); }},
    {kCommandLastCell, [](CutWindow* window) { window->StepCell(&Cut::LastCellOfFrame); }},
    {kCommandBlankCell, [](CutWindow* window) { window->SwitchBlank(false); }},
    {kCommandBlankAll, [](CutWindow* window) { window->SwitchBlank(true); }},

    // What the current cell shows.
    {kCommandUndo, [](CutWindow* window) { window->UndoCommand(); }},
    {kCommandCopy, [](CutWindow* window) { window->CopySelection(); }},
    {kCommandCut, [](CutWindow* window) { window->CutSelection(); }},
    {kCommandPaste, [](CutWindow* window) { window->PasteBuffer(); }},
    {kCommandCopyToClipboard, [](CutWindow* window) { window->CopyCellToClipboard(); }},
    {kCommandPasteFromClipboard, [](CutWindow* window) { window->PasteClipboardImage(); }},
    {kCommandToSketch, [](CutWindow* window) { window->ChangeDraft(kCommandToSketch); }},
    {kCommandEraseSketch, [](CutWindow* window) { window->ChangeDraft(kCommandEraseSketch); }},
    {kCommandEraseCell, [](CutWindow* window) { window->ChangeDraft(kCommandEraseCell); }},
    {kCommandEraseLayerSketch, [](CutWindow* window) { window->EraseSketchOfLayer(); }},
    {kCommandMergeDown, [](CutWindow* window) { window->CopyDown(); }},
    {kCommandFlipHorizontal, [](CutWindow* window) { window->FlipCellHorizontal(); }},
    {kCommandFlipVertical, [](CutWindow* window) { window->FlipCellVertical(); }},

    // Playing.
    {kCommandPlay, [](CutWindow* window) { window->PlayCommand(); }},
    {kCommandPreview, [](CutWindow* window) { window->PreviewFrame(); }},

    // The view.
    {kCommandShowPrevious, [](CutWindow* window) { window->SwitchView(kOnionPrevious); }},
    {kCommandShowNext, [](CutWindow* window) { window->SwitchView(kOnionNext); }},
    {kCommandDimOthers, [](CutWindow* window) { window->SwitchView(kDimOthers); }},
    {kCommandCurrentCellOnly, [](CutWindow* window) { window->stateFlags |= kImagesStale; window->SwitchView(kCurrentCellOnly); }},
    {kCommandLineEmphasis, [](CutWindow* window) { window->ToggleLineEmphasis(); }},
    {kCommandMuraRemoval, [](CutWindow*) { muraRemoval = muraRemoval == 0 ? 1 : 0; }},
};
// clang-format on

int32_t CutWindow::OnCommand(int32_t code, int32_t id, platform::WindowHandle control) {
  static_cast<void>(code);
  static_cast<void>(control);
  for (const Command& command : kCommands) {
    if (command.id != id) continue;
    command.run(this);
    return 0;
  }
  return 1;
}

void CutWindow::PlayCommand() {
  {
    const WaitCursor wait;
    PlayCut();
  }
  RepaintAll();
}

void CutWindow::GoToFrame(bool (Cut::*step)()) {
  host->CommitPanels(this);
  StepFrame(step);
}

void CutWindow::StepFrame(bool (Cut::*step)()) {
  if (!(this->*step)()) return;
  host->RefreshPanels(this);
  RepaintAll();
}

void CutWindow::StepCell(bool (Cut::*step)()) {
  if ((this->*step)()) ShowSteppedCell();
}

void CutWindow::ShowSteppedCell() {
  host->RefreshLayerLine(this);
  RepaintAll();
}

void CutWindow::SwitchBlank(bool allFrames) {
  Frame* frame = CurrentFrame();
  if (allFrames) {
    ToggleBlankAll();
  } else if (frame != nullptr && frame->LayerAt(frame->currentRecord) != nullptr) {
    frame->ToggleBlank();
  } else {
    return;
  }
  host->RefreshLayerLine(this);
  MarkImages();
  RepaintAll();
}

void CutWindow::EraseSketchOfLayer() {
  {
    const WaitCursor wait;
    EraseLayerDraft();
  }
  RepaintAll();
}

void CutWindow::CopyDown() {
  Frame* frame = CurrentFrame();
  if (frame == nullptr || !frame->MergeDown(maskFlags)) return;
  MarkImages();
  RepaintAll();
}

void CutWindow::SwitchView(uint32_t flag) {
  viewFlags ^= flag;
  RepaintAll();
}

void CutWindow::ShowChange(const Rect& area) {
  undoRect = area;
  Point corner = {area.x, area.y};
  LayerToCut(&corner, 1);
  Pulse();
  RepaintArea(corner.x, corner.y, area.width, area.height, true);
  Pulse();
}

// Of these three commands a selection counts only while the tool that makes it is the current one.
void CutWindow::ChangeDraft(int32_t id) {
  if (!SaveUndo()) return;
  CellImage* cell = CurrentCell();
  const bool isArea = host->currentTool == kToolAreaSelect && HasSelection();
  const Rect area = isArea ? SelectionInLayer() : Rect{0, 0, cell->width, cell->height};
  if (id == kCommandEraseCell) {
    cell->FillRect(area.x, area.y, area.width, area.height, kTransparent);
  } else {
    EraseDraftRect(area.x, area.y, area.width, area.height);
    if (id == kCommandToSketch) ConvertToDraftRect(area.x, area.y, area.width, area.height, maskFlags);
  }
  if (isArea) {
    ShowChange(area);
    return;
  }
  undoRect = Rect{};
  RepaintAll();
}

// One level: a second undo does the change again. It works on the cell that was changed, not on the current one.
void CutWindow::UndoCommand() {
  if (!Undo()) return;
  if (undoRect.width == 0 || undoRect.height == 0 || CurrentCell() != undoCell) {
    RepaintAll();
    return;
  }
  ShowChange(undoRect);
}

void CutWindow::CopySelection() {
  const CellImage* cell = CurrentCell();
  if (!HasSelection() || cell == nullptr) return;
  Rect area = SelectionInLayer();
  if (cell->ClipRect(&area.x, &area.y, &area.width, &area.height)) {
    StoreBlock(area.x, area.y, area.width, area.height, maskFlags);
  }
}

void CutWindow::CutSelection() {
  CellImage* cell = CurrentCell();
  if (!HasSelection() || cell == nullptr) return;
  Rect area = SelectionInLayer();
  if (!cell->ClipRect(&area.x, &area.y, &area.width, &area.height) ||
      !StoreBlock(area.x, area.y, area.width, area.height, maskFlags) || !SaveUndo()) {
    return;
  }
  // Plain ink of colour 0, so that the mask keeps what it protects.
  constexpr PenSpec transparentPen = {0, 0, kTransparent, kTransparent};
  cell->FillBox(area.x, area.y, area.width, area.height, transparentPen, maskFlags, nullptr);
  ShowChange(area);
  MarkImages();
}

void CutWindow::FlipCell(bool (CellImage::*flip)(int32_t, int32_t, int32_t, int32_t, uint32_t)) {
  Rect area;
  CellImage* cell = CurrentCell();
  if (!ToolArea(&area)) return;
  SaveUndo();
  undoRect = area;
  if ((cell->*flip)(area.x, area.y, area.width, area.height, maskFlags)) ShowChange(area);
}

void CutWindow::FlipCellHorizontal() {
  FlipCell(&CellImage::FlipHorizontal);
}

void CutWindow::FlipCellVertical() {
  FlipCell(&CellImage::FlipVertical);
}

}  // namespace sorvel
