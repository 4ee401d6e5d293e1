#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/script_reader.h"
#include "console/script_runner.h"
#include "foundation/settings.h"
#include "platform/headless/headless.h"
#include "platform/text.h"
#include "shell/entry.h"

namespace sorvel::console {

namespace {

// The window system's way to show the window as it likes.
constexpr int32_t kShowDefault = 10;

// Opens what scripts left without saving it, if the folder for it is named. False if that folder can't be used.
bool StartRecovery(const Arguments& arguments, MainFrame* frame) {
  const std::string* folder = arguments.Find("--recovery");
  if (folder == nullptr) return true;
  if (!frame->recovery.Begin(FullPath(*folder), Recovery::Writing::kInPlace)) return false;
  frame->recovery.OpenLeft(false, true);
  return true;
}

int RunLines(const std::string& script, std::string text, MainFrame* frame) {
  ScriptReader reader(std::move(text));
  ScriptRunner runner(frame);
  ScriptLine line;
  while (!runner.HasEnded() && reader.Next(&line)) {
    const int status = line.problem.empty() ? runner.Run(line.words) : kRefused;
    if (status == kRefused) {
      return FailLine(script, line.number, line.problem.empty() ? runner.Problem() : line.problem);
    }
    if (status != kDone) return status;
    if (!runner.HasEnded()) frame->recovery.OnAction();
  }
  return kDone;
}

// Destroys the windows without asking whether to save.
void DestroyWindows(MainFrame* frame) {
  if (platform::headless::HasQuit()) return;
  for (CutWindow* cut : std::vector<CutWindow*>(frame->openCuts))
    platform::DestroyMdiChild(frame->mdiClient, cut->window);
  platform::DestroyWindow(frame->frameWindow);
}

}  // namespace

int RunRun(const Arguments& arguments) {
  const std::string& script = arguments.Plain()[0];
  std::string text;
  std::string problem;
  if (!ReadScript(script, &text, &problem)) return Fail(script, problem);
  const std::string* settingsPath = arguments.Find("--settings");
  if (settingsPath != nullptr) {
    std::string path;
    if (!platform::Utf8ToShiftJis(FullPath(*settingsPath), &path)) {
      return Fail(*settingsPath, "the path has letters that Shift JIS can't express");
    }
    UseSettingsFile(path.c_str());
  }
  MainFrame frame;
  if (!StartProgram(&frame, "", kShowDefault)) return Fail(script, "the main window can't be made");
  const bool canRecover = StartRecovery(arguments, &frame);
  const int status = canRecover ? RunLines(script, std::move(text), &frame)
                                : Fail(*arguments.Find("--recovery"), "the folder can't be made or written");
  const bool hasEnded = platform::headless::HasQuit();
  if (status == kDone && hasEnded) {
    frame.recovery.End();
    FinishProgram(&frame);
  } else {
    frame.recovery.Leave();
    DestroyWindows(&frame);
    ReleaseProgram();
  }
  return status;
}

}  // namespace sorvel::console
