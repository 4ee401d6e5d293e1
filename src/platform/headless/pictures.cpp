#include "platform/pictures.h"

#include <png.h>

#include <csetjmp>

namespace sorvel::platform {

namespace {

// Drawings have large even areas, which no filter makes shorter.
constexpr int kFilters = PNG_FILTER_NONE;
// The highest level takes three times as long for two hundredths less.
constexpr int kCompression = 8;

void Append(png_structp png, png_bytep bytes, size_t count) {
  auto* file = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
  file->insert(file->end(), bytes, bytes + count);
}

void Flush(png_structp /*png*/) {}

void OnWarning(png_structp /*png*/, png_const_charp /*message*/) {}

[[noreturn]] void OnError(png_structp png, png_const_charp /*message*/) {
  png_longjmp(png, 1);
}

}  // namespace

bool EncodePng(const uint8_t* pixels, int32_t width, int32_t height, int32_t pitch, std::vector<uint8_t>* file) {
  file->clear();
  if (width <= 0 || height <= 0) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, OnError, OnWarning);
  png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
  if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
    png_destroy_write_struct(&png, &info);
    file->clear();
    return false;
  }
  png_set_write_fn(png, file, Append, Flush);
  png_set_filter(png, PNG_FILTER_TYPE_BASE, kFilters);
  png_set_compression_level(png, kCompression);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, PNG_COLOR_TYPE_GRAY,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int32_t y = 0; y < height; ++y) png_write_row(png, pixels + int64_t{y} * pitch);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return true;
}

bool CanEncodeGif() {
  return false;
}

bool EncodeGif(const uint8_t* /*pixels*/, int32_t /*width*/, int32_t /*height*/, int32_t /*pitch*/,
               std::vector<uint8_t>* file) {
  file->clear();
  return false;
}

}  // namespace sorvel::platform
