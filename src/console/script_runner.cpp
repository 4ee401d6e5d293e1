#include "console/script_runner.h"

#include <charconv>
#include <filesystem>
#include <string_view>

#include "console/console_files.h"
#include "console/picture_reader.h"
#include "console/script_reader.h"
#include "console/state_writer.h"
#include "platform/headless/headless.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

namespace headless = platform::headless;

constexpr size_t kAnyNumber = static_cast<size_t>(-1);
// What the window system puts where a notification stands when a command comes from a key.
constexpr int32_t kFromAccelerator = 1;
// A window of more pixels isn't made.
constexpr int32_t kMostClientPixels = 1 << 24;

struct NamedValue {
  const char* name;
  int32_t value;
};

template <size_t count>
bool FindValue(const NamedValue (&table)[count], std::string_view name, int32_t* value) {
  for (const NamedValue& each : table) {
    if (name != each.name) continue;
    *value = each.value;
    return true;
  }
  return false;
}

constexpr NamedValue kMouseMessages[] = {
    {"move", platform::kMessageMouseMove},      {"ldown", platform::kMessageLeftDown},
    {"lup", platform::kMessageLeftUp},          {"ldblclk", platform::kMessageLeftDouble},
    {"rdown", platform::kMessageRightDown},     {"rup", platform::kMessageRightUp},
    {"rdblclk", platform::kMessageRightDouble},
};

constexpr NamedValue kModifiers[] = {{"ctrl", platform::kKeyControl}, {"shift", platform::kKeyShift}};

constexpr NamedValue kScrollCodes[] = {
    {"lineup", platform::kScrollLineUp},
    {"linedown", platform::kScrollLineDown},
    {"pageup", platform::kScrollPageUp},
    {"pagedown", platform::kScrollPageDown},
    {"thumbposition", platform::kScrollThumbPosition},
    {"thumbtrack", platform::kScrollThumbTrack},
};

constexpr NamedValue kNamedKeys[] = {{"Enter", 0x0D}, {"Tab", 0x09}, {"Esc", 0x1B}, {"Space", 0x20}};

struct Key {
  int32_t code = 0;  // the window system's virtual key
  bool shift = false;
  bool control = false;
};

// "Shift+" and "Ctrl+", in either order, before a named key, F1 to F24, a letter or a digit.
bool ParseKey(std::string_view name, Key* key) {
  constexpr std::string_view shift = "Shift+";
  constexpr std::string_view control = "Ctrl+";
  constexpr int32_t firstFunctionKey = 0x70;
  while (true) {
    if (!key->shift && name.substr(0, shift.size()) == shift) {
      key->shift = true;
      name.remove_prefix(shift.size());
    } else if (!key->control && name.substr(0, control.size()) == control) {
      key->control = true;
      name.remove_prefix(control.size());
    } else {
      break;
    }
  }
  if (FindValue(kNamedKeys, name, &key->code)) return true;
  if (name.size() == 1) {
    const char byte = name[0];
    const bool isSmall = byte >= 'a' && byte <= 'z';
    key->code = isSmall ? byte - 'a' + 'A' : byte;
    return isSmall || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
  }
  int32_t number = 0;
  if (name.empty() || name[0] != 'F' || name[1] == '0' || !ParseNumber(std::string(name.substr(1)), 1, 24, &number)) {
    return false;
  }
  key->code = firstFunctionKey + number - 1;
  return true;
}

bool ParseColor(std::string_view word, uint32_t* color) {
  constexpr size_t digits = 6;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, *color, 16);
  return word.size() == digits && word[0] != '-' && error == std::errc() && stop == end;
}

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
    {"scroll", "scroll h|v CODE [POS]", 3, 4, &ScriptRunner::RunScroll},
    {"panel", "panel ID TEXT", 3, 3, &ScriptRunner::RunPanel},
    {"click", "click 10009", 2, 2, &ScriptRunner::RunClick},
    {"select", "select ID LINE...", 3, kAnyNumber, &ScriptRunner::RunSelect},
    {"dblclick", "dblclick ID LINE", 3, 3, &ScriptRunner::RunDoubleClick},
    {"focus", "focus ID|cut", 2, 2, &ScriptRunner::RunFocus},
    {"dialog", "dialog TEMPLATE [ID=VALUE]... ok|cancel", 3, kAnyNumber, &ScriptRunner::RunDialog},
    {"file", "file PATH|cancel", 2, 2, &ScriptRunner::RunFile},
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

