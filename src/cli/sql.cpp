#include "cli/sql.h"

#include "cli/generate.h"

namespace quillmarden {

namespace {

struct SqlOptions {
  ScriptChoice choice;
  bool full = false;
};

void addSqlOptions(OptionSet& set, SqlOptions& options) {
  addScriptChoice(set, options.choice);
  set.flag("--full", options.full, "オプション設定によらず、DROP文以外を全て出力する");
  set.flag("--runnable", options.choice.runnable, "データベースでそのまま実行できる形式で出力する");
}

ExitStatus runSql(Run& run, const SqlOptions& options) {
  const SqlClauses clauses = options.full ? SqlClauses::All : SqlClauses::AsOptions;
  const auto menu = [clauses](SqlRows rows) -> ScriptMenu {
    return
        [rows, clauses](Session& session, Host& host, frmTBList& list, frmTBDetail& detail, const RunTarget& target) {
          return mnuCreateSql_Click(session, host, list, detail, rows, clauses, target);
        };
  };
  const ScriptMenu selection = [clauses](Session& session, Host& host, frmTBList& list, frmTBDetail& detail,
                                         const RunTarget& target) {
    return mnuCreateSQLSel_Click(session, host, list, detail, clauses, target);
  };
  return generate(run, options.choice,
                  {.current = menu(SqlRows::Current), .selection = selection, .all = menu(SqlRows::All)});
}

}  // namespace

constinit const Command kSqlCommand{.name = "sql",
                                    .group = CommandGroup::Scripts,
                                    .help = "CREATE文のファイルを作成し、ファイル名を表示する",
                                    .prepare = prepareCommand<SqlOptions, addSqlOptions, runSql>};

}  // namespace quillmarden
