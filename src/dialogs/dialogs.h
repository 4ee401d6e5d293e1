#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/dialog.h"
#include "foundation/shared_string.h"

// The dialogs of the program. The constructors take the initial values. Sizes are in pixels.
namespace sorvel {

// Room for a text of a dialog, in bytes with the terminator. Longer texts are cut.
constexpr size_t kDialogTextSize = 256;

class LayerDialog final : public Dialog {
 public:
  LayerDialog(platform::WindowHandle helpBar, const char* layerName, int32_t layerWidth, int32_t layerHeight,
              uint32_t follow);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  char name[kDialogTextSize];
  int32_t width;
  int32_t height;
  uint32_t followFrame;
};

// The values of the last CutDialog, of any command, that was ended with OK.
struct CutDialogValues {
  int32_t width = 960;
  int32_t height = 720;
  int32_t fps = 24;
  int32_t antialias = 2;
  char credit[kDialogTextSize] = "";
};
extern CutDialogValues CutDialogDefaults;

class CutDialog final : public Dialog {
 public:
  CutDialog(platform::WindowHandle helpBar, int32_t cutWidth, int32_t cutHeight, int32_t framesPerSecond,
            const char* creditText, int32_t outputSize);
  explicit CutDialog(platform::WindowHandle helpBar);  // starts with CutDialogDefaults
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t width;
  int32_t height;
  int32_t fps;
  int32_t antialias;
  char credit[kDialogTextSize];
};

// The grid that points snap to, or that is drawn.
class GridDialog final : public Dialog {
 public:
  GridDialog(platform::WindowHandle helpBar, int32_t stepX, int32_t stepY);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t width;
  int32_t height;
};

class MaskDialog final : public Dialog {
 public:
  MaskDialog(platform::WindowHandle helpBar, uint32_t flags);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;
  intptr_t OnControl(platform::WindowHandle dialog, int32_t code, int32_t id, platform::WindowHandle control) override;

  uint32_t mask;
};

class FilmDialog final : public Dialog {
 public:
  FilmDialog(platform::WindowHandle helpBar, int32_t filmWidth, int32_t filmHeight, const char* filmTitle,
             const char* filmAuthor);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t width;
  int32_t height;
  char title[kDialogTextSize];
  char author[kDialogTextSize];
};

// The base of the three dialogs that ask for the last frame of a range; they differ in their template only. `frame` is
// the number of frames before Run(), and the chosen frame, counted from 1, afterwards.
class FrameRangeDialog : public Dialog {
 public:
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t frame;

 protected:
  FrameRangeDialog(platform::WindowHandle helpBar, int32_t resource, int32_t frameCount);
  ~FrameRangeDialog() = default;
};

class LayerRampDialog final : public FrameRangeDialog {
 public:
  LayerRampDialog(platform::WindowHandle helpBar, int32_t frameCount);
};

class BrightnessRampDialog final : public FrameRangeDialog {
 public:
  BrightnessRampDialog(platform::WindowHandle helpBar, int32_t frameCount);
};

class FrameRampDialog final : public FrameRangeDialog {
 public:
  FrameRampDialog(platform::WindowHandle helpBar, int32_t frameCount);
};

class FontDialog final : public Dialog {
 public:
  FontDialog(platform::WindowHandle helpBar, const char* fontName, int32_t fontSize, int32_t spacing,
             int32_t fontWeight);
  FontDialog(const FontDialog&) = delete;
  FontDialog& operator=(const FontDialog&) = delete;
  ~FontDialog();
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  char* faceName = EmptyString;  // owned
  int32_t size;
  int32_t lineSpacing;
  int32_t weight;
};

// A text of any length.
class TextDialog final : public Dialog {
 public:
  explicit TextDialog(platform::WindowHandle helpBar);
  TextDialog(const TextDialog&) = delete;
  TextDialog& operator=(const TextDialog&) = delete;
  ~TextDialog();
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  char* text = EmptyString;  // owned
};

class FrameCountDialog final : public Dialog {
 public:
  FrameCountDialog(platform::WindowHandle helpBar, int32_t frameCount);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t count;
};

class FrameSizeDialog final : public Dialog {
 public:
  FrameSizeDialog(platform::WindowHandle helpBar, int32_t frameWidth, int32_t frameHeight);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t width;
  int32_t height;
};

class RenameDialog final : public Dialog {
 public:
  RenameDialog(platform::WindowHandle helpBar, const char* cutName);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  char name[kDialogTextSize];
};

class RandomDotsDialog final : public Dialog {
 public:
  RandomDotsDialog(platform::WindowHandle helpBar, int32_t dotGap);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  int32_t gap;
};

// The kept versions of a document, a line of text for each.
class VersionDialog final : public Dialog {
 public:
  // The list is sorted: each line begins with its number, which counts from 1 and has the same width in all.
  VersionDialog(platform::WindowHandle helpBar, std::vector<std::string> versionLines);
  void ReadValues(platform::WindowHandle dialog) override;
  void WriteValues(platform::WindowHandle dialog) override;

  size_t chosen = 0;  // an index of the lines

 private:
  std::vector<std::string> lines;
};

}  // namespace sorvel
