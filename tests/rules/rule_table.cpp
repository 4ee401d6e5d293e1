#include "rules/rule_table.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "resources/ids.h"
#include "rules/session_state.h"

namespace rules {

namespace {

using nlohmann::json;

struct PanelName {
  const char* name;
  int id;
};

constexpr PanelName panelNames[] = {{"time", kFrameTimeEdit},    {"cuts", kCutList},
                                    {"layers", kLayerList},      {"loop", kLoopEdit},
                                    {"comment", kCommentEdit},   {"brightness", kBrightnessEdit},
                                    {"keyFrame", kKeyFrameCheck}};

// Places that have a name of their own.
const std::map<std::string, std::string> namedPlaces = {
    {"entries", "film/cuts/*/name"},      {"entries/open", "film/cuts/*/open"},
    {"lines", "panels/cuts/lines"},       {"lines/selected", "panels/cuts/selected"},
    {"lines/caret", "panels/cuts/caret"}, {"windows", "cuts/*/path"},
    {"times", "cut/frames/*/time"},       {"numbers", "cut/frames/*/records/0/cell"},
    {"cells", "cut/layers/0/cells"}};

std::string Whole(const std::string& place) {
  const auto found = namedPlaces.find(place);
  return found == namedPlaces.end() ? place : found->second;
}

// The elements with a blank between them; an empty text is "(empty)".
std::string Joined(const json& list) {
  std::string text;
  for (const json& element : list) {
    const std::string word = element.is_string() ? element.get<std::string>() : element.dump();
    text.append(text.empty() ? "" : " ").append(word.empty() ? "(empty)" : word);
  }
  return text;
}

// The value without the session's folder in its paths.
json Shown(const ScriptSession& session, json value) {
  if (value.is_string()) {
    const std::string folder = session.Path("");
    const auto text = value.get<std::string>();
    if (text.rfind(folder, 0) == 0) return text.substr(folder.size());
  } else if (value.is_structured()) {
    for (json& element : value) element = Shown(session, element);
  }
  return value;
}

std::vector<std::string> Words(const std::string& place) {
  std::vector<std::string> words;
  std::istringstream text(place);
  for (std::string word; std::getline(text, word, '/');) words.push_back(word);
  words.resize(std::max(words.size(), size_t{3}));
  return words;
}

// What stands at the rest of a path, from this word on. A path ends at an empty word.
json ValueAt(const json& value, const std::vector<std::string>& words, size_t first) {
  if (first >= words.size() || words[first].empty()) return value;
  const std::string& word = words[first];
  if (word == "#") return value.size();
  if (word == "*") {
    json all = json::array();
    for (const json& element : value) all.push_back(ValueAt(element, words, first + 1));
    return all;
  }
  if (word.find(',') != std::string::npos) {
    json all = json::array();
    std::istringstream names(word);
    for (std::string name; std::getline(names, name, ',');) all.push_back(ValueAt(value, {name}, 0));
    return all;
  }
  const json::json_pointer pointer("/" + word);
  if (!value.is_structured() || !value.contains(pointer)) return "(nothing)";
  return ValueAt(value.at(pointer), words, first + 1);
}

// The names of the layers that a frame shows, from the bottom on.
std::string OrderOf(ScriptSession& session, size_t frame, int state) {
  std::string names;
  json cut = session.Cut(state);
  json records = session.FrameAt(frame, state)["records"];
  for (const json& record : records) names.append(TextOf(ValueAt(cut["layers"], {record["layer"].dump(), "name"}, 0)));
  return names;
}

json ValueOf(ScriptSession& session, const std::string& place, const Asked& asked) {
  const std::vector<std::string> words = Words(place);
  const std::string& head = words[0];
  const std::string& second = words[1];
  const std::string rest = place.substr(std::min(place.size(), head.size() + 1));
  if (head == "settings") return session.Setting(second, words[2]);
  if (head == "files") return session.Files();
  if (head == "bytes") return session.Bytes(rest);
  if (head == "exists") return session.Exists(rest);
  if (head == "pixels") return session.ViewAt(asked.view).Count(static_cast<uint32_t>(std::stoul(second)));
  if (head == "pixel") return session.ViewAt(asked.view).At(std::stoi(second), std::stoi(words[2]));
  if (head == "screen") return session.ScreenAt(asked.screen).At(std::stoi(second), std::stoi(words[2]));
  if (head == "panels") {
    for (const PanelName& panel : panelNames) {
      if (second == panel.name) return ValueAt(PanelOf(session, std::to_string(panel.id), asked.state), words, 2);
    }
  }
  if (head == "order") return OrderOf(session, std::stoul(second), asked.state);
  if (head == "checked") {
    json ids = session.StateAt(asked.state)["frame"]["checked"];
    return std::find(ids.begin(), ids.end(), std::stoi(second)) != ids.end();
  }
  if (head != "cut") return ValueAt(session.StateAt(asked.state), words, 0);
  if (second == "marks") return MarksOf(session, asked.state);
  if (second == "properties") return PropertiesOf(session, asked.state);
  if (second == "hasSelection") {
    json selection = session.Cut(asked.state)["selection"];
    return selection[0] < selection[2] && selection[1] < selection[3];
  }
  if (second != "frame") return ValueAt(session.Cut(asked.state), words, 1);
  if (words[2] == "record") return ValueAt(session.CurrentRecord(asked.state), words, 3);
  return ValueAt(session.Frame(asked.state), words, 2);
}

bool IsAbout(const Facts& facts, std::initializer_list<std::string_view> heads) {
  return std::any_of(facts.begin(), facts.end(), [heads](const auto& fact) {
    const std::string place = Whole(fact.first);
    return std::find(heads.begin(), heads.end(), place.substr(0, place.find('/'))) != heads.end();
  });
}

}  // namespace

Asked Ask(ScriptSession& session, const Facts& facts) {
  Asked asked;
  if (IsAbout(facts, {"pixels", "pixel"})) asked.view = session.View();
  if (IsAbout(facts, {"screen"})) asked.screen = session.Screen();
  if (IsAbout(facts, {"checked", "cut", "cuts", "film", "frame", "order", "panels", "pen", "player"}))
    asked.state = session.State();
  return asked;
}

testing::AssertionResult AllHold(ScriptSession& session, const Facts& facts, const Asked& asked) {
  session.RunAll();
  testing::AssertionResult result = testing::AssertionFailure();
  bool hold = true;
  for (const auto& [place, expected] : facts) {
    json value = Shown(session, ValueOf(session, Whole(place), asked));
    if (value.is_array() && expected.is_string()) value = Joined(value);
    if (value == expected) continue;
    hold = false;
    const auto text = [](const json& of) { return of.dump(-1, ' ', false, json::error_handler_t::replace); };
    result << place << " is " << text(value) << " instead of " << text(expected) << "; ";
  }
  return hold ? testing::AssertionSuccess() : result;
}

}  // namespace rules
