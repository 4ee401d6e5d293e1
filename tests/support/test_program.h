#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "support/places.h"
#include "support/test_bytes.h"

namespace sorvel::teststreams {

using namespace testbytes;

// What a run of the console program left: its exit status, -1 for none within a minute or a crash, and its output.
struct Answer {
  int status = -1;
  std::string out;
  std::string err;

  // One line that names what it is about.
  bool IsOneLineAbout(std::string_view name) const {
    return !err.empty() && err.find('\n') == err.size() - 1 && err.find(name) != std::string::npos;
  }
};

inline std::ostream& operator<<(std::ostream& out, const Answer& run) {
  return out << "status " << run.status << "\n" << run.out << run.err;
}

// A folder of the test's own in which the program runs.
class Folder : public TemporaryFolder {
 public:
  Folder() {}  // a constant one needs it

  void Write(const std::string& name, const Bytes& bytes) const { WriteFile(Path(name), bytes); }
  Bytes Read(const std::string& name) const { return ReadBytes(Path(name)); }

  void MakeFolder(const std::string& name) const { EXPECT_EQ(mkdir(Path(name).c_str(), 0755), 0); }

  bool Has(const std::string& name) const {
    std::error_code error;
    return std::filesystem::exists(Path(name), error);
  }

  // The names of all that lies here, folders included, with a blank between them; without what is kept of replaced
  // files.
  std::string List() const {
    std::set<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path, error)) {
      const std::string name = entry.path().string().substr(path.size() + 1);
      if (("/" + name + "/").find("/.sorvel/") == std::string::npos) names.insert(name);
    }
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : " ") + name;
    return list;
  }

  Answer Sorvel(const std::vector<std::string>& words) const {
    FILE* out = std::tmpfile();
    FILE* err = std::tmpfile();
    std::vector<char*> arguments = {const_cast<char*>("sorvel")};
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, path.c_str());
    posix_spawn_file_actions_adddup2(&actions, fileno(out), 1);
    posix_spawn_file_actions_adddup2(&actions, fileno(err), 2);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, kProgramPath, &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(spawned, 0);
    if (spawned != 0) return {};
    int status = 0;
    int waited = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
      usleep(500);
      if (++waited == 100000) kill(child, SIGKILL);
    }
    Answer run;
    if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
    for (const auto& [file, text] : {std::pair{out, &run.out}, {err, &run.err}}) {
      std::rewind(file);
      *text = ReadRest(file);
      std::fclose(file);
    }
    return run;
  }
};

}  // namespace sorvel::teststreams
