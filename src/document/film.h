#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "document/cut.h"
#include "document/load_report.h"
#include "foundation/cursor_list.h"
#include "foundation/history.h"
#include "foundation/replacement_file.h"
#include "foundation/shared_string.h"

namespace sorvel {

// One place in the running order. The name, not the entry, is the identity of a cut: a reused cut is a second entry
// with the same name.
struct FilmEntry {
  Cut* cut = nullptr;    // the open cut, not owned; null when it isn't open
  char* name = nullptr;  // full path of the cut's file; a shared-empty string in every entry of a film

  bool operator==(const FilmEntry&) const = default;
};

// The running order of a production: paths of cut files, with a title, an author and an output size.
class Film {
 public:
  Film() = default;
  Film(const Film&) = delete;
  Film& operator=(const Film&) = delete;
  ~Film();

  // Put an entry for the cut behind, or ahead of, `position`; a bad position means behind the last, or ahead of the
  // first. False, with nothing added, for a cut without a path. The list's cursor is left on the new entry.
  bool AddCut(Cut* cut, int32_t position);
  bool InsertCut(Cut* cut, int32_t position);
  // Puts an entry for a cut that isn't open behind all others, and marks nothing.
  void AddEntry(const char* name);
  // False for a bad index. The cut isn't closed.
  bool RemoveCut(int32_t index);
  // The path of an entry; the empty text for a bad index. The film owns it.
  const char* CutName(int32_t index);
  // The first entry whose open cut this is; -1 when there is none.
  int32_t FindCut(const Cut* cut);
  // Set or clear the open cut in all the entries of its path, or of this cut.
  void CutOpened(Cut* cut);
  void CutClosed(const Cut* cut);
  // Gives the entry, and all others of the same name, another name. Null does nothing.
  void RenameCut(int32_t index, const char* newName);
  // No entries, no title, author and path; the size stays. Always true.
  bool Reset();

  // Files. The separator is that of the platform's paths. Saving and loading make the file's path the film's own.
  // Each replaces the file as a whole, or gives false and leaves file, path and mark as they were. `problem`, which may
  // be null, receives the reason. Save() gives false without a path, and then leaves `problem` alone.
  bool Save(char separator, WriteProblem* problem = nullptr);
  bool SaveTo(const char* filePath, char separator, WriteProblem* problem = nullptr);
  // The lines ahead of the cuts.
  void WriteHead(FILE* file);
  // The text of the file that is to lie at this path; nothing of the film changes.
  bool WriteTo(FILE* file, const char* filePath, char separator);
  // The text that a save to the film's path would write; without one the cuts have full paths. False if it can't be
  // had.
  bool ReadText(char separator, std::string* text);
  // Adds what a film file says, read as if it lay at this path, which is empty for a text of a film without a path.
  void Read(FILE* file, const char* filePath, char separator, LoadReport* report);
  // Resets the film first, so a failed load leaves an empty one. The report says what is wrong with the file.
  bool Load(const char* filePath, char separator, LoadReport* report = nullptr);

  CursorList<FilmEntry> cuts;
  int32_t width = 320;
  int32_t height = 240;
  char* title = EmptyString;
  char* author = EmptyString;
  char* path = EmptyString;  // empty until saved or opened
  uint32_t modified = 0;
  KnownFile knownFile;  // what stood at `path` when it was read or written last

 private:
  static FilmEntry MakeEntry(Cut* cut, const char* name);
};

}  // namespace sorvel
