#include "export/gif_writer.h"

#include <algorithm>
#include <array>

#include "platform/pictures.h"

namespace sorvel {

namespace {

constexpr int64_t kUnitsASecond = 100;
constexpr int64_t kLongestDelay = 65535;
constexpr int32_t kColors = 256;
constexpr uint8_t kTableOf256 = 0x80 | 7;

void Put16(std::vector<uint8_t>* bytes, int64_t value) {
  bytes->push_back(static_cast<uint8_t>(value));
  bytes->push_back(static_cast<uint8_t>(value >> 8));
}

// The grey levels as a table of colours.
std::vector<uint8_t> Greys() {
  std::vector<uint8_t> table;
  for (int32_t i = 0; i < kColors; ++i) table.insert(table.end(), 3, static_cast<uint8_t>(i));
  return table;
}

// The parts of a GIF file of one picture that another file takes over.
struct PackedPicture {
  uint8_t isInterlaced = 0;     // the bit of the picture's head
  std::vector<uint8_t> colors;  // of the picture
  std::vector<uint8_t> data;    // from the size of the codes to the end of the blocks
};

// Reads a file from front to back. Behind the end all bytes are 0.
class Reader {
 public:
  explicit Reader(const std::vector<uint8_t>& fileBytes) : bytes(fileBytes) {}

  bool IsAtEnd() const { return place >= bytes.size(); }
  uint8_t Next() { return IsAtEnd() ? 0 : bytes[place++]; }
  std::vector<uint8_t> Take(size_t count) {
    std::vector<uint8_t> taken;
    for (; count > 0; --count) taken.push_back(Next());
    return taken;
  }
  std::vector<uint8_t> TakeColors(uint8_t flags) { return Take((flags & 0x80) != 0 ? size_t{6} << (flags & 7) : 0); }
  // Blocks with their lengths, up to the empty one.
  std::vector<uint8_t> TakeBlocks() {
    std::vector<uint8_t> taken;
    for (size_t length = Next(); length != 0 && !IsAtEnd(); length = Next()) {
      taken.push_back(static_cast<uint8_t>(length));
      const std::vector<uint8_t> block = Take(length);
      taken.insert(taken.end(), block.begin(), block.end());
    }
    taken.push_back(0);
    return taken;
  }

