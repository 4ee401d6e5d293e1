#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cutwindow/cut_window.h"
#include "cutwindow/drawing_settings.h"
#include "foundation/shared_string.h"
#include "platform/headless/headless.h"
#include "platform/window.h"
#include "resources/ids.h"
#include "shell/entry.h"
#include "support/test_images.h"
#include "tools/tool_table.h"

namespace sorvel {

static inline void PrintTo(const Point& point, std::ostream* out) {
  *out << "(" << point.x << ", " << point.y << ")";
}

static inline void PrintTo(const Bounds& bounds, std::ostream* out) {
  *out << "{" << bounds.left << ", " << bounds.top << ", " << bounds.right << ", " << bounds.bottom << "}";
}

namespace testtools {

// As much of a frame as cut windows and tools need.
class ToolHost final : public CutWindowHost {
 public:
  ToolHost() : CutWindowHost(AllTools()) {}

  CutWindow* ActiveCut() override {
    return static_cast<CutWindow*>(platform::ObjectOf(platform::ActiveMdiChild(mdiClient)));
  }

  int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control) override {
    if (toolbox->Has(id)) {
      SelectTool(id);
      return 0;
    }
    CutWindow* cut = ActiveCut();
    return cut != nullptr ? cut->OnCommand(code, id, control) : 1;
  }

  void SendCommand(int32_t id) override { OnCommand(0, id, nullptr); }

  void SelectTool(int32_t id) {
    if (id == currentTool) return;
    if (ActiveCut() != nullptr) ActiveCut()->Pulse();
    previousTool = currentTool;
    currentTool = id;
    if (ActiveCut() != nullptr) ActiveCut()->Pulse();
  }

  void RefreshPanels(CutWindow*) override {}
  void CommitPanels(CutWindow*) override {}
  void CommitTyping(CutWindow*) override {}
  void RefreshLayerLine(CutWindow*) override {}
  void SelectCutLine(CutWindow*) override {}
  void TogglePanels() override {}
  bool AskSaveCut(CutWindow*) override { return true; }
  void CutGone(CutWindow*) override {}
  void StopAnimation() override {}
  int32_t PlayBuffer(Buffer<uint8_t>, int32_t) override { return 1; }

  bool EditText(char** text) override {
    ++textDialogs;
    if (!acceptsText) return false;
    AssignString(text, answeredText.c_str());
    return true;
  }

  platform::WindowHandle mdiClient = nullptr;
  bool acceptsText = true;
  std::string answeredText;
  int32_t textDialogs = 0;
};

// A cut of 64 by 64 pixels with one layer and one blank cell of that size, in a window of exactly that client size at
// 1/1, so that window, cut and layer coordinates are the same until a test changes one of them.
class ToolTest : public ::testing::Test {
 protected:
  static constexpr int32_t kSide = 64;
  static constexpr uint32_t kControl = platform::kKeyControl;

  void SetUp() override {
    platform::headless::Reset();
    ResetProgram();
    platform::headless::SetClientSize(kSide, kSide);
    host.frameWindow = platform::MakeFrameWindow("Frame", "", 103, nullptr);
    host.mdiClient = platform::MakeMdiClient(host.frameWindow, kMdiClientId, 0, 0);
    platform::MakePopupWindow("Picker", host.frameWindow, PenPicker::kWindowWidth, PenPicker::kWindowHeight,
                              &host.penPicker);
    cut = OpenCut(kSide, kSide);
  }

  void TearDown() override {
    while (host.ActiveCut() != nullptr) CloseActive();
    platform::DestroyWindow(host.frameWindow);
    ResetProgram();
    platform::headless::Reset();
  }

  CutWindow* OpenCut(int32_t width, int32_t height) {
    CutWindow* opened = new CutWindow(&host, width, height, 24, "", 0);
    opened->AddFrame();
    opened->AddLayer("A", width, height, &opened->prototype);
    opened->AttachLayer(0, 0, 0);
    opened->Create(host.mdiClient);
    opened->RepaintAll();
    platform::headless::DeliverPaint(opened->window);
    return opened;
  }

  void CloseActive() { platform::DestroyMdiChild(host.mdiClient, platform::ActiveMdiChild(host.mdiClient)); }

  void Activate(CutWindow* window) { platform::ActivateMdiChild(host.mdiClient, window->window); }

  void UseTool(int32_t tool) { host.SelectTool(tool); }

