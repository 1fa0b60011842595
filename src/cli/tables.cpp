#include "cli/tables.h"

#include "cli/console_session.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

namespace {

void setFilters(const Options& options, frmTBList& list) {
  if (!options.title.empty()) list.CmbTitle.text = options.title;
  if (!options.whereMode.empty()) list.CmbWhere.text = options.whereMode;
  list.CmbHost.text = options.host;
  list.CmbBunrui.text = options.tableClass;
  list.CmbDataBunrui.text = options.dataClass;
  list.CmbDataBunrui2.text = options.dataClass2;
  list.CmbWhereMoji.text = options.where;
  list.ChkAllSys.value = options.allSystems;
  list.ChkRefTb.value = options.withReferences;
  if (!options.rows.empty()) {
    list.OptAll.value = options.rows == "all";
    list.OptTb.value = options.rows == "editor";
    list.OptReverse.value = options.rows == "reverse";
  }
}

}  // namespace

ExitStatus runTables(Run& run) {
  frmTBList list;
  frmTBList_Load(run.session, run.host, list);
  if (!enterSystem(run, run.options.system)) return kFailed;
  list.CmbSystem.text = run.session.gCurrentSystemName;
  setFilters(run.options, list);
  if (pGetTableList(run.session, run.host, list)) return kFailed;
  for (const std::string& row : list.LstTable.rows) {
    for (char c : row) run.output += c == '\n' || c == '\r' ? ' ' : c;
    run.output += '\n';
  }
  return kDone;
}

}  // namespace quillmarden