bool ScriptRunner::ReadMouseMessage(const std::string& word, uint32_t* message) {
  int32_t value = 0;
  if (!FindValue(kMouseMessages, word, &value)) {
    problem = "there is no mouse message " + word;
    return false;
  }
  *message = static_cast<uint32_t>(value);
  return true;
}

CutWindow* ScriptRunner::NeedCut() {
  CutWindow* cut = frame->ActiveCut();
  if (cut == nullptr) problem = "no cut is open";
  return cut;
}

platform::WindowHandle ScriptRunner::NeedList(const std::string& word) {
  if (word == std::to_string(kCutList)) return frame->cutList;
  if (word == std::to_string(kLayerList)) return frame->layerList;
  problem = "there is no list " + word;
  return nullptr;
}

platform::WindowHandle ScriptRunner::FindPanel(int32_t id) const {
  switch (id) {
    case kFrameTimeEdit:
      return frame->frameTimeEdit;
    case kCutList:
      return frame->cutList;
    case kLayerList:
      return frame->layerList;
    case kLoopEdit:
      return frame->loopEdit;
    case kCommentEdit:
      return frame->commentEdit;
    case kBrightnessEdit:
      return frame->brightnessEdit;
    case kKeyFrameCheck:
      return frame->keyFrameCheck;
    default:
      return nullptr;
  }
}

void ScriptRunner::PaintWindows() {
  for (CutWindow* cut : OpenCuts(*frame)) headless::PaintInvalid(cut->window);
  headless::PaintInvalid(frame->animationWindow.window);
}

int ScriptRunner::RunClient() {
  int32_t width = 0;
  int32_t height = 0;
  if (!ReadNumber(words[1], 0, INT16_MAX, &width) || !ReadNumber(words[2], 0, INT16_MAX, &height)) return kRefused;
  if (width * height > kMostClientPixels) return Refuse("a window isn't made as large as that");
  headless::SetClientSize(width, height);
  return kDone;
}

int ScriptRunner::RunCommand() {
  int32_t id = 0;
  if (!ReadNumber(words[1], 0, UINT16_MAX, &id)) return kRefused;
  platform::Send(frame->frameWindow, platform::kMessageCommand, platform::JoinHalves(id, 0), 0);
  return kDone;
}

int ScriptRunner::RunKey() {
  Key key;
  if (!ParseKey(words[1], &key)) return Refuse("there is no key " + words[1]);
  const int32_t id = headless::FindAccelerator(key.code, key.shift, key.control);
  if (id == 0) return kDone;
  platform::Send(frame->frameWindow, platform::kMessageCommand, platform::JoinHalves(id, kFromAccelerator), 0);
  return kDone;
}

int ScriptRunner::RunChar() {
  if (CountCharacters(words[1]) != 1) return Refuse("\"" + words[1] + "\" isn't one character");
  std::string text;
  const CutWindow* cut = NeedCut();
  if (cut == nullptr || !ReadText(words[1], &text)) return kRefused;
  const platform::WindowHandle window = cut->window;
  // A window that isn't of the system's wide kind gets the two bytes of a character one after the other.
  for (char byte : text) platform::Send(window, platform::kMessageChar, static_cast<unsigned char>(byte), 0);
  return kDone;
}

int ScriptRunner::RunMouse() {
  uint32_t message = 0;
  Point place;
  if (!ReadMouseMessage(words[1], &message) || !ReadPoint(2, &place)) return kRefused;
  uint32_t modifiers = 0;
  for (size_t i = 4; i < words.size(); ++i) {
    int32_t modifier = 0;
    FindValue(kModifiers, words[i], &modifier);
    if (modifier == 0) return Refuse("a mouse message takes no " + words[i] + " here");
    modifiers |= static_cast<uint32_t>(modifier);
  }
  const CutWindow* cut = NeedCut();
  return cut != nullptr ? SendMouse(cut->window, message, place, modifiers) : kRefused;
}

int ScriptRunner::RunPicker() {
  uint32_t message = 0;
  Point place;
  if (!ReadMouseMessage(words[1], &message) || !ReadPoint(2, &place)) return kRefused;
  return SendMouse(frame->penPicker.window, message, place, 0);
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
    default:
      break;
  }
  headless::SetCursorPlace(platform::ClientToScreen(window, place));
  platform::Send(window, message, heldButtons | modifiers, platform::PackPoint(place));
  return kDone;
}

int ScriptRunner::RunTimer() {
  headless::RunWindowTimers();
  return kDone;
}

