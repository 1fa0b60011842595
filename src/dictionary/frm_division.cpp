#include "dictionary/frm_division.h"

#include <array>

#include "common/message.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "repository/tell_error.h"

namespace quillmarden {

namespace {

namespace col = division_col;

constexpr std::string_view kParting = "                                   \t";  // 35 blanks and a tab
/// Blank rows below the entries, to type into.
constexpr int kSpareRows = 10;

bool isYesNo(std::string_view type) { return type == "Yes/No"; }

/// Whether the list on show can be changed and saved here.
bool canSave(const Session& session, const frmDivision& screen) {
  return session.gCanEdit && !screen.lblAtai.caption.empty() && !isYesNo(screen.lblKata.caption) &&
         equalsNoCase(screen.owner, session.gCurrentSystemName);
}

std::vector<SpreadColumn> columnsFor(std::string_view type) {
  std::vector<SpreadColumn> columns = {
      {.title = "初期値", .kind = CellKind::Check, .width = 4},
      {.title = "値", .kind = CellKind::Edit, .width = 8},
      {.title = "概要", .kind = CellKind::Edit, .maxLength = kDivisionTextSize, .width = 18},
      {.title = "変更", .kind = CellKind::Static, .hidden = true},
      {.title = "作成者", .kind = CellKind::Static, .width = 5},
      {.title = "作成日", .kind = CellKind::Static, .width = 12},
      {.title = "更新者", .kind = CellKind::Static, .width = 5},
      {.title = "更新日", .kind = CellKind::Static, .width = 12},
  };
  SpreadColumn& value = columns[col::kValue - 1];
  if (type == "数値") {
    value.kind = CellKind::Integer;
    value.minimum = -999;
    value.maximum = 999;
  } else if (isYesNo(type)) {
    value.kind = CellKind::Static;
  } else {
    value.maxLength = kDivisionTextSize;
  }
  return columns;
}

void fillYesNo(Spread& grid) {
  int row = 0;
  for (const auto& [value, outline] : {std::pair("-1", "Yes"), std::pair("0", "No")}) {
    ++row;
    grid.setText(col::kPreset, row, "0");
    grid.setText(col::kValue, row, value);
    grid.setText(col::kOutline, row, outline);
  }
}

using Entries = std::vector<std::array<std::string, col::kCount>>;

Entries readEntries(Database& database, const ValueListItem& item) {
  std::string sql = "SELECT a.*  FROM MAS_DIVISIONDETAILES AS a WHERE a.システム名 =";
  sql.append(sqlText(item.system))
      .append("   AND  a.値名称 =")
      .append(sqlText(item.name))
      .append("  Order By  a.行番号 ");
  Entries entries;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) {
    const auto text = [&rows](std::string_view field) { return std::string(rows.text(field)); };
    entries.push_back({rows.integer("初期値") != 0 ? "-1" : "0", text("値"), text("内容"), "", text("作成者"),
                       text("作成年月日"), text("更新者"), text("更新年月日")});
  }
  return entries;
}

void fillEntries(Spread& grid, const Entries& entries) {
  for (int row = 1; row <= static_cast<int>(entries.size()); ++row)
    for (int column = 1; column <= col::kCount; ++column)
      grid.setText(column, row, entries[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(column - 1)]);
}

void setChanged(frmDivision& screen, bool changed) { screen.changed = screen.picRen.visible = changed; }

/// Puts a list on show; the one without a name empties the screen.
void show(Session& session, frmDivision& screen, const ValueListItem& item) {
  Entries entries;
  if (!isYesNo(item.type) && !item.name.empty()) entries = readEntries(*session.gDB, item);
  // Filled in its place: a grid put there as a whole might count as many changes as the former one, and views would
  // take it for that.
  Spread& grid = screen.Spread;
  grid.setColumns(columnsFor(item.type));
  if (isYesNo(item.type)) fillYesNo(grid);
  fillEntries(grid, entries);
  screen.lblAtai.caption = item.name;
  screen.lblClass.caption = item.kind;
  screen.lblKata.caption = item.type;
  screen.TxtMemo.text = item.memo;
  screen.owner = item.system;
  if (canSave(session, screen)) grid.setMaxRows(grid.maxRows() + kSpareRows);
  screen.block = {};
  refreshRights(session, screen);
  setChanged(screen, false);
}

bool isShown(const frmDivision& screen, const ValueListItem& item) {
  return item.name == screen.lblAtai.caption && item.system == screen.owner;
}

/// The row of the list on show, -1 when it is not listed.
int rowOnShow(const frmDivision& screen) {
  if (screen.lblAtai.caption.empty()) return -1;
  for (int row = 0; row < screen.lstDivision.count(); ++row)
    if (isShown(screen, splitValueListRow(screen.lstDivision.rows[static_cast<std::size_t>(row)]))) return row;
  return -1;
}

}  // namespace

