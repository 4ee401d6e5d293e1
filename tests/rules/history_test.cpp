// What is kept of documents that commands replace or remove.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "resources/ids.h"
#include "rules/film_session.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

namespace fs = std::filesystem;

class KeptStates : public SessionTest {
 protected:
  // The kinds of the states that are kept of a document, oldest first.
  Names Kinds(const std::string& name) const {
    Names kinds;
    const fs::path folder = fs::path(session.Path(name)).parent_path() / ".sorvel" / fs::path(name).filename();
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(folder, none)) {
      kinds.push_back(entry.path().stem().string());
    }
    std::sort(kinds.begin(), kinds.end());
    for (std::string& kind : kinds) kind = kind.substr(kind.find('-') + 1);
    return kinds;
  }

  std::string Messages() { return session.StateAt(kNow).value("messages", nlohmann::json::array()).dump(); }

  // A film of two cuts, of which the first is selected.
  ScriptSession& OpenFilm() {
    for (const char* name : {"a.cut", "b.cut"}) session.Write(name, PlainCut().Bytes());
    return OpenFilmFile(session, FilmText({"a.cut", "b.cut"})).Select(kCutList, {0});
  }
};

TEST_F(KeptStates, OfACutThatIsOverwritten) {
  session.OpenCut("a.cut", PlainCut()).Command(kCommandOverwriteCut).Command(kCommandOverwriteCut);
  EXPECT_EQ(Messages(), "[]");
  EXPECT_EQ(Kinds("a.cut"), Names({"saved", "saved"}));
}

TEST_F(KeptStates, OfAFilmAndALayerThatAreReplaced) {
  session.Write("a.lyr", "old");
  OpenFilm().Command(kCommandOverwriteFilm).Open("a.cut").Dialog(kLayerDialog, {}).Command(kCommandAddLayer);
  session.File("a.lyr").Command(kCommandSaveLayer);
  session.Run();
  EXPECT_EQ(Kinds("film.flm"), Names({"saved"}));
  EXPECT_EQ(Kinds("a.lyr"), Names({"saved"}));
}

TEST_F(KeptStates, OfADeletedCut) {
  OpenFilm().Answer("yes").Command(kCommandDeleteCuts);
  session.Run();
  EXPECT_EQ(Kinds("a.cut"), Names({"deleted"}));
  EXPECT_FALSE(fs::exists(session.Path("a.cut")));
}

TEST_F(KeptStates, OfARenamedCut) {
  OpenFilm().Dialog(kRenameDialog, {{kRenameEdit, "c"}}).Command(kCommandRenameCut);
  session.Run();
  EXPECT_EQ(Kinds("a.cut"), Names({"renamed"}));
  EXPECT_TRUE(fs::exists(session.Path("c.cut")));
}

TEST_F(KeptStates, RenameToATakenNameChangesNothingAndSaysSo) {
  OpenFilm().Dialog(kRenameDialog, {{kRenameEdit, "b"}}).Command(kCommandRenameCut);
  EXPECT_TRUE(Holds(session, "film/cuts/0/name", "a.cut", "film/modified", false, "messages/#", 1));
  EXPECT_EQ(Lines(session), Names({"a", "b"}));
  EXPECT_NE(Messages().find("同じ名前のファイル"), std::string::npos);
}

TEST_F(KeptStates, RenameThatFailsChangesNothingAndSaysSo) {
  OpenFilm().Dialog(kRenameDialog, {{kRenameEdit, "none/c"}}).Command(kCommandRenameCut);
  EXPECT_TRUE(Holds(session, "film/cuts/0/name", "a.cut", "messages/#", 1));
  EXPECT_EQ(Lines(session), Names({"a", "b"}));
}

TEST_F(KeptStates, OfCutsThatAnExtractReplaces) {
  fs::create_directory(session.Path("new"));
  session.Write("new/a.cut", "old");
  OpenFilm().File("new/film.flm").Command(kCommandExtractCuts);
  session.Run();
  EXPECT_EQ(Kinds("new/a.cut"), Names({"saved"}));
}

TEST_F(KeptStates, ExtractOnToItselfLeavesTheCut) {
  OpenFilm();
  const auto before = fs::last_write_time(session.Path("a.cut"));
  session.File("new.flm").Command(kCommandExtractCuts);
  session.Run();
  EXPECT_EQ(fs::last_write_time(session.Path("a.cut")), before);
  EXPECT_EQ(Kinds("a.cut"), Names());
}

TEST_F(KeptStates, OfADamagedCutAreToldAtTheFirstSave) {
  CutFile file = CutFile::Showing({1}, {0});
  file.layers.push_back({.name = "B", .cells = {0}});
  const std::string bytes = file.Bytes();
  session.Write("a.cut", bytes.substr(0, bytes.size() - 3));
  session.Open("a.cut").Command(kCommandOverwriteCut).Command(kCommandOverwriteCut);
  // A layer that no frame shows may have lost its frames.
  EXPECT_TRUE(Holds(session, "messages/#", 1, "cut/layers/#", 2));
  EXPECT_NE(Messages().find("壊れていました"), std::string::npos);
  EXPECT_EQ(Kinds("a.cut"), Names({"damaged", "saved"}));
}

}  // namespace
}  // namespace rules
