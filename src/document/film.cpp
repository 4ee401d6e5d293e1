#include "document/film.h"

#include <cstring>

namespace sorvel {

Film::~Film() {
  Reset();
}

FilmEntry Film::MakeEntry(Cut* cut, const char* name) {
  FilmEntry entry;
  entry.cut = cut;
  entry.name = EmptyString;
  AssignString(&entry.name, name);
  return entry;
}

bool Film::AddCut(Cut* cut, int32_t position) {
  if (cut->path[0] == '\0') return false;
  if (!cuts.Seek(position)) cuts.SeekLast();
  cuts.InsertAfter(MakeEntry(cut, cut->path));
  modified = 1;
  return true;
}

bool Film::InsertCut(Cut* cut, int32_t position) {
  if (cut->path[0] == '\0') return false;
  if (!cuts.Seek(position)) cuts.SeekFirst();
  cuts.InsertBefore(MakeEntry(cut, cut->path));
  modified = 1;
  return true;
}

void Film::AddEntry(const char* name) {
  cuts.SeekLast();
  cuts.InsertAfter(MakeEntry(nullptr, name));
}

bool Film::RemoveCut(int32_t index) {
  if (!cuts.Seek(index)) return false;
  AssignString(&cuts.CurrentSlot()->name, "");
  cuts.RemoveCurrent();
  modified = 1;
  return true;
}

const char* Film::CutName(int32_t index) {
  const char* name = cuts.At(index).name;
  return name != nullptr ? name : EmptyString;
}

int32_t Film::FindCut(const Cut* cut) {
  if (cut == nullptr || !cuts.SeekFirst()) return -1;
  do {
    if (cuts.Current().cut == cut) return cuts.CursorIndex();
  } while (cuts.SeekNext());
  return -1;
}

void Film::CutOpened(Cut* cut) {
  if (!cuts.SeekFirst()) return;
  do {
    FilmEntry* entry = cuts.CurrentSlot();
    if (std::strcmp(entry->name, cut->path) == 0) entry->cut = cut;
  } while (cuts.SeekNext());
}

void Film::CutClosed(const Cut* cut) {
  if (!cuts.SeekFirst()) return;
  do {
    FilmEntry* entry = cuts.CurrentSlot();
    if (entry->cut == cut) entry->cut = nullptr;
  } while (cuts.SeekNext());
}

void Film::RenameCut(int32_t index, const char* newName) {
  if (newName == nullptr || !cuts.Seek(index)) return;
  char* oldName = EmptyString;
  AssignString(&oldName, cuts.Current().name);
  cuts.SeekFirst();
  do {
    FilmEntry* entry = cuts.CurrentSlot();
    if (std::strcmp(entry->name, oldName) == 0) AssignString(&entry->name, newName);
  } while (cuts.SeekNext());
  AssignString(&oldName, "");
  modified = 1;
}

bool Film::Reset() {
  while (cuts.SeekLast()) {
    AssignString(&cuts.CurrentSlot()->name, "");
    cuts.RemoveCurrent();
  }
  AssignString(&title, "");
  AssignString(&author, "");
  AssignString(&path, "");
  modified = 0;
  return true;
}

}  // namespace sorvel
