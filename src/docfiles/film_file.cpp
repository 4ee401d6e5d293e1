#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "document/film.h"
#include "foundation/paths.h"
#include "foundation/replacement_file.h"
#include "platform/files.h"

namespace sorvel {

namespace {

constexpr int32_t kLineLimit = 256;

// Reads a line without its end. A longer line is cut, and its rest is the next line. False at the end of the file.
bool ReadLine(FILE* file, char (&line)[kLineLimit]) {
  int32_t length = 0;
  while (length < kLineLimit) {
    const int byte = std::fgetc(file);
    if (byte == EOF || byte == '\n') {
      // Files have line ends of either kind.
      if (length > 0 && line[length - 1] == '\r') --length;
      line[length] = '\0';
      return byte != EOF;
    }
    line[length++] = static_cast<char>(byte);
  }
  line[kLineLimit - 1] = '\0';
  return true;
}

// The full path of a cut in a film file at this path. A film without a file names its cuts by full paths.
bool MakeFullPath(char (&name)[kPathCapacity], const char* line, const char* filePath, char separator) {
  if (filePath[0] != '\0') return MakeAbsolutePath(name, line, filePath, separator);
  const size_t length = std::strlen(line);
  if (length >= kPathCapacity) return false;
  std::replace_copy(line, line + length + 1, name, '/', separator);
  return true;
}

}  // namespace

bool Film::Save(char separator, WriteProblem* problem) {
  return path[0] != '\0' && SaveTo(path, separator, problem);
}

void Film::WriteHead(FILE* file) {
  std::fprintf(file, "%s\n%s\n%d, %d\n", title, author, width, height);
}

bool Film::WriteTo(FILE* file, const char* filePath, char separator) {
  WriteHead(file);
  for (int32_t i = 0; i < cuts.Count(); ++i) {
    char relative[kPathCapacity];
    if (!MakeRelativePath(relative, cuts.At(i).name, filePath, separator)) return false;
    std::fprintf(file, "%s\n", relative);
  }
  return std::ferror(file) == 0;
}

bool Film::ReadText(char separator, std::string* text) {
  FileStream stream(platform::OpenTemporaryFile());
  if (!stream.IsOpen()) return false;
  const int32_t cursor = cuts.CursorIndex();
  bool isRead = WriteTo(stream.file, path, separator);
  cuts.Seek(cursor);
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  isRead = isRead && ReadWholeStream(stream, &bytes, &size);
  stream.Close();
  if (isRead) text->assign(reinterpret_cast<const char*>(bytes.Data()), static_cast<size_t>(size));
  return isRead;
}

bool Film::SaveTo(const char* filePath, char separator, WriteProblem* problem) {
  ReplacementFile file;
  const bool isWritten = file.Open(filePath, ReplacementFile::Form::kText) &&
                         WriteTo(file.stream.file, filePath, separator) && knownFile.Commit(&file);
  if (problem != nullptr) *problem = isWritten ? WriteProblem::kNone : file.WhyNot();
  if (!isWritten) return false;
  AssignString(&path, filePath);
  modified = 0;
  return true;
}

void Film::Read(FILE* file, const char* filePath, char separator, LoadReport* report) {
  char line[kLineLimit];
  bool more = true;
  // Lines that the file doesn't have are empty.
  const auto readHeadLine = [&] {
    line[0] = '\0';
    if (more) more = ReadLine(file, line);
  };
  readHeadLine();
  AssignString(&title, line);
  readHeadLine();
  AssignString(&author, line);
  readHeadLine();
  int32_t fileWidth = width;
  int32_t fileHeight = height;
  if (std::sscanf(line, "%d, %d\n", &fileWidth, &fileHeight) == 2) {
    width = fileWidth;
    height = fileHeight;
  } else {
    NoteProblem(report, "line 3 does not give the width and the height");
    if (report != nullptr) report->isForeign = true;
  }
  int32_t number = 3;
  while (more) {
    more = ReadLine(file, line);
    ++number;
    if (line[0] == '\0') continue;
    char name[kPathCapacity];
    if (!MakeFullPath(name, line, filePath, separator)) {
      NoteProblem(report, "the path in line %lld is too long", number);
      continue;
    }
    if (name[0] == '\0') NoteProblem(report, "the path in line %lld leads above the root", number);
    cuts.InsertAfter(MakeEntry(nullptr, name));
  }
}

bool Film::Load(const char* filePath, char separator, LoadReport* report) {
  // Reset() frees the film's own path, which may be the one passed.
  char target[kPathCapacity];
  const bool fits = std::strlen(filePath) < sizeof(target);
  if (fits) std::strcpy(target, filePath);
  Reset();
  knownFile.Remember(fits ? Utf8Path(target) : "");
  LoadReport own;
  if (report == nullptr) report = &own;
  FILE* file = fits ? platform::OpenStdioFile(target, "r") : nullptr;
  if (file == nullptr) {
    NoteProblem(report, "can't be opened");
    return false;
  }
  Read(file, target, separator, report);
  std::fclose(file);
  if (report->IsDamaged()) knownFile.MarkDamaged();
  AssignString(&path, target);
  modified = 0;
  return true;
}

}  // namespace sorvel
