#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "rules/drawing_session.h"
#include "rules/ink_model.h"
#include "rules/script_session.h"

namespace rules {

// Places and what they hold. A place is a path of names and numbers into the state, such as "film/title". Its first
// word may also be
//   cut       the active cut; "cut/frame" is its current frame, "cut/frame/record" the current record of that frame,
//             "cut/marks" and "cut/properties" are what `MarksOf` and `PropertiesOf` tell
//   panels    the panels by the names time, loop, comment, brightness, keyFrame, cuts and layers
//   pixels    "pixels/3" is the number of pixels of value 3 in the view
//   pixel     "pixel/10/20" is the value of one pixel of the view; "screen/10/20" its colour on the screen
//   settings  "settings/setup/film" is a key of the settings file after the run
//   files     the names of the files in the session's folder after the run
//   bytes     "bytes/a.cut" are the bytes of such a file, and "exists/a.cut" tells whether it is there
// and these stand for longer paths:
//   entries   the files of the film's entries; "entries/open" tells which of them have an open cut
//   lines     the lines of the list of cuts; "lines/selected" and "lines/caret"
//   windows   the files of the open cuts, in the order of opening
//   times     the times of the active cut's frames; "numbers" the cell of each frame's first record
//   cells     the checksums of the first layer's cells
// "checked/40077" tells whether the command of this number has a check mark, "order/0" the names of the layers of a
// frame's records from the bottom on, without blanks. A last word may be several names with commas: their values.
// "*" stands for every element of a list, and a last "#" for its length. Paths in the folder are told without it. A
// list may be given as one text, its elements with a blank between them.
using Facts = std::vector<std::pair<std::string, nlohmann::json>>;

// Facts of places and values in turn.
inline Facts Has() {
  return {};
}
template <typename Value, typename... Rest>
Facts Has(const std::string& place, const Value& value, const Rest&... rest) {
  Facts facts = Has(rest...);
  facts.emplace(facts.begin(), place, value);
  return facts;
}

// The place of a command's check mark.
inline std::string MarkOf(int command) {
  return "checked/" + std::to_string(command);
}

// The numbers of a session's results; `kNow` where a fact needs none.
struct Asked {
  int state = kNow;
  int view = kNow;
  int screen = kNow;
};

// Asks at this place of the script for all that the facts are about.
Asked Ask(ScriptSession& session, const Facts& facts);
// Success when all the facts hold; a failure tells each that doesn't.
testing::AssertionResult AllHold(ScriptSession& session, const Facts& facts, const Asked& asked);
// The same now, of places and values in turn.
template <typename... PlacesAndValues>
testing::AssertionResult Holds(ScriptSession& session, const PlacesAndValues&... placesAndValues) {
  const Facts facts = Has(placesAndValues...);
  return AllHold(session, facts, Ask(session, facts));
}

// The beginning of a script in a table.
inline ScriptSession Do() {
  return {};
}

// Work on a model that is done later, and a look at the view, which then shows the model.
class Ink {
 public:
  // What it is drawn into: the fixture's model, which keeps it, a copy of that, or an empty model of the same size.
  enum class Ground { kModel, kCopy, kEmpty };

  explicit Ink(Ground itsGround = Ground::kModel) : ground(itsGround) {}

  Ink& Set(int x, int y, int value) { return Add(&InkModel::Set, x, y, value); }
  Ink& Fill(int x, int y, int width, int height, int value) { return Add(&InkModel::Fill, x, y, width, height, value); }
  Ink& FillWith(const ModelPen& pen, int x, int y, int width, int height) {
    return Add(&InkModel::FillWith, pen, x, y, width, height);
  }
  Ink& Stamp(int x, int y, const ModelPen& pen, unsigned mask = 0) { return Add(&InkModel::Stamp, x, y, pen, mask); }
  Ink& Line(int x0, int y0, int x1, int y1, const ModelPen& pen = {}, unsigned mask = 0) {
    return Add(&InkModel::Line, x0, y0, x1, y1, pen, mask);
  }
  Ink& Outline(int x, int y, int right, int bottom, int value) {
    return Add(&InkModel::Outline, x, y, right, bottom, value);
  }
  Ink& Curve(const std::array<Point, 4>& points, const ModelPen& pen = {}, unsigned mask = 0) {
    return Add(&InkModel::Curve, points, pen, mask);
  }
  // The model after this ink; only ink that is kept changes the fixture's.
  InkModel On(InkModel& model) const {
    InkModel drawn = ground == Ground::kEmpty ? InkModel(model.Width(), model.Height()) : model;
    for (const auto& step : steps) step(drawn);
    if (ground == Ground::kModel) model = drawn;
    return drawn;
  }

