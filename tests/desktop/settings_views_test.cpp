#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableView>

#include "desktop/theme.h"
#include "desktop_fixture.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

class SettingsViewsTest : public DesktopTest {
 protected:
  void openSystem(std::string_view name) {
    logInTo(name);
    press("frmTBList", "CmdSystem");
  }
  void openOptions() {
    logInTo();
    press("frmAppBar", "CmdInfo");
  }
  /// Types over what a field holds.
  void fill(std::string_view screen, const char* name, const char* text) {
    auto& field = control<QLineEdit>(screen, name);
    field.setFocus();
    field.selectAll();
    if (*text == '\0')
      QTest::keyClick(&field, Qt::Key_Delete);
    else
      type(field, text);
    settle();
  }
  bool seen(std::string_view screen, const char* name) { return control(screen, name).isVisible(); }
  std::string stored(const std::string& column, const std::string& system) {
    Recordset row =
        app.session.gDB->openRecordset("Select " + column + " From MAS_SYSTEM Where システム名 = '" + system + "'");
    return row.eof() ? "no row" : std::string(row.text(0));
  }
  std::string setting(std::string_view key) { return gGetAppSetting(*app.session.ini, key); }
};

TEST_F(SettingsViewsTest, ASystemIsChangedAndTheListFollows) {
  openSystem("販売管理_Oracle");
  EXPECT_TRUE(control<QLineEdit>("frmSystemInf", "TxtSystemName").isReadOnly());
  fill("frmSystemInf", "TxtDataSource", "");
  control<QCheckBox>("frmSystemInf", "ChkDataBase").setChecked(false);
  press("frmSystemInf", "ChkDataBase");
  scripted.expect("入力確認", "ODBCデータソース名が未設定です.");
  press("frmSystemInf", "cmdOK");
  EXPECT_EQ(view("frmSystemInf").focusWidget(), &control("frmSystemInf", "TxtDataSource"));

  fill("frmSystemInf", "TxtDataSource", "HANBAI2");
  fill("frmSystemInf", "txtUserName", "scott");
  press("frmSystemInf", "CmdOther");
  press("frmSystemInf", "ChkFieldNameUcase");
  press("frmSystemInf", "ChkFieldNameLcase");
  EXPECT_FALSE(control<QCheckBox>("frmSystemInf", "ChkFieldNameUcase").isChecked());
  press("frmSystemInf", "ChkFieldNameAsTyped");
  EXPECT_FALSE(control<QCheckBox>("frmSystemInf", "ChkFieldNameLcase").isChecked());
  press("frmSystemInf", "ChkFieldNameLcase");
  EXPECT_FALSE(control<QCheckBox>("frmSystemInf", "ChkFieldNameAsTyped").isChecked());
  press("frmSystemInf", "ChkChangeData");
  scripted.expect("確認", "登録内容を更新します.", kYes);
  QTest::keyClick(&view("frmSystemInf"), Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !front->find("frmSystemInf"); }, 2000));  // the button is seen pressed
  EXPECT_EQ(stored("odbcsouce", "販売管理_Oracle"), "HANBAI2");
  EXPECT_EQ(stored("field_name_lcase", "販売管理_Oracle"), "-1");
  EXPECT_EQ(stored("修正許可", "販売管理_Oracle"), "0");
  EXPECT_FALSE(app.session.gCanEdit);
}

TEST_F(SettingsViewsTest, ANewSystemJoinsTheList) {
  openSystem(kNewSystem);
  EXPECT_TRUE(control("frmSystemInf", "TxtSystemName").hasFocus());
  EXPECT_FALSE(seen("frmSystemInf", "fraSystemChange"));
  fill("frmSystemInf", "TxtSystemName", "在庫管理");
  type(control("frmSystemInf", "TxtMemo"), "倉庫の在庫");
  pick("frmSystemInf", "CmbDBType", "PostgreSQL");
  scripted.expect("確認", "登録内容を更新します.", kYes);
  press("frmSystemInf", "cmdOK");
  EXPECT_EQ(stored("DB_BLOCK_SIZE", "在庫管理"), "5432");
  EXPECT_EQ(stored("field_name_astyped", "在庫管理"), "-1");
  pick("frmTBList", "CmbSystem", "在庫管理");
  EXPECT_EQ(app.session.gCurrentDbType, "PostgreSQL");
}

TEST_F(SettingsViewsTest, ThePanelOfASystemFollowsItsDatabaseKind) {
  openSystem("販売管理_Oracle");
  EXPECT_FALSE(seen("frmSystemInf", "FraDBSetting"));
  EXPECT_FALSE(seen("frmSystemInf", "FraOther"));
  press("frmSystemInf", "CmdOracleSetting");
  EXPECT_TRUE(seen("frmSystemInf", "TxtBlockSize") && seen("frmSystemInf", "TxtIndexSpace"));
  EXPECT_EQ(control<QAbstractButton>("frmSystemInf", "CmdOracleSetting").text(), QStringLiteral("DB情報閉じる"));
  pick("frmSystemInf", "CmbDBType", "SQL Server");
  EXPECT_FALSE(seen("frmSystemInf", "TxtBlockSize"));
  EXPECT_EQ(control<QLabel>("frmSystemInf", "lblTableSpace").text(), QStringLiteral("スキーマ名"));
  fill("frmSystemInf", "TxtTableSpace", "dbo");
  pick("frmSystemInf", "CmbDBType", "MySQL");
  EXPECT_TRUE(seen("frmSystemInf", "TxtBlockSize"));
  EXPECT_FALSE(seen("frmSystemInf", "TxtIndexSpace") || seen("frmSystemInf", "lblIndex"));
  pick("frmSystemInf", "CmbDBType", "Access");
  EXPECT_FALSE(seen("frmSystemInf", "FraDBSetting"));
  press("frmSystemInf", "CmdOracleSetting");
  EXPECT_TRUE(seen("frmSystemInf", "FraAccess"));
  fill("frmSystemInf", "TxtAccessFileName", "hanbai.mdb");
  EXPECT_EQ(control<QLineEdit>("frmSystemInf", "TxtUserNameAccess").text(), QStringLiteral("hanbai.mdb"));
  scripted.expect("確認", "Access以外は対応していません.");
  press("frmSystemInf", "cmdConvAccessSQLServer");
}

