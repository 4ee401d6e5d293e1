#include "platform/window.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "foundation/arithmetic.h"
#include "platform/headless/internal.h"

namespace sorvel::platform {

namespace {

constexpr Bounds kFramePlace = {0, 0, 1024, 768};
constexpr Bounds kMdiClientPlace = {162, 28, 1024, 732};
constexpr Point kScreen = {1280, 1024};
constexpr int32_t kLineHeight = 16;
// Larger windows aren't made.
constexpr int32_t kMostWindowPixels = 1 << 24;

struct WindowClass {
  CursorShape cursor = CursorShape::kArrow;
  bool hasBackground = false;
  ColorEntry background;
};

struct AllOfThem {
  AllOfThem() = default;
  AllOfThem(const AllOfThem&) = delete;
  AllOfThem& operator=(const AllOfThem&) = delete;
  ~AllOfThem() { Free(); }

  void Free() {
    for (Window* window : windows) {
      DeleteMenu(window->menu);
      delete static_cast<DeviceContext*>(window);
    }
    windows.clear();
  }

  std::vector<Window*> windows;
};

AllOfThem gAll;
std::map<std::string, WindowClass> gClasses;

void Remove(std::vector<Window*>* list, const Window* window) {
  list->erase(std::remove(list->begin(), list->end(), window), list->end());
}

// Unknown classes have an arrow cursor and no background.
void ApplyClass(Window* window, const char* name) {
  const auto found = gClasses.find(name);
  if (found == gClasses.end()) return;
  window->classCursor = found->second.cursor;
  window->hasBackground = found->second.hasBackground;
  window->background = found->second.background;
}

void FreeTree(Window* window) {
  while (!window->children.empty()) FreeTree(window->children.back());
  headless::ForgetInput(window);
  if (window->parent != nullptr) {
    Window* parent = window->parent;
    Remove(&parent->children, window);
    Remove(&parent->activationOrder, window);
    if (parent->activeChild == window) parent->activeChild = nullptr;
  }
  Remove(&gAll.windows, window);
  DeleteMenu(window->menu);
  delete static_cast<DeviceContext*>(window);
}

// A window gets kMessageDestroy before its children.
void SendEnd(Window* window) {
  window->ending = true;
  if (window->parent != nullptr && window->parent->activeChild == window) window->parent->activeChild = nullptr;
  Send(window, kMessageDestroy, 0, 0);
  const std::vector<Window*> children = window->children;
  for (Window* child : children) {
    if (headless::IsWindow(child) && !child->ending) SendEnd(child);
  }
}

Window* OwnedBy(const Window* owner) {
  for (Window* window : gAll.windows) {
    if (window->owner == owner && !window->ending) return window;
  }
  return nullptr;
}

// An object may refuse its window.
Window* Create(Window* window, WindowObject* object) {
  window->object = object;
  if (object != nullptr) object->window = window;
  const bool refused = Send(window, kMessageCreate, 0, 0) == -1;
  if (!headless::IsWindow(window)) return nullptr;
  if (!refused) return window;
  window->object = nullptr;
  FreeTree(window);
  return nullptr;
}

// The top left corner of the client area on the screen. Top-level windows have no border here.
Point Origin(const Window* window) {
  Point origin;
  for (const Window* each = window; each != nullptr; each = each->parent) {
    origin = {WrappingAdd(origin.x, each->place.left), WrappingAdd(origin.y, each->place.top)};
  }
  return origin;
}

}  // namespace

namespace headless {

Window* NewWindow(WindowKind kind, Window* parent, Window* owner, const Bounds& place) {
  DeviceContext* window = new DeviceContext;
  window->kind = kind;
  window->parent = IsWindow(parent) ? parent : nullptr;
  window->owner = IsWindow(owner) ? owner : nullptr;
  window->place = place;
  ResizeClient(window, place.right - place.left, place.bottom - place.top);
  if (window->parent != nullptr) window->parent->children.push_back(window);
  gAll.windows.push_back(window);
  return window;
}

void EndWindow(Window* window) {
  if (!IsWindow(window) || window->ending) return;
  window->ending = true;
  while (Window* owned = OwnedBy(window)) EndWindow(owned);
  SendEnd(window);
  FreeTree(window);
}

bool IsWindow(const Window* window) {
  return window != nullptr && std::find(gAll.windows.begin(), gAll.windows.end(), window) != gAll.windows.end();
}

bool IsControl(const Window* window) {
  return window->kind >= WindowKind::kEdit;
}

Window* MdiClientOf(const Window* frame) {
  for (Window* child : frame->children) {
    if (child->kind == WindowKind::kMdiClient) return child;
  }
  return nullptr;
}

Bounds WholeClient(const Window* window) {
  return {0, 0, window->width, window->height};
}

bool ResizeClient(Window* window, int32_t width, int32_t height) {
  width = std::max(width, 0);
  height = std::max(height, 0);
  const bool hasPixels = !IsControl(window) && window->kind != WindowKind::kMdiClient;
  if (hasPixels && width != 0) height = std::min(height, kMostWindowPixels / width);
  if (width == window->width && height == window->height) return false;
  window->width = width;
  window->height = height;
  window->place.right = WrappingAdd(window->place.left, width);
  window->place.bottom = WrappingAdd(window->place.top, height);
  if (hasPixels) {
    window->pixels.assign(static_cast<size_t>(width) * static_cast<size_t>(height), ColorEntry{});
    window->clip = WholeClient(window);
    InvalidateArea(window, window->clip, true);
  }
  return true;
}

void SendSize(Window* window) {
  constexpr uintptr_t restored = 0;
  constexpr uintptr_t maximised = 2;
  Send(window, kMessageSize, window->kind == WindowKind::kMdiChild ? maximised : restored,
       PackPoint({window->width, window->height}));
}

void ResetWindows() {
  gAll.Free();
  gClasses.clear();
}

const std::vector<WindowHandle>& AllWindows() {
  return gAll.windows;
}

WindowHandle FindWindowOfKind(WindowKind kind) {
  for (Window* window : gAll.windows) {
    if (window->kind == kind) return window;
  }
  return nullptr;
}

}  // namespace headless

BrushHandle MakeBrush(uint8_t red, uint8_t green, uint8_t blue) {
  return new Brush{{blue, green, red, 0}};
}

void DeleteBrush(BrushHandle brush) {
  delete brush;
}

PaletteHandle MakePalette(const ColorEntry* entries, int32_t count) {
  return new Palette{std::vector<ColorEntry>(entries, entries + count)};
}

void DeletePalette(PaletteHandle palette) {
  delete palette;
}

bool RegisterWindowClass(const char* name, int32_t icon, CursorShape cursor, BrushHandle background) {
  static_cast<void>(icon);
  gClasses[name] = {cursor, background != nullptr, background != nullptr ? background->color : ColorEntry{}};
  return true;
}

WindowHandle MakeFrameWindow(const char* windowClass, const char* title, int32_t menu, WindowObject* object) {
  Window* window = headless::NewWindow(WindowKind::kFrame, nullptr, nullptr, kFramePlace);
  ApplyClass(window, windowClass);
  window->text = title;
  window->menu = MakeMenu(menu);
  return Create(window, object);
}

WindowHandle MakeMdiClient(WindowHandle frame, int32_t id, int32_t windowMenu, int32_t firstChild) {
  // The window list in the menu isn't shown; its commands work without it.
  static_cast<void>(windowMenu);
  if (!headless::IsWindow(frame)) return nullptr;
  Window* window = headless::NewWindow(WindowKind::kMdiClient, frame, nullptr, kMdiClientPlace);
  window->id = id;
  window->firstChild = firstChild;
  window->shown = true;
  return window;
}

WindowHandle MakePopupWindow(const char* windowClass, WindowHandle owner, int32_t width, int32_t height,
                             WindowObject* object) {
  Window* window = headless::NewWindow(WindowKind::kPopup, nullptr, owner, {0, 0, width, height});
  ApplyClass(window, windowClass);
  return Create(window, object);
}

WindowHandle MakeCaptionWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object) {
  Window* window = headless::NewWindow(WindowKind::kCaption, nullptr, owner, {});
  ApplyClass(window, windowClass);
  window->text = title;
  return Create(window, object);
}

