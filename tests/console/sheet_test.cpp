#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "console/xdts.h"
#include "support/test_scripts.h"

namespace sorvel {
namespace {

using namespace teststreams;
using console::ReadXdts;
using console::WriteXdts;
using console::XdtsSheet;
using Json = nlohmann::json;
using Words = std::vector<std::string>;

constexpr char kFirstLine[] = "exchangeDigitalTimeSheet Save Data\n";

// The frames of a track: numbers and values.
using Values = std::vector<std::pair<int, std::string>>;

std::string Track(int number, const Values& values) {
  Json frames = Json::array();
  for (const auto& [frame, value] : values) {
    frames.push_back({{"frame", frame}, {"data", {{{"id", 0}, {"values", {value}}}}}});
  }
  return Json{{"trackNo", number}, {"frames", frames}}.dump();
}

// A file of these tracks. Names are a JSON list.
std::string Exchange(int duration, const std::string& names, const std::vector<std::string>& tracks) {
  std::string list;
  for (const std::string& track : tracks) list += (list.empty() ? "" : ",") + track;
  return kFirstLine +
         ("{\"version\":5,\"header\":{\"cut\":\"1\",\"scene\":\"\"},\"timeTables\":[{\"name\":\"t\",\"duration\":" +
          std::to_string(duration) + ",\"timeTableHeaders\":[{\"fieldId\":0,\"names\":" + names +
          "}],\"fields\":[{\"fieldId\":0,\"tracks\":[" + list + "]}]}]}\n");
}

std::string Read(const std::string& text) {
  XdtsSheet sheet;
  std::string problem;
  if (!ReadXdts(text, &sheet, &problem)) return "refused: " + problem;
  std::string shown = std::to_string(sheet.duration);
  for (const console::XdtsTrack& track : sheet.tracks) {
    shown += " " + track.name + ":";
    for (const console::XdtsChange& change : track.changes)
      shown += std::to_string(change.frame) + "=" + change.cell + ";";
  }
  return shown;
}

// The format.

TEST(Xdts, ChangesOfTracksAreReadFromTheBottomUp) {
  EXPECT_EQ(
      Read(Exchange(12, "[\"A\",\"B\"]",
                    {Track(1, {{0, "1"}}), Track(0, {{0, "SYMBOL_NULL_CELL"}, {3, "2"}, {6, "SYMBOL_NULL_CELL"}})})),
      "12 A:0=;3=2;6=; B:0=1;");
}

TEST(Xdts, MarksChangeNoExposure) {
  EXPECT_EQ(Read(Exchange(9, "[\"A\"]",
                          {Track(0, {{0, "1"},
                                     {2, "SYMBOL_HYPHEN"},
                                     {3, "SYMBOL_TICK_1"},
                                     {4, "SYMBOL_TICK_2"},
                                     {5, "SYMBOL_OF_TOMORROW"},
                                     {6, "2"}})})),
            "9 A:0=1;6=2;");
}

TEST(Xdts, NegativeFramesAreCutOffAndLateOnesToo) {
  EXPECT_EQ(Read(Exchange(5, "[\"A\",\"B\"]",
                          {Track(0, {{-9, "1"}, {-2, "2"}, {3, "3"}, {5, "4"}}), Track(1, {{-2, "1"}, {0, "7"}})})),
            "5 A:0=2;3=3; B:0=7;");
}

TEST(Xdts, WhatIsSaidLaterAboutAFrameHolds) {
  EXPECT_EQ(Read(Exchange(9, "[\"A\"]", {Track(0, {{4, "1"}, {0, "2"}, {4, "3"}})})), "9 A:0=2;4=3;");
}

TEST(Xdts, UnknownKeysAndMissingNamesAreBorne) {
  EXPECT_EQ(
      Read(std::string(kFirstLine) +
           "{\"timeTables\":[{\"duration\":2,\"x\":[[]],\"fields\":[{\"fieldId\":3},{\"fieldId\":0,\"y\":1,"
           "\"tracks\":[{\"frames\":[{\"frame\":0,\"z\":{},\"data\":[{\"id\":9},{\"id\":0,\"values\":[\"1\",2]}]}]},"
           "{\"trackNo\":7,\"frames\":[{\"frame\":1,\"data\":[]}]}]}]},17]}"),
      "2 :0=1; :");
}

TEST(Xdts, LineEndsAndAByteOrderMarkAreBorne) {
  const std::string text = Exchange(1, "[\"A\"]", {Track(0, {{0, "1"}})});
  std::string carriage = "\xEF\xBB\xBF" + text;
  carriage.insert(carriage.find('\n'), "\r");
  carriage.pop_back();
  EXPECT_EQ(Read(carriage), "1 A:0=1;");
}

TEST(Xdts, WhatIsWrittenIsReadAgain) {
  XdtsSheet sheet;
  sheet.name = "カット\"1\"";
  sheet.duration = 40;
  sheet.tracks = {{"背景", {{0, "1"}}}, {"A", {{0, ""}, {4, "12"}, {39, ""}}}, {"A", {}}};
  const std::string text = WriteXdts(sheet);
  EXPECT_EQ(Read(text), "40 背景:0=1; A:0=;4=12;39=; A:");
  EXPECT_EQ(text.substr(0, sizeof(kFirstLine) - 1), kFirstLine);
  const Json root = Json::parse(text.substr(sizeof(kFirstLine) - 1));
  EXPECT_EQ(root["version"], 5);
  EXPECT_EQ(root["header"]["cut"], sheet.name);
  EXPECT_EQ(root["timeTables"][0]["timeTableHeaders"][0]["names"][0], "背景");
  EXPECT_EQ(root["timeTables"][0]["fields"][0]["tracks"][0]["frames"][0]["data"][0]["id"], 0);
}

TEST(Xdts, DamagedTextIsRefused) {
  const std::string good = Exchange(4, "[\"A\"]", {Track(0, {{0, "1"}})});
  ASSERT_EQ(Read(good), "4 A:0=1;");
  const auto with = [&good](const std::string& from, const std::string& to) {
    std::string text = good;
    const size_t place = text.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    return text.replace(place, from.size(), to);
  };
  const std::string deep(100000, '[');
  const std::string cases[] = {
      "",
      "exchangeDigitalTimeSheet",
      kFirstLine,
      with("exchange", "Exchange"),
      std::string(kFirstLine) + "[]",
      std::string(kFirstLine) + "null",
      std::string(kFirstLine) + deep,
      std::string(kFirstLine) + "{\"timeTables\":" + deep + std::string(deep.size(), ']') + "}",
      good.substr(0, good.size() - 4),
      good + "{}",
      with("\"A\"", "\"\xFF\xFE\""),
      with("\"A\"", "\"\x82\xA0\""),
      with("\"duration\":4", "\"duration\":0"),
      with("\"duration\":4", "\"duration\":-1"),
      with("\"duration\":4", "\"duration\":2147483648"),
      with("\"duration\":4", "\"duration\":18446744073709551615"),
      with("\"duration\":4", "\"duration\":1e30"),
      with("\"duration\":4", "\"duration\":\"4\""),
      with("\"duration\":4", "\"duration\":null"),
      with("\"duration\":4,", ""),
      with("\"names\":[\"A\"]", "\"names\":\"A\""),
      with("\"timeTableHeaders\":[", "\"timeTableHeaders\":0,\"x\":["),
      with("\"fieldId\":0,\"tracks\"", "\"fieldId\":1,\"tracks\""),
      with("\"tracks\":[", "\"tracks\":{},\"x\":["),
      with("\"fields\":[", "\"fields\":null,\"x\":["),
      with("\"timeTables\":[", "\"timeTables\":[],\"x\":["),
      with("\"trackNo\":0", "\"trackNo\":\"0\""),
      with("\"trackNo\":0", "\"trackNo\":1.5"),
      with("\"frame\":0", "\"frame\":\"0\""),
      with("\"frame\":0", "\"frame\":1e400"),
      with("\"frame\":0", "\"frame\":{}"),
      with("\"frame\":0", "\"Frame\":0"),
      with("\"data\":[", "\"data\":0,\"x\":["),
      with("\"values\":[\"1\"]", "\"values\":[1]"),
      with("\"values\":[\"1\"]", "\"values\":[]"),
      with("\"values\":[\"1\"]", "\"values\":null")};
  for (const std::string& text : cases) {
    EXPECT_EQ(Read(text).substr(0, 9), "refused: ") << text.substr(0, 400);
  }
}

// The command.

class SheetCommand : public testing::Test {
 protected:
  void SetUp() override {
    RunScript(folder, R"(dialog 107 ok
dialog 106 1000=A ok
command 40050
dialog 106 1000=背景 ok
command 40014
command 40011
command 40004
panel 10002 3
panel 10006 "<b> & \"c\""
command 40011
command 40004
command 40060
file made.cut
command 40052
exit
)");
  }

