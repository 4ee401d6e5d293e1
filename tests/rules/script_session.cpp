#include "rules/script_session.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include "resources/ids.h"
#include "rules/little_bytes.h"
#include "support/places.h"

extern char** environ;

namespace rules {

namespace {

constexpr std::chrono::seconds kTimeLimit{20};

std::string ReadWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

Area AreaOf(const nlohmann::json& numbers) {
  Area area = {-1, -1, -1, -1};
  if (!numbers.is_array() || numbers.size() != area.size()) {
    ADD_FAILURE() << numbers << " is no rectangle";
    return area;
  }
  for (size_t i = 0; i < area.size(); ++i) area[i] = numbers[i].get<int>();
  return area;
}

}  // namespace

PixelMatrix PixelMatrix::FromBitmap(const std::string& path) {
  PixelMatrix matrix;
  const std::string bytes = ReadWhole(path);
  if (bytes.size() < 54 || bytes.compare(0, 2, "BM") != 0) {
    ADD_FAILURE() << path << " is no bitmap file";
    return matrix;
  }
  const size_t bits = LittleAt(bytes, 10, 4);
  const size_t header = LittleAt(bytes, 14, 4);
  const int width = static_cast<int32_t>(LittleAt(bytes, 18, 4));
  const int rows = static_cast<int32_t>(LittleAt(bytes, 22, 4));
  const size_t depth = LittleAt(bytes, 28, 2);
  const int height = rows < 0 ? -rows : rows;
  const size_t pitch = (static_cast<size_t>(width) * depth + 31) / 32 * 4;
  const bool known = depth == 4 || depth == 8 || depth == 24;
  if (!known || LittleAt(bytes, 30, 4) != 0 || width < 0 || bits + pitch * static_cast<size_t>(height) > bytes.size()) {
    ADD_FAILURE() << path << " is no plain bitmap file of 4, 8 or 24 bits";
    return matrix;
  }
  matrix.width = width;
  matrix.height = height;
  if (depth != 24) {
    size_t count = LittleAt(bytes, 46, 4);
    if (count == 0) count = size_t{1} << depth;
    for (size_t i = 0; i < count && 14 + header + 4 * i + 4 <= bytes.size(); ++i) {
      matrix.colors.push_back(LittleAt(bytes, 14 + header + 4 * i, 3));
    }
  }
  for (int y = 0; y < height; ++y) {
    const size_t row = bits + pitch * static_cast<size_t>(rows < 0 ? y : height - 1 - y);
    for (int x = 0; x < width; ++x) {
      const size_t column = static_cast<size_t>(x);
      if (depth == 24) {
        matrix.pixels.push_back(LittleAt(bytes, row + 3 * column, 3));
      } else if (depth == 8) {
        matrix.pixels.push_back(LittleAt(bytes, row + column, 1));
      } else {
        const uint32_t pair = LittleAt(bytes, row + column / 2, 1);
        matrix.pixels.push_back(column % 2 == 0 ? pair >> 4 : pair & 15);
      }
    }
  }
  return matrix;
}

PixelMatrix PixelMatrix::FromGreyMap(const std::string& path) {
  PixelMatrix matrix;
  const std::string bytes = ReadWhole(path);
  int width = 0;
  int height = 0;
  int limit = 0;
  int start = 0;
  if (std::sscanf(bytes.c_str(), "P5 %d %d %d%n", &width, &height, &limit, &start) != 3 || limit != 255 ||
      bytes.size() != static_cast<size_t>(start) + 1 + static_cast<size_t>(width) * static_cast<size_t>(height)) {
    ADD_FAILURE() << path << " is no grey map";
    return matrix;
  }
  matrix.width = width;
  matrix.height = height;
  for (size_t i = static_cast<size_t>(start) + 1; i < bytes.size(); ++i) {
    matrix.pixels.push_back(static_cast<unsigned char>(bytes[i]));
  }
  return matrix;
}

uint32_t PixelMatrix::At(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height) {
    ADD_FAILURE() << "point " << x << ", " << y << " is outside a picture of " << width << " by " << height;
    return 0;
  }
  return pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
}

int PixelMatrix::Count(uint32_t value, int left, int top, int areaWidth, int areaHeight) const {
  int count = 0;
  for (int y = std::max(top, 0); y < std::min(top + areaHeight, height); ++y) {
    for (int x = std::max(left, 0); x < std::min(left + areaWidth, width); ++x) count += At(x, y) == value ? 1 : 0;
  }
  return count;
}

bool PixelMatrix::operator==(const PixelMatrix& other) const {
  return width == other.width && height == other.height && pixels == other.pixels;
}

