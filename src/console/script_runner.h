#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/commands.h"
#include "shell/main_frame.h"

namespace sorvel::console {

// Carries out the actions of a script on the running program. It acts like a user, through messages, notifications and
// answers to dialogs, and never changes an object directly.
class ScriptRunner {
 public:
  // The frame is one that StartProgram has brought up; it isn't owned.
  explicit ScriptRunner(MainFrame* mainFrame) : frame(mainFrame) {}

  // Carries out one action; the first word is its name. kDone; kFailed for a file that can't be read or written, which
  // is reported on standard error; or kRefused for an action that can't be carried out, with the reason in Problem().
  int Run(const std::vector<std::string>& actionWords);

  const std::string& Problem() const { return problem; }
  // Whether the program has ended: the script is over then.
  bool HasEnded() const;

 private:
  struct Action;
  static const Action kActions[];

  // The actions, in script_actions.cpp. words[0] is the name, and the number of words is right.
  int RunClient();
  int RunCommand();
  int RunKey();
  int RunChar();
  int RunMouse();
  int RunPicker();
  int RunTimer();
  int RunWheel();
  int RunScroll();
  int RunPanel();
  int RunClick();
  int RunSelect();
  int RunDoubleClick();
  int RunFocus();
  int RunDialog();
  int RunFile();
  int RunAnswer();
  int RunColor();
  int RunClipboard();
  int RunSaveClipboard();
  int RunOpen();
  int RunDrop();
  int RunActivate();
  int RunClose();
  int RunTick();
  int RunState();
  int RunView();
  int RunScreen();
  int RunPlayer();
  int RunSheet();
  int RunExit();

  int Refuse(const std::string& reason);
  // Each gives false, with the reason in `problem`, for a word that doesn't fit.
  bool ReadNumber(const std::string& word, int32_t lowest, int32_t highest, int32_t* number);
  bool ReadText(const std::string& word, std::string* text);
  bool ReadPath(const std::string& word, std::string* path);
  bool ReadPoint(size_t index, Point* point);
  bool ReadModifiers(size_t index, uint32_t* modifiers);
  bool ReadMouseMessage(const std::string& word, uint32_t* message);

  // The active cut, and one of the two lists; null, with the reason in `problem`, if there is none.
  CutWindow* NeedCut();
  platform::WindowHandle NeedList(const std::string& word);
  // The control of this number; null if there is none.
  platform::WindowHandle FindPanel(const std::string& word) const;

  // The parts of a sheet action.
  int SelectSquares(SheetWindow* sheet);
  int DragHold(SheetWindow* sheet);
  int TypeKey(SheetWindow* sheet);
  // Reads a layer by its number in the cut, and rows of the sheet, from the words behind it. False, with the reason, if
  // there is none.
  bool ReadColumn(SheetWindow* sheet, int32_t* column);
  bool ReadRow(SheetWindow* sheet, size_t index, int32_t* row);

  int SendMouse(platform::WindowHandle window, uint32_t message, Point place, uint32_t modifiers);
  void PaintWindows();

  MainFrame* frame;
  std::vector<std::string> words;
  std::string problem;
  uint32_t heldButtons = 0;  // platform::MouseKey bits of the mouse buttons that are down
};

}  // namespace sorvel::console
