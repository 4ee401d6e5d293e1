#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "reference/reference.h"
#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/little_bytes.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"
#include "support/places.h"

namespace rules {
namespace {

using nlohmann::json;

// ---- The console program's other commands ----

std::string InShell(const std::string& word) {
  std::string text = "'";
  for (const char character : word) text.append(character == '\'' ? std::string("'\\''") : std::string(1, character));
  return text.append("'");
}

// Runs one command and gives its exit status. Its output and its errors are in files of the session's folder.
int Console(const ScriptSession& session, const Names& words) {
  std::string line = std::string("timeout 20 ").append(InShell(kProgramPath));
  for (const std::string& word : words) line.append(" ").append(InShell(word));
  line.append(" > ").append(InShell(session.Path("output.txt")));
  line.append(" 2> ").append(InShell(session.Path("errors.txt")));
  const int status = std::system(line.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int ConsoleExport(const ScriptSession& session) {
  return Console(session, {"export", session.Path("film.flm"), session.Path("out.sv")});
}

// The stream of a cut that was just read from its file.
std::string Stream(const CutFile& file) {
  ScriptSession session;
  session.Write("x.cut", file.Bytes());
  EXPECT_EQ(Console(session, {"compile", session.Path("x.cut"), session.Path("x.ca")}), 0);
  return session.Bytes("x.ca");
}

// ---- Writing what is expected ----

struct Film {
  std::string title = "title";
  std::string author = "author";
  int width = 24;
  int height = 18;
};

// The container of these records.
std::string Container(const Film& film, const Names& records, int maxWidth, int maxHeight) {
  std::string head = film.title + '\0' + film.author + '\0';
  for (const int value : {film.width, film.height, maxWidth, maxHeight, static_cast<int>(records.size())}) {
    head.append(LittleBytes(value, 2));
  }
  std::string table;
  std::string body;
  const size_t start = 6 + head.size() + 4 * records.size();
  for (const std::string& record : records) {
    table.append(LittleBytes(static_cast<int64_t>(start + body.size()), 4));
    body.append(record);
  }
  return "SV" + LittleBytes(static_cast<int64_t>(start + body.size()), 4) + head + table + body;
}

std::string RecordOf(const CutFile& file) {
  const std::string stream = Stream(file);
  return stream.size() < 6 ? std::string() : stream.substr(6);
}

void WriteFilm(ScriptSession& session, const Names& lines, const Film& film = {}) {
  const std::string size = std::to_string(film.width) + ", " + std::to_string(film.height);
  session.Write("film.flm", FilmText(lines, film.title + "\n" + film.author + "\n" + size + "\n"));
}

// The film, opened in the application.
ScriptSession& OpenFilm(ScriptSession& session, const Names& lines, const Film& film = {}) {
  WriteFilm(session, lines, film);
  return session.Open("film.flm");
}

ScriptSession& Export(ScriptSession& session) {
  return session.File("out.sv").Command(kCommandExportFilm);
}

// ---- The cuts ----

CutFile Still(int color) {
  return CutFile::Showing({color}, {0});
}

// Full size, with a pan, two brightnesses and a picture that stays.
CutFile WideCut() {
  return {.width = 20,
          .height = 10,
          .frameWidth = 12,
          .frameHeight = 6,
          .fps = 24,
          .credit = "Ann",
          .layers = {{.name = "A", .cells = {1, 2}}, {.name = "B", .cells = {3}}},
          .frames = {{.time = 2, .brightness = 50, .x = 4, .y = 2, .records = {{0, 0, 3, 2}, {1, 0, 9, 4}}},
                     {.time = 1, .brightness = 80, .x = 4, .y = 2, .records = {{0, 0, 3, 2}, {1, 0, 9, 4}}},
                     {.time = 3, .brightness = 20, .x = 5, .y = 3, .records = {{0, 1, 6, 4}, {1, 0, 9, 6}}}}};
}

// Half size of odd measures, with a dissolve.
CutFile TallCut() {
  return {.width = 21,
          .height = 27,
          .frameWidth = 16,
          .frameHeight = 20,
          .fps = 12,
          .antialias = 1,
          .layers = {{.name = "A", .cells = {1, 2, 9}}},
          .frames = {{.time = 1, .x = 2, .y = 4, .records = {{0, 0, 5, 7}}},
                     {.time = -3, .brightness = 60, .x = 2, .y = 4, .records = {{0, 1, 6, 9}}},
                     {.time = 2, .x = 4, .y = 6, .records = {{0, 2, 9, 12}}}}};
}

// A quarter of the size, one frame.
CutFile SmallCut() {
  return {.width = 40,
          .height = 24,
          .frameWidth = 32,
          .frameHeight = 20,
          .fps = 30,
          .antialias = 2,
          .credit = "Bo",
          .layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {2}}},
          .frames = {{.time = 4, .x = 4, .y = 4, .records = {{0, 0, 7, 9}, {1, 0, 12, 10}}}}};
}

struct NamedCut {
  std::string name;
  CutFile file;
};

// Writes these cuts, and a film of them.
Names WriteFilmOf(ScriptSession& session, const std::vector<NamedCut>& cuts, const Film& film = {}) {
  Names lines;
  for (const NamedCut& cut : cuts) {
    session.Write(cut.name, cut.file.Bytes());
    lines.push_back(cut.name);
  }
  WriteFilm(session, lines, film);
  return lines;
}

ScriptSession& OpenFilmOf(ScriptSession& session, const std::vector<NamedCut>& cuts) {
  WriteFilmOf(session, cuts);
  return session.Open("film.flm");
}

// Writes the three cuts, and a film of them.
Names WriteThreeCuts(ScriptSession& session, const Film& film = {}) {
  return WriteFilmOf(session, {{"wide.cut", WideCut()}, {"tall.cut", TallCut()}, {"small.cut", SmallCut()}}, film);
}

// ---- A reader of the container ----

struct FrameHead {
  int time = 0;
  int loop = 0;
  int brightness = 0;
  int x = 0;
  int y = 0;
  int boxX = 0;
  int boxY = 0;
  int boxWidth = 0;
  int boxHeight = 0;
  bool operator==(const FrameHead&) const = default;
};

struct CutRecord {
  std::string credit;
  int width = 0;
  int height = 0;
  int frameWidth = 0;
  int frameHeight = 0;
  int fps = 0;
  int levels = 0;
  std::vector<FrameHead> frames;
};

struct ReadFilm {
  uint32_t size = 0;
  std::string title;
  std::string author;
  int width = 0;
  int height = 0;
  int maxWidth = 0;
  int maxHeight = 0;
  int count = 0;
  size_t table = 0;
  std::vector<size_t> offsets;
  std::vector<CutRecord> cuts;
};

class ContainerReader {
 public:
  explicit ContainerReader(const std::string& wholeFile) : bytes(wholeFile) {}

