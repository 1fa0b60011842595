#pragma once

#include <array>
#include <vector>

#include "editing/frm_tb_detail.h"

namespace quillmarden {

/// "並び替え設定": sorts the rows of the field grid by up to three columns.
struct frmSpSort {
  std::array<ComboBox, 3> CmbKey;         ///< the visible columns' titles, a blank one first
  std::array<CheckBox, 3> ChkDescending;  ///< "降順"
  std::vector<int> columns;               ///< the column behind each entry; 0 for the blank one
};

void frmSpSort_Load(frmSpSort& screen, const frmTBDetail& detail);
/// Checks the keys, then sorts. Rows without content go to the end, equal rows keep their order, and numbers compare
/// as numbers. True after a fault: the screen stays open.
bool cmdOK_Click(Session& session, Host& host, frmSpSort& screen, frmTBDetail& detail);

}  // namespace quillmarden
