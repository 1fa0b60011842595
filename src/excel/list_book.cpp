#include "excel/list_book.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <span>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "excel/grid_sheet.h"

namespace quillmarden {
namespace {

constexpr std::array<std::string_view, 11> kTableHeads = {"No.",    "日本語名(論理名)", "テーブル名", "略名",
                                                          "分類",   "データベース",     "備考",       "リバース",
                                                          "DB件数", "DB履歴",           "件数"};
constexpr std::array<std::string_view, 12> kFieldHeads = {
    "No.", "日本語名(論理名)", "テーブル名", "No.", "項目名(JP)", "項目名(ENG)", "Key", "型", "桁数", "Null", "分類",
    "備考"};
constexpr std::string_view kMark = "○";

constexpr std::string_view kTableSql =
    "PARAMETERS [wanted] Long; SELECT 日本語名, テーブル名, 略名, 分類, ファイル種別, 概要, REVERSE_DB, 現在数, "
    "現在保持, "
    "想定数 FROM MAS_TABLEINFO WHERE ID = [wanted]";
constexpr std::string_view kFieldSql =
    "PARAMETERS [wanted] Long; SELECT 日本語名, 項目名, KEY, 型, 整数桁数, 少数桁数, Null値, 項目分類, 備考 FROM "
    "MAS_TABLEDETAILES WHERE ID = [wanted] ORDER BY ROWNO";

struct ListColumn {
  double width;  ///< digits
  bool wrap;
};

constexpr std::array<ListColumn, 11> kTableColumns = {{{6, false},
                                                       {28, true},
                                                       {28, true},
                                                       {12, false},
                                                       {16, true},
                                                       {16, true},
                                                       {48, true},
                                                       {9, false},
                                                       {12, false},
                                                       {12, false},
                                                       {12, false}}};
constexpr std::array<ListColumn, 12> kFieldColumns = {{{6, false},
                                                       {28, true},
                                                       {28, true},
                                                       {6, false},
                                                       {26, true},
                                                       {26, true},
                                                       {5, true},
                                                       {16, false},
                                                       {9, false},
                                                       {9, false},
                                                       {9, false},
                                                       {48, true}}};

/// A list under way: its sheet and the next row.
struct ListBook {
  Session& session;
  Worksheet& sheet;
  FontBook& fonts;
  SizedFont font;
  std::span<const ListColumn> columns;
  double digit;       ///< the width of a digit in points
  double lineHeight;  ///< points
  int row = 2;
  int number = 0;
  int lines = 1;  ///< of the row under way
};

/// An empty cell keeps the file small.
void putText(ListBook& list, int column, std::string_view text) {
  const std::string_view trimmed = trim(text);
  if (trimmed.empty()) return;
  list.sheet.setText({list.row, column}, trimmed);
  const ListColumn& shape = list.columns[static_cast<std::size_t>(column - 1)];
  const double width = shape.width * list.digit;
  // No character is wider than an em: most texts need no measuring.
  if (!shape.wrap ||
      (static_cast<double>(trimmed.size()) * list.font.size <= width && trimmed.find('\n') == std::string_view::npos)) {
    return;
  }
  list.lines = std::max(list.lines, wrappedLines(list.fonts, list.font, trimmed, width));
}

/// Rows of several lines get the height that they need.
void endRow(ListBook& list) {
  if (list.lines > 1) list.sheet.setRowHeight(list.row, list.lines * list.lineHeight);
  list.lines = 1;
  ++list.row;
}

void putNumber(ListBook& list, int column, const Recordset& row, int field) {
  if (!row.isNull(field)) list.sheet.setNumber({list.row, column}, row.number(field));
}

void putTableLine(ListBook& list, const Recordset& table) {
  list.sheet.setNumber({list.row, 1}, list.number);
  for (int field = 0; field < 6; ++field) putText(list, field + 2, table.text(field));
  if (table.integer(6) != 0) putText(list, 8, kMark);
  for (int field = 7; field < 10; ++field) putNumber(list, field + 2, table, field);
  endRow(list);
}

std::string digitsText(const Recordset& field) {
  const std::int64_t whole = field.integer(4);
  const std::int64_t fraction = field.integer(5);
  if (fraction != 0) return fmt::format("({},{})", whole, fraction);
  return whole == 0 ? "" : fmt::format("{}", whole);
}

void putFieldLines(ListBook& list, const Recordset& table, const std::vector<ParameterValue>& wanted) {
  Recordset field = list.session.gDB->openRecordset(kFieldSql, wanted);
  for (int number = 1; !field.eof(); field.moveNext(), ++number) {
    list.sheet.setNumber({list.row, 1}, list.number);
    putText(list, 2, table.text(0));
    putText(list, 3, table.text(1));
    list.sheet.setNumber({list.row, 4}, number);
    putText(list, 5, field.text(0));
    putText(list, 6, field.text(1));
    if (field.integer(2) != 0) putText(list, 7, kMark);
    putText(list, 8, field.text(3));
    putText(list, 9, digitsText(field));
    if (toUpper(field.text(6)).find("NOT") != std::string::npos) putText(list, 10, "×");
    putText(list, 11, field.text(7));
    putText(list, 12, field.text(8));
    endRow(list);
  }
}

/// Puts the rows' lines; false when the person stopped it.
bool putLines(Host& host, ListBook& list, const std::vector<std::string>& rows, bool withFields) {
  host.dialogs.progress(0, static_cast<long>(rows.size()));
  for (const std::string& row : rows) {
    if (host.dialogs.stopRequested()) return false;
    const std::string_view id = tableListId(row);
    if (id.empty()) continue;
    host.dialogs.waitText(std::string(tableListName(row)) + " 出力中です....");
    const std::vector<ParameterValue> wanted = wantedTable(id);
    const Recordset table = list.session.gDB->openRecordset(kTableSql, wanted);
    if (table.eof()) continue;
    ++list.number;
    forTable(tableListName(row), [&] {
      if (withFields) {
        putFieldLines(list, table, wanted);
      } else {
        putTableLine(list, table);
      }
    });
    host.dialogs.progress(list.number, static_cast<long>(rows.size()));
    host.dialogs.yield();
  }
  return true;
}

/// The formats of whole columns, before their cells are written.
void formatColumns(ListBook& list) {
  list.sheet.setDefaultRowHeight(list.lineHeight);
  for (std::size_t i = 0; i < list.columns.size(); ++i) {
    const int column = static_cast<int>(i) + 1;
    list.sheet.setColumnWidth(column, column, list.columns[i].width);
    list.sheet.changeStyle({{1, column}, {kMaxSheetRow, column}}, [&](CellStyle& style) {
      style.alignment.wrap = list.columns[i].wrap;
      style.alignment.vertical = VerticalAlign::Top;
    });
  }
  list.sheet.setNamedStyle(rangeAt("I:K"), "Comma [0]");
}

std::string putListBook(Session& session, Host& host, BookRun& run, const frmTBList& list, bool withFields) {
  SystemRecord system;
  if (!readOutputSystem(session, host, session.gCurrentSystemName, system)) return "";
  std::string path = layoutFile(session, run, system, session.gCurrentSystemName + "_TableLayout.xlsx");
  if (outputRefused(session, host, path)) return "";
  if (inUse(path)) {
    gMsgBox(host, joinLines({"作業用ファイルが使用中です.", "すべてのExcelを閉じてください."}), kStopIcon);
    return "";
  }
  Workbook book = Workbook::create({.sheetName = "テーブル一覧"});
  const CellStyle normal = book.styleAt(0);
  const SizedFont font{normal.font.name, normal.font.size, false};
  const std::span<const ListColumn> columns =
      withFields ? std::span<const ListColumn>(kFieldColumns) : std::span<const ListColumn>(kTableColumns);
  ListBook made{
      session, book.sheet(0), run.fonts, font, columns, digitWidth(run.fonts, font), linesHeight(run.fonts, font, 1)};
  formatColumns(made);
  const std::span<const std::string_view> heads =
      withFields ? std::span<const std::string_view>(kFieldHeads) : std::span<const std::string_view>(kTableHeads);
  for (std::size_t i = 0; i < heads.size(); ++i) made.sheet.setText({1, static_cast<int>(i) + 1}, heads[i]);
  run.stopped = !putLines(host, made, outputRows(list), withFields);
  if (run.stopped) path = stoppedFile(session, host, path);
  host.dialogs.waitText("書式設定中です....");
  const int lastColumn = static_cast<int>(heads.size());
  made.sheet.setGrid({{1, 1}, {made.row - 1, lastColumn}}, gridRule());
  styleTitles(made.sheet, {{1, 1}, {1, lastColumn}});
  setUpGridPage(made.sheet, 1);
  made.sheet.select(cellAt("F2"));
  noteCutTexts(run, made.sheet, [&](CellRef cell) {
    const std::string table = made.sheet.text({cell.row, 2});
    if (!withFields) return table;
    const std::string field = made.sheet.text({cell.row, 5});
    return table + " : " + (field.empty() ? made.sheet.text({cell.row, 6}) : field);
  });
  saveBook(session, host, book, session.gCurrentSystemName, path);
  tellCutTexts(host, run);
  return path;
}

}  // namespace

std::vector<std::string> outputRows(const frmTBList& list) {
  return list.LstTableSel.rows.empty() ? list.LstTable.rows : list.LstTableSel.rows;
}

std::vector<std::string> chosenRows(const frmTBList& list) {
  if (!list.LstTableSel.rows.empty()) return list.LstTableSel.rows;
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < list.LstTable.rows.size(); ++i) {
    if (list.LstTable.selected[i]) rows.push_back(list.LstTable.rows[i]);
  }
  return rows;
}

