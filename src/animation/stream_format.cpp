#include "animation/stream_format.h"

#include <initializer_list>

namespace sorvel {

namespace {

constexpr char kStreamMagic[] = "CA";
constexpr char kFilmMagic[] = "SV";
constexpr int32_t kMagicBytes = 2;

// Fields of two bytes in a row, which are read as signed ones.
void WriteWords(ByteStream& stream, std::initializer_list<int32_t> values) {
  for (const int32_t value : values) WriteField(stream, value, 2);
}

void ReadWords(ByteStream& stream, std::initializer_list<int32_t*> values) {
  for (int32_t* value : values) *value = ReadSignedField(stream, 2);
}

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
  // Quirk 21. The low 16 bits of a larger frame rectangle.
  WriteWords(stream, {head.width, head.height, head.frameWidth, head.frameHeight});
  WriteField(stream, head.fps, 1);
  WriteField(stream, head.levels - 1, 1);
}

StreamCutHead ReadCutHead(ByteStream& stream) {
  StreamCutHead head;
  ReadWords(stream, {&head.width, &head.height, &head.frameWidth, &head.frameHeight});
  head.fps = ReadSignedField(stream, 1);
  head.levels = static_cast<int32_t>(ReadField(stream, 1)) + 1;
  return head;
}

void WriteContainerHead(ByteStream& stream, const ContainerHead& head) {
  WriteWords(stream, {head.width, head.height, head.maxWidth, head.maxHeight, head.cutCount});
}

ContainerHead ReadContainerHead(ByteStream& stream) {
  ContainerHead head;
  ReadWords(stream, {&head.width, &head.height, &head.maxWidth, &head.maxHeight, &head.cutCount});
  return head;
}

void WriteFrameTiming(ByteStream& stream, const StreamFrameTiming& timing) {
  WriteWords(stream, {timing.time, timing.loop});
  WriteField(stream, timing.brightness, 1);
  WriteWords(stream, {timing.x, timing.y});
}

void WriteFrameHead(ByteStream& stream, const StreamFrameHead& head) {
  WriteFrameTiming(stream, head);
  WriteWords(stream, {head.box.x, head.box.y, head.box.width, head.box.height});
  WriteField(stream, static_cast<int32_t>(head.codeSize), 4);
  WriteField(stream, static_cast<int32_t>(head.literalSize), 4);
}

StreamFrameHead ReadFrameHead(ByteStream& stream) {
  StreamFrameHead head;
  ReadWords(stream, {&head.time, &head.loop});
  head.brightness = ReadSignedField(stream, 1);
  ReadWords(stream, {&head.x, &head.y});
  ReadFrameSections(stream, &head);
  return head;
}

void ReadFrameSections(ByteStream& stream, StreamFrameHead* head) {
  ReadWords(stream, {&head->box.x, &head->box.y, &head->box.width, &head->box.height});
  head->codeSize = ReadField(stream, 4);
  head->literalSize = ReadField(stream, 4);
}

}  // namespace sorvel
