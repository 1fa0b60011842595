#include "shell/menu_build.h"
#include "shell/screens.h"
#include "shell/session_life.h"

namespace quillmarden {

namespace {

Menu logInFolders() {
  const auto hasFolder = [](const Application& app, std::string_view) { return !app.logIn.LstFolder.text().empty(); };
  return {"frmLogInNew",
          "objMenuDel",
          "削除",
          false,
          "LstFolder",
          {enabledWhen(
               entry("objMenuDel1", "選択削除",
                     [](Application& app, std::string_view) { objMenuDel1_Click(app.session, app.host, app.logIn); }),
               hasFolder),
           separator(),
           enabledWhen(entry("objMnuOpenFolder", "選択フォルダを開く",
                             [](Application& app, std::string_view) { objMnuOpenFolder_Click(app.host, app.logIn); }),
                       hasFolder)}};
}

Menu bar() {
  return {"frmAppBar",
          "mnutPOPUP",
          "メニュー",
          false,
          "frmAppBar",
          {entry("mnuDetailsList", "詳細画面リスト", opens("frmdetailslist")),
           checkedWhen(entry("mnuWindowTop", "常に手前に表示", on(mnuWindowTop_Click)),
                       [](const Application& app, std::string_view) { return app.bar.onTop; }),
           separator(), entry("mnuClose", "終了", on(CmdClose_Click))}};
}

/// The popup of the list of detail screens.
Menu barDetails() {
  return {"frmdetailslist", "mnutPopUpDetails",
          "詳細画面",       false,
          "lstDetails",     {entry("mnuDetails", "画面の表示", on(lstDetails_DblClick))}};
}

Menu icon() {
  MenuEntry open = entry("Mnu_Open", "最小化", on(hideOrShowAll));
  open.changingCaption = [](const Application& app) { return app.task.Mnu_OpenCaption; };
  return {"frmTASK", "MnutPopUp", "Quillmarden",
          false,     "frmTASK",   {std::move(open), separator(), entry("Mnu_End", "終了", on(CmdClose_Click))}};
}

}  // namespace

std::vector<Menu> shellMenus() { return {logInFolders(), bar(), barDetails(), icon()}; }

}  // namespace quillmarden
