#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "resources/ids.h"
#include "rules/script_session.h"
#include "rules/session_state.h"

namespace rules {

// The first three lines of a film file.
inline const std::string kFilmHead = "title\nauthor\n100, 50\n";

// A film file of this head and these lines.
inline std::string FilmText(const Names& lines, const std::string& head = kFilmHead) {
  std::string text = head;
  for (const std::string& line : lines) text.append(line).append("\n");
  return text;
}

// Writes the film file of the session, film.flm, and opens it.
template <typename Session>
ScriptSession& OpenFilmFile(Session&& session, std::string_view bytes) {
  session.Write("film.flm", bytes);
  return session.Open("film.flm");
}

// A cut as the program makes it without a layer dialog: 8 by 3, one frame.
inline CutFile PlainCut() {
  return CutFile::WithoutLayers(1);
}

// The command for a cut whose name is counted on, 40115 to add it or 40116 to insert it, with its two dialogs; the
// layer dialog is cancelled.
template <typename Session>
ScriptSession& AddNumberedCut(Session&& session, const DialogValues& values = {},
                              int command = kCommandAddNumberedCut) {
  return session.Dialog(kCutDialog, values).Dialog(kLayerDialog, {}, "cancel").Command(command);
}

inline nlohmann::json Film(ScriptSession& session, int state = kNow) {
  nlohmann::json whole = session.StateAt(state);
  return whole["film"];
}

// The list of the film's cuts.
inline nlohmann::json List(ScriptSession& session, int state = kNow) {
  return PanelOf(session, "10003", state);
}

inline Names Lines(ScriptSession& session, int state = kNow) {
  Names lines;
  nlohmann::json list = List(session, state);
  for (const nlohmann::json& line : list["lines"]) lines.push_back(TextOf(line));
  return lines;
}

// A path without the session's folder, when it lies in there.
inline std::string WithoutFolder(const ScriptSession& session, const nlohmann::json& path) {
  const std::string text = TextOf(path);
  const std::string folder = session.Path("");
  return text.rfind(folder, 0) == 0 ? text.substr(folder.size()) : text;
}

// The files of the film's entries.
inline Names Entries(ScriptSession& session, int state = kNow) {
  Names names;
  nlohmann::json film = Film(session, state);
  for (nlohmann::json& cut : film["cuts"]) names.push_back(WithoutFolder(session, cut["name"]));
  return names;
}

// Which of the film's entries have an open cut.
inline std::vector<bool> OpenFlags(ScriptSession& session, int state = kNow) {
  std::vector<bool> flags;
  nlohmann::json film = Film(session, state);
  for (nlohmann::json& cut : film["cuts"]) flags.push_back(cut["open"] == true);
  return flags;
}

inline nlohmann::json Windows(ScriptSession& session, int state = kNow) {
  nlohmann::json whole = session.StateAt(state);
  return whole["cuts"];
}

// The files of the open windows, in the order of opening.
inline Names WindowPaths(ScriptSession& session, int state = kNow) {
  Names names;
  nlohmann::json windows = Windows(session, state);
  for (nlohmann::json& cut : windows) names.push_back(WithoutFolder(session, cut["path"]));
  return names;
}

inline std::string FrameTitle(ScriptSession& session, int state = kNow) {
  nlohmann::json whole = session.StateAt(state);
  return TextOf(whole["frame"]["title"]);
}

}  // namespace rules
