#include "shell/frm_app_bar.h"

#include <string_view>

#include "common/message.h"
#include "common/text.h"
#include "common/work_folders.h"
#include "shell/application.h"
#include "shell/screens.h"
#include "shell/session_life.h"
#include "shell/tell.h"

namespace quillmarden {

namespace {

namespace fs = std::filesystem;

/// Removes the files whose name, case aside, is `ending` or, with `any` in front, ends so, but no result.
void removeFiles(const fs::path& folder, std::string_view ending, bool any, const DateTime& now) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = toLower(entry->path().filename().string());
    std::error_code ignored;
    const bool left = any ? name.ends_with(ending) : name == ending;
    if (left && !isKeptResult(entry->path(), now)) fs::remove(entry->path(), ignored);
  }
}

}  // namespace

void frmAppBar_Activate(Application& app) {
  if (app.bar.activated) return;
  app.bar.activated = true;
  app.bar.lblLogin.caption = app.session.gLoginUser + " " + app.session.gDbServerLabel + " " + app.session.gDbFileName;
  openScreen(app, "frmTASK");
  openScreen(app, "frmTBList");
  // The detail screen waits unseen: the list and the generators fill it.
  app.details["frmTBDetail"];
  app.open.raise("frmTBDetail").visible = false;
  app.open.raise("frmTBList");
}

void CmdMin_Click(Application& app) { hideOrShowAll(app); }

void CmdSQL_Click(Application& app) { hideOrShowAll(app); }

void CmdRep_Click(Application& app) {
  const fs::path program = app.host.machine.programFolder / "Drennovar.exe";
  std::error_code error;
  if (!fs::exists(program, error)) {
    gMsgBox(app.host, "レプリカ管理プログラムが存在ません.", kOkOnly, "入手して!!");
    return;
  }
  if (unsavedWorkStays(app)) return;
  if (gMsgBox(app.host, joinLines({"レプリカの管理を行います.", "Quillmardenを一旦終了します."}),
              kYesNo | kQuestionIcon, "終了確認") == kYes)
    exitProgramNow(app, program);
}

void CmdInfo_Click(Application& app) { openScreen(app, "frmOptions"); }

void CmdHelp_Click(Application& app) { tell(app.display.help); }

void CmdClose_Click(Application& app) { exitProgram(app); }

void mnuWindowTop_Click(Application& app) {
  app.bar.onTop = !app.bar.onTop;
  tell(app.display.keepBarOnTop, app.bar.onTop);
}

void sweepWorkFolder(const fs::path& folder, const DateTime& now) {
  struct Pattern {
    std::string_view text;
    bool any;
  };
  static constexpr Pattern kPatterns[] = {{"_er.xls", true}, {"temptemptemp.xls", false}, {".emf", true},
                                          {".tmp", true},    {"temptemp.xls", false},     {".tmp", true},
                                          {".log", true}};
  for (const Pattern& pattern : kPatterns) removeFiles(folder, pattern.text, pattern.any, now);
}

}  // namespace quillmarden