int ScriptRunner::RunScroll() {
  const bool isHorizontal = words[1] == "h";
  if (!isHorizontal && words[1] != "v") return Refuse("there is no scroll bar " + words[1]);
  int32_t code = 0;
  int32_t position = 0;
  if (!FindValue(kScrollCodes, words[2], &code)) return Refuse("there is no scroll code " + words[2]);
  if (words.size() > 3 && !ReadNumber(words[3], 0, UINT16_MAX, &position)) return kRefused;
  const CutWindow* cut = NeedCut();
  if (cut == nullptr) return kRefused;
  platform::Send(cut->window, isHorizontal ? platform::kMessageHorizontalScroll : platform::kMessageVerticalScroll,
                 platform::JoinHalves(code, position), 0);
  return kDone;
}

int ScriptRunner::RunPanel() {
  int32_t id = 0;
  std::string text;
  const bool isEdit = ParseNumber(words[1], kFrameTimeEdit, kBrightnessEdit, &id) && id != kCutList && id != kLayerList;
  if (!isEdit) return Refuse("there is no edit " + words[1]);
  if (words[2].find('\n') != std::string::npos) return Refuse("a line end can't be typed into an edit of one line");
  if (!ReadText(words[2], &text)) return kRefused;
  platform::SetFocusTo(FindPanel(id));
  headless::TypeText(FindPanel(id), text);
  return kDone;
}

int ScriptRunner::RunClick() {
  if (words[1] != std::to_string(kKeyFrameCheck)) return Refuse("there is no check box " + words[1]);
  platform::SetFocusTo(frame->keyFrameCheck);
  headless::ClickButton(frame->keyFrameCheck);
  return kDone;
}

int ScriptRunner::RunSelect() {
  const platform::WindowHandle list = NeedList(words[1]);
  if (list == nullptr) return kRefused;
  std::vector<int32_t> lines;
  for (size_t i = 2; i < words.size(); ++i) {
    int32_t line = 0;
    if (!ParseNumber(words[i], 0, platform::ListCount(list) - 1, &line)) {
      return Refuse("list " + words[1] + " has no line " + words[i]);
    }
    lines.push_back(line);
  }
  // Of several clicks in a list of one selected line the last one counts.
  if (list == frame->layerList) lines.erase(lines.begin(), lines.end() - 1);
  headless::SelectLines(list, lines);
  return kDone;
}

int ScriptRunner::RunDoubleClick() {
  const platform::WindowHandle list = NeedList(words[1]);
  if (list == nullptr) return kRefused;
  int32_t line = 0;
  if (!ParseNumber(words[2], 0, platform::ListCount(list) - 1, &line)) {
    return Refuse("list " + words[1] + " has no line " + words[2]);
  }
  headless::DoubleClickLine(list, line);
  return kDone;
}

int ScriptRunner::RunFocus() {
  platform::WindowHandle window = nullptr;
  if (words[1] == "cut") {
    const CutWindow* cut = NeedCut();
    if (cut == nullptr) return kRefused;
    window = cut->window;
  } else {
    int32_t id = 0;
    if (ParseNumber(words[1], kFrameTimeEdit, kKeyFrameCheck, &id)) window = FindPanel(id);
    if (window == nullptr) return Refuse("nothing of the number " + words[1] + " takes the focus");
  }
  platform::SetFocusTo(window);
  return kDone;
}

int ScriptRunner::RunDialog() {
  headless::DialogAnswer answer;
  if (!ReadNumber(words[1], 1, UINT16_MAX, &answer.resource)) return kRefused;
  const std::string& button = words.back();
  if (button != "ok" && button != "cancel") return Refuse("a dialog ends with ok or cancel");
  answer.ok = button == "ok";
  for (size_t i = 2; i + 1 < words.size(); ++i) {
    const size_t sign = words[i].find('=');
    int32_t id = 0;
    std::string value;
    if (sign == std::string::npos || !ParseNumber(words[i].substr(0, sign), 1, UINT16_MAX, &id)) {
      return Refuse("\"" + words[i] + "\" isn't ID=VALUE");
    }
    if (!ReadText(words[i].substr(sign + 1), &value)) return kRefused;
    answer.values.emplace_back(id, value);
  }
  headless::QueueDialog(answer);
  return kDone;
}

int ScriptRunner::RunFile() {
  if (words[1] == "cancel") {
    headless::QueueFileCancel();
    return kDone;
  }
  std::string path;
  if (!ReadPath(words[1], &path)) return kRefused;
  headless::QueueFile(path);
  return kDone;
}

