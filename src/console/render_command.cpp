#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/film_source.h"
#include "console/video_writer.h"
#include "export/apng_writer.h"
#include "export/film_export.h"
#include "export/picture_folder_writer.h"
#include "export/y4m_writer.h"

namespace sorvel::console {

namespace {

constexpr int32_t kLargestScale = 32;
constexpr int32_t kMostPlays = 65535;
constexpr int32_t kMostPictures = 1000;  // a second

enum class Format { kUnknown, kFolder, kApng, kRaw, kPipe, kVideo };

struct Target {
  Format format = Format::kUnknown;
  VideoKind video = VideoKind::kGif;

  bool RepeatsItself() const {
    return format == Format::kApng || (format == Format::kVideo && video == VideoKind::kGif);
  }
};

Target TargetOf(const std::string& path) {
  std::error_code ignored;
  if (path == "-") return {Format::kPipe};
  if (path.ends_with('/') || std::filesystem::is_directory(path, ignored)) return {Format::kFolder};
  const std::string ending = ExtensionOf(path);
  if (ending.empty()) return {Format::kFolder};
  if (ending == ".png" || ending == ".apng") return {Format::kApng};
  if (ending == ".y4m") return {Format::kRaw};
  if (ending == ".gif") return {Format::kVideo, VideoKind::kGif};
  if (ending == ".mp4") return {Format::kVideo, VideoKind::kMp4};
  if (ending == ".webm") return {Format::kVideo, VideoKind::kWebm};
  if (ending == ".mkv") return {Format::kVideo, VideoKind::kMkv};
  return {};
}

std::unique_ptr<FilmWriter> MakeWriter(const Target& target, const std::string& path) {
  switch (target.format) {
    case Format::kFolder:
      return std::make_unique<PictureFolderWriter>(path);
    case Format::kApng:
      return std::make_unique<ApngWriter>(path);
    case Format::kRaw:
      return std::make_unique<Y4mWriter>(path);
    case Format::kPipe:
      return std::make_unique<Y4mWriter>(stdout);
    case Format::kVideo:
      return MakeVideoWriter(target.video, path);
    case Format::kUnknown:
      break;
  }
  return nullptr;
}

bool TicksOption(const Arguments& arguments, ExportOptions* options) {
  const std::string* text = arguments.Find("--ticks");
  if (text == nullptr) return true;
  const size_t dash = text->find('-');
  if (dash != std::string::npos && ParseNumber(text->substr(0, dash), 0, INT32_MAX, &options->firstTick) &&
      ParseNumber(text->substr(dash + 1), options->firstTick, INT32_MAX, &options->lastTick)) {
    return true;
  }
  FailUsage("option --ticks takes two numbers A-B, from 0, of which B is not below A");
  return false;
}

}  // namespace

int RunRender(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  const Target target = TargetOf(out);
  if (target.format == Format::kUnknown) {
    return FailUsage("the ending of " + out + " is none of .png, .gif, .mp4, .webm, .mkv and .y4m");
  }
  ExportOptions options;
  int32_t loop = target.RepeatsItself() ? 0 : 1;
  if (!TicksOption(arguments, &options) || !NumberOption(arguments, "--scale", 1, kLargestScale, &options.scale) ||
      !NumberOption(arguments, "--loop", loop, kMostPlays, &loop) ||
      !NumberOption(arguments, "--fps", 1, kMostPictures, &options.fps)) {
    return kUsage;
  }
  (target.RepeatsItself() ? options.plays : options.runs) = loop;
  std::unique_ptr<FilmWriter> writer = MakeWriter(target, out);
  if (writer == nullptr) return Fail(out, "libavformat, which writes it, is missing");

  FilmSource source;
  const int status = source.Open(in);
  if (status != kDone) return status;
  FilmExport film;
  std::string problem;
  if (!film.Open(source.stream, source, options, &problem)) return Fail(in, problem);
  // A single file goes by itself, but the pictures of a folder must be removed.
  std::optional<HeldInterrupts> interrupts;
  if (target.format == Format::kFolder) interrupts.emplace(out);
  TimedProgress progress("picture");
  const bool isWritten = film.Run(writer.get(), [&](int32_t done, int32_t total) {
    progress.Show(done, total);
    return !source.HasReadError() && (!interrupts || !interrupts->HasCome());
  });
  ClearProgress();
  if (isWritten) return kDone;
  problem = writer->Text();
  const int number = writer->ErrorNumber();
  if (problem.empty()) problem = number != 0 ? std::strerror(number) : "not enough memory";
  const bool isWritersFault = writer->Problem() != WriteProblem::kNone;
  writer.reset();
  if (interrupts) interrupts->EndInterrupted();
  if (!isWritersFault && source.HasReadError()) return Fail(in, "can't be read");
  return Fail(target.format == Format::kPipe ? "standard output" : out, problem);
}

}  // namespace sorvel::console
