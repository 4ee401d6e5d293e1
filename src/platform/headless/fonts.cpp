#include "platform/fonts.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include FT_OUTLINE_H
#include FT_SFNT_NAMES_H
#include FT_SYNTHESIS_H
#include FT_TRUETYPE_IDS_H

#include <algorithm>
#include <cstdlib>

#include "foundation/shift_jis.h"
#include "platform/headless/internal.h"

namespace sorvel::platform {

struct Font {
  FT_Face face = nullptr;
  bool vertical = false;
  bool bold = false;
  int32_t ascent = 0;  // pixels above the base line
  int32_t height = 0;  // of a line
};

namespace {

// Fonts of common packages. The first one that exists replaces fonts that don't.
constexpr const char* kFontFiles[] = {
    "/usr/share/fonts/opentype/ipafont-gothic/ipagp.ttf",
    "/usr/share/fonts/opentype/ipafont-gothic/ipag.ttf",
    "/usr/share/fonts/opentype/ipafont-mincho/ipamp.ttf",
    "/usr/share/fonts/opentype/ipafont-mincho/ipam.ttf",
    "/usr/share/fonts/opentype/ipaexfont-gothic/ipaexg.ttf",
    "/usr/share/fonts/opentype/ipaexfont-mincho/ipaexm.ttf",
    "/usr/share/fonts/truetype/vlgothic/VL-PGothic-Regular.ttf",
    "/usr/share/fonts/truetype/vlgothic/VL-Gothic-Regular.ttf",
    "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc",
    "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf",
    "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf",
};
// Larger sizes are refused.
constexpr int32_t kLargestSize = 2000;
constexpr int32_t kBoldWeight = 600;
constexpr FT_ULong kKana = 0x3042;  // a font that has it writes vertically too
constexpr FT_Fixed kOne = 0x10000;

struct FontFile {
  const char* path;
  FT_Long index;
  std::string fullName;
  std::vector<std::string> names;  // all names of the font
  bool japanese;
};

class FontLibrary {
 public:
  FontLibrary() {
    if (FT_Init_FreeType(&library) != 0) library = nullptr;
  }
  FontLibrary(const FontLibrary&) = delete;
  FontLibrary& operator=(const FontLibrary&) = delete;
  ~FontLibrary() {
    if (library != nullptr) FT_Done_FreeType(library);
  }

  FT_Face Open(const char* path, FT_Long index) const {
    FT_Face face = nullptr;
    return library != nullptr && FT_New_Face(library, path, index, &face) == 0 ? face : nullptr;
  }

