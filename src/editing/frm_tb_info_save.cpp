#include <fmt/format.h>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/table_copy.h"
#include "editing/tb_info_parts.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

/// The columns of a header row under an edit; one that an older Repository lacks is passed over.
class HeaderRow {
 public:
  explicit HeaderRow(Recordset& row) : row_(row) {}

  void text(std::string_view column, std::string_view value) { set(column, std::string(value)); }
  void flag(std::string_view column, bool value) { set(column, std::int64_t{value ? -1 : 0}); }
  void number(std::string_view column, std::string_view value) { set(column, gStr2Double(value)); }
  /// A number that may be unknown.
  void numberOrNull(std::string_view column, std::string_view value) {
    set(column, trim(value).empty() ? Value{} : Value{gStr2Double(value)});
  }
  void dateOrNull(std::string_view column, std::string_view value) {
    const auto moment = parseDateTime(trim(value));
    set(column, moment ? Value{formatDateTime(*moment, kSecondForm)} : Value{});
  }
  void set(std::string_view column, Value value) {
    if (row_.fieldIndex(column) >= 0) row_.set(column, std::move(value));
  }

 private:
  Recordset& row_;
};

long kensuId(const frmTBInfo& screen) {
  for (std::size_t i = 0; i < screen.CmbKensu.entries.size() && i < screen.kensuIds.size(); ++i)
    if (screen.CmbKensu.entries[i] == screen.CmbKensu.text) return screen.kensuIds[i];
  return 0;
}

void putDescription(HeaderRow& row, const Session& session, const frmTBInfo& screen, const std::string& now,
                    const std::string& computer) {
  row.text("テーブル名", storedTableName(session, screen.TxtTableName.text));
  row.text("略名", storedRyaku(session, screen.TxtRyaku.text));
  row.text("日本語名", trim(screen.TxtJPN.text));
  row.text("分類", trim(screen.CmbBunrui.text));
  row.text("概要", screen.TxtMemo.text);
  row.text("格納先", trim(screen.CmbHost.text));
  row.flag("修正許可", screen.ChkEditOK.value);
  row.text("ファイル種別", screen.CmbFileType.text);
  row.text("更新年月日", now);
  row.text("作成間隔", trim(screen.CmbKanKaku.text));
  row.number("現在数", screen.TxtKensu[0].text);
  row.number("想定数", screen.TxtKensu[1].text);
  row.number("現在保持", screen.TxtKensu[2].text);
  row.number("想定保持", screen.TxtKensu[3].text);
  row.text("更新者", session.gLoginUser);
  row.text("COMPNAME", computer);
}

void putStorage(HeaderRow& row, const frmTBInfo& screen) {
  if (screen.CmbFileType.text == "TeraDatabase") return;
  row.numberOrNull("ORA_INITIAL", screen.TxtOra[kOraInitial].text);
  row.numberOrNull("ORA_NEXT", screen.TxtOra[kOraNext].text);
  row.numberOrNull("ORA_MAXEXTENTS", screen.TxtOra[kOraMaxExtents].text);
  row.numberOrNull("ORA_MINEXTENTS", screen.TxtOra[kOraMinExtents].text);
  row.numberOrNull("ORA_PCTINCREASE", screen.TxtOra[kOraPctIncrease].text);
  row.numberOrNull("ORA_PCTUSED", screen.TxtOra[kOraPctUsed].text);
  row.numberOrNull("ORA_PCTFREE", screen.TxtOra[kOraPctFree].text);
  row.text("ORA_TABLESPASE", trim(screen.TxtTbSpace.text));
  row.text("ORA_INDEXSPASE", trim(screen.TxtIndexSpace.text));
}

void putManagement(HeaderRow& row, const Session& session, const frmTBInfo& screen) {
  row.text("データ入力元", trim(screen.CmbInpData.text));
  row.text("画面名等", trim(screen.TxtInpForm.text));
  row.text("進捗状況", trim(screen.CmbStat.text));
  row.dateOrNull("作成日", screen.TxtMakeDate.text);
  row.dateOrNull("完了日", screen.TxtEndDate.text);
  row.dateOrNull("変更日", screen.TxtChgDate.text);
  row.text("担当者名", trim(screen.TxtTanto.text));
  row.flag("全システム共通", screen.ChkAllSystem.value);
  row.set("件数定義ID", std::int64_t{kensuId(screen)});
  row.flag("レコード更新削除", screen.ChkRecUpdate.value);
  row.text("データ分類", trim(screen.CmbDataBunrui.text));
  row.text("データ分類2", trim(screen.CmbDataBunrui2.text));
  row.flag("REVERSE_DB", screen.ChkReverse.value && !endsReverse(session, screen));
  row.flag("pmark", screen.ChkPmark.value);
  row.text("reffile", trim(screen.TxtRefFileName.text));
  row.flag("brinindex", screen.ChkBRIN.value);
  row.flag("inttriggerflg", screen.ChkTrigger.value);
}

/// Writes the header row; the ID of the table.
std::string writeRow(Session& session, Host& host, const frmTBInfo& screen) {
  const std::string now = formatDateTime(host.clock.now(), kSecondForm);
  const std::string& computer = host.machine.computerName;
  const bool isNew = screen.lblID.caption.empty();
  Recordset table = session.gDB->openTable("MAS_TABLEINFO");
  HeaderRow row(table);
  if (isNew) {
    table.addNew();
    row.text("作成年月日", now);
    row.text("作成者", session.gLoginUser);
    row.text("システム名", screen.lblSystemName.caption);
    row.text("make_server", computer);
    row.set("削除フラグ", std::int64_t{0});
  } else {
    if (!table.seek({static_cast<std::int64_t>(gVal(screen.lblID.caption))}))
      throw EngineError(engine_error::kNoCurrentRecord, "ID " + screen.lblID.caption);
    table.edit();
  }
  putDescription(row, session, screen, now, computer);
  putStorage(row, screen);
  putManagement(row, session, screen);
  table.update();
  return isNew ? std::to_string(table.lastId()) : screen.lblID.caption;
}

