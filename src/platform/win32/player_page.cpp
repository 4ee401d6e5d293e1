#include "platform/player_page.h"

#include "platform/win32/win32.h"
#include "resources/ids.h"

namespace sorvel::platform {

// The page lies inside the program.
std::string PlayerPage() {
  const HRSRC place = FindResourceA(Instance(), ResourceName(kPlayerPage), RT_RCDATA);
  const HGLOBAL page = place != nullptr ? LoadResource(Instance(), place) : nullptr;
  if (page == nullptr) return "";
  return {static_cast<const char*>(LockResource(page)), SizeofResource(Instance(), place)};
}

}  // namespace sorvel::platform