  std::string Text(const std::string& name) const {
    const Bytes bytes = folder.Read(name);
    return std::string(bytes.begin(), bytes.end());
  }
  void Put(const std::string& name, const std::string& text) const {
    folder.Write(name, Bytes(text.begin(), text.end()));
  }
  void Expect(const Words& words, int status = 0, const std::string& out = "") const {
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, status) << run;
    EXPECT_EQ(run.out, out);
    EXPECT_EQ(run.err.empty(), status == 0) << run;
  }
  // The frames of a cut: time, and the cell of each record.
  std::string Frames(const std::string& name) const {
    const Json cut = Json::parse(folder.Sorvel({"info", name}).out, nullptr, false);
    std::string frames;
    for (const Json& frame : cut["frames"]) {
      frames += frame["time"].dump() + ":";
      for (const Json& record : frame["records"]) {
        frames += record["layer"].dump() + "/" + record["cell"].dump() + ",";
      }
      frames += " ";
    }
    return frames;
  }
  std::string Layers(const std::string& name) const {
    const Json cut = Json::parse(folder.Sorvel({"info", name}).out, nullptr, false);
    std::string layers;
    for (const Json& layer : cut["layers"]) {
      layers += layer["name"].get<std::string>() + std::to_string(layer["cells"].size()) + " ";
    }
    return layers;
  }

