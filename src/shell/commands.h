#pragma once

#include <cstdint>

#include "cutwindow/cut_window.h"

// Bodies of commands that need only a cut's window and its host. The other bodies are operations of MainFrame. Each
// family has one file, <family>_commands.cpp, with both kinds.
namespace sorvel {

// Frames. What a step shows first.
enum class ShowOrder { kPanelsFirst, kPictureFirst };
// Stores what was typed, steps, and shows the current frame, even if there was no step to take.
void StepToNeighbor(CutWindow* cut, bool (Cut::*step)());
// The same for a jump; one that goes nowhere shows nothing.
void JumpToFrame(CutWindow* cut, bool (Cut::*jump)(), ShowOrder order);
void DeleteCurrentFrame(CutWindow* cut);

// Cells of the current layer.
void StepCell(CutWindow* cut, bool (Cut::*step)());
void AddOrInsertCell(CutWindow* cut, bool (Cut::*add)(int32_t));
void SwitchBlank(CutWindow* cut);
void SwitchBlankInAllFrames(CutWindow* cut);
bool IsCurrentCellBlank(CutWindow* cut);

// Layers.
void EraseSketchOfLayer(CutWindow* cut);
void MergeLayerDown(CutWindow* cut);

// The drawing of the current cell.
void UndoChange(CutWindow* cut);
void CopySelection(CutWindow* cut);
void CutSelection(CutWindow* cut);
void EraseCell(CutWindow* cut);
void EraseSketch(CutWindow* cut);
void TurnIntoSketch(CutWindow* cut);

// How the canvas shows it. The flag is one of Cut::viewFlags.
void SwitchView(CutWindow* cut, uint32_t flag);
void SwitchCurrentCellOnly(CutWindow* cut);

// Tools.
void SwitchMuraRemoval();

// The cut.
void PlayAndRepaint(CutWindow* cut);

}  // namespace sorvel
