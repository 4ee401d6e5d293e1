#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/headless/headless.h"

// What tests of the headless platform share: each begins and ends in the state of a fresh process.
namespace sorvel::platform {

class HeadlessTest : public testing::Test {
 protected:
  HeadlessTest() { headless::Reset(); }
  ~HeadlessTest() override { headless::Reset(); }
};

// A window's object that writes down what it is told: "size 640 480", "activate A B", "command 7 512" and the like,
// after its own name. All objects of a test write to one list.
struct Recorder final : WindowObject {
  Recorder(std::string ownName, std::vector<std::string>* messages) : name(std::move(ownName)), log(messages) {}

  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;
  std::string NameOf(uintptr_t handle) const;

  std::string name;
  std::vector<std::string>* log;
  std::vector<Recorder*>* others = nullptr;  // whose windows NameOf knows
  intptr_t createAnswer = 0;
  std::function<void(uint32_t)> onMessage;  // called after it was written down
};

inline std::string Recorder::NameOf(uintptr_t handle) const {
  if (handle == 0) return "none";
  for (const Recorder* other : *others) {
    if (reinterpret_cast<uintptr_t>(other->window) == handle) return other->name;
  }
  return "other";
}

inline intptr_t Recorder::WindowProc(uint32_t message, uintptr_t first, intptr_t second) {
  static const std::map<uint32_t, const char*> names = {{kMessageCreate, "create"},
                                                        {kMessageDestroy, "destroy"},
                                                        {kMessageSetFocus, "focus"},
                                                        {kMessageKillFocus, "blur"}};
  const uintptr_t value = static_cast<uintptr_t>(second);
  const auto halves = [](uintptr_t of) { return std::to_string(LowHalf(of)) + " " + std::to_string(HighHalf(of)); };
  const auto known = names.find(message);
  std::string text = known != names.end() ? known->second : std::to_string(message);
  if (message == kMessageSize) text = "size " + halves(value);
  if (message == kMessageMdiActivate) text = "activate " + NameOf(first) + " " + NameOf(value);
  if (message == kMessageCommand) text = "command " + halves(first);
  log->push_back(name + " " + text);
  if (onMessage) onMessage(message);
  if (message == kMessageCreate) return createAnswer;
  return DefaultHandling(window, message, first, second);
}

// A frame with an area of child windows.
struct Frame {
  Frame() : object("frame", &log) {
    objects.push_back(&object);
    object.others = &objects;
    window = MakeFrameWindow("Frame", "Title", 103, &object);
    client = MakeMdiClient(window, 10001, 7, 58000);
    log.clear();
  }

  std::vector<std::string> TakeLog() {
    std::vector<std::string> taken;
    taken.swap(log);
    return taken;
  }

  std::vector<std::string> log;
  std::vector<Recorder*> objects;
  Recorder object;
  WindowHandle window;
  WindowHandle client;
};

// A child window of the frame's area.
struct Child {
  Child(Frame* frame, const char* name) : object(name, &frame->log) {
    frame->objects.push_back(&object);
    object.others = &frame->objects;
    object.window = nullptr;
    window = MakeMdiChild(frame->client, "Child", name, &object);
  }

  Recorder object;
  WindowHandle window;
};

using Log = std::vector<std::string>;

}  // namespace sorvel::platform