 private:
  template <typename Function, typename... Values>
  Ink& Add(Function function, Values... values) {
    steps.push_back([=](InkModel& model) { (model.*function)(values...); });
    return *this;
  }

  Ground ground;
  std::vector<std::function<void(InkModel&)>> steps;
};

inline Ink Once() {
  return Ink(Ink::Ground::kCopy);
}
inline Ink OnEmpty() {
  return Ink(Ink::Ground::kEmpty);
}

// A rectangle that is filled in the drawing and in the model.
struct Filled {
  int x = 0;
  int y = 0;
  int width = 64;
  int height = 48;
  int index = 0;
};

// A test that is a row of a table: scripts, which follow each other after the fixture's own, and between and behind
// them what holds there. All is asked in one run; an `After` is done behind it, in its turn.
struct Rule {
  using After = std::function<void(ScriptSession&)>;
  using Step = std::variant<ScriptSession, Facts, Ink, Filled, After>;
  using Steps = std::vector<Step>;

  template <typename... Each>
  Rule(const char* itsName, const Each&... each) : name(itsName) {
    (Add(each), ...);
  }

  const char* name;
  Steps steps;

 private:
  void Add(const Step& step) { steps.push_back(step); }
  void Add(const Steps& several) {
    for (const Step& step : several) Add(step);
  }
};

template <typename Fixture>
class RuleTest : public Fixture {
 public:
  explicit RuleTest(const Rule& itsRule) : rule(itsRule) {}

 private:
  void TestBody() override {
    ScriptSession& script = this->session;
    std::vector<Asked> asked;
    for (const Rule::Step& step : rule.steps) {
      asked.emplace_back();
      if (const auto* lines = std::get_if<ScriptSession>(&step)) script.Then(*lines);
      if (const auto* facts = std::get_if<Facts>(&step)) asked.back() = Ask(script, *facts);
      if (const auto* area = std::get_if<Filled>(&step)) {
        script.FillArea(area->x, area->y, area->width, area->height, area->index);
      }
      if (std::holds_alternative<Ink>(step)) asked.back().view = script.View();
    }
    script.RunAll();
    for (size_t i = 0; i < rule.steps.size(); ++i) {
      SCOPED_TRACE("step " + std::to_string(i + 1));
      const Rule::Step& step = rule.steps[i];
      if (const auto* facts = std::get_if<Facts>(&step)) {
        EXPECT_TRUE(AllHold(script, *facts, asked[i]));
      }
      if (const auto* after = std::get_if<Rule::After>(&step)) (*after)(script);
      if constexpr (std::is_base_of_v<DrawingTest, Fixture>) {
        if (const auto* area = std::get_if<Filled>(&step)) {
          this->model.Fill(area->x, area->y, area->width, area->height, area->index);
        }
        if (const auto* ink = std::get_if<Ink>(&step)) {
          EXPECT_TRUE(Shows(script.ViewAt(asked[i].view), ink->On(this->model)));
        }
      } else {
        EXPECT_FALSE(std::holds_alternative<Ink>(step)) << "there is no model to compare with";
      }
    }
  }

  const Rule rule;
};

// A text that a template can have as its argument.
template <size_t size>
struct FixedText {
  consteval FixedText(const char (&literal)[size]) { std::copy_n(literal, size, text); }

  char text[size] = {};
};

// Makes each row a test of the suite of this name.
template <typename Fixture, FixedText suite>
struct Rules {
  Rules(std::initializer_list<Rule> rows) {
    for (const Rule& row : rows) {
      testing::RegisterTest(suite.text, row.name, nullptr, nullptr, __FILE__, __LINE__,
                            [row]() -> Fixture* { return new RuleTest<Fixture>(row); });
    }
  }
};

}  // namespace rules
