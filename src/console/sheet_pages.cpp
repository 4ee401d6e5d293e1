#include "console/sheet_pages.h"

#include <algorithm>
#include <cstdarg>
#include <vector>

#include "console/console_files.h"

namespace sorvel::console {

namespace {

// Places and sizes on a page of A4, in millimetres.
constexpr double kPageWidth = 210;
constexpr double kPageHeight = 297;
constexpr double kMargin = 9;
constexpr double kGap = 5;  // between blocks
constexpr double kHeadTop = 9;
constexpr double kHeadHeight = 12;
constexpr double kBlockTop = 27;
constexpr double kNamesHeight = 8;
constexpr double kBlockBottom = 288;
constexpr double kTickWidth = 7;
constexpr double kFrameWidth = 13;
constexpr double kLoopWidth = 5;  // of the frames' width, at its right
constexpr double kFadeWidth = 4;  // of the notes' width, at its left
constexpr double kNotesWidth = 24;
constexpr double kNarrowestColumn = 6;
constexpr double kWidestColumn = 11;
constexpr double kLetter = 2.3;  // the size of letters of notes and numbers
constexpr double kLineHeight = 2.8;

// A block holds about so many ticks, in whole seconds: three of them at 24 a second, as sheets are printed.
constexpr int32_t kTicksOfBlock = 72;

std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Format(const char* format, ...) {
  char text[512];
  va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof(text), format, values);
  va_end(values);
  return text;
}

// For texts between tags and in attributes. Control characters have no place in XML.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char byte : text) {
    switch (byte) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += static_cast<unsigned char>(byte) < ' ' || byte == '\x7F' ? ' ' : byte;
    }
  }
  return escaped;
}

struct Letter {
  std::string bytes;
  double width;  // in letters: half for Latin ones
};

std::vector<Letter> LettersOf(const std::string& text) {
  std::vector<Letter> letters;
  for (const char byte : text) {
    const bool continues = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    if (continues && !letters.empty()) {
      letters.back().bytes += byte;
      letters.back().width = 1;
    } else {
      letters.push_back({std::string(1, byte), 0.56});
    }
  }
  return letters;
}

// Breaks a text into lines of a width in letters. What doesn't fit in so many lines is left out, and dots say so.
std::vector<std::string> Lines(const std::string& text, double width, int64_t most) {
  std::vector<std::string> lines(1);
  double used = 0;
  for (const Letter& letter : LettersOf(text)) {
    if (used + letter.width > width) {
      if (static_cast<int64_t>(lines.size()) >= most) {
        lines.back() += "…";
        return lines;
      }
      lines.emplace_back();
      used = 0;
    }
    lines.back() += letter.bytes;
    used += letter.width;
  }
  return lines;
}

void PutLine(double x1, double y1, double x2, double y2, const char* kind, std::string* out) {
  *out += Format("<path class=\"%s\" d=\"M%.2f %.2fL%.2f %.2f\"/>\n", kind, x1, y1, x2, y2);
}

void PutBox(double left, double top, double width, double height, const char* attributes, std::string* out) {
  *out +=
      Format("<rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\" %s/>\n", left, top, width, height, attributes);
}

void PutText(double x, double y, double size, const char* kind, const std::string& text, std::string* out) {
  *out += Format("<text class=\"%s\" x=\"%.2f\" y=\"%.2f\" font-size=\"%.2f\">", kind, x, y, size) + Escaped(text) +
          "</text>\n";
}

// A text that is made narrower if it doesn't fit.
void PutFitting(double x, double y, double size, double width, const char* kind, const std::string& text,
                std::string* out) {
  double letters = 0;
  for (const Letter& letter : LettersOf(text)) letters += letter.width;
  std::string fitting = text;
  constexpr double smallest = 0.55;
  if (letters * size * smallest > width) fitting = Lines(text, width / (size * smallest) - 1, 1)[0];
  PutText(x, y, std::clamp(width / std::max(letters, 0.1), size * smallest, size), kind, fitting, out);
}

