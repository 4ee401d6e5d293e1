#include "console/state_writer.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>

#include "console/console_files.h"
#include "cutwindow/drawing_settings.h"
#include "foundation/bitmap_head.h"
#include "foundation/cursor_keeper.h"
#include "imaging/color_table.h"

namespace sorvel::console {

namespace {

using Json = nlohmann::ordered_json;

std::string TextOf(platform::WindowHandle window) {
  std::string text(platform::TextLength(window) + 1, '\0');
  text.resize(platform::ReadText(window, text.data(), text.size()));
  return ShownText(text);
}

Json DescribeFrame(MainFrame* frame) {
  const platform::MenuHandle menu = platform::FrameMenu(frame->frameWindow);
  platform::headless::OpenMenuBar(frame->frameWindow);
  return {{"title", TextOf(frame->frameWindow)},
          {"status", TextOf(frame->statusBar)},
          {"currentTool", frame->currentTool},
          {"previousTool", frame->previousTool},
          {"panelsShown", (frame->shellFlags & kPanelsShown) != 0},
          {"statusBarVisible", (frame->shellFlags & kStatusBarVisible) != 0},
          {"toolBarVisible", (frame->shellFlags & kToolBarVisible) != 0},
          {"checked", platform::headless::CheckedEntries(menu)}};
}

Json DescribeList(platform::WindowHandle list) {
  Json lines = Json::array();
  Json selected = Json::array();
  for (int32_t i = 0; i < platform::ListCount(list); ++i) {
    std::string text(platform::ListLineLength(list, i) + 1, '\0');
    text.resize(platform::ReadListLine(list, i, text.data(), text.size()));
    lines.push_back(ShownText(text));
    if (platform::IsListLineSelected(list, i)) selected.push_back(i);
  }
  return {{"lines", lines}, {"selected", selected}, {"caret", platform::ListCaret(list)}};
}

Json DescribePanels(MainFrame* frame) {
  const Json keyFrame = {{"text", TextOf(frame->keyFrameCheck)},
                         {"checked", platform::IsChecked(frame->keyFrameCheck)}};
  return {{std::to_string(kFrameTimeEdit), TextOf(frame->frameTimeEdit)},
          {std::to_string(kLoopEdit), TextOf(frame->loopEdit)},
          {std::to_string(kCommentEdit), TextOf(frame->commentEdit)},
          {std::to_string(kBrightnessEdit), TextOf(frame->brightnessEdit)},
          {std::to_string(kKeyFrameCheck), keyFrame},
          {std::to_string(kCutList), DescribeList(frame->cutList)},
          {std::to_string(kLayerList), DescribeList(frame->layerList)}};
}

Json DescribePen() {
  return {{"shape", currentPen.shape},   {"tone", currentPen.tone}, {"colorA", currentPen.colorA},
          {"colorB", currentPen.colorB}, {"penSign", penSign},      {"muraRemoval", muraRemoval},
          {"maskFlags", maskFlags},      {"gridWidth", gridWidth},  {"gridHeight", gridHeight}};
}

Json DescribeFilm(Film* film) {
  const CursorKeeper keeper(&film->cuts);
  Json cuts = Json::array();
  for (int32_t i = 0; i < film->cuts.Count(); ++i) {
    const FilmEntry entry = film->cuts.At(i);
    cuts.push_back({{"name", ShownText(entry.name)}, {"open", entry.cut != nullptr}});
  }
  return {{"path", ShownText(film->path)},
          {"title", ShownText(film->title)},
          {"author", ShownText(film->author)},
          {"width", film->width},
          {"height", film->height},
          {"modified", film->modified != 0},
          {"cuts", cuts}};
}

Json DescribeCutFrame(Frame* frame, const std::map<const Layer*, int32_t>& layerIndices) {
  const CursorKeeper keeper(&frame->records);
  Json records = Json::array();
  for (int32_t i = 0; i < frame->records.Count(); ++i) {
    const FrameRecord* record = frame->records.At(i);
    const auto layer = layerIndices.find(record->layer);
    records.push_back({{"layer", layer != layerIndices.end() ? layer->second : -1},
                       {"cell", record->cell},
                       {"x", record->x},
                       {"y", record->y}});
  }
  return {{"time", frame->time},
          {"loop", frame->loop},
          {"x", frame->x},
          {"y", frame->y},
          {"brightness", frame->brightness},
          {"comment", ShownText(frame->comment)},
          {"currentRecord", frame->currentRecord},
          {"records", records}};
}

Json DescribeLayer(Layer* layer) {
  const CursorKeeper keeper(&layer->cells);
  Json cells = Json::array();
  for (int32_t i = 0; i < layer->cells.Count(); ++i) cells.push_back(PixelChecksum(*layer->CellAt(i)));
  return {{"name", layer->name != nullptr ? Json(ShownText(layer->name)) : Json(nullptr)},
          {"width", layer->width},
          {"height", layer->height},
          {"followFrame", layer->followFrame},
          {"cells", cells}};
}

Json DescribeCut(CutWindow* cut, bool isActive) {
  const CursorKeeper frameKeeper(&cut->frames);
  const CursorKeeper layerKeeper(&cut->layers);
  Json layers = Json::array();
  std::map<const Layer*, int32_t> layerIndices;
  for (int32_t i = 0; i < cut->layers.Count(); ++i) {
    layerIndices[cut->layers.At(i)] = i;
    layers.push_back(DescribeLayer(cut->layers.At(i)));
  }
  Json frames = Json::array();
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    frames.push_back(DescribeCutFrame(cut->frames.At(i), layerIndices));
  }
  const Bounds& selection = cut->selection;
  const Rect& undo = cut->undoRect;
  return {{"path", ShownText(cut->path)},
          {"title", TextOf(cut->window)},
          {"active", isActive},
          {"width", cut->width},
          {"height", cut->height},
          {"frameWidth", cut->frameWidth},
          {"frameHeight", cut->frameHeight},
          {"fps", cut->fps},
          {"credit", ShownText(cut->credit)},
          {"antialias", cut->Antialias()},
          {"currentFrame", cut->currentFrame},
          {"modified", cut->Has(kModified)},
          {"imagesStale", cut->Has(kImagesStale)},
          {"timingStale", cut->Has(kTimingStale)},
          {"viewFlags", cut->viewFlags},
          {"lineEmphasis", (cut->viewOptions & kLineEmphasis) != 0},
          {"floatingPaste", (cut->viewOptions & kFloatingPaste) != 0},
          {"zoomNumerator", cut->zoomNumerator},
          {"zoomDenominator", cut->zoomDenominator},
          {"scrollX", cut->scrollX},
          {"scrollY", cut->scrollY},
          {"selection", Json::array({selection.left, selection.top, selection.right, selection.bottom})},
          {"undoRect", Json::array({undo.x, undo.y, undo.width, undo.height})},
          {"view", PixelChecksum(cut->view)},
          {"frames", frames},
          {"layers", layers}};
}

Json DescribePlayer(const AnimationWindow& player) {
  return {{"visible", platform::IsShown(player.window)},
          {"title", TextOf(player.window)},
          {"timer", platform::headless::RunningTimerPeriod() != 0}};
}

// The rows of each column, a word a square: a number, "x" for a blank, "|" where either goes on, and "" where the frame
// lacks the layer.
Json DescribeSheet(SheetWindow* window) {
  constexpr int64_t mostRows = 1000;
  Json columns = Json::array();
  TimeSheet* sheet = window->Sheet();
  const int32_t count = sheet != nullptr ? static_cast<int32_t>(sheet->Columns().size()) : 0;
  for (int32_t i = 0; i < count; ++i) {
    const SheetColumn& column = sheet->Columns()[static_cast<size_t>(i)];
    Json squares = Json::array();
    for (int64_t row = 0; row < std::min(sheet->Rows(), mostRows); ++row) {
      const SheetSquare square = sheet->SquareAt(i, row);
      squares.push_back(square.mark == SheetMark::kNone    ? ""
                        : square.mark == SheetMark::kCell  ? std::to_string(square.cell + 1)
                        : square.mark == SheetMark::kBlank ? "x"
                                                           : "|");
    }
    columns.push_back({{"layer", ShownText(column.layer->ShownName())}, {"record", column.record}, {"rows", squares}});
  }
  return {{"title", TextOf(window->window)},
          {"column", window->CursorColumn()},
          {"selected", Json::array({window->FirstSelected(), window->LastSelected()})},
          {"typed", window->Typed()},
          {"pictures", window->HasPictures()},
          {"columns", columns}};
}

// The checksum of some bytes and `count` zero bytes behind them.
uLong AppendZeros(uLong crc, int64_t count) {
  const uint8_t zero = 0;
  uLong zeros = crc32(crc32(0, nullptr, 0), &zero, 1);
  for (int64_t length = 1; length <= count; length *= 2) {
    if ((count & length) != 0) crc = crc32_combine(crc, zeros, static_cast<z_off_t>(length));
    zeros = crc32_combine(zeros, zeros, static_cast<z_off_t>(length));
  }
  return crc;
}

}  // namespace

