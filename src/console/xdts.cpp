#include "console/xdts.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

namespace sorvel::console {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kFirstLine = "exchangeDigitalTimeSheet Save Data";
constexpr int32_t kVersion = 5;
constexpr int32_t kCellField = 0;
constexpr int32_t kExposureData = 0;
constexpr std::string_view kNullCell = "SYMBOL_NULL_CELL";
constexpr std::string_view kSymbol = "SYMBOL_";

// Takes a file apart. Each step gives false, with the reason, for something of another type than it must have; what it
// doesn't know it leaves alone.
class Reader {
 public:
  explicit Reader(std::string* reason) : problem(reason) {}

  bool ReadTable(const Json& root, XdtsSheet* sheet) {
    const Json* table = FirstTable(root);
    int64_t duration = 0;
    if (table == nullptr || !ReadNumber(*table, "duration", &duration)) return false;
    if (duration < 1 || duration > INT32_MAX) return Refuse("its duration isn't one of 1 frame or more");
    sheet->duration = static_cast<int32_t>(duration);
    if (const Json* name = Find(*table, "name"); name != nullptr && name->is_string()) {
      sheet->name = name->get<std::string>();
    }
    std::vector<std::string> names;
    const Json* tracks = nullptr;
    if (!ReadNames(*table, &names) || !FindTracks(*table, &tracks)) return false;
    std::multimap<int64_t, XdtsTrack> sorted;
    for (const Json& each : *tracks) {
      XdtsTrack track;
      int64_t number = static_cast<int64_t>(sorted.size());
      if (!each.is_object()) return Refuse("a track isn't an object");
      if (Find(each, "trackNo") != nullptr && !ReadNumber(each, "trackNo", &number)) return false;
      if (number >= 0 && number < static_cast<int64_t>(names.size())) track.name = names[static_cast<size_t>(number)];
      if (!ReadChanges(each, sheet->duration, &track.changes)) return false;
      sorted.emplace(number, std::move(track));
    }
    for (auto& [number, track] : sorted) sheet->tracks.push_back(std::move(track));
    return true;
  }

 private:
  bool Refuse(const char* reason) {
    *problem = reason;
    return false;
  }

  static const Json* Find(const Json& object, const char* key) {
    if (!object.is_object()) return nullptr;
    const auto found = object.find(key);
    return found != object.end() ? &*found : nullptr;
  }

  bool FindList(const Json& object, const char* key, const Json** list) {
    *list = Find(object, key);
    if (*list != nullptr && (*list)->is_array()) return true;
    *problem = std::string(key) + " isn't a list";
    return false;
  }

  bool ReadNumber(const Json& object, const char* key, int64_t* number) {
    const Json* value = Find(object, key);
    if (value == nullptr || !value->is_number_integer() ||
        (value->is_number_unsigned() && value->get<uint64_t>() > INT64_MAX)) {
      *problem = std::string(key) + " isn't a whole number";
      return false;
    }
    *number = value->get<int64_t>();
    return true;
  }

  const Json* FirstTable(const Json& root) {
    const Json* tables = nullptr;
    if (!root.is_object()) {
      Refuse("there is no JSON object behind the first line");
    } else if (FindList(root, "timeTables", &tables)) {
      if (!tables->empty() && tables->front().is_object()) return &tables->front();
      Refuse("there is no time table");
    }
    return nullptr;
  }

  static bool IsOfCells(const Json& field) {
    const Json* id = Find(field, "fieldId");
    return id != nullptr && id->is_number_integer() && *id == kCellField;
  }

  // Headers and names may be missing.
  bool ReadNames(const Json& table, std::vector<std::string>* names) {
    const Json* headers = nullptr;
    if (Find(table, "timeTableHeaders") == nullptr) return true;
    if (!FindList(table, "timeTableHeaders", &headers)) return false;
    for (const Json& header : *headers) {
      const Json* list = nullptr;
      if (!IsOfCells(header) || Find(header, "names") == nullptr) continue;
      if (!FindList(header, "names", &list)) return false;
      for (const Json& name : *list) names->push_back(name.is_string() ? name.get<std::string>() : "");
      return true;
    }
    return true;
  }

