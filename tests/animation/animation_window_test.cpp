#include "animation/animation_window.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/headless/headless.h"
#include "platform/window.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

// The player with a window of its own.
class Screen {
 public:
  Screen() {
    window = platform::MakeCaptionWindow("", "", nullptr, &player);
    player.decoder.bitmap = &player.bitmap;
  }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen() {
    player.StopTimer();
    platform::DestroyWindow(window);
  }

  int32_t Play(const Bytes& bytes) {
    inputs.push_back(std::make_unique<Input>(bytes));
    return player.Play(&inputs.back()->stream);
  }

  int32_t Grey(int32_t x, int32_t y) { return window->pixels.at(static_cast<size_t>(y * window->width + x)).green; }
  int32_t Grey() { return Grey(0, 0); }

  // The grey of the first pixel now and after each of so many ticks, and the player's count of ticks.
  std::string Greys(int32_t count, std::string* ticks = nullptr) {
    std::string greys = std::to_string(Grey());
    if (ticks != nullptr) *ticks = std::to_string(player.ticks);
    for (int32_t i = 0; i < count; ++i) {
      player.TimerTick();
      greys += " " + std::to_string(Grey());
      if (ticks != nullptr) *ticks += " " + std::to_string(player.ticks);
    }
    return greys;
  }

  void Repaint() {
    platform::DeviceContext* context = platform::BeginDrawing(window);
    player.Paint(context);
    platform::EndDrawing(window, context);
  }

  void SetAll(uint8_t value) {
    for (platform::ColorEntry& pixel : window->pixels) pixel = {value, value, value, 0};
  }

  std::string Row(int32_t y) {
    std::string text;
    for (int32_t x = 0; x < window->width; ++x) text += (x == 0 ? "" : " ") + std::to_string(Grey(x, y));
    return text;
  }

  platform::WindowHandle window;
  AnimationWindow player;

 private:
  std::vector<std::unique_ptr<Input>> inputs;
};

int32_t Period() {
  return platform::headless::RunningTimerPeriod();
}

// A picture of 16 by 1 pixels, four blocks.
Bytes Wide(int32_t time, uint8_t a, uint8_t b, uint8_t c, uint8_t d, int32_t x) {
  return FrameBytes({time, 1, 50, x, 0, {0, 0, 16, 1}}, {3}, {0, 0}, {a, b, c, d});
}

// Starting.

TEST(AnimationWindow, ForeignStreamDoesntPlay) {
  Screen screen;
  EXPECT_EQ(screen.Play(Hex("42 4D 00 00 00 00")), 0);
  EXPECT_FALSE(screen.window->shown);
  EXPECT_EQ(Period(), 0);
  screen.player.TimerTick();
  EXPECT_EQ(Period(), 0);
}

TEST(AnimationWindow, TickWithoutAStreamDoesNothing) {
  Screen screen;
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.ticks, 0);
  EXPECT_EQ(Period(), 0);
  EXPECT_EQ(screen.window->paints, 0);
}

TEST(AnimationWindow, StillNeedsNoTimer) {
  Screen screen;
  EXPECT_EQ(screen.Play(Compiled({}, {Block(-9, 3, 0xE4)})), 1);
  EXPECT_TRUE(screen.window->shown);
  EXPECT_EQ(screen.player.timerId, 0u);
  EXPECT_EQ(screen.player.timerFps, 0);
  EXPECT_EQ(Period(), 0);
  EXPECT_FALSE(platform::headless::RunTimer());
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "0 85 170 255");
}

TEST(AnimationWindow, StillOfTimeZeroIsShownToo) {
  Screen screen;
  EXPECT_EQ(screen.Play(Compiled({}, {Block(0, 1, 0xFF)})), 1);
  EXPECT_TRUE(screen.window->shown);
  screen.Repaint();
  EXPECT_EQ(screen.Grey(), 255);
}

