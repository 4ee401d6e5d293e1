// What becomes of documents that can't be written.

#include <gtest/gtest.h>

#include <filesystem>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

class FailedSave : public SessionTest {
 protected:
  FailedSave() {
    std::filesystem::create_symlink("/dev/full", session.Path("full.cut"));
    std::filesystem::create_symlink("none/x.cut", session.Path("a002.cut"));
  }

  // A cut of the film whose path leads into a folder that doesn't exist: cut number 2 behind a.cut.
  ScriptSession& MakeCutThatCantBeSaved() {
    session.Write("a001.cut", PlainCut().Bytes());
    OpenFilmFile(session, FilmText({"a001.cut"})).Dialog(kCutDialog, {}).Dialog(kLayerDialog, {});
    return session.Command(kCommandAddNumberedCut);
  }
};

TEST_F(FailedSave, SaysWhyAndLeavesPathAndMark) {
  session.NewCut().File("full.cut").Command(kCommandSaveCutAs);
  EXPECT_TRUE(Holds(session, "cut/path", "", "cut/modified", true, "messages/#", 1));
  EXPECT_NE(session.StateAt(kNow)["messages"][0].dump().find("ディスクの空き容量が足りません"), std::string::npos);
}

TEST_F(FailedSave, OfANumberedCutIsToldAndTheCutStaysInTheFilm) {
  MakeCutThatCantBeSaved();
  EXPECT_TRUE(Holds(session, "messages/#", 1, "film/cuts/#", 2, "cut/path", "a002.cut"));
}

TEST_F(FailedSave, OfAnOverwriteOpensTheSaveDialog) {
  MakeCutThatCantBeSaved().File("c.cut").Command(kCommandOverwriteCut);
  EXPECT_TRUE(Holds(session, "exists/c.cut", true, "cut/path", "c.cut"));
}

TEST_F(FailedSave, InACloseAsksForAnotherPlaceAndACancelKeepsTheWindow) {
  MakeCutThatCantBeSaved().Answer("yes").File("cancel").Close();
  EXPECT_TRUE(Holds(session, "cuts/#", 1, "cut/modified", true, "film/cuts/1/open", true, "messages/#", 2));
}

TEST_F(FailedSave, InACloseCanGoToAnotherPlace) {
  MakeCutThatCantBeSaved().Answer("yes").File("b.cut").Close();
  EXPECT_TRUE(Holds(session, "cuts/#", 0, "exists/b.cut", true));
}

TEST_F(FailedSave, StopsTheExitWithStatus3) {
  MakeCutThatCantBeSaved().Answer("yes").File("cancel").Exit();
  session.Run(3);
}

TEST_F(FailedSave, OfACutWithoutAFileThatIsCancelledClosesAllTheSame) {
  session.NewCut().Answer("yes").File("cancel").Close();
  EXPECT_TRUE(Holds(session, "cuts/#", 0));
}

TEST_F(FailedSave, BringsUnusedLayersBack) {
  CutFile file = CutFile::Showing({1}, {0});
  file.layers.push_back({.name = "B", .cells = {0}});
  session.OpenCut("a.cut", file).File("full.cut").Command(kCommandSaveCutAs);
  const int failed = session.State();
  session.File("b.cut").Command(kCommandSaveCutAs);
  const int saved = session.State();
  EXPECT_EQ(session.StateAt(failed)["cuts"][0]["layers"].size(), 2u);
  EXPECT_EQ(session.StateAt(saved)["cuts"][0]["layers"].size(), 1u);
}

}  // namespace
}  // namespace rules
