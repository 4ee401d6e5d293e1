#include "console/film_source.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <numeric>

#include "animation/compiled_cache.h"
#include "animation/film_container.h"
#include "animation/stream_encoder.h"
#include "console/commands.h"
#include "console/console_files.h"
#include "foundation/paths.h"
#include "imaging/nibble_bitmap.h"
#include "imaging/packed_image.h"
#include "platform/files.h"

namespace sorvel::console {

namespace {

// Checks that an entry of a film can be exported: a whole compiled stream lies beside the cut, or the cut can be
// opened.
bool CheckEntry(const char* cutPath) {
  char cachePath[kPathCapacity];
  FileStream cache(ChangeExtension(cachePath, cutPath, "ca") ? OpenCache(cachePath) : nullptr);
  if (cache.Close()) return true;
  InputFile cut;
  std::string problem;
  if (cut.Open(ShownText(cutPath), &problem)) return true;
  Fail(ShownText(cutPath), problem);
  return false;
}

ProgressFunction Shows(const char* what) {
  return [what](int32_t done, int32_t total) {
    ShowProgress(what, done, total);
    return true;
  };
}

}  // namespace

bool CheckFilm(const std::string& path, Film* film) {
  const int32_t count = film->cuts.Count();
  if (count == 0 || count > INT16_MAX) {
    Fail(path, count == 0 ? "the film has no cuts" : "the film has more than 32767 cuts");
    return false;
  }
  for (int32_t i = 0; i < count; ++i) {
    if (!CheckEntry(film->CutName(i))) return false;
  }
  return true;
}

bool CompileFilm(Film* film, FileStream* stream) {
  std::vector<int32_t> order(static_cast<size_t>(film->cuts.Count()));
  std::iota(order.begin(), order.end(), 0);
  NibbleBitmap bitmap;
  ContainerReport report;
  report.progress = Shows("cut");
  const bool isWritten = WriteFilmContainer(film, order.data(), film->cuts.Count(), stream, &bitmap, &report);
  ClearProgress();
  if (!isWritten && stream->failure == 0) Fail(ShownText(film->CutName(report.listIndex)), report.report.problem);
  return isWritten;
}

bool CompileCut(Cut* cut, int32_t first, int32_t last, FileStream* stream) {
  NibbleBitmap bitmap;
  // A packed image takes half the memory of an indexed one and holds all that is compiled.
  PackedImage composition;
  const bool isCompiled = composition.Resize(cut->width, cut->height, 0) &&
                          CompileFrames(cut, first, last, stream, &bitmap, &composition, Shows("frame"));
  ClearProgress();
  return isCompiled;
}

int FilmSource::Open(const std::string& path) {
  const FileKind kind = KindOf(path);
  std::vector<std::string> names;
  if (kind == FileKind::kStream) {
    std::string problem;
    if (!input.Open(path, &problem)) return Fail(path, problem);
    stream = input.Stream();
  } else if (kind == FileKind::kFilm || kind == FileKind::kCut) {
    compiled = FileStream(platform::OpenTemporaryFile());
    if (!compiled.IsOpen()) return Fail("the temporary file", std::strerror(errno));
    const int status = Compile(path, &names);
    if (status != kDone) return status;
    stream = &compiled;
  } else {
    return Fail(path, "not a film list, cut, compiled cut or film container by its name");
  }
  std::string problem;
  const bool isRead = Read(stream, StemOf(path), &problem);
  if (HasReadError()) return Fail(path, "can't be read");
  if (!isRead) return Fail(path, problem);
  for (size_t i = 0; i < names.size() && i < cuts.size(); ++i) cuts[i].name = names[i];
  return kDone;
}

bool FilmSource::HasReadError() const {
  return std::ferror(stream->file) != 0;
}

int FilmSource::Compile(const std::string& path, std::vector<std::string>* names) {
  if (KindOf(path) == FileKind::kFilm) {
    Film film;
    if (!LoadFilm(path, &film) || !CheckFilm(path, &film)) return kFailed;
    for (int32_t i = 0; i < film.cuts.Count(); ++i) names->push_back(StemOf(ShownText(film.CutName(i))));
    if (!CompileFilm(&film, &compiled) && compiled.failure == 0) return kFailed;
  } else {
    Cut cut(0, 0, 24, "", 0);
    if (!LoadCut(path, &cut) || !CheckCanvas(path, cut)) return kFailed;
    if (cut.frames.Count() == 0) return Fail(path, "the cut has no frames");
    if (!CompileCut(&cut, 0, cut.frames.Count() - 1, &compiled) && compiled.failure == 0) {
      return Fail(path, "no memory for the picture");
    }
  }
  if (std::fflush(compiled.file) != 0 && compiled.failure == 0) compiled.failure = errno;
  return compiled.failure == 0 ? kDone : Fail("the temporary file", std::strerror(compiled.failure));
}

}  // namespace sorvel::console
