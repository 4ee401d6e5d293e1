#include <algorithm>
#include <cstdlib>

#include "platform/controls.h"
#include "platform/headless/internal.h"

// Up-down controls: a 16-bit number, shown in the edit next to the control.
namespace sorvel::platform {

namespace {

constexpr char kThousandsSeparator = ',';
// The control reads only so many characters of the edit.
constexpr size_t kLongestNumber = 19;

// A range may run backwards.
bool IsInRange(const Window* upDown, int32_t value) {
  return value >= std::min(upDown->low, upDown->high) && value <= std::max(upDown->low, upDown->high);
}

int32_t Bounded(const Window* upDown, int32_t value) {
  return std::clamp(value, std::min(upDown->low, upDown->high), std::max(upDown->low, upDown->high));
}

std::string NumberText(int32_t value) {
  std::string text = std::to_string(std::abs(value));
  if (text.size() > 3) text.insert(text.size() - 3, 1, kThousandsSeparator);
  return value < 0 ? std::string(1, '-').append(text) : text;
}

// Parses the whole text as a number, without leading blanks and separators. False if it isn't one or lies outside the
// range.
bool ReadNumber(const Window* upDown, std::string text, int32_t* value) {
  text.resize(std::min(text.size(), kLongestNumber));
  text.erase(std::remove(text.begin(), text.end(), kThousandsSeparator), text.end());
  char* end = nullptr;
  const long long number = std::strtoll(text.c_str(), &end, 10);
  if (end == text.c_str() || *end != '\0' || number < INT16_MIN || number > INT16_MAX) return false;
  *value = static_cast<int32_t>(number);
  return IsInRange(upDown, *value);
}

}  // namespace

void SetUpDownRange(WindowHandle upDown, int32_t low, int32_t high) {
  if (!headless::IsWindow(upDown)) return;
  upDown->low = static_cast<int16_t>(low);
  upDown->high = static_cast<int16_t>(high);
}

void ReadUpDownRange(WindowHandle upDown, int32_t* low, int32_t* high) {
  *low = headless::IsWindow(upDown) ? upDown->low : 0;
  *high = headless::IsWindow(upDown) ? upDown->high : 0;
}

void SetUpDownPosition(WindowHandle upDown, int32_t position) {
  if (!headless::IsWindow(upDown)) return;
  upDown->position = Bounded(upDown, static_cast<int16_t>(position));
  if (headless::IsWindow(upDown->buddy)) SetText(upDown->buddy, NumberText(upDown->position).c_str());
}

// The number in the edit, or the last valid one with 1 in the high half.
int32_t UpDownPosition(WindowHandle upDown) {
  if (!headless::IsWindow(upDown)) return 0;
  constexpr int32_t isInvalid = 1;
  int32_t number = 0;
  const bool valid = headless::IsWindow(upDown->buddy) && ReadNumber(upDown, upDown->buddy->text, &number);
  if (valid) upDown->position = number;
  return static_cast<int32_t>(JoinHalves(Bounded(upDown, upDown->position), valid ? 0 : isInvalid));
}

}  // namespace sorvel::platform
