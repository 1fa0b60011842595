#include "cli/show.h"

#include "cli/console_session.h"
#include "cli/shown_rows.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

namespace {

struct ShowOptions {
  std::string system;
  std::string table;
  bool gridOnly = false;
};

void addShowOptions(OptionSet& set, ShowOptions& options) {
  addSystem(set, options.system);
  addTable(set, options.table);
  set.flag("--grid", options.gridOnly, "項目のみ表示する");
}

void putHeader(std::string& output, const frmTBDetail& detail) {
  auto line = [&](std::string_view name, std::string_view value) {
    output += name;
    output += '\t';
    putCell(output, value);
    output += '\n';
  };
  auto flag = [&](std::string_view name, bool set) { line(name, set ? "-1" : "0"); };

  line("テーブル名", detail.txtTableNameENG.text);
  line("日本語名", detail.txtTableNameJPN.text);
  line("ID", detail.lblID.caption);
  line("システム名", detail.lblSystemName.caption);
  line("略名", detail.lblRyaku.caption);
  line("分類", detail.lblBunrui.caption);
  line("格納先", detail.lblHost.caption);
  line("ファイル種別", detail.lblFileType.caption);
  line("データ分類", detail.lblDataBunrui.caption);
  line("作成間隔", detail.lblKanKaku.caption);
  line("SQL文初回作成日", detail.lblFirstSQL.caption);
  line("SQL文最新作成日", detail.lblNewSQL.caption);
  line("作成回数", detail.lblNumSQL.caption);
  line("チェックポイント日付", detail.lblCheckPoint.caption);
  line("概要", detail.TxtMemo.text);
  line("ORA_INITIAL", detail.lblNum[0].caption);
  line("ORA_NEXT", detail.lblNum[1].caption);
  line("ORA_MINEXTENTS", detail.lblNum[2].caption);
  line("ORA_MAXEXTENTS", detail.lblNum[3].caption);
  line("ORA_PCTINCREASE", detail.lblNum[4].caption);
  line("ORA_PCTFREE", detail.lblNum[5].caption);
  line("ORA_PCTUSED", detail.lblNum[6].caption);
  line("ORA_TABLESPASE", detail.lblTbSpace.caption);
  line("データ入力元", detail.lblInpData.caption);
  line("画面名等", detail.lblInpForm.caption);
  line("reffile", detail.txtRefFileNameRead.text);
  line("partition_field", detail.txtPartitionRead.text);
  flag("全システム共通", detail.lblAllSystem.visible);
  flag("REVERSE_DB", detail.PicReverse.visible);
  flag("pmark", detail.PicPmark.visible);
  flag("brinindex", detail.lblBRIN.visible);
  flag("inttriggerflg", detail.picTrigger.visible);
  line("現在数", detail.lblKensu[0].caption);
  line("想定数", detail.lblKensu[1].caption);
  line("現在保持", detail.lblKensu[2].caption);
  line("想定保持", detail.lblKensu[3].caption);
}

void putFieldGrid(std::string& output, const Spread& grid) {
  for (int row = 1; row <= grid.maxRows(); ++row) {
    for (int col = 1; col <= field_col::kCount; ++col) {
      if (col > 1) output += '\t';
      // A check box that nobody has set is an unset one.
      if (grid.kind(col, row) == CellKind::Check && !grid.holds(col, row))
        output += '0';
      else
        putCell(output, grid.text(col, row));
    }
    output += '\n';
  }
}

ExitStatus runShow(Run& run, const ShowOptions& options) {
  frmTBDetail detail;
  if (!enterSystem(run, options.system) || !openTable(run, options.table, detail)) return kFailed;
  if (!options.gridOnly) {
    putHeader(run.output, detail);
    run.output += '\n';
  }
  putFieldGrid(run.output, detail.Spread);
  keepShownRows(run, detail);
  return kDone;
}

}  // namespace

constinit const Command kShowCommand{.name = "show",
                                     .group = CommandGroup::Tables,
                                     .help = "テーブルの基本情報と、空行の後に項目(1行26セル、タブ区切り)を表示する",
                                     .prepare = prepareCommand<ShowOptions, addShowOptions, runShow>};

}  // namespace quillmarden
