#include <algorithm>
#include <cstdlib>

#include "document/cut.h"

namespace sorvel {

// Navigation.

bool Cut::MoveToFrame(int32_t index) {
  const Frame* left = SeekCurrentFrame();
  if (left == nullptr) return false;
  const int32_t record = left->currentRecord;
  currentFrame = index;
  // A frame without a record of that index keeps its own current record.
  SeekCurrentFrame()->SelectRecord(record);
  return true;
}

bool Cut::NextFrame() {
  return currentFrame + 1 < frames.Count() && MoveToFrame(currentFrame + 1);
}

bool Cut::PreviousFrame() {
  return currentFrame > 0 && MoveToFrame(currentFrame - 1);
}

bool Cut::FirstFrame() {
  return frames.Count() > 1 && MoveToFrame(0);
}

bool Cut::LastFrame() {
  return frames.Count() > 1 && MoveToFrame(frames.Count() - 1);
}

bool Cut::GoToFrame(int32_t index) {
  return index >= 0 && index < frames.Count() && index != currentFrame && MoveToFrame(index);
}

bool Cut::StepToKeyFrame(int32_t direction) {
  for (int32_t i = currentFrame + direction; i >= 0 && i < frames.Count(); i += direction) {
    if (frames.Peek(i)->IsKey()) return MoveToFrame(i);
  }
  return false;
}

bool Cut::NextKeyFrame() {
  return StepToKeyFrame(1);
}

bool Cut::PreviousKeyFrame() {
  return StepToKeyFrame(-1);
}

// Timing.

int32_t Cut::EffectiveTime(int32_t index) {
  const Frame* frame = frames.Peek(index);
  if (frame == nullptr) return 0;
  if (!frame->IsKey()) return frame->time;
  const bool negative = frame->time < 0;
  int32_t left = std::abs(frame->time);
  for (int32_t i = index + 1; i < frames.Count(); ++i) {
    const Frame* between = frames.Peek(i);
    if (between->IsKey()) break;
    left -= std::abs(between->time);
  }
  left = std::max(left, 1);
  return negative ? -left : left;
}

bool Cut::ToggleBlankAll() {
  const int32_t remembered = currentFrame;
  FirstFrame();
  for (int32_t i = 0; i < frames.Count(); ++i) {
    Frame* frame = CurrentFrame();
    if (frame != nullptr) frame->ToggleBlank();
    NextFrame();
  }
  currentFrame = remembered;
  return true;
}

bool Cut::MakeAllKeyFrames() {
  for (int32_t i = 0; i < frames.Count(); ++i) frames.At(i)->SetKey(true);
  MarkTiming();
  return true;
}

namespace {

// Spreads a difference over `total` time units in whole steps. The first `remainder` units change by one more.
struct SteppedChange {
  int32_t step;
  int32_t remainder;
  int32_t sign;

  SteppedChange(int32_t difference, int32_t total)
      : step(difference / total),
        remainder(std::abs(difference) % std::abs(total)),
        // Quirk 3. The sign is that of the step, not of the difference, so a fall of less than one a time unit rises.
        // Existing productions were timed with it.
        sign(step < 0 ? -1 : 1) {}

  int32_t At(int32_t elapsed) const { return step + (elapsed < remainder ? sign : 0); }
};

}  // namespace

bool Cut::BrightnessRamp(int32_t endFrame) {
  const int32_t first = std::min(currentFrame, endFrame);
  const int32_t last = std::max(currentFrame, endFrame);
  const Frame* from = frames.At(first);
  const Frame* to = frames.At(last);
  if (first == last || from == nullptr || to == nullptr) return false;
  int32_t total = 0;
  // Quirk 4. This ramp and the layer's add the signed times, so a transition shortens them; the frame's adds
  // magnitudes.
  for (int32_t i = first; i < last; ++i) total += frames.At(i)->time;
  if (total == 0) return false;
  const SteppedChange change(to->DecodedBrightness() - from->DecodedBrightness(), total);
  int32_t value = from->DecodedBrightness();
  int32_t elapsed = 0;
  for (int32_t i = first; elapsed < total; ++i) {
    for (int32_t n = std::abs(EffectiveTime(i)); n > 0; --n) value += change.At(elapsed++);
    Frame* next = frames.At(i + 1);
    if (next == nullptr) return false;
    next->SetBrightness(value);
  }
  MarkTiming();
  return true;
}

bool Cut::LayerPositionRamp(int32_t endFrame) {
  const int32_t first = std::min(currentFrame, endFrame);
  const int32_t last = std::max(currentFrame, endFrame);
  Frame* from = frames.At(first);
  Frame* to = frames.At(last);
  const Frame* current = CurrentFrame();
  if (first == last || from == nullptr || to == nullptr || current == nullptr) return false;
  const int32_t record = current->currentRecord;
  Layer* layer = nullptr;
  int32_t cell = 0;
  int32_t fromX = 0;
  int32_t fromY = 0;
  int32_t toX = 0;
  int32_t toY = 0;
  if (!from->GetRecord(record, &layer, &fromX, &fromY, &cell) || !to->GetRecord(record, &layer, &toX, &toY, &cell)) {
    return false;
  }
  int32_t total = 0;
  for (int32_t i = first; i < last; ++i) total += frames.At(i)->time;
  if (total == 0) return false;
  const SteppedChange changeX(toX - fromX, total);
  const SteppedChange changeY(toY - fromY, total);
  int32_t elapsed = 0;
  for (int32_t i = first; elapsed < total; ++i) {
    int32_t dx = 0;
    int32_t dy = 0;
    for (int32_t n = std::abs(EffectiveTime(i)); n > 0; --n) {
      dx += changeX.At(elapsed);
      dy += changeY.At(elapsed);
      ++elapsed;
    }
    Frame* next = frames.At(i + 1);
    if (next == nullptr) return false;
    next->CopyRecordPosition(record, frames.At(i));
    next->OffsetRecord(record, dx, dy);
  }
  MarkImages();
  return true;
}

bool Cut::FramePositionRamp(int32_t endFrame) {
  const int32_t first = std::min(currentFrame, endFrame);
  const int32_t last = std::max(currentFrame, endFrame);
  const Frame* from = frames.At(first);
  const Frame* to = frames.At(last);
  if (first == last || from == nullptr || to == nullptr) return false;
  const int64_t fromX = from->x;
  const int64_t fromY = from->y;
  const int64_t toX = to->x;
  const int64_t toY = to->y;
  int32_t total = 0;
  for (int32_t i = first; i < last; ++i) total += std::abs(frames.At(i)->time);
  if (total == 0) return false;
  int32_t elapsed = 0;
  for (int32_t i = first; elapsed < total; ++i) {
    elapsed += std::abs(EffectiveTime(i));
    Frame* next = frames.At(i + 1);
    if (next == nullptr) return false;
    next->x = static_cast<int32_t>(((total - elapsed) * fromX + elapsed * toX) / total);
    next->y = static_cast<int32_t>(((total - elapsed) * fromY + elapsed * toY) / total);
  }
  MarkTiming();
  return true;
}

}  // namespace sorvel
