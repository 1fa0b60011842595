#include <algorithm>

#include "common/message.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_list.h"
#include "engine/sql_text.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

/// A selected row: what a message calls it, and the ID that statements take.
struct ChosenRow {
  std::string name;
  std::string id;
};

std::vector<ChosenRow> chosenRows(const frmTBList& screen) {
  std::vector<ChosenRow> rows;
  for (int row = 0; row < screen.LstTable.count(); ++row) {
    const auto place = static_cast<std::size_t>(row);
    const std::string& text = screen.LstTable.rows[place];
    if (screen.LstTable.selected[place] && isNumeric(tableListId(text)))
      rows.push_back({std::string(tableListName(text)), std::string(tableListId(text))});
  }
  return rows;
}

/// Tells why one of the rows may not be changed, the first of them; none is changed then.
bool refusedAny(Session& session, Host& host, const std::vector<ChosenRow>& rows, TableChange change) {
  return std::any_of(rows.begin(), rows.end(),
                     [&](const ChosenRow& row) { return refused(host, mayChangeTable(session, row.id, change)); });
}

/// Runs the statement for each row; all of them or none. The text of the fault, "" for none.
std::string updateRows(Session& session, Host& host, const std::vector<ChosenRow>& rows, const std::string& set) {
  try {
    inTransaction(*session.gDB, [&] {
      for (const ChosenRow& row : rows)
        session.gDB->execute("UpDate MAS_TABLEINFO  Set " + set + " Where ID = " + row.id);
    });
    return "";
  } catch (const EngineError& error) {
    session.log.putError(host, set, error.number(), error.what());
    return error.what();
  }
}

/// The audit columns that the table-level flags leave behind. The one who sets a flag becomes the row's author.
std::string stamp(const Session& session, const Host& host) {
  return ", 更新年月日 = #" + formatDateTime(host.clock.now(), kSecondForm) +
         "#, 作成者 = " + sqlText(session.gLoginUser) + ", COMPNAME = " + sqlText(host.machine.computerName) + " ";
}

/// Asks, writes, and shows the list anew.
void setFlag(Session& session, Host& host, frmTBList& screen, std::string_view question, const std::string& set,
             TableChange change = TableChange::kDefinition) {
  const std::vector<ChosenRow> rows = chosenRows(screen);
  if (rows.empty() || refusedAny(session, host, rows, change) ||
      gMsgBox(host, question, kYesNo | kQuestionIcon, "確認") != kYes)
    return;
  const std::string fault = updateRows(session, host, rows, set + stamp(session, host));
  if (!fault.empty()) gMsgBox(host, joinLines({"エラーです.", "  " + fault}), kOkOnly, "こまった");
  pGetTableList(session, host, screen);
}

}  // namespace

void mnuDelete_Click(Session& session, Host& host, frmTBList& screen) {
  const std::vector<ChosenRow> rows = chosenRows(screen);
  if (rows.empty() || refusedAny(session, host, rows, TableChange::kDefinition)) return;
  std::string question = "選択された";
  for (const ChosenRow& row : rows) question.append("\n  [").append(row.name).append("]");
  question += "\nを削除します.";
  if (gMsgBox(host, question, kYesNo | kQuestionIcon | kDefaultSecond, "削除確認") != kYes) return;
  const std::string fault = updateRows(session, host, rows, "削除フラグ = 1");
  if (!fault.empty()) {
    gMsgBox(host, joinLines({"削除エラーが発生しました.", fault, "のエラーが発生しました."}), kOkOnly | kStopIcon,
            "エラー");
  }
  pGetTableList(session, host, screen);
}

void mnutbEdit_Click(Session& session, Host& host, frmTBList& screen, bool editable) {
  setFlag(session, host, screen, editable ? "編集可にします." : "編集不可にします.",
          editable ? "修正許可 = True" : "修正許可 = False", TableChange::kLock);
}

void mnuUpDateAllSystem_Click(Session& session, Host& host, frmTBList& screen) {
  setFlag(session, host, screen, joinLines({"全システム共通とします.", "解除する場合は、[変更]で行ってください."}),
          "全システム共通 = True");
}

void mnuCheckPoint_Click(Session& session, Host& host, frmTBList& screen) {
  setFlag(session, host, screen, "このテーブルに対してチェックポイントを設定します.",
          "チェックポイント日付 = #" + formatDateTime(host.clock.now(), kSecondForm) + "#");
}

std::string mnuUpDate_Click(Host& host, frmTBList& screen) {
  const std::string_view row = screen.LstTable.text();
  if (row.empty()) {
    gMsgBox(host, "変更対象のテーブル名を選択して下さい.", kOkOnly, "確認");
    return "";
  }
  const std::string_view id = tableListId(row);
  if (!isNumeric(id)) {
    gMsgBox(host, "選択された行が有効な行ではないようです.", kOkOnly, "確認");
    return "";
  }
  return std::string(id);
}

}  // namespace quillmarden
