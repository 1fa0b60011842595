#include "sqlgen/frame.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/replace_file.h"
#include "common/text.h"
#include "repository/output_file.h"
#include "sqlgen/clauses.h"
#include "sqlgen/frame_run.h"
#include "sqlgen/generators.h"

namespace quillmarden {

namespace {

using Generator = void (*)(const Generation&, ScriptText&);

/// The routine of a kind; nullptr for a kind that no script can be made for.
Generator generatorOf(std::string_view fileType) {
  const std::optional<ScriptKind> kind = scriptKindOf(fileType);
  if (!kind) return nullptr;
  switch (*kind) {
    case ScriptKind::Oracle:
      return pCreateCurrentTable2Sql4Oracle;
    case ScriptKind::SqlServer:
      return pCreateCurrentTable2Sql4SQLServer;
    case ScriptKind::Teradata:
      return pCreateCurrentTable2Sql4Tera;
    case ScriptKind::PostgreSql:
      return pCreateCurrentTable2Sql4PostgreSQL;
    case ScriptKind::MySql:
      break;
  }
  return pCreateCurrentTable2Sql4MySQL;
}

/// A group or count line of the list.
bool isNoTable(std::string_view rowText) {
  return rowText.starts_with("<") || rowText.starts_with("[") || isNumeric(rowText);
}

bool ask(Host& host, std::string_view question) { return gMsgBox(host, question, kYesNo | kQuestionIcon) == kYes; }

void putFileHead(const ScriptRun& run, ScriptText& script) {
  constexpr std::string_view kRuler = "-- *********************************** --";
  script.print(kRuler);
  script.print("-- システム名 : \t", oneLine(run.session.gCurrentSystemName));
  // Other tools end lines with LF alone; none of them may leave the comment.
  std::string_view rest = run.system.description;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    script.print("-- 概 要      : \t", trim(rest.substr(0, end)));
    rest.remove_prefix(end);
    rest.remove_prefix(rest.starts_with("\r\n") ? 2 : rest.empty() ? 0 : 1);
  }
  script.print("-- \tCreate Date:", formatDateTime(run.host.clock.now(), "yyyy/mm/dd hh:nn"));
  script.print(kRuler);
  script.print();
}

}  // namespace

Generation generationOf(ScriptRun& run) {
  return {run.session,
          run.host,
          run.detail,
          run.system,
          run.checkLists,
          run.menu.optionSwitch,
          run.list.mnuCreateSQLBack.checked};
}

void writeScript(ScriptRun& run, ScriptFile& file, const std::string& table, const ScriptText& script) {
  std::u32string lost = file.write(script.text);
  if (!lost.empty()) run.result.lost.emplace_back(table, std::move(lost));
}

