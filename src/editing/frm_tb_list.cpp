#include "editing/frm_tb_list.h"

#include <algorithm>
#include <unordered_set>

#include "common/list_file.h"
#include "common/message.h"
#include "common/names.h"
#include "common/paths.h"
#include "common/settings.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/table_classes.h"
#include "engine/sql_text.h"
#include "relations/tableref.h"

namespace quillmarden {

namespace {

constexpr std::size_t kNameWidth = 50;
constexpr std::string_view kJapaneseTitle = "日本語名";
constexpr std::string_view kTableTitle = "テーブル名";
constexpr std::string_view kStartsWith = "から始まる";
constexpr std::string_view kContains = "を含む";
constexpr std::string_view kSearchList = "Tablewheremoji.lst";

bool japaneseFirst(const frmTBList& screen) { return screen.CmbTitle.text == kJapaneseTitle; }

std::string withoutTabs(std::string_view text) { return std::string(trim(gReplaceAll(text, "\t", ""))); }

/// A row between reference marks, which tell that the table is another System's.
TableRow usedTableRow(const UsedTable& used, const frmTBList& screen, bool angleMarks) {
  const std::string open = angleMarks ? "<" : "[";
  const std::string close = angleMarks ? ">" : "]";
  TableRow row{withoutTabs(used.tableName), withoutTabs(used.japaneseName), used.id, used.systemName, used.fileType};
  std::string& first = japaneseFirst(screen) ? row.japaneseName : row.tableName;
  const bool prefixed = row.fileType == "メンバー" && screen.ChkSosikiNm.value;
  // The mark comes first of all: by it runs over the list know the row.
  first = open + (prefixed ? row.systemName + "@" : "") + first + close;
  row.fileType.clear();
  return row;
}

std::vector<TableRow> listRows(Session& session, const frmTBList& screen, int& ownRows) {
  std::vector<TableRow> rows;
  Recordset tables = session.gDB->openRecordset(tableListSql(screen));
  rows.reserve(static_cast<std::size_t>(tables.recordCount()));
  for (; !tables.eof(); tables.moveNext()) {
    rows.push_back({std::string(tables.text(0)), std::string(tables.text(1)), std::string(tables.text(2)),
                    std::string(tables.text(3)), std::string(tables.text(4))});
  }
  ownRows = static_cast<int>(rows.size());
  if (screen.ChkRefTb.value)
    for (const UsedTable& used : usedTables(*session.gDB, screen.CmbSystem.text))
      rows.push_back(usedTableRow(used, screen, session.settings.tableRefMark));
  return rows;
}

/// Which rows are to be selected again, by ID or by name.
struct Selection {
  std::string id;
  std::string current;
  std::unordered_set<std::string> names;
};

Selection selectionOf(const ListBox& list, std::string_view selectId) {
  Selection selection;
  selection.id = trim(selectId);
  if (!selection.id.empty()) return selection;
  selection.current = tableListName(list.text());
  for (int row = 0; row < list.count(); ++row)
    if (list.selected[static_cast<std::size_t>(row)])
      selection.names.emplace(tableListName(list.rows[static_cast<std::size_t>(row)]));
  return selection;
}

void restoreSelection(ListBox& list, const Selection& selection) {
  for (int row = 0; row < list.count(); ++row) {
    const auto place = static_cast<std::size_t>(row);
    if (!selection.id.empty()) {
      if (tableListId(list.rows[place]) != selection.id) continue;
      list.selected[place] = true;
      list.listIndex = row;
      return;
    }
    const std::string name(tableListName(list.rows[place]));
    if (selection.names.contains(name)) list.selected[place] = true;
    if (list.listIndex < 0 && !selection.current.empty() && name == selection.current) list.listIndex = row;
  }
}

std::string searchListFile(const Session& session) {
  if (!session.settings.whereMojiListSystem) return gPathJoin(session.gInfoFolder, kSearchList);
  return gSafePathJoin(gPathJoin(session.gDataFolder, "Setting"),
                       std::string(kSearchList) + "_" + session.gCurrentSystemName + ".ini");
}

void readSearchTexts(const Session& session, frmTBList& screen) {
  screen.CmbWhereMoji.entries = readListFile(toPath(searchListFile(session)));
}

void noteSearchText(Session& session, frmTBList& screen) {
  const std::string text(trim(screen.CmbWhereMoji.text));
  const auto& entries = screen.CmbWhereMoji.entries;
  if (text.empty() || std::find(entries.begin(), entries.end(), text) != entries.end()) return;
  gListHistory(screen.CmbWhereMoji, text);
  const std::string file = searchListFile(session);
  if (session.settings.whereMojiListSystem) gMakeFolder(gPathJoin(session.gDataFolder, "Setting"));
  writeListFile(toPath(file), screen.CmbWhereMoji.entries);
}

void fillFilters(Session& session, frmTBList& screen, const std::string& system) {
  for (ComboBox* box : {&screen.CmbHost, &screen.CmbDataBunrui, &screen.CmbDataBunrui2}) box->text.clear();
  screen.CmbHost.entries =
      blankAndValues(*session.gDB, " SELECT MAS_TABLEINFO.格納先 From MAS_TABLEINFO Where MAS_TABLEINFO.システム名 =" +
                                       sqlText(system) + "  GROUP BY MAS_TABLEINFO.格納先;");
  screen.CmbDataBunrui.entries = screen.CmbDataBunrui2.entries = dataClassesInUse(*session.gDB, system);
}

void applyRights(const Session& session, frmTBList& screen, const std::string& system, bool known) {
  for (MenuItem* item : {&screen.mnuAdd, &screen.mnuUpDate, &screen.mnuDelete, &screen.mnutsSetting})
    item->enabled = session.gCanEdit;
  screen.CmdSystem.enabled = known || (system == kNewSystem && !session.gIsGuest);
}

}  // namespace

std::string tableListSql(const frmTBList& screen) {
  std::string sql =
      "SELECT a.テーブル名  , a.日本語名  , a.ID  , a.システム名  , a.ファイル種別  FROM MAS_TABLEINFO As a "
      " Where a.削除フラグ = 0 ";
  if (screen.ChkAllSys.value) sql += " And 全システム共通 = true ";
  if (screen.OptTb.value) {
    sql +=
        " And (    a.REVERSE_DB = false  Or    a.REVERSE_DB IS NULL Or    a.作成者 = "
        "'@@昇格@@UpDateDBInfo2Quillmarden'  ) ";
  } else if (screen.OptReverse.value) {
    sql += " And a.REVERSE_DB = True ";
  }
  if (screen.CmbSystem.text == kAllSystems) {
    sql += " And a.全システム共通 = True ";
  } else {
    sql.append(" And a.システム名 = ").append(sqlText(screen.CmbSystem.text)).append(" ");
  }
  const auto equal = [&](std::string_view column, std::string_view text) {
    if (!trim(text).empty()) sql.append(" And a.").append(column).append(" = ").append(sqlText(text)).append(" ");
  };
  equal("格納先", screen.CmbHost.text);
  equal("分類", screen.CmbBunrui.text);

  if (!trim(screen.CmbWhereMoji.text).empty()) {
    sql.append(" And ").append(japaneseFirst(screen) ? kJapaneseTitle : kTableTitle);
    const std::string_view before = screen.CmbWhere.text == kStartsWith ? "" : "*";
    sql.append("  Like(").append(asTyped(screen.CmbWhereMoji.text, before, "*")).append(") ");
  }

  std::string classes;
  for (const std::string* text : {&screen.CmbDataBunrui.text, &screen.CmbDataBunrui2.text}) {
    if (trim(*text).empty()) continue;
    classes.append(classes.empty() ? "   a.データ分類 = " : " or a.データ分類 = ").append(sqlText(*text)).append(" ");
    classes.append(" or a.データ分類2 = ").append(sqlText(*text)).append(" ");
  }
  if (!classes.empty()) sql.append(" And (").append(classes).append(" )");

  return sql + (japaneseFirst(screen) ? " Order by a.システム名,a.日本語名 " : " Order by a.システム名,a.テーブル名 ");
}

std::string tableListRow(const TableRow& row, const frmTBList& screen, bool whole) {
  const std::string prefix = row.fileType == "メンバー" && screen.ChkSosikiNm.value ? row.systemName + "@" : "";
  const std::string japanese = withoutTabs(row.japaneseName);
  const std::string physical = withoutTabs(row.tableName);
  const bool first = japaneseFirst(screen);
  return gPadText(prefix + (first ? japanese : physical), kNameWidth, 0, whole) + "\t" + (first ? physical : japanese) +
         "\t" + row.id;
}

std::string_view tableListId(std::string_view row) {
  const std::size_t tab = row.rfind('\t');
  return tab == std::string_view::npos ? std::string_view() : trim(row.substr(tab + 1));
}

std::string_view tableListName(std::string_view row) { return trim(row.substr(0, row.find('\t'))); }

void frmTBList_Load(Session& session, Host&, frmTBList& screen) {
  screen.caption = "テーブルリスト";
  screen.lblDbServer.caption = session.gDbServerLabel;
  screen.CmbTitle.entries = {std::string(kJapaneseTitle), std::string(kTableTitle)};
  screen.CmbTitle.text = kJapaneseTitle;
  screen.CmbWhere.entries = {std::string(kStartsWith), std::string(kContains)};
  screen.CmbWhere.text = kStartsWith;
  screen.CmbBunrui.entries = tableClasses();
  screen.OptAll.value = true;
  screen.OptTb.value = screen.OptReverse.value = false;
  screen.mnuCreateSQLBack.checked = session.settings.createSql2BackUpTable;
  screen.mnuCreateSQLRunnable.checked = session.settings.createSql2Runnable;
  readSearchTexts(session, screen);
  fillSystems(session, screen);
}

void fillSystems(Session& session, frmTBList& screen) {
  screen.CmbSystem.entries = {std::string(kNewSystem), std::string(kAllSystems)};
  for (std::string& name : gGetSystemList(session)) screen.CmbSystem.entries.push_back(std::move(name));
}

void CmbSystem_Click(Session& session, Host& host, Windows& windows, frmTBList& screen) {
  const std::string system = screen.CmbSystem.text;
  const std::string former = session.gCurrentSystemName;
  if (system == former) return;

  bool known = false;
  try {
    known = selectSystem(session, host, system);
    session.gCurrentSystemName = system;
    if (!known) {
      session.gCurrentSystemId = 0;
      session.gCurrentDbType.clear();
      session.gCanEdit = false;
    }
    screen.TxtConnect.text = known ? session.gCurrentSystem.connectDb : "";
    screen.TxtUserName.text = known ? session.gCurrentSystem.dbUser : "";
    screen.TxtPassword.text = known ? session.gCurrentSystem.dbPassword : "";
    fillFilters(session, screen, system);
  } catch (const EngineError& error) {
    session.gCanEdit = false;
    tellError(session, host, "CmbSystem_Click", error);
  }
  applyRights(session, screen, system, known);
  if (session.settings.whereMojiListSystem) readSearchTexts(session, screen);
  session.log.gPutLog(host, former + "->" + system);
  if (windows.systemChanged) windows.systemChanged(system);
  pGetTableList(session, host, screen);
}

void refreshRights(Session& session, Host& host, frmTBList& screen) {
  const std::string system = session.gCurrentSystemName;
  const bool named = !system.empty() && system != kAllSystems && system != kNewSystem;
  applyRights(session, screen, system, named && selectSystem(session, host, system));
}

bool pGetTableList(Session& session, Host& host, frmTBList& screen, std::string_view selectId) {
  if (trim(screen.CmbSystem.text).empty()) {
    screen.LstTable.clear();
    screen.tables.clear();
    screen.rowCount = 0;
    return false;
  }
  try {
    const Selection selection = selectionOf(screen.LstTable, selectId);
    int ownRows = 0;
    screen.tables = listRows(session, screen, ownRows);
    screen.LstTable.clear();
    for (const TableRow& row : screen.tables) screen.LstTable.add(tableListRow(row, screen));
    screen.rowCount = ownRows;
    restoreSelection(screen.LstTable, selection);
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "pGetTableList", error);
    return true;
  }
}

