#include <algorithm>
#include <filesystem>
#include <fstream>

#include "common/log.h"
#include "common/paths.h"
#include "shell_fixture.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class SessionLifeTest : public ShellTest {
 protected:
  fs::path workFolder() const { return toPath(app.session.gDataFolder) / "TempTemp_-_-"; }
  static void touch(const fs::path& file) { std::ofstream(file) << "x"; }
};

TEST_F(SessionLifeTest, TheSplashHandsOverToTheLogin) {
  startProgram(app);
  EXPECT_EQ(told(), (Lines{"show frmSplash"}));
  EXPECT_EQ(app.splash.lblVersion.caption.substr(0, 8), "version ");
  EXPECT_TRUE(fs::is_directory(toPath(app.session.gInfoFolder)));
  frmSplash_Timer(app);
  EXPECT_EQ(told(), Lines{});
  frmSplash_Timer(app);
  EXPECT_EQ(told(), (Lines{"show frmLogInNew", "focus frmLogInNew"}));
  EXPECT_EQ(app.logIn.LstDb.rows, (Lines{"tableinf.mdb"}));
  EXPECT_TRUE(fs::exists(Log::file(scripted.host.machine)));
  frmSplash_Timer(app);
  frmSplash_Timer(app);
  EXPECT_EQ(told(), Lines{});
  frmSplash_Timer(app);
  EXPECT_EQ(told(), (Lines{"focus frmLogInNew", "close frmSplash"}));
  frmSplash_Timer(app);
  EXPECT_EQ(told(), Lines{}) << "the timer has stopped";
}

TEST_F(SessionLifeTest, ALoginThatCannotTakeTheFocusEndsTheProgram) {
  focusWorks = false;
  startProgram(app);
  for (int tick = 0; tick < 5; ++tick) frmSplash_Timer(app);
  EXPECT_TRUE(app.ended);
  EXPECT_EQ(events.back(), "quit");
  EXPECT_TRUE(app.open.screens.empty());
}

TEST_F(SessionLifeTest, AFolderThatDoesNotAnswerIsToldWithoutTheSplashInFront) {
  openUserData(app.session, scripted.host);
  putAppSetting(*app.session.ini, "ReferenceDataBase", "1");
  putAppSetting(*app.session.ini, "DataBaseFolder", "/nowhere");
  startProgram(app);
  Lines before;
  scripted.host.dialogs.message = [&](std::string_view, int, std::string_view) {
    before = told();
    return static_cast<int>(kOk);
  };
  frmSplash_Timer(app);
  frmSplash_Timer(app);
  EXPECT_EQ(before, (Lines{"show frmSplash", "show frmLogInNew", "close frmSplash"}));
}

TEST_F(SessionLifeTest, ALoginOpensBarIconAndListAndKeepsTheDetailScreenHidden) {
  startProgram(app);
  frmSplash_Timer(app);
  frmSplash_Timer(app);
  told();
  logIn(app);
  EXPECT_EQ(told(),
            (Lines{"close frmSplash", "show frmAppBar", "show frmTASK", "show frmTBList", "close frmLogInNew"}));
  EXPECT_EQ(app.session.gSessionState, 1);
  EXPECT_EQ(app.list.lblDbServer.caption, "(local)");
  EXPECT_EQ(app.list.CmbSystem.entries, (Lines{"<新しいシステム>", "<全システム共通>", "販売"}));
  ASSERT_TRUE(app.open.has("frmTBDetail"));
  EXPECT_FALSE(app.open.find("frmTBDetail")->visible);
  EXPECT_TRUE(fs::is_directory(workFolder()));
  frmAppBar_Activate(app);
  EXPECT_EQ(told(), Lines{}) << "only the first activation opens anything";
}

TEST_F(SessionLifeTest, ARefusedLoginStaysAndTheFifthPressEnds) {
  startProgram(app);
  frmSplash_Timer(app);
  frmSplash_Timer(app);
  app.logIn.txtUserName.text = "nobody";
  for (int attempt = 0; attempt < 4; ++attempt) {
    scripted.expect("確認", "ユーザー名が未登録です.\n管理者に確認してください.");
    logIn(app);
    EXPECT_FALSE(app.ended);
    EXPECT_TRUE(app.open.has("frmLogInNew"));
  }
  scripted.expect("確認", "ログイン回数を超えました.\nプログラムを終了します.");
  logIn(app);
  EXPECT_TRUE(app.ended);
  EXPECT_EQ(events.back(), "quit");
}

TEST_F(SessionLifeTest, CancellingTheLoginEndsWithoutASession) {
  startProgram(app);
  frmSplash_Timer(app);
  frmSplash_Timer(app);
  EXPECT_FALSE(closeScreen(app, "frmLogInNew"));
  EXPECT_TRUE(app.ended);
  EXPECT_FALSE(fs::exists(Log::file(scripted.host.machine)));
}

TEST_F(SessionLifeTest, LogOffAsksAboutUnsavedWorkFirst) {
  enter();
  chooseRow(0);
  edit();
  expectKeepEditing("表A", kYes);
  CmdLogOff_Click(app);
  EXPECT_EQ(app.session.gSessionState, 1);
  expectKeepEditing("表A", kNo);
  scripted.expect("確認", "ログオフしますか?", kNo);
  CmdLogOff_Click(app);
  EXPECT_EQ(app.session.gSessionState, 1);
  EXPECT_TRUE(app.detail().changed) << "nothing is dropped before the log-off";
}

