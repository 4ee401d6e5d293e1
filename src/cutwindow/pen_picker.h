#pragma once

#include <cstdint>

#include "imaging/indexed_image.h"
#include "imaging/pen.h"
#include "platform/drawing.h"
#include "platform/window.h"

namespace sorvel {

// The small popup with which the pen is chosen: a row of plain colours and pen sizes above three rows of tones.
class PenPicker final : public platform::WindowObject {
 public:
  static constexpr int32_t kWindowWidth = 230;
  static constexpr int32_t kWindowHeight = 62;

  PenPicker();

  // Shows the window with its left top corner near a place of the screen, moved so that it stays on the screen, and
  // doesn't activate it. From now on it edits this pen, which isn't owned and must outlive the picker or the next call.
  // Without a window it only keeps the pen.
  void Show(int32_t screenX, int32_t screenY, PenSpec* editedPen);
  void Hide();

  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  PenSpec* pen;
  platform::PaletteHandle palette = nullptr;  // not owned; for displays that have one

 private:
  void DrawColors();
  void DrawSizes();
  void Paint(platform::DeviceContext* context);
  bool IsChosen(int32_t column, int32_t row) const;
  void Pick(Point place);

  IndexedImage image;
};

}  // namespace sorvel
