#include <string>

#include "common/paths.h"
#include "excel/layout_names.h"
#include "excel/table_layout_parts.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

constexpr int kHeadColour = 6;
constexpr std::string_view kOrganisation = "KVRTN";

/// Row 0 of the grid holds the columns' titles.
std::string cellText(const frmTBDetail& detail, int column, int row) {
  return row == 0 ? detail.Spread.column(column).title : std::string(detail.Spread.text(column, row));
}

std::string plainName(std::string_view japaneseName) { return std::string(japaneseName); }

void putGrid(Worksheet& sheet, const frmTBDetail& detail) {
  for (int row = 0; row <= detail.Spread.maxRows(); ++row) {
    int at = 0;
    for (int column = 1; column <= detail.Spread.maxCols(); ++column) {
      if (detail.Spread.column(column).hidden) continue;
      ++at;
      const std::string text = cellText(detail, column, row);
      if (text.empty()) continue;
      sheet.setEntered({row + 1, at}, column == 1 ? "'" + text : text);
    }
  }
}

void format(Worksheet& sheet) {
  const CellRange head = rangeAt("A1:M1");
  sheet.setGrid(head, BorderLine::of(1));
  sheet.changeStyle(head, [](CellStyle& style) {
    style.fill = CellFill::solid(CellColor::index(kHeadColour));
    style.alignment.horizontal = HorizontalAlign::Center;
    style.alignment.vertical = VerticalAlign::Center;
    style.alignment.wrap = true;
  });
  constexpr int kTextColumn = 8;
  constexpr double kTextWidth = 70;
  sheet.setColumnWidth(kTextColumn, kTextColumn, kTextWidth);
  sheet.changeStyle(rangeAt("H:H"), [](CellStyle& style) { style.alignment.wrap = true; });
}

/// Each row as high as its texts need it.
void fitGridRows(Workbook& book, FontBook& fonts, const frmTBDetail& detail) {
  SheetMeasure measure(book, 0, fonts);
  for (int row = 1; row <= detail.Spread.maxRows() + 1; ++row) {
    const double needed = measure.neededHeight(row, 1, detail.Spread.maxCols());
    if (needed > book.sheet(0).rowHeight(row)) book.sheet(0).setRowHeight(row, needed);
  }
}

void setUpPage(Worksheet& sheet, const DateTime& now) {
  PageSetup page = sheet.pageSetup();
  page.header.center = "&A";
  page.header.right =
      "作成日:" + formatDateTime(now, "yyyy/mm/dd hh:nn") + "\n変更日:" + formatDateTime(now, "yyyy/mm/dd") + " (1)";
  page.footer.left = "fileName:&F";
  page.footer.center = "&P / &N";
  page.footer.right = kOrganisation;
  sheet.setPageSetup(page);
}

}  // namespace

std::string PutExcelFile2PGControl(Session& session, Host& host, BookRun& run, const frmTBDetail& detail) {
  // In a folder that a person named, each table has its own file.
  const std::string path = run.outputFolder.empty() ? temporaryFile(session, "temptemp.xlsx")
                                                    : layoutPath(session, run, detail, {}, plainName, ".xlsx");
  if (!mayReplaceOrTell(session, host, path)) return "";
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  putGrid(sheet, detail);
  format(sheet);
  fitGridRows(book, run.fonts, detail);
  setUpPage(sheet, host.clock.now());
  sheet.select(cellAt("A1"));
  noteCutTexts(run, sheet, [&](CellRef cell) {
    return placeInTable(detail, sheet.text({cell.row, 2}) + " " + sheet.text({1, cell.column}));
  });
  saveBook(session, host, book, detail.txtTableNameJPN.text, path);
  return path;
}

}  // namespace quillmarden
