#include "app.h"

#include <commctrl.h>
#include <psapi.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "resources/ids.h"
#include "text.h"

namespace sorvel::desktop {

namespace {

namespace fs = std::filesystem;
using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

constexpr UINT kAnswerTime = 3000;
constexpr int kShortTime = 500;
constexpr int kMenuTries = 3;
constexpr DWORD kMenuRest = 25;
constexpr RECT kFramePlace = {60, 40, 1084, 808};
constexpr int kNoCut = 16;  // the most child windows that a test may leave open

std::string gOutput = ".";

fs::path PathFrom(const std::string& utf8) {
  return fs::path(Wide(utf8));
}

std::string ModulePath() {
  wchar_t path[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return Utf8(path);
}

std::string TemporaryFolder() {
  static int number = 0;
  const std::string name = "sorvel-desktop-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(number++);
  return Utf8((fs::temp_directory_path() / name).wstring());
}

double Now() {
  LARGE_INTEGER frequency;
  LARGE_INTEGER count;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&count);
  return static_cast<double>(count.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

POINT MiddleOf(const RECT& area) {
  return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

std::string Listed(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : " | ").append(line);
  return text;
}

struct Search {
  DWORD process;
  const char* windowClass;
  HWND found;
};

BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
  Search* search = reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search->process || !IsWindowVisible(window) || ClassOf(window) != search->windowClass) return TRUE;
  search->found = window;
  return FALSE;
}

// Memory in another process, for messages that the window system doesn't carry over.
class RemoteMemory {
 public:
  RemoteMemory(HANDLE owner, size_t length) : process(owner), size(length) {
    place = VirtualAllocEx(process, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
  }
  ~RemoteMemory() {
    if (place != nullptr) VirtualFreeEx(process, place, 0, MEM_RELEASE);
  }
  RemoteMemory(const RemoteMemory&) = delete;
  RemoteMemory& operator=(const RemoteMemory&) = delete;

  bool Read(void* target) const { return ReadProcessMemory(process, place, target, size, nullptr) != FALSE; }
  bool Write(const void* source) const { return WriteProcessMemory(process, place, source, size, nullptr) != FALSE; }
  LPARAM Place() const { return reinterpret_cast<LPARAM>(place); }
  // From now on the memory belongs to the other process.
  void Leave() { place = nullptr; }

 private:
  HANDLE process;
  size_t size;
  void* place = nullptr;
};

}  // namespace

App::App() : folder(TemporaryFolder()) {
  std::error_code error;
  fs::create_directories(PathFrom(folder), error);
  fs::copy_file(PathFrom(ModulePath()).parent_path() / "sorvel.exe", PathFrom(PathOf("sorvel.exe")),
                fs::copy_options::overwrite_existing, error);
  fs::remove_all(PathFrom(RecoveryStore()), error);
}

App::~App() {
  Kill();
  std::error_code error;
  fs::remove_all(PathFrom(folder), error);
}

AssertionResult App::Start(const std::string& commandLine, Opening opening) {
  Kill();
  const std::wstring program = Wide(PathOf("sorvel.exe"));
  std::wstring line = L"\"" + program + L"\"";
  if (!commandLine.empty()) line += L" " + Wide(commandLine);
  STARTUPINFOW start = {};
  start.cb = sizeof(start);
  start.dwFlags = STARTF_USEPOSITION | STARTF_USESIZE | STARTF_USESHOWWINDOW;
  start.dwX = kFramePlace.left;
  start.dwY = kFramePlace.top;
  start.dwXSize = kFramePlace.right - kFramePlace.left;
  start.dwYSize = kFramePlace.bottom - kFramePlace.top;
  start.wShowWindow = SW_SHOWNORMAL;
  const double begin = Now();
  if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, Wide(folder).c_str(), &start,
                      &process)) {
    return AssertionFailure() << "no process: error " << GetLastError();
  }
  WaitForInputIdle(process.hProcess, kPatience);
  const auto shown = [this] {
    frame = WindowOf("SorvelinFrame");
    return frame != nullptr && SendMessageTimeoutW(frame, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kAnswerTime, nullptr) != 0;
  };
  if (!Await(shown)) return AssertionFailure() << "the frame window doesn't come";
  startTime = Now() - begin;
  if (opening == Opening::kWithQuestion) return HasDialog("Sorvelin");
  SetForegroundWindow(frame);
  const auto inFront = [this] { return GetForegroundWindow() == frame; };
  // Where a program may not bring another one to the front, a click does.
  if (!Await(inFront, kShortTime)) Click(MiddleOf(Screen(Of(kStatusBarId))));
  if (!Await(inFront, kShortTime)) return AssertionFailure() << "the frame window doesn't come to the front";
  ParkMouse();
  return AssertionSuccess();
}

