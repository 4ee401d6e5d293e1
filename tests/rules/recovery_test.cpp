// What becomes of drawings that aren't saved.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

namespace fs = std::filesystem;

class Recovery : public SessionTest {
 protected:
  Recovery() {
    setenv("XDG_DATA_HOME", session.Path("data").c_str(), 1);
    session.UseRecovery();
  }
  ~Recovery() override { unsetenv("XDG_DATA_HOME"); }

  // The kinds of what is kept in a folder of the history, oldest first.
  Names KindsIn(const std::string& folder) const {
    Names kinds;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(session.Path(folder), none)) {
      kinds.push_back(entry.path().stem().string());
    }
    std::sort(kinds.begin(), kinds.end());
    for (std::string& kind : kinds) kind = kind.substr(kind.find('-') + 1);
    return kinds;
  }
  Names Kinds(const std::string& name) const { return KindsIn(".sorvel/" + name); }
  Names UntitledKinds() const { return KindsIn("data/sorvel/history/untitled"); }

  // How many programs have left something, or run.
  size_t Runs() const {
    std::error_code none;
    const fs::directory_iterator runs(session.Path("recovery"), none);
    return static_cast<size_t>(std::distance(begin(runs), end(runs)));
  }

  ScriptSession& Draw(int number) {
    return session.LeftDrag(300 + number % 8, 232 + number / 8, 310 + number % 8, 232 + number / 8);
  }
  ScriptSession& Restart() {
    session.Restart();
    return session;
  }
};

TEST_F(Recovery, OpensTheDrawingOfAKilledProgramInTheNext) {
  session.NewCut();
  Draw(0);
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(
      Holds(session, "cuts/#", 1, "cut/path", "", "cut/title", "Cut", "cut/modified", true, "cut/imagesStale", true));
  const std::string recovered = session.Cut()["layers"][0]["cells"][0];
  Restart().NewCut();
  Draw(0);
  EXPECT_EQ(session.Cut()["layers"][0]["cells"][0], recovered);
}

TEST_F(Recovery, LeavesTheFileAndKnowsItsPath) {
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0, 1})).Command(kCommandAddFrame);
  const std::string saved = session.Bytes("a.cut");
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 1, "cut/path", "a.cut", "cut/modified", true, "cut/frames/#", 3));
  EXPECT_EQ(session.Cut()["title"], "a.cut");
  EXPECT_EQ(session.Bytes("a.cut"), saved);
}

TEST_F(Recovery, OpensAllModifiedCutsInTheirOrderAndNoOthers) {
  session.OpenCut("a.cut", PlainCut()).Command(kCommandAddFrame);
  session.OpenCut("b.cut", PlainCut());
  session.OpenCut("c.cut", PlainCut()).Command(kCommandAddFrame);
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 2, "cuts/0/path", "a.cut", "cuts/1/path", "c.cut"));
}

TEST_F(Recovery, OfASecondCrashLosesNothing) {
  session.NewCut().Command(kCommandAddFrame);
  session.RunAndKill();
  for (int i = 0; i < 3; ++i) {
    Restart();
    session.RunAndKill();
    EXPECT_EQ(Runs(), 1u);
  }
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 1, "cut/frames/#", 2));
}

TEST_F(Recovery, GoesOnWhereAScriptEndsWithoutExit) {
  session.NewCut().Command(kCommandAddFrame);
  session.Run();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 1, "cut/frames/#", 2));
}

TEST_F(Recovery, HasNothingOfASavedCut) {
  session.NewCut().Command(kCommandAddFrame).SaveCutAs("a.cut");
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 0));
}

TEST_F(Recovery, DropsASnapshotThatIsWhatTheFileHolds) {
  session.OpenCut("a.cut", PlainCut()).Command(kCommandAddFrame);
  session.RunAndKill();
  for (const auto& entry : fs::recursive_directory_iterator(session.Path("recovery"))) {
    if (entry.path().extension() != ".cut") continue;
    fs::copy_file(entry.path(), session.Path("a.cut"), fs::copy_options::overwrite_existing);
  }
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 0));
}

TEST_F(Recovery, OfASavedCutBeginsWithTheNextChange) {
  session.NewCut().Command(kCommandAddFrame).SaveCutAs("a.cut").Command(kCommandAddFrame);
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 1, "cut/path", "a.cut", "cut/frames/#", 3));
}

TEST_F(Recovery, FollowsARenamedCut) {
  session.Write("a.cut", PlainCut().Bytes());
  OpenFilmFile(session, FilmText({"a.cut"})).DoubleClick(kCutList, 0).Command(kCommandAddFrame).RenameCut("b");
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 1, "cut/path", "b.cut"));
}

TEST_F(Recovery, LeavesNothingBehindAnExit) {
  session.NewCut().Command(kCommandAddFrame).SaveCutAs("a.cut").Command(kCommandAddFrame).Answer("no").Exit();
  session.Run();
  EXPECT_EQ(Runs(), 0u);
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 0));
}

TEST_F(Recovery, OfAListOfAFilmOpensIt) {
  for (const char* name : {"a.cut", "b.cut"}) session.Write(name, PlainCut().Bytes());
  OpenFilmFile(session, FilmText({"a.cut"})).Open("b.cut").Command(kCommandAddCutToFilm);
  session.Command(kCommandAddFrame);
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(
      Holds(session, "film/path", "film.flm", "film/modified", true, "film/cuts/#", 2, "film/cuts/1/open", true));
  EXPECT_EQ(Lines(session), Names({"a", "b"}));
  EXPECT_EQ(session.Bytes("film.flm"), FilmText({"a.cut"}));
}

