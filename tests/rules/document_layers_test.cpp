#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::PlainCell;
using rules::ScriptSession;

// Layers A, B and C with cells of the colours 1, 2 and 3, bottom first, in each frame.
CutFile ThreeLayers(size_t frameCount) {
  CutFile file;
  file.layers = {{.name = "A", .cells = {1}}, {.name = "B", .cells = {2}}, {.name = "C", .cells = {3}}};
  file.frames.assign(frameCount, {.records = {{.layer = 0}, {.layer = 1}, {.layer = 2}}});
  return file;
}

// The layer names of a frame's records, bottom first.
std::string Order(const ScriptSession& session, int state, size_t frame) {
  std::string names;
  json cut = session.Cut(state);
  json records = session.Frame(state, frame)["records"];
  for (json& record : records) {
    const size_t layer = record["layer"].is_number_integer() ? record["layer"].get<size_t>() : 999;
    if (layer >= cut["layers"].size()) return "(bad layer)";
    names.append(cut["layers"][layer]["name"].get<std::string>());
  }
  return names;
}

json Lines(const ScriptSession& session, int state) {
  return rules::PanelOf(session, state, "10004")["lines"];
}

json Selected(const ScriptSession& session, int state) {
  return rules::PanelOf(session, state, "10004")["selected"];
}

TEST(AddLayer, LiesAboveTheCurrentRecordInEveryFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(2))
      .Select(kLayerList, {0})
      .Dialog(kLayerDialog, {{kLayerNameEdit, "N"}})
      .Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "ANBC");
  EXPECT_EQ(Order(session, state, 1), "ANBC");
  EXPECT_EQ(session.Frame(state, 0)["currentRecord"], 1);
  EXPECT_EQ(session.Frame(state, 1)["currentRecord"], 1);
}

TEST(AddLayer, SkipsAFrameThatLacksTheCurrentRecord) {
  ScriptSession session;
  CutFile file = ThreeLayers(2);
  file.frames[0].records.resize(1);
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "A");
  EXPECT_EQ(Order(session, state, 1), "ABCN");
}

TEST(AddLayer, IsCentredOnTheCut) {
  ScriptSession session;
  session.NewCut({.width = 32, .height = 24, .layerWidth = 9, .layerHeight = 5});
  const int smaller = session.State();
  session.NewCut({.width = 32, .height = 24, .layerWidth = 39, .layerHeight = 29});
  const int larger = session.State();
  session.Run();
  EXPECT_EQ(session.Record(smaller, 0)["x"], 11);
  EXPECT_EQ(session.Record(smaller, 0)["y"], 9);
  EXPECT_EQ(session.Record(larger, 0)["x"], -3);
  EXPECT_EQ(session.Record(larger, 0)["y"], -2);
}

TEST(AddLayer, DialogStartsWithTheCutSizeAndAnEmptyName) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  json layer = session.Cut(state)["layers"][3];
  EXPECT_EQ(layer["width"], 8);
  EXPECT_EQ(layer["height"], 3);
  EXPECT_EQ(layer["name"], "LAYER 3");
  EXPECT_EQ(layer["followFrame"], 0);
}

TEST(AddLayer, DefaultNameOfTheEleventhLayerHasNoBlank) {
  ScriptSession session;
  CutFile file;
  file.layers.resize(10);
  file.frames.push_back({.records = {{.layer = 0}}});
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][10]["name"], "LAYER10");
}

TEST(AddLayer, CheckBoxOfTheDialogHasNoEffect) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerFollowCheck, "on"}}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][3]["followFrame"], 0);
}

TEST(AddLayer, HasOneTransparentCell) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][3]["cells"], json::array({PlainCell(0)}));
}

TEST(AddLayer, RefreshesTheList) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"A (1/1)", "B (1/1)", "C (1/1)", "N (1/1)"}));
  EXPECT_EQ(Selected(session, state), json::array({3}));
}

TEST(AddLayer, CancelAddsNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}, "cancel")
      .Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"].size(), 3U);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(AddLayer, LiesOverTheSelectionWithItsSize) {
  ScriptSession session;
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 236);
  const int before = session.State();
  session.Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  ASSERT_EQ(session.Cut(before)["selection"], json::array({306, 230, 316, 236}));
  EXPECT_EQ(session.Cut(state)["layers"][1]["width"], 10);
  EXPECT_EQ(session.Cut(state)["layers"][1]["height"], 6);
  EXPECT_EQ(session.Record(state, 1)["x"], 2);
  EXPECT_EQ(session.Record(state, 1)["y"], 2);
}