TEST_F(SettingsViewsTest, ARenamedSystemEndsTheSession) {
  openSystem("販売管理_Oracle");
  fill("frmSystemInf", "TxtSystemNameNew", "販売新");
  scripted.expect("変更確認", "システム名を変更します.", kYes);
  scripted.expect("確認", "システム名を変更しました.\nログオフします.");
  press("frmSystemInf", "cmdChange");
  EXPECT_NE(front->find("frmLogInNew"), nullptr);
  EXPECT_EQ(front->find("frmTBList"), nullptr);
  press("frmLogInNew", "cmdOK");
  ASSERT_TRUE(QTest::qWaitFor([this] { return front->find("frmTBList") != nullptr; }, 5000));
  settle();
  pick("frmTBList", "CmbSystem", "販売新");
  EXPECT_GT(app.list.LstTable.count(), 0);
}

TEST_F(SettingsViewsTest, OptionsAreKeptAndSeenAtOnce) {
  openOptions();
  fill("frmOptions", "TxtFontSize2TableList", "99");
  view("frmOptions").findChild<QTabWidget*>()->setCurrentIndex(1);
  scripted.expect("入力確認", "文字の大きさは、6 から 72 までの数値で指定して下さい.");
  press("frmOptions", "cmdOK");
  EXPECT_TRUE(control("frmOptions", "TxtFontSize2TableList").hasFocus());  // back on its page

  fill("frmOptions", "TxtFontSize2TableList", "16");
  press("frmOptions", "ChkOption:0");
  const bool dblClick = app.options.ChkOption[0].value;
  auto* tabs = view("frmOptions").findChild<QTabWidget*>();
  tabs->setCurrentIndex(1);
  press("frmOptions", "ChkPutMemberInfo:7");
  tabs->setCurrentIndex(2);
  press("frmOptions", "ChkSpreadCopy:16");
  QTest::keyClick(&view("frmOptions"), Qt::Key_Return);
  settle();
  EXPECT_EQ(front->find("frmOptions"), nullptr);
  EXPECT_EQ(setting("FontSize2TableList"), "16");
  EXPECT_EQ(setting("TableListBoxDblClick"), dblClick ? "1" : "0");
  EXPECT_EQ(setting("SpreadCopy16"), "0");
  EXPECT_EQ(setting("PutMemberInfoYakuwari"), "0");
  EXPECT_EQ(control("frmTBList", "LstTable").font().pointSizeF(), 16);
}

TEST_F(SettingsViewsTest, OpenWindowsKeepTheirLettersWhenTheLookChanges) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  for (const char* screen : {"frmDivision", "frmMemo"}) turn.run([&] { openScreen(app, screen); });
  const std::pair<const char*, const char*> places[] = {{"frmTBList", "LstTable"},
                                                        {"frmTBDetail", "Spread"},
                                                        {"frmDivision", "Spread"},
                                                        {"frmDivision", "lstDivision"},
                                                        {"frmMemo", "Spread"}};
  for (const Look look : {Look::Light, Look::Dark, Look::Light}) {
    applyTheme(*qApp, look);
    settle();
    for (const auto& [screen, name] : places)
      EXPECT_EQ(control<QTableView>(screen, name).font().pointSizeF(), 12) << screen << " " << name;
  }
}

TEST_F(SettingsViewsTest, AColourIsChosenFromThePaletteByKeys) {
  openOptions();
  const std::string before = setting("BackColorKEY");
  press("frmOptions", "CmdBackColor:0");
  auto& chosen = control<QAbstractButton>("frmCOLOR", "lblCOL:38");
  EXPECT_TRUE(chosen.isChecked());
  EXPECT_TRUE(chosen.hasFocus());
  QTest::keyClick(&chosen, Qt::Key_Right);
  settle();
  EXPECT_EQ(app.color.selected, 39);
  QTest::keyClick(view("frmCOLOR").focusWidget(), Qt::Key_Return);
  settle();
  EXPECT_EQ(front->find("frmCOLOR"), nullptr);
  const Colour taken = *app.options.lblBackColor[0].backColour;
  EXPECT_TRUE(control<QLabel>("frmOptions", "lblBackColor:0").styleSheet().contains(toBackground(taken).name()));

  press("frmOptions", "CmdBackColor:1");
  QTest::mouseClick(&control("frmCOLOR", "lblCOL:3"), Qt::LeftButton);
  QTest::keyClick(&view("frmCOLOR"), Qt::Key_Escape);  // drops the choice
  settle();
  press("frmOptions", "cmdOK");
  EXPECT_EQ(setting("BackColorKEY_INDEX"), "39");
  EXPECT_EQ(setting("BackColorKEY"), std::to_string(taken));
  EXPECT_NE(setting("BackColorKEY"), before);
  EXPECT_EQ(setting("BackColorADD_INDEX"), "39");
  EXPECT_EQ(app.session.settings.backColorKeyIndex, 39);
}

}  // namespace
}  // namespace quillmarden
