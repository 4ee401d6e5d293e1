#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "input.h"
#include "picture.h"
#include "resources/ids.h"

namespace sorvel::desktop {

// What each wait in milliseconds is bounded by.
constexpr int kPatience = 4000;

// Of the film menu, without its separators.
constexpr int kExportAsItem = 12;

// Looks until the condition holds; false if it doesn't within `patience` milliseconds.
template <typename Condition>
bool Await(Condition condition, int patience = kPatience) {
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(patience);
  while (!condition()) {
    if (GetTickCount64() >= end) return condition();
    Sleep(5);
  }
  return true;
}

// Where an open cut's canvas is found: its size and the zoom of its window. It is taken to be smaller than the window,
// so that it stands in the middle.
struct Canvas {
  int width = 240;
  int height = 180;
  int numerator = 1;
  int denominator = 1;
};

// A pixel of the canvas and its colour.
struct Spot {
  int x;
  int y;
  Color color;
};

// Values of a dialog's controls by their numbers.
using Values = std::vector<std::pair<int, std::string>>;

// The program itself, as its user has it: started from a folder of its own, seen on the screen, moved by the mouse and
// the keyboard. Texts and paths are UTF-8. Nothing here waits without end.
class App {
 public:
  // Makes the folder, with a copy of the program in it, and removes what programs of earlier tests haven't saved.
  App();
  // Ends the program if it still runs, and deletes the folder.
  ~App();
  App(const App&) = delete;
  App& operator=(const App&) = delete;

  // Where the copy stands, and with it settings, colours and the files of a test.
  std::string PathOf(const std::string& name) const { return folder + "\\" + name; }

  // Starts the program with this command line, waits for its window and puts the mouse where it moves nothing.
  // If it begins with a question, waits for that instead.
  enum class Opening { kPlain, kWithQuestion };
  testing::AssertionResult Start(const std::string& commandLine = "", Opening opening = Opening::kPlain);
  // Waits for the end of the program, which gives `code`.
  testing::AssertionResult Ends(DWORD code = 0);
  // Leaves through the menu, answers each question about saving with No, and waits for the end.
  testing::AssertionResult Leave();
  bool Runs() const;
  void Kill();
  // Starts a thread in the program that runs into an error at once.
  void Crash() const;
  // Milliseconds from the start of the process to a visible window that answers.
  double StartTime() const { return startTime; }
  // Bytes of memory that the process holds.
  size_t WorkingSet() const;

  // Windows; null if there is none at the moment.
  HWND Frame() const { return frame; }
  HWND Of(int control) const;
  HWND Cut() const;  // the active one
  HWND Player() const;
  HWND Picker() const;
  HWND Sheet() const;   // the time sheet's window
  HWND Dialog() const;  // a dialog, box or file dialog
  HWND PopupMenu() const;
  HWND ToolTip() const;
  // The text of the plate over a window; empty if none is shown.
  std::string Note(HWND window) const;
  HWND Focus() const;

  std::string Text(HWND window) const;
  std::string Text(int control) const { return Text(Of(control)); }
  std::string Status() const { return Text(kStatusBarId); }
  std::string Title() const { return Text(frame); }
  std::vector<std::string> Lines(HWND list) const;
  std::vector<std::string> Lines(int control) const { return Lines(Of(control)); }
  LRESULT Ask(HWND window, UINT message, WPARAM first = 0, LPARAM second = 0) const;
  bool IsToolDown(int command) const;
  bool IsChecked(HWND button) const { return Ask(button, BM_GETCHECK) == BST_CHECKED; }

  // Waits for what a control is to show.
  testing::AssertionResult Shows(int control, const std::string& text) const;
  testing::AssertionResult Shows(HWND window, const std::string& text) const;
  testing::AssertionResult Lists(int control, const std::vector<std::string>& lines) const;
  testing::AssertionResult HasFocus(HWND window) const;

  // Waits until the button of this tool is down.
  testing::AssertionResult HasTool(int command) const;
  // Waits for no cut to be open, and for a play.
  testing::AssertionResult HasNoCut() const;
  testing::AssertionResult HasPlayer(bool there = true) const;

