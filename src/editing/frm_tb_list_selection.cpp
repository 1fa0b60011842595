#include <algorithm>

#include "common/message.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

int addToSelection(frmTBList& screen) {
  ListBox& chosen = screen.LstTableSel;
  int added = 0;
  for (int row = 0; row < screen.LstTable.count(); ++row) {
    const auto place = static_cast<std::size_t>(row);
    if (!screen.LstTable.selected[place]) continue;
    const std::string& text = screen.LstTable.rows[place];
    // A row that stands with its other name first is the same table.
    const auto known = std::find_if(chosen.rows.begin(), chosen.rows.end(),
                                    [&](const std::string& other) { return tableListId(other) == tableListId(text); });
    if (known != chosen.rows.end()) continue;
    chosen.add(text);
    ++added;
  }
  mnuSelAll_Click(screen, 0);
  return added;
}

void mnuExcelSel_Click(frmTBList& screen) {
  addToSelection(screen);
  if (screen.LstTableSel.count() > 0) screen.narrow = false;
}

void mnuExcelSelCancel_Click(frmTBList& screen) { screen.LstTableSel.clear(); }

void mnuSelAll_Click(frmTBList& screen, int index) {
  ListBox& chosen = screen.LstTableSel;
  chosen.selected.assign(chosen.rows.size(), index == 0);
}

void removeFromSelection(frmTBList& screen) {
  ListBox left;
  for (std::size_t row = 0; row < screen.LstTableSel.rows.size(); ++row)
    if (!screen.LstTableSel.selected[row]) left.add(std::move(screen.LstTableSel.rows[row]));
  screen.LstTableSel = std::move(left);
}

bool mnuSelectPut_Click(Host& host, frmTBList& screen) {
  mnuExcelSel_Click(screen);
  if (screen.LstTableSel.count() > 0) return false;
  gMsgBox(host, "選択出力する内容がありません.", kOkOnly, "ちゃんと確認して");
  return true;
}

}  // namespace quillmarden
