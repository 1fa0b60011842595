#pragma once

#include "shell/application.h"

namespace quillmarden {

// Buttons of screens that lead to another screen.

/// The palette for a grid colour of the options, by its place in optionColours().
void CmdBackColor_Click(Application& app, int which);
/// Gives the chosen colour to the options, which stand open behind the palette.
void CmdSelect_Click(Application& app);
/// Renames the System, which logs off: unsaved work is asked about first.
void cmdChange_Click(Application& app);
/// The copy of an Access System as one of SQL Server. Other kinds are refused.
void cmdConvAccessSQLServer_Click(Application& app);

}  // namespace quillmarden