namespace {

/// Writes the table on show in one piece, so that a full disk leaves whole tables.
void putTable(ScriptRun& run, Generator generator, ScriptFile& file) {
  const std::string& table = run.detail.txtTableNameENG.text;
  const Generation generation = generationOf(run);
  ScriptText script;
  try {
    generator(generation, script);
  } catch (const EngineError&) {
    writeScript(run, file, table, script);
    throw;
  }
  writeScript(run, file, table, script);
  ++run.result.tables;
}

/// Selects the row, shows its table and writes its statements, or keeps them for the end of a run in the runnable form.
void putRow(ScriptRun& run, int row, bool alone, ScriptFile& file, const std::string& fileHead) {
  const auto place = static_cast<std::size_t>(row);
  run.rows.listIndex = row;
  run.rows.selected[place] = true;
  const std::string_view text = trim(run.rows.rows[place]);
  const std::string id(tableListId(text));
  if (isNoTable(text) || id.empty()) return;
  if (waitsForStamp(run.history, id)) writeSqlHistory(run.session, run.history);
  if (pGet_TableID2TableDetails(run.session, run.host, run.detail, id)) {
    run.result.failed = true;
    run.whole = false;
    return;
  }

  run.host.dialogs.yield();
  if (const auto kind = scriptKindOf(run.detail.lblFileType.caption); kind && isRunnable(run)) {
    if (!run.waitingHead.text.empty()) putWaitingHead(run, kind, file);
    collectTable(run, *kind, fileHead);
    run.rows.selected[place] = false;
    return;
  }
  if (run.menu.views || run.detail.lblBunrui.caption == "VIEW") {
    putWaitingHead(run, std::nullopt, file);
    putTable(run, pCreateCurrentTable2SqlView, file);
    return;
  }
  if (const Generator generator = generatorOf(run.detail.lblFileType.caption)) {
    putTable(run, generator, file);
    pPutSqlHistory(run.session, run.history, run.detail, run.host.clock.now());
  } else if (alone) {
    gMsgBox(run.host, "このデータベースには対応していません.", kOkOnly | kStopIcon);
    run.result.failed = true;
  }
  run.rows.selected[place] = false;
}

/// Runs a part of the run; an error in it ends with the stamps of the tables that are in the file, and the message.
template <typename Body>
void guarded(ScriptRun& run, Body&& body) {
  try {
    body();
  } catch (const std::exception& error) {
    try {
      writeSqlHistory(run.session, run.history);
    } catch (const EngineError& second) {
      run.session.log.putError(run.host, "pPutSqlHistory", second.number(), second.what());
    }
    const auto* fault = dynamic_cast<const EngineError*>(&error);
    std::string text = joinLines({"出力エラーがありました.", std::string(" ") + error.what()});
    // What the Repository's file itself stands in the way of is no matter of the output file.
    if (!fault || !isFileFault(fault->number())) text += "\n出力先ファイルを開いているようです.";
    gMsgBox(run.host, text);
    run.list.errorMark = true;
    run.result.failed = true;
    run.whole = false;
  }
}

/// Rows of the list from first to last into the file, after its head.
void putRows(ScriptRun& run, int first, int last) {
  if (!run.file) run.file.emplace(run.result.file, run.encoding);
  ScriptFile& file = *run.file;
  ScriptText head;
  if (run.menu.head) putFileHead(run, head);
  // In the runnable form the drops of all tables come first: a selection's further heads stand with their tables.
  const bool headWaits = isRunnable(run) && !run.runnable.empty();
  if (run.menu.head && !isRunnable(run)) writeScript(run, file, "", head);
  if (run.menu.head && isRunnable(run) && !headWaits) run.waitingHead.text += head.text;
  for (int row = std::max(first, 0); row <= last && row < run.rows.count(); ++row) {
    if (run.host.dialogs.stopRequested()) {
      run.result.stopped = true;
      break;
    }
    putRow(run, row, first == last, file, headWaits ? head.text : std::string());
    run.host.dialogs.progress(++run.done, run.total);
    if (run.list.errorMark) break;
  }
}

/// Says that the run did not come to its end, and where what it has written stands.
void tellPartial(ScriptRun& run, bool opened) {
  std::error_code ignored;
  const std::filesystem::path partial = partialFile(run.result.file);
  // One that this run never had is another run's.
  const bool left = opened && std::filesystem::exists(partial, ignored);
  run.result.file = left ? partial : std::filesystem::path();
  std::string text = run.result.stopped ? "中断しました. " : "";
  text += fmt::format("{}件まで出力しています.", run.result.tables);
  if (left) text += "\n 途中までのファイル : " + partial.string();
  if (left || run.result.stopped) gMsgBox(run.host, text);
}

/// The end of a run: what it has collected in the runnable form, then the file takes its place. One that does not hold
/// all that was asked for keeps its partial name.
void finish(ScriptRun& run) {
  bool placed = false;
  const bool opened = run.file.has_value();
  if (opened) {
    guarded(run, [&] {
      if (!run.runnable.empty() || !run.waitingHead.text.empty()) {
        putWaitingHead(run, std::nullopt, *run.file);
        putRunnable(run, *run.file);
      }
      if (run.whole && !run.result.stopped) {
        run.file->commit();
        placed = true;
      }
      writeSqlHistory(run.session, run.history);
    });
    run.file.reset();
  }
  if (!placed) tellPartial(run, opened);
}

/// The mark of a run under way: moving through the list asks nothing and loads no more than generators read.
void setUnderWay(ScriptRun& run, bool underWay) {
  run.list.running = underWay;
  run.detail.batch = underWay;
  if (underWay) {
    run.list.errorMark = false;
    run.rows.selected.resize(run.rows.rows.size());
  }
}

/// Shows the list's current row on the detail screen again, as a person sees it.
void showCurrentRow(ScriptRun& run) {
  const std::string id(tableListId(run.rows.text()));
  if (!id.empty()) pGet_TableID2TableDetails(run.session, run.host, run.detail, id);
}

/// The script's place: the one asked for, or one in the System's folder, which is then made. Needs the System record.
std::filesystem::path scriptFile(const ScriptRun& run, std::string_view prefix, std::string_view name) {
  if (run.target.file) return *run.target.file;
  // A folder that cannot be made shows itself when the file is opened.
  gMakeFolder(run.system.tempWorkFolder);
  return toPath(gSafePathJoin(run.system.tempWorkFolder, std::string(prefix).append(name).append(".txt")));
}

/// Whether the script's place is none for an output, which is then told.
bool isRefused(ScriptRun& run) {
  const std::string fault = outputFault(run.session, run.host, run.result.file);
  if (fault.empty()) {
    noteOutput(run.session, run.host, run.result.file);
    noteOutput(run.session, run.host, partialFile(run.result.file));
    return false;
  }
  gMsgBox(run.host, joinLines({"出力エラーがありました.", fault}), kStopIcon);
  run.result = {};
  run.result.failed = true;
  run.list.errorMark = true;
  return true;
}

std::string_view filePrefix(const ScriptRunMenu& menu) { return menu.views ? "SqlView_" : "Sql_"; }

/// Whether the run may begin; a refusal is told.
bool mayBegin(Host& host, const frmTBDetail& detail, RunResult& result) {
  if (!detail.changed) return true;
  gMsgBox(host, "詳細画面が編集中です.");
  result.failed = true;
  return false;
}

/// A run over the current row or all rows of LstTable.
RunResult runMenu(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, const RunTarget& target,
                  const ScriptRunMenu& menu) {
  ScriptRun run{session, host, list, detail, list.LstTable, menu, target};
  run.encoding = encodingOf(run);
  if (!mayBegin(host, detail, run.result) || !ask(host, menu.question)) return run.result;
  setUnderWay(run, true);
  const int remembered = run.rows.listIndex;
  const int first = menu.allRows ? 0 : remembered;
  const int last = menu.allRows ? run.rows.count() - 1 : remembered;
  run.total = last - first + 1;

  if (gMDB_GetSystemInfo(session, host, session.gCurrentSystemName, run.system)) {
    run.result.file =
        scriptFile(run, filePrefix(menu), menu.allRows ? session.gCurrentSystemName : tableListName(run.rows.text()));
    if (!isRefused(run)) {
      guarded(run, [&] { putRows(run, first, last); });
      finish(run);
    }
  } else {
    run.result.failed = true;
  }

  run.rows.listIndex = remembered;
  if (!list.errorMark && ask(host, "作成結果を表示しますか?") && !run.result.file.empty())
    host.opener.openFile(run.result.file);
  setUnderWay(run, false);
  showCurrentRow(run);
  return run.result;
}

/// A run over the selected rows of LstTableSel, into the System's file.
RunResult runSelection(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, const RunTarget& target,
                       const ScriptRunMenu& menu) {
  ScriptRun run{session, host, list, detail, list.LstTableSel, menu, target};
  run.encoding = encodingOf(run);
  run.total = std::count(run.rows.selected.begin(), run.rows.selected.end(), true);
  if (run.total == 0) {
    gMsgBox(host, "選択されていないようです.", kOkOnly, "選択してね!");
    run.result.failed = true;
    return run.result;
  }
  if (!mayBegin(host, detail, run.result) || !ask(host, menu.question)) return run.result;
  if (!gMDB_GetSystemInfo(session, host, session.gCurrentSystemName, run.system)) {
    gMsgBox(host, "システム情報の取得に失敗しました.", kOkOnly, "しっぱい");
    run.result.failed = true;
    return run.result;
  }
  setUnderWay(run, true);
  run.result.file = scriptFile(run, filePrefix(menu), session.gCurrentSystemName);
  const bool refused = isRefused(run);
  for (int row = 0; !refused && row < run.rows.count(); ++row) {
    const auto place = static_cast<std::size_t>(row);
    if (!run.rows.selected[place]) continue;
    if (host.dialogs.stopRequested()) {
      run.result.stopped = true;
      break;
    }
    guarded(run, [&] { putRows(run, row, row); });
    if (run.result.stopped) break;
    run.rows.selected[place] = false;
    if (menu.views && list.errorMark) break;
  }
  if (!refused) finish(run);

  if (!run.result.file.empty() && ask(host, "出力結果を表示しますか?")) host.opener.openFile(run.result.file);
  setUnderWay(run, false);
  showCurrentRow(run);
  return run.result;
}

/// Turns a check over, and keeps it in the settings of this run and the next ones.
void toggle(Session& session, MenuItem& item, bool& setting, std::string_view key) {
  setting = item.checked = !item.checked;
  if (session.ini) putAppSetting(*session.ini, key, setting ? "1" : "0");
}

}  // namespace

