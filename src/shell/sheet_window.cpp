#include "shell/sheet_window.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "foundation/paths.h"
#include "foundation/settings.h"
#include "foundation/shift_jis.h"
#include "platform/dialogs.h"
#include "platform/menus.h"
#include "resources/ids.h"
#include "shell/main_frame.h"

namespace sorvel {

namespace {

constexpr uint32_t kPictureDelay = 60;
constexpr uint32_t kClientHit = 1;

// A window without a place of its own stands at the right of the frame.
constexpr int32_t kDefaultWidth = 420;
constexpr int32_t kDefaultMargin = 24;

constexpr uintptr_t kFrontTimer = 2;
constexpr int32_t kLeastWidth = 160;
constexpr int32_t kLeastHeight = 120;
constexpr int32_t kLeastInSight = 60;

// How near to the end of a frame a press drags it, in pixels.
constexpr int32_t kEndReach = 3;
constexpr size_t kMostDigits = 5;
constexpr int32_t kBackspace = 8;
// Digits of full width are two bytes each.
constexpr uintptr_t kFullLead = 0x82;
constexpr uintptr_t kFullZero = 0x4F;
constexpr uintptr_t kFullNine = 0x58;

constexpr int32_t kRowsOfNotch = 3;
// Scroll bars count in steps of 16 bits.
constexpr int64_t kMostSteps = 30000;

constexpr size_t kTextSize = 256;

}  // namespace

// Open and closed.

bool SheetWindow::IsOpen() const {
  return window != nullptr && platform::IsShown(window);
}

void SheetWindow::Toggle() {
  if (IsOpen()) {
    platform::Send(window, platform::kMessageClose, 0, 0);
    return;
  }
  if (window == nullptr) {
    char title[kTextSize];
    platform::ReadResourceText(kTextSheetTitle, title, sizeof(title));
    if (platform::MakeToolWindow(kSheetClass, title, frame->frameWindow, this) == nullptr) return;
    ReadPlace();
  }
  platform::Show(window);
  platform::SetFocusTo(window);
  RefreshPictures();
}

void SheetWindow::StayInFront() {
  if (IsOpen()) platform::SetWindowTimer(window, kFrontTimer, 1);
}

void SheetWindow::TogglePictures() {
  hasPictures = !hasPictures;
  pictures.Forget();
  if (!IsOpen()) return;
  RefreshPictures();
  Reveal(row);
}

void SheetWindow::ReadPlace() {
  char text[kTextSize];
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;
  int32_t height = 0;
  ReadSettingText(settings::kSheetPlace, text, sizeof(text));
  if (std::sscanf(text, "%d, %d, %d, %d", &left, &top, &width, &height) != 4) {
    const Bounds owner = platform::ScreenBounds(frame->frameWindow);
    width = kDefaultWidth;
    height = owner.Height() - 5 * kDefaultMargin;
    // Beside the canvas, as far as the screen has room.
    left = std::min(owner.right, platform::ScreenSize().x - width);
    top = owner.top + 4 * kDefaultMargin;
  }
  // It can be taken hold of on a smaller screen too.
  const Point screen = platform::ScreenSize();
  width = std::clamp(width, kLeastWidth, std::max(screen.x, kLeastWidth));
  height = std::clamp(height, kLeastHeight, std::max(screen.y, kLeastHeight));
  left = std::clamp(left, kLeastInSight - width, std::max(screen.x - kLeastInSight, 0));
  top = std::clamp(top, 0, std::max(screen.y - kLeastInSight, 0));
  platform::MoveWindow(window, left, top, width, height, true);
  knownPlace = platform::ScreenBounds(window);
}

void SheetWindow::RememberPlace() {
  const Bounds place = platform::ScreenBounds(window);
  if (place == knownPlace) return;
  knownPlace = place;
  char text[kTextSize];
  std::snprintf(text, sizeof(text), "%d, %d, %d, %d", place.left, place.top, place.Width(), place.Height());
  WriteSettingText(settings::kSheetPlace, text);
}

// The cut.

void SheetWindow::Forget(const CutWindow* gone) {
  if (cut != gone) return;
  cut = nullptr;
  sheet.reset();
  pictures.Forget();
  typed.clear();
  draggedFrame = -1;
  isSelecting = false;
  knownFrame = knownRecord = -1;
  column = 0;
  row = anchor = topRow = 0;
  scrollX = 0;
  if (window != nullptr) platform::InvalidateClient(window, false);
}

void SheetWindow::Refresh() {
  if (!IsOpen()) return;
  CutWindow* active = frame->ActiveCut();
  if (active != nullptr && active->frames.Count() == 0) active = nullptr;
  if (active != cut) {
    Forget(cut);
    cut = active;
    if (cut != nullptr) sheet = std::make_unique<TimeSheet>(cut);
  } else if (sheet != nullptr) {
    sheet->Read();
  }
  if (cut != nullptr) FindCursor();
  UpdateTitle();
  UpdateScrollBars();
  platform::InvalidateClient(window, false);
  if (hasPictures) platform::SetWindowTimer(window, kPictureTimer, kPictureDelay);
}

void SheetWindow::RefreshPictures() {
  pictures.MarkAllStale();
  Refresh();
}

// The cursor follows what became current elsewhere.
void SheetWindow::FindCursor() {
  const std::vector<SheetColumn>& columns = sheet->Columns();
  const int32_t current = cut->currentFrame;
  const int32_t record = cut->CurrentFrame()->currentRecord;
  const auto find = [&](const auto& matches) {
    return static_cast<int32_t>(std::find_if(columns.begin(), columns.end(), matches) - columns.begin());
  };
  const int32_t count = static_cast<int32_t>(columns.size());
  const int32_t same =
      find([this](const SheetColumn& each) { return each.layer == layer && each.occurrence == occurrence; });
  const bool isElsewhere = row >= sheet->Rows() || anchor >= sheet->Rows() || sheet->FrameOfRow(row) != current;
  if (isElsewhere) {
    row = anchor = sheet->FrameAt(current).firstRow;
    typed.clear();
    draggedFrame = -1;
  }
  const bool isOther = same == count || current != knownFrame || record != knownRecord;
  column = same;
  if (isOther && record >= 0) column = find([record](const SheetColumn& each) { return each.record == record; });
  if (column >= count) column = 0;
  if (column != same) typed.clear();
  layer = count > 0 ? columns[static_cast<size_t>(column)].layer : nullptr;
  occurrence = count > 0 ? columns[static_cast<size_t>(column)].occurrence : 0;
  if (isElsewhere || isOther) {
    Reveal(row);
    RevealColumn();
  }
  knownFrame = current;
  knownRecord = record;
}

void SheetWindow::UpdateTitle() {
  char text[kTextSize];
  platform::ReadResourceText(kTextSheetTitle, text, sizeof(text));
  std::string title = text;
  if (cut != nullptr) {
    char name[kTextSize] = "Cut";
    if (cut->path[0] != '\0') FileNameOf(name, sizeof(name), cut->path, true);
    const int32_t fps = std::max(cut->fps, 1);
    std::snprintf(text, sizeof(text), " (%lld+%lld)", static_cast<long long>(sheet->Ticks() / fps),
                  static_cast<long long>(sheet->Ticks() % fps));
    title.append(" - ").append(name).append(text);
  }
  char shown[2 * kTextSize];
  platform::ReadText(window, shown, sizeof(shown));
  if (title != shown) platform::SetText(window, title.c_str());
}

// Scrolling.

void SheetWindow::UpdateScrollBars() {
  const Bounds client = platform::ClientBounds(window);
  const int64_t rows = sheet != nullptr ? sheet->Rows() : 0;
  const int64_t inSight = RowsInSight();
  topRow = std::clamp<int64_t>(topRow, 0, std::max<int64_t>(rows - inSight, 0));
  const int64_t step = rows / kMostSteps + 1;
  platform::SetScrollBar(
      window, platform::ScrollBar::kVertical,
      {static_cast<int32_t>(std::max<int64_t>(rows - 1, 0) / step),
       static_cast<int32_t>(std::max<int64_t>(inSight / step, 1)), static_cast<int32_t>(topRow / step)});
  const int32_t room = std::max(client.right - FixedWidth(), 1);
  const int32_t whole = sheet != nullptr ? NotesLeft() + scrollX + kNotesWidth - FixedWidth() : 0;
  scrollX = std::clamp(scrollX, 0, std::max(whole - room, 0));
  platform::SetScrollBar(window, platform::ScrollBar::kHorizontal, {std::max(whole - 1, 0), room, scrollX});
}

void SheetWindow::ScrollTo(int64_t newRow, int32_t newX) {
  const int64_t oldRow = topRow;
  const int32_t oldX = scrollX;
  topRow = newRow;
  scrollX = newX;
  UpdateScrollBars();
  if (topRow == oldRow && scrollX == oldX) return;
  platform::InvalidateClient(window, false);
  if (hasPictures) platform::SetWindowTimer(window, kPictureTimer, kPictureDelay);
}

void SheetWindow::Scroll(platform::ScrollBar bar, int32_t code, int32_t thumb) {
  const bool isVertical = bar == platform::ScrollBar::kVertical;
  const int64_t page = isVertical ? std::max<int64_t>(RowsInSight() - 1, 1)
                                  : std::max(platform::ClientBounds(window).right - FixedWidth() - kColumnWidth, 1);
  const int64_t line = isVertical ? 1 : kColumnWidth;
  int64_t place = isVertical ? topRow : scrollX;
  switch (code) {
    case platform::kScrollLineUp:
      place -= line;
      break;
    case platform::kScrollLineDown:
      place += line;
      break;
    case platform::kScrollPageUp:
      place -= page;
      break;
    case platform::kScrollPageDown:
      place += page;
      break;
    case platform::kScrollThumbPosition:
    case platform::kScrollThumbTrack:
      place = isVertical && sheet != nullptr ? thumb * (sheet->Rows() / kMostSteps + 1) : thumb;
      break;
    default:
      return;
  }
  if (isVertical) {
    ScrollTo(place, scrollX);
  } else {
    ScrollTo(topRow, static_cast<int32_t>(std::clamp<int64_t>(place, 0, INT32_MAX)));
  }
}

void SheetWindow::Reveal(int64_t rowIndex) {
  const int64_t inSight = std::max<int64_t>(RowsInSight(), 1);
  int64_t top = topRow;
  if (rowIndex < top) top = rowIndex;
  if (rowIndex >= top + inSight) top = rowIndex - inSight + 1;
  ScrollTo(top, scrollX);
}

void SheetWindow::RevealColumn() {
  const int32_t left = column * kColumnWidth;
  const int32_t room = std::max(platform::ClientBounds(window).right - FixedWidth(), kColumnWidth);
  int32_t x = scrollX;
  if (left < x) x = left;
  if (left + kColumnWidth > x + room) x = left + kColumnWidth - room;
  ScrollTo(topRow, x);
}

Bounds SheetWindow::RevealSquare(int32_t columnIndex, int64_t rowIndex) {
  const int32_t kept = column;
  column = columnIndex;
  RevealColumn();
  column = kept;
  Reveal(rowIndex);
  return SquareAt(columnIndex, rowIndex);
}

// Places.

int32_t SheetWindow::RowHeight() const {
  return hasPictures ? kPictureRow : kPlainRow;
}

int32_t SheetWindow::FixedWidth() const {
  return kTickWidth + kFrameWidth + kMarkWidth + (hasPictures ? FramePictures::kWidth + 4 : 0);
}

int32_t SheetWindow::ColumnLeft(int32_t index) const {
  return FixedWidth() + index * kColumnWidth - scrollX;
}

int32_t SheetWindow::NotesLeft() const {
  return ColumnLeft(sheet != nullptr ? static_cast<int32_t>(sheet->Columns().size()) : 0);
}

int32_t SheetWindow::RowTop(int64_t index) const {
  // What is far out of sight needn't be exact.
  constexpr int64_t farAway = 100000;
  return kHeadHeight + static_cast<int32_t>(std::clamp((index - topRow) * RowHeight(), -farAway, farAway));
}

int64_t SheetWindow::RowsInSight() const {
  return std::max((platform::ClientBounds(window).bottom - kHeadHeight) / RowHeight(), 0);
}

Bounds SheetWindow::SquareAt(int32_t index, int64_t rowIndex) const {
  return {ColumnLeft(index), RowTop(rowIndex), ColumnLeft(index) + kColumnWidth, RowTop(rowIndex + 1)};
}

bool SheetWindow::FindSquare(Point place, int32_t* foundColumn, int64_t* foundRow) const {
  const int32_t count = static_cast<int32_t>(sheet->Columns().size());
  // A press beside the squares stays in the column.
  *foundColumn = column;
  if (place.x >= FixedWidth() && place.x < NotesLeft()) {
    *foundColumn = std::clamp((place.x - FixedWidth() + scrollX) / kColumnWidth, 0, std::max(count - 1, 0));
  }
  *foundRow = row;
  if (place.y < kHeadHeight && !isSelecting) return true;
  const int32_t y = place.y - kHeadHeight;
  const int64_t found = topRow + (y < 0 ? (y + 1) / RowHeight() - 1 : y / RowHeight());
  if (found >= sheet->Rows() && !isSelecting) return false;
  *foundRow = std::clamp<int64_t>(found, 0, sheet->Rows() - 1);
  return true;
}

int32_t SheetWindow::FindEnd(Point place) const {
  const int32_t y = place.y - kHeadHeight;
  if (sheet == nullptr || y < 0 || place.x >= NotesLeft()) return -1;
  const int32_t border = (y + RowHeight() / 2) / RowHeight();
  const int64_t last = topRow + border - 1;
  if (std::abs(y - border * RowHeight()) > kEndReach || last < 0 || last >= sheet->Rows()) return -1;
  const int32_t found = sheet->FrameOfRow(last);
  return sheet->LastRowOf(found) == last ? found : -1;
}

// Moving.

void SheetWindow::MoveTo(int32_t newColumn, int64_t newRow, bool extend) {
  Commit();
  const std::vector<SheetColumn>& columns = sheet->Columns();
  row = std::clamp<int64_t>(newRow, 0, sheet->Rows() - 1);
  if (!extend) {
    anchor = row;
    column = std::clamp(newColumn, 0, std::max(static_cast<int32_t>(columns.size()) - 1, 0));
    if (!columns.empty()) {
      layer = columns[static_cast<size_t>(column)].layer;
      occurrence = columns[static_cast<size_t>(column)].occurrence;
    }
  }
  Reveal(row);
  RevealColumn();
  platform::InvalidateClient(window, false);
}

// The frame and the record under the cursor become the current ones.
void SheetWindow::GoToCursor() {
  const auto recordHere = [this] {
    const auto& columns = sheet->Columns();
    const Frame* current = cut->CurrentFrame();
    if (columns.empty()) return current->currentRecord;
    Frame* there = cut->frames.At(sheet->FrameOfRow(row));
    const int32_t record = TimeSheet::FindRecord(there, columns[static_cast<size_t>(column)]);
    return record >= 0 ? record : there->currentRecord;
  };
  if (sheet->FrameOfRow(row) == cut->currentFrame && recordHere() == cut->CurrentFrame()->currentRecord) return;
  // What is typed in the panels is of the frame that is left.
  frame->CommitPanels(cut);
  sheet->Read();
  row = std::min(row, sheet->Rows() - 1);
  anchor = std::min(anchor, sheet->Rows() - 1);
  ShowCursor(recordHere());
}

// Shows the frame of the cursor in the window of the cut and in the panels.
void SheetWindow::ShowCursor(int32_t record) {
  cut->GoToFrame(sheet->FrameOfRow(row));
  Frame* current = cut->CurrentFrame();
  if (record != current->currentRecord && current->SelectRecord(record) && (cut->viewFlags & kCurrentCellOnly) != 0) {
    cut->stateFlags |= kImagesStale;
  }
  knownFrame = cut->currentFrame;
  knownRecord = current->currentRecord;
  cut->RepaintAll();
  frame->RefreshPanels(cut);
}

// Edits.

void SheetWindow::Commit() {
  if (typed.empty() || cut == nullptr) return;
  const int32_t number = std::atoi(typed.c_str());
  typed.clear();
  ExposeSelection(number - 1);
}

void SheetWindow::CancelTyping() {
  if (typed.empty()) return;
  typed.clear();
  platform::InvalidateClient(window, false);
}

// One square stands for its frame from there on, several for just their rows.
void SheetWindow::ExposeSelection(int32_t cell) {
  platform::InvalidateClient(window, false);
  if (sheet->Columns().empty()) return;
  frame->CommitPanels(cut);
  sheet->Read();
  const int64_t first = std::min(FirstSelected(), sheet->Rows() - 1);
  int64_t last = std::min(LastSelected(), sheet->Rows() - 1);
  if (first == last) last = sheet->LastRowOf(sheet->FrameOfRow(first));
  if (sheet->Expose(column, first, last, cell)) {
    Changed();
  } else if (cell > sheet->Columns()[static_cast<size_t>(column)].layer->cells.Count()) {
    platform::PlayAlert();
  }
}

void SheetWindow::Changed() {
  frame->NoteInput();
  // The order of the columns may be another one.
  const auto& columns = sheet->Columns();
  for (size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].layer == layer && columns[i].occurrence == occurrence) column = static_cast<int32_t>(i);
  }
  row = std::min(row, sheet->Rows() - 1);
  anchor = std::min(anchor, sheet->Rows() - 1);
  Frame* there = cut->frames.At(sheet->FrameOfRow(row));
  const int32_t record = columns.empty() ? -1 : TimeSheet::FindRecord(there, columns[static_cast<size_t>(column)]);
  pictures.MarkAllStale();
  ShowCursor(record >= 0 ? record : there->currentRecord);
  cut->RecordStep();
}

