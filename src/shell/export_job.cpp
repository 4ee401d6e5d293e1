#include "shell/export_job.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <utility>

#include "animation/compiled_cache.h"
#include "animation/film_container.h"
#include "animation/stream_encoder.h"
#include "export/apng_writer.h"
#include "export/film_export.h"
#include "export/gif_writer.h"
#include "export/page_writer.h"
#include "export/picture_folder_writer.h"
#include "foundation/history.h"
#include "foundation/paths.h"
#include "foundation/shown_text.h"
#include "imaging/nibble_bitmap.h"
#include "platform/files.h"
#include "platform/player_page.h"

namespace sorvel {

namespace {

constexpr int32_t kMemoryBlock = 1 << 16;
constexpr int32_t kWhole = 1000;

// Whether a film takes the stream beside this cut.
bool HasCache(const char* path) {
  char cachePath[kPathCapacity];
  FileStream cache(ChangeExtension(cachePath, path, "ca") ? OpenCache(cachePath) : nullptr);
  return cache.Close();
}

std::string NameOf(const char* path) {
  char name[kPathCapacity];
  return FileNameOf(name, sizeof(name), path, false) ? ShownText(name) : "";
}

}  // namespace

ExportJob::ExportJob(ExportType exportType, const char* targetPath) : type(exportType), target(targetPath) {}

ExportJob::~ExportJob() {
  compiled.Close();
}

// What is open.

bool ExportJob::TakeFilm(Film* source, const std::string& name) {
  title = name;
  film.width = source->width;
  film.height = source->height;
  AssignString(&film.title, source->title);
  AssignString(&film.author, source->author);
  for (int32_t i = 0; i < source->cuts.Count(); ++i) {
    const FilmEntry& entry = source->cuts.At(i);
    film.AddEntry(entry.name);
    names.push_back(NameOf(entry.name));
    entries.push_back(nullptr);
    if (entry.cut == nullptr || HasCache(entry.name)) continue;
    entries.back() = Copy(entry.cut);
    if (entries.back() == nullptr) return FailCompiling(entry.name);
  }
  return true;
}

bool ExportJob::TakeCut(Cut* source, const std::string& name) {
  title = name;
  return Copy(source) != nullptr || FailCompiling("");
}

ExportJob::CutCopy* ExportJob::Copy(Cut* source) {
  for (const std::unique_ptr<CutCopy>& copy : copies) {
    if (copy->source == source) return copy.get();
  }
  auto copy = std::make_unique<CutCopy>();
  if (copy->snapshot.Take(source) != CutSnapshot::Result::kTaken) return nullptr;
  copy->source = source;
  copy->viewFlags = source->viewFlags;
  copy->currentFrame = source->currentFrame;
  const Frame* frame = source->frames.At(source->currentFrame);
  if (frame != nullptr) copy->currentRecord = frame->currentRecord;
  return copies.emplace_back(std::move(copy)).get();
}

bool ExportJob::Restore(CutCopy* copy, const char* path) {
  if (copy->cut != nullptr) return true;
  ChunkStream written(kMemoryBlock);
  Buffer<uint8_t> bytes;
  BufferStream stream;
  copy->cut = std::make_unique<Cut>(0, 0, 24, "", 0);
  Cut* cut = copy->cut.get();
  if (!copy->snapshot.Write(&written) || !ReadWholeStream(written, &bytes, &stream.size)) return FailCompiling(path);
  copy->snapshot = CutSnapshot();
  stream.buffer = bytes.Data();
  if (!cut->Load(&stream, &copy->prototype)) return FailCompiling(path);
  // What the compiled pictures depend on beside the document.
  cut->viewFlags = copy->viewFlags;
  cut->currentFrame = copy->currentFrame;
  if (Frame* frame = cut->CurrentFrame()) frame->SelectRecord(copy->currentRecord);
  return true;
}

// The work.

void ExportJob::Run() {
  if (Compile() && Write()) result = Result::kDone;
  compiled.Close();
}

bool ExportJob::Compile() {
  compiled = FileStream(platform::OpenTemporaryFile());
  if (!compiled.IsOpen()) return FailWriting(WriteProblemOf(errno));
  const bool isFilm = film.cuts.Count() != 0;
  if (!(isFilm ? CompileFilm() : Restore(copies.front().get(), "") && CompileCut(copies.front()->cut.get()))) {
    return false;
  }
  if (std::fflush(compiled.file) != 0 && compiled.failure == 0) compiled.failure = errno;
  if (compiled.failure != 0) return FailWriting(WriteProblemOf(compiled.failure));
  std::string reason;
  if (!shown.Read(&compiled, title, &reason)) return FailCompiling("");
  for (size_t i = 0; i < names.size() && i < shown.cuts.size(); ++i) shown.cuts[i].name = names[i];
  return true;
}

bool ExportJob::CompileFilm() {
  const int32_t count = film.cuts.Count();
  for (int32_t i = 0; i < count; ++i) {
    CutCopy* copy = entries[static_cast<size_t>(i)];
    if (copy == nullptr) continue;
    if (!Show(Stage::kCuts, 0, count, 0, 1) || !Restore(copy, film.CutName(i))) return false;
    film.cuts.Seek(i);
    film.cuts.CurrentSlot()->cut = copy->cut.get();
  }
  std::vector<int32_t> order(static_cast<size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  NibbleBitmap bitmap;
  ContainerReport report;
  int32_t cutsDone = 0;
  report.progress = [this, &cutsDone](int32_t doneCuts, int32_t allCuts) {
    cutsDone = doneCuts;
    return Show(Stage::kCuts, doneCuts, allCuts, 0, 1);
  };
  report.frameProgress = [this, &cutsDone, count](int32_t frames, int32_t allFrames) {
    return Show(Stage::kCuts, cutsDone, count, frames, allFrames);
  };
  if (WriteFilmContainer(&film, order.data(), count, &compiled, &bitmap, &report)) return true;
  if (report.isStopped) return false;
  if (compiled.failure != 0) return FailWriting(WriteProblemOf(compiled.failure));
  return FailCompiling(film.CutName(report.listIndex));
}

bool ExportJob::CompileCut(Cut* cut) {
  NibbleBitmap bitmap;
  PackedImage composition;
  const auto progress = [this](int32_t frames, int32_t allFrames) {
    return Show(Stage::kCuts, 0, 1, frames, allFrames);
  };
  if (composition.Resize(cut->width, cut->height, 0) &&
      CompileFrames(cut, 0, cut->frames.Count() - 1, &compiled, &bitmap, &composition, progress)) {
    return true;
  }
  return !hasStopped && FailCompiling("");
}

bool ExportJob::Write() {
  const std::string path = Utf8Path(target.c_str());
  switch (type) {
    case ExportType::kPage:
      return WritePageFile();
    case ExportType::kGif: {
      GifWriter writer(path);
      return WritePictures(&writer);
    }
    case ExportType::kAnimatedPng: {
      ApngWriter writer(path);
      return WritePictures(&writer);
    }
    case ExportType::kPictures: {
      PictureFolderWriter writer(path);
      return WritePictures(&writer);
    }
  }
  return false;
}

bool ExportJob::WritePictures(FilmWriter* writer) {
  FilmExport pictures;
  std::string reason;
  // Without end, as players of such files are used to.
  if (!pictures.Open(&compiled, shown, {.plays = 0}, &reason)) return FailCompiling("");
  const auto progress = [this](int64_t ticks, int64_t allTicks) {
    const auto all = static_cast<int32_t>(std::min<int64_t>(allTicks, INT32_MAX));
    return Show(Stage::kPictures, static_cast<int32_t>(std::min<int64_t>(ticks, all)), all, 0, 1);
  };
  if (pictures.Run(writer, progress)) return true;
  if (hasStopped) return false;
  return FailWriting(writer->Problem() != WriteProblem::kNone ? writer->Problem() : WriteProblem::kOther);
}

bool ExportJob::WritePageFile() {
  ReplacementFile file;
  if (!file.Open(target.c_str())) return FailWriting(file.problem());
  const auto progress = [this](int32_t doneBytes, int32_t allBytes) {
    return Show(Stage::kPictures, 0, 0, doneBytes, allBytes);
  };
  const bool isWritten = WritePage(platform::PlayerPage(), shown, &compiled, "", &file.stream, progress);
  if (hasStopped) return false;
  if (!isWritten && file.stream.failure == 0) return FailWriting(WriteProblem::kOther);
  return file.Commit() || FailWriting(file.WhyNot());
}

bool ExportJob::FailCompiling(const char* path) {
  result = Result::kNotCompiled;
  failedPath = path;
  return false;
}

bool ExportJob::FailWriting(WriteProblem why) {
  result = Result::kNotWritten;
  problem = why;
  return false;
}

bool ExportJob::Show(Stage now, int32_t doneParts, int32_t allParts, int32_t part, int32_t parts) {
  stage = now;
  done = doneParts;
  total = allParts;
  const int64_t wholeParts = std::max(allParts, 1);
  permille =
      static_cast<int32_t>((int64_t{doneParts} * kWhole + int64_t{part} * kWhole / std::max(parts, 1)) / wholeParts);
  if (told) told();
  if (isStopping) hasStopped = true;
  return !hasStopped;
}

}  // namespace sorvel
