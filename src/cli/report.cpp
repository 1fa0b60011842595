#include "cli/report.h"

#include <algorithm>

#include "cli/console_session.h"
#include "cli/generate.h"
#include "excel/query_report.h"

namespace quillmarden {

namespace {

void putGrid(std::string& output, const Spread& grid) {
  for (int row = 0; row <= grid.maxRows(); ++row) {
    for (int column = 1; column <= grid.maxCols(); ++column) {
      if (column > 1) output += '\t';
      putCell(output, row == 0 ? grid.column(column).title : grid.text(column, row));
    }
    output += '\n';
  }
}

/// The parameters given, in their order; false after a message when they are not as many as the query asks for.
bool setParameters(Run& run, frmReport& screen) {
  const std::vector<std::string>& given = run.options.parameters;
  const auto wanted = static_cast<std::size_t>(
      std::ranges::count(screen.TxtPara, true, [](const TextBox& field) { return field.enabled; }));
  if (given.size() == wanted) {
    for (std::size_t i = 0; i < wanted; ++i) screen.TxtPara[i].text = given[i];
    return true;
  }
  std::string names;
  for (const std::string& name : screen.TxtParaTips) {
    if (!name.empty()) names += "\n " + name;
  }
  failure(run, "パラメータの数が一致しません." + (names.empty() ? "\n パラメータはありません." : names));
  return false;
}

}  // namespace

ExitStatus runReport(Run& run) {
  if (!enterSystem(run, run.options.system)) return kFailed;
  frmReport screen;
  frmReport_Load(run.session, run.host, screen);
  const auto& queries = screen.CmbDataSource.entries;
  if (!queries.empty() && std::ranges::find(queries, run.options.query) == queries.end()) {
    return failure(run, "指定のQueryが存在しません.\n 名称 : " + run.options.query);
  }
  screen.CmbDataSource.text = run.options.query;
  if (CmbDataSource_Click(run.session, run.host, screen) || !setParameters(run, screen) ||
      CmdFind_Click(run.session, run.host, screen)) {
    return kFailed;
  }
  if (run.options.output.empty()) {
    putGrid(run.output, screen.Spread);
    return kDone;
  }
  BookRun books;
  books.outputFile = run.options.output;
  return printFile(run, CmdExcel_Click(run.session, run.host, books, screen, false));
}

}  // namespace quillmarden
