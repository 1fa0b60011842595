#pragma once

#include <string>
#include <vector>

#include "sqlgen/frame.h"
#include "sqlgen/generation.h"
#include "sqlgen/runnable/script.h"
#include "sqlgen/sql_history.h"

namespace quillmarden {

/// What a menu entry asks for.
struct ScriptRunMenu {
  bool views = false;         ///< VIEW statements for every row, whatever its kind
  bool optionSwitch = false;  ///< clauses follow their options
  bool allRows = false;
  bool head = true;
  std::string_view question = "Sql文を作成します.";
};

/// One run and what all its rows share.
struct ScriptRun {
  Session& session;
  Host& host;
  frmTBList& list;
  frmTBDetail& detail;
  ListBox& rows;  ///< the list that the run goes through
  const ScriptRunMenu& menu;
  const RunTarget& target;
  TextEncoding encoding = TextEncoding::Cp932;
  SystemRecord system{};
  CheckListCache checkLists{};
  SqlHistory history{};
  std::vector<RunnableScript> runnable{};  ///< what a run in the runnable form has collected, one a kind
  ScriptText waitingHead{};                ///< of such a run: the first table's kind decides what stands before it
  std::optional<ScriptFile> file{};        ///< opened by the first row
  bool whole = true;                       ///< all that was asked for is in the file
  RunResult result{};
  long done = 0;
  long total = 0;
};

/// What the generators read of the table on show.
Generation generationOf(ScriptRun& run);
/// Writes a table's text through to the file, and notes the characters that it cannot hold.
void writeScript(ScriptRun& run, ScriptFile& file, const std::string& table, const ScriptText& script);

// The runnable form stands at the end of a run: its order is one of all tables together.

/// Whether the run collects its tables for the runnable form.
bool isRunnable(const ScriptRun& run);
/// The encoding that was asked for, or the one of the run's form.
TextEncoding encodingOf(const ScriptRun& run);
/// Writes the head that has waited; without a kind when no table has come.
void putWaitingHead(ScriptRun& run, std::optional<ScriptKind> kind, ScriptFile& file);
/// Keeps the table on show for the end of the run, with the text that stands in front of it.
void collectTable(ScriptRun& run, ScriptKind kind, const std::string& fileHead);
/// Writes what the run has collected, and stamps it.
void putRunnable(ScriptRun& run, ScriptFile& file);

}  // namespace quillmarden