/// The texts of all references to the table tell its present name.
void pUpdateForeignName(Database& database, const std::string& id) {
  database.execute(
      " UPDATE (MAS_TABLEINFO AS m "
      "   INNER JOIN MAS_TABLEDETAILES AS md "
      "       ON m.ID = md.ID) "
      "   INNER JOIN MAS_TABLEDETAILES AS up "
      "       ON (md.ID = up.外部参照TABLEID) AND (md.ROWNO = up.外部参照ROWNO) "
      "    SET up.外部参照 = Trim$([m].[日本語名]) & ':' & Trim$([md].[日本語名]) "
      " WHERE (((m.ID)=" +
      id + "));");
}

bool checked(Session& session, Host& host, frmTBInfo& screen) {
  try {
    if (screen.CmbFileType.text == kMemberKind) return !pChkMemberInfo(session, host, screen);
    if (screen.CmbFileType.text == kPrjKind) return !pChkPrjInfo(session, host, screen);
    return !pChkTableInfo(session, host, screen);
  } catch (const EngineError& error) {
    tellError(session, host, "pChkTableInfo", error);
    return false;
  }
}

/// Asks what is to become of a changed name. Whether the references are to follow.
bool wantsCascade(const Session& session, Host& host, const frmTBInfo& screen) {
  if (screen.lblID.caption.empty()) return false;
  std::string notes;
  if (trim(screen.TxtJPN.text) != screen.loadedJPN) notes += "\n  日本語名が変更になっています.";
  if (storedTableName(session, screen.TxtTableName.text) != screen.loadedTableName)
    notes += "\n  テーブル名が変更になっています.";
  if (notes.empty()) return false;
  return gMsgBox(host, "下記の内容について変更されています." + notes + "\n変更を行い、関連項目も一括変更しますか?",
                 kYesNo | kQuestionIcon, "確認") == kYes;
}

bool confirmed(const Session& session, Host& host, const frmTBInfo& screen) {
  std::string text = "更新します.";
  if (endsReverse(session, screen)) text += "\nリバースフラグは解除されます.";
  text += "\n更新しないときは、[いいえ]のあと\n[キャンセル]ボタンを押してください.";
  return gMsgBox(host, text, kYesNo | kQuestionIcon, "確認") == kYes;
}

}  // namespace

bool endsReverse(const Session& session, const frmTBInfo& screen) {
  if (!screen.loadedReverse) return false;
  const bool marked = screen.loadedTableName.ends_with('@');
  return !screen.ChkReverse.value || (marked && !storedTableName(session, screen.TxtTableName.text).ends_with('@'));
}

std::string storedTableName(const Session& session, std::string_view typed) {
  std::string name(trim(typed));
  if (session.gCurrentSystem.tableNarrow) name = toNarrow(name);
  return session.gCurrentSystem.tableUpper ? toUpper(name) : name;
}

std::string storedRyaku(const Session& session, std::string_view typed) {
  std::string name = gZenkaku2Hankaku(toNarrow(trim(typed)), true, false);
  if (session.gCurrentSystem.ryakuLower) name = toLower(name);
  if (session.gCurrentSystem.ryakuDelMoji) name = gReplaceAll(gReplaceAll(name, "-", ""), "_", "");
  return name;
}

bool pPutTableInfo(Session& session, Host& host, frmTBInfo& screen, bool cascade) {
  if (refused(host, mayChangeHeader(session, screen))) return true;
  try {
    const bool isCopy = !screen.copyOf.empty();
    std::string id;
    inTransaction(*session.gDB, [&] {
      id = writeRow(session, host, screen);
      if (isCopy) copyTableContents(session, host, screen, id);
    });
    screen.lblID.caption = id;
    if (isCopy) {
      screen.copyOf.clear();
      screen.loadedJPN = trim(screen.TxtJPN.text);
      screen.loadedTableName = storedTableName(session, screen.TxtTableName.text);
    }
    // What the copy says of itself, too.
    if (cascade || isCopy) pUpdateForeignName(*session.gDB, id);
    return false;
  } catch (const EngineError& error) {
    session.log.putError(host, "pPutTableInfo", error.number(), error.what());
    gMsgBox(host, fmt::format("更新エラーがありました.\n {}のエラーが発生しました.", error.number()), kOkOnly,
            "確認とゆうか...");
    return true;
  }
}

bool cmdOK_Click(Session& session, Host& host, Windows& windows, frmTBInfo& screen) {
  if (refused(host, mayChangeHeader(session, screen))) return true;
  if (!checked(session, host, screen)) return true;
  const bool cascade = wantsCascade(session, host, screen);
  if (!confirmed(session, host, screen)) return true;
  if (pPutTableInfo(session, host, screen, cascade)) return true;
  screen.saved = true;
  screen.savedTableName = storedTableName(session, screen.TxtTableName.text);
  screen.savedJPN = trim(screen.TxtJPN.text);
  if (windows.listChanged) windows.listChanged(screen.lblID.caption);
  return false;
}

}  // namespace quillmarden
