#include "cutwindow/clipboard.h"
#include "cutwindow/drawing_settings.h"
#include "resources/ids.h"
#include "shell/main_frame.h"

// The commands that the frame runs. A new command is a line here and a function. Those of a cut's window have a table
// of the same form in cutwindow/cut_commands.cpp.
namespace sorvel {

namespace {

enum class Needs { kNothing, kCut };

bool IsRecordBlank(CutWindow* cut) {
  Layer* layer = nullptr;
  int32_t x = 0;
  int32_t y = 0;
  int32_t cell = 0;
  Frame* frame = cut->CurrentFrame();
  return frame != nullptr && frame->GetRecord(frame->currentRecord, &layer, &x, &y, &cell) && IsBlankCell(cell);
}

// Check marks that follow the active cut; without one they stay as they are.
struct CutMark {
  int32_t id;
  bool (*isOn)(CutWindow* cut);
};

constexpr CutMark kCutMarks[] = {
    {kCommandShowPrevious, [](CutWindow* cut) { return (cut->viewFlags & kOnionPrevious) != 0; }},
    {kCommandShowNext, [](CutWindow* cut) { return (cut->viewFlags & kOnionNext) != 0; }},
    {kCommandCurrentCellOnly, [](CutWindow* cut) { return (cut->viewFlags & kCurrentCellOnly) != 0; }},
    {kCommandBlankCell, IsRecordBlank},
    {kCommandDimOthers, [](CutWindow* cut) { return (cut->viewFlags & kDimOthers) != 0; }},
    {kCommandMuraRemoval, [](CutWindow*) { return muraRemoval != 0; }},
    {kCommandLineEmphasis, [](CutWindow* cut) { return (cut->viewOptions & kLineEmphasis) != 0; }},
};

}  // namespace

struct MainFrame::Command {
  int32_t id;
  Needs needs;  // what isn't there makes the command do nothing
  // `cut` is the active one; null when there is none.
  void (*run)(MainFrame* frame, CutWindow* cut);
  bool (*isChecked)(const MainFrame& frame) = nullptr;  // null for a command without a check mark
};

// clang-format off
const MainFrame::Command MainFrame::kCommands[] = {
    // The program.
    {kCommandExit, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->CloseAllCuts(); platform::DestroyWindow(frame->frameWindow); }},
    {kCommandStatusBar, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ToggleBar(kStatusBarVisible, frame->statusBar); },
     [](const MainFrame& frame) { return (frame.shellFlags & kStatusBarVisible) != 0; }},
    {kCommandToolBar, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ToggleBar(kToolBarVisible, frame->toolBar); },
     [](const MainFrame& frame) { return (frame.shellFlags & kToolBarVisible) != 0; }},
    {kCommandFocusForward, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->MoveFocus(true); }},
    {kCommandFocusBackward, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->MoveFocus(false); }},
    {kCommandCloseAll, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->CloseAllWithoutFilm(); }},
    {kCommandExplainTool, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ExplainTool(); }},
    {kCommandAbout, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ShowAbout(); }},
    {kCommandStop, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->StopAnimation(); }},

    // Options of the tools, which belong to no cut.
    {kCommandSnapGrid, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->EditGrid(); }},
    {kCommandMask, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->EditMask(); }},
    {kCommandFont, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->EditFont(); }},
    {kCommandSquarePen, Needs::kNothing, [](MainFrame*, CutWindow*) { TogglePenShape(); }, [](const MainFrame&) { return penSign < 0; }},
    {kCommandTransparentColor, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ChooseTransparentColor(); },
     [](const MainFrame&) { return clipTransparent; }},

    // Frames.
    {kCommandAddFrame, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->AddOrInsertFrame(cut, false); }},
    {kCommandInsertFrame, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->AddOrInsertFrame(cut, true); }},
    {kCommandPreviousFrame, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->StepFrame(cut, &Cut::PreviousFrame); }},
    {kCommandNextFrame, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->StepFrame(cut, &Cut::NextFrame); }},
    {kCommandNextKeyFrame, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->StepToKeyFrame(cut, &Cut::NextKeyFrame); }},
    {kCommandPreviousKeyFrame, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->StepToKeyFrame(cut, &Cut::PreviousKeyFrame); }},
    {kCommandAddFrames, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->AddFrames(cut); }},
    {kCommandDeleteFrames, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->DeleteFrames(cut); }},
    {kCommandBrightnessRamp, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->SpreadBrightness(cut); }},
    {kCommandFrameRamp, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->SpreadFramePosition(cut); }},
    {kCommandAllKeyFrames, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->MakeAllKeyFrames(cut); }},
    {kCommandFrameSize, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->EditFrameSize(cut); }},
    {kCommandExportBitmap, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->ExportBitmap(cut); }},

    // Layers, and drawing on the current cell.
    {kCommandAddLayer, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->AddOrInsertLayer(cut, false); }},
    {kCommandInsertLayer, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->AddOrInsertLayer(cut, true); }},
    {kCommandDeleteLayer, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->DeleteLayer(cut); }},
    {kCommandLayerUp, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->MoveLayer(cut, true); }},
    {kCommandLayerDown, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->MoveLayer(cut, false); }},
    {kCommandLayerProperties, Needs::kCut, [](MainFrame* frame, CutWindow*) { frame->EditLayerProperties(); }},
    {kCommandOpenLayer, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->OpenLayer(); }},
    {kCommandSaveLayer, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->SaveLayer(cut); }},
    {kCommandOverwriteLayer, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->OverwriteLayer(cut); }},
    {kCommandLayerRamp, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->SpreadLayerPosition(cut); }},
    {kCommandRandomDots, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->DrawRandomDots(cut); }},
    {kCommandDrawGrid, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->DrawGridLines(cut); }},

    // Cuts.
    {kCommandNewCut, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->NewCut(); }},
    {kCommandOpenCut, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->OpenCut(); }},
    {kCommandSaveCutAs, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->SaveCutAs(cut); }},
    {kCommandOverwriteCut, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->OverwriteCut(cut); }},
    {kCommandCutProperties, Needs::kCut, [](MainFrame* frame, CutWindow* cut) { frame->EditCutProperties(cut); }},

    // The film.
    {kCommandNewFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->NewFilm(); }},
    {kCommandOpenFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->OpenFilm(); }},
    {kCommandSaveFilmAs, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->SaveFilmAs(); }},
    {kCommandOverwriteFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->OverwriteFilm(); }},
    {kCommandFilmProperties, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->EditFilmProperties(); }},
    {kCommandAddCutToFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->AddOrInsertActiveCut(false); }},
    {kCommandInsertCutIntoFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->AddOrInsertActiveCut(true); }},
    {kCommandRemoveCutFromFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->RemoveActiveCut(); }},
    {kCommandAddNumberedCut, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->NewNumberedCut(false); }},
    {kCommandInsertNumberedCut, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->NewNumberedCut(true); }},
    {kCommandDeleteCuts, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->DeleteCuts(); }},
    {kCommandRenameCut, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->RenameListedCut(); }},
    {kCommandExtractCuts, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ExtractCuts(); }},
    {kCommandExportFilm, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->ExportFilm(); }},
    {kCommandPlaySelection, Needs::kNothing, [](MainFrame* frame, CutWindow*) { frame->PlaySelectedCuts(); }},
};
// clang-format on

