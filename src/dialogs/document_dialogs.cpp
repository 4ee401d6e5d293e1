// The dialogs of layers, cuts, frames and films.

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"

namespace sorvel {

namespace {

namespace layer_dialog {
enum : int32_t { kTemplate = 106, kName = 1000, kHeight = 1003, kWidth = 1004, kFollowFrame = 1060 };
}
namespace cut_dialog {
enum : int32_t { kTemplate = 107, kWidth = 1005, kHeight = 1006, kFps = 1036, kCredit = 1037, kFirstOutputSize = 1055 };
constexpr int32_t kOutputSizes = 3;
}  // namespace cut_dialog
namespace film_dialog {
enum : int32_t { kTemplate = 110, kWidth = 1014, kHeight = 1015, kTitle = 1039, kAuthor = 1040 };
}
namespace frame_size_dialog {
enum : int32_t { kTemplate = 123, kWidth = 1005, kHeight = 1006 };
}
namespace rename_dialog {
enum : int32_t { kTemplate = 126, kName = 1058 };
}

}  // namespace

CutDialogValues CutDialogDefaults;

// Layer.

LayerDialog::LayerDialog(platform::WindowHandle helpBar, const char* layerName, int32_t layerWidth, int32_t layerHeight,
                         uint32_t follow)
    : Dialog(helpBar, layer_dialog::kTemplate), width(layerWidth), height(layerHeight), followFrame(follow) {
  CopyText(name, layerName);
}

void LayerDialog::ReadValues(platform::WindowHandle dialog) {
  TakeText(dialog, layer_dialog::kName, name);
  width = TakeSize(dialog, layer_dialog::kWidth);
  height = TakeSize(dialog, layer_dialog::kHeight);
  followFrame = TakeCheck(dialog, layer_dialog::kFollowFrame) ? 1 : 0;
}

void LayerDialog::WriteValues(platform::WindowHandle dialog) {
  ShowText(dialog, layer_dialog::kName, name);
  ShowSize(dialog, layer_dialog::kWidth, width);
  ShowSize(dialog, layer_dialog::kHeight, height);
  ShowCheck(dialog, layer_dialog::kFollowFrame, followFrame != 0);
}

// Cut.

CutDialog::CutDialog(platform::WindowHandle helpBar, int32_t cutWidth, int32_t cutHeight, int32_t framesPerSecond,
                     const char* creditText, int32_t outputSize)
    : Dialog(helpBar, cut_dialog::kTemplate),
      width(cutWidth),
      height(cutHeight),
      fps(framesPerSecond),
      antialias(outputSize) {
  CopyText(credit, creditText);
}

CutDialog::CutDialog(platform::WindowHandle helpBar)
    : CutDialog(helpBar, CutDialogDefaults.width, CutDialogDefaults.height, CutDialogDefaults.fps,
                CutDialogDefaults.credit, CutDialogDefaults.antialias) {}

void CutDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeSize(dialog, cut_dialog::kWidth);
  height = TakeSize(dialog, cut_dialog::kHeight);
  fps = TakeSize(dialog, cut_dialog::kFps);
  for (int32_t i = cut_dialog::kOutputSizes; i-- > 0;) {
    if (TakeCheck(dialog, cut_dialog::kFirstOutputSize + i)) antialias = i;
  }
  TakeText(dialog, cut_dialog::kCredit, credit);

  CutDialogDefaults.width = width;
  CutDialogDefaults.height = height;
  CutDialogDefaults.fps = fps;
  CutDialogDefaults.antialias = antialias;
  CopyText(CutDialogDefaults.credit, credit);
}

void CutDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, cut_dialog::kWidth, width);
  ShowSize(dialog, cut_dialog::kHeight, height);
  ShowSize(dialog, cut_dialog::kFps, fps);
  for (int32_t i = 0; i < cut_dialog::kOutputSizes; ++i) {
    ShowCheck(dialog, cut_dialog::kFirstOutputSize + i, i == antialias);
  }
  ShowText(dialog, cut_dialog::kCredit, credit);
}

// Film.

FilmDialog::FilmDialog(platform::WindowHandle helpBar, int32_t filmWidth, int32_t filmHeight, const char* filmTitle,
                       const char* filmAuthor)
    : Dialog(helpBar, film_dialog::kTemplate), width(filmWidth), height(filmHeight) {
  CopyText(title, filmTitle);
  CopyText(author, filmAuthor);
}

void FilmDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeSize(dialog, film_dialog::kWidth);
  height = TakeSize(dialog, film_dialog::kHeight);
  TakeText(dialog, film_dialog::kTitle, title);
  TakeText(dialog, film_dialog::kAuthor, author);
}

void FilmDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, film_dialog::kWidth, width);
  ShowSize(dialog, film_dialog::kHeight, height);
  ShowText(dialog, film_dialog::kTitle, title);
  ShowText(dialog, film_dialog::kAuthor, author);
}

// Size of a cut's frames.

FrameSizeDialog::FrameSizeDialog(platform::WindowHandle helpBar, int32_t frameWidth, int32_t frameHeight)
    : Dialog(helpBar, frame_size_dialog::kTemplate), width(frameWidth), height(frameHeight) {}

void FrameSizeDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeSize(dialog, frame_size_dialog::kWidth);
  height = TakeSize(dialog, frame_size_dialog::kHeight);
}

void FrameSizeDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, frame_size_dialog::kWidth, width);
  ShowSize(dialog, frame_size_dialog::kHeight, height);
}

// Name of a cut.

RenameDialog::RenameDialog(platform::WindowHandle helpBar, const char* cutName)
    : Dialog(helpBar, rename_dialog::kTemplate) {
  CopyText(name, cutName);
}

void RenameDialog::ReadValues(platform::WindowHandle dialog) {
  TakeText(dialog, rename_dialog::kName, name);
}

void RenameDialog::WriteValues(platform::WindowHandle dialog) {
  ShowText(dialog, rename_dialog::kName, name);
}

}  // namespace sorvel
