#include "monkey/session.h"

#include <cstdlib>
#include <filesystem>
#include <random>
#include <system_error>
#include <vector>

#include "console/script_reader.h"
#include "dialogs/dialogs.h"
#include "foundation/settings.h"
#include "platform/headless/headless.h"
#include "resources/ids.h"
#include "shell/entry.h"

namespace sorvel::monkey {

namespace {

namespace fs = std::filesystem;
namespace headless = platform::headless;

constexpr char kFiles[] = "files";
constexpr char kSettings[] = "files/sorvel.ini";
constexpr int32_t kShowDefault = 10;

bool IsAnswer(const std::string& action) {
  return action == "dialog" || action == "file" || action == "answer" || action == "color";
}

// Whether an action may read documents, which may hold what the program itself would never make.
bool MayLoad(const std::vector<std::string>& words) {
  const std::string& action = words[0];
  if (action == "open" || action == "drop" || action == "dblclick" || action == "key") return true;
  if (action != "command") return false;
  const int id = std::atoi(words[1].c_str());
  return id == kCommandOpenCut || id == kCommandOpenLayer || id == kCommandOverwriteLayer;
}

std::string ReadBytes(const std::string& path) {
  std::string bytes;
  FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return bytes;
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) bytes.push_back(static_cast<char>(byte));
  std::fclose(file);
  return bytes;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return;
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

void Damage(const std::string& path, uint64_t number) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return;
  std::string bytes = ReadBytes(path);
  std::mt19937_64 random(number);
  const auto below = [&random](size_t limit) { return limit == 0 ? 0 : static_cast<size_t>(random() % limit); };
  switch (below(6)) {
    case 0:
      bytes.resize(below(bytes.size() + 1));
      break;
    case 1:
      bytes.insert(below(bytes.size() + 1), std::string(1 + below(9), static_cast<char>(random())));
      break;
    case 2:
      bytes.erase(below(bytes.size() + 1), below(9));
      break;
    default:
      for (size_t count = 1 + below(6); count > 0 && !bytes.empty(); --count) {
        char& byte = bytes[below(bytes.size())];
        byte = static_cast<char>(below(2) == 0 ? random() : static_cast<uint64_t>(byte) ^ (1u << below(8)));
      }
      break;
  }
  WriteBytes(path, bytes);
}

}  // namespace

std::vector<std::string> SplitWords(const std::string& line) {
  std::vector<std::string> words;
  size_t place = 0;
  while (place < line.size()) {
    size_t end = line.find(' ', place);
    if (end == std::string::npos) end = line.size();
    if (end > place) words.push_back(line.substr(place, end - place));
    place = end + 1;
  }
  return words;
}

Session::Session(const std::string& folder, FILE* scriptFile, bool keepsFiles) : script(scriptFile) {
  std::error_code error;
  oldFolder = fs::current_path(error).string();
  fs::current_path(folder, error);
  if (!keepsFiles) fs::remove_all(kFiles, error);
  fs::create_directories(std::string(kFiles).append("/sub"), error);
  UseSettingsFile((fs::current_path(error) / kSettings).string().c_str());
  Start();
}

Session::~Session() {
  End();
  UseSettingsFile(nullptr);
  std::error_code error;
  fs::current_path(oldFolder, error);
}

void Session::Start() {
  undo.Forget();
  headless::Reset();
  frame = std::make_unique<MainFrame>();
  if (!StartProgram(frame.get(), "", kShowDefault)) Fail("the main window can't be made");
  runner = std::make_unique<console::ScriptRunner>(frame.get());
}

void Session::End() {
  if (headless::HasQuit()) {
    FinishProgram(frame.get());
  } else {
    for (CutWindow* cut : std::vector<CutWindow*>(frame->openCuts))
      platform::DestroyMdiChild(frame->mdiClient, cut->window);
    platform::DestroyWindow(frame->frameWindow);
    ReleaseProgram();
  }
  runner.reset();
  frame.reset();
  headless::Reset();
}

bool Session::HasEnded() const {
  return headless::HasQuit();
}

