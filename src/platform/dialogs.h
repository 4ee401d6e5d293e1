#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/window.h"

// Modal dialogs of the resources, and those that the window system brings.
namespace sorvel::platform {

// Answers the messages of a dialog: kMessageInitDialog, kMessageCommand and others; 0 for what it doesn't handle.
using DialogFunction = intptr_t (*)(WindowHandle dialog, uint32_t message, uintptr_t first, intptr_t second);

// Gives what EndDialog was given, 0 if the dialog can't be shown.
intptr_t RunDialog(int32_t resource, WindowHandle owner, DialogFunction function, void* parameter);
void EndDialog(WindowHandle dialog, intptr_t result);
// A control of the dialog, null if there is none with this number.
WindowHandle DialogControl(WindowHandle dialog, int32_t id);
WindowHandle ParentOf(WindowHandle window);

enum class BoxIcon { kNone, kQuestion, kInformation, kWarning };

// A box with Yes and No; true for Yes.
bool AskYesNo(WindowHandle owner, const char* text, const char* title, BoxIcon icon);
void ShowMessage(WindowHandle owner, const char* text, const char* title, BoxIcon icon);
void PlayAlert();

// What a file dialog offers. The filter is pairs of a name and a pattern, each with its zero byte, and a zero byte
// more.
struct FileForm {
  const char* filter;
  const char* defaultExtension;
};

// `path` holds the name to start from and receives the full path. False for a cancel.
bool AskFileToOpen(WindowHandle owner, const FileForm& form, char* path, size_t capacity);
bool AskFileToSave(WindowHandle owner, const FileForm& form, char* path, size_t capacity);

// `color` has red in the low byte. `custom` are the sixteen colours of the user's own. False for a cancel.
bool AskColor(WindowHandle owner, uint32_t (&custom)[16], uint32_t* color);

}  // namespace sorvel::platform
