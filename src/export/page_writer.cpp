#include "export/page_writer.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "foundation/buffer.h"

namespace sorvel {

namespace {

// Where the page takes the film in.
constexpr char kTitlePlace[] = "@TITLE@";
constexpr char kConnectPlace[] = "@CONNECT@";
constexpr char kFilmPlace[] = "@FILM@";

// How much of the film is read at once: three bytes make four letters.
constexpr int32_t kPieceBytes = 3 << 14;

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

// A text as JSON. It can't end the element of the page that holds it.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') {
      quoted.append(1, '\\').append(1, letter);
    } else if (static_cast<uint8_t>(letter) < ' ' || letter == '<') {
      char code[8];
      std::snprintf(code, sizeof(code), "\\u%04x", static_cast<uint8_t>(letter));
      quoted += code;
    } else {
      quoted += letter;
    }
  }
  return quoted + "\"";
}

std::string FilmText(const ShownFilm& film, int32_t size, const std::string& address) {
  std::string text = "{\"title\":" + Quoted(film.title) + ",\"author\":" + Quoted(film.author);
  text += ",\"size\":" + std::to_string(size);
  if (!address.empty()) text += ",\"source\":" + Quoted(address);
  text += ",\"cuts\":[";
  for (const ShownFilm::ShownCut& cut : film.cuts) {
    if (text.back() != '[') text += ',';
    text += "{\"name\":" + Quoted(cut.name) + ",\"ticks\":" + std::to_string(cut.times.Ticks());
    text += ",\"fps\":" + std::to_string(cut.times.fps) + "}";
  }
  return text + "]}";
}

std::string Base64(const uint8_t* bytes, int32_t size) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (int32_t i = 0; i < size; i += 3) {
    uint32_t group = 0;
    for (int32_t k = i; k < i + 3; ++k) group = group << 8 | (k < size ? bytes[k] : 0U);
    for (int32_t k = 0; k < 4; ++k) text += k <= size - i ? kDigits[group >> (18 - 6 * k) & 63] : '=';
  }
  return text;
}

void WriteText(ByteStream* out, const std::string& text) {
  out->Write(text.data(), static_cast<int32_t>(text.size()));
}

bool WriteStream(ByteStream* compiled, int32_t size, ByteStream* out, const ProgressFunction& progress) {
  Buffer<uint8_t> piece;
  if (!piece.Allocate(kPieceBytes)) return false;
  for (int32_t done = 0; done < size;) {
    const int32_t count = std::min(kPieceBytes, size - done);
    if (ReadUpTo(*compiled, piece.Data(), count) != count) return false;
    WriteText(out, Base64(piece.Data(), count));
    done += count;
    if (progress && !progress(done, size)) return false;
  }
  return true;
}

}  // namespace

bool IsPlayerPage(const std::string& page) {
  return page.find(kFilmPlace) != std::string::npos;
}

bool WritePage(std::string page, const ShownFilm& film, ByteStream* compiled, const std::string& address,
               ByteStream* out, const ProgressFunction& progress) {
  Replace(&page, kTitlePlace, Escaped(film.title));
  Replace(&page, kConnectPlace, address.empty() ? "'none'" : "'self'");
  const size_t place = page.find(kFilmPlace);
  const int32_t size = StreamLength(*compiled);
  if (place == std::string::npos || size < 0 || !compiled->Seek(0, kFromStart)) return false;
  WriteText(out, page.substr(0, place) + "<script type=\"application/json\" id=\"film\">" +
                     FilmText(film, size, address) + "</script>\n");
  if (address.empty()) {
    WriteText(out, "<script type=\"text/plain\" id=\"stream\">");
    if (!WriteStream(compiled, size, out, progress)) return false;
    WriteText(out, "</script>");
  }
  WriteText(out, page.substr(place + std::strlen(kFilmPlace)));
  return true;
}

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

}  // namespace sorvel