TEST(AddLayer, OverTheSelectionKeepsItsPlaceWithAnotherSize) {
  ScriptSession session;
  session.NewCut().Command(kToolAreaSelect).LeftDrag(306, 230, 316, 236);
  session.Dialog(kLayerDialog, {{kLayerNameEdit, "N"}, {kLayerWidthEdit, "4"}, {kLayerHeightEdit, "4"}})
      .Command(kCommandAddLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Record(state, 1)["x"], 2);
  EXPECT_EQ(session.Record(state, 1)["y"], 2);
}

TEST(InsertLayer, LiesBelowTheCurrentRecordInEveryFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(2))
      .Select(kLayerList, {1})
      .Dialog(kLayerDialog, {{kLayerNameEdit, "N"}})
      .Command(kCommandInsertLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "ANBC");
  EXPECT_EQ(Order(session, state, 1), "ANBC");
  EXPECT_EQ(session.Frame(state)["currentRecord"], 1);
}

TEST(InsertLayer, IntoAFrameWithoutRecordsEntersTwice) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1))
      .Dialog(kLayerDialog, {{kLayerNameEdit, "N"}})
      .Command(kCommandInsertLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "NN");
  EXPECT_EQ(session.Cut(state)["layers"].size(), 1U);
}

TEST(DeleteLayer, GoesFromEveryFrame) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(2)).Select(kLayerList, {1}).Command(kCommandDeleteLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "AC");
  EXPECT_EQ(Order(session, state, 1), "AC");
  EXPECT_EQ(session.Cut(state)["layers"].size(), 2U);
}

TEST(DeleteLayer, InTheMiddleLeavesTheFormerThirdRecordCurrent) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {1}).Command(kCommandDeleteLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["currentRecord"], 1);
  EXPECT_EQ(Lines(session, state), json::array({"A (1/1)", "C (1/1)"}));
  EXPECT_EQ(Selected(session, state), json::array({1}));
}

TEST(DeleteLayer, OnTopLeavesTheNewTopCurrent) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandDeleteLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["currentRecord"], 1);
  EXPECT_EQ(Order(session, state, 0), "AB");
}

TEST(DeleteLayer, OfTheLastLayerLeavesAFrameWithoutRecords) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0})).Command(kCommandDeleteLayer);
  const int state = session.State();
  session.Command(kCommandDeleteLayer);
  const int again = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"].size(), 0U);
  EXPECT_EQ(session.Frame(state)["currentRecord"], -1);
  EXPECT_EQ(Lines(session, state), json::array());
  EXPECT_EQ(session.StateAt(again), session.StateAt(state));
}

TEST(DeleteLayer, CommitsNothingAndRefreshesOnlyTheList) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Panel(kCommentEdit, "typed").Command(kCommandDeleteLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["comment"], "");
  EXPECT_EQ(session.StateAt(state)["panels"]["10006"], "typed");
}

TEST(DeleteLayer, MarksImagesAndRepaints) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandPlay).Command(kCommandDeleteLayer);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.ViewAt(view).Count(2), 24);
}

TEST(DeleteLayer, TakesTheUndoOfItsCellWithIt) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandEraseCell).Command(kCommandDeleteLayer);
  const int before = session.State();
  session.Command(kCommandUndo);
  const int after = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(after)["layers"], session.Cut(before)["layers"]);
}

TEST(LayerUp, ChangesTheCurrentFrameAndAllBehindIt) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(3))
      .Command(kCommandPreviousFrame)
      .Select(kLayerList, {0})
      .Command(kCommandLayerUp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "ABC");
  EXPECT_EQ(Order(session, state, 1), "BAC");
  EXPECT_EQ(Order(session, state, 2), "BAC");
  EXPECT_EQ(session.Frame(state)["currentRecord"], 1);
}

TEST(LayerUp, MovesTheLineInTheList) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {0}).Command(kCommandLayerUp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"B (1/1)", "A (1/1)", "C (1/1)"}));
  EXPECT_EQ(Selected(session, state), json::array({1}));
}

TEST(LayerUp, LeavesFramesWithAnotherLayerAtThatPlace) {
  ScriptSession session;
  CutFile file = ThreeLayers(2);
  file.frames[1].records = {{.layer = 2}, {.layer = 1}, {.layer = 0}};
  session.OpenCut("a.cut", file).Command(kCommandFirstFrame).Select(kLayerList, {0}).Command(kCommandLayerUp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "BAC");
  EXPECT_EQ(Order(session, state, 1), "CBA");
  EXPECT_EQ(session.Frame(state, 1)["currentRecord"], 0);
}

TEST(LayerUp, StopsAtTheTop) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandLayerUp);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "ABC");
  EXPECT_EQ(session.Cut(state)["modified"], false);
  EXPECT_EQ(Lines(session, state), json::array({"A (1/1)", "B (1/1)", "C (1/1)"}));
}

