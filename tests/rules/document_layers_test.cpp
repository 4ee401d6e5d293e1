#include <gtest/gtest.h>

#include <string>

#include "resources/ids.h"
#include "rules/rule_table.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {
namespace {

using nlohmann::json;

// Layers A, B and C with cells of the colours 1, 2 and 3, bottom first, in each frame.
CutFile ThreeLayers(size_t frameCount) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {2}}, {.name = "C", .cells = {3}}};
  file.frames.assign(frameCount, {.records = {{.layer = 0}, {.layer = 1}, {.layer = 2}}});
  return file;
}

json Lines(ScriptSession& session, int state = kNow) {
  return PanelOf(session, "10004", state)["lines"];
}

using AddLayer = SessionTest;

TEST_F(AddLayer, SkipsAFrameThatLacksTheCurrentRecord) {
  CutFile file = ThreeLayers(2);
  file.frames[0].records.resize(1);
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandAddLayer);
  EXPECT_TRUE(Holds(session, "order/0", "A", "order/1", "ABCN"));
}

TEST_F(AddLayer, DefaultNameOfTheEleventhLayerHasNoBlank) {
  CutFile file;
  file.layers.resize(10);
  file.frames.push_back({.records = {{.layer = 0}}});
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {}).Command(kCommandAddLayer);
  EXPECT_EQ(session.Cut()["layers"][10]["name"], "LAYER10");
}

TEST_F(AddLayer, LiesOverTheSelectionWithItsSize) {
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 236);
  const int before = session.State();
  session.Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandAddLayer);
  const int state = session.State();
  ASSERT_EQ(session.Cut(before)["selection"], json::array({306, 230, 316, 236}));
  EXPECT_EQ(session.Cut(state)["layers"][1]["width"], 10);
  EXPECT_EQ(session.Cut(state)["layers"][1]["height"], 6);
  EXPECT_EQ(session.RecordAt(1, state)["x"], 2);
  EXPECT_EQ(session.RecordAt(1, state)["y"], 2);
}

const Rules<SessionTest, "AddLayer"> kAddLayerRules = {
    {"LiesAboveTheCurrentRecordInEveryFrame",
     Do().OpenCut("a.cut", ThreeLayers(2)).Select(kLayerList, {0}).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}),
     Do().Command(kCommandAddLayer),
     Has("order/0", "ANBC", "order/1", "ANBC", "cut/frames/0/currentRecord", 1, "cut/frames/1/currentRecord", 1)},
    {"RefreshesTheList",
     Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandAddLayer),
     Has("panels/layers/lines", json::array({"A (1/1)", "B (1/1)", "C (1/1)", "N (1/1)"}), "panels/layers/selected",
         "3")},
    {"IsCentredOnTheCut", Do().NewCut({.width = 32, .height = 24, .layerWidth = 9, .layerHeight = 5}),
     Has("cut/frame/records/0/x,y", "11 9"),
     Do().NewCut({.width = 32, .height = 24, .layerWidth = 39, .layerHeight = 29}),
     Has("cut/frame/records/0/x,y", "-3 -2")},
    {"DialogStartsWithTheCutSizeAndAnEmptyName",
     Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {}).Command(kCommandAddLayer),
     Has("cut/layers/3/width,height", "8 3", "cut/layers/3/name", "LAYER 3", "cut/layers/3/followFrame", 0)},
    {"CheckBoxOfTheDialogHasNoEffect",
     Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerFollowCheck, "on"}}).Command(kCommandAddLayer),
     Has("cut/layers/3/followFrame", 0)},
    {"HasOneTransparentCell", Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {}).Command(kCommandAddLayer),
     Has("cut/layers/3/cells", json::array({PlainCell(0)}))},
    {"CancelAddsNothing", Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}, "cancel"),
     Do().Command(kCommandAddLayer), Has("cut/layers/#", 3, "cut/modified", false)},
    {"OverTheSelectionKeepsItsPlaceWithAnotherSize", Do().NewCut().SelectArea(306, 230, 316, 236),
     Do().Dialog(kLayerDialog, {{kLayerNameEdit, "N"}, {kLayerWidthEdit, "4"}, {kLayerHeightEdit, "4"}}),
     Do().Command(kCommandAddLayer), Has("cut/frame/records/1/x,y", "2 2")},
};

