#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/command.h"
#include "excel/book_run.h"
#include "sqlgen/frame.h"

namespace quillmarden {

/// One menu of the list that writes a script.
using ScriptMenu = std::function<RunResult(Session& session, Host& host, frmTBList& list, frmTBDetail& detail,
                                           const RunTarget& target)>;

/// How a choice of tables maps to menus.
struct ScriptMenus {
  ScriptMenu current;    ///< of the current row
  ScriptMenu selection;  ///< of the rows chosen in LstTableSel
  ScriptMenu all;        ///< of all rows; empty where the selection run over all rows does it
};

/// What a script is made of, and where it goes.
struct ScriptChoice {
  std::string system;
  std::vector<std::string> tables;
  std::string output;  ///< "" for the file in the System's folder
  bool runnable = false;
};
void addScriptChoice(OptionSet& set, ScriptChoice& choice);

/// The places of the named tables in LstTable, in the order of their naming, each once. Empty after a message, and when
/// no table was named.
std::vector<int> chosenRows(Run& run, const frmTBList& list, const std::vector<std::string>& tables);

/// The places of all rows of LstTable.
std::vector<int> allRows(const frmTBList& list);
/// The list screen of a System with the named tables in LstTableSel; none means all. False after a message.
bool chooseTables(Run& run, const std::string& system, const std::vector<std::string>& tables, frmTBList& list);
/// Prints the path of what a routine has made. A routine that gave "" has told why, or was answered "no"; what a
/// stopped one has left is told.
ExitStatus printFile(Run& run, const BookRun& books, const std::string& path);

/// Writes the script of the chosen tables and prints its path. A run with lost characters, one that was stopped, and
/// one that wrote nothing for its only table fail after a message.
ExitStatus generate(Run& run, const ScriptChoice& choice, const ScriptMenus& menus);

}  // namespace quillmarden
