#include <cstdio>
#include <filesystem>
#include <string>

#include "animation/animation_window.h"
#include "animation/stream_inspector.h"
#include "console/commands.h"
#include "console/console_files.h"
#include "console/state_writer.h"
#include "platform/headless/headless.h"

namespace sorvel::console {

namespace {

// The player with a window of its own.
struct Screen {
  Screen() { platform::MakeCaptionWindow("", "", nullptr, &player); }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen() { platform::DestroyWindow(player.window); }

  AnimationWindow player;
};

std::string TickLine(int32_t tick, bool painted, const AnimationWindow& player) {
  char line[256];
  std::snprintf(line, sizeof(line),
                "{\"tick\":%d,\"painted\":%s,\"delay\":%d,\"ticks\":%d,\"nextTime\":%d,\"viewLeft\":%d,"
                "\"viewTop\":%d,\"viewport\":[%d,%d,%d,%d]}\n",
                tick, painted ? "true" : "false", platform::headless::RunningTimerPeriod(), player.ticks,
                player.nextTime, player.viewLeft, player.viewTop, player.viewport.x, player.viewport.y,
                player.viewport.width, player.viewport.height);
  return line;
}

int PlayTicks(const std::string& in, const std::string& folder, ByteStream* stream, int32_t count, FILE* log) {
  std::string problem;
  Screen screen;
  AnimationWindow& player = screen.player;
  for (int32_t tick = 0; tick < count; ++tick) {
    const int32_t paintsBefore = player.window->paints;
    if (tick == 0) {
      if (player.Play(stream) == 0) return Fail(in, "the picture can't be shown");
      if (player.window->height != player.decoder.outputHeight) return Fail(in, "the picture area is too large");
      // A still is only invalidated and not yet painted.
      if (player.window->paints == paintsBefore) {
        platform::DeviceContext* context = platform::BeginDrawing(player.window);
        player.Paint(context);
        platform::EndDrawing(player.window, context);
      }
    } else if (!platform::headless::RunTimer()) {
      break;
    }
    const bool painted = player.window->paints != paintsBefore;
    std::fputs(TickLine(tick, painted, player).c_str(), log);
    if (painted) {
      char name[32];
      std::snprintf(name, sizeof(name), "/tick-%05d.pgm", tick);
      const int status = WriteGreyMap(folder + name, *player.window);
      if (status != kDone) return status;
    }
    ShowProgress("tick", tick + 1, count);
  }
  ClearProgress();
  return kDone;
}

}  // namespace

int RunPlay(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& folder = arguments.Plain()[1];
  int32_t count = 0;
  if (!arguments.Has("--ticks")) return FailUsage("play needs --ticks N");
  if (!NumberOption(arguments, "--ticks", 0, INT32_MAX, &count)) return kUsage;
  std::string problem;
  Buffer<uint8_t> bytes;
  BufferStream stream;
  {
    InputFile file;
    if (!file.Open(in, &problem)) return Fail(in, problem);
    if (!ReadWholeStream(*file.Stream(), &bytes, &stream.size)) return Fail(in, "can't be read into memory");
    stream.buffer = bytes.Data();
  }
  StreamInfo info;
  LoadReport report;
  if (!InspectStream(&stream, &info, &report) || report.IsDamaged()) return Fail(in, report.problem);
  stream.Seek(0, kFromStart);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) return Fail(folder, error.message());
  const std::string logPath = folder + "/ticks.jsonl";
  OutputFile log;
  if (!log.Open(logPath, &problem)) return Fail(logPath, problem);
  const int status = PlayTicks(in, folder, &stream, count, log.File());
  if (status != kDone) return status;
  return log.Commit(&problem) ? kDone : Fail(logPath, problem);
}

}  // namespace sorvel::console
