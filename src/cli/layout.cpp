#include "cli/layout.h"

#include <fmt/format.h>

#include "cli/console_host.h"
#include "cli/console_session.h"
#include "cli/generate.h"
#include "excel/layout_names.h"
#include "excel/table_layout.h"

namespace quillmarden {

namespace {

struct LayoutOptions {
  std::string system;
  std::vector<std::string> tables;
  std::string outputFolder;
};

void addLayoutOptions(OptionSet& set, LayoutOptions& options) {
  addSystem(set, options.system);
  addTables(set, options.tables);
  set.text("--output-folder", options.outputFolder, "DIR", "作成するフォルダ。省略時はシステムの作業フォルダ");
}

ExitStatus runLayout(Run& run, const LayoutOptions& options) {
  frmTBList list;
  if (!openTableList(run, options.system, list)) return kFailed;
  std::vector<int> rows = chosenRows(run, list, options.tables);
  if (rows.empty() && !options.tables.empty()) return kFailed;
  if (rows.empty()) rows = allRows(list);

  BookRun books;
  books.outputFolder = options.outputFolder;
  frmTBDetail detail;
  ExitStatus status = kDone;
  std::string toldFault;
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
    // All tables of a System have the one Format file.
    if (!books.formatFault.empty() && books.formatFault != toldFault) {
      toldFault = books.formatFault;
      failure(run, "書式ファイルに誤りがあるため, 出力できません.\n" + toldFault);
    }
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