std::string PixelChecksum(const CellImage& image) {
  int32_t top = 0;
  int32_t bottom = image.height;
  while (top < bottom && !image.IsUsedRow(top)) ++top;
  while (top < bottom && !image.IsUsedRow(bottom - 1)) --bottom;
  uLong crc = AppendZeros(crc32(0, nullptr, 0), int64_t{top} * image.pitch);
  const int64_t usedBytes = int64_t{bottom - top} * image.pitch;
  if (usedBytes > 0) crc = crc32(crc, image.bits + int64_t{top} * image.pitch, static_cast<uInt>(usedBytes));
  crc = AppendZeros(crc, int64_t{image.height - bottom} * image.pitch);
  char text[9];
  std::snprintf(text, sizeof(text), "%08lx", crc);
  return text;
}

std::string DescribeState(MainFrame* frame, const std::vector<CutWindow*>& cuts) {
  const CutWindow* active = frame->ActiveCut();
  Json list = Json::array();
  for (CutWindow* cut : cuts) list.push_back(DescribeCut(cut, cut == active));
  Json state = {{"frame", DescribeFrame(frame)},
                {"panels", DescribePanels(frame)},
                {"pen", DescribePen()},
                {"film", DescribeFilm(frame->film)},
                {"cuts", list},
                {"player", DescribePlayer(frame->animationWindow)}};
  if (frame->sheetWindow.IsOpen()) state["sheet"] = DescribeSheet(&frame->sheetWindow);
  const std::vector<std::string>& messages = platform::headless::Warnings();
  for (const std::string& message : messages) state["messages"].push_back(ShownText(message));
  return state.dump() + "\n";
}

