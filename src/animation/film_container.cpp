#include "animation/film_container.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "animation/compiled_cache.h"
#include "animation/stream_encoder.h"
#include "animation/stream_format.h"
#include "foundation/paths.h"
#include "imaging/packed_image.h"
#include "platform/files.h"

namespace sorvel {

namespace {

// Compiles all frames of the cut into a temporary file. Gives the open file, or null on failure. A cut without frames
// gives an empty file, or a failure if there is a report. `failure` receives errno if the file can't be written.
FILE* CompileCut(Cut* cut, const char* cachePath, NibbleBitmap* bitmap, PackedImage* composition,
                 ContainerReport* container, int* failure) {
  LoadReport* report = container != nullptr ? &container->report : nullptr;
  const char* problem = CanvasProblem(*cut);
  if (report != nullptr && cut->frames.Count() == 0) problem = "the cut has no frames";
  FileStream stream(problem == nullptr ? platform::OpenTemporaryFile() : nullptr);
  if (problem == nullptr && !stream.IsOpen()) {
    *failure = errno;
    problem = "no file for the compiled stream";
  }
  if (problem == nullptr && cut->frames.Count() != 0) {
    ProgressFunction progress;
    if (container != nullptr && container->frameProgress) {
      progress = [container](int32_t done, int32_t total) {
        container->isStopped = !container->frameProgress(done, total);
        return !container->isStopped;
      };
    }
    const bool compiled = composition->Resize(cut->width, cut->height, 0) &&
                          CompileFrames(cut, 0, cut->frames.Count() - 1, &stream, bitmap, composition, progress);
    if (!compiled) problem = container != nullptr && container->isStopped ? "stopped" : "no memory for the picture";
    if (compiled && (std::fflush(stream.file) != 0 || std::ferror(stream.file) != 0 || StreamLength(stream) < 0)) {
      *failure = stream.failure != 0 ? stream.failure : errno;
      problem = "the compiled stream can't be written";
    }
  }
  if (problem != nullptr) {
    NoteProblem(report, problem);
    stream.Close();
    return nullptr;
  }
  // If its cache can't be written, the film still gets the cut.
  KeepCache(&stream, cachePath);
  return stream.file;
}

FILE* OpenOrCompile(Film* film, int32_t listIndex, NibbleBitmap* bitmap, ContainerReport* container, int* failure) {
  LoadReport* report = container != nullptr ? &container->report : nullptr;
  const char* name = film->CutName(listIndex);
  char cachePath[kPathCapacity];
  if (!ChangeExtension(cachePath, name, "ca")) {
    NoteProblem(report, "the path is too long");
    return nullptr;
  }
  // A whole one is used even if the cut has changed since.
  FILE* cache = OpenCache(cachePath);
  if (cache != nullptr) return cache;
  PackedImage composition;
  Cut* open = film->cuts.At(listIndex).cut;
  if (open != nullptr) return CompileCut(open, cachePath, bitmap, &composition, container, failure);
  FILE* file = platform::OpenStdioFile(name, "rb");
  if (file == nullptr) {
    NoteProblem(report, "can't be opened");
    return nullptr;
  }
  Cut cut(0, 0, 24, "", 0);
  FileStream stream(file);
  const bool loaded = cut.Load(&stream, &composition, report);
  stream.Close();
  // A caller that passes a report wants no damaged cut in the film.
  const bool usable = loaded && (report == nullptr || !report->IsDamaged());
  return usable ? CompileCut(&cut, cachePath, bitmap, &composition, container, failure) : nullptr;
}

// Appends a compiled stream without its first bytes and writes its offset to `tableEntry`. `head` receives its sizes.
bool AppendCut(FileStream& cache, ByteStream& container, int32_t tableEntry, StreamCutHead* head, LoadReport* report) {
  const int32_t position = container.Tell();
  container.Seek(tableEntry, kFromStart);
  WriteField(container, position, kOffsetBytes);
  container.Seek(position, kFromStart);
  // Readers of the film hold its offsets in 32 bits with a sign.
  const int32_t length = StreamLength(cache);
  if (length < 0 || position < 0 || length - kCutRecordOffset > INT32_MAX - position) {
    NoteProblem(report, "the film grows beyond 2 GiB");
    return false;
  }
  cache.Seek(kCutRecordOffset, kFromStart);
  while (cache.GetC() > 0) {
  }
  *head = ReadCutHead(cache);
  cache.Seek(kCutRecordOffset, kFromStart);
  const bool copied = CopyStream(cache, container, std::max(length - kCutRecordOffset, 0));
  if (!copied) NoteProblem(report, "can't be copied into the film");
  return copied;
}

}  // namespace

bool WriteFilmContainer(Film* film, const int32_t* indices, int32_t count, FileStream* container, NibbleBitmap* bitmap,
                        ContainerReport* report) {
  WriteStreamStart(*container, StreamKind::kFilmContainer);
  WriteText(*container, film->title);
  WriteText(*container, film->author);
  const int32_t headPosition = container->Tell();
  ContainerHead head = {.width = film->width, .height = film->height, .cutCount = count};
  WriteContainerHead(*container, head);
  const int32_t table = container->Tell();
  // The table is skipped, not written, so a film that fails at its first cut ends before it.
  container->Seek(kOffsetBytes * count, kFromPosition);
  for (int32_t i = 0; i < count; ++i) {
    LoadReport* cutReport = report != nullptr ? &report->report : nullptr;
    FileStream cache(OpenOrCompile(film, indices[i], bitmap, report, &container->failure));
    StreamCutHead cut;
    const bool isIn = cache.IsOpen() && AppendCut(cache, *container, table + kOffsetBytes * i, &cut, cutReport);
    cache.Close();
    if (!isIn) {
      if (report != nullptr) report->listIndex = indices[i];
      return false;
    }
    head.maxWidth = std::max(head.maxWidth, cut.width);
    head.maxHeight = std::max(head.maxHeight, cut.height);
    if (report != nullptr && report->progress && !report->progress(i + 1, count)) {
      report->isStopped = true;
      return false;
    }
  }
  WriteStreamSize(*container);
  container->Seek(headPosition, kFromStart);
  WriteContainerHead(*container, head);
  return true;
}

}  // namespace sorvel
