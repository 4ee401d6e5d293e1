#include <algorithm>

#include "platform/headless/internal.h"

// MDI children: which one is active, and the messages about it.
namespace sorvel::platform {

namespace {

constexpr int32_t kFirstWidth = 640;
constexpr int32_t kFirstHeight = 480;
// The largest size that kMessageSize can carry.
constexpr int32_t kLargestSide = 0x7FFF;

int32_t gClientWidth = kFirstWidth;
int32_t gClientHeight = kFirstHeight;

void SendActivation(Window* window, Window* loser, Window* gainer) {
  Send(window, kMessageMdiActivate, reinterpret_cast<uintptr_t>(loser), reinterpret_cast<intptr_t>(gainer));
}

void MoveToFront(std::vector<Window*>* order, Window* child) {
  order->erase(std::remove(order->begin(), order->end(), child), order->end());
  order->insert(order->begin(), child);
}

// The child that was active before `child`.
Window* NextOf(const Window* mdiClient, const Window* child) {
  for (Window* other : mdiClient->activationOrder) {
    if (other != child && !other->ending) return other;
  }
  return nullptr;
}

// `loser` is null if it no longer exists.
void GainActivation(Window* mdiClient, Window* child, Window* loser) {
  mdiClient->activeChild = child;
  MoveToFront(&mdiClient->activationOrder, child);
  SendActivation(child, loser, child);
  if (headless::IsWindow(child) && ActiveMdiChild(mdiClient) == child) SetFocusTo(child);
}

}  // namespace

namespace headless {

void SizeNewChild(Window* child) {
  ResizeClient(child, gClientWidth, gClientHeight);
}

void ActivateChild(Window* mdiClient, Window* child) {
  Window* loser = mdiClient->activeChild;
  if (loser == child) return;
  // The old window stays the active one until it has answered: it stores what the panels show of it.
  if (loser != nullptr) SendActivation(loser, loser, child);
  if (IsWindow(child) && !child->ending) GainActivation(mdiClient, child, IsWindow(loser) ? loser : nullptr);
}

void EndChild(Window* child) {
  Window* mdiClient = child->parent;
  if (child->ending) return;
  const bool wasActive = mdiClient->activeChild == child;
  const bool hadFocus = FocusedWindow() != nullptr;
  if (wasActive) {
    SendActivation(child, child, NextOf(mdiClient, child));
    if (!IsWindow(child) || child->ending) return;
  }
  EndWindow(child);
  if (wasActive && IsWindow(mdiClient) && mdiClient->activeChild == nullptr) {
    Window* next = NextOf(mdiClient, nullptr);
    if (next != nullptr) GainActivation(mdiClient, next, nullptr);
  }
  if (hadFocus) KeepFocus();
}

void SetClientSize(int32_t width, int32_t height) {
  gClientWidth = std::clamp(width, 0, kLargestSide);
  gClientHeight = std::clamp(height, 0, kLargestSide);
  // A message may have destroyed a window.
  const std::vector<Window*> windows(AllWindows().begin(), AllWindows().end());
  for (Window* window : windows) {
    if (!IsWindow(window) || window->kind != WindowKind::kMdiChild) continue;
    if (ResizeClient(window, gClientWidth, gClientHeight)) SendSize(window);
  }
}

void ResetMdi() {
  gClientWidth = kFirstWidth;
  gClientHeight = kFirstHeight;
}

}  // namespace headless

WindowHandle ActiveMdiChild(WindowHandle mdiClient) {
  return headless::IsWindow(mdiClient) ? mdiClient->activeChild : nullptr;
}

void ActivateMdiChild(WindowHandle mdiClient, WindowHandle child) {
  if (!headless::IsWindow(mdiClient) || !headless::IsWindow(child) || child->parent != mdiClient) return;
  headless::ActivateChild(mdiClient, child);
}

void DestroyMdiChild(WindowHandle mdiClient, WindowHandle child) {
  if (!headless::IsWindow(mdiClient) || !headless::IsWindow(child) || child->parent != mdiClient) return;
  headless::EndChild(child);
}

}  // namespace sorvel::platform
