// A film from nothing to the exported file, by the mouse and the keyboard alone.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "app.h"
#include "colors.h"
#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {
namespace {

constexpr int kWidth = 160;  // of the film and of what each cut shows
constexpr int kHeight = 120;
constexpr int kPanWidth = 320;
constexpr int kFrames = 5;  // of the fade and of the pan
constexpr int kPanStep = (kPanWidth - kWidth) / (kFrames - 1);
constexpr int kDissolve = 4;  // ticks
// The fade, the pan, and the dissolve with a still ahead of it and one behind it.
constexpr int kPictures = kFrames + kFrames + 1 + kDissolve + 1;
constexpr int kPlayTime = 12000;  // milliseconds, several rounds

// A click with a key held. All in one go: Wine lets go of keys that the X server knows nothing about.
void ClickHeld(POINT place, int key) {
  MoveTo(place);
  INPUT inputs[4] = {};
  for (const int i : {0, 3}) {
    inputs[i].type = INPUT_KEYBOARD;
    inputs[i].ki = {static_cast<WORD>(key), static_cast<WORD>(MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_VSC)),
                    i == 0 ? 0u : static_cast<DWORD>(KEYEVENTF_KEYUP), 0, 0};
    inputs[i == 0 ? 1 : 2].mi.dwFlags = i == 0 ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP;
  }
  SendInput(ARRAYSIZE(inputs), inputs, sizeof(INPUT));
  Sleep(20);
}

// A drawing as it stands in the window, without the tool's mark.
class Drawing {
 public:
  void Take(const App& app) {
    const RECT client = app.ClientOnScreen(app.Cut());
    const POINT first = app.At(0, 0);
    picture = app.StillPictureOf(app.Cut());
    left = first.x - client.left;
    top = first.y - client.top;
  }
  // What a play at the usual brightness shows of it. The ground stands for paper.
  int Grey(int x, int y) const { return picture.At(left + x, top + y) == kBlack ? 0 : 255; }
  int Ink(int width, int height) const {
    int count = 0;
    for (int y = 0; y < height; y++) {
      for (int x = 0; x < width; x++) count += Grey(x, y) == 0;
    }
    return count;
  }

 private:
  Picture picture;
  int left = 0;
  int top = 0;
};

class ProductionTest : public DesktopTest {
 protected:
  // A cut of the film that numbers itself: its two dialogs, and for the first one the dialog for its name.
  void NewFilmCut(int width, const std::string& path = "") {
    const HWND before = app.Cut();
    ASSERT_TRUE(app.HasDialog("カットのプロパティ"));
    ASSERT_TRUE(app.Enter(
        {{kCutWidthEdit, std::to_string(width)}, {kCutHeightEdit, std::to_string(kHeight)}, {kCutFpsEdit, "12"}}));
    EXPECT_TRUE(before != nullptr || app.Keep("production-cut-dialog"));
    Press(VK_RETURN);
    ASSERT_TRUE(app.HasDialog("レイヤのプロパティ"));
    ASSERT_TRUE(app.Enter({{kLayerNameEdit, "原画"}}));
    const HWND dialog = app.Dialog();
    app.ParkMouse();
    Press(VK_RETURN);
    if (!path.empty()) {
      ASSERT_TRUE(Await([&] { return app.Dialog() != nullptr && app.Dialog() != dialog; }));
      ASSERT_TRUE(app.AnswerFileDialog(path));
    }
    ASSERT_TRUE(app.DialogGoes());
    ASSERT_TRUE(Await([&] { return app.Cut() != nullptr && app.Cut() != before; }));
    app.canvas = {width, kHeight, 1, 1};
    ASSERT_TRUE(app.HasFocus(app.Cut()));
    ASSERT_TRUE(app.HasPixels({{0, 0, kTransparent}, {width - 1, kHeight - 1, kTransparent}}));
  }

  void Stroke(const std::vector<POINT>& points) {
    MoveTo(app.At(points[0]));
    LeftDown();
    for (const POINT& point : points) MoveTo(app.At(point));
    LeftUp();
    app.ParkMouse();
    ASSERT_TRUE(app.HasPixel(points.back().x, points.back().y, kBlack));
  }

