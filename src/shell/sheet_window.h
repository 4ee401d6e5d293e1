#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "document/time_sheet.h"
#include "platform/drawing.h"
#include "platform/window.h"
#include "shell/frame_pictures.h"
#include "shell/pixel_canvas.h"

namespace sorvel {

class CutWindow;
class MainFrame;

// The class of the time sheet's window.
constexpr char kSheetClass[] = "SorvelinSheet";

// The time sheet of the active cut: a window of its own that can stay open beside the canvas. A row is a tick, a column
// is a record. One square has the cursor; it follows the current frame and record of the cut, and where it is set by
// hand these follow it. From an anchor to the cursor several squares of a column can be selected.
//
// Edits are those of TimeSheet. A number that is typed stands in the square until it is committed.
class SheetWindow final : public platform::WindowObject {
 public:
  // The frame outlives the window.
  explicit SheetWindow(MainFrame* mainFrame) : frame(mainFrame) {}

  // Shows the window, where it was placed last, or hides it.
  void Toggle();
  bool IsOpen() const;
  // To be called when the frame comes to the front: where no window manager keeps the sheet there, it would be covered.
  void StayInFront();
  // Small pictures of the frames, shown or not.
  void TogglePictures();
  bool HasPictures() const { return hasPictures; }

  // To be called when the active cut, or something of it but its drawings, may have changed.
  void Refresh();
  // The same if drawings may have changed too: pictures are made anew.
  void RefreshPictures();
  // The cut is about to be deleted.
  void Forget(const CutWindow* cut);
  // Whether a command that came by a key is meant for the square that is being typed into. If so it has been run.
  bool TakeCommand(int32_t id);

  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  // What is shown, for whoever acts as the user; null without a cut. Scrolls until a square is in sight, and gives its
  // place in the client area.
  TimeSheet* Sheet() { return sheet.get(); }
  Bounds RevealSquare(int32_t column, int64_t row);

  // The state. Without a cut all is 0.
  const CutWindow* Shown() const { return cut; }
  int32_t CursorColumn() const { return column; }
  int64_t FirstSelected() const { return anchor < row ? anchor : row; }
  int64_t LastSelected() const { return anchor < row ? row : anchor; }
  const std::string& Typed() const { return typed; }

 private:
  // Where the parts of the window are, in pixels of the client area.
  static constexpr uintptr_t kPictureTimer = 1;
  static constexpr int32_t kHeadHeight = 24;
  static constexpr int32_t kPlainRow = 18;
  static constexpr int32_t kPictureRow = 38;
  static constexpr int32_t kTickWidth = 40;
  static constexpr int32_t kFrameWidth = 62;
  static constexpr int32_t kMarkWidth = 30;  // fades and dissolves
  static constexpr int32_t kColumnWidth = 44;
  static constexpr int32_t kNotesWidth = 220;
  int32_t RowHeight() const;
  int32_t FixedWidth() const;
  int32_t ColumnLeft(int32_t index) const;
  int32_t NotesLeft() const;
  int32_t RowTop(int64_t index) const;
  int64_t RowsInSight() const;
  Bounds SquareAt(int32_t index, int64_t rowIndex) const;
  // The column and row of a place; false outside the squares. Places above or below count as the nearest row.
  bool FindSquare(Point place, int32_t* foundColumn, int64_t* foundRow) const;
  // The frame whose end is near a place; -1 if there is none.
  int32_t FindEnd(Point place) const;

  void FindCursor();
  void ReadPlace();
  void RememberPlace();
  void UpdateTitle();
  void UpdateScrollBars();
  void Scroll(platform::ScrollBar bar, int32_t code, int32_t thumb);
  void ScrollTo(int64_t newRow, int32_t newX);
  void Reveal(int64_t rowIndex);
  void RevealColumn();

  void MoveTo(int32_t newColumn, int64_t newRow, bool extend);
  void OnKey(int32_t key);
  void OnChar(uintptr_t character);
  void OnMouse(uint32_t message, uintptr_t keys, Point place);
  void OpenMenu();
  void Commit();
  void CancelTyping();
  void ExposeSelection(int32_t cell);
  void GoToCursor();
  void ShowCursor(int32_t record);
  void EndDrag(bool changes);
  void Changed();

  void Paint(platform::DeviceContext* context);
  void PaintHeads();
  void PaintRow(int64_t index);
  void PaintFrame(int32_t index, Frame* shown, const Frame* before);
  void PaintSquare(int32_t index, int64_t rowIndex);
  void PaintCursor();
  void MakePictures();

  MainFrame* frame;
  CutWindow* cut = nullptr;  // not owned
  std::unique_ptr<TimeSheet> sheet;
  FramePictures pictures;
  PixelCanvas canvas;

  // The cursor. Its column is known by the layer, since the order of the columns changes.
  const Layer* layer = nullptr;
  int32_t occurrence = 0;
  int32_t column = 0;
  int64_t row = 0;
  int64_t anchor = 0;
  int32_t knownFrame = -1;  // the current ones of the cut when they were seen last
  int32_t knownRecord = -1;
  std::string typed;

  int64_t topRow = 0;
  int32_t scrollX = 0;
  int32_t wheelRest = 0;
  bool hasPictures = false;
  Bounds knownPlace;
  bool isSelecting = false;  // the left button is down on a square
  int32_t draggedFrame = -1;
  int64_t dragRow = 0;     // where the dragged frame would end: the first row behind it
  uintptr_t leadByte = 0;  // the first half of a letter, whose second half is still to come
};

}  // namespace sorvel
