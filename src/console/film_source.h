#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/console_files.h"
#include "document/cut.h"
#include "document/film.h"
#include "export/shown_film.h"
#include "foundation/byte_stream.h"

namespace sorvel::console {

// A film to be shown: a film list, a cut, a compiled cut or a film container, whose compiled stream lies in a file.
class FilmSource : public ShownFilm {
 public:
  FilmSource() = default;
  FilmSource(const FilmSource&) = delete;
  FilmSource& operator=(const FilmSource&) = delete;
  ~FilmSource() { compiled.Close(); }

  // Opens the source and looks through its stream. A list or a cut is compiled first, into a file that goes at the end.
  // Gives kDone, or the status of a failure with its line.
  int Open(const std::string& path);

  // Whether something of the stream couldn't be read since Open() began. What then comes of it means nothing.
  bool HasReadError() const;

  FileStream* stream = nullptr;  // at its start after Open()

 private:
  int Compile(const std::string& path, std::vector<std::string>* names);

  InputFile input;
  FileStream compiled{nullptr};
};

// False, with the one line written, for a film without cuts or with too many, or with a cut that can't be opened.
bool CheckFilm(const std::string& path, Film* film);

// Writes all cuts of a film as a film container. False on failure, with the one line written unless it is the stream
// that failed: see FileStream::failure.
bool CompileFilm(Film* film, FileStream* stream);

// Compiles frames of a cut, counted from 0. False without memory.
bool CompileCut(Cut* cut, int32_t first, int32_t last, FileStream* stream);

}  // namespace sorvel::console
