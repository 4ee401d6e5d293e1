#include "monkey/monkey.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <set>

#include "cutwindow/clipboard.h"
#include "monkey/cursors.h"
#include "platform/fonts.h"
#include "platform/headless/headless.h"
#include "platform/text.h"
#include "resources/ids.h"

namespace sorvel::monkey {

namespace {

namespace headless = platform::headless;

constexpr int32_t kTools[] = {kToolFramePosition, kToolLayerPosition, kToolZoom,       kToolFreePen,
                              kToolFill,          kToolLine,          kToolCurve,      kToolRectangle,
                              kToolAreaSelect,    kToolEraser,        kToolGradient,   kToolText,
                              kToolEdging,        kToolMosaic,        kToolFocusLines, kToolParallelLines};

constexpr int32_t kFirstWindowCommand = 58000;
constexpr int32_t kMostCuts = 6;

std::string Joined(std::initializer_list<std::string> words) {
  std::string line;
  for (const std::string& word : words) {
    if (!line.empty()) line += ' ';
    line += word;
  }
  return line;
}

std::string Command(int32_t id) {
  return "command " + std::to_string(id);
}

Layer* CurrentLayer(Cut* cut) {
  const KeepCursors keep(cut);
  Frame* frame = cut->CurrentFrame();
  return frame != nullptr ? frame->LayerAt(frame->currentRecord) : nullptr;
}

bool HasCell(Cut* cut) {
  const KeepCursors keep(cut);
  int32_t x = 0;
  int32_t y = 0;
  return cut->CurrentCell(&x, &y) != nullptr;
}

// A layer that was inserted into a frame without a current record is there twice. What is drawn on it at one place is
// repainted only there.
bool IsLayerShownTwice(Cut* cut) {
  const KeepCursors keep(cut);
  Frame* frame = cut->CurrentFrame();
  if (frame == nullptr) return false;
  std::set<const Layer*> layers;
  for (const FrameRecord* record : Elements(&frame->records)) {
    if (!layers.insert(record->layer).second) return true;
  }
  return false;
}

// Whether the caret of the list of cuts stands on an entry of the film.
bool IsCutListed(MainFrame* frame) {
  const CursorKeeper<FilmEntry> keep(&frame->film->cuts);
  return frame->film->CutName(platform::ListCaret(frame->cutList))[0] != '\0';
}

void AddFont(const char* name, void* user) {
  std::string text;
  if (platform::ShiftJisToUtf8(name, &text)) static_cast<std::vector<std::string>*>(user)->push_back(text);
}

}  // namespace

std::string Quoted(const std::string& text) {
  if (!text.empty() && text.find_first_of(" \t\"\\\n#") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char byte : text) {
    if (byte == '"' || byte == '\\') quoted += '\\';
    if (byte == '\n') {
      quoted += "\\n";
    } else {
      quoted += byte;
    }
  }
  return quoted + "\"";
}

Monkey::Monkey(uint64_t seed, const std::string& folder, FILE* script, const MonkeyOptions& monkeyOptions)
    : random(seed), options(monkeyOptions), session(folder, script, monkeyOptions.keepsFiles) {}

int32_t Monkey::Number(int32_t lowest, int32_t highest) {
  const uint64_t range = static_cast<uint64_t>(int64_t{highest} - lowest + 1);
  return static_cast<int32_t>(lowest + static_cast<int64_t>(random() % range));
}

template <typename Value, size_t count>
Value Monkey::Weighted(const Choice<Value> (&table)[count]) {
  int32_t total = 0;
  for (const Choice<Value>& choice : table) total += choice.weight;
  int32_t rest = Number(0, total - 1);
  for (const Choice<Value>& choice : table) {
    rest -= choice.weight;
    if (rest < 0) return choice.value;
  }
  return table[0].value;
}

// Carrying out.

bool Monkey::Do(const std::string& line) {
  return session.Run(line);
}

bool Monkey::DoAll(const Lines& lines) {
  return std::all_of(lines.begin(), lines.end(), [this](const std::string& line) { return Do(line); });
}

// Queues enough answers for every file dialog and question that one action may bring up. Each answer fits each of them,
// so those that aren't taken stay in the queue.
void Monkey::QueueAnswers() {
  if (session.HasEnded()) return;
  const int32_t wanted = static_cast<int32_t>(session.Frame()->mdiClient->children.size()) + 3;
  for (; files < wanted && Do("file " + Quoted(FileName())); ++files) {
  }
  for (; answers < wanted && Do(Chance(60) ? "answer yes" : "answer no"); ++answers) {
  }
}

// Counts the answers that are left after an action. False if the action failed. Dialogs and colours are queued only
// when they will be asked for, so none of them is left.
bool Monkey::Take() {
  const int32_t questions = headless::LastQuestion().count;
  answers -= questions - questionsSeen;
  questionsSeen = questions;
  files = static_cast<int32_t>(headless::QueuedAnswers()) - answers;
  dialogs = 0;
  colors = 0;
  return session.Failure().empty();
}

bool Monkey::DoCommand(int32_t id) {
  // A film that can't be saved keeps the dialog of the next one away, and where it can't be told beforehand.
  if (id == kCommandNewFilm && session.Frame()->film->modified != 0) id = kCommandSaveFilmAs;
  QueueAnswers();
  const Lines lines = DialogsOf(id);
  const bool asksColor = id == kCommandTransparentColor && !clipTransparent;
  if (asksColor && !Do(Chance(20) ? "color cancel" : "color 00FF0" + std::to_string(Number(0, 9)))) return false;
  return DoAll(lines) && Do(Command(id)) && Take();
}

// The text tool opens its dialog at some releases, and which ones can't be told here. So its answer is queued before
// each release, and if the tool doesn't take it, three more messages make it ask.
bool Monkey::DoMouse(const std::string& line) {
  CutWindow* cut = session.ActiveCut();
  if (cut == nullptr) {
    plan.clear();
    return true;
  }
  const bool mayAsk =
      session.Frame()->currentTool == kToolText && HasCell(cut) && line.compare(0, 10, "mouse lup ") == 0;
  if (!mayAsk) return Do(line);
  const size_t before = headless::QueuedAnswers();
  if (!Do(Dialog(kTextDialog, !Chance(10))) || !Do(line)) return false;
  if (headless::QueuedAnswers() == before) return true;
  return Do("mouse rup 1 1") && Do("mouse ldown 1 1") && Do("mouse lup 1 1");
}

bool Monkey::Step() {
  if (session.HasEnded() || !session.Failure().empty()) return false;
  if (!hasBegun) {
    hasBegun = true;
    return BeginSession();
  }
  if (plan.empty() || Chance(6)) return DoSomething();
  const std::string line = plan.front();
  plan.pop_front();
  return DoMouse(line);
}

// What to do next.

bool Monkey::BeginSession() {
  switch (Number(0, 5)) {
    case 0:
      if (!Do("client 640 480")) return false;
      break;
    case 1:
      if (!Do(Joined({"client", std::to_string(Number(0, 60)), std::to_string(Number(0, 60))}))) return false;
      break;
    default:
      if (!Do(Joined({"client", std::to_string(Number(60, 200)), std::to_string(Number(40, 160))}))) return false;
      break;
  }
  for (int32_t cuts = Number(1, 2); cuts > 0; --cuts) {
    if (!MakeCut()) return false;
  }
  return true;
}

bool Monkey::MakeCut() {
  QueueAnswers();
  return Do(Dialog(kCutDialog)) && Do(Dialog(kLayerDialog)) && Do(Command(kCommandNewCut)) && Take();
}

bool Monkey::IsLaden(CutWindow* cut) {
  Layer* layer = CurrentLayer(cut);
  return cut->frames.Count() > 40 || cut->layers.Count() > 7 || (layer != nullptr && layer->cells.Count() > 12);
}

bool Monkey::DoSomething() {
  if (options.isUndoing && Chance(15)) return DoUndo();
  static constexpr Choice<bool (Monkey::*)()> choices[] = {
      {&Monkey::DoGesture, 150},    {&Monkey::DoRandomCommand, 170},
      {&Monkey::DoFileCommand, 30}, {&Monkey::DoKey, 12},
      {&Monkey::DoChar, 40},        {&Monkey::DoPanel, 30},
      {&Monkey::DoList, 25},        {&Monkey::DoView, 25},
      {&Monkey::DoPlayer, 20},      {&Monkey::DoPicture, 10},
      {&Monkey::DoWindow, 12},      {&Monkey::DoTool, 35},
      {&Monkey::DoCheck, 40},       {&Monkey::DoPen, 30},
      {&Monkey::DoReplay, 6},       {&Monkey::DoRough, 12},
      {&Monkey::DoUndo, 25},        {&Monkey::DoExit, 1}};
  return (this->*Weighted(choices))();
}

bool Monkey::DoGesture() {
  PlanGesture();
  return true;
}

bool Monkey::DoTool() {
  return DoCommand(OneOf(kTools));
}

bool Monkey::DoRandomCommand() {
  static constexpr Choice<int32_t> choices[] = {{kCommandAddFrame, 10},
                                                {kCommandInsertFrame, 6},
                                                {kCommandDeleteFrame, 6},
                                                {kCommandPreviousFrame, 8},
                                                {kCommandNextFrame, 8},
                                                {kCommandFirstFrame, 3},
                                                {kCommandLastFrame, 3},
                                                {kCommandAddFrames, 2},
                                                {kCommandDeleteFrames, 2},
                                                {kCommandNextKeyFrame, 3},
                                                {kCommandPreviousKeyFrame, 3},
                                                {kCommandAllKeyFrames, 1},
                                                {kCommandBrightnessRamp, 3},
                                                {kCommandFrameRamp, 3},
                                                {kCommandLayerRamp, 3},
                                                {kCommandDeleteCell, 6},
                                                {kCommandInsertCell, 6},
                                                {kCommandAddCell, 10},
                                                {kCommandPreviousCell, 6},
                                                {kCommandNextCell, 6},
                                                {kCommandFirstCell, 3},
                                                {kCommandLastCell, 3},
                                                {kCommandBlankCell, 4},
                                                {kCommandBlankAll, 1},
                                                {kCommandMergeDown, 5},
                                                {kCommandAddLayer, 6},
                                                {kCommandInsertLayer, 5},
                                                {kCommandDeleteLayer, 3},
                                                {kCommandLayerUp, 5},
                                                {kCommandLayerDown, 5},
                                                {kCommandLayerProperties, 4},
                                                {kCommandToSketch, 5},
                                                {kCommandEraseSketch, 4},
                                                {kCommandEraseCell, 3},
                                                {kCommandEraseLayerSketch, 2},
                                                {kCommandUndo, 12},
                                                {kCommandCopy, 6},
                                                {kCommandCut, 6},
                                                {kCommandPaste, 8},
                                                {kCommandFlipHorizontal, 5},
                                                {kCommandFlipVertical, 5},
                                                {kCommandRandomDots, 4},
                                                {kCommandDrawGrid, 3},
                                                {kCommandShowPrevious, 3},
                                                {kCommandShowNext, 3},
                                                {kCommandCurrentCellOnly, 3},
                                                {kCommandDimOthers, 3},
                                                {kCommandMuraRemoval, 2},
                                                {kCommandLineEmphasis, 2},
                                                {kCommandStatusBar, 1},
                                                {kCommandToolBar, 1},
                                                {kCommandFocusForward, 3},
                                                {kCommandFocusBackward, 2},
                                                {kCommandExplainTool, 1},
                                                {kCommandAbout, 1},
                                                {kCommandTransparentColor, 2},
                                                {kCommandFont, 3},
                                                {kCommandSquarePen, 2},
                                                {kCommandSnapGrid, 3},
                                                {kCommandMask, 3},
                                                {kCommandFrameSize, 2},
                                                {kCommandCutProperties, 3},
                                                {kCommandRemoveCutFromFilm, 1},
                                                {kCommandFilmProperties, 1},
                                                {kCommandPasteFromClipboard, 3},
                                                {kCommandCopyToClipboard, 2}};
  if (Chance(2)) {
    const int32_t id = Chance(50) ? kFirstWindowCommand + Number(0, 6) : Number(0, 65535);
    return id == kCommandExit ? true : DoCommand(id);
  }
  const int32_t id = Weighted(choices);
  CutWindow* cut = session.ActiveCut();
  const bool adds = id == kCommandAddFrame || id == kCommandInsertFrame || id == kCommandAddFrames ||
                    id == kCommandAddLayer || id == kCommandInsertLayer || id == kCommandInsertCell ||
                    id == kCommandAddCell;
  if (cut != nullptr && adds && IsLaden(cut) && !Chance(10)) {
    static constexpr int32_t deletes[] = {kCommandDeleteFrame, kCommandDeleteFrames, kCommandDeleteLayer,
                                          kCommandDeleteCell};
    return DoCommand(OneOf(deletes));
  }
  return DoCommand(id);
}

bool Monkey::DoFileCommand() {
  static constexpr Choice<int32_t> choices[] = {
      {kCommandNewCut, 3},         {kCommandOpenCut, 6},           {kCommandSaveCutAs, 8},
      {kCommandOverwriteCut, 6},   {kCommandOpenLayer, 4},         {kCommandSaveLayer, 5},
      {kCommandOverwriteLayer, 5}, {kCommandExportBitmap, 4},      {kCommandNewFilm, 2},
      {kCommandOpenFilm, 4},       {kCommandSaveFilmAs, 4},        {kCommandOverwriteFilm, 3},
      {kCommandExportFilm, 3},     {kCommandExtractCuts, 3},       {kCommandDeleteCuts, 2},
      {kCommandRenameCut, 3},      {kCommandAddCutToFilm, 8},      {kCommandInsertCutIntoFilm, 5},
      {kCommandAddNumberedCut, 3}, {kCommandInsertNumberedCut, 3}, {kCommandRemoveCutFromFilm, 2},
      {kCommandCloseAll, 1}};
  if (Chance(15)) {
    QueueAnswers();
    return Do((Chance(50) ? "open " : "drop ") + Quoted(DocumentPath())) && Take();
  }
  const int32_t id = Weighted(choices);
  const bool opens = id == kCommandNewCut || id == kCommandOpenCut || id == kCommandOpenLayer ||
                     id == kCommandAddNumberedCut || id == kCommandInsertNumberedCut;
  if (opens && static_cast<int32_t>(session.Frame()->mdiClient->children.size()) >= kMostCuts) {
    QueueAnswers();
    return Do("close") && Take();
  }
  return DoCommand(id);
}

bool Monkey::DoKey() {
  struct Key {
    const char* name;
    int32_t command;
  };
  static constexpr Key keys[] = {{"Ctrl+N", kCommandNewCut},
                                 {"Ctrl+O", kCommandOpenCut},
                                 {"Ctrl+S", kCommandSaveCutAs},
                                 {"Esc", kCommandStop},
                                 {"F1", kCommandExplainTool},
                                 {"F10", kCommandAddNumberedCut},
                                 {"F2", kCommandPreviousFrame},
                                 {"Shift+F2", kCommandInsertNumberedCut},
                                 {"F3", kCommandNextFrame},
                                 {"F4", kCommandPlay},
                                 {"F9", kCommandStop},
                                 {"Enter", kCommandFocusForward},
                                 {"Shift+Tab", kCommandFocusBackward},
                                 {"Shift+F4", 0},
                                 {"Q", 0},
                                 {"Ctrl+Z", kCommandStepBack},
                                 {"Ctrl+Y", kCommandStepForward},
                                 {"Shift+Ctrl+Z", kCommandStepForward}};
  const Key& key = OneOf(keys);
  QueueAnswers();
  return DoAll(DialogsOf(key.command)) && Do(std::string("key ") + key.name) && Take();
}

bool Monkey::DoChar() {
  if (session.ActiveCut() == nullptr) return MakeCut();
  QueueAnswers();
  if (Chance(3)) {
    // The second bytes of these are keys, the last one's is G.
    static const char* const wide[] = {"ア", "イ", "絵"};
    const int32_t index = Number(0, 2);
    return DoAll(index == 2 ? DialogsOf(kCommandSnapGrid) : Lines{}) && Do(std::string("char ") + wide[index]) &&
           Take();
  }
  // Many at once for zooms and pen sizes.
  if (Chance(12)) {
    static const char* const repeated[] = {"a", "s", "l", ";", "d", "f"};
    const std::string line = std::string("char ") + OneOf(repeated);
    for (int32_t count = Chance(10) ? Number(20, 60) : Number(2, 6); count > 0; --count) {
      if (!Do(line)) return false;
    }
    return true;
  }
  const char letter = static_cast<char>(Number(32, 126));
  Lines lines;
  if (letter == 'g' || letter == 'h') lines = DialogsOf(kCommandMask);
  if (letter == 'G' || letter == 'H') lines = DialogsOf(kCommandSnapGrid);
  return DoAll(lines) && Do("char " + Quoted(std::string(1, letter))) && Take();
}

bool Monkey::DoPanel() {
  static const char* const times[] = {"1", "2", "3", "12", "0", "-1", "-4", "9999", "-999", "abc", "", "5x", " 7"};
  static const char* const lights[] = {"50", "0", "100", "25", "75", "101", "-5", "999", "", "x"};
  static constexpr int32_t places[] = {kFrameTimeEdit, kCutList,        kLayerList,    kLoopEdit,
                                       kCommentEdit,   kBrightnessEdit, kKeyFrameCheck};
  switch (Number(0, 6)) {
    case 0:
      return Do(std::string("panel 10002 ") + Quoted(OneOf(times)));
    case 1:
      return Do(std::string("panel 10005 ") + Quoted(OneOf(times)));
    case 2:
      return Do(std::string("panel 10007 ") + Quoted(OneOf(lights)));
    case 3:
      return Do("panel 10006 " + Quoted(LongText()));
    case 4:
      return Do("click 10009");
    default:
      if (Chance(30) && session.ActiveCut() != nullptr) return Do("focus cut");
      return Do("focus " + std::to_string(OneOf(places)));
  }
}

bool Monkey::DoList() {
  MainFrame* frame = session.Frame();
  const bool isLayers = Chance(60);
  const int32_t count = platform::ListCount(isLayers ? frame->layerList : frame->cutList);
  if (count == 0) return true;
  const std::string list = isLayers ? "10004 " : "10003 ";
  const int32_t line = Number(0, count - 1);
  if (Chance(30)) {
    if (!isLayers && static_cast<int32_t>(frame->mdiClient->children.size()) >= kMostCuts) return true;
    Lines lines;
    CutWindow* cut = session.ActiveCut();
    if (isLayers && cut != nullptr && CurrentLayer(cut) != nullptr) lines.push_back(Dialog(kLayerDialog));
    return DoAll(lines) && Do("dblclick " + list + std::to_string(line)) && Take();
  }
  std::string action = "select " + list + std::to_string(line);
  for (int32_t more = isLayers ? 0 : Number(0, 2); more > 0; --more)
    action += " " + std::to_string(Number(0, count - 1));
  return Do(action);
}

bool Monkey::DoView() {
  static const char* const codes[] = {"lineup", "linedown", "pageup", "pagedown", "thumbposition", "thumbtrack"};
  switch (Number(0, 9)) {
    case 0:
      return Do("timer");
    case 1: {
      static const char* const messages[] = {"move", "ldown", "lup", "rdown", "rup", "ldblclk"};
      return Do(Joined({"picker", OneOf(messages), std::to_string(Number(-5, 235)), std::to_string(Number(-5, 65))}));
    }
    case 2:
      if (Chance(50)) return Do(Joined({"client", std::to_string(Number(0, 9)), std::to_string(Number(0, 300))}));
      return Do(Joined({"client", std::to_string(Number(20, 220)), std::to_string(Number(20, 180))}));
    case 3:
      return DoCommand(kToolZoom);
    default:
      break;
  }
  if (session.ActiveCut() == nullptr) return MakeCut();
  std::string line = Joined({"scroll", Chance(50) ? "h" : "v", OneOf(codes)});
  if (Chance(70)) line += " " + std::to_string(Chance(90) ? Number(0, 200) : Number(0, 65535));
  return Do(line);
}

bool Monkey::DoPlayer() {
  switch (Number(0, 6)) {
    case 0:
      return DoCommand(kCommandPlay);
    case 1:
      return DoCommand(kCommandPreview);
    case 2:
      return DoCommand(kCommandPlaySelection);
    case 3:
      return Chance(30) ? DoCommand(kCommandStop) : Do("player files/player.pgm");
    default:
      return Do("tick " + std::to_string(Chance(90) ? Number(1, 12) : Number(0, 300)));
  }
}

// A cut with a file is played, changes in its timing at the most, and is played again.
bool Monkey::DoReplay() {
  static constexpr int32_t changes[] = {kCommandAllKeyFrames, kCommandBrightnessRamp, kCommandFrameRamp,
                                        kCommandFrameSize};
  CutWindow* cut = session.ActiveCut();
  if (cut == nullptr) return MakeCut();
  plan.clear();
  if (cut->path[0] == '\0' && !DoCommand(kCommandSaveCutAs)) return false;
  if (!DoCommand(kCommandPlay)) return false;
  for (int32_t count = Number(0, 4); count > 0; --count) {
    if (!(Chance(60) ? DoPanel() : DoCommand(OneOf(changes)))) return false;
  }
  if (options.isRough && options.damagesFiles && Chance(20)) {
    std::string path = FileName();
    if (path.find(' ') != std::string::npos) path = "files/a";
    if (!Do("# damage " + path + ".ca " + std::to_string(Number(1, INT32_MAX)))) return false;
  }
  return DoCommand(kCommandPlay) && Do("tick " + std::to_string(Number(1, 60)));
}

bool Monkey::DoUndo() {
  for (int32_t count = Number(1, Chance(20) ? 12 : 3); count > 0; --count) {
    if (!DoCommand(kCommandStepBack)) return false;
  }
  for (int32_t count = Chance(60) ? Number(0, 4) : 0; count > 0; --count) {
    if (!DoCommand(kCommandStepForward)) return false;
  }
  return true;
}

bool Monkey::WalkUndo() {
  if (session.HasEnded()) return true;
  for (size_t i = 0; i < session.Frame()->openCuts.size(); ++i) {
    if (!Do("activate " + std::to_string(i))) return false;
    const UndoHistory& history = session.ActiveCut()->undoHistory;
    for (; history.StepsBack() > 0 && Do(Command(kCommandStepBack));) {
    }
    for (; history.StepsForward() > 0 && Do(Command(kCommandStepForward));) {
    }
    for (size_t half = history.StepsBack() / 2; half > 0 && Do(Command(kCommandStepBack)); --half) {
    }
  }
  return session.Failure().empty();
}

// A cell of the pen picker is pressed.
bool Monkey::DoPen() {
  int32_t column = Number(0, 15);
  int32_t row = 0;
  switch (Number(0, 3)) {
    case 0:
      row = Number(1, 3);
      break;
    case 1:
      column = Number(8, 15);
      break;
    default:
      column = Number(0, 7);
      break;
  }
  const std::string place = Joined({std::to_string(9 + 14 * column), std::to_string(9 + 14 * row)});
  return Do((Chance(80) ? "picker ldown " : "picker rdown ") + place) && Do("picker lup " + place);
}

// Pictures of the program itself go on its clipboard.
bool Monkey::DoPicture() {
  CutWindow* cut = session.ActiveCut();
  if (cut == nullptr) return true;
  switch (Number(0, 4)) {
    case 0:
      // A window of no size makes a file that is no picture.
      if (platform::ClientBounds(cut->window).IsEmpty()) return Do("screen files/empty.bmp");
      if (std::find(pictures.begin(), pictures.end(), "files/screen.bmp") == pictures.end()) {
        pictures.push_back("files/screen.bmp");
      }
      return Do("screen files/screen.bmp");
    case 1:
      // What is wider or higher can't be read back.
      if (cut->view.bits == nullptr || std::max(cut->view.width, cut->view.height) > INT16_MAX) return true;
      if (std::find(pictures.begin(), pictures.end(), "files/view.bmp") == pictures.end()) {
        pictures.push_back("files/view.bmp");
      }
      return Do("view files/view.bmp");
    case 2:
      return headless::ClipboardDib().empty() ? DoCommand(kCommandCopyToClipboard)
                                              : Do("save-clipboard files/clipboard.dib");
    case 3:
      return Do("state files/state.json");
    default:
      break;
  }
  if (pictures.empty()) return true;
  const size_t index = static_cast<size_t>(Number(0, static_cast<int32_t>(pictures.size()) - 1));
  return Do("clipboard " + pictures[index]) && DoCommand(kCommandPasteFromClipboard);
}

bool Monkey::DoWindow() {
  const int32_t cuts = static_cast<int32_t>(session.Frame()->mdiClient->children.size());
  if (cuts == 0) return MakeCut();
  if (Chance(70)) return Do("activate " + std::to_string(Number(0, cuts - 1)));
  QueueAnswers();
  return Do("close") && Take();
}

bool Monkey::DoCheck() {
  CutWindow* cut = session.ActiveCut();
  if (cut == nullptr) return true;
  switch (Number(0, 4)) {
    case 0:
      return Do("# remember") && Do(Command(kCommandUndo)) && Do(Command(kCommandUndo)) && Do("# same");
    case 1:
      return Do("# saved");
    case 2:
      return DoPulseCheck();
    default:
      return Do(Command(kCommandShowPrevious)) && Do(Command(kCommandShowPrevious)) && Do("# clean");
  }
}

// After a repaint, a whole gesture and a single pulse: a thumb that is let go of where it is sends one.
bool Monkey::DoPulseCheck() {
  CutWindow* cut = session.ActiveCut();
  // Layers that follow the frame stay where they are on the screen until the next repaint.
  if (session.Frame()->currentTool == kToolFramePosition || IsLayerShownTwice(cut)) return true;
  plan.clear();
  if (!Do(Command(kCommandShowPrevious)) || !Do(Command(kCommandShowPrevious))) return false;
  for (PlanGesture(); !plan.empty(); plan.pop_front()) {
    // A pan from a position between two pixels of the picture leaves a part of one until the next repaint.
    const bool pans = plan.front().find(" ctrl shift") != std::string::npos;
    if (!pans && !DoMouse(plan.front())) return false;
  }
  const int64_t total = int64_t{cut->height} * cut->zoomNumerator / cut->zoomDenominator;
  if (total > UINT16_MAX || cut->scrollY < 0 || cut->scrollY > UINT16_MAX || cut->scrollY % cut->zoomNumerator != 0) {
    return true;
  }
  const std::string position = std::to_string(cut->scrollY);
  return Do("# at " + position) && Do("scroll v thumbposition " + position) && Do("# clean");
}

bool Monkey::DoRough() {
  if (!options.isRough) return true;
  CutWindow* cut = session.ActiveCut();
  const auto send = [this](const char* window, uint32_t message, uint64_t first, uint64_t second) {
    return Do(Joined({"# send", window, std::to_string(message), std::to_string(first), std::to_string(second)}));
  };
  const auto place = [this] {
    return static_cast<uint64_t>(platform::PackPoint({Number(-10, 700), Number(-10, 500)}));
  };
  static const char* const windows[] = {"frame", "picker", "player"};
  switch (Number(options.damagesFiles ? 0 : 4, 12)) {
    case 0:
    case 1:
    case 2:
    case 3: {
      const std::string path = Chance(10) ? "files/sorvel.ini" : DocumentPath();
      if (path.find(' ') != std::string::npos) return true;
      if (!Do("# damage " + path + " " + std::to_string(Number(1, INT32_MAX)))) return false;
      QueueAnswers();
      return Chance(70) ? Do("open " + Quoted(path)) && Take() : true;
    }
    case 4:
    case 5:
    case 6:
      return Do(std::string("# expose ") + (cut != nullptr && Chance(70) ? "cut" : OneOf(windows)));
    case 7:
      return send("frame", platform::kMessageSize, 0, platform::JoinHalves(Number(0, 900), Number(0, 700)));
    case 8: {
      static constexpr uint32_t messages[] = {platform::kMessageLeftDown, platform::kMessageMouseMove,
                                              platform::kMessageMouseMove, platform::kMessageLeftUp};
      return send("frame", OneOf(messages), 1, place());
    }
    case 9:
      return send(Chance(50) ? "frame" : "cut", platform::kMessageSetCursor, 0, 1);
    case 10:
      return send("player", Chance(70) ? platform::kMessageTimer : platform::kMessageClose, 0, 0);
    case 11:
      return send("frame", platform::kMessageMenuSelect, static_cast<uint64_t>(Number(40000, 40145)), 0);
    default:
      return send("frame", platform::kMessageActivate, static_cast<uint64_t>(Number(0, 1)), 0);
  }
}

bool Monkey::DoExit() {
  if (session.Steps() < 200) return true;
  plan.clear();
  QueueAnswers();
  const bool closes = options.isRough && Chance(30);
  if (!Do(closes ? "# send frame 16 0 0" : "exit") || !Take()) return false;
  if (!session.HasEnded() || !options.isRough || Chance(50)) return true;
  files = 0;
  answers = 0;
  questionsSeen = 0;
  return Do("# restart");
}

// Gestures.

Point Monkey::PlaceOn(CutWindow* cut) {
  const Bounds client = platform::ClientBounds(cut->window);
  const Bounds selection = cut->selection;
  Point place;
  switch (Number(0, 19)) {
    case 0:
    case 1:
      place = {lastPlace.x + Number(-6, 6), lastPlace.y + Number(-6, 6)};
      break;
    case 2:
      place = {Number(0, std::max(client.right, 1)), Number(0, std::max(client.bottom, 1))};
      break;
    case 3:
    case 4:
    case 5:
      if (!cut->HasSelection()) break;
      place = {Chance(30) ? selection.left : (selection.left + selection.right) / 2,
               Chance(30) ? selection.top : (selection.top + selection.bottom) / 2};
      break;
    case 6:
      if (Chance(60)) {
        place = {Number(-40, client.right + 40), Number(-40, client.bottom + 40)};
      } else {
        place = {Number(INT16_MIN, INT16_MAX), Number(INT16_MIN, INT16_MAX)};
      }
      break;
    default:
      place = {Number(-2, std::min(cut->width, 4000) + 2), Number(-2, std::min(cut->height, 4000) + 2)};
      cut->CutToWindow(&place, 1);
      break;
  }
  place = {std::clamp<int32_t>(place.x, INT16_MIN, INT16_MAX), std::clamp<int32_t>(place.y, INT16_MIN, INT16_MAX)};
  lastPlace = place;
  return place;
}

const char* Monkey::Modifiers() {
  if (Chance(80)) return "";
  return Chance(70) ? " ctrl" : Chance(50) ? " shift" : " ctrl shift";
}

std::string Monkey::Mouse(const char* message, Point place, const char* modifiers) {
  return Joined({"mouse", message, std::to_string(place.x), std::to_string(place.y)}).append(modifiers);
}

void Monkey::PlanDrag(bool withControl) {
  CutWindow* cut = session.ActiveCut();
  const char* keys = withControl ? " ctrl" : Modifiers();
  const Point start = PlaceOn(cut);
  if (Chance(60)) plan.push_back(Mouse("move", start));
  plan.push_back(Mouse("ldown", start, keys));
  Point end = start;
  for (int32_t moves = Chance(80) ? Number(1, 3) : Number(0, 12); moves > 0; --moves) {
    end = Chance(50) ? Point{std::min(end.x + Number(0, 9), int32_t{INT16_MAX}),
                             std::min(end.y + Number(0, 9), int32_t{INT16_MAX})}
                     : PlaceOn(cut);
    plan.push_back(Mouse("move", end, keys));
  }
  plan.push_back(Mouse("lup", end, keys));
}

void Monkey::PlanClicks(int32_t count) {
  CutWindow* cut = session.ActiveCut();
  for (; count > 0; --count) {
    const Point place = PlaceOn(cut);
    const char* keys = Modifiers();
    if (Chance(50)) plan.push_back(Mouse("move", place, keys));
    plan.push_back(Mouse("ldown", place, keys));
    plan.push_back(Mouse("lup", place, keys));
  }
}

void Monkey::PlanGesture() {
  static const char* const messages[] = {"move", "move", "ldown", "lup", "ldblclk", "rdown", "rup", "rdblclk"};
  CutWindow* cut = session.ActiveCut();
  if (cut == nullptr) return;
  switch (Number(0, 11)) {
    case 0:
    case 1:
    case 2:
    case 3:
      PlanDrag(false);
      break;
    case 4:
      PlanDrag(true);
      break;
    case 5:
    case 6:
      PlanClicks(Number(1, 5));
      if (Chance(60)) {
        plan.push_back(Mouse("rdown", lastPlace));
        plan.push_back(Mouse("rup", lastPlace));
      }
      break;
    case 7: {
      const Point place = PlaceOn(cut);
      plan.push_back(Mouse("rdown", place));
      plan.push_back(Mouse("rup", place, Modifiers()));
      break;
    }
    case 8:
      for (int32_t moves = Number(1, 6); moves > 0; --moves) plan.push_back(Mouse("move", PlaceOn(cut)));
      break;
    case 9:
      // A pan.
      for (int32_t moves = Number(2, 5); moves > 0; --moves) plan.push_back(Mouse("move", PlaceOn(cut), " ctrl shift"));
      break;
    default:
      for (int32_t count = Number(1, 8); count > 0; --count) {
        plan.push_back(Mouse(OneOf(messages), PlaceOn(cut), Modifiers()));
      }
      break;
  }
}

// Entries.

Monkey::Lines Monkey::NewCutDialogs() {
  if (Chance(15)) return {Dialog(kCutDialog, false)};
  return {Dialog(kCutDialog), Dialog(kLayerDialog, !Chance(10))};
}

Monkey::Lines Monkey::DialogsOf(int32_t id) {
  MainFrame* frame = session.Frame();
  CutWindow* cut = session.ActiveCut();
  const bool ok = !Chance(15);
  const auto ifCut = [&](int32_t resource) { return cut != nullptr ? Lines{Dialog(resource, ok)} : Lines{}; };
  const auto ifCell = [&](int32_t resource) {
    return cut != nullptr && HasCell(cut) ? Lines{Dialog(resource, ok)} : Lines{};
  };
  switch (id) {
    case kCommandNewCut:
      return NewCutDialogs();
    case kCommandAddNumberedCut:
    case kCommandInsertNumberedCut:
      return frame->film->cuts.Count() == 0 || IsCutListed(frame) ? NewCutDialogs() : Lines{};
    case kCommandRenameCut:
      return IsCutListed(frame) ? Lines{Dialog(kRenameDialog, ok)} : Lines{};
    case kCommandCutProperties:
      return ifCut(kCutDialog);
    case kCommandAddLayer:
    case kCommandInsertLayer:
      return ifCut(kLayerDialog);
    case kCommandLayerProperties:
      return cut != nullptr && CurrentLayer(cut) != nullptr ? Lines{Dialog(kLayerDialog, ok)} : Lines{};
    case kCommandFrameSize:
      return ifCut(kFrameSizeDialog);
    case kCommandAddFrames:
    case kCommandDeleteFrames:
      return ifCut(kFrameCountDialog);
    case kCommandBrightnessRamp:
      return ifCut(kBrightnessRampDialog);
    case kCommandFrameRamp:
      return ifCut(kFrameRampDialog);
    case kCommandLayerRamp:
      return ifCut(kLayerRampDialog);
    case kCommandRandomDots:
      return ifCell(kRandomDotsDialog);
    case kCommandDrawGrid:
      return ifCell(kGridDialog);
    case kCommandSnapGrid:
      return {Dialog(kGridDialog, ok)};
    case kCommandMask:
      return {Dialog(kMaskDialog, ok)};
    case kCommandFont:
      return {Dialog(kFontDialog, ok)};
    case kCommandNewFilm:
    case kCommandFilmProperties:
      return {Dialog(kFilmDialog, ok)};
    default:
      return {};
  }
}

std::string Monkey::ShortText() {
  static const char* const texts[] = {"A",        "B",    "C",         "",     "a b",        "絵",
                                      "カット１", "ソ表", "say \"x\"", "%s%n", "back\\slash"};
  return OneOf(texts);
}

std::string Monkey::LongText() {
  if (Chance(85)) return ShortText();
  std::string text;
  for (int32_t count = Number(100, 400); count > 0; --count) text += Chance(90) ? "x" : "絵";
  return text;
}

std::string Monkey::SizeText() {
  static const char* const odd[] = {"0", "-4", "abc", "", "99999", "1,0", "32768"};
  if (Chance(4)) return OneOf(odd);
  return std::to_string(Chance(90) ? Number(1, 64) : Number(1, 300));
}

// Both sizes of a picture. What isn't a number counts as more than 65536, so such a side comes with a short one.
std::string Monkey::Sizes(int32_t widthId, int32_t heightId) {
  int32_t width = Number(1, 64);
  int32_t height = Number(1, 48);
  std::string across;
  switch (Number(0, 39)) {
    case 0:
      width = height = 1;
      break;
    case 1:
      width = 3;
      height = 500;
      break;
    case 2:
      width = 500;
      height = Number(1, 3);
      break;
    case 3:
      width = 2;
      height = 1;
      break;
    case 4:
    case 5:
      width = Number(60, 320);
      height = Number(60, 240);
      break;
    case 6:
      if (options.isLarge) {
        static const char* const odd[] = {"", "abc", "-3", "99999"};
        across = OneOf(odd);
        height = Number(1, 6);
      }
      break;
    case 7:
      if (options.isLarge) {
        width = Number(400, 1400);
        height = Number(300, 900);
      }
      break;
    case 8:
      if (options.isLarge && Chance(20)) width = height = 32767;
      break;
    default:
      break;
  }
  if (across.empty()) across = std::to_string(width);
  return Joined(
      {std::to_string(widthId) + "=" + Quoted(across), std::to_string(heightId) + "=" + std::to_string(height)});
}

std::string Monkey::FontLine() {
  std::vector<std::string> names;
  platform::ListFonts(AddFont, &names);
  if (names.empty()) return "";
  return " 1028=" + Quoted(names[static_cast<size_t>(Number(0, static_cast<int32_t>(names.size()) - 1))]);
}

std::string Monkey::Dialog(int32_t resource, bool ok) {
  std::string line = "dialog " + std::to_string(resource);
  const auto set = [&line](int32_t id, const std::string& value) {
    line += " " + std::to_string(id) + "=" + Quoted(value);
  };
  switch (resource) {
    case kLayerDialog:
      if (Chance(70)) set(kLayerNameEdit, Chance(95) ? ShortText() : LongText());
      if (Chance(30)) line += " " + Sizes(kLayerWidthEdit, kLayerHeightEdit);
      if (Chance(20)) set(kLayerFollowCheck, Chance(70) ? "on" : "off");
      break;
    case kCutDialog:
      // Only a cut whose credit is what its width is as text has its compiled stream brought up to date in place.
      if (Chance(8)) {
        line += Chance(50) ? " 1002=65 1037=A" : " 1002=66 1037=B";
        line += " 1001=" + std::to_string(Number(1, 48)) + " 1055=on";
        break;
      }
      line += " " + Sizes(kCutWidthEdit, kCutHeightEdit);
      if (Chance(30)) set(kCutFpsEdit, Chance(80) ? std::to_string(Number(1, 60)) : std::to_string(Number(-1, 40000)));
      if (Chance(60)) set(Number(kCutWholeRadio, kCutQuarterRadio), "on");
      if (Chance(10)) set(kCutCreditEdit, LongText());
      break;
    case kGridDialog:
      // Small steps on a large cell draw for long.
      set(kGridWidthEdit, Chance(90) ? std::to_string(Number(1, 12)) : SizeText());
      set(kGridHeightEdit, Chance(90) ? std::to_string(Number(1, 12)) : SizeText());
      break;
    case kMaskDialog: {
      static constexpr int32_t boxes[] = {kMaskBlackCheck,    kMaskWhiteCheck,       kMaskDarkCheck,
                                          kMaskLightCheck,    kMaskTransparentCheck, kMaskLineBlackCheck,
                                          kMaskLineDarkCheck, kMaskLineLightCheck,   kMaskPlus1Check,
                                          kMaskPlus2Check,    kMaskMinus1Check,      kMaskMinus2Check};
      if (Chance(50)) set(kMaskClearButton, "click");
      if (Chance(5)) set(kMaskInvertButton, "click");
      for (int32_t count = Chance(50) ? 0 : Number(1, 3); count > 0; --count)
        set(OneOf(boxes), Chance(60) ? "on" : "off");
      break;
    }
    case kFilmDialog:
      set(kFilmWidthEdit, SizeText());
      set(kFilmHeightEdit, SizeText());
      if (Chance(50)) set(kFilmTitleEdit, LongText());
      if (Chance(50)) set(kFilmAuthorEdit, LongText());
      break;
    case kFontDialog:
      if (Chance(70)) line += FontLine();
      set(kFontSizeEdit, Chance(90) ? std::to_string(Number(1, 30)) : SizeText());
      set(kFontSpacingEdit, Chance(90) ? std::to_string(Number(0, 9)) : SizeText());
      set(kFontWeightEdit, Chance(90) ? "400" : SizeText());
      break;
    case kTextDialog: {
      static const char* const texts[] = {"A", "AB\nC", "あいう\nえ", "", "x", "\n\n", "縦書き、「」"};
      if (Chance(80)) set(kTextDialogEdit, OneOf(texts));
      break;
    }
    case kLayerRampDialog:
    case kBrightnessRampDialog:
    case kFrameRampDialog:
      set(kRampEndEdit, Chance(90) ? std::to_string(Number(1, 12)) : SizeText());
      break;
    case kFrameCountDialog:
      set(kFrameCountEdit, Chance(95) ? std::to_string(Number(1, 9)) : SizeText());
      break;
    case kFrameSizeDialog:
      set(kFrameWidthEdit, SizeText());
      set(kFrameHeightEdit, SizeText());
      break;
    case kRenameDialog: {
      static const char* const names[] = {"a", "b", "renamed", "ソ表", "", "sub/b", "x.y", "c 001"};
      if (Chance(85)) set(kRenameEdit, Chance(95) ? OneOf(names) : LongText());
      break;
    }
    case kRandomDotsDialog:
      set(kDotGapEdit, Chance(90) ? std::to_string(Number(1, 9)) : SizeText());
      break;
    default:
      break;
  }
  return line + EndOf(ok);
}

std::string Monkey::FileName() {
  static const char* const names[] = {"a", "a", "b", "b", "c", "c001", "ソ表", "sub/a", "with blank"};
  static const char* const extensions[] = {".cut", ".lyr", ".flm", ".bmp", ".sv", ".ca", ".CUT", ".txt", "."};
  if (Chance(8)) return "cancel";
  if (Chance(2)) return Chance(50) ? "nowhere/a" : "files";
  std::string name = std::string("files/") + OneOf(names);
  if (Chance(15)) name += OneOf(extensions);
  return name;
}

std::string Monkey::DocumentPath() {
  static const char* const extensions[] = {".cut", ".cut", ".cut", ".lyr", ".flm", ".CUT", ".ca", ".bmp"};
  std::string name = FileName();
  while (name == "cancel" || name.find('.') != std::string::npos) name = FileName();
  return name + OneOf(extensions);
}

}  // namespace sorvel::monkey
