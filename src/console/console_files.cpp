#include "console/console_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <cinttypes>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "animation/stream_encoder.h"
#include "console/arguments.h"
#include "foundation/bitmap_head.h"
#include "platform/replacement.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

constexpr size_t kFileBuffer = 1 << 16;

// What an interruption names, as messages show it. The handler may come at any time, so the name that it may read isn't
// written to. The first name is that of the command's subject.
constexpr size_t kNameRoom = 4 * kMostEcho + 4;
char gNames[2][kNameRoom];
std::atomic<int> gName = 0;
std::atomic<bool> gWritesOutput = false;
std::atomic<bool> gHoldsInterrupts = false;
std::atomic<int> gHeldInterrupt = 0;
bool gHasProgress = false;

std::string ChangeInterruptName(const std::string& printable) {
  const int current = gName;
  std::string before = gNames[current];
  char* const next = gNames[1 - current];
  next[printable.copy(next, kNameRoom - 1)] = '\0';
  gName = 1 - current;
  return before;
}

// Only calls that are safe in a signal handler.
void OnInterrupt(int signal) {
  if (gHoldsInterrupts) {
    gHeldInterrupt = signal;
    return;
  }
  const char* const target = platform::RemovePartialFilesNow();
  constexpr char clear[] = "\r\033[K";
  constexpr char before[] = "sorvel: ";
  constexpr char after[] = ": interrupted\n";
  char line[sizeof(clear) + sizeof(before) + kNameRoom + sizeof(after)];
  size_t length = 0;
  const auto put = [&line, &length](const char* text, size_t count) {
    std::memcpy(line + length, text, count);
    length += count;
  };
  if (gHasProgress) put(clear, sizeof(clear) - 1);
  put(before, sizeof(before) - 1);
  if (target != nullptr && !gWritesOutput) {
    length += PutPrintable(target, std::strlen(target), kMostEcho, line + length);
  } else {
    const char* const name = gNames[gName];
    put(name, std::strlen(name));
  }
  put(after, sizeof(after) - 1);
  if (write(STDERR_FILENO, line, length) < 0) errno = 0;
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

std::string SystemProblem() {
  return std::strerror(errno);
}

// Opens a file and reads it by `read`. False, with the problem on standard error, if it can't be read or is damaged.
template <typename Load>
bool LoadDocument(const std::string& path, const Load& load) {
  InputFile file;
  std::string problem;
  LoadReport report;
  const bool isOpen = file.Open(path, &problem);
  const bool isLoaded = isOpen && load(file.Stream(), &report);
  // A read that fails looks like the end of the file.
  if (isOpen && std::ferror(file.File()) != 0) report.Note("can't be read");
  if (isLoaded && !report.IsDamaged()) return true;
  Fail(path, isOpen ? report.problem : problem);
  return false;
}

// Says what is wrong, if something is.
bool Check(const std::string& path, const char* problem) {
  if (problem != nullptr) Fail(path, problem);
  return problem == nullptr;
}

}  // namespace

void CatchInterrupts(const std::string& subject) {
  ChangeInterruptName(Printable(subject));
  gHasProgress = isatty(STDERR_FILENO) != 0;
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // What the program was told to ignore, as in the background, it ignores.
    if (std::signal(signal, OnInterrupt) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

HeldInterrupts::HeldInterrupts(const std::string& subject) : nameBefore(ChangeInterruptName(Printable(subject))) {
  gHoldsInterrupts = true;
}

HeldInterrupts::~HeldInterrupts() {
  ChangeInterruptName(nameBefore);
  gHoldsInterrupts = false;
}

bool HeldInterrupts::HasCome() const {
  return gHeldInterrupt != 0;
}

void HeldInterrupts::EndInterrupted() const {
  if (!HasCome()) return;
  gHoldsInterrupts = false;
  std::raise(gHeldInterrupt);
}

InputFile::~InputFile() {
  stream.Close();
}

bool InputFile::Open(const std::string& path, std::string* problem) {
  FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    *problem = SystemProblem();
    return false;
  }
  stream.file = file;
  struct stat status = {};
  if (fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode)) {
    *problem = "not a plain file";
    return false;
  }
  if (status.st_size > INT32_MAX) {
    *problem = "larger than 2 GiB";
    return false;
  }
  std::setvbuf(file, nullptr, _IOFBF, kFileBuffer);
  return true;
}

OutputFile::~OutputFile() {
  if (nameBefore.empty()) return;
  ChangeInterruptName(nameBefore);
  gWritesOutput = false;
}

