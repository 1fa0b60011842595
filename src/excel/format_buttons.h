#pragma once

#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

struct frmSystemInf;

// The buttons of the System screen that work on the Format file of TxtLayoutFile. Without a name both say so.

/// Opens the Format file for editing; a default one is written where there is none.
void CmdLayoutInfo_Click(Session& session, Host& host, const frmSystemInf& screen);
/// Tells what is wrong with the Format file, or that nothing is. The template itself must be there.
void CmdLayoutCheck_Click(Session& session, Host& host, const frmSystemInf& screen);

}  // namespace quillmarden
