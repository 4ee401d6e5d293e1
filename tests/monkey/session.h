#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "console/script_runner.h"
#include "monkey/invariants.h"
#include "monkey/undo_model.h"
#include "shell/main_frame.h"

namespace sorvel::monkey {

// One run of the headless program in a folder of its own, driven line by line with the actions of scripts. What must
// hold always is checked after each action. There is one session at a time, as there is one program in a process.
//
// A line that begins with # is a comment for `sorvel run`. Some of them mean something here:
//   # remember            the drawings of the active cut are noted
//   # same                they are as they were noted
//   # saved               the active cut, and its current layer, come back from a stream as they were saved
//   # at POSITION         the active cut is scrolled down so far; else the script was shortened too much
//   # clean               the view and the screen show the current frame, without selection or overlay
//   # damage PATH NUMBER  bytes of a file change, in a way that the number tells
//   # expose WINDOW       the window cut, frame, picker or player gets a paint message for all of it
//   # send WINDOW MESSAGE FIRST SECOND   such a window gets a message
//   # restart             after an exit: the program starts again with the settings that it left
class Session {
 public:
  // The folder exists; the working directory is there as long as the session lives. Its subfolder "files" is made
  // anew unless `keepsFiles` is set. Each line is written to `scriptFile`, not owned and possibly null, before it is
  // carried out.
  Session(const std::string& folder, FILE* scriptFile, bool keepsFiles = false);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  // Ends the program if need be, without questions.
  ~Session();

  // False if the line can't be carried out or something is wrong afterwards; the reason is in Failure().
  bool Run(const std::string& line);

  // Empty for none. No line is carried out after it.
  const std::string& Failure() const { return failure; }
  // The program was left and hasn't been started again.
  bool HasEnded() const;
  MainFrame* Frame() { return frame.get(); }
  CutWindow* ActiveCut() { return HasEnded() ? nullptr : frame->ActiveCut(); }
  // Actions that were carried out; comments and answers to dialogs don't count.
  int64_t Steps() const { return steps; }

 private:
  void Start();
  void End();
  bool Fail(const std::string& reason);
  bool RunComment(const std::vector<std::string>& words);
  bool RunAction(const std::vector<std::string>& words);
  bool SendMessage(const std::vector<std::string>& words);
  platform::WindowHandle FindWindow(const std::string& name);
  bool CheckAlways(bool mayLoad);
  bool CheckUndo(const std::vector<std::string>& words);

  FILE* script;
  std::string oldFolder;
  std::string failure;
  std::unique_ptr<MainFrame> frame;
  std::unique_ptr<console::ScriptRunner> runner;
  Invariants invariants;
  UndoModel undo;
  Drawings remembered;
  int64_t steps = 0;
};

// Words of a line that are separated by single blanks.
std::vector<std::string> SplitWords(const std::string& line);

}  // namespace sorvel::monkey
