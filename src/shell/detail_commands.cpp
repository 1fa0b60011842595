#include "shell/detail_commands.h"

#include "editing/frm_tb_detail_edit.h"
#include "excel/er_book.h"
#include "shell/list_commands.h"
#include "shell/screens.h"

namespace quillmarden {

void openDivisionRef(Application& app, std::string_view screen) {
  const frmTBDetail& detail = app.detail(screen);
  if (detail.lblID.caption.empty() || detail.readOnly) return;
  app.callFrom(screen);
  app.diviRef = {};
  const bool flag = detail.Spread.text(field_col::kClass, detail.activeRow) == "フラグ";
  frmDiviRef_Load(app.diviRef, flag ? "フラグ" : "区分");
  openScreen(app, "frmDiviRef");
}

void openSort(Application& app, std::string_view screen) {
  screenActivated(app, screen);
  if (!app.detail(screen).readOnly) openScreen(app, "frmSpSort");
}

void sortGrid(Application& app) {
  if (!app.open.has("frmSpSort")) return;
  frmTBDetail* detail = app.callingDetail();
  if (!detail || !cmdOK_Click(app.session, app.host, app.spSort, *detail)) app.windows.close("frmSpSort");
}

void openMemo(Application& app, std::string_view screen) {
  screenActivated(app, screen);
  // One memo at a time: that of another table is closed first, after its question.
  if (app.open.has("frmMemo") && app.memo.tableId != app.detail(screen).lblID.caption && closeScreen(app, "frmMemo"))
    return;
  openScreen(app, "frmMemo");
}

void openHeader(Application& app, std::string_view screen) {
  if (const std::string& id = app.detail(screen).lblID.caption; !id.empty()) openTableInfo(app, id);
}

void CmdER_Click(Application& app, std::string_view screen) {
  const frmTBDetail& shown = app.detail(screen);
  if (shown.lblID.caption.empty()) return;
  frmTBList list;
  list.LstTableSel.add(shown.txtTableNameJPN.text + "\t" + shown.txtTableNameENG.text + "\t" + shown.lblID.caption);
  BookRun book;
  frmTBDetail detail;  // the one on show may have unsaved rows
  pPutExcel2ER(app.session, app.host, book, list, detail, {.bookName = shown.txtTableNameENG.text, .openAfter = true});
}

void updateDetail(Application& app, std::string_view screen) {
  frmTBDetail& detail = app.detail(screen);
  if (CmdUpDate_Click(app.session, app.host, detail)) return;
  // Another screen that shows the same table without changes of its own follows.
  for (auto& [name, other] : app.details)
    if (&other != &detail && !other.changed && other.lblID.caption == detail.lblID.caption)
      pGet_TableID2TableDetails(app.session, app.host, other, other.lblID.caption);
  app.windows.listChanged("");
}

}  // namespace quillmarden
