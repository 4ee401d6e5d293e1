#pragma once

#include <cstdint>
#include <string>

#include "document/cut.h"
#include "document/film.h"
#include "foundation/byte_stream.h"
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
  ByteStream* Stream() { return &stream; }

 private:
  FileStream stream{nullptr};
};

// A file that appears under its name only when it is complete: it is written beside its place and then renamed. What
// isn't committed is removed, also when the program is interrupted. A device is written to directly.
class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  bool Open(const std::string& path, std::string* problem);
  bool Commit(std::string* problem);

  FILE* File() { return stream.file; }
  ByteStream* Stream() { return &stream; }

 private:
  void Discard();

  FileStream stream{nullptr};
  std::string target;
  std::string partial;
};

// True once the user has asked the program to stop; from then on nothing is committed.
bool WasInterrupted();
// From now on an interruption lets the running command clean up first.
void CatchInterrupts();

// The kinds of files by their names, upper or lower case.
enum class FileKind { kUnknown, kCut, kLayer, kFilm, kStream };
FileKind KindOf(const std::string& path);

// The path from the root without steps to and fro, as UTF-8, and in the program's own code page; false if it can't be
// written there.
std::string FullPath(const std::string& path);
bool ProgramText(const std::string& utf8, std::string* text);

// Load a document into an object as made by the caller. False, with the one line written, for a file that can't be
// read, is of another kind or is damaged.
bool LoadCut(const std::string& path, Cut* cut);
bool LoadLayer(const std::string& path, Cut* cut);
bool LoadFilm(const std::string& path, Film* film);

// False, with the one line written, for a canvas that can't be compiled or put out.
bool CheckCanvas(const std::string& path, const Cut& cut);

// Writes an image as a bitmap file of 8 bits a pixel with these 26 colours, bottom row first.
void WriteIndexedBitmap(ByteStream* stream, const CellImage& image, const ColorEntry (&colors)[kColorCount]);

// Writes an unsigned picture of `channels` bytes a pixel as a binary map of type P5 or P6.
bool WritePortableMap(FILE* file, int32_t width, int32_t height, int32_t channels, const uint8_t* pixels);

// Progress on a terminal: one line that is written again and taken away at the end. Nothing if standard error is none.
void ShowProgress(const char* what, int64_t done, int64_t total);
void ClearProgress();

}  // namespace sorvel::console
