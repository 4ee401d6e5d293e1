#pragma once

#include <cstdint>

#include "platform/geometry.h"

// The messages that windows handle, with the window system's numbers, and the message loop. `first` and `second` are
// the two parameters of a message.
namespace sorvel::platform {

struct Window;
using WindowHandle = Window*;

enum WindowMessage : uint32_t {
  kMessageCreate = 0x0001,
  kMessageDestroy = 0x0002,
  kMessageSize = 0x0005,      // first: kSizeMinimised or another; second: client width and height, 16 bits each
  kMessageActivate = 0x0006,  // first: low half 0 if the window is deactivated, high half not 0 if it is minimised
  kMessageSetFocus = 0x0007,
  kMessageKillFocus = 0x0008,
  kMessagePaint = 0x000F,
  kMessageClose = 0x0010,
  kMessageSetCursor = 0x0020,      // second: low half the hit-test code
  kMessageMouseActivate = 0x0021,  // the answer kNoActivate leaves the window inactive
  kMessageKeyDown = 0x0100,        // first: the key, a Key or another number of the window system
  kMessageChar = 0x0102,           // first: the character
  kMessageInitDialog = 0x0110,     // second: the parameter of RunDialog
  kMessageCommand = 0x0111,        // first: number in the low half, notification in the high; second: the control
  kMessageTimer = 0x0113,          // first: the timer's number
  kMessageHorizontalScroll = 0x0114,
  kMessageVerticalScroll = 0x0115,  // first: ScrollCode in the low half, thumb position in the high
  kMessageInitMenu = 0x0116,        // first: the menu
  kMessageInitMenuPopup = 0x0117,   // first: the popup
  kMessageMenuSelect = 0x011F,      // first: low half the item's number
  kMessageMouseMove = 0x0200,       // mouse messages: first MouseKey bits, second the point in client coordinates
  kMessageLeftDown = 0x0201,
  kMessageLeftUp = 0x0202,
  kMessageLeftDouble = 0x0203,
  kMessageRightDown = 0x0204,
  kMessageRightUp = 0x0205,
  kMessageRightDouble = 0x0206,
  kMessageMiddleDown = 0x0207,
  kMessageMiddleUp = 0x0208,
  kMessageMiddleDouble = 0x0209,
  kMessageWheel = 0x020A,  // both wheels: first MouseKey bits and in the high half the turn; second a screen point
  kMessageSidewaysWheel = 0x020E,
  kMessageMdiActivate = 0x0222,  // first: the window that becomes inactive, second: the one that becomes active
  kMessageMoved = 0x0232,        // the user has moved or resized the window
  kMessageDropFiles = 0x0233,    // first: the drop, for TakeDroppedFile
  kMessagePrintClient = 0x0318,  // first: a device context to draw the whole client area into
  kMessageUser = 0x0400,
  // Sent by a tool bar to its parent. first: ToolTipMoment; second: a ToolTip.
  kMessageToolTip = 0x0401,
};

constexpr uintptr_t kSizeMinimised = 1;

enum MouseKey : uint32_t {
  kKeyLeftButton = 0x0001,
  kKeyRightButton = 0x0002,
  kKeyShift = 0x0004,
  kKeyControl = 0x0008,
  kKeyMiddleButton = 0x0010,
};

enum Key : int32_t {
  kKeyPageUp = 0x21,
  kKeyPageDown = 0x22,
  kKeyEnd = 0x23,
  kKeyHome = 0x24,
  kKeyLeft = 0x25,
  kKeyUp = 0x26,
  kKeyRight = 0x27,
  kKeyDown = 0x28,
  kKeyDelete = 0x2E,
};

enum ScrollCode : int32_t {
  kScrollLineUp = 0,
  kScrollLineDown = 1,
  kScrollPageUp = 2,
  kScrollPageDown = 3,
  kScrollThumbPosition = 4,
  kScrollThumbTrack = 5,
};

// Notifications in the high half of a command's first parameter.
enum Notification : int32_t {
  kListSelectionChanged = 1,
  kListDoubleClicked = 2,
  kListSetFocus = 4,
  kListKillFocus = 5,
  kButtonClicked = 0,
  kButtonSetFocus = 6,
  kButtonKillFocus = 7,
  kEditSetFocus = 0x100,
  kEditKillFocus = 0x200,
  kEditChanged = 0x300,  // not by edits of several lines whose text the program sets
};

// kNeedText asks for the text; the other two tell that the tip appears and disappears.
enum class ToolTipMoment : uintptr_t { kNeedText, kShow, kPop };

struct ToolTip {
  int32_t id;     // the button's command
  char text[80];  // filled in answer to kNeedText
};

// The turn of a wheel's notch, away from the hand or to the right. Fine wheels send parts of it.
constexpr int32_t kWheelNotch = 120;

constexpr intptr_t kNoActivate = 3;

constexpr uint32_t LowHalf(uintptr_t value) {
  return static_cast<uint32_t>(value & 0xFFFF);
}
constexpr uint32_t HighHalf(uintptr_t value) {
  return static_cast<uint32_t>(value >> 16 & 0xFFFF);
}
constexpr uintptr_t JoinHalves(int32_t low, int32_t high) {
  return static_cast<uint32_t>(low & 0xFFFF) | static_cast<uint32_t>(high & 0xFFFF) << 16;
}
// The point of a mouse message, as two signed numbers of 16 bits.
constexpr Point PointOf(intptr_t second) {
  return {static_cast<int16_t>(LowHalf(static_cast<uintptr_t>(second))),
          static_cast<int16_t>(HighHalf(static_cast<uintptr_t>(second)))};
}
// The turn of a wheel message.
constexpr int32_t TurnOf(uintptr_t first) {
  return static_cast<int16_t>(HighHalf(first));
}
constexpr intptr_t PackPoint(Point point) {
  return static_cast<intptr_t>(JoinHalves(point.x, point.y));
}

// The pointer or handle that a parameter of a message carries.
template <typename T>
T* PointerIn(intptr_t parameter) {
  return reinterpret_cast<T*>(parameter);  // NOLINT(performance-no-int-to-ptr)
}

// Dispatches messages until QuitLoop() is called, and returns its code. Keys go to the MDI client's own shortcuts
// first, then to the accelerator table with the resource number `accelerators`, which sends commands to the frame. A
// focused edit keeps the keys of KeepsKey().
int RunLoop(WindowHandle frame, WindowHandle mdiClient, int32_t accelerators);
void QuitLoop(int code);

// Whether an edit handles a key itself, by its virtual key code: Ctrl with Z or Y takes back what was typed.
constexpr bool KeepsKey(int32_t key, bool control) {
  return control && (key == 'Z' || key == 'Y');
}

// Sends the message at once and returns the answer.
intptr_t Send(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second);

// Removes all mouse moves of this window from the queue. True if there were any; `place` is then that of the last one.
bool TakeMouseMoves(WindowHandle window, Point* place);

}  // namespace sorvel::platform
