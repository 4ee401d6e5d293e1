#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/rule_table.h"

namespace rules {
namespace {

using Place = std::pair<int, int>;

Place ScrollOf(DrawingSession& session) {
  const nlohmann::json cut = session.Cut();
  return {cut["scrollX"].get<int>(), cut["scrollY"].get<int>()};
}

struct Scrolling : DrawingTest {
  Scrolling() : DrawingTest({.width = 200, .height = 150, .clientWidth = 64, .clientHeight = 48}) {}
};

// Pages to the right and down.
ScriptSession Pages(int count) {
  ScriptSession pages;
  for (int i = 0; i < count; ++i) pages.Line("scroll h pagedown").Line("scroll v pagedown");
  return pages;
}

// Double size, from 1/1, with the position at the origin.
ScriptSession ZoomIn() {
  ScriptSession zoom;
  zoom.Command(kToolZoom).Press(0, 0).Command(kToolFreePen);
  return zoom.Line("scroll h thumbposition 0").Line("scroll v thumbposition 0");
}

TEST_F(Scrolling, AClientLargerThanThePictureLeavesANegativePosition) {
  DrawingSession large({.width = 240, .height = 180, .clientWidth = 640, .clientHeight = 480});
  EXPECT_EQ(ScrollOf(large), (Place{-400, -300}));
}

const Rules<Scrolling, "Scrolling"> kScrollingRules = {
    {"PageDownStopsAtTheLastPage", Pages(5), Has("cut/scrollX,scrollY", "136 102")},
    {"ANotchOfTheWheelIsThreeLines", Do().Line("wheel -2"), Has("cut/scrollX,scrollY", "0 24"),
     Do().Line("wheel -1 shift"), Has("cut/scrollX,scrollY", "12 24"), Do().Line("wheel 1"),
     Has("cut/scrollX,scrollY", "12 12")},
    {"TheWheelStopsWhereADragStops", Do().Line("wheel -99").Line("wheel -99 shift"),
     Has("cut/scrollX,scrollY", "135 101"), Do().Line("wheel 99"), Has("cut/scrollX,scrollY", "135 0")},
    {"WithCtrlTheWheelZoomsAtTheMouse", Do().Mouse("move", 30, 20).Line("wheel 1 ctrl"),
     Has("cut/zoomNumerator,zoomDenominator", "2 1", "cut/scrollX,scrollY", "30 20"), Do().Line("wheel -2 ctrl"),
     Has("cut/zoomNumerator,zoomDenominator", "1 2")},
    {"TheMiddleButtonDragsThePicture",
     Do().Mouse("mdown", 60, 40).Mouse("move", 50, 30).Mouse("move", 20, 10).Mouse("mup", 20, 10).Mouse("move", 0, 0),
     Has("cut/scrollX,scrollY", "40 30")},
    {"ALineAtDoubleSizeIsEightPixels", ZoomIn(), Do().Line("scroll h linedown").Line("scroll v linedown"),
     Has("cut/scrollX,scrollY", "8 8")},
    {"ThumbPositionsAreMultiplesOfTheZoom", ZoomIn(),
     Do().Line("scroll h thumbposition 77").Line("scroll v thumbtrack 33"), Has("cut/scrollX,scrollY", "76 32")},
    {"APageAtTripleSizeIsAMultipleOfTheZoom", ZoomIn(),
     Do().Command(kToolZoom).Press(0, 0).Line("scroll h thumbposition 0").Line("scroll v thumbposition 0"),
     Do().Line("scroll h pagedown").Line("scroll v pagedown"), Has("cut/scrollX,scrollY", "63 48")},
    {"AWindowStartsAtTheOrigin", Has("cut/scrollX,scrollY", "0 0")},
    {"ALineIsFourPixels", Do().Line("scroll h linedown").Line("scroll v linedown").Line("scroll v linedown"),
     Has("cut/scrollX,scrollY", "4 8"), Do().Line("scroll v lineup"), Has("cut/scrollX,scrollY", "4 4")},
    {"LineUpHasNoLowerLimit", Do().Line("scroll h lineup").Line("scroll h lineup").Line("scroll v lineup"),
     Has("cut/scrollX,scrollY", "-8 -4")},
    {"ANewClientSizeBringsANegativePositionBack",
     Do().Line("scroll h lineup").Line("scroll v lineup").Line("client 60 40"), Has("cut/scrollX,scrollY", "0 0")},
    {"LineDownHasNoUpperLimit", Do().Line("scroll h thumbposition 136").Line("scroll h linedown"),
     Has("cut/scrollX,scrollY", "140 0")},
    {"APageIsTheClient", Do().Line("scroll h pagedown").Line("scroll v pagedown"), Has("cut/scrollX,scrollY", "64 48"),
     Do().Line("scroll h pageup").Line("scroll v pageup"), Has("cut/scrollX,scrollY", "0 0")},
    {"PageUpStopsAtZero", Do().Line("scroll h thumbposition 10").Line("scroll h pageup").Line("scroll v pageup"),
     Has("cut/scrollX,scrollY", "0 0")},
    {"ThumbCodesSetThePosition", Do().Line("scroll h thumbposition 77").Line("scroll v thumbtrack 33"),
     Has("cut/scrollX,scrollY", "77 33")},
    {"ALargerClientPullsThePositionBack",
     Do().Line("scroll h thumbposition 136").Line("scroll v thumbposition 102").Line("client 100 60"),
     Has("cut/scrollX,scrollY", "100 90")},
    {"TheMouseMeetsTheScrolledPicture",
     Do().Line("scroll h thumbposition 50").Line("scroll v thumbposition 30").Press(10, 5), Ink().Set(60, 35, 1)},
};

TEST_F(Scrolling, AtHalfSizeTheHorizontalTotalIsThatOfFullSize) {
  DrawingSession half({.width = 400, .height = 300, .clientWidth = 64, .clientHeight = 48});
  half.Command(kToolZoom).RightClick(1, 1);
  for (int i = 0; i < 9; ++i) half.Line("scroll h pagedown").Line("scroll v pagedown");
  EXPECT_EQ(ScrollOf(half), (Place{336, 102}));
}

TEST_F(Scrolling, AThumbIsIgnoredOnAPictureOfMoreThan65535Pixels) {
  for (const bool isWide : {true, false}) {
    DrawingSession large({.width = isWide ? 22000 : 10,
                          .height = isWide ? 10 : 22000,
                          .clientWidth = isWide ? 64 : 10,
                          .clientHeight = isWide ? 10 : 48});
    const auto position = [&] { return isWide ? ScrollOf(large).first : ScrollOf(large).second; };
    const std::string bar = isWide ? "scroll h " : "scroll v ";
    large.Command(kToolZoom).Mouse("ldown", 0, 0).Line(bar + "thumbposition 30");
    EXPECT_EQ(position(), 30) << bar;
    large.Mouse("ldown", 0, 0);
    const int before = position();
    large.Line(bar + "thumbposition 90").Line(bar + "thumbtrack 60");
    EXPECT_EQ(position(), before) << bar;
  }
}

// A pulse ends a chain of lines.
struct PulseCase {
  const char* name;
  std::vector<const char*> before;
  const char* scroll;
  bool hasPulse;
};

class ScrollPulse : public Scrolling, public testing::WithParamInterface<PulseCase> {};

TEST_P(ScrollPulse, EndsAChainOfLines) {
  for (const char* scroll : GetParam().before) session.Line(std::string("scroll ") + scroll);
  session.Command(kToolLine).LeftClick(10, 10, "ctrl").Line(std::string("scroll ") + GetParam().scroll);
  session.LeftClick(40, 10);
  EXPECT_EQ(session.NowView().Count(8) > 1, !GetParam().hasPulse);
}

INSTANTIATE_TEST_SUITE_P(
    All, ScrollPulse,
    testing::Values(PulseCase{"ComesWithALineStep", {}, "h linedown", true},
                    PulseCase{"ComesWithALineStepUp", {}, "v lineup", true},
                    PulseCase{"ComesWithAThumbPosition", {}, "h thumbposition 20", true},
                    PulseCase{"ComesWithTheFirstThumbTrack", {}, "v thumbtrack 20", true},
                    PulseCase{"DoesNotComeWithAThumbTrackToTheSamePlace", {}, "v thumbtrack 0", false},
                    PulseCase{"DoesNotComeWithAPage", {}, "h pagedown", false},
                    PulseCase{"DoesNotComeWithTheSecondThumbTrack", {"h thumbtrack 20"}, "h thumbtrack 30", false},
                    PulseCase{"ComesWithAThumbTrackAfterTheThumbWasLeft",
                              {"h thumbtrack 20", "h thumbposition 20"},
                              "h thumbtrack 30",
                              true}),
    [](const testing::TestParamInfo<PulseCase>& test) { return std::string(test.param.name); });

// Panning with Shift and Ctrl.
struct Panning : Scrolling {};

ScriptSession Pan(int x, int y) {
  return Do().Move(x, y, "ctrl shift");
}

TEST_F(Panning, ASmallPictureStaysAndItsToolSeesNothing) {
  DrawingSession small({.clientWidth = 84, .clientHeight = 68});
  const Place before = ScrollOf(small);
  small.Move(30, 20, "ctrl shift").Move(20, 15, "ctrl shift");
  EXPECT_EQ(ScrollOf(small), before);
  EXPECT_TRUE(Shows(small.NowView(), InkModel()));
}

const Rules<Panning, "Panning"> kPanningRules = {
    {"TheToolSeesNothingOfIt", Pan(30, 20), Pan(20, 15), OnEmpty()},
    {"ItsStartSendsAPulse", Do().Move(40, 30), Pan(30, 20), OnEmpty()},
    {"ThePictureFollowsTheMouse", Pan(30, 20), Has("cut/scrollX,scrollY", "0 0"), Pan(20, 15),
     Has("cut/scrollX,scrollY", "10 5"), Pan(10, 13), Has("cut/scrollX,scrollY", "20 7"), Pan(15, 13),
     Has("cut/scrollX,scrollY", "15 7")},
    {"StopsAtTheOrigin", Pan(10, 10), Pan(30, 40), Has("cut/scrollX,scrollY", "0 0")},
    {"StopsOneBeforeTheLastPage", Pan(500, 500), Pan(0, 0), Has("cut/scrollX,scrollY", "135 101")},
    {"AWayThatWasNotGoneIsStillOwed", Pan(10, 10), Pan(30, 10), Pan(25, 10), Has("cut/scrollX,scrollY", "0 0"),
     Pan(6, 10), Has("cut/scrollX,scrollY", "4 0")},
    {"PositionsAreMultiplesOfTheZoom", ZoomIn(), Pan(30, 20), Pan(23, 15), Has("cut/scrollX,scrollY", "6 4")},
    {"WithoutBothKeysNothingMoves", Do().Move(30, 20, "ctrl").Move(20, 15, "ctrl").Move(10, 10, "shift"),
     Has("cut/scrollX,scrollY", "0 0")},
    {"AMoveWithoutTheKeysEndsIt", Pan(30, 20), Pan(20, 15), Do().Move(50, 40), Pan(40, 40),
     Has("cut/scrollX,scrollY", "10 5"), Pan(38, 40), Has("cut/scrollX,scrollY", "12 5")},
    {"AStrokeUnderThePanGetsNoSegment", Do().Command(kCommandMuraRemoval).Press(30, 20), Pan(40, 20), Pan(40, 20),
     Ink().Set(30, 20, 1)},
};

}  // namespace
}  // namespace rules
