#include <filesystem>

#include "imaging/color_table.h"
#include "shell/export_job.h"
#include "shell/shell_fixture.h"

// The command that exports a film or a cut for those who don't have the program.
namespace sorvel::testshell {
namespace {

namespace headless = platform::headless;

class ExportAs : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    WriteFile("sorvel-player.html", "<title>@TITLE@</title>@CONNECT@\n@FILM@\nend\n");
    headless::SetProgramPath(folder.Path("sorvel").c_str());
  }
  void TearDown() override {
    headless::SetProgramPath(nullptr);
    ShellTest::TearDown();
  }

  void WriteFile(const std::string& name, const std::string& text) {
    FILE* file = std::fopen(folder.Path(name).c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  }
  std::string Contents(const std::string& name) {
    FILE* file = std::fopen(folder.Path(name).c_str(), "rb");
    std::string text;
    if (file == nullptr) return text;
    for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) text.push_back(static_cast<char>(byte));
    std::fclose(file);
    return text;
  }
  // All that lies in the folder, hidden files and the leftovers of writes too.
  std::string Files() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path(""))) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names) text += name + "|";
    return text;
  }
  // The film of a page, as the player gets it.
  static std::string StreamOf(const std::string& page) {
    const std::string head = "id=\"stream\">";
    const size_t at = page.find(head);
    return at == std::string::npos ? "" : page.substr(at + head.size(), page.find('<', at) - at - head.size());
  }
  std::string Status() { return TextOf(frame->statusBar); }
  void ExportTo(const std::string& name, int32_t type = 0) {
    headless::QueueFile(folder.Path(name), type);
    Command(kCommandExportAs);
  }
};

TEST_F(ExportAs, WithoutFilmAndCutSaysSo) {
  Command(kCommandExportAs);
  EXPECT_EQ(headless::LastMessage().text, ShiftJis("カットが開かれていません。"));
}

TEST_F(ExportAs, CancelledWritesNothing) {
  MakeCut();
  const std::string before = Files();
  headless::QueueFileCancel();
  Command(kCommandExportAs);
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(headless::LastMessage().count, 0);
}

TEST_F(ExportAs, ACutThatWasNeverSavedBecomesAPageAsItStands) {
  MakeCut();
  ExportTo("first");
  EXPECT_EQ(Status(), ShiftJis("first.html を書き出しました。"));
  const std::string empty = Contents("first.html");
  EXPECT_EQ(empty.rfind("<title>first</title>'none'\n", 0), 0u) << empty;
  EXPECT_EQ(empty.substr(empty.size() - 5), "\nend\n");
  CurrentCell()->FillRect(0, 0, 20, 20, kToneBlack);
  ExportTo("second");
  EXPECT_NE(StreamOf(Contents("second.html")), StreamOf(empty));
}