  const Folder folder;
};

TEST_F(SheetCommand, ATableListsTheRows) {
  Expect({"sheet", "made.cut", "made.csv"});
  EXPECT_EQ(Text("made.csv"),
            "\xEF\xBB\xBFコマ,秒＋コマ,フレーム,キー,くり返し,O.L,明度,A,背景,備考\r\n"
            "1,0+1,1,,,,50,1,2,\r\n"
            "2,0+2,2,,,,50,|,3,\"<b> & \"\"c\"\"\"\r\n"
            "3,0+3,,,,,,|,|,\r\n"
            "4,0+4,,,,,,|,|,\r\n"
            "5,0+5,3,,,,50,|,×,\r\n"
            "6,0+6,,,,,,|,,\r\n"
            "7,0+7,,,,,,|,,\r\n");
}

TEST_F(SheetCommand, PagesHaveTheTextsOfTheCut) {
  for (const char* name : {"made.html", "made.svg"}) {
    Expect({"sheet", "made.cut", name});
    const std::string page = Text(name);
    for (const char* text : {"タイムシート", ">made<", ">背景<", ">0+7<", "&lt;b&gt; &amp; &quot;c&quot;", ">×<"}) {
      EXPECT_NE(page.find(text), std::string::npos) << name << " " << text;
    }
    EXPECT_EQ(page.find("<b>"), std::string::npos);
  }
  EXPECT_EQ(Text("made.html").substr(0, 15), "<!DOCTYPE html>");
  EXPECT_NE(Text("made.html").find("@page{size:A4"), std::string::npos);
  EXPECT_EQ(Text("made.svg").substr(0, 5), "<?xml");
}

TEST_F(SheetCommand, TheTimingGoesThroughAnExchangeFileUnchanged) {
  const std::string before = Text("made.cut");
  Expect({"sheet", "made.cut", "made.xdts"});
  EXPECT_EQ(Read(Text("made.xdts")), "7 A:0=1; 背景:0=2;1=3;4=;");
  Expect({"sheet", "made.xdts", "made.cut"});
  EXPECT_EQ(Text("made.cut"), before);
}

TEST_F(SheetCommand, ExposuresAreTakenOverAndDrawingsStay) {
  Put("in.xdts", Exchange(8, "[\"背景\"]", {Track(0, {{0, "1"}, {6, "SYMBOL_NULL_CELL"}})}));
  Expect({"sheet", "in.xdts", "made.cut"});
  EXPECT_EQ(Frames("made.cut"), "1:0/0,1/0, 5:0/0,1/0, 2:0/0,1/-3, ");
  EXPECT_EQ(Layers("made.cut"), "A1 背景3 ");
  EXPECT_EQ(folder.Sorvel({"history", "made.cut"}).out.substr(0, 2), "1\t");
}

TEST_F(SheetCommand, LayersAndCellsThatTheCutLacksAreMade) {
  Put("in.xdts", Exchange(3, "[\"B\",\"A\"]", {Track(0, {{1, "2"}}), Track(1, {{0, "002"}})}));
  Expect({"sheet", "in.xdts", "made.cut"});
  EXPECT_EQ(Layers("made.cut"), "A2 背景3 B2 ");
  EXPECT_EQ(Frames("made.cut"), "1:0/1,1/1, 2:0/1,1/2,2/1, ");
}

TEST_F(SheetCommand, NamesThatAreNoNumbersGetTheNextOnes) {
  Put("in.xdts", Exchange(3, "[\"背景\"]", {Track(0, {{0, "2a"}, {1, "4"}, {2, "2a"}})}));
  Expect({"sheet", "in.xdts", "made.cut"}, 0, "背景: 2a is cell 5\n");
  EXPECT_EQ(Layers("made.cut"), "A1 背景5 ");
  EXPECT_EQ(Frames("made.cut"), "1:0/0,1/4, 1:0/0,1/3, 1:0/0,1/4, ");
}

TEST_F(SheetCommand, TracksOfOneNameStandForLayersInTheirOrder) {
  Put("in.xdts", Exchange(2, "[\"N\",\"N\"]", {Track(0, {{0, "1"}}), Track(1, {{0, "2"}})}));
  Expect({"sheet", "in.xdts", "new.cut"});
  EXPECT_EQ(Layers("new.cut"), "N1 N2 ");
  EXPECT_EQ(Frames("new.cut"), "2:0/0,1/1, ");
  Expect({"sheet", "new.cut", "out.xdts"});
  Expect({"sheet", "out.xdts", "new.cut"});
  EXPECT_EQ(Layers("new.cut"), "N1 N2 ");
  // Without names the places decide.
  Put("in.xdts", Exchange(2, "[]", {Track(0, {{0, "1"}}), Track(1, {{0, "1"}}), Track(2, {{0, "1"}})}));
  Expect({"sheet", "in.xdts", "new.cut"});
  EXPECT_EQ(Frames("new.cut"), "2:0/0,1/0,2/0, ");
}

TEST_F(SheetCommand, WhatCantBeHeldLeavesTheCut) {
  const std::string before = Text("made.cut");
  std::vector<std::string> tracks;
  for (int i = 0; i < 256; ++i) tracks.push_back(Track(i, {{0, "1"}}));
  std::string all;
  for (int i = 0; i < 70000; ++i)
    all += (i > 0 ? "," : "") + ("{\"frame\":" + std::to_string(i)) + ",\"data\":[{\"id\":0,\"values\":[\"" +
           std::to_string(i % 2 + 1) + "\"]}]}";
  const std::string cases[] = {"", Exchange(4, "[]", tracks), Exchange(2147483647, "[\"A\"]", {Track(0, {{0, "1"}})}),
                               Exchange(70000, "[\"背景\"]", {"{\"trackNo\":0,\"frames\":[" + all + "]}"})};
  for (const std::string& text : cases) {
    Put("in.xdts", text);
    const Answer run = folder.Sorvel({"sheet", "in.xdts", "made.cut"});
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_TRUE(run.IsOneLineAbout("in.xdts")) << run;
    EXPECT_EQ(Text("made.cut"), before);
  }
}

TEST_F(SheetCommand, WrongNamesAndDamagedCutsFail) {
  Put("in.xdts", Exchange(2, "[]", {Track(0, {{0, "1"}})}));
  Put("bad.cut", "no cut");
  for (const auto& [words, name] :
       std::vector<std::pair<Words, std::string>>{{{"sheet", "made.cut", "out.txt"}, "out.txt"},
                                                  {{"sheet", "made.cut", "made"}, "made"},
                                                  {{"sheet", "in.txt", "made.cut"}, "in.txt"},
                                                  {{"sheet", "in.xdts", "out.csv"}, "out.csv"},
                                                  {{"sheet", "none.xdts", "made.cut"}, "none.xdts"},
                                                  {{"sheet", "none.cut", "out.csv"}, "none.cut"},
                                                  {{"sheet", "bad.cut", "out.csv"}, "bad.cut"},
                                                  {{"sheet", "in.xdts", "bad.cut"}, "bad.cut"},
                                                  {{"sheet", "made.cut", "none/out.csv"}, "none/out.csv"}}) {
    const std::string before = folder.List();
    const Answer run = folder.Sorvel(words);
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_TRUE(run.IsOneLineAbout(name)) << run;
    EXPECT_EQ(folder.List(), before);
  }
  Expect({"sheet", "made.cut"}, 2);
}

// Scripts drive the window of the sheet.

class SheetScript : public testing::Test {
 protected:
  // The squares of a column in a state, a word each.
  static std::string Rows(const Json& sheet, size_t column) {
    std::string rows;
    for (const Json& square : sheet["columns"][column]["rows"]) rows += square.get<std::string>();
    return rows;
  }
  Json State(const std::string& name) const {
    const Bytes bytes = folder.Read(name);
    return Json::parse(bytes.begin(), bytes.end(), nullptr, false);
  }
  static constexpr char kOpen[] = R"(dialog 107 ok
dialog 106 1000=A ok
command 40050
command 40011
command 40004
sheet open
)";