WindowHandle MakeToolWindow(const char* windowClass, const char* title, WindowHandle owner, WindowObject* object) {
  return MakeCaptionWindow(windowClass, title, owner, object);
}

WindowHandle MakeMdiChild(WindowHandle mdiClient, const char* windowClass, const char* title, WindowObject* object) {
  if (!headless::IsWindow(mdiClient)) return nullptr;
  Window* window = headless::NewWindow(WindowKind::kMdiChild, mdiClient, nullptr, {});
  ApplyClass(window, windowClass);
  window->text = title;
  window->shown = true;
  headless::SizeNewChild(window);
  if (Create(window, object) == nullptr) return nullptr;
  headless::SendSize(window);
  headless::ActivateChild(mdiClient, window);
  return headless::IsWindow(window) ? window : nullptr;
}

void DestroyWindow(WindowHandle window) {
  if (!headless::IsWindow(window)) return;
  if (window->kind == WindowKind::kMdiChild) {
    headless::EndChild(window);
  } else {
    const bool hadFocus = FocusedWindow() != nullptr;
    headless::EndWindow(window);
    if (hadFocus) headless::KeepFocus();
  }
}

void ForgetObject(WindowHandle window) {
  if (headless::IsWindow(window)) window->object = nullptr;
}

WindowObject* ObjectOf(WindowHandle window) {
  return headless::IsWindow(window) ? window->object : nullptr;
}

