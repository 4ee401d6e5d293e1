#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "cutwindow/cut_window.h"
#include "document/film.h"
#include "foundation/buffer.h"
#include "foundation/byte_stream.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/menus.h"
#include "shell/recovery.h"
#include "shell/sheet_window.h"

namespace sorvel {

class CutDialog;
class ExportJob;

// Sizes of fixed buffers, in bytes.
constexpr size_t kTextBufferSize = 256;
constexpr size_t kDropPathSize = 260;

// The window classes of the frame, of the helper popups and of the player.
constexpr char kFrameClass[] = "SorvelinFrame";
constexpr char kHelperClass[] = "SORVELIN";
constexpr char kAnimationClass[] = "SorvelWnd";

// The title of the frame; the name of the film's file follows it.
constexpr char kFrameTitle[] = "Sorvel Developer";
// The title of questions.
constexpr char kBoxTitle[] = "Sorvelin";

enum class SaveResult { kSaved, kCancelled, kFailed };

// Bits of MainFrame::shellFlags.
enum ShellFlag : uint32_t {
  kStatusBarVisible = 1u << 0,
  kToolBarVisible = 1u << 1,
  kPanelsWanted = 1u << 2,  // always set
  kPanelsShown = 1u << 3,   // if clear, the cut windows fill the frame
  kCloseWithoutAsking = 1u << 4,
};

// The main window. It owns the film, the player, the panels at its left, the bars and the MDI client with the cut
// windows. It never stores the active cut but asks the MDI client each time.
class MainFrame final : public platform::WindowObject, public CutWindowHost {
 public:
  MainFrame();
  MainFrame(const MainFrame&) = delete;
  MainFrame& operator=(const MainFrame&) = delete;
  ~MainFrame();

  intptr_t WindowProc(uint32_t message, uintptr_t first, intptr_t second) override;

  // CutWindowHost.
  CutWindow* ActiveCut() override;
  int32_t OnCommand(int32_t code, int32_t id, platform::WindowHandle control) override;
  void SendCommand(int32_t id) override;
  void RefreshPanels(CutWindow* cut) override;
  void CommitPanels(CutWindow* cut) override;
  void CommitTyping(CutWindow* cut) override;
  void RefreshLayerLine(CutWindow* cut) override;
  void SelectCutLine(CutWindow* cut) override;
  void TogglePanels() override;
  bool AskSaveCut(CutWindow* cut) override;
  void CutGone(CutWindow* cut) override;
  void StopAnimation() override;
  int32_t PlayBuffer(Buffer<uint8_t> buffer, int32_t size) override;
  bool EditText(char** text) override;

  // Runs a command that belongs to the window of a cut: 0, or 1 if it doesn't.
  static int32_t RunWindowCommand(CutWindow* cut, int32_t id);
  // Makes a tool the current one, with a pulse to the active cut before and after.
  void SelectTool(int32_t id);
  // Shows whether a tool is selected, in the tool bar and the menus.
  void MarkTool(int32_t id, bool on);
  void OnInitMenu();
  void OnInitMenuPopup(platform::MenuHandle popup);
  void ExplainTool();
  void ShowAbout();

  // Panels.
  void LayoutPanels(int32_t clientWidth, int32_t clientHeight);
  void Relayout();
  void FillLayerList(CutWindow* cut);
  // Writes the text of a record's line in the list of layers.
  void FormatLayerLine(char* text, size_t capacity, Frame* frame, int32_t record);
  // Null clears the status bar.
  void SetStatusText(const char* text);
  // Shows the help of a control in the status bar, which keeps its text if there is none.
  void ShowHelp(int32_t id);
  // Shows the help of a command, which is the second line of its text, or the whole of a single line. Without a text it
  // clears the status bar.
  void ShowMenuHelp(int32_t id);

  // Closing.
  // Each gives false if a document couldn't be written and the user chose no other place: what called for it then
  // stops.
  bool CloseAllCuts();
  bool AskSaveFilm();
  // A box that says which file couldn't be written, and why.
  void ReportNotSaved(const char* path, WriteProblem problem);
  // The same for a document, or a box about what a successful save found in the place of its file. Without either
  // nothing is said.
  void ReportSave(const char* path, WriteProblem problem, const KnownFile& file);

  // Opens a cut, layer or film by the extension of its path. False if nothing was opened. ReportOpening() says why.
  bool OpenByExtension(const char* path);
  // Open a cut or layer file in a new window, which owns the cut. Null if that fails. ReportOpening() says why.
  CutWindow* OpenCutFile(const char* path);
  CutWindow* OpenLayerFile(const char* path);
  bool OpenFilmFile(const char* path);
  // A box that says why the file that was to be opened last didn't open, or not as a whole. Without news, and for an
  // extension that isn't the program's, nothing is said.
  void ReportOpening(const char* path);
  // Opens a document that a program left without saving it; it counts as changed.
  bool OpenLeftDocument(const LeftDocument& document);

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
  platform::WindowHandle emptyNote = nullptr;  // over the area of the cut windows while there is none
  CutWindow* panelsCut = nullptr;              // whose values the panels show, not owned; null when it is gone
  std::vector<CutWindow*> openCuts;            // not owned; in the order of opening
  Film* film = nullptr;                        // owned, never null
  Recovery recovery{this};
  SheetWindow sheetWindow{this};
  BufferStream streamBuffer;  // what the player reads, in streamMemory
  int32_t panelWidth = 160;   // pixels
  Point dragLast;             // of the splitter
  uint32_t shellFlags = 0;
  bool savedImeOpen = false;  // the state of the input method that isn't in use: the comment's or the program's

