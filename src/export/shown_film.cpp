#include "export/shown_film.h"

#include "foundation/shown_text.h"

namespace sorvel {

bool ShownFilm::Read(ByteStream* compiled, const std::string& name, std::string* problem) {
  LoadReport report;
  if (!InspectStream(compiled, &info, &report) || report.IsDamaged()) {
    *problem = report.problem;
    return false;
  }
  title = ShownText(info.title);
  author = ShownText(info.isContainer ? info.author : info.cuts.front().credit);
  if (title.empty()) title = name;
  for (const StreamCutInfo& each : info.cuts) {
    ShownCut& cut = cuts.emplace_back();
    cut.times.fps = each.fps;
    for (const StreamFrameHead& frame : each.frames) cut.times.Add(frame);
    cut.times.Close();
    if (cut.times.Ends()) break;
    if (each.fps > 0) continue;
    *problem = "cut " + std::to_string(cuts.size()) + " has no frames a second";
    return false;
  }
  compiled->Seek(0, kFromStart);
  return true;
}

}  // namespace sorvel