  bool FindTracks(const Json& table, const Json** tracks) {
    const Json* fields = nullptr;
    if (!FindList(table, "fields", &fields)) return false;
    for (const Json& field : *fields) {
      if (IsOfCells(field)) return FindList(field, "tracks", tracks);
    }
    return Refuse("there is no field of cells");
  }

  bool ReadChanges(const Json& track, int32_t duration, std::vector<XdtsChange>* changes) {
    const Json* frames = nullptr;
    if (!FindList(track, "frames", &frames)) return false;
    // Of two that come to stand at one frame the one that is said later holds.
    std::multimap<int64_t, std::string> sorted;
    for (const Json& each : *frames) {
      int64_t frame = 0;
      if (!each.is_object()) return Refuse("a frame isn't an object");
      if (!ReadNumber(each, "frame", &frame)) return false;
      std::string cell;
      bool isExposure = false;
      if (!ReadExposure(each, &cell, &isExposure)) return false;
      if (isExposure && frame < duration) sorted.emplace(frame, std::move(cell));
    }
    for (auto& [frame, cell] : sorted) {
      const int32_t place = static_cast<int32_t>(std::max<int64_t>(frame, 0));
      if (!changes->empty() && changes->back().frame == place) changes->pop_back();
      changes->push_back({place, std::move(cell)});
    }
    return true;
  }

  bool ReadExposure(const Json& frame, std::string* cell, bool* isExposure) {
    const Json* data = nullptr;
    if (!FindList(frame, "data", &data)) return false;
    for (const Json& each : *data) {
      const Json* id = Find(each, "id");
      if (id == nullptr || *id != kExposureData) continue;
      const Json* values = nullptr;
      if (!FindList(each, "values", &values)) return false;
      if (values->empty() || !values->front().is_string()) return Refuse("a value isn't a text");
      const std::string& value = values->front().get_ref<const std::string&>();
      const bool isNothing = value == kNullCell || value.empty();
      // The other symbols are marks, or say that all goes on as before.
      *isExposure = isNothing || !std::string_view(value).starts_with(kSymbol);
      if (*isExposure && !isNothing) *cell = value;
      return true;
    }
    return true;
  }

  std::string* problem;
};

}  // namespace

bool ReadXdts(std::string_view text, XdtsSheet* sheet, std::string* problem) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  const size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
  if (line != kFirstLine) {
    *problem = "not an exchange file of time sheets by its first line";
    return false;
  }
  const Json root = Json::parse(text.substr(end), nullptr, false);
  if (root.is_discarded()) {
    *problem = "behind the first line there is no whole JSON object in UTF-8";
    return false;
  }
  return Reader(problem).ReadTable(root, sheet);
}

std::string WriteXdts(const XdtsSheet& sheet) {
  Json names = Json::array();
  Json tracks = Json::array();
  for (const XdtsTrack& track : sheet.tracks) {
    Json frames = Json::array();
    for (const XdtsChange& change : track.changes) {
      const Json values = Json::array({change.cell.empty() ? std::string(kNullCell) : change.cell});
      const Json data = Json::array({Json{{"id", kExposureData}, {"values", values}}});
      frames.push_back(Json{{"data", data}, {"frame", change.frame}});
    }
    tracks.push_back(Json{{"frames", frames}, {"trackNo", tracks.size()}});
    names.push_back(track.name);
  }
  const Json header = Json{{"fieldId", kCellField}, {"names", names}};
  const Json field = Json{{"fieldId", kCellField}, {"tracks", tracks}};
  const Json table = Json{{"duration", sheet.duration},
                          {"name", sheet.name},
                          {"timeTableHeaders", Json::array({header})},
                          {"fields", Json::array({field})}};
  const Json root = Json{{"header", Json{{"cut", sheet.name}, {"scene", ""}}},
                         {"timeTables", Json::array({table})},
                         {"version", kVersion}};
  return std::string(kFirstLine) + "\n" + root.dump(1, '\t', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace sorvel::console