TEST(AnimationWindow, StillHasItsBrightness) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0xE4, 25)}));
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "0 42 85 127");
}

TEST(AnimationWindow, ContainerOfOneFrameIsAStill) {
  Screen screen;
  EXPECT_EQ(screen.Play(Container(8, 4, 4, 1, {CutRecord({}, {Block(5, 1, 0xFF)})})), 1);
  EXPECT_EQ(Period(), 0);
  EXPECT_EQ(screen.player.viewLeft, 2);
  EXPECT_EQ(screen.player.viewTop, 1);
}

TEST(AnimationWindow, TwoCutsOfOneFrameEachPlayWithTheirTimes) {
  Screen screen;
  EXPECT_EQ(
      screen.Play(Container(4, 1, 4, 1, {CutRecord({}, {Block(2, 1, 0x00)}), CutRecord({}, {Block(1, 1, 0xFF)})})), 1);
  EXPECT_EQ(Period(), 41);
  std::string greys = std::to_string(screen.Grey());
  for (int i = 0; i < 6; ++i) {
    EXPECT_TRUE(platform::headless::RunTimer());
    greys += " " + std::to_string(screen.Grey());
  }
  EXPECT_EQ(greys, "0 0 255 0 0 255 0");
}

TEST(AnimationWindow, ClientAreaTakesTheSizeOfTheStream) {
  Screen screen;
  screen.Play(Compiled({"", 8, 2, 6, 3, 24, 4}, {Still(1, 1)}));
  EXPECT_EQ(screen.window->width, 6);
  EXPECT_EQ(screen.window->height, 3);
  screen.Play(Container(40, 30, 4, 1, {CutRecord({}, {Block(1, 1, 0)})}));
  EXPECT_EQ(screen.window->width, 40);
  EXPECT_EQ(screen.window->height, 30);
}

TEST(AnimationWindow, MarginsAddToTheHeight) {
  Screen screen;
  screen.player.topMargin = 2;
  screen.player.bottomMargin = 3;
  screen.Play(Compiled({}, {Block(1, 1, 0xFF)}));
  EXPECT_EQ(screen.window->height, 6);
  screen.Repaint();
  EXPECT_EQ(screen.Grey(0, 1), 0);
  EXPECT_EQ(screen.Grey(0, 2), 255);
  EXPECT_EQ(screen.Grey(0, 3), 0);
}

TEST(AnimationWindow, PlayPutsTheFirstFrameOnTheScreen) {
  Screen screen;
  EXPECT_EQ(screen.Play(Compiled({}, {Block(3, 1, 0xFF), Block(1, 1, 0)})), 1);
  EXPECT_TRUE(screen.window->shown);
  EXPECT_EQ(screen.Grey(), 255);
  EXPECT_EQ(screen.player.ticks, 3);
  EXPECT_EQ(screen.player.nextTime, 3);
  EXPECT_NE(screen.player.timerId, 0u);
  EXPECT_EQ(screen.player.timerFps, 24);
  EXPECT_GE(screen.player.timerResolution, 1);
  EXPECT_EQ(screen.player.speedFactor, 1);
}

TEST(AnimationWindow, TickIsAWholeNumberOfMilliseconds) {
  struct Rate {
    int32_t fps;
    int32_t period;
  };
  for (const Rate& rate :
       {Rate{1, 1000}, Rate{7, 142}, Rate{8, 125}, Rate{12, 83}, Rate{24, 41}, Rate{30, 33}, Rate{127, 7}}) {
    SCOPED_TRACE(rate.fps);
    Screen screen;
    screen.Play(Compiled({"", 4, 1, 4, 1, rate.fps, 4}, {Block(1, 1, 0), Block(1, 1, 0)}));
    EXPECT_EQ(Period(), rate.period);
  }
}

// Counting.

