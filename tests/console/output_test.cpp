// What becomes of the files that the console program writes.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "support/test_program.h"
#include "support/test_streams.h"

namespace sorvel {
namespace {

using namespace teststreams;

int Shell(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Program() {
  return std::string("'") + kProgramPath + "' ";
}

// What a command whose standard error is a terminal shows there; its standard output goes to the file "out".
std::string ShownOnATerminal(const Folder& folder, const std::string& arguments, int* status) {
  const std::string command = "cd '" + folder.Path("") + "' && exec " + Program() + arguments + " > out";
  int terminal = -1;
  const pid_t process = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (process < 0) {
    ADD_FAILURE() << "no terminal";
    return "";
  }
  if (process == 0) {
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  std::string shown;
  char bytes[4096];
  // The end of the program is an error of the read.
  for (ssize_t count = 0; (count = read(terminal, bytes, sizeof(bytes))) > 0;) {
    shown.append(bytes, static_cast<size_t>(count));
  }
  close(terminal);
  int end = 0;
  waitpid(process, &end, 0);
  *status = WIFEXITED(end) ? WEXITSTATUS(end) : -1;
  return shown;
}

// A cut of three frames, and a film that lists it and another one like it.
void WriteFilm(const Folder& folder) {
  for (const char* name : {"a.cut", "b.cut"}) {
    const std::unique_ptr<Cut> cut = MakeCut(8, 4, {"1", "2", "3"}, 0);
    AssignString(&cut->path, folder.Path(name).c_str());
    ASSERT_TRUE(cut->SaveToPath());
  }
  const std::string film = "title\nauthor\n320, 240\na.cut\nb.cut\n";
  folder.Write("f.flm", Bytes(film.begin(), film.end()));
}

class ConsoleOutput : public testing::Test {
 protected:
  const Folder folder;
};

TEST_F(ConsoleOutput, CompileShowsItsFramesOnATerminalAndTakesTheLineAway) {
  WriteFilm(folder);
  int status = -1;
  const std::string shown = ShownOnATerminal(folder, "compile a.cut a.ca", &status);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(shown, "\rframe 1 of 3\x1B[K\rframe 2 of 3\x1B[K\rframe 3 of 3\x1B[K\r\x1B[K");
}

TEST_F(ConsoleOutput, ExportShowsItsCutsOnATerminalAndTakesTheLineAway) {
  WriteFilm(folder);
  int status = -1;
  const std::string shown = ShownOnATerminal(folder, "export f.flm f.sv", &status);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(shown, "\rcut 1 of 2\x1B[K\rcut 2 of 2\x1B[K\r\x1B[K");
}

TEST_F(ConsoleOutput, WithoutATerminalNoProgressIsShown) {
  WriteFilm(folder);
  for (const Answer& run : {folder.Sorvel({"compile", "a.cut", "a.ca"}), folder.Sorvel({"export", "f.flm", "f.sv"})}) {
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
  }
}

TEST_F(ConsoleOutput, PipeGetsTheWholeStream) {
  folder.Write("a.cut", SmallCutFile());
  ASSERT_EQ(folder.Sorvel({"compile", "a.cut", "a.ca"}).status, 0);
  ASSERT_EQ(Shell("cd '" + folder.Path("") + "' && " + Program() + "compile a.cut /dev/stdout | cat > piped.ca"), 0);
  EXPECT_EQ(folder.Read("piped.ca"), folder.Read("a.ca"));
}

TEST_F(ConsoleOutput, LinkStaysAndItsFileIsReplaced) {
  folder.Write("a.cut", SmallCutFile());
  folder.Write("real.cut", Bytes{1, 2, 3});
  ASSERT_EQ(symlink("real.cut", folder.Path("link.cut").c_str()), 0);
  ASSERT_EQ(folder.Sorvel({"resave", "a.cut", "link.cut"}).status, 0);
  EXPECT_EQ(folder.Read("real.cut"), folder.Read("link.cut"));
  char target[32] = "";
  EXPECT_GT(readlink(folder.Path("link.cut").c_str(), target, sizeof(target) - 1), 0);
}

TEST_F(ConsoleOutput, FullDeviceIsAFailure) {
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"resave", "a.cut", "/dev/full"}).status, 1);
  EXPECT_EQ(Shell("cd '" + folder.Path("") + "' && " + Program() + "info a.cut > /dev/full 2> /dev/null"), 1);
}

TEST_F(ConsoleOutput, InterruptedImportLeavesTheOldFileAndNothingElse) {
  const Bytes old = {1, 2, 3};
  folder.Write("a.cut", old);
  ASSERT_EQ(Shell("printf 'P5\\n3000 3000\\n255\\n' > '" + folder.Path("p.pgm") +
                  "' && head -c 9000000 /dev/zero >> '" + folder.Path("p.pgm") + "'"),
            0);
  std::string pictures;
  for (int i = 0; i < 200; ++i) pictures += " p.pgm";
  const std::string command =
      "cd '" + folder.Path("") + "' && timeout -s INT 0.3 " + Program() + "import a.cut" + pictures;
  EXPECT_NE(Shell(command + " 2> /dev/null"), 0);
  EXPECT_EQ(folder.Read("a.cut"), old);
  EXPECT_EQ(folder.List(), "a.cut p.pgm");
}

TEST_F(ConsoleOutput, FilmThatLeadsAboveTheRootIsRefused) {
  const std::string lines = "t\na\n320, 240\n../../../../../../../../c.cut\n";
  folder.Write("f.flm", Bytes(lines.begin(), lines.end()));
  const Answer run = folder.Sorvel({"info", "f.flm"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.IsOneLineAbout("f.flm")) << run;
}

TEST_F(ConsoleOutput, RateThatAStreamCantSayIsWrongUsage) {
  const std::string picture = "P2\n1 1\n255\n0\n";
  folder.Write("p.pgm", Bytes(picture.begin(), picture.end()));
  EXPECT_EQ(folder.Sorvel({"import", "a.cut", "--fps", "128", "p.pgm"}).status, 2);
  EXPECT_EQ(folder.Sorvel({"import", "a.cut", "--fps", "127", "p.pgm"}).status, 0);
}

TEST_F(ConsoleOutput, FrameNumberBelowOneIsNoFrame) {
  folder.Write("a.cut", SmallCutFile());
  EXPECT_EQ(folder.Sorvel({"frame", "a.cut", "0", "f.bmp"}).status, 1);
  EXPECT_EQ(folder.Sorvel({"frame", "a.cut", "-1", "f.bmp"}).status, 1);
  EXPECT_EQ(folder.Sorvel({"frame", "a.cut", "one", "f.bmp"}).status, 2);
}

TEST_F(ConsoleOutput, PictureOfHugeSizeInASmallFileTakesNoMemory) {
  const std::string head = "P5\n32767 32767\n255\n";
  folder.Write("p.pgm", Bytes(head.begin(), head.end()));
  const Answer run = folder.Sorvel({"import", "a.cut", "p.pgm"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(run.IsOneLineAbout("p.pgm")) << run;
  EXPECT_EQ(folder.List(), "p.pgm");
}

// The console program at work in a folder. It writes to "pipe", a named pipe there of which nobody reads more than the
// beginning, so it stands still with its output half written.
class HalfWritten {
 public:
  // A signal that is to be ignored is handed on; others are as in a terminal, even if the tests run in the background.
  HalfWritten(const Folder& folder, const std::string& arguments, int ignored = 0) : work(folder) {
    EXPECT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    const std::string command = "cd '" + folder.Path("") + "' && exec " + Program() + arguments + " 2> errors";
    process = fork();
    if (process == 0) {
      for (const int number : {SIGINT, SIGTERM, SIGHUP}) std::signal(number, number == ignored ? SIG_IGN : SIG_DFL);
      execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
      _exit(127);
    }
    pipe = open(folder.Path("pipe").c_str(), O_RDONLY);
    char byte = 0;
    EXPECT_EQ(read(pipe, &byte, 1), 1);
  }
  HalfWritten(const HalfWritten&) = delete;
  HalfWritten& operator=(const HalfWritten&) = delete;
  ~HalfWritten() { ClosePipe(); }

  void ClosePipe() {
    if (pipe >= 0) close(pipe);
    pipe = -1;
  }

  void Send(int signal) const { kill(process, signal); }

  // The most memory that was resident so far, in KiB.
  int64_t PeakMemory() const {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("VmHWM:")) return std::stoll(line.substr(6));
    }
    return -1;
  }

  // As the shell gives it: 128 and the signal's number for a program that a signal ended.
  int Status() const {
    int status = 0;
    waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  std::string Errors() const {
    const Bytes bytes = work.Read("errors");
    return std::string(bytes.begin(), bytes.end());
  }

 private:
  const Folder& work;
  pid_t process = -1;
  int pipe = -1;
};

// A picture that is larger than what a pipe holds.
void WriteLargeCut(const Folder& folder) {
  const std::unique_ptr<Cut> cut = MakeCut(640, 480, {""});
  AssignString(&cut->path, folder.Path("a.cut").c_str());
  ASSERT_TRUE(cut->SaveToPath());
}

class Interruption : public ConsoleOutput, public testing::WithParamInterface<int> {};

TEST_P(Interruption, NamesTheFileThatIsWritten) {
  WriteLargeCut(folder);
  const HalfWritten run(folder, "view a.cut 1 pipe");
  run.Send(GetParam());
  EXPECT_EQ(run.Status(), 128 + GetParam());
  EXPECT_EQ(run.Errors(), "sorvel: pipe: interrupted\n");
}

TEST_P(Interruption, LeavesNothingHalf) {
  WriteLargeCut(folder);
  ASSERT_EQ(folder.Sorvel({"compile", "a.cut", "a.ca"}).status, 0);
  folder.MakeFolder("out");
  ASSERT_EQ(symlink("../pipe", folder.Path("out/tick-00000.pgm").c_str()), 0);
  const HalfWritten run(folder, "play a.ca out --ticks 1");
  run.Send(GetParam());
  EXPECT_EQ(run.Status(), 128 + GetParam());
  EXPECT_EQ(run.Errors(), "sorvel: out/tick-00000.pgm: interrupted\n");
  EXPECT_EQ(folder.List(), "a.ca a.cut errors out out/tick-00000.pgm pipe");
}

INSTANTIATE_TEST_SUITE_P(Signals, Interruption, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(ConsoleOutput, IgnoredInterruptionStaysIgnored) {
  WriteLargeCut(folder);
  HalfWritten run(folder, "view a.cut 1 pipe", SIGHUP);
  run.Send(SIGHUP);
  run.Send(SIGINT);
  EXPECT_EQ(run.Status(), 128 + SIGINT);
}

TEST_F(ConsoleOutput, ClosedPipeIsAFailureThatNamesIt) {
  WriteLargeCut(folder);
  HalfWritten run(folder, "view a.cut 1 pipe");
  run.ClosePipe();
  EXPECT_EQ(run.Status(), 1);
  EXPECT_EQ(run.Errors(), "sorvel: pipe: Broken pipe\n");
}

TEST_F(ConsoleOutput, FileBeyondTheLimitIsAFailureThatNamesIt) {
  WriteLargeCut(folder);
  folder.Write("out.bmp", Bytes{1, 2, 3});
  const std::string command = "cd '" + folder.Path("") + "' && ulimit -f 20 && " + Program();
  EXPECT_EQ(Shell(command + "view a.cut 1 out.bmp 2> errors"), 1);
  EXPECT_EQ(folder.Read("errors"), Part(Text("sorvel: out.bmp: File too large\n"), 0, 32));
  EXPECT_EQ(folder.Read("out.bmp"), (Bytes{1, 2, 3}));
}

TEST_F(ConsoleOutput, FilmThatCanNotBeWrittenIsNamedAndNotItsCut) {
  WriteFilm(folder);
  ASSERT_EQ(symlink("/dev/full", folder.Path("f.sv").c_str()), 0);
  const Answer run = folder.Sorvel({"export", "f.flm", "f.sv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "sorvel: f.sv: No space left on device\n");
}

TEST_F(ConsoleOutput, MessagesShowTwoHundredBytesOfInput) {
  const std::string longWord(1000, 'x');
  const std::string shown = std::string(100, 'x') + "..." + std::string(100, 'x');
  EXPECT_EQ(folder.Sorvel({longWord}).err, "sorvel: no command " + shown + "; see sorvel --help\n");
  EXPECT_EQ(folder.Sorvel({"info", longWord}).err, "sorvel: " + shown + ": not a file of this program by its name\n");
  const std::string name(150, 'n');
  folder.Write(name, Bytes(1000, 'x'));
  EXPECT_EQ(folder.Sorvel({"run", name}).err.size(), 200 + std::string("...:1: ...\n").size());
}

TEST_F(ConsoleOutput, MessagesEscapeWhatIsNoText) {
  EXPECT_EQ(folder.Sorvel({"a\nb\x1B[2J\x7F\xFFé\xC2\x85表\xE8\xA1"}).err,
            "sorvel: no command a\\x0Ab\\x1B[2J\\x7F\\xFFé\\xC2\\x85表\\xE8\\xA1; see sorvel --help\n");
  EXPECT_EQ(folder.Sorvel({"resave", "a\tb", "c"}).err, "sorvel: a\\x09b: not a cut, layer or film file by its name\n");
}

// In KiB. The sanitizers' own memory counts too, unless the program under test is another one.
int64_t MostMemory() {
#ifdef SORVEL_SANITIZED
  if (std::getenv("SORVEL_PROGRAM_UNDER_TEST") == nullptr) return 512 << 10;
#endif
  return 64 << 10;
}

// Files of a few bytes that claim pictures of more than 2^30 pixels.
class HugeClaim : public ConsoleOutput, public testing::WithParamInterface<const char*> {
 protected:
  HugeClaim() {
    const Bytes size = Join({Le16(32767), Le16(32767)});
    const Bytes head = Join({Text("Sorvelin Cut"), size, size, {24}, Text(""), {0, 0}});
    folder.Write("a.cut", Join({head, Le16(0)}));
    folder.Write("b.cut", Join({head, Le16(1), FrameRecordBytes(0, 0, 1, 1, 50, "", {})}));
    folder.Write("c.lyr", Join({Text("Sorvelin Layer"), Text("A"), Le16(65535), Le16(32767), {0}, Le16(0)}));
    folder.Write("d.lyr", Join({Text("Sorvelin Layer"), Text("A"), Le16(32767), Le16(51000), {0}, Le16(1), Bytes(49)}));
  }
};

TEST_P(HugeClaim, OpensInLittleMemory) {
  const std::string script =
      std::string("open ") + GetParam() + "\nmouse move 200 200\nmouse move 300 300\n" + "command 40036\nscreen pipe\n";
  folder.Write("script", Part(Text(script), 0, script.size()));
  const HalfWritten run(folder, "run script --settings none.ini");
  EXPECT_LT(run.PeakMemory(), MostMemory());
  EXPECT_GT(run.PeakMemory(), 0);
  run.Send(SIGTERM);
  EXPECT_EQ(run.Status(), 128 + SIGTERM);
}

INSTANTIATE_TEST_SUITE_P(Files, HugeClaim, testing::Values("a.cut", "b.cut", "c.lyr", "d.lyr"));

TEST_F(HugeClaim, HasTheStateOfAnyOtherEmptyCut) {
  const std::string script = "open b.cut\nstate s.json\nscreen pipe\n";
  folder.Write("script", Part(Text(script), 0, script.size()));
  const HalfWritten run(folder, "run script --settings none.ini");
  EXPECT_LT(run.PeakMemory(), MostMemory());
  run.Send(SIGTERM);
  EXPECT_EQ(run.Status(), 128 + SIGTERM);
  // The checksum of 32768 times 32767 zero bytes.
  const Bytes state = folder.Read("s.json");
  EXPECT_NE(std::string(state.begin(), state.end()).find("\"view\":\"610d60a8\""), std::string::npos);
}

}  // namespace
}  // namespace sorvel
