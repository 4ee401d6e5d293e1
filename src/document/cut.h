#pragma once

#include <cstdint>
#include <vector>

#include "document/frame.h"
#include "document/layer.h"
#include "document/load_report.h"
#include "foundation/byte_stream.h"
#include "foundation/cursor_list.h"
#include "foundation/history.h"
#include "foundation/replacement_file.h"
#include "foundation/shared_string.h"
#include "imaging/nibble_bitmap.h"

namespace sorvel {

// Bits of Cut::viewFlags.
enum ViewFlag : uint32_t {
  kOnionPrevious = 1u << 0,    // the line art of the previous cell shows through
  kOnionNext = 1u << 1,        // the line art of the next cell shows through
  kCurrentCellOnly = 1u << 2,  // only the cell under edit
  kDimOthers = 1u << 3,        // other layers pale, the current one on top
};
// Above them six bits: only so many records are drawn, from the bottom; 0 means all.
constexpr int32_t kDrawLimitShift = 4;
constexpr uint32_t kDrawLimitMask = 63;

// Bits of Cut::stateFlags. Above them two bits hold the output size.
enum StateFlag : uint32_t {
  kHasWindow = 1u << 0,    // the cut is a CutWindow
  kModified = 1u << 1,     // there is something to save
  kImagesStale = 1u << 2,  // the compiled stream is out of date in its pictures
  kTimingStale = 1u << 3,  // the compiled stream is out of date in its frame data
};
constexpr int32_t kAntialiasShift = 4;

// How many canvas pixels make one output pixel each way, for an output size of 0 (full), 1 (half) or 2 (quarter).
// Other values count as full size.
int32_t OutputScale(int32_t antialias);
// Grey levels of the output: 4 at full size, else 13.
int32_t OutputLevels(int32_t scale);

// One shot: a canvas, its layers and its frames. All editing of the document goes through here, because several
// operations must touch every frame at once: records hold cells by number, and a cut keeps all the numbers right.
//
// The current frame is the one at currentFrame; the current record is that frame's record at its currentRecord.
// Operations give false or null for what can't be done and leave the cut as it was. None of them repaints anything.
// To mark images means that the cut is to be saved and wholly compiled again; to mark timing, that it is to be saved
// and its frame data has changed.
class Cut {
 public:
  // A cut without frames and layers; the frame rectangle is the whole canvas. `fps` is frames a second, `antialias`
  // the output size 0, 1 or 2.
  Cut(int32_t canvasWidth, int32_t canvasHeight, int32_t framesPerSecond, const char* creditText, int32_t antialias);
  Cut(const Cut&) = delete;
  Cut& operator=(const Cut&) = delete;
  ~Cut();

  // Layers. The new layer has one blank cell and comes behind all others; a null or empty name becomes
  // "LAYER" and the number of layers so far. No frame shows it yet. Marks images. Null, with nothing changed, if there
  // is no memory for the cell.
  Layer* AddLayer(const char* name, int32_t layerWidth, int32_t layerHeight, CellImage* prototype);
  // Give the layer a record with its cell 0 in every frame, directly above or below the current record's index;
  // frames that have no such index are passed over. False when there is no such layer.
  bool AttachLayer(int32_t index, int32_t recordX, int32_t recordY);
  bool AttachLayerBefore(int32_t index, int32_t recordX, int32_t recordY);  // marks images
  bool DeleteLayer(int32_t index);
  // Raise or lower the current layer in this frame and all after it, where it stands at the same index.
  bool LayerUp();
  bool LayerDown();
  // Deletes layers that no frame refers to. Of two such neighbours only the first goes at each call.
  void PurgeUnusedLayers();
  // The same in two steps. The layers that would go are taken out and handed over with the places that they had; then
  // either all of them come back, or they are destroyed.
  struct TakenLayer {
    int32_t index;
    Layer* layer;
  };
  std::vector<TakenLayer> TakeUnusedLayers();
  void PutLayersBack(const std::vector<TakenLayer>& taken);
  void DestroyLayers(const std::vector<TakenLayer>& taken);

  // Frames. New ones have no records.
  Frame* AddFrame();   // behind the current one, and current; marks images
  bool InsertFrame();  // ahead of the current one, and current; marks nothing
  bool DeleteFrame();  // false for the only frame
  // Null when there is none.
  Frame* CurrentFrame() { return frames.At(currentFrame); }

  // Cells of the current record; all frames keep showing the drawings that they showed.
  bool AddCurrentCell(int32_t fill);
  bool InsertCurrentCell(int32_t fill);
  bool DeleteCurrentCell();
  bool PreviousCellOfFrame();
  bool NextCellOfFrame();
  bool FirstCellOfFrame();
  bool LastCellOfFrame();

  // The image that the current record shows and its place on the cut; null on a blank record.
  CellImage* CurrentCell(int32_t* x, int32_t* y);
  CellImage* CurrentCell();
  // Underdrawing of the current cell: erase it, or turn the ink into it. Rectangles are in cell coordinates.
  bool EraseDraft();
  bool EraseDraftRect(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight);
  bool ConvertToDraft(uint32_t mask);
  bool ConvertToDraftRect(int32_t x, int32_t y, int32_t rectWidth, int32_t rectHeight, uint32_t mask);
  bool EraseLayerDraft();

  // The one level of undo: a copy of the current cell, which Undo exchanges with the cell it was taken from, so that
  // a second call does it again.
  bool SaveUndo();
  bool Undo();
  // Makes room for a cell of this layer, keeping what is held; false when there is no memory for it. It runs whenever
  // a layer enters the cut or changes its size.
  bool EnsureUndoBuffer(Layer* layer);
  // Nothing can be undone any more if the undo copy belongs to a cell of this layer.
  void ForgetUndoOf(Layer* layer);

