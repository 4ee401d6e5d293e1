#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

// The hands at the mouse and the keyboard. Places are those of the screen. A short rest follows each act, as it does
// with real hands, so that what it moves can follow.
namespace sorvel::desktop {

// A key of the keyboard, with keys that are held meanwhile (VK_CONTROL, VK_SHIFT, VK_MENU).
void Press(int key, std::initializer_list<int> held = {});
// The keys of digits, small letters and blanks; any other character without a key, as an input method sends it. The
// text is UTF-8.
void Type(const std::string& text);

// With keys that are down while it moves.
void MoveTo(POINT place, std::initializer_list<int> held = {});
// Presses or releases a button of the mouse: MOUSEEVENTF_LEFTDOWN and its like.
void SendButton(DWORD flag);
inline void LeftDown() {
  SendButton(MOUSEEVENTF_LEFTDOWN);
}
inline void LeftUp() {
  SendButton(MOUSEEVENTF_LEFTUP);
}
inline void RightDown() {
  SendButton(MOUSEEVENTF_RIGHTDOWN);
}
inline void RightUp() {
  SendButton(MOUSEEVENTF_RIGHTUP);
}
inline void MiddleDown() {
  SendButton(MOUSEEVENTF_MIDDLEDOWN);
}
inline void MiddleUp() {
  SendButton(MOUSEEVENTF_MIDDLEUP);
}
// Turns the wheel where the mouse is, away from the hand for a number above 0; a notch is WHEEL_DELTA.
void TurnWheel(int turn, std::initializer_list<int> held = {});
void Click(POINT place);
void DoubleClick(POINT place);
void RightClick(POINT place);
// Down, over some places between, and up.
void Drag(POINT from, POINT to);

}  // namespace sorvel::desktop