TEST(AnimationWindow, FrameStandsItsTime) {
  Screen screen;
  screen.Play(Compiled({}, {Block(3, 1, 0x00), Block(1, 1, 0x55), Block(2, 1, 0xFF)}));
  std::string ticks;
  EXPECT_EQ(screen.Greys(8, &ticks), "0 0 0 85 255 255 0 0 0");
  EXPECT_EQ(ticks, "3 2 1 1 2 1 3 2 1");
}

TEST(AnimationWindow, NextFrameIsDecodedInTheLastTick) {
  Screen screen;
  screen.Play(Compiled({}, {Block(3, 1, 0x00, 50, 1), Block(5, 1, 0x55, 50, 2), Block(7, 1, 0)}));
  EXPECT_EQ(screen.player.decoder.frameX, 1);
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.nextTime, 3);
  EXPECT_EQ(screen.player.decoder.frameX, 1);
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.nextTime, 5);
  EXPECT_EQ(screen.player.decoder.frameX, 2);
  EXPECT_EQ(screen.player.viewport.x, 1);
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.ticks, 5);
  EXPECT_EQ(screen.player.viewport.x, 2);
}

TEST(AnimationWindow, FrameOfOneTickDecodesAheadAtOnce) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x00), Block(5, 1, 0x55)}));
  EXPECT_EQ(screen.player.ticks, 1);
  EXPECT_EQ(screen.player.nextTime, 5);
  EXPECT_EQ(screen.Grey(), 0);
}

TEST(AnimationWindow, DecodedAheadFrameDoesntShowBeforeItsTick) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x55), Block(1, 1, 0xFF, 0), Block(1, 1, 0)}));
  screen.SetAll(7);
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "85 85 85 85");
}

TEST(AnimationWindow, TickThatShowsNothingNewDoesntPaint) {
  Screen screen;
  screen.Play(Compiled({}, {Block(4, 1, 0x55), Block(1, 1, 0xFF)}));
  const int32_t paints = screen.window->paints;
  screen.player.TimerTick();
  screen.player.TimerTick();
  screen.player.TimerTick();
  EXPECT_EQ(screen.window->paints, paints);
  screen.player.TimerTick();
  EXPECT_GT(screen.window->paints, paints);
}

TEST(AnimationWindow, TimeZeroStopsAndThePictureStays) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x00), Block(0, 1, 0x55), Block(1, 1, 0xFF)}));
  ASSERT_TRUE(platform::headless::RunTimer());
  EXPECT_EQ(screen.Grey(), 85);
  EXPECT_EQ(Period(), 0);
  EXPECT_EQ(screen.player.timerId, 0u);
  EXPECT_EQ(screen.player.timerFps, 0);
  EXPECT_EQ(screen.player.ticks, 1);
  EXPECT_FALSE(platform::headless::RunTimer());
  EXPECT_TRUE(screen.window->shown);
}

TEST(AnimationWindow, FirstFrameOfTimeZeroStopsAtOnce) {
  Screen screen;
  EXPECT_EQ(screen.Play(Compiled({}, {Block(0, 1, 0x55), Block(1, 1, 0xFF)})), 1);
  EXPECT_EQ(screen.Grey(), 85);
  EXPECT_EQ(Period(), 0);
  EXPECT_EQ(screen.player.ticks, 1);
}

TEST(AnimationWindow, StoppingKeepsThePlaceInTheStream) {
  Screen screen;
  EXPECT_EQ(screen.player.StopTimer(), 0);
  screen.Play(Compiled({}, {Block(3, 1, 0x00), Block(2, 1, 0xFF)}));
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.StopTimer(), 1);
  EXPECT_EQ(screen.player.StopTimer(), 0);
  EXPECT_EQ(Period(), 0);
  EXPECT_EQ(screen.player.timerFps, 0);
  EXPECT_EQ(screen.player.ticks, 2);
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.ticks, 1);
  EXPECT_EQ(Period(), 41);
}

