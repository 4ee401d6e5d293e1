#include "animation/film_container.h"

#include <algorithm>
#include <cstdio>

#include "animation/stream_encoder.h"
#include "animation/stream_format.h"
#include "foundation/paths.h"
#include "imaging/packed_image.h"
#include "platform/files.h"

namespace sorvel {

namespace {

// Leaves a copy of the compiled stream beside the cut. A folder that can't be written gets none, and the cut goes into
// the film all the same; half a copy would be taken for the stream the next time.
void KeepCache(FileStream* compiled, const char* cachePath) {
  FileStream cache(platform::OpenStdioFile(cachePath, "wb"));
  if (!cache.IsOpen()) return;
  compiled->Seek(0, kFromStart);
  const bool copied = CopyStream(*compiled, cache, -1);
  if (!cache.Close() || !copied) platform::DeletePath(cachePath);
}

// Compiles all frames of the cut. Gives an open file, or null if that can't be done. A cut without frames can't be
// compiled with a report, and has an empty stream without one.
FILE* CompileCut(Cut* cut, const char* cachePath, NibbleBitmap* bitmap, PackedImage* composition, LoadReport* report) {
  const char* problem = CanvasProblem(*cut);
  if (report != nullptr && cut->frames.Count() == 0) problem = "the cut has no frames";
  FileStream stream(problem == nullptr ? platform::OpenTemporaryFile() : nullptr);
  if (problem == nullptr && !stream.IsOpen()) problem = "no file for the compiled stream";
  if (problem == nullptr && cut->frames.Count() != 0) {
    const int32_t scale = OutputScale(cut->Antialias());
    AnimationEncoder encoder(&stream, bitmap, 1);
    const bool compiled = bitmap->Create(cut->width / scale, cut->height / scale) != 0 &&
                          composition->Resize(cut->width, cut->height, 0) &&
                          encoder.EncodeCut(cut, composition, 0, cut->frames.Count() - 1) != 0;
    if (!compiled) problem = "no memory for the picture";
    if (compiled && (std::fflush(stream.file) != 0 || std::ferror(stream.file) != 0 || StreamLength(stream) < 0)) {
      problem = "the compiled stream can't be written";
    }
  }
  if (problem != nullptr) {
    NoteProblem(report, problem);
    stream.Close();
    return nullptr;
  }
  KeepCache(&stream, cachePath);
  return stream.file;
}

FILE* OpenOrCompile(Film* film, int32_t listIndex, NibbleBitmap* bitmap, LoadReport* report) {
  const char* name = film->CutName(listIndex);
  char cachePath[kPathCapacity];
  if (!ChangeExtension(cachePath, name, "ca")) {
    NoteProblem(report, "the path is too long");
    return nullptr;
  }
  // Whether it is up to date isn't looked at: a stream that lies there is the one to be shown.
  FILE* cache = platform::OpenStdioFile(cachePath, "rb");
  if (cache != nullptr) return cache;
  PackedImage composition;
  Cut* open = film->cuts.At(listIndex).cut;
  if (open != nullptr) return CompileCut(open, cachePath, bitmap, &composition, report);
  FILE* file = platform::OpenStdioFile(name, "rb");
  if (file == nullptr) {
    NoteProblem(report, "can't be opened");
    return nullptr;
  }
  Cut cut(0, 0, 24, "", 0);
  FileStream stream(file);
  const bool loaded = cut.Load(&stream, &composition, report);
  stream.Close();
  // Who asks what is wrong gets no film out of a damaged cut.
  const bool usable = loaded && (report == nullptr || !report->IsDamaged());
  return usable ? CompileCut(&cut, cachePath, bitmap, &composition, report) : nullptr;
}

struct ContainerHead {
  int32_t maxPosition;    // of the largest picture sizes
  int32_t tablePosition;  // of the offsets of the cuts
};

ContainerHead WriteHead(const Film& film, ByteStream& container, int32_t count) {
  ContainerHead head;
  container.Write(kContainerMagic, 2);
  WriteField(container, 0, 4);
  WriteText(container, film.title);
  WriteText(container, film.author);
  WriteField(container, film.width, 2);
  WriteField(container, film.height, 2);
  head.maxPosition = container.Tell();
  WriteField(container, 0, 4);
  WriteField(container, count, 2);
  head.tablePosition = container.Tell();
  // Stepped over and not written: a film that fails at its first cut ends before the table.
  container.Seek(4 * count, kFromPosition);
  return head;
}

bool AppendCutToContainer(Film* film, int32_t outIndex, int32_t listIndex, ByteStream& container, int32_t tablePosition,
                          NibbleBitmap* bitmap, int16_t* width, int16_t* height, LoadReport* report) {
  FILE* file = OpenOrCompile(film, listIndex, bitmap, report);
  if (file == nullptr) return false;
  const int32_t position = container.Tell();
  container.Seek(tablePosition + 4 * outIndex, kFromStart);
  WriteField(container, position, 4);
  container.Seek(position, kFromStart);
  FileStream cache(file);
  // Whoever reads the film counts its bytes in 32 bits with a sign.
  const int32_t length = StreamLength(cache);
  if (length < 0 || position < 0 || length - kCutRecordOffset > INT32_MAX - position) {
    NoteProblem(report, "the film grows beyond 2 GiB");
    cache.Close();
    return false;
  }
  cache.Seek(kCutRecordOffset, kFromStart);
  while (cache.GetC() > 0) {
  }
  *width = static_cast<int16_t>(ReadSignedField(cache, 2));
  *height = static_cast<int16_t>(ReadSignedField(cache, 2));
  cache.Seek(kCutRecordOffset, kFromStart);
  const bool copied = CopyStream(cache, container, std::max(length - kCutRecordOffset, 0));
  cache.Close();
  if (!copied) NoteProblem(report, "can't be copied into the film");
  return copied;
}

}  // namespace

bool WriteFilmContainer(Film* film, const int32_t* indices, int32_t count, ByteStream* container, NibbleBitmap* bitmap,
                        ContainerReport* report) {
  const ContainerHead head = WriteHead(*film, *container, count);
  int16_t maxWidth = 0;
  int16_t maxHeight = 0;
  for (int32_t i = 0; i < count; ++i) {
    int16_t width = 0;
    int16_t height = 0;
    if (!AppendCutToContainer(film, i, indices[i], *container, head.tablePosition, bitmap, &width, &height,
                              report != nullptr ? &report->report : nullptr)) {
      if (report != nullptr) report->listIndex = indices[i];
      return false;
    }
    maxWidth = std::max(maxWidth, width);
    maxHeight = std::max(maxHeight, height);
    if (report != nullptr && report->progress != nullptr) report->progress(i + 1, count);
  }
  const int32_t size = container->Tell();
  container->Seek(2, kFromStart);
  WriteField(*container, size, 4);
  container->Seek(head.maxPosition, kFromStart);
  WriteField(*container, maxWidth, 2);
  WriteField(*container, maxHeight, 2);
  return true;
}

}  // namespace sorvel
