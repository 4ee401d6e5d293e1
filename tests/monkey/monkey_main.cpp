// sorvel_monkey: random work on the headless program, session after session, until something fails.
//
//   sorvel_monkey [--seed N] [--steps N] [--seconds S] [--folder F] [--length N] [--large] [--script-only] [--undo]
//   sorvel_monkey --kills N [--seed N] [--folder F]
//   sorvel_monkey --replay SCRIPT [--folder F]
//   sorvel_monkey --minimise SCRIPT [--folder F]
//
// A session's script stands in F/session.sorvel, each line from before it was carried out, so that it is complete after
// a crash too. `sorvel run --settings files/sorvel.ini session.sorvel` in F repeats it once F/files is empty again, but
// for the checks and for the lines "# damage", "# send", "# expose" and "# restart", which --replay alone carries out.
// With --undo sessions take many steps back and forward, and at their end every step of every cut.
// With --kills each session is killed at some moment, and the next one goes on with its files, in which no document may
// be damaged. --script-only makes none of those. --minimise leaves out what a failure doesn't need, in
// F/minimal.sorvel.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include "document/cut.h"
#include "document/undo_history.h"
#include "foundation/byte_stream.h"
#include "monkey/monkey.h"

#ifdef SORVEL_SANITIZED
#include <sanitizer/common_interface_defs.h>

// Memory that a document asks for without measure isn't there.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=256:detect_stack_use_after_return=1";
}
#endif

namespace {

using namespace sorvel::monkey;
namespace fs = std::filesystem;

constexpr unsigned kLongestStep = 60;  // seconds
// A replay tells of actions that take longer.
constexpr std::chrono::milliseconds kSlow(500);
constexpr int kFailed = 1;
constexpr int kUsage = 2;

struct Options {
  uint64_t seed = 1;
  int64_t steps = INT64_MAX;
  int64_t seconds = INT64_MAX;
  int64_t length = 700;  // steps of a session
  int64_t kills = 0;
  std::string folder;
  std::string replay;
  std::string minimise;
  bool isLarge = false;
  bool isScriptOnly = false;
  bool isUndoing = false;
};

bool ReadOptions(int argc, char** argv, Options* options) {
  options->folder = (fs::temp_directory_path() / "sorvel_monkey").string();
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    const auto next = [&] { return i + 1 < argc ? argv[++i] : ""; };
    if (name == "--seed") {
      options->seed = std::strtoull(next(), nullptr, 10);
    } else if (name == "--steps") {
      options->steps = std::atoll(next());
    } else if (name == "--seconds") {
      options->seconds = std::atoll(next());
    } else if (name == "--length") {
      options->length = std::atoll(next());
    } else if (name == "--kills") {
      options->kills = std::atoll(next());
    } else if (name == "--folder") {
      options->folder = next();
    } else if (name == "--replay") {
      options->replay = next();
    } else if (name == "--minimise") {
      options->minimise = next();
    } else if (name == "--large") {
      options->isLarge = true;
    } else if (name == "--script-only") {
      options->isScriptOnly = true;
    } else if (name == "--undo") {
      options->isUndoing = true;
    } else {
      return false;
    }
  }
  std::error_code error;
  fs::create_directories(options->folder, error);
  return fs::is_directory(options->folder, error);
}

