#pragma once

#include <vector>

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

/// The places of the named tables in LstTable, in the order of their naming, each once. Empty after a message, and when
/// no table was named.
std::vector<int> chosenRows(Run& run, const frmTBList& list);

/// The places of all rows of LstTable.
std::vector<int> allRows(const frmTBList& list);
/// The list screen with the tables that the options name in LstTableSel; none means all. False after a message.
bool chooseTables(Run& run, frmTBList& list);
/// Prints the path of what a routine has made. A routine that gave "" has told why, or was answered "no".
ExitStatus printFile(Run& run, const std::string& path);

/// Writes the script of the chosen tables and prints its path. A run with lost characters, one that was stopped, and
/// one that wrote nothing for its only table fail after a message.
ExitStatus generate(Run& run, const ScriptMenus& menus);

}  // namespace quillmarden
