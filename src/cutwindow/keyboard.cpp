#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

// Actions of keys that aren't commands. Their numbers differ from those of all commands.
enum KeyAction : int32_t {
  kPreviousTool = 1,
  kKeyZoomOut,
  kKeyZoomIn,
  kSmallerPen,
  kLargerPen,
  kKeyTogglePanels,
};

// Each action has a key for the left hand and one for the right. `action` is a command or a KeyAction.
struct KeyEntry {
  char keys[2];
  int32_t action;
};

constexpr KeyEntry kKeys[] = {
    {{'1', '0'}, kToolFreePen},
    {{'2', '9'}, kToolEraser},
    {{'3', '8'}, kToolLine},
    {{'4', '7'}, kToolCurve},
    {{'5', '6'}, kPreviousTool},
    {{'q', 'o'}, kCommandPreviousFrame},
    {{'w', 'p'}, kCommandNextFrame},
    {{'e', 'u'}, kCommandPreviousKeyFrame},
    {{'r', 'i'}, kCommandNextKeyFrame},
    {{'t', 'y'}, kCommandAddFrame},
    {{'a', ';'}, kKeyZoomOut},
    {{'s', 'l'}, kKeyZoomIn},
    {{'d', 'k'}, kSmallerPen},
    {{'f', 'j'}, kLargerPen},
    {{'g', 'h'}, kCommandMask},
    {{'z', '/'}, kCommandUndo},
    {{'x', '.'}, kCommandToSketch},
    {{'c', 'm'}, kCommandPreviousCell},
    {{'v', ','}, kCommandNextCell},
    {{'b', 'n'}, kCommandAddCell},
    {{' ', ' '}, kKeyTogglePanels},
    {{'Q', '`'}, kToolAreaSelect},
    {{'W', '{'}, kToolFill},
    {{'E', 'O'}, kCommandFirstFrame},
    {{'R', 'P'}, kCommandLastFrame},
    {{'T', 'I'}, kCommandInsertFrame},
    {{'A', '}'}, kToolFramePosition},
    {{'S', '*'}, kToolLayerPosition},
    {{'D', 'J'}, kCommandShowPrevious},
    {{'F', 'K'}, kCommandShowNext},
    {{'G', 'H'}, kCommandSnapGrid},
    {{'X', '?'}, kCommandEraseSketch},
    {{'C', '<'}, kCommandFirstCell},
    {{'V', '>'}, kCommandLastCell},
    {{'B', 'M'}, kCommandInsertCell},
};

// The action of a character; 0 for none.
int32_t ActionOf(uintptr_t character) {
  for (const KeyEntry& entry : kKeys) {
    for (const char key : entry.keys) {
      if (static_cast<uintptr_t>(key) == character) return entry.action;
    }
  }
  return 0;
}

}  // namespace

void CutWindow::OnChar(uintptr_t character) {
  // While the action runs, the shape holds the size alone. Afterwards it becomes the shape of that size for a pen of
  // penSign, whatever the key was.
  int32_t& size = currentPen.shape;
  size = SizeOfShape(size);
  const int32_t action = ActionOf(character);
  const auto zoom = [this](uint32_t message) {
    const Point place = platform::ScreenToClient(window, platform::CursorPlace());
    host->toolbox->Run(kToolZoom, message, 0, platform::PackPoint(place), this);
  };
  switch (action) {
    case 0:
      break;
    case kPreviousTool:
      host->OnCommand(0, host->previousTool, nullptr);
      break;
    case kKeyZoomOut:
      zoom(platform::kMessageRightDown);
      break;
    case kKeyZoomIn:
      zoom(platform::kMessageLeftDown);
      break;
    case kSmallerPen:
      if (size >= 1) --size;
      break;
    case kLargerPen:
      if (size < kLargestSize) ++size;
      break;
    case kKeyTogglePanels:
      host->TogglePanels();
      break;
    default:
      host->SendCommand(action);
      break;
  }
  size = size * (penSign < 0 ? -1 : 1) + kSmallestShape;
}

}  // namespace sorvel
