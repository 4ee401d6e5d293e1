// Layer files, read into a new cut and over the layer of one that has an undo copy.

#include "document/cut.h"
#include "fuzz/fuzz_input.h"

using namespace sorvel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::InputStream input(data, size);
  Cut cut(16, 16, 20, "", 0);
  cut.AddFrame();
  LoadReport report;
  if (cut.LoadLayer(input.Get(), &report)) {
    ChunkStream saved;
    fuzz::Require(cut.SaveLayer(&saved));
  }
  Cut other(16, 16, 20, "", 0);
  other.AddFrame();
  other.AddLayer("A", 16, 16, nullptr);
  other.AttachLayer(0, 0, 0);
  other.SaveUndo();
  input.Get()->Seek(0, kFromStart);
  other.LoadLayer(input.Get(), nullptr);
  other.Undo();
  other.SaveUndo();
  other.Undo();
  return 0;
}
