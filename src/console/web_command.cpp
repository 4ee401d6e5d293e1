#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "console/commands.h"
#include "console/console_files.h"
#include "console/film_source.h"
#include "foundation/paths.h"
#include "platform/files.h"

namespace sorvel::console {

namespace {

// The page without a film, which is built with the program and lies beside it.
constexpr char kPageName[] = "sorvel-player.html";

// Where the page takes the film in.
constexpr char kTitlePlace[] = "@TITLE@";
constexpr char kConnectPlace[] = "@CONNECT@";
constexpr char kFilmPlace[] = "@FILM@";

// How much of the film's text is written at once.
constexpr size_t kPieceBytes = 1 << 16;

int ReadPage(std::string* page) {
  char program[kPathCapacity];
  platform::ProgramPath(program, sizeof(program));
  const std::filesystem::path path = std::filesystem::path(ShownText(program)).parent_path() / kPageName;
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  *page = text.str();
  if (page->find(kFilmPlace) != std::string::npos) return kDone;
  return Fail(path.string(), "the player isn't there; it is built with the preset web");
}

void Replace(std::string* page, const char* place, const std::string& text) {
  const size_t at = page->find(place);
  if (at != std::string::npos) page->replace(at, std::strlen(place), text);
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    if (letter == '&') {
      escaped += "&amp;";
    } else if (letter == '<') {
      escaped += "&lt;";
    } else {
      escaped += letter;
    }
  }
  return escaped;
}

std::string FilmText(const FilmSource& film, int32_t size, const std::string& source) {
  nlohmann::ordered_json info = {{"title", film.title}, {"author", film.author}, {"size", size}};
  if (!source.empty()) info["source"] = source;
  for (const FilmSource::ShownCut& cut : film.cuts) {
    info["cuts"].push_back({{"name", cut.name}, {"ticks", cut.times.Ticks()}, {"fps", cut.times.fps}});
  }
  std::string text = info.dump();
  // No text may end the element that holds it.
  for (size_t at = 0; (at = text.find('<', at)) != std::string::npos;) text.replace(at, 1, "\\u003c");
  return text;
}

// The name of a file as a relative address.
std::string AddressOf(const std::string& name) {
  std::string address = "./";
  for (const char letter : name) {
    const auto code = static_cast<uint8_t>(letter);
    char text[4];
    std::snprintf(text, sizeof(text), "%%%02X", code);
    const bool isPlain = code < 0x80 && (std::isalnum(code) != 0 || std::strchr("-._~", letter) != nullptr);
    address += isPlain ? std::string(1, letter) : text;
  }
  return address;
}

void WriteBase64(const uint8_t* bytes, int32_t size, ByteStream* out) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (int32_t i = 0; i < size; i += 3) {
    uint32_t group = 0;
    for (int32_t k = i; k < i + 3; ++k) group = group << 8 | (k < size ? bytes[k] : 0U);
    for (int32_t k = 0; k < 4; ++k) text += k <= size - i ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    if (text.size() < kPieceBytes && i + 3 < size) continue;
    out->Write(text.data(), static_cast<int32_t>(text.size()));
    text.clear();
  }
}

void WriteText(ByteStream* out, const std::string& text) {
  out->Write(text.data(), static_cast<int32_t>(text.size()));
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
  int32_t size = 0;
  if (!ReadWholeStream(*film.stream, &bytes, &size)) return Fail(in, "can't be read into memory");
  const std::filesystem::path linked = std::filesystem::path(out).replace_extension("sv");
  if (isLinked) {
    status = WriteOutput(linked.string(), [&](OutputFile* file) { return file->Stream()->Write(bytes.Data(), size); });
    if (status != kDone) return status;
  }
  Replace(&page, kTitlePlace, Escaped(film.title));
  Replace(&page, kConnectPlace, isLinked ? "'self'" : "'none'");
  const size_t place = page.find(kFilmPlace);
  return WriteOutput(out, [&](OutputFile* file) {
    ByteStream* stream = file->Stream();
    WriteText(stream, page.substr(0, place) + "<script type=\"application/json\" id=\"film\">" +
                          FilmText(film, size, isLinked ? AddressOf(linked.filename().string()) : "") + "</script>\n");
    if (!isLinked) {
      WriteText(stream, "<script type=\"text/plain\" id=\"stream\">");
      WriteBase64(bytes.Data(), size, stream);
      WriteText(stream, "</script>");
    }
    WriteText(stream, page.substr(place + std::strlen(kFilmPlace)));
    return true;
  });
}

}  // namespace sorvel::console