bool Session::Fail(const std::string& reason) {
  if (failure.empty()) failure = reason;
  if (script != nullptr) {
    std::fprintf(script, "# failed: %s\n", reason.c_str());
    std::fflush(script);
  }
  return false;
}

bool Session::Run(const std::string& line) {
  if (!failure.empty()) return false;
  if (script != nullptr) {
    std::fprintf(script, "%s\n", line.c_str());
    std::fflush(script);
  }
  if (line.empty()) return true;
  if (line[0] == '#') return RunComment(SplitWords(line));
  console::ScriptReader reader(line);
  console::ScriptLine parsed;
  if (!reader.Next(&parsed) || !parsed.problem.empty()) return Fail("the line is no action: " + parsed.problem);
  return RunAction(parsed.words);
}

bool Session::RunAction(const std::vector<std::string>& words) {
  if (HasEnded()) return Fail("the program has ended");
  const bool isDone = runner->Run(words) == console::kDone;
  // A document that can't be written stops an exit.
  const bool isStopped = words[0] == "exit" && !HasEnded() && headless::Failure().empty();
  if (!isDone && !isStopped) return Fail("the action is refused: " + runner->Problem());
  if (IsAnswer(words[0])) return true;
  ++steps;
  return CheckAlways(MayLoad(words)) && CheckUndo(words);
}

bool Session::CheckUndo(const std::vector<std::string>& words) {
  if (HasEnded()) return true;
  const std::string problem = undo.Check(*frame, words);
  return problem.empty() || Fail(problem);
}

bool Session::CheckAlways(bool mayLoad) {
  if (HasEnded()) return true;
  const std::string problem = invariants.Check(*frame, mayLoad);
  return problem.empty() || Fail(problem);
}

// Null for no window; the cut may not be there.
platform::WindowHandle Session::FindWindow(const std::string& name) {
  CutWindow* cut = ActiveCut();
  if (name == "cut") return cut != nullptr ? cut->window : nullptr;
  if (name == "frame") return frame->frameWindow;
  if (name == "picker") return frame->penPicker.window;
  return name == "player" ? frame->animationWindow.window : nullptr;
}

bool Session::SendMessage(const std::vector<std::string>& words) {
  const platform::WindowHandle window = FindWindow(words[2]);
  if (window == nullptr) return true;
  undo.Forget();
  platform::Send(window, static_cast<uint32_t>(std::strtoul(words[3].c_str(), nullptr, 10)),
                 static_cast<uintptr_t>(std::strtoll(words[4].c_str(), nullptr, 10)),
                 static_cast<intptr_t>(std::strtoll(words[5].c_str(), nullptr, 10)));
  ++steps;
  return CheckAlways(false);
}

bool Session::RunComment(const std::vector<std::string>& words) {
  if (words.size() < 2) return true;
  const std::string& name = words[1];
  if (name == "restart" && HasEnded()) {
    FinishProgram(frame.get());
    Start();
    return failure.empty() && CheckAlways(true);
  }
  if (name == "damage" && words.size() == 4) {
    Damage(words[2], std::strtoull(words[3].c_str(), nullptr, 10));
    return true;
  }
  CutWindow* cut = ActiveCut();
  if (HasEnded()) return true;
  if (name == "send" && words.size() == 6) return SendMessage(words);
  if (name == "expose" && words.size() == 3) {
    const platform::WindowHandle window = FindWindow(words[2]);
    if (window == nullptr) return true;
    platform::InvalidateClient(window, true);
    headless::DeliverPaint(window);
    ++steps;
    return CheckAlways(false);
  }
  if (cut == nullptr) return true;
  std::string problem;
  if (name == "remember") remembered = DrawingsOf(cut);
  if (name == "same" && !(DrawingsOf(cut) == remembered)) problem = "two undos changed the cut";
  if (name == "at" && words.size() == 3 && words[2] != std::to_string(cut->scrollY)) problem = "scrolled elsewhere";
  if (name == "saved") problem = CompareSaved(cut);
  if (name == "clean") problem = CheckClean(*frame, cut);
  return problem.empty() || Fail(problem);
}

}  // namespace sorvel::monkey
