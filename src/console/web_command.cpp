#include <filesystem>
#include <string>
#include <utility>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/film_source.h"
#include "export/page_writer.h"
#include "foundation/paths.h"
#include "platform/files.h"
#include "platform/player_page.h"

namespace sorvel::console {

namespace {

int ReadPage(std::string* page) {
  *page = platform::PlayerPage();
  if (IsPlayerPage(*page)) return kDone;
  char program[kPathCapacity];
  platform::ProgramPath(program, sizeof(program));
  const std::filesystem::path path = std::filesystem::path(ShownText(program)).parent_path() / "sorvel-player.html";
  return Fail(path.string(), "the player isn't there; it is built with the preset web");
}

}  // namespace

int RunWeb(const Arguments& arguments) {
  const std::string& in = arguments.Plain()[0];
  const std::string& out = arguments.Plain()[1];
  const bool isLinked = arguments.Has("--linked");
  std::string page;
  int status = ReadPage(&page);
  FilmSource film;
  if (status == kDone) status = film.Open(in);
  if (status != kDone) return status;
  Buffer<uint8_t> bytes;
  BufferStream stream;
  if (!ReadWholeStream(*film.stream, &bytes, &stream.size)) return Fail(in, "can't be read into memory");
  stream.buffer = bytes.Data();
  const std::filesystem::path linked = std::filesystem::path(out).replace_extension("sv");
  if (isLinked) {
    status = WriteOutput(linked.string(),
                         [&](OutputFile* file) { return file->Stream()->Write(bytes.Data(), stream.size); });
    if (status != kDone) return status;
  }
  return WriteOutput(out, [&](OutputFile* file) {
    return WritePage(std::move(page), film, &stream, isLinked ? AddressOf(linked.filename().string()) : "",
                     file->Stream());
  });
}

}  // namespace sorvel::console
