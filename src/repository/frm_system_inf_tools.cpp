#include "common/message.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "repository/frm_system_inf.h"

namespace quillmarden {
namespace {

/// What the lock of single tables has kept from a tool.
std::string lockedNote(Session& session, const frmSystemInf& screen) {
  const int locked = countLockedTables(session, screen.record.name);
  return locked == 0 ? "" : "\n編集不可のテーブル" + std::to_string(locked) + "件は、変更していません.";
}

/// Asks, runs the work in one transaction, and tells how many rows it changed. What such a run writes over in all
/// tables nobody can bring back, so that [Enter] alone begins none.
template <typename Work>
void runTool(Session& session, Host& host, const frmSystemInf& screen, bool heedsLock, std::string_view question,
             Work&& work) {
  if (refused(host, mayChangeSystem(session, screen.record.name)) ||
      gMsgBox(host, question, kYesNo | kQuestionIcon | kDefaultSecond) != kYes)
    return;
  int changed = 0;
  std::string note;
  try {
    inTransaction(*session.gDB, [&] { changed = work(*session.gDB); });
    if (heedsLock) note = lockedNote(session, screen);
  } catch (const EngineError& error) {
    session.log.putError(host, question, error.number(), error.what());
    gMsgBox(host, "更新エラーがありました.", kOkOnly | kStopIcon, "ごめん!!");
    return;
  }
  gMsgBox(host, joinLines({"更新しました.", std::to_string(changed) + "件の", "テーブルに対して反映しました."}) + note,
          kOkOnly | kInformationIcon, "よかった!!");
}

void setEditable(Session& session, Host& host, const frmSystemInf& screen, std::string_view question,
                 std::string_view flag) {
  runTool(session, host, screen, false, question, [&](Database& database) {
    return database.execute(std::string("UPDATE MAS_TABLEINFO AS a  SET a.修正許可 = ")
                                .append(flag)
                                .append("  WHERE a.システム名=")
                                .append(sqlText(screen.record.name))
                                .append(";"));
  });
}

/// An update of the fields of all the System's tables.
int updateFields(Database& database, const frmSystemInf& screen, std::string_view set, std::string_view condition) {
  return database.execute(
      std::string("UPDATE MAS_TABLEINFO AS a  INNER JOIN MAS_TABLEDETAILES AS b  ON a.ID = b.ID  SET ")
          .append(set)
          .append("  WHERE a.システム名=")
          .append(sqlText(screen.record.name))
          .append(" ")
          .append(" And a.削除フラグ = 0 ")
          .append(unlockedTables("a"))
          .append(condition));
}

/// All field names through a conversion of StrConv.
void convertNames(Session& session, Host& host, const frmSystemInf& screen, std::string_view question, int conversion) {
  runTool(session, host, screen, true, question, [&](Database& database) {
    return updateFields(database, screen, "b.項目名 = StrConv(b.項目名," + std::to_string(conversion) + ")",
                        "And b.項目名 Is Not Null");
  });
}

/// The tables that a reading of the live database left, with their fields. Gives the number of tables.
int removeReverseTables(Database& database, const std::string& system) {
  int removed = 0;
  for (Recordset tables = database.openRecordset(" Select  a.ID  From MAS_TABLEINFO AS a Where a.システム名 = " +
                                                 sqlText(system) + "  And   a.REVERSE_DB = -1 " + unlockedTables("a"));
       !tables.eof(); tables.moveNext(), ++removed) {
    for (const char* table : {"MAS_TABLEDETAILES", "MAS_TABLEINFO"})
      database.execute("Delete * From " + std::string(table) + " Where ID = " + std::to_string(tables.integer(0)));
  }
  return removed;
}

}  // namespace

void CmdProtect_Click(Session& session, Host& host, frmSystemInf& screen) {
  setEditable(session, host, screen, "全てのテープルに対して個別に編集禁止にする", "0");
}

void CmdUnProtect_Click(Session& session, Host& host, frmSystemInf& screen) {
  setEditable(session, host, screen, "全てのテーブルの編集許可を取り消す", "-1");
}

void CmdChk_Click(Session& session, Host& host, frmSystemInf& screen) {
  runTool(session, host, screen, true, "このシステムにチェックポイントを設定", [&](Database& database) {
    const std::string now = "#" + formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss") + "#";
    // The one who sets a checkpoint becomes the tables' author, as on the table list.
    return database.execute(
        "UPDATE MAS_TABLEINFO AS a  SET a.チェックポイント日付 = " + now + ", a.更新年月日 = " + now +
        ", a.作成者 = " + sqlText(session.gLoginUser) + ", a.COMPNAME = " + sqlText(host.machine.computerName) +
        "  WHERE a.システム名=" + sqlText(screen.record.name) + " And a.削除フラグ = 0 " + unlockedTables("a"));
  });
}

void CmdNarrow_Click(Session& session, Host& host, frmSystemInf& screen) {
  convertNames(session, host, screen, "項目名で設定さている全角を半角に変換します.", 8);
}

void CmdLowerCase_Click(Session& session, Host& host, frmSystemInf& screen) {
  convertNames(session, host, screen, "項目名で設定さている大文字を小文字に変換します.", 2);
}

void CmdDef0_Click(Session& session, Host& host, frmSystemInf& screen) {
  runTool(session, host, screen, true,
          joinLines({"Number型で、項目分類=数値(値)に、", "初期値=0(Default 0)を設定する."}), [&](Database& database) {
            return updateFields(database, screen, "b.初期値 = '0'",
                                "And a.ファイル種別='oracle' And b.型='number' And b.項目分類='数量(値)' "
                                "And (b.初期値 Is Null Or b.初期値 = '')");
          });
}

void CmdDel_Click(Session& session, Host& host, frmSystemInf& screen) {
  runTool(session, host, screen, true, "リバーステーブルを削除します.", [&](Database& database) {
    host.dialogs.waitText("削除中です...");
    return removeReverseTables(database, screen.record.name);
  });
  host.dialogs.waitText("");
}

void CmdOpenFolder_Click(Session& /*session*/, Host& host, frmSystemInf& /*screen*/) {
  host.opener.openFolder(host.machine.programFolder);
}

bool checkNewSystemName(Session& session, Host& host, frmSystemInf& screen) {
  const std::string_view name = trim(screen.TxtSystemNameNew.text);
  std::string_view fault;
  try {
    if (name.empty())
      fault = "変更後が未設定です.";
    else if (name == screen.record.name)
      fault = "前後で同じです.";
    else if (gChkSystemName2Exists(session, name, screen.record.id))
      fault = "変更後は、他で定義済みです.";
  } catch (const EngineError& error) {
    session.log.putError(host, "cmdChange", error.number(), error.what());
    gMsgBox(host, joinLines({"pMDB_UpdateSystemName.でエラーがありました.", error.what()}), kOkOnly | kStopIcon);
    return false;
  }
  if (fault.empty()) return true;
  gMsgBox(host, fault, kOkOnly | kWarningIcon);
  screen.focus = "TxtSystemNameNew";
  return false;
}

bool cmdChange_Click(Session& session, Host& host, Windows& windows, frmSystemInf& screen) {
  if (refused(host, mayChangeSystem(session, screen.record.name)) || !checkNewSystemName(session, host, screen))
    return false;
  const std::string name(trim(screen.TxtSystemNameNew.text));
  if (gMsgBox(host, "システム名を変更します.", kYesNo | kQuestionIcon, "変更確認") != kYes) return false;
  if (pMDB_UpdateSystemName(session, host, screen.record.name, name)) return false;
  gMsgBox(host, joinLines({"システム名を変更しました.", "ログオフします."}), kOkOnly | kInformationIcon);
  screen.record.name = name;
  screen.unloaded = true;
  if (windows.logOff) windows.logOff();
  return true;
}

}  // namespace quillmarden
