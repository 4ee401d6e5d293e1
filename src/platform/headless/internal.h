#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/headless/headless.h"

// Shared by the files of this folder.
namespace sorvel::platform {

// A device context of this platform is the window itself, so every window is created as one.
struct DeviceContext : Window {};

namespace headless {

// Makes a window, as the last one of its parent or owner. Controls have no pixels.
Window* NewWindow(WindowKind kind, Window* parent, Window* owner, const Bounds& place);
// Destroys a window, its children and the windows that it owns: first their messages, then the windows.
void EndWindow(Window* window);
// False for null and for handles of windows that have been destroyed. Operations on such handles do nothing, as in a
// window system.
bool IsWindow(const Window* window);
bool IsControl(const Window* window);
// The MDI client of the frame; null if there is none.
Window* MdiClientOf(const Window* frame);

// Resizes the client area, which becomes black and invalid, without a message. False if it had that size already.
bool ResizeClient(Window* window, int32_t width, int32_t height);
void SendSize(Window* window);
Bounds WholeClient(const Window* window);
void InvalidateArea(Window* window, const Bounds& area, bool erase);

// The default handling of kMessageSize by bars, which choose their own place.
void PlaceBar(Window* bar);
// Sends a notification of the control to its parent.
void NotifyParent(Window* control, int32_t code);
// Switches a radio button on and the others of its group off.
void ChooseRadioButton(Window* button);

// MDI children. EndChild first activates the child that was active before.
void ActivateChild(Window* mdiClient, Window* child);
void EndChild(Window* child);
// Gives a new MDI child its size.
void SizeNewChild(Window* child);

bool HasFocusIn(const Window* window);
// Takes focus and mouse capture from a window that is about to be deleted, without a message.
void ForgetInput(const Window* window);
// Gives the focus to the frame if no window has it.
void KeepFocus();

// Records a failure, unless there is one already.
void Fail(const std::string& message);

// What becomes of a text that is entered into an edit.
std::string EnteredText(const Window* edit, const std::string& text);

// Conversion for the resources, which are UTF-8.
std::string FromUtf8(std::string_view text);
std::string ToUtf8(std::string_view text);
bool SameWithoutCase(std::string_view left, std::string_view right);
// Makes Latin letters lower case and leaves double-byte characters alone.
std::string WithoutCase(std::string_view text);

// Makes the controls of a dialog from its resource. False if there is no such resource.
bool LoadDialog(int32_t resource, Window* dialog);

void ResetWindows();
void ResetMdi();
void ResetMessages();
void ResetInput();
void ResetPainting();
void ResetMenus();
void ResetDialogs();
void ResetClipboard();
void ResetTimer();
void ResetHints();

}  // namespace headless
}  // namespace sorvel::platform
