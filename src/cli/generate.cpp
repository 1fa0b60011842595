#include "cli/generate.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "cli/console_host.h"
#include "cli/console_session.h"
#include "common/text.h"

namespace quillmarden {

namespace {

void fillSelection(frmTBList& list, const std::vector<int>& rows) {
  for (int row : rows) {
    list.LstTableSel.add(list.LstTable.rows[static_cast<std::size_t>(row)]);
    list.LstTableSel.selected.back() = true;
  }
}

ExitStatus report(Run& run, const RunResult& result) {
  ExitStatus status = result.failed ? kFailed : kDone;
  for (const auto& [table, characters] : result.lost) {
    std::string names;
    for (char32_t character : characters)
      names += fmt::format(" {} (U+{:04X})", toUtf8(character), static_cast<unsigned>(character));
    std::string place = table.empty() ? "ファイルの先頭" : table;
    status = failure(run, fmt::format("CP932で表せない文字があります.\n {} :{}", place, names));
  }
  return result.stopped ? kFailed : status;
}

}  // namespace

void addScriptChoice(OptionSet& set, ScriptChoice& choice) {
  addSystem(set, choice.system);
  addTables(set, choice.tables);
  addOutput(set, choice.output);
}

std::vector<int> allRows(const frmTBList& list) {
  std::vector<int> rows(list.LstTable.rows.size());
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

std::vector<int> chosenRows(Run& run, const frmTBList& list, const std::vector<std::string>& tables) {
  std::vector<int> chosen;
  for (const std::string& name : tables) {
    std::optional<std::string> id = findTable(run, name);
    if (!id) return {};
    auto row = std::find_if(list.LstTable.rows.begin(), list.LstTable.rows.end(),
                            [&](const std::string& text) { return tableListId(text) == *id; });
    if (row == list.LstTable.rows.end()) {
      failure(run, fmt::format("テーブルリストに存在しません.\n 名称 : {}", name));
      return {};
    }
    int place = static_cast<int>(row - list.LstTable.rows.begin());
    if (std::find(chosen.begin(), chosen.end(), place) == chosen.end()) chosen.push_back(place);
  }
  return chosen;
}

bool chooseTables(Run& run, const std::string& system, const std::vector<std::string>& tables, frmTBList& list) {
  if (!openTableList(run, system, list)) return false;
  std::vector<int> rows = chosenRows(run, list, tables);
  if (rows.empty() && !tables.empty()) return false;
  if (rows.empty()) rows = allRows(list);
  fillSelection(list, rows);
  return true;
}

ExitStatus printFile(Run& run, const BookRun& books, const std::string& path) {
  if (path.empty()) return kFailed;
  if (books.stopped) return failure(run, "中断しました.\n 途中までのファイル : " + path);
  run.output = path + "\n";
  return kDone;
}

ExitStatus generate(Run& run, const ScriptChoice& choice, const ScriptMenus& menus) {
  // The shared tables belong to Systems of several kinds; there is no script of them all.
  if (choice.system == kAllSystems) return failure(run, "システムを選択して下さい.");
  frmTBList list;
  frmTBDetail detail;
  if (!openTableList(run, choice.system, list)) return kFailed;
  if (choice.runnable) list.mnuCreateSQLRunnable.checked = true;
  std::vector<int> rows = chosenRows(run, list, choice.tables);
  if (rows.empty() && !choice.tables.empty()) return kFailed;

  RunTarget target;
  if (!choice.output.empty()) target.file = choice.output;
  target.encoding = run.options.encoding;
  if (!target.encoding && choice.runnable) target.encoding = TextEncoding::Utf8;

  RunResult result;
  if (rows.size() == 1) {
    list.LstTable.listIndex = rows.front();
    result = menus.current(run.session, run.host, list, detail, target);
    // A kind without a script has been told so; a declined question leaves nothing either.
    if (result.tables == 0) result.failed = true;
  } else if (rows.empty() && menus.all) {
    result = menus.all(run.session, run.host, list, detail, target);
  } else {
    if (rows.empty()) rows = allRows(list);
    fillSelection(list, rows);
    result = menus.selection(run.session, run.host, list, detail, target);
  }

  if (result.file.empty()) return !run.options.answerYes ? failure(run, "中止しました.") : kFailed;
  ExitStatus status = report(run, result);
  if (result.tables > 0 || !result.failed) run.output = result.file.string() + "\n";
  return status;
}

}  // namespace quillmarden