  // Properties of the current frame; `frameBrightness` is 0 to 100. Marks timing if any of them differs.
  void SetFrameProperties(const char* comment, int32_t time, int32_t loop, bool key, int32_t frameBrightness);

  // Navigation: moves currentFrame and keeps the index of the layer under edit. False means no move; marks nothing.
  bool NextFrame();
  bool PreviousFrame();
  bool FirstFrame();  // true whenever there is more than one frame
  bool LastFrame();
  bool NextKeyFrame();
  bool PreviousKeyFrame();
  bool GoToFrame(int32_t index);

  // How long a frame really stands, in 1/fps second, with the sign of its time: a key frame's time is the span up to
  // the next key frame, out of which the frames between take theirs; at least 1 is left. 0 for a bad index.
  int32_t EffectiveTime(int32_t index);
  // Turns the blank state over in all frames, of the record that navigation selects. Always true.
  bool ToggleBlankAll();
  bool MakeAllKeyFrames();
  // Spread a change evenly from the current frame to the end frame, in either order: the brightness, the position of
  // the current record, the position of the frame's rectangle. False if there is nothing to spread over.
  bool BrightnessRamp(int32_t endFrame);
  bool LayerPositionRamp(int32_t endFrame);
  bool FramePositionRamp(int32_t endFrame);

  // Files. The stream must be able to seek. Save clears the modified mark.
  bool Save(ByteStream* stream);
  // Replaces the whole cut. `prototype`, not owned, becomes that of every layer. False for a stream that isn't a cut:
  // nothing has been touched then. A damaged stream is read as far as it makes sense and the report says what is
  // wrong. Afterwards the last frame is current, with its topmost record.
  bool Load(ByteStream* stream, CellImage* prototype, LoadReport* report = nullptr);
  // Replaces a file by the cut as a whole, without the layers that PurgeUnusedLayers() deletes if `purge` says so; from
  // a damaged file layers may have lost their frames, so none are deleted then. What stood there goes to the history.
  // kNone, or why it couldn't be written: file, layers and marks are then what they were.
  WriteProblem SaveToFile(const char* filePath, bool purge);
  // Saves to the cut's path; false if that is empty or can't be written.
  bool SaveToPath();
  // The layer of the current record to a layer file and back. Loading replaces that layer, for all frames; a cut
  // without layers gets one. False, and nothing changed, for a stream that isn't a layer.
  bool SaveLayer(ByteStream* stream);
  bool LoadLayer(ByteStream* stream, LoadReport* report = nullptr);

  // Writes the current frame as a bitmap file of 4 bits a pixel, as the player would show it. `bitmap` and
  // `composition` are workspaces and hold the picture afterwards; the composition has the size of the canvas. False,
  // with nothing written, if there is no frame or no memory.
  bool ExportFrameBitmap(ByteStream* stream, NibbleBitmap* bitmap, CellImage* composition);

  // Brings the compiled stream of this cut up to date in its frame data alone. True if it is current afterwards; false
  // means that it must be compiled again. Clears the stale marks when it has written the frame data.
  bool PatchCompiledStream(ByteStream* stream);

  bool Has(StateFlag flag) const { return (stateFlags & flag) != 0; }
  int32_t Antialias() const { return static_cast<int32_t>(stateFlags >> kAntialiasShift & 3); }
  void SetAntialias(int32_t value);
  void MarkImages() { Mark(kModified | kImagesStale | kTimingStale); }
  void MarkTiming() { Mark(kModified | kTimingStale); }
  void Mark(uint32_t marks) {
    stateFlags |= marks;
    newMarks |= marks;
  }

  char* path = EmptyString;   // of the file; empty for a cut that was never saved
  CursorList<Frame*> frames;  // owned
  CursorList<Layer*> layers;  // owned; for saving and naming only, each frame has its own stacking
  int32_t width;              // canvas, in pixels
  int32_t height;
  int32_t frameWidth;  // the rectangle that a frame outputs
  int32_t frameHeight;
  int32_t fps;                 // frames a second, the unit of frame times
  char* credit = EmptyString;  // the member of staff in charge
  int32_t currentFrame = -1;
  CellImage* undoCell = nullptr;  // not owned; the cell that undoPixels was copied from
  uint8_t* undoPixels = nullptr;
  int32_t undoCapacity = 0;  // bytes
  uint32_t viewFlags = 0;
  uint32_t stateFlags = kImagesStale;
  uint32_t newMarks = 0;   // of stateFlags: what was marked since the last step was recorded
  uint32_t undoSaves = 0;  // calls of SaveUndo() that saved
  KnownFile knownFile;     // what stood at `path` when it was read or written last

 private:
  // Destroys all frames and layers and puts the flags back, before a file is read. The undo buffer stays.
  void Reset();
  void FreeFramesAndLayers();
  void DestroyLayer(Layer* layer);
  // The frame that seeking currentFrame and taking the cursor gives: null only on a cut without frames.
  Frame* SeekCurrentFrame();
  FrameRecord* CurrentFrameRecord();
  bool Attach(int32_t index, int32_t recordX, int32_t recordY, bool above);
  bool ShiftLayer(bool up);
  bool StepCell(bool (Frame::*step)());
  bool AddOrInsertCell(int32_t fill, bool (Frame::*place)(int32_t));
  bool MoveToFrame(int32_t index);
  bool StepToKeyFrame(int32_t direction);
};

}  // namespace sorvel