  // Messages of the mouse to the active cut.
  void Mouse(uint32_t message, int32_t x, int32_t y, uint32_t keys = 0) {
    platform::Send(host.ActiveCut()->window, message, keys, platform::PackPoint({x, y}));
  }
  void Move(int32_t x, int32_t y, uint32_t keys = 0) { Mouse(platform::kMessageMouseMove, x, y, keys); }
  void Press(int32_t x, int32_t y, uint32_t keys = 0) { Mouse(platform::kMessageLeftDown, x, y, keys); }
  void Release(int32_t x, int32_t y, uint32_t keys = 0) { Mouse(platform::kMessageLeftUp, x, y, keys); }
  void Click(int32_t x, int32_t y, uint32_t keys = 0) {
    Press(x, y, keys);
    Release(x, y, keys);
  }
  void Drag(int32_t x0, int32_t y0, int32_t x1, int32_t y1, uint32_t keys = 0) {
    Press(x0, y0, keys);
    Move(x1, y1, keys);
    Release(x1, y1, keys);
  }
  void RightRelease(int32_t x, int32_t y, uint32_t keys = 0) { Mouse(platform::kMessageRightUp, x, y, keys); }
  void RightClick(int32_t x, int32_t y, uint32_t keys = 0) {
    Mouse(platform::kMessageRightDown, x, y, keys);
    RightRelease(x, y, keys);
  }
  void Command(int32_t id) { host.OnCommand(0, id, nullptr); }

  CellImage* Cell(CutWindow* window = nullptr) {
    int32_t x = 0;
    int32_t y = 0;
    return (window != nullptr ? window : cut)->CurrentCell(&x, &y);
  }
  int32_t Pixel(int32_t x, int32_t y) { return Cell()->GetPixel(x, y); }

  // Where the cell isn't transparent, row by row.
  std::vector<Point> Inked(CutWindow* window = nullptr) {
    std::vector<Point> points;
    CellImage* cell = Cell(window);
    for (int32_t y = 0; y < cell->height; ++y) {
      for (int32_t x = 0; x < cell->width; ++x) {
        if (cell->GetPixel(x, y) != 0) points.push_back({x, y});
      }
    }
    return points;
  }
  size_t InkCount(CutWindow* window = nullptr) { return Inked(window).size(); }
  size_t CountOf(int32_t value) {
    size_t count = 0;
    for (const Point& point : Inked()) count += Pixel(point.x, point.y) == value ? 1u : 0u;
    return count;
  }
  void Paint(int32_t x, int32_t y, int32_t width, int32_t height, int32_t value) {
    Cell()->FillRect(x, y, width, height, value);
    cut->RepaintAll();
  }

  // What the window shows, and what it would show without any overlay.
  using Screen = std::vector<platform::ColorEntry>;
  static size_t Differences(const Screen& a, const Screen& b) {
    size_t count = a.size() == b.size() ? 0 : 1;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
      if (a[i].red != b[i].red || a[i].green != b[i].green || a[i].blue != b[i].blue) ++count;
    }
    return count;
  }
  static Screen ScreenOf(CutWindow* window) { return window->window->pixels; }
  static Screen CleanScreenOf(CutWindow* window) {
    const Screen shown = ScreenOf(window);
    platform::InvalidateClient(window->window, false);
    platform::headless::PaintInvalid(window->window);
    Screen clean = ScreenOf(window);
    window->window->pixels = shown;
    return clean;
  }
  // How many pixels of the screen an overlay inverts.
  size_t OverlaySize(CutWindow* window = nullptr) {
    if (window == nullptr) window = cut;
    return Differences(ScreenOf(window), CleanScreenOf(window));
  }

  // The view as it is, and as the document says.
  bool ViewIsComposed() {
    CellImage* now = cut->view.MakeBlank();
    now->Composite(0, 0, &cut->view, 0, 0, cut->width, cut->height, 0, 0, 0, nullptr);
    cut->RepaintArea(0, 0, cut->width, cut->height, false);
    bool same = true;
    for (int32_t y = 0; y < cut->height; ++y) {
      for (int32_t x = 0; x < cut->width; ++x) same = same && now->GetPixel(x, y) == cut->view.GetPixel(x, y);
    }
    cut->view.Composite(0, 0, now, 0, 0, cut->width, cut->height, 0, 0, 0, nullptr);
    DestroyImage(now);
    return same;
  }

  bool IsPickerOpen() { return host.penPicker.window->shown; }
  Point PickerPlace() {
    const Bounds bounds = platform::ScreenBounds(host.penPicker.window);
    return {bounds.left, bounds.top};
  }

  // A frame behind the current one that shows the same records, and becomes current.
  Frame* AddFrameLikeCurrent() {
    Frame* old = cut->CurrentFrame();
    Frame* frame = cut->AddFrame();
    frame->CopyFrom(old);
    return frame;
  }

  void StepFrameBack() {
    cut->PreviousFrame();
    cut->RepaintAll();
  }

  ToolHost host;
  CutWindow* cut = nullptr;
};

}  // namespace testtools
}  // namespace sorvel
