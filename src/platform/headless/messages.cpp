#include "platform/messages.h"

#include <algorithm>

#include "platform/headless/internal.h"

namespace sorvel::platform {

namespace {

struct MouseMove {
  Window* window;
  Point place;
};

bool gQuit = false;
int gQuitCode = 0;
std::vector<MouseMove> gMouseMoves;

bool HasTimer(const Window* window, uintptr_t id) {
  if (!headless::IsWindow(window)) return false;
  return std::any_of(window->timers.begin(), window->timers.end(),
                     [id](const WindowTimer& timer) { return timer.id == id; });
}

// Commands numbered from firstChild on activate a window of the window list.
bool ChooseListedWindow(const Window* frame, int32_t id) {
  Window* client = headless::MdiClientOf(frame);
  if (client == nullptr || client->firstChild == 0) return false;
  const int32_t index = id - client->firstChild;
  if (index < 0 || index >= static_cast<int32_t>(client->children.size())) return false;
  ActivateMdiChild(client, client->children[static_cast<size_t>(index)]);
  return true;
}

// The MDI client passes the focus to its active child, and the frame to the MDI client.
void HandFocusOn(const Window* client) {
  if (client != nullptr && client->activeChild != nullptr) SetFocusTo(client->activeChild);
}

void OnFocus(Window* window) {
  switch (window->kind) {
    case WindowKind::kFrame:
      HandFocusOn(headless::MdiClientOf(window));
      break;
    case WindowKind::kMdiClient:
      HandFocusOn(window);
      break;
    case WindowKind::kMdiChild:
      ActivateMdiChild(window->parent, window);
      break;
    default:
      break;
  }
}

}  // namespace

namespace headless {

bool HasQuit() {
  return gQuit;
}

int QuitCode() {
  return gQuitCode;
}

void QueueMouseMove(WindowHandle window, Point place) {
  gMouseMoves.push_back({window, place});
}

bool RunWindowTimers() {
  struct Due {
    Window* window;
    uintptr_t id;
  };
  std::vector<Due> due;
  for (Window* window : AllWindows()) {
    for (const WindowTimer& timer : window->timers) due.push_back({window, timer.id});
  }
  for (const Due& each : due) {
    // An earlier timer's message may have stopped it.
    if (HasTimer(each.window, each.id)) Send(each.window, kMessageTimer, each.id, 0);
  }
  return !due.empty();
}

void DropFiles(WindowHandle window, const std::vector<std::string>& paths) {
  std::vector<std::string> drop = paths;
  Send(window, kMessageDropFiles, reinterpret_cast<uintptr_t>(&drop), 0);
}

void ResetMessages() {
  gQuit = false;
  gQuitCode = 0;
  gMouseMoves.clear();
}

void Reset() {
  ResetWindows();
  ResetMdi();
  ResetMessages();
  ResetInput();
  ResetPainting();
  ResetMenus();
  ResetDialogs();
  ResetClipboard();
  ResetTimer();
  ResetHints();
  SetProgramPath(nullptr);
}

}  // namespace headless

int RunLoop(WindowHandle frame, WindowHandle mdiClient, int32_t accelerators) {
  static_cast<void>(frame);
  static_cast<void>(mdiClient);
  static_cast<void>(accelerators);
  return gQuitCode;
}

void QuitLoop(int code) {
  gQuit = true;
  gQuitCode = code;
}

intptr_t Send(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  if (!headless::IsWindow(window)) return 0;
  if (window->object != nullptr) return window->object->WindowProc(message, first, second);
  if (window->function != nullptr) return window->function(window, message, first, second);
  return DefaultHandling(window, message, first, second);
}

intptr_t DefaultHandling(WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  static_cast<void>(second);
  if (!headless::IsWindow(window)) return 0;
  switch (message) {
    case kMessageClose:
      DestroyWindow(window);
      break;
    case kMessageCommand:
      if (window->kind == WindowKind::kFrame) ChooseListedWindow(window, static_cast<int32_t>(LowHalf(first)));
      break;
    case kMessageSetFocus:
      OnFocus(window);
      break;
    case kMessageSetCursor:
      if (window->classCursor != CursorShape::kNone) SetCursorShape(window->classCursor);
      break;
    case kMessageSize:
      headless::PlaceBar(window);
      break;
    default:
      break;
  }
  return 0;
}

bool TakeMouseMoves(WindowHandle window, Point* place) {
  const size_t before = gMouseMoves.size();
  for (const MouseMove& move : gMouseMoves) {
    if (move.window == window) *place = move.place;
  }
  gMouseMoves.erase(std::remove_if(gMouseMoves.begin(), gMouseMoves.end(),
                                   [window](const MouseMove& move) { return move.window == window; }),
                    gMouseMoves.end());
  return gMouseMoves.size() != before;
}

bool TakeDroppedFile(uintptr_t drop, char* path, size_t capacity) {
  // As DropFiles sends it. NOLINTNEXTLINE(performance-no-int-to-ptr)
  std::vector<std::string>* paths = reinterpret_cast<std::vector<std::string>*>(drop);
  if (paths == nullptr || paths->empty()) return false;
  const std::string first = paths->front();
  paths->clear();
  if (first.size() >= capacity) return false;
  first.copy(path, first.size());
  path[first.size()] = '\0';
  return true;
}

}  // namespace sorvel::platform
