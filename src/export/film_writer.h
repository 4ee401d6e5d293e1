#pragma once

#include <cstdint>
#include <string>

#include "foundation/replacement_file.h"
#include "imaging/rect.h"

namespace sorvel {

// What a film writer is told before the first picture. Times are whole numbers of units of 1/rate second.
struct FilmForm {
  int32_t width = 0;  // of every picture, in pixels
  int32_t height = 0;
  int64_t rate = 0;
  int32_t fastest = 0;   // pictures a second where they follow each other fastest
  int64_t duration = 0;  // of all pictures together
  int32_t plays = 1;     // how often a file that repeats itself plays, 0 without end
};

// A time in units of 1/rate second, rounded to units of 1/units second. A duration is the difference of two such times,
// so that no rounding adds up.
constexpr int64_t TimeInUnits(int64_t time, int64_t rate, int64_t units) {
  return time / rate * units + (time % rate * units + rate / 2) / rate;
}

// A picture of a film: one byte a pixel, 0 black to 255 white, rows from top to bottom without padding. The next one
// begins when it ends.
struct FilmPicture {
  const uint8_t* pixels = nullptr;
  Rect changed;  // holds all pixels that differ from the picture before; the whole picture for the first one
  int64_t start = 0;
  int64_t duration = 0;  // at least 1
};

// Writes the pictures of a film as a file, or as files. What it writes is there when Finish() gives true and not
// before; a writer that is deleted earlier, or that failed, leaves nothing behind.
class FilmWriter {
 public:
  FilmWriter() = default;
  FilmWriter(const FilmWriter&) = delete;
  FilmWriter& operator=(const FilmWriter&) = delete;
  virtual ~FilmWriter() = default;

  // To be called once, then Add() for each picture, then Finish(). Each gives false on failure, after which only the
  // problem can be asked for.
  virtual bool Begin(const FilmForm& form) = 0;
  virtual bool Add(const FilmPicture& picture) = 0;
  virtual bool Finish() = 0;

  // Why it failed; kNone while nothing did.
  WriteProblem Problem() const { return failureKind; }
  // The value of errno that goes with it; 0 if there is none.
  int ErrorNumber() const { return failureNumber; }
  // What else is wrong, in English; empty where the number says it.
  const std::string& Text() const { return failureText; }

 protected:
  // Each notes a failure, unless there was one before, and gives false.
  bool Fail(const std::string& reason);
  bool FailWith(int number);
  bool FailOf(const ReplacementFile& file);

 private:
  WriteProblem failureKind = WriteProblem::kNone;
  int failureNumber = 0;
  std::string failureText;
};

}  // namespace sorvel