// As artists count: "3+12" are three seconds and twelve ticks.
std::string SecondsAndTicks(int64_t ticks, int32_t fps) {
  const int64_t second = std::max(fps, 1);
  return std::to_string(ticks / second) + "+" + std::to_string(ticks % second);
}

std::string NumberOf(int32_t cell) {
  return std::to_string(cell + 1);
}

constexpr char kStyle[] =
    "text{font-family:'Noto Sans CJK JP','Noto Sans JP','Yu Gothic','Hiragino Sans','MS Gothic','IPAGothic',"
    "sans-serif;fill:#111}"
    ".c{text-anchor:middle}.r{text-anchor:end}.b{font-weight:bold}.bc{font-weight:bold;text-anchor:middle}"
    ".g{fill:#777}.gr{fill:#777;text-anchor:end}.gc{fill:#777;text-anchor:middle}"
    "path{fill:none;stroke:#111;stroke-width:.2}"
    ".thin{stroke:#bbb;stroke-width:.1}.mid{stroke:#888;stroke-width:.15}.strong{stroke:#111;stroke-width:.25}"
    ".second{stroke:#111;stroke-width:.5}.hold{stroke-width:.3}.off{stroke:#999;stroke-width:.15;"
    "stroke-dasharray:.6 .6}.loop{stroke-width:.6}.cut{stroke:#111;stroke-width:.2}";

}  // namespace

SheetPages::SheetPages(Cut* sheetCut, TimeSheet* timeSheet, const std::string& title)
    : cut(sheetCut), sheet(timeSheet), heading(title) {
  const int32_t fps = std::max(cut->fps, 1);
  rowsOfBlock = fps <= kTicksOfBlock ? kTicksOfBlock / fps * fps : kTicksOfBlock;
  rowHeight = (kBlockBottom - kBlockTop - kNamesHeight) / static_cast<double>(rowsOfBlock);
  const auto fits = [this](int32_t blocks) {
    blocksOfPage = blocks;
    return static_cast<int32_t>((BlockWidth() - kTickWidth - kFrameWidth - kNotesWidth) / kNarrowestColumn);
  };
  const int32_t columns = std::max(static_cast<int32_t>(sheet->Columns().size()), 1);
  columnsOfPage = fits(2);
  if (columns > columnsOfPage) columnsOfPage = fits(1);
}

double SheetPages::BlockWidth() const {
  return (kPageWidth - 2 * kMargin - kGap * (blocksOfPage - 1)) / blocksOfPage;
}

double SheetPages::RowPlace(const Block& block, int64_t row) const {
  return kBlockTop + kNamesHeight + rowHeight * static_cast<double>(row - block.firstRow);
}

double SheetPages::ColumnPlace(const Block& block, int32_t column) const {
  return block.left + kTickWidth + kFrameWidth + block.columnWidth * (column - block.firstColumn);
}

int64_t SheetPages::Count() const {
  const int64_t rows = rowsOfBlock * blocksOfPage;
  const int64_t columns = static_cast<int64_t>(sheet->Columns().size());
  return std::max<int64_t>((sheet->Rows() + rows - 1) / rows, 1) *
         std::max<int64_t>((columns + columnsOfPage - 1) / columnsOfPage, 1);
}

// Pages of the same columns follow each other.
std::string SheetPages::Page(int64_t index) const {
  const int64_t rows = rowsOfBlock * blocksOfPage;
  const int64_t pagesOfColumns = std::max<int64_t>((sheet->Rows() + rows - 1) / rows, 1);
  std::string out;
  DrawHead(index, &out);
  const int32_t columns = static_cast<int32_t>(sheet->Columns().size());
  const int32_t firstColumn = static_cast<int32_t>(index / pagesOfColumns) * columnsOfPage;
  const int32_t endColumn = std::min(firstColumn + columnsOfPage, columns);
  const double room = BlockWidth() - kTickWidth - kFrameWidth - kNotesWidth;
  const double width = std::min(room / std::max(endColumn - firstColumn, 1), kWidestColumn);
  for (int32_t i = 0; i < blocksOfPage; ++i) {
    const int64_t firstRow = index % pagesOfColumns * rows + i * rowsOfBlock;
    const double left = kMargin + i * (BlockWidth() + kGap);
    const int64_t endRow = std::clamp(sheet->Rows(), firstRow, firstRow + rowsOfBlock);
    const Block block = {left, firstRow, endRow, firstColumn, endColumn, width};
    DrawGrid(block, &out);
    DrawTicks(block, &out);
    DrawFrames(block, &out);
    for (int32_t column = firstColumn; column < endColumn; ++column) DrawColumn(block, column, &out);
  }
  return out;
}

