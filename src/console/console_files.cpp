#include "console/console_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "animation/stream_encoder.h"
#include "console/arguments.h"
#include "platform/text.h"

namespace sorvel::console {

namespace {

constexpr size_t kFileBuffer = 1 << 16;

volatile std::sig_atomic_t interrupted = 0;

void OnInterrupt(int signal) {
  // A second one ends the program at once.
  std::signal(signal, SIG_DFL);
  interrupted = 1;
}

std::string SystemProblem() {
  return std::strerror(errno);
}

}  // namespace

bool WasInterrupted() {
  return interrupted != 0;
}

void CatchInterrupts() {
  std::signal(SIGINT, OnInterrupt);
  std::signal(SIGTERM, OnInterrupt);
  std::signal(SIGHUP, OnInterrupt);
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
  Discard();
}

void OutputFile::Discard() {
  stream.Close();
  if (!partial.empty()) std::remove(partial.c_str());
  partial.clear();
}

bool OutputFile::Open(const std::string& path, std::string* problem) {
  target = path;
  struct stat status = {};
  const bool exists = stat(path.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) {
    *problem = std::strerror(EISDIR);
    return false;
  }
  if (exists && !S_ISREG(status.st_mode)) {
    stream.file = std::fopen(path.c_str(), "wb+");
  } else {
    if (exists) {
      // The file itself is replaced, and not a link that leads to it.
      char* resolved = realpath(path.c_str(), nullptr);
      if (resolved != nullptr) target = resolved;
      std::free(resolved);
    }
    partial = target + ".XXXXXX";
    const int descriptor = mkstemp(partial.data());
    if (descriptor >= 0) {
      const mode_t mask = umask(0);
      umask(mask);
      const mode_t mode = exists ? status.st_mode & 07777 : 0666 & ~mask;
      if (fchmod(descriptor, mode) != 0) errno = 0;
      stream.file = fdopen(descriptor, "wb+");
    } else {
      partial.clear();
    }
  }
  if (stream.file == nullptr) {
    *problem = SystemProblem();
    return false;
  }
  std::setvbuf(stream.file, nullptr, _IOFBF, kFileBuffer);
  return true;
}

bool OutputFile::Commit(std::string* problem) {
  if (WasInterrupted()) {
    *problem = "interrupted";
    return false;
  }
  errno = 0;
  const bool written = std::ferror(stream.file) == 0 && std::fflush(stream.file) == 0;
  const bool closed = stream.Close();
  if (!written || !closed || (!partial.empty() && std::rename(partial.c_str(), target.c_str()) != 0)) {
    *problem = errno != 0 ? SystemProblem() : "can't be written";
    return false;
  }
  partial.clear();
  return true;
}

FileKind KindOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& byte : extension) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
  if (extension == ".CUT") return FileKind::kCut;
  if (extension == ".LYR") return FileKind::kLayer;
  if (extension == ".FLM") return FileKind::kFilm;
  if (extension == ".CA" || extension == ".SV") return FileKind::kStream;
  return FileKind::kUnknown;
}

std::string FullPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(path, error);
  return error ? path : full.lexically_normal().string();
}

bool ProgramText(const std::string& utf8, std::string* text) {
  return platform::Utf8ToShiftJis(utf8, text);
}

bool LoadCut(const std::string& path, Cut* cut) {
  InputFile file;
  std::string problem;
  LoadReport report;
  if (!file.Open(path, &problem)) {
    Fail(path, problem);
    return false;
  }
  if (cut->Load(file.Stream(), nullptr, &report) && !report.IsDamaged()) return true;
  Fail(path, report.problem);
  return false;
}

bool LoadLayer(const std::string& path, Cut* cut) {
  InputFile file;
  std::string problem;
  LoadReport report;
  if (!file.Open(path, &problem)) {
    Fail(path, problem);
    return false;
  }
  cut->AddFrame();
  if (cut->LoadLayer(file.Stream(), &report) && !report.IsDamaged()) return true;
  Fail(path, report.problem);
  return false;
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
  if (!ProgramText(FullPath(path), &text)) {
    Fail(path, "the path has letters that Shift JIS can't express");
    return false;
  }
  LoadReport report;
  if (film->Load(text.c_str(), '/', &report) && !report.IsDamaged()) return true;
  Fail(path, report.problem);
  return false;
}

bool CheckCanvas(const std::string& path, const Cut& cut) {
  const char* problem = CanvasProblem(cut);
  if (problem != nullptr) Fail(path, problem);
  return problem == nullptr;
}

void WriteIndexedBitmap(ByteStream* stream, const CellImage& image, const ColorEntry (&colors)[kColorCount]) {
  constexpr int32_t headBytes = 14;
  constexpr int32_t infoBytes = 40;
  constexpr int32_t pixelOffset = headBytes + infoBytes + kColorCount * 4;
  WriteField(*stream, 'B' | 'M' << 8, 2);
  WriteField(*stream, pixelOffset + image.ByteCount(), 4);
  WriteField(*stream, 0, 4);
  WriteField(*stream, pixelOffset, 4);
  WriteField(*stream, infoBytes, 4);
  WriteField(*stream, image.width, 4);
  WriteField(*stream, image.height, 4);
  WriteField(*stream, 1, 2);                                  // planes
  WriteField(*stream, 8, 2);                                  // bits per pixel
  for (int32_t i = 0; i < 4; ++i) WriteField(*stream, 0, 4);  // compression, image size, resolutions
  WriteField(*stream, kColorCount, 4);
  WriteField(*stream, 0, 4);  // important colours
  for (const ColorEntry& color : colors) WriteField(*stream, color.blue | color.green << 8 | color.red << 16, 4);
  for (int32_t y = image.height - 1; y >= 0; --y) stream->Write(image.bits + y * image.pitch, image.pitch);
}

bool WritePortableMap(FILE* file, int32_t width, int32_t height, int32_t channels, const uint8_t* pixels) {
  std::fprintf(file, "P%d\n%d %d\n255\n", channels == 1 ? 5 : 6, width, height);
  const size_t size = static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(channels);
  return size == 0 || std::fwrite(pixels, size, 1, file) == 1;
}

void ShowProgress(const char* what, int64_t done, int64_t total) {
  if (isatty(STDERR_FILENO) == 0) return;
  std::fprintf(stderr, "\r%s %lld of %lld\033[K", what, static_cast<long long>(done), static_cast<long long>(total));
}

void ClearProgress() {
  if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r\033[K");
}

}  // namespace sorvel::console
