// Settings files: every key is read, one is written and read back.

#include "foundation/settings.h"
#include "fuzz/fuzz_input.h"

using namespace sorvel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  UseSettingsFile(fuzz::InputFile(data, size));
  char text[80];
  for (const SettingKey* key : {&settings::kFont, &settings::kBrush, &settings::kFilm, &settings::kNewCutCredit,
                                &settings::kNewFilmTitle, &settings::kNewFilmAuthor}) {
    ReadSettingText(*key, text, sizeof(text));
    fuzz::Require(std::strlen(text) < sizeof(text));
  }
  for (const SettingKey* key :
       {&settings::kNewCutWidth, &settings::kNewCutHeight, &settings::kNewCutFps, &settings::kNewCutAntialias,
        &settings::kNewFilmWidth, &settings::kNewFilmHeight, &settings::kPasteTransparent}) {
    ReadSettingNumber(*key);
  }
  uint32_t color = 0;
  ReadSettingText(settings::kPasteTransparentColor, text, 8);
  ParseColorText(text, &color);
  WriteSettingNumber(settings::kNewCutFps, 12);
  // A file in UTF-16 isn't written.
  const bool isUtf16 = size >= 2 && data[0] == 0xFF && data[1] == 0xFE;
  fuzz::Require(isUtf16 || ReadSettingNumber(settings::kNewCutFps) == 12);
  return 0;
}