const Rules<SessionTest, "InsertLayer"> kInsertLayerRules = {
    {"LiesBelowTheCurrentRecordInEveryFrame",
     Do().OpenCut("a.cut", ThreeLayers(2)).Select(kLayerList, {1}).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}),
     Do().Command(kCommandInsertLayer), Has("order/0", "ANBC", "order/1", "ANBC", "cut/frame/currentRecord", 1)},
    {"IntoAFrameWithoutRecordsEntersTwice",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}),
     Do().Command(kCommandInsertLayer), Has("order/0", "NN", "cut/layers/#", 1)},
};

using DeleteLayer = SessionTest;

TEST_F(DeleteLayer, OfTheLastLayerLeavesAFrameWithoutRecords) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandDeleteLayer);
  const int state = session.State();
  session.Command(kCommandDeleteLayer);
  const int again = session.State();
  EXPECT_EQ(session.Cut(state)["layers"].size(), 0U);
  EXPECT_EQ(session.Frame(state)["currentRecord"], -1);
  EXPECT_EQ(Lines(session, state), json::array());
  EXPECT_EQ(session.StateAt(again), session.StateAt(state));
}

const Rules<SessionTest, "DeleteLayer"> kDeleteLayerRules = {
    {"GoesFromEveryFrame", Do().OpenCut("a.cut", ThreeLayers(2)).Select(kLayerList, {1}).Command(kCommandDeleteLayer),
     Has("order/0", "AC", "order/1", "AC", "cut/layers/#", 2)},
    {"OnTopLeavesTheNewTopCurrent", Do().OpenCut("a.cut", ThreeLayers(1)).Command(kCommandDeleteLayer),
     Has("cut/frame/currentRecord", 1, "order/0", "AB")},
    {"InTheMiddleLeavesTheFormerThirdRecordCurrent",
     Do().OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {1}).Command(kCommandDeleteLayer),
     Has("cut/frame/currentRecord", 1, "panels/layers/lines", json::array({"A (1/1)", "C (1/1)"}),
         "panels/layers/selected", "1")},
    {"CommitsNothingAndRefreshesOnlyTheList",
     Do().OpenCut("a.cut", ThreeLayers(1)).Panel(kCommentEdit, "typed").Command(kCommandDeleteLayer),
     Has("cut/frame/comment", "", "panels/comment", "typed")},
    {"MarksImagesAndRepaints", Do().OpenCut("a.cut", ThreeLayers(1)).Commands({kCommandPlay, kCommandDeleteLayer}),
     Has("cut/imagesStale", true, "cut/modified", true, "pixels/2", 24)},
};

TEST_F(DeleteLayer, TakesTheUndoOfItsCellWithIt) {
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandEraseCell).Command(kCommandDeleteLayer);
  const int before = session.State();
  session.Command(kCommandUndo);
  const int after = session.State();
  EXPECT_EQ(session.Cut(after)["layers"], session.Cut(before)["layers"]);
}

using LayerUp = SessionTest;

TEST_F(LayerUp, LeavesFramesWithAnotherLayerAtThatPlace) {
  CutFile file = ThreeLayers(2);
  file.frames[1].records = {{.layer = 2}, {.layer = 1}, {.layer = 0}};
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Select(kLayerList, {0}).Command(kCommandLayerUp);
  EXPECT_TRUE(Holds(session, "order/0", "BAC", "order/1", "CBA"));
  EXPECT_EQ(session.FrameAt(1)["currentRecord"], 0);
}

const Rules<SessionTest, "LayerUp"> kLayerUpRules = {
    {"ChangesTheCurrentFrameAndAllBehindIt",
     Do().OpenCut("a.cut", ThreeLayers(3)).Command(kCommandPreviousFrame).Select(kLayerList, {0}),
     Do().Command(kCommandLayerUp),
     Has("order/0", "ABC", "order/1", "BAC", "order/2", "BAC", "cut/frame/currentRecord", 1)},
    {"MovesTheLineInTheList", Do().OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {0}).Command(kCommandLayerUp),
     Has("panels/layers/lines", json::array({"B (1/1)", "A (1/1)", "C (1/1)"}), "panels/layers/selected", "1")},
    {"StopsAtTheTop", Do().OpenCut("a.cut", ThreeLayers(1)).Command(kCommandLayerUp),
     Has("order/0", "ABC", "cut/modified", false, "panels/layers/lines",
         json::array({"A (1/1)", "B (1/1)", "C (1/1)"}))},
};

