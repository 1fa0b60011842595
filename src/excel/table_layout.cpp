#include "excel/table_layout.h"

#include <algorithm>
#include <array>
#include <vector>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "dictionary/division.h"
#include "editing/detail_parts.h"
#include "excel/layout_names.h"
#include "excel/table_layout_parts.h"
#include "operations/memo.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

constexpr int kFirstFieldRow = 10;
constexpr int kLastFieldRow = 249;
constexpr int kLeastLastRow = 30;  ///< the form keeps its rows down to this one
constexpr int kLastColumn = 14;    ///< N

// The form's columns.
constexpr int kMarkColumn = 1;
constexpr int kJapaneseColumn = 2;
constexpr int kNameColumn = 4;
constexpr int kKeyColumn = 6;
constexpr int kTypeColumn = 7;
constexpr int kClassColumn = 12;
constexpr int kRemarkColumn = 13;
constexpr int kReferenceColumn = 14;

constexpr int kDomainColourIndex = 48;

/// A layout under way.
struct Layout {
  Session& session;
  const frmTBDetail& detail;
  Worksheet& sheet;
  SheetMeasure measure;
  DateTime now;
  DateTime changeReference;  ///< fields that changed after it are marked
};

std::string_view gridText(const Layout& layout, int column, int row) { return layout.detail.Spread.text(column, row); }

void put(Layout& layout, std::string_view cell, std::string_view text) { layout.sheet.setEntered(cellAt(cell), text); }

void fill(Layout& layout, const CellRange& range, int colourIndex) {
  layout.sheet.changeStyle(
      range, [colourIndex](CellStyle& style) { style.fill = CellFill::solid(CellColor::index(colourIndex)); });
}

/// The first lines of the memo, joined: one line has room on the form.
std::string memoText(std::string_view memo) {
  constexpr std::size_t kMostLines = 3;
  std::string text;
  std::size_t lines = 0;
  for (const std::string_view line : splitLines(memo)) {
    if (++lines > kMostLines) break;
    text += trim(line);
  }
  return text;
}

void putHeader(Layout& layout, std::string_view systemName, const TableDates& dates) {
  const frmTBDetail& detail = layout.detail;
  put(layout, "C1", gExcelSafeText(detail.txtTableNameJPN.text));
  put(layout, "H1", gExcelSafeText(detail.txtTableNameENG.text));
  const std::string& label = detail.lblSystemName.caption;
  put(layout, "M1",
      trim(label).empty() ? std::string(systemName) : std::string(systemName).append(":<").append(label).append(">"));
  put(layout, "C5", trim(detail.lblKanKaku.caption));
  put(layout, "E5", detail.lblKensu[1].caption);
  put(layout, "H5", detail.lblKensu[3].caption);
  if (!trim(detail.lblNewSQL.caption).empty()) {
    put(layout, "D6", "(" + detail.lblNewSQL.caption + ") " + detail.lblNumSQL.caption);
  }
  layout.sheet.setText(cellAt("B2"), memoText(detail.TxtMemo.text));
  put(layout, "N3", "TableSpace: " + detail.lblTbSpace.caption);
  put(layout, "N4", "DataBase : " + detail.lblFileType.caption);
  put(layout, "N5", "格納先 : " + detail.lblHost.caption);
  put(layout, "N6", "作成者 : " + dates.author);
  put(layout, "N7", "変更者 : " + dates.changer);
  put(layout, "M2", "種別:" + detail.lblBunrui.caption);
  struct Figure {
    std::string_view cell;
    std::string_view label;
    std::string_view unit;
  };
  constexpr std::array kFigures = {Figure{"M3", "INITIAL: ", ""}, Figure{"M4", "NEXT   : ", ""},
                                   Figure{"M5", "MAXEXTENTS: ", ""}, Figure{"M6", "MINEXTENTS: ", ""},
                                   Figure{"M7", "PCTINCREASE: ", " % "}};
  for (std::size_t i = 0; i < kFigures.size(); ++i) {
    const std::string& figure = detail.lblNum[i].caption;
    if (gStr2Double(figure) == 0) continue;
    put(layout, kFigures[i].cell, std::string(kFigures[i].label).append(figure).append(kFigures[i].unit));
  }
  put(layout, "C7", detail.lblInpData.caption);
  put(layout, "G7", detail.lblInpForm.caption);
}

