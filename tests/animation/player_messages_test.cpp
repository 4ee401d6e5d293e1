#include <gtest/gtest.h>

#include <cstdint>

#include "animation/animation_window.h"
#include "platform/headless/headless.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

// The messages of the player's window.
class PlayerMessages : public testing::Test {
 protected:
  PlayerMessages() : input(Compiled({"", 4, 1, 4, 1, 24, 4}, {Block(3, 1, 0x00), Block(2, 0, 0xFF)})) {
    window = platform::MakeCaptionWindow("", "", nullptr, &player);
  }
  ~PlayerMessages() override {
    player.StopTimer();
    platform::DestroyWindow(window);
  }
  int32_t Grey() { return window->pixels.at(0).green; }
  void SetAll(uint8_t value) {
    for (platform::ColorEntry& pixel : window->pixels) pixel = {value, value, value, 0};
  }

  Input input;
  platform::WindowHandle window;
  AnimationWindow player;
};

TEST_F(PlayerMessages, CloseStopsThePlayAndKeepsThePicture) {
  ASSERT_EQ(player.Play(&input.stream), 1);
  for (int32_t i = 0; i < 3; ++i) ASSERT_TRUE(platform::headless::RunTimer());
  EXPECT_EQ(Grey(), 255);
  EXPECT_EQ(platform::Send(window, platform::kMessageClose, 0, 0), 0);
  EXPECT_FALSE(platform::headless::RunTimer());
  EXPECT_EQ(platform::ObjectOf(window), &player);
  EXPECT_TRUE(platform::IsShown(window));
  EXPECT_EQ(Grey(), 255);
  ASSERT_EQ(player.Play(&input.stream), 1);
  EXPECT_EQ(Grey(), 0);
  EXPECT_TRUE(platform::headless::RunTimer());
}

TEST_F(PlayerMessages, CloseOfAWindowThatPlaysNothingKeepsItToo) {
  EXPECT_EQ(platform::Send(window, platform::kMessageClose, 0, 0), 0);
  EXPECT_EQ(platform::ObjectOf(window), &player);
}

TEST_F(PlayerMessages, AnotherSizeIsPutBack) {
  ASSERT_EQ(player.Play(&input.stream), 1);
  platform::MoveWindow(window, 7, 9, 50, 40, true);
  EXPECT_EQ(window->width, 4);
  EXPECT_EQ(window->height, 1);
  EXPECT_EQ(window->place.left, 7);
  EXPECT_EQ(window->place.top, 9);
}

TEST_F(PlayerMessages, PaintShowsThePictureAgain) {
  ASSERT_EQ(player.Play(&input.stream), 1);
  SetAll(99);
  platform::InvalidateClient(window, true);
  EXPECT_EQ(platform::Send(window, platform::kMessagePaint, 0, 0), 0);
  EXPECT_EQ(Grey(), 0);
}

TEST_F(PlayerMessages, TimerMessageIsATick) {
  ASSERT_EQ(player.Play(&input.stream), 1);
  EXPECT_EQ(player.ticks, 3);
  platform::Send(window, platform::kMessageTimer, 5, 0);
  EXPECT_EQ(player.ticks, 2);
}

}  // namespace
}  // namespace sorvel