 private:
  FT_Library library = nullptr;
};

FontLibrary& Library() {
  static FontLibrary library;
  return library;
}

void AppendUtf8(uint32_t code, std::string* text) {
  const auto put = [text](uint32_t byte) { text->push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6);
    put(0x80 | (code & 0x3F));
  } else {
    put(0xE0 | code >> 12);
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

// Names in font tables are big-endian UTF-16.
std::string NameText(const FT_SfntName& name) {
  std::string text;
  for (FT_UInt i = 0; i + 1 < name.string_len; i += 2) {
    AppendUtf8(static_cast<uint32_t>(name.string[i] << 8 | name.string[i + 1]), &text);
  }
  return headless::FromUtf8(text);
}

void ReadNames(FT_Face face, FontFile* file) {
  std::string japaneseName;
  for (FT_UInt i = 0; i < FT_Get_Sfnt_Name_Count(face); ++i) {
    FT_SfntName name;
    if (FT_Get_Sfnt_Name(face, i, &name) != 0) continue;
    if (name.platform_id != TT_PLATFORM_MICROSOFT || name.encoding_id != TT_MS_ID_UNICODE_CS) continue;
    if (name.name_id != TT_NAME_ID_FONT_FAMILY && name.name_id != TT_NAME_ID_FULL_NAME) continue;
    const std::string text = NameText(name);
    if (text.empty()) continue;
    file->names.push_back(text);
    if (name.name_id != TT_NAME_ID_FULL_NAME) continue;
    if (name.language_id == TT_MS_LANGID_JAPANESE_JAPAN) japaneseName = text;
    if (file->fullName.empty()) file->fullName = text;
  }
  if (!japaneseName.empty()) file->fullName = japaneseName;
  if (face->family_name != nullptr) file->names.push_back(headless::FromUtf8(face->family_name));
  if (file->fullName.empty() && !file->names.empty()) file->fullName = file->names.front();
}

std::vector<FontFile> FindFonts() {
  std::vector<FontFile> files;
  for (const char* path : kFontFiles) {
    FT_Long count = 1;
    for (FT_Long index = 0; index < count; ++index) {
      FT_Face face = Library().Open(path, index);
      if (face == nullptr) break;
      count = face->num_faces;
      FontFile file = {path, index, "", {}, FT_Get_Char_Index(face, kKana) != 0};
      ReadNames(face, &file);
      if (FT_IS_SCALABLE(face) && !file.fullName.empty()) files.push_back(file);
      FT_Done_Face(face);
    }
  }
  return files;
}

const std::vector<FontFile>& Fonts() {
  static const std::vector<FontFile> files = FindFonts();
  return files;
}

const FontFile* FindFont(const std::string& name) {
  for (const FontFile& file : Fonts()) {
    for (const std::string& each : file.names) {
      if (headless::SameWithoutCase(each, name)) return &file;
    }
  }
  return Fonts().empty() ? nullptr : &Fonts().front();
}

int32_t Pixels(FT_Pos units) {
  return static_cast<int32_t>((units + 32) >> 6);
}

// A size above 0 is that of a line, one below 0 that of its letters. A line reaches as far up and down as the font says
// for window systems; its other metrics leave no room for the tails of letters.
bool SetSize(Font* font, int32_t size) {
  size = std::clamp(size, -kLargestSize, kLargestSize);
  const auto* windows = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(font->face, FT_SFNT_OS2));
  const int32_t up = windows != nullptr ? windows->usWinAscent : font->face->ascender;
  const int32_t down = windows != nullptr ? windows->usWinDescent : -font->face->descender;
  const int32_t line = std::max(up + down, 1);
  const int32_t units = std::max<int32_t>(font->face->units_per_EM, 1);
  const int32_t letters = std::max(std::abs(size), 1);
  FT_Size_RequestRec request = {};
  request.type = FT_SIZE_REQUEST_TYPE_NOMINAL;
  request.height = size > 0 ? static_cast<FT_Long>(int64_t{letters} * 64 * units / line) : letters * 64;
  if (FT_Request_Size(font->face, &request) != 0) return false;
  font->height = size > 0 ? size : static_cast<int32_t>(int64_t{letters} * line / units);
  font->ascent = static_cast<int32_t>((int64_t{font->height} * up + line / 2) / line);
  return true;
}

// Decodes the text and leaves out what isn't a character.
std::vector<uint32_t> Characters(const char* text, int32_t length) {
  std::vector<uint32_t> characters;
  const std::string_view whole(text, static_cast<size_t>(std::max(length, 0)));
  for (size_t i = 0; i < whole.size();) {
    const size_t count = std::min<size_t>(IsLeadByte(whole[i]) ? 2 : 1, whole.size() - i);
    const std::string utf8 = headless::ToUtf8(whole.substr(i, count));
    i += count;
    if (utf8.empty() || static_cast<uint8_t>(utf8[0]) < 0x20) continue;
    const size_t size = utf8.size();
    uint32_t code = static_cast<uint8_t>(utf8[0]) & (size == 1 ? 0x7Fu : 0xFFu >> (size + 1));
    for (size_t k = 1; k < size; ++k) code = code << 6 | (static_cast<uint8_t>(utf8[k]) & 0x3Fu);
    characters.push_back(code);
  }
  return characters;
}

// Loads the glyph of a character into the face's slot. Returns its advance along the line.
bool LoadGlyph(const Font& font, uint32_t character, int32_t* step) {
  const FT_UInt glyph = FT_Get_Char_Index(font.face, character);
  if (FT_Load_Glyph(font.face, glyph, FT_LOAD_TARGET_MONO | FT_LOAD_NO_BITMAP) != 0) return false;
  if (font.bold) FT_GlyphSlot_Embolden(font.face->glyph);
  *step = std::max(Pixels(font.face->glyph->advance.x), 0);
  return true;
}

int32_t LineLength(const Font& font, const std::vector<uint32_t>& characters) {
  int64_t length = 0;
  for (const uint32_t character : characters) {
    int32_t step = 0;
    if (LoadGlyph(font, character, &step)) length += step;
  }
  return static_cast<int32_t>(std::min<int64_t>(length, INT32_MAX));
}

// The index of the colour nearest to black, except 0, which is the background.
uint8_t InkOf(const Bitmap& bitmap) {
  const auto distance = [&bitmap](size_t index) {
    const ColorEntry& color = bitmap.colors[index];
    return color.blue * color.blue + color.green * color.green + color.red * color.red;
  };
  size_t nearest = 1;
  for (size_t i = 2; i < 256; ++i) {
    if (distance(i) < distance(nearest)) nearest = i;
  }
  return static_cast<uint8_t>(nearest);
}

// Draws the glyph in the slot, clipped to the box of the line.
void PutGlyph(FT_GlyphSlot slot, int64_t x, int64_t y, const Bounds& part, uint8_t ink, Bitmap* bitmap) {
  const FT_Bitmap& dots = slot->bitmap;
  for (int64_t row = 0; row < static_cast<int64_t>(dots.rows); ++row) {
    const int64_t to = y - slot->bitmap_top + row;
    if (to < part.top || to >= part.bottom) continue;
    const uint8_t* from = dots.buffer + row * dots.pitch;
    for (int64_t column = 0; column < static_cast<int64_t>(dots.width); ++column) {
      const int64_t across = x + slot->bitmap_left + column;
      if (across < part.left || across >= part.right || (from[column / 8] >> (7 - column % 8) & 1) == 0) continue;
      bitmap->bits[static_cast<size_t>(to * bitmap->pitch + across)] = ink;
    }
  }
}

int32_t Bounded(int64_t value, int32_t limit) {
  return static_cast<int32_t>(std::clamp<int64_t>(value, 0, limit));
}

// A clockwise quarter turn: the base line runs downward.
void TurnOutline(FT_GlyphSlot slot) {
  const FT_Matrix turn = {0, kOne, -kOne, 0};
  FT_Outline_Transform(&slot->outline, &turn);
}

// Single-byte characters.
bool IsNarrow(uint32_t character) {
  return character < 0x80 || (character >= 0xFF61 && character <= 0xFF9F);
}

// In vertical lines full-width characters stand upright and half-width ones lie on their side.
void DrawGlyph(const Font& font, uint32_t character, int64_t along, Point corner, const Bounds& part, uint8_t ink,
               Bitmap* bitmap, int32_t* step) {
  *step = 0;
  if (!LoadGlyph(font, character, step)) return;
  FT_GlyphSlot slot = font.face->glyph;
  int64_t x = corner.x + along;
  int64_t y = int64_t{corner.y} + font.ascent;
  if (font.vertical && IsNarrow(character)) {
    TurnOutline(slot);
    x = int64_t{corner.x} - font.ascent;
    y = corner.y + along;
  } else if (font.vertical) {
    x = int64_t{corner.x} - font.height + (font.height - *step) / 2;
    y = corner.y + along + int64_t{*step} * font.ascent / std::max(font.height, 1);
  }
  if (FT_Render_Glyph(slot, FT_RENDER_MODE_MONO) == 0) PutGlyph(slot, x, y, part, ink, bitmap);
}

}  // namespace

FontHandle MakeFont(const char* faceName, int32_t size, int32_t weight) {
  const bool vertical = faceName[0] == '@';
  const FontFile* file = FindFont(vertical ? faceName + 1 : faceName);
  if (file == nullptr) return nullptr;
  Font* font = new Font{Library().Open(file->path, file->index), vertical, weight >= kBoldWeight, 0, 0};
  if (font->face != nullptr && SetSize(font, size)) return font;
  DeleteFont(font);
  return nullptr;
}

void DeleteFont(FontHandle font) {
  if (font == nullptr) return;
  if (font->face != nullptr) FT_Done_Face(font->face);
  delete font;
}

void MeasureText(WindowHandle window, FontHandle font, const char* text, int32_t length, int32_t* width,
                 int32_t* height) {
  static_cast<void>(window);
  *width = font != nullptr ? LineLength(*font, Characters(text, length)) : 0;
  *height = font != nullptr ? font->height : 0;
}

void DrawTextLine(BitmapHandle bitmap, FontHandle font, int32_t x, int32_t y, const char* text, int32_t length) {
  if (bitmap == nullptr || font == nullptr) return;
  const std::vector<uint32_t> characters = Characters(text, length);
  const int64_t lineLength = LineLength(*font, characters);
  const int64_t left = font->vertical ? int64_t{x} - font->height : x;
  const int64_t right = font->vertical ? x : x + lineLength;
  const int64_t bottom = y + (font->vertical ? lineLength : int64_t{font->height});
  // The caller looks only at the box that MeasureText gives.
  const Bounds part = {Bounded(left, bitmap->width), Bounded(y, bitmap->height), Bounded(right, bitmap->width),
                       Bounded(bottom, bitmap->height)};
  if (part.IsEmpty()) return;
  const uint8_t ink = InkOf(*bitmap);
  int64_t along = 0;
  for (const uint32_t character : characters) {
    int32_t step = 0;
    DrawGlyph(*font, character, along, {x, y}, part, ink, bitmap, &step);
    along += step;
  }
}

void ListFonts(FontFunction function, void* user) {
  for (const FontFile& file : Fonts()) {
    function(file.fullName.c_str(), user);
    if (file.japanese) function(std::string("@").append(file.fullName).c_str(), user);
  }
}

}  // namespace sorvel::platform
