#include "editing/frm_partition.h"

#include "common/message.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "engine/sql_text.h"
#include "repository/rights.h"

namespace quillmarden {

namespace {

std::string joinedNames(const frmTBDetail& screen, const std::vector<int>& rows) {
  std::string list;
  for (int row : rows) {
    const std::string_view name = trim(screen.Spread.text(field_col::kFieldName, row));
    if (!name.empty()) list.append(list.empty() ? "" : ",").append(name);
  }
  return list;
}

/// True on failure, after its message.
bool putPartition(Session& session, Host& host, frmTBDetail& screen, const std::string& list) {
  try {
    session.gDB->execute("UPDATE MAS_TABLEINFO AS t  SET  t.partition_field = " + sqlText(list) +
                         "  WHERE t.ID= " + screen.lblID.caption);
  } catch (const EngineError& error) {
    tellError(session, host, "mnuPartition", error);
    return true;
  }
  screen.txtPartitionRead.text = list;
  screen.cmdPartition.enabled = !list.empty();
  return false;
}

/// The grid's row of a field by its 項目名, 0 for none.
int rowOfField(const frmTBDetail& screen, std::string_view name) {
  for (int row = 1; row <= screen.Spread.maxRows(); ++row)
    if (equalsNoCase(trim(screen.Spread.text(field_col::kFieldName, row)), trim(name))) return row;
  return 0;
}

/// A list that takes the place of another one is asked about.
bool askAndPut(Session& session, Host& host, frmTBDetail& screen, const std::string& list) {
  if (list.empty()) return true;
  const std::string& former = screen.txtPartitionRead.text;
  if (!former.empty()) {
    const std::string text =
        joinLines({"既にPartitionの設定がされています.", " " + former, "   ↓", " " + list, "変更しますか?"});
    if (gMsgBox(host, text, kYesNo | kQuestionIcon | kDefaultSecond, "確認") != kYes) return true;
  }
  if (putPartition(session, host, screen, list)) return true;
  gMsgBox(host, joinLines({"Partitionを設定しました.", " " + list, "再読み込みすることで、背景色を設定します."}));
  return false;
}

}  // namespace

bool mnuPartition_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection) {
  if (!screen.mnuPartition.visible || refused(host, mayChangeTable(session, screen.lblID.caption))) return true;
  if (!editable(screen)) return true;
  if (selection.size() > 1) {
    gMsgBox(host, "複数の選択はできません.");
    return true;
  }
  return askAndPut(session, host, screen, joinedNames(screen, selectedRows(screen, selection)));
}

bool setPartition(Session& session, Host& host, frmTBDetail& screen, const std::vector<std::string>& fields) {
  if (!screen.mnuPartition.visible) {
    gMsgBox(host, joinLines({"このデータベースは", "対応していません."}), kOkOnly | kStopIcon);
    return true;
  }
  if (refused(host, mayChangeTable(session, screen.lblID.caption)) || !editable(screen)) return true;
  std::vector<int> rows;
  for (const std::string& name : fields) {
    const int row = rowOfField(screen, name);
    if (row == 0) {
      gMsgBox(host, joinLines({"指定の項目が存在しません.", " 項目名 : " + name}), kOkOnly | kStopIcon);
      return true;
    }
    rows.push_back(row);
  }
  return askAndPut(session, host, screen, joinedNames(screen, rows));
}

bool cmdPartition_Click(Session& session, Host& host, frmTBDetail& screen) {
  if (!screen.cmdPartition.enabled || refused(host, mayChangeTable(session, screen.lblID.caption))) return true;
  if (!editable(screen)) return true;
  const std::string text = joinLines({"Partitionの設定を解除します.", " " + screen.txtPartitionRead.text});
  if (gMsgBox(host, text, kYesNo | kQuestionIcon | kDefaultSecond, "確認") != kYes) return true;
  return putPartition(session, host, screen, "");
}

}  // namespace quillmarden
