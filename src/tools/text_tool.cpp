#include <algorithm>

#include "foundation/arithmetic.h"
#include "foundation/shared_string.h"
#include "platform/fonts.h"
#include "tools/tool.h"

namespace sorvel {

namespace {

// Calls the function with each line and its length. Lines end with a carriage return and its line feed.
template <typename LineFunction>
void ForEachLine(const char* text, LineFunction function) {
  while (*text != '\0') {
    int32_t length = 0;
    while (text[length] != '\0' && text[length] != '\r') length++;
    function(text, length);
    text += length;
    if (*text == '\r') text++;
    if (*text == '\n') text++;
  }
}

// The first click asks for the text, the second one places it.
class TextTool final : public Tool {
 public:
  ~TextTool() override { AssignString(&text, ""); }

  void End() override { clicks = kNoClick; }

 protected:
  void Press(const ToolInput&) override {
    if (clicks < kLostClick) clicks++;
  }

  void Move(const ToolInput& input) override {
    if (clicks != kNoClick) ShowTextFrame(input);
  }

  void Release(const ToolInput& input) override {
    if (clicks == kAskForText) {
      AskForText(input);
    } else if (clicks == kPlaceText) {
      PlaceText(input);
    } else {
      Abandon(input);
    }
  }

  void RightRelease(const ToolInput& input) override {
    if (clicks == kNoClick) {
      input.OpenPenPicker(input.mouse);
    } else {
      Abandon(input);
    }
  }

  void Pulse(const ToolInput& input) override { input.HideOverlay(); }

 private:
  // The count is that of presses.
  enum Clicks : int32_t { kNoClick = 0, kAskForText = 1, kPlaceText = 2, kLostClick = 3 };

  void Abandon(const ToolInput& input) {
    input.HideOverlay();
    clicks = kNoClick;
  }

  void AskForText(const ToolInput& input) {
    // A move with the button down may have shown the frame of the last text.
    input.HideOverlay();
    if (!input.window->host->EditText(&text)) {
      clicks = kNoClick;
      return;
    }
    MeasureText(*input.window);
    ShowTextFrame(input);
  }

  void MeasureText(const CutWindow& window) {
    int32_t longest = 0;
    int64_t depth = 0;
    lineHeight = 0;
    ForEachLine(text, [&](const char* line, int32_t length) {
      int32_t lineLength = 0;
      lineHeight = 0;
      if (textToolFont.handle != nullptr) {
        platform::MeasureText(window.window, textToolFont.handle, line, length, &lineLength, &lineHeight);
      }
      longest = std::max(longest, lineLength);
      depth += int64_t{lineHeight} + textToolFont.spacing;
    });
    if (depth != 0) depth -= textToolFont.spacing;
    width = textToolFont.IsVertical() ? Saturated(depth) : longest;
    height = textToolFont.IsVertical() ? longest : Saturated(depth);
  }

  // The rectangle of the text with this left top corner.
  Rect BlockAt(Point leftTop) const { return {leftTop.x, leftTop.y, width, height}; }

  void ShowTextFrame(const ToolInput& input) {
    corner = input.point;
    const Point farCorner = {SaturatingAdd(corner.x, width), SaturatingAdd(corner.y, height)};
    input.ShowFrame(input.ToWindow(corner, farCorner));
  }

  // Draws the text on the view, as the font engine gives it.
  void DrawTextOnView(CutWindow* window, const Rect& block) const {
    if (window->view.bitmapHandle == nullptr || textToolFont.handle == nullptr) return;
    const bool isVertical = textToolFont.IsVertical();
    int64_t x = isVertical ? int64_t{block.x} + block.width : block.x;
    int64_t y = block.y;
    const int64_t step = int64_t{lineHeight} + textToolFont.spacing;
    ForEachLine(text, [&](const char* line, int32_t length) {
      platform::DrawTextLine(window->view.bitmapHandle, textToolFont.handle, Saturated(x), Saturated(y), line, length);
      (isVertical ? x : y) += isVertical ? -step : step;
    });
  }

  void PlaceText(const ToolInput& input) {
    CutWindow* const window = input.window;
    window->SaveUndo();
    // If a repaint removed the frame, the text goes to the mouse.
    const Point place = input.overlay->IsShown(window) ? corner : input.point;
    input.HideOverlay();
    Point inCut = place;
    window->LayerToCut(&inCut, 1);
    const Rect block = BlockAt(inCut);
    // The view is scratch memory here: pixels that aren't 0 afterwards belong to glyphs.
    window->view.FillRect(block.x, block.y, block.width, block.height, kTransparent);
    DrawTextOnView(window, block);
    input.cell->StampImage(place.x, place.y, &window->view, block.x, block.y, block.width, block.height, currentPen,
                           maskFlags);
    // Glyphs may hang over the block by less than their height.
    const int64_t margin = lineHeight;
    window->RepaintArea(Saturated(block.x - margin), Saturated(block.y - margin), Saturated(block.width + 2 * margin),
                        Saturated(block.height + 2 * margin), false);
    input.ReportStep(BlockAt(place));
    clicks = kNoClick;
  }

  int32_t clicks = kNoClick;
  char* text = EmptyString;  // owned string field; stays for the next use
  int32_t width = 0;         // of the text, in pixels of the drawing
  int32_t height = 0;
  int32_t lineHeight = 0;
  Point corner;  // of the frame, in layer coordinates
};

}  // namespace

std::unique_ptr<Tool> MakeTextTool() {
  return std::make_unique<TextTool>();
}

}  // namespace sorvel
