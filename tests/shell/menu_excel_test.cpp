#include <filesystem>

#include "excel/table_layout.h"
#include "shell/detail_commands.h"
#include "shell_fixture.h"
#include "workbook/workbook.h"

namespace quillmarden {
namespace {

class MenuExcelTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    Workbook::create().save(scripted.host.machine.programFolder / kBlankBook);
    enter();
  }

  bool press(std::string_view name, int index = -1) { return pressMenu(app, "frmTBList", name, index); }
  void expectOpening() { scripted.expect("確認", "対象ファイルを開きます."); }
  /// The name of the one file that was opened since the last call.
  std::string opened() {
    const Lines files = std::exchange(scripted.opened, {});
    EXPECT_EQ(files.size(), 1U);
    if (files.size() != 1) return "";
    path = files.front();
    return path.filename().string();
  }
  /// How many tables the drawing just opened holds as objects.
  std::size_t objects() const {
    const std::string text = Workbook::open(path).sheet(0).element("oleObjects");
    std::size_t count = 0;
    for (std::size_t at = text.find("<oleObject "); at != std::string::npos; at = text.find("<oleObject ", at + 1))
      ++count;
    return count;
  }

  std::filesystem::path path;
};

TEST_F(MenuExcelTest, ADrawingOfAllTablesLeavesTheChoiceAndTypedRowsAlone) {
  chooseRow(0);
  edit();
  app.list.LstTableSel.add(app.list.LstTable.rows[1]);
  expectOpening();
  ASSERT_TRUE(press("mnuExcelER2Book", 0));
  EXPECT_EQ(opened(), "販売_ER.xlsx");
  EXPECT_EQ(objects(), 2U);
  EXPECT_EQ(app.list.LstTableSel.rows, Lines{app.list.LstTable.rows[1]});
  EXPECT_EQ(app.detail().Spread.text(field_col::kFieldName, 1), "typed");
  EXPECT_TRUE(app.detail().changed);
  EXPECT_FALSE(app.list.running);

  expectOpening();
  ASSERT_TRUE(press("mnuExcelER", 0));
  EXPECT_EQ(opened(), "販売_ER.xlsx");
  EXPECT_EQ(objects(), 1U) << "the rows taken over for output alone";
}

TEST_F(MenuExcelTest, LayoutsAreCollectedForAllOrTheChosenRows) {
  app.list.LstTable.selected.assign(2, false);
  scripted.expect("確認", "選択されていません.");
  ASSERT_TRUE(press("mnuExcel", 1));

  app.list.LstTable.selected[0] = true;
  scripted.expect("確認", "Excelファイルを作成します.", kYes);
  expectOpening();
  ASSERT_TRUE(press("mnuExcel", 1));
  EXPECT_EQ(opened(), "販売_テーブル一覧.xls");
  EXPECT_EQ(Workbook::open(path).sheetCount(), 1);

  scripted.expect("確認", "Excelファイルを作成します.", kYes);
  expectOpening();
  ASSERT_TRUE(press("mnuExcel", 0));
  opened();
  EXPECT_EQ(Workbook::open(path).sheetCount(), 2);
  EXPECT_EQ(app.list.LstTableSel.count(), 0);

  scripted.expect("確認", "Excelファイルを作成します.", kNo);
  ASSERT_TRUE(press("mnuExcel", 2));
  EXPECT_TRUE(scripted.opened.empty());
}

TEST_F(MenuExcelTest, ListsNeedChosenRows) {
  scripted.expect("確認", "選択されていません.");
  ASSERT_TRUE(press("mnuExcelSelList"));
  scripted.expect("ぷんぶん!!", "選択されていません!!");
  ASSERT_TRUE(press("mnuExcelDiskSel"));
  app.list.LstTableSel.add(app.list.LstTable.rows[1]);
  expectOpening();
  ASSERT_TRUE(press("mnuExcelSelListLayout"));
  EXPECT_EQ(opened(), "販売_TableLayout.xlsx");
  ASSERT_TRUE(press("mnuExcelPath"));
  EXPECT_EQ(scripted.opened.size(), 1U);
}

TEST_F(MenuExcelTest, MemberListsPassOverOtherTables) {
  scripted.expect("確認", "選択されていません.");
  ASSERT_TRUE(press("mnuSosiki"));
  app.session.gDB->execute("UPDATE MAS_TABLEINFO SET ファイル種別 = 'メンバー' WHERE ID = 2");
  expectOpening();
  ASSERT_TRUE(press("mnuSosiki"));
  EXPECT_EQ(opened(), "temptemp.xls");
  EXPECT_EQ(Workbook::open(path).sheet(0).text(cellAt("A2")), "表B");
}

TEST_F(MenuExcelTest, ADetailScreenDrawsItsOwnTable) {
  CmdER_Click(app, "frmTBDetail");
  EXPECT_TRUE(scripted.opened.empty()) << "no table is on show";
  chooseRow(1);
  expectOpening();
  CmdER_Click(app, "frmTBDetail");
  EXPECT_EQ(opened(), "B_ER.xlsx");
  EXPECT_EQ(objects(), 1U);
}

TEST_F(MenuExcelTest, TheReportOpensAndFollowsTheSystem) {
  ASSERT_TRUE(press("mnuTableList"));
  ASSERT_TRUE(app.open.has("frmReport"));
  EXPECT_EQ(app.report.caption, "レポート : システム名: [ 販売 ] ");
  app.list.CmbSystem.text = "<全システム共通>";
  chooseSystem(app);
  EXPECT_EQ(screenCaption(app, "frmReport"), "レポート : システム名: [ <全システム共通> ] ");
}

}  // namespace
}  // namespace quillmarden
