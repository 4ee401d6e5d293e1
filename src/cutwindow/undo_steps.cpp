#include <algorithm>
#include <utility>

#include "cutwindow/cut_window.h"
#include "cutwindow/edit_scope.h"

namespace sorvel {

EditScope::EditScope(CutWindowHost* editHost, CutWindow* cut, UndoHistory::Origin editOrigin)
    : host(editHost), origin(editOrigin) {
  // What a gesture that goes on has drawn so far isn't the command's.
  const bool interrupts = host->editDepth == 0 && origin == UndoHistory::Origin::kCommand && host->isButtonHeld;
  if (interrupts && cut != nullptr) cut->RecordStep(UndoHistory::Origin::kGesture);
  ++host->editDepth;
  std::vector<CutWindow*>& cuts = host->editedCuts;
  if (cut != nullptr && std::find(cuts.begin(), cuts.end(), cut) == cuts.end()) cuts.push_back(cut);
}

EditScope::~EditScope() {
  if (--host->editDepth > 0) return;
  const std::vector<CutWindow*> cuts = std::exchange(host->editedCuts, {});
  if (origin == UndoHistory::Origin::kGesture && host->isButtonHeld) return;
  for (CutWindow* cut : cuts) {
    cut->RecordStep(origin);
    cut->undoHistory.Settle();
  }
}

void CutWindow::RecordStep(UndoHistory::Origin origin) {
  undoHistory.Record(origin);
}

void CutWindow::EndGesture() {
  RecordStep(UndoHistory::Origin::kGesture);
  if (platform::CapturingWindow() == window) platform::ReleaseMouse();
  Pulse();
  host->toolbox->EndGesture(this);
  viewOptions &= ~static_cast<uint32_t>(kFloatingPaste);
  waitsForRelease = host->isButtonHeld;
}

void CutWindow::TakeStep(bool (UndoHistory::*step)()) {
  EndGesture();
  host->CommitTyping(this);
  if (!(undoHistory.*step)()) {
    Pulse();
    return;
  }
  // What is compiled has the cells of the view.
  if ((viewFlags & kCurrentCellOnly) != 0) stateFlags |= kImagesStale;
  if (view.width != width || view.height != height) {
    FitView();
    platform::InvalidateClient(window, true);
  }
  RepaintAll();
  host->RefreshPanels(this);
  // A tool that shows a box between two pulses shows it again.
  Pulse();
}

}  // namespace sorvel
