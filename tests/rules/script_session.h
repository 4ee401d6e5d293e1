#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reference/reference.h"

namespace rules {

// A picture as it was written to a file. Row 0 is the top row.
class PixelMatrix {
 public:
  // Reads an uncompressed bitmap file of 4, 8 or 24 bits, bottom-up or top-down. On failure the matrix is empty and
  // the running test fails.
  static PixelMatrix FromBitmap(const std::string& path);
  // The same for a binary grey map (P5, maxval 255).
  static PixelMatrix FromGreyMap(const std::string& path);

  int Width() const { return width; }
  int Height() const { return height; }
  // The colour table's index for 4 and 8 bits, the grey value for a grey map, 0xRRGGBB for 24 bits. A point outside
  // the picture fails the running test and gives 0.
  uint32_t At(int x, int y) const;
  // Number of pixels with this value in the rectangle, which is cut to the picture.
  int Count(uint32_t value, int left, int top, int areaWidth, int areaHeight) const;
  int Count(uint32_t value) const { return Count(value, 0, 0, width, height); }
  // The colour table as 0xRRGGBB; empty for 24 bits and grey maps.
  const std::vector<uint32_t>& Colors() const { return colors; }
  bool operator==(const PixelMatrix& other) const;

 private:
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels;
  std::vector<uint32_t> colors;
};

// Sizes and texts of a cut made through the new cut dialog; a negative layer size takes that of the cut.
struct NewCutValues {
  int width = 32;
  int height = 24;
  int fps = 24;
  int antialias = 0;
  std::string credit = {};
  std::string layerName = "A";
  int layerWidth = -1;
  int layerHeight = -1;
  bool followFrame = false;
};

// What a cut file is written from. Every layer is 8 by 3 and every cell of one colour, so that a cell is known by its
// checksum.
struct FileRecord {
  int layer = 0;
  int cell = 0;
  int x = 0;
  int y = 0;
};

struct FileFrame {
  int time = 1;
  int loop = 1;
  // As it is stored: a key frame of brightness b has -1 - b.
  int brightness = 50;
  int x = 0;
  int y = 0;
  std::string comment = {};
  std::vector<FileRecord> records = {};
};

struct FileLayer {
  std::string name = "A";
  // The colour index of each cell's pixels.
  std::vector<int> cells = {0};
  bool followFrame = false;
};

struct CutFile {
  int width = 8;
  int height = 3;
  int frameWidth = 8;
  int frameHeight = 3;
  int fps = 24;
  int antialias = 0;
  std::string credit = {};
  std::vector<FileLayer> layers = {};
  std::vector<FileFrame> frames = {};

  // The same for the plain implementation, and the bytes that it writes.
  reference::CutData Data() const;
  std::string Bytes() const;
  // One layer with these cells, and one frame for each number, showing that cell of it (negative: blank).
  static CutFile Showing(const std::vector<int>& cells, const std::vector<int>& shown);
  // Frames without records and a cut without layers.
  static CutFile WithoutLayers(size_t frameCount);
};

// The checksum of an 8 by 3 cell of one colour.
std::string PlainCell(int color);

// A value that goes into a control of a dialog.
struct DialogValue {
  int control;
  std::string value;
};
using DialogValues = std::vector<DialogValue>;

// The number of the state or picture at the end of the lines so far.
constexpr int kNow = -1;

// Left, top, width and height, or left, top, right and bottom of a selection.
using Area = std::array<int, 4>;

// One script for the console program: lines are collected, then written to a file in a folder of this object's own, and
// the program is run with them in that folder, so that relative paths of the script are of files there. The folder is
// made when it is first needed, and goes away with the object. `State` and the pictures may stand anywhere between the
// lines; they are read back by number, in the order in which they were asked, or by `kNow`. The first such read after a
// line runs the whole script, from the settings that it started with; what else the lines leave behind, such as files,
// is there after a `Run`. A copy of an object without a folder is a script of its own; others can't be copied.
class ScriptSession {
 public:
  ScriptSession() = default;
  ~ScriptSession();
  ScriptSession(const ScriptSession& other);
  ScriptSession& operator=(const ScriptSession&) = delete;

