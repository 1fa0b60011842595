#pragma once

#include <string_view>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

/// Loads the table anew, after the question about unsaved changes. True when nothing was loaded.
bool CmdReGet_Click(Session& session, Host& host, frmTBDetail& screen);

/// Shows the table that stands `step` rows below the current one in the list (-1 above), after the question about
/// unsaved changes. True when nothing was loaded.
bool showNeighbour(Session& session, Host& host, frmTBList& list, frmTBDetail& screen, int step);

/// The header of a table was saved: a screen that shows it takes the new one, and keeps rows that wait to be saved.
void tableInfoSaved(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId);

/// Opens the folder of the Access file that the current System is connected to; a missing file is told.
void cmdOpenMDBFolder_Click(Session& session, Host& host);

/// Starts the SQL tool for the current System; says nothing where it or the connection is missing.
void lblColRow_Click(Host& host, const frmTBList& list);

}  // namespace quillmarden
