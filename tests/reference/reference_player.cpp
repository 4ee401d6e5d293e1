// The decoder, and the player's rule of ticks.
#include <cstdlib>

#include "reference_internal.h"

namespace reference {

bool Decoder::OpenStream(const Bytes& stream) {
  in.data = &stream;
  in.position = 0;
  std::string magic;
  magic.push_back(static_cast<char>(in.U8()));
  magic.push_back(static_cast<char>(in.U8()));
  cutOffsets.clear();
  if (magic == "CA") {
    in.U32();
    in.Text();
    int pictureWidth = in.I16();
    int pictureHeight = in.I16();
    planes.Create(pictureWidth, pictureHeight);
    outputWidth = in.I16();
    outputHeight = in.I16();
    cutOffsets.push_back(6);
    cutCount = 1;
    firstCutOffset = 6;
  } else if (magic == "SV") {
    in.U32();
    in.Text();
    in.Text();
    outputWidth = in.I16();
    outputHeight = in.I16();
    int pictureWidth = in.I16();
    int pictureHeight = in.I16();
    planes.Create(pictureWidth, pictureHeight);
    cutCount = in.I16();
    for (int i = 0; i < cutCount; i++) cutOffsets.push_back(in.U32());
    firstCutOffset = in.position;
  } else {
    return false;
  }
  // Standing at the end makes the first decoding start over at the first cut.
  streamEnd = stream.size();
  in.position = streamEnd;
  loopCount = 1;
  cutIndex = 0;
  return true;
}

namespace {

struct Head {
  int time;
  int loop;
  int brightness;
  int x;
  int y;
  Box box;
};

Head ReadHead(Reader* in, int frameCounter) {
  Head head{};
  head.time = in->I16();
  head.loop = in->I16();
  head.brightness = in->I8();
  head.x = in->I16();
  head.y = in->I16();
  head.box.x = in->I16();
  head.box.y = in->I16();
  head.box.width = in->I16();
  head.box.height = in->I16();
  // There is no dissolve into the first frame of a cut.
  if (frameCounter == 0) head.time = std::abs(head.time);
  return head;
}

}  // namespace

int Decoder::DecodeNextFrame() {
  if (in.data == nullptr) return 0;
  if (in.position == streamEnd) {
    in.position = firstCutOffset;
    cutIndex = 0;
  }

  if (cutIndex < static_cast<int>(cutOffsets.size()) && cutOffsets[static_cast<std::size_t>(cutIndex)] == in.position) {
    std::string name = in.Text();
    int newWidth = in.I16();
    int newHeight = in.I16();
    int newFrameWidth = in.I16();
    int newFrameHeight = in.I16();
    int newFps = in.I8();
    int newLevels = in.U8() + 1;
    // A record met inside a running loop is only read over: the frame behind it is going to jump back.
    if (loopCount < 2) {
      cutName = name;
      frameCounter = 0;
      width = newWidth;
      height = newHeight;
      frameWidth = newFrameWidth;
      frameHeight = newFrameHeight;
      fps = newFps;
      levels = newLevels;
      currentBox = Box{0, 0, width, height};
      cutIndex = cutIndex + 1;
      planes.SetLevels(levels);
    }
  }

  std::size_t headPosition = in.position;
  Head head = ReadHead(&in, frameCounter);

  if (loopCount > 1 && head.loop != 0) {
    planes.RestoreBits();
    frameCounter = loopFrameCounter;
    currentBox = loopBox;
    in.position = loopStart;
    head = ReadHead(&in, frameCounter);
    loopCount = loopCount - 1;
  } else if (head.loop > 1) {
    loopStart = headPosition;
    loopFrameCounter = frameCounter;
    loopCount = head.loop;
    loopBox = currentBox;
    planes.SaveBits();
  }

  planes.frontIsHigh = frameCounter & 1;
  frameCounter = frameCounter + 1;
  previousBox = currentBox;
  currentBox = head.box;
  frameX = head.x;
  frameY = head.y;

  std::uint32_t codeSize = in.U32();
  std::uint32_t literalSize = in.U32();
  int rowBytes = (currentBox.width + 7) / 8;
  int mapRowBytes = (rowBytes + 7) / 8;
  std::size_t mapPosition = in.position;
  std::size_t codePosition = mapPosition + static_cast<std::size_t>(currentBox.height * mapRowBytes);
  std::size_t literalPosition = codePosition + codeSize;

  if (planes.width < width || planes.height < height) {
    in.position = literalPosition + literalSize;
    return head.time;
  }

  if (currentBox.width != 0 && currentBox.height != 0) {
    planes.CopyAround(currentBox, previousBox);
  } else {
    planes.CopyBackToFront(previousBox);
  }

  Bytes rowCodes(static_cast<std::size_t>(rowBytes), 0x11);
  for (int row = 0; row < currentBox.height; row++) {
    int y = currentBox.y + row;
    in.position = mapPosition + static_cast<std::size_t>(row * mapRowBytes);
    Bytes rowMap;
    for (int i = 0; i < mapRowBytes; i++) rowMap.push_back(static_cast<std::uint8_t>(in.U8()));
    in.position = codePosition;
    for (int i = 0; i < rowBytes; i++) {
      if ((rowMap[static_cast<std::size_t>(i / 8)] >> (i % 8)) % 2 == 1) {
        rowCodes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(in.U8());
      }
    }
    codePosition = in.position;

    in.position = literalPosition;
    int block = 0;
    for (int x = currentBox.x; x < currentBox.x + currentBox.width; x = x + 4) {
      int byte = rowCodes[static_cast<std::size_t>(block / 2)];
      int code = block % 2 == 0 ? byte & 15 : byte >> 4;
      block = block + 1;
      std::array<int, 4> p{};
      if (code == 15) {
        p = planes.GetBack4(x, y);
      } else if (code != 0) {
        p = planes.GetFront4(x + kOffsets[code].dx, y + kOffsets[code].dy);
      } else if (levels <= 4) {
        int literal = in.GetC();
        p = {literal & 3, (literal >> 2) & 3, (literal >> 4) & 3, (literal >> 6) & 3};
      } else {
        int left = in.GetC();
        int right = in.GetC();
        p = {left & 15, (left >> 4) & 15, right & 15, (right >> 4) & 15};
      }
      planes.SetFront4(x, y, p);
    }
    literalPosition = in.position;
  }
  in.position = literalPosition;
  planes.SetBrightness(head.brightness);
  return head.time;
}

// ---- the window ----------------------------------------------------------

namespace {

struct Player {
  Decoder decoder;
  int ticks = 0;
  int nextTime = 0;
  bool timerRuns = false;
  bool stopped = false;
  int timerFps = 0;
  int delay = 0;
  int viewLeft = 0;
  int viewTop = 0;
  std::array<int, 4> viewport{};
  std::array<int, 4> fromViewport{};
  bool painted = false;
  Bytes client;

