// From a frame's records to one canvas of colour roles.
#include <algorithm>

#include "reference_internal.h"

namespace reference {

bool IsEmpty(const Box& box) {
  return box.width <= 0 || box.height <= 0;
}

void AddBox(Box* target, const Box& box) {
  if (IsEmpty(box)) return;
  if (IsEmpty(*target)) {
    *target = box;
    return;
  }
  int left = std::min(target->x, box.x);
  int top = std::min(target->y, box.y);
  int right = std::max(target->x + target->width, box.x + box.width);
  int bottom = std::max(target->y + target->height, box.y + box.height);
  *target = Box{left, top, right - left, bottom - top};
}

Canvas::Canvas(int canvasWidth, int canvasHeight) {
  width = canvasWidth;
  height = canvasHeight;
  pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
}

std::uint8_t Canvas::Get(int x, int y) const {
  return pixels[static_cast<std::size_t>(y * width + x)];
}

void Canvas::Set(int x, int y, std::uint8_t value) {
  pixels[static_cast<std::size_t>(y * width + x)] = value;
}

void Canvas::Clear(const Box& area) {
  for (int y = 0; y < height; y++) {
    for (int x = 0; x < width; x++) {
      if (x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height) Set(x, y, 0);
    }
  }
}

// A line under a tone mark turns into a plain fill tone of the same scale.
int AdjustTone(int value, int delta) {
  int tone = 0;
  if (value >= 1 && value <= 4) {
    tone = value - 1;
  } else if (value >= 8 && value <= 10) {
    tone = value - 8;
  } else if (value >= 16 && value <= 18) {
    tone = value - 16;
  } else {
    return 0;
  }
  tone = tone + delta;
  if (tone < 0) tone = 0;
  if (tone > 3) tone = 3;
  return tone + 1;
}

namespace {

struct Block {
  int dx;
  int dy;
  int sx;
  int sy;
  int width;
  int height;
};

bool Clip(Block* b, const Canvas& target, const Cell& source) {
  if (b->sx + b->width > source.width) b->width = source.width - b->sx;
  if (b->sy + b->height > source.height) b->height = source.height - b->sy;
  if (b->sx < 0) {
    b->dx = b->dx - b->sx;
    b->width = b->width + b->sx;
    b->sx = 0;
  }
  if (b->sy < 0) {
    b->dy = b->dy - b->sy;
    b->height = b->height + b->sy;
    b->sy = 0;
  }
  if (b->dx < 0) {
    b->sx = b->sx - b->dx;
    b->width = b->width + b->dx;
    b->dx = 0;
  }
  if (b->dy < 0) {
    b->sy = b->sy - b->dy;
    b->height = b->height + b->dy;
    b->dy = 0;
  }
  if (b->dx + b->width > target.width) b->width = target.width - b->dx;
  if (b->dy + b->height > target.height) b->height = target.height - b->dy;
  return b->width >= 1 && b->height >= 1;
}

// The value that a source pixel writes over a destination pixel, or -1 for
// none.
int KeyedValue(int s, int destination, bool pale) {
  if (s == 0) return -1;
  if (pale) {
    // Only lines and darks of a pale layer are drawn; its white hides
    // nothing below.
    if (s == 1 || s == 8) return 16;
    if (s == 2 || s == 9) return 17;
    if (s == 3 || s == 10) return 18;
    return -1;
  }
  if (s >= 11 && s <= 14) {
    int delta = 0;
    if (s == 11) {
      delta = 2;
    } else if (s == 12) {
      delta = 1;
    } else if (s == 13) {
      delta = -1;
    } else {
      delta = -2;
    }
    int tone = AdjustTone(destination, delta);
    // A mark with no tone below it stays visible as itself.
    return tone == 0 ? s : tone;
  }
  return s;
}

}  // namespace

bool Composite(Canvas* target, int dx, int dy, const Cell& source, int sx, int sy, int width, int height, bool pale,
               Box* outBox) {
  Block b{dx, dy, sx, sy, width, height};
  if (!Clip(&b, *target, source)) return false;
  bool ink = false;
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  for (int j = 0; j < b.height; j++) {
    for (int i = 0; i < b.width; i++) {
      int x = b.sx + i;
      int y = b.sy + j;
      int s = source.Get(x, y);
      if (s == 0) continue;
      if (!ink) {
        ink = true;
        left = x;
        right = x + 1;
        top = y;
      }
      left = std::min(left, x);
      right = std::max(right, x + 1);
      bottom = y + 1;
      int value = KeyedValue(s, target->Get(b.dx + i, b.dy + j), pale);
      if (value >= 0) target->Set(b.dx + i, b.dy + j, static_cast<std::uint8_t>(value));
    }
  }
  if (outBox != nullptr) *outBox = ink ? Box{left, top, right - left, bottom - top} : Box{};
  return true;
}

void Overlay(Canvas* target, int dx, int dy, const Cell& source, int sx, int sy, int width, int height, int variant) {
  Block b{dx, dy, sx, sy, width, height};
  if (!Clip(&b, *target, source)) return;
  int base = variant == 0 ? 19 : 22;
  for (int i = 0; i < b.width; i++) {
    for (int j = 0; j < b.height; j++) {
      int s = source.Get(b.sx + i, b.sy + j);
      int ghost = -1;
      if (s == 1 || s == 8) {
        ghost = base;
      } else if (s == 2 || s == 9) {
        ghost = base + 1;
      } else if (s == 3 || s == 10) {
        ghost = base + 2;
      }
      if (ghost >= 0) target->Set(b.dx + i, b.dy + j, static_cast<std::uint8_t>(ghost));
    }
  }
}

namespace {

void DrawGhosts(Canvas* target, const CutData& cut, const FrameData& frame, int record, const Box& area,
                std::uint32_t flags) {
  const RecordData& r = frame.records[static_cast<std::size_t>(record)];
  const LayerData& layer = cut.layers[static_cast<std::size_t>(r.layer)];
  int count = static_cast<int>(layer.cells.size());
  int px = 0;
  int py = 0;
  // The neighbours stand where the current cell stands.
  RecordPosition(cut, frame, record, &px, &py);
  if ((flags & kOnionPrevious) != 0) {
    int previous = r.cell == 0 ? count - 1 : r.cell - 1;
    Overlay(target, area.x, area.y, layer.cells[static_cast<std::size_t>(previous)], area.x - px, area.y - py,
            area.width, area.height, 0);
  }
  if ((flags & kOnionNext) != 0) {
    int next = r.cell + 1 >= count ? 0 : r.cell + 1;
    Overlay(target, area.x, area.y, layer.cells[static_cast<std::size_t>(next)], area.x - px, area.y - py, area.width,
            area.height, 1);
  }
}

void SetEntry(std::vector<Box>* boxes, int entry, const Box& box) {
  if (boxes != nullptr && entry >= 0 && entry < static_cast<int>(boxes->size())) {
    (*boxes)[static_cast<std::size_t>(entry)] = box;
  }
}

Box* EntryOf(std::vector<Box>* boxes, int entry) {
  if (boxes == nullptr || entry < 0 || entry >= static_cast<int>(boxes->size())) return nullptr;
  return &(*boxes)[static_cast<std::size_t>(entry)];
}

}  // namespace

void ComposeFrame(Canvas* target, const CutData& cut, const FrameData& frame, const Box& area, std::uint32_t flags,
                  std::vector<Box>* inkBoxes) {
  int current = frame.currentRecord;
  int px = 0;
  int py = 0;

  if ((flags & kCurrentCellOnly) != 0) {
    const Cell* cell = VisibleCell(cut, frame, current, &px, &py);
    if (cell == nullptr) {
      SetEntry(inkBoxes, 0, Box{});
      return;
    }
    DrawGhosts(target, cut, frame, current, area, flags);
    Composite(target, area.x, area.y, *cell, area.x - px, area.y - py, area.width, area.height, false,
              EntryOf(inkBoxes, 0));
    return;
  }

  int limit = static_cast<int>((flags >> 4) & 63);
  int count = limit != 0 ? limit : static_cast<int>(frame.records.size());

  if ((flags & kDimOthers) != 0) {
    for (int i = 0; i < count; i++) {
      if (i == current) continue;
      const Cell* cell = VisibleCell(cut, frame, i, &px, &py);
      if (cell == nullptr) {
        SetEntry(inkBoxes, i, Box{});
        continue;
      }
      Composite(target, area.x, area.y, *cell, area.x - px, area.y - py, area.width, area.height, true,
                EntryOf(inkBoxes, i));
    }
    // On top of all others, also when drawLimit leaves it out.
    const Cell* cell = VisibleCell(cut, frame, current, &px, &py);
    if (cell == nullptr) {
      SetEntry(inkBoxes, current, Box{});
      return;
    }
    DrawGhosts(target, cut, frame, current, area, flags);
    Composite(target, area.x, area.y, *cell, area.x - px, area.y - py, area.width, area.height, false,
              EntryOf(inkBoxes, count));
    return;
  }

  for (int i = 0; i < count; i++) {
    const Cell* cell = VisibleCell(cut, frame, i, &px, &py);
    if (cell == nullptr) {
      SetEntry(inkBoxes, i, Box{});
      continue;
    }
    if (i == current) DrawGhosts(target, cut, frame, i, area, flags);
    Composite(target, area.x, area.y, *cell, area.x - px, area.y - py, area.width, area.height, false,
              EntryOf(inkBoxes, i));
  }
}

Bytes ComposeView(const CutData& cut, int frameIndex, int record, std::uint32_t viewFlags) {
  Canvas view(cut.width, cut.height);
  if (frameIndex >= 0 && frameIndex < static_cast<int>(cut.frames.size())) {
    FrameData frame = cut.frames[static_cast<std::size_t>(frameIndex)];
    SelectRecord(&frame, record);
    ComposeFrame(&view, cut, frame, Box{0, 0, cut.width, cut.height}, viewFlags, nullptr);
  }
  return view.pixels;
}

}  // namespace reference
