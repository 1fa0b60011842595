#include "editing/frm_tb_detail.h"

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/validation.h"

namespace quillmarden {

namespace {

bool checkGrid(Session& session, Host& host, frmTBDetail& screen) {
  if (screen.mode == DetailMode::Prj) return pChkPrjDetails(session, host, screen);
  if (screen.mode == DetailMode::Member) return pChkMemberDetails(session, host, screen);
  if (screen.lblBunrui.caption == "VIEW") return pChkViewDetails(session, host, screen);
  return pChkTableDetails(session, host, screen);
}

}  // namespace

bool isKey(std::string_view cell) { return cell == kCheckMark || gVal(cell) == -1; }

std::string threeDigits(int number) {
  std::string digits = std::to_string(number);
  return digits.size() < 3 ? std::string(3 - digits.size(), '0') + digits : digits;
}

bool hasColumn(Database& database, std::string_view table, std::string_view column) {
  const TableDef* def = database.tableDef(table);
  return def != nullptr && def->field(column) != nullptr;
}

std::string_view prjColumn(int number) {
  switch (number) {
    case field_col::kWholeDigits:
      return "開始日";
    case field_col::kFractionDigits:
      return "完了日";
    case field_col::kDbCheck:
      return "参照仕様書ファイル";
    default:
      return "";
  }
}

std::string selectColumns(Database& database, std::string_view table, std::string_view alias,
                          std::span<const std::string_view> columns) {
  const TableDef* def = database.tableDef(table);
  std::string list;
  for (std::string_view column : columns) {
    list.append(list.empty() ? " SELECT " : ", ");
    if (def != nullptr && def->field(column) != nullptr) {
      list.append(alias).append(".[").append(column).append("]");
    } else {
      list.append("Null AS [").append(column).append("]");
    }
  }
  return list.append(" ");
}

void gClearForm(frmTBDetail& screen) {
  const bool batch = screen.batch;
  screen = frmTBDetail{};
  screen.batch = batch;
}

void pPutWaitMsg(Host& host, frmTBDetail& screen, bool show, std::string_view text) {
  screen.lblMsg.visible = show;
  screen.lblMsg.caption = show ? std::string(text) : "";
  host.dialogs.waitText(screen.lblMsg.caption);
}

bool CmdUpDate_Click(Session& session, Host& host, frmTBDetail& screen) {
  if (!screen.CmdUpDate.enabled) return true;
  if (checkGrid(session, host, screen)) return true;
  if (gMsgBox(host, "登録内容を更新します.", kYesNo | kQuestionIcon, "確認") != kYes) return true;
  const bool failed =
      screen.mode == DetailMode::Prj ? pPutPrjDetails(session, host, screen) : pPutTableDetails(session, host, screen);
  return failed || pGet_TableID2TableDetails(session, host, screen, screen.lblID.caption);
}

}  // namespace quillmarden
