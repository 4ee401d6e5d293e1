// The commands on the frames of a cut.

#include "animation/stream_encoder.h"
#include "dialogs/dialogs.h"
#include "shell/command_support.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

namespace sorvel {

// Steps between frames. The commands differ in whether they show the new frame in the panels or in the picture first.

namespace {

void ShowFrame(CutWindow* cut, ShowOrder order) {
  if (order == ShowOrder::kPictureFirst) cut->RepaintAll();
  cut->host->RefreshPanels(cut);
  if (order == ShowOrder::kPanelsFirst) cut->RepaintAll();
}

}  // namespace

void StepToNeighbor(CutWindow* cut, bool (Cut::*step)()) {
  cut->host->CommitPanels(cut);
  (cut->*step)();
  ShowFrame(cut, ShowOrder::kPictureFirst);
}

void JumpToFrame(CutWindow* cut, bool (Cut::*jump)(), ShowOrder order) {
  cut->host->CommitPanels(cut);
  if ((cut->*jump)()) ShowFrame(cut, order);
}

// Commits nothing: what is being typed belongs to the deleted frame.
void DeleteCurrentFrame(CutWindow* cut) {
  if (cut->DeleteFrame()) ShowFrame(cut, ShowOrder::kPanelsFirst);
}

// Adding and deleting.

void MainFrame::AddFrameBody(CutWindow* cut) {
  Frame* added = cut->AddFrame();
  Frame* before = cut->frames.At(cut->currentFrame - 1);
  if (before == nullptr) return;
  added->CopyFrom(before);
  // The new frame takes its time from that of the key frame.
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
  // The last remaining frame can't be deleted.
  for (int32_t i = 0; i < dialog.count && cut->DeleteFrame(); ++i) {
  }
  RefreshPanels(cut);
}

// All frames, or a range of them.

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

void MainFrame::EditFrameSize(CutWindow* cut) {
  FrameSizeDialog dialog(statusBar, cut->frameWidth, cut->frameHeight);
  if (!dialog.Run(frameWindow)) return;
  cut->frameWidth = dialog.width;
  cut->frameHeight = dialog.height;
  cut->MarkTiming();
}

void MainFrame::ExportBitmap(CutWindow* cut) {
  ChosenPath chosen;
  if (!chosen.AskToSave(frameWindow, kBitmapFiles)) return;
  if (FrameProblem(*cut) != nullptr) return;
  ReplacementFile file;
  const bool isWritten = file.Open(chosen.path) &&
                         cut->ExportFrameBitmap(&file.stream, &animationWindow.bitmap, &cut->view) && file.Commit();
  if (!isWritten) ReportNotSaved(chosen.path, file.WhyNot());
}

}  // namespace sorvel
