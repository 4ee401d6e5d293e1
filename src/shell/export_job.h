#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "docfiles/cut_snapshot.h"
#include "document/cut.h"
#include "document/film.h"
#include "export/film_writer.h"
#include "export/shown_film.h"
#include "foundation/byte_stream.h"
#include "foundation/replacement_file.h"
#include "imaging/packed_image.h"

namespace sorvel {

// What a film or a cut can be exported as.
enum class ExportType { kPage, kGif, kAnimatedPng, kPictures };

// Exports a film or a cut for those who don't have the program. The job takes copies of what is open, so that no
// document is touched and Run() may go on on another thread.
class ExportJob {
 public:
  // The path is Shift JIS.
  ExportJob(ExportType exportType, const char* targetPath);
  ExportJob(const ExportJob&) = delete;
  ExportJob& operator=(const ExportJob&) = delete;
  ~ExportJob();

  // What is exported: a film, with the compiled streams that WriteFilmContainer() takes, or a cut. A film without a
  // title has `name`, in UTF-8, for one, and so has a cut. False without memory; Outcome() then says so.
  bool TakeFilm(Film* source, const std::string& name);
  bool TakeCut(Cut* source, const std::string& name);

  // Does the work. Nothing is left of a target that isn't whole.
  void Run();

  // From another thread: asks the work to end soon, and tells how far it is.
  void Stop() { isStopping = true; }
  enum class Stage { kCuts, kPictures };
  struct State {
    Stage stage = Stage::kCuts;
    int32_t done = 0;  // cuts or pictures, of `total`
    int32_t total = 0;
    int32_t permille = 0;  // of the stage
  };
  State Now() const { return {stage, done, total, permille}; }

  // Called on the thread of the work each time it tells how far it is; empty for nobody.
  std::function<void()> told;

  // After Run().
  enum class Result {
    kDone,
    kStopped,      // also if Run() wasn't called
    kNotCompiled,  // FailedPath() is a cut that isn't there or can't be compiled
    kNotWritten,   // WriteFailure() says why
  };
  Result Outcome() const { return result; }
  const char* FailedPath() const { return failedPath.c_str(); }  // Shift JIS
  WriteProblem WriteFailure() const { return problem; }
  const char* Target() const { return target.c_str(); }

 private:
  // A copy of an open cut, whose bytes become a cut when the work begins.
  struct CutCopy {
    CutSnapshot snapshot;
    uint32_t viewFlags = 0;
    int32_t currentFrame = 0;
    int32_t currentRecord = 0;
    PackedImage prototype;
    std::unique_ptr<Cut> cut;
    const Cut* source = nullptr;  // only to be compared
  };

  CutCopy* Copy(Cut* source);
  // Each gives false when the outcome is known.
  bool Restore(CutCopy* copy, const char* path);
  bool Compile();
  bool CompileFilm();
  bool CompileCut(Cut* cut);
  bool Write();
  bool WritePageFile();
  bool WritePictures(FilmWriter* writer);
  bool FailCompiling(const char* path);
  bool FailWriting(WriteProblem why);
  // False if the work is to stop.
  bool Show(Stage now, int32_t doneParts, int32_t allParts, int32_t part, int32_t parts);

  ExportType type;
  std::string target;
  std::string title;
  Film film;  // its cuts are copies; empty for a cut
  std::vector<std::unique_ptr<CutCopy>> copies;
  std::vector<CutCopy*> entries;   // of the film, null for a cut that isn't open or has a compiled stream
  std::vector<std::string> names;  // of the cuts
  FileStream compiled{nullptr};
  ShownFilm shown;

  Result result = Result::kStopped;
  bool hasStopped = false;
  std::string failedPath;
  WriteProblem problem = WriteProblem::kNone;

  std::atomic<bool> isStopping = false;
  std::atomic<Stage> stage = Stage::kCuts;
  std::atomic<int32_t> done = 0;
  std::atomic<int32_t> total = 0;
  std::atomic<int32_t> permille = 0;
};

}  // namespace sorvel
