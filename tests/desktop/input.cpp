#include "input.h"

#include <vector>

#include "text.h"

namespace sorvel::desktop {

namespace {

constexpr DWORD kRest = 10;  // milliseconds
constexpr int kDragSteps = 8;
constexpr int kMoveTries = 5;

INPUT KeyboardInput(int key, UINT scan, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki = {static_cast<WORD>(key), static_cast<WORD>(scan), flags, 0, 0};
  return input;
}

INPUT KeyInput(int key, bool down) {
  return KeyboardInput(key, MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_VSC), down ? 0u : KEYEVENTF_KEYUP);
}

void SendAll(std::vector<INPUT>* inputs) {
  SendInput(static_cast<UINT>(inputs->size()), inputs->data(), sizeof(INPUT));
  Sleep(kRest);
}

// The least number of 65536 parts of the screen that comes out as this pixel again.
LONG PartOf(LONG pixel, int size) {
  return static_cast<LONG>((static_cast<int64_t>(pixel) * 65536 + size - 1) / size);
}

bool IsAt(POINT place) {
  POINT found = {};
  GetCursorPos(&found);
  return found.x == place.x && found.y == place.y;
}

}  // namespace

void Press(int key, std::initializer_list<int> held) {
  std::vector<INPUT> inputs;
  for (const int other : held) inputs.push_back(KeyInput(other, true));
  inputs.push_back(KeyInput(key, true));
  inputs.push_back(KeyInput(key, false));
  for (auto other = held.end(); other != held.begin();) inputs.push_back(KeyInput(*--other, false));
  SendAll(&inputs);
}

void Type(const std::string& text) {
  std::vector<INPUT> inputs;
  for (const wchar_t character : Wide(text)) {
    const bool letter = character >= L'a' && character <= L'z';
    if (letter || (character >= L'0' && character <= L'9') || character == L' ') {
      const int key = letter ? character - L'a' + 'A' : character;
      inputs.push_back(KeyInput(key, true));
      inputs.push_back(KeyInput(key, false));
    } else {
      inputs.push_back(KeyboardInput(0, character, KEYEVENTF_UNICODE));
      inputs.push_back(KeyboardInput(0, character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
    }
  }
  SendAll(&inputs);
}

void MoveTo(POINT place, std::initializer_list<int> held) {
  INPUT move = {};
  move.type = INPUT_MOUSE;
  move.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  move.mi.dx = PartOf(place.x, GetSystemMetrics(SM_CXSCREEN));
  move.mi.dy = PartOf(place.y, GetSystemMetrics(SM_CYSCREEN));
  // All in one go: Wine lets go of keys that the X server knows nothing about.
  std::vector<INPUT> inputs;
  for (const int key : held) inputs.push_back(KeyInput(key, true));
  inputs.push_back(move);
  for (const int key : held) inputs.push_back(KeyInput(key, false));
  // Under Wine the X server may still tell of an earlier place after this one.
  for (int i = 0; i < kMoveTries; i++) {
    SendAll(&inputs);
    if (!IsAt(place)) continue;
    Sleep(kRest);
    if (IsAt(place)) break;
  }
}

void SendButton(DWORD flag) {
  std::vector<INPUT> inputs(1);
  inputs[0].type = INPUT_MOUSE;
  inputs[0].mi.dwFlags = flag;
  SendAll(&inputs);
}

void TurnWheel(int turn, std::initializer_list<int> held) {
  std::vector<INPUT> inputs;
  for (const int key : held) inputs.push_back(KeyInput(key, true));
  inputs.emplace_back();
  inputs.back().type = INPUT_MOUSE;
  inputs.back().mi.dwFlags = MOUSEEVENTF_WHEEL;
  inputs.back().mi.mouseData = static_cast<DWORD>(turn);
  for (const int key : held) inputs.push_back(KeyInput(key, false));
  SendAll(&inputs);
}

void Click(POINT place) {
  MoveTo(place);
  LeftDown();
  LeftUp();
}

void DoubleClick(POINT place) {
  Click(place);
  LeftDown();
  LeftUp();
}

void RightClick(POINT place) {
  MoveTo(place);
  RightDown();
  RightUp();
}

void Drag(POINT from, POINT to) {
  MoveTo(from);
  LeftDown();
  for (int i = 1; i <= kDragSteps; i++) {
    MoveTo({from.x + (to.x - from.x) * i / kDragSteps, from.y + (to.y - from.y) * i / kDragSteps});
  }
  LeftUp();
}

}  // namespace sorvel::desktop
