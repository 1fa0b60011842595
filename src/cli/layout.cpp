#include "cli/layout.h"

#include <fmt/format.h>

#include "cli/console_host.h"
#include "cli/console_session.h"
#include "cli/generate.h"
#include "excel/layout_names.h"
#include "excel/list_book.h"
#include "excel/table_layout.h"

namespace quillmarden {

namespace {

struct LayoutOptions {
  std::string system;
  std::vector<std::string> tables;
  std::string outputFolder;
  bool oneBook = false;
  std::string output;
};

void addLayoutOptions(OptionSet& set, LayoutOptions& options) {
  addSystem(set, options.system);
  addTables(set, options.tables);
  set.text("--output-folder", options.outputFolder, "DIR", "作成するフォルダ。省略時はシステムの作業フォルダ");
  set.flag("--one-book", options.oneBook,
           "レイアウトを、ひとつのブックにまとめる。まとめたブックのファイル名だけを表示する");
  set.text("--output", options.output, "FILE", "まとめたブックのファイル。省略時はシステムの作業フォルダに作成する")
      .needs("--one-book");
}

ExitStatus putOneBook(Run& run, const LayoutOptions& options) {
  frmTBList list;
  if (!chooseTables(run, options.system, options.tables, list)) return kFailed;
  BookRun books;
  books.outputFolder = options.outputFolder;
  books.outputFile = options.output;
  frmTBDetail detail;
  const std::string path = mnuExcel_Click(run.session, run.host, books, list, detail, false);
  const ExitStatus status = printFile(run, books, path);
  return books.missing > 0 ? failure(run, fmt::format("{}件のテーブルは、まとめたブックに含まれません.", books.missing))
                           : status;
}

ExitStatus runLayout(Run& run, const LayoutOptions& options) {
  if (options.oneBook) return putOneBook(run, options);
  frmTBList list;
  if (!openTableList(run, options.system, list)) return kFailed;
  std::vector<int> rows = chosenRows(run, list, options.tables);
  if (rows.empty() && !options.tables.empty()) return kFailed;
  if (rows.empty()) rows = allRows(list);

  BookRun books;
  books.outputFolder = options.outputFolder;
  frmTBDetail detail;
  ExitStatus status = kDone;
  long done = 0;
  for (const int row : rows) {
    if (interrupted()) return failure(run, fmt::format("中断しました. {}件まで出力しています.", done));
    const std::string& text = list.LstTable.rows[static_cast<std::size_t>(row)];
    if (pGet_TableID2TableDetails(run.session, run.host, detail, tableListId(text))) {
      status = failure(run, fmt::format("テーブルを読み込めませんでした.\n 名称 : {}", tableListName(text)));
      continue;
    }
    const std::string path =
        pPutCurrentTable2ExcelFile(run.session, run.host, books, detail, run.session.gCurrentSystemName, false);
    if (path.empty()) {
      status = kFailed;
    } else {
      run.output += path + "\n";
    }
    run.host.dialogs.progress(++done, static_cast<long>(rows.size()));
  }
  tellNumbered(run.host, books);
  return status;
}

}  // namespace

constinit const Command kLayoutCommand{.name = "layout",
                                       .group = CommandGroup::Workbooks,
                                       .help = "テーブルレイアウトのブックをテーブルごとに作成し、ファイル名を表示する",
                                       .prepare = prepareCommand<LayoutOptions, addLayoutOptions, runLayout>};

}  // namespace quillmarden
