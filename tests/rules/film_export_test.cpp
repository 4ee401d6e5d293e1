#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "reference/reference.h"
#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/little_bytes.h"
#include "rules/rule_table.h"
#include "support/places.h"

namespace rules {
namespace {

using nlohmann::json;
using std::filesystem::last_write_time;

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

// Exports the film with the console program.
Rule::After ConsoleExports(int status = 0, const std::string& target = "out.sv") {
  return [=](ScriptSession& session) {
    EXPECT_EQ(Console(session, {"export", session.Path("film.flm"), session.Path(target)}), status);
  };
}

// The last command failed with one line about this name.
Rule::After SaysThatItFailed(const std::string& name) {
  return [=](ScriptSession& session) {
    const std::string errors = session.Bytes("errors.txt");
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_NE(errors.find(name), std::string::npos) << errors;
  };
}

// ---- Films ----

struct Film {
  std::string title = "title";
  std::string author = "author";
  int width = 24;
  int height = 18;
};

// A line of a film. A cut that isn't given has no file.
struct Line {
  std::string name;
  std::optional<CutFile> cut = {};
};

// The film, film.flm, and its cuts as files.
ScriptSession FilmOf(const std::vector<Line>& lines, const Film& film = {}) {
  ScriptSession session;
  Names names;
  for (const Line& line : lines) {
    if (line.cut) session.Write(line.name, line.cut->Bytes());
    names.push_back(line.name);
  }
  const std::string size = std::to_string(film.width) + ", " + std::to_string(film.height);
  return session.Write("film.flm", FilmText(names, film.title + "\n" + film.author + "\n" + size + "\n"));
}

// The same, opened in the application.
ScriptSession OpenFilm(const std::vector<Line>& lines, const Film& film = {}) {
  return FilmOf(lines, film).Open("film.flm");
}

// Exports the film with the application.
ScriptSession Export() {
  return Do().File("out.sv").Command(kCommandExportFilm);
}

// ---- What is expected, by the plain implementation ----

// The stream of a cut that was just read from its file.
std::string Stream(const CutFile& file) {
  bool refused = false;
  const reference::Bytes bytes =
      reference::EncodeCut(file.Data(), 0, static_cast<int>(file.frames.size()) - 1, &refused);
  return {bytes.begin(), bytes.end()};
}

// The container of these streams.
std::string ContainerOf(const Names& streams, const Film& film = {}) {
  std::vector<reference::Bytes> bytes;
  for (const std::string& stream : streams) bytes.emplace_back(stream.begin(), stream.end());
  const reference::Bytes whole = reference::WriteContainer(film.title, film.author, film.width, film.height, bytes);
  return {whole.begin(), whole.end()};
}

std::string Container(const std::vector<CutFile>& cuts, const Film& film = {}) {
  Names streams;
  for (const CutFile& cut : cuts) streams.push_back(Stream(cut));
  return ContainerOf(streams, film);
}

Facts Exported(const std::vector<CutFile>& cuts, const Film& film = {}) {
  return Has("bytes/out.sv", Container(cuts, film));
}

Facts PlayerPlays(const std::vector<CutFile>& cuts, const Film& film = {}) {
  return Has("player/title", SizeTitle(Container(cuts, film).size()));
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

const std::vector<Line>& ThreeCuts() {
  static const std::vector<Line> lines = {{"wide.cut", WideCut()}, {"tall.cut", TallCut()}, {"small.cut", SmallCut()}};
  return lines;
}

// The cut without the upper record of its last frame, as the blank command makes it.
CutFile Changed() {
  CutFile cut = WideCut();
  cut.frames[2].records[1].cell = -1;
  return cut;
}

// A cut whose only frame stands this long at this rate.
CutFile Timed(int color, int fps, int time) {
  CutFile cut = Still(color);
  cut.fps = fps;
  cut.frames[0].time = time;
  return cut;
}

// Two frames with these heads.
CutFile TwoFrames(const FileFrame& first, const FileFrame& second) {
  CutFile cut = CutFile::Showing({1, 2}, {0, 1});
  const FileFrame heads[] = {first, second};
  for (size_t i = 0; i < 2; ++i) {
    cut.frames[i].time = heads[i].time;
    cut.frames[i].loop = heads[i].loop;
  }
  return cut;
}

// Four frames with these times and stored values of brightness.
CutFile FourFrames(const std::vector<int>& times, const std::vector<int>& stored) {
  CutFile cut = CutFile::Showing({1, 2}, {0, 1, 0, 1});
  for (size_t i = 0; i < 4; ++i) {
    cut.frames[i].time = times[i];
    cut.frames[i].brightness = stored[i];
  }
  return cut;
}

// ---- What a player should show ----

using Ticks = std::vector<reference::Tick>;

// The ticks of a film of these cuts.
Ticks TicksOf(const Film& film, const std::vector<CutFile>& cuts, int count) {
  const std::string container = Container(cuts, film);
  return reference::Play({container.begin(), container.end()}, count);
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

// The exported film plays so in the console program.
Rule::After Plays(const std::vector<CutFile>& cuts, int ticks, const Film& film = {}) {
  return
      [=](ScriptSession& session) { ExpectTicks(Played(session, "out.sv", ticks), film, TicksOf(film, cuts, ticks)); };
}

// The application's player shows this, tick by tick.
Rule::After Shows(const std::vector<CutFile>& cuts, int count, const Film& film = {}) {
  return [=](ScriptSession& session) {
    const Ticks ticks = TicksOf(film, cuts, count);
    std::vector<int> pictures = {session.Player()};
    for (size_t i = 1; i < ticks.size(); ++i) pictures.push_back(session.Line("tick 1").Player());
    session.Run();
    reference::Bytes last;
    for (size_t i = 0; i < ticks.size(); ++i) {
      if (ticks[i].painted) last = ticks[i].picture;
      EXPECT_TRUE(IsPicture(session.PlayerAt(pictures[i]), film, last)) << "tick " << i;
    }
  };
}

const Film kEmptyTexts = {.title = "", .author = ""};
// The second byte of the first characters is a backslash.
const Film kJapaneseTexts = {.title = "\x83\x5C\x83\x76", .author = "\x95\x5C"};

CutFile WithJapaneseCredit() {
  CutFile cut = Still(1);
  cut.credit = "\x94\x5C";
  return cut;
}

const Rules<SessionTest, "FilmContainer"> kFilmContainerRules = {
    {"IsTheHeadTheTableAndTheStreamsWithoutTheirFirstSixBytes", FilmOf(ThreeCuts()), ConsoleExports(),
     Exported({WideCut(), TallCut(), SmallCut()})},
    {"EmptyTextsAreOneZeroByteEach", FilmOf({{"a.cut", Still(1)}}, kEmptyTexts), ConsoleExports(),
     Exported({Still(1)}, kEmptyTexts)},
    {"KeepsTheBytesOfJapaneseTexts", FilmOf({{"a.cut", WithJapaneseCredit()}}, kJapaneseTexts), ConsoleExports(),
     Exported({WithJapaneseCredit()}, kJapaneseTexts)},
    {"FirstFrameOfEachCutStartsCleanly",
     FilmOf({{"a.cut", TwoFrames({.time = -3, .loop = 0}, {.time = -2, .loop = 0})}, {"a.cut"}}), ConsoleExports(),
     Exported({TwoFrames({.time = 3, .loop = 1}, {.time = -2, .loop = 0}),
               TwoFrames({.time = 3, .loop = 1}, {.time = -2, .loop = 0})})},
    {"KeyFramesHaveTheirEffectiveTimes", FilmOf({{"a.cut", FourFrames({10, 2, 3, 4}, {-51, 50, 50, -1 - 70})}}),
     ConsoleExports(), Exported({FourFrames({5, 2, 3, 4}, {50, 50, 50, 70})})},
    {"ACutListedTwiceIsStoredTwice", FilmOf({{"a.cut", WideCut()}, {"b.cut", SmallCut()}, {"a.cut"}}), ConsoleExports(),
     Exported({WideCut(), SmallCut(), WideCut()}), Has("files", "a.ca a.cut b.ca b.cut film.flm out.sv")},
    {"ACutWithoutFramesHasAnEmptyRecord", OpenFilm({{"a.cut", Still(1)}, {"none.cut", CutFile::WithoutLayers(0)}}),
     Export(), Has("exists/none.ca", true, "bytes/none.ca", "", "bytes/out.sv", ContainerOf({Stream(Still(1)), ""}))},
};

// ---- Cache files ----

// Makes a folder in the session's folder.
Rule::After MakesFolder(const std::string& name) {
  return [=](ScriptSession& session) { std::filesystem::create_directory(session.Path(name)); };
}

Rule::After IsFolder(const std::string& name) {
  return [=](ScriptSession& session) { EXPECT_TRUE(std::filesystem::is_directory(session.Path(name))); };
}

// A cache of another picture than its cut's, older than the cut.
struct StaleCache : SessionTest {
  StaleCache() {
    session.Then(FilmOf({{"a.cut", WideCut()}})).Write("a.ca", Stream(SmallCut()));
    last_write_time(session.Path("a.ca"), last_write_time(session.Path("a.cut")) - std::chrono::hours(48));
  }
};

Facts OldStream(const char* files = "a.ca a.cut film.flm out.sv") {
  return Has("bytes/out.sv", Container({SmallCut()}), "bytes/a.ca", Stream(SmallCut()), "files", files);
}

const Rules<StaleCache, "StaleCache"> kStaleCacheRules = {
    {"IsTakenAsItIsByTheConsoleProgram", ConsoleExports(), OldStream()},
    {"IsTakenAsItIsByTheApplication", Do().Open("film.flm"), Export(), OldStream()},
    {"IsTakenEvenForAnOpenCutThatNeedsCompiling", Do().Open("film.flm").Open("a.cut").Command(kCommandBlankCell),
     Export(), OldStream(), Has("cut/marks", "modified imagesStale timingStale")},
    {"IsReplacedByAPlayOfTheCutAndThenCounts", Do().Open("film.flm").Open("a.cut").Command(kCommandPlay), Export(),
     Has("bytes/a.ca", Stream(WideCut())), Exported({WideCut()})},
    {"DoesWithoutItsCut", Rule::After([](ScriptSession& session) { std::filesystem::remove(session.Path("a.cut")); }),
     ConsoleExports(), OldStream("a.ca film.flm out.sv")},
    {"PlaysInASelection", Do().Open("film.flm").Command(kCommandPlaySelection), PlayerPlays({SmallCut()}),
     Has("bytes/a.ca", Stream(SmallCut()))},
};

// A cut that is open and was changed without a save; the film's entry knows it.
struct OpenChangedCut : SessionTest {
  OpenChangedCut() { session.Then(OpenFilm({{"a.cut", WideCut()}})).Open("a.cut").Command(kCommandBlankCell); }
};

TEST_F(OpenChangedCut, ItsViewStaysAsItWas) {
  const int before = session.View();
  const int after = session.Then(Export()).View();
  EXPECT_TRUE(session.ViewAt(after) == session.ViewAt(before));
}

const Rules<OpenChangedCut, "OpenChangedCut"> kOpenChangedCutRules = {
    {"IsCompiledAsItStandsInItsWindow", Export(), Exported({Changed()}),
     Has("bytes/a.ca", Stream(Changed()), "bytes/a.cut", WideCut().Bytes(), "cut/marks",
         "modified imagesStale timingStale")},
    {"IsCompiledForASelectionToo", Do().Command(kCommandPlaySelection), PlayerPlays({Changed()}),
     Has("bytes/a.ca", Stream(Changed()), "cut/imagesStale", true)},
    {"AChangeAfterTheFirstExportDoesNotCount", Export(), Do().Command(kCommandBlankCell).File("second.sv"),
     Do().Command(kCommandExportFilm),
     Has("bytes/out.sv", Container({Changed()}), "bytes/second.sv", Container({Changed()}), "bytes/a.ca",
         Stream(Changed()))},
    {"SavedUnderAnotherNameStillFillsTheCacheOfItsEntry", Do().SaveCutAs("b.cut"), Export(),
     Has("files", "a.ca a.cut b.cut film.flm out.sv", "bytes/a.ca", Stream(Changed()))},
    {"ClosedWithoutASaveIsReadFromItsFile", Do().Answer("no").Close(), Export(), Has("bytes/a.ca", Stream(WideCut()))},
};

// The small cut without its lower record.
CutFile UpperOfSmallCut() {
  CutFile upper = SmallCut();
  upper.frames[0].records.erase(upper.frames[0].records.begin());
  return upper;
}

// The file of the tall cut with another antialias byte, which stands behind the sizes, the rate and the empty credit.
std::string TallCutWithAntialias(char value) {
  std::string bytes = TallCut().Bytes();
  bytes[23] = value;
  return bytes;
}

const std::vector<Line> kOneWideCut = {{"a.cut", WideCut()}};
const CutFile kTwoStills = CutFile::Showing({1, 2}, {0, 1});

const Rules<SessionTest, "FilmExport"> kFilmExportRules = {
    {"MakesTheCacheFilesThatAreMissing", FilmOf(ThreeCuts()), ConsoleExports(),
     Has("files", "film.flm out.sv small.ca small.cut tall.ca tall.cut wide.ca wide.cut", "bytes/wide.ca",
         Stream(WideCut()), "bytes/tall.ca", Stream(TallCut()), "bytes/small.ca", Stream(SmallCut()))},
    {"CacheFilesLieBesideTheirCutsUnderTheirNames", MakesFolder("sub"),
     Rule::After([](ScriptSession& session) { session.Write("sub/x.cut", Still(1).Bytes()); }),
     FilmOf({{"sub/x.cut"}, {"a.b.CUT", Still(2)}, {"plain", Still(3)}}), ConsoleExports(),
     Has("files", "a.b.CUT a.b.ca film.flm out.sv plain plain.ca sub", "bytes/sub/x.ca", Stream(Still(1)),
         "bytes/a.b.ca", Stream(Still(2)), "bytes/plain.ca", Stream(Still(3)))},
    {"TwoCutsOfOneNameShareTheCacheOfTheFirst", FilmOf({{"a.one", WideCut()}, {"a.two", SmallCut()}}), ConsoleExports(),
     Exported({WideCut(), WideCut()}), Has("bytes/a.ca", Stream(WideCut()))},
    {"AnEntryThatIsAStreamItselfIsCopied", FilmOf({{"a.ca"}}).Write("a.ca", Stream(WideCut())), ConsoleExports(),
     Exported({WideCut()})},
    {"ACutThatWasOpenBeforeItsFilmIsReadFromItsFile", FilmOf(kOneWideCut),
     Do().Open("a.cut").Command(kCommandBlankCell).Open("film.flm"), Export(),
     Has("film/cuts/0/open", false, "bytes/a.ca", Stream(WideCut()))},
    {"DoesNotCommitWhatIsStillInThePanels", OpenFilm(kOneWideCut), Do().Open("a.cut").Panel(kBrightnessEdit, "90"),
     Export(), Has("bytes/a.ca", Stream(WideCut()), "cut/frame/brightness", 20)},
    {"AnOpenCutThatShowsOneLayerIsCompiledSo", OpenFilm({{"small.cut", SmallCut()}}),
     Do().Open("small.cut").Command(kCommandCurrentCellOnly), Export(),
     Has("bytes/small.ca", Stream(UpperOfSmallCut()))},
    // The second frame shows the same as the one before it.
    {"CompilingSelectsTheCurrentRecordInTheFramesThatDiffer", OpenFilm(kOneWideCut),
     Do().Open("a.cut").Select(kLayerList, {0}), Has("cut/frames/*/currentRecord", "1 1 0"), Export(),
     Has("cut/frames/*/currentRecord", "0 1 0")},
    {"AFolderInTheCachesPlaceIsNoCache", FilmOf(kOneWideCut), MakesFolder("a.ca"), ConsoleExports(),
     Exported({WideCut()}), IsFolder("a.ca")},
    {"AnAntialiasByteOfThreeIsAHalf", FilmOf({{"a.cut"}}).Write("a.cut", TallCutWithAntialias(3)), ConsoleExports(),
     Exported({TallCut()})},
    {"WithoutCutsShowsNoDialog", OpenFilm({}), Do().Command(kCommandExportFilm), Has("files", "film.flm")},
    {"WithoutCutsFailsInTheConsoleProgram", FilmOf({}), ConsoleExports(1), Has("files", "film.flm")},
    {"NameWithoutExtensionGetsSv", OpenFilm(kOneWideCut), Do().File("named").Command(kCommandExportFilm),
     Has("files", "a.ca a.cut film.flm named.sv")},
    {"CancelWritesNothing", OpenFilm(kOneWideCut), Do().File("cancel").Command(kCommandExportFilm),
     Has("files", "a.cut film.flm")},
    {"TargetThatCanNotBeOpenedIsSilentAndCompilesNothing", OpenFilm(kOneWideCut),
     Do().File("nofolder/out.sv").Command(kCommandExportFilm), Has("files", "a.cut film.flm")},
    {"TargetThatCanNotBeOpenedFailsInTheConsoleProgram", FilmOf(kOneWideCut), ConsoleExports(1, "nofolder/out.sv"),
     SaysThatItFailed("out.sv")},
    {"ALongerFileOfTheSameNameIsReplaced", OpenFilm({{"a.cut", Still(1)}}).Write("out.sv", std::string(5000, 'x')),
     Export(), Exported({Still(1)})},
    {"TakesEveryCutWhateverIsSelected", OpenFilm(ThreeCuts()), Do().Select(kCutList, {1}), Export(),
     Exported({WideCut(), TallCut(), SmallCut()})},
};

using FilmExport = SessionTest;

TEST_F(FilmExport, AFreshCacheIsNotWrittenAgain) {
  session.Then(FilmOf(kOneWideCut)).Write("a.ca", Stream(WideCut()));
  const auto then = last_write_time(session.Path("a.ca")) - std::chrono::hours(1);
  last_write_time(session.Path("a.ca"), then);
  std::filesystem::permissions(session.Path("a.ca"), std::filesystem::perms::owner_read);
  ConsoleExports()(session);
  EXPECT_EQ(session.Bytes("out.sv"), Container({WideCut()}));
  EXPECT_EQ(last_write_time(session.Path("a.ca")), then);
}

TEST_F(FilmExport, AFolderInTheCachesPlaceDoesNotKeepTheCutFromPlaying) {
  std::filesystem::create_directory(session.Path("a.ca"));
  session.Then(OpenFilm(kOneWideCut)).Command(kCommandPlaySelection);
  EXPECT_TRUE(Holds(session, "player/visible", true));
  IsFolder("a.ca")(session);
}

TEST_F(FilmExport, LeavesARunningPlayAlone) {
  session.Then(OpenFilm(kOneWideCut)).Write("a.ca", Stream(WideCut())).OpenCut("c.cut", kTwoStills);
  const int before = session.Command(kCommandPlay).State();
  const int after = session.Then(Export()).State();
  const int picture = session.Line("tick 1").Player();
  EXPECT_EQ(PlayerOf(session, before)["timer"], true);
  EXPECT_EQ(PlayerOf(session, after), PlayerOf(session, before));
  EXPECT_EQ(session.PlayerAt(picture).Count(85), 24);
}

TEST_F(FilmExport, ApplicationAndConsoleProgramAgree) {
  ScriptSession application;
  ScriptSession console;
  const Film film = {.title = "T", .author = "", .width = 321, .height = 1};
  for (ScriptSession* each : {&application, &console}) {
    each->Then(FilmOf({{"small.cut", SmallCut()},
                       {"stale.cut", Still(2)},
                       {"wide.cut", WideCut()},
                       {"small.cut"},
                       {"tall.cut", TallCut()}},
                      film));
    each->Write("stale.ca", Stream(Still(3)));
  }
  application.Open("film.flm").Then(Export()).Run();
  ConsoleExports()(console);
  ASSERT_EQ(application.Files(), console.Files());
  for (const std::string& name : console.Files()) EXPECT_EQ(application.Bytes(name), console.Bytes(name)) << name;
  EXPECT_EQ(console.Bytes("out.sv"), Container({SmallCut(), Still(3), WideCut(), SmallCut(), TallCut()}, film));
}

// ---- Damaged caches ----

// The wide cut, and a small one with these bytes as its cache.
ScriptSession FilmWithCache(const std::string& cache) {
  return OpenFilm({{"a.cut", WideCut()}, {"b.cut", SmallCut()}}).Write("b.ca", cache);
}

Facts CacheMadeAgain() {
  return Has("bytes/out.sv", Container({WideCut(), SmallCut()}), "bytes/b.ca", Stream(SmallCut()));
}

// The size in the head of a stream, set to its length.
std::string WithItsSize(std::string stream) {
  std::string size;
  PutLittle(size, static_cast<int64_t>(stream.size()), 4);
  return stream.replace(2, 4, size);
}

const std::string kGarbage("XYabcdno\0\x2C\x01\x02\x00garbage\xFF\x00\xFF", 23);

const Rules<SessionTest, "DamagedCache"> kDamagedCacheRules = {
    {"IsMadeAgain", FilmWithCache(kGarbage), Export(), CacheMadeAgain()},
    {"IsMadeAgainByTheConsoleProgram", FilmWithCache(kGarbage), ConsoleExports(), CacheMadeAgain()},
    {"WithBytesBehindItsLastFrameIsMadeAgain", FilmWithCache(WithItsSize(Stream(WideCut()) + "x")), ConsoleExports(),
     CacheMadeAgain()},
    {"WithoutItsCutFailsTheExport", OpenFilm({{"a.cut"}}).Write("a.ca", kGarbage), Export(),
     Has("files", "a.ca film.flm", "bytes/a.ca", kGarbage)},
    {"WithoutItsCutFailsTheConsoleExport", FilmOf({{"a.cut"}}).Write("a.ca", kGarbage), ConsoleExports(1),
     SaysThatItFailed("a.cut"), Has("exists/out.sv", false, "bytes/a.ca", kGarbage)},
};

class ShortCache : public SessionTest, public testing::WithParamInterface<std::string> {};

TEST_P(ShortCache, IsMadeAgain) {
  session.Then(FilmWithCache(GetParam())).Then(Export());
  EXPECT_TRUE(Holds(session, "bytes/out.sv", Container({WideCut(), SmallCut()}), "bytes/b.ca", Stream(SmallCut())));
}

// Beginnings of a whole stream, and those that say that they are whole.
std::vector<std::string> ShortCaches() {
  const std::string whole = Stream(WideCut());
  std::vector<std::string> caches;
  for (const size_t length : {size_t{0}, size_t{1}, size_t{5}, size_t{6}, size_t{16}, whole.size() - 1}) {
    caches.push_back(whole.substr(0, length));
    if (length > 5) caches.push_back(WithItsSize(caches.back()));
  }
  return caches;
}

INSTANTIATE_TEST_SUITE_P(Cache, ShortCache, testing::ValuesIn(ShortCaches()));

// ---- Caches and cuts that can't be opened ----

// A name that leads into a folder that isn't there can neither be read nor made.
struct CacheThatCanNotBeMade : SessionTest {
  CacheThatCanNotBeMade() {
    std::filesystem::create_symlink(session.Path("nofolder/b.ca"), session.Path("b.ca"));
    session.Then(FilmOf({{"a.cut", WideCut()}, {"b.cut", SmallCut()}}));
  }
  void TearDown() override {
    EXPECT_TRUE(std::filesystem::is_symlink(session.Path("b.ca")));
    EXPECT_FALSE(session.Exists("b.ca"));
    SessionTest::TearDown();
  }
};

const Rules<CacheThatCanNotBeMade, "CacheThatCanNotBeMade"> kCacheThatCanNotBeMadeRules = {
    {"DoesNotKeepTheCutOutOfTheFilm", ConsoleExports(), Exported({WideCut(), SmallCut()})},
    {"DoesNotKeepTheCutFromPlaying", Do().Open("film.flm").OpenCut("c.cut", kTwoStills).Command(kCommandPlay),
     Do().Select(kCutList, {0, 1}).Command(kCommandPlaySelection), PlayerPlays({WideCut(), SmallCut()}),
     Has("player/visible,timer", "true true", "files", "a.ca a.cut b.ca b.cut c.ca c.cut film.flm")},
};

const std::vector<Line> kFilmWithAGap = {{"a.cut", WideCut()}, {"gone.cut"}, {"c.cut", SmallCut()}};

const Rules<SessionTest, "MissingCut"> kMissingCutRules = {
    {"LeavesNoFileInTheApplicationEither", OpenFilm(kFilmWithAGap), Export(),
     Has("files", "a.ca a.cut c.cut film.flm")},
    {"LeavesAnOlderExportAsItIs", OpenFilm({{"gone.cut"}, {"b.cut", WideCut()}}).Write("out.sv", "older"), Export(),
     Has("files", "b.cut film.flm out.sv", "bytes/out.sv", "older")},
    {"FailsTheConsoleExportWhichLeavesNoFile", FilmOf(kFilmWithAGap), ConsoleExports(1), SaysThatItFailed("gone.cut"),
     Has("exists/out.sv", false)},
    {"OutsideTheSelectionDoesNotMatter", OpenFilm({{"gone.cut"}, {"a.cut", WideCut()}}),
     Do().Select(kCutList, {1}).Command(kCommandPlaySelection), PlayerPlays({WideCut()}), Has("player/visible", true)},
    {"BehindOthersInTheSelectionLeavesTheirCachesAndNoPlay", OpenFilm(kFilmWithAGap),
     Do().OpenCut("d.cut", kTwoStills).Command(kCommandPlay).Select(kCutList, {0, 1, 2}).Command(kCommandPlaySelection),
     Has("player/visible,timer", "false false", "files", "a.ca a.cut c.cut d.ca d.cut film.flm")},
};

TEST(ForeignCut, FailsLikeAMissingOneAndGetsNoCache) {
  ScriptSession session;
  session.Then(OpenFilm({{"a.cut"}})).Write("a.cut", "Sorvelin Layer").Then(Export()).Run();
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
  ConsoleExports(1)(session);
  EXPECT_EQ(session.Files(), (Names{"a.cut", "film.flm"}));
}

// ---- Playing the container ----

const Film kSmallFilm = {.width = 7, .height = 3};

const Rules<SessionTest, "PlayedContainer"> kPlayedContainerRules = {
    // The three cuts take 6, 6 and 4 ticks.
    {"ShowsEachCutInItsTurnAndStartsOver", FilmOf(ThreeCuts()), ConsoleExports(),
     Plays({WideCut(), TallCut(), SmallCut()}, 40)},
    {"FilmSmallerThanItsCutsShowsTheirMiddle", FilmOf(ThreeCuts(), kSmallFilm), ConsoleExports(),
     Plays({WideCut(), TallCut(), SmallCut()}, 20, kSmallFilm)},
    {"OneCutOfOneFrameIsAStill", FilmOf({{"a.cut", SmallCut()}}), ConsoleExports(), Plays({SmallCut()}, 10)},
    {"TwoCutsOfOneFrameHaveTheirTimesAndRates", FilmOf({{"a.cut", Timed(1, 10, 2)}, {"b.cut", Timed(2, 24, -3)}}),
     ConsoleExports(), Plays({Timed(1, 10, 2), Timed(2, 24, -3)}, 12)},
    {"ACutThatStandsTwicePlaysTwice", FilmOf({{"a.cut", TallCut()}, {"a.cut"}, {"b.cut", WideCut()}}), ConsoleExports(),
     Plays({TallCut(), TallCut(), WideCut()}, 22)},
};

using PlayedContainer = SessionTest;

// ---- Playing the selection ----

CutFile OfOneTick() {
  CutFile flash = SmallCut();
  flash.frames[0].time = 1;
  return flash;
}

const Film kNewTexts = {.title = "longer title", .author = "", .width = 30, .height = 20};

const Rules<SessionTest, "PlaySelection"> kPlaySelectionRules = {
    {"PlaysInTheOrderOfTheList", OpenFilm(ThreeCuts()), Do().Select(kCutList, {2, 0}).Command(kCommandPlaySelection),
     PlayerPlays({WideCut(), SmallCut()}), Has("player/visible,timer", "true true"), Shows({WideCut(), SmallCut()}, 14),
     Has("files", "film.flm small.ca small.cut tall.cut wide.ca wide.cut")},
    {"AllCutsPlayAsTheExportedFilmDoes", OpenFilm(ThreeCuts()),
     Do().Select(kCutList, {0, 1, 2}).Command(kCommandPlaySelection), Export(),
     PlayerPlays({WideCut(), TallCut(), SmallCut()}), Exported({WideCut(), TallCut(), SmallCut()}),
     Shows({WideCut(), TallCut(), SmallCut()}, 18)},
    // The next cut's first frame is decoded at once, into the plane that is shown.
    {"ShowsAFirstCutOfOneTickWithItsOwnPicture", OpenFilm({{"a.cut", OfOneTick()}, {"b.cut", WideCut()}}),
     Do().Select(kCutList, {0, 1}).Command(kCommandPlaySelection), Shows({OfOneTick(), WideCut()}, 4)},
    {"OfOneCutPlaysIt", OpenFilm(ThreeCuts()), Do().Select(kCutList, {1}).Command(kCommandPlaySelection),
     PlayerPlays({TallCut()}), Has("player/timer", true), Shows({TallCut()}, 14)},
    {"OfOneCutOfOneFrameIsAStillOfTheFilmsSize", OpenFilm(ThreeCuts()),
     Do().Select(kCutList, {2}).Command(kCommandPlaySelection), Has("player/visible,timer", "true false"),
     Shows({SmallCut()}, 1)},
    {"OfACutThatStandsTwicePlaysBothLines", OpenFilm({{"a.cut", SmallCut()}, {"a.cut"}}),
     Do().Select(kCutList, {0, 1}).Command(kCommandPlaySelection), PlayerPlays({SmallCut(), SmallCut()}),
     Has("player/timer", true)},
    // The line that is deleted is the last one, so that no line is selected.
    {"OfNothingMakesNoCache", OpenFilm({{"a.cut", Still(1)}, {"b.cut", Still(2)}}),
     Do().Select(kCutList, {1}).Answer("no").Command(kCommandDeleteCuts).Command(kCommandPlaySelection),
     Has("player/visible", false, "player/title", "", "files", "a.cut b.cut film.flm")},
    {"TakesTheTextsOfTheFilmAsTheyAreNow", OpenFilm({{"a.cut", SmallCut()}}),
     Do().Dialog(
         kFilmDialog,
         {{kFilmTitleEdit, "longer title"}, {kFilmAuthorEdit, ""}, {kFilmWidthEdit, "30"}, {kFilmHeightEdit, "20"}}),
     Do().Command(kCommandFilmProperties).Command(kCommandPlaySelection), PlayerPlays({SmallCut()}, kNewTexts),
     Shows({SmallCut()}, 1, kNewTexts)},
    {"MakesADamagedCacheAgain",
     OpenFilm({{"a.cut", SmallCut()}, {"b.cut", WideCut()}})
         .Write("a.ca", std::string("CA\0\0\0\0\0", 7) + std::string(40, '\xFF')),
     Do().Select(kCutList, {0, 1}).Command(kCommandPlaySelection), PlayerPlays({SmallCut(), WideCut()}),
     Has("bytes/a.ca", Stream(SmallCut()), "bytes/b.ca", Stream(WideCut()))},
};

using PlaySelection = SessionTest;

TEST_F(PlaySelection, OfAnEmptyFilmDoesNothing) {
  session.Then(OpenFilm({})).OpenCut("c.cut", kTwoStills).Command(kCommandPlay);
  const int before = session.State();
  const int after = session.Command(kCommandPlaySelection).State();
  EXPECT_EQ(PlayerOf(session, after), PlayerOf(session, before));
  EXPECT_EQ(PlayerOf(session, after)["timer"], true);
}

}  // namespace
}  // namespace rules
