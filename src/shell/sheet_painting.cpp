// How the time sheet's window looks. Only rows and columns in sight are read and drawn.

#include <algorithm>
#include <cstdio>
#include <string>

#include "cutwindow/cut_window.h"
#include "foundation/cursor_keeper.h"
#include "platform/menus.h"
#include "resources/ids.h"
#include "shell/main_frame.h"
#include "shell/sheet_window.h"

namespace sorvel {

namespace {

using platform::ColorEntry;
using Align = PixelCanvas::Align;

constexpr int32_t kFontSize = 15;
constexpr int32_t kPicturesAtOnce = 3;

constexpr ColorEntry kPaper = Rgb(255, 255, 255);
constexpr ColorEntry kInk = Rgb(20, 20, 20);
constexpr ColorEntry kPaleInk = Rgb(130, 130, 130);
constexpr ColorEntry kFace = Rgb(236, 236, 236);
constexpr ColorEntry kNowhere = Rgb(176, 176, 176);
constexpr ColorEntry kRowLine = Rgb(226, 226, 226);
constexpr ColorEntry kHalfLine = Rgb(168, 168, 168);
constexpr ColorEntry kSecondLine = Rgb(60, 60, 60);
constexpr ColorEntry kBorder = Rgb(140, 140, 140);
constexpr ColorEntry kLacking = Rgb(222, 222, 222);
constexpr ColorEntry kCurrent = Rgb(255, 236, 150);
constexpr ColorEntry kSelection = Rgb(40, 110, 220);
constexpr ColorEntry kDrag = Rgb(220, 40, 40);
constexpr int32_t kFrameStrength = 80;    // of the current colour, in 256 parts
constexpr int32_t kRecordStrength = 230;  // where the current record stands
constexpr int32_t kSelectionStrength = 70;

std::string TextOf(int32_t id) {
  char text[256];
  platform::ReadResourceText(id, text, sizeof(text));
  return text;
}

std::string Number(int64_t number) {
  return std::to_string(number);
}

}  // namespace

void SheetWindow::Paint(platform::DeviceContext* context) {
  canvas.Begin(window, kFontSize);
  const Bounds whole = {0, 0, canvas.Width(), canvas.Height()};
  canvas.Fill(whole, kNowhere);
  if (sheet == nullptr) {
    canvas.Text(whole, TextOf(kTextSheetNoCut), kInk, Align::kMiddle);
    canvas.Show(context);
    return;
  }
  const CursorKeeper<Frame*> keeper(&cut->frames);
  const int64_t endRow = std::min(topRow + RowsInSight() + 1, sheet->Rows());
  for (int64_t i = topRow; i < endRow; ++i) PaintRow(i);
  for (int32_t i = sheet->FrameOfRow(topRow); i < sheet->FrameCount() && sheet->FrameAt(i).firstRow < endRow; ++i) {
    PaintFrame(i, cut->frames.At(i), i > 0 ? cut->frames.At(i - 1) : nullptr);
  }
  const int32_t count = static_cast<int32_t>(sheet->Columns().size());
  const int32_t first = scrollX / kColumnWidth;
  const int32_t end = std::min((scrollX + canvas.Width() - FixedWidth()) / kColumnWidth + 1, count);
  canvas.Clip({FixedWidth(), kHeadHeight, canvas.Width(), canvas.Height()});
  for (int32_t i = first; i < end; ++i) {
    for (int64_t at = topRow; at < endRow; ++at) PaintSquare(i, at);
  }
  PaintCursor();
  canvas.ClipNothing();
  PaintHeads();
  if (draggedFrame >= 0) {
    const int32_t y = RowTop(dragRow);
    canvas.Fill({kTickWidth, y - 1, std::min(NotesLeft(), canvas.Width()), y + 2}, kDrag);
    const Bounds box = {FixedWidth() + 4, y + 3, FixedWidth() + 44, y + 21};
    canvas.Fill(box, kDrag);
    canvas.Text(box, Number(dragRow - sheet->FrameAt(draggedFrame).firstRow), kPaper, Align::kMiddle);
  }
  canvas.Show(context);
}

void SheetWindow::PaintHeads() {
  const int32_t width = canvas.Width();
  canvas.Fill({0, 0, width, kHeadHeight}, kFace);
  canvas.Text({0, 0, kTickWidth, kHeadHeight}, TextOf(kTextSheetTick), kInk, Align::kMiddle);
  canvas.Text({kTickWidth, 0, kTickWidth + kFrameWidth, kHeadHeight}, TextOf(kTextSheetFrame), kInk, Align::kMiddle);
  canvas.Clip({FixedWidth(), 0, width, kHeadHeight});
  const auto& columns = sheet->Columns();
  for (int32_t i = 0; i < static_cast<int32_t>(columns.size()); ++i) {
    const Bounds head = {ColumnLeft(i), 0, ColumnLeft(i) + kColumnWidth, kHeadHeight};
    if (head.right < 0 || head.left > width) continue;
    const SheetColumn& each = columns[static_cast<size_t>(i)];
    const bool isCurrent = each.record >= 0 && each.record == knownRecord;
    if (isCurrent) canvas.Fill(head, kCurrent);
    const bool fits = canvas.TextWidth(each.layer->ShownName()) <= kColumnWidth - 4;
    canvas.Text({head.left + 2, 0, head.right - 2, kHeadHeight}, each.layer->ShownName(),
                each.record >= 0 ? kInk : kPaleInk, fits ? Align::kMiddle : Align::kLeft);
    canvas.VerticalLine(head.right - 1, 0, kHeadHeight, kBorder);
  }
  const int32_t notes = NotesLeft();
  canvas.Text({notes + 8, 0, notes + kNotesWidth, kHeadHeight}, TextOf(kTextSheetNotes), kInk, Align::kLeft);
  canvas.ClipNothing();
  canvas.HorizontalLine(0, width, kHeadHeight - 1, kSecondLine);
  for (const int32_t x : {kTickWidth, kTickWidth + kFrameWidth, FixedWidth()}) {
    canvas.VerticalLine(x - 1, 0, std::min(RowTop(sheet->Rows()), canvas.Height()), kSecondLine);
  }
}

// The paper, the lines between rows and the number of the tick.
void SheetWindow::PaintRow(int64_t index) {
  const int32_t top = RowTop(index);
  const int32_t bottom = RowTop(index + 1);
  const int32_t right = std::min(NotesLeft() + kNotesWidth, canvas.Width());
  const SheetFrame& info = sheet->FrameAt(sheet->FrameOfRow(index));
  canvas.Fill({0, top, right, bottom}, kPaper);
  if (sheet->FrameOfRow(index) == knownFrame) canvas.Tint({0, top, right, bottom}, kCurrent, kFrameStrength);
  const int64_t tick = info.firstTick + index - info.firstRow + 1;
  const int64_t fps = std::max(cut->fps, 1);
  const bool isSecond = info.ticks > 0 && tick % fps == 0;
  const bool isHalf = info.ticks > 0 && fps % 2 == 0 && tick % (fps / 2) == 0;
  canvas.HorizontalLine(0, right, bottom - 1, isSecond ? kSecondLine : isHalf ? kHalfLine : kRowLine);
  const Bounds place = {0, top, kTickWidth - 5, bottom};
  if (info.ticks == 0) {
    canvas.Text(place, TextOf(kTextSheetStop), kInk, Align::kRight);
  } else if (isSecond) {
    canvas.Text(place, Number(tick / fps) + TextOf(kTextSheetSecond), kInk, Align::kRight);
  } else {
    canvas.Text(place, Number(tick), kPaleInk, Align::kRight);
  }
}

// The number, the key mark, the loop, fades, dissolves, the picture and the comment.
void SheetWindow::PaintFrame(int32_t index, Frame* shown, const Frame* before) {
  const SheetFrame& info = sheet->FrameAt(index);
  const int32_t top = RowTop(info.firstRow);
  const int32_t bottom = RowTop(sheet->LastRowOf(index) + 1);
  const int32_t rowBottom = top + RowHeight();
  const int32_t left = kTickWidth;
  const int32_t marks = left + kFrameWidth;
  const int32_t notes = NotesLeft();
  canvas.Clip({0, kHeadHeight, canvas.Width(), canvas.Height()});
  canvas.HorizontalLine(left, marks - 20, top - 1, kSecondLine);
  canvas.Text({left, top, marks - 22, rowBottom}, Number(index + 1), kInk, Align::kRight);
  if (shown->IsKey()) {
    const int32_t middle = (top + rowBottom) / 2;
    for (int32_t i = -4; i <= 4; ++i) {
      const int32_t half = 4 - (i < 0 ? -i : i);
      canvas.HorizontalLine(left + 8 - half, left + 9 + half, middle + i, kInk);
    }
  }
  if (info.loop > 1) {
    const int32_t bar = marks - 16;
    const bool isLast = index + 1 == sheet->FrameCount() || sheet->FrameAt(index + 1).loop == 1 ||
                        sheet->FrameAt(index + 1).isLoopStart;
    canvas.Fill({bar, top + (info.isLoopStart ? 2 : 0), bar + 2, bottom - (isLast ? 3 : 0)}, kInk);
    if (info.isLoopStart) {
      canvas.Fill({bar, top + 2, bar + 4, top + 4}, kInk);
      canvas.Line({bar + 5, top + 7}, {bar + 8, top + 10}, kInk);
      canvas.Line({bar + 8, top + 7}, {bar + 5, top + 10}, kInk);
      const Bounds place = bottom - top > RowHeight() ? Bounds{bar + 3, top + 10, marks - 1, top + 26}
                                                      : Bounds{bar + 8, top, marks - 1, rowBottom};
      canvas.Text(place, Number(info.loop), kInk, Align::kLeft);
    }
    if (isLast) canvas.Fill({bar, bottom - 4, bar + 4, bottom - 2}, kInk);
  }
  const int32_t brightness = shown->DecodedBrightness();
  if (brightness != kNeutralBrightness) {
    const uint8_t grey = static_cast<uint8_t>(std::clamp(brightness * 255 / 100, 0, 255));
    canvas.Fill({marks, top, marks + 7, bottom}, Rgb(grey, grey, grey));
    canvas.VerticalLine(marks + 7, top, bottom, kBorder);
  }
  if (brightness != (before != nullptr ? before->DecodedBrightness() : kNeutralBrightness)) {
    canvas.Text({marks + 8, top, marks + kMarkWidth - 1, rowBottom}, Number(brightness), kInk, Align::kLeft);
  }
  if (info.isTransition) {
    canvas.Line({marks + 1, top}, {marks + kMarkWidth - 3, bottom - 1}, kInk);
    canvas.Line({marks + kMarkWidth - 3, top}, {marks + 1, bottom - 1}, kInk);
  }
  if (hasPictures) {
    const int32_t x = marks + kMarkWidth + 1;
    canvas.Clip({x, std::max(top, kHeadHeight), x + FramePictures::kWidth, bottom - 1});
    if (const std::vector<uint8_t>* greys = pictures.Find(shown)) {
      canvas.Picture({x, top + 1, x + FramePictures::kWidth, top + 1 + FramePictures::kHeight}, *greys);
    }
  }
  canvas.Clip({FixedWidth(), kHeadHeight, canvas.Width(), canvas.Height()});
  const std::string text = (info.isTransition ? std::string("O.L ") : std::string()) + shown->comment;
  canvas.Text({notes + 8, top, notes + kNotesWidth, rowBottom}, text, kInk, Align::kLeft);
  canvas.VerticalLine(notes - 1, top, bottom, kSecondLine);
  canvas.ClipNothing();
}

void SheetWindow::PaintSquare(int32_t index, int64_t rowIndex) {
  const SheetSquare square = sheet->SquareAt(index, rowIndex);
  const Bounds place = SquareAt(index, rowIndex);
  const Bounds inner = {place.left, place.top, place.right - 1, place.bottom - 1};
  const int32_t middle = (place.left + place.right) / 2;
  const int32_t center = (place.top + place.bottom) / 2;
  const SheetColumn& each = sheet->Columns()[static_cast<size_t>(index)];
  const bool isCurrent = each.record >= 0 && each.record == knownRecord;
  if (square.mark == SheetMark::kNone) canvas.Fill(inner, kLacking);
  if (isCurrent && sheet->FrameOfRow(rowIndex) == knownFrame) canvas.Tint(inner, kCurrent, kRecordStrength);
  canvas.VerticalLine(place.right - 1, place.top, place.bottom, kBorder);
  const bool isHeld = square.mark == SheetMark::kCell || square.mark == SheetMark::kHold;
  switch (square.mark) {
    case SheetMark::kCell:
      canvas.Text(inner, Number(square.cell + 1), kInk, Align::kMiddle);
      break;
    case SheetMark::kHold:
      canvas.VerticalLine(middle, place.top, place.bottom, kInk);
      break;
    case SheetMark::kBlank:
      canvas.Line({middle - 4, center - 4}, {middle + 4, center + 4}, kInk);
      canvas.Line({middle + 4, center - 4}, {middle - 4, center + 4}, kInk);
      break;
    case SheetMark::kBlankHold:
      canvas.DottedLine(middle, place.top, place.bottom, kPaleInk);
      break;
    case SheetMark::kNone:
      break;
  }
  // A hold ends where another square doesn't go on with it.
  if (square.mark != SheetMark::kHold || !isHeld) return;
  const bool ends = rowIndex + 1 == sheet->Rows() || sheet->SquareAt(index, rowIndex + 1).mark != SheetMark::kHold;
  if (ends) canvas.HorizontalLine(middle - 4, middle + 5, place.bottom - 3, kInk);
}

void SheetWindow::PaintCursor() {
  if (sheet->Columns().empty()) return;
  const Bounds first = SquareAt(column, FirstSelected());
  const Bounds last = SquareAt(column, LastSelected());
  const Bounds area = {first.left - 1, first.top - 1, last.right, last.bottom};
  const bool hasFocus = platform::FocusedWindow() == window;
  canvas.Tint({first.left, first.top, last.right - 1, last.bottom - 1}, kSelection, hasFocus ? kSelectionStrength : 24);
  canvas.Frame(area, hasFocus ? kSelection : kBorder, 2);
  if (typed.empty()) return;
  const Bounds square = SquareAt(column, row);
  const Bounds box = {square.left + 1, square.top + 1, square.right - 2, square.bottom - 2};
  canvas.Fill(box, kPaper);
  canvas.Text(box, typed, kSelection, Align::kMiddle);
  const int32_t caret = (box.left + box.right + canvas.TextWidth(typed)) / 2 + 1;
  canvas.VerticalLine(std::min(caret, box.right - 1), box.top + 2, box.bottom - 2, kInk);
}

// Makes some of the pictures in sight that are missing or out of date.
void SheetWindow::MakePictures() {
  int32_t made = 0;
  if (sheet != nullptr && hasPictures && IsOpen()) {
    const CursorKeeper<Frame*> keeper(&cut->frames);
    const int64_t endRow = std::min(topRow + RowsInSight() + 1, sheet->Rows());
    for (int32_t i = sheet->FrameOfRow(topRow);
         i < sheet->FrameCount() && sheet->FrameAt(i).firstRow < endRow && made < kPicturesAtOnce; ++i) {
      Frame* shown = cut->frames.At(i);
      if (pictures.IsFresh(shown)) continue;
      pictures.Make(cut, shown);
      ++made;
    }
  }
  if (made == 0) {
    platform::KillWindowTimer(window, kPictureTimer);
  } else {
    platform::InvalidateClient(window, false);
  }
}

}  // namespace sorvel