  ReadFilm Read() {
    ReadFilm film;
    EXPECT_EQ(bytes.substr(0, 2), "SV");
    position = 2;
    film.size = static_cast<uint32_t>(Unsigned(4));
    film.title = Text();
    film.author = Text();
    film.width = Short();
    film.height = Short();
    film.maxWidth = Short();
    film.maxHeight = Short();
    film.count = Short();
    film.table = position;
    for (int i = 0; i < film.count && position < bytes.size(); ++i) {
      film.offsets.push_back(static_cast<size_t>(Unsigned(4)));
    }
    for (size_t i = 0; i < film.offsets.size(); ++i) {
      EXPECT_EQ(position, film.offsets[i]) << "record " << i << " doesn't begin where the one before it ends";
      film.cuts.push_back(Record(i + 1 < film.offsets.size() ? film.offsets[i + 1] : bytes.size()));
    }
    EXPECT_EQ(position, bytes.size());
    return film;
  }

 private:
  int64_t Unsigned(size_t count) {
    position += count;
    return LittleAt(bytes, position - count, count);
  }
  int Short() { return static_cast<int16_t>(Unsigned(2)); }
  int Byte() { return static_cast<int>(Unsigned(1)); }
  std::string Text() {
    std::string text;
    while (position < bytes.size() && bytes[position] != '\0') text.push_back(bytes[position++]);
    ++position;
    return text;
  }
  CutRecord Record(size_t end) {
    CutRecord record;
    record.credit = Text();
    record.width = Short();
    record.height = Short();
    record.frameWidth = Short();
    record.frameHeight = Short();
    record.fps = Byte();
    record.levels = Byte() + 1;
    while (position < end) {
      FrameHead frame;
      frame.time = Short();
      frame.loop = Short();
      frame.brightness = Byte();
      for (int* field : {&frame.x, &frame.y, &frame.boxX, &frame.boxY, &frame.boxWidth, &frame.boxHeight}) {
        *field = Short();
      }
      const int64_t sections = Unsigned(4) + Unsigned(4);
      const int rowBytes = (frame.boxWidth + 7) / 8;
      position += static_cast<size_t>(frame.boxHeight * ((rowBytes + 7) / 8) + sections);
      record.frames.push_back(frame);
    }
    EXPECT_EQ(position, end) << "a frame reaches over the end of its record";
    return record;
  }

  const std::string bytes;
  size_t position = 0;
};

// ---- What a player should show ----

int ScaleOf(const CutFile& file) {
  return file.antialias == 0 ? 1 : file.antialias == 1 ? 2 : 4;
}

using Ticks = std::vector<reference::Tick>;

// The ticks of a film of these cuts.
Ticks TicksOf(const Film& film, const std::vector<CutFile>& cuts, int count) {
  std::vector<reference::Bytes> streams;
  for (const CutFile& cut : cuts) {
    const std::string file = cut.Bytes();
    reference::CutData data;
    EXPECT_TRUE(reference::ReadCut({file.begin(), file.end()}, &data));
    bool refused = false;
    streams.push_back(reference::EncodeCut(data, 0, static_cast<int>(cut.frames.size()) - 1, &refused));
  }
  return reference::Play(reference::WriteContainer(film.title, film.author, film.width, film.height, streams), count);
}

testing::AssertionResult IsPicture(const PixelMatrix& picture, const Film& film, const reference::Bytes& greys) {
  if (picture.Width() != film.width || picture.Height() != film.height) {
    return testing::AssertionFailure() << "the picture is " << picture.Width() << " by " << picture.Height();
  }
  for (int y = 0; y < film.height; ++y) {
    for (int x = 0; x < film.width; ++x) {
      const uint32_t grey = greys[static_cast<size_t>(y * film.width + x)];
      if (picture.At(x, y) == grey) continue;
      return testing::AssertionFailure() << "(" << x << ", " << y << ") is " << picture.At(x, y) << " instead of "
                                         << grey;
    }
  }
  return testing::AssertionSuccess();
}

// A play by the console program: its lines, and its pictures by the number of their tick.
class Played {
 public:
  Played(const ScriptSession& from, const std::string& name, int ticks) : session(from), folder("play-" + name) {
    std::filesystem::create_directory(session.Path(folder));
    status = Console(session, {"play", session.Path(name), session.Path(folder), "--ticks", std::to_string(ticks)});
    std::istringstream text(session.Bytes(folder + "/ticks.jsonl"));
    std::string line;
    while (std::getline(text, line)) lines.push_back(json::parse(line, nullptr, false));
  }
  bool HasPicture(size_t tick) const { return session.Exists(Name(tick)); }
  PixelMatrix Picture(size_t tick) const { return PixelMatrix::FromGreyMap(session.Path(Name(tick))); }

  int status = -1;
  std::vector<json> lines;

