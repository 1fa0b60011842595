#include "dictionary/frm_divi_info.h"

#include "common/message.h"
#include "common/names.h"
#include "common/text.h"
#include "dictionary/division.h"
#include "engine/sql_text.h"
#include "repository/tell_error.h"

namespace quillmarden {

namespace {

/// A fault in a control's text.
struct Fault {
  std::string text;  ///< "" for none
  std::string control;
};

std::int64_t countOf(Database& database, const std::string& sql) { return database.openRecordset(sql).integer("cnt"); }

/// Whether fields or entries still go by the name.
bool isUsed(Database& database, const std::string& system, const std::string& name) {
  const std::string entries = "Select Count(*) as cnt From MAS_DIVISIONDETAILES  Where 値名称 = " + sqlText(name) +
                              "  And システム名 = " + sqlText(system) + " ";
  const std::string fields =
      "Select Count(*) as cnt  FROM MAS_TABLEINFO INNER JOIN   MAS_TABLEDETAILES ON MAS_TABLEINFO.ID = "
      "MAS_TABLEDETAILES.ID  WHERE (((MAS_TABLEINFO.システム名)=" +
      sqlText(system) + ")  AND ((MAS_TABLEDETAILES.項目参照先)=" + sqlText(name) + "));";
  return countOf(database, entries) != 0 || countOf(database, fields) != 0;
}

bool isDeleted(Database& database, const std::string& system, const std::string& name) {
  Recordset rows = database.openTable("MAS_DIVISION");
  return rows.seek({system, name}) && rows.integer("削除フラグ") != 0;
}

Fault faultOfNames(Session& session, const DivisionRecord& record, const std::string& old) {
  Database& database = *session.gDB;
  const std::string& system = session.gCurrentSystemName;
  if (!old.empty() && old != record.name && isUsed(database, system, old)) {
    return {joinLines({"値名称がシステム内で使用さています.", "値名称の一括変更後、", "再度更新処理が必要となります."}),
            "TxtDivName"};
  }
  std::string otherSystem;
  if (gGetOtherSystem2DivName(database, system, record.name, otherSystem))
    return {otherSystem + "でこの値名称は使用されています.", "TxtDivName"};
  // Its row would take what is saved and still be hidden.
  if (isDeleted(database, system, record.name))
    return {joinLines({"この値名称は削除されています.", "復活は、データベースを直接編集してください."}), "TxtDivName"};
  return {};
}

Fault faultOf(Session& session, const DivisionRecord& record, const std::string& old) {
  if (record.name.empty()) return {"値名称が未設定です.", "TxtDivName"};
  if (gChkMark(record.name)) return {"Quillmardenでは使用できない文字が設定されています.", "TxtDivName"};
  if (record.kind.empty()) return {"種別が未設定です.", "CmbClass"};
  if (record.type.empty()) return {"型が未設定です.", "CmbKata"};
  if (record.kind == "区分" && record.memo.empty()) {
    return {joinLines({"値の説明が未設定です.", "種別が区分のときは、", "値の説明が必要です."}), "Txtbiko"};
  }
  return faultOfNames(session, record, old);
}

void tellUpdateError(Session& session, Host& host, std::string_view routine, const EngineError& error) {
  session.log.putError(host, routine, error.number(), error.what());
  gMsgBox(host, joinLines({"更新エラーが発生しました.", error.what()}), kOkOnly | kStopIcon, "こまった");
}

void writeRecord(Session& session, Host& host, const DivisionRecord& record, const std::string& old) {
  const std::string& system = session.gCurrentSystemName;
  const std::string now = formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss");
  if (!old.empty() && old != record.name) {
    session.gDB->execute("Delete a.* From MAS_DIVISION a Where システム名 = " + sqlText(system) +
                         "  And 値名称 = " + sqlText(old) + " ");
  }
  Recordset row = session.gDB->openTable("MAS_DIVISION");
  if (row.seek({system, record.name})) {
    row.edit();
  } else {
    row.addNew();
    row.set("値名称", record.name);
    row.set("システム名", system);
    row.set("削除フラグ", std::int64_t{0});
    row.set("作成年月日", now);
    row.set("作成者", session.gLoginUser);
    row.set("make_server", host.machine.computerName);
  }
  row.set("内容", record.memo);
  row.set("型", record.type);
  row.set("種別", record.kind);
  row.set("全システム共通", std::int64_t{record.allSystems ? -1 : 0});
  row.set("更新年月日", now);
  row.set("更新者", session.gLoginUser);
  row.set("COMPNAME", host.machine.computerName);
  row.update();
}

}  // namespace

Right mayChangeList(Session& session, std::string_view owner) {
  if (!equalsNoCase(trim(owner), trim(session.gCurrentSystemName)))
    return {joinLines({owner, "のシステムで定義されたものです.", "このシステムで修正する権限がありません."})};
  return mayChangeSystem(session, owner);
}

void gClearForm(frmDiviInfo& screen) {
  screen = frmDiviInfo{};
  screen.CmbClass.entries = {"フラグ", "区分"};
  screen.CmbKata.entries = {"数値", "文字", "Yes/No"};
}

bool pGetDivisionInfo(Session& session, Host& host, frmDiviInfo& screen, std::string_view name) {
  gClearForm(screen);
  screen.lblSystemName.caption = session.gCurrentSystemName;
  screen.cmdOK.enabled = session.gCanEdit;
  if (name.empty()) return false;
  try {
    Recordset row = session.gDB->openTable("MAS_DIVISION");
    if (!row.seek({session.gCurrentSystemName, std::string(name)})) {
      gMsgBox(host, joinLines({"指定の値リストが存在しません.", name}), kOkOnly | kStopIcon);
      return true;
    }
    screen.lblOld.caption = screen.TxtDivName.text = row.text("値名称");
    screen.CmbClass.text = row.text("種別");
    screen.CmbKata.text = row.text("型");
    screen.Txtbiko.text = row.text("内容");
    screen.ChkAllSystem.value = row.integer("全システム共通") != 0;
    screen.loaded = divisionRecord(screen);
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "pGetDivisionInfo", error);
    return true;
  }
}

