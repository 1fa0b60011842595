#include "cli/report.h"

#include <algorithm>

#include "cli/console_session.h"
#include "cli/generate.h"
#include "excel/query_report.h"

namespace quillmarden {

namespace {

struct ReportOptions {
  std::string system;
  std::string query;
  std::vector<std::string> parameters;
  std::string output;
};

void addReportOptions(OptionSet& set, ReportOptions& options) {
  addSystem(set, options.system);
  set.text("--query", options.query, "NAME", "Queryの名称(必須)").required();
  set.texts("--parameter", options.parameters, "TEXT", "パラメータの値。Queryの順に、2つまで指定できる");
  set.text("--output", options.output, "FILE", "表示せずに、このファイルのブックに出力する");
}

void putReport(std::string& output, const Spread& grid) {
  for (int row = 0; row <= grid.maxRows(); ++row) {
    for (int column = 1; column <= grid.maxCols(); ++column) {
      if (column > 1) output += '\t';
      putCell(output, row == 0 ? grid.column(column).title : grid.text(column, row));
    }
    output += '\n';
  }
}

/// The parameters given, in their order; false after a message when they are not as many as the query asks for.
bool setParameters(Run& run, frmReport& screen, const std::vector<std::string>& given) {
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

ExitStatus runReport(Run& run, const ReportOptions& options) {
  if (!enterSystem(run, options.system)) return kFailed;
  frmReport screen;
  frmReport_Load(run.session, run.host, screen);
  const auto& queries = screen.CmbDataSource.entries;
  if (!queries.empty() && std::ranges::find(queries, options.query) == queries.end()) {
    return failure(run, "指定のQueryが存在しません.\n 名称 : " + options.query);
  }
  screen.CmbDataSource.text = options.query;
  if (CmbDataSource_Click(run.session, run.host, screen) || !setParameters(run, screen, options.parameters) ||
      CmdFind_Click(run.session, run.host, screen)) {
    return kFailed;
  }
  if (options.output.empty()) {
    putReport(run.output, screen.Spread);
    return kDone;
  }
  BookRun books;
  books.outputFile = options.output;
  return printFile(run, books, CmdExcel_Click(run.session, run.host, books, screen, false));
}

}  // namespace

constinit const Command kReportCommand{.name = "report",
                                       .group = CommandGroup::Workbooks,
                                       .help = "出力_ で始まるQueryを実行し、見出しの行と結果をタブ区切りで表示する",
                                       .prepare = prepareCommand<ReportOptions, addReportOptions, runReport>};

}  // namespace quillmarden