TEST(LayerDown, IsTheMirror) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(3)).Command(kCommandPreviousFrame).Command(kCommandLayerDown);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "ABC");
  EXPECT_EQ(Order(session, state, 1), "ACB");
  EXPECT_EQ(Order(session, state, 2), "ACB");
  EXPECT_EQ(Lines(session, state), json::array({"A (1/1)", "C (1/1)", "B (1/1)"}));
  EXPECT_EQ(Selected(session, state), json::array({1}));
}

TEST(LayerDown, StopsAtTheBottom) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Select(kLayerList, {0}).Command(kCommandLayerDown);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "ABC");
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(LayerUp, RepaintsAndMarksImages) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandPlay).Select(kLayerList, {1}).Command(kCommandLayerUp);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(session.ViewAt(view).Count(2), 24);
}

TEST(LayerProperties, StartWithTheLayersOwn) {
  ScriptSession session;
  CutFile file = ThreeLayers(1);
  file.layers[2].followFrame = true;
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {}).Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  json layer = session.Cut(state)["layers"][2];
  EXPECT_EQ(layer["name"], "C");
  EXPECT_EQ(layer["width"], 8);
  EXPECT_EQ(layer["height"], 3);
  EXPECT_EQ(layer["followFrame"], 1);
  EXPECT_EQ(layer["cells"], json::array({PlainCell(3)}));
}

TEST(LayerProperties, NewNameGoesIntoEveryLineOfTheLayer) {
  ScriptSession session;
  CutFile file = ThreeLayers(1);
  file.frames[0].records = {{.layer = 2}, {.layer = 1}, {.layer = 2}};
  session.OpenCut("a.cut", file).Dialog(kLayerDialog, {{kLayerNameEdit, "N"}}).Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"N (1/1)", "B (1/1)", "N (1/1)"}));
  EXPECT_EQ(Selected(session, state), json::array({2}));
}

TEST(LayerProperties, FollowFrameIsTaken) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Dialog(kLayerDialog, {{kLayerFollowCheck, "on"}})
      .Command(kCommandLayerProperties);
  const int on = session.State();
  session.Dialog(kLayerDialog, {{kLayerFollowCheck, "off"}}).Command(kCommandLayerProperties);
  const int off = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(on)["layers"][2]["followFrame"], 1);
  EXPECT_EQ(session.Cut(off)["layers"][2]["followFrame"], 0);
}

TEST(LayerProperties, NewSizeResizesEveryCell) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1, 2}, {0}))
      .Dialog(kLayerDialog, {{kLayerWidthEdit, "16"}, {kLayerHeightEdit, "5"}})
      .Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  json layer = session.Cut(state)["layers"][0];
  EXPECT_EQ(layer["width"], 16);
  EXPECT_EQ(layer["height"], 5);
  std::string row = std::string(4, '\x11') + std::string(4, '\0');
  EXPECT_EQ(layer["cells"][0], rules::Checksum(row + row + row + std::string(16, '\0')));
  row = std::string(4, '\x22') + std::string(4, '\0');
  EXPECT_EQ(layer["cells"][1], rules::Checksum(row + row + row + std::string(16, '\0')));
}

TEST(LayerProperties, NewSizeTakesFollowFrameToo) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Dialog(kLayerDialog, {{kLayerWidthEdit, "16"}, {kLayerFollowCheck, "on"}})
      .Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][2]["followFrame"], 1);
}

TEST(LayerProperties, UndoWorksOnALayerThatHasGrown) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {0}))
      .Dialog(kLayerDialog, {{kLayerWidthEdit, "200"}, {kLayerHeightEdit, "100"}})
      .Command(kCommandLayerProperties);
  const int grown = session.State();
  session.Command(kCommandEraseCell).Command(kCommandUndo);
  const int undone = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(undone)["layers"], session.Cut(grown)["layers"]);
}

TEST(LayerProperties, OkMarksImagesEvenWhenUnchanged) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Command(kCommandPlay)
      .Dialog(kLayerDialog, {})
      .Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST(LayerProperties, CancelChangesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Dialog(kLayerDialog, {{kLayerNameEdit, "N"}, {kLayerWidthEdit, "5"}}, "cancel")
      .Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][2]["name"], "C");
  EXPECT_EQ(session.Cut(state)["layers"][2]["width"], 8);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(LayerProperties, FrameWithoutRecordsShowsNoDialog) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::WithoutLayers(1)).Command(kCommandLayerProperties);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(SelectLayer, MarksNothingInTheNormalDisplay) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).Command(kCommandPlay).Select(kLayerList, {0});
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Frame(state)["currentRecord"], 0);
  EXPECT_EQ(session.Cut(state)["imagesStale"], false);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(SelectLayer, NeedsANewStreamWhenOnlyTheCurrentCellIsShown) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Command(kCommandCurrentCellOnly)
      .Command(kCommandPlay)
      .Select(kLayerList, {0});
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
  EXPECT_EQ(session.Cut(state)["timingStale"], false);
  EXPECT_EQ(session.ViewAt(view).Count(1), 24);
}