  const Folder folder;
};

TEST_F(SheetScript, ASheetIsDrivenAndItsStateRead) {
  const Answer run = RunScript(folder, std::string(kOpen) + R"(state first.json
sheet drag 0 0 2
sheet select 0 1
sheet type 1
sheet select 0 2 3
sheet type 2
sheet key Shift+Up
sheet delete
sheet key End
sheet key 1
state typed.json
sheet key Enter
sheet screen sheet.bmp
state last.json
sheet close
state closed.json
)");
  EXPECT_EQ(run.status, 0) << run;
  const Json first = State("first.json")["sheet"];
  EXPECT_EQ(Rows(first, 0), "2|");
  EXPECT_EQ(first["selected"], Json::array({1, 1}));
  const Json typed = State("typed.json")["sheet"];
  EXPECT_EQ(typed["typed"], "1");
  EXPECT_EQ(Rows(typed, 0), "21x2");
  const Json last = State("last.json");
  EXPECT_EQ(Rows(last["sheet"], 0), "21x1");
  EXPECT_EQ(last["sheet"]["columns"][0]["layer"], "A");
  EXPECT_EQ(last["sheet"]["title"], "タイムシート - Cut (0+4)");
  EXPECT_EQ(last["cuts"][0]["currentFrame"], 3);
  EXPECT_EQ(last["cuts"][0]["frames"].size(), 4u);
  EXPECT_FALSE(State("closed.json").contains("sheet"));
  EXPECT_GT(folder.Read("sheet.bmp").size(), 100000u);
}

TEST_F(SheetScript, WhatCantBeDoneIsRefused) {
  for (const char* line :
       {"sheet", "sheet shut", "sheet select 0", "sheet select 1 0", "sheet select 0 2", "sheet select 0 0 9",
        "sheet drag 0 5 6", "sheet type x", "sheet type", "sheet key Nowhere", "sheet close now"}) {
    const Answer run = RunScript(folder, std::string(kOpen) + line + "\nexit\n");
    EXPECT_EQ(run.status, 3) << line << run;
    EXPECT_TRUE(run.IsOneLineAbout("test.sorvel:7")) << run;
  }
  for (const char* line : {"sheet select 0 0", "sheet delete", "sheet screen a.bmp", "sheet open\nsheet type 1"}) {
    EXPECT_EQ(RunScript(folder, std::string(line) + "\nexit\n").status, 3) << line;
  }
}

}  // namespace
}  // namespace sorvel