  // Frames behind the last one, which they copy; "1(1f)" is the first one's counter.
  void AddFrames() {
    for (const char* counter : {"2(2f)", "3(3f)", "4(4f)", "5(5f)"})
      ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, counter));
  }

  // So many fields on in the ring of the focus, or back, to this window.
  void Tab(int count, HWND window) {
    for (int i = 0; i < std::abs(count); i++) count > 0 ? Press(VK_TAB) : Press(VK_TAB, {VK_SHIFT});
    ASSERT_TRUE(app.HasFocus(window));
  }

  bool IsKey() const { return app.IsChecked(app.Of(kKeyFrameCheck)); }

  // From the canvas to the edit of the frame's time, and back with what was typed there.
  void TypeTime(const std::string& time) {
    ASSERT_NO_FATAL_FAILURE(Tab(1, app.Of(kFrameTimeEdit)));
    ASSERT_TRUE(app.TypeUntil(time, kFrameTimeEdit, time));
    ASSERT_NO_FATAL_FAILURE(Tab(-1, app.Cut()));
  }

  // Accepts a dialog of a change up to the last frame.
  testing::AssertionResult AnswerRamp(const std::string& title) const {
    const testing::AssertionResult comes = app.HasDialog(title);
    if (!comes) return comes;
    const testing::AssertionResult last = app.HasValues({{kRampEndEdit, "5"}});
    return last ? app.Answer(title) : last;
  }

  // A wave in a key frame that grows dark in five frames.
  void MakeFade() {
    Press(VK_F10);
    ASSERT_NO_FATAL_FAILURE(NewFilmCut(kWidth, app.PathOf("表1.cut")));
    ASSERT_TRUE(app.Lists(kCutList, {"表1"}));
    Type("ffff");
    ASSERT_NO_FATAL_FAILURE(Stroke({{20, 70}, {40, 45}, {60, 60}, {80, 80}, {100, 55}, {120, 40}, {140, 60}}));
    const RECT box = app.Screen(app.Of(kKeyFrameCheck));
    Click({box.left + 6, box.top + 10});
    ASSERT_TRUE(Await([this] { return IsKey(); }));
    ASSERT_NO_FATAL_FAILURE(Tab(-2, app.Cut()));
    ASSERT_NO_FATAL_FAILURE(AddFrames());
    EXPECT_FALSE(IsKey());
    // The last frame is a key as well, and black.
    ASSERT_NO_FATAL_FAILURE(Tab(2, app.Of(kKeyFrameCheck)));
    Press(VK_SPACE);
    ASSERT_TRUE(Await([this] { return IsKey(); }));
    ASSERT_NO_FATAL_FAILURE(Tab(2, app.Of(kBrightnessEdit)));
    ASSERT_TRUE(app.TypeUntil("0", kBrightnessEdit, "0"));
    ASSERT_NO_FATAL_FAILURE(Tab(-4, app.Cut()));
    Type("e");  // the key frame before
    ASSERT_TRUE(app.Shows(kKeyFrameCheck, "1(1f)"));
    EXPECT_TRUE(IsKey());
    ASSERT_TRUE(app.Choose('r', "l"));
    ASSERT_TRUE(AnswerRamp("明度の連続変化"));
    for (const char* brightness : {"37", "24", "12", "0"}) {
      Press(VK_F3);
      ASSERT_TRUE(app.Shows(kBrightnessEdit, brightness));
    }
    EXPECT_TRUE(IsKey());
    fade.Take(app);
    EXPECT_TRUE(app.Keep("production-fade"));
    Press('S', {VK_CONTROL});
    ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("表1.cut")));
    ASSERT_TRUE(app.DialogGoes());
  }

  // A long landscape, along which the frame goes from the left to the right.
  void MakePan() {
    Press(VK_F3, {VK_SHIFT});
    ASSERT_NO_FATAL_FAILURE(NewFilmCut(kPanWidth));
    ASSERT_TRUE(app.Lists(kCutList, {"表1", "表002"}));
    Stroke({{5, 90}, {50, 40}, {90, 80}, {130, 30}, {190, 95}, {230, 60}, {260, 85}, {312, 50}});
    ASSERT_NO_FATAL_FAILURE(Stroke({{80, 20}, {82, 20}}));
    ASSERT_TRUE(app.Choose('r', "s"));
    ASSERT_TRUE(app.HasDialog("フレームのプロパティ"));
    ASSERT_TRUE(app.Enter({{kFrameWidthEdit, std::to_string(kWidth)}}));
    EXPECT_TRUE(app.HasValues({{kFrameHeightEdit, std::to_string(kHeight)}}));
    app.ParkMouse();
    Press(VK_RETURN);
    ASSERT_TRUE(app.DialogGoes());
    pan.Take(app);
    Type("A");  // the tool that moves the frame
    // In the middle first, and from there to the left end.
    ClickHeld(app.At(kPanWidth / 2, 60), VK_CONTROL);
    Drag(app.At(kPanWidth / 2, 60), app.At(kWidth / 2, 60));
    app.ParkMouse();
    EXPECT_TRUE(app.Keep("production-frame-position"));
    ASSERT_NO_FATAL_FAILURE(AddFrames());
    Drag(app.At(kWidth / 2, 60), app.At(kPanWidth - kWidth / 2, 60));
    app.ParkMouse();
    ASSERT_TRUE(app.TypeUntil("E", kKeyFrameCheck, "1(1f)"));
    ASSERT_TRUE(app.Choose('r', "o"));
    ASSERT_TRUE(AnswerRamp("フレームの連続移動"));
    ASSERT_TRUE(app.TypeUntilTool("1", kToolFreePen));
    ASSERT_TRUE(app.ChooseAt('c', 3));  // over its own file
    ASSERT_TRUE(app.DialogGoes());
  }

  // Two drawings, the second of which comes up slowly over the first.
  void MakeDissolve() {
    Press(VK_F10);
    ASSERT_NO_FATAL_FAILURE(NewFilmCut(kWidth));
    ASSERT_TRUE(app.Lists(kCutList, {"表1", "表002", "表003"}));
    ASSERT_NO_FATAL_FAILURE(Stroke({{40, 30}, {120, 90}}));
    ASSERT_NO_FATAL_FAILURE(TypeTime("2"));
    first.Take(app);
    ASSERT_TRUE(app.TypeUntil("t", kKeyFrameCheck, "2(3f)"));
    Type("b");
    ASSERT_TRUE(app.Lists(kLayerList, {"原画 (2/2)"}));
    ASSERT_TRUE(app.HasPixel(80, 60, kTransparent));
    ASSERT_NO_FATAL_FAILURE(Stroke({{120, 30}, {40, 90}}));
    ASSERT_NO_FATAL_FAILURE(TypeTime("-4"));
    ASSERT_TRUE(app.TypeUntil("t", kFrameTimeEdit, "-4"));
    ASSERT_TRUE(app.Shows(kKeyFrameCheck, "3(7f)"));
    ASSERT_NO_FATAL_FAILURE(TypeTime("2"));
    second.Take(app);
    ASSERT_TRUE(app.ChooseAt('c', 3));
    ASSERT_TRUE(app.DialogGoes());
  }

  // The grey that this picture of the film has at this place of the player's window.
  int Expected(int picture, int x, int y) const {
    if (picture < kFrames) {
      constexpr std::array<int, kFrames> brightness = {50, 37, 24, 12, 0};
      return brightness[static_cast<size_t>(picture)] * fade.Grey(x, y) / 50;
    }
    if (picture < 2 * kFrames) return pan.Grey(x + kPanStep * (picture - kFrames), y);
    // The dissolve never gets all the way within its own time.
    const int part = picture == kPictures - 1 ? kDissolve + 1 : picture - 2 * kFrames;
    return (first.Grey(x, y) * (kDissolve + 1 - part) + second.Grey(x, y) * part) / (kDissolve + 1);
  }

  // Which picture of the film this is; -1 if it is none.
  int Recognised(const Picture& shown) const {
    for (int i = 0; i < kPictures; i++) {
      bool same = true;
      for (int y = 0; same && y < kHeight; y++) {
        for (int x = 0; same && x < kWidth; x++) {
          same = shown.At(x, y) == static_cast<Color>(Expected(i, x, y)) * 0x010101;
        }
      }
      if (same) return i;
    }
    return -1;
  }

  POINT LineOf(int index) const {
    const RECT list = app.Screen(app.Of(kCutList));
    const int height = static_cast<int>(app.Ask(app.Of(kCutList), LB_GETITEMHEIGHT));
    return {list.left + 30, list.top + 2 + height * index + height / 2};
  }

  // Opens a line of the cut list.
  void OpenLine(int index, int width, const std::string& name) {
    DoubleClick(LineOf(index));
    ASSERT_TRUE(Await([&] { return app.Cut() != nullptr && app.Text(app.Cut()) == name; })) << app.Text(app.Cut());
    ASSERT_TRUE(app.HasFocus(app.Cut()));
    app.canvas = {width, kHeight, 1, 1};
    app.ParkMouse();
  }

  // The player runs through all of the film, picture by picture in its order.
  void WatchTheFilm() {
    ASSERT_TRUE(app.HasPlayer());
    const RECT client = app.ClientOnScreen(app.Player());
    ASSERT_EQ(client.right - client.left, kWidth);
    ASSERT_EQ(client.bottom - client.top, kHeight);
    std::array<bool, kPictures> seen = {};
    int count = 0;
    int last = -1;
    int forward = 0;
    int changes = 0;
    Picture before;
    // The window may come up before its first picture.
    ASSERT_TRUE(Await([&] { return Recognised(app.PictureOf(app.Player())) >= 0; }));
    Await(
        [&] {
          const Picture shown = app.PictureOf(app.Player());
          if (shown == before) return false;
          before = shown;
          const int picture = Recognised(shown);
          if (picture < 0) {
            // It may have been taken in the middle of a paint.
            Sleep(5);
            const Picture again = app.PictureOf(app.Player());
            if (again == shown) {
              ADD_FAILURE() << "a picture that isn't in the film";
              KeepPicture(again, "failed-production-picture");
              return true;
            }
            return false;
          }
          if (last >= 0) {
            changes++;
            forward += (picture - last + kPictures) % kPictures;
          }
          last = picture;
          if (seen[static_cast<size_t>(picture)]) return count == kPictures;
          seen[static_cast<size_t>(picture)] = true;
          count++;
          KeepPicture(shown, "played-" + std::to_string(100 + picture));
          return count == kPictures;
        },
        kPlayTime);
    for (size_t i = 0; i < seen.size(); i++) EXPECT_TRUE(seen[i]) << "picture " << i << " never came";
    // In order each step goes to the next picture, or past a few that went by unseen.
    EXPECT_LT(forward, 4 * changes) << "the order isn't the film's";
  }

  // The film as a page and as pictures, for which the script reads them back.
  void ExportAs() {
    for (const std::string ending : {".html", ".gif", ".png", ""}) {
      ASSERT_TRUE(app.ChooseAt('f', kExportAsItem));
      ASSERT_TRUE(Await([this] { return app.Dialog() != nullptr && ClassOf(app.Focus()) == "Edit"; }));
      if (ending.empty()) {
        // A folder is the last type in the list below the name, behind the one that was used last.
        Press(VK_TAB);
        ASSERT_TRUE(Await([this] { return ClassOf(app.Focus()) == "ComboBox"; }));
        Press(VK_DOWN);
        Press(VK_TAB, {VK_SHIFT});
      }
      ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("十二夜" + ending)));
      const std::string status = "十二夜" + ending + " を書き出しました。";
      ASSERT_TRUE(Await([&] { return app.Dialog() == nullptr && app.Status() == status; })) << app.Status();
      if (ending.empty()) continue;
      EXPECT_TRUE(WriteFile(OutputFolder() + "/production" + ending, ReadFile(app.PathOf("十二夜" + ending))));
    }
    const std::string list = ReadFile(app.PathOf("十二夜\\durations.txt"));
    EXPECT_TRUE(WriteFile(OutputFolder() + "/production-durations.txt", list));
    for (int i = 1;; i++) {
      char name[32];
      std::snprintf(name, sizeof(name), "%05d.png", i);
      if (!FileExists(app.PathOf(std::string("十二夜\\") + name))) break;
      EXPECT_TRUE(
          WriteFile(OutputFolder() + "/production-" + name, ReadFile(app.PathOf(std::string("十二夜\\") + name))));
    }
  }

  Drawing fade;
  Drawing pan;
  Drawing first;
  Drawing second;
};

