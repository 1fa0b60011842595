#include "shell/session_life.h"

#include "common/message.h"
#include "common/paths.h"
#include "shell/screens.h"
#include "shell/tell.h"
#include "shell/unsaved_work.h"

namespace quillmarden {

namespace {

constexpr std::string_view kSplash = "frmSplash";
constexpr std::string_view kLogIn = "frmLogInNew";
constexpr int kLogInTick = 2;
constexpr int kFocusTick = 5;

void leave(Application& app) {
  app.ended = true;
  tell(app.display.quit);
}

void openLogIn(Application& app) {
  openScreen(app, kLogIn);
  // A folder that does not answer is told at once, and the message must not lie behind the splash screen.
  const bool useFolder = app.logIn.ChkDataBase.value;
  if (useFolder && !gChkFolder(app.logIn.LstFolder.text())) app.windows.close(kSplash);
  frmLogInNew_Activate(app.session, app.host, app.logIn);
  if (app.display.focus) app.display.focus(kLogIn);
}

/// The end of a program that has no session: the login's handler has closed the log.
void leaveLogIn(Application& app) {
  closeAllScreens(app);
  leave(app);
}

std::filesystem::path workFolder(const Session& session) {
  return toPath(gPathJoin(session.gDataFolder, "TempTemp_-_-"));
}

/// All screens and the Repository.
void closeSession(Application& app) {
  closeAllScreens(app, {"frmMessageClose"});
  sweepWorkFolder(workFolder(app.session), app.host.clock.now());
  logOff(app.session, app.host);
  app.askedLeftOvers.clear();
  app.toldSystem.clear();
}

}  // namespace

void startProgram(Application& app) {
  openUserData(app.session, app.host);
  frmSplash_Load(app.splash);
  openScreen(app, kSplash);
}

void frmSplash_Timer(Application& app) {
  if (!app.open.has(kSplash)) return;
  const int tick = ++app.splash.ticks;
  if (tick == kLogInTick) {
    app.session.log.open(app.host);
    openLogIn(app);
  } else if (tick >= kFocusTick) {
    const bool focused = app.open.has(kLogIn) && (!app.display.focus || app.display.focus(kLogIn));
    // A login that went through meanwhile has left the screen on purpose.
    if (focused || app.session.gSessionState == 1) {
      app.windows.close(kSplash);
    } else {
      app.session.log.finish(app.host, app.session.gKeepLog);
      leaveLogIn(app);
    }
  }
}

void logIn(Application& app) {
  if (!cmdOK_Click(app.session, app.host, app.logIn)) {
    if (app.logIn.unloaded) leaveLogIn(app);
    return;
  }
  app.windows.close(kSplash);
  openScreen(app, "frmAppBar");
  frmAppBar_Activate(app);
  app.windows.close(kLogIn);
  offerLeftOvers(app);
}

void cancelLogIn(Application& app) {
  cmdCancel_Click(app.session, app.host, app.logIn);
  leaveLogIn(app);
}

void startReplicaMaker(Application& app) {
  if (CmdReplica_Click(app.host)) cancelLogIn(app);
}

void CmdLogOff_Click(Application& app) {
  if (unsavedWorkStays(app)) return;
  if (gMsgBox(app.host, "ログオフしますか?", kYesNo | kQuestionIcon) == kYes) logOffNow(app);
}

void logOffNow(Application& app) {
  showMessageClose(app, "ログオフ処理中です...");
  closeSession(app);
  openUserData(app.session, app.host);
  openLogIn(app);
  closeMessageClose(app);
}

void exitProgram(Application& app, std::string_view caption) {
  if (app.ended || unsavedWorkStays(app)) return;
  const std::string question = caption.empty() ? "終了します." : std::string(caption) + " を終了します.";
  if (gMsgBox(app.host, question, kYesNo | kQuestionIcon, "終了確認") == kYes) exitProgramNow(app);
}

void exitProgramNow(Application& app, const std::filesystem::path& sibling) {
  showMessageClose(app, "終了処理中です...");
  closeSession(app);
  endProgram(app.session, app.host);
  closeMessageClose(app);
  if (!sibling.empty()) app.host.opener.startProgram(sibling);
  leave(app);
}

}  // namespace quillmarden
