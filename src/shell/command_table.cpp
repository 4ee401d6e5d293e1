#include <functional>
#include <type_traits>

#include "cutwindow/clipboard.h"
#include "cutwindow/drawing_settings.h"
#include "resources/ids.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

// All commands but those that select a tool. A new command is a line here and a function in the file of its family.
namespace sorvel {

namespace {

enum class Runner {
  kFrame,     // the frame, with or without a cut
  kFrameCut,  // the frame; does nothing without an active cut
  kWindow,    // the window of the active cut; without one nobody handles the command
};

// Calls an operation of the frame or of the cut, or a function, with the frame, the cut or both ahead of `arguments`,
// whichever it takes. `frame` is null for a command that the window runs.
template <auto body, auto... arguments>
void Do([[maybe_unused]] MainFrame* frame, [[maybe_unused]] CutWindow* cut) {
  using Body = decltype(body);
  if constexpr (std::is_invocable_v<Body, MainFrame*, CutWindow*, decltype(arguments)...>) {
    std::invoke(body, frame, cut, arguments...);
  } else if constexpr (std::is_invocable_v<Body, MainFrame*, decltype(arguments)...>) {
    std::invoke(body, frame, arguments...);
  } else if constexpr (std::is_invocable_v<Body, CutWindow*, decltype(arguments)...>) {
    std::invoke(body, cut, arguments...);
  } else {
    std::invoke(body, arguments...);
  }
}

template <uint32_t flag>
bool IsShown(const MainFrame& frame, CutWindow*) {
  return (frame.shellFlags & flag) != 0;
}

template <uint32_t flag>
bool HasViewFlag(const MainFrame&, CutWindow* cut) {
  return (cut->viewFlags & flag) != 0;
}

}  // namespace

struct MainFrame::Command {
  int32_t id;
  Runner runner;
  void (*run)(MainFrame* frame, CutWindow* cut);
  // Null for a command without a check mark. `cut` is null only for the marks of commands that the frame runs.
  bool (*isChecked)(const MainFrame& frame, CutWindow* cut) = nullptr;
};

const MainFrame::Command MainFrame::kCommands[] = {
    // The shell.
    {kCommandExit, Runner::kFrame, Do<&MainFrame::Exit>},
    {kCommandStatusBar, Runner::kFrame, Do<&MainFrame::ToggleBar, kStatusBarVisible>, IsShown<kStatusBarVisible>},
    {kCommandToolBar, Runner::kFrame, Do<&MainFrame::ToggleBar, kToolBarVisible>, IsShown<kToolBarVisible>},
    {kCommandFocusForward, Runner::kFrame, Do<&MainFrame::MoveFocus, true>},
    {kCommandFocusBackward, Runner::kFrame, Do<&MainFrame::MoveFocus, false>},
    {kCommandCloseAll, Runner::kFrame, Do<&MainFrame::CloseAllWithoutFilm>},
    {kCommandAbout, Runner::kFrame, Do<&MainFrame::ShowAbout>},
    {kCommandStop, Runner::kFrame, Do<&MainFrame::StopAnimation>},
    {kCommandSheet, Runner::kFrame, [](MainFrame* frame, CutWindow*) { frame->sheetWindow.Toggle(); },
     [](const MainFrame& frame, CutWindow*) { return frame.sheetWindow.IsOpen(); }},
    {kCommandSheetPictures, Runner::kFrame, [](MainFrame* frame, CutWindow*) { frame->sheetWindow.TogglePictures(); }},

    // Tools and what they draw with.
    {kCommandExplainTool, Runner::kFrame, Do<&MainFrame::ExplainTool>},
    {kCommandSnapGrid, Runner::kFrame, Do<&MainFrame::EditGrid>},
    {kCommandMask, Runner::kFrame, Do<&MainFrame::EditMask>},
    {kCommandFont, Runner::kFrame, Do<&MainFrame::EditFont>},
    {kCommandSquarePen, Runner::kFrame, Do<&TogglePenShape>, [](const MainFrame&, CutWindow*) { return penSign < 0; }},
    {kCommandTransparentColor, Runner::kFrame, Do<&MainFrame::ChooseTransparentColor>,
     [](const MainFrame&, CutWindow*) { return clipTransparent; }},
    {kCommandMuraRemoval, Runner::kWindow, Do<&SwitchMuraRemoval>,
     [](const MainFrame&, CutWindow*) { return muraRemoval != 0; }},

    // The film.
    {kCommandNewFilm, Runner::kFrame, Do<&MainFrame::NewFilm>},
    {kCommandOpenFilm, Runner::kFrame, Do<&MainFrame::OpenFilm>},
    {kCommandSaveFilmAs, Runner::kFrame, Do<&MainFrame::SaveFilmAs>},
    {kCommandOverwriteFilm, Runner::kFrame, Do<&MainFrame::OverwriteFilm>},
    {kCommandFilmProperties, Runner::kFrame, Do<&MainFrame::EditFilmProperties>},
    {kCommandAddCutToFilm, Runner::kFrame, Do<&MainFrame::AddOrInsertActiveCut, false>},
    {kCommandInsertCutIntoFilm, Runner::kFrame, Do<&MainFrame::AddOrInsertActiveCut, true>},
    {kCommandRemoveCutFromFilm, Runner::kFrame, Do<&MainFrame::RemoveActiveCut>},
    {kCommandAddNumberedCut, Runner::kFrame, Do<&MainFrame::NewNumberedCut, false>},
    {kCommandInsertNumberedCut, Runner::kFrame, Do<&MainFrame::NewNumberedCut, true>},
    {kCommandDeleteCuts, Runner::kFrame, Do<&MainFrame::DeleteCuts>},
    {kCommandRenameCut, Runner::kFrame, Do<&MainFrame::RenameListedCut>},
    {kCommandExtractCuts, Runner::kFrame, Do<&MainFrame::ExtractCuts>},
    {kCommandExportFilm, Runner::kFrame, Do<&MainFrame::ExportFilm>},
    {kCommandExportAs, Runner::kFrame, Do<&MainFrame::ExportAs>},
    {kCommandPlaySelection, Runner::kFrame, Do<&MainFrame::PlaySelectedCuts>},

    // Cuts.
    {kCommandNewCut, Runner::kFrame, Do<&MainFrame::NewCut>},
    {kCommandOpenCut, Runner::kFrame, Do<&MainFrame::OpenCut>},
    {kCommandSaveCutAs, Runner::kFrameCut, Do<&MainFrame::SaveCutAs>},
    {kCommandOverwriteCut, Runner::kFrameCut, Do<&MainFrame::OverwriteCut>},
    {kCommandCutProperties, Runner::kFrameCut, Do<&MainFrame::EditCutProperties>},
    {kCommandOpenVersion, Runner::kFrameCut, Do<&MainFrame::OpenVersion>},
    {kCommandPlay, Runner::kWindow, Do<&PlayAndRepaint>},
    {kCommandPreview, Runner::kWindow, Do<&CutWindow::PreviewFrame>},

    // Frames.
    {kCommandAddFrame, Runner::kFrameCut, Do<&MainFrame::AddOrInsertFrame, false>},
    {kCommandInsertFrame, Runner::kFrameCut, Do<&MainFrame::AddOrInsertFrame, true>},
    {kCommandDeleteFrame, Runner::kWindow, Do<&DeleteCurrentFrame>},
    {kCommandPreviousFrame, Runner::kFrameCut, Do<&StepToNeighbor, &Cut::PreviousFrame>},
    {kCommandNextFrame, Runner::kFrameCut, Do<&StepToNeighbor, &Cut::NextFrame>},
    {kCommandFirstFrame, Runner::kWindow, Do<&JumpToFrame, &Cut::FirstFrame, ShowOrder::kPanelsFirst>},
    {kCommandLastFrame, Runner::kWindow, Do<&JumpToFrame, &Cut::LastFrame, ShowOrder::kPanelsFirst>},
    {kCommandNextKeyFrame, Runner::kFrameCut, Do<&JumpToFrame, &Cut::NextKeyFrame, ShowOrder::kPictureFirst>},
    {kCommandPreviousKeyFrame, Runner::kFrameCut, Do<&JumpToFrame, &Cut::PreviousKeyFrame, ShowOrder::kPictureFirst>},
    {kCommandAddFrames, Runner::kFrameCut, Do<&MainFrame::AddFrames>},
    {kCommandDeleteFrames, Runner::kFrameCut, Do<&MainFrame::DeleteFrames>},
    {kCommandBrightnessRamp, Runner::kFrameCut, Do<&MainFrame::SpreadBrightness>},
    {kCommandFrameRamp, Runner::kFrameCut, Do<&MainFrame::SpreadFramePosition>},
    {kCommandAllKeyFrames, Runner::kFrameCut, Do<&MainFrame::MakeAllKeyFrames>},
    {kCommandFrameSize, Runner::kFrameCut, Do<&MainFrame::EditFrameSize>},
    {kCommandExportBitmap, Runner::kFrameCut, Do<&MainFrame::ExportBitmap>},

    // Layers.
    {kCommandAddLayer, Runner::kFrameCut, Do<&MainFrame::AddOrInsertLayer, false>},
    {kCommandInsertLayer, Runner::kFrameCut, Do<&MainFrame::AddOrInsertLayer, true>},
    {kCommandDeleteLayer, Runner::kFrameCut, Do<&MainFrame::DeleteLayer>},
    {kCommandLayerUp, Runner::kFrameCut, Do<&MainFrame::MoveLayer, true>},
    {kCommandLayerDown, Runner::kFrameCut, Do<&MainFrame::MoveLayer, false>},
    {kCommandLayerProperties, Runner::kFrameCut, Do<&MainFrame::EditLayerProperties>},
    {kCommandOpenLayer, Runner::kFrame, Do<&MainFrame::OpenLayer>},
    {kCommandSaveLayer, Runner::kFrameCut, Do<&MainFrame::SaveLayer>},
    {kCommandOverwriteLayer, Runner::kFrameCut, Do<&MainFrame::OverwriteLayer>},
    {kCommandLayerRamp, Runner::kFrameCut, Do<&MainFrame::SpreadLayerPosition>},
    {kCommandEraseLayerSketch, Runner::kWindow, Do<&EraseSketchOfLayer>},
    {kCommandMergeDown, Runner::kWindow, Do<&MergeLayerDown>},

    // Cells.
    {kCommandAddCell, Runner::kWindow, Do<&AddOrInsertCell, &Cut::AddCurrentCell>},
    {kCommandInsertCell, Runner::kWindow, Do<&AddOrInsertCell, &Cut::InsertCurrentCell>},
    {kCommandDeleteCell, Runner::kWindow, Do<&StepCell, &Cut::DeleteCurrentCell>},
    {kCommandPreviousCell, Runner::kWindow, Do<&StepCell, &Cut::PreviousCellOfFrame>},
    {kCommandNextCell, Runner::kWindow, Do<&StepCell, &Cut::NextCellOfFrame>},
    {kCommandFirstCell, Runner::kWindow, Do<&StepCell, &Cut::FirstCellOfFrame>},
    {kCommandLastCell, Runner::kWindow, Do<&StepCell, &Cut::LastCellOfFrame>},
    {kCommandBlankCell, Runner::kWindow, Do<&SwitchBlank>,
     [](const MainFrame&, CutWindow* cut) { return IsCurrentCellBlank(cut); }},
    {kCommandBlankAll, Runner::kWindow, Do<&SwitchBlankInAllFrames>},

    // The drawing of the current cell.
    {kCommandUndo, Runner::kWindow, Do<&UndoChange>},
    {kCommandStepBack, Runner::kWindow, Do<&CutWindow::TakeStep, &UndoHistory::Back>},
    {kCommandStepForward, Runner::kWindow, Do<&CutWindow::TakeStep, &UndoHistory::Forward>},
    {kCommandCopy, Runner::kWindow, Do<&CopySelection>},
    {kCommandCut, Runner::kWindow, Do<&CutSelection>},
    {kCommandPaste, Runner::kWindow, Do<&CutWindow::PasteBuffer>},
    {kCommandCopyToClipboard, Runner::kWindow, Do<&CutWindow::CopyCellToClipboard>},
    {kCommandPasteFromClipboard, Runner::kWindow, Do<&CutWindow::PasteClipboardImage>},
    {kCommandToSketch, Runner::kWindow, Do<&TurnIntoSketch>},
    {kCommandEraseSketch, Runner::kWindow, Do<&EraseSketch>},
    {kCommandEraseCell, Runner::kWindow, Do<&EraseCell>},
    {kCommandFlipHorizontal, Runner::kWindow, Do<&CutWindow::FlipCellHorizontal>},
    {kCommandFlipVertical, Runner::kWindow, Do<&CutWindow::FlipCellVertical>},
    {kCommandRandomDots, Runner::kFrameCut, Do<&MainFrame::DrawRandomDots>},
    {kCommandDrawGrid, Runner::kFrameCut, Do<&MainFrame::DrawGridLines>},

    // How the canvas shows it.
    {kCommandShowPrevious, Runner::kWindow, Do<&SwitchView, kOnionPrevious>, HasViewFlag<kOnionPrevious>},
    {kCommandShowNext, Runner::kWindow, Do<&SwitchView, kOnionNext>, HasViewFlag<kOnionNext>},
    {kCommandDimOthers, Runner::kWindow, Do<&SwitchView, kDimOthers>, HasViewFlag<kDimOthers>},
    {kCommandCurrentCellOnly, Runner::kWindow, Do<&SwitchCurrentCellOnly>, HasViewFlag<kCurrentCellOnly>},
    {kCommandLineEmphasis, Runner::kWindow, Do<&CutWindow::ToggleLineEmphasis>,
     [](const MainFrame&, CutWindow* cut) { return (cut->viewOptions & kLineEmphasis) != 0; }},
};

int32_t MainFrame::OnCommand(int32_t code, int32_t id, platform::WindowHandle control) {
  CutWindow* cut = ActiveCut();
  if (id >= kFrameTimeEdit && id <= kKeyFrameCheck) return OnPanelNotification(code, id);
  if (sheetWindow.TakeCommand(id)) return 0;
  if (toolbox->Has(id)) {
    SelectTool(id);
    return 0;
  }
  for (const Command& command : kCommands) {
    if (command.id != id || command.runner == Runner::kWindow) continue;
    if (cut != nullptr || command.runner == Runner::kFrame) command.run(this, cut);
    return 0;
  }
  return cut != nullptr ? cut->OnCommand(code, id, control) : 1;
}

int32_t MainFrame::RunWindowCommand(CutWindow* cut, int32_t id) {
  for (const Command& command : kCommands) {
    if (command.id != id || command.runner != Runner::kWindow) continue;
    command.run(nullptr, cut);
    return 0;
  }
  return 1;
}

int32_t CutWindow::OnCommand(int32_t, int32_t id, platform::WindowHandle) {
  return MainFrame::RunWindowCommand(this, id);
}

void MainFrame::SendCommand(int32_t id) {
  platform::Send(frameWindow, platform::kMessageCommand, static_cast<uintptr_t>(id), 0);
}

// Menus don't keep check marks: the marks are written each time a menu opens. Without a cut, those of commands that its
// window runs stay as they are.
void MainFrame::WriteCheckMarks(platform::MenuHandle menu) {
  CutWindow* cut = ActiveCut();
  for (const Command& command : kCommands) {
    if (command.isChecked == nullptr || (cut == nullptr && command.runner == Runner::kWindow)) continue;
    platform::CheckMenuEntry(menu, command.id, command.isChecked(*this, cut));
  }
}

void MainFrame::OnInitMenu() {
  WriteCheckMarks(platform::FrameMenu(frameWindow));
}

void MainFrame::OnInitMenuPopup(platform::MenuHandle popup) {
  if (popup == platform::Submenu(toolPopupMenu, 0)) WriteCheckMarks(toolPopupMenu);
}

}  // namespace sorvel
