#include "export/apng_writer.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "platform/pictures.h"

namespace sorvel {

namespace {

constexpr int64_t kLargestField = 65535;  // of the two halves of a duration
constexpr size_t kSignatureBytes = 8;
constexpr size_t kHeaderDataBytes = 13;
constexpr size_t kChunkFrameBytes = 12;  // length, type and checksum
constexpr int32_t kAnimationHeadPlace = kSignatureBytes + kChunkFrameBytes + kHeaderDataBytes;

constexpr auto kCrcTable = [] {
  std::array<uint32_t, 256> table{};
  for (uint32_t i = 0; i < 256; ++i) {
    table[i] = i;
    for (int bit = 0; bit < 8; ++bit) table[i] = (table[i] & 1) != 0 ? 0xEDB88320U ^ table[i] >> 1 : table[i] >> 1;
  }
  return table;
}();

void Put(std::vector<uint8_t>* bytes, uint32_t value, int count) {
  for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) bytes->push_back(static_cast<uint8_t>(value >> shift));
}

uint32_t Read32(const uint8_t* bytes) {
  return static_cast<uint32_t>(bytes[0]) << 24 | static_cast<uint32_t>(bytes[1]) << 16 |
         static_cast<uint32_t>(bytes[2]) << 8 | bytes[3];
}

// Joins the data of all chunks of this type of a PNG file.
std::vector<uint8_t> DataOf(const std::vector<uint8_t>& png, const char* type) {
  std::vector<uint8_t> data;
  for (size_t at = kSignatureBytes; at + kChunkFrameBytes <= png.size();) {
    const size_t length = Read32(png.data() + at);
    if (length > png.size() - at - kChunkFrameBytes) break;
    const uint8_t* chunk = png.data() + at + 4;
    if (std::equal(chunk, chunk + 4, type)) data.insert(data.end(), chunk + 4, chunk + 4 + length);
    at += kChunkFrameBytes + length;
  }
  return data;
}

}  // namespace

bool ApngWriter::Begin(const FilmForm& form) {
  film = form;
  line = std::make_unique<PngLine>(form, [this](const PngLine::Picture& picture) { return Write(picture); });
  return file.OpenUtf8(path) || FailOf(file);
}

bool ApngWriter::Add(const FilmPicture& picture) {
  return line->Add(picture, picture.changed);
}

bool ApngWriter::Write(const PngLine::Picture& packed) {
  if (!packed.isPacked) return Fail("not enough memory");
  const FilmPicture& picture = packed.shown;
  // The whole duration is given in one unit; the rest of a long one goes to pictures that change nothing.
  const int64_t unit = std::gcd(picture.duration, film.rate);
  int64_t denominator = film.rate / unit;
  int64_t numerator = picture.duration / unit;
  if (denominator > kLargestField) {
    denominator = kLargestField;
    numerator = TimeInUnits(picture.start + picture.duration, film.rate, kLargestField) -
                TimeInUnits(picture.start, film.rate, kLargestField);
  }
  const auto write = [&](const std::vector<uint8_t>& png, const Rect& part) {
    const int64_t now = std::min(numerator, kLargestField);
    numerator -= now;
    return WritePart(png, part, static_cast<uint32_t>(now), static_cast<uint32_t>(denominator));
  };
  if (!write(packed.png, packed.part)) return false;
  std::vector<uint8_t> corner;
  while (numerator != 0) {
    if (!platform::EncodePng(&packed.corner, 1, 1, 1, &corner)) return Fail("not enough memory");
    if (!write(corner, {0, 0, 1, 1})) return false;
  }
  return true;
}

bool ApngWriter::WritePart(const std::vector<uint8_t>& png, const Rect& part, uint32_t numerator,
                           uint32_t denominator) {
  const bool isFirst = pictures == 0;
  if (isFirst) {
    file.stream.Write(png.data(), kSignatureBytes);
    WriteChunk("IHDR", DataOf(png, "IHDR"));
    // The number of pictures is known at the end.
    WriteChunk("acTL", std::vector<uint8_t>(8));
  }
  std::vector<uint8_t> control;
  Put(&control, sequence++, 4);
  for (const int32_t value : {part.width, part.height, part.x, part.y}) Put(&control, static_cast<uint32_t>(value), 4);
  Put(&control, numerator, 2);
  Put(&control, denominator, 2);
  // The picture stays for the next one, and its pixels replace those before.
  Put(&control, 0, 2);
  WriteChunk("fcTL", control);
  std::vector<uint8_t> data = DataOf(png, "IDAT");
  if (!isFirst) {
    std::vector<uint8_t> number;
    Put(&number, sequence++, 4);
    data.insert(data.begin(), number.begin(), number.end());
  }
  WriteChunk(isFirst ? "IDAT" : "fdAT", data);
  ++pictures;
  return file.stream.failure == 0 || FailOf(file);
}

bool ApngWriter::Finish() {
  if (!line->Finish()) return false;
  WriteChunk("IEND", {});
  file.stream.Seek(kAnimationHeadPlace, kFromStart);
  std::vector<uint8_t> head;
  Put(&head, pictures, 4);
  Put(&head, static_cast<uint32_t>(film.plays), 4);
  WriteChunk("acTL", head);
  return file.Commit() || FailOf(file);
}

void ApngWriter::WriteChunk(const char* type, const std::vector<uint8_t>& data) {
  std::vector<uint8_t> chunk;
  Put(&chunk, static_cast<uint32_t>(data.size()), 4);
  chunk.insert(chunk.end(), type, type + 4);
  chunk.insert(chunk.end(), data.begin(), data.end());
  uint32_t crc = 0xFFFFFFFFU;
  for (size_t i = 4; i < chunk.size(); ++i) crc = kCrcTable[(crc ^ chunk[i]) & 0xFF] ^ crc >> 8;
  Put(&chunk, ~crc, 4);
  file.stream.Write(chunk.data(), static_cast<int32_t>(chunk.size()));
}

}  // namespace sorvel
