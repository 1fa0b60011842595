#include "editing/frm_tb_info.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/table_classes.h"
#include "editing/tb_info_parts.h"
#include "engine/sql_text.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

constexpr std::string_view kOraColumns[] = {"ORA_INITIAL",     "ORA_NEXT",    "ORA_MAXEXTENTS", "ORA_MINEXTENTS",
                                            "ORA_PCTINCREASE", "ORA_PCTUSED", "ORA_PCTFREE"};
constexpr std::string_view kCountColumns[] = {"現在数", "想定数", "現在保持", "想定保持"};

void fillKensu(Session& session, frmTBInfo& screen) {
  screen.CmbKensu.entries = {""};
  screen.kensuIds = {0};
  const std::string sql = "SELECT a.ID, a.定義名 FROM MAS_KENSU AS a WHERE a.削除フラグ = 0 AND (a.システム名 = " +
                          sqlText(screen.lblSystemName.caption) + " OR a.全システム共通 = True) ORDER BY a.定義名";
  for (Recordset rows = session.gDB->openRecordset(sql); !rows.eof(); rows.moveNext()) {
    screen.kensuIds.push_back(static_cast<long>(rows.integer(0)));
    screen.CmbKensu.entries.emplace_back(rows.text(1));
  }
}

void fillLists(Session& session, frmTBInfo& screen) {
  Database& database = *session.gDB;
  const std::string& system = screen.lblSystemName.caption;
  screen.CmbBunrui.entries = tableClasses();
  screen.CmbHost.entries = blankAndValues(database, "SELECT 格納先 FROM MAS_HOST ORDER BY 格納先");
  screen.CmbFileType.entries = gGetFileKindList(database);
  screen.CmbKanKaku.entries = {"", "固定", "毎日", "月次", "年次", "適時"};
  screen.CmbInpData.entries = {"", "画面登録", "データ連携", "集計処理", "その他"};
  screen.CmbStat.entries = {std::string(kNotBegun), std::string(kInWork), std::string(kDone), std::string(kInChange)};
  screen.CmbDataBunrui.entries = screen.CmbDataBunrui2.entries = dataClassesInUse(database, system);
  screen.CmbMoveSystem.entries = gGetSystemList(session);
  std::erase(screen.CmbMoveSystem.entries, system);
  fillKensu(session, screen);
}

/// What the System makes of names, as the screen tells it.
void showForms(const SystemRecord& system, frmTBInfo& screen) {
  const bool narrow = system.tableNarrow;
  const bool upper = system.tableUpper;
  screen.lblTableNameForm.caption = narrow && upper ? "半角大文字" : narrow ? "半角" : upper ? "大文字" : "";
  const std::string marks = "「- 」「_ 」削除";
  std::string form = system.ryakuLower ? "小文字半角" : "";
  if (system.ryakuDelMoji) form += form.empty() ? marks : "," + marks;
  screen.lblRyakuForm.caption = form;
}

std::string dateText(std::string_view stored) {
  const auto moment = parseDateTime(stored);
  return moment ? formatDateTime(*moment, kDayForm) : std::string(stored);
}

void showNew(const Session& session, frmTBInfo& screen) {
  screen.lblSystemName.caption = session.gCurrentSystemName;
  screen.CmbFileType.text = session.gCurrentDbType;
  screen.CmbStat.text = kNotBegun;
  screen.ChkEditOK.value = true;
  for (TextBox& box : screen.TxtKensu) box.text = "0";
}

void showNames(const Recordset& row, frmTBInfo& screen) {
  screen.lblID.caption = row.text("ID");
  screen.lblSystemName.caption = row.text("システム名");
  screen.TxtJPN.text = screen.loadedJPN = trim(row.text("日本語名"));
  screen.TxtTableName.text = screen.loadedTableName = trim(row.text("テーブル名"));
  screen.TxtRyaku.text = trim(row.text("略名"));
  screen.TxtMemo.text = row.text("概要");
  screen.CmbBunrui.text = trim(row.text("分類"));
  screen.CmbHost.text = row.text("格納先");
  screen.CmbFileType.text = screen.loadedFileType = row.text("ファイル種別");
  screen.CmbKanKaku.text = row.text("作成間隔");
  screen.CmbDataBunrui.text = row.text("データ分類");
  screen.CmbDataBunrui2.text = row.text("データ分類2");
  screen.CmbInpData.text = row.text("データ入力元");
  screen.TxtInpForm.text = row.text("画面名等");
  screen.CmbStat.text = row.text("進捗状況");
  screen.TxtTanto.text = row.text("担当者名");
  screen.TxtMakeDate.text = dateText(row.text("作成日"));
  screen.TxtEndDate.text = dateText(row.text("完了日"));
  screen.TxtChgDate.text = dateText(row.text("変更日"));
}

