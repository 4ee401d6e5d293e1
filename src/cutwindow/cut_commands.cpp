#include <algorithm>

#include "cutwindow/cut_window.h"
#include "cutwindow/wait_cursor.h"
#include "resources/ids.h"
#include "tools/tool_handlers.h"
#include "tools/tool_state.h"

namespace sorvel {

int32_t CutWindow::OnCommand(int32_t code, int32_t id, platform::WindowHandle control) {
  static_cast<void>(code);
  static_cast<void>(control);
  switch (id) {
    case kCommandDeleteFrame:
      StepFrame(&Cut::DeleteFrame);
      break;
    case kCommandFirstFrame:
      host->CommitPanels(this);
      StepFrame(&Cut::FirstFrame);
      break;
    case kCommandLastFrame:
      host->CommitPanels(this);
      StepFrame(&Cut::LastFrame);
      break;
    case kCommandDeleteCell:
      StepCell(&Cut::DeleteCurrentCell);
      break;
    case kCommandInsertCell:
      if (InsertCurrentCell(kTransparent)) ShowSteppedCell();
      break;
    case kCommandAddCell:
      if (AddCurrentCell(kTransparent)) ShowSteppedCell();
      break;
    case kCommandPreviousCell:
      StepCell(&Cut::PreviousCellOfFrame);
      break;
    case kCommandNextCell:
      StepCell(&Cut::NextCellOfFrame);
      break;
    case kCommandFirstCell:
      StepCell(&Cut::FirstCellOfFrame);
      break;
    case kCommandLastCell:
      StepCell(&Cut::LastCellOfFrame);
      break;
    case kCommandBlankCell:
      SwitchBlank(false);
      break;
    case kCommandBlankAll:
      SwitchBlank(true);
      break;
    case kCommandToSketch:
    case kCommandEraseSketch:
    case kCommandEraseCell:
      ChangeDraft(id);
      break;
    case kCommandEraseLayerSketch:
      EraseSketchOfLayer();
      break;
    case kCommandMergeDown:
      CopyDown();
      break;
    case kCommandUndo:
      UndoCommand();
      break;
    case kCommandCopy:
      CopySelection();
      break;
    case kCommandCut:
      CutSelection();
      break;
    case kCommandPaste:
      PasteBuffer();
      break;
    case kCommandCopyToClipboard:
      CopyCellToClipboard();
      break;
    case kCommandPasteFromClipboard:
      PasteClipboardImage();
      break;
    case kCommandFlipHorizontal:
      FlipCellHorizontal();
      break;
    case kCommandFlipVertical:
      FlipCellVertical();
      break;
    case kCommandPlay: {
      const WaitCursor wait;
      host->CommitPanels(this);
      PlayCut();
    }
      RepaintAll();
      break;
    case kCommandPreview:
      PreviewFrame();
      break;
    case kCommandShowPrevious:
      SwitchView(kOnionPrevious);
      break;
    case kCommandShowNext:
      SwitchView(kOnionNext);
      break;
    case kCommandDimOthers:
      SwitchView(kDimOthers);
      break;
    case kCommandCurrentCellOnly:
      stateFlags |= kImagesStale;
      SwitchView(kCurrentCellOnly);
      break;
    case kCommandMuraRemoval:
      muraRemoval = muraRemoval == 0 ? 1 : 0;
      break;
    case kCommandLineEmphasis:
      ToggleLineEmphasis();
      break;
    default:
      return 1;
  }
  return 0;
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
  int32_t x = 0;
  int32_t y = 0;
  if (!SaveUndo()) return;
  CellImage* cell = CurrentCell(&x, &y);
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
  int32_t x = 0;
  int32_t y = 0;
  if (undoRect.width == 0 || undoRect.height == 0 || CurrentCell(&x, &y) != undoCell) {
    RepaintAll();
    return;
  }
  ShowChange(undoRect);
}

void CutWindow::CopySelection() {
  int32_t x = 0;
  int32_t y = 0;
  const CellImage* cell = CurrentCell(&x, &y);
  if (!HasSelection() || cell == nullptr) return;
  Rect area = SelectionInLayer();
  if (cell->ClipRect(&area.x, &area.y, &area.width, &area.height)) {
    StoreBlock(area.x, area.y, area.width, area.height, maskFlags);
  }
}

void CutWindow::CutSelection() {
  int32_t x = 0;
  int32_t y = 0;
  CellImage* cell = CurrentCell(&x, &y);
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
  int32_t x = 0;
  int32_t y = 0;
  Rect area;
  CellImage* cell = CurrentCell(&x, &y);
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
