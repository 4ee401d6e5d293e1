#include "platform/dialogs.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <deque>
#include <optional>

#include "platform/controls.h"
#include "platform/headless/internal.h"
#include "platform/headless/resources.h"

namespace sorvel::platform {

namespace {

constexpr int32_t kOk = 1;
constexpr int32_t kCancel = 2;
// The size of the dialog font in pixels, and in dialog units.
constexpr int32_t kFontWidth = 6;
constexpr int32_t kFontHeight = 12;
constexpr int32_t kUnitsAcross = 4;
constexpr int32_t kUnitsDown = 8;

// Queued answers of each kind, in order; an empty one means cancel.
std::deque<headless::DialogAnswer> gDialogs;
struct FileAnswer {
  std::string path;
  int32_t type = 0;  // 0 for the one that the dialog starts with
};
std::deque<std::optional<FileAnswer>> gFiles;
std::deque<bool> gAnswers;
std::deque<std::optional<uint32_t>> gColors;

std::string gFailure;
headless::BoxRecord gMessage;
std::vector<std::string> gWarnings;
headless::BoxRecord gQuestion;
int32_t gAlerts = 0;

template <typename Answer>
bool TakeAnswer(std::deque<Answer>* queue, const char* asker, Answer* answer) {
  if (queue->empty()) {
    headless::Fail(std::string(asker).append(" has no answer"));
    return false;
  }
  *answer = queue->front();
  queue->pop_front();
  return true;
}

WindowKind KindOf(headless::DialogPart part) {
  switch (part) {
    case headless::DialogPart::kDialog:
    case headless::DialogPart::kDialogEnd:
      return WindowKind::kDialog;
    case headless::DialogPart::kLabel:
      return WindowKind::kLabel;
    case headless::DialogPart::kEdit:
    case headless::DialogPart::kNumber:
    case headless::DialogPart::kTextBox:
      return WindowKind::kEdit;
    case headless::DialogPart::kList:
      return WindowKind::kListBox;
    case headless::DialogPart::kCheckBox:
      return WindowKind::kCheckBox;
    case headless::DialogPart::kFirstRadioButton:
    case headless::DialogPart::kRadioButton:
      return WindowKind::kRadioButton;
    case headless::DialogPart::kGroupBox:
      return WindowKind::kGroupBox;
    case headless::DialogPart::kButton:
      return WindowKind::kPushButton;
    case headless::DialogPart::kProgressBar:
      return WindowKind::kProgressBar;
  }
  return WindowKind::kLabel;
}

Bounds PlaceOf(const headless::DialogResource& part) {
  const int32_t left = part.x * kFontWidth / kUnitsAcross;
  const int32_t top = part.y * kFontHeight / kUnitsDown;
  return {left, top, left + part.width * kFontWidth / kUnitsAcross, top + part.height * kFontHeight / kUnitsDown};
}

Window* AddControl(Window* dialog, const headless::DialogResource& part) {
  Window* control = headless::NewWindow(KindOf(part.part), dialog, nullptr, PlaceOf(part));
  control->id = part.id;
  control->text = headless::FromUtf8(part.text);
  control->shown = true;
  control->sorted = part.part == headless::DialogPart::kList;
  control->multipleLines = part.part == headless::DialogPart::kTextBox;
  control->scrolls = control->kind == WindowKind::kEdit;
  return control;
}

void AddUpDown(Window* edit, int32_t id) {
  const Bounds place = {edit->place.right, edit->place.top, edit->place.right, edit->place.bottom};
  Window* upDown = headless::NewWindow(WindowKind::kUpDown, edit->parent, nullptr, place);
  upDown->id = id;
  upDown->shown = true;
  upDown->buddy = edit;
}

std::string NameOf(const Window* control, int32_t resource) {
  return "control " + std::to_string(control->id) + " of dialog " + std::to_string(resource);
}

std::string Quoted(const std::string& text) {
  return std::string(" \"").append(headless::ToUtf8(text)).append("\"");
}

// Line ends as the Enter key types them.
std::string WithLineEnds(const std::string& text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) result.push_back('\r');
    result.push_back(text[i]);
  }
  return result;
}

bool Switch(Window* button, const std::string& value) {
  if (value != "on" && value != "off") return false;
  if (value == "on" && button->kind == WindowKind::kRadioButton) {
    headless::ChooseRadioButton(button);
  } else {
    button->checked = value == "on";
  }
  return true;
}

bool ChooseLine(Window* list, const std::string& value) {
  for (size_t i = 0; i < list->lines.size(); ++i) {
    if (list->lines[i].text != value) continue;
    SelectListLine(list, static_cast<int32_t>(i));
    return true;
  }
  return false;
}