 private:
  std::string Name(size_t tick) const {
    const std::string digits = std::to_string(tick);
    return folder + "/tick-" + std::string(5 - digits.size(), '0') + digits + ".pgm";
  }
  const ScriptSession& session;
  std::string folder;
};

void ExpectTicks(const Played& played, const Film& film, const Ticks& ticks) {
  EXPECT_EQ(played.status, 0);
  ASSERT_EQ(played.lines.size(), ticks.size());
  for (size_t i = 0; i < ticks.size(); ++i) {
    SCOPED_TRACE("tick " + std::to_string(i));
    const reference::Tick& tick = ticks[i];
    const json line = {{"tick", i},
                       {"painted", tick.painted},
                       {"delay", tick.delay},
                       {"ticks", tick.ticks},
                       {"nextTime", tick.nextTime},
                       {"viewLeft", tick.viewLeft},
                       {"viewTop", tick.viewTop},
                       {"viewport", tick.viewport}};
    EXPECT_EQ(played.lines[i], line);
    ASSERT_EQ(played.HasPicture(i), tick.painted);
    if (!tick.painted) continue;
    EXPECT_TRUE(IsPicture(played.Picture(i), film, tick.picture));
  }
}

// ---- The fields of the container ----

using FilmContainer = SessionTest;

TEST_F(FilmContainer, HasTheFieldsOfTheFilmAndOfEachCut) {
  const Film film = {.title = "My film", .author = "Me", .width = 24, .height = 18};
  WriteThreeCuts(session, film);
  ASSERT_EQ(ConsoleExport(session), 0);
  const std::string bytes = session.Bytes("out.sv");
  const ReadFilm read = ContainerReader(bytes).Read();
  EXPECT_EQ(read.size, bytes.size());
  EXPECT_EQ(read.title, "My film");
  EXPECT_EQ(read.author, "Me");
  EXPECT_EQ(read.width, 24);
  EXPECT_EQ(read.height, 18);
  EXPECT_EQ(read.maxWidth, 20);
  EXPECT_EQ(read.maxHeight, 13);
  EXPECT_EQ(read.count, 3);
  EXPECT_EQ(read.table, 8U + 7 + 2 + 10);
  ASSERT_EQ(read.cuts.size(), 3U);
  EXPECT_EQ(read.offsets[0], read.table + 4 * 3);
  const std::vector<CutFile> cuts = {WideCut(), TallCut(), SmallCut()};
  for (size_t i = 0; i < cuts.size(); ++i) {
    const int scale = ScaleOf(cuts[i]);
    EXPECT_EQ(read.cuts[i].credit, cuts[i].credit) << i;
    EXPECT_EQ(read.cuts[i].width, cuts[i].width / scale) << i;
    EXPECT_EQ(read.cuts[i].height, cuts[i].height / scale) << i;
    EXPECT_EQ(read.cuts[i].frameWidth, cuts[i].frameWidth / scale) << i;
    EXPECT_EQ(read.cuts[i].frameHeight, cuts[i].frameHeight / scale) << i;
    EXPECT_EQ(read.cuts[i].fps, cuts[i].fps) << i;
    EXPECT_EQ(read.cuts[i].levels, cuts[i].antialias == 0 ? 4 : 13) << i;
    ASSERT_EQ(read.cuts[i].frames.size(), cuts[i].frames.size()) << i;
    for (size_t j = 0; j < cuts[i].frames.size(); ++j) {
      const FrameHead& head = read.cuts[i].frames[j];
      const FileFrame& frame = cuts[i].frames[j];
      EXPECT_EQ(head.time, frame.time) << i << ", " << j;
      EXPECT_EQ(head.loop, frame.loop) << i << ", " << j;
      EXPECT_EQ(head.brightness, frame.brightness) << i << ", " << j;
      EXPECT_EQ(head.x, frame.x / scale) << i << ", " << j;
      EXPECT_EQ(head.y, frame.y / scale) << i << ", " << j;
    }
    EXPECT_EQ(read.cuts[i].frames[0].boxX, 0);
    EXPECT_EQ(read.cuts[i].frames[0].boxY, 0);
    EXPECT_EQ(read.cuts[i].frames[0].boxWidth, cuts[i].width / scale);
    EXPECT_EQ(read.cuts[i].frames[0].boxHeight, cuts[i].height / scale);
  }
  // The second frame of the first cut shows the same picture.
  EXPECT_EQ(read.cuts[0].frames[1], (FrameHead{.time = 1, .loop = 1, .brightness = 80, .x = 4, .y = 2}));
}

TEST_F(FilmContainer, IsTheHeadTheTableAndTheStreamsWithoutTheirFirstSixBytes) {
  WriteThreeCuts(session);
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"),
            Container({}, {RecordOf(WideCut()), RecordOf(TallCut()), RecordOf(SmallCut())}, 20, 13));
}

TEST_F(FilmContainer, EmptyTextsAreOneZeroByteEach) {
  const Film film = {.title = "", .author = ""};
  WriteFilmOf(session, {{"a.cut", Still(1)}}, film);
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container(film, {RecordOf(Still(1))}, 8, 3));
}

TEST_F(FilmContainer, KeepsTheBytesOfJapaneseTexts) {
  // The second byte of the first character is a backslash.
  const Film film = {.title = "\x83\x5C\x83\x76", .author = "\x95\x5C"};
  CutFile cut = Still(1);
  cut.credit = "\x94\x5C";
  WriteFilmOf(session, {{"a.cut", cut}}, film);
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container(film, {RecordOf(cut)}, 8, 3));
  EXPECT_EQ(ContainerReader(session.Bytes("out.sv")).Read().cuts[0].credit, "\x94\x5C");
}

TEST_F(FilmContainer, FirstFrameOfEachCutStartsCleanly) {
  CutFile cut = CutFile::Showing({1, 2}, {0, 1});
  cut.frames[0].time = -3;
  cut.frames[0].loop = 0;
  cut.frames[1].time = -2;
  cut.frames[1].loop = 0;
  session.Write("a.cut", cut.Bytes());
  WriteFilm(session, {"a.cut", "a.cut"});
  ASSERT_EQ(ConsoleExport(session), 0);
  const std::string bytes = session.Bytes("out.sv");
  const ReadFilm read = ContainerReader(bytes).Read();
  ASSERT_EQ(read.cuts.size(), 2U);
  for (const CutRecord& record : read.cuts) {
    ASSERT_EQ(record.frames.size(), 2U);
    EXPECT_EQ(record.frames[0].time, 3);
    EXPECT_EQ(record.frames[0].loop, 1);
    EXPECT_EQ(record.frames[1].time, -2);
    EXPECT_EQ(record.frames[1].loop, 0);
  }
}

TEST_F(FilmContainer, KeyFramesHaveTheirEffectiveTimes) {
  CutFile cut = CutFile::Showing({1, 2}, {0, 1, 0, 1});
  const int times[] = {10, 2, 3, 4};
  const int stored[] = {-51, 50, 50, -1 - 70};
  for (size_t i = 0; i < 4; ++i) {
    cut.frames[i].time = times[i];
    cut.frames[i].brightness = stored[i];
  }
  WriteFilmOf(session, {{"a.cut", cut}});
  ASSERT_EQ(ConsoleExport(session), 0);
  const std::string bytes = session.Bytes("out.sv");
  const ReadFilm read = ContainerReader(bytes).Read();
  ASSERT_EQ(read.cuts.size(), 1U);
  ASSERT_EQ(read.cuts[0].frames.size(), 4U);
  const int expected[] = {5, 2, 3, 4};
  for (size_t i = 0; i < 4; ++i) EXPECT_EQ(read.cuts[0].frames[i].time, expected[i]) << i;
  EXPECT_EQ(read.cuts[0].frames[0].brightness, 50);
  EXPECT_EQ(read.cuts[0].frames[3].brightness, 70);
}

TEST_F(FilmContainer, ACutListedTwiceIsStoredTwice) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("b.cut", SmallCut().Bytes());
  WriteFilm(session, {"a.cut", "b.cut", "a.cut"});
  ASSERT_EQ(ConsoleExport(session), 0);
  const std::string wide = RecordOf(WideCut());
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {wide, RecordOf(SmallCut()), wide}, 20, 10));
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "b.ca", "b.cut", "film.flm", "out.sv"}));
}