TEST(AnimationWindow, NextPlayAfterAStopWorksAsUsual) {
  Screen screen;
  screen.Play(Compiled({}, {Block(3, 5, 0x00), Block(2, 0, 0xFF)}));
  screen.player.TimerTick();
  screen.player.StopTimer();
  EXPECT_EQ(screen.Play(Compiled({"", 4, 1, 4, 1, 10, 4}, {Block(1, 1, 0x55), Block(2, 1, 0xAA)})), 1);
  EXPECT_EQ(screen.Grey(), 85);
  EXPECT_EQ(Period(), 100);
  ASSERT_TRUE(platform::headless::RunTimer());
  EXPECT_EQ(screen.Grey(), 170);
}

TEST(AnimationWindow, NewRateTakesEffectWhenTheCutIsShown) {
  Screen screen;
  screen.Play(Container(
      4, 1, 4, 1,
      {CutRecord({"", 4, 1, 4, 1, 10, 4}, {Block(3, 1, 0)}), CutRecord({"", 4, 1, 4, 1, 20, 4}, {Block(2, 1, 0xFF)})}));
  EXPECT_EQ(Period(), 100);
  screen.player.TimerTick();
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.decoder.fps, 20) << "decoded ahead";
  EXPECT_EQ(Period(), 100);
  screen.player.TimerTick();
  EXPECT_EQ(Period(), 50);
  EXPECT_EQ(screen.player.timerFps, 20);
  screen.player.TimerTick();
  EXPECT_EQ(Period(), 50);
  screen.player.speedFactor = 3;
  screen.player.TimerTick();
  EXPECT_EQ(Period(), 300);
}

// Dissolves.

TEST(AnimationWindow, DissolveWeighsTheNewFrameMoreAtEachTick) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0xFF), Block(-3, 1, 0x00), Block(1, 1, 0x55)}));
  std::string ticks;
  EXPECT_EQ(screen.Greys(5, &ticks), "255 191 127 63 85 255");
  EXPECT_EQ(ticks, "1 -3 -2 -1 1 1");
}

TEST(AnimationWindow, DissolveFromBlack) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x00), Block(-3, 1, 0xFF), Still(1, 1)}));
  EXPECT_EQ(screen.Greys(4), "0 63 127 191 255");
}

TEST(AnimationWindow, LateTickOfADissolveThatAnotherPlayReplacedShowsNothing) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x00), Block(-3, 1, 0xFF), Still(1, 1)}));
  screen.player.TimerTick();
  const int32_t shown = screen.Grey();
  screen.player.nextTime = 1;
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.ticks, -2);
  EXPECT_EQ(screen.Grey(), shown);
}

TEST(AnimationWindow, TimeMinusOneIsOneTickOfHalfAndHalf) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x00), Block(-1, 1, 0xFF), Block(2, 1, 0xAA)}));
  screen.player.TimerTick();
  EXPECT_EQ(screen.Grey(), 127);
  EXPECT_EQ(screen.player.ticks, -1);
  EXPECT_EQ(screen.player.nextTime, 2) << "decoded ahead";
  screen.player.TimerTick();
  EXPECT_EQ(screen.Grey(), 170);
}

TEST(AnimationWindow, DissolveAfterADissolveStartsAtThePictureBefore) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0x00), Block(-1, 1, 0xFF), Block(-1, 1, 0x00), Still(1, 1)}));
  EXPECT_EQ(screen.Greys(3), "0 127 127 0");
}

TEST(AnimationWindow, SamePictureWithAnotherBrightnessFades) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0xFF), Still(-3, 1, 0), Still(1, 1, 0), Still(-1, 1, 100)}));
  EXPECT_EQ(screen.Greys(5), "255 191 127 63 0 127");
}

TEST(AnimationWindow, NoDissolveBetweenCuts) {
  Screen screen;
  screen.Play(
      Container(4, 1, 4, 1, {CutRecord({}, {Block(1, 1, 0x00)}), CutRecord({}, {Block(-2, 1, 0xFF), Still(1, 1)})}));
  screen.player.TimerTick();
  EXPECT_EQ(screen.Grey(), 255);
  EXPECT_EQ(screen.player.ticks, 2);
}