/// What the last column shows: the reference or, where there is none, the value list; then default and range.
std::string referenceText(const Layout& layout, const std::string& systemName, int row) {
  std::string text;
  const auto addLine = [&text](const std::string& line) { text += (text.empty() ? "" : "\n") + line; };
  const std::string_view reference = gridText(layout, field_col::kForeign, row);
  const std::string list(trim(gridText(layout, field_col::kValueList, row)));
  if (!reference.empty()) {
    text = trim(reference);
  } else if (!list.empty()) {
    text = list;
    std::string entries;
    for (const std::string& entry : pGetDivisionDetails2Text(*layout.session.gDB, systemName, list)) {
      entries.append(entries.empty() ? "" : ",").append(trim(entry));
    }
    if (!entries.empty()) addLine(entries);
  }
  if (layout.detail.Spread.holds(field_col::kDefault, row)) {
    addLine("初=" + std::string(gridText(layout, field_col::kDefault, row)));
  }
  const std::string_view kind = gridText(layout, field_col::kRangeKind, row);
  if (!trim(kind).empty()) {
    const std::string start(trim(gridText(layout, field_col::kRangeStart, row)));
    const std::string end(trim(gridText(layout, field_col::kRangeEnd, row)));
    addLine(kind == "範囲" ? start + " ≦ n ≦ " + end : std::string(kind) + " " + start);
  }
  return text;
}

std::string remarkText(const Layout& layout, int row) {
  constexpr std::string_view kPersonal = "【個人情報】";
  const std::string remark = gExcelSafeText(gridText(layout, field_col::kRemark, row));
  const std::string_view mark = gridText(layout, field_col::kPmark, row);
  if (mark != "-1" && mark != "1" && mark != kCheckMark) return remark;
  return trim(remark).empty() ? std::string(kPersonal) : joinLines({kPersonal, remark});
}

/// Raises the row where its texts need more than the form gives it. False when it had room.
bool growRow(Layout& layout, int row) {
  const double needed = layout.measure.neededHeight(row, 1, kLastColumn);
  if (needed <= layout.sheet.rowHeight(row)) return false;
  layout.sheet.setRowHeight(row, needed);
  return true;
}

void putField(Layout& layout, const std::string& systemName, int row) {
  const int at = row + kFirstFieldRow - 1;
  const AppSettings& settings = layout.session.settings;
  const auto put = [&](int column, std::string_view text) { layout.sheet.setEntered({at, column}, text); };
  const auto putGrid = [&](int column, int gridColumn) {
    put(column, gExcelSafeText(gridText(layout, gridColumn, row)));
  };
  putGrid(kJapaneseColumn, field_col::kJapaneseName);
  putGrid(kNameColumn, field_col::kFieldName);
  const std::string_view key = gridText(layout, field_col::kKey, row);
  if (isKey(key) || key == "1") {
    put(kKeyColumn, kCheckMark);
    fill(layout, CellRef{at, kKeyColumn}, settings.backColorKeyIndex);
  }
  for (int column = field_col::kType; column <= field_col::kNull; ++column) {
    putGrid(kTypeColumn + column - field_col::kType, column);
  }
  putGrid(kClassColumn, field_col::kClass);
  put(kRemarkColumn, remarkText(layout, row));
  layout.sheet.setText({at, kReferenceColumn}, referenceText(layout, systemName, row));

  if (layout.detail.Spread.holds(field_col::kCreated, row)) {
    const DateTime changed = parseDateTime(gridText(layout, field_col::kCreated, row)).value_or(layout.now);
    if (changed > layout.changeReference) fill(layout, CellRef{at, kMarkColumn}, settings.backColorAddIndex);
  }
  if (gVal(gridText(layout, field_col::kDomainId, row)) != 0) {
    fill(layout, CellRange({at, kTypeColumn}, {at, kTypeColumn + 3}), kDomainColourIndex);
    fill(layout, CellRef{at, kClassColumn}, kDomainColourIndex);
  }
  growRow(layout, at);
}

/// The rows that are printed: down to the first one without a name.
int printedRows(const frmTBDetail& detail) {
  int rows = 0;
  while (rows < detail.Spread.maxRows() && (!trim(detail.Spread.text(field_col::kJapaneseName, rows + 1)).empty() ||
                                            !trim(detail.Spread.text(field_col::kFieldName, rows + 1)).empty())) {
    ++rows;
  }
  return rows;
}