int32_t MainFrame::OnCommand(int32_t code, int32_t id, platform::WindowHandle control) {
  CutWindow* cut = ActiveCut();
  if (id >= kFrameTimeEdit && id <= kKeyFrameCheck) return OnPanelNotification(code, id);
  if (toolbox->Has(id)) {
    SelectTool(id);
    return 0;
  }
  for (const Command& command : kCommands) {
    if (command.id != id) continue;
    if (cut != nullptr || command.needs == Needs::kNothing) command.run(this, cut);
    return 0;
  }
  return cut != nullptr ? cut->OnCommand(code, id, control) : 1;
}

// Check marks are never kept in a menu: they are written each time that it opens.

void MainFrame::WriteCheckMarks(platform::MenuHandle menu) {
  if (CutWindow* cut = ActiveCut()) {
    for (const CutMark& mark : kCutMarks) platform::CheckMenuEntry(menu, mark.id, mark.isOn(cut));
  }
  for (const Command& command : kCommands) {
    if (command.isChecked != nullptr) platform::CheckMenuEntry(menu, command.id, command.isChecked(*this));
  }
}

void MainFrame::OnInitMenu() {
  WriteCheckMarks(platform::FrameMenu(frameWindow));
}

void MainFrame::OnInitMenuPopup(platform::MenuHandle popup) {
  if (popup == platform::Submenu(toolPopupMenu, 0)) WriteCheckMarks(toolPopupMenu);
}

}  // namespace sorvel
