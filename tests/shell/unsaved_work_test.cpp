#include "shell_fixture.h"

namespace quillmarden {
namespace {

/// A program that died while it edited table A.
class UnsavedWorkTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    auto died = std::make_unique<Application>(scripted.host);
    attach(*died);
    enter(*died);
    died->list.LstTable.listIndex = 0;
    LstTable_Click(*died);
    died->detail().Spread.setText(field_col::kFieldName, 1, "typed");
    died->detail().changed = true;
    ASSERT_TRUE(died->backups["frmTBDetail"].keep(died->session, scripted.host, died->detail()));
    keepListScreen(died->session, died->list);
  }

  void logInAgain() {
    startProgram(app);
    frmSplash_Timer(app);
    frmSplash_Timer(app);
    logIn(app);
  }
  void expectOffer(int answer) {
    scripted.expect("確認",
                    "前回、保存されていない編集内容があります.\n  販売 : 表A (2026/11/24 09:05:00)\n  1行 : "
                    "admin\n編集を再開しますか?",
                    answer);
  }
  bool offered() { return !leftOverGrids(app.session).empty(); }
};

TEST_F(UnsavedWorkTest, IsTakenUpWhereItWasLeft) {
  expectOffer(kYes);
  logInAgain();
  EXPECT_EQ(app.detail().Spread.text(field_col::kFieldName, 1), "typed");
  EXPECT_TRUE(app.detail().changed && app.open.find("frmTBDetail")->visible);
  EXPECT_FALSE(offered()) << "this program holds the copy now";
  expectKeepEditing("表A", kNo);
  closeScreen(app, "frmTBDetail");
  EXPECT_TRUE(app.backups.empty());
  EXPECT_FALSE(offered()) << "given up, the copy is gone";
}

TEST_F(UnsavedWorkTest, MakesItsSystemCurrentWhenThatIsAnother) {
  openUserData(app.session, scripted.host);
  putFormSetting(*app.session.ini, "frmTBList", "CmbSystem", "<全システム共通>");
  expectOffer(kYes);
  logInAgain();
  EXPECT_EQ(app.session.gCurrentSystemName, "販売");
  EXPECT_EQ(app.list.CmbSystem.text, "販売");
  EXPECT_TRUE(app.detail().changed);
}

TEST_F(UnsavedWorkTest, IsAskedForOnceASessionAndDropped) {
  expectOffer(kNo);
  scripted.expect("確認", "編集内容を破棄しますか?\n  販売 : 表A (2026/11/24 09:05:00)", kNo);
  logInAgain();
  app.list.CmbSystem.text = "<全システム共通>";
  chooseSystem(app);
  EXPECT_TRUE(offered());

  scripted.expect("確認", "ログオフしますか?", kYes);
  CmdLogOff_Click(app);
  expectOffer(kNo);
  scripted.expect("確認", "編集内容を破棄しますか?\n  販売 : 表A (2026/11/24 09:05:00)", kYes);
  logIn(app);
  EXPECT_FALSE(offered());
}

}  // namespace
}  // namespace quillmarden
