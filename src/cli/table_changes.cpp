#include "cli/table_changes.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/console_session.h"
#include "common/text.h"
#include "editing/deleted_tables.h"
#include "editing/frm_partition.h"
#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

namespace {

/// A column of MAS_TABLEINFO as it is now; "" for Null and for one that an older Repository lacks.
std::string storedColumn(Run& run, const std::string& id, std::string_view column) {
  const Recordset row = run.session.gDB->openRecordset("SELECT * FROM MAS_TABLEINFO WHERE ID = " + id);
  return row.eof() || row.fieldIndex(column) < 0 ? "" : std::string(row.text(column));
}

/// The list screen with this table alone selected.
bool selectTable(Run& run, const std::string& id, frmTBList& list) {
  if (!openTableList(run, run.session.gCurrentSystemName, list)) return false;
  for (std::size_t row = 0; row < list.LstTable.rows.size(); ++row)
    list.LstTable.selected[row] = tableListId(list.LstTable.rows[row]) == id;
  return true;
}

std::vector<std::string> partsOf(std::string_view list) {
  std::vector<std::string> parts;
  for (;;) {
    const std::size_t comma = list.find(',');
    if (const std::string_view part = trim(list.substr(0, comma)); !part.empty()) parts.emplace_back(part);
    if (comma == std::string_view::npos) return parts;
    list.remove_prefix(comma + 1);
  }
}

}  // namespace

std::vector<SettableColumn> headerColumns(Run& run, frmTBInfo& screen) {
  std::vector<SettableColumn> all = {
      textColumn("テーブル名", screen.TxtTableName),
      textColumn("日本語名", screen.TxtJPN),
      textColumn("略名", screen.TxtRyaku),
      textColumn("分類", screen.CmbBunrui),
      textColumn("概要", screen.TxtMemo),
      textColumn("格納先", screen.CmbHost),
      entryColumn("ファイル種別", screen.CmbFileType),
      textColumn("作成間隔", screen.CmbKanKaku),
      textColumn("データ分類", screen.CmbDataBunrui),
      textColumn("データ分類2", screen.CmbDataBunrui2),
      textColumn("データ入力元", screen.CmbInpData),
      textColumn("画面名等", screen.TxtInpForm),
      entryColumn("進捗状況", screen.CmbStat, [&run, &screen] { CmbStat_Change(run.host, screen); }),
      textColumn("担当者名", screen.TxtTanto),
      textColumn("作成日", screen.TxtMakeDate),
      textColumn("完了日", screen.TxtEndDate),
      textColumn("変更日", screen.TxtChgDate),
      entryColumn("件数定義", screen.CmbKensu, {}, true),
      textColumn("ORA_TABLESPASE", screen.TxtTbSpace),
      textColumn("ORA_INDEXSPASE", screen.TxtIndexSpace),
      flagColumn("全システム共通", screen.ChkAllSystem),
      flagColumn("レコード更新削除", screen.ChkRecUpdate),
      flagColumn("REVERSE_DB", screen.ChkReverse),
      flagColumn("pmark", screen.ChkPmark),
      flagColumn("brinindex", screen.ChkBRIN),
      flagColumn("inttriggerflg", screen.ChkTrigger)};
  constexpr const char* kCounts[] = {"現在数", "想定数", "現在保持", "想定保持"};
  for (std::size_t i = 0; i < screen.TxtKensu.size(); ++i) all.push_back(digitsColumn(kCounts[i], screen.TxtKensu[i]));
  constexpr std::pair<const char*, OraValue> kStorage[] = {
      {"ORA_INITIAL", kOraInitial},         {"ORA_NEXT", kOraNext},
      {"ORA_MINEXTENTS", kOraMinExtents},   {"ORA_MAXEXTENTS", kOraMaxExtents},
      {"ORA_PCTINCREASE", kOraPctIncrease}, {"ORA_PCTFREE", kOraPctFree},
      {"ORA_PCTUSED", kOraPctUsed}};
  for (const auto& [name, place] : kStorage) all.push_back(digitsColumn(name, screen.TxtOra[place]));
  return all;
}

bool deleteTable(Run& run, const std::string& id) {
  frmTBList list;
  if (!selectTable(run, id, list)) return false;
  mnuDelete_Click(run.session, run.host, list);
  return storedColumn(run, id, "削除フラグ") != "0";
}

bool lockTable(Run& run, const std::string& id, bool locked) {
  frmTBList list;
  if (!selectTable(run, id, list)) return false;
  mnutbEdit_Click(run.session, run.host, list, !locked);
  return (storedColumn(run, id, "修正許可") == "0") == locked;
}

bool moveTable(Run& run, const std::string& id, const std::string& system) {
  frmTBInfo screen;
  if (frmTBInfo_Load(run.session, run.host, screen, id)) return false;
  if (equalsNoCase(trim(system), screen.lblSystemName.caption))
    return failure(run, fmt::format("移動先は、現在のシステムと同じです.\n システム名 : {}", system)) == kDone;
  SystemRecord target;
  if (!gMDB_GetSystemInfo(run.session, run.host, system, target))
    return failure(run, fmt::format("指定のシステムが存在しません.\n システム名 : {}", system)) == kDone;
  screen.CmbMoveSystem.text = target.name;
  Windows windows;
  return !cmdMoveSystem_Click(run.session, run.host, windows, screen);
}

bool partitionTable(Run& run, const std::string& id, const std::string& fields) {
  frmTBDetail detail;
  if (pGet_TableID2TableDetails(run.session, run.host, detail, id)) return false;
  if (trim(fields).empty())
    return detail.txtPartitionRead.text.empty() || !cmdPartition_Click(run.session, run.host, detail);
  return !setPartition(run.session, run.host, detail, partsOf(fields));
}

bool setReferenceFile(Run& run, const std::string& id, const std::string& file) {
  frmTBInfo screen;
  if (frmTBInfo_Load(run.session, run.host, screen, id)) return false;
  if (trim(file).empty()) {
    cmdClearRefFile_Click(run.session, run.host, screen);
    return storedColumn(run, id, "reffile").empty();
  }
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored))
    return failure(run, fmt::format("指定のファイルが存在しません.\n {}", file)) == kDone;
  TxtRefFileName_Drop(run.session, run.host, screen, {file});
  return storedColumn(run, id, "reffile") == std::filesystem::path(file).filename().string();
}

std::optional<std::string> findDeletedTable(Run& run, const std::string& name) {
  const std::string_view wanted = trim(name);
  std::vector<DeletedTable> found;
  for (DeletedTable& table : deletedTables(*run.session.gDB, run.session.gCurrentSystemName))
    if (!wanted.empty() &&
        (table.id == wanted || equalsNoCase(table.tableName, wanted) || equalsNoCase(table.japaneseName, wanted)))
      found.push_back(std::move(table));
  if (found.size() == 1) return found.front().id;
  std::string text = found.empty() ? "指定の削除されたテーブルが存在しません."
                                   : "指定の名称は、複数のテーブルに該当します. IDで指定して下さい.";
  text += fmt::format("\n 名称 : {}", name);
  for (const DeletedTable& table : found)
    text += fmt::format("\n ID = {} : {} : {} : {} {}", table.id, table.japaneseName, table.tableName, table.updatedAt,
                        table.updatedBy);
  failure(run, text);
  return std::nullopt;
}

}  // namespace quillmarden