const Rules<SessionTest, "LayerDown"> kLayerDownRules = {
    {"IsTheMirror", Do().OpenCut("a.cut", ThreeLayers(3)).Commands({kCommandPreviousFrame, kCommandLayerDown}),
     Has("order/0", "ABC", "order/1", "ACB", "order/2", "ACB", "panels/layers/lines",
         json::array({"A (1/1)", "C (1/1)", "B (1/1)"}), "panels/layers/selected", "1")},
    {"StopsAtTheBottom", Do().OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {0}).Command(kCommandLayerDown),
     Has("order/0", "ABC", "cut/modified", false)},
};

TEST_F(LayerUp, RepaintsAndMarksImages) {
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandPlay).Select(kLayerList, {1}).Command(kCommandLayerUp);
  const int view = session.View();
  EXPECT_EQ(session.Cut()["imagesStale"], true);
  EXPECT_EQ(session.ViewAt(view).Count(2), 24);
}

using LayerProperties = SessionTest;

TEST_F(LayerProperties, StartWithTheLayersOwn) {
  CutFile file = ThreeLayers(1);
  file.layers[2].followFrame = true;
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {}).Command(kCommandLayerProperties);
  EXPECT_TRUE(Holds(session, "cut/layers/2/name", "C", "cut/layers/2/width", 8, "cut/layers/2/height", 3,
                    "cut/layers/2/followFrame", 1, "cut/layers/2/cells", json::array({PlainCell(3)})));
}

TEST_F(LayerProperties, NewNameGoesIntoEveryLineOfTheLayer) {
  CutFile file = ThreeLayers(1);
  file.frames[0].records = {{.layer = 2}, {.layer = 1}, {.layer = 2}};
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandLayerProperties);
  EXPECT_TRUE(Holds(session, "panels/layers/lines", json::array({"N (1/1)", "B (1/1)", "N (1/1)"}),
                    "panels/layers/selected", json::array({2})));
}

TEST_F(LayerProperties, NewSizeResizesEveryCell) {
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0}));
  session.Dialog(kLayerDialog, {{kLayerWidthEdit, "16"}, {kLayerHeightEdit, "5"}}).Command(kCommandLayerProperties);
  json layer = session.Cut()["layers"][0];
  EXPECT_TRUE(Holds(session, "cut/layers/0/width", 16, "cut/layers/0/height", 5));
  std::string row = std::string(4, '\x11') + std::string(4, '\0');
  EXPECT_EQ(layer["cells"][0], Checksum(row + row + row + std::string(16, '\0')));
  row = std::string(4, '\x22') + std::string(4, '\0');
  EXPECT_EQ(layer["cells"][1], Checksum(row + row + row + std::string(16, '\0')));
}

TEST_F(LayerProperties, UndoWorksOnALayerThatHasGrown) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}));
  session.Dialog(kLayerDialog, {{kLayerWidthEdit, "200"}, {kLayerHeightEdit, "100"}}).Command(kCommandLayerProperties);
  const int grown = session.State();
  session.Command(kCommandEraseCell).Command(kCommandUndo);
  const int undone = session.State();
  EXPECT_EQ(session.Cut(undone)["layers"], session.Cut(grown)["layers"]);
}

const Rules<SessionTest, "LayerProperties"> kLayerPropertiesRules = {
    {"FollowFrameIsTaken", Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerFollowCheck, "on"}}),
     Do().Command(kCommandLayerProperties), Has("cut/layers/2/followFrame", 1),
     Do().Dialog(kLayerDialog, {{kLayerFollowCheck, "off"}}).Command(kCommandLayerProperties),
     Has("cut/layers/2/followFrame", 0)},
    {"NewSizeTakesFollowFrameToo",
     Do().OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerWidthEdit, "16"}, {kLayerFollowCheck, "on"}}),
     Do().Command(kCommandLayerProperties), Has("cut/layers/2/followFrame", 1)},
    {"OkMarksImagesEvenWhenUnchanged",
     Do().OpenCut("a.cut", ThreeLayers(1)).Command(kCommandPlay).Dialog(kLayerDialog, {}),
     Do().Command(kCommandLayerProperties), Has("cut/modified", true, "cut/imagesStale", true)},
    {"CancelChangesNothing", Do().OpenCut("a.cut", ThreeLayers(1)),
     Do().Dialog(kLayerDialog, {{kLayerNameEdit, "N"}, {kLayerWidthEdit, "5"}}, "cancel"),
     Do().Command(kCommandLayerProperties),
     Has("cut/layers/2/name", "C", "cut/layers/2/width", 8, "cut/modified", false)},
    {"FrameWithoutRecordsShowsNoDialog",
     Do().OpenCut("a.cut", CutFile::WithoutLayers(1)).Command(kCommandLayerProperties), Has("cut/modified", false)},
};

