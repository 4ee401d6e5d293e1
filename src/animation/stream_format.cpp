#include "animation/stream_format.h"

namespace sorvel {

namespace {

constexpr char kStreamMagic[] = "CA";
constexpr char kFilmMagic[] = "SV";
constexpr int32_t kMagicBytes = 2;

}  // namespace

void WriteStreamStart(ByteStream& stream, StreamKind kind) {
  stream.Write(kind == StreamKind::kFilmContainer ? kFilmMagic : kStreamMagic, kMagicBytes);
  WriteField(stream, 0, kStreamSizeBytes);
}

void WriteStreamSize(ByteStream& stream) {
  const int32_t size = stream.Tell();
  stream.Seek(kMagicBytes, kFromStart);
  WriteField(stream, size, kStreamSizeBytes);
}

StreamKind ReadStreamKind(ByteStream& stream) {
  char magic[kMagicBytes] = {};
  stream.Read(magic, kMagicBytes);
  if (std::memcmp(magic, kStreamMagic, kMagicBytes) == 0) return StreamKind::kCompiledCut;
  if (std::memcmp(magic, kFilmMagic, kMagicBytes) == 0) return StreamKind::kFilmContainer;
  return StreamKind::kUnknown;
}

StreamCutHead OutputHead(const Cut& cut) {
  const int32_t scale = OutputScale(cut.Antialias());
  return {.width = cut.width / scale,
          .height = cut.height / scale,
          .frameWidth = cut.frameWidth / scale,
          .frameHeight = cut.frameHeight / scale,
          .fps = cut.fps,
          .levels = OutputLevels(scale)};
}

void WriteCutHead(ByteStream& stream, const StreamCutHead& head) {
  WriteField(stream, head.width, 2);
  WriteField(stream, head.height, 2);
  // Quirk 21. The low 16 bits of a larger frame rectangle.
  WriteField(stream, head.frameWidth, 2);
  WriteField(stream, head.frameHeight, 2);
  WriteField(stream, head.fps, 1);
  WriteField(stream, head.levels - 1, 1);
}

StreamCutHead ReadCutHead(ByteStream& stream) {
  StreamCutHead head;
  head.width = ReadSignedField(stream, 2);
  head.height = ReadSignedField(stream, 2);
  head.frameWidth = ReadSignedField(stream, 2);
  head.frameHeight = ReadSignedField(stream, 2);
  head.fps = ReadSignedField(stream, 1);
  head.levels = static_cast<int32_t>(ReadField(stream, 1)) + 1;
  return head;
}

void WriteContainerHead(ByteStream& stream, const ContainerHead& head) {
  WriteField(stream, head.width, 2);
  WriteField(stream, head.height, 2);
  WriteField(stream, head.maxWidth, 2);
  WriteField(stream, head.maxHeight, 2);
  WriteField(stream, head.cutCount, 2);
}

ContainerHead ReadContainerHead(ByteStream& stream) {
  ContainerHead head;
  head.width = ReadSignedField(stream, 2);
  head.height = ReadSignedField(stream, 2);
  head.maxWidth = ReadSignedField(stream, 2);
  head.maxHeight = ReadSignedField(stream, 2);
  head.cutCount = ReadSignedField(stream, 2);
  return head;
}

void WriteFrameTiming(ByteStream& stream, const StreamFrameTiming& timing) {
  WriteField(stream, timing.time, 2);
  WriteField(stream, timing.loop, 2);
  WriteField(stream, timing.brightness, 1);
  WriteField(stream, timing.x, 2);
  WriteField(stream, timing.y, 2);
}

void WriteFrameHead(ByteStream& stream, const StreamFrameHead& head) {
  WriteFrameTiming(stream, head);
  WriteField(stream, head.box.x, 2);
  WriteField(stream, head.box.y, 2);
  WriteField(stream, head.box.width, 2);
  WriteField(stream, head.box.height, 2);
  WriteField(stream, static_cast<int32_t>(head.codeSize), 4);
  WriteField(stream, static_cast<int32_t>(head.literalSize), 4);
}

StreamFrameHead ReadFrameHead(ByteStream& stream) {
  StreamFrameHead head;
  head.time = ReadSignedField(stream, 2);
  head.loop = ReadSignedField(stream, 2);
  head.brightness = ReadSignedField(stream, 1);
  head.x = ReadSignedField(stream, 2);
  head.y = ReadSignedField(stream, 2);
  ReadFrameSections(stream, &head);
  return head;
}

void ReadFrameSections(ByteStream& stream, StreamFrameHead* head) {
  head->box.x = ReadSignedField(stream, 2);
  head->box.y = ReadSignedField(stream, 2);
  head->box.width = ReadSignedField(stream, 2);
  head->box.height = ReadSignedField(stream, 2);
  head->codeSize = ReadField(stream, 4);
  head->literalSize = ReadField(stream, 4);
}

}  // namespace sorvel