bool App::Runs() const {
  return process.hProcess != nullptr && WaitForSingleObject(process.hProcess, 0) == WAIT_TIMEOUT;
}

void App::Kill() {
  if (process.hProcess == nullptr) return;
  if (Runs()) {
    TerminateProcess(process.hProcess, 1);
    WaitForSingleObject(process.hProcess, kPatience);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  process = {};
  frame = nullptr;
}

void App::Crash() const {
  const HANDLE thread = CreateRemoteThread(process.hProcess, nullptr, 0, reinterpret_cast<LPTHREAD_START_ROUTINE>(1),
                                           nullptr, 0, nullptr);
  if (thread != nullptr) CloseHandle(thread);
}

AssertionResult App::Ends(DWORD code) {
  if (WaitForSingleObject(process.hProcess, kPatience) != WAIT_OBJECT_0) {
    return AssertionFailure() << "the program goes on"
                              << (Dialog() != nullptr ? " with a dialog: " + Text(Dialog()) : "");
  }
  DWORD given = 0;
  GetExitCodeProcess(process.hProcess, &given);
  Kill();
  if (given != code) return AssertionFailure() << "the exit code is " << given;
  return AssertionSuccess();
}

AssertionResult App::Leave() {
  if (const AssertionResult chosen = Choose('v', "x"); !chosen) return chosen;
  for (int i = 0; i < kNoCut && Runs(); i++) {
    Await([this] { return !Runs() || Dialog() != nullptr; });
    const HWND box = Dialog();
    if (box == nullptr) break;
    ClickButton(IDNO);
    Await([this, box] { return !Runs() || Dialog() != box; });
  }
  return Ends();
}

size_t App::WorkingSet() const {
  PROCESS_MEMORY_COUNTERS counters = {};
  GetProcessMemoryInfo(process.hProcess, &counters, sizeof(counters));
  return counters.WorkingSetSize;
}

HWND App::WindowOf(const char* windowClass) const {
  Search search = {process.dwProcessId, windowClass, nullptr};
  EnumWindows(LookAt, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND App::Of(int control) const {
  return GetDlgItem(frame, control);
}

LRESULT App::Ask(HWND window, UINT message, WPARAM first, LPARAM second) const {
  DWORD_PTR answer = 0;
  SendMessageTimeoutW(window, message, first, second, SMTO_ABORTIFHUNG, kAnswerTime, &answer);
  return static_cast<LRESULT>(answer);
}

HWND App::Cut() const {
  return reinterpret_cast<HWND>(Ask(Of(kMdiClientId), WM_MDIGETACTIVE));
}

HWND App::Player() const {
  return WindowOf("SorvelWnd");
}

HWND App::Picker() const {
  return WindowOf("SORVELIN");
}

HWND App::Sheet() const {
  return WindowOf("SorvelinSheet");
}

HWND App::Dialog() const {
  return WindowOf("#32770");
}

HWND App::PopupMenu() const {
  return WindowOf("#32768");
}

HWND App::ToolTip() const {
  return WindowOf("tooltips_class32");
}

std::string App::Note(HWND window) const {
  HWND note = nullptr;
  while ((note = FindWindowExW(window, note, L"Static", nullptr)) != nullptr) {
    if (IsWindowVisible(note)) return Text(note);
  }
  return "";
}

HWND App::Focus() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof(info);
  GetGUIThreadInfo(process.dwThreadId, &info);
  return info.hwndFocus;
}

std::string App::Text(HWND window) const {
  wchar_t text[1024] = L"";
  // What an empty text leaves in the buffer is no text.
  const LRESULT length = Ask(window, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
  return length > 0 ? Utf8(text) : "";
}

std::vector<std::string> App::Lines(HWND list) const {
  std::vector<std::string> lines(static_cast<size_t>(Ask(list, LB_GETCOUNT)));
  for (size_t i = 0; i < lines.size(); i++) {
    wchar_t text[1024] = L"";
    Ask(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text));
    lines[i] = Utf8(text);
  }
  return lines;
}

bool App::IsToolDown(int command) const {
  return Ask(Of(kToolBarId), TB_ISBUTTONCHECKED, static_cast<WPARAM>(command)) != 0;
}

AssertionResult App::Shows(HWND window, const std::string& text) const {
  if (Await([&] { return Text(window) == text; }, kPatience / 2)) return AssertionSuccess();
  return AssertionFailure() << "it shows \"" << Text(window) << "\" and not \"" << text << "\"";
}

AssertionResult App::Shows(int control, const std::string& text) const {
  return Shows(Of(control), text);
}

AssertionResult App::Lists(int control, const std::vector<std::string>& lines) const {
  if (Await([&] { return Lines(control) == lines; }, kPatience / 2)) return AssertionSuccess();
  return AssertionFailure() << "it lists \"" << Listed(Lines(control)) << "\" and not \"" << Listed(lines) << "\"";
}

AssertionResult App::HasFocus(HWND window) const {
  if (Await([&] { return Focus() == window; }, kPatience / 2)) return AssertionSuccess();
  return AssertionFailure() << "the focus is in control " << GetDlgCtrlID(Focus()) << " of class " << ClassOf(Focus());
}

AssertionResult App::HasTool(int command) const {
  if (Await([&] { return IsToolDown(command); })) return AssertionSuccess();
  return AssertionFailure() << "the button of the tool " << command << " isn't down";
}

AssertionResult App::HasNoCut() const {
  if (Await([this] { return Cut() == nullptr; })) return AssertionSuccess();
  return AssertionFailure() << "the cut " << Text(Cut()) << " stays";
}

AssertionResult App::HasPlayer(bool there) const {
  if (Await([&] { return (Player() != nullptr) == there; })) return AssertionSuccess();
  return AssertionFailure() << (there ? "nothing plays" : "the animation window stays");
}

AssertionResult App::HasDialog(const std::string& title) const {
  if (Await([&] { return Dialog() != nullptr && Text(Dialog()) == title; })) return AssertionSuccess();
  return AssertionFailure() << "no dialog \"" << title << "\" comes";
}

AssertionResult App::DialogGoes() const {
  // Keys that come before the frame is the active window again would be lost.
  if (Await([this] { return Dialog() == nullptr && GetForegroundWindow() == frame; })) return AssertionSuccess();
  if (Dialog() == nullptr) return AssertionFailure() << "the frame doesn't become the active window again";
  return AssertionFailure() << "the dialog \"" << Text(Dialog()) << "\" stays";
}

AssertionResult App::HasValues(const Values& values) const {
  for (const auto& [control, text] : values) {
    if (Text(Item(control)) != text) return AssertionFailure() << control << " shows \"" << Text(Item(control)) << "\"";
  }
  return AssertionSuccess();
}

void App::ClickButton(int control) const {
  Click(MiddleOf(Screen(Item(control))));
}

AssertionResult App::Enter(HWND edit, const std::string& text) const {
  Click(MiddleOf(Screen(edit)));
  if (const AssertionResult focus = HasFocus(edit); !focus) return focus;
  Press(VK_HOME);
  Press(VK_END, {VK_SHIFT});
  Type(text);
  return Shows(edit, text);
}

AssertionResult App::Enter(const Values& values) const {
  for (const auto& [control, text] : values) {
    if (const AssertionResult entered = Enter(Item(control), text); !entered) return entered;
  }
  return AssertionSuccess();
}

AssertionResult App::Answer(const std::string& title, const Values& values, const std::string& picture, int key) const {
  if (const AssertionResult comes = HasDialog(title); !comes) return comes;
  if (const AssertionResult entered = Enter(values); !entered) return entered;
  if (!picture.empty()) {
    if (const AssertionResult kept = Keep(picture); !kept) return kept;
  }
  // Over the canvas the mouse would leave its mark there.
  ParkMouse();
  Press(key);
  return DialogGoes();
}

AssertionResult App::AnswerQuestion(const std::string& text, int button, const std::string& picture) const {
  if (const AssertionResult comes = HasDialog("Sorvelin"); !comes) return comes;
  if (!text.empty() && BoxText() != text) return AssertionFailure() << "it asks \"" << BoxText() << "\"";
  if (!picture.empty()) {
    if (const AssertionResult kept = Keep(picture); !kept) return kept;
  }
  ClickButton(button);
  return AssertionSuccess();
}

bool App::InMenu() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof(info);
  return GetGUIThreadInfo(process.dwThreadId, &info) && (info.flags & GUI_INMENUMODE) != 0;
}

HWND App::OpenMenu(char popup) {
  // Right after a dialog has gone the window system may close a menu again that has just opened.
  for (int i = 0; i < kMenuTries; i++) {
    Press(popup - 'a' + 'A', {VK_MENU});
    const bool opened = Await([this] { return PopupMenu() != nullptr; }, 2 * kShortTime);
    Sleep(kMenuRest);
    const HWND menu = PopupMenu();
    if (opened && menu != nullptr) return menu;
    CloseMenus();
  }
  return nullptr;
}

void App::CloseMenus() {
  for (int i = 0; i < 4 && PopupMenu() != nullptr; i++) {
    const HWND before = PopupMenu();
    Press(VK_ESCAPE);
    Await([&] { return PopupMenu() != before; }, kShortTime);
  }
  // The last one leaves the menu bar itself.
  if (InMenu()) Press(VK_ESCAPE);
  Await([this] { return !InMenu(); }, kShortTime);
}

AssertionResult App::Choose(char popup, const std::string& item) {
  const HWND menu = OpenMenu(popup);
  if (menu == nullptr) return AssertionFailure() << "popup " << popup << " doesn't open";
  Type(item);
  if (!Await([this] { return !Runs() || PopupMenu() == nullptr; }, kPatience / 2)) {
    return AssertionFailure() << "item " << item << " of popup " << popup << " isn't taken";
  }
  return AssertionSuccess();
}

AssertionResult App::ChooseAt(char popup, int item) {
  if (OpenMenu(popup) == nullptr) return AssertionFailure() << "popup " << popup << " doesn't open";
  // A popup that the keyboard opened has its first item highlighted.
  for (int i = 0; i < item; i++) Press(VK_DOWN);
  Press(VK_RETURN);
  if (!Await([this] { return PopupMenu() == nullptr; }, kPatience / 2)) {
    return AssertionFailure() << "item " << item << " of popup " << popup << " isn't taken";
  }
  return AssertionSuccess();
}

RECT App::ToolRect(int command) const {
  RECT rect = {};
  const RemoteMemory memory(process.hProcess, sizeof(rect));
  Ask(Of(kToolBarId), TB_GETRECT, static_cast<WPARAM>(command), memory.Place());
  memory.Read(&rect);
  MapWindowPoints(Of(kToolBarId), nullptr, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

AssertionResult App::ClickTool(int command) {
  const RECT rect = ToolRect(command);
  if (IsRectEmpty(&rect)) return AssertionFailure() << "the tool bar has no button " << command;
  Click(MiddleOf(rect));
  ParkMouse();
  return AssertionSuccess();
}

AssertionResult App::NewCut(const std::string& layer, int width, int height) {
  const HWND before = Cut();
  Press('N', {VK_CONTROL});
  if (const AssertionResult comes = HasDialog("カットのプロパティ"); !comes) return comes;
  const Values size = {{kCutWidthEdit, std::to_string(width)}, {kCutHeightEdit, std::to_string(height)}};
  for (const auto& value : size) {
    if (HasValues({value})) continue;
    if (const AssertionResult set = Enter({value}); !set) return set;
  }
  Press(VK_RETURN);
  const Values name = layer.empty() ? Values() : Values{{kLayerNameEdit, layer}};
  const AssertionResult answered = Answer("レイヤのプロパティ", name, "", layer.empty() ? VK_ESCAPE : VK_RETURN);
  if (!answered) return answered;
  if (!Await([&] { return Cut() != nullptr && Cut() != before; })) {
    return AssertionFailure() << "the cut window doesn't come";
  }
  canvas = {width, height, 1, 1};
  return HasFocus(Cut());
}

AssertionResult App::AnswerFileDialog(const std::string& path) {
  // The field for the name has the focus when the dialog comes up. The box that asked before may still be there.
  HWND dialog = nullptr;
  const auto inField = [&] {
    dialog = Dialog();
    return dialog != nullptr && ClassOf(Focus()) == "Edit" && IsChild(dialog, Focus());
  };
  if (!Await(inField)) return AssertionFailure() << "no file dialog comes with the focus in its field";
  const HWND field = Focus();
  Press(VK_HOME);
  Press(VK_END, {VK_SHIFT});
  Type(path);
  if (const AssertionResult typed = Shows(field, path); !typed) return typed;
  Press(VK_RETURN);
  if (!Await([&] { return Dialog() != dialog; })) return AssertionFailure() << "the file dialog stays";
  return AssertionSuccess();
}

AssertionResult App::SaveCutAs(const std::string& path) {
  Press('S', {VK_CONTROL});
  if (const AssertionResult answered = AnswerFileDialog(path); !answered) return answered;
  if (!Await([&] { return FileExists(path); })) return AssertionFailure() << "no file " << path;
  return HasFocus(Cut());
}

AssertionResult App::Drop(const std::string& path) {
  const std::wstring wide = Wide(path);
  std::vector<char> drop(sizeof(DROPFILES) + (wide.size() + 2) * sizeof(wchar_t));
  DROPFILES head = {};
  head.pFiles = sizeof(head);
  head.fWide = TRUE;
  std::memcpy(drop.data(), &head, sizeof(head));
  std::memcpy(drop.data() + sizeof(head), wide.data(), wide.size() * sizeof(wchar_t));
  // Windows carries the memory of this message over to the other process; Wine doesn't, but takes any place there.
  if (IsWine()) {
    RemoteMemory memory(process.hProcess, drop.size());
    if (!memory.Write(drop.data())) return AssertionFailure() << "no memory for the drop";
    const bool posted = PostMessageW(frame, WM_DROPFILES, static_cast<WPARAM>(memory.Place()), 0) != FALSE;
    memory.Leave();
    return posted ? AssertionSuccess() : AssertionFailure() << "the drop can't be posted";
  }
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_SHARE, drop.size());
  std::memcpy(GlobalLock(memory), drop.data(), drop.size());
  GlobalUnlock(memory);
  if (PostMessageW(frame, WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0)) return AssertionSuccess();
  GlobalFree(memory);
  return AssertionFailure() << "the drop can't be posted";
}

RECT App::Screen(HWND window) const {
  RECT rect = {};
  GetWindowRect(window, &rect);
  return rect;
}

RECT App::ClientOnScreen(HWND window) const {
  RECT rect = {};
  GetClientRect(window, &rect);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

RECT App::InFrame(int control) const {
  RECT rect = Screen(Of(control));
  MapWindowPoints(nullptr, frame, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

POINT App::At(int x, int y) const {
  const RECT client = ClientOnScreen(Cut());
  const int left =
      client.left + (client.right - client.left - canvas.width * canvas.numerator / canvas.denominator) / 2;
  const int top = client.top + (client.bottom - client.top - canvas.height * canvas.numerator / canvas.denominator) / 2;
  return {left + x * canvas.numerator / canvas.denominator, top + y * canvas.numerator / canvas.denominator};
}

void App::ParkMouse() const {
  MoveTo({kFramePlace.right + 40, kFramePlace.bottom + 40});
}

AssertionResult App::Stroke(POINT from, POINT to) const {
  Drag(At(from), At(to));
  ParkMouse();
  return HasPixel(to.x, to.y, 0);
}

AssertionResult App::TypeUntil(const std::string& keys, int control, const std::string& text) const {
  Type(keys);
  return Shows(control, text);
}

AssertionResult App::TypeUntilTool(const std::string& keys, int command) const {
  Type(keys);
  return HasTool(command);
}

Picture App::WholePicture() const {
  // A maximised window reaches over the edges of the screen.
  const RECT screen = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  const RECT window = Screen(frame);
  RECT area = {};
  IntersectRect(&area, &window, &screen);
  return Picture(area);
}

Picture App::PictureOf(HWND client) const {
  return Picture(ClientOnScreen(client));
}

Picture App::PictureOfCanvas() const {
  const POINT first = At(0, 0);
  const POINT last = At(canvas.width, canvas.height);
  return Picture(RECT{first.x, first.y, last.x, last.y});
}

Color App::Pixel(int x, int y) const {
  const POINT place = At(x, y);
  return Picture(RECT{place.x, place.y, place.x + 1, place.y + 1}).At(0, 0);
}

AssertionResult App::HasPixel(int x, int y, Color color) const {
  if (Await([&] { return Pixel(x, y) == color; }, kPatience / 2)) return AssertionSuccess();
  return AssertionFailure() << "the pixel at " << x << ", " << y << " is " << std::hex << Pixel(x, y) << " and not "
                            << color;
}

AssertionResult App::HasPixels(const std::vector<Spot>& spots) const {
  for (const Spot& spot : spots) {
    if (const AssertionResult has = HasPixel(spot.x, spot.y, spot.color); !has) return has;
  }
  return AssertionSuccess();
}

Picture App::StillPictureOf(HWND client) const {
  constexpr int still = 3;  // looks without a change
  Picture last = PictureOf(client);
  int same = 0;
  Await([&] {
    Sleep(20);
    Picture now = PictureOf(client);
    same = now == last ? same + 1 : 0;
    last = now;
    return same >= still;
  });
  return last;
}

Picture App::StillPicture() const {
  return StillPictureOf(frame);
}

AssertionResult App::Keep(const std::string& name) const {
  StillPicture();
  const Picture picture = WholePicture();
  if (picture.Colors(3) < 3) return AssertionFailure() << "the picture " << name << " is empty";
  return KeepPicture(picture, name);
}

AssertionResult App::KeepScreen(const std::string& name) const {
  return KeepPicture(Picture(RECT{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}), name);
}

AssertionResult KeepPicture(const Picture& picture, const std::string& name) {
  if (picture.Save(gOutput + "/" + name + ".bmp")) return AssertionSuccess();
  return AssertionFailure() << "can't write the picture " << name;
}

void DesktopTest::TearDown() {
  if (HasFailure()) {
    const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
    app.KeepScreen(std::string("failed-") + info->test_suite_name() + "-" + info->name());
  }
}

std::string ClassOf(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return Utf8(name);
}

bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

std::string RecoveryStore() {
  wchar_t folder[MAX_PATH] = L"";
  SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder);
  return Utf8(folder) + "\\Sorvel Developer\\recovery";
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(PathFrom(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(PathFrom(path), std::ios::binary);
  return file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush().good();
}

bool FileExists(const std::string& path) {
  return GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string Setting(const App& app, const std::string& section, const std::string& key) {
  const std::string text = FromShiftJis(ReadFile(app.PathOf("sorvel.ini")));
  size_t place = text.find("[" + section + "]");
  const size_t end = place == std::string::npos ? place : text.find("\n[", place);
  if (place == std::string::npos) return "";
  place = text.find("\n" + key + "=", place);
  if (place == std::string::npos || (end != std::string::npos && place > end)) return "";
  place += key.size() + 2;
  return text.substr(place, text.find_first_of("\r\n", place) - place);
}

void SetOutputFolder(const std::string& path) {
  std::error_code error;
  fs::create_directories(PathFrom(path), error);
  gOutput = path;
}

std::string OutputFolder() {
  return gOutput;
}

}  // namespace sorvel::desktop
