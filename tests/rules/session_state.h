#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "rules/script_session.h"

namespace rules {

// Names of files, or the lines of a list.
using Names = std::vector<std::string>;

// The text itself, or "(none)" for anything that is no text.
inline std::string TextOf(const nlohmann::json& value) {
  return value.is_string() ? value.get<std::string>() : "(none)";
}

// What the control of this number holds.
inline nlohmann::json PanelOf(ScriptSession& session, const std::string& id, int state = kNow) {
  nlohmann::json whole = session.StateAt(state);
  return whole["panels"][id];
}

inline nlohmann::json PlayerOf(ScriptSession& session, int state = kNow) {
  nlohmann::json whole = session.StateAt(state);
  return whole["player"];
}

// The title of a player that plays this many bytes.
inline std::string SizeTitle(size_t size) {
  return std::to_string(size) + " byte";
}

// The marks that the active cut has: whether it differs from its file, and what of its stream is older than it.
inline std::string MarksOf(ScriptSession& session, int state = kNow) {
  std::string marks;
  nlohmann::json cut = session.Cut(state);
  for (const char* mark : {"modified", "imagesStale", "timingStale"}) {
    if (cut[mark] == false) continue;
    if (!marks.empty()) marks.append(" ");
    marks.append(cut[mark] == true ? "" : "unknown ").append(mark);
  }
  return marks;
}

// The properties of the active cut, as in "240 x 180, 24 fps, antialias 0, credit [Someone]".
inline std::string PropertiesOf(ScriptSession& session, int state = kNow) {
  nlohmann::json cut = session.Cut(state);
  std::string text = cut["width"].dump() + " x " + cut["height"].dump() + ", " + cut["fps"].dump();
  return text + " fps, antialias " + cut["antialias"].dump() + ", credit [" + TextOf(cut["credit"]) + "]";
}

// One whole number out of each frame of the active cut, -999 where there is none. `place` is a JSON pointer into the
// frame.
inline std::vector<int> OfEachFrame(ScriptSession& session, const std::string& place, int state = kNow) {
  std::vector<int> numbers;
  const nlohmann::json::json_pointer pointer(place);
  nlohmann::json cut = session.Cut(state);
  for (const nlohmann::json& frame : cut["frames"]) {
    const bool known = frame.contains(pointer) && frame.at(pointer).is_number_integer();
    numbers.push_back(known ? frame.at(pointer).get<int>() : -999);
  }
  return numbers;
}

}  // namespace rules
