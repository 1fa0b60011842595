#include "common/message.h"
#include "editing/frm_tb_list.h"
#include "shell/application.h"
#include "shell/screens.h"

namespace quillmarden {

void frmAbout_Load(frmAbout& screen) {
  screen = {};
  screen.caption = "Quillmardenのﾊﾞｰｼﾞｮﾝ情報";
  screen.lblVersion.caption = versionLabel();
}

void cmdSysInfo_Click(Application& app) {
  if (app.display.systemInformation) {
    app.display.systemInformation();
  } else {
    gMsgBox(app.host, "現時点ではｼｽﾃﾑ情報を使用できません");
  }
}

void showMSG(Application& app, std::string_view text, int seconds) {
  app.msg.TxtMSG.text = text;
  app.msg.TxtMSG.locked = true;
  app.msg.secondsLeft = seconds;
  openScreen(app, "frmMSG");
}

void frmMSG_Timer(Application& app) {
  if (app.msg.secondsLeft > 0 && --app.msg.secondsLeft == 0) closeScreen(app, "frmMSG");
}

void CmdStop_Click(frmSTOP& screen) { screen.pressed = true; }

StopScreen::StopScreen(Application& app) : app_(app) { openScreen(app, "frmSTOP"); }

StopScreen::~StopScreen() { closeScreen(app_, "frmSTOP"); }

void showMessageClose(Application& app, std::string_view text) {
  app.messageClose.lblMessage.caption = text;
  openScreen(app, "frmMessageClose");
  app.host.dialogs.yield();
}

void closeMessageClose(Application& app) { closeScreen(app, "frmMessageClose"); }

void refreshDetailsList(Application& app) {
  ListBox& list = app.detailsList.lstDetails;
  const std::string current(tableListId(list.text()));
  list.clear();
  for (const auto& [name, detail] : app.details) {
    const OpenScreen* open = app.open.find(name);
    if (!open || !open->visible) continue;
    list.add(screenCaption(app, name) + "\t" + name);
    if (name == current) list.listIndex = list.count() - 1;
  }
}

void lstDetails_DblClick(Application& app) {
  const std::string name(tableListId(app.detailsList.lstDetails.text()));
  if (app.open.has(name)) openScreen(app, name);
}

}  // namespace quillmarden
