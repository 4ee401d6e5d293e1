#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rules/script_session.h"

// A repaint begins with a pulse, and the pulse ends a selection of the area tool. So a selection tells, at every
// command, whether the window was repainted.

namespace {

using nlohmann::json;
using rules::CutFile;
using rules::ScriptSession;

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
  return session.OpenCut("a.cut", file).Command(40007).Command(40059).LeftDrag(318, 238, 322, 240);
}

bool HasSelection(const ScriptSession& session, int state) {
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

INSTANTIATE_TEST_SUITE_P(Document, WithoutRepaint,
                         testing::Values(Case{40004}, Case{40005}, Case{40094, 116}, Case{40133, 116}, Case{40093, 115},
                                         Case{40101, 117}, Case{40069, 112}, Case{40106}, Case{40112, 123}, Case{40061},
                                         Case{40099}, Case{40074}, Case{40040, 108}, Case{40046, 109}, Case{40066, -1},
                                         Case{40052, -1}, Case{40113}, Case{40027}, Case{40136}, Case{40142},
                                         Case{40030}, Case{40104}, Case{40105}, Case{40062}, Case{40047, -2, true},
                                         Case{40014, 106, true}, Case{40080, 106, true}, Case{40022, 106, true},
                                         Case{40077, 107, true}, Case{40126, 127, true}, Case{40127, 108, true},
                                         Case{40068, -1, true}, Case{40016}, Case{40059}, Case{40095}, Case{40084},
                                         Case{40085}));

class WithRepaint : public CommandOverSelection {};

TEST_P(WithRepaint, EndsTheSelection) {
  EXPECT_FALSE(Outlives());
}

INSTANTIATE_TEST_SUITE_P(Document, WithRepaint,
                         testing::Values(Case{40006}, Case{40007}, Case{40008}, Case{40041}, Case{40042},
                                         Case{40014, 106}, Case{40080, 106}, Case{40015}, Case{40017}, Case{40022, 106},
                                         Case{40064}, Case{40009}, Case{40010}, Case{40011}, Case{40012}, Case{40013},
                                         Case{40043}, Case{40044}, Case{40060}, Case{40103}, Case{40071}, Case{40024},
                                         Case{40025}, Case{40092}, Case{40063}, Case{40026}, Case{40032}, Case{40033},
                                         Case{40034}, Case{40097}, Case{40102}, Case{40077, 107}, Case{40126, 127},
                                         Case{40127, 108}, Case{40109}, Case{40110}, Case{40029}));

TEST(SelectLayer, RepaintsSoThatTheSelectionEnds) {
  ScriptSession session;
  WithSelection(session).Select(10004, {0});
  const int state = session.State();
  session.Run();
  EXPECT_FALSE(HasSelection(session, state));
}

TEST(Activation, SendsThePulseToTheWindowThatLosesIt) {
  ScriptSession session;
  WithSelection(session).OpenCut("b.cut", CutFile::WithoutLayers(1));
  const int state = session.State();
  session.Run();
  json selection = session.StateAt(state)["cuts"][0]["selection"];
  EXPECT_NE(selection, json::array({318, 238, 322, 240}));
}

}  // namespace