void SheetPages::DrawHead(int64_t index, std::string* out) const {
  struct Box {
    const char* label;
    std::string value;
    double width;
  };
  const Box boxes[] = {
      {"カット", heading, 74},
      {"担当", ShownText(cut->credit), 38},
      {"秒＋コマ", SecondsAndTicks(sheet->Ticks(), cut->fps), 22},
      {"コマ／秒", std::to_string(cut->fps), 16},
      {"フレーム", std::to_string(sheet->FrameCount()), 20},
      {"頁", std::to_string(index + 1) + "／" + std::to_string(Count()), 22},
  };
  PutText(kMargin, kHeadTop - 2, 3, "b", "タイムシート", out);
  double left = kMargin;
  for (const Box& box : boxes) {
    PutBox(left, kHeadTop, box.width, kHeadHeight, "fill=\"none\" stroke=\"#111\" stroke-width=\".3\"", out);
    PutText(left + 1, kHeadTop + 2.8, 2.1, "g", box.label, out);
    PutFitting(left + box.width / 2, kHeadTop + 9.4, 5.2, box.width - 3, "bc", box.value, out);
    left += box.width;
  }
}

void SheetPages::DrawGrid(const Block& block, std::string* out) const {
  const double right = block.left + BlockWidth();
  const double top = RowPlace(block, block.firstRow);
  const double notes = NotesPlace(block);
  PutBox(block.left, kBlockTop, BlockWidth(), kNamesHeight, "fill=\"#eee\"", out);
  std::string lines[3];
  const int32_t fps = std::max(cut->fps, 1);
  for (int64_t row = 1; row < rowsOfBlock; ++row) {
    if (row % fps == 0) continue;
    const bool isHalf = fps % 2 == 0 && row % (fps / 2) == 0;
    const bool isQuarter = fps % 4 == 0 && row % (fps / 4) == 0;
    const double place = RowPlace(block, block.firstRow + row);
    lines[isHalf ? 2 : isQuarter ? 1 : 0] += Format("M%.2f %.2fH%.2f", block.left, place, right);
  }
  const char* kinds[] = {"thin", "mid", "strong"};
  for (int32_t i = 0; i < 3; ++i) *out += Format("<path class=\"%s\" d=\"", kinds[i]) + lines[i] + "\"/>\n";
  for (int64_t row = 0; row <= rowsOfBlock; row += fps) {
    PutLine(block.left, RowPlace(block, block.firstRow + row), right, RowPlace(block, block.firstRow + row), "second",
            out);
  }
  std::string borders = Format("M%.2f %.2fV%.2f", block.left + kTickWidth, kBlockTop, kBlockBottom);
  for (int32_t column = block.firstColumn; column <= block.endColumn; ++column) {
    borders += Format("M%.2f %.2fV%.2f", ColumnPlace(block, column), kBlockTop, kBlockBottom);
  }
  *out += "<path class=\"strong\" d=\"" + borders + "\"/>\n";
  PutBox(block.left, kBlockTop, BlockWidth(), kBlockBottom - kBlockTop,
         "fill=\"none\" stroke=\"#111\" stroke-width=\".5\"", out);
  const double names = top - 2.6;
  PutText(block.left + kTickWidth / 2, names, 2.1, "c", "コマ", out);
  PutText(block.left + kTickWidth + kFrameWidth / 2, names, 2.1, "c", "フレーム", out);
  PutText((notes + right) / 2, names, 2.1, "c", "備考", out);
  for (int32_t column = block.firstColumn; column < block.endColumn; ++column) {
    const std::string name = ShownText(sheet->Columns()[static_cast<size_t>(column)].layer->ShownName());
    PutFitting(ColumnPlace(block, column) + block.columnWidth / 2, names, 3, block.columnWidth - 0.8, "bc", name, out);
  }
}

