#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "foundation/byte_stream.h"

namespace sorvel {

// A document in a recovery folder.
struct LeftDocument {
  int32_t number;         // given by the program that kept it, in the order of opening
  std::string extension;  // "cut" or "flm"
  std::string path;       // of the document, as the program knows it; empty if it never had one
  std::string file;       // of its kept contents, UTF-8
};

// A folder in which a running program keeps what it hasn't saved, each document whole or not at all. The program holds
// a lock on it, which tells the folders of programs that ended, in whatever way, from those of programs that run.
// All folders lie in one store. Paths of folders are UTF-8.
class RecoveryFolder {
 public:
  RecoveryFolder() = default;
  RecoveryFolder(const RecoveryFolder&) = delete;
  RecoveryFolder& operator=(const RecoveryFolder&) = delete;
  RecoveryFolder(RecoveryFolder&& other) noexcept;
  RecoveryFolder& operator=(RecoveryFolder&& other) noexcept;
  ~RecoveryFolder() { Release(); }

  // Makes a folder of the program's own, and the store if there is none. False if that fails.
  bool Create(const std::string& store);
  // Takes over the folders that ended programs left; empty ones go.
  static std::vector<RecoveryFolder> TakeLeft(const std::string& store);

  bool IsOpen() const { return !path.empty(); }

  // Keeps a document, or its present state, and the path that it has. `write` writes the contents; false is a failure.
  // False leaves what was kept before.
  bool Keep(int32_t number, const char* extension, const std::string& documentPath,
            const std::function<bool(ByteStream* stream)>& write) const;
  void Remove(int32_t number, const char* extension) const;
  // In ascending order of their numbers.
  std::vector<LeftDocument> Documents() const;

  // Removes the folder with all that is in it, or leaves it to the next start. The object is then closed.
  void Destroy();
  void Release();

 private:
  bool Lock(const std::string& folder);
  std::string FileOf(int32_t number, const std::string& extension) const;

  std::string path;
  intptr_t lock = -1;
};

}  // namespace sorvel
