// The commands on the drawing of the current cell, and on how the canvas shows it.

#include "cutwindow/drawing_settings.h"
#include "dialogs/dialogs.h"
#include "resources/ids.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr int32_t kFirstDotGap = 100;

// Calls draw(cell) to draw within an area of the current cell, with undo, and shows the area. `draw` returns false if
// it drew nothing.
template <typename Draw>
void DrawOnCell(CutWindow* cut, const Rect& area, const Draw& draw) {
  CellImage* cell = cut->CurrentCell();
  if (cell == nullptr || !cut->SaveUndo()) return;
  cut->undoRect = area;
  if (draw(cell)) cut->ShowChange(area);
}

}  // namespace

// There is one level: a second undo repeats the change. It changes the cell that was drawn on, which may not be
// current.
void UndoChange(CutWindow* cut) {
  if (!cut->Undo()) return;
  const Rect& area = cut->undoRect;
  if (area.width == 0 || area.height == 0 || cut->CurrentCell() != cut->undoCell) {
    cut->RepaintAll();
    return;
  }
  cut->ShowChange(area);
}

// The private clipboard.

void CopySelection(CutWindow* cut) {
  const CellImage* cell = cut->CurrentCell();
  if (!cut->HasSelection() || cell == nullptr) return;
  Rect area = cut->SelectionInLayer();
  if (cell->ClipRect(&area.x, &area.y, &area.width, &area.height)) {
    cut->StoreBlock(area.x, area.y, area.width, area.height, maskFlags);
  }
}

void CutSelection(CutWindow* cut) {
  CellImage* cell = cut->CurrentCell();
  if (!cut->HasSelection() || cell == nullptr) return;
  Rect area = cut->SelectionInLayer();
  if (!cell->ClipRect(&area.x, &area.y, &area.width, &area.height) ||
      !cut->StoreBlock(area.x, area.y, area.width, area.height, maskFlags) || !cut->SaveUndo()) {
    return;
  }
  // A box of colour 0, because FillBox() obeys the mask.
  constexpr PenSpec transparentPen = {0, 0, kTransparent, kTransparent};
  cell->FillBox(area.x, area.y, area.width, area.height, transparentPen, maskFlags, nullptr);
  cut->ShowChange(area);
  cut->MarkImages();
}

// Changes of the selection, or of the whole cell without one. The first three use a selection only while the tool that
// makes it is the current one.

namespace {

template <typename Change>
void ChangeSelection(CutWindow* cut, const Change& change) {
  if (!cut->SaveUndo()) return;
  CellImage* cell = cut->CurrentCell();
  const bool isArea = cut->host->currentTool == kToolAreaSelect && cut->HasSelection();
  const Rect area = isArea ? cut->SelectionInLayer() : Rect{0, 0, cell->width, cell->height};
  change(cell, area);
  if (isArea) {
    cut->ShowChange(area);
    return;
  }
  cut->undoRect = Rect{};
  cut->RepaintAll();
}

}  // namespace

void EraseCell(CutWindow* cut) {
  ChangeSelection(cut, [](CellImage* cell, const Rect& area) {
    cell->FillRect(area.x, area.y, area.width, area.height, kTransparent);
  });
}

void EraseSketch(CutWindow* cut) {
  ChangeSelection(
      cut, [cut](CellImage*, const Rect& area) { cut->EraseDraftRect(area.x, area.y, area.width, area.height); });
}

void TurnIntoSketch(CutWindow* cut) {
  ChangeSelection(cut, [cut](CellImage*, const Rect& area) {
    cut->EraseDraftRect(area.x, area.y, area.width, area.height);
    cut->ConvertToDraftRect(area.x, area.y, area.width, area.height, maskFlags);
  });
}

namespace {

void FlipCell(CutWindow* cut, bool (CellImage::*flip)(int32_t, int32_t, int32_t, int32_t, uint32_t)) {
  Rect area;
  CellImage* cell = cut->CurrentCell();
  if (!cut->ToolArea(&area)) return;
  cut->SaveUndo();
  cut->undoRect = area;
  if ((cell->*flip)(area.x, area.y, area.width, area.height, maskFlags)) cut->ShowChange(area);
}

}  // namespace

void CutWindow::FlipCellHorizontal() {
  FlipCell(this, &CellImage::FlipHorizontal);
}

void CutWindow::FlipCellVertical() {
  FlipCell(this, &CellImage::FlipVertical);
}

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

// The dialog doesn't change the grid that points snap to.
void MainFrame::DrawGridLines(CutWindow* cut) {
  Rect area;
  if (!cut->ToolArea(&area)) return;
  GridDialog dialog(statusBar, gridWidth, gridHeight);
  if (!dialog.Run(frameWindow)) return;
  DrawOnCell(cut, area, [&](CellImage* cell) {
    return cell->DrawGrid(area.x, area.y, area.width, area.height, dialog.width, dialog.height, currentPen, maskFlags);
  });
}

// The view.

void SwitchView(CutWindow* cut, uint32_t flag) {
  cut->viewFlags ^= flag;
  cut->RepaintAll();
}

// The compiled stream has the same cells as the view, so it is out of date.
void SwitchCurrentCellOnly(CutWindow* cut) {
  cut->stateFlags |= kImagesStale;
  SwitchView(cut, kCurrentCellOnly);
}

}  // namespace sorvel