TEST(AnimationWindow, ViewportMovesThroughADissolve) {
  Screen screen;
  screen.Play(Compiled({"", 16, 1, 4, 1, 24, 4},
                       {Wide(1, 0x00, 0x55, 0xAA, 0xFF, 0), Still(-3, 1, 50, 8, -7), Still(2, 1, 50, 12, 0)}));
  std::vector<Rect> seen;
  for (int i = 0; i < 5; ++i) {
    seen.push_back(screen.player.viewport);
    screen.player.TimerTick();
  }
  EXPECT_EQ(seen, (std::vector<Rect>{{0, 0, 4, 1}, {2, -1, 4, 1}, {4, -3, 4, 1}, {6, -5, 4, 1}, {12, 0, 4, 1}}));
}

TEST(AnimationWindow, DissolveStartsFromTheViewportOfTheLastStep) {
  Screen screen;
  screen.Play(Compiled({"", 16, 1, 4, 1, 24, 4}, {Wide(1, 0x00, 0x55, 0xAA, 0xFF, 0), Still(-1, 1, 50, 8, 0),
                                                  Still(-1, 1, 50, 0, 0), Still(1, 1, 50, 0, 0)}));
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.viewport.x, 4);
  EXPECT_EQ(screen.player.fromViewport.x, 4);
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.viewport.x, 2);
}

TEST(AnimationWindow, PanMovesTheRectangleThatIsShown) {
  Screen screen;
  screen.Play(Compiled({"", 16, 1, 4, 1, 24, 4}, {Wide(1, 0x00, 0x55, 0xAA, 0xFF, 2), Still(1, 1, 50, 10, 0)}));
  EXPECT_EQ(screen.Row(0), "0 0 85 85");
  screen.player.TimerTick();
  EXPECT_EQ(screen.Row(0), "170 170 255 255");
}

TEST(AnimationWindow, SecondRunOfALoopWithDissolvesLooksLikeTheFirst) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0xFF), Block(-2, 2, 0x00), Block(-1, 0, 0x55, 60), Block(3, 1, 0xAA)}));
  std::string seen = std::to_string(screen.Grey());
  for (int i = 0; i < 7; ++i) {
    screen.player.TimerTick();
    seen += " " + std::to_string(screen.Grey());
  }
  // Level 1 at brightness 60: 255 * 10 / 50 = 51 of lift, (255 - 51) * 85 / 255 + 51 = 119.
  EXPECT_EQ(seen, "255 170 85 59 170 85 59 170");
}

// Painting.

TEST(AnimationWindow, BlackBandsSurroundThePicture) {
  Screen screen;
  screen.Play(Container(9, 4, 4, 1, {CutRecord({}, {Block(1, 1, 0xFF)})}));
  screen.SetAll(7);
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "0 0 0 0 0 0 0 0 0");
  EXPECT_EQ(screen.Row(1), "0 0 255 255 255 255 0 0 0");
  EXPECT_EQ(screen.Row(2), "0 0 0 0 0 0 0 0 0");
  EXPECT_EQ(screen.Row(3), "0 0 0 0 0 0 0 0 0");
}

TEST(AnimationWindow, ViewportLargerThanTheAreaIsCutEvenly) {
  Screen screen;
  screen.Play(Container(4, 1, 16, 1, {CutRecord({"", 16, 1, 8, 1, 24, 4}, {Wide(1, 0xE4, 0x1B, 0, 0, 0)})}));
  EXPECT_EQ(screen.player.viewLeft, -2);
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "170 255 255 170");
}

