// The compiled stream, the film container and the bitmap file of a frame.
#include <algorithm>

#include "reference_internal.h"

namespace reference {

namespace {

// What one record contributes to the comparison of two frames.
struct Shown {
  int layer = -1;
  int cell = -1;
  Box rectangle;  // the whole cell
  bool operator==(const Shown&) const = default;
};

bool IsShown(const FrameData& frame, int record) {
  return record >= 0 && record < static_cast<int>(frame.records.size()) &&
         frame.records[static_cast<std::size_t>(record)].cell >= 0;
}

Shown ShownOf(const CutData& cut, const FrameData& frame, int record) {
  Shown shown;
  if (!IsShown(frame, record)) {
    return shown;
  }
  const RecordData& r = frame.records[static_cast<std::size_t>(record)];
  const LayerData& layer = cut.layers[static_cast<std::size_t>(r.layer)];
  shown.layer = r.layer;
  shown.cell = r.cell;
  int x = 0;
  int y = 0;
  RecordPosition(cut, frame, record, &x, &y);
  shown.rectangle = Box{x, y, layer.width, layer.height};
  return shown;
}

int RoundUp(int value, int scale) {
  while (value % scale != 0) {
    value = value + 1;
  }
  return value;
}

int RoundDown(int value, int scale) {
  return value - value % scale;
}

// From canvas pixels to reduced ones, outward, cut to the picture.
Box Reduced(const Box& box, int scale, int width, int height) {
  int x0 = std::max(RoundDown(box.x, scale) / scale, 0);
  int y0 = std::max(RoundDown(box.y, scale) / scale, 0);
  int x1 = std::max(RoundUp(box.x + box.width, scale) / scale, 0);
  int y1 = std::max(RoundUp(box.y + box.height, scale) / scale, 0);
  x1 = std::min(x1, width);
  y1 = std::min(y1, height);
  Box reduced{x0, y0, x1 - x0, y1 - y0};
  if (IsEmpty(reduced)) {
    reduced.width = 0;
    reduced.height = 0;
  }
  return reduced;
}

bool CodeFits(const Planes& planes, int x, int y, int code, bool firstFrame) {
  if (code == 0) {
    return false;
  }
  if (code == 15) {
    // Before the first frame there is no picture to copy from.
    return !firstFrame && planes.GetBack4(x, y) == planes.GetFront4(x, y);
  }
  int fromX = x + kOffsets[code].dx;
  int fromY = y + kOffsets[code].dy;
  if (fromX < 0 || fromY < 0) {
    return false;
  }
  return planes.GetFront4(fromX, fromY) == planes.GetFront4(x, y);
}

int ChooseBlockCode(const Planes& planes, int x, int y, int above, bool firstFrame) {
  static const int order[15] = {1, 4, 5, 6, 15, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3};
  if (CodeFits(planes, x, y, above, firstFrame)) {
    return above;
  }
  for (int code : order) {
    if (CodeFits(planes, x, y, code, firstFrame)) {
      return code;
    }
  }
  return 0;
}

void PutPicture(Bytes* out, const Planes& planes, const Box& box, int levels, bool firstFrame) {
  int rowBytes = (box.width + 7) / 8;
  int mapRowBytes = (rowBytes + 7) / 8;
  Bytes map(static_cast<std::size_t>(mapRowBytes * box.height), 0);
  Bytes codes;
  Bytes literals;
  Bytes previous(static_cast<std::size_t>(rowBytes), 0x11);
  for (int row = 0; row < box.height; row++) {
    int y = box.y + row;
    Bytes current(static_cast<std::size_t>(rowBytes), 0);
    int block = 0;
    for (int x = box.x; x < box.x + box.width; x = x + 4) {
      std::size_t byteIndex = static_cast<std::size_t>(block / 2);
      int above = block % 2 == 0 ? previous[byteIndex] & 15 : previous[byteIndex] >> 4;
      int code = ChooseBlockCode(planes, x, y, above, firstFrame);
      if (block % 2 == 0) {
        current[byteIndex] = static_cast<std::uint8_t>(code);
      } else {
        current[byteIndex] = static_cast<std::uint8_t>(current[byteIndex] | (code << 4));
      }
      if (code == 0) {
        std::array<int, 4> p = planes.GetFront4(x, y);
        if (levels == 4) {
          Put8(&literals, p[0] | (p[1] << 2) | (p[2] << 4) | (p[3] << 6));
        } else {
          Put8(&literals, p[0] | (p[1] << 4));
          Put8(&literals, p[2] | (p[3] << 4));
        }
      }
      block = block + 1;
    }
    for (int i = 0; i < rowBytes; i++) {
      std::size_t at = static_cast<std::size_t>(i);
      if (current[at] != previous[at]) {
        codes.push_back(current[at]);
        std::uint8_t& byte = map[static_cast<std::size_t>(row * mapRowBytes + i / 8)];
        byte = static_cast<std::uint8_t>(byte | (1 << (i % 8)));
      }
    }
    previous = current;
  }
  Put32(out, static_cast<std::uint32_t>(codes.size()));
  Put32(out, static_cast<std::uint32_t>(literals.size()));
  out->insert(out->end(), map.begin(), map.end());
  out->insert(out->end(), codes.begin(), codes.end());
  out->insert(out->end(), literals.begin(), literals.end());
}

}  // namespace

Bytes EncodeFrames(const CutData& given, int first, int last, bool* refused, std::uint32_t viewFlags,
                   std::vector<Bytes>* frontPictures) {
  if (refused != nullptr) {
    *refused = false;
  }
  if (first > last || first < 0 || last >= static_cast<int>(given.frames.size()) || given.antialias == 3) {
    if (refused != nullptr) {
      *refused = true;
    }
    return Bytes();
  }

  CutData cut = given;
  int scale = ScaleOf(cut);
  int levels = scale == 1 ? 4 : 13;
  bool single = (viewFlags & kCurrentCellOnly) != 0;
  std::uint32_t flags = viewFlags & kCurrentCellOnly;

  Bytes out;
  Put8(&out, 'C');
  Put8(&out, 'A');
  Put32(&out, 0);
  PutText(&out, cut.credit);
  Put16(&out, cut.width / scale);
  Put16(&out, cut.height / scale);
  Put16(&out, cut.frameWidth / scale);
  Put16(&out, cut.frameHeight / scale);
  Put8(&out, cut.fps);
  Put8(&out, levels - 1);

  Canvas composition(cut.width, cut.height);
  Planes planes;
  planes.Create(cut.width / scale, cut.height / scale);

  // One record is shown in all frames under currentCellOnly: that of the cut's current frame.
  int record = -1;
  if (cut.currentFrame >= 0 && cut.currentFrame < static_cast<int>(cut.frames.size())) {
    record = cut.frames[static_cast<std::size_t>(cut.currentFrame)].currentRecord;
  }

  int frameSlot = 0;
  Box previousArea;
  int composed = 0;  // the frame whose picture stands; a held frame is not composed

  for (int i = 0; i <= last - first; i++) {
    FrameData& frame = cut.frames[static_cast<std::size_t>(first + i)];
    const FrameData* previous = i == 0 ? nullptr : &cut.frames[static_cast<std::size_t>(first + i - 1)];
    Box box{0, 0, cut.width / scale, cut.height / scale};

    if (previous != nullptr && SameAs(frame, *previous)) {
      box = Box{};
    } else {
      SelectRecord(&frame, record);

      // The area that has to be composed anew: all that the records which differ cover.
      Box area;
      if (previous == nullptr) {
        area = Box{0, 0, cut.width, cut.height};
      } else {
        const FrameData& before = cut.frames[static_cast<std::size_t>(composed)];
        const auto compare = [&](int nowRecord, int beforeRecord) {
          Shown now = ShownOf(cut, frame, nowRecord);
          Shown then = ShownOf(cut, before, beforeRecord);
          if (!(now == then)) {
            AddBox(&area, then.rectangle);
            AddBox(&area, now.rectangle);
          }
        };
        if (single) {
          compare(frame.currentRecord, before.currentRecord);
        } else {
          int records = static_cast<int>(std::max(frame.records.size(), before.records.size()));
          for (int s = 0; s < records; s++) {
            compare(s, s);
          }
        }
      }
      composed = first + i;
      composition.Clear(area);
      ComposeFrame(&composition, cut, frame, area, flags, nullptr);

      planes.frontIsHigh = frameSlot & 1;
      frameSlot = frameSlot + 1;

      if (previous == nullptr) {
        previousArea = Box{0, 0, planes.width, planes.height};
        planes.ReduceFrom(composition, nullptr, scale, nullptr);
      } else {
        Box reduced = Reduced(area, scale, planes.width, planes.height);
        if (IsEmpty(reduced)) {
          planes.CopyBackToFront(previousArea);
        } else {
          planes.CopyAround(reduced, previousArea);
        }
        previousArea = reduced;
        planes.ReduceFrom(composition, &box, scale, &reduced);
      }
    }

    // The first frame is a clean start: no dissolve into it, and it ends any loop before it.
    int time = EffectiveTime(cut, first + i);
    int loop = frame.loop & 0xFFFF;
    if (i == 0 && time < 0) {
      time = -time;
    }
    if (i == 0 && loop == 0) {
      loop = 1;
    }
    Put16(&out, time);
    Put16(&out, loop);
    Put8(&out, DecodedBrightness(frame));
    Put16(&out, frame.x / scale);
    Put16(&out, frame.y / scale);
    Put16(&out, box.x);
    Put16(&out, box.y);
    Put16(&out, box.width);
    Put16(&out, box.height);
    PutPicture(&out, planes, box, levels, i == 0);

    if (frontPictures != nullptr) {
      frontPictures->push_back(planes.FrontPicture());
    }
  }

  Patch32(&out, 2, static_cast<std::uint32_t>(out.size()));
  return out;
}

Bytes EncodeCut(const CutData& cut, int first, int last, bool* refused, std::uint32_t viewFlags) {
  return EncodeFrames(cut, first, last, refused, viewFlags, nullptr);
}

Bytes ExportFrame(const CutData& cut, int frameIndex, std::uint32_t viewFlags) {
  int scale = ScaleOf(cut);
  const FrameData& frame = cut.frames[static_cast<std::size_t>(frameIndex)];

  Planes planes;
  planes.Create(cut.width / scale, cut.height / scale);
  Canvas view(cut.width, cut.height);
  ComposeFrame(&view, cut, frame, Box{0, 0, cut.width, cut.height}, viewFlags & kCurrentCellOnly, nullptr);
  planes.FillBits(0);
  planes.frontIsHigh = 0;
  planes.ReduceFrom(view, nullptr, scale, nullptr);
  planes.SetLevels(scale == 1 ? 4 : 13);
  planes.SetBrightness(DecodedBrightness(frame));

  int w = cut.frameWidth / scale;
  int h = cut.frameHeight / scale;
  int rowBytes = (w + 1) / 2;

  Bytes out;
  Put8(&out, 'B');
  Put8(&out, 'M');
  // The size counts padded rows, though the rows below have no padding.
  Put32(&out, static_cast<std::uint32_t>(118 + h * ((rowBytes + 3) / 4 * 4)));
  Put32(&out, 0);
  Put32(&out, 118);
  Put32(&out, 40);
  Put32(&out, static_cast<std::uint32_t>(w));
  Put32(&out, static_cast<std::uint32_t>(h));
  Put16(&out, 1);
  Put16(&out, 4);
  Put32(&out, 0);
  Put32(&out, 0);
  Put32(&out, 0);
  Put32(&out, 0);
  Put32(&out, 16);
  Put32(&out, 0);
  for (int i = 0; i < 16; i++) {
    Color color = planes.FrontColor(i);
    Put8(&out, color.blue);
    Put8(&out, color.green);
    Put8(&out, color.red);
    Put8(&out, 0);
  }
  for (int i = h - 1; i >= 0; i--) {
    int y = frame.y / scale + i;
    for (int c = 0; c < w; c = c + 2) {
      int x = frame.x / scale + c;
      Put8(&out, planes.GetFront(x, y) * 16 + planes.GetFront(x + 1, y));
    }
  }
  return out;
}

Bytes WriteContainer(const std::string& title, const std::string& author, int width, int height,
                     const std::vector<Bytes>& compiledStreams) {
  Bytes out;
  Put8(&out, 'S');
  Put8(&out, 'V');
  Put32(&out, 0);
  PutText(&out, title);
  PutText(&out, author);
  Put16(&out, width);
  Put16(&out, height);
  std::size_t maxPosition = out.size();
  Put16(&out, 0);
  Put16(&out, 0);
  Put16(&out, static_cast<int>(compiledStreams.size()));
  std::size_t tablePosition = out.size();
  for (std::size_t i = 0; i < compiledStreams.size(); i++) {
    Put32(&out, 0);
  }
  int maxWidth = 0;
  int maxHeight = 0;
  for (std::size_t i = 0; i < compiledStreams.size(); i++) {
    const Bytes& stream = compiledStreams[i];
    Patch32(&out, tablePosition + 4 * i, static_cast<std::uint32_t>(out.size()));
    Reader in;
    in.data = &stream;
    in.position = 6;
    while (in.GetC() > 0) {
    }
    maxWidth = std::max(maxWidth, in.I16());
    maxHeight = std::max(maxHeight, in.I16());
    for (std::size_t j = 6; j < stream.size(); j++) {
      out.push_back(stream[j]);
    }
  }
  Patch32(&out, 2, static_cast<std::uint32_t>(out.size()));
  Patch16(&out, maxPosition, maxWidth);
  Patch16(&out, maxPosition + 2, maxHeight);
  return out;
}

}  // namespace reference
