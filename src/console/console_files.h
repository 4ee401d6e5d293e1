#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "console/commands.h"
#include "document/cut.h"
#include "document/film.h"
#include "foundation/byte_stream.h"
#include "foundation/replacement_file.h"
#include "foundation/shown_text.h"
#include "imaging/color_table.h"

namespace sorvel::console {

// A file named on the command line, opened for reading and closed at the end.
class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  // False, with the reason, for what isn't a readable plain file of less than 2 GiB.
  bool Open(const std::string& path, std::string* problem);

  FILE* File() { return stream.file; }
  FileStream* Stream() { return &stream; }

 private:
  FileStream stream{nullptr};
};

// A path's last name without its extension.
std::string StemOf(const std::string& path);
// A path's extension with its dot, in small letters; empty if it has none.
std::string ExtensionOf(const std::string& path);

// A file that appears under its name only when it is complete, also when the program is interrupted.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  // Each gives false with the reason.
  bool Open(const std::string& path, std::string* problem);
  bool Commit(std::string* problem);
  // True, with the reason, if something could not be written.
  bool HasFailed(std::string* problem) const;

  FILE* File() { return file.stream.file; }
  FileStream* Stream() { return &file.stream; }

 private:
  ReplacementFile file;
  std::string nameBefore;  // what an interruption named before
};

// Writes a file by `fill`, which takes the OutputFile and gives false if it lacks memory. The file appears only when it
// is complete. Gives the exit status; a failure is reported on standard error.
template <typename Fill>
int WriteOutput(const std::string& path, const Fill& fill) {
  OutputFile file;
  std::string problem;
  if (!file.Open(path, &problem)) return Fail(path, problem);
  if (!fill(&file)) return Fail(path, file.HasFailed(&problem) ? problem : "not enough memory to write it");
  return file.Commit(&problem) ? kDone : Fail(path, problem);
}

// From now on an interruption removes what is being written and ends the program, after one line on standard error that
// names the file that was being written, or `subject` if there was none. A closed pipe and a file that grows too large
// are failed writes.
void CatchInterrupts(const std::string& subject);

// While one of these lives an interruption only sets a flag: the command stops at once, undoes what it did and ends the
// program by EndInterrupted(). `subject` is what the line names.
class HeldInterrupts {
 public:
  explicit HeldInterrupts(const std::string& subject);
  HeldInterrupts(const HeldInterrupts&) = delete;
  HeldInterrupts& operator=(const HeldInterrupts&) = delete;
  ~HeldInterrupts();

  bool HasCome() const;
  // Ends the program if an interruption has come, as that does otherwise.
  void EndInterrupted() const;

 private:
  std::string nameBefore;
};

// The kinds of files by their names, upper or lower case.
enum class FileKind { kUnknown, kCut, kLayer, kFilm, kStream };
FileKind KindOf(const std::string& path);

// The path from the root without steps to and fro, as UTF-8.
std::string FullPath(const std::string& path);

// Load a document into an object as made by the caller. False, with the one line written, for a file that can't be
// read, is of another kind or is damaged.
bool LoadCut(const std::string& path, Cut* cut);
bool LoadLayer(const std::string& path, Cut* cut);
bool LoadFilm(const std::string& path, Film* film);

// False, with the one line written, for a canvas that can't be compiled, or a frame that can't be put out.
bool CheckCanvas(const std::string& path, const Cut& cut);
bool CheckFrame(const std::string& path, const Cut& cut);

// Writes an image as a bitmap file of 8 bits a pixel with these 26 colours, bottom row first.
void WriteIndexedBitmap(ByteStream* stream, const CellImage& image, const std::array<ColorEntry, kColorCount>& colors);

// Progress on a terminal: one line that is written again and taken away at the end. Nothing if standard error is none.
void ShowProgress(const char* what, int64_t done, int64_t total);
// The same with the percentage and, after a second, the time that is left. Written a few times a second.
class TimedProgress {
 public:
  explicit TimedProgress(const char* things) : what(things) {}
  void Show(int64_t done, int64_t total);

 private:
  const char* what;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point shown = {};
};
void ClearProgress();

}  // namespace sorvel::console
