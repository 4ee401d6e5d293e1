// Cells and the layer block.
#include "reference_internal.h"

namespace reference {

// ---- bytes ---------------------------------------------------------------

void Put8(Bytes* out, int value) {
  out->push_back(static_cast<std::uint8_t>(value & 0xFF));
}

void Put16(Bytes* out, int value) {
  Put8(out, value);
  Put8(out, value >> 8);
}

void Put32(Bytes* out, std::uint32_t value) {
  for (int i = 0; i < 4; i++) Put8(out, static_cast<int>((value >> (8 * i)) & 0xFF));
}

void PutText(Bytes* out, const std::string& text) {
  for (char c : text) Put8(out, static_cast<unsigned char>(c));
  Put8(out, 0);
}

void Patch16(Bytes* out, std::size_t at, int value) {
  for (std::size_t i = 0; i < 2; i++) (*out)[at + i] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFF);
}

void Patch32(Bytes* out, std::size_t at, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; i++) (*out)[at + i] = static_cast<std::uint8_t>((value >> (8 * i)) & 0xFF);
}

int Reader::GetC() {
  if (position >= data->size()) return -1;
  int value = (*data)[position];
  position = position + 1;
  return value;
}

int Reader::U8() {
  int c = GetC();
  return c < 0 ? 0 : c;
}

int Reader::I8() {
  int value = U8();
  return value >= 0x80 ? value - 0x100 : value;
}

int Reader::U16() {
  int low = U8();
  int high = U8();
  return low | (high << 8);
}

int Reader::I16() {
  int value = U16();
  return value >= 0x8000 ? value - 0x10000 : value;
}

std::uint32_t Reader::U32() {
  std::uint32_t low = static_cast<std::uint32_t>(U16());
  std::uint32_t high = static_cast<std::uint32_t>(U16());
  return low | (high << 16);
}

std::string Reader::Text() {
  std::string text;
  while (text.size() < 256) {
    int c = GetC();
    if (c <= 0) return text;
    text.push_back(static_cast<char>(c));
  }
  text.pop_back();
  return text;
}

// ---- cells ---------------------------------------------------------------

const Offset kOffsets[16] = {
    {0, 0},   {-4, 0}, {-8, 0},  {-16, 0}, {0, -1}, {-4, -1}, {0, -2},  {-4, -2},
    {-8, -2}, {0, -4}, {-4, -4}, {-8, -4}, {0, -8}, {-4, -8}, {-8, -8}, {0, -16},
};

Cell::Cell(int cellWidth, int cellHeight, std::uint8_t fill) {
  width = cellWidth;
  height = cellHeight;
  pitch = (width / 2 + width % 2 + 3) / 4 * 4;
  std::uint8_t both = static_cast<std::uint8_t>((fill << 4) | (fill & 15));
  bits.assign(static_cast<std::size_t>(pitch) * static_cast<std::size_t>(height), both);
}

std::uint8_t Cell::Get(int x, int y) const {
  std::uint8_t both = bits[static_cast<std::size_t>(y * pitch + x / 2)];
  if (x % 2 == 0) return static_cast<std::uint8_t>(both >> 4);
  return static_cast<std::uint8_t>(both & 15);
}

void Cell::Set(int x, int y, std::uint8_t value) {
  std::uint8_t& both = bits[static_cast<std::size_t>(y * pitch + x / 2)];
  if (x % 2 == 0) {
    both = static_cast<std::uint8_t>((both & 0x0F) | ((value & 15) << 4));
  } else {
    both = static_cast<std::uint8_t>((both & 0xF0) | (value & 15));
  }
}

// ---- the layer block -----------------------------------------------------