TEST(SaveLayer, WritesTheCurrentLayerAlone) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1))
      .Select(kLayerList, {1})
      .File(session.Path("b"))
      .Command(kCommandSaveLayer)
      .Run();
  const std::string block("B\0\x08\0\x03\0\0\x01\0\x03\0\0\0\x04\0\0\0\x01\x01\x01\x10\x14\x04\x22\x22\x22\x22", 27);
  EXPECT_EQ(session.Bytes("b.lyr"), std::string("Sorvelin Layer\0", 15) + block);
}

TEST(SaveLayer, WorksOnABlankRecordAndChangesNoFlag) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({1}, {-1})).File(session.Path("b.lyr")).Command(kCommandSaveLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Bytes("b.lyr").size(), 15U + 27U);
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(SaveLayer, CancelWritesNothing) {
  ScriptSession session;
  session.OpenCut("a.cut", ThreeLayers(1)).File("cancel").Command(kCommandSaveLayer).Run();
  EXPECT_EQ(session.Files(), std::vector<std::string>{"a.cut"});
}

// A script with two layer files: one cell of colour 4 called "Four", and the rest as it stands.
void WriteLayerFour(const ScriptSession& session) {
  const std::string block("Four\0\x08\0\x03\0\0\x01\0\x02\0\0\0\x02\0\0\0\x01\x01\0\x10\x14\x44\x44", 27);
  session.Write("four.lyr", std::string("Sorvelin Layer\0", 15) + block);
}

TEST(OverwriteLayer, ReplacesTheCurrentLayerFromTheFile) {
  ScriptSession session;
  WriteLayerFour(session);
  session.OpenCut("a.cut", ThreeLayers(1))
      .Select(kLayerList, {1})
      .File(session.Path("four"))
      .Command(kCommandOverwriteLayer);
  const int state = session.State();
  session.Run();
  json layers = session.Cut(state)["layers"];
  EXPECT_EQ(layers.size(), 3U);
  EXPECT_EQ(layers[1]["name"], "Four");
  EXPECT_EQ(layers[1]["cells"], json::array({PlainCell(4)}));
  EXPECT_EQ(session.Cut(state)["modified"], true);
  EXPECT_EQ(session.Cut(state)["imagesStale"], true);
}

TEST(OverwriteLayer, RepaintsButLeavesThePanels) {
  ScriptSession session;
  WriteLayerFour(session);
  session.OpenCut("a.cut", ThreeLayers(1)).File(session.Path("four.lyr")).Command(kCommandOverwriteLayer);
  const int state = session.State();
  const int view = session.View();
  session.Run();
  EXPECT_EQ(Lines(session, state), json::array({"A (1/1)", "B (1/1)", "C (1/1)"}));
  EXPECT_EQ(session.ViewAt(view).Count(4), 24);
}

TEST(OverwriteLayer, IntoACutWithoutLayersMakesOneInEveryFrame) {
  ScriptSession session;
  WriteLayerFour(session);
  session.OpenCut("a.cut", CutFile::WithoutLayers(2)).File(session.Path("four.lyr")).Command(kCommandOverwriteLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(Order(session, state, 0), "Four");
  EXPECT_EQ(Order(session, state, 1), "Four");
  EXPECT_EQ(session.Frame(state, 0)["records"][0]["x"], 0);
}

TEST(OverwriteLayer, WrongMagicLeavesTheLayer) {
  ScriptSession session;
  session.Write("bad.lyr", std::string("Sorvelin Later\0Four\0", 20));
  session.OpenCut("a.cut", ThreeLayers(1)).File(session.Path("bad.lyr")).Command(kCommandOverwriteLayer);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][2]["name"], "C");
  EXPECT_EQ(session.Cut(state)["modified"], false);
}

TEST(EraseLayerDraft, ClearsTheSketchColoursOfEveryCell) {
  ScriptSession session;
  session.OpenCut("a.cut", CutFile::Showing({5, 1, 6, 7, 8}, {1})).Command(kCommandEraseLayerSketch);
  const int state = session.State();
  session.Run();
  EXPECT_EQ(session.Cut(state)["layers"][0]["cells"],
            json::array({PlainCell(0), PlainCell(1), PlainCell(0), PlainCell(0), PlainCell(8)}));
}

}  // namespace
