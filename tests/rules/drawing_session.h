#pragma once

#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/ink_model.h"
#include "rules/script_session.h"

namespace rules {

// Sizes in pixels. A negative client size is that of the canvas, so that window and cut coordinates are the same.
struct Canvas {
  int width = 64;
  int height = 48;
  int clientWidth = -1;
  int clientHeight = -1;
  int antialias = 0;
};

// A session with one new cut of one frame and one layer of the canvas's size.
struct DrawingSession : ScriptSession {
  explicit DrawingSession(const Canvas& canvas = {});
};

// A drawing, and a model of what its view should show.
struct DrawingTest : testing::Test {
  explicit DrawingTest(const Canvas& canvas = {}) : session(canvas), model(canvas.width, canvas.height) {}

  void TearDown() override { session.ExpectAllRun(); }
  testing::AssertionResult ViewShows(const InkModel& expected) { return Shows(session.NowView(), expected); }

  DrawingSession session;
  InkModel model;
};

}  // namespace rules