/// More rows of the form, behind its last one, for a table that needs them.
void lengthenForm(Layout& layout, int rows) {
  const int more = rows - (kLastFieldRow - kFirstFieldRow + 1);
  if (more <= 0) return;
  layout.sheet.insertRows(kLastFieldRow + 1, more);
  for (int i = 1; i <= more; ++i) {
    layout.sheet.copyRow(kLastFieldRow, kLastFieldRow + i);
    layout.sheet.setNumber({kLastFieldRow + i, kMarkColumn}, kLastFieldRow - kFirstFieldRow + 1 + i);
  }
}

void putMemo(Layout& layout, const std::vector<MemoLine>& memo, int closing) {
  layout.sheet.setText({closing + 1, kMarkColumn}, "*****付帯事項*****");
  for (std::size_t i = 0; i < memo.size(); ++i) {
    const int at = closing + 2 + static_cast<int>(i);
    layout.sheet.setText({at, kJapaneseColumn}, trim(memo[i].symbol).empty() ? "･" : memo[i].symbol);
    layout.sheet.setEntered({at, kJapaneseColumn + 1}, "'" + memo[i].text);
    layout.sheet.setText({at, kReferenceColumn}, "(" + memo[i].created + ") ");
    const CellRange text({at, kJapaneseColumn + 1}, {at, kRemarkColumn});
    layout.sheet.merge(text);
    layout.sheet.changeStyle(text, [](CellStyle& style) {
      style.alignment.wrap = true;
      style.alignment.vertical = VerticalAlign::Center;
    });
    constexpr double kAiry = 1.5;
    if (!growRow(layout, at)) layout.sheet.setRowHeight(at, layout.sheet.rowHeight(at) * kAiry);
  }
}

/// Cuts the form behind the last field and closes it with a line; the memo stands below that.
void closeForm(Layout& layout, int rows) {
  const std::vector<MemoLine> memo = readTableMemo(*layout.session.gDB, layout.detail.lblID.caption);
  int closing = rows + kFirstFieldRow;
  if (memo.empty()) {
    closing = std::max(closing, kLeastLastRow + 1);
  } else if (const int room = kLeastLastRow + 1 - static_cast<int>(memo.size()); closing < room) {
    closing = room + 1;
  }
  const int formEnd = std::max(kLastFieldRow, rows + kFirstFieldRow - 1);
  if (closing <= formEnd) layout.sheet.deleteRows(closing, formEnd);
  if (!memo.empty()) putMemo(layout, memo, closing);
  const CellRange line({closing, 1}, {closing, kLastColumn});
  for (const BorderIndex none : {BorderIndex::DiagonalDown, BorderIndex::DiagonalUp, BorderIndex::EdgeLeft,
                                 BorderIndex::EdgeTop, BorderIndex::EdgeRight, BorderIndex::InsideVertical}) {
    layout.sheet.setBorder(line, none, BorderLine());
  }
  layout.sheet.setBorder(line, BorderIndex::EdgeBottom, BorderLine::of(1, 2, -4105));
}

/// The table's name as a sheet can carry it. A sign in first place stays, and the book then can't be made.
std::string bookName(std::string_view japaneseName) {
  std::string name(japaneseName);
  for (const std::string_view sign : {":", "\\", "/", "?", "*", "[", "]"}) {
    if (name.size() > 1 && name.find(sign, 1) != std::string::npos) {
      name = gReplaceAll(name, sign, ".");
    }
  }
  return name;
}

