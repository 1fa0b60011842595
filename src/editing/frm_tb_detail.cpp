#include "editing/frm_tb_detail.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/validation.h"
#include "repository/rights.h"

namespace quillmarden {

namespace {

bool checkGrid(Session& session, Host& host, frmTBDetail& screen) {
  if (screen.mode == DetailMode::Prj) return pChkPrjDetails(session, host, screen);
  if (screen.mode == DetailMode::Member) return pChkMemberDetails(session, host, screen);
  if (screen.lblBunrui.caption == "VIEW") return pChkViewDetails(session, host, screen);
  return pChkTableDetails(session, host, screen);
}

/// Tells of a save that would take most rows away. True when it is not to go on.
bool keepsRows(Host& host, const frmTBDetail& screen) {
  std::set<long> kept;
  for (int row = 1; row <= screen.Spread.maxRows(); ++row)
    if (isKept(screen, row)) kept.insert(screen.Spread.rowTag(row));
  const auto all = static_cast<long>(screen.loaded.rows.size());
  const auto gone = std::count_if(screen.loaded.rows.begin(), screen.loaded.rows.end(),
                                  [&](const auto& row) { return !kept.contains(row.first); });
  if (gone * 2 <= all || screen.leave.removal) return false;
  const std::string text = fmt::format("{}件の項目のうち、{}件が削除されます.", all, gone);
  if (screen.leave.asks)
    return gMsgBox(host, text + "\n削除しますか?", kYesNo | kWarningIcon | kDefaultSecond, "削除確認") != kYes;
  gMsgBox(host, text + "\n更新していません.", kOkOnly | kStopIcon, "削除確認");
  return true;
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
  if (!screen.CmdUpDate.enabled && screen.whyReadOnly.empty()) return true;
  if (refused(host, mayChangeTable(session, screen.lblID.caption, TableChange::kFields)) || !screen.CmdUpDate.enabled)
    return true;
  if (checkGrid(session, host, screen) || keepsRows(host, screen)) return true;
  if (gMsgBox(host, "登録内容を更新します.", kYesNo | kQuestionIcon, "確認") != kYes) return true;
  const bool failed =
      screen.mode == DetailMode::Prj ? pPutPrjDetails(session, host, screen) : pPutTableDetails(session, host, screen);
  return failed || pGet_TableID2TableDetails(session, host, screen, screen.lblID.caption);
}

}  // namespace quillmarden