void SheetPages::DrawTicks(const Block& block, std::string* out) const {
  const int32_t fps = std::max(cut->fps, 1);
  for (int64_t row = block.firstRow; row < block.endRow; ++row) {
    const SheetFrame& frame = sheet->FrameAt(sheet->FrameOfRow(row));
    const double base = RowPlace(block, row + 1) - rowHeight * 0.24;
    const double size = std::min(rowHeight * 0.7, 2.1);
    if (frame.ticks == 0) {
      PutText(block.left + kTickWidth / 2, base, size, "c", "停止", out);
      continue;
    }
    const int64_t tick = frame.firstTick + row - frame.firstRow + 1;
    const bool isSecond = tick % fps == 0;
    PutText(block.left + kTickWidth - 0.8, base, isSecond ? size * 1.15 : size, isSecond ? "r b" : "gr",
            isSecond ? std::to_string(tick / fps) + "秒" : std::to_string(tick), out);
  }
  if (block.endRow >= block.firstRow + rowsOfBlock || block.endRow == block.firstRow) return;
  // The end of the cut.
  PutLine(block.left, RowPlace(block, block.endRow), block.left + BlockWidth(), RowPlace(block, block.endRow), "loop",
          out);
}

void SheetPages::DrawFrames(const Block& block, std::string* out) const {
  if (block.firstRow >= block.endRow) return;
  const double left = block.left + kTickWidth;
  const double right = left + kFrameWidth;
  for (int32_t i = sheet->FrameOfRow(block.firstRow);
       i < sheet->FrameCount() && sheet->FrameAt(i).firstRow < block.endRow; ++i) {
    const SheetFrame& info = sheet->FrameAt(i);
    const double top = RowPlace(block, std::max(info.firstRow, block.firstRow));
    const double bottom = RowPlace(block, std::min(sheet->LastRowOf(i) + 1, block.endRow));
    const bool begins = info.firstRow >= block.firstRow;
    const bool isKey = cut->frames.At(i)->IsKey();
    if (begins) {
      const double base = top + rowHeight * 0.76;
      PutLine(left, top, right - kLoopWidth, top, "strong", out);
      if (isKey) PutText(left + 0.6, base, 2.2, "b", "◆", out);
      PutText(right - kLoopWidth - 0.6, base, std::min(rowHeight * 0.75, kLetter), isKey ? "r b" : "r",
              std::to_string(i + 1), out);
    }
    if (info.loop > 1) {
      const double bar = right - kLoopWidth + 1.2;
      PutLine(bar, top + (info.isLoopStart && begins ? 0.4 : 0), bar, bottom, "loop", out);
      const bool isLast =
          i + 1 == sheet->FrameCount() || sheet->FrameAt(i + 1).loop == 1 || sheet->FrameAt(i + 1).isLoopStart;
      if (info.isLoopStart && begins) {
        PutLine(bar, top + 0.4, bar + 1.2, top + 0.4, "loop", out);
        PutText(bar + 0.6, top + rowHeight * 0.9, 1.9, "b", "×" + std::to_string(info.loop), out);
      }
      if (isLast && sheet->LastRowOf(i) < block.endRow)
        PutLine(bar, bottom - 0.4, bar + 1.2, bottom - 0.4, "loop", out);
    }
    DrawNotes(block, i, out);
  }
}