const Rules<SessionTest, "SelectLayer"> kSelectLayerRules = {
    {"MarksNothingInTheNormalDisplay",
     Do().OpenCut("a.cut", ThreeLayers(1)).Command(kCommandPlay).Select(kLayerList, {0}),
     Has("cut/frame/currentRecord", 0, "cut/imagesStale", false, "cut/modified", false)},
    {"NeedsANewStreamWhenOnlyTheCurrentCellIsShown",
     Do().OpenCut("a.cut", ThreeLayers(1)).Commands({kCommandCurrentCellOnly, kCommandPlay}).Select(kLayerList, {0}),
     Has("cut/imagesStale", true, "cut/timingStale", false, "pixels/1", 24)},
};

using SaveLayer = SessionTest;

TEST_F(SaveLayer, WritesTheCurrentLayerAlone) {
  session.OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {1}).File("b").Command(kCommandSaveLayer);
  session.Run();
  const std::string block("B\0\x08\0\x03\0\0\x01\0\x03\0\0\0\x04\0\0\0\x01\x01\x01\x10\x14\x04\x22\x22\x22\x22", 27);
  EXPECT_EQ(session.Bytes("b.lyr"), std::string("Sorvelin Layer\0", 15) + block);
}

TEST_F(SaveLayer, WorksOnABlankRecordAndChangesNoFlag) {
  session.OpenCut("a.cut", CutFile::Showing({1}, {-1})).File("b.lyr").Command(kCommandSaveLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("b.lyr").size(), 15U + 27U);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

const Rules<SessionTest, "SaveLayer"> kSaveLayerRules = {
    {"CancelWritesNothing", Do().OpenCut("a.cut", ThreeLayers(1)).File("cancel").Command(kCommandSaveLayer),
     Has("files", "a.cut")},
};

// A script with two layer files: one cell of colour 4 called "Four", and the rest as it stands.
template <typename Session>
ScriptSession& WriteLayerFour(Session&& session) {
  const std::string block("Four\0\x08\0\x03\0\0\x01\0\x02\0\0\0\x02\0\0\0\x01\x01\0\x10\x14\x44\x44", 27);
  return session.Write("four.lyr", std::string("Sorvelin Layer\0", 15) + block);
}

using OverwriteLayer = SessionTest;

TEST_F(OverwriteLayer, RepaintsButLeavesThePanels) {
  WriteLayerFour(session);
  session.OpenCut("a.cut", ThreeLayers(1)).File("four.lyr").Command(kCommandOverwriteLayer);
  const int view = session.View();
  EXPECT_TRUE(Holds(session, "panels/layers/lines", json::array({"A (1/1)", "B (1/1)", "C (1/1)"})));
  EXPECT_EQ(session.ViewAt(view).Count(4), 24);
}

const Rules<SessionTest, "OverwriteLayer"> kOverwriteLayerRules = {
    {"IntoACutWithoutLayersMakesOneInEveryFrame",
     WriteLayerFour(Do()).OpenCut("a.cut", CutFile::WithoutLayers(2)).File("four.lyr").Command(kCommandOverwriteLayer),
     Has("order/0", "Four", "order/1", "Four", "cut/frames/0/records/0/x", 0)},
    {"ReplacesTheCurrentLayerFromTheFile",
     WriteLayerFour(Do()).OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {1}).File("four"),
     Do().Command(kCommandOverwriteLayer),
     Has("cut/layers/#", 3, "cut/layers/1/name", "Four", "cut/layers/1/cells", json::array({PlainCell(4)}),
         "cut/modified", true, "cut/imagesStale", true)},
    {"WrongMagicLeavesTheLayer",
     Do().Write("bad.lyr", std::string("Sorvelin Later\0Four\0", 20)).OpenCut("a.cut", ThreeLayers(1)).File("bad.lyr"),
     Do().Command(kCommandOverwriteLayer), Has("cut/layers/2/name", "C", "cut/modified", false)},
};

const Rules<SessionTest, "EraseLayerDraft"> kEraseLayerDraftRules = {
    {"ClearsTheSketchColoursOfEveryCell",
     Do().OpenCut("a.cut", CutFile::Showing({5, 1, 6, 7, 8}, {1})).Command(kCommandEraseLayerSketch),
     Has("cells", json::array({PlainCell(0), PlainCell(1), PlainCell(0), PlainCell(0), PlainCell(8)}))},
};

}  // namespace
}  // namespace rules
