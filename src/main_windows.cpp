#include "platform/win32/win32.h"
#include "shell/entry.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int showCommand) {
  return sorvel::EntryPoint(commandLine, showCommand);
}
