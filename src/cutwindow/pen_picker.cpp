#include "cutwindow/pen_picker.h"

#include "cutwindow/drawing_settings.h"

namespace sorvel {

namespace {

constexpr int32_t kColumns = 16;
constexpr int32_t kRows = 4;
constexpr int32_t kSquare = 12;
constexpr int32_t kPitch = 14;
constexpr int32_t kFirst = 4;     // x and y of the first square
constexpr int32_t kBorder = 2;    // of the window around the image, and of a square's edge
constexpr int32_t kEdgeBox = 16;  // a square with its edge
constexpr int32_t kImageWidth = 232;
constexpr int32_t kImageHeight = 64;

// The first row: plain colours, and then the sizes of the pen.
constexpr int32_t kPlainColors[] = {1, 9, 10, 11, 12, 0, 13, 14};
constexpr int32_t kFirstSize = 8;
constexpr Point kFirstStamp = {122, 10};
constexpr Rect kSizesArea = {114, 4, 112, 12};
constexpr int32_t kChosenSizeColor = 1;
constexpr int32_t kSizeColor = 3;

}  // namespace

PenPicker::PenPicker() : pen(&currentPen) {}

void PenPicker::Show(int32_t screenX, int32_t screenY, PenSpec* editedPen) {
  pen = editedPen;
  if (window == nullptr) return;
  const Point screen = platform::ScreenSize();
  const int32_t x = screenX + kWindowWidth - kBorder > screen.x ? screen.x - kWindowWidth : screenX - kBorder;
  const int32_t y = screenY + kWindowHeight - kBorder > screen.y ? screen.y - kWindowHeight : screenY - kBorder;
  platform::MoveWindow(window, x, y, kWindowWidth, kWindowHeight, true);
  // The pen may have changed since it was painted.
  platform::InvalidateClient(window, false);
  platform::ShowInactive(window);
}

void PenPicker::Hide() {
  if (window != nullptr) platform::Hide(window);
}

intptr_t PenPicker::WindowProc(uint32_t message, uintptr_t first, intptr_t second) {
  const platform::WindowHandle self = window;
  switch (message) {
    case platform::kMessageCreate:
      DrawColors();
      return 0;
    case platform::kMessageDestroy:
      window = nullptr;
      break;
    case platform::kMessagePaint: {
      platform::DeviceContext* context = platform::BeginPainting(self, nullptr);
      Paint(context);
      platform::EndPainting(self, context);
      return 0;
    }
    case platform::kMessagePrintClient:
      Paint(platform::ContextOf(first));
      return 0;
    case platform::kMessageLeftDown:
    case platform::kMessageRightDown:
      Pick(platform::PointOf(second));
      platform::InvalidateClient(self, false);
      return 0;
    case platform::kMessageLeftUp:
      Hide();
      return 0;
    case platform::kMessageMouseActivate:
      return platform::kNoActivate;
    default:
      break;
  }
  return platform::DefaultHandling(self, message, first, second);
}

void PenPicker::DrawColors() {
  if (!image.Resize(kImageWidth, kImageHeight, kToneWhite)) return;
  image.Fill(kToneWhite);
  for (int32_t column = 0; column < kFirstSize; column++) {
    image.FillRect(kFirst + kPitch * column, kFirst, kSquare, kSquare, kPlainColors[column]);
  }
  for (int32_t row = 1; row < kRows; row++) {
    for (int32_t column = 0; column < kColumns; column++) {
      const PenSpec tone = {0, column, row, row + 1};
      image.FillBox(kFirst + kPitch * column, kFirst + kPitch * row, kSquare, kSquare, tone, 0, nullptr);
    }
  }
}

void PenPicker::DrawSizes() {
  image.FillRect(kSizesArea.x, kSizesArea.y, kSizesArea.width, kSizesArea.height, kToneWhite);
  for (int32_t size = 0; size < kColumns - kFirstSize; size++) {
    const bool isChosen = size == SizeOfShape(pen->shape);
    const PenSpec stamp = {penSign * size + kSmallestShape, 0, 0, isChosen ? kChosenSizeColor : kSizeColor};
    image.Stamp(kFirstStamp.x + kPitch * size, kFirstStamp.y, stamp, 0, nullptr);
  }
}

void PenPicker::Paint(platform::DeviceContext* context) {
  DrawSizes();
  if (palette != nullptr && platform::HasPalette(context)) platform::SelectDrawingPalette(context, palette, false);
  if (image.bitmapHandle != nullptr) {
    const Bounds inner = {kBorder, kBorder, kWindowWidth, kWindowHeight};
    platform::StretchBitmap(context, inner, image.bitmapHandle, inner);
  }
  platform::DrawRectEdge(context, {0, 0, kWindowWidth, kWindowHeight}, platform::EdgeStyle::kRaised);
  for (int32_t row = 0; row < kRows; row++) {
    for (int32_t column = 0; column < kColumns; column++) {
      const int32_t left = kFirst - kBorder + kPitch * column;
      const int32_t top = kFirst - kBorder + kPitch * row;
      platform::DrawRectEdge(context, {left, top, left + kEdgeBox, top + kEdgeBox},
                             IsChosen(column, row) ? platform::EdgeStyle::kSunken : platform::EdgeStyle::kEtched);
    }
  }
}

// Whether a square is that of the pen. A chosen size is marked by its colour instead of its edge.
bool PenPicker::IsChosen(int32_t column, int32_t row) const {
  if (row > 0) return pen->colorA == row && pen->tone == column;
  return column < kFirstSize && pen->colorA == 0 && pen->colorB == kPlainColors[column];
}

void PenPicker::Pick(Point place) {
  const auto isHit = [](int32_t coordinate, int32_t index) {
    const int32_t start = kFirst + kPitch * index;
    return coordinate >= start && coordinate <= start + kSquare;
  };
  for (int32_t row = 0; row < kRows; row++) {
    for (int32_t column = 0; column < kColumns; column++) {
      if (!isHit(place.x, column) || !isHit(place.y, row)) continue;
      if (row > 0) {
        pen->tone = column;
        pen->colorA = row;
        pen->colorB = row + 1;
      } else if (column < kFirstSize) {
        pen->colorA = 0;
        pen->colorB = kPlainColors[column];
        pen->tone = 0;
      } else {
        pen->shape = penSign * (column - kFirstSize) + kSmallestShape;
      }
      return;
    }
  }
}

}  // namespace sorvel
