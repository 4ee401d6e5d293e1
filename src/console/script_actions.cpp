#include <algorithm>
#include <cstdlib>

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
  int32_t type = 0;
  if (!ReadPath(words[1], &path)) return kRefused;
  if (words.size() > 2 && !ReadNumber(words[2], 1, INT16_MAX, &type)) return kRefused;
  headless::QueueFile(path, type);
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
    const int32_t last = picture.channels - 1;
    for (int32_t x = 0; x < picture.width; ++x, row += last + 1) {
      pixels.insert(pixels.end(), {row[last], row[last / 2], row[0]});
    }
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

// The time sheet.

bool ScriptRunner::ReadColumn(SheetWindow* sheet, int32_t* column) {
  const CutWindow* cut = frame->ActiveCut();
  int32_t index = 0;
  if (!ReadNumber(words[2], 0, INT32_MAX, &index)) return false;
  const std::vector<SheetColumn>& columns = sheet->Sheet()->Columns();
  for (size_t i = 0; i < columns.size(); ++i) {
    if (index >= cut->layers.Count() || columns[i].layer != frame->ActiveCut()->layers.At(index)) continue;
    *column = static_cast<int32_t>(i);
    return true;
  }
  problem = "there is no layer " + words[2];
  return false;
}

bool ScriptRunner::ReadRow(SheetWindow* sheet, size_t index, int32_t* row) {
  return ReadNumber(words[index], 0, static_cast<int32_t>(std::min<int64_t>(sheet->Sheet()->Rows() - 1, INT32_MAX)),
                    row);
}

// From one square to another with the mouse.
int ScriptRunner::SelectSquares(SheetWindow* sheet) {
  int32_t column = 0;
  int32_t first = 0;
  int32_t last = 0;
  if (!ReadColumn(sheet, &column) || !ReadRow(sheet, 3, &first)) return kRefused;
  last = first;
  if (words.size() > 4 && !ReadRow(sheet, 4, &last)) return kRefused;
  const auto middle = [&](int32_t row) {
    const Bounds square = sheet->RevealSquare(column, row);
    return Point{(square.left + square.right) / 2, (square.top + square.bottom) / 2};
  };
  SendMouse(sheet->window, platform::kMessageLeftDown, middle(first), 0);
  if (last != first) SendMouse(sheet->window, platform::kMessageMouseMove, middle(last), 0);
  return SendMouse(sheet->window, platform::kMessageLeftUp, middle(last), 0);
}

int ScriptRunner::DragHold(SheetWindow* sheet) {
  int32_t column = 0;
  int32_t from = 0;
  int32_t to = 0;
  if (!ReadColumn(sheet, &column) || !ReadRow(sheet, 3, &from) || !ReadNumber(words[4], 0, INT16_MAX, &to)) {
    return kRefused;
  }
  TimeSheet* rows = sheet->Sheet();
  constexpr int32_t farthest = 1000;
  if (std::abs(to - from) > farthest) return Refuse("the mouse doesn't reach so far");
  if (rows->LastRowOf(rows->FrameOfRow(from)) != from) return Refuse("no hold ends in row " + words[3]);
  const Bounds square = sheet->RevealSquare(column, from);
  const int32_t middle = (square.left + square.right) / 2;
  const int32_t end = square.bottom + (to - from) * square.Height();
  SendMouse(sheet->window, platform::kMessageLeftDown, {middle, square.bottom - 1}, 0);
  SendMouse(sheet->window, platform::kMessageMouseMove, {middle, end}, 0);
  return SendMouse(sheet->window, platform::kMessageLeftUp, {middle, end}, 0);
}

int ScriptRunner::TypeKey(SheetWindow* sheet) {
  Key key;
  if (!ParseCursorKey(words[2], &key) && !ParseKey(words[2], &key)) return Refuse("there is no key " + words[2]);
  headless::HoldKeys((key.shift ? platform::kKeyShift : 0u) | (key.control ? platform::kKeyControl : 0u));
  const int32_t id = headless::FindAccelerator(key.code, key.shift, key.control);
  if (id != 0) {
    platform::Send(frame->frameWindow, platform::kMessageCommand, platform::JoinHalves(id, kFromAccelerator), 0);
  } else {
    platform::Send(sheet->window, platform::kMessageKeyDown, static_cast<uintptr_t>(key.code), 0);
    const bool isCharacter = key.code >= '0' && key.code <= '9' && !key.shift && !key.control;
    if (isCharacter) platform::Send(sheet->window, platform::kMessageChar, static_cast<uintptr_t>(key.code), 0);
  }
  headless::HoldKeys(0);
  return kDone;
}

int ScriptRunner::RunSheet() {
  SheetWindow* sheet = &frame->sheetWindow;
  const std::string& what = words[1];
  const size_t count = words.size();
  if ((what == "open" || what == "close") && count == 2) {
    if (sheet->IsOpen() != (what == "open")) {
      platform::Send(frame->frameWindow, platform::kMessageCommand, kCommandSheet, 0);
    }
    return kDone;
  }
  if (!sheet->IsOpen()) return Refuse("the time sheet isn't open");
  if (what == "screen" && count == 3) {
    headless::PaintInvalid(sheet->window);
    return WriteScreen(words[2], *sheet->window);
  }
  if (sheet->Sheet() == nullptr) return Refuse("no cut is open");
  platform::SetFocusTo(sheet->window);
  if (what == "select" && count >= 4) return SelectSquares(sheet);
  if (what == "drag" && count == 5) return DragHold(sheet);
  if (what == "key" && count == 3) return TypeKey(sheet);
  if (what == "delete" && count == 2) {
    platform::Send(sheet->window, platform::kMessageKeyDown, platform::kKeyDelete, 0);
    return kDone;
  }
  if (what == "type" && count == 3) {
    int32_t number = 0;
    if (!ReadNumber(words[2], 0, INT16_MAX, &number)) return kRefused;
    for (const char digit : std::to_string(number)) {
      platform::Send(sheet->window, platform::kMessageChar, static_cast<uintptr_t>(digit), 0);
    }
    platform::Send(frame->frameWindow, platform::kMessageCommand,
                   platform::JoinHalves(kCommandFocusForward, kFromAccelerator), 0);
    return kDone;
  }
  return Refuse("the sheet doesn't know the action " + what + " of so many words");
}

int ScriptRunner::RunExit() {
  platform::Send(frame->frameWindow, platform::kMessageCommand, kCommandExit, 0);
  // A question without an answer is told by itself.
  if (HasEnded() || !headless::Failure().empty()) return kDone;
  return Refuse("a document couldn't be saved, so the program goes on");
}

}  // namespace sorvel::console