void showFigures(const Recordset& row, frmTBInfo& screen) {
  for (std::size_t i = 0; i < screen.TxtKensu.size(); ++i) screen.TxtKensu[i].text = row.text(kCountColumns[i]);
  for (std::size_t i = 0; i < screen.TxtOra.size(); ++i) screen.TxtOra[i].text = row.text(kOraColumns[i]);
  screen.TxtTbSpace.text = row.text("ORA_TABLESPASE");
  screen.TxtIndexSpace.text = row.text("ORA_INDEXSPASE");
  const auto id = static_cast<long>(row.integer("件数定義ID"));
  const auto known = std::find(screen.kensuIds.begin(), screen.kensuIds.end(), id);
  // A definition that is gone keeps its number: the save must not cut a link that is none of its business.
  if (known == screen.kensuIds.end()) {
    screen.kensuIds.push_back(id);
    screen.CmbKensu.entries.push_back("[" + std::to_string(id) + "]");
    screen.CmbKensu.text = screen.CmbKensu.entries.back();
  } else {
    screen.CmbKensu.text = screen.CmbKensu.entries[static_cast<std::size_t>(known - screen.kensuIds.begin())];
  }
}

void showFlags(const Recordset& row, frmTBInfo& screen) {
  const auto flag = [&](std::string_view column) { return row.fieldIndex(column) >= 0 && row.integer(column) != 0; };
  screen.ChkEditOK.value = screen.loadedEditOK = row.isNull("修正許可") || flag("修正許可");
  screen.ChkAllSystem.value = flag("全システム共通");
  screen.ChkRecUpdate.value = flag("レコード更新削除");
  screen.ChkReverse.value = screen.loadedReverse = flag("REVERSE_DB");
  screen.ChkPmark.value = flag("pmark");
  screen.ChkBRIN.value = flag("brinindex");
  screen.ChkTrigger.value = flag("inttriggerflg");
  screen.TxtRefFileName.text = row.fieldIndex("reffile") >= 0 ? trim(row.text("reffile")) : "";
}

/// True when there is no such table.
bool loadInfo(Session& session, frmTBInfo& screen, std::string_view tableId) {
  if (tableId.empty()) {
    showNew(session, screen);
    fillLists(session, screen);
    return false;
  }
  if (!isNumeric(tableId)) return true;
  const Recordset row =
      session.gDB->openRecordset("SELECT a.*  From MAS_TABLEINFO as a WHERE a.ID=" + std::string(tableId) + ";");
  if (row.eof()) return true;
  showNames(row, screen);
  fillLists(session, screen);
  showFigures(row, screen);
  showFlags(row, screen);
  return false;
}

bool hasFieldRows(Database& database, const std::string& id) {
  return !database
              .openRecordset("SELECT MAS_TABLEDETAILES.ID From MAS_TABLEDETAILES WHERE MAS_TABLEDETAILES.ID = " + id +
                             ";")
              .eof();
}

}  // namespace

TableNames storedNames(Database& database, const std::string& id) {
  const Recordset row = database.openRecordset(
      "SELECT a.テーブル名, a.日本語名, a.略名, a.ファイル種別 FROM MAS_TABLEINFO AS a WHERE a.ID = " + id);
  if (row.eof()) return {};
  const std::string shortName(trim(row.text(2)));
  if (row.text(3) == kMemberKind) return {"", "", shortName};
  return {std::string(trim(row.text(0))), std::string(trim(row.text(1))), shortName};
}

bool kindMustStay(Session& session, Host& host, frmTBInfo& screen) {
  const std::string& id = screen.copyOf.empty() ? screen.lblID.caption : screen.copyOf;
  if (screen.loading || id.empty() || screen.CmbFileType.text == screen.loadedFileType) return false;
  if (!hasFieldRows(*session.gDB, id)) return false;
  screen.CmbFileType.text = screen.loadedFileType;
  gMsgBox(host,
          joinLines({"作成先のデータベース名が変更されました.", "テーブルの詳細情報があります.",
                     "このため、変更することはできません.", "元に戻します."}),
          kOkOnly, "入力確認");
  return true;
}

Right mayChangeHeader(Session& session, const frmTBInfo& screen) {
  const bool unlocks = !screen.loadedEditOK && screen.ChkEditOK.value;
  if (screen.lblID.caption.empty()) return mayChangeSystem(session, screen.lblSystemName.caption);
  return mayChangeTable(session, screen.lblID.caption, unlocks ? TableChange::kLock : TableChange::kDefinition);
}

void refreshRights(Session& session, frmTBInfo& screen) {
  // A locked table can be unlocked here.
  screen.cmdOK.enabled = screen.lblID.caption.empty()
                             ? static_cast<bool>(mayChangeSystem(session, screen.lblSystemName.caption))
                             : static_cast<bool>(mayChangeTable(session, screen.lblID.caption, TableChange::kLock));
  screen.cmdMoveSystem.enabled = !screen.lblID.caption.empty() && mayChangeTable(session, screen.lblID.caption);
}