TEST_F(SessionLifeTest, LogOffClosesAllAndTheLoginTakesAnotherUser) {
  enter();
  chooseRow(0);
  openDetail(app, "2");
  touch(workFolder() / "left.TMP");
  told();
  scripted.expect("確認", "ログオフしますか?", kYes);
  CmdLogOff_Click(app);
  EXPECT_EQ(told(), (Lines{"show frmMessageClose", "close frmTBDetail:2", "close frmTBDetail", "close frmTBList",
                           "close frmTASK", "close frmAppBar", "show frmLogInNew", "focus frmLogInNew",
                           "close frmMessageClose"}));
  EXPECT_EQ(app.session.gDB, nullptr);
  EXPECT_TRUE(app.details.empty());
  EXPECT_FALSE(fs::exists(workFolder() / "left.TMP"));
  EXPECT_EQ(app.open.names(), (Lines{"frmLogInNew"}));
  EXPECT_FALSE(app.ended);

  app.logIn.txtUserName.text = "guest";
  logIn(app);
  EXPECT_TRUE(app.session.gIsGuest);
  EXPECT_EQ(app.list.CmbSystem.text, "販売") << "the list opens where it was left";
  EXPECT_EQ(app.list.CmbTitle.text, "テーブル名");
  EXPECT_EQ(app.list.LstTable.count(), 2);
  EXPECT_FALSE(app.list.mnuAdd.enabled);
}

TEST_F(SessionLifeTest, TheExitSweepsAndEndsOnce) {
  enter();
  for (const char* name : {"販売_ER.xls", "temptemptemp.xls", "a.emf", "b.tmp", "TEMPTEMP.XLS", "c.log"})
    touch(workFolder() / name);
  const fs::path other = scripted.host.machine.tempFolder / "販売_-_-";
  fs::create_directories(other);
  touch(other / "Sql_A.txt");

  scripted.expect("終了確認", "終了します.", kNo);
  CmdClose_Click(app);
  EXPECT_FALSE(app.ended);
  scripted.expect("終了確認", "テーブルリスト を終了します.", kYes);
  EXPECT_FALSE(closeScreen(app, "frmTBList"));
  EXPECT_TRUE(app.ended);
  EXPECT_FALSE(fs::exists(workFolder()));
  EXPECT_FALSE(fs::exists(other));
  EXPECT_FALSE(fs::exists(Log::file(scripted.host.machine)));
  EXPECT_TRUE(app.open.screens.empty());
  EXPECT_EQ(std::count(events.begin(), events.end(), "quit"), 1);
  CmdClose_Click(app);
  EXPECT_EQ(std::count(events.begin(), events.end(), "quit"), 1) << "a second press while it ends asks nothing";
}

TEST_F(SessionLifeTest, SweepingTakesOnlyWhatRunsLeave) {
  const fs::path folder = scripted.folder.path() / "work";
  fs::create_directories(folder / "keep.tmp");
  for (const char* name : {"x_er.xls", "mine.xls", "my temptemp.xls", "y.EMF"}) touch(folder / name);
  touch(folder / "keep.tmp" / "inner");
  sweepWorkFolder(folder, DateTime{2030, 1, 1, 0, 0, 0});
  EXPECT_FALSE(fs::exists(folder / "x_er.xls") || fs::exists(folder / "y.EMF"));
  EXPECT_TRUE(fs::exists(folder / "mine.xls") && fs::exists(folder / "my temptemp.xls"));
  EXPECT_TRUE(fs::exists(folder / "keep.tmp" / "inner"));
  sweepWorkFolder(folder / "missing", DateTime{2030, 1, 1, 0, 0, 0});
}

TEST_F(SessionLifeTest, SiblingProgramsStartOnceThisOneHasLetGo) {
  enter();
  scripted.expect("入手して!!", "レプリカ管理プログラムが存在ません.");
  CmdRep_Click(app);
  const fs::path program = scripted.host.machine.programFolder / "Drennovar.exe";
  touch(program);
  bool closedBefore = false;
  scripted.host.opener.startProgram = [&](const fs::path& started) {
    closedBefore = started == program && app.session.gDB == nullptr;
    return true;
  };
  scripted.expect("終了確認", "レプリカの管理を行います.\nQuillmardenを一旦終了します.", kYes);
  CmdRep_Click(app);
  EXPECT_TRUE(closedBefore);
  EXPECT_TRUE(app.ended);
}

TEST_F(SessionLifeTest, TwoProgramsWorkOnOneRepository) {
  enter();
  ScriptedHost other;
  fs::copy_file(scripted.host.machine.programFolder / "tableinf.mdb",
                other.host.machine.programFolder / "tableinf.mdb");
  fs::remove(other.host.machine.programFolder / "tableinf.mdb");
  fs::create_hard_link(scripted.host.machine.programFolder / "tableinf.mdb",
                       other.host.machine.programFolder / "tableinf.mdb");
  Application second(other.host);
  attach(second);
  enter(second);
  second.list.LstTable.selected[0] = true;
  other.expect("削除確認", "選択された\n  [A]\nを削除します.", kYes);
  ASSERT_TRUE(pressMenu(second, "frmTBList", "mnuDelete"));
  other.expect("終了確認", "終了します.", kYes);
  CmdClose_Click(second);
  EXPECT_FALSE(pGetTableList(app.session, scripted.host, app.list));
  ASSERT_EQ(app.list.LstTable.count(), 1);
  EXPECT_EQ(tableListName(app.list.LstTable.rows[0]), "B");
}

}  // namespace
}  // namespace quillmarden