std::string valueListRow(const ValueListItem& item) {
  std::string row(trim(item.name));
  row.append(kParting);
  row.append(item.system).append("\t").append(item.kind).append("\t").append(item.type).append("\t");
  return row + item.memo;
}

ValueListItem splitValueListRow(std::string_view row) {
  ValueListItem item;
  const std::size_t parting = row.find(kParting);
  item.name = row.substr(0, parting);
  if (parting == std::string_view::npos) return item;
  row.remove_prefix(parting + kParting.size());
  for (std::string* part : {&item.system, &item.kind, &item.type}) {
    const std::size_t tab = row.find('\t');
    *part = row.substr(0, tab);
    row.remove_prefix(tab == std::string_view::npos ? row.size() : tab + 1);
  }
  item.memo = row;
  return item;
}

std::string divisionListSql(const frmDivision& screen, std::string_view system) {
  std::string sql = "Select * From MAS_DIVISION ";
  if (screen.ChkAllSystem.value) {
    sql.append(" Where (システム名 = ").append(sqlText(system)).append("  Or 全システム共通 = True) ");
  } else {
    sql.append(" Where システム名 = ").append(sqlText(system)).append(" ");
  }
  sql.append(" And 削除フラグ = 0  ");
  if (!screen.CmbClass.text.empty()) sql.append(" And 種別 = ").append(sqlText(screen.CmbClass.text)).append(" ");
  if (!screen.CmbKata.text.empty()) sql.append(" And 型 = ").append(sqlText(screen.CmbKata.text)).append(" ");
  return sql + " Order By 値名称";
}

void frmDivision_Load(Session& session, Host& host, frmDivision& screen) {
  screen = frmDivision{};
  screen.caption = "値リスト : システム名: [ " + session.gCurrentSystemName + " ] ";
  screen.CmbClass.entries = {"", "フラグ", "区分"};
  screen.CmbKata.entries = {"", "数値", "文字", "Yes/No"};
  screen.TxtMemo.locked = true;
  screen.lblRange.caption = kDivisionRange;
  screen.lblEdit.caption = "編集不可";
  show(session, screen, {});
  pGetDivisionList(session, host, screen);
}

void refreshRights(const Session& session, frmDivision& screen) {
  const bool ofSystem = session.gCanEdit;
  screen.picEdit.visible = !ofSystem;
  for (MenuItem* entry : {&screen.mnuAdd, &screen.mnuEdit, &screen.mnuDelete}) entry->enabled = ofSystem;
  const bool editable = canSave(session, screen);
  screen.Spread.lockAll(!editable);
  screen.CmdUpDate.enabled = editable;
  // A Yes/No list answers these in words.
  const bool answered = editable || (isYesNo(screen.lblKata.caption) && ofSystem);
  for (MenuItem* entry : {&screen.mnuSpreadClear, &screen.mnuSpreadAdd, &screen.mnuSpreadDel})
    entry->enabled = answered;
}

