#include "platform/profile.h"

#include "platform/win32/win32.h"

namespace sorvel::platform {

int32_t ReadProfileNumber(const char* path, const char* section, const char* key, int32_t fallback) {
  return static_cast<int32_t>(GetPrivateProfileIntA(section, key, fallback, path));
}

void ReadProfileText(const char* path, const char* section, const char* key, const char* fallback, char* text,
                     size_t capacity) {
  GetPrivateProfileStringA(section, key, fallback, text, static_cast<DWORD>(capacity), path);
}

}  // namespace sorvel::platform