namespace {

struct Sizes {
  int groups;     // groups of four pixels in a row
  int codeBytes;  // code bytes of a row
  int mapBytes;   // bit-map bytes of a row
};

Sizes SizesOf(int width) {
  Sizes sizes{};
  sizes.groups = (width + 3) / 4;
  sizes.codeBytes = (width + 7) / 8;
  sizes.mapBytes = (sizes.codeBytes + 7) / 8;
  return sizes;
}

// The group and the two bytes that follow it in memory. Bytes behind the last row count as 0.
std::uint32_t ReadGroup(const Cell& cell, int x, int y) {
  long start = static_cast<long>(y) * cell.pitch + x / 2;
  std::uint32_t value = 0;
  for (int i = 0; i < 4; i++) {
    long at = start + i;
    std::uint32_t byte = 0;
    if (at >= 0 && at < static_cast<long>(cell.bits.size())) byte = cell.bits[static_cast<std::size_t>(at)];
    value = value | (byte << (8 * i));
  }
  return value;
}

void WriteGroup(Cell* cell, int x, int y, std::uint32_t value) {
  std::size_t at = static_cast<std::size_t>(y * cell->pitch + x / 2);
  cell->bits[at] = static_cast<std::uint8_t>(value & 0xFF);
  cell->bits[at + 1] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
}

int CodeOf(const Bytes& codes, int k) {
  int byte = codes[static_cast<std::size_t>(k / 2)];
  return k % 2 == 0 ? byte & 15 : byte >> 4;
}

bool Matches(const Cell& cell, int x, int y, int code) {
  int fromX = x + kOffsets[code].dx;
  int fromY = y + kOffsets[code].dy;
  if (fromX < 0 || fromY < 0) return false;
  // All 32 bits, though a literal stores only 16: the following group has to agree as well.
  return ReadGroup(cell, fromX, fromY) == ReadGroup(cell, x, y);
}

int ChooseCode(const Cell& cell, int x, int y, int above) {
  static const int order[15] = {1, 4, 5, 6, 7, 9, 10, 2, 8, 11, 12, 13, 14, 3, 15};
  if (above != 0 && Matches(cell, x, y, above)) return above;
  for (int code : order) {
    if (Matches(cell, x, y, code)) return code;
  }
  return 0;
}

void PutCell(Bytes* out, const Cell& cell, int width, int height) {
  Sizes sizes = SizesOf(width);
  Bytes map(static_cast<std::size_t>(sizes.mapBytes) * static_cast<std::size_t>(height), 0);
  Bytes previous(static_cast<std::size_t>(sizes.codeBytes), 0x11);
  Bytes stored;
  Bytes literals;
  for (int y = 0; y < height; y++) {
    Bytes current(static_cast<std::size_t>(sizes.codeBytes), 0);
    for (int k = 0; k < sizes.groups; k++) {
      int x = 4 * k;
      int code = ChooseCode(cell, x, y, CodeOf(previous, k));
      if (code == 0) Put16(&literals, static_cast<int>(ReadGroup(cell, x, y) & 0xFFFF));
      std::uint8_t& byte = current[static_cast<std::size_t>(k / 2)];
      if (k % 2 == 0) {
        byte = static_cast<std::uint8_t>(code);
      } else {
        byte = static_cast<std::uint8_t>(byte | (code << 4));
      }
    }
    for (int i = 0; i < sizes.codeBytes; i++) {
      std::size_t at = static_cast<std::size_t>(i);
      if (current[at] != previous[at]) {
        stored.push_back(current[at]);
        std::uint8_t& byte = map[static_cast<std::size_t>(y * sizes.mapBytes + i / 8)];
        byte = static_cast<std::uint8_t>(byte | (1 << (i % 8)));
      }
    }
    previous = current;
  }
  Put32(out, static_cast<std::uint32_t>(stored.size()));
  Put32(out, static_cast<std::uint32_t>(literals.size()));
  out->insert(out->end(), map.begin(), map.end());
  out->insert(out->end(), stored.begin(), stored.end());
  out->insert(out->end(), literals.begin(), literals.end());
}

bool GetCell(Reader* in, Cell* cell) {
  Sizes sizes = SizesOf(cell->width);
  std::uint32_t codeLength = in->U32();
  std::uint32_t literalLength = in->U32();
  Bytes map;
  for (int i = 0; i < sizes.mapBytes * cell->height; i++) map.push_back(static_cast<std::uint8_t>(in->U8()));
  Bytes stored;
  for (std::uint32_t i = 0; i < codeLength; i++) {
    int c = in->GetC();
    if (c < 0) break;
    stored.push_back(static_cast<std::uint8_t>(c));
  }
  std::size_t literalStart = in->position;
  std::size_t nextStored = 0;
  Bytes codes(static_cast<std::size_t>(sizes.codeBytes), 0x11);
  for (int y = 0; y < cell->height; y++) {
    for (int i = 0; i < sizes.codeBytes; i++) {
      int mapByte = map[static_cast<std::size_t>(y * sizes.mapBytes + i / 8)];
      if ((mapByte >> (i % 8)) % 2 == 1 && nextStored < stored.size()) {
        codes[static_cast<std::size_t>(i)] = stored[nextStored];
        nextStored = nextStored + 1;
      }
    }
    for (int k = 0; k < sizes.groups; k++) {
      int x = 4 * k;
      int code = CodeOf(codes, k);
      std::uint32_t value = 0;
      if (code == 0) {
        value = static_cast<std::uint32_t>(in->U16());
      } else {
        value = ReadGroup(*cell, x + kOffsets[code].dx, y + kOffsets[code].dy);
      }
      WriteGroup(cell, x, y, value);
    }
  }
  // The one integrity test: the literals have to take exactly their length.
  return in->position - literalStart == literalLength;
}

}  // namespace

Bytes WriteLayerBlock(const LayerData& layer) {
  Bytes out;
  PutText(&out, layer.name ? *layer.name : "UNTITLED");
  Put16(&out, layer.width);
  Put16(&out, layer.height);
  Put8(&out, static_cast<int>(layer.followFrame & 0xFF));
  Put16(&out, static_cast<int>(layer.cells.size()));
  for (const Cell& cell : layer.cells) PutCell(&out, cell, layer.width, layer.height);
  return out;
}

bool ReadLayerBlock(Reader* in, LayerData* layer) {
  *layer = LayerData();
  layer->name = in->Text();
  layer->width = in->U16();
  layer->height = in->U16();
  layer->followFrame = static_cast<std::uint32_t>(in->U8());
  int count = in->U16();
  for (int i = 0; i < count; i++) {
    layer->cells.emplace_back(layer->width, layer->height);
    if (!GetCell(in, &layer->cells.back())) return false;
  }
  return true;
}

}  // namespace reference
