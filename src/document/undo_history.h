#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "document/cut.h"
#include "foundation/buffer.h"
#include "foundation/cursor_list.h"
#include "imaging/cell_image.h"
#include "imaging/rect.h"

namespace sorvel {

// The steps that can be taken back in a cut, as far as memory allows, and those that can be taken again. It finds out
// by itself what changed since the last step, so that whoever changes the cut need not say so.
//
// A step is all that changed but for where the user looks: the current frame and the current records of frames alone
// make no step, nor does the copy of the single undo (Cut::SaveUndo()). A step restores them all the same.
//
// It looks only at the frames that the cut handed out and at the cells whose pixels changed, so that a step costs the
// same however many there are. When frames or cells were put in or removed, it looks at all of them.
//
// Of a drawing a step holds the pixels that differ. It takes over cells and layers that were removed from the cut.
// Frames and layers that are on both sides of a step stay the same objects; others may be made anew.
class UndoHistory final : private CellWatch {
 public:
  // Steps take at most so many bytes, or half as much as the pixels of the cut if that is more. The newest step stays
  // whatever it takes, and the oldest ones go first.
  static constexpr int64_t kLeastLimit = int64_t{128} << 20;

  // Both are of the owner, and outlive the history. The rectangle is the area of the single undo: a step restores it.
  UndoHistory(Cut* owner, Rect* singleUndoArea);
  UndoHistory(const UndoHistory&) = delete;
  UndoHistory& operator=(const UndoHistory&) = delete;
  ~UndoHistory();

  enum class Origin { kCommand, kGesture };
  // To be called when something is done: makes what changed since the last call a step, and forgets the steps that
  // could be taken again. False if nothing changed. The first call, and one after memory ran out, only begins a history
  // here. Parts of one gesture become one step: those that draw on the same cell without another Cut::SaveUndo().
  bool Record(Origin origin);
  // To be called right after Record() when nobody keeps a frame, or anything of one, that the cut handed out before.
  // Until then Record() looks at each of those frames again.
  void Settle() { reached.Clear(); }

  // Take a step back, or one forward again; what isn't recorded yet is recorded first. The frame that it changed
  // becomes the current one, and the cut is marked as the change marked it; no mark is cleared. False if there is none,
  // or no memory.
  bool Back();
  bool Forward();

  size_t StepsBack() const { return position; }
  size_t StepsForward() const { return steps.size() - position; }
  int64_t ByteCount() const { return bytes; }

  // The sum of Cut::EffectiveTime() without signs over the frames before this one. Costs as much as the way from the
  // frame that was asked for last, or from the first one if times changed since.
  int32_t TimeBefore(int32_t frame);

  // For tests: Record() looks at all frames and cells afterwards, and ends the program if it missed a change.
  static bool checksAll;

 private:
  struct RecordState;
  struct FrameState;
  struct LayerState;
  struct HeadState;
  struct LayerChange;
  struct Step;

  // A cell by its layer and its number; the layer 0 stands for none.
  struct CellPlace {
    uint64_t layer = 0;
    int32_t cell = 0;

    bool operator==(const CellPlace&) const = default;
  };
  struct NumberedCell {
    int32_t cell;
    CellImage* image;
  };
  struct Shown {
    int32_t frame = -1;
    int32_t record = -1;
  };
  struct Kept {
    uint64_t number;
    CellImage* image;  // owned
  };

  void BeforeChange(CellImage* image) override;
  bool TakeOver(CellImage* image) override;

  void Begin();
  void ReadState();
  void ReadFrames();
  void ReadLayers();
  LayerState ReadLayer(Layer* layer);
  // After a step was taken.
  void ReadChanges(const Step& step, bool hasLayers);
  void CheckState();
  void FindChanged();
  void ForgetSteps();
  void ForgetKept();

  // Each adds what differs from the state that was recorded last, which becomes the present one. False if pixels are
  // missing or there is no memory.
  bool CompareLayers(Step* step);
  bool CompareLayer(LayerState* state, Layer* layer, Step* step);
  bool CompareDrawings(std::vector<uint64_t>* numbers, const std::vector<NumberedCell>& images, LayerChange* change);
  bool CompareCells(std::vector<uint64_t>* numbers, const std::vector<NumberedCell>& images, LayerChange* change);
  bool CompareUndo(Step* step);
  void CompareFrames(Step* step);
  void CompareHead(Step* step);
  bool ExtendStep(Step* step);
  Layer* MakeLayer(const LayerState& state);
  // The pixels that had this content number; null if they aren't kept. TakeKept() gives them to the caller.
  const CellImage* KeptOf(uint64_t number) const;
  CellImage* TakeKept(uint64_t number);

  bool Apply(Step* step, const Shown& target);
  bool FoldUndo();
  void SwapFrames(Step* step);
  // What the single undo would put back, and zeros up to `size`. False without memory.
  bool ReadUndoPixels(uint64_t size, Buffer<uint8_t>* pixels) const;
  void Show(const Step& step, const Shown& target);
  Shown ShownNow() const;
  CellPlace PlaceOf(const CellImage* image) const;
  // The place if the current frame shows the cell or it is that of the single undo; else none.
  CellPlace NearPlaceOf(const CellImage* image) const;
  CellImage* CellAt(const CellPlace& place) const;
  Layer* LayerOf(uint64_t id) const;
  void Prune();

  Cut* cut;
  Rect* area;
  std::deque<std::unique_ptr<Step>> steps;
  size_t position = 0;  // how many steps can be taken back
  int64_t bytes = 0;    // of all steps
  bool hasBegun = false;
  bool lacksPixels = false;  // there was no memory to keep what changed
  bool isMoving = false;     // a step is being taken: changes are its own

  // The state that was recorded last.
  std::unique_ptr<HeadState> head;
  std::vector<FrameState> frames;
  std::vector<LayerState> layers;
  CellPlace undoPlace;
  Buffer<uint8_t> undoPixels;
  Rect undoArea;
  Shown shown;
  uint32_t undoSaves = 0;

  // The pixels of that state that have changed since, by the image that had or has them.
  std::unordered_map<const CellImage*, Kept> kept;
  std::unordered_map<uint64_t, Kept*> keptByNumber;  // while a step is recorded
  std::vector<CellPlace> changed;                    // at the same time: their places, in ascending order
  bool hasPlaces = false;                            // all of them are there

  AccessLog reached;  // the frames that the cut handed out since Settle()
  // The time before one frame, as long as no frame has other times than the recorded ones.
  bool isCounted = false;
  int32_t countedFrame = 0;
  int32_t countedTime = 0;
};

}  // namespace sorvel