  // Adds one line as it stands.
  ScriptSession& Line(std::string_view text);
  // Adds the lines of another script, which has no results, and its files and settings.
  ScriptSession& Then(const ScriptSession& other);
  ScriptSession& Command(int id);
  // One after the other.
  ScriptSession& Commands(const std::vector<int>& ids);
  ScriptSession& Key(std::string_view name);
  ScriptSession& Keys(std::string_view name, int count);
  // A blank is quoted here, so that ' ' is the Space key.
  ScriptSession& Char(char character);
  // `modifiers` is "", "ctrl", "shift" or "ctrl shift".
  ScriptSession& Mouse(std::string_view message, int x, int y, std::string_view modifiers = "");
  // Left button down and up on one point, without a move.
  ScriptSession& LeftClick(int x, int y, std::string_view modifiers = "");
  ScriptSession& RightClick(int x, int y, std::string_view modifiers = "");
  // Left button: down on the first point, a move to the second, up there.
  ScriptSession& LeftDrag(int fromX, int fromY, int toX, int toY, std::string_view modifiers = "");
  ScriptSession& Picker(std::string_view message, int x, int y);
  ScriptSession& Panel(int id, std::string_view text);
  // The values are set in this order. `button` is "ok" or "cancel".
  ScriptSession& Dialog(int templateId, const DialogValues& values, std::string_view button = "ok");
  // The answer to the next file dialog; `path` is quoted here. "cancel" without a folder cancels.
  ScriptSession& File(std::string_view path);
  ScriptSession& Answer(std::string_view yesOrNo);
  ScriptSession& Open(std::string_view path);
  // Writes the file into this session's folder at once, and opens it when the script comes to this line.
  ScriptSession& OpenCut(std::string_view name, const CutFile& file);
  ScriptSession& Select(int id, const std::vector<int>& lines);
  ScriptSession& DoubleClick(int id, int line);
  ScriptSession& Focus(std::string_view place);
  ScriptSession& Activate(int window);
  ScriptSession& Close();
  ScriptSession& Exit();

  // Mouse messages in the window of the active cut.
  ScriptSession& Press(int x, int y, std::string_view keys = "") { return Mouse("ldown", x, y, keys); }
  ScriptSession& Move(int x, int y, std::string_view keys = "") { return Mouse("move", x, y, keys); }
  ScriptSession& Release(int x, int y, std::string_view keys = "") { return Mouse("lup", x, y, keys); }
  ScriptSession& RightRelease(int x, int y, std::string_view keys = "") { return Mouse("rup", x, y, keys); }
  // A left press and release in the picker's square of this column (0 to 15) and row (0 to 3).
  ScriptSession& Pick(int column, int row);
  // The plain ink of an index out of 0 to 4 and 9 to 14.
  ScriptSession& PickPlain(int index);
  // The size step, 0 to 7.
  ScriptSession& PickSize(int step) { return Pick(8 + step, 0); }
  // Protects these indices and no others.
  ScriptSession& Mask(std::initializer_list<int> indices);
  ScriptSession& Grid(int width, int height);
  // Commits and repaints with its two pulses; on a cut of one frame that is all.
  ScriptSession& Repaint();
  // Draws a selection with the area tool.
  ScriptSession& SelectArea(int left, int top, int right, int bottom);
  // Fills a rectangle of the window with one index, and goes back to the free pen, to plain black and to no mask.
  ScriptSession& FillArea(int x, int y, int width, int height, int index);
  // Draws one line of index 8 in the same way.
  ScriptSession& DrawInkLine(int fromX, int fromY, int toX, int toY);
  ScriptSession& AddLayer(std::string_view name, int width, int height);

  // Queues the two dialogs and runs the new cut command: a cut of one frame with one record of one layer.
  ScriptSession& NewCut(const NewCutValues& values = {});
  // New cut with the layer dialog cancelled: one frame without records.
  ScriptSession& NewCutWithoutLayer(const NewCutValues& values = {});
  // Renames the cut at the caret of the film's list.
  ScriptSession& RenameCut(std::string_view name);
  // Saves the active cut under a name in the folder of this session.
  ScriptSession& SaveCutAs(std::string_view name);

  // Each gives the number by which the result is asked after the run; numbers of each kind start at 0.
  int State() { return Ask(kState); }
  int View() { return Ask(kView); }
  int Screen() { return Ask(kScreen); }
  int Player() { return Ask(kPlayer); }

  // The text of the settings file that the run starts with; without it there is none. Bytes, not converted.
  ScriptSession& SetSettings(const std::string& bytes);
  // The settings file's bytes now; empty when there is none.
  std::string Settings() const;
  // The value of a key in the settings file, or "(none)".
  std::string Setting(const std::string& section, const std::string& key) const;

