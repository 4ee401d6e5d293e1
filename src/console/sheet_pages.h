#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "document/time_sheet.h"

namespace sorvel::console {

// Longer sheets aren't drawn or listed.
constexpr int64_t kMostSheetRows = 1 << 17;

// A cut's time sheet as pages of A4 for the wall, drawn in SVG. Two blocks of some seconds stand beside each other, or
// one if there are many columns; columns that don't fit go to further pages.
class SheetPages {
 public:
  // The title, in UTF-8, stands at the head of each page. The cut and its sheet aren't owned.
  SheetPages(Cut* sheetCut, TimeSheet* timeSheet, const std::string& title);

  int64_t Count() const;
  // Writes the pages as pages of an HTML document, or as one picture, below each other.
  void WriteHtml(FILE* file) const;
  void WriteSvg(FILE* file) const;

 private:
  // A part of the sheet: these rows and columns.
  struct Block {
    double left;
    int64_t firstRow;
    int64_t endRow;
    int32_t firstColumn;
    int32_t endColumn;
    double columnWidth;
  };

  std::string Page(int64_t index) const;
  void DrawHead(int64_t index, std::string* out) const;
  void DrawGrid(const Block& block, std::string* out) const;
  void DrawTicks(const Block& block, std::string* out) const;
  void DrawFrames(const Block& block, std::string* out) const;
  void DrawNotes(const Block& block, int32_t frame, std::string* out) const;
  void DrawColumn(const Block& block, int32_t column, std::string* out) const;
  double BlockWidth() const;
  double RowPlace(const Block& block, int64_t row) const;
  double ColumnPlace(const Block& block, int32_t column) const;
  double NotesPlace(const Block& block) const { return ColumnPlace(block, block.endColumn); }

  Cut* cut;
  TimeSheet* sheet;
  std::string heading;
  int64_t rowsOfBlock;
  double rowHeight;  // in millimetres, as all places are
  int32_t blocksOfPage;
  int32_t columnsOfPage;
};

// Writes the sheet as a table of text in UTF-8, one row of the sheet a line. It begins with a byte order mark, which
// spreadsheets need.
void WriteSheetTable(Cut* cut, TimeSheet* sheet, FILE* file);

}  // namespace sorvel::console
