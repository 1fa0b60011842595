#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include "desktop/plain_grid.h"
#include "desktop_fixture.h"
#include "shell/detail_commands.h"
#include "shell/menu_map.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

class ListsViewTest : public DesktopTest {
 protected:
  void openFromList(const char* menu) {
    turn.run([&] { pressMenu(app, "frmTBList", menu); });
    settle();
  }
  std::vector<std::string> rows(const std::string& sql) {
    std::vector<std::string> found;
    for (Recordset row = app.session.gDB->openRecordset(sql); !row.eof(); row.moveNext()) {
      std::string line;
      for (int field = 0; field < row.fieldCount(); ++field) line.append(field == 0 ? "" : "|").append(row.text(field));
      found.push_back(line);
    }
    return found;
  }
};

using Lines = std::vector<std::string>;

TEST_F(ListsViewTest, APersonWritesAMemo) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  turn.run([this] { openMemo(app, "frmTBDetail"); });
  settle();
  auto& grid = control<PlainGrid>("frmMemo", "Spread");
  EXPECT_TRUE(control("frmMemo", "lblEdit").isHidden());
  activate("frmMemo");
  grid.setFocus();
  grid.goTo(memo_col::kSymbol, 1);
  QTest::keyClicks(&grid, QStringLiteral("A"));
  QTest::keyClick(grid.indexWidget(grid.currentIndex()), Qt::Key_Tab);
  EXPECT_EQ(grid.currentCol(), memo_col::kText);
  QTest::keyClicks(&grid, QStringLiteral("f"));
  QTest::keyClicks(grid.indexWidget(grid.currentIndex()), QStringLiteral("irst"));
  // Still being typed when the button is pressed.
  press("frmMemo", "CmdUpDate");
  EXPECT_EQ(rows("SELECT 日本語名, 備考, NUM FROM MAS_TABLEBIKO WHERE ID = " + app.memo.tableId), Lines{"A|first|1"});
  EXPECT_TRUE(control("frmMemo", "lblEdit").isHidden());

  grid.model()->setData(grid.model()->index(1, memo_col::kText - 1), QStringLiteral("二行目"));
  EXPECT_EQ(control<QLabel>("frmMemo", "lblEdit").text(), QStringLiteral("修正"));
  EXPECT_FALSE(control("frmMemo", "lblEdit").isHidden());
  grid.undo();
  EXPECT_EQ(app.memo.Spread.text(memo_col::kText, 2), "");
  scripted.expect("確認", "画面を閉じます.", kNo);
  press("frmMemo", "CmdClose");
  EXPECT_NE(front->find("frmMemo"), nullptr);
  scripted.expect("確認", "画面を閉じます.", kYes);
  press("frmMemo", "CmdClose");
  EXPECT_EQ(front->find("frmMemo"), nullptr);
}

TEST_F(ListsViewTest, APersonDefinesCounts) {
  logInTo("販売管理_Oracle");
  app.session.gDB->execute("UPDATE MAS_TABLEINFO SET 分類 = '区分' WHERE 日本語名 = '部署マスタ' OR 日本語名 = '倉庫'");
  app.session.gDB->execute("UPDATE MAS_TABLEINFO SET 分類 = '区分' WHERE ID = " +
                           std::string(tableListId(app.list.LstTable.rows[0])));
  openFromList("mnuKenSu");
  ASSERT_GT(app.kenSu.lstTb.count(), 0);
  EXPECT_TRUE(control("frmKENSU", "lstTb").isHidden());
  press("frmKENSU", "CmdRef");
  EXPECT_FALSE(control("frmKENSU", "lstTb").isHidden());

  activate("frmKENSU");
  type(control("frmKENSU", "TxtName"), "月次件数");
  type(control("frmKENSU", "Txtbiko"), "ひと月の件数");
  scripted.expect("確認", "件数が未設定です.");
  press("frmKENSU", "CmdUpDate");
  type(control("frmKENSU", "TxtSu"), "1200");
  control("frmKENSU", "TxtTb2").setFocus();
  chooseRow("frmKENSU", "lstTb", 0);
  QTest::keyClick(&control("frmKENSU", "lstTb"), Qt::Key_Return);
  settle();
  const std::string table = app.kenSu.lstTb.rows[0];
  EXPECT_EQ(control<QLineEdit>("frmKENSU", "TxtTb2").text(), toQt(table)) << "the box that had the cursor takes it";
  scripted.expect("確認", "更新します.", kYes);
  press("frmKENSU", "CmdUpDate");
  EXPECT_EQ(rows("SELECT システム名, 概要, 件数, テーブル2 FROM MAS_KENSU WHERE 定義名 = '月次件数'"),
            Lines{"販売管理_Oracle|ひと月の件数|1200|" + table});
  const auto& list = control<QTableView>("frmKENSU", "LstTeigi");
  EXPECT_EQ(list.currentIndex().data().toString(), QStringLiteral("月次件数")) << "without the ID behind it";

  press("frmKENSU", "CmdAddNew");
  EXPECT_EQ(control<QLineEdit>("frmKENSU", "TxtName").text(), QString());
  chooseRow("frmKENSU", "LstTeigi", list.model()->rowCount() - 1);
  EXPECT_EQ(control<QLineEdit>("frmKENSU", "TxtSu").text(), QStringLiteral("1200"));
}