TEST(AnimationWindow, ViewportOutsideThePictureLeavesTheScreenThere) {
  Screen screen;
  screen.Play(Compiled({}, {Block(1, 1, 0xE4, 50, 2)}));
  screen.SetAll(7);
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "170 255 7 7");
  screen.Play(Compiled({}, {Block(1, 1, 0xE4, 50, -3)}));
  screen.SetAll(7);
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "7 7 7 0");
  screen.Play(Compiled({}, {Block(1, 1, 0xE4, 50, 30000, -30000)}));
  screen.SetAll(7);
  screen.Repaint();
  EXPECT_EQ(screen.Row(0), "7 7 7 7");
}

TEST(AnimationWindow, CutLargerThanTheBitmapLeavesTheOldPictureInTheNewViewport) {
  Screen screen;
  screen.Play(Container(
      4, 1, 4, 1,
      {CutRecord({}, {Block(1, 1, 0xE4)}),
       CutRecord({"", 8, 1, 2, 1, 24, 4}, {FrameBytes({1, 1, 0, 1, 0, {0, 0, 8, 1}}, {1}, {0}, {0xFF, 0xFF})})}));
  EXPECT_EQ(screen.Row(0), "0 85 170 255");
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.viewport, (Rect{1, 0, 2, 1}));
  EXPECT_EQ(screen.Row(0), "0 85 170 0");
}

// Streams that nobody wrote.

void PlayHostile(const Bytes& bytes, int ticks = 200) {
  Screen screen;
  if (screen.Play(bytes) == 0) return;
  for (int i = 0; i < ticks; ++i) screen.player.TimerTick();
}

Bytes LoopingFilm() {
  return Container(
      12, 6, 8, 3,
      {CutRecord({"ab", 8, 3, 6, 2, 24, 4},
                 {FrameBytes({-2, 3, 50, 1, 0, {0, 0, 8, 3}}, {1, 1, 0}, {0x00, 0x04}, {0x1B, 0xE4, 0x55}),
                  FrameBytes({-3, 0, 20, 0, 1, {2, 1, 6, 2}}, {1, 1}, {0xF0, 0x1F}, {0xFF, 0x00}), Still(1, 0)}),
       CutRecord({"", 4, 2, 4, 2, 12, 13},
                 {FrameBytes({1, 2, 60, 0, 0, {0, 0, 4, 2}}, {1, 1}, {0x00, 0x04}, {0x21, 0xC3}),
                  FrameBytes({2, 0, 50, 0, 0, {0, 1, 4, 1}}, {1}, {0x04}, {})})},
      "t", "au");
}

Bytes LoopingCut() {
  return Compiled(
      {"c", 8, 3, 6, 2, 24, 4},
      {FrameBytes({2, 1, 50, 1, 0, {0, 0, 8, 3}}, {1, 1, 0}, {0x00, 0x04}, {0x1B, 0xE4, 0x55}),
       FrameBytes({-3, 2, 20, 0, 1, {2, 1, 6, 2}}, {1, 1}, {0xF0, 0x1F}, {0xFF, 0x00}), Still(1, 0), Still(2, 1)});
}

TEST(AnimationWindow, TruncatedStreamsDoNoHarm) {
  for (const Bytes& whole : {LoopingFilm(), LoopingCut()}) {
    for (size_t length = 0; length <= whole.size(); ++length) PlayHostile(Part(whole, 0, length));
  }
}

TEST(AnimationWindow, StreamsWithAFlippedBitDoNoHarm) {
  for (const Bytes& whole : {LoopingFilm(), LoopingCut()}) {
    for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
      Bytes bytes = whole;
      bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ 1 << bit % 8);
      PlayHostile(bytes);
    }
  }
}

TEST(AnimationWindow, StreamsWithAnExtremeByteDoNoHarm) {
  for (const Bytes& whole : {LoopingFilm(), LoopingCut()}) {
    for (size_t at = 0; at < whole.size(); ++at) {
      for (int value : {0x00, 0x7F, 0x80, 0xFF}) {
        Bytes bytes = whole;
        bytes[at] = static_cast<uint8_t>(value);
        PlayHostile(bytes, 20);
      }
    }
  }
}

