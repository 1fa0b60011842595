#include "cli/table.h"

#include <fmt/format.h>

#include <optional>

#include "cli/console_session.h"
#include "cli/table_changes.h"
#include "common/text.h"
#include "editing/deleted_tables.h"
#include "editing/frm_tb_info.h"
#include "editing/table_copy.h"

namespace quillmarden {

namespace {

struct TableOptions {
  std::string system;
  std::string table;
  bool isNew = false;
  std::string copyTo;
  bool deletes = false;
  bool restores = false;
  std::string moveTo;
  std::vector<std::string> sets;
  std::optional<bool> lock;
  std::optional<std::string> partition;
  std::optional<std::string> referenceFile;
};

void addTableOptions(OptionSet& set, TableOptions& options) {
  addSystem(set, options.system);
  set.text("--table", options.table, "NAME",
           "テーブル名または日本語名(必須)。--new では新しいテーブル名、--restore ではIDでも指定できる")
      .required();
  set.flag("--new", options.isNew, "--table の名前で、新しいテーブルを登録する");
  set.text("--copy-to", options.copyTo, "NAME", "項目、インデックス、付帯メモとともに、このテーブル名で複写する")
      .filled()
      .excludes("--new");
  set.flag("--delete", options.deletes, "テーブルを削除する").excludes("--new").excludes("--copy-to");
  set.flag("--restore", options.restores, "削除されたテーブルを元に戻す")
      .excludes("--new")
      .excludes("--copy-to")
      .excludes("--delete");
  set.text("--move-to", options.moveTo, "NAME", "このシステムへ移す")
      .filled()
      .excludes("--new")
      .excludes("--copy-to")
      .excludes("--delete")
      .excludes("--restore");
  addSettings(set, options.sets, "変更する列と値。複数回指定できる。--new、--copy-to では、そのテーブルの値")
      .excludes("--delete")
      .excludes("--restore");
  set.choice("--lock", options.lock, "yes|no", "yes: 編集不可にする、no: 編集可にする", {{"yes", true}, {"no", false}})
      .excludes("--delete")
      .excludes("--restore")
      .excludes("--move-to");
  set.text("--partition", options.partition, "FIELDS",
           "パーティションの項目名。コンマで区切る。空白で解除する(PostgreSQLのみ)")
      .excludes("--delete")
      .excludes("--restore");
  set.text("--reference-file", options.referenceFile, "FILE",
           "参照ファイル。リポジトリのフォルダ配下に複写する。空白で解除する")
      .excludes("--delete")
      .excludes("--restore");
}

bool changesAnything(const TableOptions& options) {
  return options.isNew || !options.copyTo.empty() || options.deletes || options.restores || !options.moveTo.empty() ||
         !options.sets.empty() || options.lock || options.partition || options.referenceFile;
}

bool saveHeader(Run& run, frmTBInfo& screen, const std::vector<std::string>& sets) {
  Windows windows;
  return takeSettings(run, "MAS_TABLEINFO", headerColumns(run, screen), sets) &&
         !cmdOK_Click(run.session, run.host, windows, screen);
}

/// Makes the new table, or the copy. Its ID; nothing after a message.
std::optional<std::string> makeTable(Run& run, const TableOptions& options) {
  frmTBInfo screen;
  if (options.isNew) {
    if (frmTBInfo_Load(run.session, run.host, screen, "")) return std::nullopt;
    screen.TxtTableName.text = options.table;
  } else {
    const std::optional<std::string> source = findTable(run, options.table);
    if (!source || frmTBInfo_LoadCopy(run.session, run.host, screen, *source)) return std::nullopt;
    screen.TxtTableName.text = options.copyTo;
  }
  if (!saveHeader(run, screen, options.sets)) return std::nullopt;
  return screen.lblID.caption;
}

bool changeHeader(Run& run, const std::string& id, const std::vector<std::string>& sets) {
  frmTBInfo screen;
  return !frmTBInfo_Load(run.session, run.host, screen, id) && saveHeader(run, screen, sets);
}

/// All steps that the options name, in an order in which each finds the table open to it.
bool changeTable(Run& run, const TableOptions& options) {
  if (options.restores) {
    const std::optional<std::string> deleted = findDeletedTable(run, options.table);
    return deleted && restoreTable(run.session, run.host, *deleted) == Outcome::Done;
  }
  const bool makes = options.isNew || !options.copyTo.empty();
  const std::optional<std::string> id = makes ? makeTable(run, options) : findTable(run, options.table);
  if (!id) return false;
  if (options.deletes) return deleteTable(run, *id);
  if (options.lock == false && !lockTable(run, *id, false)) return false;
  if (!makes && !options.sets.empty() && !changeHeader(run, *id, options.sets)) return false;
  if (options.partition && !partitionTable(run, *id, *options.partition)) return false;
  if (options.referenceFile && !setReferenceFile(run, *id, *options.referenceFile)) return false;
  if (!options.moveTo.empty() && !moveTable(run, *id, options.moveTo)) return false;
  return options.lock != true || lockTable(run, *id, true);
}

/// The row as it is stored, in the order of its columns.
ExitStatus putTable(Run& run, const std::string& name) {
  const std::optional<std::string> id = findTable(run, name);
  if (!id) return kFailed;
  const Recordset row = run.session.gDB->openRecordset("SELECT * FROM MAS_TABLEINFO WHERE ID = " + *id);
  putRecord(run.output, row);
  return kDone;
}

ExitStatus runTable(Run& run, const TableOptions& options) {
  if (options.system == kAllSystems) return failure(run, "システムを選択して下さい.");
  if (!enterSystem(run, options.system)) return kFailed;
  if (!changesAnything(options)) return putTable(run, options.table);
  return inOneTransaction(run, [&] { return changeTable(run, options); });
}

}  // namespace

constinit const Command kTableCommand{
    .name = "table",
    .group = CommandGroup::Tables,
    .help = "テーブルの基本情報を表示する。1行に、列名、タブ、値。登録、変更、複写、削除、移動もする",
    .prepare = prepareCommand<TableOptions, addTableOptions, runTable>};

}  // namespace quillmarden