TEST_F(FilmContainer, ACutWithoutFramesHasAnEmptyRecord) {
  session.Write("none.cut", CutFile::WithoutLayers(0).Bytes());
  session.Write("a.cut", Still(1).Bytes());
  OpenFilm(session, {"a.cut", "none.cut"});
  Export(session).Run();
  EXPECT_TRUE(session.Exists("none.ca"));
  EXPECT_EQ(session.Bytes("none.ca"), "");
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(Still(1)), ""}, 8, 3));
}

// ---- Cache files ----

using FilmExport = SessionTest;

TEST_F(FilmExport, MakesTheCacheFilesThatAreMissing) {
  WriteThreeCuts(session);
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Files(),
            (Names{"film.flm", "out.sv", "small.ca", "small.cut", "tall.ca", "tall.cut", "wide.ca", "wide.cut"}));
  EXPECT_EQ(session.Bytes("wide.ca"), Stream(WideCut()));
  EXPECT_EQ(session.Bytes("tall.ca"), Stream(TallCut()));
  EXPECT_EQ(session.Bytes("small.ca"), Stream(SmallCut()));
}

TEST_F(FilmExport, CacheFilesLieBesideTheirCutsUnderTheirNames) {
  std::filesystem::create_directory(session.Path("sub"));
  session.Write("sub/x.cut", Still(1).Bytes());
  session.Write("a.b.CUT", Still(2).Bytes());
  session.Write("plain", Still(3).Bytes());
  WriteFilm(session, {"sub/x.cut", "a.b.CUT", "plain"});
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Files(), (Names{"a.b.CUT", "a.b.ca", "film.flm", "out.sv", "plain", "plain.ca", "sub"}));
  EXPECT_EQ(session.Bytes("sub/x.ca"), Stream(Still(1)));
  EXPECT_EQ(session.Bytes("a.b.ca"), Stream(Still(2)));
  EXPECT_EQ(session.Bytes("plain.ca"), Stream(Still(3)));
}

TEST_F(FilmExport, TwoCutsOfOneNameShareTheCacheOfTheFirst) {
  WriteFilmOf(session, {{"a.one", WideCut()}, {"a.two", SmallCut()}});
  ASSERT_EQ(ConsoleExport(session), 0);
  const std::string wide = RecordOf(WideCut());
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {wide, wide}, 20, 10));
  EXPECT_EQ(session.Bytes("a.ca"), Stream(WideCut()));
}

TEST_F(FilmExport, AnEntryThatIsAStreamItselfIsCopied) {
  session.Write("a.ca", Stream(WideCut()));
  WriteFilm(session, {"a.ca"});
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut())}, 20, 10));
}

// A cache of another picture than its cut's, older than the cut.
struct StaleCache : SessionTest {
  StaleCache() {
    session.Write("a.cut", WideCut().Bytes());
    session.Write("a.ca", old);
    const auto then = std::filesystem::last_write_time(session.Path("a.cut")) - std::chrono::hours(48);
    std::filesystem::last_write_time(session.Path("a.ca"), then);
    WriteFilm(session, {"a.cut"});
  }
  void ExpectTheOldStream() {
    EXPECT_EQ(session.Bytes("out.sv"), Container({}, {old.substr(6)}, 10, 6));
    EXPECT_EQ(session.Bytes("a.ca"), old);
    EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "film.flm", "out.sv"}));
  }
  const std::string old = Stream(SmallCut());
};

TEST_F(StaleCache, IsTakenAsItIsByTheConsoleProgram) {
  ASSERT_EQ(ConsoleExport(session), 0);
  ExpectTheOldStream();
}

TEST_F(StaleCache, IsTakenAsItIsByTheApplication) {
  session.Open("film.flm");
  Export(session).Run();
  ExpectTheOldStream();
}

TEST_F(StaleCache, IsTakenEvenForAnOpenCutThatNeedsCompiling) {
  session.Open("film.flm").Open("a.cut").Command(kCommandBlankCell);
  Export(session);
  const int state = session.State();
  session.Run();
  ExpectTheOldStream();
  EXPECT_EQ(MarksOf(session, state), "modified imagesStale timingStale");
}

TEST_F(StaleCache, IsReplacedByAPlayOfTheCutAndThenCounts) {
  session.Open("film.flm").Open("a.cut").Command(kCommandPlay);
  Export(session).Run();
  EXPECT_EQ(session.Bytes("a.ca"), Stream(WideCut()));
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut())}, 20, 10));
}

TEST_F(StaleCache, DoesWithoutItsCut) {
  std::filesystem::remove(session.Path("a.cut"));
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {old.substr(6)}, 10, 6));
  EXPECT_EQ(session.Files(), (Names{"a.ca", "film.flm", "out.sv"}));
}

TEST_F(StaleCache, PlaysInASelection) {
  session.Open("film.flm").Command(kCommandPlaySelection);
  EXPECT_EQ(PlayerOf(session)["title"], SizeTitle(Container({}, {old.substr(6)}, 10, 6).size()));
  EXPECT_EQ(session.Bytes("a.ca"), old);
}

TEST_F(FilmExport, AFreshCacheIsNotWrittenAgain) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("a.ca", Stream(WideCut()));
  const auto then = std::filesystem::last_write_time(session.Path("a.ca")) - std::chrono::hours(1);
  std::filesystem::last_write_time(session.Path("a.ca"), then);
  std::filesystem::permissions(session.Path("a.ca"), std::filesystem::perms::owner_read);
  WriteFilm(session, {"a.cut"});
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut())}, 20, 10));
  EXPECT_EQ(std::filesystem::last_write_time(session.Path("a.ca")), then);
}

// A cut that is open and was changed without a save; the film's entry knows it.
struct OpenChangedCut : SessionTest {
  OpenChangedCut() {
    OpenFilmOf(session, {{"a.cut", WideCut()}}).Open("a.cut").Command(kCommandBlankCell);
    changed.frames[2].records[1].cell = -1;
  }
  CutFile changed = WideCut();
};

TEST_F(OpenChangedCut, IsCompiledAsItStandsInItsWindow) {
  Export(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("a.ca"), Stream(changed));
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(changed)}, 20, 10));
  EXPECT_EQ(session.Bytes("a.cut"), WideCut().Bytes());
  EXPECT_EQ(MarksOf(session, state), "modified imagesStale timingStale");
}

TEST_F(OpenChangedCut, IsCompiledForASelectionToo) {
  session.Command(kCommandPlaySelection);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("a.ca"), Stream(changed));
  EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(Container({}, {RecordOf(changed)}, 20, 10).size()));
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST_F(OpenChangedCut, AChangeAfterTheFirstExportDoesNotCount) {
  Export(session).Command(kCommandBlankCell).File("second.sv").Command(kCommandExportFilm).Run();
  EXPECT_EQ(session.Bytes("second.sv"), session.Bytes("out.sv"));
  EXPECT_EQ(session.Bytes("a.ca"), Stream(changed));
}

