#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

class CutFiles : public ShellTest {};

TEST_F(CutFiles, WithoutACutSavingDoesNothing) {
  EXPECT_EQ(frame->OnCommand(0, kCommandSaveCutAs, nullptr), 0);
  EXPECT_EQ(frame->OnCommand(0, kCommandOverwriteCut, nullptr), 0);
}

// New cuts.

TEST_F(CutFiles, ANewCutStartsFromTheDefaultsOfTheSettings) {
  platform::headless::QueueDialog({kCutDialog, {}, true});
  platform::headless::QueueDialog({kLayerDialog, {}, false});
  Command(kCommandNewCut);
  ASSERT_NE(Cut(), nullptr);
  EXPECT_EQ(Cut()->width, 240);
  EXPECT_EQ(Cut()->height, 180);
  EXPECT_EQ(Cut()->fps, 24);
  EXPECT_EQ(Cut()->Antialias(), 0);
  EXPECT_STREQ(Cut()->credit, "");
  EXPECT_STREQ(Cut()->path, "");
  EXPECT_EQ(TextOf(Cut()->window), "Cut");
}

TEST_F(CutFiles, ANewCutIsRememberedInTheSettings) {
  const Values values = {{kCutWidthEdit, "64"},
                         {kCutHeightEdit, "48"},
                         {kCutFpsEdit, "30"},
                         {kCutHalfRadio, "on"},
                         {kCutCreditEdit, "me"}};
  platform::headless::QueueDialog({kCutDialog, values, true});
  platform::headless::QueueDialog({kLayerDialog, {}, false});
  Command(kCommandNewCut);
  EXPECT_EQ(Contents("sorvel.ini"), "[OnNewCut]\r\nwidth=64\r\nheight=48\r\nfps=30\r\nanti=1\r\ncredit=me\r\n");
  platform::headless::QueueDialog({kCutDialog, {}, true});
  platform::headless::QueueDialog({kLayerDialog, {}, false});
  Command(kCommandNewCut);
  EXPECT_EQ(Cut()->width, 64);
  EXPECT_EQ(Cut()->height, 48);
  EXPECT_EQ(Cut()->fps, 30);
  EXPECT_EQ(Cut()->Antialias(), 1);
  EXPECT_STREQ(Cut()->credit, "me");
}

TEST_F(CutFiles, ACancelledNewCutLeavesNothing) {
  CancelledCommand(kCommandNewCut, kCutDialog, {{kCutWidthEdit, "64"}});
  EXPECT_EQ(Cut(), nullptr);
  EXPECT_FALSE(Exists("sorvel.ini"));
}

TEST_F(CutFiles, ANewCutHasOneFrameAndTheLayerOfTheDialog) {
  MakeCut();
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(LayerLines(), "*A (1/1)|");
  EXPECT_EQ(Marks(), "mit");
}

TEST_F(CutFiles, ANewCutWithoutALayerHasNothingToSave) {
  MakeCut(40, 30, false);
  EXPECT_EQ(Cut()->layers.Count(), 0);
  EXPECT_EQ(Cut()->frames.Count(), 1);
  EXPECT_EQ(Marks(), "i");
  EXPECT_EQ(LayerLines(), "");
}

// Saving.

TEST_F(CutFiles, SaveAsCommitsWritesAndTakesTheName) {
  MakeCut();
  Type(frame->commentEdit, "typed");
  FileCommand(kCommandSaveCutAs, folder.Path("a"));
  EXPECT_EQ(Cut()->path, folder.Path("a.cut"));
  EXPECT_EQ(TextOf(Cut()->window), "a.cut");
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  EXPECT_EQ(Contents("a.cut").substr(0, 12), "Sorvelin Cut");
  EXPECT_FALSE(Cut()->Has(kModified));
  EXPECT_TRUE(Cut()->Has(kImagesStale));
}

TEST_F(CutFiles, SaveAsDropsUnusedLayers) {
  MakeCut();
  Cut()->AddLayer("unused", 4, 4, nullptr);
  FileCommand(kCommandSaveCutAs, folder.Path("a.cut"));
  EXPECT_EQ(Cut()->layers.Count(), 1);
}

