#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "reference/reference.h"

namespace sorvel::testing_support {

// Cuts as no artist would make them, but all of them well formed: odd sizes, cells larger and smaller than the canvas,
// records off the canvas, blank and stale, layers that follow the frame, loops, key frames, transitions.
class RandomCuts {
 public:
  explicit RandomCuts(uint32_t seed) : engine(seed) {}

  int Number(int lowest, int highest) { return std::uniform_int_distribution<int>(lowest, highest)(engine); }
  bool Chance(int percent) { return Number(1, 100) <= percent; }

  reference::CutData Make() {
    reference::CutData cut;
    cut.antialias = Number(0, 2);
    const int scale = 1 << cut.antialias;
    cut.width = Number(scale, Chance(20) ? 420 : 48);
    cut.height = Number(scale, 40);
    cut.frameWidth = Chance(50) ? cut.width : Number(scale, cut.width + 8);
    cut.frameHeight = Chance(50) ? cut.height : Number(scale, cut.height + 8);
    cut.fps = Number(1, 127);
    cut.credit = std::string(static_cast<size_t>(Number(0, 12)), 'c');
    const int layers = Number(0, 4);
    for (int i = 0; i < layers; ++i) cut.layers.push_back(MakeLayer(cut));
    const int frames = Number(1, 9);
    for (int i = 0; i < frames; ++i) {
      cut.frames.push_back(i > 0 && Chance(80) ? Changed(cut, cut.frames.back()) : MakeFrame(cut));
    }
    cut.currentFrame = frames - 1;
    return cut;
  }

  // A scene as artists time it: a camera that pans on ones, drawings that change on ones to fours, each layer at its
  // own pace, some layers drifting, frames that hold still in between.
  reference::CutData MakeScene() {
    reference::CutData cut = Make();
    const int layers = static_cast<int>(cut.layers.size());
    std::vector<int> exposures;
    reference::FrameData frame;
    for (int i = 0; i < layers; ++i) {
      exposures.push_back(Number(1, 4));
      frame.records.push_back(MakeRecord(cut));
      frame.records.back().layer = i;
      frame.records.back().cell = 0;
      if (Chance(50)) frame.records.back().x = frame.records.back().y = 0;
    }
    const int panX = Chance(80) ? Number(-4, 4) : 0;
    const int panY = Chance(40) ? Number(-4, 4) : 0;
    const int drifting = Chance(40) ? Number(0, layers) : layers;
    cut.frames.clear();
    const int frames = Number(8, 16);
    for (int i = 0; i < frames; ++i) {
      const int x = frame.x;
      const int y = frame.y;
      Retime(cut, &frame);
      const bool isHeld = Chance(10);
      frame.x = isHeld ? x : x + panX;
      frame.y = isHeld ? y : y + panY;
      for (int layer = 0; layer < layers && !isHeld; ++layer) {
        const int cells = static_cast<int>(cut.layers[static_cast<size_t>(layer)].cells.size());
        reference::RecordData& record = frame.records[static_cast<size_t>(layer)];
        record.cell = i / exposures[static_cast<size_t>(layer)] % cells;
        if (layer == drifting) record.x += 2;
      }
      cut.frames.push_back(frame);
    }
    cut.currentFrame = frames - 1;
    return cut;
  }

 private:
  reference::LayerData MakeLayer(const reference::CutData& cut) {
    reference::LayerData layer;
    if (Chance(80)) layer.name = std::string(static_cast<size_t>(Number(0, 9)), 'n');
    layer.width = Chance(60) ? cut.width : Number(1, cut.width * 2);
    layer.height = Chance(60) ? cut.height : Number(1, cut.height * 2);
    layer.followFrame = Chance(25) ? 1 : 0;
    const int cells = Number(1, 4);
    for (int i = 0; i < cells; ++i) layer.cells.push_back(MakeCell(layer.width, layer.height));
    return layer;
  }

  reference::Cell MakeCell(int width, int height) {
    reference::Cell cell(width, height, static_cast<uint8_t>(Chance(15) ? Number(0, 14) : 0));
    const int strokes = Number(0, 5);
    for (int i = 0; i < strokes; ++i) {
      const int left = Number(0, width - 1);
      const int top = Number(0, height - 1);
      const int right = std::min(width, left + Number(1, Chance(50) ? 4 : 30));
      const int bottom = std::min(height, top + Number(1, Chance(50) ? 4 : 30));
      const int first = Number(0, 14);
      const int second = Chance(50) ? first : Number(0, 14);
      const bool noise = Chance(20);
      for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
          const bool odd = noise ? Chance(50) : ((x ^ y) & 1) != 0;
          cell.Set(x, y, static_cast<uint8_t>(odd ? first : second));
        }
      }
    }
    return cell;
  }

  reference::FrameData MakeFrame(const reference::CutData& cut) {
    reference::FrameData frame;
    const int layers = static_cast<int>(cut.layers.size());
    const int records = layers == 0 ? 0 : Number(0, layers + 1);
    for (int i = 0; i < records; ++i) frame.records.push_back(MakeRecord(cut));
    Retime(cut, &frame);
    return frame;
  }

  reference::RecordData MakeRecord(const reference::CutData& cut) {
    reference::RecordData record;
    record.layer = Number(0, static_cast<int>(cut.layers.size()) - 1);
    const int cells = static_cast<int>(cut.layers[static_cast<size_t>(record.layer)].cells.size());
    record.cell = Number(0, Chance(10) ? cells + 1 : cells - 1);
    if (Chance(10)) record.cell = -1 - record.cell;
    if (Chance(60)) {
      record.x = Number(-cut.width, cut.width);
      record.y = Number(-cut.height, cut.height);
    }
    return record;
  }

  void Retime(const reference::CutData& cut, reference::FrameData* frame) {
    frame->time = Chance(70) ? Number(1, 3) : Number(-4, 4);
    frame->loop = Chance(60) ? 1 : Number(0, 4);
    const int brightness = Chance(60) ? 50 : Number(0, 100);
    frame->brightness = Chance(30) ? -1 - brightness : brightness;
    frame->x = Chance(60) ? 0 : Number(-8, cut.width);
    frame->y = Chance(60) ? 0 : Number(-8, cut.height);
    frame->comment = std::string(static_cast<size_t>(Number(0, 5)), 'm');
  }

  reference::FrameData Changed(const reference::CutData& cut, reference::FrameData frame) {
    if (Chance(50)) Retime(cut, &frame);
    for (reference::RecordData& record : frame.records) {
      if (Chance(30)) record = MakeRecord(cut);
      if (Chance(30)) record.x += Number(-3, 3);
      if (Chance(30)) record.y += Number(-3, 3);
    }
    if (!cut.layers.empty() && Chance(15)) frame.records.push_back(MakeRecord(cut));
    if (!frame.records.empty() && Chance(10)) frame.records.pop_back();
    return frame;
  }

  std::mt19937 engine;
};

}  // namespace sorvel::testing_support
