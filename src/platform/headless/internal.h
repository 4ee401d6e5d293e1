#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/headless/headless.h"

// What the files of this folder share.
namespace sorvel::platform {

// A device context of this platform is the window itself, so each window is made as one.
struct DeviceContext : Window {};

namespace headless {

// Makes a window of this size, which has no pixels if it is a control. A parent or an owner gets it as its last one.
Window* NewWindow(WindowKind kind, Window* parent, Window* owner, const Bounds& place);
// Ends a window, its children and those that it owns. The messages come first; then nothing of them is left.
void EndWindow(Window* window);
// Handles of windows that are gone, and null, are no windows: operations on them do nothing, as in a window system.
bool IsWindow(const Window* window);
bool IsControl(const Window* window);
// The frame's area of child windows, null if there is none.
Window* MdiClientOf(const Window* frame);

// Gives the client area a size, black and invalid. No message. False if it had that size already.
bool ResizeClient(Window* window, int32_t width, int32_t height);
void SendSize(Window* window);
Bounds WholeClient(const Window* window);
void InvalidateArea(Window* window, const Bounds& area, bool erase);

// The default handling of bars, which place themselves.
void PlaceBar(Window* bar);
// Tells the parent of a control about an event.
void NotifyParent(Window* control, int32_t code);
// Switches a radio button on and the others of its group off.
void ChooseRadioButton(Window* button);

// What the messages do to the child windows: a new one becomes the active one; one that is closed loses that first,
// and the one that was active before it gets it.
void ActivateChild(Window* mdiClient, Window* child);
void EndChild(Window* child);
// Gives it the size that child windows have.
void SizeNewChild(Window* child);

bool HasFocusIn(const Window* window);
// Takes focus and capture from a window that is about to go; nothing is told.
void ForgetInput(const Window* window);
// Gives the focus to the frame if no window has it.
void KeepFocus();

// Keeps the first message.
void Fail(const std::string& message);

// The resources' text is UTF-8.
std::string FromUtf8(std::string_view text);
std::string ToUtf8(std::string_view text);
bool SameWithoutCase(std::string_view left, std::string_view right);
// Capitals of the Latin alphabet become small ones; double bytes stay.
std::string WithoutCase(std::string_view text);

// Fills a dialog with the controls of its resource; false if there is no such dialog.
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

}  // namespace headless
}  // namespace sorvel::platform