TEST_F(CutFiles, ACancelledSaveAsHasCommitted) {
  MakeCut();
  Type(frame->commentEdit, "typed");
  platform::headless::QueueFileCancel();
  Command(kCommandSaveCutAs);
  EXPECT_STREQ(CurrentFrame()->comment, "typed");
  EXPECT_STREQ(Cut()->path, "");
  EXPECT_TRUE(Cut()->Has(kModified));
}

TEST_F(CutFiles, ASaveAsThatCannotOpenItsFileChangesNothing) {
  MakeCut();
  Cut()->AddLayer("unused", 4, 4, nullptr);
  FileCommand(kCommandSaveCutAs, folder.Path("no/such/folder.cut"));
  EXPECT_STREQ(Cut()->path, "");
  EXPECT_EQ(Cut()->layers.Count(), 2);
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kArrow);
}

TEST_F(CutFiles, OverwriteWritesToThePathWithoutACommit) {
  MakeSavedCut("a.cut");
  CurrentCell()->Fill(1);
  Cut()->MarkImages();
  Cut()->AddLayer("unused", 4, 4, nullptr);
  const std::string before = Contents("a.cut");
  Type(frame->commentEdit, "typed");
  Command(kCommandOverwriteCut);
  EXPECT_NE(Contents("a.cut"), before);
  EXPECT_FALSE(Cut()->Has(kModified));
  EXPECT_EQ(Cut()->layers.Count(), 1);
  EXPECT_STREQ(CurrentFrame()->comment, "");
}

TEST_F(CutFiles, OverwriteWithoutAPathSavesAs) {
  MakeCut();
  FileCommand(kCommandOverwriteCut, folder.Path("a.cut"));
  EXPECT_EQ(Cut()->path, folder.Path("a.cut"));
  EXPECT_TRUE(Exists("a.cut"));
}

TEST_F(CutFiles, OverwriteOfAPathThatCannotBeWrittenSavesAs) {
  MakeCut();
  AssignString(&Cut()->path, folder.Path("no/such/folder.cut").c_str());
  FileCommand(kCommandOverwriteCut, folder.Path("b.cut"));
  EXPECT_EQ(Cut()->path, folder.Path("b.cut"));
}

// Opening.

