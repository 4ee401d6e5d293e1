#include "console/script_runner.h"

#include <filesystem>

#include "console/console_files.h"
#include "console/script_words.h"
#include "platform/headless/headless.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

namespace headless = platform::headless;

// The controls that a script can name by their numbers.
constexpr struct {
  int32_t id;
  platform::WindowHandle MainFrame::*window;
} kPanels[] = {
    {kFrameTimeEdit, &MainFrame::frameTimeEdit}, {kCutList, &MainFrame::cutList},
    {kLayerList, &MainFrame::layerList},         {kLoopEdit, &MainFrame::loopEdit},
    {kCommentEdit, &MainFrame::commentEdit},     {kBrightnessEdit, &MainFrame::brightnessEdit},
    {kKeyFrameCheck, &MainFrame::keyFrameCheck},
};

}  // namespace

struct ScriptRunner::Action {
  const char* name;
  const char* usage;
  size_t fewestWords;  // the name counts
  size_t mostWords;
  int (ScriptRunner::*run)();
};

const ScriptRunner::Action ScriptRunner::kActions[] = {
    {"client", "client W H", 3, 3, &ScriptRunner::RunClient},
    {"command", "command ID", 2, 2, &ScriptRunner::RunCommand},
    {"key", "key NAME", 2, 2, &ScriptRunner::RunKey},
    {"char", "char C", 2, 2, &ScriptRunner::RunChar},
    {"mouse", "mouse MESSAGE X Y [ctrl] [shift]", 4, 6, &ScriptRunner::RunMouse},
    {"picker", "picker MESSAGE X Y", 4, 4, &ScriptRunner::RunPicker},
    {"timer", "timer", 1, 1, &ScriptRunner::RunTimer},
    {"wheel", "wheel N [ctrl] [shift]", 2, 4, &ScriptRunner::RunWheel},
    {"scroll", "scroll h|v CODE [POS]", 3, 4, &ScriptRunner::RunScroll},
    {"panel", "panel ID TEXT", 3, 3, &ScriptRunner::RunPanel},
    {"click", "click 10009", 2, 2, &ScriptRunner::RunClick},
    {"select", "select ID LINE...", 3, kAnyNumber, &ScriptRunner::RunSelect},
    {"dblclick", "dblclick ID LINE", 3, 3, &ScriptRunner::RunDoubleClick},
    {"focus", "focus ID|cut", 2, 2, &ScriptRunner::RunFocus},
    {"dialog", "dialog TEMPLATE [ID=VALUE]... ok|cancel", 3, kAnyNumber, &ScriptRunner::RunDialog},
    {"file", "file PATH|cancel [TYPE]", 2, 3, &ScriptRunner::RunFile},
    {"answer", "answer yes|no", 2, 2, &ScriptRunner::RunAnswer},
    {"color", "color RRGGBB|cancel", 2, 2, &ScriptRunner::RunColor},
    {"clipboard", "clipboard FILE.bmp", 2, 2, &ScriptRunner::RunClipboard},
    {"save-clipboard", "save-clipboard FILE", 2, 2, &ScriptRunner::RunSaveClipboard},
    {"open", "open PATH", 2, 2, &ScriptRunner::RunOpen},
    {"drop", "drop PATH", 2, 2, &ScriptRunner::RunDrop},
    {"activate", "activate N", 2, 2, &ScriptRunner::RunActivate},
    {"close", "close", 1, 1, &ScriptRunner::RunClose},
    {"tick", "tick N", 2, 2, &ScriptRunner::RunTick},
    {"state", "state FILE", 2, 2, &ScriptRunner::RunState},
    {"view", "view FILE.bmp", 2, 2, &ScriptRunner::RunView},
    {"screen", "screen FILE.bmp", 2, 2, &ScriptRunner::RunScreen},
    {"player", "player FILE.pgm", 2, 2, &ScriptRunner::RunPlayer},
    {"sheet", "sheet open|close|select LAYER ROW [ROW]|type N|delete|drag LAYER ROW ROW|key NAME|screen FILE.bmp", 2, 5,
     &ScriptRunner::RunSheet},
    {"exit", "exit", 1, 1, &ScriptRunner::RunExit},
};

int ScriptRunner::Run(const std::vector<std::string>& actionWords) {
  words = actionWords;
  for (const Action& action : kActions) {
    if (words[0] != action.name) continue;
    if (words.size() < action.fewestWords || words.size() > action.mostWords) {
      return Refuse(std::string("the action is written ") + action.usage);
    }
    const int status = (this->*action.run)();
    if (!headless::Failure().empty()) return Refuse(headless::Failure());
    if (!HasEnded()) PaintWindows();
    return status;
  }
  return Refuse("there is no action " + words[0]);
}

