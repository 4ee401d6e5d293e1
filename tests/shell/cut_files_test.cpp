#include "resources/ids.h"
#include "shell/shell_fixture.h"

namespace sorvel::testshell {
namespace {

// Failures and what only the objects show. The rest of opening and saving is tested on the whole program.
class CutFiles : public ShellTest {};

TEST_F(CutFiles, ASaveAsThatCannotOpenItsFileChangesNothing) {
  MakeCut();
  Cut()->AddLayer("unused", 4, 4, nullptr);
  FileCommand(kCommandSaveCutAs, folder.Path("no/such/folder.cut"));
  EXPECT_STREQ(Cut()->path, "");
  EXPECT_EQ(Cut()->layers.Count(), 2);
  EXPECT_EQ(platform::headless::CurrentCursor(), platform::CursorShape::kArrow);
}

TEST_F(CutFiles, LayersOfAnOpenedCutHaveItsPrototype) {
  MakeSavedCut("a.cut");
  CloseActiveCut();
  FileCommand(kCommandOpenCut, folder.Path("a.cut"));
  EXPECT_EQ(Cut()->layers.At(0)->prototype, &Cut()->prototype);
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
  EXPECT_EQ(Cut()->view.width, 24);
  EXPECT_EQ(LayerLines(), "*part (1/1)|");
  EXPECT_EQ(CurrentCell()->GetPixel(1, 1), 3);
  EXPECT_TRUE(ViewIsCurrent());
}

}  // namespace
}  // namespace sorvel::testshell
