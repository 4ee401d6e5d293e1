#pragma once

#include <cstdint>
#include <cstdio>
#include <deque>
#include <random>
#include <string>
#include <vector>

#include "monkey/session.h"

namespace sorvel::monkey {

struct MonkeyOptions {
  // Windows get messages that no action of a script sends, and the program is started again. Such a failure is
  // repeated by `sorvel_monkey --replay` alone.
  bool isRough = true;
  // Rough, and files are damaged, which may ask for much memory.
  bool damagesFiles = true;
  // The files of the session before stay.
  bool keepsFiles = false;
  // Many steps are taken back and forward, few files are used, and gestures are short.
  bool isUndoing = false;
  // Canvases that take megabytes, and some that take more than there is.
  bool isLarge = false;
};

// Works on the program like somebody who means well most of the time: random but plausible gestures, commands, keys,
// entries and files, and among them senseless ones. The same seed makes the same actions.
//
// It knows which dialog each action brings up, so that a dialog that doesn't come, or comes without reason, is a
// failure too.
class Monkey {
 public:
  Monkey(uint64_t seed, const std::string& folder, FILE* script, const MonkeyOptions& monkeyOptions);

  // Goes on by one action or a few that belong together. False when something failed, or when the program was left.
  bool Step();

  // Takes all steps of all cuts back, forward, and half of them back again. False when something failed.
  bool WalkUndo();

  const std::string& Failure() const { return session.Failure(); }
  int64_t Steps() const { return session.Steps(); }

 private:
  using Lines = std::vector<std::string>;
  // Something to do, and how often it is chosen against others.
  template <typename Value>
  struct Choice {
    Value value;
    int32_t weight;
  };

  int32_t Number(int32_t lowest, int32_t highest);
  bool Chance(int32_t percent) { return Number(1, 100) <= percent; }
  template <typename T, size_t count>
  const T& OneOf(const T (&table)[count]) {
    return table[static_cast<size_t>(Number(0, static_cast<int32_t>(count) - 1))];
  }
  template <typename Value, size_t count>
  Value Weighted(const Choice<Value> (&table)[count]);

  // Carrying out. Answers that may be asked for are queued first; Take notes which of them were taken.
  bool Do(const std::string& line);
  bool DoAll(const Lines& lines);
  bool DoMouse(const std::string& line);
  void QueueAnswers();
  bool Take();

  // What to do next.
  bool DoSomething();
  bool BeginSession();
  bool MakeCut();
  bool DoCommand(int32_t id);
  bool DoRandomCommand();
  bool DoFileCommand();
  bool DoKey();
  bool DoChar();
  bool DoPanel();
  bool DoList();
  bool DoView();
  bool DoPlayer();
  bool DoReplay();
  bool DoUndo();
  bool DoPen();
  bool DoPicture();
  bool DoWindow();
  bool DoCheck();
  bool DoPulseCheck();
  bool DoGesture();
  bool DoTool();
  bool DoRough();
  bool DoExit();
  void PlanGesture();
  void PlanDrag(bool withControl);
  void PlanClicks(int32_t count);

  // The dialogs that a command will bring up now.
  Lines DialogsOf(int32_t id);
  Lines NewCutDialogs();
  std::string Dialog(int32_t resource, bool ok = true);
  std::string EndOf(bool ok) { return ok ? " ok" : " cancel"; }
  std::string Sizes(int32_t widthId, int32_t heightId);
  std::string SizeText();
  std::string ShortText();
  std::string LongText();
  std::string FontLine();

  std::string FileName();
  std::string DocumentPath();

  Point PlaceOn(CutWindow* cut);
  std::string Mouse(const char* message, Point place, const char* modifiers = "");
  const char* Modifiers();
  bool IsLaden(CutWindow* cut);

  std::mt19937_64 random;
  MonkeyOptions options;
  Session session;
  bool hasBegun = false;
  std::deque<std::string> plan;  // the rest of a gesture
  Point lastPlace;
  // Answers that wait, by kind.
  int32_t files = 0;
  int32_t answers = 0;
  int32_t dialogs = 0;
  int32_t colors = 0;
  int32_t questionsSeen = 0;
  Lines pictures;  // that were written and can be put on the clipboard
};

// A word of a script.
std::string Quoted(const std::string& text);

}  // namespace sorvel::monkey