  // A full path in this session's folder.
  std::string Path(std::string_view name) const;
  bool Exists(std::string_view name) const;
  // Bytes of a file in this session's folder; empty when it isn't there.
  std::string Bytes(std::string_view name) const;
  // Names of the files and folders in this session's folder, sorted; without those of this helper, and without what the
  // program keeps of replaced documents.
  std::vector<std::string> Files() const;
  // Writes a file into this session's folder at once, or when the folder is made.
  ScriptSession& Write(std::string_view name, std::string_view bytes);
  // Writes a 24-bit bitmap file, rows given from the top, 0xRRGGBB.
  void WriteBitmap(std::string_view name, int width, int height, const std::vector<uint32_t>& pixels);

  // Runs the program once; a later call runs the same lines again. The running test fails when the exit status isn't
  // the one expected, when the program was ended by a signal, or when it took more than 20 s.
  void Run(int expectedStatus = 0);
  // The same with a copy of the program under this name in the session's folder, and without naming a settings file:
  // the program looks for its files beside itself.
  void RunCopy(const std::string& name, int expectedStatus = 0);
  // From now on what isn't saved is kept in the folder "recovery" of this session's folder.
  ScriptSession& UseRecovery();
  // Runs the program once and kills it: when it has carried out all lines, or after this time.
  void RunAndKill();
  void RunAndKill(std::chrono::microseconds time);
  // Runs the script when lines were added since the last run.
  void RunAll();
  // Forgets the lines and the numbers given out, and keeps the folder and the settings file: the next start of the
  // program by the same user.
  void Restart();
  // Fails the running test when lines were added after the last run.
  void ExpectAllRun() const;
  // Standard error of the last run.
  const std::string& Errors() const { return errors; }

  // A state that doesn't exist fails the running test and gives null.
  nlohmann::json StateAt(int number);
  nlohmann::json NowState() { return StateAt(kNow); }
  PixelMatrix ViewAt(int number) { return PixelMatrix::FromBitmap(ResultPath(kView, number)); }
  PixelMatrix NowView() { return ViewAt(kNow); }
  PixelMatrix ScreenAt(int number) { return PixelMatrix::FromBitmap(ResultPath(kScreen, number)); }
  PixelMatrix NowScreen() { return ScreenAt(kNow); }
  PixelMatrix PlayerAt(int number) { return PixelMatrix::FromGreyMap(ResultPath(kPlayer, number)); }

  // The active cut of that state, or null when there is none.
  nlohmann::json Cut(int state = kNow);
  // The active cut's current frame.
  nlohmann::json Frame(int state = kNow);
  nlohmann::json FrameAt(size_t frame, int state = kNow);
  // A record of the current frame.
  nlohmann::json RecordAt(size_t record, int state = kNow);
  nlohmann::json CurrentRecord(int state = kNow);
  Area NowUndoRect();
  // Left, top, right and bottom.
  Area NowSelection();
  bool HasSelection();

 private:
  enum ResultKind { kState, kView, kScreen, kPlayer, kResultKinds };
  struct Results {
    int count = 0;
    int lines = -1;  // of the script when the last one was asked
  };

  int Ask(ResultKind kind);
  std::string ResultPath(ResultKind kind, int number);
  // The command line of the program.
  std::vector<std::string> Words() const;
  // Starts the program; 0 if that fails.
  int Spawn(std::vector<std::string> words);
  void RunProgram(const std::vector<std::string>& words, int expectedStatus);

  void MakeFolder() const;

  mutable std::string folder;
  // What the folder will have when it is made.
  std::vector<std::pair<std::string, std::string>> files;
  std::string script;
  std::string errors;
  std::string startSettings;
  // Lines that aren't questions.
  int lineCount = 0;
  std::array<Results, kResultKinds> results;
  std::map<int, nlohmann::json> readStates;
  bool usesRecovery = false;
  bool hasRun = false;
  bool needsRun = false;
};

// A test with a session that starts without a cut.
struct SessionTest : testing::Test {
  void TearDown() override { session.ExpectAllRun(); }

  ScriptSession session;
};

// The word in double quotes, with the escapes that a script needs.
std::string Quoted(std::string_view word);

// CRC-32 as zip and PNG have it, as eight lower-case hexadecimal digits.
std::string Checksum(std::string_view bytes);

}  // namespace rules
