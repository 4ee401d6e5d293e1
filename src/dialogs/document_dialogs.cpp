// The dialogs of layers, cuts, frames and films.

#include <utility>

#include "dialogs/dialog_values.h"
#include "dialogs/dialogs.h"
#include "platform/controls.h"
#include "resources/ids.h"

namespace sorvel {

namespace {

constexpr int32_t kOutputSizes = 3;

}  // namespace

CutDialogValues CutDialogDefaults;

// Layer.

LayerDialog::LayerDialog(platform::WindowHandle helpBar, const char* layerName, int32_t layerWidth, int32_t layerHeight,
                         uint32_t follow)
    : Dialog(helpBar, kLayerDialog), width(layerWidth), height(layerHeight), followFrame(follow) {
  CopyText(name, layerName);
}

void LayerDialog::ReadValues(platform::WindowHandle dialog) {
  TakeText(dialog, kLayerNameEdit, name);
  width = TakeSize(dialog, kLayerWidthUpDown);
  height = TakeSize(dialog, kLayerHeightUpDown);
  followFrame = TakeCheck(dialog, kLayerFollowCheck) ? 1 : 0;
}

void LayerDialog::WriteValues(platform::WindowHandle dialog) {
  ShowText(dialog, kLayerNameEdit, name);
  ShowSize(dialog, kLayerWidthUpDown, width);
  ShowSize(dialog, kLayerHeightUpDown, height);
  ShowCheck(dialog, kLayerFollowCheck, followFrame != 0);
}

// Cut.

CutDialog::CutDialog(platform::WindowHandle helpBar, int32_t cutWidth, int32_t cutHeight, int32_t framesPerSecond,
                     const char* creditText, int32_t outputSize)
    : Dialog(helpBar, kCutDialog), width(cutWidth), height(cutHeight), fps(framesPerSecond), antialias(outputSize) {
  CopyText(credit, creditText);
}

CutDialog::CutDialog(platform::WindowHandle helpBar)
    : CutDialog(helpBar, CutDialogDefaults.width, CutDialogDefaults.height, CutDialogDefaults.fps,
                CutDialogDefaults.credit, CutDialogDefaults.antialias) {}

void CutDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeSize(dialog, kCutWidthUpDown);
  height = TakeSize(dialog, kCutHeightUpDown);
  fps = TakeSize(dialog, kCutFpsUpDown);
  for (int32_t i = kOutputSizes; i-- > 0;) {
    if (TakeCheck(dialog, kCutWholeRadio + i)) antialias = i;
  }
  TakeText(dialog, kCutCreditEdit, credit);

  CutDialogDefaults.width = width;
  CutDialogDefaults.height = height;
  CutDialogDefaults.fps = fps;
  CutDialogDefaults.antialias = antialias;
  CopyText(CutDialogDefaults.credit, credit);
}

void CutDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, kCutWidthUpDown, width);
  ShowSize(dialog, kCutHeightUpDown, height);
  ShowSize(dialog, kCutFpsUpDown, fps);
  for (int32_t i = 0; i < kOutputSizes; ++i) {
    ShowCheck(dialog, kCutWholeRadio + i, i == antialias);
  }
  ShowText(dialog, kCutCreditEdit, credit);
}

// Film.

FilmDialog::FilmDialog(platform::WindowHandle helpBar, int32_t filmWidth, int32_t filmHeight, const char* filmTitle,
                       const char* filmAuthor)
    : Dialog(helpBar, kFilmDialog), width(filmWidth), height(filmHeight) {
  CopyText(title, filmTitle);
  CopyText(author, filmAuthor);
}

void FilmDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeSize(dialog, kFilmWidthUpDown);
  height = TakeSize(dialog, kFilmHeightUpDown);
  TakeText(dialog, kFilmTitleEdit, title);
  TakeText(dialog, kFilmAuthorEdit, author);
}

void FilmDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, kFilmWidthUpDown, width);
  ShowSize(dialog, kFilmHeightUpDown, height);
  ShowText(dialog, kFilmTitleEdit, title);
  ShowText(dialog, kFilmAuthorEdit, author);
}

// Size of a cut's frames.

FrameSizeDialog::FrameSizeDialog(platform::WindowHandle helpBar, int32_t frameWidth, int32_t frameHeight)
    : Dialog(helpBar, kFrameSizeDialog), width(frameWidth), height(frameHeight) {}

void FrameSizeDialog::ReadValues(platform::WindowHandle dialog) {
  width = TakeSize(dialog, kFrameWidthUpDown);
  height = TakeSize(dialog, kFrameHeightUpDown);
}

void FrameSizeDialog::WriteValues(platform::WindowHandle dialog) {
  ShowSize(dialog, kFrameWidthUpDown, width);
  ShowSize(dialog, kFrameHeightUpDown, height);
}

// Name of a cut.

RenameDialog::RenameDialog(platform::WindowHandle helpBar, const char* cutName) : Dialog(helpBar, kRenameDialog) {
  CopyText(name, cutName);
}

void RenameDialog::ReadValues(platform::WindowHandle dialog) {
  TakeText(dialog, kRenameEdit, name);
}

void RenameDialog::WriteValues(platform::WindowHandle dialog) {
  ShowText(dialog, kRenameEdit, name);
}

// Kept versions.

VersionDialog::VersionDialog(platform::WindowHandle helpBar, std::vector<std::string> versionLines)
    : Dialog(helpBar, kVersionDialog), lines(std::move(versionLines)) {}

void VersionDialog::ReadValues(platform::WindowHandle dialog) {
  const int32_t line = platform::SelectedListLine(platform::DialogControl(dialog, kVersionList));
  if (line >= 0) chosen = static_cast<size_t>(line);
}

void VersionDialog::WriteValues(platform::WindowHandle dialog) {
  const platform::WindowHandle list = platform::DialogControl(dialog, kVersionList);
  for (const std::string& line : lines) platform::AddListLine(list, line.c_str());
  platform::SelectListLine(list, 0);
}

}  // namespace sorvel