 private:
  const std::vector<uint8_t>& bytes;
  size_t place = 0;
};

// False for a file without a picture.
bool Unpack(const std::vector<uint8_t>& file, PackedPicture* picture) {
  constexpr size_t beforeFlags = 10;
  constexpr size_t placeAndSize = 8;
  Reader reader(file);
  reader.Take(beforeFlags);
  const uint8_t flags = reader.Next();
  reader.Take(2);
  picture->colors = reader.TakeColors(flags);
  while (!reader.IsAtEnd()) {
    const uint8_t kind = reader.Next();
    if (kind == '!') {
      reader.Next();
      reader.TakeBlocks();
    } else if (kind == ',') {
      reader.Take(placeAndSize);
      const uint8_t own = reader.Next();
      picture->isInterlaced = own & 0x40;
      if ((own & 0x80) != 0) picture->colors = reader.TakeColors(own);
      picture->data = {reader.Next()};
      const std::vector<uint8_t> blocks = reader.TakeBlocks();
      picture->data.insert(picture->data.end(), blocks.begin(), blocks.end());
      return !reader.IsAtEnd();
    } else {
      return false;
    }
  }
  return false;
}

// The place of a grey level in a table of colours that holds it.
uint8_t IndexOf(uint8_t level, const std::vector<uint8_t>& colors) {
  size_t place = 0;
  while (place + 3 < colors.size() && (colors[place] != level || colors[place + 1] != level)) place += 3;
  return static_cast<uint8_t>(place / 3);
}

}  // namespace

bool GifWriter::Begin(const FilmForm& form) {
  film = form;
  if (!file.OpenUtf8(path)) return FailOf(file);
  std::vector<uint8_t> head = {'G', 'I', 'F', '8', '9', 'a'};
  Put16(&head, film.width);
  Put16(&head, film.height);
  head.insert(head.end(), {kTableOf256 | 7 << 4, 0, 0});
  const std::vector<uint8_t> greys = Greys();
  head.insert(head.end(), greys.begin(), greys.end());
  if (film.plays != 1) {
    // How often it plays after the first time; 0 without end.
    static constexpr uint8_t kLoop[] = {'!', 0xFF, 11, 'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0', 3, 1};
    head.insert(head.end(), std::begin(kLoop), std::end(kLoop));
    Put16(&head, film.plays == 0 ? 0 : film.plays - 1);
    head.push_back(0);
  }
  return Write(head);
}

int64_t GifWriter::PlaceOf(int64_t time) const {
  return TimeInUnits(time, film.rate, kUnitsASecond);
}

bool GifWriter::Add(const FilmPicture& shown) {
  Rect part = shown.changed;
  UnionRect(&part, left);
  int64_t delay = PlaceOf(shown.start + shown.duration) - PlaceOf(shown.start);
  left = delay == 0 ? part : Rect{};
  // The rest of a long time goes to pictures that change nothing.
  for (; delay > 0; delay -= std::min(delay, kLongestDelay)) {
    if (!AddPart(shown.pixels, part, std::min(delay, kLongestDelay))) return false;
    part = {0, 0, 1, 1};
  }
  return true;
}

int32_t GifWriter::TakePart(const uint8_t* pixels, const Rect& part) {
  const bool isFirst = added.empty();
  if (isFirst) added.resize(static_cast<size_t>(film.width) * static_cast<size_t>(film.height));
  packed.clear();
  std::vector<bool> stays;
  std::array<bool, kColors> isTaken{};
  for (int32_t y = part.y; y < part.y + part.height; ++y) {
    const size_t start = static_cast<size_t>(y) * static_cast<size_t>(film.width) + static_cast<size_t>(part.x);
    for (size_t place = start; place < start + static_cast<size_t>(part.width); ++place) {
      packed.push_back(pixels[place]);
      stays.push_back(!isFirst && added[place] == pixels[place]);
      if (!stays.back()) isTaken[pixels[place]] = true;
      added[place] = pixels[place];
    }
  }
  const auto level = static_cast<int32_t>(std::find(isTaken.begin(), isTaken.end(), false) - isTaken.begin());
  if (level == kColors || std::find(stays.begin(), stays.end(), true) == stays.end()) return -1;
  for (size_t i = 0; i < packed.size(); ++i) {
    if (stays[i]) packed[i] = static_cast<uint8_t>(level);
  }
  return level;
}

bool GifWriter::AddPart(const uint8_t* pixels, const Rect& part, int64_t delay) {
  const int32_t transparent = TakePart(pixels, part);
  PackedPicture gif;
  if (!platform::EncodeGif(packed.data(), part.width, part.height, part.width, &picture) || !Unpack(picture, &gif)) {
    return Fail("the picture can't be packed");
  }
  // The picture stays for the next one.
  std::vector<uint8_t> bytes = {'!', 0xF9, 4, static_cast<uint8_t>(1 << 2 | (transparent >= 0 ? 1 : 0))};
  Put16(&bytes, delay);
  bytes.insert(bytes.end(),
               {transparent >= 0 ? IndexOf(static_cast<uint8_t>(transparent), gif.colors) : uint8_t{0}, 0, ','});
  for (const int32_t value : {part.x, part.y, part.width, part.height}) Put16(&bytes, value);
  const bool hasOwnColors = gif.colors != Greys();
  uint8_t flags = gif.isInterlaced;
  if (hasOwnColors) {
    flags |= 0x80;
    for (size_t size = 6; size < gif.colors.size(); size *= 2) ++flags;
  }
  bytes.push_back(flags);
  if (hasOwnColors) bytes.insert(bytes.end(), gif.colors.begin(), gif.colors.end());
  bytes.insert(bytes.end(), gif.data.begin(), gif.data.end());
  return Write(bytes);
}

bool GifWriter::Finish() {
  return Write({';'}) && (file.Commit() || FailOf(file));
}

bool GifWriter::Write(const std::vector<uint8_t>& bytes) {
  file.stream.Write(bytes.data(), static_cast<int32_t>(bytes.size()));
  return file.stream.failure == 0 || FailOf(file);
}

}  // namespace sorvel