  std::array<int, 4> Target() const {
    return {decoder.frameX, decoder.frameY, decoder.frameWidth, decoder.frameHeight};
  }

  void Centre() {
    viewLeft = (decoder.outputWidth - viewport[2]) / 2;
    viewTop = (decoder.outputHeight - viewport[3]) / 2;
  }

  void DissolveStep(int n) {
    decoder.planes.MixPlanes(ticks, n);
    std::array<int, 4> target = Target();
    for (std::size_t i = 0; i < 4; i++) viewport[i] = (fromViewport[i] * ticks + target[i] * (n - ticks)) / n;
    Centre();
  }

  void DecodeAhead() {
    nextTime = decoder.DecodeNextFrame();
    if (nextTime < 0) fromViewport = viewport;
  }

  void Black(int left, int top, int right, int bottom) {
    for (int y = top; y < bottom; y++) {
      for (int x = left; x < right; x++) SetClient(x, y, 0);
    }
  }

  void SetClient(int x, int y, int grey) {
    if (x >= 0 && x < decoder.outputWidth && y >= 0 && y < decoder.outputHeight) {
      client[static_cast<std::size_t>(y * decoder.outputWidth + x)] = static_cast<std::uint8_t>(grey);
    }
  }

  void Paint() {
    int right = viewLeft + viewport[2];
    int bottom = viewTop + viewport[3];
    Black(0, 0, decoder.outputWidth, viewTop);
    Black(0, viewTop, viewLeft, bottom);
    Black(right, viewTop, decoder.outputWidth, bottom);
    Black(0, bottom, decoder.outputWidth, decoder.outputHeight);
    for (int j = 0; j < viewport[3]; j++) {
      for (int i = 0; i < viewport[2]; i++) {
        int x = viewport[0] + i;
        int y = viewport[1] + j;
        // A blit has nothing to copy from outside the bitmap.
        if (x >= 0 && x < decoder.planes.width && y >= 0 && y < decoder.planes.height) {
          int byte = decoder.planes.GetByte(x, y);
          SetClient(viewLeft + i, viewTop + j, decoder.planes.mixColors[static_cast<std::size_t>(byte)].red);
        }
      }
    }
    painted = true;
  }

