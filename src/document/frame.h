#pragma once

#include <cstdint>

#include "document/layer.h"
#include "foundation/cursor_list.h"
#include "foundation/shared_string.h"

namespace sorvel {

// A record's cell is a number in its layer. A blank record shows nothing and holds -1 - the number.
constexpr bool IsBlankCell(int32_t cell) {
  return cell < 0;
}

// Which cell of which layer a frame shows, and where.
struct FrameRecord {
  Layer* layer;  // not owned
  int32_t cell;
  int32_t x;  // left top of the cell in cut coordinates, or relative to the frame if the layer follows it
  int32_t y;

  bool operator==(const FrameRecord&) const = default;
};

constexpr int32_t kNeutralBrightness = 50;

// One picture step of a cut: an ordered stack of records, the bottom one first, with its timing. A frame owns its
// records and no drawing.
//
// Record operations take an index; a bad one gives false or null and changes nothing. Operations on the current
// record are called only on a frame that has one.
class Frame {
 public:
  // The size is the cut's.
  Frame(int32_t cutWidth, int32_t cutHeight);
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  ~Frame();

  // A new record behind the current one, which becomes current; or ahead of it, at its index. On a frame without a
  // current record the insertion puts the record in twice. Both give true.
  bool AddRecord(Layer* layer, int32_t cell, int32_t recordX, int32_t recordY);
  bool InsertRecord(Layer* layer, int32_t cell, int32_t recordX, int32_t recordY);
  // Removes every record of the layer.
  void RemoveLayer(const Layer* layer);
  bool SelectRecord(int32_t index);
  // Swap a record (-1: the current one) with its neighbour above or below; currentRecord follows it.
  bool MoveRecordUp(int32_t index);
  bool MoveRecordDown(int32_t index);
  // The raw fields, without regard to blank or to layers that follow the frame.
  bool GetRecord(int32_t index, Layer** layer, int32_t* recordX, int32_t* recordY, int32_t* cell);
  Layer* LayerAt(int32_t index);
  // Removes the records and resets time and position; loop, brightness and comment stay.
  void ClearRecords();
  // Takes over the records, time and position of another frame, but not its brightness and comment. A copy inside a
  // loop stretch doesn't start the loop again: loop is 0 unless the other's is 1.
  void CopyFrom(Frame* other);
  // True if both show the same records at the same place; timing, brightness and comment don't count.
  bool SameAs(Frame* other);

  // The image that a record shows and its place on the cut. Null, and nothing written, for a bad index or a blank
  // record; null for a number that its layer doesn't have.
  CellImage* VisibleCell(int32_t index, int32_t* resolvedX, int32_t* resolvedY);
  CellImage* VisibleCell(int32_t index);
  // The place on the cut, of blank records too.
  bool GetRecordPosition(int32_t index, int32_t* resolvedX, int32_t* resolvedY);
  bool SetRecordPosition(int32_t index, int32_t resolvedX, int32_t resolvedY);
  bool OffsetRecord(int32_t index, int32_t dx, int32_t dy);
  // Copies the raw position from the record of the same index in the other frame.
  bool CopyRecordPosition(int32_t index, Frame* other);

  // The neighbours of the cell that a record shows, going round at the ends. Null for a blank record.
  CellImage* PreviousCell(int32_t index);
  CellImage* NextCell(int32_t index);

  // Cells of the current record's layer; false on a blank record. They don't touch other frames or other records.
  bool AddCellHere(int32_t fill);
  bool InsertCellHere(int32_t fill);
  bool RemoveCellHere();  // false too for the only cell of the layer
  bool StepCellBack();
  bool StepCellForward();
  bool FirstCellHere();
  bool LastCellHere();
  void ToggleBlank();
  // Moves the numbers of the layer's records from `from` on by delta and keeps them below the layer's cell count. The
  // raw number is compared, so a blank record never changes and what it remembers goes stale.
  void ShiftCellRefs(const Layer* layer, int32_t from, int32_t delta);
  // Draws the current cell on to the cell of the record below, leaving out pixels that the mask protects there. False
  // when there is no record below or one of the two shows no cell.
  bool MergeDown(uint32_t destMask);

  bool IsKey() const { return brightness < 0; }
  // 0 to 100, 50 neutral.
  int32_t DecodedBrightness() const { return brightness < 0 ? -1 - brightness : brightness; }
  // Keeps the brightness.
  void SetKey(bool key);
  // Keeps the key marker.
  void SetBrightness(int32_t value);

  // Draws the records into the rectangle, which is in cut coordinates and is not cleared first. `flags` has the layout
  // of Cut::viewFlags. inkBoxes, if given, has an entry for each record, or one in all if only the current cell is
  // shown; an entry receives the box of the ink in its cell's coordinates, zeros if the record shows nothing, and
  // keeps what it held if the cell lies outside the rectangle. Always true.
  bool ComposeFrame(CellImage* destination, int32_t areaX, int32_t areaY, int32_t areaWidth, int32_t areaHeight,
                    const uint32_t* flags, Rect* inkBoxes);

  CursorList<FrameRecord*> records;  // owned; the bottom record is the first
  int32_t time = 1;            // in 1/fps second; negative: a gradual transition from the frame before over that time
  int32_t loop = 1;            // the first frame of a stretch that repeats has the count, those after it 0
  int32_t currentRecord = -1;  // the record under edit; -1 when there is none
  int32_t x = 0;               // left top of the output rectangle in cut coordinates
  int32_t y = 0;
  int32_t width;  // the cut's size
  int32_t height;
  int32_t brightness = kNeutralBrightness;  // 0 black to 100 white; a negative value marks a key frame: -1 - brightness
  char* comment = EmptyString;

 private:
  FrameRecord* RecordAt(int32_t index) { return records.At(index); }
  // Null for a bad index and for a blank record.
  FrameRecord* VisibleRecord(int32_t index);
};

}  // namespace sorvel
