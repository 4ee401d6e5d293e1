// Film containers: the inspector and the player. The magic is put in front of every input.

#include "fuzz/play_input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::vector<uint8_t> bytes = {'S', 'V'};
  bytes.insert(bytes.end(), data + (size < 2 ? size : 2), data + size);
  sorvel::fuzz::PlayInput(bytes.data(), bytes.size());
  return 0;
}
