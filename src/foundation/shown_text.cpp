#include "foundation/shown_text.h"

#include <algorithm>

#include "platform/text.h"

namespace sorvel {

std::string ShownText(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    std::string part;
    if (platform::ShiftJisToUtf8(text, &part)) return shown + part;
    std::string back;
    platform::Utf8ToShiftJis(part, &back);
    shown += part + "\xEF\xBF\xBD";
    text.remove_prefix(std::min(back.size() + 1, text.size()));
  }
  return shown;
}

}  // namespace sorvel