TEST_F(OpenChangedCut, ItsViewStaysAsItWas) {
  const int before = session.View();
  Export(session);
  const int after = session.View();
  EXPECT_TRUE(session.ViewAt(after) == session.ViewAt(before));
}

TEST_F(OpenChangedCut, SavedUnderAnotherNameStillFillsTheCacheOfItsEntry) {
  session.SaveCutAs("b.cut");
  Export(session).Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "b.cut", "film.flm", "out.sv"}));
  EXPECT_EQ(session.Bytes("a.ca"), Stream(changed));
}

TEST_F(OpenChangedCut, ClosedWithoutASaveIsReadFromItsFile) {
  session.Answer("no").Close();
  Export(session).Run();
  EXPECT_EQ(session.Bytes("a.ca"), Stream(WideCut()));
}

TEST_F(FilmExport, ACutThatWasOpenBeforeItsFilmIsReadFromItsFile) {
  session.OpenCut("a.cut", WideCut()).Command(kCommandBlankCell);
  OpenFilm(session, {"a.cut"});
  Export(session);
  json film = session.NowState()["film"];
  EXPECT_EQ(film["cuts"][0]["open"], false);
  EXPECT_EQ(session.Bytes("a.ca"), Stream(WideCut()));
}

TEST_F(FilmExport, DoesNotCommitWhatIsStillInThePanels) {
  OpenFilmOf(session, {{"a.cut", WideCut()}}).Open("a.cut").Panel(kBrightnessEdit, "90");
  Export(session);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("a.ca"), Stream(WideCut()));
  EXPECT_EQ(session.Frame(state)["brightness"], 20);
}

TEST_F(FilmExport, AnOpenCutThatShowsOneLayerIsCompiledSo) {
  OpenFilmOf(session, {{"small.cut", SmallCut()}}).Open("small.cut").Command(kCommandCurrentCellOnly);
  Export(session).Run();
  CutFile upper = SmallCut();
  upper.frames[0].records.erase(upper.frames[0].records.begin());
  EXPECT_EQ(session.Bytes("small.ca"), Stream(upper));
}

TEST_F(FilmExport, CompilingSelectsTheCurrentRecordInTheFramesThatDiffer) {
  OpenFilmOf(session, {{"a.cut", WideCut()}}).Open("a.cut").Select(kLayerList, {0});
  const int before = session.State();
  Export(session);
  const int after = session.State();
  EXPECT_EQ(session.FrameAt(0, before)["currentRecord"], 1);
  EXPECT_EQ(session.FrameAt(1, before)["currentRecord"], 1);
  EXPECT_EQ(session.FrameAt(2, before)["currentRecord"], 0);
  EXPECT_EQ(session.FrameAt(0, after)["currentRecord"], 0);
  EXPECT_EQ(session.FrameAt(1, after)["currentRecord"], 1) << "it shows the same as the frame before it";
  EXPECT_EQ(session.FrameAt(2, after)["currentRecord"], 0);
}

// ---- Damaged caches ----

using DamagedCache = SessionTest;

TEST_F(DamagedCache, IsCopiedFromItsSeventhByteOn) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("b.cut", SmallCut().Bytes());
  const std::string record("no\0\x2C\x01\x02\x00garbage\xFF\x00\xFF", 17);
  session.Write("b.ca", "XYabcd" + record);
  OpenFilm(session, {"a.cut", "b.cut"});
  Export(session).Run();
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut()), record}, 300, 10));
  EXPECT_EQ(session.Bytes("b.ca"), "XYabcd" + record);
}

TEST_F(DamagedCache, NegativeSizesNeverCount) {
  session.Write("a.ca", std::string("CAabcd\0\xFF\xFF\x00\x80", 11));
  OpenFilm(session, {"a.cut"});
  Export(session).Run();
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {std::string("\0\xFF\xFF\x00\x80", 5)}, 0, 0));
}

class ShortCache : public SessionTest, public testing::WithParamInterface<size_t> {};

TEST_P(ShortCache, GivesWhatIsBehindItsSixthByte) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("b.cut", SmallCut().Bytes());
  const std::string cache = std::string("CA\x09\0\0\0longcredit", 16).substr(0, GetParam());
  session.Write("b.ca", cache);
  OpenFilm(session, {"a.cut", "b.cut"});
  Export(session).Run();
  const std::string record = cache.size() < 6 ? std::string() : cache.substr(6);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut()), record}, 20, 10));
  EXPECT_EQ(session.Bytes("b.ca"), cache);
}

INSTANTIATE_TEST_SUITE_P(Cache, ShortCache, testing::Values(0, 1, 5, 6, 7, 16));

// ---- Caches and cuts that can't be opened ----

// A name that leads into a folder that isn't there can neither be read nor made.
struct CacheThatCanNotBeMade : SessionTest {
  CacheThatCanNotBeMade() {
    session.Write("a.cut", WideCut().Bytes());
    session.Write("b.cut", SmallCut().Bytes());
    std::filesystem::create_symlink(session.Path("nofolder/b.ca"), session.Path("b.ca"));
    WriteFilm(session, {"a.cut", "b.cut"});
  }
};

TEST_F(CacheThatCanNotBeMade, DoesNotKeepTheCutOutOfTheFilm) {
  EXPECT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut()), RecordOf(SmallCut())}, 20, 10));
  EXPECT_TRUE(std::filesystem::is_symlink(session.Path("b.ca")));
  EXPECT_FALSE(session.Exists("b.ca"));
}

TEST_F(CacheThatCanNotBeMade, DoesNotKeepTheCutFromPlaying) {
  session.Open("film.flm").OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay);
  session.Select(kCutList, {0, 1}).Command(kCommandPlaySelection);
  EXPECT_TRUE(Holds(session, "player/visible", true, "player/timer", true));
  const std::string container = Container({}, {RecordOf(WideCut()), RecordOf(SmallCut())}, 20, 10);
  EXPECT_EQ(PlayerOf(session)["title"], SizeTitle(container.size()));
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "b.ca", "b.cut", "c.ca", "c.cut", "film.flm"}));
  EXPECT_FALSE(session.Exists("b.ca"));
}

TEST_F(FilmExport, AFolderInTheCachesPlaceIsNoCache) {
  session.Write("a.cut", WideCut().Bytes());
  std::filesystem::create_directory(session.Path("a.ca"));
  WriteFilm(session, {"a.cut"});
  EXPECT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(WideCut())}, 20, 10));
  EXPECT_TRUE(std::filesystem::is_directory(session.Path("a.ca")));
}

