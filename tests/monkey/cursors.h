#pragma once

#include <cstdint>
#include <vector>

#include "document/cut.h"
#include "foundation/cursor_keeper.h"

// Reading lists without a trace: they remember where they were read last, and code of the program may go on from
// there, while a script that repeats a failure doesn't read them in between.
namespace sorvel::monkey {

template <typename T>
std::vector<T> Elements(CursorList<T>* list) {
  const CursorKeeper<T> keep(list);
  std::vector<T> elements;
  for (int32_t i = 0; i < list->Count(); ++i) elements.push_back(list->At(i));
  return elements;
}

// Keeps all cursors of a cut.
class KeepCursors {
 public:
  explicit KeepCursors(Cut* keptCut) : cut(keptCut) {
    frames = cut->frames.CursorIndex();
    layers = cut->layers.CursorIndex();
    for (Frame* frame : Elements(&cut->frames)) records.push_back(frame->records.CursorIndex());
    for (Layer* layer : Elements(&cut->layers)) cells.push_back(layer->cells.CursorIndex());
  }
  KeepCursors(const KeepCursors&) = delete;
  KeepCursors& operator=(const KeepCursors&) = delete;
  ~KeepCursors() {
    size_t i = 0;
    for (Frame* frame : Elements(&cut->frames)) frame->records.Seek(records[i++]);
    i = 0;
    for (Layer* layer : Elements(&cut->layers)) layer->cells.Seek(cells[i++]);
    cut->frames.Seek(frames);
    cut->layers.Seek(layers);
  }

 private:
  Cut* cut;
  int32_t frames;
  int32_t layers;
  std::vector<int32_t> records;
  std::vector<int32_t> cells;
};

}  // namespace sorvel::monkey