bool OutputFile::Open(const std::string& path, std::string* problem) {
  nameBefore = ChangeInterruptName(Printable(path));
  gWritesOutput = true;
  if (file.OpenUtf8(path)) return true;
  *problem = std::strerror(file.errorNumber());
  return false;
}

bool OutputFile::HasFailed(std::string* problem) const {
  if (file.stream.failure == 0) return false;
  *problem = std::strerror(file.stream.failure);
  return true;
}

bool OutputFile::Commit(std::string* problem) {
  if (std::fseek(file.stream.file, 0, SEEK_END) == 0 && std::ftell(file.stream.file) > INT32_MAX) {
    *problem = "would be larger than 2 GiB";
    return false;
  }
  const FileKind kind = KindOf(file.Path());
  const bool isDocument = kind == FileKind::kCut || kind == FileKind::kLayer || kind == FileKind::kFilm;
  if (isDocument ? KnownFile().Commit(&file) : file.Commit()) return true;
  *problem = file.errorNumber() != 0 ? std::strerror(file.errorNumber()) : "can't be written";
  return false;
}

std::string StemOf(const std::string& path) {
  return std::filesystem::path(path).stem().string();
}

std::string ExtensionOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& byte : extension) byte = static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
  return extension;
}

FileKind KindOf(const std::string& path) {
  const std::string extension = ExtensionOf(path);
  if (extension == ".cut") return FileKind::kCut;
  if (extension == ".lyr") return FileKind::kLayer;
  if (extension == ".flm") return FileKind::kFilm;
  if (extension == ".ca" || extension == ".sv") return FileKind::kStream;
  return FileKind::kUnknown;
}

std::string FullPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(path, error);
  return error ? path : full.lexically_normal().string();
}

bool LoadCut(const std::string& path, Cut* cut) {
  return LoadDocument(path,
                      [cut](ByteStream* stream, LoadReport* report) { return cut->Load(stream, nullptr, report); });
}

bool LoadLayer(const std::string& path, Cut* cut) {
  cut->AddFrame();
  return LoadDocument(path, [cut](ByteStream* stream, LoadReport* report) { return cut->LoadLayer(stream, report); });
}

bool LoadFilm(const std::string& path, Film* film) {
  std::string problem;
  {
    InputFile file;
    if (!file.Open(path, &problem)) {
      Fail(path, problem);
      return false;
    }
  }
  std::string text;
  if (!platform::Utf8ToShiftJis(FullPath(path), &text)) {
    Fail(path, "the path has letters that Shift JIS can't express");
    return false;
  }
  LoadReport report;
  if (film->Load(text.c_str(), '/', &report) && !report.IsDamaged()) return true;
  Fail(path, report.problem);
  return false;
}

bool CheckCanvas(const std::string& path, const Cut& cut) {
  return Check(path, CanvasProblem(cut));
}

bool CheckFrame(const std::string& path, const Cut& cut) {
  return Check(path, FrameProblem(cut));
}

void WriteIndexedBitmap(ByteStream* stream, const CellImage& image, const std::array<ColorEntry, kColorCount>& colors) {
  WriteBitmapHeads(*stream, {image.width, image.height, 8, 0, kColorCount}, image.ByteCount());
  for (const ColorEntry& color : colors) WriteField(*stream, color.blue | color.green << 8 | color.red << 16, 4);
  for (int32_t y = image.height - 1; y >= 0; --y) stream->Write(image.bits + y * image.pitch, image.pitch);
}

void ShowProgress(const char* what, int64_t done, int64_t total) {
  if (isatty(STDERR_FILENO) == 0) return;
  std::fprintf(stderr, "\r%s %lld of %lld\033[K", what, static_cast<long long>(done), static_cast<long long>(total));
}

void TimedProgress::Show(int64_t done, int64_t total) {
  constexpr auto kPause = std::chrono::milliseconds(100);
  const auto now = std::chrono::steady_clock::now();
  if (isatty(STDERR_FILENO) == 0 || (now - shown < kPause && done < total)) return;
  shown = now;
  const double seconds = std::chrono::duration<double>(now - start).count();
  char left[48] = "";
  if (seconds >= 1 && done > 0) {
    const int64_t rest = std::llround(seconds * static_cast<double>(total - done) / static_cast<double>(done));
    std::snprintf(left, sizeof(left), ", %" PRId64 ":%02" PRId64 " left", rest / 60, rest % 60);
  }
  std::fprintf(stderr, "\r%s %" PRId64 " of %" PRId64 ", %" PRId64 "%%%s\033[K", what, done, total,
               total > 0 ? done * 100 / total : 100, left);
}

void ClearProgress() {
  if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r\033[K");
}

}  // namespace sorvel::console
