#include <cstdio>
#include <string>
#include <vector>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/film_source.h"
#include "console/state_writer.h"
#include "foundation/paths.h"
#include "imaging/indexed_image.h"
#include "imaging/nibble_bitmap.h"
#include "imaging/packed_image.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

// The frame that a word names, counted from 1 there and from 0 here.
int SelectFrame(const std::string& path, const std::string& word, Cut* cut) {
  int32_t number = 0;
  if (!ParseNumber(word, INT32_MIN, INT32_MAX, &number))
    return FailUsage("the frame is a number from 1, not " + Printable(word));
  if (number < 1 || number > cut->frames.Count()) {
    return Fail(path,
                "there is no frame " + std::to_string(number) + ", the cut has " + std::to_string(cut->frames.Count()));
  }
  cut->currentFrame = number - 1;
  return kDone;
}

}  // namespace

int RunResave(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  switch (KindOf(in)) {
    case FileKind::kCut: {
      Cut cut(0, 0, 24, "", 0);
      if (!LoadCut(in, &cut)) return kFailed;
      return WriteOutput(out, [&cut](OutputFile* file) { return cut.Save(file->Stream()); });
    }
    case FileKind::kLayer: {
      Cut cut(0, 0, 20, "", 0);
      if (!LoadLayer(in, &cut)) return kFailed;
      return WriteOutput(out, [&cut](OutputFile* file) { return cut.SaveLayer(file->Stream()); });
    }
    case FileKind::kFilm: {
      Film film;
      if (!LoadFilm(in, &film)) return kFailed;
      std::string text;
      if (!platform::Utf8ToShiftJis(FullPath(out), &text)) {
        return Fail(out, "the path has letters that Shift JIS can't express");
      }
      return WriteOutput(out,
                         [&film, &text](OutputFile* file) { return film.WriteTo(file->File(), text.c_str(), '/'); });
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
  return WriteOutput(out, [&](OutputFile* file) { return CompileCut(&cut, first - 1, last - 1, file->Stream()); });
}

int RunExport(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  Film film;
  if (!LoadFilm(in, &film) || !CheckFilm(in, &film)) return kFailed;
  OutputFile file;
  std::string problem;
  if (!file.Open(out, &problem)) return Fail(out, problem);
  if (CompileFilm(&film, file.Stream())) return file.Commit(&problem) ? kDone : Fail(out, problem);
  return file.HasFailed(&problem) ? Fail(out, problem) : kFailed;
}

int RunFrame(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  Cut cut(0, 0, 24, "", 0);
  if (!LoadCut(in, &cut) || !CheckFrame(in, cut)) return kFailed;
  const int status = SelectFrame(in, arguments.Plain()[1], &cut);
  if (status != kDone) return status;
  NibbleBitmap bitmap;
  IndexedImage composition;
  if (!composition.Resize(cut.width, cut.height, 0)) return Fail(in, "no memory for the picture");
  return WriteOutput(arguments.Plain()[2],
                     [&](OutputFile* file) { return cut.ExportFrameBitmap(file->Stream(), &bitmap, &composition); });
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
  if (!LoadCut(in, &cut)) return kFailed;
  // The editor shows every canvas pixel, whatever the output size.
  cut.SetAntialias(0);
  if (!CheckCanvas(in, cut)) return kFailed;
  const int status = SelectFrame(in, arguments.Plain()[1], &cut);
  if (status != kDone) return status;
  Frame* frame = cut.CurrentFrame();
  if (arguments.Has("--record") && !frame->SelectRecord(record)) {
    return Fail(in, "frame " + std::to_string(cut.currentFrame + 1) + " has no record " + std::to_string(record));
  }
  uint32_t flags = static_cast<uint32_t>(drawLimit) << kDrawLimitShift;
  if (arguments.Has("--onion-previous")) flags |= kOnionPrevious;
  if (arguments.Has("--onion-next")) flags |= kOnionNext;
  if (arguments.Has("--current-cell-only")) flags |= kCurrentCellOnly;
  if (arguments.Has("--dim-others")) flags |= kDimOthers;
  IndexedImage view;
  if (!view.Resize(cut.width, cut.height, 0)) return Fail(in, "no memory for the picture");
  frame->ComposeFrame(&view, 0, 0, cut.width, cut.height, &flags, nullptr);
  return WriteView(arguments.Plain()[2], view);
}

}  // namespace sorvel::console