// Fades, dissolves and the comment.
void SheetPages::DrawNotes(const Block& block, int32_t frame, std::string* out) const {
  const SheetFrame& info = sheet->FrameAt(frame);
  Frame* shown = cut->frames.At(frame);
  const int32_t brightness = shown->DecodedBrightness();
  const std::string comment = ShownText(shown->comment);
  const Frame* before = frame > 0 ? cut->frames.At(frame - 1) : nullptr;
  const bool isFade = brightness != (before != nullptr ? before->DecodedBrightness() : kNeutralBrightness);
  const bool begins = info.firstRow >= block.firstRow;
  const double left = NotesPlace(block);
  const double right = block.left + BlockWidth();
  const double top = RowPlace(block, std::max(info.firstRow, block.firstRow));
  const double bottom = RowPlace(block, std::min(sheet->LastRowOf(frame) + 1, block.endRow));
  if (brightness != kNeutralBrightness) {
    // From black over the drawn colours to white; white shows by its frame.
    const int32_t grey = std::clamp(brightness * 5, 0, 255);
    PutBox(left + 0.4, top, 1.6, bottom - top,
           Format("fill=\"rgb(%d,%d,%d)\" stroke=\"#111\" stroke-width=\".1\"", grey, grey, grey).c_str(), out);
  }
  if (info.isTransition) {
    const double far = left + kFadeWidth;
    const double first = RowPlace(block, info.firstRow);
    const double end = RowPlace(block, sheet->LastRowOf(frame) + 1);
    // A dissolve that goes on in another block keeps its slope.
    const auto at = [&](double from, double to, double place) {
      return from + (to - from) * (place - first) / (end - first);
    };
    PutLine(at(left, far, top), top, at(left, far, bottom), bottom, "hold", out);
    PutLine(at(far, left, top), top, at(far, left, bottom), bottom, "hold", out);
  }
  if (!begins) return;
  std::string text;
  if (info.isTransition) text += "O.L ";
  if (isFade) text += "明度" + std::to_string(brightness) + " ";
  text += comment;
  if (text.empty()) return;
  const double place = left + kFadeWidth + 0.6;
  const int64_t most = std::max<int64_t>(static_cast<int64_t>((bottom - top) / kLineHeight), 1);
  double base = top + std::min(rowHeight * 0.76, kLineHeight);
  for (const std::string& line : Lines(text, (right - place) / kLetter, most)) {
    PutText(place, base, kLetter, "n", line, out);
    base += kLineHeight;
  }
}

void SheetPages::DrawColumn(const Block& block, int32_t column, std::string* out) const {
  const double left = ColumnPlace(block, column);
  const double middle = left + block.columnWidth / 2;
  const auto changesAt = [&](int64_t row, const SheetSquare& before) {
    const SheetSquare square = sheet->SquareAt(column, row);
    return square.mark == SheetMark::kCell || square.mark == SheetMark::kBlank ||
           (square.mark == SheetMark::kNone) != (before.mark == SheetMark::kNone);
  };
  for (int64_t row = block.firstRow; row < block.endRow;) {
    const SheetSquare square = sheet->SquareAt(column, row);
    int64_t end = row + 1;
    while (end < block.endRow && !changesAt(end, square)) ++end;
    const double top = RowPlace(block, row);
    const double bottom = RowPlace(block, end);
    if (square.mark == SheetMark::kNone) {
      PutBox(left, top, block.columnWidth, bottom - top, "fill=\"#ddd\" fill-opacity=\".6\"", out);
      row = end;
      continue;
    }
    // What goes on from the block before is named again.
    const bool isBlank = square.cell == kBlankSquare;
    const bool isNew = square.mark == SheetMark::kCell || square.mark == SheetMark::kBlank;
    const std::string name = isBlank ? "×" : NumberOf(square.cell);
    PutFitting(middle, top + rowHeight * 0.82, std::min(rowHeight * 0.92, 3.0), block.columnWidth - 0.6,
               !isNew    ? "gc"
               : isBlank ? "c"
                         : "bc",
               isNew ? name : "(" + name + ")", out);
    const double start = RowPlace(block, row + 1);
    if (bottom > start) PutLine(middle, start, middle, bottom - 0.3, isBlank ? "off" : "hold", out);
    const bool goesOn = end == block.endRow && end < sheet->Rows() && !changesAt(end, square);
    if (bottom > start && !isBlank && !goesOn) {
      PutLine(middle - 0.9, bottom - 0.3, middle + 0.9, bottom - 0.3, "hold", out);
    }
    row = end;
  }
}