// Returns what is wrong, or an empty text.
std::string SetValue(Window* dialog, int32_t resource, int32_t id, const std::string& value) {
  Window* control = DialogControl(dialog, id);
  if (control == nullptr) return "dialog " + std::to_string(resource) + " has no control " + std::to_string(id);
  const std::string name = NameOf(control, resource);
  switch (control->kind) {
    case WindowKind::kEdit:
      SetText(control, (control->multipleLines ? WithLineEnds(value) : headless::EnteredText(control, value)).c_str());
      return "";
    case WindowKind::kCheckBox:
    case WindowKind::kRadioButton:
      return Switch(control, value) ? "" : name + " takes on or off, not" + Quoted(value);
    case WindowKind::kListBox:
      return ChooseLine(control, value) ? "" : name + " has no line" + Quoted(value);
    case WindowKind::kPushButton:
      if (value != "click") return name + " takes click, not" + Quoted(value);
      headless::ClickButton(control);
      return "";
    default:
      return name + " takes no value";
  }
}

// Acts as the user. False for an answer that doesn't fit the dialog.
bool AnswerDialog(Window* dialog, const headless::DialogAnswer& answer) {
  for (const auto& [id, value] : answer.values) {
    if (dialog->ended) return true;
    const std::string problem = SetValue(dialog, answer.resource, id, value);
    if (!problem.empty()) {
      headless::Fail(problem);
      return false;
    }
  }
  return true;
}

void PressButton(Window* dialog, int32_t id) {
  if (dialog->ended) return;
  Send(dialog, kMessageCommand, JoinHalves(id, kButtonClicked), reinterpret_cast<intptr_t>(DialogControl(dialog, id)));
}

bool TakeDialogAnswer(int32_t resource, headless::DialogAnswer* answer) {
  const std::string name = "dialog " + std::to_string(resource);
  if (!TakeAnswer(&gDialogs, name.c_str(), answer)) return false;
  if (answer->resource == resource) return true;
  headless::Fail(name + " came up, but the answer is for dialog " + std::to_string(answer->resource));
  return false;
}

std::span<const headless::DialogResource>::iterator FindDialog(int32_t resource) {
  const std::span<const headless::DialogResource> table = headless::Dialogs();
  return std::find_if(table.begin(), table.end(), [resource](const headless::DialogResource& part) {
    return part.part == headless::DialogPart::kDialog && part.id == resource;
  });
}

// A dialog whose only button is Cancel shows work that goes on, and ends with it. The next answer may be one that
// stops the work, or that of a later dialog.
bool TakesAnswer(int32_t resource) {
  for (auto part = FindDialog(resource); part != headless::Dialogs().end(); ++part) {
    if (part->part == headless::DialogPart::kDialogEnd)
      return !gDialogs.empty() && gDialogs.front().resource == resource;
    if (part->part == headless::DialogPart::kButton && part->id == kOk) break;
  }
  return true;
}

const Window* FirstControl(const Window* dialog) {
  for (const Window* control : dialog->children) {
    if (control->kind != WindowKind::kLabel && control->kind != WindowKind::kGroupBox) return control;
  }
  return nullptr;
}

// Unchanged if there is no working directory.
std::string FullPath(const std::string& path) {
  char folder[PATH_MAX];
  if (path.empty() || path[0] == '/' || getcwd(folder, sizeof(folder)) == nullptr) return path;
  return headless::FromUtf8(folder).append("/").append(path);
}

std::string WithExtension(const std::string& path, const char* extension) {
  const size_t slash = path.rfind('/');
  const size_t dot = path.rfind('.');
  const bool has = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  if (has || extension == nullptr || extension[0] == '\0') return path;
  return std::string(path).append(".").append(extension);
}

bool AskFile(const FileForm& form, char* path, size_t capacity) {
  std::optional<FileAnswer> answer;
  if (!TakeAnswer(&gFiles, "a file dialog", &answer) || !answer.has_value()) return false;
  if (answer->type != 0 && form.type == nullptr) {
    headless::Fail("the file dialog lets nobody choose a type");
    return false;
  }
  const std::string full = FullPath(WithExtension(answer->path, form.defaultExtension));
  if (full.size() >= capacity) return false;
  if (answer->type != 0) *form.type = answer->type;
  full.copy(path, full.size());
  path[full.size()] = '\0';
  return true;
}

}  // namespace

