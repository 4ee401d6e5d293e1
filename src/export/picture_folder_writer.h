#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "export/film_writer.h"
#include "export/png_line.h"

namespace sorvel {

// A folder of numbered PNG files and durations.txt, a list of them with their durations that ffmpeg reads as it is: an
// ffconcat script. Its durations are in seconds with six digits, rounded so that no error adds up; a comment has each
// exactly.
//
// The folder must not be there yet, or be empty. Until it is whole it lies beside its place as OUT.partial; the next
// run takes the place of one that a killed program left.
class PictureFolderWriter final : public FilmWriter {
 public:
  // The path is UTF-8 and may end with a separator.
  explicit PictureFolderWriter(const std::string& folderPath);
  ~PictureFolderWriter() override;

  bool Begin(const FilmForm& form) override;
  bool Add(const FilmPicture& picture) override;
  bool Finish() override;

 private:
  bool Write(const PngLine::Picture& picture);
  std::string PathOf(const std::string& name) const;
  void RemoveAll();

  std::string target;
  std::string work;      // the folder until it is whole
  intptr_t lock = -1;    // on the work, held while it is written
  FILE* list = nullptr;  // durations.txt
  FilmForm film;
  int64_t pictures = 0;
  std::unique_ptr<PngLine> line;
};

}  // namespace sorvel
