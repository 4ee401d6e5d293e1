#include <algorithm>

#include "foundation/arithmetic.h"
#include "foundation/shared_string.h"
#include "platform/fonts.h"
#include "tools/tool_functions.h"
#include "tools/tool_state.h"

namespace sorvel {

namespace {

// The first click asks for the text, the second one places it. The count is that of presses.
enum TextClick : int32_t { kNoClick = 0, kAskForText = 1, kPlaceText = 2, kLostClick = 3 };

struct TextTool {
  int32_t clicks = kNoClick;
  char* text = EmptyString;  // owned string field; stays for the next use
  int32_t width = 0;         // of the text, in pixels of the drawing
  int32_t height = 0;
  int32_t lineHeight = 0;
  Point corner;  // of the frame, in layer coordinates
};
TextTool gText;

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

void MeasureText(const CutWindow& window) {
  int32_t longest = 0;
  int64_t depth = 0;
  gText.lineHeight = 0;
  ForEachLine(gText.text, [&](const char* line, int32_t length) {
    int32_t lineLength = 0;
    gText.lineHeight = 0;
    if (textToolFont.handle != nullptr) {
      platform::MeasureText(window.window, textToolFont.handle, line, length, &lineLength, &gText.lineHeight);
    }
    longest = std::max(longest, lineLength);
    depth += int64_t{gText.lineHeight} + textToolFont.spacing;
  });
  if (depth != 0) depth -= textToolFont.spacing;
  gText.width = textToolFont.IsVertical() ? Saturated(depth) : longest;
  gText.height = textToolFont.IsVertical() ? longest : Saturated(depth);
}

// The text's place in the coordinates of its corner.
Rect TextBlock(Point corner) {
  return {corner.x, corner.y, gText.width, gText.height};
}

void ShowTextFrame(const ToolInput& input) {
  const Point corner = input.point;
  gText.corner = corner;
  const Point farCorner = {SaturatingAdd(corner.x, gText.width), SaturatingAdd(corner.y, gText.height)};
  ShowFrame(input.window, ToWindowBounds(input.window, corner, farCorner));
}

void AskForText(const ToolInput& input) {
  // A frame of the last text may follow the button that is down.
  HideOverlay(input.window);
  if (!input.window->host->EditText(&gText.text)) {
    gText.clicks = kNoClick;
    return;
  }
  MeasureText(*input.window);
  ShowTextFrame(input);
}

// Draws the text on the view, as the font engine gives it.
void DrawTextOnView(CutWindow* window, const Rect& block) {
  if (window->view.bitmapHandle == nullptr || textToolFont.handle == nullptr) return;
  const bool isVertical = textToolFont.IsVertical();
  int64_t x = isVertical ? int64_t{block.x} + block.width : block.x;
  int64_t y = block.y;
  const int64_t step = int64_t{gText.lineHeight} + textToolFont.spacing;
  ForEachLine(gText.text, [&](const char* line, int32_t length) {
    platform::DrawTextLine(window->view.bitmapHandle, textToolFont.handle, Saturated(x), Saturated(y), line, length);
    (isVertical ? x : y) += isVertical ? -step : step;
  });
}

void PlaceText(const ToolInput& input) {
  CutWindow* const window = input.window;
  window->SaveUndo();
  // A frame that a repaint took away is where the mouse is now.
  const Point place = IsOverlayShown(window) ? gText.corner : input.point;
  HideOverlay(window);
  Point corner = place;
  window->LayerToCut(&corner, 1);
  const Rect block = TextBlock(corner);
  // The view serves as paper: what isn't 0 on it afterwards is glyph.
  window->view.FillRect(block.x, block.y, block.width, block.height, kTransparent);
  DrawTextOnView(window, block);
  input.cell->StampImage(place.x, place.y, &window->view, block.x, block.y, block.width, block.height, currentPen,
                         maskFlags);
  window->undoRect = TextBlock(place);
  // Glyphs may hang over the block by less than their height.
  const int64_t margin = gText.lineHeight;
  window->RepaintArea(Saturated(block.x - margin), Saturated(block.y - margin), Saturated(block.width + 2 * margin),
                      Saturated(block.height + 2 * margin), false);
  RepaintLayerArea(window, window->undoRect);
  gText.clicks = kNoClick;
}

}  // namespace

void RunText(uint32_t message, const ToolInput& input) {
  CutWindow* const window = input.window;
  switch (message) {
    case platform::kMessageLeftDown:
      if (gText.clicks < kLostClick) gText.clicks++;
      break;
    case platform::kMessageLeftUp:
      if (gText.clicks == kAskForText) {
        AskForText(input);
      } else if (gText.clicks == kPlaceText) {
        PlaceText(input);
      } else {
        HideOverlay(window);
        gText.clicks = kNoClick;
      }
      break;
    case platform::kMessageMouseMove:
      if (gText.clicks != kNoClick) ShowTextFrame(input);
      break;
    case platform::kMessageRightUp:
      if (gText.clicks == kNoClick) {
        OpenPenPicker(window, input.mouse);
      } else {
        HideOverlay(window);
        gText.clicks = kNoClick;
      }
      break;
    case platform::kMessageUser:
      HideOverlay(window);
      break;
    default:
      break;
  }
}

void EndTextTool() {
  gText.clicks = kNoClick;
}

void ResetTextTool() {
  AssignString(&gText.text, "");
  gText = TextTool{};
}

}  // namespace sorvel
