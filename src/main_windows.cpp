#include <clocale>

#include "platform/win32/win32.h"
#include "shell/entry.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int showCommand) {
  // The run-time takes the bytes of texts as Shift JIS, whatever the system's own language is.
  std::setlocale(LC_ALL, "jpn");
  return sorvel::EntryPoint(commandLine, showCommand);
}
