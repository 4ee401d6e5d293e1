#include <gtest/gtest.h>

#include <string>
#include <utility>

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
  void Scroll(const std::string& bar, const std::string& code) { session.Line("scroll " + bar + " " + code); }
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
  DrawingSession wide({.width = 22000, .height = 10, .clientWidth = 64, .clientHeight = 10});
  wide.Command(kToolZoom).Mouse("ldown", 0, 0).Line("scroll h thumbposition 30");
  EXPECT_EQ(ScrollOf(wide).first, 30);
  wide.Mouse("ldown", 0, 0);
  const int before = ScrollOf(wide).first;
  wide.Line("scroll h thumbposition 90").Line("scroll h thumbtrack 60");
  EXPECT_EQ(ScrollOf(wide).first, before);
}

TEST_F(Scrolling, AVerticalThumbIsIgnoredOnAPictureOfMoreThan65535Pixels) {
  DrawingSession high({.width = 10, .height = 22000, .clientWidth = 10, .clientHeight = 48});
  high.Command(kToolZoom).Mouse("ldown", 0, 0).Line("scroll v thumbposition 30");
  EXPECT_EQ(ScrollOf(high).second, 30);
  high.Mouse("ldown", 0, 0);
  const int before = ScrollOf(high).second;
  high.Line("scroll v thumbposition 90").Line("scroll v thumbtrack 60");
  EXPECT_EQ(ScrollOf(high).second, before);
}

// Pulses: a line chain is gone after one.
struct ScrollPulse : Scrolling {
  bool ChainSurvives(const std::string& bar, const std::string& code) {
    session.Command(kToolLine).LeftClick(10, 10, "ctrl");
    Scroll(bar, code);
    session.LeftClick(40, 10);
    return session.NowView().Count(8) > 1;
  }
};

TEST_F(ScrollPulse, ComesWithALineStep) {
  EXPECT_FALSE(ChainSurvives("h", "linedown"));
}

TEST_F(ScrollPulse, ComesWithALineStepUp) {
  EXPECT_FALSE(ChainSurvives("v", "lineup"));
}

TEST_F(ScrollPulse, ComesWithAThumbPosition) {
  EXPECT_FALSE(ChainSurvives("h", "thumbposition 20"));
}

TEST_F(ScrollPulse, ComesWithTheFirstThumbTrack) {
  EXPECT_FALSE(ChainSurvives("v", "thumbtrack 20"));
}

TEST_F(ScrollPulse, DoesNotComeWithAThumbTrackToTheSamePlace) {
  EXPECT_TRUE(ChainSurvives("v", "thumbtrack 0"));
}

TEST_F(ScrollPulse, DoesNotComeWithAPage) {
  EXPECT_TRUE(ChainSurvives("h", "pagedown"));
}

TEST_F(ScrollPulse, DoesNotComeWithTheSecondThumbTrack) {
  Scroll("h", "thumbtrack 20");
  EXPECT_TRUE(ChainSurvives("h", "thumbtrack 30"));
}

TEST_F(ScrollPulse, ComesWithAThumbTrackAfterTheThumbWasLeft) {
  Scroll("h", "thumbtrack 20");
  Scroll("h", "thumbposition 20");
  EXPECT_FALSE(ChainSurvives("h", "thumbtrack 30"));
}

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
