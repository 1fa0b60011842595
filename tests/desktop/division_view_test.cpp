#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

#include "desktop/plain_grid.h"
#include "desktop_fixture.h"
#include "dictionary/frm_division.h"
#include "editing/frm_tb_detail.h"
#include "shell/detail_commands.h"
#include "shell/menu_map.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

namespace col = division_col;

class DivisionViewTest : public DesktopTest {
 protected:
  void open() {
    logInTo("販売管理_Oracle");
    turn.run([this] { pressMenu(app, "frmTBList", "mnuClass"); });
    settle();
  }
  void trigger(const char* name) {
    auto* action = view("frmDivision").findChild<QAction*>(QString::fromLatin1(name));
    ASSERT_NE(action, nullptr) << name;
    action->trigger();
    settle();
  }
  PlainGrid& grid() { return control<PlainGrid>("frmDivision", "Spread"); }
  /// What the person sees in a cell.
  std::string shown(int column, int row) {
    return fromQt(grid().model()->index(row - 1, column - 1).data().toString());
  }
  bool isPreset(int row) {
    return grid().model()->index(row - 1, col::kPreset - 1).data(Qt::CheckStateRole) == Qt::Checked;
  }
  void togglePreset(int row) {
    grid().goTo(col::kPreset, row);
    QTest::keyClick(&grid(), Qt::Key_Space);
  }
  void keys(const char* text) {
    QTest::keyClicks(&grid(), QString::fromLatin1(text));
    QTest::keyClick(grid().indexWidget(grid().currentIndex()), Qt::Key_Return);
  }
  void outline(int row, const char* text) {
    grid().model()->setData(grid().model()->index(row - 1, col::kOutline - 1), QString::fromUtf8(text));
  }
  void chooseList(const std::string& name) {
    for (int row = 0; row < app.division.lstDivision.count(); ++row)
      if (splitValueListRow(app.division.lstDivision.rows[static_cast<std::size_t>(row)]).name == name)
        return chooseRow("frmDivision", "lstDivision", row);
    FAIL() << "no list " << name;
  }
  std::vector<std::string> entries(const std::string& name) {
    std::vector<std::string> found;
    for (Recordset row = app.session.gDB->openRecordset(
             "SELECT 値, 内容, 初期値 FROM MAS_DIVISIONDETAILES WHERE システム名 = '販売管理_Oracle' AND 値名称 = '" +
             name + "' ORDER BY 行番号");
         !row.eof(); row.moveNext())
      found.push_back(std::string(row.text(0)) + "|" + std::string(row.text(1)) + "|" + std::string(row.text(2)));
    return found;
  }
};

TEST_F(DivisionViewTest, APersonMakesAValueListAndSavesItsEntries) {
  open();
  const int before = app.division.lstDivision.count();
  trigger("mnuAdd");
  EXPECT_EQ(QApplication::activeModalWidget(), &view("frmDiviInfo")) << "other windows wait for it";
  scripted.expect("入力確認", "値名称が未設定です.");
  press("frmDiviInfo", "cmdOK");
  EXPECT_EQ(view("frmDiviInfo").focusWidget(), &control("frmDiviInfo", "TxtDivName"));
  type(control("frmDiviInfo", "TxtDivName"), "配送方法");
  pick("frmDiviInfo", "CmbClass", "区分");
  pick("frmDiviInfo", "CmbKata", "数値");
  type(control("frmDiviInfo", "Txtbiko"), "荷物の届け方");
  press("frmDiviInfo", "cmdOK");
  EXPECT_EQ(front->find("frmDiviInfo"), nullptr);
  EXPECT_EQ(app.division.lstDivision.count(), before + 1);
  EXPECT_EQ(control<QLabel>("frmDivision", "lblAtai").text(), QStringLiteral("配送方法"));
  EXPECT_EQ(control<QPlainTextEdit>("frmDivision", "TxtMemo").toPlainText(), QStringLiteral("荷物の届け方"));

  activate("frmDivision");
  grid().setFocus();
  grid().goTo(col::kValue, 1);
  keys("1");
  keys("2");
  EXPECT_EQ(grid().currentRow(), 3) << "Enter goes on to the next row";
  outline(1, "宅配便");
  outline(2, "引き取り");
  togglePreset(1);
  togglePreset(2);
  EXPECT_TRUE(isPreset(2) && !isPreset(1)) << "one row alone is preset";
  grid().undo();
  EXPECT_TRUE(isPreset(1) && !isPreset(2)) << "what a press did to another row is taken back with it";
  grid().redo();
  EXPECT_TRUE(isPreset(2) && !isPreset(1));
  EXPECT_FALSE(control("frmDivision", "picRen").isHidden());

  scripted.expect("確認", "登録内容を更新します.", kYes);
  scripted.expect("確認", "登録内容を更新しました.");
  press("frmDivision", "CmdUpDate");
  EXPECT_EQ(entries("配送方法"), (std::vector<std::string>{"1|宅配便|0", "2|引き取り|-1"}));
  EXPECT_TRUE(control("frmDivision", "picRen").isHidden());
  EXPECT_EQ(shown(col::kAuthor, 1), "yamada");
  grid().undo();
  EXPECT_EQ(shown(col::kValue, 1), "1") << "what was saved is not taken back";

  scripted.expect("出力確認", "値リストをExcel出力しますか?", kYes);
  scripted.expect("確認", "対象ファイルを開きます.");
  press("frmDivision", "CmdExcel");
  EXPECT_EQ(scripted.opened.size(), 1U);
  press("frmDivision", "CmdClose");
  EXPECT_EQ(front->find("frmDivision"), nullptr);
}