TEST_F(FilmExport, AFolderInTheCachesPlaceDoesNotKeepTheCutFromPlaying) {
  session.Write("a.cut", WideCut().Bytes());
  std::filesystem::create_directory(session.Path("a.ca"));
  OpenFilm(session, {"a.cut"}).Command(kCommandPlaySelection);
  EXPECT_EQ(PlayerOf(session)["visible"], true);
  EXPECT_TRUE(std::filesystem::is_directory(session.Path("a.ca")));
}

using MissingCut = SessionTest;

TEST_F(MissingCut, LeavesNoFileInTheApplicationEither) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("c.cut", SmallCut().Bytes());
  OpenFilm(session, {"a.cut", "gone.cut", "c.cut"});
  Export(session).Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "c.cut", "film.flm"}));
}

TEST_F(MissingCut, LeavesAnOlderExportAsItIs) {
  session.Write("b.cut", WideCut().Bytes());
  session.Write("out.sv", "older");
  OpenFilm(session, {"gone.cut", "b.cut"});
  Export(session).Run();
  EXPECT_EQ(session.Files(), (Names{"b.cut", "film.flm", "out.sv"}));
  EXPECT_EQ(session.Bytes("out.sv"), "older");
}

TEST_F(MissingCut, FailsTheConsoleExportWhichLeavesNoFile) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("c.cut", SmallCut().Bytes());
  WriteFilm(session, {"a.cut", "gone.cut", "c.cut"});
  EXPECT_EQ(ConsoleExport(session), 1);
  EXPECT_FALSE(session.Exists("out.sv"));
  const std::string errors = session.Bytes("errors.txt");
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  EXPECT_NE(errors.find("gone.cut"), std::string::npos) << errors;
}

TEST_F(MissingCut, OutsideTheSelectionDoesNotMatter) {
  session.Write("a.cut", WideCut().Bytes());
  OpenFilm(session, {"gone.cut", "a.cut"}).Select(kCutList, {1}).Command(kCommandPlaySelection);
  EXPECT_TRUE(Holds(session, "player/visible", true, "player/title",
                    SizeTitle(Container({}, {RecordOf(WideCut())}, 20, 10).size())));
}

TEST_F(MissingCut, BehindOthersInTheSelectionLeavesTheirCachesAndNoPlay) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("c.cut", SmallCut().Bytes());
  OpenFilm(session, {"a.cut", "gone.cut", "c.cut"}).OpenCut("d.cut", CutFile::Showing({1, 2}, {0, 1}));
  session.Command(kCommandPlay).Select(kCutList, {0, 1, 2}).Command(kCommandPlaySelection);
  EXPECT_TRUE(Holds(session, "player/visible", false, "player/timer", false));
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "c.cut", "d.ca", "d.cut", "film.flm"}));
}

TEST(ForeignCut, FailsLikeAMissingOneAndGetsNoCache) {
  ScriptSession session;
  session.Write("a.cut", "Sorvelin Layer");
  OpenFilm(session, {"a.cut"});
  Export(session).Run();
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
  EXPECT_EQ(ConsoleExport(session), 1);
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
}

TEST_F(FilmExport, AnAntialiasByteOfThreeIsAHalf) {
  CutFile cut = TallCut();
  cut.antialias = 3;
  WriteFilmOf(session, {{"a.cut", cut}});
  ASSERT_EQ(ConsoleExport(session), 0);
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(TallCut())}, 10, 13));
}

// ---- The dialog and the target ----

TEST_F(FilmExport, WithoutCutsShowsNoDialog) {
  OpenFilm(session, {}).Command(kCommandExportFilm).Run(0);
  EXPECT_EQ(session.Files(), Names{"film.flm"});
}

TEST_F(FilmExport, WithoutCutsFailsInTheConsoleProgram) {
  WriteFilm(session, {});
  EXPECT_EQ(ConsoleExport(session), 1);
  EXPECT_EQ(session.Files(), Names{"film.flm"});
}

TEST_F(FilmExport, NameWithoutExtensionGetsSv) {
  OpenFilmOf(session, {{"a.cut", WideCut()}}).File("named").Command(kCommandExportFilm).Run();
  EXPECT_EQ(session.Files(), (Names{"a.ca", "a.cut", "film.flm", "named.sv"}));
}

TEST_F(FilmExport, CancelWritesNothing) {
  OpenFilmOf(session, {{"a.cut", WideCut()}}).File("cancel").Command(kCommandExportFilm).Run();
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
}

TEST_F(FilmExport, TargetThatCanNotBeOpenedIsSilentAndCompilesNothing) {
  OpenFilmOf(session, {{"a.cut", WideCut()}}).File("nofolder/out.sv").Command(kCommandExportFilm).Run();
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
}

TEST_F(FilmExport, TargetThatCanNotBeOpenedFailsInTheConsoleProgram) {
  WriteFilmOf(session, {{"a.cut", WideCut()}});
  EXPECT_EQ(Console(session, {"export", session.Path("film.flm"), session.Path("nofolder/out.sv")}), 1);
  const std::string errors = session.Bytes("errors.txt");
  EXPECT_NE(errors.find("out.sv"), std::string::npos) << errors;
}

TEST_F(FilmExport, ALongerFileOfTheSameNameIsReplaced) {
  session.Write("a.cut", Still(1).Bytes());
  session.Write("out.sv", std::string(5000, 'x'));
  OpenFilm(session, {"a.cut"});
  Export(session).Run();
  EXPECT_EQ(session.Bytes("out.sv"), Container({}, {RecordOf(Still(1))}, 8, 3));
}

TEST_F(FilmExport, LeavesARunningPlayAlone) {
  session.Write("a.cut", WideCut().Bytes());
  session.Write("a.ca", Stream(WideCut()));
  OpenFilm(session, {"a.cut"}).OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay);
  const int before = session.State();
  Export(session);
  const int after = session.State();
  session.Line("tick 1");
  const int picture = session.Player();
  EXPECT_EQ(PlayerOf(session, before)["timer"], true);
  EXPECT_EQ(PlayerOf(session, after), PlayerOf(session, before));
  EXPECT_EQ(session.PlayerAt(picture).Count(85), 24);
}

TEST_F(FilmExport, TakesEveryCutWhateverIsSelected) {
  const Names lines = WriteThreeCuts(session);
  OpenFilm(session, lines).Select(kCutList, {1});
  Export(session).Run();
  EXPECT_EQ(ContainerReader(session.Bytes("out.sv")).Read().count, 3);
}