reference::CutData CutFile::Data() const {
  reference::CutData data;
  data.width = width;
  data.height = height;
  data.frameWidth = frameWidth;
  data.frameHeight = frameHeight;
  data.fps = fps;
  data.credit = credit;
  data.antialias = antialias;
  for (const FileLayer& layer : layers) {
    data.layers.push_back({layer.name, 8, 3, layer.followFrame ? 1U : 0U, {}});
    for (const int color : layer.cells) data.layers.back().cells.emplace_back(8, 3, static_cast<uint8_t>(color));
  }
  for (const FileFrame& frame : frames) {
    data.frames.push_back({frame.x, frame.y, frame.time, frame.loop, frame.brightness, frame.comment, {}});
    for (const FileRecord& record : frame.records) {
      data.frames.back().records.push_back({record.layer, record.cell, record.x, record.y});
    }
  }
  return data;
}

std::string CutFile::Bytes() const {
  const reference::Bytes bytes = reference::WriteCut(Data());
  return {bytes.begin(), bytes.end()};
}

CutFile CutFile::Showing(const std::vector<int>& cells, const std::vector<int>& shown) {
  CutFile file;
  file.layers.push_back({.name = "A", .cells = cells});
  for (const int cell : shown) file.frames.push_back({.records = {{.layer = 0, .cell = cell}}});
  return file;
}

CutFile CutFile::WithoutLayers(size_t frameCount) {
  CutFile file;
  file.frames.resize(frameCount);
  return file;
}

std::string PlainCell(int color) {
  return Checksum(std::string(12, static_cast<char>(color * 17)));
}

ScriptSession::ScriptSession(const ScriptSession& other)
    : files(other.files),
      script(other.script),
      startSettings(other.startSettings),
      lineCount(other.lineCount),
      needsRun(true) {
  if (!other.folder.empty()) ADD_FAILURE() << "a session with a folder is copied";
}

ScriptSession::~ScriptSession() {
  std::error_code ignored;
  if (!folder.empty()) std::filesystem::remove_all(folder, ignored);
}

