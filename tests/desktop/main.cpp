#include <gtest/gtest.h>
#include <windows.h>

#include "app.h"

// sorvel_desktop_tests OUTPUT_FOLDER [options of GoogleTest]: tests the sorvel.exe beside it, and keeps pictures of its
// windows in the folder.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  SetProcessDPIAware();
  if (argc > 1) sorvel::desktop::SetOutputFolder(argv[1]);
  return RUN_ALL_TESTS();
}