std::vector<std::string> ReadLines(const std::string& path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

void WriteLines(const std::string& path, const std::vector<std::string>& lines) {
  std::ofstream file(path);
  for (const std::string& line : lines) file << line << '\n';
}

// What to look at when the process dies in the middle of a line.
char gScriptPath[4096];

void TellScript() {
  std::fprintf(stderr, "monkey: the script that leads there is %s\n", gScriptPath);
}

void OnAlarm(int) {
  constexpr char text[] = "monkey: SUMMARY: an action takes too long\n";
  if (write(STDERR_FILENO, text, sizeof(text) - 1) < 0) _exit(kFailed);
  std::abort();
}

// Sessions.

int RunSessions(const Options& options) {
  const std::string path = (fs::path(options.folder) / "session.sorvel").string();
  std::snprintf(gScriptPath, sizeof(gScriptPath), "%s", path.c_str());
  const auto start = std::chrono::steady_clock::now();
  const auto elapsed = [&start] {
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start).count();
  };
  int64_t done = 0;
  int64_t told = 0;
  uint64_t seed = options.seed;
  for (; done < options.steps && elapsed() < options.seconds; ++seed) {
    FILE* script = std::fopen(path.c_str(), "w");
    if (script == nullptr) return kUsage;
    std::fprintf(script, "# seed %llu\n", static_cast<unsigned long long>(seed));
    MonkeyOptions monkeyOptions;
    monkeyOptions.isLarge = options.isLarge;
    // Every other session is one that `sorvel run` repeats.
    monkeyOptions.isRough = !options.isScriptOnly && !options.isUndoing && seed % 2 == 0;
    monkeyOptions.isUndoing = options.isUndoing;
    bool hasFailed = false;
    {
      Monkey monkey(seed, options.folder, script, monkeyOptions);
      alarm(kLongestStep);
      while (monkey.Steps() < options.length && monkey.Step()) alarm(kLongestStep);
      if (options.isUndoing) monkey.WalkUndo();
      done += monkey.Steps();
      hasFailed = !monkey.Failure().empty();
      if (hasFailed) {
        std::fprintf(stderr, "monkey: SUMMARY: seed %llu: %s\n", static_cast<unsigned long long>(seed),
                     monkey.Failure().c_str());
      }
    }
    alarm(0);
    std::fclose(script);
    if (hasFailed) {
      TellScript();
      return kFailed;
    }
    if (elapsed() >= told + 10) {
      told = elapsed();
      std::printf("%lld steps, seeds %llu to %llu, %lld s\n", static_cast<long long>(done),
                  static_cast<unsigned long long>(options.seed), static_cast<unsigned long long>(seed),
                  static_cast<long long>(told));
      std::fflush(stdout);
    }
  }
  std::printf("%lld steps, seeds %llu to %llu, %lld s: nothing failed\n", static_cast<long long>(done),
              static_cast<unsigned long long>(options.seed), static_cast<unsigned long long>(seed - 1),
              static_cast<long long>(elapsed()));
  return 0;
}

// Sessions that are killed.

// What is wrong with a file: empty for nothing. Files that are no cuts or layers can't be told from damaged ones.
std::string ProblemOf(const fs::path& path) {
  sorvel::FileStream stream(std::fopen(path.c_str(), "rb"));
  if (!stream.IsOpen()) return "can't be opened";
  sorvel::Cut cut(0, 0, 24, "", 0);
  sorvel::LoadReport report;
  char magic[16] = "";
  sorvel::ReadText(stream, magic, sizeof(magic));
  stream.Seek(0, sorvel::kFromStart);
  if (std::strcmp(magic, "Sorvelin Cut") == 0) {
    cut.Load(&stream, nullptr, &report);
  } else if (std::strcmp(magic, "Sorvelin Layer") == 0) {
    cut.AddFrame();
    cut.LoadLayer(&stream, &report);
  }
  stream.Close();
  return report.problem;
}

int RunKills(const Options& options) {
  constexpr unsigned longestLife = 60'000;  // microseconds
  std::mt19937_64 random(options.seed);
  uint64_t documents = 0;
  for (int64_t i = 0; i < options.kills; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      MonkeyOptions monkeyOptions;
      monkeyOptions.isRough = false;
      monkeyOptions.keepsFiles = i % 50 != 0;
      Monkey monkey(options.seed + static_cast<uint64_t>(i), options.folder, nullptr, monkeyOptions);
      while (monkey.Step()) {
      }
      if (monkey.Failure().empty()) _exit(0);
      std::fprintf(stderr, "monkey: SUMMARY: seed %llu: %s\n",
                   static_cast<unsigned long long>(options.seed + static_cast<uint64_t>(i)), monkey.Failure().c_str());
      _exit(kFailed);
    }
    if (child < 0) return kUsage;
    usleep(static_cast<useconds_t>(random() % longestLife));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) != 0) return kFailed;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(options.folder) / "files")) {
      const std::string name = entry.path().filename().string();
      if (!entry.is_regular_file() || (name.starts_with(".sorvel-") && name.ends_with(".tmp"))) continue;
      ++documents;
      const std::string problem = ProblemOf(entry.path());
      if (problem.empty()) continue;
      std::fprintf(stderr, "monkey: SUMMARY: after kill %lld %s: %s\n", static_cast<long long>(i), entry.path().c_str(),
                   problem.c_str());
      return kFailed;
    }
  }
  std::printf("%lld kills, %llu files looked at: none was damaged\n", static_cast<long long>(options.kills),
              static_cast<unsigned long long>(documents));
  return 0;
}

