#include <cstdio>
#include <string>
#include <vector>

#include "animation/film_container.h"
#include "animation/stream_encoder.h"
#include "animation/stream_inspector.h"
#include "console/commands.h"
#include "console/console_files.h"
#include "foundation/paths.h"
#include "imaging/indexed_image.h"
#include "imaging/nibble_bitmap.h"
#include "platform/files.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

// Writes a file by a function that fills it; the file appears only if that gives true.
template <typename Fill>
int WriteOutput(const std::string& path, const Fill& fill) {
  OutputFile file;
  std::string problem;
  if (!file.Open(path, &problem)) return Fail(path, problem);
  if (!fill(file.Stream())) return Fail(path, "can't be written");
  return file.Commit(&problem) ? kDone : Fail(path, problem);
}

// The frame that a word names, counted from 1 there and from 0 here.
int SelectFrame(const std::string& path, const std::string& word, Cut* cut) {
  int32_t number = 0;
  if (!ParseNumber(word, INT32_MIN, INT32_MAX, &number)) return FailUsage("the frame is a number from 1, not " + word);
  if (number < 1 || number > cut->frames.Count()) {
    return Fail(path, "there is no frame " + word + ", the cut has " + std::to_string(cut->frames.Count()));
  }
  cut->currentFrame = number - 1;
  return kDone;
}

// The program's own text for a message.
std::string Native(const char* text) {
  std::string native;
  platform::ShiftJisToUtf8(text, &native);
  return native;
}

// A compiled stream that lies beside a cut goes into a film as it is; what isn't one would spoil the film.
bool CheckCache(const char* cutPath) {
  char cachePath[kPathCapacity];
  if (!ChangeExtension(cachePath, cutPath, "ca")) return true;
  FileStream stream(platform::OpenStdioFile(cachePath, "rb"));
  if (!stream.IsOpen()) return true;
  const bool isStream = IsCompleteStream(&stream);
  stream.Close();
  if (!isStream) Fail(Native(cachePath), "not a complete compiled stream");
  return isStream;
}

}  // namespace

int RunResave(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  switch (KindOf(in)) {
    case FileKind::kCut: {
      Cut cut(0, 0, 24, "", 0);
      if (!LoadCut(in, &cut)) return kFailed;
      return WriteOutput(out, [&cut](ByteStream* stream) { return cut.Save(stream); });
    }
    case FileKind::kLayer: {
      Cut cut(0, 0, 20, "", 0);
      if (!LoadLayer(in, &cut)) return kFailed;
      return WriteOutput(out, [&cut](ByteStream* stream) { return cut.SaveLayer(stream); });
    }
    case FileKind::kFilm: {
      Film film;
      if (!LoadFilm(in, &film)) return kFailed;
      std::string text;
      if (!ProgramText(FullPath(out), &text)) {
        return Fail(out, "the path has letters that Shift JIS can't express");
      }
      return film.SaveTo(text.c_str(), '/') ? kDone : Fail(out, "can't be written");
    }
    default:
      return Fail(in, "not a cut, layer or film file by its name");
  }
}

int RunCompile(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  Cut cut(0, 0, 24, "", 0);
  int32_t first = 1;
  int32_t last = -1;
  if (!NumberOption(arguments, "--first", INT32_MIN, INT32_MAX, &first) ||
      !NumberOption(arguments, "--last", INT32_MIN, INT32_MAX, &last)) {
    return kUsage;
  }
  if (!LoadCut(in, &cut) || !CheckCanvas(in, cut)) return kFailed;
  if (!arguments.Has("--last")) last = cut.frames.Count();
  if (first < 1 || first > last || last > cut.frames.Count()) {
    return Fail(in, "there are no frames " + std::to_string(first) + " to " + std::to_string(last) + ", the cut has " +
                        std::to_string(cut.frames.Count()));
  }
  const int32_t scale = OutputScale(cut.Antialias());
  NibbleBitmap bitmap;
  IndexedImage composition;
  if (bitmap.Create(cut.width / scale, cut.height / scale) == 0 || !composition.Resize(cut.width, cut.height, 0)) {
    return Fail(in, "no memory for the picture");
  }
  return WriteOutput(out, [&](ByteStream* stream) {
    AnimationEncoder encoder(stream, &bitmap, 1);
    return encoder.EncodeCut(&cut, &composition, first - 1, last - 1) != 0;
  });
}

int RunExport(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  Film film;
  if (!LoadFilm(in, &film)) return kFailed;
  const int32_t count = film.cuts.Count();
  if (count == 0) return Fail(in, "the film has no cuts");
  std::vector<int32_t> order;
  for (int32_t i = 0; i < count; ++i) {
    order.push_back(i);
    if (!CheckCache(film.CutName(i))) return kFailed;
  }
  NibbleBitmap bitmap;
  ContainerReport report;
  OutputFile file;
  std::string problem;
  if (!file.Open(out, &problem)) return Fail(out, problem);
  if (!WriteFilmContainer(&film, order.data(), count, file.Stream(), &bitmap, &report)) {
    return Fail(Native(film.CutName(report.listIndex)), report.report.problem);
  }
  return file.Commit(&problem) ? kDone : Fail(out, problem);
}

int RunFrame(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  Cut cut(0, 0, 24, "", 0);
  if (!LoadCut(in, &cut) || !CheckCanvas(in, cut)) return kFailed;
  const int status = SelectFrame(in, arguments.Plain()[1], &cut);
  if (status != kDone) return status;
  NibbleBitmap bitmap;
  IndexedImage composition;
  if (!composition.Resize(cut.width, cut.height, 0)) return Fail(in, "no memory for the picture");
  return WriteOutput(arguments.Plain()[2],
                     [&](ByteStream* stream) { return cut.ExportFrameBitmap(stream, &bitmap, &composition); });
}

int RunView(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  int32_t record = -1;
  int32_t drawLimit = 0;
  if (!NumberOption(arguments, "--record", 0, INT32_MAX, &record) ||
      !NumberOption(arguments, "--draw-limit", 0, static_cast<int32_t>(kDrawLimitMask), &drawLimit)) {
    return kUsage;
  }
  Cut cut(0, 0, 24, "", 0);
  if (!LoadCut(in, &cut) || !CheckCanvas(in, cut)) return kFailed;
  const int status = SelectFrame(in, arguments.Plain()[1], &cut);
  if (status != kDone) return status;
  Frame* frame = cut.CurrentFrame();
  if (arguments.Has("--record") && !frame->SelectRecord(record)) {
    return Fail(in, "frame " + arguments.Plain()[1] + " has no record " + std::to_string(record));
  }
  uint32_t flags = static_cast<uint32_t>(drawLimit) << kDrawLimitShift;
  if (arguments.Has("--onion-previous")) flags |= kOnionPrevious;
  if (arguments.Has("--onion-next")) flags |= kOnionNext;
  if (arguments.Has("--current-cell-only")) flags |= kCurrentCellOnly;
  if (arguments.Has("--dim-others")) flags |= kDimOthers;
  IndexedImage view;
  if (!view.Resize(cut.width, cut.height, 0)) return Fail(in, "no memory for the picture");
  frame->ComposeFrame(&view, 0, 0, cut.width, cut.height, &flags, nullptr);
  return WriteOutput(arguments.Plain()[2], [&view](ByteStream* stream) {
    WriteIndexedBitmap(stream, view, ColorTable);
    return true;
  });
}

}  // namespace sorvel::console
