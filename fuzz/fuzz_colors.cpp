// Colour files.

#include "fuzz/fuzz_input.h"
#include "imaging/color_table.h"

using namespace sorvel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LoadColors(fuzz::InputFile(data, size));
  return 0;
}
