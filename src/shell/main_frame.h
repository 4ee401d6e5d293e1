#pragma once

#include <cstddef>
#include <cstdint>

#include "cutwindow/cut_window.h"
#include "document/film.h"
#include "foundation/byte_stream.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/menus.h"

namespace sorvel {

class CutDialog;

// Sizes of fixed buffers, in bytes.
constexpr size_t kTextBufferSize = 256;
constexpr size_t kDropPathSize = 260;

// The window classes of the frame, of the helper popups and of the player.
constexpr char kFrameClass[] = "SorvelinFrame";
constexpr char kHelperClass[] = "SORVELIN";
constexpr char kAnimationClass[] = "SorvelWnd";

// The title of the frame; the name of the film's file is put behind it.
constexpr char kFrameTitle[] = "Sorvel Developer";
// The title of questions.
constexpr char kBoxTitle[] = "Sorvelin";

enum class SaveResult { kSaved, kCancelled, kFailed };

// Bits of MainFrame::shellFlags.
enum ShellFlag : uint32_t {
  kStatusBarVisible = 1u << 0,
  kToolBarVisible = 1u << 1,
  kPanelsWanted = 1u << 2,  // always set
  kPanelsShown = 1u << 3,   // clear: the cut windows fill the frame
  kCloseWithoutAsking = 1u << 4,
};

// The main window: it owns the film, the player, the panels at its left, the bars and the area of the cut windows. The
// active cut is never stored; it is asked of that area each time.
class MainFrame final : public platform::WindowObject, public CutWindowHost {
 public:
  MainFrame();
  MainFrame(const MainFrame&) = delete;
  MainFrame& operator=(const MainFrame&) = delete;
  ~MainFrame();

  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  // What a cut window asks for.
  CutWindow* ActiveCut() override;
  int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control) override;
  void SendCommand(int32_t id) override;
  void RefreshPanels(CutWindow* cut) override;
  void CommitPanels(CutWindow* cut) override;
  void RefreshLayerLine(CutWindow* cut) override;
  void SelectCutLine(CutWindow* cut) override;
  void TogglePanels() override;
  bool AskSaveCut(CutWindow* cut) override;
  void CutGone(CutWindow* cut) override;
  void StopAnimation() override;
  int32_t PlayBuffer(uint8_t* buffer, int32_t size) override;
  bool EditText(char** text) override;

  // Runs a command that belongs to the window of a cut: 0, or 1 if it doesn't.
  static int32_t RunWindowCommand(CutWindow* cut, int32_t id);
  // Makes the selected tool the current one; the pulse goes round the change.
  void SelectTool(int32_t id);
  void MarkTool(int32_t id, bool on);
  void OnInitMenu();
  void OnInitMenuPopup(platform::MenuHandle popup);
  void ExplainTool();
  void ShowAbout();

  // Panels.
  void LayoutPanels(int32_t clientWidth, int32_t clientHeight);
  void Relayout();
  void FillLayerList(CutWindow* cut);
  // The line of a record in the list of layers.
  void FormatLayerLine(char* text, size_t capacity, Frame* frame, int32_t record);
  // Clears the bar for null.
  void SetStatusText(const char* text);
  // The status bar shows the help of a command or control; it keeps its text if there is none.
  void ShowHelp(int32_t id);
  // The same of a menu item or button, of whose text the second line is the help; the bar is cleared if it has none.
  void ShowMenuHelp(int32_t id);

  // Closing.
  // Each gives false if a document couldn't be written and the user chose no other place: what called for it then
  // stops.
  bool CloseAllCuts();
  bool AskSaveFilm();
  // A box that says which file couldn't be written, and why.
  void ReportNotSaved(const char* path, WriteProblem problem);

  // Opening by the file's extension, cut, layer or film. False if nothing was opened.
  bool OpenByExtension(const char* path);
  // Null if the file isn't a cut. The window owns the cut.
  CutWindow* OpenCutFile(const char* path);
  CutWindow* OpenLayerFile(const char* path);
  bool OpenFilmFile(const char* path);

  platform::WindowHandle mdiClient = nullptr;
  platform::WindowHandle layerList = nullptr;
  platform::WindowHandle frameTimeEdit = nullptr;
  platform::WindowHandle loopEdit = nullptr;
  platform::WindowHandle brightnessEdit = nullptr;
  platform::WindowHandle cutList = nullptr;
  platform::WindowHandle statusBar = nullptr;
  platform::WindowHandle keyFrameCheck = nullptr;
  platform::WindowHandle commentEdit = nullptr;
  platform::WindowHandle toolBar = nullptr;
  CutWindow* panelsCut = nullptr;  // whose values the panels hold, not owned; null when it is gone
  Film* film = nullptr;            // owned, never null
  BufferStream streamBuffer;       // of the player; owns its buffer
  int32_t panelWidth = 160;        // pixels
  Point dragLast;                  // of the splitter
  uint32_t shellFlags = 0;
  bool savedImeOpen = false;  // the input method state that isn't in force, the comment's or the program's