namespace headless {

bool LoadDialog(int32_t resource, Window* dialog) {
  const auto start = FindDialog(resource);
  if (start == Dialogs().end()) return false;
  const Bounds place = PlaceOf(*start);
  MoveWindow(dialog, 0, 0, place.right, place.bottom, false);
  dialog->text = FromUtf8(start->text);
  int32_t group = 0;
  for (auto part = start + 1; part != Dialogs().end() && part->part != DialogPart::kDialogEnd; ++part) {
    Window* control = AddControl(dialog, *part);
    if (part->part == DialogPart::kFirstRadioButton) ++group;
    if (control->kind == WindowKind::kRadioButton) control->radioGroup = group;
    if (part->part == DialogPart::kNumber) AddUpDown(control, part->upDown);
  }
  return true;
}

void Fail(const std::string& message) {
  if (gFailure.empty()) gFailure = message;
  std::replace(gFailure.begin(), gFailure.end(), '\n', ' ');
}

void QueueDialog(const DialogAnswer& answer) {
  gDialogs.push_back(answer);
}

void QueueFile(const std::string& path, int32_t type) {
  gFiles.push_back(FileAnswer{path, type});
}

void QueueFileCancel() {
  gFiles.push_back(std::nullopt);
}

void QueueYesNo(bool yes) {
  gAnswers.push_back(yes);
}

void QueueColor(uint8_t red, uint8_t green, uint8_t blue) {
  gColors.push_back(static_cast<uint32_t>(red | green << 8 | blue << 16));
}

void QueueColorCancel() {
  gColors.push_back(std::nullopt);
}

size_t QueuedAnswers() {
  return gDialogs.size() + gFiles.size() + gAnswers.size() + gColors.size();
}

void ClearAnswers() {
  gDialogs.clear();
  gFiles.clear();
  gAnswers.clear();
  gColors.clear();
}

const std::string& Failure() {
  return gFailure;
}

void ClearFailure() {
  gFailure.clear();
}

const BoxRecord& LastMessage() {
  return gMessage;
}

const std::vector<std::string>& Warnings() {
  return gWarnings;
}

const BoxRecord& LastQuestion() {
  return gQuestion;
}

int32_t AlertCount() {
  return gAlerts;
}

void ResetDialogs() {
  ClearAnswers();
  gFailure.clear();
  gMessage = {};
  gWarnings.clear();
  gQuestion = {};
  gAlerts = 0;
}

}  // namespace headless

intptr_t RunDialog(int32_t resource, WindowHandle owner, DialogFunction function, void* parameter) {
  headless::DialogAnswer answer;
  const bool isAnswered = TakesAnswer(resource);
  if (isAnswered && !TakeDialogAnswer(resource, &answer)) return 0;
  Window* dialog = headless::NewWindow(WindowKind::kDialog, nullptr, owner, {});
  if (!headless::LoadDialog(resource, dialog)) {
    headless::Fail("there is no dialog " + std::to_string(resource));
    headless::EndWindow(dialog);
    return 0;
  }
  dialog->function = function;
  dialog->shown = true;
  Send(dialog, kMessageInitDialog, reinterpret_cast<uintptr_t>(FirstControl(dialog)),
       reinterpret_cast<intptr_t>(parameter));
  const bool fits = !isAnswered || AnswerDialog(dialog, answer);
  if (isAnswered) PressButton(dialog, fits && answer.ok ? kOk : kCancel);
  while (!dialog->ended && !dialog->timers.empty()) Send(dialog, kMessageTimer, dialog->timers.front().id, 0);
  if (!dialog->ended) headless::Fail("dialog " + std::to_string(resource) + " wasn't ended by its button");
  const intptr_t result = fits ? dialog->result : 0;
  headless::EndWindow(dialog);
  return result;
}

void EndDialog(WindowHandle dialog, intptr_t result) {
  if (!headless::IsWindow(dialog)) return;
  dialog->ended = true;
  dialog->result = result;
}

WindowHandle DialogControl(WindowHandle dialog, int32_t id) {
  if (!headless::IsWindow(dialog) || id == -1) return nullptr;
  for (Window* control : dialog->children) {
    if (control->id == id) return control;
  }
  return nullptr;
}

WindowHandle ParentOf(WindowHandle window) {
  if (!headless::IsWindow(window)) return nullptr;
  return window->parent != nullptr ? window->parent : window->owner;
}

bool AskYesNo(WindowHandle owner, const char* text, const char* title, BoxIcon icon, DefaultButton button) {
  static_cast<void>(owner);
  gQuestion = {text, title, icon, gQuestion.count + 1, button};
  bool yes = false;
  return TakeAnswer(&gAnswers, std::string("the question").append(Quoted(text)).c_str(), &yes) && yes;
}

void ShowMessage(WindowHandle owner, const char* text, const char* title, BoxIcon icon) {
  static_cast<void>(owner);
  gMessage = {text, title, icon, gMessage.count + 1, DefaultButton::kYes};
  if (icon == BoxIcon::kWarning) gWarnings.push_back(text);
}

void PlayAlert() {
  ++gAlerts;
}

bool AskFileToOpen(WindowHandle owner, const FileForm& form, char* path, size_t capacity) {
  static_cast<void>(owner);
  return AskFile(form, path, capacity);
}

bool AskFileToSave(WindowHandle owner, const FileForm& form, char* path, size_t capacity) {
  static_cast<void>(owner);
  return AskFile(form, path, capacity);
}

bool AskColor(WindowHandle owner, uint32_t (&custom)[16], uint32_t* color) {
  static_cast<void>(owner);
  static_cast<void>(custom);
  std::optional<uint32_t> answer;
  if (!TakeAnswer(&gColors, "a colour dialog", &answer) || !answer.has_value()) return false;
  *color = *answer;
  return true;
}

}  // namespace sorvel::platform
