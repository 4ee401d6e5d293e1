#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/sheet_pages.h"
#include "console/xdts.h"
#include "document/time_sheet.h"
#include "foundation/shift_jis.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

// What a cut file and its frames can hold.
constexpr int32_t kMostLayers = 255;
constexpr int32_t kHighestCell = 32767;
// A file of few bytes can name high numbers: so many cells are made for it at most.
constexpr int32_t kMostMadeCells = 4096;
constexpr size_t kLongestName = 80;

// A cut that is made for a sheet. The sheet doesn't say its size and rate.
constexpr int32_t kNewWidth = 240;
constexpr int32_t kNewHeight = 180;
constexpr int32_t kNewFps = 24;

// The change of each track whenever another cell, or none, is shown.
XdtsSheet ExchangeSheet(TimeSheet* sheet, const std::string& name) {
  XdtsSheet exchange;
  exchange.name = name;
  exchange.duration = static_cast<int32_t>(sheet->Ticks());
  for (size_t column = 0; column < sheet->Columns().size(); ++column) {
    XdtsTrack track;
    track.name = ShownText(sheet->Columns()[column].layer->ShownName());
    int32_t before = kNoSquare;
    for (int32_t i = 0; i < sheet->FrameCount(); ++i) {
      const SheetFrame& frame = sheet->FrameAt(i);
      const int32_t cell = std::max(sheet->CellOf(i, static_cast<int32_t>(column)), kBlankSquare);
      if (frame.ticks == 0 || cell == before) continue;
      track.changes.push_back({static_cast<int32_t>(frame.firstTick), cell < 0 ? "" : std::to_string(cell + 1)});
      before = cell;
    }
    exchange.tracks.push_back(std::move(track));
  }
  return exchange;
}

int WriteSheet(const std::string& in, const std::string& out) {
  const std::string extension = ExtensionOf(out);
  if (extension != ".html" && extension != ".svg" && extension != ".csv" && extension != ".xdts") {
    return Fail(out, "not a .html, .svg, .csv or .xdts file by its name");
  }
  Cut cut(0, 0, 24, "", 0);
  if (!LoadCut(in, &cut)) return kFailed;
  if (cut.frames.Count() == 0) return Fail(in, "the cut has no frames");
  TimeSheet sheet(&cut);
  if (extension == ".xdts") {
    if (sheet.Ticks() < 1) return Fail(in, "its frames take no time");
    if (sheet.Ticks() > INT32_MAX) return Fail(in, "its frames take too long");
    const std::string text = WriteXdts(ExchangeSheet(&sheet, StemOf(in)));
    return WriteOutput(out, [&text](OutputFile* file) {
      std::fwrite(text.data(), 1, text.size(), file->File());
      return true;
    });
  }
  if (sheet.Rows() > kMostSheetRows) {
    return Fail(in, "its sheet has more than " + std::to_string(kMostSheetRows) + " rows");
  }
  return WriteOutput(out, [&](OutputFile* file) {
    const SheetPages pages(&cut, &sheet, StemOf(in));
    if (extension == ".html") pages.WriteHtml(file->File());
    if (extension == ".svg") pages.WriteSvg(file->File());
    if (extension == ".csv") WriteSheetTable(&cut, &sheet, file->File());
    return true;
  });
}

bool ReadExchange(const std::string& path, XdtsSheet* exchange) {
  InputFile file;
  std::string problem;
  std::string text;
  bool isRead = file.Open(path, &problem);
  if (isRead) {
    text.resize(kLargestXdts + 1);
    text.resize(std::fread(text.data(), 1, text.size(), file.File()));
    if (std::ferror(file.File()) != 0) {
      problem = "can't be read";
      isRead = false;
    } else if (text.size() > kLargestXdts) {
      problem = "larger than " + std::to_string(kLargestXdts >> 20) + " MiB";
      isRead = false;
    }
  }
  if (isRead && ReadXdts(text, exchange, &problem)) return true;
  Fail(path, problem);
  return false;
}

// The number of a cell by its name, from 1; 0 for a name that is no such number.
int32_t CellNumber(const std::string& name) {
  const size_t digits = std::min(name.find_first_not_of('0'), name.size());
  int32_t number = 0;
  return ParseNumber(name.substr(digits), 1, kHighestCell, &number) ? number : 0;
}

// The name of a layer in the program's own text, as far as that has the letters.
std::string LayerName(const std::string& name) {
  std::string text;
  platform::Utf8ToShiftJis(name, &text);
  text.erase(std::remove_if(text.begin(), text.end(), [](char byte) { return byte >= 0 && byte < ' '; }), text.end());
  if (text.size() <= kLongestName) return text;
  // Not in the middle of a letter.
  std::string shorter;
  for (size_t i = 0; i < text.size();) {
    const size_t length = IsLeadByte(text[i]) ? 2 : 1;
    if (shorter.size() + length > kLongestName) break;
    shorter += text.substr(i, length);
    i += length;
  }
  return shorter;
}

// Takes the timing of an exchange file over into a cut.
class Taker {
 public:
  Taker(const std::string& path, Cut* taken) : source(path), cut(taken) {}

