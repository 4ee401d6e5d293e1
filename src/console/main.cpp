#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "console/commands.h"
#include "console/console_files.h"
#include "foundation/history.h"
#include "foundation/job_line.h"
#include "foundation/replacement_file.h"
#include "imaging/color_table.h"
#include "platform/memory.h"

namespace sorvel::console {

namespace {

struct Command {
  const char* name;
  const char* usage;
  const char* summary;
  const char* details;  // may be empty
  std::initializer_list<Option> options;
  size_t fewestWords;
  size_t mostWords;
  int (*run)(const Arguments& arguments);
};

// Of commands whose work is shared by threads.
constexpr Option kThreads = {"--threads", "a number"};
constexpr char kThreadsHelp[] =
    "  --threads N  work on at most N threads, 1 to 64; by default on as many as there are cores\n";

const Command kCommands[] = {
    {"info", "info FILE", "what a .cut, .lyr, .flm, .ca or .sv file holds, as JSON", "", {kThreads}, 1, 1, RunInfo},
    {"resave", "resave IN OUT", "loads a .cut, .lyr or .flm file and saves it again", "", {kThreads}, 2, 2, RunResave},
    {"compile",
     "compile IN.cut OUT.ca [--first N] [--last N]",
     "compiles frames of a cut into a stream that plays",
     "  --first N  the first frame, counted from 1; 1 by default\n"
     "  --last N   the last frame; the cut's last by default\n",
     {{"--first", "a number"}, {"--last", "a number"}, kThreads},
     2,
     2,
     RunCompile},
    {"export",
     "export FILM.flm OUT.sv",
     "writes all cuts of a film as one playback file",
     "A whole compiled stream (.ca) beside a cut is used as it is; where there is none it is made.\n",
     {kThreads},
     2,
     2,
     RunExport},
    {"frame",
     "frame IN.cut N OUT.bmp",
     "frame N, from 1, as the player shows it, as a 4-bit bitmap file",
     "",
     {kThreads},
     3,
     3,
     RunFrame},
    {"view",
     "view IN.cut N OUT.bmp [OPTION]...",
     "frame N, from 1, as the editor shows it, as an 8-bit bitmap file",
     "  --record R           the record under edit, from 0, the bottom one\n"
     "  --onion-previous     the cell before the current one shows through\n"
     "  --onion-next         the cell after it does\n"
     "  --current-cell-only  only the current cell\n"
     "  --dim-others         other layers pale, the current one on top\n"
     "  --draw-limit L       only the lowest L records, 0 to 63; 0 is all\n",
     {{"--record", "a number"},
      {"--onion-previous", nullptr},
      {"--onion-next", nullptr},
      {"--current-cell-only", nullptr},
      {"--dim-others", nullptr},
      {"--draw-limit", "a number"},
      kThreads},
     3,
     3,
     RunView},
    {"play",
     "play IN.ca|IN.sv OUTDIR --ticks N",
     "plays N ticks without a timer, into pictures and a log",
     "OUTDIR/ticks.jsonl gets a line for each tick, OUTDIR/tick-00000.pgm and so on the pictures.\n",
     {{"--ticks", "a number"}},
     2,
     2,
     RunPlay},
    {"render",
     "render SOURCE OUT [OPTION]...",
     "writes a film as pictures or video",
     "SOURCE is a film list (.flm), a cut (.cut), a compiled cut (.ca) or a film container (.sv). OUT says what is "
     "written:\n"
     "  OUT.png   an animated PNG                        OUT.mkv  video FFV1, without loss\n"
     "  OUT.gif   an animated GIF                        OUT.y4m  raw pictures for other programs\n"
     "  OUT.mp4   video H.264, which plays everywhere    -        the same on standard output\n"
     "  OUT.webm  video VP9\n"
     "  OUT       a new or empty folder: numbered PNGs and durations.txt, which ffmpeg reads as a list of them "
     "(ffconcat)\n"
     "Each tick lasts 1/fps second of its cut. Pictures that stay the same are written once with a longer time, but "
     "raw\n"
     "ones, which have the common multiple of the rates. The time of a GIF counts in 1/100 s, and viewers slow down "
     "what\n"
     "changes more often than 50 times a second. A video H.264 has an even size; the last column or row of an odd one "
     "is\n"
     "doubled.\n"
     "  --ticks A-B  only the ticks A to B, from 0\n"
     "  --scale N    each pixel as N by N, 1 to 32\n"
     "  --loop N     how often the film plays: PNG and GIF repeat without end by default, which is 0; the others hold "
     "the\n"
     "               film N times, by default once\n"
     "  --fps N      N pictures a second, 1 to 1000, each of them what the film shows when it begins\n",
     {{"--ticks", "two numbers A-B"}, {"--scale", "a number"}, {"--loop", "a number"}, {"--fps", "a number"}, kThreads},
     2,
     2,
     RunRender},
    {"web",
     "web SOURCE OUT.html [--linked]",
     "writes a page that plays a film in any browser",
     "SOURCE is a film list (.flm), a cut (.cut), a compiled cut (.ca) or a film container (.sv). The page holds all "
     "it\n"
     "needs and asks nothing of the network.\n"
     "  --linked  leaves the film beside the page, as OUT.sv, from where the page fetches it as it plays; both belong\n"
     "            on a web server\n",
     {{"--linked", nullptr}, kThreads},
     2,
     2,
     RunWeb},
    {"import",
     "import OUT.cut [OPTION]... IMAGE...",
     "makes a cut of scanned or rendered drawings, one frame for each",
     "IMAGE is a BMP, PNG, PGM or PPM file. Equal pictures share a cell.\n"
     "  --fps N               frames a second, 1 to 127; 24 by default\n"
     "  --width W --height H  the canvas; by default the size of the first picture\n"
     "  --antialias 0|1|2     output at full size, 1/2 or 1/4; 0 by default\n"
     "  --hold N              how long each frame stands, in 1/fps second; 1 by default\n"
     "  --transparent RRGGBB  a colour that becomes transparent\n",
     {{"--fps", "a number"},
      {"--width", "a number"},
      {"--height", "a number"},
      {"--antialias", "0, 1 or 2"},
      {"--hold", "a number"},
      {"--transparent", "a colour RRGGBB"},
      kThreads},
     2,
     kAnyNumber,
     RunImport},
    {"history",
     "history FILE [--restore N] [--to OUT]",
     "lists the earlier states of a document, newest first, or brings one back",
     "Each line has a number, the time of the state, its bytes, and why it was kept, separated by tabs.\n"
     "  --restore N  puts state N in the place of FILE, whose present state is kept first\n"
     "  --to OUT     puts it there instead\n",
     {{"--restore", "a number"}, {"--to", "a file"}},
     1,
     1,
     RunHistory},
    {"sheet",
     "sheet FILE.cut OUT | sheet IN.xdts FILE.cut",
     "writes the time sheet of a cut, or takes timing over into a cut",
     "OUT is an .html or .svg file, pages of A4 to print for the wall; a .csv table; or an .xdts file, which hands "
     "the\n"
     "timing to other programs of the trade. From an .xdts file the cut takes the exposures, blanks and times of the\n"
     "layers of those names. All else of it stays; layers and cells that it lacks are made, blank. If there is no\n"
     "FILE.cut it becomes a new cut of 240 by 180 at 24 frames a second.\n",
     {kThreads},
     2,
     2,
     RunSheet},
    {"run",
     "run SCRIPT [--settings FILE] [--recovery FOLDER]",
     "drives the whole application from a script",
     "SCRIPT is UTF-8 text with an action a line; without the action \"exit\" the settings stay as they are.\n"
     "  --settings FILE    the settings file; by default the one beside the program\n"
     "  --recovery FOLDER  keeps what isn't saved there, for the next run, until the script ends with \"exit\"; opens\n"
     "                     first what an earlier run left\n",
     {{"--settings", "a file"}, {"--recovery", "a folder"}, kThreads},
     1,
     1,
     RunRun},
};

void PrintOverview() {
  std::printf("Sorvel Developer without a window system: a production tool for hand-drawn limited animation.\n\n");
  for (const Command& command : kCommands) std::printf("  sorvel %s\n      %s\n", command.usage, command.summary);
  std::printf(
      "\nsorvel COMMAND --help tells more of a command; sorvel --version gives the version.\n"
      "Exit status: 0 done, 1 the work failed, 2 wrong usage, 3 a script line that can't be carried out.\n");
}

void PrintHelp(const Command& command) {
  std::printf("sorvel %s\n\n%s.\n", command.usage, command.summary);
  const bool isShared = std::any_of(command.options.begin(), command.options.end(),
                                    [](const Option& option) { return option.name == kThreads.name; });
  if (command.details[0] != '\0' || isShared) std::printf("\n%s%s", command.details, isShared ? kThreadsHelp : "");
}

int RunCommand(const Command& command, int count, char** words) {
  for (int i = 0; i < count; ++i) {
    if (std::strcmp(words[i], "--") == 0) break;
    if (std::strcmp(words[i], "--help") != 0) continue;
    PrintHelp(command);
    return FinishPrinting();
  }
  Arguments arguments;
  if (!arguments.Parse(count, words, command.options, command.fewestWords, command.mostWords)) {
    return FailUsage(std::string(command.name) + ": " + arguments.Problem() + "; usage: sorvel " + command.usage);
  }
  int32_t threads = 0;
  if (!NumberOption(arguments, kThreads.name, 1, kMostThreads, &threads)) return kUsage;
  SetThreadCount(threads);
  CatchInterrupts(arguments.Plain()[0]);
  FinishInterruptedWrites();
  SweepDataHistory();
  LoadColors(nullptr);
  return command.run(arguments);
}

}  // namespace

int Main(int argc, char** argv) {
  platform::KeepFreedMemory();
  const char* word = argc > 1 ? argv[1] : "";
  if (std::strcmp(word, "--help") == 0) {
    PrintOverview();
    return FinishPrinting();
  }
  if (std::strcmp(word, "--version") == 0) {
    std::printf("sorvel %s\n", SORVEL_VERSION);
    return FinishPrinting();
  }
  for (const Command& command : kCommands) {
    if (std::strcmp(word, command.name) == 0) return RunCommand(command, argc - 2, argv + 2);
  }
  return FailUsage(word[0] == '\0' ? std::string("a command is missing; see sorvel --help")
                                   : std::string("no command ") + Printable(word) + "; see sorvel --help");
}

}  // namespace sorvel::console
