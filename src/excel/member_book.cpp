#include "excel/member_book.h"

#include <algorithm>
#include <array>

#include "common/message.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "excel/grid_sheet.h"
#include "excel/list_book.h"
#include "workbook/sheet_measure.h"

namespace quillmarden {
namespace {

constexpr std::string_view kMemberKind = "メンバー";

struct MemberKind {
  std::string_view type;
  std::string Member::*value;
};

constexpr std::array kMemberKinds = {
    MemberKind{"会社", &Member::company},    MemberKind{"会社略名", &Member::companyShort},
    MemberKind{"所属1", &Member::division1}, MemberKind{"所属2", &Member::division2},
    MemberKind{"役職", &Member::post},       MemberKind{"電話", &Member::phone},
    MemberKind{"携帯", &Member::phone},      MemberKind{"Mail", &Member::mail},
    MemberKind{"参加日", &Member::joined},   MemberKind{"終了日", &Member::left},
    MemberKind{"役割", &Member::role},       MemberKind{"メモ", &Member::memo},
};

struct MemberColumn {
  std::string_view head;
  std::string Member::*value;
  double width;
};

/// Behind the group's name.
constexpr std::array kMemberColumns = {
    MemberColumn{"会社", &Member::company, 24},    MemberColumn{"会社略名", &Member::companyShort, 14},
    MemberColumn{"所属1", &Member::division1, 18}, MemberColumn{"所属2", &Member::division2, 18},
    MemberColumn{"役職", &Member::post, 12},       MemberColumn{"氏名", &Member::name, 16},
    MemberColumn{"電話", &Member::phone, 16},      MemberColumn{"Mail", &Member::mail, 28},
    MemberColumn{"参加日", &Member::joined, 22},   MemberColumn{"終了日", &Member::left, 22},
    MemberColumn{"役割", &Member::role, 24},       MemberColumn{"メモ", &Member::memo, 32},
};

/// One value of a field row: its lines joined, with its remark behind it.
std::string valueText(std::string_view content, std::string_view remark) {
  std::string text;
  for (const std::string_view line : splitLines(content)) {
    if (trim(line).empty()) continue;
    text.append(text.empty() ? "" : ",").append(trim(line));
  }
  if (!text.empty() && !trim(remark).empty()) text.append(" (").append(trim(remark)).append(")");
  return text;
}

void addValue(std::string& values, const std::string& value) {
  if (value.empty()) return;
  values.append(values.empty() ? "" : ",").append(value);
}

/// The columns that the options ask for.
std::vector<MemberColumn> shownColumns(const AppSettings& settings) {
  std::vector<MemberColumn> shown;
  for (const MemberColumn& column : kMemberColumns) {
    if (isMemberKindShown(settings, column.head)) shown.push_back(column);
  }
  return shown;
}

void putHeads(Worksheet& sheet, const std::vector<MemberColumn>& columns) {
  sheet.setText({1, 1}, "グループ");
  sheet.setColumnWidth(1, 1, 20);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const int column = static_cast<int>(i) + 2;
    sheet.setText({1, column}, columns[i].head);
    sheet.setColumnWidth(column, column, columns[i].width);
  }
}

void format(Worksheet& sheet, int lastRow, int lastColumn) {
  const CellRange all({1, 1}, {lastRow, lastColumn});
  sheet.changeStyle(all, [](CellStyle& style) {
    style.alignment.wrap = true;
    style.alignment.vertical = VerticalAlign::Top;
  });
  sheet.setGrid(all, gridRule());
  styleTitles(sheet, {{1, 1}, {1, lastColumn}});
  setUpGridPage(sheet, 1, 1);
}

/// Each row as high as its texts need it.
void fitRows(Workbook& book, FontBook& fonts, int lastRow, int lastColumn) {
  SheetMeasure measure(book, 0, fonts);
  for (int row = 1; row <= lastRow; ++row) {
    book.sheet(0).setRowHeight(row, measure.neededHeight(row, 1, lastColumn));
  }
}

std::string putMembers(Session& session, Host& host, BookRun& run, const frmTBList& list) {
  const std::vector<Group> groups = chosenGroups(*session.gDB, list);
  if (groups.empty()) {
    gMsgBox(host, "選択されていません.");
    return "";
  }
  const std::string path = workFile(session, run, "temptemp.xls");
  if (outputRefused(session, host, path)) return "";
  if (inUse(path)) {
    gMsgBox(host, joinLines({"出力作業ファイル.", path + " が", "使用中のようです.", "処理を中止します."}));
    return "";
  }
  const std::string sheetName =
      groups.size() == 1 ? cutSheetName(gSafeFileName(groups.front().tableName)) : "メンバー一覧";
  Workbook book = Workbook::create({.sheetName = sheetName});
  Worksheet& sheet = book.sheet(0);
  const std::vector<MemberColumn> columns = shownColumns(session.settings);
  const int lastColumn = static_cast<int>(columns.size()) + 1;
  putHeads(sheet, columns);
  int row = 1;
  for (const Group& group : groups) {
    for (Member& member : pGetMemberData(*session.gDB, group.id)) {
      if (member.name.empty()) member.name = group.name;
      sheet.setText({++row, 1}, group.name);
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string& value = member.*columns[i].value;
        if (!value.empty()) sheet.setText({row, static_cast<int>(i) + 2}, value);
      }
    }
  }
  format(sheet, row, lastColumn);
  fitRows(book, run.fonts, row, lastColumn);
  noteCutTexts(run, sheet, [&](CellRef cell) {
    return sheet.text({cell.row, 1}) + " : " + sheet.text({1, cell.column});
  });
  saveBook(session, host, book, sheetName, path);
  tellCutTexts(host, run);
  return path;
}

}  // namespace