 private:
  void OnCreate();
  // Splitter.
  Bounds SplitterStrip();
  void InvertSplitter();
  void OnSplitter(uint32_t message, intptr_t second);
  void PaintSplitter();
  void OnActivate(uintptr_t first);
  void OnToolTip(platform::ToolTipMoment moment, platform::ToolTip* tip);
  void OnDropFiles(uintptr_t drop);

  int32_t OnPanelNotification(int32_t code, int32_t id);
  void OnEditNotification(int32_t code, int32_t id);
  void SwapInputMethod();

  // Commands: the table, and the bodies by family, each in its own file.
  struct Command;
  static const Command kCommands[];
  void WriteCheckMarks(platform::MenuHandle menu);

  // The shell.
  void Exit();
  void ToggleBar(ShellFlag flag);  // kStatusBarVisible or kToolBarVisible
  void MoveFocus(bool forward);
  bool CloseEveryCut();  // false if one stayed open
  void CloseAllWithoutFilm();
  bool AskToSave(const char* path);  // whether to save the document of this path, or of none

  // Tools and what they draw with.
  void EditGrid();
  void EditMask();
  void EditFont();
  void ChooseTransparentColor();

  // Frames.
  void AddOrInsertFrame(CutWindow* cut, bool insert);
  void AddFrameBody(CutWindow* cut);
  void AddFrames(CutWindow* cut);
  void DeleteFrames(CutWindow* cut);
  void SpreadBrightness(CutWindow* cut);
  void SpreadFramePosition(CutWindow* cut);
  void MakeAllKeyFrames(CutWindow* cut);
  void EditFrameSize(CutWindow* cut);
  void ExportBitmap(CutWindow* cut);

  // Layers.
  void AddOrInsertLayer(CutWindow* cut, bool insert);
  void DeleteLayer(CutWindow* cut);
  void MoveLayer(CutWindow* cut, bool up);
  void RewriteLayerLines(Frame* frame, const Layer* layer);
  // Takes a line out of the list of layers and puts that of a record in at `target`; it comes out unselected.
  void ReplaceLayerLine(int32_t line, int32_t target, Frame* frame, int32_t record);
  void SpreadLayerPosition(CutWindow* cut);
  void OpenLayer();
  void SaveLayer(CutWindow* cut);
  void OverwriteLayer(CutWindow* cut);
  // These two find the active cut themselves: the list of layers calls them too.
  void EditLayerProperties();
  void SelectLayerLine();

  // The drawing of the current cell.
  void DrawRandomDots(CutWindow* cut);
  void DrawGridLines(CutWindow* cut);

  // Cuts.
  void NewCut();
  void OpenCut();
  // Each says in a box why a file couldn't be written; the document then keeps its path, its layers and its mark.
  SaveResult SaveCutAs(CutWindow* cut);
  // Without a path, or if the file can't be written, as SaveCutAs.
  SaveResult OverwriteCut(CutWindow* cut);
  bool SaveCutFile(CutWindow* cut, const char* path);
  // A cut that was just made: one frame, nothing to save, pictures to compile. Its window is open afterwards. Null if
  // that can't be had.
  CutWindow* MakeNewCut(const CutDialog& values, const char* path);
  // Opens the window of a cut, which owns the cut from then on. Null, and the cut is gone, if that fails.
  CutWindow* ShowCut(CutWindow* cut);
  void EditCutProperties(CutWindow* cut);

  // The film.
  // The title of the frame names the film's file; null for a film without one.
  void SetFrameTitle(const char* filmPath);
  // A line of the list of cuts, by the path of the cut; index -1 means behind the last.
  void InsertCutLine(int32_t index, const char* path);
  void NewFilm();
  void OpenFilm();
  SaveResult SaveFilmAs();
  SaveResult OverwriteFilm();
  void EditFilmProperties();
  void AddOrInsertActiveCut(bool insert);
  void RemoveActiveCut();
  // The window of a film entry's cut; null if the cut isn't open.
  CutWindow* WindowOfEntry(int32_t index);
  void OpenListedCut();
  void NewNumberedCut(bool insert);
  void DeleteCuts();
  // The files of an entry go, and its window without being asked.
  void DeleteCutFiles(int32_t index);
  void RenameListedCut();
  void RenameCutLines(const char* path, const char* name);
  void ExtractCuts();
  void ExportFilm();
  void PlaySelectedCuts();
};

// The one main frame; null until its window exists, and again at the end. The program itself passes the frame along.
extern MainFrame* gMainFrame;

}  // namespace sorvel