int ScriptRunner::RunAnswer() {
  if (words[1] != "yes" && words[1] != "no") return Refuse("a question is answered with yes or no");
  headless::QueueYesNo(words[1] == "yes");
  return kDone;
}

int ScriptRunner::RunColor() {
  uint32_t color = 0;
  if (words[1] == "cancel") {
    headless::QueueColorCancel();
    return kDone;
  }
  if (!ParseColor(words[1], &color)) return Refuse("\"" + words[1] + "\" isn't a colour RRGGBB");
  headless::QueueColor(static_cast<uint8_t>(color >> 16), static_cast<uint8_t>(color >> 8),
                       static_cast<uint8_t>(color));
  return kDone;
}

int ScriptRunner::RunClipboard() {
  InputFile file;
  Picture picture;
  std::string reason;
  if (!file.Open(words[1], &reason) || !ReadPicture(file.File(), &picture, &reason)) return Fail(words[1], reason);
  std::vector<uint8_t> pixels;
  for (int32_t y = 0; y < picture.height; ++y) {
    const uint8_t* row = picture.Row(y);
    for (int32_t x = 0; x < picture.width; ++x, row += 3) pixels.insert(pixels.end(), {row[2], row[1], row[0]});
  }
  headless::SetClipboardPicture(picture.width, picture.height, pixels);
  return kDone;
}

int ScriptRunner::RunSaveClipboard() {
  const std::vector<uint8_t>& bytes = headless::ClipboardDib();
  if (bytes.empty()) return Refuse("the program has put no picture on the clipboard");
  std::string reason;
  return WriteBytes(words[1], bytes.data(), bytes.size(), &reason) ? kDone : Fail(words[1], reason);
}

int ScriptRunner::RunOpen() {
  std::string path;
  if (!ReadPath(words[1], &path)) return kRefused;
  frame->OpenByExtension(path.c_str());
  return kDone;
}

int ScriptRunner::RunDrop() {
  std::string path;
  if (!ReadPath(words[1], &path)) return kRefused;
  headless::DropFiles(frame->frameWindow, {path});
  return kDone;
}

int ScriptRunner::RunActivate() {
  const std::vector<CutWindow*> cuts = OpenCuts(*frame);
  int32_t index = 0;
  if (!ParseNumber(words[1], 0, static_cast<int32_t>(cuts.size()) - 1, &index)) {
    return Refuse("there is no open cut " + words[1]);
  }
  platform::ActivateMdiChild(frame->mdiClient, cuts[static_cast<size_t>(index)]->window);
  return kDone;
}

int ScriptRunner::RunClose() {
  const CutWindow* cut = NeedCut();
  if (cut == nullptr) return kRefused;
  platform::Send(cut->window, platform::kMessageClose, 0, 0);
  return kDone;
}

int ScriptRunner::RunTick() {
  int32_t count = 0;
  if (!ReadNumber(words[1], 0, INT32_MAX, &count)) return kRefused;
  while (count > 0 && headless::RunTimer()) --count;
  return kDone;
}

int ScriptRunner::RunState() {
  std::string reason;
  const std::string state = DescribeState(frame, OpenCuts(*frame));
  return WriteBytes(words[1], state.data(), state.size(), &reason) ? kDone : Fail(words[1], reason);
}

int ScriptRunner::RunView() {
  const CutWindow* cut = NeedCut();
  if (cut == nullptr) return kRefused;
  std::string reason;
  return WriteView(words[1], *cut, &reason) ? kDone : Fail(words[1], reason);
}

int ScriptRunner::RunScreen() {
  const CutWindow* cut = NeedCut();
  if (cut == nullptr) return kRefused;
  std::string reason;
  return WriteScreen(words[1], *cut->window, &reason) ? kDone : Fail(words[1], reason);
}

int ScriptRunner::RunPlayer() {
  std::string reason;
  return WriteGreyMap(words[1], *frame->animationWindow.window, &reason) ? kDone : Fail(words[1], reason);
}

int ScriptRunner::RunExit() {
  platform::Send(frame->frameWindow, platform::kMessageCommand, kCommandExit, 0);
  return kDone;
}

std::vector<CutWindow*> OpenCuts(const MainFrame& frame) {
  std::vector<CutWindow*> cuts;
  for (platform::WindowHandle window : frame.mdiClient->children) {
    platform::WindowObject* object = platform::ObjectOf(window);
    if (object != nullptr) cuts.push_back(static_cast<CutWindow*>(object));
  }
  return cuts;
}

}  // namespace sorvel::console