int Replay(const Options& options) {
  const std::string script = fs::absolute(options.replay).string();
  std::snprintf(gScriptPath, sizeof(gScriptPath), "%s", script.c_str());
  const std::vector<std::string> lines = ReadLines(script);
  Session session(options.folder, nullptr);
  int64_t number = 0;
  for (const std::string& line : lines) {
    ++number;
    alarm(kLongestStep);
    const auto start = std::chrono::steady_clock::now();
    const bool isDone = session.Run(line);
    const auto time = std::chrono::steady_clock::now() - start;
    if (time > kSlow) {
      std::printf("line %lld, %s: %lld ms\n", static_cast<long long>(number), line.c_str(),
                  static_cast<long long>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()));
    }
    if (isDone) continue;
    std::fprintf(stderr, "monkey: SUMMARY: %s\nmonkey: in line %lld: %s\n", session.Failure().c_str(),
                 static_cast<long long>(number), line.c_str());
    return kFailed;
  }
  alarm(0);
  return 0;
}

// Making scripts shorter. Each trial is a process of its own.

// What a run of the script comes to: the line with which it failed, without numbers; empty for no failure.
std::string Outcome(const Options& options, const std::vector<std::string>& lines) {
  const std::string script = (fs::path(options.folder) / "trial.sorvel").string();
  const std::string errors = (fs::path(options.folder) / "trial.txt").string();
  WriteLines(script, lines);
  const pid_t child = fork();
  if (child == 0) {
    if (std::freopen(errors.c_str(), "w", stderr) == nullptr) _exit(kUsage);
    execl("/proc/self/exe", "sorvel_monkey", "--replay", script.c_str(), "--folder", options.folder.c_str(),
          static_cast<char*>(nullptr));
    _exit(kUsage);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status == 0) return "";
  for (const std::string& line : ReadLines(errors)) {
    const size_t place = line.find("SUMMARY: ");
    const size_t error = line.find("runtime error: ");
    if (place == std::string::npos && error == std::string::npos) continue;
    std::string outcome = place != std::string::npos ? line.substr(place) : line;
    for (char& byte : outcome) {
      if (byte >= '0' && byte <= '9') byte = '#';
    }
    return outcome;
  }
  return "died";
}

int Minimise(const Options& options) {
  std::vector<std::string> lines = ReadLines(options.minimise);
  const std::string wanted = Outcome(options, lines);
  if (wanted.empty()) {
    std::fprintf(stderr, "monkey: the script doesn't fail\n");
    return kUsage;
  }
  std::printf("%s\n", wanted.c_str());
  const std::string result = (fs::path(options.folder) / "minimal.sorvel").string();
  for (size_t block = (lines.size() + 1) / 2; block > 0;) {
    bool hasShrunk = false;
    for (size_t start = 0; start < lines.size();) {
      std::vector<std::string> trial = lines;
      const size_t end = std::min(start + block, lines.size());
      trial.erase(trial.begin() + static_cast<ptrdiff_t>(start), trial.begin() + static_cast<ptrdiff_t>(end));
      if (Outcome(options, trial) == wanted) {
        lines = trial;
        hasShrunk = true;
        WriteLines(result, lines);
      } else {
        start = end;
      }
    }
    std::printf("%zu lines, without blocks of %zu\n", lines.size(), block);
    std::fflush(stdout);
    if (block > 1) {
      block = (block + 1) / 2;
    } else if (!hasShrunk) {
      break;
    }
  }
  WriteLines(result, lines);
  std::printf("%s\n", result.c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  sorvel::UndoHistory::checksAll = true;
  Options options;
  if (!ReadOptions(argc, argv, &options)) {
    std::fprintf(stderr,
                 "usage: sorvel_monkey [--seed N] [--steps N] [--seconds S] [--length N] [--folder F] [--large]\n"
                 "                     [--script-only] [--undo] [--kills N] [--replay SCRIPT] [--minimise SCRIPT]\n");
    return kUsage;
  }
#ifdef SORVEL_SANITIZED
  __sanitizer_set_death_callback(TellScript);
#endif
  std::signal(SIGALRM, OnAlarm);
  if (!options.minimise.empty()) return Minimise(options);
  if (options.kills > 0) return RunKills(options);
  return options.replay.empty() ? RunSessions(options) : Replay(options);
}