TEST_F(FilmExport, ApplicationAndConsoleProgramAgree) {
  ScriptSession application;
  ScriptSession console;
  const Film film = {.title = "T", .author = "", .width = 321, .height = 1};
  for (ScriptSession* each : {&application, &console}) {
    WriteThreeCuts(*each, film);
    each->Write("stale.cut", Still(2).Bytes());
    each->Write("stale.ca", Stream(Still(3)));
    WriteFilm(*each, {"small.cut", "stale.cut", "wide.cut", "small.cut", "tall.cut"}, film);
  }
  application.Open(application.Path("film.flm"));
  Export(application).Run();
  ASSERT_EQ(ConsoleExport(console), 0);
  ASSERT_EQ(application.Files(), console.Files());
  for (const std::string& name : console.Files()) EXPECT_EQ(application.Bytes(name), console.Bytes(name)) << name;
  const std::string small = RecordOf(SmallCut());
  EXPECT_EQ(console.Bytes("out.sv"),
            Container(film, {small, RecordOf(Still(3)), RecordOf(WideCut()), small, RecordOf(TallCut())}, 20, 13));
}

// ---- Playing the container ----

using PlayedContainer = SessionTest;

TEST_F(PlayedContainer, ShowsEachCutInItsTurnAndStartsOver) {
  WriteThreeCuts(session);
  ASSERT_EQ(ConsoleExport(session), 0);
  // The three cuts take 6, 6 and 4 ticks.
  ExpectTicks(Played(session, "out.sv", 40), {}, TicksOf({}, {WideCut(), TallCut(), SmallCut()}, 40));
}

TEST_F(PlayedContainer, ShowsThePicturesOfEachCutsOwnStream) {
  WriteThreeCuts(session);
  ASSERT_EQ(ConsoleExport(session), 0);
  const Played whole(session, "out.sv", 16);
  ASSERT_EQ(whole.lines.size(), 16U);
  struct Part {
    std::string name;
    size_t start;
    size_t count;
  };
  // A stream of one frame is a still, of which there is one tick alone.
  for (const Part& part : {Part{"wide.ca", 0, 6}, Part{"tall.ca", 6, 6}, Part{"small.ca", 12, 1}}) {
    const Played alone(session, part.name, static_cast<int>(part.count));
    ASSERT_EQ(alone.lines.size(), part.count) << part.name;
    for (size_t i = 0; i < part.count; ++i) {
      const json& ours = whole.lines[part.start + i];
      const json& theirs = alone.lines[i];
      EXPECT_EQ(ours["viewport"], theirs["viewport"]) << part.name << " " << i;
      EXPECT_EQ(ours["painted"], theirs["painted"]) << part.name << " " << i;
      ASSERT_EQ(whole.HasPicture(part.start + i), alone.HasPicture(i)) << part.name << " " << i;
      if (!alone.HasPicture(i)) continue;
      const PixelMatrix left = whole.Picture(part.start + i);
      const PixelMatrix right = alone.Picture(i);
      for (int y = 0; y < theirs["viewport"][3].get<int>(); ++y) {
        for (int x = 0; x < theirs["viewport"][2].get<int>(); ++x) {
          ASSERT_EQ(left.At(ours["viewLeft"].get<int>() + x, ours["viewTop"].get<int>() + y),
                    right.At(theirs["viewLeft"].get<int>() + x, theirs["viewTop"].get<int>() + y))
              << part.name << " " << i << ": " << x << ", " << y;
        }
      }
    }
  }
}

TEST_F(PlayedContainer, FilmSmallerThanItsCutsShowsTheirMiddle) {
  const Film film = {.width = 7, .height = 3};
  WriteThreeCuts(session, film);
  ASSERT_EQ(ConsoleExport(session), 0);
  ExpectTicks(Played(session, "out.sv", 20), film, TicksOf(film, {WideCut(), TallCut(), SmallCut()}, 20));
}

TEST_F(PlayedContainer, OneCutOfOneFrameIsAStill) {
  WriteFilmOf(session, {{"a.cut", SmallCut()}});
  ASSERT_EQ(ConsoleExport(session), 0);
  ExpectTicks(Played(session, "out.sv", 10), {}, TicksOf({}, {SmallCut()}, 10));
}

TEST_F(PlayedContainer, TwoCutsOfOneFrameHaveTheirTimesAndRates) {
  CutFile first = Still(1);
  first.fps = 10;
  first.frames[0].time = 2;
  CutFile second = Still(2);
  second.fps = 24;
  second.frames[0].time = -3;
  WriteFilmOf(session, {{"a.cut", first}, {"b.cut", second}});
  ASSERT_EQ(ConsoleExport(session), 0);
  ExpectTicks(Played(session, "out.sv", 12), {}, TicksOf({}, {first, second}, 12));
}

TEST_F(PlayedContainer, ACutThatStandsTwicePlaysTwice) {
  session.Write("a.cut", TallCut().Bytes());
  session.Write("b.cut", WideCut().Bytes());
  WriteFilm(session, {"a.cut", "a.cut", "b.cut"});
  ASSERT_EQ(ConsoleExport(session), 0);
  ExpectTicks(Played(session, "out.sv", 22), {}, TicksOf({}, {TallCut(), TallCut(), WideCut()}, 22));
}

TEST_F(PlayedContainer, StopsAtAFrameOfTimeZero) {
  CutFile last = Still(2);
  last.frames[0].time = 0;
  WriteFilmOf(session, {{"a.cut", WideCut()}, {"b.cut", last}});
  ASSERT_EQ(ConsoleExport(session), 0);
  const Played played(session, "out.sv", 20);
  ASSERT_EQ(played.lines.size(), 7U);
  EXPECT_EQ(played.lines[6]["painted"], true);
  EXPECT_EQ(played.lines[6]["delay"], 0);
  EXPECT_EQ(played.Picture(6).Count(85), 24);
}

// A loop whose body runs up to the end of its cut jumps back from the first frame of the next one.
TEST_F(PlayedContainer, ALoopAtTheEndOfACutRunsBeforeTheNextCut) {
  CutFile looped = CutFile::Showing({1, 2, 3}, {0, 1, 2});
  looped.frames[1].loop = 3;
  looped.frames[2].loop = 0;
  WriteFilmOf(session, {{"a.cut", looped}, {"b.cut", Still(4)}});
  ASSERT_EQ(ConsoleExport(session), 0);
  const Played played(session, "out.sv", 10);
  ASSERT_EQ(played.lines.size(), 10U);
  const int greys[] = {0, 85, 170, 85, 170, 85, 170, 255, 0, 85};
  for (size_t i = 0; i < 10; ++i) {
    ASSERT_TRUE(played.HasPicture(i)) << i;
    const PixelMatrix picture = played.Picture(i);
    // 8 by 3 in the middle of 24 by 18.
    EXPECT_EQ(picture.Count(static_cast<uint32_t>(greys[i]), 8, 7, 8, 3), 24) << i;
  }
}