TEST_F(ExportAs, NeitherTheDocumentNorItsMarksChange) {
  MakeFilm(2);
  MakeFrames(3);
  Command(kCommandPreviousFrame);
  const std::string marks = Marks();
  const uint32_t modified = frame->film->modified;
  ExportTo("film");
  EXPECT_EQ(Marks(), marks);
  EXPECT_EQ(Cut()->currentFrame, 1);
  EXPECT_EQ(frame->film->modified, modified);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(ExportAs, AFilmGoesOutAsItsOwnExportHasIt) {
  MakeFilm(2);
  MakeFrames(3);
  CurrentCell()->FillRect(0, 0, 20, 20, kToneBlack);
  ExportTo("film");
  FileCommand(kCommandExportFilm, folder.Path("film.sv"));
  const std::string page = Contents("film.html");
  EXPECT_NE(page.find("\"size\":" + std::to_string(Contents("film.sv").size()) + ","), std::string::npos);
  EXPECT_NE(page.find("{\"name\":\"c1\","), std::string::npos);
  EXPECT_NE(page.find("{\"name\":\"c2\","), std::string::npos);
}

TEST_F(ExportAs, StreamsBesideTheCutsAreTakenAndMissingOnesMade) {
  MakeFilm(2);
  ExportTo("first");
  EXPECT_NE(Contents("c1.ca"), "");
  CurrentCell()->FillRect(0, 0, 20, 20, kToneBlack);
  ExportTo("second");
  EXPECT_EQ(StreamOf(Contents("second.html")), StreamOf(Contents("first.html")));
}

TEST_F(ExportAs, WithTheCurrentCellAloneOnTheScreenThatIsWhatGoesOut) {
  MakeCut();
  CurrentCell()->FillRect(0, 0, 20, 20, kToneBlack);
  AddLayer("B");
  ExportTo("all");
  Command(kCommandCurrentCellOnly);
  ExportTo("one");
  Command(kCommandPreviousCell);
  EXPECT_NE(StreamOf(Contents("one.html")), StreamOf(Contents("all.html")));
}

TEST_F(ExportAs, StoppedItLeavesNothing) {
  MakeCut();
  const std::string before = Files();
  headless::QueueDialog({kProgressDialog, {}, false});
  ExportTo("page");
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(Status(), ShiftJis("書き出しを中止しました。"));
}

TEST_F(ExportAs, AFolderThatIsNotThereIsTold) {
  MakeCut();
  ExportTo("no/such/page");
  EXPECT_EQ(
      headless::LastMessage().text,
      folder.Path("no/such/page.html") + ShiftJis(" を保存できませんでした。\n保存先のフォルダーが見つかりません。"));
  EXPECT_EQ(headless::LastMessage().count, 1);
}

TEST_F(ExportAs, ACutThatIsNotThereIsToldByItsName) {
  MakeFilm(2);
  CloseCuts();
  platform::DeletePath(folder.Path("c2.cut").c_str());
  const std::string before = Files();
  ExportTo("film");
  EXPECT_EQ(headless::LastMessage().text,
            folder.Path("c2.cut") + ShiftJis(" を開けませんでした。\nファイルが見つかりません。"));
  EXPECT_EQ(headless::LastMessage().count, 1);
  EXPECT_EQ(Files(), "c1.ca|" + before);
}

TEST_F(ExportAs, ADamagedCutIsToldByItsName) {
  MakeFilm(1);
  CloseCuts();
  const std::string cut = Contents("c1.cut");
  WriteFile("c1.cut", cut.substr(0, cut.size() / 2));
  ExportTo("film");
  EXPECT_EQ(
      headless::LastMessage().text,
      folder.Path("c1.cut") + ShiftJis(" を書き出せませんでした。\nカットが壊れているか、書き出せない大きさです。"));
  EXPECT_EQ(Contents("film.html"), "");
}

TEST_F(ExportAs, AFileThatIsThereIsReplacedOnlyIfTheUserSaysSo) {
  MakeCut();
  WriteFile("page.html", "old");
  headless::QueueYesNo(false);
  ExportTo("page");
  EXPECT_EQ(headless::LastQuestion().text, folder.Path("page.html") + ShiftJis(" はすでにあります。置き換えますか？"));
  EXPECT_EQ(Contents("page.html"), "old");
  headless::QueueYesNo(true);
  ExportTo("page.html");
  EXPECT_EQ(Contents("page.html").rfind("<title>", 0), 0u);
}

// The types of this platform: page, animated PNG, folder of PNGs.
constexpr int32_t kAnimatedPngType = 2;
constexpr int32_t kFolderType = 3;

TEST_F(ExportAs, AnAnimatedPngHoldsAPictureForEachThatDiffers) {
  MakeCut();
  MakeFrames(3);
  CurrentCell()->FillRect(0, 0, 20, 20, kToneBlack);
  Command(kCommandAddCell);
  ExportTo("film", kAnimatedPngType);
  const std::string png = Contents("film.png");
  EXPECT_EQ(png.substr(1, 3), "PNG");
  EXPECT_NE(png.find("acTL"), std::string::npos);
  EXPECT_EQ(Status(), ShiftJis("film.png を書き出しました。"));
}

TEST_F(ExportAs, AFolderHoldsNumberedPicturesAndTheirTimes) {
  MakeCut();
  ExportTo("pictures", kFolderType);
  EXPECT_EQ(Contents("pictures/00001.png").substr(1, 3), "PNG");
  EXPECT_NE(Contents("pictures/durations.txt").find("file 00001.png"), std::string::npos);
  EXPECT_EQ(Status(), ShiftJis("pictures を書き出しました。"));
}

TEST_F(ExportAs, AFolderThatHoldsSomethingStaysAsItIs) {
  MakeCut();
  ExportTo("pictures", kFolderType);
  const std::string before = Contents("pictures/00001.png");
  CurrentCell()->FillRect(0, 0, 20, 20, kToneBlack);
  ExportTo("pictures");
  EXPECT_EQ(headless::LastMessage().text,
            folder.Path("pictures") +
                ShiftJis(" を書き出せませんでした。\n同じ名前のものがすでにあります。別の名前を指定してください。"));
  EXPECT_EQ(Contents("pictures/00001.png"), before);
}

TEST_F(ExportAs, TheEndingOfANameDecidesAheadOfTheType) {
  MakeCut();
  ExportTo("a.PNG");
  EXPECT_EQ(Contents("a.PNG").substr(1, 3), "PNG");
  ExportTo("b");
  EXPECT_EQ(Contents("b.png").substr(1, 3), "PNG") << "the type that was used last";
  ExportTo("c.html", kFolderType);
  EXPECT_EQ(Contents("c.html").rfind("<title>", 0), 0u);
  ExportTo("d.v2");
  EXPECT_EQ(Contents("d.v2.html").rfind("<title>", 0), 0u);
  ExportTo("e.png", kFolderType);
  EXPECT_EQ(Contents("e/00001.png").substr(1, 3), "PNG");
}

TEST_F(ExportAs, WithoutThePlayerNoPageIsOffered) {
  MakeCut();
  platform::DeletePath(folder.Path("sorvel-player.html").c_str());
  ExportTo("first");
  EXPECT_EQ(Contents("first.png").substr(1, 3), "PNG");
}

TEST_F(ExportAs, StoppedOrFailedPicturesLeaveNothing) {
  MakeCut();
  const std::string before = Files();
  for (const int32_t type : {kAnimatedPngType, kFolderType}) {
    headless::QueueDialog({kProgressDialog, {}, false});
    ExportTo("film", type);
    ExportTo("no/such/film", type);
  }
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(headless::Warnings().size(), 2u);
}

// The work itself, without a dialog, stopped wherever it tells how far it is.
TEST_F(ExportAs, StoppedAnywhereTheWorkLeavesNothing) {
  MakeFilm(2);
  MakeFrames(4);
  ExportTo("streams");
  const std::string before = Files();
  for (const ExportType type : {ExportType::kPage, ExportType::kAnimatedPng, ExportType::kPictures}) {
    int32_t tellings = 0;
    for (int32_t last = 1; last < 1000; ++last) {
      ExportJob job(type, folder.Path("film").c_str());
      ASSERT_TRUE(job.TakeFilm(frame->film, "film"));
      int32_t now = 0;
      job.told = [&] {
        if (++now == last) job.Stop();
      };
      job.Run();
      if (now < last) {
        EXPECT_EQ(job.Outcome(), ExportJob::Result::kDone);
        break;
      }
      EXPECT_EQ(job.Outcome(), ExportJob::Result::kStopped);
      ASSERT_EQ(Files(), before) << last;
      tellings = now;
    }
    EXPECT_GT(tellings, 2);
    std::filesystem::remove_all(folder.Path("film"));
  }
}

}  // namespace
}  // namespace sorvel::testshell
