#include "tools/tool_table.h"

#include <iterator>

#include "resources/ids.h"
#include "tools/tool.h"

namespace sorvel {

namespace {

struct ToolEntry {
  int32_t number;
  std::unique_ptr<Tool> (*make)();
};

constexpr ToolEntry kTools[] = {
#define SORVEL_TOOL(number, make) {number, make},
#include "tools/tools.inc"
#undef SORVEL_TOOL
};

class ToolTable final : public Toolbox {
 public:
  ToolTable() { Reset(); }

  bool Has(int32_t number) const override { return Find(number) != nullptr; }

  void Run(int32_t number, uint32_t message, uint32_t keys, intptr_t place, CutWindow* window) override {
    Tool* const tool = Find(number);
    if (tool == nullptr) return;
    runningWindow = window;
    // Keys can run the zoom tool while another tool stays the current one.
    if (number == window->host->currentTool) Enter(number, window);
    ToolInput input = {};
    input.window = window;
    input.overlay = &overlay;
    input.message = message;
    input.isControlDown = (keys & platform::kKeyControl) != 0;
    tool->Run(input, place);
  }

  void Forget(const CutWindow* window) override {
    overlay.Forget(window);
    if (runningWindow != window) return;
    runningWindow = nullptr;
    for (const std::unique_ptr<Tool>& tool : tools) tool->End();
  }

  void EndGesture(const CutWindow* window) override {
    overlay.Hide(window);
    for (const std::unique_ptr<Tool>& tool : tools) tool->Cancel();
  }

  void Reset() {
    overlay = Overlay{};
    for (size_t i = 0; i < std::size(kTools); ++i) tools[i] = kTools[i].make();
    running = 0;
    runningWindow = nullptr;
  }

 private:
  Tool* Find(int32_t number) const {
    for (size_t i = 0; i < std::size(kTools); ++i) {
      if (kTools[i].number == number) return tools[i].get();
    }
    return nullptr;
  }

  // The last pulse before a change of the tool may have put the old tool's overlay on the screen.
  void Enter(int32_t number, const CutWindow* window) {
    if (number == running) return;
    overlay.Hide(window);
    if (Tool* const left = Find(running)) left->Leave();
    running = number;
  }

  Overlay overlay;
  std::unique_ptr<Tool> tools[std::size(kTools)];
  int32_t running = 0;                       // the tool that took over last; 0 for none
  const CutWindow* runningWindow = nullptr;  // of the last message; only compared
};

ToolTable& Table() {
  static ToolTable table;
  return table;
}

}  // namespace

Toolbox* AllTools() {
  return &Table();
}

void ResetTools() {
  Table().Reset();
}

}  // namespace sorvel
