#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/window.h"

// Modal dialogs from the resources, and the window system's own: message boxes, file and colour dialogs.
namespace sorvel::platform {

// Handles the messages of a dialog, such as kMessageInitDialog and kMessageCommand. Returns 0 for those that it doesn't
// handle.
using DialogFunction = intptr_t (*)(WindowHandle dialog, uint32_t message, uintptr_t first, intptr_t second);

// Shows the dialog until EndDialog() and returns its result, or 0 if the dialog can't be made. `parameter` comes with
// kMessageInitDialog.
intptr_t RunDialog(int32_t resource, WindowHandle owner, DialogFunction function, void* parameter);
void EndDialog(WindowHandle dialog, intptr_t result);
// The control of this number; null if there is none.
WindowHandle DialogControl(WindowHandle dialog, int32_t id);
WindowHandle ParentOf(WindowHandle window);

enum class BoxIcon { kNone, kQuestion, kInformation, kWarning };

// The button of a question that Enter presses at once.
enum class DefaultButton { kYes, kNo };

// Shows a message box with the buttons Yes and No. True for Yes.
bool AskYesNo(WindowHandle owner, const char* text, const char* title, BoxIcon icon,
              DefaultButton button = DefaultButton::kYes);
void ShowMessage(WindowHandle owner, const char* text, const char* title, BoxIcon icon);
// Plays the system's alert sound.
void PlayAlert();

// The file types of a file dialog. The filter is a sequence of pairs, a name and a pattern, each ended by a zero byte,
// with one more zero byte at the end.
struct FileForm {
  const char* filter;
  const char* defaultExtension;  // null leaves a name without extension as it is
  int32_t* type = nullptr;       // the pair to start with, counted from 1, receives the choice; null for the first one
};

// `path` holds the name to start with, may be empty, and receives the full path. False if the user cancels.
bool AskFileToOpen(WindowHandle owner, const FileForm& form, char* path, size_t capacity);
bool AskFileToSave(WindowHandle owner, const FileForm& form, char* path, size_t capacity);

// `color` is the colour to start with and receives the choice: red in the low byte, then green and blue. `custom` are
// the user's own colours in the dialog. False if the user cancels.
bool AskColor(WindowHandle owner, uint32_t (&custom)[16], uint32_t* color);

}  // namespace sorvel::platform