TEST(AnimationWindow, BoxesOutsideThePictureDoNoHarm) {
  const int32_t values[] = {-32768, -5, -4, -1, 0, 1, 3, 4, 5, 32767};
  for (int32_t x : values) {
    for (int32_t y : {-32768, -1, 0, 1, 32767}) {
      for (int32_t width : values) {
        for (int32_t height : {-32768, -1, 0, 1, 2, 32767}) {
          PlayHostile(Compiled({"", 4, 2, 4, 2, 24, 4},
                               {FrameBytes({1, 1, 50, 0, 0, {0, 0, 4, 2}}, {1, 1}, {0, 4}, {0x1B}),
                                FrameBytes({1, 1, 50, 0, 0, {x, y, width, height}}, {1, 1}, {0x32, 0x7E}, {0xFF})}),
                      12);
        }
      }
    }
  }
}

TEST(AnimationWindow, FrameWithABoxOutsideThePictureIsLeftOut) {
  Screen screen;
  screen.Play(Compiled(
      {}, {Block(2, 1, 0xE4), FrameBytes({7, 1, 90, 1, 0, {2, 0, 4, 1}}, {1}, {0}, {0x00}), Block(1, 1, 0x1B)}));
  const Bytes before(screen.player.bitmap.bits, screen.player.bitmap.bits + screen.player.bitmap.imageSize);
  screen.player.TimerTick();
  EXPECT_EQ(screen.player.nextTime, 7);
  EXPECT_EQ(screen.player.bitmap.brightness, 50);
  EXPECT_EQ(Bytes(screen.player.bitmap.bits, screen.player.bitmap.bits + screen.player.bitmap.imageSize), before);
  for (int i = 0; i < 8; ++i) screen.player.TimerTick();
  EXPECT_EQ(screen.Row(0), "255 170 85 0");
}

TEST(AnimationWindow, FirstFrameThatCopiesFromOutsideThePictureDoesNoHarm) {
  for (uint8_t code = 0; code < 16; ++code) {
    PlayHostile(Compiled({"", 8, 2, 8, 2, 24, 4},
                         {FrameBytes({1, 1, 50, 0, 0, {0, 0, 8, 2}}, {1, 1},
                                     {static_cast<uint8_t>(code * 17), static_cast<uint8_t>(code * 17)}, {})}));
  }
}

TEST(AnimationWindow, SectionsLongerThanTheStreamDoNoHarm) {
  for (uint32_t size : {1u, 100u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFE0u, 0xFFFFFFFFu}) {
    Bytes bytes = Compiled({}, {Block(1, 1, 0xE4), Block(1, 1, 0x1B)});
    for (size_t at : {size_t{17 + 17}, size_t{17 + 21}, size_t{17 + 28 + 17}, size_t{17 + 28 + 21}}) {
      Bytes hostile = bytes;
      const Bytes field = Le32(size);
      for (size_t i = 0; i < 4; ++i) hostile[at + i] = field[i];
      PlayHostile(hostile);
    }
  }
}