bool ScriptRunner::HasEnded() const {
  return headless::HasQuit();
}

int ScriptRunner::Refuse(const std::string& reason) {
  problem = reason;
  return kRefused;
}

bool ScriptRunner::ReadNumber(const std::string& word, int32_t lowest, int32_t highest, int32_t* number) {
  if (ParseNumber(word, lowest, highest, number)) return true;
  problem = "\"" + word + "\" isn't a number from " + std::to_string(lowest) + " to " + std::to_string(highest);
  return false;
}

bool ScriptRunner::ReadText(const std::string& word, std::string* text) {
  if (platform::Utf8ToShiftJis(word, text)) return true;
  problem = "\"" + word + "\" has letters that Shift JIS can't express";
  return false;
}

bool ScriptRunner::ReadPath(const std::string& word, std::string* path) {
  if (word.empty()) {
    problem = "the path is empty";
    return false;
  }
  return ReadText(std::filesystem::path(word).is_absolute() ? word : FullPath(word), path);
}

bool ScriptRunner::ReadPoint(size_t index, Point* point) {
  return ReadNumber(words[index], INT16_MIN, INT16_MAX, &point->x) &&
         ReadNumber(words[index + 1], INT16_MIN, INT16_MAX, &point->y);
}

bool ScriptRunner::ReadModifiers(size_t index, uint32_t* modifiers) {
  *modifiers = 0;
  for (size_t i = index; i < words.size(); ++i) {
    int32_t modifier = 0;
    if (!FindModifier(words[i], &modifier)) {
      problem = "a mouse message takes no " + words[i] + " here";
      return false;
    }
    *modifiers |= static_cast<uint32_t>(modifier);
  }
  return true;
}

bool ScriptRunner::ReadMouseMessage(const std::string& word, uint32_t* message) {
  int32_t value = 0;
  const bool isKnown = FindMouseMessage(word, &value);
  *message = static_cast<uint32_t>(value);
  if (!isKnown) problem = "there is no mouse message " + word;
  return isKnown;
}

CutWindow* ScriptRunner::NeedCut() {
  CutWindow* cut = frame->ActiveCut();
  if (cut == nullptr) problem = "no cut is open";
  return cut;
}

platform::WindowHandle ScriptRunner::NeedList(const std::string& word) {
  for (int32_t id : {kCutList, kLayerList}) {
    if (word == std::to_string(id)) return FindPanel(word);
  }
  problem = "there is no list " + word;
  return nullptr;
}

platform::WindowHandle ScriptRunner::FindPanel(const std::string& word) const {
  int32_t id = 0;
  if (!ParseNumber(word, 0, UINT16_MAX, &id)) return nullptr;
  for (const auto& panel : kPanels) {
    if (id == panel.id) return frame->*panel.window;
  }
  return nullptr;
}

void ScriptRunner::PaintWindows() {
  for (const CutWindow* cut : frame->openCuts) headless::PaintInvalid(cut->window);
  headless::PaintInvalid(frame->animationWindow.window);
  if (frame->sheetWindow.IsOpen()) headless::PaintInvalid(frame->sheetWindow.window);
}

int ScriptRunner::SendMouse(platform::WindowHandle window, uint32_t message, Point place, uint32_t modifiers) {
  switch (message) {
    case platform::kMessageLeftDown:
    case platform::kMessageLeftDouble:
      heldButtons |= platform::kKeyLeftButton;
      break;
    case platform::kMessageLeftUp:
      heldButtons &= ~static_cast<uint32_t>(platform::kKeyLeftButton);
      break;
    case platform::kMessageRightDown:
    case platform::kMessageRightDouble:
      heldButtons |= platform::kKeyRightButton;
      break;
    case platform::kMessageRightUp:
      heldButtons &= ~static_cast<uint32_t>(platform::kKeyRightButton);
      break;
    case platform::kMessageMiddleDown:
      heldButtons |= platform::kKeyMiddleButton;
      break;
    case platform::kMessageMiddleUp:
      heldButtons &= ~static_cast<uint32_t>(platform::kKeyMiddleButton);
      break;
    default:
      break;
  }
  headless::SetCursorPlace(platform::ClientToScreen(window, place));
  platform::Send(window, message, heldButtons | modifiers, platform::PackPoint(place));
  return kDone;
}

}  // namespace sorvel::console