void SheetWindow::EndDrag(bool changes) {
  const int32_t dragged = draggedFrame;
  if (dragged < 0) return;
  draggedFrame = -1;
  platform::InvalidateClient(window, false);
  if (!changes) return;
  const int64_t rows = dragRow - sheet->FrameAt(dragged).firstRow;
  frame->CommitPanels(cut);
  sheet->Read();
  if (dragged < sheet->FrameCount() && sheet->SetRows(dragged, rows)) {
    row = anchor = sheet->FrameAt(dragged).firstRow;
    Changed();
  }
}

bool SheetWindow::TakeCommand(int32_t id) {
  if (!IsOpen() || cut == nullptr || platform::FocusedWindow() != window) return false;
  switch (id) {
    case kCommandFocusForward:
    case kCommandFocusBackward:
      Commit();
      return true;
    case kCommandStop:
      if (typed.empty() && draggedFrame < 0) return false;
      CancelTyping();
      EndDrag(false);
      return true;
    case kCommandStepBack:
    case kCommandStepForward:
      // Back from what is being typed, which was no step yet.
      if (typed.empty()) return false;
      CancelTyping();
      return true;
    default:
      Commit();
      return false;
  }
}

// Messages.

void SheetWindow::OnKey(int32_t key) {
  const bool extend = (platform::HeldKeys() & platform::kKeyShift) != 0;
  const int64_t page = std::max<int64_t>(RowsInSight() - 1, 1);
  const auto move = [&](int32_t columns, int64_t target) {
    MoveTo(column + columns, target, extend);
    GoToCursor();
  };
  // A selection is left at its end.
  const int64_t above = extend ? row : FirstSelected();
  const int64_t below = extend ? row : LastSelected();
  switch (key) {
    case platform::kKeyUp:
      move(0, above - 1);
      break;
    case platform::kKeyDown:
      move(0, below + 1);
      break;
    case platform::kKeyPageUp:
      move(0, above - page);
      break;
    case platform::kKeyPageDown:
      move(0, below + page);
      break;
    case platform::kKeyHome:
      move(0, 0);
      break;
    case platform::kKeyEnd:
      move(0, INT64_MAX);
      break;
    case platform::kKeyLeft:
      if (!extend) move(-1, row);
      break;
    case platform::kKeyRight:
      if (!extend) move(1, row);
      break;
    case platform::kKeyDelete:
      typed.clear();
      ExposeSelection(kBlankSquare);
      break;
    default:
      break;
  }
}

