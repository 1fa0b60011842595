#include "common/text.h"
#include "shell/detail_commands.h"
#include "shell/screen_buttons.h"
#include "shell/screen_table.h"
#include "shell_fixture.h"

namespace quillmarden {
namespace {

/// Screens with something typed that is not saved.
class LostWorkTest : public ShellTest {
 protected:
  struct Typed {
    const char* screen;
    std::function<void()> type;
  };

  std::vector<Typed> screens() {
    return {{"frmTBDetail", [this] { edit(); }},
            {"frmTBInfo",
             [this] {
               openTableInfo(app, "1");
               app.tbInfo.TxtMemo.text = "typed";
             }},
            {"frmSystemInf",
             [this] {
               CmdSystem_Click(app);
               app.systemInf.TxtMemo.text = "typed";
             }},
            {"frmMemo",
             [this] {
               chooseRow(0);
               openMemo(app, "frmTBDetail");
               Spread_Change(app.memo, 1, 1);
             }},
            {"frmKENSU",
             [this] {
               openScreen(app, "frmKENSU");
               app.kenSu.TxtName.text = "typed";
             }},
            {"frmDivision",
             [this] {
               openScreen(app, "frmDivision");
               app.division.changed = true;
             }},
            {"frmDiviInfo", [this] {
               mnuAdd_Click(app.session, app.windows, app.diviInfo);
               app.diviInfo.TxtDivName.text = "typed";
             }}};
  }
};

TEST_F(LostWorkTest, NoQuestionGivesItUpWithoutAWord) {
  enter();
  chooseRow(0);
  for (const Typed& one : screens()) {
    SCOPED_TRACE(one.screen);
    one.type();
    ASSERT_TRUE(app.open.has(one.screen));
    for (const int silent : {kByClosing, kByEnter}) {
      scripted.answerAll(silent);
      scripted.messages.clear();
      EXPECT_TRUE(closeScreen(app, one.screen));
      EXPECT_EQ(scripted.messages.size(), 1U);
      CmdLogOff_Click(app);
      CmdClose_Click(app);
      EXPECT_FALSE(app.ended);
      ASSERT_TRUE(app.session.gDB);
      ASSERT_TRUE(app.open.has(one.screen));
    }
    app.windows.close(one.screen);
    app.detail().changed = false;
  }
}

TEST_F(LostWorkTest, AnotherTableOrSystemAsksBeforeItTakesTheScreen) {
  enter();
  chooseRow(0);
  openTableInfo(app, "1");
  app.tbInfo.TxtJPN.text = "表A改";
  expectKeepEditing("表A改", kYes);
  openTableInfo(app, "2");
  EXPECT_EQ(app.tbInfo.TxtTableName.text, "A");
  expectKeepEditing("表A改", kNo);
  openTableInfo(app, "2");
  EXPECT_EQ(app.tbInfo.TxtTableName.text, "B");
  openTableInfo(app, "");
  EXPECT_EQ(app.tbInfo.TxtTableName.text, "") << "nothing typed, nothing asked";

  CmdSystem_Click(app);
  app.systemInf.TxtMemo.text = "改";
  app.list.CmbSystem.text = "<新しいシステム>";
  expectKeepEditing("販売", kYes);
  chooseSystem(app);
  EXPECT_EQ(app.list.CmbSystem.text, "販売");
  EXPECT_EQ(app.systemInf.TxtMemo.text, "改");
  app.list.CmbSystem.text = "<新しいシステム>";
  expectKeepEditing("販売", kNo);
  chooseSystem(app);
  EXPECT_FALSE(app.open.has("frmSystemInf") || app.open.has("frmTBInfo")) << "they speak of the former System";
  CmdSystem_Click(app);
  EXPECT_EQ(app.systemInf.TxtSystemName.text, "");
}

TEST_F(LostWorkTest, ARenameLogsOffOnlyWhenNothingIsBeingEdited) {
  enter();
  chooseRow(0);
  edit();
  CmdSystem_Click(app);
  app.systemInf.TxtSystemNameNew.text = "営業";
  expectKeepEditing("表A", kYes);
  cmdChange_Click(app);
  EXPECT_TRUE(app.detail().changed);
  EXPECT_EQ(app.session.gCurrentSystemName, "販売");
}

TEST_F(LostWorkTest, AClickOnTheTableThatIsBeingEditedShowsIt) {
  enter();
  chooseRow(0);
  edit();
  told();
  chooseRow(0);
  EXPECT_EQ(told(), (Lines{"show frmTBDetail"}));
  EXPECT_TRUE(app.detail().changed);
}

TEST_F(LostWorkTest, ANewTableOpensInTheFieldGridAndANewSystemIsChosen) {
  enter();
  chooseRow(0);
  const auto makeTable = [this](const std::string& name) {
    openTableInfo(app, "");
    frmTBInfo& info = app.tbInfo;
    info.TxtJPN.text = "新" + name;
    info.TxtTableName.text = info.TxtRyaku.text = name;
    info.TxtMemo.text = "概要";
    info.CmbBunrui.text = "マスタ";
    info.CmbKanKaku.text = "毎日";
    scripted.answerAll(kYes);
    ASSERT_FALSE(cmdOK_Click(app.session, app.host, app.windows, info));
    app.windows.close("frmTBInfo");
  };
  makeTable("N1");
  EXPECT_EQ(app.detail().txtTableNameENG.text, "N1");
  EXPECT_EQ(tableListName(app.list.LstTable.text()), "N1") << "its row is chosen";
  edit();
  told();
  makeTable("N2");
  EXPECT_EQ(app.detail().txtTableNameENG.text, "N1") << "what is being edited stays";
  EXPECT_TRUE(app.detail().changed);
  EXPECT_EQ(app.detail("frmTBDetail:2").txtTableNameENG.text, "N2");
  const Lines shown = told();
  EXPECT_EQ(shown.back(), "focus frmTBDetail:2");

  app.detail().changed = false;
  for (const bool hidden : {false, true}) {
    app.list.CmbSystem.text = "<新しいシステム>";
    chooseSystem(app);
    CmdSystem_Click(app);
    frmSystemInf& system = app.systemInf;
    system.TxtSystemName.text = hidden ? "秘密" : "会計";
    system.TxtMemo.text = "概要";
    system.CmbDBType.text = "Oracle";
    system.ChkNoPut.value = hidden;
    ASSERT_TRUE(cmdOK_Click(app.session, app.host, system));
    settleScreens(app);
    EXPECT_EQ(app.list.CmbSystem.text, hidden ? "<新しいシステム>" : "会計");
    EXPECT_EQ(app.session.gCurrentSystemName, app.list.CmbSystem.text);
  }
}

}  // namespace
}  // namespace quillmarden
