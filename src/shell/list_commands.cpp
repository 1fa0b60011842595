#include "shell/list_commands.h"

#include "common/message.h"
#include "shell/menu_map.h"
#include "shell/screens.h"
#include "shell/session_life.h"
#include "shell/tell.h"
#include "shell/unsaved_work.h"

namespace quillmarden {

namespace {

constexpr std::string_view kListScreen = "frmTBList";
constexpr std::string_view kDetailScreen = "frmTBDetail";

/// The screen of lstForm's current row, "" when there is none.
std::string listedScreen(const Application& app) { return std::string(tableListId(app.list.lstForm.text())); }

}  // namespace

void chooseSystem(Application& app) {
  if (app.list.CmbSystem.text == app.session.gCurrentSystemName) return;
  if (unsavedWorkStays(app)) {
    app.list.CmbSystem.text = app.session.gCurrentSystemName;
    return;
  }
  // Headers and records are written by the rules of the System that is current: those of the former one go.
  for (const std::string_view screen : {"frmTBInfo", "frmSystemInf"})
    if (app.open.has(screen)) app.windows.close(screen);
  CmbSystem_Click(app.session, app.host, app.windows, app.list);
  offerLeftOvers(app);
}

void LstTable_Click(Application& app) {
  // The table that is being edited is brought forward as it is; there is nothing to give up.
  const frmTBDetail& detail = app.detail();
  const bool edited = detail.changed && detail.lblID.caption == tableListId(app.list.LstTable.text());
  if (!edited && pReadTbDetailsData(app.session, app.host, app.list, app.detail())) return;
  if (app.list.running) return;
  openScreen(app, kDetailScreen);
  pSetCurrentTableName2Info(app);
}

void showTable(Application& app, std::string_view tableId) {
  std::string screen(kDetailScreen);
  frmTBDetail& detail = app.detail();
  if (detail.changed && detail.lblID.caption != tableId)
    screen = openDetail(app, tableId);
  else if (!detail.changed && pGet_TableID2TableDetails(app.session, app.host, detail, tableId))
    return;
  if (screen.empty()) return;
  openScreen(app, screen);
  if (app.display.focus) app.display.focus(screen);
}

void LstTable_DblClick(Application& app) {
  const OpenScreen* detail = app.open.find(kDetailScreen);
  if (app.session.settings.tableListBoxDblClick && detail && detail->visible) mnuOpenDetails_Click(app);
}

bool LstTable_Key(Application& app, char key, int shift) {
  const auto command = LstTable_KeyDown(key, shift);
  return command && pressMenu(app, kListScreen, command->menu, command->index);
}

void LstTable_PopUp(Application& app) {
  LstTable_RightClick(app.session, app.host, app.list);
  if (app.display.popUp) app.display.popUp(kListScreen, "mnutEdit");
}

void lstForm_DblClick(Application& app) {
  if (const std::string screen = listedScreen(app); app.open.has(screen)) openScreen(app, screen);
}

void mnuFormMin_Click(Application& app) {
  if (const std::string screen = listedScreen(app); app.open.has(screen)) tell(app.display.minimise, screen);
}

void mnuFormClose_Click(Application& app) { closeScreen(app, listedScreen(app)); }

void pSetCurrentTableName2Info(Application& app) {
  if (const std::string_view id = tableListId(app.list.LstTable.text()); !id.empty()) tell(app.windows.tableChosen, id);
}

void mnuOpenDetails_Click(Application& app) {
  if (const std::string_view id = tableListId(app.list.LstTable.text()); !id.empty()) openDetail(app, id);
}

void openTableInfo(Application& app, std::string_view tableId) {
  // One header at a time: that of another table is closed first, after its question.
  if (app.open.has("frmTBInfo") && app.tbInfo.lblID.caption != tableId && closeScreen(app, "frmTBInfo")) return;
  app.tbInfoFor = tableId;
  openScreen(app, "frmTBInfo");
}

void mnuAdd_Click(Application& app) { openTableInfo(app, ""); }

void mnuUpDate_Click(Application& app) {
  if (const std::string id = mnuUpDate_Click(app.host, app.list); !id.empty()) openTableInfo(app, id);
}

void CmdSystem_Click(Application& app) {
  if (!app.list.CmdSystem.enabled) return;
  // The record of a System that was chosen before closes first, after its question.
  const std::string& system = app.list.CmbSystem.text;
  const bool other = app.systemInf.record.name != (system == kNewSystem ? std::string_view() : system);
  if (app.open.has("frmSystemInf") && other && closeScreen(app, "frmSystemInf")) return;
  openScreen(app, "frmSystemInf");
}

void mnuSelectPut_Click(Application& app) {
  if (mnuSelectPut_Click(app.host, app.list)) return;
  if (app.display.popUp) app.display.popUp(kListScreen, "mnutExcel");
}

void mnuRev_Click(Application& app) {
  const std::filesystem::path program = app.host.machine.programFolder / "Halvorn";
  std::error_code error;
  if (!std::filesystem::exists(program, error)) {
    gMsgBox(app.host, joinLines({"指定のプログラムが存在しません.", program.string()}));
    return;
  }
  if (unsavedWorkStays(app)) return;
  if (gMsgBox(app.host,
              joinLines({"リバースエンジニアリングの", "プログラムを起動します.", "Quillmardenは終了します."}),
              kYesNo | kQuestionIcon) == kYes)
    exitProgramNow(app, program);
}

}  // namespace quillmarden
