#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "animation/stream_inspector.h"
#include "console/commands.h"
#include "console/console_files.h"
#include "console/state_writer.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

using Json = nlohmann::ordered_json;

// Writes JSON piece by piece: a file may hold a million records. Each item of a list has its own line.
class JsonWriter {
 public:
  void BeginObject(const char* name = nullptr) { Open(name, '{'); }
  void EndObject() { Close('}'); }
  void BeginList(const char* name) { Open(name, '['); }
  void EndList() { Close(']'); }
  void Field(const char* name, const Json& value) {
    Start(name);
    Put(value.dump());
  }
  void Fields(const Json& object) {
    for (const auto& [name, value] : object.items()) Field(name.c_str(), value);
  }
  void Item(const Json& value) { Field(nullptr, value); }

 private:
  static void Put(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

  void Indent() const { std::printf("%*s", static_cast<int>(isEmpty.size() * 2), ""); }

  void Start(const char* name) {
    if (!isEmpty.empty()) {
      std::fputs(isEmpty.back() ? "\n" : ",\n", stdout);
      isEmpty.back() = false;
    }
    Indent();
    if (name != nullptr) std::printf("\"%s\": ", name);
  }
  void Open(const char* name, char bracket) {
    Start(name);
    std::fputc(bracket, stdout);
    isEmpty.push_back(true);
  }
  void Close(char bracket) {
    const bool wasEmpty = isEmpty.back();
    isEmpty.pop_back();
    if (!wasEmpty) {
      std::fputc('\n', stdout);
      Indent();
    }
    std::fputc(bracket, stdout);
    if (isEmpty.empty()) std::fputc('\n', stdout);
  }

  std::vector<bool> isEmpty;  // of each object and list that is open
};

void WriteLayer(JsonWriter& out, Layer* layer) {
  out.Fields({{"name", layer->name != nullptr ? Json(ShownText(layer->name)) : Json(nullptr)},
              {"width", layer->width},
              {"height", layer->height},
              {"followFrame", layer->followFrame}});
  out.BeginList("cells");
  for (int32_t i = 0; i < layer->cells.Count(); ++i) out.Item(PixelChecksum(*layer->CellAt(i)));
  out.EndList();
}

void WriteFrame(JsonWriter& out, Cut* cut, Frame* frame) {
  out.Fields({{"time", frame->time},
              {"loop", frame->loop},
              {"x", frame->x},
              {"y", frame->y},
              {"brightness", frame->brightness},
              {"comment", ShownText(frame->comment)}});
  out.BeginList("records");
  for (int32_t i = 0; i < frame->records.Count(); ++i) {
    const FrameRecord* record = frame->records.At(i);
    cut->layers.SeekFirst();
    const int32_t layer = cut->layers.Find(record->layer);
    out.Item({{"layer", layer}, {"cell", record->cell}, {"x", record->x}, {"y", record->y}});
  }
  out.EndList();
}

void WriteCut(JsonWriter& out, Cut* cut) {
  out.Fields({{"kind", "cut"},
              {"width", cut->width},
              {"height", cut->height},
              {"frameWidth", cut->frameWidth},
              {"frameHeight", cut->frameHeight},
              {"fps", cut->fps},
              {"credit", ShownText(cut->credit)},
              {"antialias", cut->Antialias()}});
  out.BeginList("frames");
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    out.BeginObject();
    WriteFrame(out, cut, cut->frames.At(i));
    out.EndObject();
  }
  out.EndList();
  out.BeginList("layers");
  for (int32_t i = 0; i < cut->layers.Count(); ++i) {
    out.BeginObject();
    WriteLayer(out, cut->layers.At(i));
    out.EndObject();
  }
  out.EndList();
}

void WriteFilm(JsonWriter& out, Film* film) {
  out.Fields({{"kind", "film"},
              {"title", ShownText(film->title)},
              {"author", ShownText(film->author)},
              {"width", film->width},
              {"height", film->height}});
  out.BeginList("cuts");
  for (int32_t i = 0; i < film->cuts.Count(); ++i) out.Item({{"name", ShownText(film->CutName(i))}});
  out.EndList();
}

void WriteStreamCut(JsonWriter& out, const StreamCutInfo& cut) {
  out.Fields({{"offset", cut.offset},
              {"credit", ShownText(cut.credit)},
              {"width", cut.width},
              {"height", cut.height},
              {"frameWidth", cut.frameWidth},
              {"frameHeight", cut.frameHeight},
              {"fps", cut.fps},
              {"levels", cut.levels}});
  out.BeginList("frames");
  for (const StreamFrameHead& frame : cut.frames) {
    out.Item({{"time", frame.time},
              {"loop", frame.loop},
              {"brightness", frame.brightness},
              {"x", frame.x},
              {"y", frame.y},
              {"box", {frame.box.x, frame.box.y, frame.box.width, frame.box.height}},
              {"mapSize", frame.MapSize()},
              {"codeSize", frame.codeSize},
              {"literalSize", frame.literalSize}});
  }
  out.EndList();
}

void WriteStream(JsonWriter& out, const StreamInfo& info) {
  out.Fields({{"kind", info.isContainer ? "container" : "stream"}, {"size", info.size}});
  if (!info.isContainer) {
    WriteStreamCut(out, info.cuts[0]);
    return;
  }
  out.Fields({{"title", ShownText(info.title)},
              {"author", ShownText(info.author)},
              {"width", info.width},
              {"height", info.height},
              {"maxWidth", info.maxWidth},
              {"maxHeight", info.maxHeight},
              {"offsets", info.offsets}});
  out.BeginList("cuts");
  for (const StreamCutInfo& cut : info.cuts) {
    out.BeginObject();
    WriteStreamCut(out, cut);
    out.EndObject();
  }
  out.EndList();
}

// Writes the object that `write` fills. Gives the exit status.
template <typename Write>
int WriteObject(const Write& write) {
  JsonWriter out;
  out.BeginObject();
  write(out);
  out.EndObject();
  return FinishPrinting();
}

}  // namespace

int RunInfo(const Arguments& arguments) {
  const std::string& path = arguments.Plain()[0];
  switch (KindOf(path)) {
    case FileKind::kCut: {
      Cut cut(0, 0, 24, "", 0);
      if (!LoadCut(path, &cut)) return kFailed;
      return WriteObject([&cut](JsonWriter& out) { WriteCut(out, &cut); });
    }
    case FileKind::kLayer: {
      Cut cut(0, 0, 20, "", 0);
      if (!LoadLayer(path, &cut)) return kFailed;
      return WriteObject([&cut](JsonWriter& out) {
        out.Field("kind", "layer");
        WriteLayer(out, cut.layers.At(0));
      });
    }
    case FileKind::kFilm: {
      Film film;
      if (!LoadFilm(path, &film)) return kFailed;
      return WriteObject([&film](JsonWriter& out) { WriteFilm(out, &film); });
    }
    case FileKind::kStream: {
      InputFile file;
      std::string problem;
      StreamInfo info;
      LoadReport report;
      if (!file.Open(path, &problem)) return Fail(path, problem);
      if (!InspectStream(file.Stream(), &info, &report) || report.IsDamaged()) return Fail(path, report.problem);
      return WriteObject([&info](JsonWriter& out) { WriteStream(out, info); });
    }
    default:
      return Fail(path, "not a file of this program by its name");
  }
}

}  // namespace sorvel::console
