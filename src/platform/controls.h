#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/window.h"

// Controls: children of the main window or of a dialog that send their notifications as commands to it.
namespace sorvel::platform {

// All visible, with the window system's default place until they are moved.
WindowHandle MakeEdit(WindowHandle parent, int32_t id, bool scrolls);
WindowHandle MakeListBox(WindowHandle parent, int32_t id, bool extendedSelection);
WindowHandle MakeCheckBox(WindowHandle parent, int32_t id);  // switches itself, and tells of the focus
WindowHandle MakeStatusBar(WindowHandle parent, int32_t id);

// A button of a tool bar; command 0 is a separator. Image is the number of a picture of 16 by 16.
struct ToolButton {
  int32_t image;
  int32_t command;
  bool check;  // stays down
};
// A tool bar with tool tips: kMessageToolTip comes to the parent. `bitmap` is the resource of its pictures.
WindowHandle MakeToolBar(WindowHandle parent, int32_t id, int32_t bitmap, int32_t imageCount, const ToolButton* buttons,
                         int32_t buttonCount);
// No effect if there is no such button.
void CheckToolButton(WindowHandle toolBar, int32_t command, bool checked);

void SetEditReadOnly(WindowHandle edit, bool readOnly);
void SelectAllText(WindowHandle edit);

bool IsChecked(WindowHandle button);
void SetChecked(WindowHandle button, bool checked);

// List boxes. Lines count from 0.
void SetListRedraw(WindowHandle list, bool redraw);
int32_t ListCount(WindowHandle list);
void ClearList(WindowHandle list);
int32_t AddListLine(WindowHandle list, const char* text);  // gives its index; a sorted list finds the place
void InsertListLine(WindowHandle list, int32_t index, const char* text);  // -1: behind the last
void DeleteListLine(WindowHandle list, int32_t index);
size_t ReadListLine(WindowHandle list, int32_t index, char* text, size_t capacity);
size_t ListLineLength(WindowHandle list, int32_t index);
// The first line behind `after` that begins with the text, without regard to case, going round; -1 if there is none.
int32_t FindListLine(WindowHandle list, int32_t after, const char* text);
// Of lists with one selected line; -1 for none.
int32_t SelectedListLine(WindowHandle list);
void SelectListLine(WindowHandle list, int32_t index);
// Of lists with an extended selection; index -1 means all lines.
bool IsListLineSelected(WindowHandle list, int32_t index);
void SetListLineSelected(WindowHandle list, int32_t index, bool selected);
int32_t ListCaret(WindowHandle list);
void SetListCaret(WindowHandle list, int32_t index);

// Up-down controls. The range holds 16 bits each. The position is what the control reports: its high half isn't 0 when
// the edit beside it holds something else than a number of the range.
void SetUpDownRange(WindowHandle upDown, int32_t low, int32_t high);
void SetUpDownPosition(WindowHandle upDown, int32_t position);
int32_t UpDownPosition(WindowHandle upDown);

}  // namespace sorvel::platform
