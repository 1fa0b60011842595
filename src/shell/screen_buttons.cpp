#include "shell/screen_buttons.h"

#include "common/message.h"
#include "common/text.h"
#include "shell/menu_map.h"
#include "shell/screens.h"

namespace quillmarden {

void CmdBackColor_Click(Application& app, int which) {
  frmCOLOR_Load(app.session, app.host, app.color, app.options, which);
  openScreen(app, "frmCOLOR");
}

void CmdSelect_Click(Application& app) { CmdSelect_Click(app.session, app.host, app.color, app.options); }

void cmdChange_Click(Application& app) {
  if (app.systemInf.cmdChange.enabled && !unsavedWorkStays(app))
    cmdChange_Click(app.session, app.host, app.windows, app.systemInf);
}

void cmdConvAccessSQLServer_Click(Application& app) {
  const frmSystemInf& screen = app.systemInf;
  if (!screen.cmdConvAccessSQLServer.enabled) return;
  if (!equalsNoCase(screen.record.databaseType, "Access"))
    gMsgBox(app.host, "Access以外は対応していません.");
  else
    tellLater(app, "Access ⇒ SQL Server");
}

}  // namespace quillmarden
