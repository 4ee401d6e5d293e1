#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "animation/film_pictures.h"
#include "export/film_writer.h"
#include "export/shown_film.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"
#include "foundation/progress.h"

namespace sorvel {

struct ExportOptions {
  int32_t firstTick = 0;
  int32_t lastTick = -1;  // -1 for the last one of the film
  int32_t scale = 1;      // pixels across and down for each pixel
  int32_t fps = 0;        // pictures a second, 0 for the rates of the cuts
  int32_t plays = 1;      // how often a file that repeats itself plays, 0 without end
  int32_t runs = 1;       // how often the film is written, one behind the other
};

// Hands the pictures of a film to a writer, each with its exact time; equal ones that follow each other as one.
//
// A tick lasts 1/fps second of its cut, and times are counted in a common multiple of these rates. At a rate of one's
// own a picture is the one that the film shows when the picture begins.
class FilmExport {
 public:
  // Takes a compiled film and what it tells; the stream isn't owned. False, with the problem in plain English, if it
  // can't be written so.
  bool Open(ByteStream* compiled, const ShownFilm& shownFilm, const ExportOptions& exportOptions, std::string* problem);

  const FilmForm& Form() const { return form; }
  // Writes the film; the progress counts ticks. False if the writer failed, or, without a problem of the writer, if the
  // work was stopped, the stream couldn't be read any more, or the memory ran out.
  bool Run(FilmWriter* writer, const ProgressFunction& progress);

 private:
  // Ticks of a cut that are written.
  struct Part {
    int32_t fps;
    int64_t ticks;
  };

  bool FindParts(const ShownFilm& shownFilm, std::string* problem);
  bool FindRate(std::string* problem);
  bool WriteOnce(FilmWriter* writer, const ProgressFunction& progress, int32_t* done);
  bool TakePicture(FilmWriter* writer, Rect* changed, int64_t start, int64_t end);
  Rect DifferentPart(const Rect& part) const;
  void TakePart(const Rect& part);
  bool Flush(FilmWriter* writer);
  int64_t TimeOf(int64_t exact) const;

  ByteStream* input = nullptr;
  ExportOptions options;
  FilmForm form;
  std::vector<Part> parts;
  int32_t writtenTicks = 0;   // in all runs
  int64_t exactRate = 0;      // the common multiple of the rates
  int64_t exactDuration = 0;  // of one run
  int64_t runStart = 0;       // of the run at work, in units of the form

  FilmPictures film;
  Buffer<uint8_t> shown;   // the picture that waits for its end, as the film has it
  Buffer<uint8_t> scaled;  // the same at its size in the file; not used at scale 1
  FilmPicture waiting;
};

}  // namespace sorvel
