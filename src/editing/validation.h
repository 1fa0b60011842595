#pragma once

#include "editing/frm_tb_detail.h"

namespace quillmarden {

// The checks before a save. Each returns false when the save may go on; a fault paints its cells and shows one
// box with all texts.
bool pChkTableDetails(Session& session, Host& host, frmTBDetail& screen);
bool pChkViewDetails(Session& session, Host& host, frmTBDetail& screen);
bool pChkMemberDetails(Session& session, Host& host, frmTBDetail& screen);
bool pChkPrjDetails(Session& session, Host& host, frmTBDetail& screen);

/// A field name that no script can hold: one with "," or "'".
bool pChkFieldChar(std::string_view name);

}  // namespace quillmarden
