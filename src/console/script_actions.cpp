#include "console/console_files.h"
#include "console/picture_reader.h"
#include "console/script_reader.h"
#include "console/script_runner.h"
#include "console/script_words.h"
#include "console/state_writer.h"
#include "platform/headless/headless.h"
#include "resources/ids.h"

namespace sorvel::console {

namespace {

namespace headless = platform::headless;

// In a command message, the mark of a command that comes from a key.
constexpr int32_t kFromAccelerator = 1;
// A larger window isn't made.
constexpr int32_t kMostClientPixels = 1 << 24;

}  // namespace

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
  // The window gets the bytes of a two-byte character one by one, as any window that isn't Unicode.
  for (char byte : text) platform::Send(window, platform::kMessageChar, static_cast<unsigned char>(byte), 0);
  return kDone;
}

int ScriptRunner::RunMouse() {
  uint32_t message = 0;
  Point place;
  if (!ReadMouseMessage(words[1], &message) || !ReadPoint(2, &place)) return kRefused;
  uint32_t modifiers = 0;
  if (!ReadModifiers(4, &modifiers)) return kRefused;
  const CutWindow* cut = NeedCut();
  return cut != nullptr ? SendMouse(cut->window, message, place, modifiers) : kRefused;
}

int ScriptRunner::RunPicker() {
  uint32_t message = 0;
  Point place;
  if (!ReadMouseMessage(words[1], &message) || !ReadPoint(2, &place)) return kRefused;
  return SendMouse(frame->penPicker.window, message, place, 0);
}

int ScriptRunner::RunTimer() {
  headless::RunWindowTimers();
  return kDone;
}

int ScriptRunner::RunWheel() {
  constexpr int32_t most = INT16_MAX / platform::kWheelNotch;
  int32_t notches = 0;
  uint32_t modifiers = 0;
  if (!ReadNumber(words[1], -most, most, &notches) || !ReadModifiers(2, &modifiers)) return kRefused;
  const CutWindow* cut = NeedCut();
  if (cut == nullptr) return kRefused;
  platform::Send(cut->window, platform::kMessageWheel,
                 platform::JoinHalves(static_cast<int32_t>(heldButtons | modifiers), notches * platform::kWheelNotch),
                 platform::PackPoint(platform::CursorPlace()));
  return kDone;
}

int ScriptRunner::RunScroll() {
  const bool isHorizontal = words[1] == "h";
  if (!isHorizontal && words[1] != "v") return Refuse("there is no scroll bar " + words[1]);
  int32_t code = 0;
  int32_t position = 0;
  if (!FindScrollCode(words[2], &code)) return Refuse("there is no scroll code " + words[2]);
  if (words.size() > 3 && !ReadNumber(words[3], 0, UINT16_MAX, &position)) return kRefused;
  const CutWindow* cut = NeedCut();
  if (cut == nullptr) return kRefused;
  platform::Send(cut->window, isHorizontal ? platform::kMessageHorizontalScroll : platform::kMessageVerticalScroll,
                 platform::JoinHalves(code, position), 0);
  return kDone;
}

int ScriptRunner::RunPanel() {
  std::string text;
  const platform::WindowHandle edit = FindPanel(words[1]);
  if (edit == nullptr || edit == frame->cutList || edit == frame->layerList || edit == frame->keyFrameCheck) {
    return Refuse("there is no edit " + words[1]);
  }
  if (words[2].find('\n') != std::string::npos) return Refuse("a line end can't be typed into an edit of one line");
  if (!ReadText(words[2], &text)) return kRefused;
  platform::SetFocusTo(edit);
  headless::TypeText(edit, text);
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
  // In a list with one selected line the last click counts.
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
    window = FindPanel(words[1]);
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
  return WriteBytes(words[1], bytes.data(), bytes.size());
}

int ScriptRunner::RunOpen() {
  std::string path;
  if (!ReadPath(words[1], &path)) return kRefused;
  frame->OpenByExtension(path.c_str());
  frame->ReportOpening(path.c_str());
  return kDone;
}

int ScriptRunner::RunDrop() {
  std::string path;
  if (!ReadPath(words[1], &path)) return kRefused;
  headless::DropFiles(frame->frameWindow, {path});
  return kDone;
}

int ScriptRunner::RunActivate() {
  const std::vector<CutWindow*>& cuts = frame->openCuts;
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
  const std::string state = DescribeState(frame, frame->openCuts);
  return WriteBytes(words[1], state.data(), state.size());
}

int ScriptRunner::RunView() {
  const CutWindow* cut = NeedCut();
  return cut != nullptr ? WriteView(words[1], cut->view) : kRefused;
}

int ScriptRunner::RunScreen() {
  const CutWindow* cut = NeedCut();
  return cut != nullptr ? WriteScreen(words[1], *cut->window) : kRefused;
}

int ScriptRunner::RunPlayer() {
  return WriteGreyMap(words[1], *frame->animationWindow.window);
}

int ScriptRunner::RunExit() {
  platform::Send(frame->frameWindow, platform::kMessageCommand, kCommandExit, 0);
  // A question without an answer is told by itself.
  if (HasEnded() || !headless::Failure().empty()) return kDone;
  return Refuse("a document couldn't be saved, so the program goes on");
}

}  // namespace sorvel::console