  // Waits for a dialog with this title.
  testing::AssertionResult HasDialog(const std::string& title) const;
  // Waits until no dialog is open.
  testing::AssertionResult DialogGoes() const;
  // A control of the open dialog.
  HWND Item(int control) const { return GetDlgItem(Dialog(), control); }
  // Whether the controls of the open dialog show these texts.
  testing::AssertionResult HasValues(const Values& values) const;
  // Presses a button of the open dialog with the mouse.
  void ClickButton(int control) const;
  // Replaces the text of an edit with the mouse and the keyboard, and waits for it to stand there.
  testing::AssertionResult Enter(HWND edit, const std::string& text) const;
  // Does this with edits of the open dialog.
  testing::AssertionResult Enter(const Values& values) const;
  // Waits for a dialog, enters values, keeps a picture of it under a name, closes it by a key and waits until it is
  // gone.
  testing::AssertionResult Answer(const std::string& title, const Values& values = {}, const std::string& picture = "",
                                  int key = VK_RETURN) const;
  // Waits for the question about saving and answers it with a button. An empty text stands for any.
  testing::AssertionResult AnswerQuestion(const std::string& text, int button, const std::string& picture = "") const;
  // The text of the open box without its buttons.
  std::string BoxText() const { return Text(Item(0xFFFF)); }

  // Chooses from the menu bar by access keys: the popup's, then the item's.
  testing::AssertionResult Choose(char popup, const std::string& item);
  // The same by the arrow keys, for an item whose letter another one has too: items count from 0, without separators.
  testing::AssertionResult ChooseAt(char popup, int item);
  // Opens a popup of the menu bar and waits for it; null if it doesn't come.
  HWND OpenMenu(char popup);
  void CloseMenus();
  testing::AssertionResult ClickTool(int command);
  RECT ToolRect(int command) const;  // on the screen

  // A new cut through its two dialogs. An empty name cancels the second one: no layer.
  testing::AssertionResult NewCut(const std::string& layer = "A", int width = 240, int height = 180);
  // Types a path into the file dialog of this title's sort and confirms it.
  testing::AssertionResult AnswerFileDialog(const std::string& path);
  testing::AssertionResult SaveCutAs(const std::string& path);
  testing::AssertionResult Drop(const std::string& path);

  // Places on the screen.
  POINT At(int x, int y) const;  // of the canvas
  POINT At(POINT place) const { return At(place.x, place.y); }
  RECT Screen(HWND window) const;
  RECT ClientOnScreen(HWND window) const;
  RECT InFrame(int control) const;  // in the frame's client area
  // A place at which the mouse moves nothing and no tool sees it.
  void ParkMouse() const;
  // Draws a line on the canvas, parks the mouse and waits for the ink at the end.
  testing::AssertionResult Stroke(POINT from, POINT to) const;
  // Types keys, and waits for what a control shows then.
  testing::AssertionResult TypeUntil(const std::string& keys, int control, const std::string& text) const;
  testing::AssertionResult TypeUntilTool(const std::string& keys, int command) const;

  Picture WholePicture() const;          // the frame with all that stands over it
  Picture PictureOf(HWND client) const;  // the client area
  Picture PictureOfCanvas() const;
  Color Pixel(int x, int y) const;  // of the canvas
  testing::AssertionResult HasPixel(int x, int y, Color color) const;
  testing::AssertionResult HasPixels(const std::vector<Spot>& spots) const;
  // Waits until nothing moves in the picture any more, and gives it.
  Picture StillPicture() const;
  Picture StillPictureOf(HWND client) const;
  // Keeps a picture of the frame in the output folder.
  testing::AssertionResult Keep(const std::string& name) const;
  // The same of the whole screen.
  testing::AssertionResult KeepScreen(const std::string& name) const;

  Canvas canvas;

 private:
  HWND WindowOf(const char* windowClass) const;
  bool InMenu() const;

  std::string folder;
  PROCESS_INFORMATION process = {};
  HWND frame = nullptr;
  double startTime = 0;
};

// A test with the program, which keeps a picture of the screen if it fails.
class DesktopTest : public testing::Test {
 protected:
  void TearDown() override;

  App app;
};

// The name of a window's class.
std::string ClassOf(HWND window);
// Whether the window system is Wine, which lacks this or that.
bool IsWine();

// The folder of what programs of this user haven't saved.
std::string RecoveryStore();

// Files. Empty if the file can't be read.
std::string ReadFile(const std::string& path);
bool WriteFile(const std::string& path, const std::string& bytes);
bool FileExists(const std::string& path);
// A value of the program's settings, empty if there is none.
std::string Setting(const App& app, const std::string& section, const std::string& key);

// Where pictures are kept; made if it isn't there.
void SetOutputFolder(const std::string& path);
std::string OutputFolder();
testing::AssertionResult KeepPicture(const Picture& picture, const std::string& name);

}  // namespace sorvel::desktop
