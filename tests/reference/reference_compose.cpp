// From a frame's records to one canvas of colour roles.
#include <algorithm>

#include "reference_internal.h"
#include "support/ink_rules.h"

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

namespace {

bool Clip(int* dx, int* dy, int* sx, int* sy, int* width, int* height, const Canvas& target, const Cell& source) {
  return inkrules::ClipBlock(dx, dy, sx, sy, width, height, target.width, target.height, source.width, source.height);
}

}  // namespace

bool Composite(Canvas* target, int dx, int dy, const Cell& source, int sx, int sy, int width, int height, bool pale,
               Box* outBox) {
  if (!Clip(&dx, &dy, &sx, &sy, &width, &height, *target, source)) return false;
  bool ink = false;
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  for (int j = 0; j < height; j++) {
    for (int i = 0; i < width; i++) {
      int x = sx + i;
      int y = sy + j;
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
      int value = inkrules::KeyedValue(s, target->Get(dx + i, dy + j), pale);
      if (value >= 0) target->Set(dx + i, dy + j, static_cast<std::uint8_t>(value));
    }
  }
  if (outBox != nullptr) *outBox = ink ? Box{left, top, right - left, bottom - top} : Box{};
  return true;
}

void Overlay(Canvas* target, int dx, int dy, const Cell& source, int sx, int sy, int width, int height, int variant) {
  if (!Clip(&dx, &dy, &sx, &sy, &width, &height, *target, source)) return;
  for (int i = 0; i < width; i++) {
    for (int j = 0; j < height; j++) {
      int ghost = inkrules::GhostValue(source.Get(sx + i, sy + j), variant);
      if (ghost >= 0) target->Set(dx + i, dy + j, static_cast<std::uint8_t>(ghost));
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