void SheetWindow::OnChar(uintptr_t character) {
  const uintptr_t lead = leadByte;
  leadByte = 0;
  if (lead == kFullLead && character >= kFullZero && character <= kFullNine) {
    character = character - kFullZero + '0';
  } else if (lead != 0) {
    return;
  } else if (IsLeadByte(static_cast<char>(character))) {
    leadByte = character;
    return;
  }
  if (character >= '0' && character <= '9') {
    if (typed.size() >= kMostDigits || sheet->Columns().empty()) return;
    typed += static_cast<char>(character);
    Reveal(row);
    RevealColumn();
  } else if (character == kBackspace && !typed.empty()) {
    typed.pop_back();
  } else {
    return;
  }
  platform::InvalidateClient(window, false);
}

void SheetWindow::OnMouse(uint32_t message, uintptr_t keys, Point place) {
  int32_t newColumn = 0;
  int64_t newRow = 0;
  switch (message) {
    case platform::kMessageLeftDown:
    case platform::kMessageLeftDouble:
      platform::SetFocusTo(window);
      Commit();
      draggedFrame = FindEnd(place);
      if (draggedFrame >= 0) {
        dragRow = sheet->LastRowOf(draggedFrame) + 1;
        platform::CaptureMouse(window);
      } else if (FindSquare(place, &newColumn, &newRow)) {
        MoveTo(newColumn, newRow, (keys & platform::kKeyShift) != 0);
        isSelecting = true;
        platform::CaptureMouse(window);
      }
      break;
    case platform::kMessageMouseMove:
      if (platform::CapturingWindow() != window) break;
      platform::TakeMouseMoves(window, &place);
      if (draggedFrame >= 0) {
        const int64_t border = topRow + (place.y - kHeadHeight + RowHeight() / 2) / RowHeight();
        dragRow = std::max(border, sheet->FrameAt(draggedFrame).firstRow + 1);
        platform::InvalidateClient(window, false);
      } else if (isSelecting && FindSquare(place, &newColumn, &newRow) && newRow != row) {
        MoveTo(column, newRow, true);
      }
      break;
    case platform::kMessageLeftUp: {
      if (platform::CapturingWindow() == window) platform::ReleaseMouse();
      bool selects = isSelecting;
      isSelecting = false;
      // An end that stays where it is was only clicked.
      if (draggedFrame >= 0 && dragRow == sheet->LastRowOf(draggedFrame) + 1) {
        selects = true;
        if (!FindSquare(place, &newColumn, &newRow)) newRow = dragRow - 1;
        EndDrag(false);
        MoveTo(newColumn, newRow, (keys & platform::kKeyShift) != 0);
      }
      EndDrag(true);
      if (selects) GoToCursor();
      break;
    }
    default:
      break;
  }
}