  void SetTimer() {
    timerFps = decoder.fps;
    if (decoder.fps <= 0) {
      timerRuns = false;
      delay = 0;
      stopped = true;
      return;
    }
    timerRuns = true;
    delay = 1000 / decoder.fps;
  }

  void StopTimer() {
    timerRuns = false;
    timerFps = 0;
    delay = 0;
    stopped = true;
  }

  void TimerTick() {
    if (ticks > 0) {
      ticks = ticks - 1;
    } else {
      ticks = ticks + 1;
    }
    // A new rate counts from the tick on which the first frame with it comes on the screen, not from its decoding.
    if (timerFps == 0 || (ticks == 0 && decoder.fps != timerFps)) SetTimer();
    if (ticks != 0) {
      if (ticks < 0) {
        DissolveStep(nextTime - 1);
        Paint();
      }
      if (ticks == 1 || ticks == -1) DecodeAhead();
      return;
    }
    viewport = Target();
    Centre();
    ticks = nextTime;
    if (ticks < 0) {
      DissolveStep(ticks - 1);
    } else {
      decoder.planes.MixPlanes(0, 1);
    }
    Paint();
    if (ticks == 1 || ticks == -1) DecodeAhead();
    if (ticks == 0) {
      StopTimer();
      ticks = 1;
    }
  }

  Tick Report(int number) {
    Tick tick;
    tick.tick = number;
    tick.painted = painted;
    tick.delay = delay;
    tick.ticks = ticks;
    tick.nextTime = nextTime;
    tick.viewLeft = viewLeft;
    tick.viewTop = viewTop;
    tick.viewport = viewport;
    tick.outputWidth = decoder.outputWidth;
    tick.outputHeight = decoder.outputHeight;
    if (painted) tick.picture = client;
    painted = false;
    return tick;
  }
};

}  // namespace

std::vector<Tick> Play(const Bytes& stream, int ticks) {
  std::vector<Tick> result;
  Player player;
  if (ticks < 1 || !player.decoder.OpenStream(stream)) return result;
  Decoder& decoder = player.decoder;
  if (decoder.outputWidth > 0 && decoder.outputHeight > 0) {
    player.client.assign(static_cast<std::size_t>(decoder.outputWidth) * static_cast<std::size_t>(decoder.outputHeight),
                         0);
  }
  player.nextTime = decoder.DecodeNextFrame();
  if (decoder.cutCount == 1 && decoder.in.position == decoder.streamEnd) {
    player.viewport = player.Target();
    player.Centre();
    decoder.planes.MixPlanes(0, 1);
    player.Paint();
    result.push_back(player.Report(0));
    return result;
  }
  player.ticks = 1;
  for (int i = 0; i < ticks; i++) {
    player.TimerTick();
    result.push_back(player.Report(i));
    if (player.stopped) break;
  }
  return result;
}

}  // namespace reference
