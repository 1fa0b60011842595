#include "cli/snippet.h"

#include "cli/console_session.h"
#include "cli/row_list.h"
#include "common/text.h"
#include "sqlgen/snippet.h"

namespace quillmarden {

namespace {

struct SnippetOptions {
  std::string system;
  std::string table;
  std::string rows;
  int index = 0;
};

void addSnippetOptions(OptionSet& set, SnippetOptions& options) {
  addSystem(set, options.system);
  addTable(set, options.table);
  addRows(set, options.rows, "項目の行。1,3-5 の形で指定する。省略時は全ての項目");
  std::string help = "コードの番号(必須)";
  std::vector<std::string> indexes;
  for (const SnippetEntry& entry : snippetEntries()) {
    indexes.push_back(std::to_string(entry.index));
    help.append("\n").append(indexes.back()).append(": ").append(trim(entry.caption));
  }
  set.number("--index", options.index, "N", help).only(std::move(indexes)).required();
}

ExitStatus runSnippet(Run& run, const SnippetOptions& options) {
  frmTBDetail detail;
  if (!enterSystem(run, options.system) || !openTable(run, options.table, detail)) return kFailed;
  const std::optional<GridSelection> rows = chosenRows(run, detail, options.rows);
  if (!rows) return kFailed;
  putText(run.output, codeSnippet(run.session, detail, selectedRows(detail, *rows), options.index));
  return kDone;
}

}  // namespace

constinit const Command kSnippetCommand{.name = "snippet",
                                        .group = CommandGroup::Scripts,
                                        .help = "項目を使うプログラムのコードを表示する",
                                        .prepare = prepareCommand<SnippetOptions, addSnippetOptions, runSnippet>};

}  // namespace quillmarden