void SheetWindow::OpenMenu() {
  const platform::MenuHandle menu = platform::MakeMenu(kSheetMenu);
  const platform::MenuHandle popup = platform::Submenu(menu, 0);
  platform::CheckMenuEntry(popup, kCommandSheetPictures, hasPictures);
  platform::OpenPopupMenu(popup, platform::CursorPlace(), frame->frameWindow);
  platform::DeleteMenu(menu);
}

intptr_t SheetWindow::WindowProc(uint32_t message, uintptr_t first, intptr_t second) {
  const platform::WindowHandle self = window;
  switch (message) {
    case platform::kMessageDestroy:
      RememberPlace();
      Forget(cut);
      window = nullptr;
      break;
    case platform::kMessageClose:
      Commit();
      RememberPlace();
      platform::Hide(self);
      Forget(cut);
      platform::ActivateWindow(frame->frameWindow);
      if (CutWindow* active = frame->ActiveCut()) platform::SetFocusTo(active->window);
      return 0;
    case platform::kMessageMoved:
      RememberPlace();
      break;
    case platform::kMessageSize:
      UpdateScrollBars();
      platform::InvalidateClient(self, false);
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
    case platform::kMessageTimer:
      if (first == kPictureTimer) MakePictures();
      if (first == kFrontTimer) {
        platform::KillWindowTimer(self, kFrontTimer);
        platform::RaiseWindow(self);
      }
      return 0;
    case platform::kMessageVerticalScroll:
    case platform::kMessageHorizontalScroll:
      Scroll(message == platform::kMessageVerticalScroll ? platform::ScrollBar::kVertical
                                                         : platform::ScrollBar::kHorizontal,
             static_cast<int32_t>(platform::LowHalf(first)), static_cast<int32_t>(platform::HighHalf(first)));
      return 0;
    case platform::kMessageWheel: {
      // Fine wheels turn by parts of a row.
      wheelRest += platform::TurnOf(first) * kRowsOfNotch;
      const int32_t rows = wheelRest / platform::kWheelNotch;
      wheelRest -= rows * platform::kWheelNotch;
      ScrollTo(topRow - rows, scrollX);
      return 0;
    }
    case platform::kMessageSetFocus:
      platform::InvalidateClient(self, false);
      break;
    case platform::kMessageKillFocus:
      Commit();
      platform::InvalidateClient(self, false);
      break;
    case platform::kMessageSetCursor: {
      const bool isInside = (platform::LowHalf(static_cast<uintptr_t>(second)) & 0xFFFF) == kClientHit;
      if (!isInside || FindEnd(platform::ScreenToClient(self, platform::CursorPlace())) < 0) break;
      platform::SetCursorShape(platform::CursorShape::kSizeNorthSouth);
      return 1;
    }
    case platform::kMessageRightUp:
      OpenMenu();
      return 0;
    case platform::kMessageKeyDown:
      if (cut != nullptr) OnKey(static_cast<int32_t>(first));
      return 0;
    case platform::kMessageChar:
      if (cut != nullptr) OnChar(first);
      return 0;
    case platform::kMessageLeftDown:
    case platform::kMessageLeftDouble:
    case platform::kMessageMouseMove:
    case platform::kMessageLeftUp:
      if (cut != nullptr) OnMouse(message, first, platform::PointOf(second));
      return 0;
    default:
      break;
  }
  return platform::DefaultHandling(self, message, first, second);
}

}  // namespace sorvel
