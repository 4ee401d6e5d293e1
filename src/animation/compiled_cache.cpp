#include <cstring>

#include "animation/stream_encoder.h"
#include "docfiles/code_rows.h"
#include "document/cut.h"

namespace sorvel {

namespace {

constexpr int32_t kCreditSize = 256;

// Writes the frame data of one frame and steps over its pictures. False when the stream ends before them.
bool PatchFrame(Cut* cut, int32_t index, int32_t scale, ByteStream* stream, int64_t length) {
  const Frame* frame = cut->frames.At(index);
  WriteField(*stream, cut->EffectiveTime(index), 2);
  WriteField(*stream, index == 0 && frame->loop == 0 ? 1 : frame->loop, 2);
  WriteField(*stream, frame->DecodedBrightness(), 1);
  WriteField(*stream, frame->x / scale, 2);
  WriteField(*stream, frame->y / scale, 2);
  stream->Seek(4, kFromPosition);
  const int32_t boxWidth = ReadSignedField(*stream, 2);
  const int32_t boxHeight = ReadSignedField(*stream, 2);
  const int64_t codeSize = ReadField(*stream, 4);
  const int64_t literalSize = ReadField(*stream, 4);
  if (boxWidth < 0 || boxHeight < 0) return false;
  const int64_t next = stream->Tell() + int64_t{boxHeight} * CodeMapRowBytes(boxWidth) + codeSize + literalSize;
  return next <= length && stream->Seek(static_cast<int32_t>(next), kFromStart);
}

}  // namespace

bool Cut::PatchCompiledStream(ByteStream* stream) {
  if (!Has(kImagesStale) && !Has(kTimingStale)) return true;
  if (Has(kImagesStale)) return false;
  const int32_t length = StreamLength(*stream);
  if (length == 0) return false;
  char magic[2] = {};
  stream->Read(magic, sizeof(magic));
  if (std::memcmp(magic, "CA", sizeof(magic)) != 0) return false;
  // Quirk 8. This reads the size of the stream in place of its credit. They agree only by chance, so nearly every cut
  // is compiled again. Read in the right place, the frame data would be written behind a head of another form.
  char text[kCreditSize];
  ReadText(*stream, text, kCreditSize);
  if (std::strcmp(text, credit) != 0) return false;
  // A file needs a seek between reading and writing.
  stream->Seek(0, kFromPosition);
  const int32_t scale = OutputScale(Antialias());
  WriteField(*stream, width / scale, 2);
  WriteField(*stream, height / scale, 2);
  WriteField(*stream, frameWidth / scale, 2);
  WriteField(*stream, frameHeight / scale, 2);
  WriteField(*stream, fps, 1);
  WriteField(*stream, OutputLevels(scale), 1);
  for (int32_t i = 0; i < frames.Count(); ++i) {
    if (!PatchFrame(this, i, scale, stream, length)) return false;
  }
  stateFlags &= ~static_cast<uint32_t>(kImagesStale | kTimingStale);
  return true;
}

}  // namespace sorvel