RunResult mnuCreateSql_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, SqlRows rows,
                             SqlClauses clauses, const RunTarget& target) {
  ScriptRunMenu menu;
  menu.optionSwitch = clauses == SqlClauses::AsOptions;
  menu.allRows = rows == SqlRows::All;
  return runMenu(session, host, list, detail, target, menu);
}

RunResult mnuCreateSQLSel_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail, SqlClauses clauses,
                                const RunTarget& target) {
  ScriptRunMenu menu;
  menu.optionSwitch = clauses == SqlClauses::AsOptions;
  return runSelection(session, host, list, detail, target, menu);
}

RunResult mnuCreateView_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail,
                              const RunTarget& target) {
  ScriptRunMenu menu;
  menu.views = true;
  return runMenu(session, host, list, detail, target, menu);
}

RunResult mnuCreateViewSel_Click(Session& session, Host& host, frmTBList& list, frmTBDetail& detail,
                                 const RunTarget& target) {
  ScriptRunMenu menu;
  menu.views = true;
  menu.head = false;
  menu.question = "VIEW.Sql文を作成します.";
  return runSelection(session, host, list, detail, target, menu);
}

void mnuCreateSQLBack_Click(Session& session, frmTBList& list) {
  toggle(session, list.mnuCreateSQLBack, session.settings.createSql2BackUpTable, "CreateSql2BackUpTable");
}

void mnuCreateSQLRunnable_Click(Session& session, frmTBList& list) {
  toggle(session, list.mnuCreateSQLRunnable, session.settings.createSql2Runnable, "CreateSql2Runnable");
}

}  // namespace quillmarden
