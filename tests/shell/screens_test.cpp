#include "shell/screen_table.h"
#include "shell_fixture.h"

namespace quillmarden {
namespace {

using ScreensTest = ShellTest;

TEST_F(ScreensTest, HidingLeavesBarAndIconAndBringsTheScreensBackInOrder) {
  enter();
  chooseRow(0);
  const std::string further = openDetail(app, "2");
  openScreen(app, "frmAbout");
  screenActivated(app, "frmTBList");
  told();
  CmdMin_Click(app);
  EXPECT_EQ(told(), (Lines{"hide frmTBDetail", "hide frmTBDetail:2", "hide frmAbout", "hide frmTBList"}));
  EXPECT_EQ(app.bar.CmdMinCaption, "画面の表示");
  EXPECT_EQ(captionOf(app, *findEntry("frmTASK", "Mnu_Open")), "開く");
  EXPECT_FALSE(closeScreen(app, further));
  told();
  ASSERT_TRUE(pressMenu(app, "frmTASK", "Mnu_Open"));
  EXPECT_EQ(told(), (Lines{"show frmTBDetail", "show frmAbout", "show frmTBList"}));
  EXPECT_EQ(app.bar.CmdMinCaption, "画面の隠す");
  EXPECT_EQ(captionOf(app, *findEntry("frmTASK", "Mnu_Open")), "最小化");
}

TEST_F(ScreensTest, AHiddenScreenIsShownBeforeItAsks) {
  enter();
  chooseRow(0);
  edit();
  CmdSQL_Click(app);
  ASSERT_TRUE(app.open.allHidden);
  expectKeepEditing("表A", kYes);
  CmdClose_Click(app);
  EXPECT_FALSE(app.open.allHidden);
  EXPECT_FALSE(app.ended);
}

TEST_F(ScreensTest, AClickShowsTheTableAndTellsOthers) {
  enter();
  Lines chosen;
  app.windows.tableChosen = [&](std::string_view id) { chosen.emplace_back(id); };
  chooseRow(1);
  EXPECT_EQ(told(), (Lines{"show frmTBDetail"}));
  EXPECT_EQ(app.detail().txtTableNameENG.text, "B");
  EXPECT_EQ(chosen, (Lines{"2"}));
  EXPECT_EQ(app.list.lstForm.rows, (Lines{"表B : B\tfrmTBDetail"}));
  app.list.running = true;
  chooseRow(0);
  EXPECT_EQ(told(), Lines{}) << "a run goes through the tables unseen";
}

TEST_F(ScreensTest, FurtherDetailScreensStandBesideTheFirst) {
  enter();
  app.session.settings.tableListBoxDblClick = true;
  app.list.LstTable.listIndex = 1;
  LstTable_DblClick(app);
  EXPECT_EQ(told(), Lines{}) << "not while the detail screen is hidden";
  chooseRow(0);
  app.list.LstTable.listIndex = 1;
  LstTable_DblClick(app);
  EXPECT_EQ(openDetail(app, "1"), "frmTBDetail:3");
  EXPECT_EQ(openDetail(app, "99"), "") << "no such table";
  EXPECT_EQ(app.detail("frmTBDetail:2").txtTableNameENG.text, "B");
  EXPECT_EQ(app.activeDetail(), "frmTBDetail:3");
  screenActivated(app, "frmTBDetail:2");
  EXPECT_EQ(app.activeDetail(), "frmTBDetail:2");

  std::vector<std::string> arranged;
  app.display.arrange = [&](const std::vector<std::string>& names) { arranged = names; };
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuDetailsArrange"));
  EXPECT_EQ(arranged, (Lines{"frmTBDetail", "frmTBDetail:2", "frmTBDetail:3"}));

  openScreen(app, "frmdetailslist");
  ASSERT_EQ(app.detailsList.lstDetails.count(), 3);
  app.detailsList.lstDetails.listIndex = 2;
  told();
  lstDetails_DblClick(app);
  EXPECT_EQ(told(), (Lines{"show frmTBDetail:3"}));

  EXPECT_FALSE(closeScreen(app, "frmTBDetail:2"));
  EXPECT_EQ(openDetail(app, "2"), "frmTBDetail:2") << "a number that is free again";
}

TEST_F(ScreensTest, ClosingAsksAndTheMainDetailScreenOnlyHides) {
  enter();
  chooseRow(0);
  edit();
  told();
  expectKeepEditing("表A", kYes);
  EXPECT_TRUE(closeScreen(app, "frmTBDetail"));
  EXPECT_EQ(told(), Lines{});
  expectKeepEditing("表A", kNo);
  EXPECT_FALSE(closeScreen(app, "frmTBDetail"));
  EXPECT_EQ(told(), (Lines{"hide frmTBDetail"}));
  EXPECT_FALSE(app.detail().changed);
  EXPECT_TRUE(app.open.has("frmTBDetail"));
  chooseRow(0);
  EXPECT_EQ(told(), (Lines{"show frmTBDetail"}));
}

TEST_F(ScreensTest, TheWindowListRaisesMinimisesAndCloses) {
  enter();
  chooseRow(0);
  openDetail(app, "2");
  openScreen(app, "frmAbout");
  ASSERT_EQ(app.list.lstForm.rows, (Lines{"表A : A\tfrmTBDetail", "表B : B\tfrmTBDetail:2"}));
  EXPECT_FALSE(pressMenu(app, "frmTBList", "mnuFormClose")) << "no row is chosen";
  app.list.lstForm.listIndex = 1;
  told();
  lstForm_DblClick(app);
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuFormMin"));
  EXPECT_EQ(told(), (Lines{"show frmTBDetail:2", "minimise frmTBDetail:2"}));
  EXPECT_EQ(app.list.lstForm.listIndex, 1) << "the row stays chosen";
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuFormClose"));
  EXPECT_EQ(told(), (Lines{"close frmTBDetail:2"}));
  EXPECT_EQ(app.list.lstForm.count(), 1);
}

TEST_F(ScreensTest, AnotherSystemClearsTheDetailScreenAfterAQuestion) {
  app.windows.systemChanged("");
  enter();
  chooseRow(0);
  openDetail(app, "2");
  edit();
  app.list.CmbSystem.text = "<全システム共通>";
  expectKeepEditing("表A", kYes);
  chooseSystem(app);
  EXPECT_EQ(app.list.CmbSystem.text, "販売");
  EXPECT_TRUE(app.detail().changed);

  app.list.CmbSystem.text = "<全システム共通>";
  expectKeepEditing("表A", kNo);
  told();
  chooseSystem(app);
  EXPECT_EQ(app.session.gCurrentSystemName, "<全システム共通>");
  EXPECT_EQ(told(), (Lines{"hide frmTBDetail"}));
  EXPECT_EQ(app.detail().lblID.caption, "");
  EXPECT_EQ(app.detail("frmTBDetail:2").txtTableNameENG.text, "B");
  EXPECT_TRUE(app.detail("frmTBDetail:2").readOnly) << "no longer the current System's table";
}

TEST_F(ScreensTest, ASavedHeaderReachesListAndDetailScreens) {
  enter();
  chooseRow(0);
  openDetail(app, "1");
  edit();
  app.list.LstTable.listIndex = 0;
  mnuUpDate_Click(app);
  ASSERT_TRUE(app.open.has("frmTBInfo"));
  app.session.gDB->execute("UPDATE MAS_TABLEINFO SET 日本語名 = '新表' WHERE ID = 1");
  app.tbInfo.saved = true;
  closeScreen(app, "frmTBInfo");
  EXPECT_EQ(app.detail().txtTableNameJPN.text + app.detail("frmTBDetail:2").txtTableNameJPN.text, "新表新表");
  EXPECT_EQ(app.detail().Spread.text(field_col::kFieldName, 1), "typed") << "rows that wait to be saved stay";
  EXPECT_FALSE(app.tbInfo.saved);
}

TEST_F(ScreensTest, ScreensThatEndThemselvesGoWithTheNextEvent) {
  enter();
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuClass"));
  ASSERT_TRUE(app.open.has("frmDivision"));
  EXPECT_EQ(screenCaption(app, "frmDivision"), app.division.caption);
  EXPECT_NE(app.division.caption, "");
  told();
  ASSERT_FALSE(CmdClose_Click(scripted.host, app.division));
  settleScreens(app);
  EXPECT_EQ(told(), (Lines{"close frmDivision"}));
  EXPECT_EQ(app.division.caption, "") << "the record is blank again";
}

TEST_F(ScreensTest, EveryScreenHasOneRowAndAnUnknownOneIsTold) {
  Lines names;
  for (const ScreenKind& kind : screenTable()) names.emplace_back(kind.name);
  Lines unique = names;
  std::sort(unique.begin(), unique.end());
  EXPECT_EQ(std::unique(unique.begin(), unique.end()), unique.end());
  scripted.expect("確認", "frmNowhere\nこの画面は、まだ用意されていません.");
  openScreen(app, "frmNowhere");
  EXPECT_FALSE(app.open.has("frmNowhere"));
}

TEST_F(ScreensTest, SmallScreensDoTheirWork) {
  enter();
  showMSG(app, "done", 2);
  EXPECT_EQ(app.msg.TxtMSG.text, "done");
  frmMSG_Timer(app);
  EXPECT_TRUE(app.open.has("frmMSG"));
  frmMSG_Timer(app);
  EXPECT_FALSE(app.open.has("frmMSG"));
  {
    StopScreen stop(app);
    EXPECT_TRUE(app.open.has("frmSTOP"));
    EXPECT_FALSE(app.stop.pressed);
    CmdStop_Click(app.stop);
    EXPECT_TRUE(app.stop.pressed);
  }
  EXPECT_FALSE(app.open.has("frmSTOP"));
  EXPECT_FALSE(app.stop.pressed) << "the next run starts afresh";

  openScreen(app, "frmAbout");
  EXPECT_EQ(app.about.caption, "Quillmardenのﾊﾞｰｼﾞｮﾝ情報");
  EXPECT_EQ(app.about.lblVersion.caption, versionLabel());
  scripted.expect("確認", "現時点ではｼｽﾃﾑ情報を使用できません");
  cmdSysInfo_Click(app);

  bool onTop = false;
  app.display.keepBarOnTop = [&](bool value) { onTop = value; };
  ASSERT_TRUE(pressMenu(app, "frmAppBar", "mnuWindowTop"));
  EXPECT_TRUE(onTop && isChecked(app, "frmAppBar", *findEntry("frmAppBar", "mnuWindowTop")));
  ASSERT_TRUE(pressMenu(app, "frmAppBar", "mnuWindowTop"));
  EXPECT_FALSE(onTop);
}

}  // namespace
}  // namespace quillmarden