DivisionRecord divisionRecord(const frmDiviInfo& screen) {
  return {.name = std::string(trim(screen.TxtDivName.text)),
          .kind = std::string(trim(screen.CmbClass.text)),
          .type = std::string(trim(screen.CmbKata.text)),
          .memo = std::string(trim(screen.Txtbiko.text)),
          .allSystems = screen.ChkAllSystem.value};
}

bool pChkDivisionInfo(Session& session, Host& host, frmDiviInfo& screen) {
  screen.focus.clear();
  Fault fault;
  try {
    fault = faultOf(session, divisionRecord(screen), screen.lblOld.caption);
  } catch (const EngineError& error) {
    tellUpdateError(session, host, "pChkDivisionInfo", error);
    return true;
  }
  if (fault.text.empty()) return false;
  gMsgBox(host, fault.text, kOkOnly | kStopIcon, "入力確認");
  screen.focus = fault.control;
  return true;
}

bool pPutDivisionInfo(Session& session, Host& host, frmDiviInfo& screen) {
  if (refused(host, mayChangeList(session, screen.lblSystemName.caption))) return true;
  const DivisionRecord record = divisionRecord(screen);
  try {
    inTransaction(*session.gDB, [&] { writeRecord(session, host, record, screen.lblOld.caption); });
  } catch (const EngineError& error) {
    tellUpdateError(session, host, "pPutDivisionInfo", error);
    return true;
  }
  screen.lblOld.caption = record.name;
  screen.loaded = record;
  screen.saved = true;
  return false;
}

bool cmdOK_Click(Session& session, Host& host, frmDiviInfo& screen) {
  if (pChkDivisionInfo(session, host, screen) || pPutDivisionInfo(session, host, screen)) return true;
  screen.unloaded = true;
  return false;
}

bool cmdCancel_Click(Host& host, frmDiviInfo& screen) {
  if (divisionRecord(screen) != screen.loaded &&
      gMsgBox(host, "データが修正されていますが閉じますか?", kYesNo | kQuestionIcon | kDefaultSecond) != kYes)
    return true;
  screen.unloaded = true;
  return false;
}

}  // namespace quillmarden
