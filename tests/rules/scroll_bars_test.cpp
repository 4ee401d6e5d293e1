#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "resources/ids.h"
#include "rules/drawing_session.h"
#include "rules/ink_model.h"

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
  Place Now() { return ScrollOf(session); }
  // Double size, from 1/1, with the position at the origin.
  void ZoomIn() {
    session.Command(kToolZoom);
    session.Press(0, 0);
    session.Command(kToolFreePen);
    Scroll("h", "thumbposition 0");
    Scroll("v", "thumbposition 0");
  }
};

TEST_F(Scrolling, AWindowStartsAtTheOrigin) {
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(Scrolling, AClientLargerThanThePictureLeavesANegativePosition) {
  DrawingSession large({.width = 240, .height = 180, .clientWidth = 640, .clientHeight = 480});
  EXPECT_EQ(ScrollOf(large), (Place{-400, -300}));
}

TEST_F(Scrolling, ALineIsFourPixels) {
  Scroll("h", "linedown");
  Scroll("v", "linedown");
  Scroll("v", "linedown");
  EXPECT_EQ(Now(), (Place{4, 8}));
  Scroll("v", "lineup");
  EXPECT_EQ(Now(), (Place{4, 4}));
}

TEST_F(Scrolling, ALineAtDoubleSizeIsEightPixels) {
  ZoomIn();
  Scroll("h", "linedown");
  Scroll("v", "linedown");
  EXPECT_EQ(Now(), (Place{8, 8}));
}

TEST_F(Scrolling, LineUpHasNoLowerLimit) {
  Scroll("h", "lineup");
  Scroll("h", "lineup");
  Scroll("v", "lineup");
  EXPECT_EQ(Now(), (Place{-8, -4}));
}

TEST_F(Scrolling, ANewClientSizeBringsANegativePositionBack) {
  Scroll("h", "lineup");
  Scroll("v", "lineup");
  session.Line("client 60 40");
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(Scrolling, LineDownHasNoUpperLimit) {
  Scroll("h", "thumbposition 136");
  Scroll("h", "linedown");
  EXPECT_EQ(Now(), (Place{140, 0}));
}

TEST_F(Scrolling, APageIsTheClient) {
  Scroll("h", "pagedown");
  Scroll("v", "pagedown");
  EXPECT_EQ(Now(), (Place{64, 48}));
  Scroll("h", "pageup");
  Scroll("v", "pageup");
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(Scrolling, PageDownStopsAtTheLastPage) {
  for (int i = 0; i < 5; ++i) {
    Scroll("h", "pagedown");
    Scroll("v", "pagedown");
  }
  EXPECT_EQ(Now(), (Place{136, 102}));
}

TEST_F(Scrolling, PageUpStopsAtZero) {
  Scroll("h", "thumbposition 10");
  Scroll("h", "pageup");
  Scroll("v", "pageup");
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(Scrolling, ThumbCodesSetThePosition) {
  Scroll("h", "thumbposition 77");
  Scroll("v", "thumbtrack 33");
  EXPECT_EQ(Now(), (Place{77, 33}));
}

TEST_F(Scrolling, ThumbPositionsAreMultiplesOfTheZoom) {
  ZoomIn();
  Scroll("h", "thumbposition 77");
  Scroll("v", "thumbtrack 33");
  EXPECT_EQ(Now(), (Place{76, 32}));
}

TEST_F(Scrolling, APageAtTripleSizeIsAMultipleOfTheZoom) {
  ZoomIn();
  session.Command(kToolZoom).Press(0, 0);
  Scroll("h", "thumbposition 0");
  Scroll("v", "thumbposition 0");
  Scroll("h", "pagedown");
  Scroll("v", "pagedown");
  EXPECT_EQ(Now(), (Place{63, 48}));
}

TEST_F(Scrolling, ALargerClientPullsThePositionBack) {
  Scroll("h", "thumbposition 136");
  Scroll("v", "thumbposition 102");
  session.Line("client 100 60");
  EXPECT_EQ(Now(), (Place{100, 90}));
}

TEST_F(Scrolling, TheMouseMeetsTheScrolledPicture) {
  Scroll("h", "thumbposition 50");
  Scroll("v", "thumbposition 30");
  session.Press(10, 5);
  EXPECT_TRUE(ViewShows(model.Set(60, 35, 1)));
}

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
struct Panning : Scrolling {
  void Pan(int x, int y) { session.Move(x, y, "ctrl shift"); }
};

TEST_F(Panning, ThePictureFollowsTheMouse) {
  Pan(30, 20);
  EXPECT_EQ(Now(), (Place{0, 0}));
  Pan(20, 15);
  EXPECT_EQ(Now(), (Place{10, 5}));
  Pan(10, 13);
  EXPECT_EQ(Now(), (Place{20, 7}));
  Pan(15, 13);
  EXPECT_EQ(Now(), (Place{15, 7}));
}

TEST_F(Panning, StopsAtTheOrigin) {
  Pan(10, 10);
  Pan(30, 40);
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(Panning, StopsOneBeforeTheLastPage) {
  Pan(500, 500);
  Pan(0, 0);
  EXPECT_EQ(Now(), (Place{135, 101}));
}

TEST_F(Panning, AWayThatWasNotGoneIsStillOwed) {
  Pan(10, 10);
  Pan(30, 10);
  Pan(25, 10);
  EXPECT_EQ(Now(), (Place{0, 0}));
  Pan(6, 10);
  EXPECT_EQ(Now(), (Place{4, 0}));
}

TEST_F(Panning, PositionsAreMultiplesOfTheZoom) {
  ZoomIn();
  Pan(30, 20);
  Pan(23, 15);
  EXPECT_EQ(Now(), (Place{6, 4}));
}

TEST_F(Panning, WithoutBothKeysNothingMoves) {
  session.Move(30, 20, "ctrl").Move(20, 15, "ctrl").Move(10, 10, "shift");
  EXPECT_EQ(Now(), (Place{0, 0}));
}

TEST_F(Panning, AMoveWithoutTheKeysEndsIt) {
  Pan(30, 20);
  Pan(20, 15);
  session.Move(50, 40);
  Pan(40, 40);
  EXPECT_EQ(Now(), (Place{10, 5}));
  Pan(38, 40);
  EXPECT_EQ(Now(), (Place{12, 5}));
}

TEST_F(Panning, TheToolSeesNothingOfIt) {
  Pan(30, 20);
  Pan(20, 15);
  EXPECT_TRUE(ViewShows(InkModel(200, 150)));
}

TEST_F(Panning, ItsStartSendsAPulse) {
  session.Move(40, 30);
  Pan(30, 20);
  EXPECT_TRUE(ViewShows(InkModel(200, 150)));
}

TEST_F(Panning, ASmallPictureStaysAndItsToolSeesNothing) {
  DrawingSession small({.clientWidth = 84, .clientHeight = 68});
  const Place before = ScrollOf(small);
  small.Move(30, 20, "ctrl shift").Move(20, 15, "ctrl shift");
  EXPECT_EQ(ScrollOf(small), before);
  EXPECT_TRUE(Shows(small.NowView(), InkModel()));
}

TEST_F(Panning, AStrokeUnderThePanGetsNoSegment) {
  session.Command(kCommandMuraRemoval).Press(30, 20);
  Pan(40, 20);
  Pan(40, 20);
  EXPECT_TRUE(ViewShows(model.Set(30, 20, 1)));
}

}  // namespace
}  // namespace rules
