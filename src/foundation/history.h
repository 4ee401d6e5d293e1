#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/replacement_file.h"
#include "platform/replacement.h"

// Earlier states of documents. What a program of ours replaces or removes is kept in a hidden folder `.sorvel` beside
// the document, in a folder of the document's name: as a hard link or by a rename, so that it costs neither time nor
// room until the document changes. Where that folder can't be made, and for documents without a path, the place is
// the user's data folder. The setting "backups" says how many are kept of each document, oldest first out; with 0
// nothing is kept but what is damaged or foreign.
//
// Paths are UTF-8; links are followed.
namespace sorvel {

// Why a generation was kept.
enum class GenerationKind {
  kSaved,    // a later save replaced it
  kDeleted,  // its file was deleted
  kRenamed,  // its file got another name
  kUnsaved,  // a drawing that was closed, or left by a program that ended, without being saved
  kDamaged,  // its file was found damaged when it was opened; never counted, and never removed
  kForeign,  // another program had changed the file
};

struct Generation {
  GenerationKind kind;
  std::string path;
  int64_t time;   // when its contents were written, in seconds since 1970
  int64_t bytes;  // its length
};

// The word for a kind in lists: "saved", "deleted" and so on.
const char* NameOfKind(GenerationKind kind);

// What is kept of a document, newest first. The document itself needn't exist any more. An empty path stands for all
// documents that never had one. If a part of the history can't be read, it isn't listed, and `problem`, which may be
// null, receives the value of errno that tells why.
std::vector<Generation> ListGenerations(const std::string& path, int* problem = nullptr);

// Puts the contents of a generation in the place of a file, whose own state is kept first. Gives 0, or the value of
// errno that tells why not; the file is then as it was.
int RestoreGeneration(const Generation& generation, const std::string& to);

// Keeps contents that were never a file of that path. `extension`, without a dot, is needed for an empty path only.
// True also if the history is switched off.
bool KeepUnsaved(const std::string& path, const std::string& extension, ByteStream* contents);

// Delete or rename a file and keep what stood under its name. False, with the file untouched, if that fails; renaming
// also if there is a file of the new name.
bool DeleteDocument(const std::string& path);
bool RenameDocument(const std::string& path, const std::string& newPath);

// What the owner of a document knows of its file. It tells a save whether the file is still what was read or written
// last.
class KnownFile {
 public:
  // What is to be told after a save.
  enum class News {
    kNone,
    kWasDamaged,  // the file was damaged when it was opened
    kWasForeign,  // another program had changed it
  };

  // To be called before the document is read from this path.
  void Remember(const std::string& path);
  // The file turned out to be damaged: its state is kept by the first save over it.
  void MarkDamaged() { isDamaged = true; }
  // The file has another name now.
  void Rename(const std::string& path) { known = path; }

  // Commits contents that replace a document, see ReplacementFile::Commit(), and keeps what stood there.
  bool Commit(ReplacementFile* file);

  // Whether the document may lack parts that its file had, so that nothing of it may be thrown away as unused.
  bool IsDamaged() const { return isDamaged; }
  // What the last successful Commit() found.
  News LastNews() const { return news; }

 private:
  std::string known;  // path
  platform::FileFacts facts;
  bool isDamaged = false;
  bool isDamageKept = false;
  News news = News::kNone;
};

// Removes what programs that were killed left half written in the user's data folder. To be called at the start of a
// program.
void SweepDataHistory();

// Forgets which files this program has written itself, at which they don't count as changed by others.
void ForgetWrittenFiles();

// A path of the program, which is Shift JIS, as UTF-8; empty if it has no counterpart.
std::string Utf8Path(const char* path);

}  // namespace sorvel