TEST_F(Recovery, OfAFilmWithoutAFileOpensIt) {
  session.OpenCut("a.cut", PlainCut()).Command(kCommandAddCutToFilm);
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "film/path", "", "film/modified", true, "film/cuts/#", 1));
  EXPECT_EQ(Entries(session), Names({"a.cut"}));
}

TEST_F(Recovery, HasNoHalfStroke) {
  session.NewCut();
  Draw(0);
  session.Press(300, 240).Move(310, 240);
  session.RunAndKill();
  Restart();
  const std::string recovered = session.Cut()["layers"][0]["cells"][0];
  Restart().NewCut();
  Draw(0);
  EXPECT_EQ(session.Cut()["layers"][0]["cells"][0], recovered);
}

TEST_F(Recovery, IsOffWithoutTheOption) {
  ScriptSession plain;
  setenv("XDG_DATA_HOME", plain.Path("data").c_str(), 1);
  plain.NewCut().Command(kCommandAddFrame).Answer("no").Close();
  plain.Run();
  EXPECT_EQ(plain.Files(), Names());
}

TEST_F(Recovery, IsOffWithoutAnInterval) {
  session.SetSettings("[setup]\nautosave=0\n").NewCut().Command(kCommandAddFrame);
  session.RunAndKill();
  Restart();
  EXPECT_TRUE(Holds(session, "cuts/#", 0));
}

TEST_F(Recovery, IntoAFolderThatCantBeMadeIsToldAtOnce) {
  session.Write("recovery", "a file").NewCut();
  session.Run(1);
  EXPECT_NE(session.Errors().find("recovery"), std::string::npos);
}

// Of 25 kills at any time none takes a stroke that was finished.
TEST_F(Recovery, OfAKillAtAnyTimeHasAllFinishedStrokes) {
  constexpr int strokes = 40;
  session.NewCut();
  for (int i = 0; i < strokes; ++i) {
    Draw(i);
    session.State();
  }
  const auto start = std::chrono::steady_clock::now();
  session.Run();
  const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
  Names drawn;
  for (int i = 0; i < strokes; ++i) drawn.push_back(session.StateAt(i)["cuts"][0]["layers"][0]["cells"][0]);
  std::mt19937 random(5);
  for (int trial = 0; trial < 25; ++trial) {
    fs::remove_all(session.Path("recovery"));
    for (int i = 0; i < strokes; ++i) fs::remove(session.Path("state-" + std::to_string(i) + ".json"));
    session.RunAndKill(std::chrono::microseconds(random() % static_cast<uint32_t>(whole.count())));
    int finished = 0;
    while (finished < strokes && session.Exists("state-" + std::to_string(finished) + ".json")) ++finished;
    ScriptSession next;
    const fs::path store = next.Path("recovery");
    if (session.Exists("recovery")) fs::copy(session.Path("recovery"), store, fs::copy_options::recursive);
    next.UseRecovery();
    const nlohmann::json cuts = next.NowState()["cuts"];
    if (finished == 0) continue;
    ASSERT_EQ(cuts.size(), 1u) << finished;
    const std::string cell = cuts[0]["layers"][0]["cells"][0];
    const auto found = std::find(drawn.begin() + finished - 1, drawn.end(), cell);
    ASSERT_NE(found, drawn.end()) << "after " << finished << " strokes";
  }
}

TEST_F(Recovery, AKeptStateOpensBesideTheCut) {
  session.OpenCut("a.cut", PlainCut()).Command(kCommandAddFrame).Command(kCommandOverwriteCut);
  session.Dialog(kVersionDialog, {}).Command(kCommandOpenVersion);
  EXPECT_TRUE(Holds(session, "cuts/#", 2, "cut/path", "a.cut", "cut/modified", true, "cut/frames/#", 1,
                    "cuts/0/frames/#", 2, "cuts/0/modified", false));
}

class ClosedWithoutSaving : public Recovery {};

TEST_F(ClosedWithoutSaving, ACutStaysInTheHistory) {
  session.OpenCut("a.cut", PlainCut()).Command(kCommandAddFrame).Answer("no").Close();
  session.Run();
  EXPECT_EQ(Kinds("a.cut"), Names({"unsaved"}));
  EXPECT_EQ(session.Bytes("a.cut"), PlainCut().Bytes());
}

TEST_F(ClosedWithoutSaving, ACutWithoutAFileStaysInTheDataFolder) {
  session.NewCut().Command(kCommandAddFrame).Answer("no").Close();
  session.NewCut().Command(kCommandAddFrame).Answer("yes").File("cancel").Close();
  session.Run();
  EXPECT_EQ(UntitledKinds(), Names({"unsaved", "unsaved"}));
}

TEST_F(ClosedWithoutSaving, ADeletedCutStaysInTheHistory) {
  session.Write("a.cut", PlainCut().Bytes());
  OpenFilmFile(session, FilmText({"a.cut"})).DoubleClick(kCutList, 0).Command(kCommandAddFrame);
  session.Select(kCutList, {0}).Answer("yes").Command(kCommandDeleteCuts);
  session.Run();
  EXPECT_EQ(Kinds("a.cut"), Names({"deleted", "unsaved"}));
}

TEST_F(ClosedWithoutSaving, TheListOfAFilmStaysInTheHistory) {
  for (const char* name : {"a.cut", "b.cut"}) session.Write(name, PlainCut().Bytes());
  OpenFilmFile(session, FilmText({"a.cut"})).Open("b.cut").Command(kCommandAddCutToFilm).Answer("no").Exit();
  session.Run();
  EXPECT_EQ(Kinds("film.flm"), Names({"unsaved"}));
}

}  // namespace
}  // namespace rules
