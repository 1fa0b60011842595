#pragma once

#include "editing/frm_tb_detail.h"
#include "editing/grid_operations.h"

namespace quillmarden {

/// Makes the field names of the selected rows the table's partition list. True when nothing was written.
bool mnuPartition_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection);
/// The same for these fields by their 項目名, in this order.
bool setPartition(Session& session, Host& host, frmTBDetail& screen, const std::vector<std::string>& fields);
/// Takes the partition list away after a question. True when nothing was written.
bool cmdPartition_Click(Session& session, Host& host, frmTBDetail& screen);

}  // namespace quillmarden