void ScriptSession::MakeFolder() const {
  std::string form = (std::filesystem::temp_directory_path() / "sorvel-rules-XXXXXX").string();
  if (mkdtemp(form.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
  folder = form;
  for (const auto& [name, bytes] : files) std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
}

void ScriptSession::ExpectAllRun() const {
  EXPECT_FALSE(hasRun && needsRun) << "the last lines never ran:\n" << script;
}

ScriptSession& ScriptSession::Then(const ScriptSession& other) {
  for (const auto& [name, bytes] : other.files) Write(name, bytes);
  if (!other.startSettings.empty()) SetSettings(other.startSettings);
  script.append(other.script);
  lineCount += other.lineCount;
  needsRun = true;
  return *this;
}

ScriptSession& ScriptSession::Line(std::string_view text) {
  script.append(text).append("\n");
  ++lineCount;
  needsRun = true;
  return *this;
}

ScriptSession& ScriptSession::Command(int id) {
  return Line("command " + std::to_string(id));
}

ScriptSession& ScriptSession::Commands(const std::vector<int>& ids) {
  for (const int id : ids) Command(id);
  return *this;
}

ScriptSession& ScriptSession::Key(std::string_view name) {
  return Line(std::string("key ").append(name));
}

ScriptSession& ScriptSession::Keys(std::string_view name, int count) {
  for (int i = 0; i < count; ++i) Key(name);
  return *this;
}

ScriptSession& ScriptSession::Char(char character) {
  return Line(std::string("char ").append(Quoted(std::string(1, character))));
}

ScriptSession& ScriptSession::Mouse(std::string_view message, int x, int y, std::string_view modifiers) {
  std::string text = "mouse ";
  text.append(message).append(" ").append(std::to_string(x)).append(" ").append(std::to_string(y));
  if (!modifiers.empty()) text.append(" ").append(modifiers);
  return Line(text);
}

ScriptSession& ScriptSession::LeftClick(int x, int y, std::string_view modifiers) {
  return Mouse("ldown", x, y, modifiers).Mouse("lup", x, y, modifiers);
}

ScriptSession& ScriptSession::RightClick(int x, int y, std::string_view modifiers) {
  return Mouse("rdown", x, y, modifiers).Mouse("rup", x, y, modifiers);
}

ScriptSession& ScriptSession::LeftDrag(int fromX, int fromY, int toX, int toY, std::string_view modifiers) {
  return Mouse("ldown", fromX, fromY, modifiers).Mouse("move", toX, toY, modifiers).Mouse("lup", toX, toY, modifiers);
}

ScriptSession& ScriptSession::Picker(std::string_view message, int x, int y) {
  std::string text = "picker ";
  return Line(text.append(message).append(" ").append(std::to_string(x)).append(" ").append(std::to_string(y)));
}

ScriptSession& ScriptSession::Panel(int id, std::string_view text) {
  return Line("panel " + std::to_string(id) + " " + Quoted(text));
}

ScriptSession& ScriptSession::Dialog(int templateId, const DialogValues& values, std::string_view button) {
  std::string text = "dialog " + std::to_string(templateId);
  for (const DialogValue& each : values)
    text.append(" ").append(Quoted(std::to_string(each.control) + "=" + each.value));
  return Line(text.append(" ").append(button));
}

ScriptSession& ScriptSession::File(std::string_view path) {
  return Line(std::string("file ").append(path == "cancel" ? std::string(path) : Quoted(path)));
}

ScriptSession& ScriptSession::Answer(std::string_view yesOrNo) {
  return Line(std::string("answer ").append(yesOrNo));
}

ScriptSession& ScriptSession::Open(std::string_view path) {
  return Line(std::string("open ").append(Quoted(path)));
}

ScriptSession& ScriptSession::OpenCut(std::string_view name, const CutFile& file) {
  return Write(name, file.Bytes()).Open(name);
}

ScriptSession& ScriptSession::Select(int id, const std::vector<int>& lines) {
  std::string text = "select " + std::to_string(id);
  for (const int line : lines) text.append(" ").append(std::to_string(line));
  return Line(text);
}

ScriptSession& ScriptSession::DoubleClick(int id, int line) {
  return Line("dblclick " + std::to_string(id) + " " + std::to_string(line));
}

ScriptSession& ScriptSession::Focus(std::string_view place) {
  return Line(std::string("focus ").append(place));
}

ScriptSession& ScriptSession::Activate(int window) {
  return Line("activate " + std::to_string(window));
}

ScriptSession& ScriptSession::Close() {
  return Line("close");
}

ScriptSession& ScriptSession::Exit() {
  return Line("exit");
}

namespace {

DialogValues CutDialogValues(const NewCutValues& values) {
  return {{kCutWidthEdit, std::to_string(values.width)},
          {kCutHeightEdit, std::to_string(values.height)},
          {kCutFpsEdit, std::to_string(values.fps)},
          {kCutWholeRadio + values.antialias, "on"},
          {kCutCreditEdit, values.credit}};
}

}  // namespace

ScriptSession& ScriptSession::NewCut(const NewCutValues& values) {
  const int layerWidth = values.layerWidth < 0 ? values.width : values.layerWidth;
  const int layerHeight = values.layerHeight < 0 ? values.height : values.layerHeight;
  Dialog(kCutDialog, CutDialogValues(values));
  Dialog(kLayerDialog, {{kLayerNameEdit, values.layerName},
                        {kLayerWidthEdit, std::to_string(layerWidth)},
                        {kLayerHeightEdit, std::to_string(layerHeight)},
                        {kLayerFollowCheck, values.followFrame ? "on" : "off"}});
  return Command(kCommandNewCut);
}

ScriptSession& ScriptSession::NewCutWithoutLayer(const NewCutValues& values) {
  Dialog(kCutDialog, CutDialogValues(values));
  Dialog(kLayerDialog, {}, "cancel");
  return Command(kCommandNewCut);
}

ScriptSession& ScriptSession::RenameCut(std::string_view name) {
  return Dialog(kRenameDialog, {{kRenameEdit, std::string(name)}}).Command(kCommandRenameCut);
}

ScriptSession& ScriptSession::SaveCutAs(std::string_view name) {
  return File(name).Command(kCommandSaveCutAs);
}

namespace {

struct ResultName {
  const char* action;
  const char* extension;
};

constexpr ResultName resultNames[] = {{"state", ".json"}, {"view", ".bmp"}, {"screen", ".bmp"}, {"player", ".pgm"}};

}  // namespace

int ScriptSession::Ask(ResultKind kind) {
  Results& of = results[kind];
  of.lines = lineCount;
  const ResultName& name = resultNames[kind];
  const std::string number = std::to_string(of.count);
  script.append(name.action).append(" ").append(name.action).append("-").append(number).append(name.extension);
  script.append("\n");
  needsRun = true;
  return of.count++;
}

std::string ScriptSession::ResultPath(ResultKind kind, int number) {
  if (number == kNow) number = results[kind].lines == lineCount ? results[kind].count - 1 : Ask(kind);
  RunAll();
  return Path(std::string(resultNames[kind].action) + "-" + std::to_string(number) + resultNames[kind].extension);
}

ScriptSession& ScriptSession::SetSettings(const std::string& bytes) {
  startSettings = bytes;
  Write("settings.ini", bytes);
  return *this;
}

std::string ScriptSession::Settings() const {
  return Bytes("settings.ini");
}

std::string ScriptSession::Setting(const std::string& section, const std::string& key) const {
  std::istringstream lines(Settings());
  std::string line;
  bool inside = false;
  while (std::getline(lines, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && line.front() == '[') {
      inside = line == "[" + section + "]";
      continue;
    }
    const size_t equals = line.find('=');
    if (inside && equals != std::string::npos && line.substr(0, equals) == key) return line.substr(equals + 1);
  }
  return "(none)";
}

std::string ScriptSession::Path(std::string_view name) const {
  if (folder.empty()) MakeFolder();
  std::string path = folder;
  return path.append("/").append(name);
}

bool ScriptSession::Exists(std::string_view name) const {
  return std::filesystem::exists(Path(name));
}

std::string ScriptSession::Bytes(std::string_view name) const {
  return ReadWhole(Path(name));
}

std::vector<std::string> ScriptSession::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Path(""))) {
    const std::string name = entry.path().filename().string();
    const std::string stem = name.substr(0, name.find('-'));
    const bool result = name.find('-') != std::string::npos &&
                        (stem == "state" || stem == "view" || stem == "screen" || stem == "player");
    const bool own = name == ".sorvel" || name == "script.txt" || name == "errors.txt" || name == "output.txt" ||
                     name == "settings.ini";
    if (!result && !own) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

ScriptSession& ScriptSession::Write(std::string_view name, std::string_view bytes) {
  if (folder.empty()) {
    files.emplace_back(name, bytes);
  } else {
    std::ofstream(Path(name), std::ios::binary) << bytes;
  }
  return *this;
}

void ScriptSession::WriteBitmap(std::string_view name, int width, int height, const std::vector<uint32_t>& pixels) {
  const size_t pitch = (static_cast<size_t>(width) * 3 + 3) / 4 * 4;
  const size_t size = pitch * static_cast<size_t>(height);
  std::string bytes = "BM";
  PutLittle(bytes, static_cast<uint32_t>(54 + size), 4);
  PutLittle(bytes, 0, 4);
  PutLittle(bytes, 54, 4);
  PutLittle(bytes, 40, 4);
  PutLittle(bytes, static_cast<uint32_t>(width), 4);
  PutLittle(bytes, static_cast<uint32_t>(height), 4);
  PutLittle(bytes, 1, 2);
  PutLittle(bytes, 24, 2);
  PutLittle(bytes, 0, 4);
  PutLittle(bytes, static_cast<uint32_t>(size), 4);
  for (int i = 0; i < 4; ++i) PutLittle(bytes, 0, 4);
  for (int y = height - 1; y >= 0; --y) {
    const size_t start = bytes.size();
    for (int x = 0; x < width; ++x) {
      PutLittle(bytes, pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)], 3);
    }
    bytes.resize(start + pitch, '\0');
  }
  Write(name, bytes);
}

