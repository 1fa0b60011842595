#pragma once

#include "cli/run.h"
#include "sqlgen/frame.h"

namespace quillmarden {

/// One menu of the list that writes a script.
using ScriptMenu = RunResult (*)(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, int index,
                                 const RunTarget& target);

/// How the options' choice of tables maps to menus.
struct ScriptMenus {
  ScriptMenu current;  ///< of the current row
  int currentIndex;
  ScriptMenu selection;  ///< of the rows chosen in LstTableSel
  int selectionIndex;
  ScriptMenu all;  ///< of all rows; nullptr where the selection run over all rows does it
  int allIndex;
};

/// Writes the script of the chosen tables and prints its path. A run with lost characters, one that was stopped, and
/// one that wrote nothing for its only table fail after a message.
ExitStatus generate(Run& run, const ScriptMenus& menus);

}  // namespace quillmarden