TEST_F(ListsViewTest, APersonRunsAReport) {
  logInTo("販売管理_Oracle");
  openFromList("mnuTableList");
  app.report.CmbDataSource.entries.clear();
  turn.refresh();
  scripted.expect("確認", "有効なQueryが存在しませんでした.");
  control<QComboBox>("frmReport", "CmbDataSource").showPopup();
  press("frmReport", "CmdClose");
  EXPECT_EQ(front->find("frmReport"), nullptr);

  app.session.gDB->putQueryDef({"出力_テーブル数以上",
                                "PARAMETERS [最小ID] Long; SELECT ID, 日本語名 FROM MAS_TABLEINFO WHERE ID >= [最小ID] "
                                "AND システム名 = '販売管理_Oracle' ORDER BY ID"});
  openFromList("mnuTableList");
  EXPECT_FALSE(control("frmReport", "TxtPara:0").isEnabled());
  pick("frmReport", "CmbDataSource", "出力_テーブル数以上");
  auto& parameter = control<QLineEdit>("frmReport", "TxtPara:0");
  EXPECT_TRUE(parameter.isEnabled());
  EXPECT_EQ(parameter.toolTip(), QStringLiteral("最小ID"));
  EXPECT_EQ(control<QLabel>("frmReport", "lblKata:0").text(), QStringLiteral("long"));
  EXPECT_FALSE(control("frmReport", "TxtPara:1").isEnabled());

  activate("frmReport");
  type(parameter, "abc");
  scripted.expect("確認", "Queryを実行します.", kYes);
  scripted.expect("確認", "数値以外が設定されています.");
  QTest::keyClick(&parameter, Qt::Key_Return);
  settle();
  EXPECT_EQ(parameter.selectedText(), QStringLiteral("abc")) << "the fault is ready to be typed over";
  QTest::keyClicks(&parameter, QStringLiteral("0"));
  scripted.expect("確認", "Queryを実行します.", kYes);
  QTest::keyClick(&view("frmReport"), Qt::Key_F5);
  // A button pressed by its key shows that before it acts.
  ASSERT_TRUE(QTest::qWaitFor([this] { return app.report.Spread.maxRows() > 0; }, 2000));
  const auto& grid = control<QTableView>("frmReport", "Spread");
  ASSERT_GT(grid.model()->rowCount(), 5);
  EXPECT_EQ(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("日本語名"));
  EXPECT_EQ(control<QLabel>("frmReport", "lblNum").text(), QString::number(grid.model()->rowCount()));
  EXPECT_GT(grid.columnWidth(1), grid.columnWidth(0)) << "columns are as wide as their texts";

  scripted.expect("出力確認", "Excel出力しますか?", kYes);
  scripted.expect("確認", "対象ファイルを開きます.");
  press("frmReport", "CmdExcel");
  EXPECT_EQ(scripted.opened.size(), 1U);
}

}  // namespace
}  // namespace quillmarden
