#pragma once

#include <cstdint>
#include <vector>

#include "document/cut.h"

namespace sorvel {

// What a square of a time sheet shows.
enum class SheetMark {
  kNone,       // the frame lacks the layer
  kCell,       // a drawing begins to be shown
  kHold,       // it goes on
  kBlank,      // from here on nothing is shown
  kBlankHold,  // this goes on
};

struct SheetSquare {
  SheetMark mark = SheetMark::kNone;
  int32_t cell = -1;  // counted from 0; below 0 where nothing is shown
};

// Stands for a cell where nothing is shown, and where the frame lacks the layer.
constexpr int32_t kBlankSquare = -1;
constexpr int32_t kNoSquare = -2;

// A column: one record of a layer in each frame.
struct SheetColumn {
  Layer* layer;        // not owned
  int32_t occurrence;  // which of the frame's records of this layer it is, the bottom one being 0
  int32_t record;      // its index in the current frame, or -1 if that lacks it

  bool operator==(const SheetColumn&) const = default;
};

struct SheetFrame {
  int64_t firstRow;
  int64_t firstTick;
  int32_t ticks;      // how long it stands; 0 for a frame at which the player stops
  int32_t loop;       // how often the stretch that it belongs to is played; 1 for a frame that isn't repeated
  bool isLoopStart;   // the first frame of such a stretch
  bool isTransition;  // its picture comes gradually

  // A frame that takes no time still has a row.
  int32_t Rows() const { return ticks > 0 ? ticks : 1; }
};

// From this tick on a cell, counted from 0, or kBlankSquare.
struct SheetChange {
  int64_t tick;
  int32_t cell;
};

// The exposures of a column, in the order of their ticks. Ahead of the first one nothing is shown.
struct SheetTrack {
  int32_t column;
  std::vector<SheetChange> changes;
};

// A cut as a time sheet: rows are ticks of 1/fps second, columns are records. The columns follow the current frame, its
// bottom record first, then the layers that it lacks, in the order of the cut.
//
// The sheet reads the cut when it is made and after its own edits; after other changes, of the current frame too, call
// Read(). Reading moves no cursor of the cut's lists. Rows, ticks, frames and columns are counted from 0; those that
// don't exist must not be passed.
class TimeSheet {
 public:
  // The cut isn't owned.
  explicit TimeSheet(Cut* sheetCut);

  void Read();

  int32_t FrameCount() const { return static_cast<int32_t>(frames.size()); }
  int64_t Rows() const;
  int64_t Ticks() const;
  const SheetFrame& FrameAt(int32_t index) const { return frames[static_cast<size_t>(index)]; }
  int64_t LastRowOf(int32_t index) const { return FrameAt(index).firstRow + FrameAt(index).Rows() - 1; }
  int32_t FrameOfRow(int64_t row) const;
  const std::vector<SheetColumn>& Columns() const { return columns; }

  // The cell that a frame shows in a column, from 0, or kBlankSquare or kNoSquare. It may be a number that the layer
  // doesn't have.
  int32_t CellOf(int32_t frame, int32_t column);
  SheetSquare SquareAt(int32_t column, int64_t row);

  // The index of a frame's record in a column; -1 if there is none.
  static int32_t FindRecord(Frame* frame, const SheetColumn& column);

  // The edits use the operations of the cut that commands use, and mark what those mark. The cut's current frame stays
  // the same frame. Each gives false, with nothing changed and marked, if all is so already or can't be.

  // Shows a cell in these rows of a column; kBlankSquare blanks them. A frame of which only some rows are meant is
  // divided; one that lacks the layer gets it, except for a blank. The number of the layer's cells stands for a new
  // cell, which is added. A transition stays with the first part of a divided frame.
  bool Expose(int32_t column, int64_t firstRow, int64_t lastRow, int32_t cell);
  // Lets a frame take another number of rows, at least 1, and moves those behind it. Around it in the span of a key
  // frame all keep their times; the span changes.
  bool SetRows(int32_t frame, int64_t rows);
  // Takes over the exposures of some columns and the length of the whole, at least 1. Frames are divided where an
  // exposure changes, and joined where nothing is left that changes. What ends behind the length goes, and the last
  // frame fills what is added. All else stays: places, brightness, comments, key frames, loops, and columns without a
  // track. False if that took more frames or longer spans than a cut file can hold; the cut is then half changed.
  bool TakeOver(int64_t ticks, const std::vector<SheetTrack>& tracks);

 private:
  void ReadFrames();
  void ReadColumns();
  static int32_t ShownCell(Frame* frame, const SheetColumn& column);
  int32_t RecordFor(int32_t index, int32_t column);
  void ShowCell(int32_t index, int32_t column, int32_t cell);
  void AppendCell(int32_t index, int32_t column);
  void CopyBehind(int32_t index);
  void Divide(int32_t index, int32_t firstTicks);
  void SetTime(int32_t index, int32_t magnitude);
  int32_t TimesBehindKey(int32_t key) const;
  bool SetKeyTicks(int32_t key, int32_t ticks);
  void RemoveFrame(int32_t index);
  bool FitLength(int64_t ticks, std::vector<int32_t>* wanted);

  Cut* cut;
  std::vector<SheetFrame> frames;
  std::vector<SheetColumn> columns;
  std::vector<std::vector<int32_t>> cells;  // of a frame, by column; empty until it is asked for
};

}  // namespace sorvel
