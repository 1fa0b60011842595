#include "cli/list.h"

#include "cli/generate.h"
#include "excel/list_book.h"

namespace quillmarden {

namespace {

struct ListOptions {
  std::string system;
  std::vector<std::string> tables;
  std::string output;
  bool fields = false;
};

void addListOptions(OptionSet& set, ListOptions& options) {
  addSystem(set, options.system);
  addTables(set, options.tables);
  addOutput(set, options.output);
  set.flag("--fields", options.fields, "項目ごとに1行とする");
}

ExitStatus runList(Run& run, const ListOptions& options) {
  frmTBList list;
  if (!chooseTables(run, options.system, options.tables, list)) return kFailed;
  BookRun books;
  books.outputFile = options.output;
  return printFile(run, books, pPutTableListLayout2Excel(run.session, run.host, books, list, options.fields, false));
}

}  // namespace

constinit const Command kListCommand{.name = "list",
                                     .group = CommandGroup::Workbooks,
                                     .help = "テーブル一覧のブックを作成し、ファイル名を表示する",
                                     .prepare = prepareCommand<ListOptions, addListOptions, runList>};

}  // namespace quillmarden