bool pGetDivisionList(Session& session, Host& host, frmDivision& screen) {
  try {
    ListBox lists;
    for (Recordset rows = session.gDB->openRecordset(divisionListSql(screen, session.gCurrentSystemName)); !rows.eof();
         rows.moveNext())
      lists.add(
          valueListRow({std::string(rows.text("値名称")), std::string(rows.text("システム名")),
                        std::string(rows.text("種別")), std::string(rows.text("型")), std::string(rows.text("内容"))}));
    screen.lstDivision = std::move(lists);
    screen.lblNum.caption = std::to_string(screen.lstDivision.count());
    screen.lstDivision.listIndex = rowOnShow(screen);
    // What is no longer listed goes, but never with work that is not saved.
    if (screen.lstDivision.listIndex < 0 && !screen.changed) show(session, screen, {});
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "pGetDivisionList", error);
    return true;
  }
}

void CmdFind_Click(Session& session, Host& host, frmDivision& screen) { pGetDivisionList(session, host, screen); }

bool lstDivision_Click(Session& session, Host& host, frmDivision& screen) {
  const ValueListItem item = splitValueListRow(screen.lstDivision.text());
  if (item.name.empty()) return true;
  if (screen.changed && (isShown(screen, item) || gAskKeepEditing(host, screen.lblAtai.caption))) {
    screen.lstDivision.listIndex = rowOnShow(screen);
    return true;
  }
  return showValueList(session, host, screen, item);
}

bool showValueList(Session& session, Host& host, frmDivision& screen, const ValueListItem& item) {
  try {
    show(session, screen, item);
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "showValueList", error);
    return true;
  }
}

ValueListItem valueListOnShow(const frmDivision& screen) {
  return {.name = screen.lblAtai.caption,
          .system = screen.owner,
          .kind = screen.lblClass.caption,
          .type = screen.lblKata.caption,
          .memo = screen.TxtMemo.text};
}

void mnuAdd_Click(Session& session, Windows& windows, frmDiviInfo& info) {
  gClearForm(info);
  info.lblSystemName.caption = session.gCurrentSystemName;
  info.cmdOK.enabled = session.gCanEdit;
  if (windows.show) windows.show("frmDiviInfo");
}

void mnuEdit_Click(Session& session, Host& host, Windows& windows, frmDivision& screen, frmDiviInfo& info) {
  const ValueListItem item = splitValueListRow(screen.lstDivision.text());
  if (!item.name.empty() && refused(host, mayChangeList(session, item.system))) return;
  if (pGetDivisionInfo(session, host, info, item.name)) return;
  if (windows.show) windows.show("frmDiviInfo");
}

void frmDiviInfo_Unload(Session& session, Host& host, frmDivision& screen, const frmDiviInfo& info) {
  if (!info.saved) return;
  if (pGetDivisionList(session, host, screen)) return;
  // Entries that are being typed stay as they are, even when it is their list that got a new name or type.
  if (screen.changed) return;
  for (int row = 0; row < screen.lstDivision.count(); ++row) {
    const ValueListItem item = splitValueListRow(screen.lstDivision.rows[static_cast<std::size_t>(row)]);
    if (item.name != info.lblOld.caption || !equalsNoCase(item.system, session.gCurrentSystemName)) continue;
    screen.lstDivision.listIndex = row;
    lstDivision_Click(session, host, screen);
    return;
  }
}

void mnuDelete_Click(Session& session, Host& host, frmDivision& screen) {
  const ValueListItem item = splitValueListRow(screen.lstDivision.text());
  if (item.name.empty() || refused(host, mayChangeList(session, item.system))) return;
  if (gMsgBox(host, joinLines({"値リストを削除します.", "復活は、データベースを直接編集してください."}),
              kYesNo | kWarningIcon | kDefaultSecond, "削除確認") != kYes)
    return;
  try {
    session.gDB->execute("UPDATE MAS_DIVISION AS a  SET a.削除フラグ = 1 WHERE a.システム名 =" +
                         sqlText(session.gCurrentSystemName) + " AND a.値名称 =" + sqlText(item.name) + ";");
  } catch (const EngineError& error) {
    session.log.putError(host, "mnuDelete_Click", error.number(), error.what());
    gMsgBox(host, joinLines({"更新エラーが発生しました.", std::to_string(error.number()), error.what()}),
            kOkOnly | kStopIcon, "こまった!!(>_<)");
    return;
  }
  if (isShown(screen, item)) setChanged(screen, false);
  pGetDivisionList(session, host, screen);
}

}  // namespace quillmarden
