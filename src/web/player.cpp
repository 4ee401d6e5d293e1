// The player of a page: the program's own decoder and player behind functions that the page's script calls. A page has
// one film. All numbers are 32 bits; places in memory are bytes.
#include <cstdint>
#include <vector>

#include "animation/animation_window.h"
#include "animation/cut_times.h"
#include "animation/stream_inspector.h"
#include "foundation/buffer.h"
#include "platform/web/web.h"

#define SORVEL_EXPORT(name) extern "C" __attribute__((export_name(#name)))

namespace sorvel {

namespace {

struct ShownCut : CutTimes {
  StreamCutHead head;
  // Whether no frame shows anything beside the cut's picture, where pixels of earlier cuts stay.
  bool standsAlone = true;
};

struct Film {
  // Follows the frames of what has arrived of the stream.
  void Follow(int32_t received);
  // Lets ticks pass and draws the picture that is shown then.
  void Run(int32_t ticks);

  Buffer<uint8_t> bytes;
  BufferStream stream;
  AnimationWindow player;
  platform::Window screen;
  std::vector<ShownCut> cuts;
  bool hidesOldPixels = true;  // whether that is so of all cuts
  int32_t position = 0;        // of the first frame that isn't followed yet
  LoadReport report;
};

Film* gFilm = nullptr;

void Film::Follow(int32_t received) {
  BufferStream reader;
  reader.buffer = bytes.Data();
  reader.size = received;
  const AnimationDecoder& decoder = player.decoder;
  while (position < received) {
    reader.Seek(position, kFromStart);
    const size_t next = cuts.size();
    if (next < static_cast<size_t>(decoder.cutCount) && decoder.cutOffsets[next] == position) {
      char credit[kStreamTextLimit];
      ReadText(reader, credit, kStreamTextLimit);
      if (reader.Tell() + kCutHeadBytes > received) return;
      if (!cuts.empty()) cuts.back().Close();
      ShownCut& cut = cuts.emplace_back();
      cut.head = ReadCutHead(reader);
      position = reader.Tell();
    }
    if (cuts.empty() || reader.Tell() + kFrameHeadBytes > received) return;
    const StreamFrameHead head = ReadFrameHead(reader);
    const int64_t end = reader.Tell() + head.MapSize() + head.codeSize + head.literalSize;
    if (end > received) return;
    ShownCut& cut = cuts.back();
    cut.Add(head);
    cut.standsAlone = cut.standsAlone && head.x >= 0 && head.y >= 0 && head.x + cut.head.frameWidth <= cut.head.width &&
                      head.y + cut.head.frameHeight <= cut.head.height;
    hidesOldPixels = hidesOldPixels && cut.standsAlone;
    position = static_cast<int32_t>(end);
  }
  if (position == stream.size && !cuts.empty()) cuts.back().Close();
}

void Film::Run(int32_t ticks) {
  for (int32_t i = 1; i <= ticks; ++i) {
    // A frame is drawn once, when it begins. What the player decodes ahead may spoil a later drawing of it.
    screen.isDrawn = !hidesOldPixels || i == ticks || (player.nextTime > 0 && player.nextTime > ticks - i);
    player.TimerTick();
  }
}

}  // namespace

// Memory for the whole stream, of which the page fills in what it has. Null if there is none.
SORVEL_EXPORT(allocate) uint8_t* Allocate(int32_t size) {
  delete gFilm;
  gFilm = new Film;
  if (size < 1 || !gFilm->bytes.AllocateZeroed(static_cast<size_t>(size))) return nullptr;
  gFilm->stream.buffer = gFilm->bytes.Data();
  gFilm->stream.size = size;
  platform::MakeScreen(&gFilm->screen, &gFilm->player);
  return gFilm->bytes.Data();
}

// Opens the stream, whose head and first frame are there. 1, or 0 if it is none or there is no memory.
SORVEL_EXPORT(open) int32_t Open() {
  if (gFilm->player.decoder.OpenStream(&gFilm->stream) == 0) return 0;
  gFilm->position = gFilm->player.decoder.firstCutOffset;
  platform::SetClientSize(&gFilm->screen, gFilm->player.decoder.outputWidth, gFilm->player.decoder.outputHeight);
  return gFilm->screen.width > 0 ? 1 : 0;
}

// Counts what has arrived of the stream. Gives the number of cuts that begin in it.
SORVEL_EXPORT(follow) int32_t Follow(int32_t received) {
  gFilm->Follow(received);
  return static_cast<int32_t>(gFilm->cuts.size());
}

// Walks through the whole stream. 1 if it is as the program writes it.
SORVEL_EXPORT(check) int32_t Check() {
  BufferStream reader = gFilm->stream;
  StreamInfo info;
  return InspectStream(&reader, &info, &gFilm->report) && !gFilm->report.IsDamaged() ? 1 : 0;
}

SORVEL_EXPORT(cutCount) int32_t CutCount() {
  return gFilm->player.decoder.cutCount;
}
// The ticks of a cut, or how many of them can be played so far.
SORVEL_EXPORT(cutTicks) int32_t CutTicks(int32_t cut) {
  return gFilm->cuts[static_cast<size_t>(cut)].Ticks();
}

SORVEL_EXPORT(width) int32_t Width() {
  return gFilm->screen.width;
}
SORVEL_EXPORT(height) int32_t Height() {
  return gFilm->screen.height;
}
// The picture: 4 bytes a pixel, red, green, blue and opacity.
SORVEL_EXPORT(picture) uint32_t* Picture() {
  return gFilm->screen.pixels.Data();
}

// Shows a tick of the cut: goes to the start of the cut, whose first frame is a whole picture, and on from there.
SORVEL_EXPORT(seek) void Seek(int32_t cut, int32_t tick) {
  AnimationWindow& player = gFilm->player;
  AnimationDecoder& decoder = player.decoder;
  if (!gFilm->cuts[static_cast<size_t>(cut)].standsAlone) {
    // All that went before may show, so the film begins anew.
    for (int32_t i = 0; i < cut; ++i) tick += gFilm->cuts[static_cast<size_t>(i)].Ticks();
    cut = 0;
    player.bitmap.FillBits(0);
    platform::FillBlack(platform::BeginDrawing(&gFilm->screen), 0, 0, gFilm->screen.width, gFilm->screen.height);
  }
  player.StopTimer();
  decoder.stream->Seek(decoder.cutOffsets[static_cast<size_t>(cut)], kFromStart);
  decoder.cutIndex = cut;
  decoder.loopCount = 1;
  player.nextTime = decoder.DecodeNextFrame();
  player.ticks = 1;
  gFilm->Run(tick + 1);
}

// Goes on by so many ticks and shows the last one. Behind the last tick comes the first.
SORVEL_EXPORT(advance) void Advance(int32_t ticks) {
  gFilm->Run(ticks);
}

}  // namespace sorvel