int WriteBytes(const std::string& path, const void* bytes, size_t count) {
  return WriteOutput(path, [bytes, count](OutputFile* file) {
    std::fwrite(bytes, 1, count, file->File());
    return true;
  });
}

int WriteView(const std::string& path, const CellImage& view) {
  return WriteOutput(path, [&view](OutputFile* file) {
    WriteIndexedBitmap(file->Stream(), view, ColorTable);
    return true;
  });
}

int WriteScreen(const std::string& path, const platform::Window& window) {
  constexpr int32_t bits = 24;
  return WriteOutput(path, [&window](OutputFile* file) {
    const int32_t pitch = static_cast<int32_t>(BitmapRowBytes(window.width, bits));
    WriteBitmapHeads(*file->Stream(), {window.width, window.height, bits, 0, 0}, pitch * window.height);
    std::vector<uint8_t> row(static_cast<size_t>(pitch), 0);
    for (int32_t y = window.height - 1; y >= 0; --y) {
      const platform::ColorEntry* from = window.pixels.data() + static_cast<ptrdiff_t>(y) * window.width;
      size_t place = 0;
      for (int32_t x = 0; x < window.width; ++x) {
        row[place++] = from[x].blue;
        row[place++] = from[x].green;
        row[place++] = from[x].red;
      }
      file->Stream()->Write(row.data(), pitch);
    }
    return true;
  });
}

int WriteGreyMap(const std::string& path, const platform::Window& window) {
  std::vector<uint8_t> greys;
  greys.reserve(window.pixels.size());
  for (const platform::ColorEntry& color : window.pixels) greys.push_back(color.red);
  return WriteOutput(path, [&window, &greys](OutputFile* file) {
    std::fprintf(file->File(), "P5\n%d %d\n255\n", window.width, window.height);
    if (!greys.empty()) std::fwrite(greys.data(), 1, greys.size(), file->File());
    return true;
  });
}

}  // namespace sorvel::console