std::string putBlankBook(Session& session, Host& host, BookRun& run, const frmTBDetail& detail,
                         const SystemRecord& system, const std::string& systemName) {
  const std::string name = bookName(detail.txtTableNameJPN.text);
  const std::string path = layoutPath(session, run, detail, system, bookName, ".xlsx");
  if (!mayReplaceOrTell(session, host, path)) return "";
  const TableDates dates = GetTableName作成変更日(session, detail.lblID.caption);
  const std::filesystem::path blank = host.machine.programFolder / toPath(kBlankBook);
  if (!gFileExists(host, blank.string(), false)) {
    gMsgBox(host, "指定されたファイルが存在しません.", kStopIcon);
    return "";
  }
  Workbook book = openTemplate(run, blank).clone();
  book.renameSheet(0, cutSheetName(name));
  book.setActiveSheet(0);
  const DateTime now = host.clock.now();
  Layout layout{session,       detail,
                book.sheet(0), SheetMeasure(book, 0, run.fonts),
                now,           parseDateTime(detail.lblCheckPoint.caption).value_or(now)};
  putHeader(layout, systemName, dates);
  const int rows = printedRows(detail);
  lengthenForm(layout, rows);
  for (int row = 1; row <= rows; ++row) putField(layout, systemName, row);
  closeForm(layout, rows);
  if (!dates.created.empty() && !dates.changed.empty()) {
    PageSetup page = layout.sheet.pageSetup();
    page.header.right = headerText("作成日:" + dates.created + "\n変更日:" + dates.changed);
    layout.sheet.setPageSetup(page);
  }
  layout.sheet.select(cellAt("A1"));
  noteCutTexts(run, layout.sheet, [&](CellRef cell) {
    const int row = cell.row - kFirstFieldRow + 1;
    if (row > rows) return placeInTable(detail, "付帯事項");
    return row < 1 ? placeInTable(detail, "") : placeInTable(detail, row);
  });
  saveBook(session, host, book, detail.txtTableNameJPN.text, path);
  return path;
}

/// Each kind of layout, by what the table and its System are.
std::string putLayout(Session& session, Host& host, BookRun& run, const frmTBDetail& detail, std::string_view system) {
  if (detail.mode == DetailMode::Prj) {
    session.log.gPutLog(host, "ExcelPut to PG管理");
    return PutExcelFile2PGControl(session, host, run, detail);
  }
  session.log.gPutLog(host, "ExcelPut");
  const std::string systemName(system == kAllSystems ? std::string_view(detail.lblSystemName.caption) : system);
  SystemRecord record;
  if (!readOutputSystem(session, host, systemName, record)) return "";
  if (trim(record.formatFile).empty()) return putBlankBook(session, host, run, detail, record, systemName);
  session.log.gPutLog(host, "ExcelPut to ユーザー設定書式");
  session.log.gPutLog(host, "FileName:" + record.formatFile);
  return pPutCurrentTable2ExcelUserFormat(session, host, run, detail, record, systemName);
}

std::string minuteOf(std::string_view stored) {
  const auto moment = parseDateTime(stored);
  return moment ? formatDateTime(*moment, kMinuteForm) : "";
}

}  // namespace

std::string placeInTable(const frmTBDetail& detail, std::string_view place) {
  const std::string table(trim(detail.txtTableNameJPN.text));
  return trim(place).empty() ? table : table + " : " + std::string(trim(place));
}

std::string placeInTable(const frmTBDetail& detail, int row) {
  const std::string_view name = detail.Spread.text(field_col::kJapaneseName, row);
  return placeInTable(detail, trim(name).empty() ? detail.Spread.text(field_col::kFieldName, row) : name);
}

TableDates GetTableName作成変更日(Session& session, std::string_view tableId) {
  TableDates dates;
  Database& database = *session.gDB;
  const std::string id = plainNumber(gVal(tableId));
  Recordset table =
      database.openRecordset("SELECT 作成年月日, 更新年月日, 作成者, 更新者 FROM MAS_TABLEINFO WHERE ID = " + id);
  if (table.eof()) return dates;
  dates.created = minuteOf(table.text(0));
  dates.changed = minuteOf(table.text(1));
  dates.author = table.text(2);
  dates.changer = table.text(3);
  return dates;
}

std::string pPutCurrentTable2ExcelFile(Session& session, Host& host, BookRun& run, const frmTBDetail& detail,
                                       std::string_view system, bool openAfter) {
  const WaitText wait(host, "Excel出力中です....");
  if (trim(system).empty()) {
    gMsgBox(host, "システム名が未設定です.", kStopIcon);
    return "";
  }
  try {
    run.formatFault.clear();
    const std::string path =
        forTable(detail.txtTableNameJPN.text, [&] { return putLayout(session, host, run, detail, system); });
    tellCutTexts(host, run);
    if (openAfter && !path.empty()) openFinished(host, path, detail.txtTableNameJPN.text);
    return path;
  } catch (const std::exception& error) {
    tellBookError(session, host, "pPutCurrentTable2ExcelFile", error);
    return "";
  }
}

}  // namespace quillmarden
