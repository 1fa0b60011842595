#include "dictionary/frm_divi_ref.h"

#include "common/message.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "repository/tell_error.h"

namespace quillmarden {

void frmDiviRef_Load(frmDiviRef& screen, std::string_view kind) {
  screen = frmDiviRef{};
  screen.lblKbn.caption = kind;
  screen.CmbWhere.entries = {"", "から始まる", "を含む"};
}

std::string divisionRefSql(const frmDiviRef& screen, std::string_view system) {
  std::string sql = "SELECT a.値名称  FROM MAS_DIVISION AS a WHERE  a.削除フラグ = 0 ";
  if (screen.ChkAllSystem.value) {
    sql.append(" And  (    a.システム名 = ").append(sqlText(system)).append(" Or    a.全システム共通 = True    ) ");
  } else {
    sql.append(" And  a.システム名 = ").append(sqlText(system));
  }
  sql.append(" AND a.種別 = ").append(sqlText(screen.lblKbn.caption)).append(" ");
  if (const std::string text(trim(screen.TxtWhere.text)); !text.empty()) {
    const std::string_view where = screen.CmbWhere.text;
    if (where == "から始まる") sql.append(" AND a.値名称 Like (").append(sqlText(text + "*")).append(") ");
    if (where == "を含む") sql.append(" AND a.値名称 Like (").append(sqlText("*" + text + "*")).append(") ");
  }
  return sql;
}

bool CmdFind_Click(Session& session, Host& host, frmDiviRef& screen) {
  if (!session.settings.findMsgOff && gMsgBox(host, "検索を開始します.", kYesNo | kQuestionIcon) != kYes) return true;
  try {
    ListBox found;
    for (Recordset rows = session.gDB->openRecordset(divisionRefSql(screen, session.gCurrentSystemName)); !rows.eof();
         rows.moveNext())
      found.add(std::string(rows.text(0)));
    screen.lstDivName = std::move(found);
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "frmDiviRef.CmdFind", error);
    return true;
  }
}

void CmdMake_Click(Windows& windows) {
  if (windows.show) windows.show("frmDivision");
}

bool cmdOK_Click(Host& host, frmDiviRef& screen) {
  if (screen.lstDivName.text().empty() && gMsgBox(host, joinLines({"内容が選択されていません.", "再度選択しますか?"}),
                                                  kYesNo | kQuestionIcon | kKeepsOnYes, "確認?") == kYes)
    return true;
  screen.chosen = screen.lstDivName.text();
  screen.unloaded = true;
  return false;
}

void cmdCancel_Click(frmDiviRef& screen) {
  screen.chosen.clear();
  screen.unloaded = true;
}

}  // namespace quillmarden