TEST_F(CutFiles, AnOpenedCutStandsOnItsLastFrameWithNothingToSave) {
  MakeSavedCut("a.cut");
  MakeFrames(3);
  CurrentCell()->Fill(2);
  Command(kCommandFirstFrame);
  Command(kCommandOverwriteCut);
  CloseActiveCut();
  ASSERT_EQ(Cut(), nullptr);
  FileCommand(kCommandOpenCut, folder.Path("a.cut"));
  ASSERT_NE(Cut(), nullptr);
  EXPECT_EQ(Cut()->frames.Count(), 3);
  EXPECT_EQ(Cut()->currentFrame, 2);
  EXPECT_EQ(Marks(), "i");
  EXPECT_EQ(Cut()->path, folder.Path("a.cut"));
  EXPECT_EQ(TextOf(Cut()->window), "a.cut");
  EXPECT_EQ(TextOf(frame->keyFrameCheck), "3(3f)");
  EXPECT_EQ(LayerLines(), "*A (1/1)|");
  EXPECT_EQ(Cut()->view.width, 40);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(CutFiles, LayersOfAnOpenedCutHaveItsPrototype) {
  MakeSavedCut("a.cut");
  CloseActiveCut();
  FileCommand(kCommandOpenCut, folder.Path("a.cut"));
  EXPECT_EQ(Cut()->layers.At(0)->prototype, &Cut()->prototype);
}

TEST_F(CutFiles, AnOpenedCutIsKnownToTheFilm) {
  MakeFilm(1);
  CloseActiveCut();
  EXPECT_EQ(frame->film->cuts.At(0).cut, nullptr);
  FileCommand(kCommandOpenCut, folder.Path("c1.cut"));
  EXPECT_EQ(frame->film->cuts.At(0).cut, Cut());
}

TEST_F(CutFiles, AFileThatIsNoCutOpensNothing) {
  testdoc::WriteFile(folder.Path("bad.cut"), "Sorvelin Layer");
  FileCommand(kCommandOpenCut, folder.Path("bad.cut"));
  FileCommand(kCommandOpenCut, folder.Path("missing.cut"));
  platform::headless::QueueFileCancel();
  Command(kCommandOpenCut);
  EXPECT_EQ(Cut(), nullptr);
}

TEST_F(CutFiles, ALayerFileOpensAsACutOfItsSize) {
  MakeCut();
  Command(kCommandAddLayer, kLayerDialog,
          {{kLayerNameEdit, "part"}, {kLayerWidthEdit, "24"}, {kLayerHeightEdit, "12"}});
  CurrentCell()->Fill(3);
  FileCommand(kCommandSaveLayer, folder.Path("part.lyr"));
  CloseCuts();
  FileCommand(kCommandOpenLayer, folder.Path("part.lyr"));
  ASSERT_NE(Cut(), nullptr);
  EXPECT_EQ(Cut()->width, 24);
  EXPECT_EQ(Cut()->height, 12);
  EXPECT_EQ(Cut()->frameWidth, 24);
  EXPECT_EQ(Cut()->frameHeight, 12);
  EXPECT_EQ(Cut()->fps, 20);
  EXPECT_EQ(Cut()->view.width, 24);
  EXPECT_STREQ(Cut()->path, "");
  EXPECT_EQ(LayerLines(), "*part (1/1)|");
  EXPECT_EQ(CurrentCell()->GetPixel(1, 1), 3);
  EXPECT_TRUE(ViewIsCurrent());
}

TEST_F(CutFiles, ALayerFileOpenedAsACutCountsAsSavedAndCompiled) {
  MakeCut();
  FileCommand(kCommandSaveLayer, folder.Path("part.lyr"));
  CloseCuts();
  FileCommand(kCommandOpenLayer, folder.Path("part.lyr"));
  EXPECT_EQ(Marks(), "");
  CloseActiveCut();  // asks nothing
  EXPECT_EQ(Cut(), nullptr);
}

TEST_F(CutFiles, AFileThatIsNoLayerOpensNothing) {
  testdoc::WriteFile(folder.Path("bad.lyr"), "Sorvelin Cut");
  FileCommand(kCommandOpenLayer, folder.Path("bad.lyr"));
  FileCommand(kCommandOpenLayer, folder.Path("missing.lyr"));
  platform::headless::QueueFileCancel();
  Command(kCommandOpenLayer);
  EXPECT_EQ(Cut(), nullptr);
}

// By the extension.

TEST_F(CutFiles, TheExtensionChoosesTheKindInUpperOrLowerCase) {
  MakeFilm(1);
  FileCommand(kCommandSaveLayer, folder.Path("part.LyR"));
  FileCommand(kCommandSaveFilmAs, folder.Path("film.Flm"));
  FileCommand(kCommandSaveCutAs, folder.Path("c2.CUT"));
  CloseCuts();
  EXPECT_TRUE(frame->OpenByExtension(folder.Path("c2.CUT").c_str()));
  EXPECT_EQ(Cut()->path, folder.Path("c2.CUT"));
  CloseCuts();
  EXPECT_TRUE(frame->OpenByExtension(folder.Path("part.LyR").c_str()));
  EXPECT_STREQ(Cut()->path, "");
  CloseCuts();
  EXPECT_TRUE(frame->OpenByExtension(folder.Path("film.Flm").c_str()));
  EXPECT_EQ(CutLines(), "*c1|");
  EXPECT_EQ(Cut(), nullptr);
}

TEST_F(CutFiles, OtherPathsOpenNothing) {
  MakeSavedCut("a.cut");
  CloseActiveCut();
  testdoc::WriteFile(folder.Path("a"), Contents("a.cut"));
  EXPECT_FALSE(frame->OpenByExtension(folder.Path("a").c_str()));
  EXPECT_FALSE(frame->OpenByExtension(("\"" + folder.Path("a.cut") + "\"").c_str()));
  EXPECT_FALSE(frame->OpenByExtension(folder.Path("missing.cut").c_str()));
  EXPECT_FALSE(frame->OpenByExtension(folder.Path("missing.lyr").c_str()));
  EXPECT_FALSE(frame->OpenByExtension(""));
  EXPECT_EQ(Cut(), nullptr);
}

}  // namespace
}  // namespace sorvel::testshell
