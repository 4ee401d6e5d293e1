#include "monkey/undo_model.h"

#include <algorithm>
#include <cstdlib>

#include "foundation/byte_stream.h"
#include "monkey/cursors.h"
#include "resources/ids.h"

namespace sorvel::monkey {

namespace {

// Copies of each state of a larger cut would take too much.
constexpr int64_t kLargestCut = 1 << 20;
// Steps that take more may have been forgotten.
constexpr int64_t kMostSteps = 64 << 20;

int64_t PixelsOf(const Cut& cut) {
  int64_t bytes = 0;
  for (const Layer* layer : cut.layers) {
    for (const CellImage* cell : layer->cells) bytes += cell->ByteCount();
  }
  return bytes;
}

void Put(std::string* to, int64_t value) {
  to->append(std::to_string(value)).append(1, ' ');
}

void PutBytes(std::string* to, const uint8_t* bytes, int64_t count) {
  if (bytes != nullptr && count > 0) to->append(reinterpret_cast<const char*>(bytes), static_cast<size_t>(count));
}

std::string SavedBytes(Cut* cut) {
  const KeepCursors keep(cut);
  const uint32_t marks = cut->stateFlags;
  ChunkStream stream;
  cut->Save(&stream);
  cut->stateFlags = marks;
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  std::string saved;
  if (ReadWholeStream(stream, &bytes, &size)) PutBytes(&saved, bytes.Data(), size);
  return saved;
}

}  // namespace

UndoModel::State UndoModel::StateOf(CutWindow* cut) {
  State state;
  std::string* to = &state.content;
  *to = SavedBytes(cut);
  for (const int32_t value : {cut->width, cut->height, cut->frameWidth, cut->frameHeight, cut->fps, cut->Antialias()}) {
    Put(to, value);
  }
  to->append(cut->credit);
  std::map<const Layer*, int32_t> numbers;
  int32_t undoLayer = -1;
  int32_t undoNumber = -1;
  for (const Layer* layer : cut->layers) {
    const int32_t number = static_cast<int32_t>(numbers.size());
    numbers[layer] = number;
    to->append("\nlayer ").append(layer->name != nullptr ? layer->name : "\n");
    for (const int64_t value : {int64_t{layer->width}, int64_t{layer->height}, int64_t{layer->followFrame},
                                int64_t{layer->cells.Count()}, int64_t{layer->prototype == &cut->prototype}}) {
      Put(to, value);
    }
    int32_t cellNumber = 0;
    for (const CellImage* cell : layer->cells) {
      Put(to, cell->width);
      Put(to, cell->height);
      PutBytes(to, cell->bits, cell->ByteCount());
      if (cell == cut->undoCell) {
        undoLayer = number;
        undoNumber = cellNumber;
      }
      ++cellNumber;
    }
  }
  for (const Frame* frame : cut->frames) {
    to->append("\nframe ").append(frame->comment);
    for (const int32_t value : {frame->time, frame->loop, frame->x, frame->y, frame->width, frame->height,
                                frame->brightness, frame->records.Count()}) {
      Put(to, value);
    }
    for (const FrameRecord* record : frame->records) {
      for (const int32_t value : {numbers[record->layer], record->cell, record->x, record->y}) Put(to, value);
    }
  }
  to = &state.undo.emplace();
  const Rect& area = cut->undoRect;
  for (const int32_t value : {undoLayer, undoNumber, area.x, area.y, area.width, area.height}) Put(to, value);
  if (cut->undoCell != nullptr) PutBytes(to, cut->undoPixels, cut->undoCell->ByteCount());
  return state;
}

std::string UndoModel::Check(MainFrame& frame, const std::vector<std::string>& words) {
  const std::vector<CutWindow*>& cuts = frame.openCuts;
  std::erase_if(histories,
                [&cuts](const auto& each) { return std::find(cuts.begin(), cuts.end(), each.first) == cuts.end(); });
  for (CutWindow* cut : cuts) {
    if (PixelsOf(*cut) > kLargestCut || cut->undoHistory.ByteCount() > kMostSteps) {
      histories.erase(cut);
      continue;
    }
    const auto [found, isNew] = histories.try_emplace(cut);
    History& history = found->second;
    const State present = StateOf(cut);
    if (isNew) {
      history.position = cut->undoHistory.StepsBack();
      history.states.resize(history.position + cut->undoHistory.StepsForward() + 1);
      // The single undo may have been saved since the state was recorded.
      if (!frame.isButtonHeld) history.states[history.position] = {present.content, std::nullopt};
    } else {
      std::string problem = Follow(cut, words, present, frame.isButtonHeld, &history);
      if (!problem.empty()) return problem;
    }
    history.last = present;
    const std::optional<State>& known = history.states[history.position];
    history.wasHeld = frame.isButtonHeld || !known || known->content != present.content;
    history.wasModified = cut->Has(kModified);
  }
  return "";
}

std::string UndoModel::Follow(CutWindow* cut, const std::vector<std::string>& words, const State& present, bool isHeld,
                              History* history) {
  std::vector<std::optional<State>>& states = history->states;
  const size_t old = history->position;
  const size_t position = cut->undoHistory.StepsBack();
  const size_t count = position + cut->undoHistory.StepsForward() + 1;
  const std::string word = words.size() > 1 ? words[1] : "";
  const bool isBack = words[0] == "key" ? word == "Ctrl+Z" : word == std::to_string(kCommandStepBack);
  const bool isForward =
      words[0] == "key" ? word == "Ctrl+Y" || word == "Shift+Ctrl+Z" : word == std::to_string(kCommandStepForward);
  const bool isStep = (words[0] == "command" || words[0] == "key") && (isBack || isForward);
  history->position = position;
  const auto reach = [&]() -> std::string {
    std::optional<State>& state = states[position];
    if (state && state->content != present.content) return "a step leads to another drawing than there was";
    if (state && state->undo && state->undo != present.undo)
      return "a step leads to another single undo than there was";
    state = present;
    return "";
  };

  if (isStep && history->wasModified && !cut->Has(kModified)) return "a step took the mark of a changed cut away";
  // The rest of a gesture, or what was typed into the panels, may have become a step first, in place of those that
  // could be taken forward.
  const bool mayBeNew = isStep && (std::exchange(history->mayBeTyped, false) || history->wasHeld);
  if (mayBeNew) {
    states.resize(old + 1);
    states.resize(std::max(count, old + 1));
  }
  if (words[0] == "panel" || words[0] == "click") history->mayBeTyped = true;
  const bool isSameLength = count == states.size();
  if (isStep && isSameLength && (isBack ? position + 1 == old : position == old + 1)) {
    // What the single undo held when the state was left belongs to it; so does the rest of a gesture.
    if (!history->wasHeld && states[old] && states[old]->content != history->last.content) {
      return "a state changed without a step";
    }
    states[old] = history->last;
    // Unless that was recorded as a new step.
    if (isForward && mayBeNew) states[old]->undo.reset();
    if (isForward && history->wasHeld) states[old].reset();
    return reach();
  }
  if (isSameLength && position == old) {
    // A move without a button goes on with a gesture whose release got lost.
    const bool isGesture = isHeld || (words[0] == "mouse" && words[1] == "move");
    if (isGesture) return "";
    if (states[old] && states[old]->content != present.content && words[0] != "mouse" && !history->wasHeld) {
      return "a change made no step";
    }
    if (!states[old] || states[old]->content != present.content) {
      // A release ends a part of a gesture; after anything else it isn't known whether that was recorded. The single
      // undo may have been saved after the step.
      states[old].reset();
      if (words[0] == "mouse") states[old] = {present.content, std::nullopt};
    }
    return "";
  }
  if (position + 1 < old || count < old + 1) return "steps got lost";
  if (!isStep && count != position + 1) return "a change left steps that can be taken forward";
  states.resize(old + 1);
  states.resize(count);
  // The rest of a gesture may belong to the step that its beginning became.
  if (history->wasHeld && position > old) states[old].reset();
  if (isStep) return reach();
  // The step of a gesture ends before what a command does to the single undo.
  if (!isHeld) states[position] = {present.content, history->wasHeld ? std::nullopt : present.undo};
  return "";
}

}  // namespace sorvel::monkey