void SetText(WindowHandle window, const char* text) {
  if (!headless::IsWindow(window)) return;
  window->text = text;
  window->allSelected = false;
  if (window->kind == WindowKind::kEdit && !window->multipleLines) headless::NotifyParent(window, kEditChanged);
}

size_t ReadText(WindowHandle window, char* text, size_t capacity) {
  if (capacity == 0) return 0;
  const size_t length = std::min(TextLength(window), capacity - 1);
  if (length > 0) std::memcpy(text, window->text.data(), length);
  text[length] = '\0';
  return length;
}

size_t TextLength(WindowHandle window) {
  return headless::IsWindow(window) ? window->text.size() : 0;
}

Bounds ClientBounds(WindowHandle window) {
  return headless::IsWindow(window) ? headless::WholeClient(window) : Bounds{};
}

Bounds ScreenBounds(WindowHandle window) {
  if (!headless::IsWindow(window)) return {};
  const Point origin = Origin(window);
  return {origin.x, origin.y, WrappingAdd(origin.x, window->width), WrappingAdd(origin.y, window->height)};
}

Point ScreenSize() {
  return kScreen;
}

Point ClientToScreen(WindowHandle window, Point point) {
  if (!headless::IsWindow(window)) return point;
  const Point origin = Origin(window);
  return {WrappingAdd(point.x, origin.x), WrappingAdd(point.y, origin.y)};
}

Point ScreenToClient(WindowHandle window, Point point) {
  if (!headless::IsWindow(window)) return point;
  const Point origin = Origin(window);
  return {WrappingSubtract(point.x, origin.x), WrappingSubtract(point.y, origin.y)};
}

void MoveWindow(WindowHandle window, int32_t x, int32_t y, int32_t width, int32_t height, bool repaint) {
  static_cast<void>(repaint);
  if (!headless::IsWindow(window)) return;
  window->place = {x, y, WrappingAdd(x, window->width), WrappingAdd(y, window->height)};
  if (headless::ResizeClient(window, width, height) && !headless::IsControl(window)) headless::SendSize(window);
}

void SetClientSize(WindowHandle window, int32_t width, int32_t height) {
  if (!headless::IsWindow(window)) return;
  if (headless::ResizeClient(window, width, height) && !headless::IsControl(window)) headless::SendSize(window);
}

int32_t LineHeight(WindowHandle window) {
  static_cast<void>(window);
  return kLineHeight;
}

void ShowAs(WindowHandle window, int32_t command) {
  if (!headless::IsWindow(window)) return;
  constexpr int32_t hidden = 0;
  if (command == hidden) {
    Hide(window);
    return;
  }
  Show(window);
  if (headless::IsWindow(window)) headless::SendSize(window);
}

void Show(WindowHandle window) {
  if (!headless::IsWindow(window)) return;
  ShowInactive(window);
  if (window->parent != nullptr) return;
  ActivateWindow(window);
  if (FocusedWindow() == nullptr) SetFocusTo(window);
}

void ShowInactive(WindowHandle window) {
  if (!headless::IsWindow(window) || window->shown) return;
  window->shown = true;
  headless::InvalidateArea(window, headless::WholeClient(window), true);
}

void RaiseWindow(WindowHandle window) {
  // Windows don't cover each other here.
  static_cast<void>(window);
}

void Hide(WindowHandle window) {
  if (!headless::IsWindow(window)) return;
  window->shown = false;
  if (headless::HasFocusIn(window)) {
    SetFocusTo(window->parent != nullptr ? window->parent : headless::FindWindowOfKind(WindowKind::kFrame));
  }
}

bool IsShown(WindowHandle window) {
  if (!headless::IsWindow(window)) return false;
  for (const Window* each = window; each != nullptr; each = each->parent) {
    if (!each->shown) return false;
  }
  return true;
}

void SetScrollBar(WindowHandle window, ScrollBar bar, const ScrollState& state) {
  if (!headless::IsWindow(window)) return;
  ScrollState& kept = window->scrollBars[static_cast<int>(bar)];
  kept = state;
  SetScrollPosition(window, bar, state.position);
}

void SetScrollPosition(WindowHandle window, ScrollBar bar, int32_t position) {
  if (!headless::IsWindow(window)) return;
  ScrollState& state = window->scrollBars[static_cast<int>(bar)];
  // The thumb stops one page before the end.
  const int64_t last = int64_t{state.maximum} - std::max(state.page - 1, 0);
  state.position = static_cast<int32_t>(std::max<int64_t>(std::min<int64_t>(position, last), 0));
}

// Bars take no room here.
void ShowScrollBars(WindowHandle window, bool show) {
  static_cast<void>(window);
  static_cast<void>(show);
}

ScrollState ReadScrollBar(WindowHandle window, ScrollBar bar) {
  return headless::IsWindow(window) ? window->scrollBars[static_cast<int>(bar)] : ScrollState{};
}

}  // namespace sorvel::platform
