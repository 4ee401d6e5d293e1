// One whole drawing by most of the tools: the script that the console program carries out is carried out again with the
// real mouse and keyboard in the real window, and the files of both are the same.
#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "app.h"

namespace sorvel::desktop {
namespace {

using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

// The free pen takes out corners of its path by each point that it is told: moves that the window system puts together
// would change the ink.
constexpr DWORD kMoveRest = 15;

using Words = std::vector<std::string>;

Words Split(const std::string& line) {
  std::istringstream stream(line);
  Words words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

struct MenuPlace {
  const char* command;
  char popup;
  const char* item;
};

// The tools without a key.
constexpr MenuPlace kMenuPlaces[] = {{"40070", 't', "d"}, {"40086", 't', "u"}};

constexpr std::pair<const char*, const char*> kDialogTitles[] = {{"106", "レイヤのプロパティ"},
                                                                 {"107", "カットのプロパティ"}};

// Hands that follow a script of the console program. What they can't do in a real window, or don't know, is a failure:
// a button that is pressed elsewhere than where the mouse stands, among others.
class Hands {
 public:
  explicit Hands(App* driven) : app(driven) {}

  AssertionResult Follow(const Words& words) {
    const std::string& action = words[0];
    if (action == "client" && words.size() == 3) return SetClient(Number(words[1]), Number(words[2]));
    if (action == "mouse" && words.size() == 4) return MoveMouse(words);
    if (action == "picker" && words.size() == 4) return UsePicker(words);
    if (action == "char" && words.size() == 2) {
      Type(words[1]);
      return AssertionSuccess();
    }
    if (action == "key" && words.size() == 2) return PressKey(words[1]);
    if (action == "command" && words.size() == 2) return ChooseCommand(words[1]);
    if ((action == "dialog" && words.size() >= 3 && words.back() == "ok") || (action == "file" && words.size() == 2)) {
      answers.push_back(words);
      return AssertionSuccess();
    }
    return AssertionFailure() << "no hands can do \"" << action << "\" with " << words.size() - 1 << " words";
  }

 private:
  static int Number(const std::string& text) { return std::atoi(text.c_str()); }

  AssertionResult SetClient(int width, int height) {
    client = {width, height};
    return AssertionSuccess();
  }

  // The script's cut window and the real one differ in size alone, and the canvas stands in the middle of both.
  POINT OnScreen(POINT place) const {
    return app->At(place.x - (client.cx - app->canvas.width) / 2, place.y - (client.cy - app->canvas.height) / 2);
  }

  static AssertionResult Use(const std::string& message, POINT place) {
    if (message == "move") {
      MoveTo(place);
      Sleep(kMoveRest);
      return AssertionSuccess();
    }
    POINT standing = {};
    GetCursorPos(&standing);
    if (standing.x != place.x || standing.y != place.y) return AssertionFailure() << "the mouse stands elsewhere";
    constexpr std::pair<const char*, void (*)()> buttons[] = {
        {"ldown", LeftDown}, {"lup", LeftUp}, {"rdown", RightDown}, {"rup", RightUp}};
    for (const auto& [name, press] : buttons) {
      if (message != name) continue;
      press();
      return AssertionSuccess();
    }
    return AssertionFailure() << "no hand can do \"" << message << "\"";
  }

  AssertionResult MoveMouse(const Words& words) {
    if (app->Cut() == nullptr) return AssertionFailure() << "no cut is open";
    return Use(words[1], OnScreen({Number(words[2]), Number(words[3])}));
  }

  AssertionResult UsePicker(const Words& words) {
    if (!Await([this] { return app->Picker() != nullptr; })) return AssertionFailure() << "no picker is open";
    const RECT picker = app->ClientOnScreen(app->Picker());
    const AssertionResult used = Use(words[1], {picker.left + Number(words[2]), picker.top + Number(words[3])});
    if (!used || words[1] != "lup") return used;
    if (Await([this] { return app->Picker() == nullptr; })) return AssertionSuccess();
    return AssertionFailure() << "the picker stays";
  }

  AssertionResult PressKey(const std::string& name) {
    const std::string held = "Ctrl+";
    if (name.size() != held.size() + 1 || name.rfind(held, 0) != 0) return AssertionFailure() << "no key " << name;
    Press(name.back(), {VK_CONTROL});
    return GiveAnswers();
  }

  AssertionResult ChooseCommand(const std::string& command) {
    for (const MenuPlace& place : kMenuPlaces) {
      if (command != place.command) continue;
      if (const AssertionResult chosen = app->Choose(place.popup, place.item); !chosen) return chosen;
      return GiveAnswers();
    }
    return AssertionFailure() << "no place in the menu is known for " << command;
  }

  AssertionResult GiveAnswers() {
    const std::vector<Words> given = std::exchange(answers, {});
    for (const Words& answer : given) {
      const AssertionResult taken =
          answer[0] == "file" ? app->AnswerFileDialog(app->PathOf(answer[1])) : AnswerDialog(answer);
      if (!taken) return taken;
    }
    if (given.empty()) return AssertionSuccess();
    if (const AssertionResult gone = app->DialogGoes(); !gone) return gone;
    if (!Await([this] { return app->Cut() != nullptr; })) return AssertionFailure() << "no cut is open";
    return app->HasFocus(app->Cut());
  }

  AssertionResult AnswerDialog(const Words& answer) {
    const auto* known = std::find_if(std::begin(kDialogTitles), std::end(kDialogTitles),
                                     [&](const auto& entry) { return answer[1] == entry.first; });
    if (known == std::end(kDialogTitles)) return AssertionFailure() << "dialog " << answer[1] << " isn't known";
    if (const AssertionResult comes = app->HasDialog(known->second); !comes) return comes;
    Values values;
    for (size_t i = 2; i + 1 < answer.size(); i++) {
      const size_t sign = answer[i].find('=');
      if (sign == std::string::npos) return AssertionFailure() << "no value in " << answer[i];
      values.emplace_back(Number(answer[i].substr(0, sign)), answer[i].substr(sign + 1));
    }
    if (const AssertionResult entered = app->Enter(values); !entered) return entered;
    app->ParkMouse();
    Press(VK_RETURN);
    return AssertionSuccess();
  }

  App* app;
  SIZE client = {640, 480};
  std::vector<Words> answers;  // to the dialogs of the next key or command
};

class InkTest : public DesktopTest {};

TEST_F(InkTest, ADrawingByHandIsTheFileOfTheConsoleProgram) {
  const char* folder = std::getenv("SORVEL_DRAWING");
  ASSERT_NE(folder, nullptr) << "SORVEL_DRAWING names no folder with drawing.sorvel and its drawing.cut: "
                                "scripts/desktop-tests makes it";
  const std::string place = std::string(folder) + "\\";
  const std::string script = ReadFile(place + "drawing.sorvel");
  ASSERT_FALSE(script.empty()) << "no script " << place << "drawing.sorvel";
  const std::string expected = ReadFile(place + "drawing.cut");
  ASSERT_FALSE(expected.empty()) << "no file of the console program, " << place
                                 << "drawing.cut: scripts/desktop-tests takes the program as its third argument";
  // Both begin without settings.
  ASSERT_FALSE(FileExists(app.PathOf("sorvel.ini")));
  ASSERT_TRUE(app.Start());

  Hands hands(&app);
  std::istringstream lines(script);
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    number++;
    const Words words = Split(line);
    if (words.empty() || words[0][0] == '#') continue;
    ASSERT_TRUE(hands.Follow(words)) << "drawing.sorvel:" << number << ": " << line;
  }
  // The title is set after the file is written.
  ASSERT_TRUE(app.Shows(app.Cut(), "drawing.cut"));
  app.ParkMouse();
  EXPECT_TRUE(app.Keep("drawing"));

  const std::string made = ReadFile(app.PathOf("drawing.cut"));
  if (made == expected) return;
  EXPECT_TRUE(WriteFile(place + "drawing-by-hand.cut", made));
  const size_t common = std::min(made.size(), expected.size());
  const auto byteCount = static_cast<std::string::difference_type>(common);
  const auto differing = std::mismatch(made.begin(), made.begin() + byteCount, expected.begin()).first;
  FAIL() << "the files differ at byte " << differing - made.begin() << "; by hand there are " << made.size()
         << " bytes, by the console program " << expected.size() << "; drawing-by-hand.cut is kept";
}

}  // namespace
}  // namespace sorvel::desktop
