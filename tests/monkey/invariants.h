#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "shell/main_frame.h"

// What must hold of the running program, whatever the user did. Nothing of the program is changed by the checks: what
// they have to disturb, cursors of lists, marks and the screen, is put back, so that a script repeats a failure
// without them.
namespace sorvel::monkey {

// The checks after each action. An object follows one run of the program.
class Invariants {
 public:
  // What is wrong, in a line; empty for nothing. `mayLoad` tells that the last action may have read a document: what
  // it holds is taken as it is.
  std::string Check(MainFrame& frame, bool mayLoad);

 private:
  std::string CheckCut(Cut* cut, bool mayLoad);
  std::string CheckFrame(Cut* cut, Frame* each, int32_t number, bool mayLoad);

  // Layers that some record has shown with a number beyond their cells, or will once it isn't blank any more, by their
  // ids: a step of undo may bring such a record back.
  std::set<uint64_t> stale;
  // A document with work markers in its drawings was read.
  bool hasForeignMarkers = false;
  int64_t checks = 0;
};

// The bytes of all drawings of a cut and of its undo copy.
struct Drawings {
  const Cut* cut = nullptr;
  std::vector<std::vector<uint8_t>> cells;
  std::vector<uint8_t> undo;

  bool operator==(const Drawings&) const = default;
};
Drawings DrawingsOf(Cut* cut);

// Each gives what is wrong, or an empty text.
// Saves the cut to a stream, and its current layer to another, loads them elsewhere and compares.
std::string CompareSaved(Cut* cut);
// To be asked after a repaint of the whole cut.
std::string CheckClean(MainFrame& frame, CutWindow* cut);

}  // namespace sorvel::monkey
