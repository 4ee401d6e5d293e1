#include <zlib.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "animation/stream_inspector.h"
#include "console/commands.h"
#include "console/console_files.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

using Json = nlohmann::ordered_json;

// The program's text as UTF-8. What isn't a letter there shows as the replacement character.
std::string Shown(std::string_view text) {
  std::string shown;
  while (true) {
    std::string part;
    if (platform::ShiftJisToUtf8(text, &part)) return shown + part;
    std::string back;
    platform::Utf8ToShiftJis(part, &back);
    shown += part + "\xEF\xBF\xBD";
    text.remove_prefix(std::min(back.size() + 1, text.size()));
  }
}

std::string Checksum(const CellImage& image) {
  uLong crc = crc32(0, nullptr, 0);
  if (image.ByteCount() > 0) crc = crc32(crc, image.bits, static_cast<uInt>(image.ByteCount()));
  char text[9];
  std::snprintf(text, sizeof(text), "%08lx", crc);
  return text;
}

Json DescribeLayer(Layer* layer) {
  Json cells = Json::array();
  for (int32_t i = 0; i < layer->cells.Count(); ++i) cells.push_back(Checksum(*layer->CellAt(i)));
  return {{"name", layer->name != nullptr ? Json(Shown(layer->name)) : Json(nullptr)},
          {"width", layer->width},
          {"height", layer->height},
          {"followFrame", layer->followFrame},
          {"cells", cells}};
}

Json DescribeFrame(Cut* cut, Frame* frame) {
  Json records = Json::array();
  for (int32_t i = 0; i < frame->records.Count(); ++i) {
    const FrameRecord* record = frame->records.At(i);
    cut->layers.SeekFirst();
    const int32_t layer = cut->layers.Find(record->layer);
    records.push_back({{"layer", layer}, {"cell", record->cell}, {"x", record->x}, {"y", record->y}});
  }
  return {{"time", frame->time},
          {"loop", frame->loop},
          {"x", frame->x},
          {"y", frame->y},
          {"brightness", frame->brightness},
          {"comment", Shown(frame->comment)},
          {"records", records}};
}

Json DescribeCut(Cut* cut) {
  Json frames = Json::array();
  for (int32_t i = 0; i < cut->frames.Count(); ++i) frames.push_back(DescribeFrame(cut, cut->frames.At(i)));
  Json layers = Json::array();
  for (int32_t i = 0; i < cut->layers.Count(); ++i) layers.push_back(DescribeLayer(cut->layers.At(i)));
  return {{"kind", "cut"},
          {"width", cut->width},
          {"height", cut->height},
          {"frameWidth", cut->frameWidth},
          {"frameHeight", cut->frameHeight},
          {"fps", cut->fps},
          {"credit", Shown(cut->credit)},
          {"antialias", cut->Antialias()},
          {"frames", frames},
          {"layers", layers}};
}

Json DescribeFilm(Film* film) {
  Json cuts = Json::array();
  for (int32_t i = 0; i < film->cuts.Count(); ++i) cuts.push_back({{"name", Shown(film->CutName(i))}});
  return {{"kind", "film"},       {"title", Shown(film->title)}, {"author", Shown(film->author)},
          {"width", film->width}, {"height", film->height},      {"cuts", cuts}};
}

Json DescribeStreamCut(const StreamCutInfo& cut) {
  Json frames = Json::array();
  for (const StreamFrameInfo& frame : cut.frames) {
    frames.push_back({{"time", frame.time},
                      {"loop", frame.loop},
                      {"brightness", frame.brightness},
                      {"x", frame.x},
                      {"y", frame.y},
                      {"box", {frame.box.x, frame.box.y, frame.box.width, frame.box.height}},
                      {"mapSize", frame.mapSize},
                      {"codeSize", frame.codeSize},
                      {"literalSize", frame.literalSize}});
  }
  return {{"offset", cut.offset}, {"credit", Shown(cut.credit)},  {"width", cut.width},
          {"height", cut.height}, {"frameWidth", cut.frameWidth}, {"frameHeight", cut.frameHeight},
          {"fps", cut.fps},       {"levels", cut.levels},         {"frames", frames}};
}

Json DescribeStream(const StreamInfo& info) {
  Json cuts = Json::array();
  for (const StreamCutInfo& cut : info.cuts) cuts.push_back(DescribeStreamCut(cut));
  if (!info.isContainer) {
    Json stream = {{"kind", "stream"}, {"size", info.size}};
    stream.update(cuts[0]);
    return stream;
  }
  return {
      {"kind", "container"},     {"size", info.size},     {"title", Shown(info.title)}, {"author", Shown(info.author)},
      {"width", info.width},     {"height", info.height}, {"maxWidth", info.maxWidth},  {"maxHeight", info.maxHeight},
      {"offsets", info.offsets}, {"cuts", cuts}};
}

// False, with the line written, for a file that can't be described.
bool Describe(const std::string& path, Json* description) {
  switch (KindOf(path)) {
    case FileKind::kCut: {
      Cut cut(0, 0, 24, "", 0);
      if (!LoadCut(path, &cut)) return false;
      *description = DescribeCut(&cut);
      return true;
    }
    case FileKind::kLayer: {
      Cut cut(0, 0, 20, "", 0);
      if (!LoadLayer(path, &cut)) return false;
      *description = {{"kind", "layer"}};
      description->update(DescribeLayer(cut.layers.At(0)));
      return true;
    }
    case FileKind::kFilm: {
      Film film;
      if (!LoadFilm(path, &film)) return false;
      *description = DescribeFilm(&film);
      return true;
    }
    case FileKind::kStream: {
      InputFile file;
      std::string problem;
      StreamInfo info;
      LoadReport report;
      if (!file.Open(path, &problem)) return Fail(path, problem) == kDone;
      if (!InspectStream(file.Stream(), &info, &report) || report.IsDamaged()) {
        return Fail(path, report.problem) == kDone;
      }
      *description = DescribeStream(info);
      return true;
    }
    default:
      return Fail(path, "not a file of this program by its name") == kDone;
  }
}

}  // namespace

int RunInfo(const Arguments& arguments) {
  Json description;
  if (!Describe(arguments.Plain()[0], &description)) return kFailed;
  const std::string text = description.dump(2) + "\n";
  const bool written = std::fwrite(text.data(), text.size(), 1, stdout) == 1 && std::fflush(stdout) == 0;
  return written ? kDone : Fail("standard output", "can't be written");
}

}  // namespace sorvel::console
