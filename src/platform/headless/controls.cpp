#include "platform/controls.h"

#include <algorithm>
#include <cstring>

#include "platform/headless/internal.h"

namespace sorvel::platform {

namespace {

constexpr int32_t kStatusBarHeight = 20;
constexpr int32_t kToolBarHeight = 28;

Window* MakeControl(WindowKind kind, WindowHandle parent, int32_t id) {
  if (!headless::IsWindow(parent)) return nullptr;
  Window* control = headless::NewWindow(kind, parent, nullptr, {});
  control->id = id;
  control->shown = true;
  return control;
}

bool IsList(const Window* window) {
  return headless::IsWindow(window) && window->kind == WindowKind::kListBox;
}

bool HasLine(const Window* list, int32_t index) {
  return IsList(list) && index >= 0 && index < static_cast<int32_t>(list->lines.size());
}

ListLine& LineOf(Window* list, int32_t index) {
  return list->lines[static_cast<size_t>(index)];
}

int32_t FirstSelected(const Window* list) {
  for (size_t i = 0; i < list->lines.size(); ++i) {
    if (list->lines[i].selected) return static_cast<int32_t>(i);
  }
  return -1;
}

void SelectOnly(Window* list, int32_t index) {
  for (ListLine& line : list->lines) line.selected = false;
  if (index >= 0) LineOf(list, index).selected = true;
}

// Where a sorted list inserts a line: after all that sort before it or equal.
int32_t SortedPlace(const Window* list, const char* text) {
  const std::string key = headless::WithoutCase(text);
  const auto place = std::upper_bound(
      list->lines.begin(), list->lines.end(), key,
      [](const std::string& left, const ListLine& right) { return left < headless::WithoutCase(right.text); });
  return static_cast<int32_t>(place - list->lines.begin());
}

}  // namespace

namespace headless {

void NotifyParent(Window* control, int32_t code) {
  if (control->parent == nullptr) return;
  Send(control->parent, kMessageCommand, JoinHalves(control->id, code), reinterpret_cast<intptr_t>(control));
}

void PlaceBar(Window* bar) {
  if (bar->parent == nullptr) return;
  const int32_t width = bar->parent->width;
  if (bar->kind == WindowKind::kStatusBar) {
    MoveWindow(bar, 0, bar->parent->height - kStatusBarHeight, width, kStatusBarHeight, true);
  } else if (bar->kind == WindowKind::kToolBar) {
    MoveWindow(bar, 0, 0, width, kToolBarHeight, true);
  }
}

void ChooseRadioButton(Window* button) {
  for (Window* other : button->parent->children) {
    if (other->kind == WindowKind::kRadioButton && other->radioGroup == button->radioGroup) {
      other->checked = other == button;
    }
  }
}

bool TypeText(WindowHandle edit, const std::string& text) {
  if (!IsWindow(edit) || edit->readOnly) return false;
  SetText(edit, EnteredText(edit, text).c_str());
  return true;
}

void ClickButton(WindowHandle button) {
  if (!IsWindow(button)) return;
  if (button->kind == WindowKind::kCheckBox) button->checked = !button->checked;
  if (button->kind == WindowKind::kRadioButton) ChooseRadioButton(button);
  NotifyParent(button, kButtonClicked);
}

bool SelectLines(WindowHandle list, const std::vector<int32_t>& lines) {
  if (!IsList(list) || (lines.size() > 1 && !list->extendedSelection)) return false;
  if (!std::all_of(lines.begin(), lines.end(), [list](int32_t line) { return HasLine(list, line); })) return false;
  SelectOnly(list, -1);
  for (const int32_t line : lines) LineOf(list, line).selected = true;
  if (!lines.empty()) list->caret = lines.back();
  NotifyParent(list, kListSelectionChanged);
  return true;
}

bool DoubleClickLine(WindowHandle list, int32_t line) {
  if (!SelectLines(list, {line})) return false;
  if (IsWindow(list)) NotifyParent(list, kListDoubleClicked);
  return true;
}

}  // namespace headless

WindowHandle MakeEdit(WindowHandle parent, int32_t id, bool scrolls) {
  Window* edit = MakeControl(WindowKind::kEdit, parent, id);
  if (edit != nullptr) edit->scrolls = scrolls;
  return edit;
}

WindowHandle MakeListBox(WindowHandle parent, int32_t id, bool extendedSelection) {
  Window* list = MakeControl(WindowKind::kListBox, parent, id);
  if (list != nullptr) list->extendedSelection = extendedSelection;
  return list;
}

WindowHandle MakeCheckBox(WindowHandle parent, int32_t id) {
  return MakeControl(WindowKind::kCheckBox, parent, id);
}

WindowHandle MakeStatusBar(WindowHandle parent, int32_t id) {
  Window* bar = MakeControl(WindowKind::kStatusBar, parent, id);
  if (bar != nullptr) headless::PlaceBar(bar);
  return bar;
}

WindowHandle MakeToolBar(WindowHandle parent, int32_t id, int32_t bitmap, int32_t imageCount, const ToolButton* buttons,
                         int32_t buttonCount) {
  static_cast<void>(bitmap);
  static_cast<void>(imageCount);
  Window* bar = MakeControl(WindowKind::kToolBar, parent, id);
  if (bar == nullptr) return nullptr;
  for (int32_t i = 0; i < buttonCount; ++i) bar->buttons.push_back({buttons[i].command, false});
  headless::PlaceBar(bar);
  return bar;
}

void CheckToolButton(WindowHandle toolBar, int32_t command, bool checked) {
  if (!headless::IsWindow(toolBar) || command == 0) return;
  for (ToolButtonState& button : toolBar->buttons) {
    if (button.command == command) button.checked = checked;
  }
}

void SetEditReadOnly(WindowHandle edit, bool readOnly) {
  if (headless::IsWindow(edit)) edit->readOnly = readOnly;
}

void SelectAllText(WindowHandle edit) {
  if (headless::IsWindow(edit)) edit->allSelected = true;
}

bool IsChecked(WindowHandle button) {
  return headless::IsWindow(button) && button->checked;
}

void SetChecked(WindowHandle button, bool checked) {
  if (headless::IsWindow(button)) button->checked = checked;
}

void SetListRedraw(WindowHandle list, bool redraw) {
  if (IsList(list)) list->redraw = redraw;
}

int32_t ListCount(WindowHandle list) {
  return IsList(list) ? static_cast<int32_t>(list->lines.size()) : 0;
}

void ClearList(WindowHandle list) {
  if (!IsList(list)) return;
  list->lines.clear();
  list->caret = 0;
}

int32_t AddListLine(WindowHandle list, const char* text) {
  if (!IsList(list)) return -1;
  const int32_t index = list->sorted ? SortedPlace(list, text) : ListCount(list);
  InsertListLine(list, index, text);
  return index;
}

void InsertListLine(WindowHandle list, int32_t index, const char* text) {
  if (!IsList(list) || index < -1 || index > ListCount(list)) return;
  if (index == -1) index = ListCount(list);
  list->lines.insert(list->lines.begin() + index, ListLine{text, false});
}

void DeleteListLine(WindowHandle list, int32_t index) {
  if (!HasLine(list, index)) return;
  list->lines.erase(list->lines.begin() + index);
  list->caret = std::clamp(list->caret, 0, std::max(ListCount(list) - 1, 0));
}

size_t ReadListLine(WindowHandle list, int32_t index, char* text, size_t capacity) {
  if (capacity == 0) return 0;
  const size_t length = std::min(ListLineLength(list, index), capacity - 1);
  if (length > 0) std::memcpy(text, LineOf(list, index).text.data(), length);
  text[length] = '\0';
  return length;
}

size_t ListLineLength(WindowHandle list, int32_t index) {
  return HasLine(list, index) ? LineOf(list, index).text.size() : 0;
}

int32_t FindListLine(WindowHandle list, int32_t after, const char* text) {
  const int32_t count = ListCount(list);
  const std::string key = headless::WithoutCase(text);
  const int32_t first = HasLine(list, after) ? after + 1 : 0;
  for (int32_t i = 0; i < count; ++i) {
    const int32_t index = (first + i) % count;
    if (headless::WithoutCase(LineOf(list, index).text).compare(0, key.size(), key) == 0) return index;
  }
  return -1;
}

int32_t SelectedListLine(WindowHandle list) {
  return IsList(list) ? FirstSelected(list) : -1;
}

void SelectListLine(WindowHandle list, int32_t index) {
  if (!IsList(list) || list->extendedSelection || (index != -1 && !HasLine(list, index))) return;
  SelectOnly(list, index);
  if (index >= 0) list->caret = index;
}

bool IsListLineSelected(WindowHandle list, int32_t index) {
  return HasLine(list, index) && LineOf(list, index).selected;
}

void SetListLineSelected(WindowHandle list, int32_t index, bool selected) {
  if (!IsList(list) || !list->extendedSelection) return;
  if (index == -1) {
    for (ListLine& line : list->lines) line.selected = selected;
  } else if (HasLine(list, index)) {
    LineOf(list, index).selected = selected;
    // As in the window system, a line that becomes selected gets the caret.
    if (selected) list->caret = index;
  }
}

int32_t ListCaret(WindowHandle list) {
  return IsList(list) ? list->caret : 0;
}

void SetListCaret(WindowHandle list, int32_t index) {
  // The caret of a list with one selected line is on that line.
  if (HasLine(list, index) && (list->extendedSelection || FirstSelected(list) == -1)) list->caret = index;
}

void SetProgress(WindowHandle bar, int32_t permille) {
  if (headless::IsWindow(bar)) bar->position = permille;
}

}  // namespace sorvel::platform