// ---- Playing the selection ----

// What the application's player shows, tick by tick.
void ExpectPlayer(ScriptSession& session, const Film& film, const Ticks& ticks) {
  std::vector<int> pictures = {session.Player()};
  for (size_t i = 1; i < ticks.size(); ++i) {
    session.Line("tick 1");
    pictures.push_back(session.Player());
  }
  session.Run();
  reference::Bytes last;
  for (size_t i = 0; i < ticks.size(); ++i) {
    if (ticks[i].painted) last = ticks[i].picture;
    EXPECT_TRUE(IsPicture(session.PlayerAt(pictures[i]), film, last)) << "tick " << i;
  }
}

using PlaySelection = SessionTest;

TEST_F(PlaySelection, PlaysInTheOrderOfTheList) {
  OpenFilm(session, WriteThreeCuts(session)).Select(kCutList, {2, 0}).Command(kCommandPlaySelection);
  ExpectPlayer(session, {}, TicksOf({}, {WideCut(), SmallCut()}, 14));
  EXPECT_TRUE(Holds(session, "player/visible", true, "player/timer", true));
  const std::string container = Container({}, {RecordOf(WideCut()), RecordOf(SmallCut())}, 20, 10);
  EXPECT_EQ(PlayerOf(session)["title"], SizeTitle(container.size()));
  EXPECT_EQ(session.Files(), (Names{"film.flm", "small.ca", "small.cut", "tall.cut", "wide.ca", "wide.cut"}));
}

TEST_F(PlaySelection, AllCutsPlayAsTheExportedFilmDoes) {
  OpenFilm(session, WriteThreeCuts(session)).Select(kCutList, {0, 1, 2}).Command(kCommandPlaySelection);
  Export(session);
  ExpectPlayer(session, {}, TicksOf({}, {WideCut(), TallCut(), SmallCut()}, 18));
  EXPECT_EQ(PlayerOf(session)["title"], SizeTitle(session.Bytes("out.sv").size()));
}

// The next cut's first frame is decoded at once, into the plane that is shown.
TEST_F(PlaySelection, ShowsAFirstCutOfOneTickWithItsOwnPicture) {
  CutFile flash = SmallCut();
  flash.frames[0].time = 1;
  OpenFilmOf(session, {{"a.cut", flash}, {"b.cut", WideCut()}}).Select(kCutList, {0, 1}).Command(kCommandPlaySelection);
  ExpectPlayer(session, {}, TicksOf({}, {flash, WideCut()}, 4));
}

TEST_F(PlaySelection, OfOneCutPlaysIt) {
  OpenFilm(session, WriteThreeCuts(session)).Select(kCutList, {1}).Command(kCommandPlaySelection);
  ExpectPlayer(session, {}, TicksOf({}, {TallCut()}, 14));
  EXPECT_TRUE(Holds(session, "player/timer", true, "player/title",
                    SizeTitle(Container({}, {RecordOf(TallCut())}, 10, 13).size())));
}

TEST_F(PlaySelection, OfOneCutOfOneFrameIsAStillOfTheFilmsSize) {
  OpenFilm(session, WriteThreeCuts(session)).Select(kCutList, {2}).Command(kCommandPlaySelection);
  ExpectPlayer(session, {}, TicksOf({}, {SmallCut()}, 1));
  EXPECT_TRUE(Holds(session, "player/visible", true, "player/timer", false));
}

TEST_F(PlaySelection, OfACutThatStandsTwicePlaysBothLines) {
  session.Write("a.cut", SmallCut().Bytes());
  OpenFilm(session, {"a.cut", "a.cut"}).Select(kCutList, {0, 1}).Command(kCommandPlaySelection);
  const int state = session.State();
  session.Run();
  const std::string record = RecordOf(SmallCut());
  EXPECT_EQ(PlayerOf(session, state)["title"], SizeTitle(Container({}, {record, record}, 10, 6).size()));
  EXPECT_EQ(PlayerOf(session, state)["timer"], true);
}

TEST_F(PlaySelection, OfNothingMakesNoCache) {
  session.Write("a.cut", Still(1).Bytes());
  session.Write("b.cut", Still(2).Bytes());
  // The line that was deleted was the last one, so that no line is selected.
  OpenFilm(session, {"a.cut", "b.cut"}).Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts);
  session.Command(kCommandPlaySelection);
  EXPECT_TRUE(Holds(session, "player/visible", false, "player/title", ""));
  EXPECT_EQ(session.Files(), (Names{"a.cut", "b.cut", "film.flm"}));
}

TEST_F(PlaySelection, OfAnEmptyFilmDoesNothing) {
  OpenFilm(session, {}).OpenCut("c.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandPlay);
  const int before = session.State();
  session.Command(kCommandPlaySelection);
  const int after = session.State();
  EXPECT_EQ(PlayerOf(session, after), PlayerOf(session, before));
  EXPECT_EQ(PlayerOf(session, after)["timer"], true);
}

TEST_F(PlaySelection, TakesTheTextsOfTheFilmAsTheyAreNow) {
  OpenFilmOf(session, {{"a.cut", SmallCut()}})
      .Dialog(
          kFilmDialog,
          {{kFilmTitleEdit, "longer title"}, {kFilmAuthorEdit, ""}, {kFilmWidthEdit, "30"}, {kFilmHeightEdit, "20"}});
  session.Command(kCommandFilmProperties).Command(kCommandPlaySelection);
  const Film film = {.title = "longer title", .author = "", .width = 30, .height = 20};
  ExpectPlayer(session, film, TicksOf(film, {SmallCut()}, 1));
  EXPECT_EQ(PlayerOf(session)["title"], SizeTitle(Container(film, {RecordOf(SmallCut())}, 10, 6).size()));
}

TEST_F(PlaySelection, OfADamagedCacheDoesNotHurt) {
  session.Write("a.cut", SmallCut().Bytes());
  session.Write("a.ca", std::string("CA\0\0\0\0\0", 7) + std::string(40, '\xFF'));
  session.Write("b.cut", WideCut().Bytes());
  OpenFilm(session, {"a.cut", "b.cut"}).Select(kCutList, {0, 1}).Command(kCommandPlaySelection).Line("tick 50").Run();
  EXPECT_EQ(session.Bytes("a.ca").size(), 47U);
  EXPECT_EQ(session.Bytes("b.ca"), Stream(WideCut()));
}

}  // namespace
}  // namespace rules