TEST(AnimationWindow, OffsetTableThatPointsNowhereDoesNoHarm) {
  const Bytes film = Container(4, 1, 4, 1, {CutRecord({}, {Block(1, 1, 0)}), CutRecord({}, {Block(1, 1, 0xFF)})});
  for (size_t entry : {size_t{18}, size_t{22}}) {
    for (uint32_t offset : {0u, 1u, 6u, 25u, 27u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
      Bytes hostile = film;
      const Bytes field = Le32(offset);
      for (size_t i = 0; i < 4; ++i) hostile[entry + i] = field[i];
      PlayHostile(hostile);
    }
  }
}

TEST(AnimationWindow, CountsOfCutsThatArentThereDoNoHarm) {
  Bytes film = Container(4, 1, 4, 1, {CutRecord({}, {Block(1, 1, 0)}), CutRecord({}, {Block(1, 1, 0xFF)})});
  for (int32_t count : {0, 1, 3, 100, 32767, -1, -32768}) {
    const Bytes field = Le16(count);
    film[16] = field[0];
    film[17] = field[1];
    PlayHostile(film);
  }
}

TEST(AnimationWindow, RatesOfZeroAndBelowDoNoHarm) {
  for (int32_t fps : {0, 128, 200, 255}) {
    PlayHostile(Compiled({"", 4, 1, 4, 1, fps, 4}, {Block(1, 1, 0), Block(-2, 1, 0xFF)}));
  }
}

TEST(AnimationWindow, LevelsThatNobodyWritesDoNoHarm) {
  for (int32_t levels = 1; levels <= 256; ++levels) {
    PlayHostile(Compiled({"", 4, 1, 4, 1, 24, levels},
                         {FrameBytes({1, 1, 50, 0, 0, {0, 0, 4, 1}}, {1}, {0}, {0xFF, 0xFF}), Block(-2, 1, 0xFF)}));
  }
}

// The messages of its window.

// A black frame of three ticks and a white one of two.
Bytes TwoFrames() {
  return Compiled({}, {Block(3, 1, 0x00), Block(2, 0, 0xFF)});
}

TEST(PlayerMessages, CloseStopsThePlayAndKeepsThePicture) {
  Screen screen;
  ASSERT_EQ(screen.Play(TwoFrames()), 1);
  for (int32_t i = 0; i < 3; ++i) ASSERT_TRUE(platform::headless::RunTimer());
  EXPECT_EQ(screen.Grey(), 255);
  EXPECT_EQ(platform::Send(screen.window, platform::kMessageClose, 0, 0), 0);
  EXPECT_FALSE(platform::headless::RunTimer());
  EXPECT_EQ(platform::ObjectOf(screen.window), &screen.player);
  EXPECT_TRUE(platform::IsShown(screen.window));
  EXPECT_EQ(screen.Grey(), 255);
  ASSERT_EQ(screen.Play(TwoFrames()), 1);
  EXPECT_EQ(screen.Grey(), 0);
  EXPECT_TRUE(platform::headless::RunTimer());
}

TEST(PlayerMessages, CloseOfAWindowThatPlaysNothingKeepsItToo) {
  Screen screen;
  EXPECT_EQ(platform::Send(screen.window, platform::kMessageClose, 0, 0), 0);
  EXPECT_EQ(platform::ObjectOf(screen.window), &screen.player);
}

TEST(PlayerMessages, AnotherSizeIsPutBack) {
  Screen screen;
  ASSERT_EQ(screen.Play(TwoFrames()), 1);
  platform::MoveWindow(screen.window, 7, 9, 50, 40, true);
  EXPECT_EQ(screen.window->width, 4);
  EXPECT_EQ(screen.window->height, 1);
  EXPECT_EQ(screen.window->place.left, 7);
  EXPECT_EQ(screen.window->place.top, 9);
}

TEST(PlayerMessages, PaintShowsThePictureAgain) {
  Screen screen;
  ASSERT_EQ(screen.Play(TwoFrames()), 1);
  screen.SetAll(99);
  platform::InvalidateClient(screen.window, true);
  EXPECT_EQ(platform::Send(screen.window, platform::kMessagePaint, 0, 0), 0);
  EXPECT_EQ(screen.Grey(), 0);
}

TEST(PlayerMessages, TimerMessageIsATick) {
  Screen screen;
  ASSERT_EQ(screen.Play(TwoFrames()), 1);
  EXPECT_EQ(screen.player.ticks, 3);
  platform::Send(screen.window, platform::kMessageTimer, 5, 0);
  EXPECT_EQ(screen.player.ticks, 2);
}

}  // namespace
}  // namespace sorvel
