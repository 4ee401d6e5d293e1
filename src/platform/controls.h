#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/window.h"

// Controls: child windows of the main window or of a dialog. They report events to it as kMessageCommand.
namespace sorvel::platform {

// Each makes a visible control, or gives null; MoveWindow() places it. `id` is its number in commands.
WindowHandle MakeEdit(WindowHandle parent, int32_t id, bool scrolls);
WindowHandle MakeListBox(WindowHandle parent, int32_t id, bool extendedSelection);
WindowHandle MakeCheckBox(WindowHandle parent, int32_t id);  // toggles itself on a click
WindowHandle MakeStatusBar(WindowHandle parent, int32_t id);

// A button of a tool bar; one with command 0 is a separator. `image` is the index of its 16x16 picture in the bitmap.
struct ToolButton {
  int32_t image;
  int32_t command;
  bool check;  // a toggle: it stays down while it is checked
};
// A tool bar with tool tips, for which it sends kMessageToolTip to its parent. `bitmap` is the resource number of its
// pictures.
WindowHandle MakeToolBar(WindowHandle parent, int32_t id, int32_t bitmap, int32_t imageCount, const ToolButton* buttons,
                         int32_t buttonCount);
// Has no effect if the tool bar has no such button.
void CheckToolButton(WindowHandle toolBar, int32_t command, bool checked);

void SetEditReadOnly(WindowHandle edit, bool readOnly);
void SelectAllText(WindowHandle edit);

bool IsChecked(WindowHandle button);
void SetChecked(WindowHandle button, bool checked);

// List boxes. Lines are numbered from 0; an operation on a line that doesn't exist has no effect.
void SetListRedraw(WindowHandle list, bool redraw);
int32_t ListCount(WindowHandle list);
void ClearList(WindowHandle list);
int32_t AddListLine(WindowHandle list, const char* text);  // returns its index; a sorted list chooses the place
void InsertListLine(WindowHandle list, int32_t index, const char* text);  // -1 appends it
void DeleteListLine(WindowHandle list, int32_t index);
size_t ReadListLine(WindowHandle list, int32_t index, char* text, size_t capacity);
size_t ListLineLength(WindowHandle list, int32_t index);
// The first line that begins with the text, ignoring case. The search starts after line `after` and wraps round to it.
// -1 if there is none.
int32_t FindListLine(WindowHandle list, int32_t after, const char* text);
// For lists with single selection; -1 for no line.
int32_t SelectedListLine(WindowHandle list);
void SelectListLine(WindowHandle list, int32_t index);
// For lists with extended selection; index -1 stands for all lines.
bool IsListLineSelected(WindowHandle list, int32_t index);
void SetListLineSelected(WindowHandle list, int32_t index, bool selected);
int32_t ListCaret(WindowHandle list);
void SetListCaret(WindowHandle list, int32_t index);

// How far a progress bar is, from 0 to 1000.
void SetProgress(WindowHandle bar, int32_t permille);

// Up-down controls. Both limits are 16-bit numbers. The low 16 bits of the position are the number; the high 16 bits
// aren't 0 when the edit next to the control doesn't hold a number within the range.
void SetUpDownRange(WindowHandle upDown, int32_t low, int32_t high);
void ReadUpDownRange(WindowHandle upDown, int32_t* low, int32_t* high);
void SetUpDownPosition(WindowHandle upDown, int32_t position);
int32_t UpDownPosition(WindowHandle upDown);

}  // namespace sorvel::platform
