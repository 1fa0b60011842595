#include "editing/deleted_tables.h"

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_info.h"
#include "repository/change_rows.h"
#include "repository/rights.h"

namespace quillmarden {

std::vector<DeletedTable> deletedTables(Database& database, std::string_view system) {
  std::vector<DeletedTable> tables;
  for (Recordset rows =
           database.openRecordset("SELECT ID, テーブル名, 日本語名, 更新年月日, 更新者 FROM MAS_TABLEINFO "
                                  "WHERE 削除フラグ <> 0 AND システム名 = paraSystem ORDER BY テーブル名, ID DESC",
                                  {{"paraSystem", std::string(system)}});
       !rows.eof(); rows.moveNext()) {
    tables.push_back({std::string(rows.text(0)), std::string(trim(rows.text(1))), std::string(trim(rows.text(2))),
                      std::string(rows.text(3)), std::string(rows.text(4))});
  }
  return tables;
}

Outcome restoreTable(Session& session, Host& host, std::string_view tableId) {
  if (refused(host, mayChangeTable(session, tableId, TableChange::kRestore))) return Outcome::Refused;
  const auto id = static_cast<std::int64_t>(gVal(tableId));
  return changeRows(session, host, "restoreTable", [&]() -> Outcome {
    const Recordset row = session.gDB->openRecordset("SELECT システム名, 日本語名 FROM MAS_TABLEINFO WHERE ID = paraId",
                                                     {{"paraId", id}});
    if (row.eof()) throw EngineError(engine_error::kNoCurrentRecord, "ID " + std::to_string(id));
    const TableNames names = storedNames(*session.gDB, std::to_string(id));
    if (const std::string fault = tableNameInUse(session, row.text(0), std::to_string(id), names); !fault.empty()) {
      gMsgBox(host, fault, kOkOnly | kWarningIcon, "入力確認");
      return Outcome::Refused;
    }
    const std::string question =
        joinLines({"削除されたテーブルを元に戻します.", "  [" + std::string(trim(row.text(1))) + "]"});
    if (gMsgBox(host, question, kYesNo | kQuestionIcon) != kYes) return Outcome::Refused;
    session.gDB->execute(
        "UPDATE MAS_TABLEINFO SET 削除フラグ = 0, 更新年月日 = paraNow, 更新者 = paraUser, COMPNAME = paraComputer "
        "WHERE ID = paraId",
        {{"paraNow", formatDateTime(host.clock.now(), kSecondForm)},
         {"paraUser", session.gLoginUser},
         {"paraComputer", host.machine.computerName},
         {"paraId", id}});
    return Outcome::Done;
  });
}

}  // namespace quillmarden
