#pragma once

#include <cstddef>
#include <cstdio>

#include "cutwindow/wait_cursor.h"
#include "foundation/byte_stream.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/window.h"

// Helpers of the commands.
namespace sorvel {

// Room for a path from a file dialog, with its terminator.
constexpr size_t kDialogPathSize = 261;

// Room for a text from the settings that a dialog starts with.
constexpr size_t kSettingTextSize = 80;

// The rate of a cut whose size and rate are still to be read from a file.
constexpr int32_t kUnreadFps = 20;

// The file types of the file dialogs.
constexpr platform::FileForm kCutFiles = {"Cut Files (*.cut)\0*.cut\0All Files (*.*)\0*.*\0", "cut"};
constexpr platform::FileForm kLayerFiles = {"Layer Files (*.lyr)\0*.lyr\0All Files (*.*)\0*.*\0", "lyr"};
constexpr platform::FileForm kFilmFiles = {"Film Files (*.flm)\0*.flm\0All Files (*.*)\0*.*\0", "flm"};
constexpr platform::FileForm kContainerFiles = {"Sorvel Files (*.sv)\0*.sv\0All Files (*.*)\0*.*\0", "sv"};
constexpr platform::FileForm kBitmapFiles = {"Bitmap Files (*.bmp)\0*.bmp\0All Files (*.*)\0*.*\0", "bmp"};

// The path that the user chooses in a file dialog. The dialog starts with it; it is empty at first.
class ChosenPath {
 public:
  // False if the user cancels.
  bool AskToOpen(platform::WindowHandle owner, const platform::FileForm& form) {
    return platform::AskFileToOpen(owner, form, path, sizeof(path));
  }
  bool AskToSave(platform::WindowHandle owner, const platform::FileForm& form) {
    return platform::AskFileToSave(owner, form, path, sizeof(path));
  }

  char path[kDialogPathSize] = "";
};

// A file that is closed at the end of the scope.
class CommandFile {
 public:
  CommandFile(const char* path, const char* mode) : stream(platform::OpenStdioFile(path, mode)) {}
  explicit CommandFile(FILE* file) : stream(file) {}
  CommandFile(const CommandFile&) = delete;
  CommandFile& operator=(const CommandFile&) = delete;
  ~CommandFile() { stream.Close(); }

  bool IsOpen() { return stream.IsOpen(); }

  FileStream stream;
};

// Deletes a line of a list and inserts a text at `target`. The new line isn't selected.
inline void ReplaceListLine(platform::WindowHandle list, int32_t line, int32_t target, const char* text) {
  platform::DeleteListLine(list, line);
  platform::InsertListLine(list, target, text);
}

// Suspends redrawing of a list until the end of the scope.
class QuietList {
 public:
  explicit QuietList(platform::WindowHandle quietList) : list(quietList) { platform::SetListRedraw(list, false); }
  QuietList(const QuietList&) = delete;
  QuietList& operator=(const QuietList&) = delete;
  ~QuietList() { platform::SetListRedraw(list, true); }

 private:
  platform::WindowHandle list;
};

}  // namespace sorvel