void SheetPages::WriteHtml(FILE* file) const {
  const std::string name = Escaped(heading);
  std::fprintf(
      file,
      "<!DOCTYPE html>\n<html lang=\"ja\">\n<head>\n<meta charset=\"utf-8\">\n<title>%s - タイムシート</title>\n"
      "<style>\n@page{size:A4 portrait;margin:0}\nbody{margin:0;background:#888}\n"
      "svg{display:block;width:210mm;height:297mm;margin:6mm auto;background:#fff;break-after:page}\n"
      "@media print{body{background:none}svg{margin:0}}\n%s\n</style>\n</head>\n<body>\n",
      name.c_str(), kStyle);
  for (int64_t i = 0; i < Count(); ++i) {
    std::fprintf(file, "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %g %g\">\n%s</svg>\n", kPageWidth,
                 kPageHeight, Page(i).c_str());
  }
  std::fputs("</body>\n</html>\n", file);
}

void SheetPages::WriteSvg(FILE* file) const {
  const double height = kPageHeight * static_cast<double>(Count());
  std::fprintf(file,
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%gmm\" "
               "height=\"%.0fmm\" viewBox=\"0 0 %g %.0f\">\n<title>%s</title>\n<style>%s</style>\n"
               "<rect width=\"100%%\" height=\"100%%\" fill=\"#fff\"/>\n",
               kPageWidth, height, kPageWidth, height, Escaped(heading).c_str(), kStyle);
  for (int64_t i = 0; i < Count(); ++i) {
    std::fprintf(file, "<g transform=\"translate(0 %.0f)\">\n%s</g>\n", kPageHeight * static_cast<double>(i),
                 Page(i).c_str());
  }
  std::fputs("</svg>\n", file);
}

namespace {

void PutField(const std::string& text, bool isLast, FILE* file) {
  std::string quoted;
  for (const char byte : text) quoted += byte == '"' ? "\"\"" : std::string(1, byte);
  const bool needsQuotes = text.find_first_of("\",\r\n") != std::string::npos;
  std::fprintf(file, needsQuotes ? "\"%s\"%s" : "%s%s", quoted.c_str(), isLast ? "\r\n" : ",");
}

}  // namespace

void WriteSheetTable(Cut* cut, TimeSheet* sheet, FILE* file) {
  std::fputs("\xEF\xBB\xBF", file);
  for (const char* title : {"コマ", "秒＋コマ", "フレーム", "キー", "くり返し", "O.L", "明度"})
    PutField(title, false, file);
  const int32_t columns = static_cast<int32_t>(sheet->Columns().size());
  for (const SheetColumn& column : sheet->Columns()) PutField(ShownText(column.layer->ShownName()), false, file);
  PutField("備考", true, file);
  for (int64_t row = 0; row < sheet->Rows(); ++row) {
    const int32_t index = sheet->FrameOfRow(row);
    const SheetFrame& info = sheet->FrameAt(index);
    Frame* frame = cut->frames.At(index);
    const bool begins = row == info.firstRow;
    const int64_t tick = info.firstTick + row - info.firstRow;
    PutField(info.ticks > 0 ? std::to_string(tick + 1) : "停止", false, file);
    PutField(info.ticks > 0 ? SecondsAndTicks(tick + 1, cut->fps) : "", false, file);
    PutField(begins ? std::to_string(index + 1) : "", false, file);
    PutField(begins && frame->IsKey() ? "◆" : "", false, file);
    PutField(info.loop == 1 ? "" : begins && info.isLoopStart ? "×" + std::to_string(info.loop) : "|", false, file);
    PutField(!info.isTransition ? "" : begins ? "O.L" : "|", false, file);
    PutField(begins ? std::to_string(frame->DecodedBrightness()) : "", false, file);
    for (int32_t column = 0; column < columns; ++column) {
      const SheetSquare square = sheet->SquareAt(column, row);
      const bool isCell = square.mark == SheetMark::kCell;
      PutField(isCell                             ? NumberOf(square.cell)
               : square.mark == SheetMark::kHold  ? "|"
               : square.mark == SheetMark::kBlank ? "×"
                                                  : "",
               false, file);
    }
    PutField(begins ? ShownText(frame->comment) : "", true, file);
  }
}

}  // namespace sorvel::console