  // Each gives false, with the one line written, if a cut can't hold the sheet.
  bool Take(const XdtsSheet& exchange) {
    FindLayers(exchange);
    if (!MakeLayers(exchange) || !MakeCells(exchange)) return false;
    TimeSheet sheet(cut);
    std::vector<SheetTrack> tracks;
    for (size_t i = 0; i < exchange.tracks.size(); ++i) {
      const auto column = std::find_if(sheet.Columns().begin(), sheet.Columns().end(), [&](const SheetColumn& each) {
        return each.layer == targets[i].layer && each.occurrence == targets[i].occurrence;
      });
      SheetTrack track = {static_cast<int32_t>(column - sheet.Columns().begin()), {}};
      for (const XdtsChange& change : exchange.tracks[i].changes) {
        track.changes.push_back({change.frame, change.cell.empty() ? kBlankSquare : numbers[i][change.cell] - 1});
      }
      tracks.push_back(std::move(track));
    }
    if (sheet.TakeOver(exchange.duration, tracks)) return true;
    Fail(source, "takes more frames or longer spans of key frames than a cut can hold");
    return false;
  }

 private:
  // A track stands for the column of its name; of several for the one in the same order. One without a name stands for
  // the column at its place, unless that belongs to another track.
  void FindLayers(const XdtsSheet& exchange) {
    const TimeSheet sheet(cut);
    const std::vector<SheetColumn>& columns = sheet.Columns();
    std::vector<bool> isTaken(columns.size());
    targets.assign(exchange.tracks.size(), {nullptr, 0, -1});
    const auto take = [&](size_t track, size_t column) {
      isTaken[column] = true;
      targets[track] = columns[column];
    };
    for (size_t i = 0; i < targets.size(); ++i) {
      const std::string& name = exchange.tracks[i].name;
      for (size_t column = 0; column < columns.size() && !name.empty() && targets[i].layer == nullptr; ++column) {
        if (!isTaken[column] && ShownText(columns[column].layer->ShownName()) == name) take(i, column);
      }
    }
    for (size_t i = 0; i < targets.size(); ++i) {
      const bool isNamed = !exchange.tracks[i].name.empty();
      if (!isNamed && targets[i].layer == nullptr && i < columns.size() && !isTaken[i]) take(i, i);
    }
  }

  bool MakeLayers(const XdtsSheet& exchange) {
    for (size_t i = 0; i < targets.size(); ++i) {
      if (targets[i].layer != nullptr) continue;
      if (cut->layers.Count() >= kMostLayers) return Refuse("has more layers than the 255 of a cut");
      Layer* layer = cut->AddLayer(LayerName(exchange.tracks[i].name).c_str(), cut->width, cut->height, nullptr);
      if (layer == nullptr) return Refuse("there is no memory for its layers");
      targets[i] = {layer, 0, -1};
    }
    return true;
  }

  // Cells that the layers lack are added, blank. A name that is no number gets the number behind all others of its
  // layer, in the order of their appearance.
  bool MakeCells(const XdtsSheet& exchange) {
    numbers.resize(targets.size());
    int32_t made = 0;
    for (size_t i = 0; i < targets.size(); ++i) {
      Layer* layer = targets[i].layer;
      const std::vector<XdtsChange>& changes = exchange.tracks[i].changes;
      int32_t highest = layer->cells.Count();
      for (const XdtsChange& change : changes) highest = std::max(highest, CellNumber(change.cell));
      for (const XdtsChange& change : changes) {
        if (change.cell.empty() || numbers[i].contains(change.cell)) continue;
        const int32_t number = CellNumber(change.cell);
        numbers[i][change.cell] = number != 0 ? number : ++highest;
        if (number != 0) continue;
        std::printf("%s: %s is cell %d\n", Printable(ShownText(layer->ShownName())).c_str(),
                    Printable(change.cell).c_str(), highest);
      }
      if (highest > kHighestCell) return Refuse("has more cells in a layer than the 32767 of a cut");
      made += highest - layer->cells.Count();
      if (made > kMostMadeCells) return Refuse("names cells that are missing, more than the 4096 that are made");
      while (layer->cells.Count() < highest) {
        if (!layer->AddCell(layer->cells.Count() - 1, 0, nullptr)) return Refuse("there is no memory for its cells");
      }
    }
    return true;
  }

  bool Refuse(const char* reason) {
    Fail(source, reason);
    return false;
  }

  std::string source;
  Cut* cut;
  std::vector<SheetColumn> targets;                     // of each track
  std::vector<std::map<std::string, int32_t>> numbers;  // of each track's cells
};

int TakeSheet(const std::string& in, const std::string& out) {
  XdtsSheet exchange;
  if (!ReadExchange(in, &exchange)) return kFailed;
  std::error_code error;
  const bool isNew = !std::filesystem::exists(out, error) && !error;
  Cut cut(kNewWidth, kNewHeight, kNewFps, "", 0);
  if (!isNew && !LoadCut(out, &cut)) return kFailed;
  if (cut.frames.Count() == 0) cut.AddFrame();
  if (!Taker(in, &cut).Take(exchange)) return kFailed;
  const int status = WriteOutput(out, [&cut](OutputFile* file) { return cut.Save(file->Stream()); });
  return status == kDone ? FinishPrinting() : status;
}

}  // namespace

int RunSheet(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  if (KindOf(in) == FileKind::kCut) return WriteSheet(in, out);
  if (ExtensionOf(in) != ".xdts") return Fail(in, "not a .cut or .xdts file by its name");
  return KindOf(out) == FileKind::kCut ? TakeSheet(in, out) : Fail(out, "not a .cut file by its name");
}

}  // namespace sorvel::console
