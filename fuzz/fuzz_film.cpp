// Film files: whatever loads is saved, and loads again as it was.

#include "document/film.h"
#include "fuzz/fuzz_input.h"

using namespace sorvel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* path = fuzz::InputFile(data, size);
  Film film;
  LoadReport report;
  fuzz::Require(film.Load(path, '/', &report));
  if (!film.SaveTo(path, '/')) return 0;
  Film again;
  fuzz::Require(again.Load(path, '/', nullptr));
  if (!report.IsDamaged()) fuzz::Require(again.width == film.width && again.height == film.height);
  return 0;
}