void ScriptSession::Run(int expectedStatus) {
  Write("script.txt", script);
  RunProgram(Words(), expectedStatus);
}

std::vector<std::string> ScriptSession::Words() const {
  std::vector<std::string> words = {kProgramPath, "run", Path("script.txt"), "--settings", Path("settings.ini")};
  if (usesRecovery) words.insert(words.end(), {"--recovery", Path("recovery")});
  return words;
}

ScriptSession& ScriptSession::UseRecovery() {
  usesRecovery = true;
  return *this;
}

// At its last line the program waits for somebody to write into a pipe.
void ScriptSession::RunAndKill() {
  const std::string pipe = Path("pipe.cut");
  std::filesystem::remove(pipe);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  Write("script.txt", script + "open pipe.cut\n");
  const pid_t child = Spawn(Words());
  int writer = -1;
  for (int i = 0; i < 10000 && writer < 0; ++i) {
    writer = open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (writer < 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  EXPECT_GE(writer, 0) << "the program didn't come to its last line\n" << ReadWhole(Path("errors.txt"));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(writer);
  std::filesystem::remove(pipe);
}

void ScriptSession::RunAndKill(std::chrono::microseconds time) {
  Write("script.txt", script);
  const pid_t child = Spawn(Words());
  std::this_thread::sleep_for(time);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

void ScriptSession::RunAll() {
  if (!needsRun) return;
  if (hasRun) Write("settings.ini", startSettings);
  Run();
}

void ScriptSession::RunCopy(const std::string& name, int expectedStatus) {
  Write("script.txt", script);
  std::error_code failure;
  std::filesystem::copy_file(kProgramPath, Path(name), std::filesystem::copy_options::overwrite_existing, failure);
  ASSERT_FALSE(failure) << failure.message();
  RunProgram({Path(name), "run", Path("script.txt")}, expectedStatus);
}

int ScriptSession::Spawn(std::vector<std::string> words) {
  hasRun = true;
  needsRun = false;
  readStates.clear();
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, Path("").c_str());
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, Path("output.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                   0644);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, Path("errors.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                   0644);
  pid_t child = 0;
  const int spawned = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(spawned, 0) << "can't start " << words[0];
  return spawned == 0 ? child : 0;
}

void ScriptSession::RunProgram(const std::vector<std::string>& words, int expectedStatus) {
  const pid_t child = Spawn(words);
  ASSERT_NE(child, 0);
  const auto end = std::chrono::steady_clock::now() + kTimeLimit;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      FAIL() << "the program took more than 20 s with\n" << script;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  errors = ReadWhole(Path("errors.txt"));
  ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status) << " with\n" << script << errors;
  ASSERT_EQ(WEXITSTATUS(status), expectedStatus) << errors << "\n" << script;
}

void ScriptSession::Restart() {
  script.clear();
  errors.clear();
  lineCount = 0;
  results = {};
  readStates.clear();
  startSettings = Settings();
  hasRun = needsRun = false;
}

nlohmann::json ScriptSession::StateAt(int number) {
  const std::string path = ResultPath(kState, number);
  if (number == kNow) number = results[kState].count - 1;
  const auto read = readStates.find(number);
  if (read != readStates.end()) return read->second;
  const std::string text = ReadWhole(path);
  nlohmann::json state = nlohmann::json::parse(text, nullptr, false);
  if (state.is_discarded()) {
    ADD_FAILURE() << "state " << number << " can't be read: " << text;
    return nullptr;
  }
  return readStates[number] = state;
}

// Absent members give null here rather than ending the test program, so that the test fails with a value to see.
nlohmann::json ScriptSession::Cut(int state) {
  const nlohmann::json whole = StateAt(state);
  if (!whole.is_object() || !whole.contains("cuts")) return nullptr;
  for (const nlohmann::json& cut : whole["cuts"]) {
    if (cut.value("active", false)) return cut;
  }
  return nullptr;
}

nlohmann::json ScriptSession::Frame(int state) {
  const nlohmann::json cut = Cut(state);
  if (!cut.is_object()) return nullptr;
  return FrameAt(cut.value("currentFrame", size_t{0}), state);
}

nlohmann::json ScriptSession::FrameAt(size_t frame, int state) {
  const nlohmann::json cut = Cut(state);
  if (!cut.is_object() || frame >= cut["frames"].size()) return nullptr;
  return cut["frames"][frame];
}

nlohmann::json ScriptSession::RecordAt(size_t record, int state) {
  const nlohmann::json frame = Frame(state);
  if (!frame.is_object() || record >= frame["records"].size()) return nullptr;
  return frame["records"][record];
}

nlohmann::json ScriptSession::CurrentRecord(int state) {
  const nlohmann::json frame = Frame(state);
  if (!frame.is_object()) return nullptr;
  return RecordAt(frame.value("currentRecord", size_t{0}), state);
}

Area ScriptSession::NowUndoRect() {
  return AreaOf(Cut()["undoRect"]);
}

Area ScriptSession::NowSelection() {
  return AreaOf(Cut()["selection"]);
}

bool ScriptSession::HasSelection() {
  const Area selection = NowSelection();
  return selection[0] < selection[2] && selection[1] < selection[3];
}

std::string Quoted(std::string_view word) {
  std::string text = "\"";
  for (const char character : word) {
    if (character == '"' || character == '\\') {
      text.append("\\").append(1, character);
    } else if (character == '\n') {
      text.append("\\n");
    } else {
      text.append(1, character);
    }
  }
  return text.append("\"");
}

std::string Checksum(std::string_view bytes) {
  uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int i = 0; i < 8; ++i) crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xEDB88320 : crc >> 1;
  }
  std::array<char, 9> text{};
  std::snprintf(text.data(), text.size(), "%08x", crc ^ 0xFFFFFFFF);
  return text.data();
}

}  // namespace rules