std::vector<ParameterValue> wantedTable(std::string_view tableId) {
  return {{"wanted", Value(static_cast<std::int64_t>(gVal(tableId)))}};
}

std::string pPutTableListLayout2Excel(Session& session, Host& host, BookRun& run, const frmTBList& list,
                                      bool withFields, bool openAfter) {
  const WaitText wait(host, "Excel出力中です....");
  return runOutput(session, host, "pPutTableListLayout2Excel", openAfter, [&] {
    std::string path = putListBook(session, host, run, list, withFields);
    if (run.stopped) {
      gMsgBox(host, joinLines({"中止しました.", "必要に応じてデスクトップ等に保存してください."}));
    }
    return path;
  });
}

std::string mnuExcelSelList_Click(Session& session, Host& host, BookRun& run, const frmTBList& list, bool withFields,
                                  bool openAfter) {
  if (list.LstTableSel.rows.empty()) {
    gMsgBox(host, "選択されていません.");
    return "";
  }
  return pPutTableListLayout2Excel(session, host, run, list, withFields, openAfter);
}

void mnuExcelPath_Click(Session& session, Host& host) {
  SystemRecord system;
  if (!readOutputSystem(session, host, session.gCurrentSystemName, system)) return;
  gMakeFolder(system.workFolder);
  if (!host.opener.openFolder(toPath(system.workFolder))) gMsgBox(host, "Explorerの起動に失敗しました");
}

}  // namespace quillmarden