void CmdFind_Click(Session& session, Host& host, frmTBList& screen) {
  noteSearchText(session, screen);
  pGetTableList(session, host, screen);
}

void CmdClearWherMoji_Click(Session& session, Host& host, frmTBList& screen) {
  if (gMsgBox(host, "検索条件をクリアします.", kYesNo | kQuestionIcon, "確認") != kYes) return;
  for (ComboBox* box :
       {&screen.CmbWhereMoji, &screen.CmbHost, &screen.CmbBunrui, &screen.CmbDataBunrui, &screen.CmbDataBunrui2})
    box->text.clear();
  pGetTableList(session, host, screen);
}

bool keepsEditing(Host& host, const frmTBDetail& detail) {
  if (!detail.changed) return false;
  const std::string& japanese = detail.txtTableNameJPN.text;
  return gAskKeepEditing(host, japanese.empty() ? detail.txtTableNameENG.text : japanese);
}

bool pReadTbDetailsData(Session& session, Host& host, frmTBList& screen, frmTBDetail& detail) {
  const std::string_view id = tableListId(screen.LstTable.text());
  if (id.empty()) return true;
  if (!screen.running && keepsEditing(host, detail)) return true;
  return pGet_TableID2TableDetails(session, host, detail, id);
}

}  // namespace quillmarden
