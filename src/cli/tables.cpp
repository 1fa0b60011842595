#include "cli/tables.h"

#include <optional>

#include "cli/console_session.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

namespace {

/// Definitions of our own, what was read back from a database, or both.
enum class TableRows { All, Editor, Reverse };

struct TablesOptions {
  std::string system;
  std::string title;  ///< "" leaves the list as it opens, as with the filters below
  std::string host;
  std::string tableClass;
  std::string dataClass;
  std::string dataClass2;
  std::string where;
  std::string whereMode;
  std::optional<TableRows> rows;
  bool allSystems = false;
  bool withReferences = false;
};

void addTablesOptions(OptionSet& set, TablesOptions& options) {
  addSystem(set, options.system);
  set.text("--title", options.title, "TITLE", "先頭に表示し、検索する名称: 日本語名 か テーブル名(省略時 日本語名)")
      .only({"日本語名", "テーブル名"});
  set.text("--host", options.host, "TEXT", "格納先で絞る");
  set.text("--class", options.tableClass, "TEXT", "分類で絞る");
  set.text("--data-class", options.dataClass, "TEXT", "データ分類、データ分類2のいずれかで絞る");
  set.text("--data-class2", options.dataClass2, "TEXT", "--data-class と同じ。両方指定すると、いずれかに該当するもの");
  set.text("--where", options.where, "TEXT", "名称の検索条件。* ? # [ ] が使える");
  set.text("--where-mode", options.whereMode, "MODE", "検索一致条件: から始まる か を含む(省略時 から始まる)")
      .only({"から始まる", "を含む"});
  set.choice("--rows", options.rows, "ROWS", "all: 全て、editor: 定義のみ、reverse: リバースのみ(省略時 all)",
             {{"all", TableRows::All}, {"editor", TableRows::Editor}, {"reverse", TableRows::Reverse}});
  set.flag("--all-systems", options.allSystems, "全システム共通のテーブルのみ");
  set.flag("--with-references", options.withReferences, "参照している他システムの共通テーブルも表示する");
}

void setFilters(const TablesOptions& options, frmTBList& list) {
  if (!options.title.empty()) list.CmbTitle.text = options.title;
  if (!options.whereMode.empty()) list.CmbWhere.text = options.whereMode;
  list.CmbHost.text = options.host;
  list.CmbBunrui.text = options.tableClass;
  list.CmbDataBunrui.text = options.dataClass;
  list.CmbDataBunrui2.text = options.dataClass2;
  list.CmbWhereMoji.text = options.where;
  list.ChkAllSys.value = options.allSystems;
  list.ChkRefTb.value = options.withReferences;
  if (options.rows) {
    list.OptAll.value = options.rows == TableRows::All;
    list.OptTb.value = options.rows == TableRows::Editor;
    list.OptReverse.value = options.rows == TableRows::Reverse;
  }
}

ExitStatus runTables(Run& run, const TablesOptions& options) {
  frmTBList list;
  frmTBList_Load(run.session, run.host, list);
  if (!enterSystem(run, options.system)) return kFailed;
  list.CmbSystem.text = run.session.gCurrentSystemName;
  setFilters(options, list);
  if (pGetTableList(run.session, run.host, list)) return kFailed;
  for (const std::string& row : list.LstTable.rows) {
    for (char c : row) run.output += c == '\n' || c == '\r' ? ' ' : c;
    run.output += '\n';
  }
  return kDone;
}

}  // namespace

constinit const Command kTablesCommand{
    .name = "tables",
    .group = CommandGroup::Tables,
    .help = "テーブルリストを表示する。1行に、先頭の名称(50桁)、もう一方の名称、ID。タブで区切る",
    .prepare = prepareCommand<TablesOptions, addTablesOptions, runTables>};

}  // namespace quillmarden