TEST_F(DivisionViewTest, RowsComeAndGoAndEachCommandIsOneStep) {
  open();
  chooseList("受注状態");
  grid().goTo(col::kValue, 2);
  trigger("mnuSpreadAdd");
  EXPECT_EQ(shown(col::kValue, 2) + "|" + shown(col::kValue, 3), "|1");
  grid().undo();
  EXPECT_EQ(shown(col::kValue, 2), "1");
  scripted.expect("削除確認", "行を削除しますか?", kYes);
  trigger("mnuSpreadDel");
  EXPECT_EQ(shown(col::kValue, 2), "2");
  grid().undo();
  EXPECT_EQ(shown(col::kValue, 2), "1");
  scripted.clipboard.clear();
  QApplication::clipboard()->setText(QStringLiteral("10\t十\r\nabc\t語\r\n12\t十二"));
  grid().goTo(col::kValue, 6);
  grid().paste();
  EXPECT_EQ(shown(col::kValue, 6) + "|" + shown(col::kValue, 7) + "|" + shown(col::kValue, 8), "10||12")
      << "a numeric list takes numbers alone";
  EXPECT_EQ(shown(col::kOutline, 7), "語");
}

TEST_F(DivisionViewTest, AnotherListShowsAfterTheQuestionAboutChanges) {
  open();
  chooseList("取引区分");
  EXPECT_EQ(shown(col::kOutline, 1), "掛売");
  outline(3, "クレジット");
  const std::string question = "内容が変更されています.\n    取引区分\nの編集を続けますか?";
  scripted.expect("確認", question, kYes);
  chooseList("削除フラグ");
  EXPECT_EQ(shown(col::kOutline, 3), "クレジット");
  EXPECT_EQ(control<QTableView>("frmDivision", "lstDivision").currentIndex().data().toString(),
            QStringLiteral("取引区分"));
  scripted.expect("確認", question, kNo);
  chooseList("削除フラグ");
  EXPECT_EQ(shown(col::kOutline, 1), "有効");
  // As many entries as the one before: the grid must not take it for that.
  chooseList("在庫管理フラグ");
  EXPECT_EQ(shown(col::kOutline, 1), "管理しない");

  outline(1, "しない");
  scripted.expect("確認", "データが修正されていますが閉じますか?", kNo);
  press("frmDivision", "CmdClose");
  EXPECT_NE(front->find("frmDivision"), nullptr);
  scripted.expect("確認", "データが修正されていますが閉じますか?", kYes);
  view("frmDivision").close();
  settle();
  EXPECT_EQ(front->find("frmDivision"), nullptr);
}

TEST_F(DivisionViewTest, AListIsChosenForAFieldAndANewOneCanBeMadeOnTheWay) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  turn.run([this] {
    app.detail().activeRow = 1;
    openDivisionRef(app, "frmTBDetail");
  });
  const std::string kind = fromQt(control<QLabel>("frmDiviRef", "lblKbn").text());
  EXPECT_EQ(kind, "区分");
  press("frmDiviRef", "CmdMake");
  ASSERT_NE(front->find("frmDivision"), nullptr);
  EXPECT_TRUE(view("frmDiviRef").isVisible()) << "it waits behind the new window";

  scripted.expect("確認", "検索を開始します.", kYes);
  QTest::keyClick(&control("frmDiviRef", "TxtWhere"), Qt::Key_Return);
  settle();
  ASSERT_EQ(app.diviRef.lstDivName.count(), 3);
  scripted.expect("確認?", "内容が選択されていません.\n再度選択しますか?", kYes);
  press("frmDiviRef", "cmdOK");
  chooseRow("frmDiviRef", "lstDivName", 1);
  const std::string name = app.diviRef.lstDivName.rows[1];
  press("frmDiviRef", "cmdOK");
  EXPECT_EQ(front->find("frmDiviRef"), nullptr);
  EXPECT_EQ(app.detail().Spread.text(field_col::kValueList, 1), name);
}

}  // namespace
}  // namespace quillmarden
