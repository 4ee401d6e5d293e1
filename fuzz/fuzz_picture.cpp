// Pictures for import.

#include "console/picture_reader.h"
#include "fuzz/fuzz_input.h"

using namespace sorvel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  FILE* file = fmemopen(const_cast<uint8_t*>(data), size, "rb");
  if (file == nullptr) return 0;
  console::Picture picture;
  std::string problem;
  if (console::ReadPicture(file, &picture, &problem)) {
    fuzz::Require(picture.width > 0 && picture.height > 0);
    [[maybe_unused]] static volatile uint8_t last = 0;
    last = picture.Row(picture.height)[-1];
  } else {
    fuzz::Require(!problem.empty());
  }
  std::fclose(file);
  return 0;
}