TEST_F(ProductionTest, AFilmOfThreeCutsIsMadePlayedAndExported) {
  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(app.Choose('f', "n"));
  ASSERT_TRUE(app.Answer("フィルムのプロパティー",
                         {{kFilmWidthEdit, std::to_string(kWidth)},
                          {kFilmHeightEdit, std::to_string(kHeight)},
                          {kFilmTitleEdit, "十二夜"},
                          {kFilmAuthorEdit, "表 太郎"}},
                         "production-film-dialog"));

  ASSERT_NO_FATAL_FAILURE(MakeFade());
  ASSERT_NO_FATAL_FAILURE(MakePan());
  ASSERT_NO_FATAL_FAILURE(MakeDissolve());
  EXPECT_GT(fade.Ink(kWidth, kHeight), 200);
  EXPECT_GT(pan.Ink(kPanWidth, kHeight), 400);
  EXPECT_GT(first.Ink(kWidth, kHeight), 200);
  EXPECT_GT(second.Ink(kWidth, kHeight), 200);
  ASSERT_TRUE(app.Choose('f', "s"));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("ソ.flm")));
  ASSERT_TRUE(app.DialogGoes());
  ASSERT_TRUE(Await([this] { return FileExists(app.PathOf("ソ.flm")); }));
  EXPECT_TRUE(app.Keep("production-film"));
  // All is saved, so that nothing is asked.
  Press(VK_F4, {VK_MENU});
  ASSERT_TRUE(app.Ends());

  ASSERT_TRUE(app.Start());
  ASSERT_TRUE(app.Shows(app.Frame(), "Sorvel Developer - ソ"));
  ASSERT_TRUE(app.Lists(kCutList, {"表1", "表002", "表003"}));
  EXPECT_EQ(app.Cut(), nullptr);
  ASSERT_NO_FATAL_FAILURE(OpenLine(0, kWidth, "表1.cut"));
  EXPECT_TRUE(app.Shows(kKeyFrameCheck, "5(5f)"));
  EXPECT_TRUE(IsKey());
  Press(VK_F2);
  ASSERT_TRUE(app.Shows(kKeyFrameCheck, "4(4f)"));
  EXPECT_TRUE(app.Shows(kBrightnessEdit, "12"));
  ASSERT_NO_FATAL_FAILURE(OpenLine(2, kWidth, "表003.cut"));
  Press(VK_F2);
  ASSERT_TRUE(app.Shows(kKeyFrameCheck, "2(3f)"));
  EXPECT_TRUE(app.Shows(kFrameTimeEdit, "-4"));
  EXPECT_TRUE(app.HasPixel(40, 90, kBlack));
  EXPECT_TRUE(app.Keep("production-reopened"));

  Click(LineOf(0));
  ClickHeld(LineOf(2), VK_SHIFT);
  app.ParkMouse();
  ASSERT_TRUE(Await([this] { return app.Ask(app.Of(kCutList), LB_GETSELCOUNT) == 3; }))
      << app.Ask(app.Of(kCutList), LB_GETSELCOUNT);
  ASSERT_TRUE(app.Choose('f', "a"));
  WatchTheFilm();
  EXPECT_TRUE(app.KeepScreen("production-playing"));
  const std::string title = app.Text(app.Player());
  Press(VK_ESCAPE);
  ASSERT_TRUE(app.HasPlayer(false));

  ASSERT_TRUE(app.Choose('f', "v"));
  ASSERT_TRUE(app.AnswerFileDialog(app.PathOf("十二夜")));
  ASSERT_TRUE(app.DialogGoes());
  const std::string path = app.PathOf("十二夜.sv");
  // Its length comes into its head last.
  std::string exported;
  const auto isWhole = [&] {
    exported = ReadFile(path);
    uint32_t size = 0;
    if (exported.size() > 2 + sizeof(size)) std::memcpy(&size, exported.data() + 2, sizeof(size));
    return size != 0 && size == exported.size();
  };
  ASSERT_TRUE(Await(isWhole)) << exported.size();
  EXPECT_EQ(exported.substr(0, 2), "SV");
  // What was played is the same file.
  EXPECT_EQ(title, std::to_string(exported.size()) + " byte");
  EXPECT_TRUE(WriteFile(OutputFolder() + "/production.sv", exported));
  ASSERT_NO_FATAL_FAILURE(ExportAs());
  Press(VK_F4, {VK_MENU});
  EXPECT_TRUE(app.Ends());
}

}  // namespace
}  // namespace sorvel::desktop