bool frmTBInfo_Load(Session& session, Host& host, frmTBInfo& screen, std::string_view tableId) {
  screen = {};
  screen.caption = "テーブル基本情報";
  screen.loading = true;
  try {
    if (loadInfo(session, screen, trim(tableId))) {
      gMsgBox(host, "選択された行が有効な行ではないようです.");
      return true;
    }
  } catch (const EngineError& error) {
    tellError(session, host, "frmTBInfo_Load", error);
    return true;
  }
  showForms(session.gCurrentSystem, screen);
  refreshRights(session, screen);
  screen.loading = false;
  screen.loadedInput = inputOf(screen);
  TxtRyaku_Change(session, host, screen);
  return false;
}

void CmbStat_Change(Host& host, frmTBInfo& screen) {
  if (screen.loading) return;
  const std::string today = formatDateTime(host.clock.now(), kDayForm);
  const auto fill = [&](TextBox& date) {
    if (trim(date.text).empty()) date.text = today;
  };
  if (screen.CmbStat.text == kInWork) fill(screen.TxtMakeDate);
  if (screen.CmbStat.text == kDone) fill(screen.TxtEndDate);
  if (screen.CmbStat.text == kInChange) fill(screen.TxtChgDate);
  if (screen.CmbStat.text != kNotBegun) return;
  TextBox* const dates[] = {&screen.TxtMakeDate, &screen.TxtEndDate, &screen.TxtChgDate};
  const bool any =
      std::any_of(std::begin(dates), std::end(dates), [](const TextBox* date) { return !trim(date->text).empty(); });
  if (!any ||
      gMsgBox(host, "作成日/完了日/変更日を初期化します.", kYesNo | kQuestionIcon | kDefaultSecond, "確認") != kYes)
    return;
  for (TextBox* date : dates) date->text.clear();
}

void CmbFileType_Change(Session& session, Host& host, frmTBInfo& screen) {
  try {
    kindMustStay(session, host, screen);
  } catch (const EngineError& error) {
    tellError(session, host, "CmbFileType_Change", error);
  }
}

void TxtRyaku_Change(Session& session, Host& host, frmTBInfo& screen) {
  if (screen.loading) return;
  screen.lstRyaku.clear();
  // A half-typed bracket makes a pattern that fails; the list then waits for the next letter.
  try {
    const std::string sql =
        "SELECT inf.略名 FROM MAS_TABLEINFO AS inf  WHERE (((inf.システム名)=" + sqlText(screen.lblSystemName.caption) +
        ")  And ((inf.略名) Like " + sqlText(std::string(trim(screen.TxtRyaku.text)) + "*") +
        ")  AND NOT inf.略名 IS NULL  AND ((inf.削除フラグ)=0));";
    for (Recordset rows = session.gDB->openRecordset(sql); !rows.eof(); rows.moveNext())
      if (const std::string name(trim(rows.text(0))); !name.empty()) screen.lstRyaku.add(name);
  } catch (const EngineError& error) {
    session.log.putError(host, "TxtRyaku_Change", error.number(), error.what());
  }
}

bool cmdMoveSystem_Click(Session& session, Host& host, Windows& windows, frmTBInfo& screen) {
  const std::string& id = screen.lblID.caption;
  const std::string former = screen.lblSystemName.caption;
  const std::string wanted = screen.CmbMoveSystem.text;
  if (id.empty() || trim(wanted).empty() || refused(host, mayChangeTable(session, id))) return true;
  if (wanted == former || refused(host, mayChangeSystem(session, wanted))) return true;
  try {
    if (const std::string fault = tableNameInUse(session, wanted, id, storedNames(*session.gDB, id)); !fault.empty()) {
      gMsgBox(host, fault + "\n " + wanted, kOkOnly | kWarningIcon, "入力確認");
      return true;
    }
    inTransaction(*session.gDB, [&] {
      session.gDB->execute("UpDate MAS_TABLEINFO  set システム名 = " + sqlText(wanted) + "  Where id = " + id);
      session.gDB->execute("UpDate DAT_REFERENCE  set システム名 = " + sqlText(wanted) + "  Where id = " + id +
                           "  And システム名 = " + sqlText(former) + " ");
    });
  } catch (const EngineError& error) {
    session.log.putError(host, "cmdMoveSystem", error.number(), error.what());
    gMsgBox(host, fmt::format("所属システム変更に失敗しました.\n {}のエラーがありました.", error.number()));
    return true;
  }
  screen.lblSystemName.caption = wanted;
  screen.CmbMoveSystem.text.clear();
  screen.saved = true;
  gMsgBox(host, "所属システム変更の変更をしました。");
  if (windows.listChanged) windows.listChanged(id);
  return false;
}

}  // namespace quillmarden
