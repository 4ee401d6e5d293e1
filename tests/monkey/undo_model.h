#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "shell/main_frame.h"

namespace sorvel::monkey {

// What the undo of cuts must bring back, kept the plain way: a whole copy of every state of every cut. It follows one
// run of the program.
class UndoModel {
 public:
  // To be asked after each action of a script, given by its words. What is wrong, in a line; empty for nothing.
  std::string Check(MainFrame& frame, const std::vector<std::string>& words);
  // To be called after anything else was done to the program.
  void Forget() { histories.clear(); }

 private:
  struct State {
    std::string content;              // the bytes of the file, and what a file can't tell
    std::optional<std::string> undo;  // the single undo: its cell, its pixels and its area
  };
  struct History {
    std::vector<std::optional<State>> states;  // none for one that came and went within an action
    size_t position = 0;
    State last;
    bool wasHeld = false;  // a gesture may not have been recorded yet
    bool wasModified = false;
    bool mayBeTyped = false;  // panels hold what isn't stored yet
  };

  static State StateOf(CutWindow* cut);
  static std::string Follow(CutWindow* cut, const std::vector<std::string>& words, const State& present, bool isHeld,
                            History* history);

  std::map<const CutWindow*, History> histories;
};

}  // namespace sorvel::monkey