std::vector<Group> chosenGroups(Database& database, const frmTBList& list) {
  std::vector<Group> groups;
  std::vector<std::string> rows = chosenRows(list);
  if (rows.empty()) rows = list.LstTable.rows;
  for (const std::string& row : rows) {
    const Recordset table = database.openRecordset(
        "PARAMETERS [wanted] Long; SELECT ファイル種別, 日本語名, テーブル名 FROM MAS_TABLEINFO WHERE ID = [wanted]",
        wantedTable(tableListId(row)));
    if (table.eof() || table.text(0) != kMemberKind) continue;
    groups.push_back(
        {std::string(tableListId(row)), std::string(trim(table.text(1))), std::string(trim(table.text(2)))});
  }
  return groups;
}

bool isMemberKindShown(const AppSettings& settings, std::string_view kind) {
  // In the order of the options.
  constexpr std::array<std::string_view, 8> kKinds = {"会社", "会社略名", "所属1", "所属2",
                                                      "役職", "電話",     "Mail",  "役割"};
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    if (equalsNoCase(kind, kKinds[i])) return settings.putMemberInfo[i];
  }
  return true;
}

Recordset memberRows(Database& database, std::string_view tableId) {
  return database.openRecordset(
      "PARAMETERS [wanted] Long; SELECT 型, 日本語名, 備考 FROM MAS_TABLEDETAILES WHERE ID = [wanted] ORDER BY 表示順, "
      "ROWNO",
      wantedTable(tableId));
}

std::vector<Member> pGetMemberData(Database& database, std::string_view tableId) {
  std::vector<Member> members(1);
  Recordset row = memberRows(database, tableId);
  for (; !row.eof(); row.moveNext()) {
    const std::string_view type = trim(row.text(0));
    const std::string value = valueText(row.text(1), row.text(2));
    if (equalsNoCase(type, "氏名")) {
      if (!members.back().name.empty()) members.emplace_back();
      members.back().name = value;
      continue;
    }
    const auto kind =
        std::ranges::find_if(kMemberKinds, [type](const MemberKind& known) { return equalsNoCase(known.type, type); });
    if (kind != kMemberKinds.end()) addValue(members.back().*(kind->value), value);
  }
  return members;
}

std::string pPutMemberExcel(Session& session, Host& host, BookRun& run, const frmTBList& list, bool openAfter) {
  const WaitText wait(host, "Excel出力中です....");
  return runOutput(session, host, "pPutMemberExcel", openAfter, [&] { return putMembers(session, host, run, list); });
}

std::string mailAddresses(Database& database, const frmTBList& list) {
  std::string text;
  for (const Group& group : chosenGroups(database, list)) {
    Recordset row = memberRows(database, group.id);
    std::string addresses;
    for (; !row.eof(); row.moveNext()) {
      if (toLower(trim(row.text(0))) == "mail") addValue(addresses, valueText(row.text(1), ""));
    }
    if (!addresses.empty()) text += (text.empty() ? "" : "\r\n") + addresses;
  }
  return text;
}

void mnuMail_Click(Session& session, Host& host, const frmTBList& list) {
  if (gMsgBox(
          host,
          joinLines({"メールアドレス一覧を作成します.", "データベース=メンバーの", "メールをClipBordに複写します."}),
          kYesNo | kQuestionIcon) != kYes) {
    return;
  }
  try {
    const std::string addresses = mailAddresses(*session.gDB, list);
    if (addresses.empty()) {
      gMsgBox(host, "有効なMailアドレスはありませんでした.");
      return;
    }
    host.machine.setClipboard(addresses);
    gMsgBox(host, "ClipBordに一覧作成しました.");
  } catch (const EngineError& error) {
    tellBookError(session, host, "mnuMail", error);
  }
}

}  // namespace quillmarden
