#include "animation/compiled_cache.h"

#include <cstring>

#include "animation/stream_format.h"
#include "animation/stream_inspector.h"
#include "document/cut.h"
#include "foundation/replacement_file.h"
#include "platform/files.h"

namespace sorvel {

namespace {

// Writes the timing of one frame and steps over its pictures. False when the stream ends before them.
bool PatchFrame(Cut* cut, int32_t index, int32_t scale, ByteStream* stream, int64_t length) {
  const Frame* frame = cut->frames.At(index);
  WriteFrameTiming(*stream, {.time = cut->EffectiveTime(index),
                             .loop = index == 0 && frame->loop == 0 ? 1 : frame->loop,
                             .brightness = frame->DecodedBrightness(),
                             .x = frame->x / scale,
                             .y = frame->y / scale});
  // A file needs a seek between writing and reading, and the other way round.
  stream->Seek(0, kFromPosition);
  StreamFrameHead head;
  ReadFrameSections(*stream, &head);
  if (head.box.width < 0 || head.box.height < 0) return false;
  const int64_t next = stream->Tell() + head.MapSize() + head.codeSize + head.literalSize;
  return next <= length && stream->Seek(static_cast<int32_t>(next), kFromStart);
}

}  // namespace

FILE* OpenCache(const char* path) {
  FileStream cache(platform::OpenStdioFile(path, "rb"));
  if (!cache.IsOpen()) return nullptr;
  if (!IsCompleteStream(&cache)) {
    cache.Close();
    return nullptr;
  }
  cache.Seek(0, kFromStart);
  return cache.file;
}

bool KeepCache(ByteStream* compiled, const char* path) {
  ReplacementFile cache;
  if (!cache.Open(path)) return false;
  compiled->Seek(0, kFromStart);
  return CopyStream(*compiled, cache.stream, -1) && cache.Commit();
}

bool Cut::PatchCompiledStream(ByteStream* stream) {
  if (!Has(kImagesStale) && !Has(kTimingStale)) return true;
  if (Has(kImagesStale)) return false;
  const int32_t length = StreamLength(*stream);
  if (length == 0 || ReadStreamKind(*stream) != StreamKind::kCompiledCut) return false;
  // Quirk 8. This reads the size of the stream in place of its credit. They agree only by chance, so nearly every cut
  // is compiled again. Read in the right place, the frame data would be written behind a head of another form.
  char text[kStreamTextLimit];
  ReadText(*stream, text, kStreamTextLimit);
  if (std::strcmp(text, credit) != 0) return false;
  stream->Seek(0, kFromPosition);
  StreamCutHead head = OutputHead(*this);
  // The number of levels is written one too high.
  ++head.levels;
  WriteCutHead(*stream, head);
  const int32_t scale = OutputScale(Antialias());
  for (int32_t i = 0; i < frames.Count(); ++i) {
    if (!PatchFrame(this, i, scale, stream, length)) return false;
  }
  stateFlags &= ~static_cast<uint32_t>(kImagesStale | kTimingStale);
  return true;
}

}  // namespace sorvel
