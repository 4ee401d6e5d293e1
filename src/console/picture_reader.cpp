#include "console/picture_reader.h"

#include <png.h>

#include <algorithm>
#include <cctype>
#include <csetjmp>
#include <cstring>
#include <vector>

#include "foundation/bitmap_head.h"

namespace sorvel::console {

namespace {

// Compression can't make a picture smaller than this many pixels a byte of its file.
constexpr int64_t kMostPixelsPerByte = 1100 * 8;

constexpr char kTooLarge[] = "the picture is too large";

constexpr int32_t kCoreHeadBytes = 12;
constexpr uint32_t kSmallestHeads = kBitmapFileHeadBytes + kCoreHeadBytes;

bool IsReasonable(int64_t width, int64_t height) {
  return width >= 1 && height >= 1 && width <= kLargestPictureSide && height <= kLargestPictureSide;
}

int64_t FileLength(FILE* file) {
  const long position = std::ftell(file);
  std::fseek(file, 0, SEEK_END);
  const long length = std::ftell(file);
  std::fseek(file, position, SEEK_SET);
  return length;
}

// Bitmap files.

struct BitmapHead {
  int64_t width = 0;
  int64_t height = 0;
  bool topDown = false;
  int32_t bits = 0;
  uint32_t pixelOffset = 0;
  std::vector<uint8_t> colors;  // blue, green, red of each
};

bool ReadBitmapHead(FILE* file, BitmapHead* head, std::string* problem) {
  uint8_t bytes[kBitmapHeadBytes] = {};
  uint8_t* const info = bytes + kBitmapFileHeadBytes;
  constexpr size_t sizeFieldEnd = kBitmapFileHeadBytes + 4;
  if (std::fread(bytes, sizeFieldEnd, 1, file) != 1) {
    *problem = "the file ends in its head";
    return false;
  }
  head->pixelOffset = LittleEndian(bytes + 10, 4);
  const uint32_t infoSize = LittleEndian(info, 4);
  // A core header has 16-bit sizes and colours of three bytes.
  const bool isCore = infoSize == kCoreHeadBytes;
  if (!isCore && (infoSize < kBitmapInfoHeadBytes || infoSize > 4096)) {
    *problem = "an unknown kind of bitmap file";
    return false;
  }
  if (std::fread(info + 4, isCore ? kCoreHeadBytes - 4 : kBitmapInfoHeadBytes - 4, 1, file) != 1) {
    *problem = "the file ends in its head";
    return false;
  }
  BitmapInfo fields;
  if (isCore) {
    fields.width = static_cast<int32_t>(LittleEndian(info + 4, 2));
    fields.height = static_cast<int32_t>(LittleEndian(info + 6, 2));
    fields.bitsPerPixel = static_cast<int32_t>(LittleEndian(info + 10, 2));
  } else {
    fields = GetBitmapInfo(info);
  }
  head->width = fields.width;
  head->height = fields.height;
  head->bits = fields.bitsPerPixel;
  head->topDown = head->height < 0;
  if (head->topDown) head->height = -head->height;
  if (!IsReasonable(head->width, head->height)) {
    *problem = "a picture of this size can't be read";
    return false;
  }
  const bool knownBits = head->bits == 1 || head->bits == 4 || head->bits == 8 || head->bits == 24 || head->bits == 32;
  if (!knownBits || fields.compression != 0) {
    // Masks that name the usual order of bytes are no compression.
    uint8_t masks[12] = {};
    constexpr uint32_t bitFields = 3;
    const bool usualMasks = head->bits == 32 && fields.compression == bitFields &&
                            std::fread(masks, 12, 1, file) == 1 && LittleEndian(masks, 4) == 0xFF0000 &&
                            LittleEndian(masks + 4, 4) == 0xFF00 && LittleEndian(masks + 8, 4) == 0xFF;
    if (!usualMasks) {
      *problem = "a bitmap file of this compression or depth can't be read";
      return false;
    }
  }
  if (head->bits <= 8) {
    const uint32_t most = 1u << head->bits;
    const uint32_t count = fields.colorsUsed == 0 || fields.colorsUsed > most ? most : fields.colorsUsed;
    const uint32_t entryBytes = isCore ? 3 : 4;
    head->colors.assign(most * 3, 0);
    std::fseek(file, kBitmapFileHeadBytes + static_cast<long>(infoSize), SEEK_SET);
    uint8_t* color = head->colors.data();
    for (uint32_t i = 0; i < count; ++i, color += 3) {
      uint8_t entry[4];
      if (std::fread(entry, entryBytes, 1, file) != 1) {
        *problem = "the file ends in its colours";
        return false;
      }
      std::copy(entry, entry + 3, color);
    }
  }
  return true;
}

bool ReadBitmap(FILE* file, Picture* picture, std::string* problem) {
  BitmapHead head;
  if (!ReadBitmapHead(file, &head, problem)) return false;
  const int64_t rowBytes = BitmapRowBytes(head.width, head.bits);
  if (head.pixelOffset < kSmallestHeads) {
    *problem = "the pixels lie in the head of the file";
    return false;
  }
  if (head.pixelOffset + rowBytes * head.height > FileLength(file)) {
    *problem = "the file ends in its pixels";
    return false;
  }
  if (!picture->Allocate(head.width, head.height)) {
    *problem = kTooLarge;
    return false;
  }
  std::vector<uint8_t> row(static_cast<size_t>(rowBytes));
  std::fseek(file, static_cast<long>(head.pixelOffset), SEEK_SET);
  for (int32_t i = 0; i < picture->height; ++i) {
    if (std::fread(row.data(), row.size(), 1, file) != 1) {
      *problem = "the file ends in its pixels";
      return false;
    }
    const int32_t y = head.topDown ? i : picture->height - 1 - i;
    uint8_t* to = picture->Row(y);
    for (int32_t x = 0; x < picture->width; ++x, to += 3) {
      const uint8_t* from = nullptr;
      if (head.bits >= 24) {
        from = row.data() + x * (head.bits / 8);
      } else {
        const int32_t place = x * head.bits;
        const int32_t shift = 8 - head.bits - place % 8;
        const int32_t index = row[static_cast<size_t>(place / 8)] >> shift & ((1 << head.bits) - 1);
        from = head.colors.data() + index * 3;
      }
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  return true;
}

// Portable grey and colour maps.

// The next number of the head, behind blanks and comments; -1 if there is none.
int64_t ReadMapNumber(FILE* file) {
  int byte = std::fgetc(file);
  while (byte == '#' || std::isspace(byte) != 0) {
    if (byte == '#') {
      while (byte != '\n' && byte != EOF) byte = std::fgetc(file);
    }
    byte = std::fgetc(file);
  }
  if (std::isdigit(byte) == 0) return -1;
  int64_t number = 0;
  for (; std::isdigit(byte) != 0; byte = std::fgetc(file)) {
    if (number < INT32_MAX) number = number * 10 + (byte - '0');
  }
  // One blank ends the number; binary pixels begin right behind it.
  return number;
}

bool ReadMap(FILE* file, Picture* picture, std::string* problem) {
  std::fgetc(file);
  const int kind = std::fgetc(file);
  const bool isPlain = kind == '2' || kind == '3';
  const int32_t channels = kind == '3' || kind == '6' ? 3 : 1;
  const int64_t width = ReadMapNumber(file);
  const int64_t height = ReadMapNumber(file);
  const int64_t highest = ReadMapNumber(file);
  if (!IsReasonable(width, height) || highest < 1 || highest > 65535) {
    *problem = "a map of this size or depth can't be read";
    return false;
  }
  const int32_t sampleBytes = highest > 255 ? 2 : 1;
  const int64_t samples = width * height * channels;
  const int64_t fewestBytes = isPlain ? samples * 2 - 1 : samples * sampleBytes;
  if (std::ftell(file) + fewestBytes > FileLength(file)) {
    *problem = "the file ends in its pixels";
    return false;
  }
  if (!picture->Allocate(width, height)) {
    *problem = kTooLarge;
    return false;
  }
  uint8_t* to = picture->Row(0);
  for (int64_t i = 0; i < samples; ++i) {
    int64_t sample = 0;
    if (isPlain) {
      sample = ReadMapNumber(file);
    } else {
      for (int32_t b = 0; b < sampleBytes; ++b) sample = sample * 256 + std::fgetc(file);
    }
    if (sample < 0 || sample > highest) {
      *problem = "a pixel is out of range";
      return false;
    }
    const uint8_t value = static_cast<uint8_t>((sample * 255 + highest / 2) / highest);
    for (int32_t copies = channels == 1 ? 3 : 1; copies > 0; --copies) *to++ = value;
  }
  return true;
}

// PNG files.

struct PngReader {
  png_structp png = nullptr;
  png_infop info = nullptr;
  std::string problem;

  ~PngReader() { png_destroy_read_struct(&png, &info, nullptr); }
};

[[noreturn]] void OnPngError(png_structp png, png_const_charp message) {
  static_cast<PngReader*>(png_get_error_ptr(png))->problem = message;
  png_longjmp(png, 1);
}

void OnPngWarning(png_structp png, png_const_charp message) {
  static_cast<void>(png);
  static_cast<void>(message);
}

bool DecodePng(PngReader* reader, FILE* file, Picture* picture, std::vector<png_bytep>* rows) {
  const int64_t length = FileLength(file);
  if (setjmp(png_jmpbuf(reader->png)) != 0) return false;
  png_init_io(reader->png, file);
#ifdef PNG_IGNORE_ADLER32
  // The checksums of the chunks are enough; a second one over the pixels takes a tenth of the time.
  png_set_option(reader->png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
#endif
  png_set_user_limits(reader->png, kLargestPictureSide, kLargestPictureSide);
  png_read_info(reader->png, reader->info);
  const int64_t width = png_get_image_width(reader->png, reader->info);
  const int64_t height = png_get_image_height(reader->png, reader->info);
  if (width * height > length * kMostPixelsPerByte) png_error(reader->png, "the file ends in its pixels");
  // Grey stays grey, except where paper shows through.
  const bool isGrey = png_get_color_type(reader->png, reader->info) == PNG_COLOR_TYPE_GRAY &&
                      png_get_valid(reader->png, reader->info, PNG_INFO_tRNS) == 0;
  if (!picture->Allocate(width, height, isGrey ? 1 : 3)) png_error(reader->png, kTooLarge);
  png_set_expand(reader->png);
  png_set_scale_16(reader->png);
  if (!isGrey) png_set_gray_to_rgb(reader->png);
  png_color_16 paper = {};
  paper.red = paper.green = paper.blue = paper.gray = 255;
  png_set_background(reader->png, &paper, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1.0);
  png_set_interlace_handling(reader->png);
  png_read_update_info(reader->png, reader->info);
  if (png_get_rowbytes(reader->png, reader->info) !=
      static_cast<size_t>(picture->width) * static_cast<size_t>(picture->channels)) {
    png_error(reader->png, "an unknown kind of PNG file");
  }
  for (int32_t y = 0; y < picture->height; ++y) rows->push_back(picture->Row(y));
  png_read_image(reader->png, rows->data());
  png_read_end(reader->png, nullptr);
  return true;
}

bool ReadPng(FILE* file, Picture* picture, std::string* problem) {
  PngReader reader;
  std::vector<png_bytep> rows;
  reader.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &reader, OnPngError, OnPngWarning);
  if (reader.png != nullptr) reader.info = png_create_info_struct(reader.png);
  if (reader.info == nullptr) {
    *problem = "no memory for the picture";
    return false;
  }
  if (DecodePng(&reader, file, picture, &rows)) return true;
  *problem = reader.problem;
  return false;
}

}  // namespace

bool Picture::Allocate(int64_t newWidth, int64_t newHeight, int32_t newChannels) {
  if (newWidth * newHeight > kMostPicturePixels) return false;
  // Memory that is never written to is never taken.
  if (!samples.AllocateZeroed(static_cast<uint64_t>(newWidth * newHeight * newChannels))) return false;
  channels = newChannels;
  width = static_cast<int32_t>(newWidth);
  height = static_cast<int32_t>(newHeight);
  return true;
}

bool ReadPicture(FILE* file, Picture* picture, std::string* problem) {
  uint8_t start[8] = {};
  const size_t got = std::fread(start, 1, sizeof(start), file);
  std::rewind(file);
  if (got >= 2 && IsBitmapFile(start)) return ReadBitmap(file, picture, problem);
  if (got >= 2 && start[0] == 'P' && std::strchr("2356", start[1]) != nullptr && start[1] != '\0') {
    return ReadMap(file, picture, problem);
  }
  if (got == 8 && png_sig_cmp(start, 0, 8) == 0) return ReadPng(file, picture, problem);
  *problem = "not a BMP, PNG, PGM or PPM file";
  return false;
}

}  // namespace sorvel::console
