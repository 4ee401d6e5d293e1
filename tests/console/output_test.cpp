// What becomes of the files that the console program writes.

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <string>

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

}  // namespace
}  // namespace sorvel
