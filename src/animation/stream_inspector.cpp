#include "animation/stream_inspector.h"

#include <algorithm>
#include <bit>

namespace sorvel {

namespace {

class Inspector {
 public:
  Inspector(ByteStream* input, StreamInfo* streamInfo, LoadReport* loadReport)
      : stream(*input), info(*streamInfo), report(*loadReport), length(StreamLength(*input)) {}

  bool Run();

 private:
  std::string Text();
  bool Expect(int64_t bytes);
  bool ReadFilmHead();
  bool ReadCutRecord();
  bool ReadFrame();
  bool CheckBox(const StreamFrameHead& frame, int64_t number);
  bool CheckBlocks(const StreamFrameHead& frame, int64_t number);

  ByteStream& stream;
  StreamInfo& info;
  LoadReport& report;
  int32_t length;
};

std::string Inspector::Text() {
  char text[kStreamTextLimit];
  ReadText(stream, text, kStreamTextLimit);
  return text;
}

bool Inspector::Expect(int64_t bytes) {
  if (length - stream.Tell() >= bytes) return true;
  report.Note("the stream ends early");
  return false;
}

bool Inspector::Run() {
  stream.Seek(0, kFromStart);
  const StreamKind kind = ReadStreamKind(stream);
  info.isContainer = kind == StreamKind::kFilmContainer;
  if (kind == StreamKind::kUnknown) {
    report.Note("not a compiled stream");
    return false;
  }
  if (!Expect(kStreamSizeBytes)) return true;
  info.size = ReadField(stream, kStreamSizeBytes);
  if (info.size != static_cast<uint32_t>(length)) report.Note("the size in the head isn't the file's");
  if (info.isContainer) {
    if (!ReadFilmHead()) return true;
  } else {
    info.offsets.push_back(kCutRecordOffset);
  }
  size_t next = 0;
  while (stream.Tell() < length || next == 0) {
    if (next < info.offsets.size() && info.offsets[next] == static_cast<uint32_t>(stream.Tell())) {
      if (!ReadCutRecord()) return true;
      ++next;
    } else if (next == 0) {
      report.Note("the first offset does not point behind the table");
      return true;
    } else if (!ReadFrame()) {
      return true;
    }
    const bool endsCut = stream.Tell() >= length ||
                         (next < info.offsets.size() && info.offsets[next] == static_cast<uint32_t>(stream.Tell()));
    if (endsCut && info.cuts.back().frames.empty()) report.Note("cut %lld has no frame", static_cast<int64_t>(next));
  }
  if (next < info.offsets.size()) {
    report.Note("the offset of cut %lld points nowhere", static_cast<int64_t>(next) + 1);
  }
  return true;
}

bool Inspector::ReadFilmHead() {
  info.title = Text();
  info.author = Text();
  if (!Expect(kContainerHeadBytes)) return false;
  static_cast<ContainerHead&>(info) = ReadContainerHead(stream);
  if (info.cutCount < 1) {
    report.Note("the film has no cuts");
    return false;
  }
  if (info.width < 0 || info.height < 0) report.Note("the picture area has a negative size");
  if (!Expect(int64_t{4} * info.cutCount)) return false;
  for (int32_t i = 0; i < info.cutCount; ++i) info.offsets.push_back(ReadField(stream, 4));
  return true;
}

bool Inspector::ReadCutRecord() {
  StreamCutInfo& cut = info.cuts.emplace_back();
  cut.offset = stream.Tell();
  cut.credit = Text();
  if (!Expect(kCutHeadBytes)) return false;
  static_cast<StreamCutHead&>(cut) = ReadCutHead(stream);
  const int64_t number = static_cast<int64_t>(info.cuts.size());
  if (cut.width < 1 || cut.height < 1) report.Note("the picture of cut %lld is empty", number);
  if (info.isContainer ? cut.width > info.maxWidth || cut.height > info.maxHeight
                       : cut.frameWidth < 0 || cut.frameHeight < 0) {
    report.Note(info.isContainer ? "the picture of cut %lld is larger than the film's largest"
                                 : "the frame of cut %lld has a negative size",
                number);
  }
  if (cut.levels != 4 && cut.levels != 13) report.Note("cut %lld has an unknown number of grey levels", number);
  return !report.IsDamaged();
}

bool Inspector::ReadFrame() {
  StreamCutInfo& cut = info.cuts.back();
  if (!Expect(kFrameHeadBytes)) return false;
  const int32_t start = stream.Tell();
  const StreamFrameHead& frame = cut.frames.emplace_back(ReadFrameHead(stream));
  if (stream.Tell() != start + kFrameHeadBytes) {
    report.Note("the stream can't be read");
    return false;
  }
  const int64_t number = static_cast<int64_t>(cut.frames.size());
  if (!CheckBox(frame, number)) return false;
  const int64_t sections = frame.MapSize() + frame.codeSize + frame.literalSize;
  if (!Expect(sections)) return false;
  const int32_t next = static_cast<int32_t>(stream.Tell() + sections);
  if (!CheckBlocks(frame, number)) return false;
  stream.Seek(next, kFromStart);
  return true;
}

bool Inspector::CheckBox(const StreamFrameHead& frame, int64_t number) {
  const StreamCutHead& cut = info.cuts.back();
  const Rect& box = frame.box;
  if (box.x < 0 || box.y < 0 || box.width < 0 || box.height < 0 || box.x + box.width > cut.width ||
      box.y + box.height > cut.height) {
    report.Note("the box of frame %lld lies outside the picture", number);
  } else if (number == 1 && box != Rect{0, 0, cut.width, cut.height}) {
    report.Note("the first frame is not a whole picture");
  } else if (number == 1 && frame.loop == 0) {
    report.Note("the first frame stands in a loop that has no start");
  } else if (box.x % 2 != 0) {
    report.Note("the box of frame %lld begins in an odd column", number);
  } else if (box.IsEmpty() && (frame.codeSize != 0 || frame.literalSize != 0)) {
    report.Note("frame %lld has data without a box", number);
  }
  return !report.IsDamaged();
}

// Follows the codes through the change map and counts the bytes that they ask for.
bool Inspector::CheckBlocks(const StreamFrameHead& frame, int64_t number) {
  const Rect& box = frame.box;
  if (box.IsEmpty()) return true;
  const int32_t blocks = UnitsOf(box.width);
  const int32_t rowBytes = CodeRowBytes(box.width);
  const int32_t mapRowBytes = CodeMapRowBytes(box.width);
  const int64_t literalBytes = info.cuts.back().levels <= 4 ? 1 : 2;
  std::vector<uint8_t> map(static_cast<size_t>(frame.MapSize()));
  std::vector<uint8_t> codes(frame.codeSize);
  std::vector<uint8_t> row(static_cast<size_t>(rowBytes), kFirstRowCodes);
  ReadUpTo(stream, map.data(), static_cast<int32_t>(map.size()));
  ReadUpTo(stream, codes.data(), static_cast<int32_t>(frame.codeSize));
  const uint8_t* next = codes.data();
  const uint8_t* const end = next + codes.size();
  int64_t codesWanted = 0;
  int64_t literalsUsed = 0;
  for (int32_t y = 0; y < box.height; ++y) {
    const uint8_t* mapRow = map.data() + y * mapRowBytes;
    codesWanted += CountCodes(mapRow, box.width, 1);
    LoadCodeRow(mapRow, box.width, &next, end, kCodeOfRowAbove, row.data());
    for (int32_t k = 0; k < blocks; ++k) {
      const int32_t code = CodeAt(row.data(), k);
      if (code == kLiteralUnit) literalsUsed += literalBytes;
      const UnitOffset offset = code == kPreviousFrameBlock ? UnitOffset{0, 0} : kUnitOffsets[code];
      if (box.x + 4 * k + offset.dx < 0 || box.y + y + offset.dy < 0) {
        report.Note("a block of frame %lld is copied from outside the picture", number);
        return false;
      }
    }
  }
  if (codesWanted != int64_t{frame.codeSize}) report.Note("frame %lld has codes of another size than its map", number);
  if (literalsUsed != frame.literalSize) report.Note("frame %lld has literals of another size than its codes", number);
  return !report.IsDamaged();
}

}  // namespace

bool InspectStream(ByteStream* stream, StreamInfo* info, LoadReport* report) {
  return Inspector(stream, info, report).Run();
}

bool IsCompleteStream(ByteStream* stream) {
  StreamInfo info;
  LoadReport report;
  return InspectStream(stream, &info, &report) && !info.isContainer && !report.IsDamaged();
}

}  // namespace sorvel
