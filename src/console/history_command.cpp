#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "console/commands.h"
#include "console/console_files.h"
#include "foundation/history.h"
#include "platform/replacement.h"

namespace sorvel::console {

namespace {

void PrintGenerations(const std::vector<Generation>& generations) {
  int number = 0;
  for (const Generation& generation : generations) {
    const std::time_t time = generation.time;
    char text[32] = "";
    if (const std::tm* local = std::localtime(&time)) std::strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", local);
    std::printf("%d\t%s\t%lld\t%s\n", ++number, text, static_cast<long long>(generation.bytes),
                NameOfKind(generation.kind));
  }
}

}  // namespace

int RunHistory(const Arguments& arguments) {
  const std::string& file = arguments.Plain()[0];
  const std::string* to = arguments.Find("--to");
  int unread = 0;
  const std::vector<Generation> generations = ListGenerations(file, &unread);
  if (unread != 0) return Fail(file, std::string("its history can't be read: ") + std::strerror(unread));
  if (!arguments.Has("--restore")) {
    if (to != nullptr) return FailUsage("history: --to needs --restore");
    if (generations.empty() && !platform::FactsOf(file).exists) return Fail(file, std::strerror(ENOENT));
    PrintGenerations(generations);
    return FinishPrinting();
  }
  int32_t number = 0;
  if (!NumberOption(arguments, "--restore", 1, INT32_MAX, &number)) return kUsage;
  const size_t count = generations.size();
  if (static_cast<size_t>(number) > count) {
    return Fail(file, "there is no state " + std::to_string(number) + ", the history has " + std::to_string(count));
  }
  const std::string& target = to != nullptr ? *to : file;
  const int problem = RestoreGeneration(generations[static_cast<size_t>(number) - 1], target);
  return problem == 0 ? kDone : Fail(target, std::strerror(problem));
}

}  // namespace sorvel::console
