#include <gtest/gtest.h>

#include "resources/ids.h"
#include "rules/script_session.h"

// A repaint begins with a pulse, and the pulse ends a selection of the area tool. So a selection tells, at every
// command, whether the window was repainted.

namespace rules {
namespace {

using nlohmann::json;

struct Case {
  int command;
  int dialogId = 0;
  bool cancelled = false;
};

// Three plain frames of two layers with three cells each; the middle frame is current, and in it cell 2 of the upper
// layer. A selection lies over the picture.
ScriptSession& WithSelection(ScriptSession& session) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1, 2, 3}}, {.name = "B", .cells = {1, 2, 3}}};
  for (int i = 0; i < 3; ++i) file.frames.push_back({.records = {{.layer = 0, .cell = 1}, {.layer = 1, .cell = 1}}});
  return session.OpenCut("a.cut", file)
      .Command(kCommandPreviousFrame)
      .Command(kToolAreaSelect)
      .LeftDrag(318, 238, 322, 240);
}

bool HasSelection(ScriptSession& session, int state = kNow) {
  return session.Cut(state)["selection"] == json::array({318, 238, 322, 240});
}

void Prepare(ScriptSession& session, const Case& test) {
  if (test.dialogId > 0) session.Dialog(test.dialogId, {}, test.cancelled ? "cancel" : "ok");
  if (test.dialogId < 0) session.File(test.cancelled ? "cancel" : session.Path("out"));
}

class CommandOverSelection : public testing::TestWithParam<Case> {
 protected:
  // Whether the selection is still there after the command.
  static bool Outlives() {
    ScriptSession session;
    WithSelection(session);
    const int before = session.State();
    Prepare(session, GetParam());
    session.Command(GetParam().command);
    const int after = session.State();
    session.Run();
    EXPECT_TRUE(HasSelection(session, before));
    return HasSelection(session, after);
  }
};

class WithoutRepaint : public CommandOverSelection {};

TEST_P(WithoutRepaint, LeavesTheSelection) {
  EXPECT_TRUE(Outlives());
}

INSTANTIATE_TEST_SUITE_P(
    Document, WithoutRepaint,
    testing::Values(Case{kCommandAddFrame}, Case{kCommandInsertFrame}, Case{kCommandAddFrames, kFrameCountDialog},
                    Case{kCommandDeleteFrames, kFrameCountDialog}, Case{kCommandBrightnessRamp, kBrightnessRampDialog},
                    Case{kCommandFrameRamp, kFrameRampDialog}, Case{kCommandLayerRamp, kLayerRampDialog},
                    Case{kCommandAllKeyFrames}, Case{kCommandFrameSize, kFrameSizeDialog}, Case{kCommandCopy},
                    Case{kCommandMuraRemoval}, Case{kCommandSquarePen}, Case{kCommandSnapGrid, kGridDialog},
                    Case{kCommandMask, kMaskDialog}, Case{kCommandSaveLayer, -1}, Case{kCommandSaveCutAs, -1},
                    Case{kCommandPreview}, Case{kCommandStop}, Case{kCommandExplainTool}, Case{kCommandAbout},
                    Case{kCommandUndo}, Case{kCommandNextKeyFrame}, Case{kCommandPreviousKeyFrame}, Case{kCommandPaste},
                    Case{kCommandAddCutToFilm, -2, true}, Case{kCommandAddLayer, kLayerDialog, true},
                    Case{kCommandInsertLayer, kLayerDialog, true}, Case{kCommandLayerProperties, kLayerDialog, true},
                    Case{kCommandCutProperties, kCutDialog, true}, Case{kCommandRandomDots, kRandomDotsDialog, true},
                    Case{kCommandDrawGrid, kGridDialog, true}, Case{kCommandOverwriteLayer, -1, true},
                    Case{kCommandLayerUp}, Case{kToolAreaSelect}, Case{kCommandFocusForward}, Case{kCommandStatusBar},
                    Case{kCommandToolBar}));

class WithRepaint : public CommandOverSelection {};

TEST_P(WithRepaint, EndsTheSelection) {
  EXPECT_FALSE(Outlives());
}

INSTANTIATE_TEST_SUITE_P(
    Document, WithRepaint,
    testing::Values(Case{kCommandDeleteFrame}, Case{kCommandPreviousFrame}, Case{kCommandNextFrame},
                    Case{kCommandFirstFrame}, Case{kCommandLastFrame}, Case{kCommandAddLayer, kLayerDialog},
                    Case{kCommandInsertLayer, kLayerDialog}, Case{kCommandDeleteLayer}, Case{kCommandLayerDown},
                    Case{kCommandLayerProperties, kLayerDialog}, Case{kCommandEraseLayerSketch},
                    Case{kCommandDeleteCell}, Case{kCommandInsertCell}, Case{kCommandAddCell},
                    Case{kCommandPreviousCell}, Case{kCommandNextCell}, Case{kCommandFirstCell}, Case{kCommandLastCell},
                    Case{kCommandBlankCell}, Case{kCommandBlankAll}, Case{kCommandMergeDown}, Case{kCommandToSketch},
                    Case{kCommandEraseSketch}, Case{kCommandEraseCell}, Case{kCommandCut}, Case{kCommandPlay},
                    Case{kCommandShowPrevious}, Case{kCommandShowNext}, Case{kCommandCurrentCellOnly},
                    Case{kCommandDimOthers}, Case{kCommandLineEmphasis}, Case{kCommandCutProperties, kCutDialog},
                    Case{kCommandRandomDots, kRandomDotsDialog}, Case{kCommandDrawGrid, kGridDialog},
                    Case{kCommandFlipHorizontal}, Case{kCommandFlipVertical}, Case{kToolFreePen}));

using SelectLayer = SessionTest;

TEST_F(SelectLayer, RepaintsSoThatTheSelectionEnds) {
  WithSelection(session).Select(kLayerList, {0});
  EXPECT_FALSE(HasSelection(session));
}

TEST(Activation, SendsThePulseToTheWindowThatLosesIt) {
  ScriptSession session;
  WithSelection(session).OpenCut("b.cut", CutFile::WithoutLayers(1));
  json selection = session.NowState()["cuts"][0]["selection"];
  EXPECT_NE(selection, json::array({318, 238, 322, 240}));
}

}  // namespace
}  // namespace rules
