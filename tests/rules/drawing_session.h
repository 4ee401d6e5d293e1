#pragma once

#include <array>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "resources/ids.h"
#include "rules/script_session.h"

namespace rules {

using Area = std::array<int, 4>;

// Sizes in pixels. A negative client size is that of the canvas, so that window and cut coordinates are the same.
struct Canvas {
  int width = 64;
  int height = 48;
  int clientWidth = -1;
  int clientHeight = -1;
  int antialias = 0;
};

// A session with one new cut of one frame and one layer of the canvas's size, which is asked while it goes on: each
// `Now...` runs the script so far and gives what stands at its end.
class DrawingSession : public ScriptSession {
 public:
  explicit DrawingSession(const Canvas& canvas = {});

  // The settings file with which every run starts.
  void StartWith(std::string_view settings) { startSettings = settings; }

  void Press(int x, int y, std::string_view keys = "") { Mouse("ldown", x, y, keys); }
  void Move(int x, int y, std::string_view keys = "") { Mouse("move", x, y, keys); }
  void Release(int x, int y, std::string_view keys = "") { Mouse("lup", x, y, keys); }
  void RightRelease(int x, int y, std::string_view keys = "") { Mouse("rup", x, y, keys); }

  // A left press and release in the picker's square of this column (0 to 15) and row (0 to 3).
  void Pick(int column, int row);
  // The plain ink of an index out of 0 to 4 and 9 to 14.
  void PickPlain(int index);
  // The size step, 0 to 7.
  void PickSize(int step) { Pick(8 + step, 0); }
  // Protects these indices and no others.
  void Mask(std::initializer_list<int> indices);
  void Grid(int width, int height);
  // Commits, moves at most, and repaints: on a cut of one frame it is a repaint with its two pulses and nothing else.
  void Repaint() { Command(kCommandPreviousFrame); }

  // Fills a rectangle of the window with one index, and goes back to the free pen, to plain black and to no mask.
  void FillArea(int x, int y, int width, int height, int index);
  // Draws one line of index 8 in the same way.
  void DrawInkLine(int fromX, int fromY, int toX, int toY);
  void AddLayer(std::string_view name, int width, int height);

  PixelMatrix NowView();
  PixelMatrix NowScreen();
  nlohmann::json NowState();
  // The active cut of the state.
  nlohmann::json NowCut();
  nlohmann::json NowFrame();
  nlohmann::json NowRecord();
  Area NowUndoRect();
  // Left, top, right and bottom.
  Area NowSelection();
  bool HasSelection();

 private:
  void RunAfresh();

  std::string startSettings;
};

}  // namespace rules