 private:
  Buffer<uint8_t> streamMemory;
  std::string frameTitle = kFrameTitle;  // without the name of a cut, which the window system adds
  bool isPlayerPlaced = false;           // later it opens where the user left it
  int32_t exportType = 1;                // the file type that ExportAs() was last used with
  int32_t openingNews = 0;               // of the last opening, the number of a text; 0 for none
  std::string shownPanels;               // what the panels were filled with

  void OnCreate();
  // Panels explain themselves, and those for numbers say which ones they take.
  void ExplainPanels();
  void CheckPanelNumber(int32_t id);
  void ShowEmptyNote();
  // All that the user can type into the panels.
  std::string PanelTexts();
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
  // What is closed without being saved stays in the history; without a path only if recovery is on. WriteUnsaved()
  // writes the bytes that are to be kept of a cut, and gives false if nothing is to be.
  bool WriteUnsaved(CutWindow* cut, ByteStream* contents);
  void KeepUnsavedFilm();
  // Asks whether to save a document; the path may be empty. True for Yes.
  bool AskToSave(const char* path);
  // A warning made of a text with a place for a path and one for a reason; 0 stands for no reason.
  void ReportWithReason(int32_t text, const char* path, int32_t reasonText);

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
  // Deletes a line of the list of layers and inserts that of a record at `target`. The new line isn't selected.
  void ReplaceLayerLine(int32_t line, int32_t target, Frame* frame, int32_t record);
  void SpreadLayerPosition(CutWindow* cut);
  void OpenLayer();
  void SaveLayer(CutWindow* cut);
  void OverwriteLayer(CutWindow* cut);
  // These two work on the active cut, if any: the list of layers calls them too.
  void EditLayerProperties();
  void SelectLayerLine();

  // The drawing of the current cell.
  void DrawRandomDots(CutWindow* cut);
  void DrawGridLines(CutWindow* cut);

  // Cuts.
  void NewCut();
  void OpenCut();
  // If a file can't be written, each says why in a box; the document then keeps its path, its layers and its mark.
  SaveResult SaveCutAs(CutWindow* cut);
  // Does the same as SaveCutAs if the cut has no path or its file can't be written.
  SaveResult OverwriteCut(CutWindow* cut);
  bool SaveCutFile(CutWindow* cut, const char* path);
  // Makes a cut with one frame and opens its window. It has nothing to save, and its pictures are to be compiled. Null
  // if the window can't be made.
  CutWindow* MakeNewCut(const CutDialog& values, const char* path);
  // Opens the window of a cut, which then owns the cut. Null if that fails; the cut is then deleted.
  CutWindow* ShowCut(CutWindow* cut);
  // Opens the window of a cut that is read from a stream and has this path. Null if that fails.
  CutWindow* OpenCutStream(ByteStream* stream, const char* path);
  void EditCutProperties(CutWindow* cut);
  // What is to be said of a file after a document was read from it or not; null stands for one that didn't open.
  static int32_t NewsOf(const char* path, FILE* file, bool isRead);
  // Lets the user choose one of the states that are kept of the cut, and opens it as a changed cut of the same path.
  void OpenVersion(CutWindow* cut);

  // The film.
  // Shows the name of the film's file in the title of the frame; null for a film without a file.
  void SetFrameTitle(const char* filmPath);
  // Fills title and list of cuts from the film.
  void ShowFilm();
  // Inserts a line for the cut of this path into the list of cuts; index -1 appends it.
  void InsertCutLine(int32_t index, const char* path);
  void NewFilm();
  void OpenFilm();
  SaveResult SaveFilmAs();
  SaveResult OverwriteFilm();
  void EditFilmProperties();
  void AddOrInsertActiveCut(bool insert);
  void RemoveActiveCut();
  // The window of the cut of a film entry; null if the cut isn't open.
  CutWindow* WindowOfEntry(int32_t index);
  void OpenListedCut();
  void NewNumberedCut(bool insert);
  void DeleteCuts();
  // Deletes the files of an entry and closes its window without a question.
  void DeleteCutFiles(int32_t index);
  void RenameListedCut();
  void RenameCutLines(const char* path, const char* name);
  void ExtractCuts();
  void ExportFilm();
  // Exports the film, or without one the active cut, as a page or as pictures. No document changes.
  void ExportAs();
  // Says in the status bar that it is done, or in a box what failed.
  void ReportExport(const ExportJob& job);
  void PlaySelectedCuts();
};

// The main frame while its window exists, else null. The program itself passes the frame along instead.
extern MainFrame* gMainFrame;

}  // namespace sorvel
